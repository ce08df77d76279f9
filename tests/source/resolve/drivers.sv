// Variables of SystemVerilog have one driver, of one kind.
// run: --lint
module drivers(input logic a, b, output logic p, q, r, s, output logic [1:0] t, output logic u);
  assign p = a;
  assign p = b; // expect: error SV-1059 10832 "variable \"p\" has a continuous driver and another one"
  always_comb q = a;
  always_comb q = b; // expect: error SV-1058 10831 "variable \"q\" is assigned by another process, too"
  always_comb r = a;
  assign r = b; // expect: error SV-1059 10832 "variable \"r\" has a continuous driver and another one"
  always_ff @(posedge a) s <= b;
  always @(b) s = a; // expect: error SV-1058 10831 "variable \"s\" is assigned by another process, too"
  always_comb t[0] = a;
  always_comb t[1] = b;
  always_comb begin
    u = a;
    if (b) u = b;
  end
endmodule
