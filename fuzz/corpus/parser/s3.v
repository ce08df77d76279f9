1primitive udp3 (output reg q = 1'b1, input d); table f : ? : 1; n : 0 : -; endtable endprimitive
macromodule ports (.x(a), {b, c}, d[3:0], , .z()); input a, b, c; input [7:0] d; endmodule
