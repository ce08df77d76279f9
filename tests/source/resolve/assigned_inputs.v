// Inputs are driven from outside.
// run: --lint --std=vlog2001
module inputs(input a, input [3:0] b, output reg q, output [3:0] p);
  assign a = 1'b0; // expect: error VERI-2012 10655 "cannot assign to input port \"a\""
  assign b[2:1] = 2'b0; // expect: error VERI-2012 10655 "cannot assign to input port \"b\""
  assign {p, b[0]} = 5'b0; // expect: error VERI-2012 10655 "cannot assign to input port \"b\""
  always @(b) a = 1; // expect: error VERI-2012 10655 "cannot assign to input port \"a\""
  always @(b) {q, a} <= b; // expect: error VERI-2012 10655 "cannot assign to input port \"a\""
endmodule
