// A small FIFO whose oldest word stands at the output. Full and empty follow from the level, so that a word can be
// written and read in the same cycle at any level but the extremes.
module dma_fifo #(
    parameter WIDTH = 36,
    parameter LOG2  = 3
) (
    input  wire             clk,
    input  wire             rst,
    input  wire             clear,

    input  wire             in_valid,
    output wire             in_ready,
    input  wire [WIDTH-1:0] in_data,

    output wire             out_valid,
    input  wire             out_ready,
    output wire [WIDTH-1:0] out_data,

    output reg  [LOG2:0]    level
);

    localparam DEPTH = 1 << LOG2;

    reg [WIDTH-1:0] store [0:DEPTH-1];
    reg [LOG2-1:0]  head, tail;

    wire push = in_valid & in_ready;
    wire pop  = out_valid & out_ready;

    assign in_ready  = level != DEPTH;
    assign out_valid = level != 0;
    assign out_data  = store[head];

    always @(posedge clk)
        if (push) store[tail] <= in_data;

    always @(posedge clk or posedge rst)
        if (rst) begin
            head  <= 0;
            tail  <= 0;
            level <= 0;
        end else if (clear) begin
            head  <= 0;
            tail  <= 0;
            level <= 0;
        end else begin
            if (push) tail <= tail + 1'b1;
            if (pop)  head <= head + 1'b1;
            case ({push, pop})
                2'b10:   level <= level + 1'b1;
                2'b01:   level <= level - 1'b1;
                default: ;
            endcase
        end

endmodule
