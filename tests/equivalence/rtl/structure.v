// Hierarchy, parameters, generate constructs, gates.
module cell_adder #(parameter W = 4, parameter [W-1:0] BIAS = 1) (input [W-1:0] a, b, input cin, output [W-1:0] s,
                                                                  output cout);
    assign {cout, s} = a + b + cin + BIAS;
endmodule

module hierarchy (input [7:0] a, b, input [3:0] c, output [7:0] s, output [3:0] t, u, output [3:0] carry);
    cell_adder #(.W(8), .BIAS(0)) wide (.a(a), .b(b), .cin(1'b0), .s(s), .cout(carry[0]));
    cell_adder narrow (a[3:0], c, b[0], t, carry[1]);
    cell_adder #(4, 7) biased (.s(u), .cout(), .a(c), .b(4'd3), .cin(carry[1]));
    cell_adder moved (.a(a[7:4]), .b(b[7:4]), .cin(1'b1), .s(), .cout(carry[2]));
    defparam moved.BIAS = 9;
    assign carry[3] = ^t;
endmodule

module generated #(parameter N = 6, parameter KIND = 1) (input [N-1:0] a, b, output [N-1:0] s, output cout,
                                                         output [N-1:0] gray, output [N-1:0] kind);
    wire [N:0] c;
    assign c[0] = 1'b0;
    genvar i, j;
    generate
        for (i = 0; i < N; i = i + 1) begin : bit_slice
            wire half = a[i] ^ b[i];
            assign s[i] = half ^ c[i];
            assign c[i+1] = (a[i] & b[i]) | (half & c[i]);
            if (i == N - 1) assign gray[i] = a[i];
            else begin : inner
                wire up = a[i+1];
                assign gray[i] = a[i] ^ up;
            end
        end
        case (KIND)
            0: assign kind = a;
            1: begin : one
                for (j = 0; j < N; j = j + 2) begin : pair
                    assign kind[j] = bit_slice[j].half;
                    if (j + 1 < N) assign kind[j+1] = c[j];
                end
            end
            default: assign kind = 0;
        endcase
    endgenerate
    assign cout = c[N];
endmodule

module generated_regs #(parameter N = 3) (input clk, input [N-1:0] en, input [4*N-1:0] d, output [4*N-1:0] q,
                                          output reg [N-1:0] any);
    genvar g;
    for (g = 0; g < N; g = g + 1) begin : lane
        reg [3:0] r;
        integer k;
        reg some;
        always @(posedge clk) if (en[g]) r <= d[4*g +: 4];
        assign q[4*g +: 4] = r;
        always @* begin
            some = 1'b0;
            for (k = 0; k < 4; k = k + 1) some = some | r[k];
            any[g] = some;
        end
    end
endmodule

module ports_old (a, b, sel, q, y);
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

module wired (input a, b, c, output wand y, output wor z, output [1:0] s);
    assign y = a;
    assign y = b;
    assign z = a;
    assign z = c;
    supply1 vdd;
    supply0 gnd;
    assign s = {vdd & a, gnd | b};
endmodule
