1module op_constant (input [7:0] a, output [7:0] plus, times, minus, divided, remainder, power, output [3:0] tiny,
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
