1module subprograms (input [7:0] a, b, input [3:0] n, output [7:0] largest, output [7:0] parity_mix, output reg [7:0] lo,
                    output reg [7:0] hi, output [3:0] log);
    function [7:0] max;
        input [7:0] x, y;
        max = x > y ? x : y;
    endfunction
    function automatic [7:0] fold(input [7:0] x, input [3:0] rounds);
        integer i;
        begin
            fold = x;
            for (i = 0; i < 4; i = i + 1)
                if (i < rounds) fold = {fold[6:0], fold[7] ^ fold[3]};
        end
    endfunction
    function integer clog2(input integer value);
        begin
            value = value - 1;
            for (clog2 = 0; value > 0; clog2 = clog2 + 1) value = value >> 1;
        end
    endfunction
    task sort(input [7:0] x, y, output [7:0] least, most);
        begin
            if (x < y) begin least = x; most = y; end
            else begin least = y; most = x; end
        end
    endtask
    localparam BITS = clog2(200);
    assign largest = max(a, max(b, {n, n}));
    assign parity_mix = fold(a, n) ^ fold(b, 4'd2);
    always @* sort(a, b, lo, hi);
    assign log = BITS;
endmodule
