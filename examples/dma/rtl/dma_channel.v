// One channel: keeps the state of a transfer, asks for the data mover chunk by chunk, and follows a chain of
// descriptors. A descriptor is four words: source, destination, control and length, and the address of the next one.
module dma_channel (
    input  wire        clk,
    input  wire        rst,
    input  wire        enable,

    // Writes of the host
    input  wire        reg_write,
    input  wire [2:0]  reg_index,
    input  wire [31:0] reg_wdata,
    output reg  [31:0] reg_rdata,

    // The data mover: asked with request, given with grant, ended with done
    output wire        request,
    output wire [1:0]  priority_level,
    input  wire        grant,
    output reg         move_start,
    output wire        move_fetch,
    output wire [31:0] move_src,
    output wire [31:0] move_dst,
    output wire [12:0] move_bytes,
    output wire        move_src_fixed,
    output wire        move_dst_fixed,
    input  wire        move_done,
    input  wire        move_error,

    // Words of a descriptor
    input  wire        word_valid,
    input  wire [31:0] word_data,

    output wire        active,
    output reg         irq_done,
    output reg         irq_error
);

    `include "dma_defs.vh"

    localparam [2:0] IDLE   = 3'd0,
                     FETCH  = 3'd1,
                     LOAD   = 3'd2,
                     ASK    = 3'd3,
                     MOVE   = 3'd4,
                     CHECK  = 3'd5,
                     FAILED = 3'd6;

    reg [2:0]  state, next_state;
    reg [9:0]  ctrl;
    reg [31:0] src, dst, next_descriptor;
    reg [23:0] length;
    reg [31:0] moved;
    reg [1:0]  word_number;
    reg        abort;
    reg        failed;
    reg        finished;

    assign priority_level = ctrl[`DMA_CTRL_PRIORITY];
    assign move_src_fixed = ctrl[`DMA_CTRL_SRC_FIXED] & ~move_fetch;
    assign move_dst_fixed = ctrl[`DMA_CTRL_DST_FIXED];

    // Chunks of 16 to 2048 bytes; the first one brings the source to a boundary of its size, so that the others are
    // split into bursts of full length.
    wire [2:0]  chunk_code = ctrl[`DMA_CTRL_CHUNK];
    wire [12:0] chunk_size = 13'd16 << chunk_code;
    wire [12:0] in_chunk   = {1'b0, src[11:0]} & (chunk_size - 13'd1);
    wire [12:0] to_align   = ctrl[`DMA_CTRL_SRC_FIXED] ? chunk_size : chunk_size - in_chunk;
    wire        is_tail    = length < {11'd0, to_align};
    wire [12:0] chunk      = is_tail ? length[12:0] : to_align;

    assign move_fetch = state == FETCH || state == LOAD;
    assign move_src   = move_fetch ? next_descriptor : src;
    assign move_dst   = dst;
    assign move_bytes = move_fetch ? 13'd16 : chunk;
    assign request    = (state == FETCH || state == ASK) & enable;
    assign active     = state != IDLE && state != FAILED;

    wire ctrl_write  = reg_write && reg_index == `DMA_REG_CTRL;
    wire start_write = ctrl_write & reg_wdata[`DMA_CTRL_START];
    wire abort_write = ctrl_write & reg_wdata[`DMA_CTRL_ABORT];
    wire has_next    = ctrl[`DMA_CTRL_CHAIN] && next_descriptor[31:4] != 0;

    // What comes next
    always @* begin
        next_state = state;
        case (state)
            IDLE, FAILED:
                if (start_write && !abort_write)
                    next_state = reg_wdata[`DMA_CTRL_CHAIN] && length == 0 ? FETCH : ASK;
            FETCH:
                if (abort) next_state = IDLE;
                else if (grant) next_state = LOAD;
            LOAD:
                if (move_done) next_state = move_error ? FAILED : abort ? IDLE : CHECK;
            ASK:
                if (abort) next_state = IDLE;
                else if (length == 0) next_state = CHECK;
                else if (grant) next_state = MOVE;
            MOVE:
                if (move_done) next_state = move_error ? FAILED : abort ? IDLE : CHECK;
            CHECK:
                if (length != 0) next_state = ASK;
                else if (has_next) next_state = FETCH;
                else next_state = IDLE;
            default:
                next_state = IDLE;
        endcase
    end

    always @(posedge clk or posedge rst)
        if (rst) state <= IDLE;
        else state <= next_state;

    // The mover is started in the cycle after the grant
    always @(posedge clk or posedge rst)
        if (rst) move_start <= 1'b0;
        else move_start <= (state == FETCH && next_state == LOAD) || (state == ASK && next_state == MOVE);

    always @(posedge clk or posedge rst)
        if (rst) abort <= 1'b0;
        else if (abort_write && active) abort <= 1'b1;
        else if (!active) abort <= 1'b0;

    // Registers that the host writes and the transfer advances
    wire src_moves = ~ctrl[`DMA_CTRL_SRC_FIXED];
    wire dst_moves = ~ctrl[`DMA_CTRL_DST_FIXED];
    wire progress  = state == MOVE && move_done && !move_error;
    wire loading   = state == LOAD && word_valid;

    always @(posedge clk or posedge rst)
        if (rst) word_number <= 2'd0;
        else if (state == FETCH) word_number <= 2'd0;
        else if (loading) word_number <= word_number + 2'd1;

    always @(posedge clk or posedge rst)
        if (rst) begin
            ctrl            <= 10'd0;
            src             <= 32'd0;
            dst             <= 32'd0;
            length          <= 24'd0;
            next_descriptor <= 32'd0;
        end else if (loading) begin
            case (word_number)
                2'd0: src <= word_data;
                2'd1: dst <= word_data;
                2'd2: begin
                    length <= word_data[23:0];
                    ctrl[`DMA_CTRL_SRC_FIXED] <= word_data[24];
                    ctrl[`DMA_CTRL_DST_FIXED] <= word_data[25];
                end
                2'd3: next_descriptor <= word_data;
            endcase
        end else if (progress) begin
            if (src_moves) src <= src + {19'd0, chunk};
            if (dst_moves) dst <= dst + {19'd0, chunk};
            length <= length - {11'd0, chunk};
        end else if (reg_write && !active) begin
            case (reg_index)
                `DMA_REG_CTRL: ctrl            <= {reg_wdata[9:2], 2'b00};
                `DMA_REG_SRC:  src             <= reg_wdata;
                `DMA_REG_DST:  dst             <= reg_wdata;
                `DMA_REG_LEN:  length          <= reg_wdata[23:0];
                `DMA_REG_NEXT: next_descriptor <= reg_wdata;
                default: ;
            endcase
        end

    always @(posedge clk or posedge rst)
        if (rst) moved <= 32'd0;
        else if (progress) moved <= moved + {19'd0, chunk};
        else if (start_write && !active) moved <= 32'd0;

    // How it ended
    always @(posedge clk or posedge rst)
        if (rst) begin
            failed    <= 1'b0;
            finished  <= 1'b0;
            irq_done  <= 1'b0;
            irq_error <= 1'b0;
        end else begin
            irq_done  <= state == CHECK && next_state == IDLE;
            irq_error <= state != FAILED && next_state == FAILED;
            if (start_write && !active) begin
                failed   <= 1'b0;
                finished <= 1'b0;
            end else begin
                if (irq_done) finished <= 1'b1;
                if (irq_error) failed <= 1'b1;
            end
        end

    always @*
        case (reg_index)
            `DMA_REG_CTRL:   reg_rdata = {22'd0, ctrl[9:2], 2'b00};
            `DMA_REG_STATUS: reg_rdata = {24'd0, 1'b0, state, abort, failed, finished, active};
            `DMA_REG_SRC:    reg_rdata = src;
            `DMA_REG_DST:    reg_rdata = dst;
            `DMA_REG_LEN:    reg_rdata = {8'd0, length};
            `DMA_REG_NEXT:   reg_rdata = next_descriptor;
            `DMA_REG_COUNT:  reg_rdata = moved;
            default:         reg_rdata = 32'd0;
        endcase

endmodule
