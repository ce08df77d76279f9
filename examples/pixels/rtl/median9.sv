// The median of nine samples by a network of exchanges: rows are sorted, then columns, then the diagonal that is left.
// One register stage stands in the middle.
module median9 #(
  parameter BITS = 8
) (
  input  logic              clk,
  input  logic              rst,
  input  logic              step,
  input  logic [9*BITS-1:0] samples,
  output logic [BITS-1:0]   result
);

  function automatic [3*BITS-1:0] sort3(input [BITS-1:0] a, input [BITS-1:0] b, input [BITS-1:0] c);
    logic [BITS-1:0] low, middle, high, t;
    begin
      low    = a;
      middle = b;
      high   = c;
      if (low > middle) begin
        t      = low;
        low    = middle;
        middle = t;
      end
      if (middle > high) begin
        t      = middle;
        middle = high;
        high   = t;
      end
      if (low > middle) begin
        t      = low;
        low    = middle;
        middle = t;
      end
      sort3 = {high, middle, low};
    end
  endfunction

  function automatic [BITS-1:0] largest(input [BITS-1:0] a, input [BITS-1:0] b, input [BITS-1:0] c);
    largest = a > b ? (a > c ? a : c) : (b > c ? b : c);
  endfunction

  function automatic [BITS-1:0] smallest(input [BITS-1:0] a, input [BITS-1:0] b, input [BITS-1:0] c);
    smallest = a < b ? (a < c ? a : c) : (b < c ? b : c);
  endfunction

  logic [3*BITS-1:0] row0, row1, row2;
  logic [BITS-1:0]   of_lows, of_middles, of_highs;

  always_ff @(posedge clk or posedge rst)
    if (rst) begin
      row0 <= '0;
      row1 <= '0;
      row2 <= '0;
    end else if (step) begin
      row0 <= sort3(samples[0*BITS +: BITS], samples[1*BITS +: BITS], samples[2*BITS +: BITS]);
      row1 <= sort3(samples[3*BITS +: BITS], samples[4*BITS +: BITS], samples[5*BITS +: BITS]);
      row2 <= sort3(samples[6*BITS +: BITS], samples[7*BITS +: BITS], samples[8*BITS +: BITS]);
    end

  logic [3*BITS-1:0] middles, diagonal;

  always_comb begin
    of_lows    = largest(row0[0 +: BITS], row1[0 +: BITS], row2[0 +: BITS]);
    middles    = sort3(row0[BITS +: BITS], row1[BITS +: BITS], row2[BITS +: BITS]);
    of_middles = middles[BITS +: BITS];
    of_highs   = smallest(row0[2*BITS +: BITS], row1[2*BITS +: BITS], row2[2*BITS +: BITS]);
    diagonal   = sort3(of_lows, of_middles, of_highs);
    result     = diagonal[BITS +: BITS];
  end

endmodule
