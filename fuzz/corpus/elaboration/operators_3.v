1module op_divide (input [6:0] a, input [3:0] b, output [6:0] q, output [3:0] r);
    wire [3:0] divisor = b | 4'd1;
    assign q = a / divisor;
    assign r = a % divisor;
endmodule
