// Where processes of SystemVerilog wait.
// run: --lint
module controls(input logic c, output logic q, p, r, s, t);
  always_comb @(c) q = c; // expect: error SV-1053 10801 "\"always_comb\" cannot contain timing controls"
  always_latch #1 if (c) p = c; // expect: error SV-1053 10801 "\"always_latch\" cannot contain timing controls"
  always_comb r = #1 c; // expect: error SV-1053 10801 "\"always_comb\" cannot contain timing controls"
  always_ff s <= c; // expect: error SV-1057 10802 "always_ff needs an event control at its start"
  always_ff @(posedge c) t <= c;
endmodule
