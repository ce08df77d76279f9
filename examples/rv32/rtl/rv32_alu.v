// Arithmetic and logic unit, combinational. The operation code is {alternate, funct3}.
`include "rv32_defs.vh"

module rv32_alu (
    input  wire [`ALU_W-1:0] op,
    input  wire [31:0]       a,
    input  wire [31:0]       b,
    output reg  [31:0]       y,
    output wire              eq,
    output wire              lt,
    output wire              ltu
);

    wire        subtract = (op == `ALU_SUB);
    wire [31:0] b_inv    = b ^ {32{subtract}};
    wire [31:0] sum      = a + b_inv + subtract;

    wire signed [31:0] a_s = a;
    wire signed [31:0] b_s = b;

    assign eq  = (a == b);
    assign lt  = (a_s < b_s);
    assign ltu = (a < b);

    wire [4:0] shamt = b[4:0];

    always @* begin
        case (op)
            `ALU_ADD,
            `ALU_SUB:  y = sum;
            `ALU_SLL:  y = a << shamt;
            `ALU_SLT:  y = {31'b0, lt};
            `ALU_SLTU: y = {31'b0, ltu};
            `ALU_XOR:  y = a ^ b;
            `ALU_SRL:  y = a >> shamt;
            `ALU_SRA:  y = a_s >>> shamt;
            `ALU_OR:   y = a | b;
            `ALU_AND:  y = a & b;
            default:   y = 32'b0;
        endcase
    end

endmodule
