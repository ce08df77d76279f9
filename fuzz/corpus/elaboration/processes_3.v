1module case_sparse (input [15:0] code, output reg [3:0] y);
    always @* case (code)
        16'h0001: y = 1;
        16'h8000: y = 2;
        16'hFFFF, 16'hFFFE: y = 3;
        16'h1234: y = code[3:0];
        default: y = 0;
    endcase
endmodule
