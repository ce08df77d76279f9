1module ram_twoclk(input clk, c, we, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk) if (we) mem[a] <= d;
  always @(negedge c) q <= mem[b];
endmodule
