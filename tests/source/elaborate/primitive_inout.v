// Ports of a primitive.
// run: --top m --std=vlog2001
primitive both(y, a, z); // expect: error VERI-1189 10187 "inout ports not allowed on a UDP"
  output y;
  inout z;
  input a;
  table 0 0 : 0; 1 0 : 1; endtable
endprimitive
module m(input a, output y);
  both u(y, a, y);
endmodule
