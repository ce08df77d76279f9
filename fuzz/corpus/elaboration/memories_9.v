1module ram_reset(input clk, rst, we, input [2:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:7];
  always @(posedge clk or posedge rst)
    if (rst) begin
      q <= 0;
    end else begin
      if (we) mem[a] <= d;
      q <= mem[b];
    end
endmodule
