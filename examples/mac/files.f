# An Ethernet MAC with address filter, packet parser, frame buffer and counters
-I rtl
rtl/mac_crc32.v
rtl/mac_rx.v
rtl/mac_tx.v
rtl/mac_filter.v
rtl/mac_buffer.v
rtl/mac_parser.v
rtl/mac_counters.v
rtl/mac_regs.v
rtl/mac.v
