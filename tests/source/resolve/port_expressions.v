// Expressions of ports.
// run: --lint --std=vlog2001
// ignore: information
module m(a, {t, y}, .b(z[i])); // expect: error VERI-1150 10147 "\"t\" in port-expression is not a port"
  input a;
  output y;
  output [3:0] z;
  wire t;
  integer i;
  assign y = a;
endmodule
