1module ram_bytes(input clk, input [3:0] be, input [2:0] a, input [31:0] d, output reg [31:0] q);
  reg [31:0] mem [0:7];
  integer i;
  always @(posedge clk) begin
    for (i = 0; i < 4; i = i + 1)
      if (be[i]) mem[a][8*i +: 8] <= d[8*i +: 8];
    q <= mem[a];
  end
endmodule
