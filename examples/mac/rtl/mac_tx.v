// Sends frames: preamble, delimiter, the bytes that it is given, padding, the check sequence and the gap. In half duplex
// it defers to the medium, jams on a collision, and tries again after a random time; the caller keeps the frame until it
// is told how it ended.
module mac_tx (
    input  wire        clk,
    input  wire        rst,
    input  wire        enable,
    input  wire        half_duplex,
    input  wire [4:0]  gap,             // bytes between frames

    // The frame. Each byte is taken with ready; rewind asks for it from its start.
    input  wire        in_valid,
    output wire        in_ready,
    input  wire [7:0]  in_data,
    input  wire        in_last,
    output reg         in_rewind,

    // To the physical layer, and what it says of the medium
    output reg         phy_valid,
    output reg         phy_error,
    output reg  [7:0]  phy_data,
    input  wire        carrier,
    input  wire        collision,

    output reg         sent,
    output reg         failed,          // too many collisions, or a frame that came too slowly
    output reg  [3:0]  attempts
);

    `include "mac_defs.vh"

    localparam [3:0] IDLE     = 4'd0,
                     PREAMBLE = 4'd1,
                     DATA     = 4'd2,
                     PAD      = 4'd3,
                     SEQUENCE = 4'd4,
                     GAP      = 4'd5,
                     JAM      = 4'd6,
                     BACKOFF  = 4'd7,
                     DRAIN    = 4'd8;

    reg  [3:0]  state;
    reg  [13:0] length;
    reg  [2:0]  step;
    reg  [4:0]  gap_left;
    reg  [15:0] noise;                  // for the random time
    reg  [9:0]  slots;
    reg  [5:0]  slot_byte;
    wire [31:0] crc;
    wire [31:0] crc_next;
    wire        crc_residue;

    wire collided = half_duplex & collision;
    wire may_start = enable & in_valid & ~(half_duplex & carrier);

    wire sends_data = state == DATA & in_valid;
    wire sends_pad  = state == PAD;

    mac_crc32 sequence_of_frame (
        .clk        (clk),
        .rst        (rst),
        .clear      (state == PREAMBLE),
        .enable     (sends_data | sends_pad),
        .data       (sends_data ? in_data : 8'd0),
        .next       (crc_next),
        .crc        (crc),
        .is_residue (crc_residue)
    );

    assign in_ready = sends_data | (state == DRAIN);

    // The limit of the random time doubles with each attempt, up to ten times
    function [9:0] backoff_mask;
        input [3:0] tried;
        integer     b;
        for (b = 0; b < 10; b = b + 1)
            backoff_mask[b] = b < tried;
    endfunction

    always @(posedge clk or posedge rst)
        if (rst) noise <= 16'hace1;
        else noise <= {noise[14:0], noise[15] ^ noise[13] ^ noise[12] ^ noise[10]};

    always @(posedge clk or posedge rst)
        if (rst) begin
            state     <= IDLE;
            length    <= 14'd0;
            step      <= 3'd0;
            gap_left  <= 5'd0;
            slots     <= 10'd0;
            slot_byte <= 6'd0;
            attempts  <= 4'd0;
            in_rewind <= 1'b0;
            sent      <= 1'b0;
            failed    <= 1'b0;
        end else begin
            in_rewind <= 1'b0;
            sent      <= 1'b0;
            failed    <= 1'b0;
            case (state)
                IDLE: begin
                    step   <= 3'd0;
                    length <= 14'd0;
                    if (may_start) state <= PREAMBLE;
                end

                PREAMBLE: begin
                    step <= step + 3'd1;
                    if (collided) begin
                        state <= JAM;
                        step  <= 3'd0;
                    end else if (step == 3'd7) state <= DATA;
                end

                DATA: begin
                    step <= 3'd0;
                    if (collided) state <= JAM;
                    else if (!in_valid) begin
                        state  <= GAP;
                        failed <= 1'b1;
                    end else begin
                        length <= length + 14'd1;
                        if (in_last)
                            state <= length + 14'd1 < `MAC_MIN_PAYLOAD ? PAD : SEQUENCE;
                    end
                end

                PAD: begin
                    length <= length + 14'd1;
                    if (collided) state <= JAM;
                    else if (length + 14'd1 >= `MAC_MIN_PAYLOAD) state <= SEQUENCE;
                end

                SEQUENCE: begin
                    step <= step + 3'd1;
                    if (collided) begin
                        state <= JAM;
                        step  <= 3'd0;
                    end else if (step == 3'd3) begin
                        state    <= GAP;
                        sent     <= 1'b1;
                        attempts <= 4'd0;
                        gap_left <= gap;
                    end
                end

                GAP: begin
                    if (gap_left == 5'd0) state <= IDLE;
                    else gap_left <= gap_left - 5'd1;
                end

                JAM: begin
                    step <= step + 3'd1;
                    if (step == 3'd3) begin
                        attempts  <= attempts + 4'd1;
                        slot_byte <= 6'd63;
                        if (&attempts) begin
                            state  <= DRAIN;
                            failed <= 1'b1;
                        end else begin
                            state     <= BACKOFF;
                            in_rewind <= 1'b1;
                            slots     <= noise[9:0] & backoff_mask(attempts + 4'd1);
                        end
                    end
                end

                BACKOFF: begin
                    slot_byte <= slot_byte - 6'd1;
                    if (slots == 10'd0) state <= IDLE;
                    else if (slot_byte == 6'd0) slots <= slots - 10'd1;
                end

                DRAIN:
                    if (!in_valid || in_last) begin
                        state    <= GAP;
                        gap_left <= gap;
                        attempts <= 4'd0;
                    end

                default: state <= IDLE;
            endcase
        end

    // The bytes of the line
    reg [7:0] next_data;
    always @* begin
        next_data = 8'd0;
        case (state)
            PREAMBLE: next_data = step == 3'd7 ? `MAC_DELIMITER : `MAC_PREAMBLE;
            DATA:     next_data = in_data;
            SEQUENCE:
                case (step[1:0])
                    2'd0: next_data = ~crc[7:0];
                    2'd1: next_data = ~crc[15:8];
                    2'd2: next_data = ~crc[23:16];
                    2'd3: next_data = ~crc[31:24];
                endcase
            JAM:      next_data = {noise[7:0]};
            default: ;
        endcase
    end

    wire on_line = state == PREAMBLE || sends_data || state == PAD || state == SEQUENCE || state == JAM;

    always @(posedge clk or posedge rst)
        if (rst) begin
            phy_valid <= 1'b0;
            phy_error <= 1'b0;
            phy_data  <= 8'd0;
        end else begin
            phy_valid <= on_line;
            phy_error <= state == DATA & ~in_valid;
            phy_data  <= next_data;
        end

endmodule
