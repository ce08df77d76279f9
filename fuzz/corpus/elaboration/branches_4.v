1module wild_regs(input clk, rst, input [7:0] op, input [3:0] d, output reg [3:0] q);
  always @(posedge clk) if (rst) q <= 0; else casez (op) 8'b1???????: q <= d; 8'b01??????: q <= q + d; 8'b001?????: q <= q & d; 8'b0001????: q <= q; 8'b00001???: q <= 4'h7; 8'b000001??: q <= q ^ d; 8'b0000001?: q <= ~d; 8'b00000001: q <= q - 1; endcase
endmodule
