// Branch condition from the comparison flags of the ALU.
`include "rv32_defs.vh"

module rv32_branch (
    input  wire [2:0] funct3,
    input  wire       eq,
    input  wire       lt,
    input  wire       ltu,
    output reg        taken
);

    always @(funct3 or eq or lt or ltu)
        case (funct3)
            `BR_EQ:  taken = eq;
            `BR_NE:  taken = !eq;
            `BR_LT:  taken = lt;
            `BR_GE:  taken = !lt;
            `BR_LTU: taken = ltu;
            `BR_GEU: taken = !ltu;
            default: taken = 1'b0;
        endcase

endmodule
