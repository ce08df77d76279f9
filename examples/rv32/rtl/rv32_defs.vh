// Shared encodings of the RV32I core: opcodes, ALU operations, control states, CSR numbers.
`ifndef RV32_DEFS_VH
`define RV32_DEFS_VH

// Major opcodes, instruction bits [6:0]
`define OP_LUI      7'b0110111
`define OP_AUIPC    7'b0010111
`define OP_JAL      7'b1101111
`define OP_JALR     7'b1100111
`define OP_BRANCH   7'b1100011
`define OP_LOAD     7'b0000011
`define OP_STORE    7'b0100011
`define OP_IMM      7'b0010011
`define OP_REG      7'b0110011
`define OP_FENCE    7'b0001111
`define OP_SYSTEM   7'b1110011

// ALU operations: {alternate, funct3} as the instruction carries them
`define ALU_W       4
`define ALU_ADD     4'b0000
`define ALU_SUB     4'b1000
`define ALU_SLL     4'b0001
`define ALU_SLT     4'b0010
`define ALU_SLTU    4'b0011
`define ALU_XOR     4'b0100
`define ALU_SRL     4'b0101
`define ALU_SRA     4'b1101
`define ALU_OR      4'b0110
`define ALU_AND     4'b0111

// Branch conditions, funct3
`define BR_EQ       3'b000
`define BR_NE       3'b001
`define BR_LT       3'b100
`define BR_GE       3'b101
`define BR_LTU      3'b110
`define BR_GEU      3'b111

// Immediate formats
`define IMM_I       3'd0
`define IMM_S       3'd1
`define IMM_B       3'd2
`define IMM_U       3'd3
`define IMM_J       3'd4
`define IMM_Z       3'd5

// Write-back sources
`define WB_ALU      2'd0
`define WB_MEM      2'd1
`define WB_PC4      2'd2
`define WB_CSR      2'd3

// Machine-mode CSRs
`define CSR_MSTATUS   12'h300
`define CSR_MISA      12'h301
`define CSR_MIE       12'h304
`define CSR_MTVEC     12'h305
`define CSR_MSCRATCH  12'h340
`define CSR_MEPC      12'h341
`define CSR_MCAUSE    12'h342
`define CSR_MTVAL     12'h343
`define CSR_MIP       12'h344
`define CSR_MCYCLE    12'hB00
`define CSR_MINSTRET  12'hB02
`define CSR_MCYCLEH   12'hB80
`define CSR_MINSTRETH 12'hB82
`define CSR_MHARTID   12'hF14

// Trap causes
`define CAUSE_FETCH_ALIGN  5'd0
`define CAUSE_ILLEGAL      5'd2
`define CAUSE_BREAK        5'd3
`define CAUSE_LOAD_ALIGN   5'd4
`define CAUSE_STORE_ALIGN  5'd6
`define CAUSE_ECALL        5'd11

// A sign-extended copy of the low bits of a word, to 32 bits
`define SEXT(word, msb) {{(31 - (msb)){word[msb]}}, word[msb:0]}

`endif
