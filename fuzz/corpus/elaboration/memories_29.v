1module regs_many_reads(input clk, we, input [1:0] a, b, c, e, input [7:0] d, output [7:0] q, output r);
  reg [7:0] mem [0:3];
  always @(posedge clk) if (we) mem[a] <= d;
  assign q = mem[b] ^ mem[c];
  assign r = mem[e] > mem[a];
endmodule
