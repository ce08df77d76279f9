// A DMA engine: channels that take turns with one data mover, which reads and writes memory through a bus with separate
// address, data and response handshakes.
module dma #(
    parameter CHANNELS  = 4,
    parameter FIFO_LOG2 = 5
) (
    input  wire        clk,
    input  wire        rst,

    input  wire        cmd_valid,
    output wire        cmd_ready,
    input  wire        cmd_write,
    input  wire [7:0]  cmd_addr,
    input  wire [31:0] cmd_wdata,
    output wire        rsp_valid,
    input  wire        rsp_ready,
    output wire [31:0] rsp_rdata,
    output wire        rsp_error,
    output wire        irq,

    output wire        ar_valid,
    input  wire        ar_ready,
    output wire [31:0] ar_addr,
    output wire [3:0]  ar_len,
    output wire [1:0]  ar_burst,
    input  wire        r_valid,
    output wire        r_ready,
    input  wire [31:0] r_data,
    input  wire [1:0]  r_resp,
    input  wire        r_last,

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

    // The channels, side by side

    wire [CHANNELS-1:0]    channel_write;
    wire [2:0]             channel_index;
    wire [31:0]            channel_wdata;
    wire [32*CHANNELS-1:0] channel_rdata;
    wire [CHANNELS-1:0]    enable;
    wire [CHANNELS-1:0]    active;
    wire [CHANNELS-1:0]    event_done;
    wire [CHANNELS-1:0]    event_error;
    wire [CHANNELS-1:0]    request;
    wire [2*CHANNELS-1:0]  priorities;
    wire [CHANNELS-1:0]    grant;
    wire [CHANNELS-1:0]    start;
    wire [CHANNELS-1:0]    fetch;
    wire [32*CHANNELS-1:0] src;
    wire [32*CHANNELS-1:0] dst;
    wire [13*CHANNELS-1:0] bytes;
    wire [CHANNELS-1:0]    src_fixed;
    wire [CHANNELS-1:0]    dst_fixed;

    wire        mover_done;
    wire        mover_error;
    wire        word_valid;
    wire [31:0] word_data;

    dma_regs #(.CHANNELS(CHANNELS)) regs (
        .clk           (clk),
        .rst           (rst),
        .cmd_valid     (cmd_valid),
        .cmd_ready     (cmd_ready),
        .cmd_write     (cmd_write),
        .cmd_addr      (cmd_addr),
        .cmd_wdata     (cmd_wdata),
        .rsp_valid     (rsp_valid),
        .rsp_ready     (rsp_ready),
        .rsp_rdata     (rsp_rdata),
        .rsp_error     (rsp_error),
        .channel_write (channel_write),
        .channel_index (channel_index),
        .channel_wdata (channel_wdata),
        .channel_rdata (channel_rdata),
        .enable        (enable),
        .active        (active),
        .event_done    (event_done),
        .event_error   (event_error),
        .irq           (irq)
    );

    genvar n;
    generate
        for (n = 0; n < CHANNELS; n = n + 1) begin : channel
            dma_channel unit (
                .clk            (clk),
                .rst            (rst),
                .enable         (enable[n]),
                .reg_write      (channel_write[n]),
                .reg_index      (channel_index),
                .reg_wdata      (channel_wdata),
                .reg_rdata      (channel_rdata[32*n +: 32]),
                .request        (request[n]),
                .priority_level (priorities[2*n +: 2]),
                .grant          (grant[n]),
                .move_start     (start[n]),
                .move_fetch     (fetch[n]),
                .move_src       (src[32*n +: 32]),
                .move_dst       (dst[32*n +: 32]),
                .move_bytes     (bytes[13*n +: 13]),
                .move_src_fixed (src_fixed[n]),
                .move_dst_fixed (dst_fixed[n]),
                .move_done      (mover_done & grant[n]),
                .move_error     (mover_error),
                .word_valid     (word_valid & grant[n]),
                .word_data      (word_data),
                .active         (active[n]),
                .irq_done       (event_done[n]),
                .irq_error      (event_error[n])
            );
        end
    endgenerate

    wire arbiter_busy;

    dma_arbiter #(.N(CHANNELS)) arbiter (
        .clk           (clk),
        .rst           (rst),
        .request       (request),
        .priorities    (priorities),
        .release_grant (mover_done),
        .grant         (grant),
        .busy          (arbiter_busy)
    );

    // What the holder of the grant asks for

    reg [31:0] run_src, run_dst;
    reg [12:0] run_bytes;
    reg        run_src_fixed, run_dst_fixed, run_fetch;

    integer i;
    always @* begin
        run_src       = 32'd0;
        run_dst       = 32'd0;
        run_bytes     = 13'd0;
        run_src_fixed = 1'b0;
        run_dst_fixed = 1'b0;
        run_fetch     = 1'b0;
        for (i = 0; i < CHANNELS; i = i + 1)
            if (grant[i]) begin
                run_src       = run_src   | src[32*i +: 32];
                run_dst       = run_dst   | dst[32*i +: 32];
                run_bytes     = run_bytes | bytes[13*i +: 13];
                run_src_fixed = run_src_fixed | src_fixed[i];
                run_dst_fixed = run_dst_fixed | dst_fixed[i];
                run_fetch     = run_fetch | fetch[i];
            end
    end

    wire run_start = |(start & grant);

    // The mover: the reader alone for a descriptor, all of it for data

    localparam [1:0] REST = 2'd0,
                     RUN  = 2'd1,
                     END  = 2'd2;

    reg  [1:0]           mover_state;
    reg                  fetching;
    wire                 reader_busy, reader_error;
    wire                 writer_busy, writer_error;
    wire                 aligner_busy;
    wire [FIFO_LOG2:0]   level;

    wire        read_valid;
    wire [31:0] read_data;
    wire [1:0]  read_first;
    wire [2:0]  read_size;
    wire        queue_valid, queue_ready, queue_room;
    wire [36:0] queue_data;
    wire        aligned_valid, aligned_ready;
    wire [31:0] aligned_data;
    wire [3:0]  aligned_strobe;

    dma_reader #(.FIFO_LOG2(FIFO_LOG2)) reader (
        .clk       (clk),
        .rst       (rst),
        .start     (run_start),
        .fixed     (run_src_fixed),
        .address   (run_src),
        .bytes     (run_bytes),
        .busy      (reader_busy),
        .error     (reader_error),
        .level     (level),
        .ar_valid  (ar_valid),
        .ar_ready  (ar_ready),
        .ar_addr   (ar_addr),
        .ar_len    (ar_len),
        .ar_burst  (ar_burst),
        .r_valid   (r_valid),
        .r_ready   (r_ready),
        .r_data    (r_data),
        .r_resp    (r_resp),
        .r_last    (r_last),
        .out_valid (read_valid),
        .out_data  (read_data),
        .out_first (read_first),
        .out_size  (read_size)
    );

    assign word_valid = read_valid & fetching;
    assign word_data  = read_data;

    // Size 0 stands for no bytes, so that two bits and the top one say all
    dma_fifo #(.WIDTH(37), .LOG2(FIFO_LOG2)) queue (
        .clk       (clk),
        .rst       (rst),
        .clear     (run_start),
        .in_valid  (read_valid & ~fetching),
        .in_ready  (queue_room),
        .in_data   ({read_size, read_first, read_data}),
        .out_valid (queue_valid),
        .out_ready (queue_ready),
        .out_data  (queue_data),
        .level     (level)
    );

    dma_aligner aligner (
        .clk        (clk),
        .rst        (rst),
        .start      (run_start),
        .target     (run_dst_fixed ? 2'd0 : run_dst[1:0]),
        .bytes      (run_fetch ? 13'd0 : run_bytes),
        .busy       (aligner_busy),
        .in_valid   (queue_valid),
        .in_ready   (queue_ready),
        .in_data    (queue_data[31:0]),
        .in_first   (queue_data[33:32]),
        .in_size    (queue_data[36:34]),
        .out_valid  (aligned_valid),
        .out_ready  (aligned_ready),
        .out_data   (aligned_data),
        .out_strobe (aligned_strobe)
    );

    dma_writer writer (
        .clk       (clk),
        .rst       (rst),
        .start     (run_start & ~run_fetch),
        .fixed     (run_dst_fixed),
        .address   (run_dst),
        .bytes     (run_bytes),
        .busy      (writer_busy),
        .error     (writer_error),
        .in_valid  (aligned_valid),
        .in_ready  (aligned_ready),
        .in_data   (aligned_data),
        .in_strobe (aligned_strobe),
        .aw_valid  (aw_valid),
        .aw_ready  (aw_ready),
        .aw_addr   (aw_addr),
        .aw_len    (aw_len),
        .aw_burst  (aw_burst),
        .w_valid   (w_valid),
        .w_ready   (w_ready),
        .w_data    (w_data),
        .w_strb    (w_strb),
        .w_last    (w_last),
        .b_valid   (b_valid),
        .b_ready   (b_ready),
        .b_resp    (b_resp)
    );

    wire all_quiet = ~reader_busy & ~writer_busy & ~aligner_busy & ~queue_valid;

    always @(posedge clk or posedge rst)
        if (rst) begin
            mover_state <= REST;
            fetching    <= 1'b0;
        end else
            case (mover_state)
                REST:
                    if (run_start) begin
                        mover_state <= RUN;
                        fetching    <= run_fetch;
                    end
                RUN:
                    if (all_quiet) mover_state <= END;
                END: begin
                    mover_state <= REST;
                    fetching    <= 1'b0;
                end
                default: mover_state <= REST;
            endcase

    assign mover_done  = mover_state == END;
    assign mover_error = reader_error | (writer_error & ~fetching);

endmodule
