// run each: --std=vlog2001
module endless(input a, output reg y);
  integer i;
  always @(a) begin
    y = a;
    for (i = 0; i < 10000; i = i + 1) y = ~y; // expect: error VERI-1078 10106 "loop must terminate within 5000 iterations"
  end
endmodule
module unknown_end(input [9:0] a, output reg y);
  reg [9:0] i;
  always @(a) begin
    y = 0;
    for (i = 0; i != a; i = i + 1) y = ~y; // expect: warning VERI-1209 10230 "truncated value with size 32 to match size of target (10)" ; error VERI-1087 10119 "loop with non-constant loop condition must terminate within 250 iterations"
  end
endmodule
module forever_loop(input a, output reg y);
  always @(a) begin : b
    y = a;
    forever y = ~y; // expect: error VERI-1087 10119 "loop with non-constant loop condition must terminate within 250 iterations"
  end
endmodule
module variable_repeat(input [1:0] a, output reg y);
  always @(a) begin
    y = 0;
    repeat (a) y = ~y; // expect: error VERI-1079 10104 "no support for using a non-constant repeat expression"
  end
endmodule
module own_limit(input a, output reg y);
  integer i;
  always @(a) begin
    y = a;
    (* norvel_loop_limit = 4 *) for (i = 0; i < 5; i = i + 1) y = ~y; // expect: error VERI-1078 10106 "loop must terminate within 4 iterations"
  end
endmodule
module other_block(input a, output reg y, output reg z);
  always @(a) begin : one
    y = a;
  end
  always @(a) begin : two
    z = a;
    disable one; // expect: error VERI-1080 10105 "external disable constructs not supported for synthesis"
  end
endmodule
