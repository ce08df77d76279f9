// Independent mistakes of syntax, each told once.
// run: --lint --std=vlog2001
module fifteen(input a, input b, output q); // expect: error VERI-1072 10112 "Ignored design unit \"fifteen\" at fifteen.v(3) due to previous errors"
  wire w0 = a &; // expect: error VERI-1137 10170 "near text \";\";  expecting an operand"
  wire ok1, ok2;
  assign q a; // expect: error VERI-1137 10170 "near text \"a\";  expecting \"=\""
  wire [3:0 w1; // expect: error VERI-1137 10170 "near text \"w1\";  expecting \"]\""
  always @(a q = b; // expect: error VERI-1137 10170 "near text \"q\";  expecting \")\""
  reg r1, ; // expect: error VERI-1137 10170 "near text \",\", expecting \";\""
  wire ok3, ok4;
  assign = b; // expect: error VERI-1137 10170 "near text \"=\";  expecting \"(\""
  always @(posedge a) if r1 = 1; // expect: error VERI-1137 10170 "near text \"r1\";  expecting \"(\""
  leaf u0(.a(a), .b(b; // expect: error VERI-1137 10170 "near text \";\";  expecting \")\""
  wire ok5, ok6;
  assign q = a ? b; // expect: error VERI-1137 10170 "near text \";\";  expecting \":\", or \"?\", or binary operator"
  assign q = {a, }; // expect: error VERI-1137 10170 "near text \"}\";  expecting an operand"
  wire ok7, ok8;
  integer 3i; // expect: error VERI-1137 10170 "near text \"3\";  expecting an identifier"
  assign q = a +; // expect: error VERI-1137 10170 "near text \";\";  expecting an operand"
  assign q = (a; // expect: error VERI-1137 10170 "near text \";\";  expecting \")\""
  wire [a: w2; // expect: error VERI-1137 10170 "near text \";\";  expecting \"]\""
  parameter = 3; // expect: error VERI-1137 10170 "near text \"=\";  expecting an identifier"
  wire ok9, ok10;
  initial begin r1 = 1 end // expect: error VERI-1137 10170 "near text \"end\";  expecting \";\""
endmodule
