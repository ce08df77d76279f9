// Registers, latches, tristates and their controls.

// prove: a plain register
module reg_plain (input clk, input [3:0] d, output reg [3:0] q);
  always @(posedge clk) q <= d;
endmodule

// prove: a register on the falling edge
module reg_falling (input clk, input [3:0] d, output reg [3:0] q);
  always @(negedge clk) q <= d;
endmodule

// prove: both edges of one clock in one module
module reg_two_edges (input clk, input [3:0] d, output reg [3:0] p, n);
  always @(posedge clk) p <= d;
  always @(negedge clk) n <= p;
endmodule

// prove: a register with an enable
module reg_enable (input clk, en, input [3:0] d, output reg [3:0] q);
  always @(posedge clk) if (en) q <= d;
endmodule

// prove: an enable written as a feedback
module reg_feedback (input clk, en, input [3:0] d, output reg [3:0] q);
  always @(posedge clk) q <= en ? d : q;
endmodule

// prove: an enable for each byte
module reg_byte_enable (input clk, input [1:0] en, input [15:0] d, output reg [15:0] q);
  always @(posedge clk) begin
    if (en[0]) q[7:0] <= d[7:0];
    if (en[1]) q[15:8] <= d[15:8];
  end
endmodule

// prove: a synchronous reset, low and high
module reg_sync_reset (input clk, rst, rst_n, input [3:0] d, output reg [3:0] a, b);
  always @(posedge clk) if (rst) a <= 4'd5; else a <= d;
  always @(posedge clk) if (!rst_n) b <= 4'd10; else b <= d;
endmodule

// prove: a synchronous reset above an enable, and below one
module reg_reset_enable (input clk, rst, en, input [3:0] d, output reg [3:0] a, b);
  always @(posedge clk) if (rst) a <= 0; else if (en) a <= d;
  always @(posedge clk) if (en) if (rst) b <= 0; else b <= d;
endmodule

// prove: an asynchronous reset, active high
module reg_async_high (input clk, rst, input [3:0] d, output reg [3:0] q);
  always @(posedge clk or posedge rst) if (rst) q <= 4'd6; else q <= d;
endmodule

// prove: an asynchronous reset, active low, with an enable
module reg_async_low (input clk, rst_n, en, input [3:0] d, output reg [3:0] q);
  always @(posedge clk or negedge rst_n) if (!rst_n) q <= 4'd0; else if (en) q <= d;
endmodule

// prove: the reset written as a comparison
module reg_async_compare (input clk, rst_n, input d, output reg q, p);
  always @(posedge clk or negedge rst_n) if (rst_n == 1'b0) q <= 1'b1; else q <= d;
  always @(posedge clk, negedge rst_n) if (~rst_n) p <= 1'b0; else p <= ~d;
endmodule

// simulate: an asynchronous set and reset, the reset is stronger
module reg_set_reset (input clk, rst, set, d, output reg q);
  always @(posedge clk or posedge rst or posedge set)
    if (rst) q <= 1'b0;
    else if (set) q <= 1'b1;
    else q <= d;
endmodule

// simulate: set and reset of single bits by one value
module reg_mixed_reset (input clk, rst, set, input [3:0] d, output reg [3:0] q);
  always @(posedge clk or posedge rst or posedge set)
    if (rst) q <= 4'b0101;
    else if (set) q <= 4'b0011;
    else q <= d;
endmodule

// simulate: an asynchronous load of data
module reg_async_load (input clk, load, input [3:0] v, d, output reg [3:0] q);
  always @(posedge clk or posedge load) if (load) q <= v; else q <= d;
endmodule

// prove: one process with resettable and plain registers
module reg_some_reset (input clk, rst, input [3:0] d, output reg [3:0] a, b);
  always @(posedge clk) begin
    b <= d;
    if (rst) a <= 0;
    else a <= b;
  end
endmodule

// prove: a counter with load and wrap
module counter (input clk, rst, load, up, input [3:0] d, output reg [3:0] q, output wrap);
  assign wrap = up ? &q : ~|q;
  always @(posedge clk)
    if (rst) q <= 0;
    else if (load) q <= d;
    else if (up) q <= q + 1;
    else q <= q - 1;
endmodule

// prove: a gray counter
module counter_gray (input clk, rst, output reg [3:0] b, output [3:0] g);
  assign g = b ^ (b >> 1);
  always @(posedge clk or posedge rst) if (rst) b <= 0; else b <= b + 1;
endmodule

// prove: a linear feedback shift register
module lfsr (input clk, rst, output reg [7:0] q);
  always @(posedge clk) if (rst) q <= 8'd1; else q <= {q[6:0], q[7] ^ q[5] ^ q[4] ^ q[3]};
endmodule

// simulate: power-up values from initial constructs and declarations
module power_up (input clk, en, output reg [3:0] a, b, output c);
  reg t = 1'b1;
  initial begin
    a = 4'd3;
    b = 4'd12;
  end
  assign c = t;
  always @(posedge clk) if (en) begin
    a <= a + 1;
    b <= b - 1;
    t <= ~t;
  end
endmodule

// simulate: a power-up value computed by a loop
module power_up_loop (input clk, output reg [7:0] q);
  integer i;
  initial for (i = 0; i < 8; i = i + 1) q[i] = (i % 3 == 0);
  always @(posedge clk) q <= {q[6:0], q[7]};
endmodule

// simulate: a clock that is an expression
module gated_clock (input clk, en, input [3:0] d, output reg [3:0] q);
  wire gated = clk & en;
  always @(posedge gated) q <= d;
endmodule

// simulate: a register that clocks another one
module ripple_clock (input clk, rst, output reg a, b);
  always @(posedge clk or posedge rst) if (rst) a <= 0; else a <= ~a;
  always @(posedge a or posedge rst) if (rst) b <= 0; else b <= ~b;
endmodule

// simulate: two clocks
module two_clocks (input clk, clock, input [3:0] d, output reg [3:0] a, b);
  always @(posedge clk) a <= d;
  always @(posedge clock) b <= a;
endmodule

// simulate: a latch from a missing branch
module latch_if (input en, input [3:0] d, output reg [3:0] q);
  always @* if (en) q = d;
endmodule

// simulate: a transparent-low latch with a reset
module latch_reset (input en_n, rst, input [3:0] d, output reg [3:0] q);
  always @* if (rst) q = 0; else if (!en_n) q = d;
endmodule

// simulate: a latch from an incomplete case
module latch_case (input [1:0] s, input [3:0] a, b, output reg [3:0] q);
  always @*
    case (s)
      2'd1: q = a;
      2'd2: q = b;
    endcase
endmodule

// simulate: latches for some bits only
module latch_bits (input [1:0] en, input [3:0] d, output reg [3:0] q);
  always @* begin
    q[0] = d[0];
    if (en[0]) q[2:1] = d[2:1];
    if (en[1]) q[3] = d[3];
  end
endmodule

// simulate: a latch written by an explicit list
module latch_list (input en, input d, output reg q);
  always @(en or d) if (en) q <= d;
endmodule

// simulate: two latches that make a register
module latch_pair (input clk, d, output reg q);
  reg m;
  always @* if (!clk) m = d;
  always @* if (clk) q = m;
endmodule

// simulate: a continuous tristate
module tristate_assign (input en, input [3:0] d, output [3:0] y);
  assign y = en ? d : 4'bz;
endmodule

// simulate: two drivers on one bus
module tristate_bus (input s, input [3:0] a, b, output [3:0] y);
  assign y = s ? a : 4'bzzzz;
  assign y = s ? 4'bzzzz : b;
endmodule

// simulate: a tristate in a process
module tristate_process (input en, input [3:0] d, output reg [3:0] y);
  always @* if (en) y = d; else y = 4'bz;
endmodule

// simulate: single bits float
module tristate_bits (input [3:0] en, d, output [3:0] y);
  assign y[0] = en[0] ? d[0] : 1'bz;
  assign y[1] = en[1] ? 1'bz : d[1];
  assign y[3:2] = &en[3:2] ? d[3:2] : 2'bz;
endmodule

// simulate: a bidirectional port
module tristate_inout (input en, input [3:0] d, inout [3:0] pad, output [3:0] seen);
  assign pad = en ? d : 4'bz;
  assign seen = en ? pad : 4'd0;
endmodule

// simulate: an enable that is an expression of a case
module tristate_case (input [1:0] s, input [3:0] a, b, output reg [3:0] y);
  always @*
    case (s)
      2'd0: y = a;
      2'd1: y = b;
      default: y = 4'bz;
    endcase
endmodule

// simulate: a state machine in two processes
module fsm_two (input clk, rst, go, stop, output busy, done);
  localparam IDLE = 2'd0, RUN = 2'd1, LAST = 2'd2;
  reg [1:0] state, next;
  assign busy = state == RUN;
  assign done = state == LAST;
  always @* begin
    next = state;
    case (state)
      IDLE: if (go) next = RUN;
      RUN: if (stop) next = LAST;
      LAST: next = IDLE;
      default: next = IDLE;
    endcase
  end
  always @(posedge clk) if (rst) state <= IDLE; else state <= next;
endmodule

// simulate: a state machine in one process with registered outputs
module fsm_one (input clk, rst, input [1:0] in, output reg [2:0] out);
  reg [2:0] state;
  always @(posedge clk or posedge rst)
    if (rst) begin
      state <= 3'b001;
      out <= 0;
    end else
      case (state)
        3'b001: begin out <= in; if (in == 3) state <= 3'b010; end
        3'b010: begin out <= 3'd7; state <= in[0] ? 3'b100 : 3'b010; end
        3'b100: begin out <= {in, 1'b1}; state <= 3'b001; end
        default: state <= 3'b001;
      endcase
endmodule

// prove: registers in branches that hold parts of themselves
module reg_parts (input clk, input [1:0] s, input [7:0] d, output reg [7:0] q);
  always @(posedge clk)
    case (s)
      2'd0: q[3:0] <= d[3:0];
      2'd1: q[7:4] <= d[7:4];
      2'd2: q <= {q[3:0], q[7:4]};
    endcase
endmodule

// simulate: a memory with a registered read
module memory_registered (input clk, we, input [2:0] wa, ra, input [3:0] d, output reg [3:0] q);
  reg [3:0] m [0:7];
  always @(posedge clk) begin
    if (we) m[wa] <= d;
    q <= m[ra];
  end
endmodule

// simulate: a memory read by a function
module memory_function (input clk, we, input [2:0] wa, ra, input [3:0] d, output reg [3:0] y);
  reg [3:0] m [0:7];
  integer i;
  initial for (i = 0; i < 8; i = i + 1) m[i] = i;
  function [3:0] look(input [2:0] at);
    look = m[at] + 1;
  endfunction
  always @(posedge clk) begin
    if (we) m[wa] <= d;
    y <= look(ra);
  end
endmodule

// simulate: a memory written by a task
module memory_task (input clk, we, input [2:0] wa, ra, input [3:0] d, output [3:0] y);
  reg [3:0] m [0:7];
  integer i;
  initial for (i = 0; i < 8; i = i + 1) m[i] = 15 - i;
  task store(input [2:0] at, input [3:0] v);
    if (we) m[at] <= v;
  endtask
  always @(posedge clk) store(wa, d);
  assign y = m[ra];
endmodule
