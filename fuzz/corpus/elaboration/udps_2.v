1primitive udp_latch(output reg q, input en, input d);
  table
    1 0 : ? : 0;
    1 1 : ? : 1;
    0 ? : ? : -;
  endtable
endprimitive
