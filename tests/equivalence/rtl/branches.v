// Registers and selections behind branches: priorities deeper than trees are followed, operators that a selection
// shares, holds in the middle of a tree, logic that many registers share.
module prio_regs(input clk, rst, input [15:0] c, input [3:0] d, output reg [3:0] q, output reg [3:0] p);
  integer i;
  always @(posedge clk) begin
    for (i = 0; i < 16; i = i + 1) if (c[i]) q <= d + i;
    if (rst) begin q <= 0; p <= 0; end else
    if (c[0]) p <= 1; else if (c[1]) p <= 2; else if (c[2]) p <= 3; else if (c[3]) p <= d; else if (c[4]) p <= ~d;
    else if (c[5]) p <= d+1; else if (c[6]) p <= p + 1; else if (c[7]) p <= p ^ d; else if (c[8]) p <= 9;
    else if (c[9]) p <= 10; else if (c[10]) p <= 11; else if (c[11]) p <= p - 1; else if (c[12]) p <= d - 1;
    else if (c[13]) p <= {p[2:0],p[3]}; else if (c[14]) p <= 14; else if (c[15]) p <= p;
  end
endmodule

module add_select(input [2:0] s, input [7:0] a, b, c, d, output reg [7:0] y, z, output reg [8:0] w, output reg [7:0] k);
  always @* case (s) 0: y = a + b; 1: y = c + d; 2: y = a + d; default: y = b + c; endcase
  always @* if (s[0]) z = a + b; else z = c + d;
  always @* case (s[1:0]) 0: w = a + b; 1: w = a - b; 2: w = c + b; 3: w = {1'b0, d} + 1; endcase
  always @* case (s) 0: k = a & b; 1: k = a & c; 2: k = a & d; 3: k = a & 8'h3c; 4: k = a & ~b; 5: k = a & (b^c); 6: k = a & b; default: k = a & c; endcase
endmodule

module add_regs(input clk, rst, input [2:0] s, input [7:0] a, b, c, d, output reg [7:0] y, z);
  always @(posedge clk) if (rst) y <= 0; else case (s) 0: y <= y + a; 1: y <= y + b; 2: y <= y - c; 3: y <= y + d; 4: y <= a * b; endcase
  always @(posedge clk or posedge rst) if (rst) z <= 8'h42; else begin if (s == 3) z <= z + 1; else if (s == 4) z <= z - 1; else if (s[2] & s[0]) z <= {z[0], z[7:1]}; end
endmodule

module branch_regs(input clk, rst, input a, b, c, input [3:0] d, output reg [3:0] q);
  always @(posedge clk)
    if (rst) q <= 4'd3;
    else begin
      if (a) begin if (b) begin if (c) q <= d; else q <= q + 1; end else if (!a) q <= 4'hf; else q <= ~q; end
      else if (b) begin q <= {q[0], q[3:1]}; if (a) q <= 0; if (c) q[2] <= d[2]; end
    end
endmodule

module wild_regs(input clk, rst, input [7:0] op, input [3:0] d, output reg [3:0] q);
  always @(posedge clk) if (rst) q <= 0; else casez (op) 8'b1???????: q <= d; 8'b01??????: q <= q + d; 8'b001?????: q <= q & d; 8'b0001????: q <= q; 8'b00001???: q <= 4'h7; 8'b000001??: q <= q ^ d; 8'b0000001?: q <= ~d; 8'b00000001: q <= q - 1; endcase
endmodule

module wide_regs(input clk, rst, input [4:0] s, input [31:0] v, input en, output reg q, output reg [4:0] n, output reg r);
  always @(posedge clk) if (rst) q <= 0; else if (en) q <= v[s];
  always @(posedge clk) if (rst) n <= 0; else if (v[s] ^ v[n]) n <= s; else n <= n + v[~s];
  always @(posedge clk) if (rst) r <= 0; else case (s) 0: r <= v[1]; 3: r <= v[0]; 7: r <= r; 9: r <= ~r; 31: r <= en; 30: r <= v[5]; 17: r <= 1; endcase
endmodule

module shared_logic(input clk, rst, input [3:0] sel, input [7:0] a, b, output reg [7:0] m0, m1, m2, m3);
  wire [7:0] v = sel[0] ? (sel[1] ? a : b) : (sel[2] ? a + b : a - b);
  always @(posedge clk) begin
    if (sel == 0) m0 <= v; if (sel == 1) m1 <= v; if (sel == 2) m2 <= m0; if (sel[3]) m3 <= m3 + v;
    if (rst) {m0, m1, m2, m3} <= 32'h01020304;
  end
endmodule
