// run: --lint
module twice(input a, output q); // expect: information VERI-2057 10797 "twice is declared here"
  assign q = a;
endmodule
module twice(input a, output q); // expect: error VERI-1206 10228 "module \"twice\" cannot be declared more than once"
  assign q = ~a;
endmodule
primitive twice(q, a); // expect: error VERI-1072 10112 "Ignored design unit \"twice\" at twice.v(8) due to previous errors"
  output q;
  input a;
  table 0 : 1; 1 : 0; endtable
endprimitive
