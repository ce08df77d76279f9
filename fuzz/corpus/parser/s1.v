1primitive udp (y, a, b); output y; reg y; input a, b; initial y = 1'b0;
table 0 0 : ? : 0; (01) ? : 0 : 1; r * : 1 : -; (1x) b : ? : x; endtable endprimitive
