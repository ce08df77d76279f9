// First-in first-out buffer, one clock. A read of an empty buffer and a write into a full one are ignored.
module sync_fifo #(
    parameter WIDTH = 8,
    parameter DEPTH_LOG2 = 3
) (
    input  wire                  clk,
    input  wire                  rst,
    input  wire                  push,
    input  wire [WIDTH-1:0]      din,
    input  wire                  pop,
    output wire [WIDTH-1:0]      dout,
    output wire                  empty,
    output wire                  full,
    output wire [DEPTH_LOG2:0]   level
);

    localparam DEPTH = 1 << DEPTH_LOG2;

    reg [WIDTH-1:0]    mem [0:DEPTH-1];
    reg [DEPTH_LOG2:0] wr_ptr;
    reg [DEPTH_LOG2:0] rd_ptr;

    wire do_push = push & ~full;
    wire do_pop  = pop  & ~empty;

    assign level = wr_ptr - rd_ptr;
    assign empty = (wr_ptr == rd_ptr);
    assign full  = (level == DEPTH);
    assign dout  = mem[rd_ptr[DEPTH_LOG2-1:0]];

    always @(posedge clk) begin
        if (do_push)
            mem[wr_ptr[DEPTH_LOG2-1:0]] <= din;
    end

    always @(posedge clk) begin
        if (rst) begin
            wr_ptr <= 0;
            rd_ptr <= 0;
        end else begin
            if (do_push) wr_ptr <= wr_ptr + 1'b1;
            if (do_pop)  rd_ptr <= rd_ptr + 1'b1;
        end
    end

endmodule
