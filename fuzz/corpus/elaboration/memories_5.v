1module ram_branches(input clk, s, t, we, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk) begin
    if (s) begin
      if (we) mem[a] <= d;
      q <= mem[b];
    end else if (t) begin
      mem[b] <= ~d;
      q <= mem[a] + 1;
    end
  end
endmodule
