// Decides by its first six bytes whether a frame is for this station: its own address, broadcast, or a multicast group
// whose hash the host has marked. The answer stands from the sixth byte on.
module mac_filter (
    input  wire        clk,
    input  wire        rst,

    input  wire        promiscuous,
    input  wire        accept_broadcast,
    input  wire [47:0] station,         // the first byte on the line is the highest
    input  wire [63:0] groups,          // one bit for each hash value

    input  wire        in_valid,
    input  wire        in_first,
    input  wire [7:0]  in_data,

    output reg         accept,
    output reg         is_multicast,
    output reg         is_broadcast
);

    reg [2:0]  number;                  // of the next byte
    reg        station_so_far;
    reg        broadcast_so_far;
    reg        multicast;
    reg [31:0] hash;

    wire [2:0] at = in_first ? 3'd0 : number;

    reg [7:0] station_byte;
    always @*
        case (at)
            3'd0:    station_byte = station[47:40];
            3'd1:    station_byte = station[39:32];
            3'd2:    station_byte = station[31:24];
            3'd3:    station_byte = station[23:16];
            3'd4:    station_byte = station[15:8];
            default: station_byte = station[7:0];
        endcase

    wire same_station   = (in_first | station_so_far) & (in_data == station_byte);
    wire same_broadcast = (in_first | broadcast_so_far) & (&in_data);
    wire group_bit      = in_first ? in_data[0] : multicast;

    // The hash is the top of the check sequence over the address
    function [31:0] hash_byte;
        input [31:0] state;
        input [7:0]  value;
        reg   [31:0] s;
        integer      i;
        begin
            s = state;
            for (i = 0; i < 8; i = i + 1)
                s = (s[31] ^ value[i]) ? {s[30:0], 1'b0} ^ 32'h04c1_1db7 : {s[30:0], 1'b0};
            hash_byte = s;
        end
    endfunction

    wire [31:0] hash_next = hash_byte(in_first ? 32'hffff_ffff : hash, in_data);
    wire        in_group  = groups[hash_next[31:26]];

    always @(posedge clk or posedge rst)
        if (rst) begin
            number           <= 3'd0;
            station_so_far   <= 1'b0;
            broadcast_so_far <= 1'b0;
            multicast        <= 1'b0;
            hash             <= 32'd0;
            accept           <= 1'b0;
            is_multicast     <= 1'b0;
            is_broadcast     <= 1'b0;
        end else if (in_valid && (in_first || number != 3'd6)) begin
            number           <= at + 3'd1;
            station_so_far   <= same_station;
            broadcast_so_far <= same_broadcast;
            multicast        <= group_bit;
            hash             <= hash_next;
            if (at == 3'd5) begin
                accept       <= promiscuous | same_station | (same_broadcast & accept_broadcast)
                              | (group_bit & ~same_broadcast & in_group);
                is_multicast <= group_bit & ~same_broadcast;
                is_broadcast <= same_broadcast;
            end else begin
                accept       <= promiscuous;
                is_multicast <= 1'b0;
                is_broadcast <= 1'b0;
            end
        end

endmodule
