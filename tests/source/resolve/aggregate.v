// An array is read as a whole.
// run: --lint --std=vlog2001
module aggregate(input [3:0] a, output [3:0] y);
  reg [3:0] m [0:3][0:1];
  initial m[0][0] = 0;
  assign y = m[0]; // expect: error VERI-1140 10138 "indexed name does not fully index array \"m\""
endmodule
