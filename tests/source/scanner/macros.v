// run: --lint
`define SAME 1
`define SAME 1
`define SAME 2 // expect: warning VERI-1203 10191 "text macro \"SAME\" is redefined; it was first defined in file \"macros.v\", line 2"
`define LOOP `LOOP
`define PING `PONG
`define PONG `PING
`define BAD1(1a) 1 // expect: error VERI-1012 10055 "illegal macro parameter near text \"1a)\""
`define BAD2(a+b) 1 // expect: error VERI-1013 10056 "illegal character in macro parameter near text \"+b)\""
`define TWO(a, b) a & b
module macros(input a, output [7:0] q); // expect: error VERI-1072 10112 "Ignored design unit \"macros\" at macros.v(11) due to previous errors"
  assign q[0] = `NOTHING a; // expect: warning VERI-1092 10020 "use of undefined macro \"NOTHING\""
  assign q[1] = `NOTHING a;
  assign q[2] = `LOOP a; // expect: error VERI-1014 10057 "macro \"LOOP\" causes infinite loop"
  assign q[3] = `PING a; // expect: error VERI-1014 10057 "macro \"PING\" causes infinite loop"
  assign q[4] = `TWO(a) a; // expect: error VERI-1019 10061 "incorrect number of macro arguments"
  assign q[5] = `TWO(a, a, a) a; // expect: error VERI-1019 10061 "incorrect number of macro arguments"
  assign q[6] = `TWO(a, a);
  assign q[7] = `ifdef(a) a; // expect: error VERI-1010 10052 "incorrect use of predefined macro \"ifdef\". Expected \"macro_name\"" ; error VERI-1137 10170 "near text \"a\";  expecting \";\""
endmodule
