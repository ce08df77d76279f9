1module op_select (input [15:0] v, input [3:0] i, input [1:0] w, input [0:7] up, output bit_of, output [3:0] part,
                  output [3:0] down_part, output [1:0] up_part, output [3:0] fixed, output tri_op, output up_bit);
    assign bit_of = v[i];
    assign part = v[i[3:2] * 4 +: 4];
    assign down_part = v[15 - i[1:0] -: 4];
    assign up_part = up[w*2 +: 2];
    assign fixed = {v[12:11], up[2:3]};
    assign tri_op = (|w) ? (&w ? v[0] : v[1]) : v[2];
    assign up_bit = up[i[2:0]];
endmodule
