// Constants of the Ethernet MAC.

`define MAC_PREAMBLE      8'h55
`define MAC_DELIMITER     8'hd5
`define MAC_EXTENSION     8'h0f

`define MAC_MIN_FRAME     14'd64
`define MAC_MIN_PAYLOAD   14'd60

`define MAC_TYPE_IPV4     16'h0800
`define MAC_TYPE_ARP      16'h0806
`define MAC_TYPE_VLAN     16'h8100
`define MAC_TYPE_IPV6     16'h86dd

`define MAC_PROTO_ICMP    8'd1
`define MAC_PROTO_TCP     8'd6
`define MAC_PROTO_UDP     8'd17

// What is wrong with a frame, one bit for each
`define MAC_BAD_CRC       0
`define MAC_BAD_SHORT     1
`define MAC_BAD_LONG      2
`define MAC_BAD_SYMBOL    3
`define MAC_BAD_ADDRESS   4
`define MAC_BAD_ROOM      5

// Registers, as indices of words
`define MAC_REG_CONTROL   4'd0
`define MAC_REG_ADDR_LOW  4'd1
`define MAC_REG_ADDR_HIGH 4'd2
`define MAC_REG_HASH_LOW  4'd3
`define MAC_REG_HASH_HIGH 4'd4
`define MAC_REG_LIMITS    4'd5
`define MAC_REG_EVENTS    4'd6
`define MAC_REG_MASK      4'd7
`define MAC_REG_COUNTER   4'd8
