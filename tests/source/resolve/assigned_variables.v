// Variables are driven by processes.
// run: --lint --std=vlog2001
module variables(input a, output reg q, output p);
  reg [1:0] v;
  assign q = a; // expect: error VERI-2013 10654 "variable \"q\" cannot be the target of a continuous assignment"
  assign v[0] = a; // expect: error VERI-2013 10654 "variable \"v\" cannot be the target of a continuous assignment"
  assign {p, v[1]} = {a, a}; // expect: error VERI-2013 10654 "variable \"v\" cannot be the target of a continuous assignment"
endmodule
