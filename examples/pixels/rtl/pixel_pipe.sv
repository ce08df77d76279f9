// The pipeline: a buffer, the neighbourhood filter, colours, the curve, the scaler, and a filter along the line that
// sharpens what it gives; streams inside are interfaces, outside plain signals.
module pixel_pipe (
  input  logic        clk,
  input  logic        rst,

  input  logic        write,
  input  logic [3:0]  addr,
  input  logic [7:0]  wdata,
  output logic [15:0] rdata,

  input  logic        in_valid,
  output logic        in_ready,
  input  logic        in_first,
  input  logic        in_last,
  input  logic [23:0] in_pixel,

  output logic        out_valid,
  input  logic        out_ready,
  output logic        out_first,
  output logic        out_last,
  output logic [23:0] out_pixel,
  output logic [7:0]  out_detail
);

  import pixel_pkg::*;

  pixel_if raw ();
  pixel_if buffered ();
  pixel_if filtered ();
  pixel_if coloured ();
  pixel_if curved ();
  pixel_if scaled ();

  config_t     settings;
  summary_t    arriving, leaving;
  logic [2:0]  bin;
  logic [15:0] bin_count;
  logic        starts;

  assign raw.valid      = in_valid && settings.enable;
  assign raw.beat.first = in_first;
  assign raw.beat.last  = in_last;
  assign raw.beat.pixel = in_pixel;
  assign in_ready       = raw.ready && settings.enable;
  assign starts         = in_valid && in_first;

  pixel_skid entry (.clk, .rst, .in(raw), .out(buffered));

  pixel_filter neighbours (
    .clk    (clk),
    .rst    (rst),
    .filter (settings.filter),
    .border (settings.border),
    .in     (buffered),
    .out    (filtered)
  );

  pixel_colour colours (
    .clk        (clk),
    .rst        (rst),
    .brightness (settings.brightness),
    .contrast   (settings.contrast),
    .saturation (settings.saturation),
    .in         (filtered),
    .out        (coloured)
  );

  pixel_gamma curve (.clk, .rst, .enable(settings.gamma), .in(coloured), .out(curved));

  pixel_scaler scaler (.clk, .rst, .scale(settings.scale), .in(curved), .out(scaled));

  pixel_stats stats_before (
    .clk       (clk),
    .rst       (rst),
    .watched   (buffered),
    .summary   (arriving),
    .bin       (bin),
    .bin_count (bin_count)
  );

  logic [15:0] unused_count;

  pixel_stats stats_after (
    .clk       (clk),
    .rst       (rst),
    .watched   (scaled),
    .summary   (leaving),
    .bin       (bin),
    .bin_count (unused_count)
  );

  pixel_regs regs (
    .clk       (clk),
    .rst       (rst),
    .write     (write),
    .addr      (addr),
    .wdata     (wdata),
    .rdata     (rdata),
    .start     (starts),
    .settings  (settings),
    .arriving    (arriving),
    .leaving     (leaving),
    .bin       (bin),
    .bin_count (bin_count)
  );

  fir5 detail (
    .clk    (clk),
    .rst    (rst),
    .step   (scaled.valid && scaled.ready),
    .first  (scaled.beat.first || scaled.beat.last),
    .sample (luminance(scaled.beat.pixel)),
    .result (out_detail)
  );

  assign scaled.ready = out_ready;
  assign out_valid    = scaled.valid;
  assign out_first    = scaled.beat.first;
  assign out_last     = scaled.beat.last;
  assign out_pixel    = scaled.beat.pixel;

endmodule
