// Register file: 31 words of state, two combinational read ports, one write port. Register 0 reads as zero.
module rv32_regfile #(
    parameter WIDTH = 32,
    parameter ADDR_BITS = 5
) (
    input  wire                 clk,
    input  wire                 we,
    input  wire [ADDR_BITS-1:0] waddr,
    input  wire [WIDTH-1:0]     wdata,
    input  wire [ADDR_BITS-1:0] raddr1,
    input  wire [ADDR_BITS-1:0] raddr2,
    output wire [WIDTH-1:0]     rdata1,
    output wire [WIDTH-1:0]     rdata2
);

    localparam DEPTH = 1 << ADDR_BITS;

    reg [WIDTH-1:0] regs [0:DEPTH-1];

    always @(posedge clk)
        if (we && waddr != 0)
            regs[waddr] <= wdata;

    assign rdata1 = (raddr1 == 0) ? {WIDTH{1'b0}} : regs[raddr1];
    assign rdata2 = (raddr2 == 0) ? {WIDTH{1'b0}} : regs[raddr2];

endmodule
