// Watches a stream: pixels and lines, the darkest and the brightest, and a histogram of the luminance. The values of an
// image stand from its end to the end of the next one.
module pixel_stats (
  input  logic                       clk,
  input  logic                       rst,
  pixel_if.monitor                   watched,
  output pixel_pkg::summary_t        summary,
  input  logic [2:0]                 bin,
  output logic [15:0]                bin_count
);

  import pixel_pkg::*;

  localparam summary_t EMPTY = '{pixels: '0, lines: '0, darkest: '1, brightest: '0};

  summary_t    current, current_next;
  logic [15:0] counts [0:BINS-1];
  logic [15:0] finished [0:BINS-1];
  sample_t     light, light_q;
  logic        seen, seen_q, first_q;

  assign seen  = watched.valid && watched.ready;
  assign light = luminance(watched.beat.pixel);

  function automatic logic [15:0] increased(input logic [15:0] value);
    return &value ? value : value + 16'd1;
  endfunction

  always_comb begin
    current_next = watched.beat.first ? EMPTY : current;
    current_next.pixels = increased(current_next.pixels);
    if (watched.beat.last) current_next.lines = increased(current_next.lines);
    if (light < current_next.darkest) current_next.darkest = light;
    if (light > current_next.brightest) current_next.brightest = light;
  end

  always_ff @(posedge clk or posedge rst)
    if (rst) begin
      current <= EMPTY;
      summary <= EMPTY;
      seen_q  <= 1'b0;
      first_q <= 1'b0;
      light_q <= '0;
    end else begin
      seen_q <= seen;
      if (seen) begin
        first_q <= watched.beat.first;
        light_q <= light;
        current <= current_next;
        if (watched.beat.first) summary <= current;
      end
    end

  always_ff @(posedge clk or posedge rst)
    if (rst)
      for (int i = 0; i < BINS; i++) begin
        counts[i]   <= '0;
        finished[i] <= '0;
      end
    else if (seen_q)
      for (int i = 0; i < BINS; i++) begin
        if (first_q) begin
          finished[i] <= counts[i];
          counts[i]   <= light_q[7:5] == i ? 16'd1 : '0;
        end else if (light_q[7:5] == i) counts[i] <= increased(counts[i]);
      end

  assign bin_count = finished[bin];

endmodule
