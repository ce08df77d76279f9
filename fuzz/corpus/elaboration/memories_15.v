1module ram_initial(input clk, we, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  integer i;
  initial begin
    for (i = 0; i < 12; i = i + 1) mem[i] = 37 * i;
    mem[3][7:4] = 4'h9;
  end
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q <= mem[b];
  end
endmodule
