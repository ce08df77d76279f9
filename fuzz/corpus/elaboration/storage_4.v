1module tristates (input oe_a, oe_b, input [3:0] a, b, output [3:0] y, inout [1:0] pad, output [1:0] from_pad);
    assign y = oe_a ? a : 4'bz;
    assign y = oe_a ? 4'bz : b;
    assign pad = oe_b ? b[1:0] : 2'bzz;
    assign from_pad = pad;
endmodule
