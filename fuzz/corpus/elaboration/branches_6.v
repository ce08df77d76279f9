1module shared_logic(input clk, rst, input [3:0] sel, input [7:0] a, b, output reg [7:0] m0, m1, m2, m3);
  wire [7:0] v = sel[0] ? (sel[1] ? a : b) : (sel[2] ? a + b : a - b);
  always @(posedge clk) begin
    if (sel == 0) m0 <= v; if (sel == 1) m1 <= v; if (sel == 2) m2 <= m0; if (sel[3]) m3 <= m3 + v;
    if (rst) {m0, m1, m2, m3} <= 32'h01020304;
  end
endmodule
