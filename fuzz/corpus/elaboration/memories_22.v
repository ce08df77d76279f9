1module ram_while(input clk, we, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15]; integer i;
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q = 0;
    for (i = 0; i < 8; i = i + 1) q = q + mem[b][i];
  end
endmodule
