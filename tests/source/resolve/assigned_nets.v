// Nets and parameters are no targets of procedural assignments.
// run: --lint --std=vlog2001
module nets(input a, output p, output [1:0] q);
  always @(a) p = a; // expect: error VERI-1106 10137 "object \"p\" on left-hand side of assignment must have a variable data type"
  always @(a) q[1] <= a; // expect: error VERI-1106 10137 "object \"q\" on left-hand side of assignment must have a variable data type"
  parameter P = 1;
  always @(a) P = 0; // expect: error VERI-1106 10137 "object \"P\" on left-hand side of assignment must have a variable data type"
endmodule
