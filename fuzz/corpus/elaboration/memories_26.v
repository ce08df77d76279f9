1module ram_partvar(input clk, we, input [2:0] a, b, input [1:0] l, input [7:0] d, output reg [7:0] q);
  reg [31:0] mem [0:7];
  always @(posedge clk) begin if (we) mem[a][8*l +: 8] <= d; q <= mem[b][8*l +: 8]; end
endmodule
