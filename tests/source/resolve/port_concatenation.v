// The ports of a concatenation go one way.
// run: --lint --std=vlog2001
module mixed({a, b}, q); // expect: error VERI-1152 10152 "all ports in concatenation should have the same direction"
  input a;
  output b, q;
  assign q = a;
  assign b = a;
endmodule
