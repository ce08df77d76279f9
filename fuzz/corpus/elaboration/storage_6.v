1module rom (input [3:0] a, output reg [7:0] y, output [3:0] z);
    always @* case (a)
        0: y = 8'h3F; 1: y = 8'h06; 2: y = 8'h5B; 3: y = 8'h4F; 4: y = 8'h66; 5: y = 8'h6D; 6: y = 8'h7D; 7: y = 8'h07;
        8: y = 8'h7F; 9: y = 8'h6F; 10: y = 8'h77; 11: y = 8'h7C; 12: y = 8'h39; 13: y = 8'h5E; 14: y = 8'h79;
        15: y = 8'h71;
    endcase
    reg [3:0] table_ [0:15];
    integer i;
    initial for (i = 0; i < 16; i = i + 1) table_[i] = i * 5;
    assign z = table_[a];
endmodule
