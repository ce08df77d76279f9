1module case_full (input [1:0] s, input [3:0] a, b, c, output reg [3:0] y, output reg z);
    always @* begin
        z = 1'b0;
        case (s)
            2'b00: y = a;
            2'b01: y = b;
            2'b10: begin y = c; z = 1'b1; end
            default: y = a ^ b;
        endcase
    end
endmodule
