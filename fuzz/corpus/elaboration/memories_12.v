1module ram_signed(input clk, we, input signed [3:0] a, b, input signed [3:0] d, output reg signed [7:0] q);
  reg signed [3:0] mem [-4:3];
  always @(posedge clk) begin
    if (we) mem[a] <= d;
    q <= mem[b];
  end
endmodule
