// What the head lists needs a direction.
// run: --lint --std=vlog2001
module undirected(a, q, w); // expect: error VERI-1128 10161 "object \"a\" is not declared" ; error VERI-1149 10145 "\"w\" is not a port"
  output q;
  wire w;
  assign q = a; // expect: error VERI-1128 10161 "object \"a\" is not declared"
endmodule
