1module loops (input [15:0] v, input [2:0] n, output reg [4:0] ones, output reg [3:0] first, output reg [15:0] reversed,
              output reg [7:0] thermometer);
    integer i;
    always @* begin
        ones = 0;
        for (i = 0; i < 16; i = i + 1) ones = ones + v[i];
        first = 15;
        begin : search
            for (i = 0; i < 16; i = i + 1)
                if (v[i]) begin
                    first = i;
                    disable search;
                end
        end
    end
    integer j;
    always @(v) for (j = 15; j >= 0; j = j - 1) reversed[j] = v[15 - j];
    always @* begin
        thermometer = 0;
        begin : inner
            reg [3:0] k;
            k = 0;
            while (k < 8) begin
                thermometer[k] = k <= n;
                k = k + 1;
            end
        end
    end
endmodule
