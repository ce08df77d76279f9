1module ram_halves(input clk, lo, hi, en, input [2:0] a, b, input [7:0] d, output [7:0] q);
  reg [7:0] mem [0:7];
  always @(posedge clk)
    if (en) begin
      if (lo) mem[a][3:0] <= d[3:0];
      if (hi) mem[a][7:4] <= d[7:4];
    end
  assign q = mem[b];
endmodule
