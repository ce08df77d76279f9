// The registers of the MAC behind a simple strobe interface, and its interrupt.
module mac_regs (
    input  wire        clk,
    input  wire        rst,

    input  wire        sel,
    input  wire        write,
    input  wire [6:0]  addr,
    input  wire [31:0] wdata,
    output reg  [31:0] rdata,
    output wire        irq,

    output wire        rx_enable,
    output wire        tx_enable,
    output wire        half_duplex,
    output wire        promiscuous,
    output wire        accept_broadcast,
    output wire        keep_bad,
    output wire        loopback,
    output wire [4:0]  gap,
    output wire [47:0] station,
    output wire [63:0] groups,
    output wire [13:0] max_length,

    input  wire [7:0]  events,
    output wire        counter_read,
    output wire [3:0]  counter_index,
    input  wire [31:0] counter_value
);

    `include "mac_defs.vh"

    reg [15:0] control;
    reg [47:0] station_reg;
    reg [63:0] groups_reg;
    reg [13:0] limit;
    reg [7:0]  pending;
    reg [7:0]  mask;

    assign rx_enable        = control[0];
    assign tx_enable        = control[1];
    assign half_duplex      = control[2];
    assign promiscuous      = control[3];
    assign accept_broadcast = control[4];
    assign keep_bad         = control[5];
    assign loopback         = control[6];
    assign gap              = control[12:8];
    assign station          = station_reg;
    assign groups           = groups_reg;
    assign max_length       = limit;
    assign irq              = |(pending & mask);

    wire        is_counter = addr[6];
    wire [3:0]  index      = addr[5:2];
    wire        writes     = sel & write & ~is_counter;

    assign counter_read  = sel & ~write & is_counter;
    assign counter_index = index;

    always @(posedge clk or posedge rst)
        if (rst) begin
            control     <= 16'h0c10;
            station_reg <= 48'd0;
            groups_reg  <= 64'd0;
            limit       <= 14'd1518;
            mask        <= 8'd0;
        end else if (writes)
            case (index)
                `MAC_REG_CONTROL:   control            <= wdata[15:0];
                `MAC_REG_ADDR_LOW:  station_reg[31:0]  <= wdata;
                `MAC_REG_ADDR_HIGH: station_reg[47:32] <= wdata[15:0];
                `MAC_REG_HASH_LOW:  groups_reg[31:0]   <= wdata;
                `MAC_REG_HASH_HIGH: groups_reg[63:32]  <= wdata;
                `MAC_REG_LIMITS:    limit              <= wdata[13:0];
                `MAC_REG_MASK:      mask               <= wdata[7:0];
                default: ;
            endcase

    always @(posedge clk or posedge rst)
        if (rst) pending <= 8'd0;
        else if (writes && index == `MAC_REG_EVENTS) pending <= (pending & ~wdata[7:0]) | events;
        else pending <= pending | events;

    always @*
        if (is_counter) rdata = counter_value;
        else
            case (index)
                `MAC_REG_CONTROL:   rdata = {16'd0, control};
                `MAC_REG_ADDR_LOW:  rdata = station_reg[31:0];
                `MAC_REG_ADDR_HIGH: rdata = {16'd0, station_reg[47:32]};
                `MAC_REG_HASH_LOW:  rdata = groups_reg[31:0];
                `MAC_REG_HASH_HIGH: rdata = groups_reg[63:32];
                `MAC_REG_LIMITS:    rdata = {18'd0, limit};
                `MAC_REG_EVENTS:    rdata = {24'd0, pending};
                `MAC_REG_MASK:      rdata = {24'd0, mask};
                default:            rdata = 32'd0;
            endcase

endmodule
