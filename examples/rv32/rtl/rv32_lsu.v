// Load and store unit: byte lanes, alignment check and the extension of loaded data, combinational.
module rv32_lsu (
    input  wire [2:0]  funct3,
    input  wire [1:0]  addr_lo,
    input  wire [31:0] store_data,
    input  wire [31:0] bus_rdata,

    output reg  [3:0]  byte_enable,
    output reg  [31:0] bus_wdata,
    output reg  [31:0] load_data,
    output reg         misaligned
);

    localparam SIZE_BYTE = 2'b00,
               SIZE_HALF = 2'b01,
               SIZE_WORD = 2'b10;

    wire [1:0] size        = funct3[1:0];
    wire       zero_extend = funct3[2];

    integer lane;

    // The stored value is repeated over the lanes; the enables pick the ones that count.
    always @* begin
        byte_enable = 4'b0000;
        bus_wdata   = store_data;
        misaligned  = 1'b0;
        case (size)
            SIZE_BYTE: begin
                byte_enable = 4'b0001 << addr_lo;
                for (lane = 0; lane < 4; lane = lane + 1)
                    bus_wdata[8*lane +: 8] = store_data[7:0];
            end
            SIZE_HALF: begin
                byte_enable = addr_lo[1] ? 4'b1100 : 4'b0011;
                bus_wdata   = {2{store_data[15:0]}};
                misaligned  = addr_lo[0];
            end
            SIZE_WORD: begin
                byte_enable = 4'b1111;
                misaligned  = |addr_lo;
            end
            default: misaligned = 1'b1;
        endcase
    end

    wire [7:0]  byte_in = bus_rdata[{addr_lo, 3'b000} +: 8];
    wire [15:0] half_in = addr_lo[1] ? bus_rdata[31:16] : bus_rdata[15:0];

    always @* begin
        case (size)
            SIZE_BYTE: load_data = {{24{byte_in[7] & ~zero_extend}}, byte_in};
            SIZE_HALF: load_data = {{16{half_in[15] & ~zero_extend}}, half_in};
            default:   load_data = bus_rdata;
        endcase
    end

endmodule
