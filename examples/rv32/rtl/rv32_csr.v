// Machine-mode control and status registers with the cycle and instruction counters and the trap state.
`include "rv32_defs.vh"

module rv32_csr #(
    parameter [31:0] HART_ID    = 0,
    parameter        COUNTERS   = 1,
    parameter [31:0] TRAP_RESET = 32'h0000_0010
) (
    input  wire        clk,
    input  wire        rst_n,

    // Access of a CSR instruction
    input  wire        access,
    input  wire [11:0] addr,
    input  wire [2:0]  funct3,
    input  wire [4:0]  rs1_index,
    input  wire [31:0] operand,
    output reg  [31:0] rdata,
    output wire        bad_access,

    // Events
    input  wire        retire,
    input  wire        trap,
    input  wire [4:0]  trap_cause,
    input  wire        trap_interrupt,
    input  wire [31:0] trap_pc,
    input  wire [31:0] trap_value,
    input  wire        mret,
    input  wire        irq_timer,
    input  wire        irq_external,

    output wire [31:0] trap_vector,
    output wire [31:0] epc,
    output wire        irq_pending,
    output wire [4:0]  irq_cause
);

    reg        mstatus_mie, mstatus_mpie;
    reg        mie_mtie, mie_meie;
    reg [31:0] mtvec, mscratch, mepc, mtval;
    reg [4:0]  mcause_code;
    reg        mcause_irq;
    reg [63:0] mcycle, minstret;
    reg        known;

    // Read
    always @* begin
        known = 1'b1;
        rdata = 32'h0;
        case (addr)
            `CSR_MSTATUS:   begin
                                rdata[3]     = mstatus_mie;
                                rdata[7]     = mstatus_mpie;
                                rdata[12:11] = 2'b11;
                            end
            `CSR_MISA:      rdata = 32'h4000_0100;
            `CSR_MIE:       {rdata[11], rdata[7]} = {mie_meie, mie_mtie};
            `CSR_MTVEC:     rdata = mtvec;
            `CSR_MSCRATCH:  rdata = mscratch;
            `CSR_MEPC:      rdata = mepc;
            `CSR_MCAUSE:    rdata = {mcause_irq, 26'b0, mcause_code};
            `CSR_MTVAL:     rdata = mtval;
            `CSR_MIP:       begin
                                rdata[7]  = irq_timer;
                                rdata[11] = irq_external;
                            end
            `CSR_MCYCLE:    rdata = mcycle[31:0];
            `CSR_MCYCLEH:   rdata = mcycle[63:32];
            `CSR_MINSTRET:  rdata = minstret[31:0];
            `CSR_MINSTRETH: rdata = minstret[63:32];
            `CSR_MHARTID:   rdata = HART_ID;
            default:        known = 1'b0;
        endcase
    end

    // The value that a write leaves: replace, set or clear.
    function [31:0] next_value;
        input [1:0]  kind;
        input [31:0] old;
        input [31:0] mask;
        begin
            case (kind)
                2'b01:   next_value = mask;
                2'b10:   next_value = old | mask;
                2'b11:   next_value = old & ~mask;
                default: next_value = old;
            endcase
        end
    endfunction

    // CSRRS and CSRRC with x0 do not write at all (and so do not trap on read-only registers).
    wire        read_only   = (addr[11:10] == 2'b11);
    wire        wants_write = (funct3[1:0] == 2'b01) || (rs1_index != 5'd0);
    wire        write       = access && wants_write && !read_only && known;
    wire [31:0] wdata       = next_value(funct3[1:0], rdata, operand);

    assign bad_access = access && (!known || (wants_write && read_only));

    always @(posedge clk or negedge rst_n) begin
        if (!rst_n) begin
            mstatus_mie  <= 1'b0;
            mstatus_mpie <= 1'b0;
            mie_mtie     <= 1'b0;
            mie_meie     <= 1'b0;
            mtvec        <= TRAP_RESET;
            mscratch     <= 32'h0;
            mepc         <= 32'h0;
            mtval        <= 32'h0;
            mcause_code  <= 5'd0;
            mcause_irq   <= 1'b0;
        end else if (trap) begin
            mepc         <= {trap_pc[31:2], 2'b00};
            mtval        <= trap_value;
            mcause_code  <= trap_cause;
            mcause_irq   <= trap_interrupt;
            mstatus_mpie <= mstatus_mie;
            mstatus_mie  <= 1'b0;
        end else if (mret) begin
            mstatus_mie  <= mstatus_mpie;
            mstatus_mpie <= 1'b1;
        end else if (write) begin
            case (addr)
                `CSR_MSTATUS:  {mstatus_mpie, mstatus_mie} <= {wdata[7], wdata[3]};
                `CSR_MIE:      begin
                                   mie_mtie <= wdata[7];
                                   mie_meie <= wdata[11];
                               end
                `CSR_MTVEC:    mtvec    <= {wdata[31:2], 2'b00};
                `CSR_MSCRATCH: mscratch <= wdata;
                `CSR_MEPC:     mepc     <= {wdata[31:2], 2'b00};
                `CSR_MCAUSE:   {mcause_irq, mcause_code} <= {wdata[31], wdata[4:0]};
                `CSR_MTVAL:    mtval    <= wdata;
            endcase
        end
    end

    // Counters: a write wins over the count of the same cycle.
    generate
        if (COUNTERS) begin : g_counters
            always @(posedge clk or negedge rst_n)
                if (!rst_n) begin
                    mcycle   <= 64'd0;
                    minstret <= 64'd0;
                end else begin
                    mcycle <= mcycle + 1;
                    if (retire)
                        minstret <= minstret + 64'd1;
                    if (write)
                        case (addr)
                            `CSR_MCYCLE:    mcycle[31:0]    <= wdata;
                            `CSR_MCYCLEH:   mcycle[63:32]   <= wdata;
                            `CSR_MINSTRET:  minstret[31:0]  <= wdata;
                            `CSR_MINSTRETH: minstret[63:32] <= wdata;
                        endcase
                end
        end else begin : g_no_counters
            always @* begin
                mcycle   = 64'd0;
                minstret = 64'd0;
            end
        end
    endgenerate

    wire timer_fires    = irq_timer & mie_mtie;
    wire external_fires = irq_external & mie_meie;

    assign trap_vector = mtvec;
    assign epc         = mepc;
    assign irq_pending = mstatus_mie & (timer_fires | external_fires);
    assign irq_cause   = external_fires ? 5'd11 : 5'd7;

endmodule
