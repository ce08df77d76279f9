// Instruction decoder: control signals and the sign-extended immediate of one RV32I instruction, combinational.
`include "rv32_defs.vh"

module rv32_decoder (
    input  wire [31:0]       instr,

    output wire [4:0]        rs1,
    output wire [4:0]        rs2,
    output wire [4:0]        rd,
    output wire [2:0]        funct3,
    output reg  [31:0]       imm,

    output reg  [`ALU_W-1:0] alu_op,
    output reg               alu_a_pc,      // operand a is the program counter
    output reg               alu_b_imm,     // operand b is the immediate
    output reg               reg_write,
    output reg  [1:0]        wb_sel,

    output reg               is_branch,
    output reg               is_jal,
    output reg               is_jalr,
    output reg               is_load,
    output reg               is_store,
    output reg               is_csr,
    output reg               is_ecall,
    output reg               is_ebreak,
    output reg               is_mret,
    output reg               illegal
);

    wire [6:0] opcode = instr[6:0];
    wire [6:0] funct7 = instr[31:25];
    reg  [2:0] imm_format;
    reg        lui;

    wire [11:0] i_field = instr[31 -: 12];

    assign rs1    = lui ? 5'd0 : instr[19:15];
    assign rs2    = instr[24:20];
    assign rd     = instr[11:7];
    assign funct3 = instr[14:12];

    // Immediate
    always @* begin
        case (imm_format)
            `IMM_I:  imm = `SEXT(i_field, 11);
            `IMM_S:  imm = {{20{instr[31]}}, instr[31:25], instr[11:7]};
            `IMM_B:  imm = {{19{instr[31]}}, instr[31], instr[7], instr[30:25], instr[11:8], 1'b0};
            `IMM_U:  imm = {instr[31:12], 12'b0};
            `IMM_J:  imm = {{11{instr[31]}}, instr[31], instr[19:12], instr[20], instr[30:21], 1'b0};
            `IMM_Z:  imm = {27'b0, instr[19:15]};
            default: imm = 32'bx;
        endcase
    end

    // Control
    always @* begin
        imm_format = `IMM_I;
        alu_op     = `ALU_ADD;
        alu_a_pc   = 1'b0;
        alu_b_imm  = 1'b1;
        reg_write  = 1'b0;
        wb_sel     = `WB_ALU;
        is_branch  = 1'b0;
        is_jal     = 1'b0;
        is_jalr    = 1'b0;
        is_load    = 1'b0;
        is_store   = 1'b0;
        is_csr     = 1'b0;
        is_ecall   = 1'b0;
        is_ebreak  = 1'b0;
        is_mret    = 1'b0;
        illegal    = 1'b0;
        lui        = 1'b0;

        case (opcode)
            `OP_LUI: begin
                imm_format = `IMM_U;
                reg_write  = 1'b1;
                lui        = 1'b1;
            end

            `OP_AUIPC: begin
                imm_format = `IMM_U;
                reg_write  = 1'b1;
                alu_a_pc   = 1'b1;
            end

            `OP_JAL: begin
                imm_format = `IMM_J;
                alu_a_pc   = 1'b1;
                reg_write  = 1'b1;
                wb_sel     = `WB_PC4;
                is_jal     = 1'b1;
            end

            `OP_JALR: begin
                reg_write  = 1'b1;
                wb_sel     = `WB_PC4;
                is_jalr    = 1'b1;
                illegal    = (funct3 != 3'b000);
            end

            `OP_BRANCH: begin
                imm_format = `IMM_B;
                alu_a_pc   = 1'b1;
                is_branch  = 1'b1;
                illegal    = (funct3[2:1] == 2'b01);
            end

            `OP_LOAD: begin
                reg_write  = 1'b1;
                wb_sel     = `WB_MEM;
                is_load    = 1'b1;
                illegal    = (funct3 == 3'b011) | (funct3[2:1] == 2'b11);
            end

            `OP_STORE: begin
                imm_format = `IMM_S;
                is_store   = 1'b1;
                illegal    = funct3[2] | (funct3[1:0] == 2'b11);
            end

            `OP_IMM: begin
                reg_write = 1'b1;
                alu_op    = {1'b0, funct3};
                if (funct3 == 3'b001)
                    illegal = (funct7 != 7'b0000000);
                else if (funct3 == 3'b101) begin
                    alu_op[3] = instr[30];
                    illegal   = (funct7 & 7'b1011111) != 7'b0;
                end
            end

            `OP_REG: begin
                reg_write = 1'b1;
                alu_b_imm = 1'b0;
                alu_op    = {instr[30], funct3};
                casez ({funct7, funct3})
                    10'b0000000_???: illegal = 1'b0;
                    10'b0100000_000,
                    10'b0100000_101: illegal = 1'b0;
                    default:         illegal = 1'b1;
                endcase
            end

            // A single in-order hart has nothing to order: FENCE and FENCE.I do nothing.
            `OP_FENCE: illegal = (funct3[2:1] != 2'b00);

            `OP_SYSTEM: begin
                if (funct3 == 3'b000) begin
                    case (instr[31:20])
                        12'h000: is_ecall  = 1'b1;
                        12'h001: is_ebreak = 1'b1;
                        12'h302: is_mret   = 1'b1;
                        12'h105: ;                       // WFI waits for nothing here
                        default: illegal   = 1'b1;
                    endcase
                end else if (funct3 == 3'b100)
                    illegal = 1'b1;
                else begin
                    is_csr     = 1'b1;
                    reg_write  = 1'b1;
                    wb_sel     = `WB_CSR;
                    imm_format = funct3[2] ? `IMM_Z : `IMM_I;
                end
            end

            default: illegal = 1'b1;
        endcase

        // The compressed encodings do not exist here; all-zero and all-one words must trap.
        if (instr[1:0] != 2'b11)
            illegal = 1'b1;
    end

endmodule
