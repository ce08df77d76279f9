1module add_regs(input clk, rst, input [2:0] s, input [7:0] a, b, c, d, output reg [7:0] y, z);
  always @(posedge clk) if (rst) y <= 0; else case (s) 0: y <= y + a; 1: y <= y + b; 2: y <= y - c; 3: y <= y + d; 4: y <= a * b; endcase
  always @(posedge clk or posedge rst) if (rst) z <= 8'h42; else begin if (s == 3) z <= z + 1; else if (s == 4) z <= z - 1; else if (s[2] & s[0]) z <= {z[0], z[7:1]}; end
endmodule
