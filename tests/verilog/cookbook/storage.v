// Ways to write registers and tristate buffers. Behind "//=" stands what each bit becomes.

// A rising edge.
module edge_rise (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk
    always @(posedge clk) q <= d;
endmodule

// A falling edge.
module edge_fall (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=!clk
    always @(negedge clk) q <= d;
endmodule

// The edge of a net that logic drives.
module edge_derived (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=k
    wire k = ~clk;
    always @(posedge k) q <= d;
endmodule

// Two inversions are none.
module edge_double_inverse (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=!k
    wire k = ~clk;
    always @(negedge k) q <= d;
endmodule

// A register per process, at both edges.
module edge_two_processes (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 2 dff d=d[] clk=!clk
    //= 2 dff d=d[] clk=clk
    always @(posedge clk) q[1:0] <= d[1:0];
    always @(negedge clk) q[3:2] <= d[3:2];
endmodule

// Bits of one vector on two clocks.
module edge_two_clocks (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 3 dff d=d[] clk=c
    //= 1 dff d=d[] clk=clk
    always @(posedge clk) q[0] <= d[0];
    always @(posedge c) q[3:1] <= d[3:1];
endmodule

// A clock behind a gate.
module gated_and (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=k
    wire k = clk & en;
    always @(posedge k) q <= d;
endmodule

// A clock that a register makes.
module divided (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 1 dff d=!half clk=clk init=0
    //= 4 dff d=d[] clk=half
    reg half;
    initial half = 0;
    always @(posedge clk) half <= ~half;
    always @(posedge half) q <= d;
endmodule

// An enable.
module enable (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(en ? d[] : q[]) clk=clk
    always @(posedge clk) if (en) q <= d;
endmodule

// An enable that is active low.
module enable_low (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(!en ? d[] : q[]) clk=clk
    always @(posedge clk) if (!en) q <= d;
endmodule

// The enable in the other branch.
module enable_else (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(en ? q[] : d[]) clk=clk
    always @(posedge clk) if (en) q <= q; else q <= d;
endmodule

// Nested enables.
module enable_nested (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(en ? (e2 ? d[] : q[]) : q[]) clk=clk
    always @(posedge clk) if (en) if (e2) q <= d;
endmodule

// Combined enables.
module enable_both (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=((en & e2) ? d[] : q[]) clk=clk
    always @(posedge clk) if (en && e2) q <= d;
endmodule

// Either of two enables.
module enable_either (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=((en | e2) ? d[] : q[]) clk=clk
    always @(posedge clk) if (en || e2) q <= d;
endmodule

// Two sources, the first with priority.
module enable_priority (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(en ? d[] : (e2 ? e[] : q[])) clk=clk
    always @(posedge clk) if (en) q <= d; else if (e2) q <= e;
endmodule

// The last assignment counts.
module enable_override (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(e2 ? e[] : (en ? d[] : q[])) clk=clk
    always @(posedge clk) begin if (en) q <= d; if (e2) q <= e; end
endmodule

// Enables by case.
module enable_case (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=? clk=clk
    always @(posedge clk) case (sel) 2'd1: q <= d; 2'd2: q <= e; endcase
endmodule

// A case that always assigns.
module enable_case_default (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=? clk=clk
    always @(posedge clk) case (sel) 2'd1: q <= d; 2'd2: q <= e; default: q <= 4'd0; endcase
endmodule

// Enables by a case with priority.
module enable_casez (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=? clk=clk
    always @(posedge clk) casez ({en, e2}) 2'b1?: q <= d; 2'b01: q <= e; endcase
endmodule

// An enable in an expression.
module enable_ternary (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(en ? d[] : q[]) clk=clk
    always @(posedge clk) q <= en ? d : q;
endmodule

// A vector as a condition.
module enable_vector (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=((sel[] | sel[]) ? d[] : q[]) clk=clk
    always @(posedge clk) if (sel) q <= d;
endmodule

// An enable per bit.
module enable_per_bit (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(e[] ? d[] : q[]) clk=clk
    integer i;
    always @(posedge clk) for (i = 0; i < 4; i = i + 1) if (e[i]) q[i] <= d[i];
endmodule

// A condition on the register itself.
module enable_data (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 1 dff d=(rst ? 0 : (!? ? !q[] : 0)) clk=clk
    //= 3 dff d=(rst ? 0 : (!? ? ? : 0)) clk=clk
    always @(posedge clk) if (rst) q <= 4'd0; else if (q != 4'd9) q <= q + 4'd1; else q <= 4'd0;
endmodule

// An enable in a task.
module enable_return (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(en ? d[] : q[]) clk=clk
    task load; if (en) q <= d; endtask
    always @(posedge clk) load;
endmodule

// A block that is left.
module enable_disable (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(!en ? q[] : d[]) clk=clk
    always @(posedge clk) begin : b if (!en) disable b; q <= d; end
endmodule

// A reset at the edge.
module sync_reset (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(rst ? 0 : d[]) clk=clk
    always @(posedge clk) if (rst) q <= 4'd0; else q <= d;
endmodule

// A set at the edge.
module sync_set (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(set ? 1 : d[]) clk=clk
    always @(posedge clk) if (set) q <= 4'hF; else q <= d;
endmodule

// A reset at the edge, active low.
module sync_reset_low (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(!rst ? 0 : d[]) clk=clk
    always @(posedge clk) if (!rst) q <= 4'd0; else q <= d;
endmodule

// Both, the reset with priority.
module sync_set_reset (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(rst ? 0 : (set ? 1 : d[])) clk=clk
    always @(posedge clk) if (rst) q <= 4'd0; else if (set) q <= 4'hF; else q <= d;
endmodule

// A load at the edge.
module sync_load (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(e2 ? e[] : (en ? d[] : q[])) clk=clk
    always @(posedge clk) if (e2) q <= e; else if (en) q <= d;
endmodule

// The reset does not wait for the enable.
module sync_reset_enable (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(rst ? 0 : (en ? d[] : q[])) clk=clk
    always @(posedge clk) if (rst) q <= 4'd0; else if (en) q <= d;
endmodule

// The reset as the last statement.
module sync_reset_last (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(rst ? 0 : (en ? d[] : q[])) clk=clk
    always @(posedge clk) begin if (en) q <= d; if (rst) q <= 4'd0; end
endmodule

// A reset to a constant of several bits.
module sync_constant (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 2 dff d=(rst ? 0 : d[]) clk=clk
    //= 2 dff d=(rst ? 1 : d[]) clk=clk
    always @(posedge clk) if (rst) q <= 4'b0110; else q <= d;
endmodule

// A reset.
module async_reset (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk reset=rst
    always @(posedge clk or posedge rst) if (rst) q <= 4'd0; else q <= d;
endmodule

// A reset that is active low.
module async_reset_low (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk reset=!rst
    always @(posedge clk or negedge rst) if (!rst) q <= 4'd0; else q <= d;
endmodule

// The reset's level as a comparison.
module async_reset_compare (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk reset=!rst
    always @(posedge clk or negedge rst) if (rst == 1'b0) q <= 4'd0; else q <= d;
endmodule

// A set.
module async_set (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk set=set
    always @(posedge clk or posedge set) if (set) q <= 4'hF; else q <= d;
endmodule

// A set that is active low.
module async_set_low (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk set=!set
    always @(posedge clk or negedge set) if (~set) q <= 4'hF; else q <= d;
endmodule

// A reset to a constant: some bits are set.
module async_constant (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 2 dff d=d[] clk=clk reset=rst
    //= 2 dff d=d[] clk=clk set=rst
    always @(posedge clk or posedge rst) if (rst) q <= 4'b1010; else q <= d;
endmodule

// A reset to a parameter.
module async_parameter (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 2 dff d=d[] clk=clk reset=rst
    //= 2 dff d=d[] clk=clk set=rst
    parameter [3:0] INIT = 4'd3;
    always @(posedge clk or posedge rst) if (rst) q <= INIT; else q <= d;
endmodule

// A reset and an enable.
module async_enable (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(en ? d[] : q[]) clk=clk reset=rst
    always @(posedge clk or posedge rst) if (rst) q <= 4'd0; else if (en) q <= d;
endmodule

// A reset of each kind.
module async_then_sync (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(set ? 1 : d[]) clk=clk reset=rst
    always @(posedge clk or posedge rst) if (rst) q <= 4'd0; else if (set) q <= 4'hF; else q <= d;
endmodule

// A reset with the falling edge.
module async_falling (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=!clk reset=rst
    always @(negedge clk or posedge rst) if (rst) q <= 4'd0; else q <= d;
endmodule

// A reset that logic makes.
module async_derived (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk reset=r
    wire r = rst & set;
    always @(posedge clk or posedge r) if (r) q <= 4'd0; else q <= d;
endmodule

// A reset of some bits: the others hold.
module async_part (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 2 dff d=(rst ? q[] : d[]) clk=clk
    //= 2 dff d=d[] clk=clk reset=rst
    always @(posedge clk or posedge rst) if (rst) q[1:0] <= 2'd0; else q <= d;
endmodule

// Registers with and without reset in a process of their own.
module async_in_block (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 2 dff d=d[] clk=clk
    //= 2 dff d=d[] clk=clk reset=rst
    //= 2 dff d=p[] clk=clk
    reg [1:0] p;
    always @(posedge clk or posedge rst) if (rst) p <= 2'd0; else p <= d[1:0];
    always @(posedge clk) q <= {p, d[3:2]};
endmodule

// A counter with a reset.
module async_counter (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 1 dff d=(en ? !q[] : q[]) clk=clk reset=rst
    //= 3 dff d=(en ? ? : q[]) clk=clk reset=rst
    always @(posedge clk or posedge rst) if (rst) q <= 4'd0; else if (en) q <= q + 4'd1;
endmodule

// A shift register.
module async_shift (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 1 dff d=d[] clk=clk reset=!rst
    //= 3 dff d=q[] clk=clk reset=!rst
    always @(posedge clk or negedge rst) if (!rst) q <= 4'd0; else q <= {q[2:0], d[0]};
endmodule

// Slices under conditions of their own.
module part_slices (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 2 dff d=(e2 ? d[] : q[]) clk=clk
    //= 2 dff d=(en ? d[] : q[]) clk=clk
    always @(posedge clk) begin if (en) q[1:0] <= d[1:0]; if (e2) q[3:2] <= d[3:2]; end
endmodule

// A single bit of a vector.
module part_bit (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 1 dff d=(en ? 1 : d[]) clk=clk
    //= 3 dff d=d[] clk=clk
    always @(posedge clk) begin q <= d; if (en) q[2] <= 1'b1; end
endmodule

// A bit that an index chooses.
module part_index (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(en ? (? ? d[] : q[]) : q[]) clk=clk
    always @(posedge clk) if (en) q[sel] <= d[0];
endmodule

// A concatenation as the target.
module part_concat (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk
    always @(posedge clk) {q[0], q[3:1]} <= d;
endmodule

// A slice over the whole.
module part_overlap (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 2 dff d=(en ? e[] : d[]) clk=clk
    //= 2 dff d=d[] clk=clk
    always @(posedge clk) begin q <= d; if (en) q[2:1] <= e[2:1]; end
endmodule

// A loop.
module loop_reverse (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk
    integer i;
    always @(posedge clk) for (i = 0; i < 4; i = i + 1) q[i] <= d[3 - i];
endmodule

// A pipeline in a loop.
module loop_chain (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 1 dff d=d[] clk=clk
    //= 3 dff d=q[] clk=clk
    integer i;
    always @(posedge clk) begin q[0] <= d[0]; for (i = 1; i < 4; i = i + 1) q[i] <= q[i - 1]; end
endmodule

// Registers in a generate loop.
module loop_generate (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(d[] ^ e[]) clk=clk
    genvar g;
    generate for (g = 0; g < 4; g = g + 1) begin : b always @(posedge clk) q[g] <= d[g] ^ e[g]; end endgenerate
endmodule

// The next value by a function.
module function_next (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 1 dff d=(rst ? 0 : !q[]) clk=clk
    //= 3 dff d=(rst ? 0 : (en ? ? : ?)) clk=clk
    function [3:0] next(input [3:0] a, input up); next = up ? a + 4'd1 : a - 4'd1; endfunction
    always @(posedge clk) if (rst) q <= 4'd0; else q <= next(q, en);
endmodule

// Assigned by a task.
module task_next (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(d[] ^ e[]) clk=clk reset=rst
    task step(input [3:0] a); q <= a ^ e; endtask
    always @(posedge clk or posedge rst) if (rst) q <= 4'd0; else step(d);
endmodule

// A variable that is no register.
module blocking_variable (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(d[] & e[]) clk=clk
    reg [3:0] t;
    always @(posedge clk) begin t = d & e; q <= t; end
endmodule

// A variable that is read first.
module blocking_register (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk
    //= 4 dff d=t[] clk=clk
    reg [3:0] t;
    always @(posedge clk) begin q <= t; t = d; end
endmodule

// An array of registers.
module memory_registers (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(w[][] ^ w[][]) clk=clk
    //= 4 dff d=d[] clk=clk
    //= 4 dff d=w[][] clk=clk
    reg [3:0] w [0:1];
    always @(posedge clk) begin w[0] <= d; w[1] <= w[0]; q <= w[0] ^ w[1]; end
endmodule

// A value to begin with.
module initial_value (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 2 dff d=(en ? d[] : q[]) clk=clk init=0
    //= 2 dff d=(en ? d[] : q[]) clk=clk init=1
    initial q = 4'b1001;
    always @(posedge clk) if (en) q <= d;
endmodule

// A value in the declaration.
module declared_value (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [3:0] q);
    //= 1 dff d=!r[] clk=clk init=1
    //= 2 dff d=? clk=clk init=0
    //= 1 dff d=? clk=clk init=1
    reg [3:0] r = 4'd5;
    always @(posedge clk) r <= r + 4'd1;
    assign q = r;
endmodule

// An attribute of the user.
module preserved (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [3:0] q);
    //= 4 dff d=d[] clk=clk preserve
    (* preserve *) reg [3:0] r;
    always @(posedge clk) r <= d;
    assign q = r;
endmodule

// A register that holds a constant bit.
module constant_data (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 1 dff d=0 clk=clk
    //= 3 dff d=d[] clk=clk
    always @(posedge clk) q <= {d[3:1], 1'b0};
endmodule

// A register that toggles.
module self_toggle (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=(q[] ^ e[]) clk=clk init=0
    initial q = 0;
    always @(posedge clk) q <= q ^ e;
endmodule

// A register behind an output net.
module output_net (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [3:0] q);
    //= 4 dff d=d[] clk=clk
    reg [3:0] r;
    always @(posedge clk) r <= d;
    assign q = ~r;
endmodule

// A tristate buffer.
module tri_assign (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [3:0] q);
    //= 4 tri d=d[] en=en
    assign q = en ? d : 4'bz;
endmodule

// A tristate buffer, enabled low.
module tri_low (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [3:0] q);
    //= 4 tri d=d[] en=!en
    assign q = en ? 4'bz : d;
endmodule

// A tristate buffer in a process.
module tri_process (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 tri d=d[] en=en
    always @* if (en) q = d; else q = 4'bz;
endmodule

// A tristate buffer by case.
module tri_case (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 tri d=? en=?
    always @* case (sel) 2'd0: q = d; 2'd1: q = e; default: q = 4'bz; endcase
endmodule

// Two tristate buffers on one net.
module tri_two_drivers (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [3:0] q);
    //= 4 tri d=d[] en=?
    //= 4 tri d=e[] en=?
    assign q = (sel == 2'd0) ? d : 4'bz;
    assign q = (sel == 2'd1) ? e : 4'bz;
endmodule

// A tristate buffer per bit.
module tri_per_bit (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [3:0] q);
    //= 4 tri d=d[] en=e[]
    genvar g;
    generate for (g = 0; g < 4; g = g + 1) begin : b assign q[g] = e[g] ? d[g] : 1'bz; end endgenerate
endmodule

// A register in front of a tristate buffer.
module tri_register (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [3:0] q);
    //= 4 dff d=d[] clk=clk
    //= 4 tri d=r[] en=en
    reg [3:0] r;
    always @(posedge clk) r <= d;
    assign q = en ? r : 4'bz;
endmodule

// A register that is let go of at the edge.
module tri_registered (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk
    //= 1 dff d=en clk=clk init=0
    //= 4 tri d=q[] en=q[]~en
    always @(posedge clk) if (en) q <= d; else q <= 4'bz;
endmodule

// The same with a reset.
module tri_registered_reset (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 4 dff d=d[] clk=clk reset=rst
    //= 1 dff d=en clk=clk set=rst init=0
    //= 4 tri d=q[] en=q[]~en
    always @(posedge clk or posedge rst) if (rst) q <= 4'd0; else if (en) q <= d; else q <= 4'bz;
endmodule

// A register that its reset lets go of.
module tri_registered_float (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output reg [3:0] q);
    //= 1 dff d=1 clk=clk reset=rst init=0
    //= 4 dff d=d[] clk=clk
    //= 4 tri d=q[] en=q[]~en
    always @(posedge clk or posedge rst) if (rst) q <= 4'bz; else q <= d;
endmodule

// A buffer for some of the bits.
module tri_some_bits (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [3:0] q);
    //= 2 tri d=d[] en=en
    assign q[1:0] = d[1:0];
    assign q[3:2] = en ? d[3:2] : 2'bz;
endmodule

// Gates of the language.
module tri_gate (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [3:0] q);
    //= 2 tri d=!d[] en=!en
    //= 2 tri d=d[] en=en
    bufif1 b0 (q[0], d[0], en), b1 (q[1], d[1], en);
    notif0 b2 (q[2], d[2], en), b3 (q[3], d[3], en);
endmodule

// All of them, in groups: simulators are slow with wide vectors of parts.
module all_enables (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [99:0] q);
    edge_rise u_edge_rise (clk, c, rst, set, en, e2, sel, d, e, q[3:0]);
    edge_fall u_edge_fall (clk, c, rst, set, en, e2, sel, d, e, q[7:4]);
    edge_derived u_edge_derived (clk, c, rst, set, en, e2, sel, d, e, q[11:8]);
    edge_double_inverse u_edge_double_inverse (clk, c, rst, set, en, e2, sel, d, e, q[15:12]);
    edge_two_processes u_edge_two_processes (clk, c, rst, set, en, e2, sel, d, e, q[19:16]);
    edge_two_clocks u_edge_two_clocks (clk, c, rst, set, en, e2, sel, d, e, q[23:20]);
    gated_and u_gated_and (clk, c, rst, set, en, e2, sel, d, e, q[27:24]);
    divided u_divided (clk, c, rst, set, en, e2, sel, d, e, q[31:28]);
    enable u_enable (clk, c, rst, set, en, e2, sel, d, e, q[35:32]);
    enable_low u_enable_low (clk, c, rst, set, en, e2, sel, d, e, q[39:36]);
    enable_else u_enable_else (clk, c, rst, set, en, e2, sel, d, e, q[43:40]);
    enable_nested u_enable_nested (clk, c, rst, set, en, e2, sel, d, e, q[47:44]);
    enable_both u_enable_both (clk, c, rst, set, en, e2, sel, d, e, q[51:48]);
    enable_either u_enable_either (clk, c, rst, set, en, e2, sel, d, e, q[55:52]);
    enable_priority u_enable_priority (clk, c, rst, set, en, e2, sel, d, e, q[59:56]);
    enable_override u_enable_override (clk, c, rst, set, en, e2, sel, d, e, q[63:60]);
    enable_case u_enable_case (clk, c, rst, set, en, e2, sel, d, e, q[67:64]);
    enable_case_default u_enable_case_default (clk, c, rst, set, en, e2, sel, d, e, q[71:68]);
    enable_casez u_enable_casez (clk, c, rst, set, en, e2, sel, d, e, q[75:72]);
    enable_ternary u_enable_ternary (clk, c, rst, set, en, e2, sel, d, e, q[79:76]);
    enable_vector u_enable_vector (clk, c, rst, set, en, e2, sel, d, e, q[83:80]);
    enable_per_bit u_enable_per_bit (clk, c, rst, set, en, e2, sel, d, e, q[87:84]);
    enable_data u_enable_data (clk, c, rst, set, en, e2, sel, d, e, q[91:88]);
    enable_return u_enable_return (clk, c, rst, set, en, e2, sel, d, e, q[95:92]);
    enable_disable u_enable_disable (clk, c, rst, set, en, e2, sel, d, e, q[99:96]);
endmodule

module all_synchronous (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [31:0] q);
    sync_reset u_sync_reset (clk, c, rst, set, en, e2, sel, d, e, q[3:0]);
    sync_set u_sync_set (clk, c, rst, set, en, e2, sel, d, e, q[7:4]);
    sync_reset_low u_sync_reset_low (clk, c, rst, set, en, e2, sel, d, e, q[11:8]);
    sync_set_reset u_sync_set_reset (clk, c, rst, set, en, e2, sel, d, e, q[15:12]);
    sync_load u_sync_load (clk, c, rst, set, en, e2, sel, d, e, q[19:16]);
    sync_reset_enable u_sync_reset_enable (clk, c, rst, set, en, e2, sel, d, e, q[23:20]);
    sync_reset_last u_sync_reset_last (clk, c, rst, set, en, e2, sel, d, e, q[27:24]);
    sync_constant u_sync_constant (clk, c, rst, set, en, e2, sel, d, e, q[31:28]);
endmodule

module all_asynchronous (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [59:0] q);
    async_reset u_async_reset (clk, c, rst, set, en, e2, sel, d, e, q[3:0]);
    async_reset_low u_async_reset_low (clk, c, rst, set, en, e2, sel, d, e, q[7:4]);
    async_reset_compare u_async_reset_compare (clk, c, rst, set, en, e2, sel, d, e, q[11:8]);
    async_set u_async_set (clk, c, rst, set, en, e2, sel, d, e, q[15:12]);
    async_set_low u_async_set_low (clk, c, rst, set, en, e2, sel, d, e, q[19:16]);
    async_constant u_async_constant (clk, c, rst, set, en, e2, sel, d, e, q[23:20]);
    async_parameter u_async_parameter (clk, c, rst, set, en, e2, sel, d, e, q[27:24]);
    async_enable u_async_enable (clk, c, rst, set, en, e2, sel, d, e, q[31:28]);
    async_then_sync u_async_then_sync (clk, c, rst, set, en, e2, sel, d, e, q[35:32]);
    async_falling u_async_falling (clk, c, rst, set, en, e2, sel, d, e, q[39:36]);
    async_derived u_async_derived (clk, c, rst, set, en, e2, sel, d, e, q[43:40]);
    async_part u_async_part (clk, c, rst, set, en, e2, sel, d, e, q[47:44]);
    async_in_block u_async_in_block (clk, c, rst, set, en, e2, sel, d, e, q[51:48]);
    async_counter u_async_counter (clk, c, rst, set, en, e2, sel, d, e, q[55:52]);
    async_shift u_async_shift (clk, c, rst, set, en, e2, sel, d, e, q[59:56]);
endmodule

module all_parts (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [75:0] q);
    part_slices u_part_slices (clk, c, rst, set, en, e2, sel, d, e, q[3:0]);
    part_bit u_part_bit (clk, c, rst, set, en, e2, sel, d, e, q[7:4]);
    part_index u_part_index (clk, c, rst, set, en, e2, sel, d, e, q[11:8]);
    part_concat u_part_concat (clk, c, rst, set, en, e2, sel, d, e, q[15:12]);
    part_overlap u_part_overlap (clk, c, rst, set, en, e2, sel, d, e, q[19:16]);
    loop_reverse u_loop_reverse (clk, c, rst, set, en, e2, sel, d, e, q[23:20]);
    loop_chain u_loop_chain (clk, c, rst, set, en, e2, sel, d, e, q[27:24]);
    loop_generate u_loop_generate (clk, c, rst, set, en, e2, sel, d, e, q[31:28]);
    function_next u_function_next (clk, c, rst, set, en, e2, sel, d, e, q[35:32]);
    task_next u_task_next (clk, c, rst, set, en, e2, sel, d, e, q[39:36]);
    blocking_variable u_blocking_variable (clk, c, rst, set, en, e2, sel, d, e, q[43:40]);
    blocking_register u_blocking_register (clk, c, rst, set, en, e2, sel, d, e, q[47:44]);
    memory_registers u_memory_registers (clk, c, rst, set, en, e2, sel, d, e, q[51:48]);
    initial_value u_initial_value (clk, c, rst, set, en, e2, sel, d, e, q[55:52]);
    declared_value u_declared_value (clk, c, rst, set, en, e2, sel, d, e, q[59:56]);
    preserved u_preserved (clk, c, rst, set, en, e2, sel, d, e, q[63:60]);
    constant_data u_constant_data (clk, c, rst, set, en, e2, sel, d, e, q[67:64]);
    self_toggle u_self_toggle (clk, c, rst, set, en, e2, sel, d, e, q[71:68]);
    output_net u_output_net (clk, c, rst, set, en, e2, sel, d, e, q[75:72]);
endmodule

module all_tristates (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e,
    output [47:0] q);
    tri_assign u_tri_assign (clk, c, rst, set, en, e2, sel, d, e, q[3:0]);
    tri_low u_tri_low (clk, c, rst, set, en, e2, sel, d, e, q[7:4]);
    tri_process u_tri_process (clk, c, rst, set, en, e2, sel, d, e, q[11:8]);
    tri_case u_tri_case (clk, c, rst, set, en, e2, sel, d, e, q[15:12]);
    tri_two_drivers u_tri_two_drivers (clk, c, rst, set, en, e2, sel, d, e, q[19:16]);
    tri_per_bit u_tri_per_bit (clk, c, rst, set, en, e2, sel, d, e, q[23:20]);
    tri_register u_tri_register (clk, c, rst, set, en, e2, sel, d, e, q[27:24]);
    tri_registered u_tri_registered (clk, c, rst, set, en, e2, sel, d, e, q[31:28]);
    tri_registered_reset u_tri_registered_reset (clk, c, rst, set, en, e2, sel, d, e, q[35:32]);
    tri_registered_float u_tri_registered_float (clk, c, rst, set, en, e2, sel, d, e, q[39:36]);
    tri_some_bits u_tri_some_bits (clk, c, rst, set, en, e2, sel, d, e, q[43:40]);
    tri_gate u_tri_gate (clk, c, rst, set, en, e2, sel, d, e, q[47:44]);
endmodule
