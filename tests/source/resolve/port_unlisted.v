// A direction makes no port.
// run: --lint --std=vlog2001
module unlisted(a, q);
  input a;
  output q;
  input c; // expect: error VERI-2063 10248 "\"c\" has a direction but is not in the list of ports of \"unlisted\""
  assign q = a;
endmodule
