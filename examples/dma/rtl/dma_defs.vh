// Register map and encodings of the DMA engine.

// Registers of a channel; channel n begins at n * 32.
`define DMA_REG_CTRL    3'd0
`define DMA_REG_STATUS  3'd1
`define DMA_REG_SRC     3'd2
`define DMA_REG_DST     3'd3
`define DMA_REG_LEN     3'd4
`define DMA_REG_NEXT    3'd5
`define DMA_REG_COUNT   3'd6

// Global registers, from 0x80.
`define DMA_REG_ENABLE  3'd0
`define DMA_REG_IRQ     3'd1
`define DMA_REG_MASK    3'd2
`define DMA_REG_ID      3'd3
`define DMA_REG_ACTIVE  3'd4

// Bits of CTRL.
`define DMA_CTRL_START      0
`define DMA_CTRL_ABORT      1
`define DMA_CTRL_SRC_FIXED  2
`define DMA_CTRL_DST_FIXED  3
`define DMA_CTRL_CHAIN      4
`define DMA_CTRL_PRIORITY   6:5
`define DMA_CTRL_CHUNK      9:7

// Responses of the bus.
`define DMA_RESP_OKAY    2'b00
`define DMA_RESP_EXOKAY  2'b01
`define DMA_RESP_SLVERR  2'b10
`define DMA_RESP_DECERR  2'b11

// Kinds of burst.
`define DMA_BURST_FIXED  2'b00
`define DMA_BURST_INCR   2'b01
