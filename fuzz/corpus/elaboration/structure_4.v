1module ports_old (a, b, sel, q, y);
    parameter WIDTH = 5;
    input [WIDTH-1:0] a, b;
    input sel;
    output [WIDTH-1:0] q;
    output y;
    reg [WIDTH-1:0] q;
    wire y;
    always @(a or b or sel) q = sel ? a : b;
    assign y = implicit;
    and (implicit, a[0], b[0]);
endmodule
