1module regs_latched(input we, input [1:0] a, input [3:0] d, output [3:0] q);
  reg [3:0] mem [0:3];
  always @* if (we) mem[2'd1 ^ 2'd1] = d;
  assign q = mem[0];
endmodule
