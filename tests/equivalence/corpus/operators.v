// Operators at mixed widths and signs.

// prove: a sum takes the width of its target, with the carry
module add_carry (input [3:0] a, b, output [4:0] y);
  assign y = a + b;
endmodule

// prove: a sum of different widths
module add_mixed_width (input [2:0] a, input [8:0] b, output [5:0] y);
  assign y = a + b;
endmodule

// prove: signed operands are extended by their sign
module add_signed (input signed [2:0] a, input signed [4:0] b, output signed [7:0] y);
  assign y = a + b;
endmodule

// prove: one unsigned operand makes the whole sum unsigned
module add_mixed_sign (input signed [3:0] a, input [3:0] b, output [7:0] y);
  assign y = a + b;
endmodule

// prove: three addends and a carry bit
module add_many (input [7:0] a, b, c, input cin, output [9:0] y);
  assign y = a + b + c + cin;
endmodule

// prove: constants with low zeros leave low bits alone
module add_constant (input [7:0] a, output [7:0] y, z, output [8:0] w);
  assign y = a + 8'h10;
  assign z = a + 8'hff;
  assign w = a + 9'h101;
endmodule

// prove: a difference wraps in the width of its target
module subtract (input [3:0] a, input [5:0] b, output [7:0] y, output [3:0] z);
  assign y = a - b;
  assign z = a - b;
endmodule

// prove: a difference with a signed and an unsigned side
module subtract_signs (input signed [3:0] a, input signed [5:0] b, input [2:0] c, output signed [7:0] y, z);
  assign y = a - b;
  assign z = a - c;
endmodule

// prove: a constant minuend
module subtract_from (input [5:0] a, output [6:0] y, output [5:0] z);
  assign y = 7'd64 - a;
  assign z = 0 - a;
endmodule

// prove: products of mixed widths
module multiply (input [3:0] a, input [5:0] b, output [9:0] y, output [5:0] z);
  assign y = a * b;
  assign z = a * b;
endmodule

// prove: a signed product needs the sign in every partial product
module multiply_signed (input signed [3:0] a, input signed [4:0] b, output signed [8:0] y, output signed [11:0] w);
  assign y = a * b;
  assign w = a * b;
endmodule

// prove: one unsigned factor makes the product unsigned
module multiply_mixed (input signed [3:0] a, input [3:0] b, output [9:0] y);
  assign y = a * b;
endmodule

// prove: products with constants of all kinds
module multiply_constant (input [5:0] a, input signed [5:0] s, output [9:0] y0, y1, y2, output signed [9:0] y3, y4);
  assign y0 = a * 8;
  assign y1 = a * 10'd7;
  assign y2 = 0 * a;
  assign y3 = s * -3;
  assign y4 = s * 4'sd5;
endmodule

// prove: quotient and remainder by a power of two
module divide_power (input [7:0] a, input signed [7:0] s, output [7:0] q, r, output signed [7:0] sq, sr);
  assign q = a / 8;
  assign r = a % 8;
  assign sq = s / 4;
  assign sr = s % 4;
endmodule

// simulate: quotient and remainder of variables; division by zero is unknown
module divide (input [5:0] a, input [3:0] b, output [5:0] q, output [3:0] r);
  assign q = a / b;
  assign r = a % b;
endmodule

// simulate: a signed quotient is rounded towards zero, the remainder has the sign of the dividend
module divide_signed (input signed [5:0] a, input signed [3:0] b, output signed [7:0] q, output signed [5:0] r);
  assign q = a / b;
  assign r = a % b;
endmodule

// prove: division by constants that are no powers of two
module divide_constant (input [6:0] a, input signed [6:0] s, output [6:0] q, r, output signed [6:0] sq, sr);
  assign q = a / 5;
  assign r = a % 6;
  assign sq = s / 3;
  assign sr = s % -3;
endmodule

// simulate: powers with a constant on one side
module power (input [3:0] a, input [2:0] n, output [11:0] square, cube, two_to, one, output [7:0] folded);
  assign square = a ** 2;
  assign cube = a ** 3;
  assign two_to = 2 ** n;
  assign one = a ** 0;
  assign folded = 3 ** 4;
endmodule

// prove: the four orders, unsigned, of different widths
module compare_unsigned (input [3:0] a, input [5:0] b, output lt, le, gt, ge);
  assign lt = a < b;
  assign le = a <= b;
  assign gt = a > b;
  assign ge = a >= b;
endmodule

// prove: the four orders, signed, of different widths
module compare_signed (input signed [3:0] a, input signed [5:0] b, output lt, le, gt, ge);
  assign lt = a < b;
  assign le = a <= b;
  assign gt = a > b;
  assign ge = a >= b;
endmodule

// prove: a comparison of a signed and an unsigned operand is unsigned
module compare_mixed (input signed [3:0] a, input [5:0] b, output lt, le, gt, ge, eq);
  assign lt = a < b;
  assign le = a <= b;
  assign gt = a > b;
  assign ge = a >= b;
  assign eq = a == b;
endmodule

// prove: comparisons with constants at the edges of the range
module compare_constant (input [3:0] a, input signed [3:0] s, output [9:0] y);
  assign y = {a < 4'd0, a >= 4'd0, a <= 4'd15, a > 4'd15, a < 4'd9, s < 0, s >= -8, s > 7, s <= -1, s < 4'd3};
endmodule

// prove: equality of different widths and signs
module equality (input [3:0] a, input [6:0] b, input signed [3:0] c, input signed [6:0] d, output [3:0] y);
  assign y = {a == b, a != b, c == d, c != d};
endmodule

// prove: equality with a constant that the operand cannot reach
module equality_constant (input [2:0] a, input signed [2:0] s, output [4:0] y);
  assign y = {a == 3'd5, a == 9, a != 8, s == -3, s == 5};
endmodule

// simulate: case equality compares unknown bits as such
module equality_case (input [3:0] a, b, output [3:0] y);
  assign y = {a === b, a !== b, a === 4'b1010, a !== 4'b0x10};
endmodule

// simulate: a comparison that meets an unknown bit of a constant is unknown or decided
module equality_unknown (input [3:0] a, output [2:0] y);
  assign y[0] = a == 4'b1xx0;
  assign y[1] = a != 4'b1xx0;
  assign y[2] = a != 4'b1110;
endmodule

// prove: logical operators reduce each side
module logical (input [3:0] a, input [1:0] b, input signed [2:0] c, output [4:0] y);
  assign y = {a && b, a || c, !a, !(b && !c), a && (b || c)};
endmodule

// prove: logical operators with constants
module logical_constant (input [3:0] a, output [5:0] y);
  assign y = {a && 1'b1, a && 1'b0, a || 1'b0, a || 4'd8, !4'd0, !(a || 1)};
endmodule

// prove: bitwise operators extend the narrower side
module bitwise (input [3:0] a, input [5:0] b, output [7:0] y_and, y_or, y_xor, y_xnor, y_not);
  assign y_and = a & b;
  assign y_or = a | b;
  assign y_xor = a ^ b;
  assign y_xnor = a ~^ b;
  assign y_not = ~a;
endmodule

// prove: bitwise operators on signed operands
module bitwise_signed (input signed [3:0] a, input signed [5:0] b, output signed [7:0] y_and, y_or, y_xor, y_xnor, y_not);
  assign y_and = a & b;
  assign y_or = a | b;
  assign y_xor = a ^ b;
  assign y_xnor = a ^~ b;
  assign y_not = ~a;
endmodule

// prove: bitwise operators with a signed and an unsigned side
module bitwise_mixed (input signed [3:0] a, input [5:0] b, output [7:0] y);
  assign y = (a & b) ^ (a | 8'h80);
endmodule

// prove: all reductions
module reductions (input [4:0] a, output [5:0] y);
  assign y = {&a, |a, ^a, ~&a, ~|a, ~^a};
endmodule

// prove: a reduction of a part and of an expression is one bit wide
module reduction_parts (input [7:0] a, b, output [7:0] y);
  assign y = {&a[3:0], |(a & b), ^{a, b[2:0]}, 3'b0, ~|(a ^ b), ~^(a + b)};
endmodule

// prove: a reduction of a single bit
module reduction_bit (input a, output [5:0] y);
  assign y = {&a, |a, ^a, ~&a, ~|a, ~^a};
endmodule

// prove: logical shifts by constants, also beyond the width
module shift_constant (input [7:0] a, output [7:0] l0, l3, l9, r0, r3, r9, output [11:0] wide);
  assign l0 = a << 0;
  assign l3 = a << 3;
  assign l9 = a << 9;
  assign r0 = a >> 0;
  assign r3 = a >> 3;
  assign r9 = a >> 9;
  assign wide = a << 4;
endmodule

// prove: shifts by a variable amount that can exceed the width
module shift_variable (input [6:0] a, input [3:0] n, output [6:0] l, r, output [9:0] wide);
  assign l = a << n;
  assign r = a >> n;
  assign wide = a << n;
endmodule

// prove: an arithmetic shift keeps the sign of a signed operand only
module shift_arithmetic (input signed [6:0] s, input [6:0] u, input [3:0] n, output signed [6:0] a, output [6:0] b, c,
                         output signed [9:0] d);
  assign a = s >>> n;
  assign b = u >>> n;
  assign c = s <<< n;
  assign d = s >>> 2;
endmodule

// prove: an unsigned context takes the sign from an arithmetic shift
module shift_context (input signed [5:0] s, input [7:0] u, input [2:0] n, output [7:0] y, z);
  assign y = (s >>> n) + u;
  assign z = (s >>> n) + 8'sd1;
endmodule

// prove: a logical right shift of a signed operand in a wider context
module shift_widened (input signed [3:0] s, input [1:0] n, output [7:0] y);
  assign y = s >> n;
endmodule

// prove: a shift amount is self-determined and unsigned
module shift_amount (input [7:0] a, input signed [2:0] n, output [7:0] y, z);
  assign y = a >> n;
  assign z = a << (n + 3'sd1);
endmodule

// prove: a signed constant as a shift amount is unsigned in its own width
module shift_signed_constant (input [7:0] a, input signed [7:0] b, output [7:0] y, z, output signed [7:0] w, output v);
  assign y = a << 3'sb111;
  assign z = a >> 3'sb110;
  assign w = b >>> 2'sb10;
  assign v = (a <<< 4'sb1000) == 0;
endmodule

// prove: unary minus and plus
module unary_signs (input [3:0] a, input signed [3:0] s, output [5:0] y, output signed [5:0] z, w);
  assign y = -a;
  assign z = -s;
  assign w = +s;
endmodule

// prove: a conditional expression takes the wider branch, unsigned when one branch is
module conditional (input c, input [3:0] a, input signed [5:0] b, input signed [3:0] s, output [7:0] y, z);
  assign y = c ? a : b;
  assign z = c ? s : b;
endmodule

// prove: nested conditional expressions with a wide condition
module conditional_nested (input [1:0] c, input [2:0] d, input [3:0] x, y, z, output [3:0] q);
  assign q = c ? d ? x : y : z;
endmodule

// prove: a conditional expression with constant branches and a constant condition
module conditional_constant (input c, input [3:0] a, output [3:0] y, z, w);
  assign y = c ? 4'd15 : 4'd0;
  assign z = 1'b1 ? a : ~a;
  assign w = c ? a : 4'd9;
endmodule

// simulate: a don't-care branch leaves the other one
module conditional_unknown (input c, input [3:0] a, output [3:0] y);
  assign y = c ? a : 4'bxxxx;
endmodule

// prove: concatenation and replication
module concatenation (input [2:0] a, input b, input signed [3:0] s, output [15:0] y, z);
  assign y = {a, b, s, 2'b10};
  assign z = {{4{b}}, {2{a, b}}, {3{1'b1}}};
endmodule

// prove: a concatenation is unsigned, whatever its parts are
module concatenation_sign (input signed [3:0] s, output [7:0] y, output signed [7:0] z);
  assign y = {s};
  assign z = s;
endmodule

// prove: replication with a parameter as its count
module replication_parameter (input a, input [1:0] b, output [9:0] y);
  parameter N = 3;
  localparam M = N - 1;
  assign y = {{N{b}}, {M + 2{a}}};
endmodule

// prove: $signed and $unsigned
module sign_functions (input [3:0] a, input signed [3:0] s, output [7:0] y, z, output lt);
  assign y = $signed(a);
  assign z = $unsigned(s);
  assign lt = $signed(a) < s;
endmodule

// prove: selects of signed vectors are unsigned, but the whole vector is not
module select_sign (input signed [5:0] s, output [7:0] part, whole, bit_of);
  assign part = s[5:0];
  assign whole = s;
  assign bit_of = s[5];
endmodule

// prove: the width of an intermediate result comes from its context
module width_context (input [3:0] a, b, output [3:0] average, output [4:0] kept, output [3:0] cut);
  assign average = (a + b) >> 1;
  assign kept = (a + b + 0) >> 1;
  assign cut = {a + b} >> 1;
endmodule

// prove: the operands of a comparison get the width of the wider one
module width_compare (input [3:0] a, b, input [4:0] c, output y, z);
  assign y = a + b < c;
  assign z = a + b == 4'd3;
endmodule

// prove: an unsized constant widens an expression to 32 bits
module width_unsized (input [7:0] a, b, output [7:0] y, z);
  assign y = (a + b + 1) >> 1;
  assign z = (a - b) / 2;
endmodule

// prove: the condition of ?: has no part in the width
module width_condition (input [7:0] c, input [1:0] a, b, output [3:0] y);
  assign y = (c[0] ? a : b) + (|c ? a : b);
endmodule

// prove: signed constants in all notations
module literals (input [7:0] a, output [15:0] y0, y1, y2, y3, y4, y5);
  assign y0 = a + 8'sh80;
  assign y1 = $signed(a) + 4'sb1000;
  assign y2 = $signed(a) + -1;
  assign y3 = a + 'o17;
  assign y4 = a + 16'd1_000;
  assign y5 = $signed(a) + 'sd3;
endmodule

// simulate: constants shorter than their size are extended by x, z or 0
module literals_extended (input [7:0] a, output [11:0] y, z);
  assign y = a + 12'hf;
  assign z = a[0] ? 12'b1 : 12'bx;
endmodule

// prove: characters are numbers
module literals_text (input [15:0] a, output [15:0] y, output z);
  assign y = a ^ "Hi";
  assign z = a == "ab";
endmodule

// prove: precedence and associativity
module precedence (input [3:0] a, b, c, output [7:0] y0, y1, y2, y3, y4);
  assign y0 = a + b * c;
  assign y1 = a - b - c;
  assign y2 = a & b == c;
  assign y3 = a | b ^ c & a;
  assign y4 = a << 1 + 1;
endmodule

// prove: wide arithmetic beyond 64 bits
module wide_arithmetic (input [99:0] a, b, input [6:0] n, output [100:0] s, output [99:0] d, sh, output lt, eq);
  assign s = a + b;
  assign d = a - b;
  assign sh = a >> n;
  assign lt = a < b;
  assign eq = a == b;
endmodule

// prove: constant arithmetic beyond 64 bits
module wide_constants (input [99:0] a, output [99:0] y, z);
  localparam [99:0] BIG = 100'hf_ffff_ffff_ffff_ffff_ffff_ffff;
  localparam [99:0] SUM = BIG + 100'd12345678901234567890;
  localparam [99:0] PRODUCT = 100'h123456789abcdef * 100'h1000000001;
  assign y = a ^ SUM;
  assign z = a ^ (PRODUCT / 100'd1000) ^ (BIG % 100'd10007) ^ (BIG >> 37) ^ (-PRODUCT);
endmodule

// prove: constant signed arithmetic
module signed_constants (input [7:0] a, output [7:0] y0, y1, y2, y3, y4);
  localparam signed [7:0] M = -7;
  assign y0 = a ^ (M / 2);
  assign y1 = a ^ (M % 2);
  assign y2 = a ^ (M >>> 1);
  assign y3 = a ^ (M >> 1);
  assign y4 = a ^ {8{M < 3}};
endmodule

// prove: the difference of two equal operands and other identities
module identities (input [3:0] a, output [3:0] y0, y1, y2, y3, y4, y5);
  assign y0 = a - a;
  assign y1 = a ^ a;
  assign y2 = a & ~a;
  assign y3 = a | ~a;
  assign y4 = a + 0;
  assign y5 = {4{a == a}};
endmodule
