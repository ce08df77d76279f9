1module generated #(parameter N = 6, parameter KIND = 1) (input [N-1:0] a, b, output [N-1:0] s, output cout,
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
