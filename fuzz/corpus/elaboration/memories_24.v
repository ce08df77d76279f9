1module ram_index(input clk, we, input [3:0] a, b, input [3:0] d, output reg [3:0] q);
  reg [3:0] mem [0:15];
  always @(posedge clk) begin if (we) mem[a] <= d; q <= mem[mem[b]]; end
endmodule
