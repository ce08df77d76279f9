1primitive udp2 (output y, input a, b); table 0 0 : 0; 1 ? : 1; endtable endprimitive
