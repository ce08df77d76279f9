1module memory (input clk, input we, input [2:0] wa, ra, input [3:0] d, output [3:0] q, output reg [3:0] qr);
    reg [3:0] mem [0:7];
    always @(posedge clk) begin
        if (we) mem[wa] <= d;
        qr <= mem[ra];
    end
    assign q = mem[ra];
endmodule
