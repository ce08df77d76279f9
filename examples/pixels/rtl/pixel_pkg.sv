// Types, constants and functions of the image pipeline.
package pixel_pkg;

  parameter int DEPTH      = 8;         // bits of a colour
  parameter int MAX_WIDTH  = 32;        // pixels of a line
  parameter int COEFF_BITS = 8;         // of the kernels
  parameter int BINS       = 8;         // of the histogram

  typedef logic [DEPTH-1:0] sample_t;

  typedef struct packed {
    sample_t r;
    sample_t g;
    sample_t b;
  } rgb_t;

  // Luminance without sign, differences with one
  typedef struct packed {
    sample_t           y;
    logic signed [7:0] cb;
    logic signed [7:0] cr;
  } ycc_t;

  // A pixel with its place in the image
  typedef struct packed {
    logic first;                        // of the image
    logic last;                         // of the line
    rgb_t pixel;
  } beat_t;

  typedef enum logic [2:0] {
    FILTER_NONE    = 3'd0,
    FILTER_BLUR    = 3'd1,
    FILTER_SHARPEN = 3'd2,
    FILTER_EDGE    = 3'd3,
    FILTER_EMBOSS  = 3'd4,
    FILTER_MEDIAN  = 3'd5
  } filter_t;

  typedef enum logic [1:0] {SCALE_NONE, SCALE_HALF, SCALE_THIRD, SCALE_DOUBLE} scale_t;

  typedef enum logic {EDGE_REPEAT, EDGE_BLACK} border_t;

  typedef struct packed {
    logic              enable;
    filter_t           filter;
    border_t           border;
    scale_t            scale;
    logic              gamma;
    logic signed [7:0] brightness;
    logic [7:0]        contrast;        // 64 is one
    logic [7:0]        saturation;      // 64 is one
  } config_t;

  typedef struct packed {
    logic [15:0] pixels;
    logic [15:0] lines;
    sample_t     darkest;
    sample_t     brightest;
  } summary_t;

  localparam rgb_t BLACK = '{default: '0};
  localparam rgb_t WHITE = '{default: '1};

  // The coefficients of the filters, row by row, and by how many bits a sum is shifted back
  typedef logic signed [8:0][COEFF_BITS-1:0] coeffs_t;

  function automatic coeffs_t coefficients(input filter_t filter);
    case (filter)
      FILTER_BLUR:    coefficients = {8'sd1, 8'sd2, 8'sd1, 8'sd2, 8'sd4, 8'sd2, 8'sd1, 8'sd2, 8'sd1};
      FILTER_SHARPEN: coefficients = {8'sd0, -8'sd1, 8'sd0, -8'sd1, 8'sd8, -8'sd1, 8'sd0, -8'sd1, 8'sd0};
      FILTER_EDGE:    coefficients = {-8'sd1, -8'sd1, -8'sd1, -8'sd1, 8'sd8, -8'sd1, -8'sd1, -8'sd1, -8'sd1};
      FILTER_EMBOSS:  coefficients = {-8'sd2, -8'sd1, 8'sd0, -8'sd1, 8'sd1, 8'sd1, 8'sd0, 8'sd1, 8'sd2};
      default:        coefficients = {8'sd0, 8'sd0, 8'sd0, 8'sd0, 8'sd1, 8'sd0, 8'sd0, 8'sd0, 8'sd0};
    endcase
  endfunction

  function automatic logic [2:0] shift_of(input filter_t filter);
    case (filter)
      FILTER_BLUR:    shift_of = 3'd4;
      FILTER_SHARPEN: shift_of = 3'd2;
      default:        shift_of = 3'd0;
    endcase
  endfunction

  // Into the range of a sample
  function automatic sample_t clamp(input logic signed [17:0] value);
    if (value < 0) clamp = '0;
    else if (value > 255) clamp = '1;
    else clamp = value[DEPTH-1:0];
  endfunction

  // Into the range of a difference
  function automatic logic signed [7:0] clamp_signed(input logic signed [17:0] value);
    if (value < -128) clamp_signed = -8'sd128;
    else if (value > 127) clamp_signed = 8'sd127;
    else clamp_signed = value[7:0];
  endfunction

  function automatic sample_t luminance(input rgb_t p);
    logic [9:0] sum;
    sum = {2'b00, p.r} + {1'b0, p.g, 1'b0} + {2'b00, p.b};
    luminance = sum[9:2];
  endfunction

endpackage
