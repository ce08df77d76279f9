1module wired (input a, b, c, output wand y, output wor z, output [1:0] s);
    assign y = a;
    assign y = b;
    assign z = a;
    assign z = c;
    supply1 vdd;
    supply0 gnd;
    assign s = {vdd & a, gnd | b};
endmodule
