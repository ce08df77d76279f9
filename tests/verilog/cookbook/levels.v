// Latches, and registers with asynchronous loads or several asynchronous terms. A simulation of a source acts on the
// edges of these terms and a register on their levels, so that they need a stimulus of their own. Behind "//=" stands what each bit becomes.

// A latch.
module latch (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 latch d=d[] gate=en
    always @* if (en) q = d;
endmodule

// A latch, open at the low level.
module latch_low (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 latch d=d[] gate=!en
    always @* if (!en) q = d;
endmodule

// A latch with a reset.
module latch_reset (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 latch d=d[] gate=en reset=rst
    always @* if (rst) q = 4'd0; else if (en) q = d;
endmodule

// A latch with a set.
module latch_set (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 latch d=d[] gate=en set=set
    always @* if (set) q = 4'hF; else if (en) q = d;
endmodule

// A latch that is reset to a constant.
module latch_constant (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 2 latch d=d[] gate=en reset=rst
    //= 2 latch d=d[] gate=en set=rst
    always @* if (rst) q = 4'b0101; else if (en) q = d;
endmodule

// A latch under two conditions.
module latch_nested (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 latch d=d[] gate=(en & e2)
    always @* if (en) if (e2) q = d;
endmodule

// A latch with two sources.
module latch_two_data (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 latch d=(en ? d[] : e[]) gate=(en | e2)
    always @* if (en) q = d; else if (e2) q = e;
endmodule

// A latch by an incomplete case.
module latch_case (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 latch d=? gate=?
    always @* case (sel) 2'd0: q = d; 2'd3: q = e; endcase
endmodule

// A latch for some of the bits.
module latch_part (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 2 latch d=d[] gate=en
    always @* begin q[1:0] = d[1:0]; if (en) q[3:2] = d[3:2]; end
endmodule

// A latch as a feedback of a net.
module latch_assign (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [3:0] q);
    //= 4 latch d=d[] gate=en
    assign q = en ? d : q;
endmodule

// A latch per bit, in a loop.
module latch_per_bit (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 latch d=d[] gate=e[]
    integer i;
    always @* for (i = 0; i < 4; i = i + 1) if (e[i]) q[i] = d[i];
endmodule

// Reset over set.
module both_reset_first (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk set=(set & !rst) reset=rst
    always @(posedge clk or posedge rst or posedge set)
    if (rst) q <= 4'd0; else if (set) q <= 4'hF; else q <= d;
endmodule

// Set over reset.
module both_set_first (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk set=set reset=(rst & !set)
    always @(posedge clk or posedge rst or posedge set)
    if (set) q <= 4'hF; else if (rst) q <= 4'd0; else q <= d;
endmodule

// Both active low.
module both_low (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk set=(!set & !!rst) reset=!rst
    always @(posedge clk or negedge rst or negedge set)
    if (!rst) q <= 4'd0; else if (!set) q <= 4'hF; else q <= d;
endmodule

// Two resets.
module both_resets (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk reset=(set | rst)
    always @(posedge clk or posedge rst or posedge set)
    if (rst) q <= 4'd0; else if (set) q <= 4'd0; else q <= d;
endmodule

// Two resets in one condition.
module both_in_one (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk reset=(rst | set)
    always @(posedge clk or posedge rst or posedge set)
    if (rst || set) q <= 4'd0; else q <= d;
endmodule

// Two constants.
module both_constants (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 1 dff d=d[] clk=clk reset=(set | rst)
    //= 1 dff d=d[] clk=clk set=(set & !rst) reset=rst
    //= 1 dff d=d[] clk=clk set=(set | rst)
    //= 1 dff d=d[] clk=clk set=rst reset=(set & !rst)
    always @(posedge clk or posedge rst or posedge set)
    if (rst) q <= 4'b0011; else if (set) q <= 4'b0101; else q <= d;
endmodule

// Both, and an enable.
module both_enable (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(en ? d[] : q[]) clk=clk set=(set & !rst) reset=rst
    always @(posedge clk or posedge rst or posedge set)
    if (rst) q <= 4'd0; else if (set) q <= 4'hF; else if (en) q <= d;
endmodule

// A load of a signal.
module load (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk aload=e2 adata=e[]
    always @(posedge clk or posedge e2)
    if (e2) q <= e; else q <= d;
endmodule

// A load under a reset.
module load_under_reset (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk reset=rst aload=(e2 & !rst) adata=e[]
    always @(posedge clk or posedge rst or posedge e2)
    if (rst) q <= 4'd0; else if (e2) q <= e; else q <= d;
endmodule

// A load over a reset.
module load_over_reset (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk reset=(rst & !e2) aload=e2 adata=e[]
    always @(posedge clk or posedge rst or posedge e2)
    if (e2) q <= e; else if (rst) q <= 4'd0; else q <= d;
endmodule

// A reset that loads one bit of a signal.
module load_bits (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 1 dff d=d[] clk=clk aload=rst adata=e[]
    //= 2 dff d=d[] clk=clk reset=rst
    //= 1 dff d=d[] clk=clk set=rst
    always @(posedge clk or posedge rst)
    if (rst) q <= {3'b010, e[0]}; else q <= d;
endmodule

// All of them, in two groups: the sources of the second act on no edge when a term that had masked another one falls,
// and some of their netlists act on the edge of one term before it masks the other.
module all_levels (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [59:0] q);
    latch u_latch (clk, c, rst, set, en, e2, sel, d, e, q[3:0]);
    latch_low u_latch_low (clk, c, rst, set, en, e2, sel, d, e, q[7:4]);
    latch_reset u_latch_reset (clk, c, rst, set, en, e2, sel, d, e, q[11:8]);
    latch_set u_latch_set (clk, c, rst, set, en, e2, sel, d, e, q[15:12]);
    latch_constant u_latch_constant (clk, c, rst, set, en, e2, sel, d, e, q[19:16]);
    latch_nested u_latch_nested (clk, c, rst, set, en, e2, sel, d, e, q[23:20]);
    latch_two_data u_latch_two_data (clk, c, rst, set, en, e2, sel, d, e, q[27:24]);
    latch_case u_latch_case (clk, c, rst, set, en, e2, sel, d, e, q[31:28]);
    latch_part u_latch_part (clk, c, rst, set, en, e2, sel, d, e, q[35:32]);
    latch_assign u_latch_assign (clk, c, rst, set, en, e2, sel, d, e, q[39:36]);
    latch_per_bit u_latch_per_bit (clk, c, rst, set, en, e2, sel, d, e, q[43:40]);
    both_resets u_both_resets (clk, c, rst, set, en, e2, sel, d, e, q[47:44]);
    both_in_one u_both_in_one (clk, c, rst, set, en, e2, sel, d, e, q[51:48]);
    load u_load (clk, c, rst, set, en, e2, sel, d, e, q[55:52]);
    load_bits u_load_bits (clk, c, rst, set, en, e2, sel, d, e, q[59:56]);
endmodule

module all_levels_apart (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [27:0] q);
    both_reset_first u_both_reset_first (clk, c, rst, set, en, e2, sel, d, e, q[3:0]);
    both_set_first u_both_set_first (clk, c, rst, set, en, e2, sel, d, e, q[7:4]);
    both_low u_both_low (clk, c, rst, set, en, e2, sel, d, e, q[11:8]);
    both_constants u_both_constants (clk, c, rst, set, en, e2, sel, d, e, q[15:12]);
    both_enable u_both_enable (clk, c, rst, set, en, e2, sel, d, e, q[19:16]);
    load_under_reset u_load_under_reset (clk, c, rst, set, en, e2, sel, d, e, q[23:20]);
    load_over_reset u_load_over_reset (clk, c, rst, set, en, e2, sel, d, e, q[27:24]);
endmodule
