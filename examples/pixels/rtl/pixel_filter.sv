// The neighbourhood filters: one kernel and one median network for each colour behind the window.
module pixel_filter (
  input  logic               clk,
  input  logic               rst,
  input  pixel_pkg::filter_t filter,
  input  pixel_pkg::border_t border,
  pixel_if.sink              in,
  pixel_if.source            out
);

  import pixel_pkg::*;

  rgb_t [8:0]  window;
  logic        window_valid, window_first, window_last, window_ready;
  logic        step;
  filter_t     filter_q;
  rgb_t        centre_q;
  coeffs_t     coeffs;
  logic [71:0] reds, greens, blues;
  rgb_t        convolved, median;

  pixel_window neighbourhood (
    .clk       (clk),
    .rst       (rst),
    .border    (border),
    .in        (in),
    .out_valid (window_valid),
    .out_first (window_first),
    .out_last  (window_last),
    .out_ready (window_ready),
    .window    (window)
  );

  assign window_ready = out.ready || !out.valid;
  assign step         = window_ready;
  assign coeffs       = coefficients(filter);

  always_comb
    for (int i = 0; i < 9; i++) begin
      reds[8 * i +: 8]   = window[i].r;
      greens[8 * i +: 8] = window[i].g;
      blues[8 * i +: 8]  = window[i].b;
    end

  for (genvar c = 0; c < 3; c++) begin : colour
    logic [71:0] samples;
    sample_t     by_kernel, by_median;

    assign samples = c == 0 ? reds : c == 1 ? greens : blues;

    kernel3x3 kernel (
      .clk      (clk),
      .rst      (rst),
      .step     (step),
      .samples  (samples),
      .coeffs   (coeffs),
      .shift    (shift_of(filter)),
      .absolute (filter == FILTER_EDGE),
      .lifted   (filter == FILTER_EMBOSS),
      .result   (by_kernel)
    );

    median9 network (
      .clk     (clk),
      .rst     (rst),
      .step    (step),
      .samples (samples),
      .result  (by_median)
    );
  end

  assign convolved = '{r: colour[0].by_kernel, g: colour[1].by_kernel, b: colour[2].by_kernel};
  assign median    = '{r: colour[0].by_median, g: colour[1].by_median, b: colour[2].by_median};

  logic first_q, last_q, valid_q;

  always_ff @(posedge clk or posedge rst)
    if (rst) begin
      valid_q  <= 1'b0;
      first_q  <= 1'b0;
      last_q   <= 1'b0;
      filter_q <= FILTER_NONE;
      centre_q <= BLACK;
    end else if (step) begin
      valid_q  <= window_valid;
      first_q  <= window_first;
      last_q   <= window_last;
      filter_q <= filter;
      centre_q <= window[4];
    end

  always_comb begin
    out.valid      = valid_q;
    out.beat.first = first_q;
    out.beat.last  = last_q;
    unique case (filter_q)
      FILTER_NONE:   out.beat.pixel = centre_q;
      FILTER_MEDIAN: out.beat.pixel = median;
      default:       out.beat.pixel = convolved;
    endcase
  end

endmodule
