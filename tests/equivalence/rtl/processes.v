// Combinational processes: branches, cases, loops, subprograms.
module case_full (input [1:0] s, input [3:0] a, b, c, output reg [3:0] y, output reg z);
    always @* begin
        z = 1'b0;
        case (s)
            2'b00: y = a;
            2'b01: y = b;
            2'b10: begin y = c; z = 1'b1; end
            default: y = a ^ b;
        endcase
    end
endmodule

module case_wild (input [5:0] r, output reg [2:0] index, output reg any, output reg [1:0] kind);
    always @* begin
        casez (r)
            6'b1?????: index = 5;
            6'b01????: index = 4;
            6'b001???: index = 3;
            6'b0001??: index = 2;
            6'b00001?: index = 1;
            default: index = 0;
        endcase
        any = 0;
        if (r) any = 1;
        casex (r[3:0])
            4'b1xx1: kind = 2;
            4'b0x1x: kind = 1;
            4'bx00x: kind = 3;
            default: kind = 0;
        endcase
    end
endmodule

module case_reverse (input [3:0] req, input en, output reg [3:0] grant);
    always @(req or en) begin
        grant = 4'b0;
        case (1'b1)
            req[0] & en: grant[0] = 1'b1;
            req[1]: grant[1] = 1'b1;
            req[2], req[3]: grant[3:2] = req[3:2];
        endcase
    end
endmodule

module case_sparse (input [15:0] code, output reg [3:0] y);
    always @* case (code)
        16'h0001: y = 1;
        16'h8000: y = 2;
        16'hFFFF, 16'hFFFE: y = 3;
        16'h1234: y = code[3:0];
        default: y = 0;
    endcase
endmodule

module case_big (input [7:0] code, input [3:0] d, output reg [7:0] y);
    always @* begin
        y = 8'h00;
        case (code[4:0])
            0: y = 8'h11; 1: y = 8'h22; 2: y = {d, d}; 3: y = code; 4: y = ~code; 5: y = 8'h55; 6: y = code + d;
            7: y = 8'h77; 8: y = 8'h88; 12: y = {4'd0, d}; 17: y = 8'h71; 30: y = 8'hE0; 31: y = 8'hFF;
        endcase
    end
endmodule

module subprograms (input [7:0] a, b, input [3:0] n, output [7:0] largest, output [7:0] parity_mix, output reg [7:0] lo,
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

module nested (input [2:0] s, input a, b, c, d, output reg y, output reg z);
    always @(*) begin
        y = a;
        if (s[0]) begin
            if (s[1]) y = b;
            else if (s[2]) y = c;
        end else if (!s[1])
            y = ~d;
        z = y;
        if (y & a) z = 1'bx;
        else z = b;
        if (!(y & a)) z = c;
    end
endmodule
