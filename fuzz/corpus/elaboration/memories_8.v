1module ram_blocking(input clk, we, input [2:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:7];
  always @(posedge clk) begin
    if (we) mem[a] = d;
    q <= mem[b];
  end
endmodule
