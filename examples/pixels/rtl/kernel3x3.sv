// A convolution of nine samples with signed coefficients, in two steps: products with the sums of the rows, then their
// sum, shifted with rounding and brought into range. An offset lifts results that are meant to have a sign.
module kernel3x3 #(
  parameter SAMPLE_BITS = 8,
  parameter COEFF_BITS  = 8
) (
  input  logic                            clk,
  input  logic                            rst,
  input  logic                            step,
  input  logic [9*SAMPLE_BITS-1:0]        samples,
  input  logic [9*COEFF_BITS-1:0]         coeffs,
  input  logic [2:0]                      shift,
  input  logic                            absolute,
  input  logic                            lifted,
  output logic [SAMPLE_BITS-1:0]          result
);

  localparam PRODUCT_BITS = SAMPLE_BITS + COEFF_BITS + 1;
  localparam SUM_BITS     = PRODUCT_BITS + 4;

  logic signed [SUM_BITS-1:0] row0, row1, row2;
  logic signed [SUM_BITS-1:0] row0_next, row1_next, row2_next;
  logic [2:0]                 shift_q;
  logic                       absolute_q, lifted_q;

  // A sample has no sign: a zero in front of it makes it one that has
  function automatic signed [SUM_BITS-1:0] product(
      input [SAMPLE_BITS-1:0] sample, input signed [COEFF_BITS-1:0] coeff);
    product = $signed({1'b0, sample}) * coeff;
  endfunction

  function automatic signed [SUM_BITS-1:0] row(
      input [3*SAMPLE_BITS-1:0] s, input [3*COEFF_BITS-1:0] c);
    row = product(s[2*SAMPLE_BITS +: SAMPLE_BITS], c[2*COEFF_BITS +: COEFF_BITS])
        + product(s[SAMPLE_BITS +: SAMPLE_BITS], c[COEFF_BITS +: COEFF_BITS])
        + product(s[0 +: SAMPLE_BITS], c[0 +: COEFF_BITS]);
  endfunction

  always_comb begin
    row0_next = row(samples[0 +: 3*SAMPLE_BITS], coeffs[0 +: 3*COEFF_BITS]);
    row1_next = row(samples[3*SAMPLE_BITS +: 3*SAMPLE_BITS], coeffs[3*COEFF_BITS +: 3*COEFF_BITS]);
    row2_next = row(samples[6*SAMPLE_BITS +: 3*SAMPLE_BITS], coeffs[6*COEFF_BITS +: 3*COEFF_BITS]);
  end

  always_ff @(posedge clk or posedge rst)
    if (rst) begin
      row0       <= '0;
      row1       <= '0;
      row2       <= '0;
      shift_q    <= '0;
      absolute_q <= 1'b0;
      lifted_q   <= 1'b0;
    end else if (step) begin
      row0       <= row0_next;
      row1       <= row1_next;
      row2       <= row2_next;
      shift_q    <= shift;
      absolute_q <= absolute;
      lifted_q   <= lifted;
    end

  logic signed [SUM_BITS-1:0] sum, rounded, shifted, final_value;

  always_comb begin
    sum     = row0 + row1 + row2;
    rounded = shift_q == 0 ? sum : sum + (24'sd1 <<< (shift_q - 3'd1));
    shifted = rounded >>> shift_q;
    final_value = absolute_q && shifted < 0 ? -shifted : shifted;
    if (lifted_q) final_value = final_value + 24'sd128;
    if (final_value < 0) result = '0;
    else if (final_value > 255) result = '1;
    else result = final_value[SAMPLE_BITS-1:0];
  end

endmodule
