// And-or multiplexer of N words, selected by a one-hot vector; the words stand in one flat vector, word 0 lowest.
module onehot_mux #(
    parameter N = 4,
    parameter WIDTH = 8
) (
    input  wire [N-1:0]       select,
    input  wire [N*WIDTH-1:0] words,
    output wire [WIDTH-1:0]   y
);

    genvar b, w;
    generate
        for (b = 0; b < WIDTH; b = b + 1) begin : bits
            wire [N-1:0] terms;
            for (w = 0; w < N; w = w + 1) begin : term
                assign terms[w] = words[w*WIDTH + b] & select[w];
            end
            assign y[b] = |terms;
        end
    endgenerate

endmodule
