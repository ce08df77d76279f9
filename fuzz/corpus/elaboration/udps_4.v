1primitive udp_dff(output reg q, input clk, input d);
  table
    (01) 0 : ? : 0;
    (01) 1 : ? : 1;
    (0x) 1 : 1 : 1;
    (0x) 0 : 0 : 0;
    (?0) ? : ? : -;
    ?    * : ? : -;
  endtable
endprimitive
