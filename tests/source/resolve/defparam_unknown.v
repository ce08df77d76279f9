// run: --lint --std=vlog2001
module leaf(input a, output y);
  parameter P = 1;
  assign y = a;
endmodule
module defparam_unknown(input a, output y);
  defparam v.P = 2; // expect: error VERI-1128 10161 "object \"v\" is not declared"
  defparam a = 2; // expect: error VERI-1171 10167 "\"a\" is not a parameter"
  leaf u(a, y);
endmodule
