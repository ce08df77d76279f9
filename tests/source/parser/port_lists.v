// Ports that are declared in their list and again in the body.
// run: --lint --std=vlog2001
// ignore: information
module twice(input a, output y); // expect: error VERI-1072 10112 "Ignored design unit \"twice\" at port_lists.v(4) due to previous errors"
  reg a; // expect: error VERI-1119 10149 "object \"a\" declared in a list of port declarations cannot be redeclared within the module body"
  assign y = a;
endmodule
