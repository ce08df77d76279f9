1primitive udp_most(y, a, b, c, d);
  output y;
  input a, b, c, d;
  table
    1 1 1 b : 1;
    1 1 b 1 : 1;
    1 ? 1 1 : 1;
    ? 1 1 1 : 1;
    0 0 b b : 0;
    0 b 0 b : 0;
    0 b b 0 : 0;
    b 0 0 b : 0;
    b 0 b 0 : 0;
    b b 0 0 : 0;
  endtable
endprimitive
