// A port is declared once.
// run: --lint --std=vlog2001
module twice(input a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"twice\" at port_twice.v(3) due to previous errors"
  input a; // expect: error VERI-1115 10146 "port \"a\" is already declared"
  assign q = a;
endmodule
