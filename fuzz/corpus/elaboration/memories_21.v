1module ram_question(input clk, we, s, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk) begin if (we) mem[a] <= d; q <= s ? mem[a] : mem[b]; end
endmodule
