// A genvar is assigned by its loop only.
// run: --lint --std=vlog2001
module genvar_target(input [3:0] a, output reg [3:0] y);
  genvar i;
  generate
    for (i = 0; i < 4; i = i + 1) begin : g
      always @* begin
        i = 2; // expect: error VERI-1103 10123 "cannot assign to generate variable \"i\" here"
        y[i] = a[i];
      end
    end
  endgenerate
endmodule
