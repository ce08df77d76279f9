1primitive udp_dff_enable(output reg q, input en, input d, input clk);
  table
    0 ? r : ? : -;
    1 0 r : ? : 0;
    1 1 r : ? : 1;
    ? ? f : ? : -;
    * ? ? : ? : -;
    ? * ? : ? : -;
  endtable
endprimitive
