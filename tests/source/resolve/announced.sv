// A type that is never defined.
// run: --lint --std=sv2005
typedef announced_t; // expect: error SV-1051 10845 "type \"announced_t\" is announced and never defined"
module announced(input logic a, output logic y);
  announced_t t;
  assign y = a;
endmodule
