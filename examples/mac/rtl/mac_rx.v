// Receives bytes of the physical layer: finds the start of a frame behind the preamble, checks length and sequence, and
// hands on the frame without its sequence. The last four bytes are kept back until it is known that more follow.
module mac_rx (
    input  wire        clk,
    input  wire        rst,
    input  wire        enable,
    input  wire [13:0] max_length,

    // From the physical layer
    input  wire        phy_valid,
    input  wire        phy_error,
    input  wire [7:0]  phy_data,

    // The frame, byte by byte; first and last mark its ends. A frame that ends before it has a byte gives last alone.
    output reg         out_valid,
    output reg  [7:0]  out_data,
    output reg         out_first,
    output reg         out_last,
    output reg  [3:0]  out_bad,         // with last
    output reg  [13:0] out_length
);

    `include "mac_defs.vh"

    localparam [1:0] WAIT     = 2'd0,
                     PREAMBLE = 2'd1,
                     FRAME    = 2'd2,
                     SKIP     = 2'd3;

    reg  [1:0]  state;
    reg  [13:0] length;                 // bytes behind the delimiter, saturated
    reg  [31:0] delayed;
    reg         symbol_error;
    reg         begun;
    wire [31:0] crc_next;
    wire [31:0] crc;
    wire        crc_good;

    wire is_delimiter = phy_data == `MAC_DELIMITER;
    wire is_preamble  = phy_data == `MAC_PREAMBLE;
    wire starts       = phy_valid & is_delimiter & (state == PREAMBLE);
    wire takes        = phy_valid & (state == FRAME);
    wire ends         = ~phy_valid & (state == FRAME);
    wire too_long     = length > max_length;

    mac_crc32 check (
        .clk        (clk),
        .rst        (rst),
        .clear      (starts),
        .enable     (takes),
        .data       (phy_data),
        .next       (crc_next),
        .crc        (crc),
        .is_residue (crc_good)
    );

    always @(posedge clk or posedge rst)
        if (rst) state <= WAIT;
        else
            case (state)
                WAIT:
                    if (phy_valid) state <= !enable || phy_error ? SKIP : is_preamble ? PREAMBLE : SKIP;
                PREAMBLE:
                    if (!phy_valid) state <= WAIT;
                    else if (phy_error) state <= SKIP;
                    else if (is_delimiter) state <= FRAME;
                    else if (!is_preamble) state <= SKIP;
                FRAME:
                    if (!phy_valid) state <= WAIT;
                SKIP:
                    if (!phy_valid) state <= WAIT;
            endcase

    always @(posedge clk or posedge rst)
        if (rst) begin
            length       <= 14'd0;
            symbol_error <= 1'b0;
            begun        <= 1'b0;
        end else if (starts) begin
            length       <= 14'd0;
            symbol_error <= 1'b0;
            begun        <= 1'b0;
        end else if (takes) begin
            if (!(&length)) length <= length + 14'd1;
            if (phy_error) symbol_error <= 1'b1;
            if (length == 14'd4) begun <= 1'b1;
        end

    always @(posedge clk)
        if (takes) delayed <= {delayed[23:0], phy_data};

    // A byte is handed on when four others have come behind it
    wire hands_on = takes & (length >= 14'd4) & ~too_long;

    always @(posedge clk or posedge rst)
        if (rst) begin
            out_valid  <= 1'b0;
            out_data   <= 8'd0;
            out_first  <= 1'b0;
            out_last   <= 1'b0;
            out_bad    <= 4'd0;
            out_length <= 14'd0;
        end else begin
            out_valid <= hands_on;
            out_first <= hands_on & ~begun;
            out_last  <= ends;
            if (hands_on) out_data <= delayed[31:24];
            if (ends) begin
                out_bad[`MAC_BAD_CRC]    <= !crc_good;
                out_bad[`MAC_BAD_SHORT]  <= length < `MAC_MIN_FRAME;
                out_bad[`MAC_BAD_LONG]   <= too_long;
                out_bad[`MAC_BAD_SYMBOL] <= symbol_error;
                out_length               <= length < 14'd4 ? 14'd0 : length - 14'd4;
            end
        end

endmodule
