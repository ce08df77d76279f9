1module gates (input [3:0] a, b, input en, output [3:0] y, output n1, n2, x1, o1, output t1, output [1:0] inv);
    and a4 [3:0] (y, a, b);
    nand #1 g1 (n1, a[0], b[0], en);
    nor g2 (n2, a[1], b[1]), g3 (o1, n1, n2);
    xor (x1, a[2], b[2], en);
    not (inv[0], inv[1], en);
    bufif1 (t1, a[3], en);
    notif0 (t1, b[3], en);
endmodule
