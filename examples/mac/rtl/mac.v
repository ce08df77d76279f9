// An Ethernet MAC for bytes: the receive path with filter, parser and buffer, the transmit path with a buffer that can
// repeat a frame, registers and counters. The line can be looped back.
module mac #(
    parameter RX_LOG2 = 8,
    parameter TX_LOG2 = 8
) (
    input  wire        clk,
    input  wire        rst,

    input  wire        sel,
    input  wire        write,
    input  wire [6:0]  addr,
    input  wire [31:0] wdata,
    output wire [31:0] rdata,
    output wire        irq,

    input  wire        phy_rx_valid,
    input  wire        phy_rx_error,
    input  wire [7:0]  phy_rx_data,
    output wire        phy_tx_valid,
    output wire        phy_tx_error,
    output wire [7:0]  phy_tx_data,
    input  wire        phy_carrier,
    input  wire        phy_collision,

    // Frames that came
    output wire        rx_valid,
    input  wire        rx_ready,
    output wire [7:0]  rx_data,
    output wire        rx_last,

    // What the parser found in the last one
    output wire        info_valid,
    output wire [15:0] info_type,
    output wire [15:0] info_flags,
    output wire [11:0] info_vlan,
    output wire [63:0] info_addresses,
    output wire [31:0] info_ports,
    output wire [15:0] info_bytes,

    // Frames to be sent
    input  wire        tx_valid,
    output wire        tx_ready,
    input  wire [7:0]  tx_data,
    input  wire        tx_last
);

    `include "mac_defs.vh"

    wire        rx_enable, tx_enable, half_duplex, promiscuous, accept_broadcast, keep_bad, loopback;
    wire [4:0]  gap;
    wire [47:0] station;
    wire [63:0] groups;
    wire [13:0] max_length;
    wire        counter_read;
    wire [3:0]  counter_index;
    wire [31:0] counter_value;
    wire [7:0]  events;

    mac_regs regs (
        .clk              (clk),
        .rst              (rst),
        .sel              (sel),
        .write            (write),
        .addr             (addr),
        .wdata            (wdata),
        .rdata            (rdata),
        .irq              (irq),
        .rx_enable        (rx_enable),
        .tx_enable        (tx_enable),
        .half_duplex      (half_duplex),
        .promiscuous      (promiscuous),
        .accept_broadcast (accept_broadcast),
        .keep_bad         (keep_bad),
        .loopback         (loopback),
        .gap              (gap),
        .station          (station),
        .groups           (groups),
        .max_length       (max_length),
        .events           (events),
        .counter_read     (counter_read),
        .counter_index    (counter_index),
        .counter_value    (counter_value)
    );

    // Receive

    wire       line_valid = loopback ? phy_tx_valid : phy_rx_valid;
    wire       line_error = loopback ? phy_tx_error : phy_rx_error;
    wire [7:0] line_data  = loopback ? phy_tx_data  : phy_rx_data;

    wire        byte_valid, byte_first, byte_last;
    wire [7:0]  byte_data;
    wire [3:0]  bad;
    wire [13:0] frame_length;

    mac_rx receiver (
        .clk        (clk),
        .rst        (rst),
        .enable     (rx_enable),
        .max_length (max_length),
        .phy_valid  (line_valid),
        .phy_error  (line_error),
        .phy_data   (line_data),
        .out_valid  (byte_valid),
        .out_data   (byte_data),
        .out_first  (byte_first),
        .out_last   (byte_last),
        .out_bad    (bad),
        .out_length (frame_length)
    );

    wire accept, is_multicast, is_broadcast;

    mac_filter filter (
        .clk              (clk),
        .rst              (rst),
        .promiscuous      (promiscuous),
        .accept_broadcast (accept_broadcast),
        .station          (station),
        .groups           (groups),
        .in_valid         (byte_valid),
        .in_first         (byte_first),
        .in_data          (byte_data),
        .accept           (accept),
        .is_multicast     (is_multicast),
        .is_broadcast     (is_broadcast)
    );

    wire [47:0] destination, source;
    wire        has_vlan, is_ipv4, header_good, is_fragment, has_ports;
    wire [2:0]  vlan_priority;
    wire [7:0]  protocol;
    wire [31:0] ip_source, ip_destination;
    wire [15:0] port_source, port_destination;

    mac_parser parser (
        .clk              (clk),
        .rst              (rst),
        .in_valid         (byte_valid),
        .in_first         (byte_first),
        .in_last          (byte_last),
        .in_data          (byte_data),
        .done             (info_valid),
        .destination      (destination),
        .source           (source),
        .ether_type       (info_type),
        .has_vlan         (has_vlan),
        .vlan_id          (info_vlan),
        .vlan_priority    (vlan_priority),
        .is_ipv4          (is_ipv4),
        .header_good      (header_good),
        .is_fragment      (is_fragment),
        .protocol         (protocol),
        .ip_source        (ip_source),
        .ip_destination   (ip_destination),
        .has_ports        (has_ports),
        .port_source      (port_source),
        .port_destination (port_destination),
        .payload_bytes    (info_bytes)
    );

    assign info_flags     = {protocol, vlan_priority, has_ports, is_fragment, header_good, is_ipv4, has_vlan};
    assign info_addresses = is_ipv4 ? {ip_source, ip_destination} : {source[31:0], destination[31:0]};
    assign info_ports     = {port_source, port_destination};

    // The buffer keeps a frame back by one byte, so that its last one can be marked
    reg        held_valid;
    reg [7:0]  held_data;
    reg        overrun;

    wire       rx_full;
    wire       frame_ends  = byte_last;
    wire       frame_fits  = ~overrun & ~(rx_full & held_valid);
    wire       frame_good  = (bad == 4'd0 || keep_bad) && accept && frame_fits && held_valid;
    wire       push_held   = held_valid & (byte_valid | frame_ends) & ~byte_first;

    always @(posedge clk or posedge rst)
        if (rst) begin
            held_valid <= 1'b0;
            held_data  <= 8'd0;
            overrun    <= 1'b0;
        end else begin
            if (byte_valid) held_data <= byte_data;
            if (byte_valid) held_valid <= 1'b1;
            else if (frame_ends) held_valid <= 1'b0;
            if (frame_ends) overrun <= 1'b0;
            else if (push_held && rx_full) overrun <= 1'b1;
        end

    wire [RX_LOG2:0] rx_used;

    mac_buffer #(.LOG2(RX_LOG2)) rx_buffer (
        .clk       (clk),
        .rst       (rst),
        .in_valid  (push_held),
        .in_data   (held_data),
        .in_last   (frame_ends),
        .commit    (frame_ends & frame_good),
        .discard   (frame_ends & ~frame_good),
        .full      (rx_full),
        .out_valid (rx_valid),
        .out_ready (rx_ready),
        .out_data  (rx_data),
        .out_last  (rx_last),
        .rewind    (1'b0),
        .free      (1'b1),
        .used      (rx_used)
    );

    // Transmit: a frame starts when all of it is in the buffer

    wire             tx_full;
    wire [TX_LOG2:0] tx_used;
    wire             send_valid, send_ready, send_last, send_rewind;
    wire [7:0]       send_data;
    wire             sent, send_failed;
    wire [3:0]       send_attempts;
    reg              dropping;          // a frame that is larger than the buffer

    wire tx_take  = tx_valid & tx_ready;
    wire too_big  = tx_full & ~send_valid;

    assign tx_ready = ~tx_full | dropping | too_big;

    always @(posedge clk or posedge rst)
        if (rst) dropping <= 1'b0;
        else if (tx_take && tx_last) dropping <= 1'b0;
        else if (tx_take && too_big) dropping <= 1'b1;

    mac_buffer #(.LOG2(TX_LOG2)) tx_buffer (
        .clk       (clk),
        .rst       (rst),
        .in_valid  (tx_take & ~dropping & ~too_big),
        .in_data   (tx_data),
        .in_last   (tx_last),
        .commit    (tx_take & tx_last & ~dropping & ~too_big),
        .discard   (tx_take & too_big),
        .full      (tx_full),
        .out_valid (send_valid),
        .out_ready (send_ready),
        .out_data  (send_data),
        .out_last  (send_last),
        .rewind    (send_rewind),
        .free      (sent | send_failed),
        .used      (tx_used)
    );

    mac_tx transmitter (
        .clk         (clk),
        .rst         (rst),
        .enable      (tx_enable),
        .half_duplex (half_duplex),
        .gap         (gap),
        .in_valid    (send_valid),
        .in_ready    (send_ready),
        .in_data     (send_data),
        .in_last     (send_last),
        .in_rewind   (send_rewind),
        .phy_valid   (phy_tx_valid),
        .phy_error   (phy_tx_error),
        .phy_data    (phy_tx_data),
        .carrier     (phy_carrier),
        .collision   (phy_collision),
        .sent        (sent),
        .failed      (send_failed),
        .attempts    (send_attempts)
    );

    // What is counted and told

    wire frame_bad = |bad;

    wire [9:0] counted = {
        sent & (send_attempts != 4'd0),
        send_failed,
        sent,
        frame_ends & ~frame_fits,
        frame_ends & is_multicast & ~frame_bad,
        frame_ends & is_broadcast & ~frame_bad,
        frame_ends & bad[`MAC_BAD_LONG],
        frame_ends & bad[`MAC_BAD_SHORT],
        frame_ends & bad[`MAC_BAD_CRC],
        frame_ends & frame_good
    };

    mac_counters counters (
        .clk           (clk),
        .rst           (rst),
        .events        (counted),
        .byte_received (byte_valid),
        .byte_sent     (phy_tx_valid),
        .read          (counter_read),
        .index         (counter_index),
        .value         (counter_value)
    );

    assign events = {
        tx_take & too_big,
        send_failed,
        sent,
        frame_ends & ~frame_fits,
        frame_ends & bad[`MAC_BAD_SYMBOL],
        frame_ends & frame_bad,
        frame_ends & frame_good & is_broadcast,
        frame_ends & frame_good
    };

endmodule
