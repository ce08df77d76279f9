// run: --lint
`define ONE(a) a
module missing_actuals(input a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"missing_actuals\" at missing_actuals.v(3) due to previous errors"
  assign q = (a `ONE); // expect: error VERI-1015 10058 "missing arguments for macro \"ONE\""
endmodule
