// Sizes and signs of expressions: every operator in self-determined and context-determined places.
module op_unsigned (input [7:0] a, input [7:0] b, input [3:0] s, output [15:0] sum, product, output [7:0] logic_mix,
                    output [8:0] carry, output [15:0] shifted, output [5:0] compare, output [5:0] reduced);
    assign sum = a + b;
    assign product = a * b;
    assign carry = a - b;
    assign logic_mix = (a & ~b) | (a ^ b) & (a ~^ {b[3:0], b[7:4]});
    assign shifted = (a << s) ^ ({8'b0, b} >> s);
    assign compare = {a < b, a <= b, a > b, a >= b, a == b, a != b};
    assign reduced = {&a, |a, ^a, ~&b, ~|b, ~^b};
endmodule

module op_signed (input signed [7:0] a, input signed [5:0] b, input [5:0] u, input [2:0] s,
                  output signed [11:0] sum, output [11:0] mixed, output signed [13:0] product,
                  output signed [9:0] arithmetic, output [4:0] compare, output signed [11:0] negated,
                  output [15:0] widened);
    assign sum = a + b - 3;
    assign mixed = a + u;
    assign product = a * b;
    assign arithmetic = (a >>> s) + (b <<< 1);
    assign compare = {a < b, a < u, a >= -2, $signed(u) > b, a == b};
    assign negated = -a + ~b;
    assign widened = {a, 1'b1} + $unsigned(b) + ((a > 0) ? b : -4'sd3);
endmodule

module op_constant (input [7:0] a, output [7:0] plus, times, minus, divided, remainder, power, output [3:0] tiny,
                    output [31:0] wide);
    localparam [7:0] MASK = 8'hx5 | 8'hFF;
    assign plus = a + 8'd0;
    assign times = a * 4;
    assign minus = 100 - a;
    assign divided = a / 8;
    assign remainder = a % 16;
    assign power = 2 ** a[2:0];
    assign tiny = (MASK === 8'hFF) ? a[3:0] : 4'd0;
    assign wide = {{3{a[7:4]}}, 4'd10 * 2'd2, 16'shF0 >>> 2} + "ab";
endmodule

module op_divide (input [6:0] a, input [3:0] b, output [6:0] q, output [3:0] r);
    wire [3:0] divisor = b | 4'd1;
    assign q = a / divisor;
    assign r = a % divisor;
endmodule

module op_select (input [15:0] v, input [3:0] i, input [1:0] w, input [0:7] up, output bit_of, output [3:0] part,
                  output [3:0] down_part, output [1:0] up_part, output [3:0] fixed, output tri_op, output up_bit);
    assign bit_of = v[i];
    assign part = v[i[3:2] * 4 +: 4];
    assign down_part = v[15 - i[1:0] -: 4];
    assign up_part = up[w*2 +: 2];
    assign fixed = {v[12:11], up[2:3]};
    assign tri_op = (|w) ? (&w ? v[0] : v[1]) : v[2];
    assign up_bit = up[i[2:0]];
endmodule
