1primitive udp_set_reset(q, s, r);
  output q;
  reg q;
  input s, r;
  table
    1 0 : ? : 1;
    0 1 : ? : 0;
    0 0 : 0 : 0;
    0 0 : 1 : 1;
    1 1 : ? : 0;
  endtable
endprimitive
