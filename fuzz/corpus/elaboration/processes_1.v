1module case_wild (input [5:0] r, output reg [2:0] index, output reg any, output reg [1:0] kind);
    always @* begin
        casez (r)
            6'b1?????: index = 5;
            6'b01????: index = 4;
            6'b001???: index = 3;
            6'b0001??: index = 2;
            6'b00001?: index = 1;
            default: index = 0;
        endcase
        any = 0;
        if (r) any = 1;
        casex (r[3:0])
            4'b1xx1: kind = 2;
            4'b0x1x: kind = 1;
            4'bx00x: kind = 3;
            default: kind = 0;
        endcase
    end
endmodule
