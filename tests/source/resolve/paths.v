// Names with a path, where none can stand.
// run: --lint --std=vlog2001
module child;
  parameter W = 3;
endmodule
module top(input [7:0] a, output y);
  child u();
  wire [u.W:0] t; // expect: error VERI-1146 10142 "constant expression cannot contain a hierarchical identifier"
  wire w;
  assign w = a;
  assign y = w.t; // expect: error SV-1091 10900 "\"t\" is not declared under this prefix"
endmodule
