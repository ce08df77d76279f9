1module nested (input [2:0] s, input a, b, c, d, output reg y, output reg z);
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
