// run each: --option HDL_MESSAGE_LEVEL=HIGH --std=vlog2001
module by_zero(output [3:0] y, output [3:0] z);
  assign y = 5 / 0; // expect: warning VERI-1210 10282 "attempt to divide by 0; returning x" ; warning VERI-2041 10273 "constant is extended with its x or z to the full width" ; warning VERI-1209 10230 "truncated value with size 32 to match size of target (4)"
  assign z = 5 % 0; // expect: warning VERI-1210 10282 "attempt to divide by 0; returning x" ; warning VERI-2041 10273 "constant is extended with its x or z to the full width" ; warning VERI-1209 10230 "truncated value with size 32 to match size of target (4)"
endmodule
module overflow(output [31:0] y);
  assign y = 2147483647 + 1; // expect: warning VERI-2023 10259 "constant value overflow"
endmodule
module carry(output [3:0] y);
  assign y = 4'd15 + 4'd1; // expect: warning VERI-2023 10259 "constant value overflow"
endmodule
module truncated(input [7:0] a, output [3:0] y, output [3:0] z); // expect: warning VDB-2016 10862 "input port \"a[7..4]\" at expressions.v(12) has no fan-out"
  assign y = a; // expect: warning VERI-1209 10230 "truncated value with size 8 to match size of target (4)"
  assign z = 3; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 4 with no loss of information"
endmodule
module signed_shift(output [3:0] y);
  assign y = 4'd8 >> 2'sd1; // expect: warning VERI-1211 10283 "converting signed shift amount to unsigned"
endmodule
module extended(output [7:0] y);
  assign y = 4'bz; // expect: warning VERI-2041 10273 "constant is extended with its x or z to the full width"
endmodule
module power(input [3:0] a, b, output [3:0] y);
  assign y = a ** b; // expect: error VERI-1068 10096 "exponentiation is not supported for these operands, either exponent or base must be a constant."
endmodule
module power_base(input [3:0] a, output [7:0] y);
  assign y = 3 ** a; // expect: error VERI-1068 10096 "exponentiation is not supported for these operands, exponent base must be a positive power of 2 with non-constant exponent."
endmodule
module real_operator(output y);
  assign y = 1.5 & 1'b1; // expect: error VERI-1056 10092 "illegal operator on real number"
endmodule
module real_unary(output y);
  assign y = ~1.5; // expect: error VERI-1061 10093 "illegal operator for real numbers"
endmodule
module real_choice(input a, output y);
  assign y = a ? 1.5 : 2.5; // expect: error VERI-1069 10097 "no support for real number in ?: operator"
endmodule
module real_target(input a, output y);
  real r; // expect: warning VERI-2030 10036 "object \"r\" assigned a value but never read"
  always @(a) r = a; // expect: error VERI-1054 10089 "synthesis of 'real' values is not supported"
  assign y = a;
endmodule
module outside(input [3:0] a, input [2:0] i, output y, output z, output reg [3:0] w); // expect: warning VDB-2016 10862 "input port \"a[3..0]\" at expressions.v(42) has no fan-out" ; warning VDB-2016 10862 "input port \"i[2..0]\" at expressions.v(42) has no fan-out"
  assign y = a[7]; // expect: warning VERI-2042 10276 "constant index 7 falls outside the range [3:0] for dimension 1 of the array \"a\""
  assign z = a[9:8]; // expect: warning VERI-2042 10276 "constant index 9 falls outside the range [3:0] for dimension 1 of the array \"a\"" ; warning VERI-1209 10230 "truncated value with size 2 to match size of target (1)"
  always @(i) begin
    w = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 4 with no loss of information"
    w[6] = 1; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 1 with no loss of information" ; warning VERI-2042 10276 "constant index 6 falls outside the range [3:0] for dimension 1 of the array \"w\""
  end
endmodule
module narrow_index(input i, input d, output reg [3:0] y);
  always @(i or d) begin
    y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 4 with no loss of information"
    y[i] = d; // expect: warning VERI-2035 10268 "index is too narrow to address the entire range"
  end
endmodule
module never_inside(input [1:0] i, input d, output reg [11:8] y); // expect: warning VDB-2016 10862 "input port \"i[1..0]\" at expressions.v(56) has no fan-out" ; warning VDB-2016 10862 "input port \"d\" at expressions.v(56) has no fan-out"
  always @(i or d) begin
    y = 0; // expect: information VERI-2066 10662 "truncated unsized constant literal with size 32 to size 4 with no loss of information"
    y[i] = d; // expect: warning VERI-2043 10277 "non-constant index always falls outside the range [11:8] for dimension 1 of the array \"y\""
  end
endmodule
module direction(input [3:0] a, output [1:0] y);
  assign y = a[0:1]; // expect: error VERI-1083 10107 "part-select direction is opposite from prefix index direction"
endmodule
module no_width(input [3:0] a, output [1:0] y);
  assign y = a[1 +: 0]; // expect: error VERI-2022 10254 "the width of a part-select must be positive, not 0"
endmodule
module variable_bounds(input [3:0] a, input i, output [1:0] y);
  assign y = a[i : 0]; // expect: error VERI-2007 10701 "expression \"i\" must be constant"
endmodule
module negative_count(input a, output [1:0] y);
  assign y = {-1{a}}; // expect: error VERI-2021 10253 "the count of a replication must be a known number that is not negative"
endmodule
module zero_count(input a, output [1:0] y); // expect: warning VDB-2016 10862 "input port \"a\" at expressions.v(74) has no fan-out"
  assign y = {0{a}}; // expect: warning VERI-1105 10317 "replication by zero has no value"
endmodule
module variable_count(input [1:0] a, output [3:0] y);
  assign y = {a{1'b1}}; // expect: error VERI-2007 10701 "expression \"a\" must be constant"
endmodule
module variable_range(input a, output y);
  wire [a:0] w; // expect: error VERI-2007 10701 "expression \"a\" must be constant" ; information VERI-2029 10035 "object \"w\" declared but not used"
  assign y = a;
endmodule
module unknown_range(input a, output y);
  wire [1'bx:0] w; // expect: error VERI-2009 10703 "the bounds of range \"1'bx : 0\" must be known numbers of 32 bits" ; information VERI-2029 10035 "object \"w\" declared but not used"
  assign y = a;
endmodule
module genvar_value(input a, output [3:0] y);
  genvar i;
  assign y = i; // expect: error VERI-2008 10702 "\"i\" is not an object that has a value"
endmodule
module system_function(input a, output [31:0] y);
  assign y = $time; // expect: error VERI-1096 10174 "system function call \"$time\" not supported"
endmodule
module system_argument(input [3:0] a, output [31:0] y);
  assign y = $clog2(a); // expect: error VERI-1095 10116 "argument 1 to \"$clog2\" must be a constant"
endmodule
module system_arity(input [3:0] a, output [31:0] y);
  assign y = $signed(a, a); // expect: error VERI-1097 10117 "system call \"$signed\" expects one argument"
endmodule
module too_wide(output y);
  wire [2000000:0] w; // expect: error VERI-1071 10659 "vectors of more than 1048576 bits are not supported" ; warning VERI-2033 10858 "object \"w\" used but never assigned"
  assign y = w[0];
endmodule
module too_large(input [3:0] a, output y);
  reg [1023:0] m [0:100000]; // expect: error VERI-1205 10267 "objects of more than 16777216 bits are not supported" ; warning VERI-2033 10858 "object \"m\" used but never assigned"
  assign y = m[a][0];
endmodule
module wide_select(input [3:0] a, output y);
  assign y = a[1 +: 20000000]; // expect: error VERI-1212 10278 "width of a part-select is not known or too large"
endmodule
