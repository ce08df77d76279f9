1module scopes_leaf(input [3:0] a, output [3:0] y);
  parameter K = 1;
  parameter M = 2;
  assign y = a * K + M;
endmodule
