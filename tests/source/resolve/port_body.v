// Ports and parameters of a list, and of the body besides.
// run: --lint --std=vlog2001
// ignore: information
module m #(parameter W = 3) (input a, output y);
  parameter D = 4; // expect: warning VERI-1199 10222 "Parameter Declaration in \"m\" behaves as a Local Parameter Declaration because the unit has a formal parameter declaration list"
  output z; // expect: error VERI-1200 10195 "port declaration not allowed in \"m\" with formal port declaration list"
  assign y = a;
endmodule
