1module ram_generated(input clk, input [1:0] we, input [2:0] a, b, input [7:0] d, output [15:0] q);
  genvar g;
  generate
    for (g = 0; g < 2; g = g + 1) begin : bank
      reg [7:0] mem [0:7];
      always @(posedge clk) if (we[g]) mem[a] <= d + g;
      assign q[8*g +: 8] = mem[b];
    end
  endgenerate
endmodule
