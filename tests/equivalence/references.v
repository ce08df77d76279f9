// Recipes of the cookbook in other words, for the tools that they are compared with: those give the terms of a sensitivity
// list an order of their own, take no condition over two of them, and see no latch in a feedback.

module latch_assign (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e, output reg [3:0] q);
    always @* if (en) q = d;
endmodule

module both_set_first (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e, output reg [3:0] q);
    wire below = rst & ~set;
    always @(posedge clk or posedge below or posedge set)
    if (below) q <= 4'd0; else if (set) q <= 4'hF; else q <= d;
endmodule

module both_in_one (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e, output reg [3:0] q);
    wire either = rst | set;
    always @(posedge clk or posedge either)
    if (either) q <= 4'd0; else q <= d;
endmodule

module load_over_reset (input clk, c, rst, set, en, e2, input [1:0] sel, input [3:0] d, e, output reg [3:0] q);
    wire either = rst | e2;
    always @(posedge clk or posedge either)
    if (either) q <= e2 ? e : 4'd0; else q <= d;
endmodule
