// A symmetric filter of five taps over the samples of a line; the taps can be set to one value at the start of a line,
// so that the border repeats its first sample.
module fir5 #(
  parameter BITS = 8,
  parameter signed [7:0] C0 = 8'sd28,
  parameter signed [7:0] C1 = 8'sd20,
  parameter signed [7:0] C2 = -8'sd2
) (
  input  logic            clk,
  input  logic            rst,
  input  logic            step,
  input  logic            first,
  input  logic [BITS-1:0] sample,
  output logic [BITS-1:0] result
);

  logic [BITS-1:0] taps [0:4];
  integer          i;

  always_ff @(posedge clk or posedge rst)
    if (rst)
      for (i = 0; i < 5; i = i + 1) taps[i] <= '0;
    else if (step) begin
      taps[0] <= sample;
      for (i = 1; i < 5; i = i + 1) taps[i] <= first ? sample : taps[i-1];
    end

  logic signed [BITS+11:0] sum;
  logic [BITS:0]           outer, inner;

  always_comb begin
    outer = {1'b0, taps[0]} + {1'b0, taps[4]};
    inner = {1'b0, taps[1]} + {1'b0, taps[3]};
    sum   = C2 * $signed({1'b0, outer}) + C1 * $signed({1'b0, inner}) + C0 * $signed({1'b0, taps[2]}) + 20'sd32;
    if (sum < 0) result = '0;
    else if ((sum >>> 6) > 20'sd255) result = '1;
    else result = sum[6 +: BITS];
  end

endmodule
