1module latches (input g, input rst, input [3:0] d, input [1:0] s, output reg [3:0] q, output reg r);
    always @* if (g) q = d;
    always @(g or rst or d)
        if (rst) r = 1'b0;
        else if (g) r = d[0];
endmodule
