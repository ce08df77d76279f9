1module ram_overlay(input clk, c, input [2:0] a, b, input [7:0] d, e, output [7:0] q);
  reg [7:0] mem [0:7];
  always @(posedge clk) begin
    mem[a] <= d;
    if (c) mem[a][3:0] <= e[3:0];
  end
  assign q = mem[b];
endmodule
