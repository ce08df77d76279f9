1module regs_cleared(input clk, rst, we, input [1:0] a, b, input [7:0] d, output [7:0] q);
  reg [7:0] mem [0:3];
  integer i;
  always @(posedge clk)
    if (rst) for (i = 0; i < 4; i = i + 1) mem[i] <= i;
    else if (we) mem[a] <= d;
  assign q = mem[b];
endmodule
