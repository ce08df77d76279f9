1primitive udp_jk(output reg q, input clk, input j, input k, input rst);
  table
    ? ? ? 1 : ? : 0;
    r 0 0 0 : ? : -;
    r 0 1 0 : ? : 0;
    r 1 0 0 : ? : 1;
    r 1 1 0 : 0 : 1;
    r 1 1 0 : 1 : 0;
    f ? ? 0 : ? : -;
    b * ? 0 : ? : -;
    b ? * 0 : ? : -;
    ? ? ? n : ? : -;
  endtable
endprimitive
