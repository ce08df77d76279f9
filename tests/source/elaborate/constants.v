// Values that elaboration cannot take. Each module is a top.
// run each: --std=vlog2001
// ignore: information warning
module real_operand(input [7:0] a, output [7:0] y);
  assign y = a + 1.5; // expect: error VERI-1066 10094 "not supported use of real number"
endmodule
module power(input [7:0] a, b, output [7:0] y);
  assign y = a ** b; // expect: error VERI-1068 10096 "exponentiation is not supported for these operands, either exponent or base must be a constant."
endmodule
module remainder(input [7:0] a, b, output [7:0] y);
  assign y = 1.5 % 2; // expect: error VERI-1056 10092 "illegal operator on real number"
endmodule
module part_select(input [7:0] a, input [2:0] b, output [7:0] y);
  assign y = a[b:0]; // expect: error VERI-2007 10701 "expression \"b\" must be constant"
endmodule
module generate_if(input a, b, output y);
  generate
    if (a) assign y = b; // expect: error VERI-2007 10701 "expression \"a\" must be constant"
  endgenerate
endmodule
module generate_case(input a, b, output y);
  generate
    case (a) // expect: error VERI-2007 10701 "expression \"a\" must be constant"
      0: assign y = b;
    endcase
  endgenerate
endmodule
module generate_item(input a, b, output y);
  generate
    case (1)
      a: assign y = b; // expect: error VERI-2007 10701 "expression \"a\" must be constant"
    endcase
  endgenerate
endmodule
module generate_loop(input [3:0] a, output [3:0] y);
  genvar i;
  generate
    for (i = 0; i < a; i = i + 1) begin : g // expect: error VERI-2007 10701 "expression \"a\" must be constant"
      assign y[i] = a[i];
    end
  endgenerate
endmodule
module mixed(input clk, input [3:0] a, output reg [3:0] y);
  always @(posedge clk) begin
    y = a;
    y <= ~a;
  end
endmodule
module event_in_function(input clk, input a, output reg y);
  task wait_for;
    @(posedge clk) y = a;
  endtask
  initial wait_for;
endmodule
module wide_power(output [63:0] y);
  assign y = 300'd3 ** 300'd200;
endmodule
module wide_index(input [7:0] a, output y);
  assign y = a[64'h1_0000_0000];
endmodule
module wide_repeat(input a, output [3:0] y);
  assign y = {40'h1_0000_0001{a}}; // expect: error VERI-1071 10659 "vectors of more than 1048576 bits are not supported"
endmodule
