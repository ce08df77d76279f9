// The read side of the data mover: asks for bursts while the buffer behind has room for all that is on its way, and
// hands on the words with the bytes of each that count.
module dma_reader #(
    parameter FIFO_LOG2 = 5
) (
    input  wire               clk,
    input  wire               rst,

    // The run: taken with start while not busy
    input  wire               start,
    input  wire               fixed,
    input  wire [31:0]        address,
    input  wire [12:0]        bytes,
    output wire               busy,
    output reg                error,

    // Room in the buffer behind
    input  wire [FIFO_LOG2:0] level,

    // Read address and read data of the bus
    output wire               ar_valid,
    input  wire               ar_ready,
    output wire [31:0]        ar_addr,
    output wire [3:0]         ar_len,
    output wire [1:0]         ar_burst,
    input  wire               r_valid,
    output wire               r_ready,
    input  wire [31:0]        r_data,
    input  wire [1:0]         r_resp,
    input  wire               r_last,

    // Words with the bytes that count: from `first` on, `size` of them
    output wire               out_valid,
    output wire [31:0]        out_data,
    output wire [1:0]         out_first,
    output wire [2:0]         out_size
);

    `include "dma_defs.vh"

    localparam DEPTH = 1 << FIFO_LOG2;

    wire        splitting;
    wire        burst_valid;
    wire        burst_last;
    wire [3:0]  burst_length;
    wire        burst_taken = ar_valid & ar_ready;

    reg [1:0]   outstanding;            // bursts on their way
    reg [5:0]   expected;               // words on their way
    reg [12:0]  left;                   // bytes that have not come yet
    reg [1:0]   offset;                 // of the first byte in the next word
    reg         is_fixed;

    dma_splitter splitter (
        .clk           (clk),
        .rst           (rst),
        .start         (start & ~busy),
        .fixed         (fixed),
        .address       (address),
        .bytes         (bytes),
        .busy          (splitting),
        .burst_valid   (burst_valid),
        .burst_ready   (burst_taken),
        .burst_address (ar_addr),
        .burst_length  (burst_length),
        .burst_kind    (ar_burst),
        .burst_last    (burst_last)
    );

    // Two bursts at most, and only what the buffer can take in full
    wire [6:0] after = {1'b0, expected} + {3'b000, burst_length} + 7'd1 + level;
    wire       fits  = after <= DEPTH;

    assign ar_valid = burst_valid & fits & ~outstanding[1];
    assign ar_len   = burst_length;

    wire word_taken  = r_valid & r_ready;
    wire burst_ended = word_taken & r_last;

    assign r_ready = expected != 0;

    always @(posedge clk or posedge rst)
        if (rst) begin
            outstanding <= 2'd0;
            expected    <= 6'd0;
        end else begin
            case ({burst_taken, burst_ended})
                2'b10:   outstanding <= outstanding + 2'd1;
                2'b01:   outstanding <= outstanding - 2'd1;
                default: ;
            endcase
            expected <= expected + (burst_taken ? {2'b00, burst_length} + 6'd1 : 6'd0) - {5'd0, word_taken};
        end

    // What of the word counts
    wire [2:0] room = 3'd4 - {1'b0, offset};

    assign out_valid = word_taken & (left != 0);
    assign out_data  = r_data;
    assign out_first = offset;
    assign out_size  = left < {10'd0, room} ? left[2:0] : room;

    always @(posedge clk or posedge rst)
        if (rst) begin
            left     <= 13'd0;
            offset   <= 2'd0;
            is_fixed <= 1'b0;
        end else if (start && !busy) begin
            left     <= bytes;
            offset   <= fixed ? 2'd0 : address[1:0];
            is_fixed <= fixed;
        end else if (out_valid) begin
            left   <= left - {10'd0, out_size};
            offset <= 2'd0;
        end

    // A failure is remembered until the next run
    always @(posedge clk or posedge rst)
        if (rst) error <= 1'b0;
        else if (start && !busy) error <= 1'b0;
        else if (word_taken && (r_resp == `DMA_RESP_SLVERR || r_resp == `DMA_RESP_DECERR)) error <= 1'b1;

    assign busy = splitting | (outstanding != 0) | (left != 0);

endmodule
