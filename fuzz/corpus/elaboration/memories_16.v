1module rom_initial(input clk, input [3:0] a, b, output reg [7:0] q, output [7:0] p);
  reg [7:0] mem [0:15];
  integer i;
  initial for (i = 0; i < 16; i = i + 1) mem[i] = 91 * i + 5;
  always @(posedge clk) q <= mem[a];
  assign p = mem[b];
endmodule
