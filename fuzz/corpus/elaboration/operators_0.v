1module op_unsigned (input [7:0] a, input [7:0] b, input [3:0] s, output [15:0] sum, product, output [7:0] logic_mix,
                    output [8:0] carry, output [15:0] shifted, output [5:0] compare, output [5:0] reduced);
    assign sum = a + b;
    assign product = a * b;
    assign carry = a - b;
    assign logic_mix = (a & ~b) | (a ^ b) & (a ~^ {b[3:0], b[7:4]});
    assign shifted = (a << s) ^ ({8'b0, b} >> s);
    assign compare = {a < b, a <= b, a > b, a >= b, a == b, a != b};
    assign reduced = {&a, |a, ^a, ~&b, ~|b, ~^b};
endmodule
