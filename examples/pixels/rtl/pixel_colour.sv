// Colours as luminance and differences: brightness and contrast act on the one, saturation on the others, then back.
// Three steps, of which the matrices hold the first and the last.
module pixel_colour (
  input  logic              clk,
  input  logic              rst,
  input  logic signed [7:0] brightness,
  input  logic [7:0]        contrast,
  input  logic [7:0]        saturation,
  pixel_if.sink             in,
  pixel_if.source           out
);

  import pixel_pkg::*;

  typedef struct packed {
    logic valid;
    logic first;
    logic last;
  } mark_t;

  mark_t [2:0] marks;
  logic        step;

  logic signed [8:0]  red, green, blue;
  logic signed [11:0] y_raw, cb_raw, cr_raw;
  ycc_t               adjusted, adjusted_q;
  logic signed [8:0]  y_in, cb_in, cr_in;
  logic signed [11:0] r_raw, g_raw, b_raw;

  assign step     = out.ready || !out.valid;
  assign in.ready = step;

  assign red   = $signed({1'b0, in.beat.pixel.r});
  assign green = $signed({1'b0, in.beat.pixel.g});
  assign blue  = $signed({1'b0, in.beat.pixel.b});

  matrix3x3 #(
    .M00(10'sd77),  .M01(10'sd150),  .M02(10'sd29),
    .M10(-10'sd43), .M11(-10'sd85),  .M12(10'sd128),
    .M20(10'sd128), .M21(-10'sd107), .M22(-10'sd21)
  ) to_ycc (
    .clk  (clk),
    .rst  (rst),
    .step (step),
    .a    (red),
    .b    (green),
    .c    (blue),
    .x    (y_raw),
    .y    (cb_raw),
    .z    (cr_raw)
  );

  // A gain with six fraction bits around the middle, and around zero
  function automatic logic signed [17:0] scaled(input logic signed [11:0] value, input logic [7:0] gain);
    logic signed [20:0] product;
    product = value * $signed({1'b0, gain});
    return 18'(product >>> 6);
  endfunction

  always_comb begin
    adjusted.y  = clamp(scaled(y_raw - 12'sd128, contrast) + 18'sd128 + brightness);
    adjusted.cb = clamp_signed(scaled(cb_raw, saturation));
    adjusted.cr = clamp_signed(scaled(cr_raw, saturation));
  end

  always_ff @(posedge clk or posedge rst)
    if (rst) begin
      adjusted_q <= '0;
      marks      <= '0;
    end else if (step) begin
      adjusted_q <= adjusted;
      marks[0]   <= '{valid: in.valid, first: in.beat.first, last: in.beat.last};
      marks[2:1] <= marks[1:0];
    end

  assign y_in  = $signed({1'b0, adjusted_q.y});
  assign cb_in = adjusted_q.cb;
  assign cr_in = adjusted_q.cr;

  matrix3x3 #(
    .M00(10'sd256), .M01(10'sd0),   .M02(10'sd359),
    .M10(10'sd256), .M11(-10'sd88), .M12(-10'sd183),
    .M20(10'sd256), .M21(10'sd454), .M22(10'sd0)
  ) to_rgb (
    .clk  (clk),
    .rst  (rst),
    .step (step),
    .a    (y_in),
    .b    (cb_in),
    .c    (cr_in),
    .x    (r_raw),
    .y    (g_raw),
    .z    (b_raw)
  );

  assign out.valid = marks[2].valid;
  assign out.beat  = '{
    first: marks[2].first,
    last:  marks[2].last,
    pixel: '{r: clamp(18'(r_raw)), g: clamp(18'(g_raw)), b: clamp(18'(b_raw))}
  };

endmodule
