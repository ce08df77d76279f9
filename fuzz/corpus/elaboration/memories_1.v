1module ram_two_reads(input clk, we, input [2:0] wa, ra, rb, input [5:0] d, output [5:0] qa, output [2:0] qb);
  reg [5:0] mem [0:7];
  always @(posedge clk) if (we) mem[wa] <= d;
  assign qa = mem[ra];
  assign qb = mem[rb][4:2];
endmodule
