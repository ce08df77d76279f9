1module async_regs (input clk, input rst_n, input set, input en, input [3:0] d, output reg [3:0] q,
                   output reg s, output reg [3:0] count);
    always @(posedge clk or negedge rst_n)
        if (!rst_n) q <= 4'd5;
        else if (en) q <= d;
    always @(posedge set or posedge clk)
        if (set) s <= 1'b1;
        else s <= s ^ d[0];
    always @(posedge clk, negedge rst_n)
        if (rst_n == 1'b0) count <= 0;
        else begin
            count <= count + 1'b1;
            if (count == 4'd9) count <= 4'd0;
        end
endmodule
