// run: --lint --std=vlog2001
module numbers(output [31:0] q); // expect: error VERI-1072 10112 "Ignored design unit \"numbers\" at numbers.v(2) due to previous errors"
  assign q = 4'b0012; // expect: error VERI-1038 10079 "illegal character in binary number"
  assign q = 6'o779; // expect: error VERI-1039 10080 "illegal character in octal number"
  assign q = 8'hfg; // expect: error VERI-1137 10170 "near text \"g\";  expecting \";\""
  assign q = 8'd1a; // expect: error VERI-1041 10082 "illegal character in decimal number"
  assign q = 0'b1; // expect: error VERI-1042 10073 "sized number cannot have 0 size"
  assign q = 3'b1001; // expect: warning VERI-1208 10229 "literal value truncated to fit in 3 bits"
  assign q = 3'b0001;
  assign q = 8'bx1;
  assign q = 8'bz;
  assign q = 4'sd15; // expect: warning VERI-2023 10259 "constant value overflow"
  assign q = 99999999999; // expect: warning VERI-2023 10259 "constant value overflow"
  assign q = 'x; // expect: error SV-1002 10867 "'x is a SystemVerilog feature; the file must be read as SystemVerilog"
  // expect@+1: error VERI-1137 10170 "near text \"\"a string\" end of line inside a string"
  assign q = "a string
endmodule
// expect@numbers.v:16: error VERI-1137 10170 "near text \"endmodule\";  expecting \";\""
