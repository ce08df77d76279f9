1module wide_regs(input clk, rst, input [4:0] s, input [31:0] v, input en, output reg q, output reg [4:0] n, output reg r);
  always @(posedge clk) if (rst) q <= 0; else if (en) q <= v[s];
  always @(posedge clk) if (rst) n <= 0; else if (v[s] ^ v[n]) n <= s; else n <= n + v[~s];
  always @(posedge clk) if (rst) r <= 0; else case (s) 0: r <= v[1]; 3: r <= v[0]; 7: r <= r; 9: r <= ~r; 31: r <= en; 30: r <= v[5]; 17: r <= 1; endcase
endmodule
