1module regs (input clk, input rst, input en, input load, input [7:0] d, output reg [7:0] q, output reg [7:0] count,
             output reg t, output reg [3:0] shift);
    always @(posedge clk)
        if (rst) q <= 8'h3C;
        else if (en) q <= d;
    always @(posedge clk) begin
        if (load) count <= d;
        else if (en) count <= count + 1;
        if (rst) count <= 0;
    end
    always @(negedge clk) if (en) t <= ~t & ~rst;
    always @(posedge clk) shift <= {shift[2:0], rst ? 1'b0 : d[0]};
endmodule
