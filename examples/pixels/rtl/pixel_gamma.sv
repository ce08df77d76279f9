// A curve of eight straight pieces for each colour. The nodes are constants; between them the value is interpolated.
module pixel_gamma (
  input  logic    clk,
  input  logic    rst,
  input  logic    enable,
  pixel_if.sink   in,
  pixel_if.source out
);

  import pixel_pkg::*;

  typedef logic [8:0] node_t;

  localparam node_t NODES [0:8] = '{9'd0, 9'd99, 9'd136, 9'd164, 9'd186, 9'd206, 9'd224, 9'd240, 9'd255};

  function automatic sample_t curve(input sample_t value);
    node_t              low, high;
    logic signed [9:0]  rise;
    logic signed [15:0] part;
    low  = NODES[value[7:5]];
    high = NODES[value[7:5] + 4'd1];
    rise = $signed({1'b0, high}) - $signed({1'b0, low});
    part = rise * $signed({1'b0, value[4:0]});
    return sample_t'(low + (part >>> 5));
  endfunction

  rgb_t curved;

  always_comb begin
    curved = in.beat.pixel;
    if (enable) begin
      curved.r = curve(in.beat.pixel.r);
      curved.g = curve(in.beat.pixel.g);
      curved.b = curve(in.beat.pixel.b);
    end
  end

  logic  valid_q;
  beat_t beat_q;

  assign in.ready  = out.ready || !valid_q;
  assign out.valid = valid_q;
  assign out.beat  = beat_q;

  always_ff @(posedge clk or posedge rst)
    if (rst) begin
      valid_q <= 1'b0;
      beat_q  <= '0;
    end else if (in.ready) begin
      valid_q <= in.valid;
      if (in.valid) begin
        beat_q       <= in.beat;
        beat_q.pixel <= curved;
      end
    end

endmodule
