// UART with transmit and receive buffers behind a 32-bit register interface.
//   0x0 DATA    write: transmit, read: receive and advance
//   0x4 STATUS  {overrun, frame error, parity error} are cleared by writing ones
//   0x8 CONTROL line format, enables and interrupt mask
//   0xC DIVIDER clock cycles for a sixteenth of a bit, less one
module uart #(
    parameter FIFO_LOG2 = 3,
    parameter [15:0] DEFAULT_DIVIDER = 16'd53
) (
    input  wire        clk,
    input  wire        rst,

    input  wire        sel,
    input  wire        write,
    input  wire [3:0]  addr,
    input  wire [31:0] wdata,
    output reg  [31:0] rdata,

    output wire        irq,
    input  wire        rxd,
    output wire        txd
);

    `define REG_DATA    2'd0
    `define REG_STATUS  2'd1
    `define REG_CONTROL 2'd2
    `define REG_DIVIDER 2'd3

    wire [1:0] index = addr[3:2];
    wire       wr    = sel & write;
    wire       rd    = sel & ~write;

    // Registers
    reg [15:0] divider;
    reg [8:0]  control;
    reg        overrun, frame_sticky, parity_sticky;

    wire [1:0] cfg_bits       = control[1:0];
    wire       cfg_parity     = control[2];
    wire       cfg_odd        = control[3];
    wire       cfg_two_stop   = control[4];
    wire       cfg_tx_enable  = control[5];
    wire       cfg_rx_enable  = control[6];
    wire [1:0] cfg_irq_enable = control[8:7];

    // Baud rate
    reg [15:0] count;
    reg        tick;
    always @(posedge clk)
        if (rst) begin
            count <= 16'd0;
            tick  <= 1'b0;
        end else begin
            tick  <= (count == 16'd0);
            count <= (count == 16'd0) ? divider : count - 16'd1;
        end

    // Transmit
    wire               tx_empty, tx_full, tx_ready, tx_busy;
    wire [7:0]         tx_data;
    wire [FIFO_LOG2:0] tx_level;
    wire               tx_push = wr & (index == `REG_DATA);

    sync_fifo #(.WIDTH(8), .DEPTH_LOG2(FIFO_LOG2)) u_tx_fifo (
        .clk(clk), .rst(rst),
        .push(tx_push), .din(wdata[7:0]),
        .pop(tx_ready & ~tx_empty), .dout(tx_data),
        .empty(tx_empty), .full(tx_full), .level(tx_level)
    );

    uart_tx u_tx (clk, rst, tick, cfg_tx_enable, cfg_bits, cfg_parity, cfg_odd, cfg_two_stop,
                  tx_data, ~tx_empty, tx_ready, txd, tx_busy);

    // Receive
    wire               rx_empty, rx_full, rx_valid, rx_parity_error, rx_frame_error;
    wire [7:0]         rx_data, rx_head;
    wire [FIFO_LOG2:0] rx_level;
    wire               rx_pop = rd & (index == `REG_DATA);

    uart_rx u_rx (
        .clk(clk), .rst(rst), .tick(tick), .enable(cfg_rx_enable),
        .bits(cfg_bits), .parity_on(cfg_parity), .parity_odd(cfg_odd), .rxd(rxd),
        .data(rx_data), .valid(rx_valid),
        .parity_error(rx_parity_error), .frame_error(rx_frame_error)
    );

    sync_fifo #(8, FIFO_LOG2) u_rx_fifo (
        .clk(clk), .rst(rst),
        .push(rx_valid & ~rx_frame_error), .din(rx_data),
        .pop(rx_pop), .dout(rx_head),
        .empty(rx_empty), .full(rx_full), .level(rx_level)
    );

    // Register writes; an event of the same cycle wins over a clear
    always @(posedge clk)
        if (rst) begin
            divider       <= DEFAULT_DIVIDER;
            control       <= 9'b0_0110_0011;
            overrun       <= 1'b0;
            frame_sticky  <= 1'b0;
            parity_sticky <= 1'b0;
        end else begin
            if (wr)
                case (index)
                    `REG_STATUS: begin
                        if (wdata[8])  overrun       <= 1'b0;
                        if (wdata[9])  frame_sticky  <= 1'b0;
                        if (wdata[10]) parity_sticky <= 1'b0;
                    end
                    `REG_CONTROL: control <= wdata[8:0];
                    `REG_DIVIDER: divider <= wdata[15:0];
                    default: ;
                endcase
            if (rx_valid) begin
                if (rx_full)         overrun       <= 1'b1;
                if (rx_frame_error)  frame_sticky  <= 1'b1;
                if (rx_parity_error) parity_sticky <= 1'b1;
            end
        end

    // Register reads
    always @(index or rx_head or rx_empty or rx_full or rx_level or tx_empty or tx_full or tx_level or tx_busy
             or overrun or frame_sticky or parity_sticky or control or divider) begin
        rdata = 32'b0;
        case (index)
            `REG_DATA:    rdata = {23'b0, ~rx_empty, rx_head};
            `REG_STATUS:  begin
                rdata[0]  = ~rx_empty;
                rdata[1]  = rx_full;
                rdata[2]  = tx_empty;
                rdata[3]  = tx_full;
                rdata[4]  = tx_busy;
                rdata[10:8] = {parity_sticky, frame_sticky, overrun};
                rdata[16 +: FIFO_LOG2+1] = rx_level;
                rdata[24 +: FIFO_LOG2+1] = tx_level;
            end
            `REG_CONTROL: rdata = control;
            `REG_DIVIDER: rdata = divider;
        endcase
    end

    assign irq = |(cfg_irq_enable & {tx_empty, ~rx_empty});

endmodule
