1module ram_offset(input clk, we, input [4:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [5:20];
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q <= mem[b];
  end
endmodule
