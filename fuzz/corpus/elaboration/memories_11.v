1module ram_down(input clk, we, input [5:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [57:0];
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q <= mem[b];
  end
endmodule
