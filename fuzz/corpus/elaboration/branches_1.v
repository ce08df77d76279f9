1module add_select(input [2:0] s, input [7:0] a, b, c, d, output reg [7:0] y, z, output reg [8:0] w, output reg [7:0] k);
  always @* case (s) 0: y = a + b; 1: y = c + d; 2: y = a + d; default: y = b + c; endcase
  always @* if (s[0]) z = a + b; else z = c + d;
  always @* case (s[1:0]) 0: w = a + b; 1: w = a - b; 2: w = c + b; 3: w = {1'b0, d} + 1; endcase
  always @* case (s) 0: k = a & b; 1: k = a & c; 2: k = a & d; 3: k = a & 8'h3c; 4: k = a & ~b; 5: k = a & (b^c); 6: k = a & b; default: k = a & c; endcase
endmodule
