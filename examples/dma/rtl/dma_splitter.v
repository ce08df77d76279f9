// Splits a run of bytes into bursts of whole words: none crosses a boundary of 4 KB, none has more than 16 words, and a
// fixed address takes words one by one. Addresses of bursts are those of words; the caller knows what of the first and
// the last word counts.
module dma_splitter (
    input  wire        clk,
    input  wire        rst,

    input  wire        start,
    input  wire        fixed,
    input  wire [31:0] address,
    input  wire [12:0] bytes,
    output wire        busy,

    output reg         burst_valid,
    input  wire        burst_ready,
    output wire [31:0] burst_address,
    output wire [3:0]  burst_length,    // words less one
    output wire [1:0]  burst_kind,
    output wire        burst_last
);

    `include "dma_defs.vh"

    reg [29:0] word;                    // address of the next word
    reg [11:0] left;                    // words that are left
    reg        is_fixed;

    // Words from the first byte to the last
    wire [13:0] span = bytes + address[1:0] + 14'd3;
    wire [11:0] words = span[13:2];

    // What the boundary allows
    wire [10:0] to_boundary = 11'd1024 - word[9:0];
    wire [11:0] by_boundary = {1'b0, to_boundary} < 12'd16 ? {1'b0, to_boundary} : 12'd16;
    wire [11:0] limit = is_fixed ? 12'd1 : by_boundary;
    wire [11:0] count = left < limit ? left : limit;

    assign burst_address = {word, 2'b00};
    assign burst_length  = count[3:0] - 4'd1;
    assign burst_kind    = is_fixed ? `DMA_BURST_FIXED : `DMA_BURST_INCR;
    assign burst_last    = left == count;
    assign busy          = burst_valid;

    always @(posedge clk or posedge rst)
        if (rst) begin
            burst_valid <= 1'b0;
            word        <= 30'd0;
            left        <= 12'd0;
            is_fixed    <= 1'b0;
        end else if (!burst_valid) begin
            if (start && words != 0) begin
                burst_valid <= 1'b1;
                word        <= address[31:2];
                left        <= fixed ? {1'b0, bytes[12:2]} + (|bytes[1:0]) : words;
                is_fixed    <= fixed;
            end
        end else if (burst_ready) begin
            left <= left - count;
            if (!is_fixed) word <= word + {18'd0, count};
            if (burst_last) burst_valid <= 1'b0;
        end

endmodule
