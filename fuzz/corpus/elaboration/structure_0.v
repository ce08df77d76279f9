1module cell_adder #(parameter W = 4, parameter [W-1:0] BIAS = 1) (input [W-1:0] a, b, input cin, output [W-1:0] s,
                                                                  output cout);
    assign {cout, s} = a + b + cin + BIAS;
endmodule
