// What cannot stand as the name of an instance's module.
// run: --lint --std=vlog2001
config c;
  design leaf;
endconfig
module leaf(input a, output y);
  assign y = a;
endmodule
module top(input a, output y);
  c u(.a(a), .y(y)); // expect: error VERI-2078 10291 "\"c\" cannot be instantiated"
endmodule
