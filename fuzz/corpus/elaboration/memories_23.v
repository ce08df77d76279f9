1module ram_disable(input clk, we, s, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk) begin : outer
    q <= mem[b];
    if (s) disable outer;
    if (we) mem[a] <= d;
  end
endmodule
