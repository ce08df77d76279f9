1module ram_bits(input clk, we, input [2:0] a, b, i, j, input d, output reg q);
  reg [7:0] mem [0:7];
  always @(posedge clk) begin
    if (we) mem[a][i] <= d;
    q <= mem[b][j];
  end
endmodule
