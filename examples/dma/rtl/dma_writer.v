// The write side of the data mover: announces bursts, sends their words with strobes, and counts the responses.
module dma_writer (
    input  wire        clk,
    input  wire        rst,

    input  wire        start,
    input  wire        fixed,
    input  wire [31:0] address,
    input  wire [12:0] bytes,
    output wire        busy,
    output reg         error,

    input  wire        in_valid,
    output wire        in_ready,
    input  wire [31:0] in_data,
    input  wire [3:0]  in_strobe,

    output wire        aw_valid,
    input  wire        aw_ready,
    output wire [31:0] aw_addr,
    output wire [3:0]  aw_len,
    output wire [1:0]  aw_burst,
    output wire        w_valid,
    input  wire        w_ready,
    output wire [31:0] w_data,
    output wire [3:0]  w_strb,
    output wire        w_last,
    input  wire        b_valid,
    output wire        b_ready,
    input  wire [1:0]  b_resp
);

    `include "dma_defs.vh"

    localparam [1:0] ADDRESS  = 2'd0,
                     DATA     = 2'd1,
                     RESPONSE = 2'd2;

    reg  [1:0] state;
    reg  [3:0] beats;                   // words of the burst that are left, less one
    reg        last_burst;

    wire       splitting;
    wire       burst_valid;
    wire       burst_last;
    wire [3:0] burst_length;
    wire       burst_taken = aw_valid & aw_ready;

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
        .burst_address (aw_addr),
        .burst_length  (burst_length),
        .burst_kind    (aw_burst),
        .burst_last    (burst_last)
    );

    assign aw_valid = burst_valid & (state == ADDRESS);
    assign aw_len   = burst_length;
    assign w_valid  = in_valid & (state == DATA);
    assign w_data   = in_data;
    assign w_strb   = in_strobe;
    assign w_last   = beats == 4'd0;
    assign in_ready = w_ready & (state == DATA);
    assign b_ready  = state == RESPONSE;

    always @(posedge clk or posedge rst)
        if (rst) begin
            state      <= ADDRESS;
            beats      <= 4'd0;
            last_burst <= 1'b0;
        end else
            case (state)
                ADDRESS:
                    if (burst_taken) begin
                        state      <= DATA;
                        beats      <= burst_length;
                        last_burst <= burst_last;
                    end
                DATA:
                    if (w_valid & w_ready) begin
                        beats <= beats - 4'd1;
                        if (w_last) state <= RESPONSE;
                    end
                RESPONSE:
                    if (b_valid) state <= ADDRESS;
                default: state <= ADDRESS;
            endcase

    always @(posedge clk or posedge rst)
        if (rst) error <= 1'b0;
        else if (start && !busy) error <= 1'b0;
        else if (b_valid && b_ready && b_resp[1]) error <= 1'b1;

    assign busy = splitting | (state != ADDRESS);

endmodule
