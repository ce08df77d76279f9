// run: --lint
primitive tables(q, a);
  output q;
  input a;
  table
    0 : 1;
    7 : 0; // expect: error VERI-1002 10044 "illegal character \"7\" in UDP table"
  endtable
endprimitive
