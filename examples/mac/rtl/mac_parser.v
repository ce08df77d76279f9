// Reads the headers of a frame as its bytes go by: addresses, VLAN tags, IPv4 with its checksum, TCP and UDP ports. What
// it found stands with `done`, one cycle behind the last byte.
module mac_parser (
    input  wire        clk,
    input  wire        rst,

    input  wire        in_valid,
    input  wire        in_first,
    input  wire        in_last,         // after or with the last byte
    input  wire [7:0]  in_data,

    output reg         done,
    output reg  [47:0] destination,
    output reg  [47:0] source,
    output reg  [15:0] ether_type,
    output reg         has_vlan,
    output reg  [11:0] vlan_id,
    output reg  [2:0]  vlan_priority,
    output reg         is_ipv4,
    output reg         header_good,     // version, length and checksum
    output reg         is_fragment,
    output reg  [7:0]  protocol,
    output reg  [31:0] ip_source,
    output reg  [31:0] ip_destination,
    output reg         has_ports,
    output reg  [15:0] port_source,
    output reg  [15:0] port_destination,
    output reg  [15:0] payload_bytes
);

    `include "mac_defs.vh"

    localparam [3:0] REST     = 4'd0,
                     TO       = 4'd1,
                     FROM     = 4'd2,
                     KIND     = 4'd3,
                     TAG      = 4'd4,
                     HEADER   = 4'd5,
                     OPTIONS  = 4'd6,
                     PORTS    = 4'd7,
                     PAYLOAD  = 4'd8,
                     OTHER    = 4'd9;

    reg [3:0]  state;
    reg [5:0]  count;                   // bytes of this part so far
    reg [7:0]  previous;
    reg [3:0]  words;                   // length of the IPv4 header
    reg [15:0] total;                   // length of the packet
    reg [16:0] sum;                     // of the header's halves so far, with the carry of the last addition

    wire [15:0] pair     = {previous, in_data};
    wire        is_odd   = count[0];    // the second byte of a half word
    wire [5:0]  next     = count + 6'd1;
    wire [5:0]  header   = {words, 2'b00};

    // One's complement addition: the carry comes back at the low end
    wire [16:0] sum_next = {1'b0, sum[15:0]} + {1'b0, pair} + {16'd0, sum[16]};
    wire [15:0] folded   = sum_next[15:0] + {15'd0, sum_next[16]};
    wire        version4 = in_data[7:4] == 4'd4;
    wire        at_end   = in_last;

    wire carries_ports = (protocol == `MAC_PROTO_TCP || protocol == `MAC_PROTO_UDP) && !is_fragment;

    // What follows the header
    reg [3:0] behind_header;
    always @* behind_header = carries_ports ? PORTS : PAYLOAD;

    task start_part;
        input [3:0] part;
        begin
            state <= part;
            count <= 6'd0;
        end
    endtask

    always @(posedge clk or posedge rst)
        if (rst) begin
            state            <= REST;
            count            <= 6'd0;
            previous         <= 8'd0;
            words            <= 4'd0;
            total            <= 16'd0;
            sum              <= 17'd0;
            done             <= 1'b0;
            destination      <= 48'd0;
            source           <= 48'd0;
            ether_type       <= 16'd0;
            has_vlan         <= 1'b0;
            vlan_id          <= 12'd0;
            vlan_priority    <= 3'd0;
            is_ipv4          <= 1'b0;
            header_good      <= 1'b0;
            is_fragment      <= 1'b0;
            protocol         <= 8'd0;
            ip_source        <= 32'd0;
            ip_destination   <= 32'd0;
            has_ports        <= 1'b0;
            port_source      <= 16'd0;
            port_destination <= 16'd0;
            payload_bytes    <= 16'd0;
        end else begin
            done <= at_end;
            if (at_end) state <= REST;
            if (in_valid) begin
                previous <= in_data;
                if (in_first) begin
                    start_part(TO);
                    count         <= 6'd1;
                    destination   <= {40'd0, in_data};
                    has_vlan      <= 1'b0;
                    vlan_id       <= 12'd0;
                    vlan_priority <= 3'd0;
                    is_ipv4       <= 1'b0;
                    header_good   <= 1'b0;
                    is_fragment   <= 1'b0;
                    has_ports     <= 1'b0;
                    payload_bytes <= 16'd0;
                end else begin
                    count <= next;
                    case (state)
                        TO: begin
                            destination <= {destination[39:0], in_data};
                            if (next == 6'd6) start_part(FROM);
                        end

                        FROM: begin
                            source <= {source[39:0], in_data};
                            if (next == 6'd6) start_part(KIND);
                        end

                        KIND:
                            if (is_odd) begin
                                ether_type <= pair;
                                sum        <= 17'd0;
                                case (pair)
                                    `MAC_TYPE_VLAN: start_part(has_vlan ? OTHER : TAG);
                                    `MAC_TYPE_IPV4: start_part(HEADER);
                                    default:        start_part(OTHER);
                                endcase
                            end

                        TAG:
                            if (is_odd) begin
                                has_vlan      <= 1'b1;
                                vlan_priority <= pair[15:13];
                                vlan_id       <= pair[11:0];
                                start_part(KIND);
                            end

                        HEADER: begin
                            if (is_odd) sum <= sum_next;
                            case (count)
                                6'd0: begin
                                    is_ipv4 <= version4;
                                    words   <= in_data[3:0];
                                    if (!version4 || in_data[3:0] < 4'd5) state <= OTHER;
                                end
                                6'd3: total       <= pair;
                                6'd7: is_fragment <= pair[13] || pair[12:0] != 13'd0;
                                6'd9: protocol    <= in_data;
                                6'd12, 6'd13, 6'd14, 6'd15: ip_source <= {ip_source[23:0], in_data};
                                6'd16, 6'd17, 6'd18, 6'd19: ip_destination <= {ip_destination[23:0], in_data};
                                default: ;
                            endcase
                            if (next == header && count != 6'd0) begin
                                header_good <= folded == 16'hffff;
                                start_part(behind_header);
                            end else if (next == 6'd20) state <= OPTIONS;
                        end

                        OPTIONS: begin
                            if (is_odd) sum <= sum_next;
                            if (next == header) begin
                                header_good <= folded == 16'hffff;
                                start_part(behind_header);
                            end
                        end

                        PORTS: begin
                            if (count == 6'd1) port_source <= pair;
                            if (count == 6'd3) begin
                                port_destination <= pair;
                                has_ports        <= 1'b1;
                                payload_bytes    <= 16'd4;
                                start_part(PAYLOAD);
                            end
                        end

                        PAYLOAD:
                            if (payload_bytes + {10'd0, header} < total) payload_bytes <= payload_bytes + 16'd1;

                        default: ;
                    endcase
                end
            end
        end

endmodule
