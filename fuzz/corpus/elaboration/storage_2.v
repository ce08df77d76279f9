1module blocking (input clk, input [3:0] a, b, output reg [3:0] x, y, z);
    reg [3:0] t;
    always @(posedge clk) begin
        t = a + b;
        x <= t;
        t = t ^ 4'h3;
        y <= t;
        z <= y;
    end
endmodule
