1module op_signed (input signed [7:0] a, input signed [5:0] b, input [5:0] u, input [2:0] s,
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
