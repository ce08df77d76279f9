1module ram_modify(input clk, we, input [2:0] a, input [7:0] d, output [7:0] q);
  reg [7:0] mem [0:7];
  always @(posedge clk) if (we) mem[a] <= mem[a] ^ d;
  assign q = mem[a];
  integer i;
  initial for (i = 0; i < 8; i = i + 1) mem[i] = 17 * i + 3;
endmodule
