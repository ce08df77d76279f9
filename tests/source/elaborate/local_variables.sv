// ignore: information
// run sometimes: --top entered_sometimes
// run outside: --top read_outside
// run before: --top read_before
// A variable of a block inside a process: what it holds while the block is not entered matters only to those who read it.
module entered_sometimes(input [3:0] a, input c, output logic [3:0] y);
  always_comb begin
    y = a;
    if (c) begin : inner
      logic [3:0] t;
      t = a + 4'd1;
      t[2] = 1'b0;
      y = t ^ 4'd3;
    end
  end
endmodule

module read_outside(input [3:0] a, input c, output logic [3:0] y);
  always_comb begin : outer // expect outside: warning VERI-2004 10240 "inferring latch(es) for variable \"t\"" ; error SV-1014 10166 "does not infer purely combinational logic"
    logic [3:0] t;
    y = 4'd0;
    if (c) t = a;
    if (a[1]) y = t;
  end
endmodule

module read_before(input [3:0] a, input c, output logic [3:0] y);
  always_comb begin // expect before: warning VERI-2004 10240 "inferring latch(es) for variable \"t\"" ; error SV-1014 10166 "does not infer purely combinational logic"
    y = a;
    if (c) begin : inner
      logic [3:0] t;
      y = t;
      t = a;
    end
  end
endmodule
