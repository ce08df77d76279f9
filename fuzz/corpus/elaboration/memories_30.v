1module regs_two_addresses(input clk, we, s, input [1:0] a, b, input [7:0] d, output [7:0] q);
  reg [7:0] mem [0:3];
  genvar g;
  always @(posedge clk) if (we) mem[a] <= d;
  generate
    for (g = 0; g < 2; g = g + 1) begin : half
      assign q[4*g +: 4] = mem[b + g][4*g +: 4];
    end
  endgenerate
endmodule
