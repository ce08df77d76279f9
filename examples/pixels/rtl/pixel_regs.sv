// The settings, written as bytes, and the values that can be read. A new setting takes effect with the first pixel of an
// image.
module pixel_regs (
  input  logic                clk,
  input  logic                rst,
  input  logic                write,
  input  logic [3:0]          addr,
  input  logic [7:0]          wdata,
  output logic [15:0]         rdata,
  input  logic                start,
  output pixel_pkg::config_t  settings,
  input  pixel_pkg::summary_t arriving,
  input  pixel_pkg::summary_t leaving,
  output logic [2:0]          bin,
  input  logic [15:0]         bin_count
);

  import pixel_pkg::*;

  localparam config_t DEFAULTS = '{
    enable: 1'b1, filter: FILTER_NONE, border: EDGE_REPEAT, scale: SCALE_NONE, gamma: 1'b0,
    brightness: 8'sd0, contrast: 8'd64, saturation: 8'd64
  };

  config_t pending;

  always_ff @(posedge clk or posedge rst)
    if (rst) begin
      pending <= DEFAULTS;
      bin     <= '0;
    end else if (write)
      case (addr)
        4'd0: begin
          pending.enable <= wdata[0];
          pending.gamma  <= wdata[1];
          pending.border <= border_t'(wdata[2]);
          pending.scale  <= scale_t'(wdata[4:3]);
        end
        4'd1: pending.filter     <= filter_t'(wdata[2:0]);
        4'd2: pending.brightness <= wdata;
        4'd3: pending.contrast   <= wdata;
        4'd4: pending.saturation <= wdata;
        4'd5: bin                <= wdata[2:0];
        default: ;
      endcase

  always_ff @(posedge clk or posedge rst)
    if (rst) settings <= DEFAULTS;
    else if (start) settings <= pending;

  always_comb
    case (addr)
      4'd0: rdata = {11'd0, pending.scale, pending.border, pending.gamma, pending.enable};
      4'd1: rdata = {13'd0, pending.filter};
      4'd2: rdata = 16'(pending.brightness);
      4'd3: rdata = {8'd0, pending.contrast};
      4'd4: rdata = {8'd0, pending.saturation};
      4'd5: rdata = bin_count;
      4'd6: rdata = arriving.pixels;
      4'd7: rdata = arriving.lines;
      4'd8: rdata = {arriving.brightest, arriving.darkest};
      4'd9: rdata = leaving.pixels;
      4'd10: rdata = leaving.lines;
      4'd11: rdata = {leaving.brightest, leaving.darkest};
      default: rdata = '0;
    endcase

endmodule
