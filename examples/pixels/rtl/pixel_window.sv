// Keeps two lines and gives each pixel with its eight neighbours. The window lags one line and one pixel behind the
// stream; what lies outside of the image repeats the border or is black.
module pixel_window #(
  parameter int WIDTH = pixel_pkg::MAX_WIDTH
) (
  input  logic                   clk,
  input  logic                   rst,
  input  pixel_pkg::border_t     border,
  pixel_if.sink                  in,
  output logic                   out_valid,
  output logic                   out_first,
  output logic                   out_last,
  input  logic                   out_ready,
  output pixel_pkg::rgb_t [8:0]  window
);

  import pixel_pkg::*;

  localparam int COLUMN_BITS = $clog2(WIDTH);

  rgb_t above [0:WIDTH-1];
  rgb_t middle [0:WIDTH-1];

  logic [COLUMN_BITS-1:0] column;
  logic                   first_line, first_column, last_column;
  logic                   step;

  rgb_t from_above, from_middle;

  // The columns of the window, from the left to the right; each from above to below
  rgb_t [2:0] left, centre, right, incoming;

  assign step        = in.valid && in.ready;
  assign in.ready    = out_ready || !out_valid;
  assign from_above  = above[column];
  assign from_middle = middle[column];

  always_ff @(posedge clk or posedge rst)
    if (rst) column <= '0;
    else if (step) begin
      if (in.beat.last || column == WIDTH - 1) column <= '0;
      else column <= column + 1'b1;
    end

  always_ff @(posedge clk)
    if (step) begin
      above[column]  <= from_middle;
      middle[column] <= in.beat.pixel;
    end

  always_comb begin
    incoming[0] = first_line || in.beat.first ? (border == EDGE_BLACK ? BLACK : in.beat.pixel) : from_above;
    incoming[1] = in.beat.first ? in.beat.pixel : from_middle;
    incoming[2] = in.beat.pixel;
  end

  always_ff @(posedge clk or posedge rst)
    if (rst) begin
      left         <= '0;
      centre       <= '0;
      right        <= '0;
      first_line   <= 1'b1;
      first_column <= 1'b1;
      last_column  <= 1'b0;
      out_valid    <= 1'b0;
      out_first    <= 1'b0;
      out_last     <= 1'b0;
    end else if (in.ready) begin
      out_valid <= step;
      if (step) begin
        right  <= incoming;
        centre <= first_column && border == EDGE_REPEAT ? incoming : right;
        left   <= first_column ? (border == EDGE_BLACK ? '0 : incoming) : centre;
        first_column <= in.beat.last;
        last_column  <= in.beat.last;
        out_first    <= in.beat.first;
        out_last     <= in.beat.last;
        if (in.beat.first) first_line <= 1'b1;
        else if (in.beat.last) first_line <= 1'b0;
      end
    end

  always_comb
    for (int row = 0; row < 3; row++) begin
      window[3 * row]     = left[row];
      window[3 * row + 1] = centre[row];
      window[3 * row + 2] = last_column && border == EDGE_REPEAT ? centre[row] : right[row];
    end

endmodule
