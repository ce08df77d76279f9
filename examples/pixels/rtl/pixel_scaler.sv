// Changes the number of pixels in a line: two or three are averaged to one, or each is given twice with a value between
// it and the next. A short group at the end of a line is given as it is.
module pixel_scaler (
  input  logic              clk,
  input  logic              rst,
  input  pixel_pkg::scale_t scale,
  pixel_if.sink             in,
  pixel_if.source           out
);

  import pixel_pkg::*;

  typedef struct packed {
    logic [9:0] r;
    logic [9:0] g;
    logic [9:0] b;
  } sums_t;

  typedef enum logic [1:0] {COLLECT, GIVE, GIVE_TWICE, GIVE_BETWEEN} state_t;

  state_t     state, state_next;
  sums_t      sums, sums_next;
  logic [1:0] count, count_next;
  logic       first_q, last_q;
  rgb_t       previous;
  logic       take, give;
  logic       complete;

  function automatic sums_t add(input sums_t s, input rgb_t p);
    add.r = s.r + p.r;
    add.g = s.g + p.g;
    add.b = s.b + p.b;
  endfunction

  // A third is 85.33 of 256
  function automatic sample_t divided(input logic [9:0] sum, input logic [1:0] by);
    logic [17:0] third;
    third = sum * 8'd85 + {8'd0, sum} / 3;
    case (by)
      2'd1:    divided = sum[7:0];
      2'd2:    divided = sum[8:1];
      default: divided = third[15:8];
    endcase
  endfunction

  function automatic rgb_t average(input sums_t s, input logic [1:0] by);
    return '{r: divided(s.r, by), g: divided(s.g, by), b: divided(s.b, by)};
  endfunction

  function automatic rgb_t between(input rgb_t p, input rgb_t q);
    sums_t s;
    s = add(add('0, p), q);
    return average(s, 2'd2);
  endfunction

  logic [1:0] group;

  always_comb
    case (scale)
      SCALE_HALF:  group = 2'd2;
      SCALE_THIRD: group = 2'd3;
      default:     group = 2'd1;
    endcase

  assign take     = in.valid && in.ready;
  assign give     = out.valid && out.ready;
  assign complete = count + 2'd1 >= group || in.beat.last;

  assign in.ready  = state == COLLECT;
  assign out.valid = state != COLLECT;

  always_comb begin
    state_next = state;
    sums_next  = sums;
    count_next = count;
    case (state)
      COLLECT:
        if (take) begin
          sums_next  = count == 2'd0 ? add('0, in.beat.pixel) : add(sums, in.beat.pixel);
          count_next = count + 2'd1;
          if (complete) state_next = scale == SCALE_DOUBLE ? GIVE_BETWEEN : GIVE;
        end
      GIVE_BETWEEN:
        if (give) state_next = GIVE_TWICE;
      GIVE, GIVE_TWICE:
        if (give) begin
          state_next = COLLECT;
          count_next = 2'd0;
        end
    endcase
  end

  always_ff @(posedge clk or posedge rst)
    if (rst) begin
      state    <= COLLECT;
      sums     <= '0;
      count    <= '0;
      first_q  <= 1'b0;
      last_q   <= 1'b0;
      previous <= BLACK;
    end else begin
      state <= state_next;
      sums  <= sums_next;
      count <= count_next;
      if (take) begin
        if (count == 2'd0) first_q <= in.beat.first;
        last_q <= in.beat.last;
      end
      if (state == GIVE_TWICE && give) previous <= out.beat.pixel;
    end

  always_comb begin
    out.beat.first = first_q && state != GIVE_TWICE;
    out.beat.last  = last_q && state != GIVE_BETWEEN;
    out.beat.pixel = state == GIVE_BETWEEN ? between(previous, average(sums, 2'd1)) : average(sums, count);
  end

endmodule
