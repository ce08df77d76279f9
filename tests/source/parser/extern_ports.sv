// A module and its extern declaration have the same ports.
// run: --lint
extern module same(input logic a, b, output logic y);
module same(input logic a, b, output logic y);
  assign y = a & b;
endmodule
module first(input logic a, output logic y);
  assign y = a;
endmodule
extern module first(input logic a, output logic y);
extern module fewer(input logic a, output logic y);
module fewer(input logic a, b, output logic y); // expect: error SV-1102 10921 "ports of module \"fewer\" differ from those of its extern declaration"
  assign y = a & b;
endmodule
