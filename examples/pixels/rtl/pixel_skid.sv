// Breaks the path of ready: a beat that comes while the output stands is kept aside.
module pixel_skid (
  input  logic    clk,
  input  logic    rst,
  pixel_if.sink   in,
  pixel_if.source out
);

  import pixel_pkg::*;

  typedef enum logic [1:0] {EMPTY, ONE, TWO} fill_t;

  fill_t fill;
  beat_t front, aside;
  logic  take, give;

  assign take      = in.valid && in.ready;
  assign give      = out.valid && out.ready;
  assign in.ready  = fill != TWO;
  assign out.valid = fill != EMPTY;
  assign out.beat  = front;

  always_ff @(posedge clk or posedge rst)
    if (rst) begin
      fill  <= EMPTY;
      front <= '0;
      aside <= '0;
    end else
      unique case (fill)
        EMPTY:
          if (take) begin
            front <= in.beat;
            fill  <= ONE;
          end
        ONE:
          case ({take, give})
            2'b11: front <= in.beat;
            2'b10: begin
              aside <= in.beat;
              fill  <= TWO;
            end
            2'b01: fill <= EMPTY;
            default: ;
          endcase
        TWO:
          if (give) begin
            front <= aside;
            fill  <= ONE;
          end
        default: fill <= EMPTY;
      endcase

endmodule
