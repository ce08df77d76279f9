// RV32I core with machine mode, multi-cycle, one instruction at a time; valid/ready buses for instructions and data.
`include "rv32_defs.vh"

module rv32 #(
    parameter [31:0] RESET_PC = 32'h0000_0000,
    parameter [31:0] HART_ID  = 32'd0,
    parameter        COUNTERS = 1
) (
    input  wire        clk,
    input  wire        rst_n,

    output wire        imem_valid,
    output wire [31:0] imem_addr,
    input  wire        imem_ready,
    input  wire [31:0] imem_rdata,

    output wire        dmem_valid,
    output wire        dmem_write,
    output wire [31:0] dmem_addr,
    output wire [31:0] dmem_wdata,
    output wire [3:0]  dmem_be,
    input  wire        dmem_ready,
    input  wire [31:0] dmem_rdata,

    input  wire        irq_timer,
    input  wire        irq_external,

    // Retirement trace, one pulse for each instruction that completes
    output reg         trace_valid,
    output reg  [31:0] trace_pc,
    output reg  [31:0] trace_instr
);

    // Sequencing
    wire latch_instr, latch_operands, latch_result, latch_load, commit, take_trap, trap_is_irq;
    wire irq_pending;
    wire exception;

    reg  [31:0] pc, instr;

    // Decode
    wire [4:0]        rs1, rs2, rd;
    wire [2:0]        funct3;
    wire [31:0]       imm;
    wire [`ALU_W-1:0] alu_op;
    wire              alu_a_pc, alu_b_imm, reg_write;
    wire [1:0]        wb_sel;
    wire              is_branch, is_jal, is_jalr, is_load, is_store, is_csr, is_ecall, is_ebreak, is_mret, illegal;

    rv32_decoder u_decoder (
        .instr     (instr),
        .rs1       (rs1),
        .rs2       (rs2),
        .rd        (rd),
        .funct3    (funct3),
        .imm       (imm),
        .alu_op    (alu_op),
        .alu_a_pc  (alu_a_pc),
        .alu_b_imm (alu_b_imm),
        .reg_write (reg_write),
        .wb_sel    (wb_sel),
        .is_branch (is_branch),
        .is_jal    (is_jal),
        .is_jalr   (is_jalr),
        .is_load   (is_load),
        .is_store  (is_store),
        .is_csr    (is_csr),
        .is_ecall  (is_ecall),
        .is_ebreak (is_ebreak),
        .is_mret   (is_mret),
        .illegal   (illegal)
    );

    // Operands
    wire [31:0] rf_rdata1, rf_rdata2;
    reg  [31:0] op1, op2;
    reg  [31:0] wb_data;

    rv32_regfile u_regfile (
        .clk    (clk),
        .we     (commit & reg_write),
        .waddr  (rd),
        .wdata  (wb_data),
        .raddr1 (rs1),
        .raddr2 (rs2),
        .rdata1 (rf_rdata1),
        .rdata2 (rf_rdata2)
    );

    always @(posedge clk)
        if (latch_operands) begin
            op1 <= rf_rdata1;
            op2 <= rf_rdata2;
        end

    // Execute: the ALU computes results, addresses and branch targets; the comparison flags come from a second unit,
    // because a branch needs its target in the same cycle.
    wire [31:0] alu_a = alu_a_pc  ? pc  : op1;
    wire [31:0] alu_b = alu_b_imm ? imm : op2;
    wire [31:0] alu_y;
    wire        cmp_eq, cmp_lt, cmp_ltu;
    wire        taken;

    rv32_alu u_alu (.op(alu_op), .a(alu_a), .b(alu_b), .y(alu_y), .eq(), .lt(), .ltu());

    rv32_alu u_compare (.op(`ALU_ADD), .a(op1), .b(op2), .y(), .eq(cmp_eq), .lt(cmp_lt), .ltu(cmp_ltu));

    rv32_branch u_branch (funct3, cmp_eq, cmp_lt, cmp_ltu, taken);

    wire        jump        = is_jal | is_jalr | (is_branch & taken);
    wire [31:0] jump_target = {alu_y[31:1], alu_y[0] & ~is_jalr};
    wire [31:0] pc_plus_4   = pc + 32'd4;

    // Memory
    wire        lsu_misaligned;
    wire [31:0] load_data;
    reg  [31:0] result, load_result, pc_next, csr_result;

    rv32_lsu u_lsu (
        .funct3      (funct3),
        .addr_lo     (latch_result ? alu_y[1:0] : result[1:0]),
        .store_data  (op2),
        .bus_rdata   (dmem_rdata),
        .byte_enable (dmem_be),
        .bus_wdata   (dmem_wdata),
        .load_data   (load_data),
        .misaligned  (lsu_misaligned)
    );

    assign dmem_write = is_store;
    assign dmem_addr  = {result[31:2], 2'b00};

    // Control and status registers
    wire [31:0] csr_rdata, trap_vector, epc;
    wire        csr_bad;
    wire [4:0]  irq_cause;
    reg  [4:0]  exc_cause;
    reg  [31:0] exc_value;

    wire fetch_misaligned = jump & (jump_target[1:0] != 2'b00);
    wire data_misaligned  = (is_load | is_store) & lsu_misaligned;

    assign exception = illegal | csr_bad | is_ecall | is_ebreak | fetch_misaligned | data_misaligned;

    rv32_csr #(
        .HART_ID  (HART_ID),
        .COUNTERS (COUNTERS)
    ) u_csr (
        .clk            (clk),
        .rst_n          (rst_n),
        .access         (is_csr & latch_result),
        .addr           (instr[31:20]),
        .funct3         (funct3),
        .rs1_index      (instr[19:15]),
        .operand        (funct3[2] ? imm : op1),
        .rdata          (csr_rdata),
        .bad_access     (csr_bad),
        .retire         (commit),
        .trap           (take_trap),
        .trap_cause     (trap_is_irq ? irq_cause : exc_cause),
        .trap_interrupt (trap_is_irq),
        .trap_pc        (pc),
        .trap_value     (trap_is_irq ? 32'b0 : exc_value),
        .mret           (is_mret & commit),
        .irq_timer      (irq_timer),
        .irq_external   (irq_external),
        .trap_vector    (trap_vector),
        .epc            (epc),
        .irq_pending    (irq_pending),
        .irq_cause      (irq_cause)
    );

    // The cause that the privileged architecture ranks highest wins.
    always @(posedge clk)
        if (latch_result) begin
            exc_value <= 32'b0;
            if (illegal | csr_bad) begin
                exc_cause <= `CAUSE_ILLEGAL;
                exc_value <= instr;
            end else if (fetch_misaligned) begin
                exc_cause <= `CAUSE_FETCH_ALIGN;
                exc_value <= jump_target;
            end else if (is_ecall)
                exc_cause <= `CAUSE_ECALL;
            else if (is_ebreak) begin
                exc_cause <= `CAUSE_BREAK;
                exc_value <= pc;
            end else begin
                exc_cause <= is_load ? `CAUSE_LOAD_ALIGN : `CAUSE_STORE_ALIGN;
                exc_value <= alu_y;
            end
        end

    // Results held from execute to write-back
    always @(posedge clk) begin
        if (latch_result) begin
            result     <= alu_y;
            csr_result <= csr_rdata;
            pc_next    <= is_mret ? epc : jump ? jump_target : pc_plus_4;
        end
        if (latch_load)
            load_result <= load_data;
    end

    always @*
        case (wb_sel)
            `WB_ALU: wb_data = result;
            `WB_MEM: wb_data = load_result;
            `WB_PC4: wb_data = pc_plus_4;
            `WB_CSR: wb_data = csr_result;
        endcase

    // Program counter and instruction register
    always @(posedge clk or negedge rst_n)
        if (!rst_n)
            pc <= RESET_PC;
        else if (take_trap)
            pc <= trap_vector;
        else if (commit)
            pc <= pc_next;

    always @(posedge clk or negedge rst_n)
        if (!rst_n)
            instr <= 32'h0000_0013;     // addi x0, x0, 0
        else if (latch_instr)
            instr <= imem_rdata;

    assign imem_addr = pc;

    rv32_control u_control (
        .clk            (clk),
        .rst_n          (rst_n),
        .imem_ready     (imem_ready),
        .dmem_ready     (dmem_ready),
        .needs_memory   (is_load | is_store),
        .exception      (exception),
        .irq_pending    (irq_pending),
        .imem_valid     (imem_valid),
        .dmem_valid     (dmem_valid),
        .latch_instr    (latch_instr),
        .latch_operands (latch_operands),
        .latch_result   (latch_result),
        .latch_load     (latch_load),
        .commit         (commit),
        .take_trap      (take_trap),
        .trap_is_irq    (trap_is_irq)
    );

    // Trace
    always @(posedge clk or negedge rst_n)
        if (!rst_n) begin
            trace_valid <= 1'b0;
            trace_pc    <= 32'b0;
            trace_instr <= 32'b0;
        end else begin
            trace_valid <= commit;
            if (commit) begin
                trace_pc    <= pc;
                trace_instr <= instr;
            end
        end

endmodule
