// Inputs are nets.
// run: --lint --std=vlog2001
module variables(a, b, q);
  inout a; // expect: error SV-1005 10870 "objects with type \"reg\" cannot be declared as \"inout\""
  reg a;
  input b; // expect: error SV-1005 10870 "objects with type \"reg\" cannot be declared as \"input\""
  reg b;
  output q;
  reg q;
endmodule
