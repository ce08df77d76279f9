// run: --set msg_debug=on
// ignore: information
`include "debug.vh" // expect: debug VERI-1108 "reading file debug.vh at debug.v(3)"
module debug(input a, output q); // expect: debug VERI-1018 "compiling module debug at debug.v(4)"
  assign q = a & `WIDTH; // expect: warning VERI-1209 10230 "truncated value with size 32 to match size of target (1)"
endmodule
