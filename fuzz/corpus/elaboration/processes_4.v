1module case_big (input [7:0] code, input [3:0] d, output reg [7:0] y);
    always @* begin
        y = 8'h00;
        case (code[4:0])
            0: y = 8'h11; 1: y = 8'h22; 2: y = {d, d}; 3: y = code; 4: y = ~code; 5: y = 8'h55; 6: y = code + d;
            7: y = 8'h77; 8: y = 8'h88; 12: y = {4'd0, d}; 17: y = 8'h71; 30: y = 8'hE0; 31: y = 8'hFF;
        endcase
    end
endmodule
