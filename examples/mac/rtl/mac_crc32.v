// The frame check sequence of IEEE 802.3: CRC-32 over bytes, the least significant bit first.
module mac_crc32 (
    input  wire        clk,
    input  wire        rst,
    input  wire        clear,
    input  wire        enable,
    input  wire [7:0]  data,
    output wire [31:0] next,            // after the byte at the input
    output reg  [31:0] crc,
    output wire        is_residue       // the sequence over a frame with its own sequence
);

    localparam [31:0] POLYNOMIAL = 32'hedb8_8320;
    localparam [31:0] RESIDUE    = 32'hdebb_20e3;

    function [31:0] advance;
        input [31:0] state;
        input [7:0]  value;
        integer      i;
        begin
            advance = state ^ {24'd0, value};
            for (i = 0; i < 8; i = i + 1)
                advance = advance[0] ? (advance >> 1) ^ POLYNOMIAL : advance >> 1;
        end
    endfunction

    assign next       = advance(crc, data);
    assign is_residue = crc == RESIDUE;

    always @(posedge clk or posedge rst)
        if (rst) crc <= 32'hffff_ffff;
        else if (clear) crc <= 32'hffff_ffff;
        else if (enable) crc <= next;

endmodule
