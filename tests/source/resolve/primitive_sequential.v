// The output alone holds a value, of one bit.
// run: --lint --std=vlog2001
primitive too_many(q, a);
  output q;
  reg q, r; // expect: error VERI-2061 10246 "only the output of a UDP can be a register, not \"r\""
  input a;
  initial q = 2; // expect: error VERI-2059 10245 "initial value of UDP output \"q\" must be 0, 1 or x"
  table 0 : ? : 1; 1 : ? : 0; endtable
endprimitive
