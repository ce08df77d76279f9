// run: --lint
extern module plain(a, q); // expect: warning VERI-2086 10201 "ignored extern module declaration with list of ports"
extern module full(input logic a, output logic q);
module full(input logic a, output logic q);
  assign q = a;
endmodule
module extern_user(input logic a, output logic q);
  full u(a, q);
endmodule
