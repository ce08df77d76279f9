1module generated_regs #(parameter N = 3) (input clk, input [N-1:0] en, input [4*N-1:0] d, output [4*N-1:0] q,
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
