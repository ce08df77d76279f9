// A legal primitive.
// run: --lint --std=vlog2001
primitive good(q, a);
  output q;
  reg q;
  input a;
  initial q = 1'bx;
  table 0 : ? : 1; 1 : ? : 0; endtable
endprimitive
