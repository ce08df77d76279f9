// A package has no instances.
// run: --lint
package p;
  parameter A = 1;
endpackage
module not_a_module(input logic a, output logic q);
  p u(a, q);
endmodule
