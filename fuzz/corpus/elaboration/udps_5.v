1primitive udp_dff_controls(output reg q, input clk, input d, input set, input rst);
  table
    ? ? ? 1 : ? : 0;
    ? ? 1 0 : ? : 1;
    f 0 0 0 : ? : 0;
    f 1 0 0 : ? : 1;
    r ? 0 0 : ? : -;
    ? * 0 0 : ? : -;
    ? ? n 0 : ? : -;
    ? ? 0 n : ? : -;
  endtable
endprimitive
