// The host's side: a 32-bit register interface with a valid and ready handshake, the global registers, and the
// interrupt. Reads take two cycles, writes one.
module dma_regs #(
    parameter CHANNELS = 4,
    parameter [31:0] ID = 32'h444d_4134
) (
    input  wire                   clk,
    input  wire                   rst,

    // The host
    input  wire                   cmd_valid,
    output wire                   cmd_ready,
    input  wire                   cmd_write,
    input  wire [7:0]             cmd_addr,
    input  wire [31:0]            cmd_wdata,
    output reg                    rsp_valid,
    input  wire                   rsp_ready,
    output reg  [31:0]            rsp_rdata,
    output reg                    rsp_error,

    // The channels
    output reg  [CHANNELS-1:0]    channel_write,
    output reg  [2:0]             channel_index,
    output reg  [31:0]            channel_wdata,
    input  wire [32*CHANNELS-1:0] channel_rdata,
    output reg  [CHANNELS-1:0]    enable,
    input  wire [CHANNELS-1:0]    active,
    input  wire [CHANNELS-1:0]    event_done,
    input  wire [CHANNELS-1:0]    event_error,

    output wire                   irq
);

    `include "dma_defs.vh"

    localparam [1:0] READY  = 2'd0,
                     LOOK   = 2'd1,
                     ANSWER = 2'd2;

    reg [1:0]            state;
    reg                  is_write;
    reg [7:0]            address;
    reg [CHANNELS-1:0]   pending_done, pending_error;
    reg [CHANNELS-1:0]   mask_done, mask_error;

    wire       is_global = address[7];
    wire [1:0] number    = address[6:5];
    wire [2:0] index     = address[4:2];
    wire       aligned   = address[1:0] == 2'b00;
    wire       exists    = is_global ? index <= `DMA_REG_ACTIVE && number == 2'd0
                                     : index <= `DMA_REG_COUNT && {30'd0, number} < CHANNELS;

    assign cmd_ready = state == READY;
    assign irq = |(pending_done & mask_done) | |(pending_error & mask_error);

    // The channel that an address means
    reg [31:0] channel_word;
    integer c;
    always @* begin
        channel_word = 32'd0;
        for (c = 0; c < CHANNELS; c = c + 1)
            if (number == c) channel_word = channel_rdata[32*c +: 32];
    end

    reg [31:0] global_word;
    always @* begin
        global_word = 32'd0;
        case (index)
            `DMA_REG_ENABLE: global_word[CHANNELS-1:0] = enable;
            `DMA_REG_IRQ: begin
                global_word[CHANNELS-1:0]     = pending_done;
                global_word[16 +: CHANNELS]   = pending_error;
            end
            `DMA_REG_MASK: begin
                global_word[CHANNELS-1:0]     = mask_done;
                global_word[16 +: CHANNELS]   = mask_error;
            end
            `DMA_REG_ID:     global_word = ID;
            `DMA_REG_ACTIVE: global_word[CHANNELS-1:0] = active;
            default: ;
        endcase
    end

    wire global_write = state == LOOK && is_write && is_global && exists && aligned;

    always @(posedge clk or posedge rst)
        if (rst) begin
            state         <= READY;
            is_write      <= 1'b0;
            address       <= 8'd0;
            channel_write <= {CHANNELS{1'b0}};
            channel_index <= 3'd0;
            channel_wdata <= 32'd0;
            rsp_valid     <= 1'b0;
            rsp_rdata     <= 32'd0;
            rsp_error     <= 1'b0;
        end else begin
            channel_write <= {CHANNELS{1'b0}};
            case (state)
                READY:
                    if (cmd_valid) begin
                        is_write      <= cmd_write;
                        address       <= cmd_addr;
                        channel_index <= cmd_addr[4:2];
                        channel_wdata <= cmd_wdata;
                        state         <= LOOK;
                    end
                LOOK: begin
                    if (is_write && !is_global && exists && aligned)
                        channel_write[number] <= 1'b1;
                    rsp_rdata <= is_write ? 32'd0 : is_global ? global_word : channel_word;
                    rsp_error <= !exists || !aligned;
                    rsp_valid <= 1'b1;
                    state     <= ANSWER;
                end
                ANSWER:
                    if (rsp_ready) begin
                        rsp_valid <= 1'b0;
                        state     <= READY;
                    end
                default: state <= READY;
            endcase
        end

    // What the host sets
    always @(posedge clk or posedge rst)
        if (rst) begin
            enable     <= {CHANNELS{1'b0}};
            mask_done  <= {CHANNELS{1'b0}};
            mask_error <= {CHANNELS{1'b0}};
        end else if (global_write)
            case (index)
                `DMA_REG_ENABLE: enable <= channel_wdata[CHANNELS-1:0];
                `DMA_REG_MASK: begin
                    mask_done  <= channel_wdata[CHANNELS-1:0];
                    mask_error <= channel_wdata[16 +: CHANNELS];
                end
                default: ;
            endcase

    // Events are kept until the host writes ones; a new one is not lost by that
    wire [CHANNELS-1:0] ack_done  = global_write && index == `DMA_REG_IRQ ? channel_wdata[CHANNELS-1:0]
                                                                         : {CHANNELS{1'b0}};
    wire [CHANNELS-1:0] ack_error = global_write && index == `DMA_REG_IRQ ? channel_wdata[16 +: CHANNELS]
                                                                         : {CHANNELS{1'b0}};

    always @(posedge clk or posedge rst)
        if (rst) begin
            pending_done  <= {CHANNELS{1'b0}};
            pending_error <= {CHANNELS{1'b0}};
        end else begin
            pending_done  <= (pending_done & ~ack_done) | event_done;
            pending_error <= (pending_error & ~ack_error) | event_error;
        end

endmodule
