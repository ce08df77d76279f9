1module ram_concat(input clk, we, input [3:0] a, b, input [11:0] d, output reg [11:0] q);
  reg [7:0] mem [0:15]; reg [3:0] x;
  always @(posedge clk) begin if (we) {mem[a], x} <= d; q <= {x, mem[b]}; end
endmodule
