1module hierarchy (input [7:0] a, b, input [3:0] c, output [7:0] s, output [3:0] t, u, output [3:0] carry);
    cell_adder #(.W(8), .BIAS(0)) wide (.a(a), .b(b), .cin(1'b0), .s(s), .cout(carry[0]));
    cell_adder narrow (a[3:0], c, b[0], t, carry[1]);
    cell_adder #(4, 7) biased (.s(u), .cout(), .a(c), .b(4'd3), .cin(carry[1]));
    cell_adder moved (.a(a[7:4]), .b(b[7:4]), .cin(1'b1), .s(), .cout(carry[2]));
    defparam moved.BIAS = 9;
    assign carry[3] = ^t;
endmodule
