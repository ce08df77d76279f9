// Only what holds a value starts with one.
// run: --lint --std=vlog2001
primitive no_register(q, a);
  output q;
  input a;
  initial q = 1; // expect: error VERI-2062 10247 "initial statement in combinational UDP \"no_register\""
  table 0 : 1; 1 : 0; endtable
endprimitive
