// run: --lint
`else // expect: error VERI-1006 10048 "`else without `if"
`elsif A // expect: error VERI-1007 10049 "`elsif without `if"
`endif // expect: error VERI-1008 10050 "`endif without `if"
`undef define // expect: error VERI-1003 10045 "cannot undefine predefined macro \"define\""
`define include "x" // expect: error VERI-1011 10053 "cannot re-define predefined macro \"include\""
`default_nettype wood // expect: warning VERI-1029 10012 "unknown nettype \"wood\" ignored"
`unconnected_drive pull7 // expect: warning VERI-1037 10018 "unknown unconnected_drive \"pull7\" ignored"
`define // expect: error VERI-1010 10052 "incorrect use of predefined macro \"define\". Expected \"macro_name\""
`timescale 1 parsec // expect: error VERI-1010 10052 "incorrect use of predefined macro \"timescale\". Expected \"<timeunit>/<time_precision>\"" ; error VERI-1137 10170 "near text \"1\";  expecting a description"
`include "missing.vh" // expect: error VERI-1020 10054 "cannot open file \"missing.vh\""
`include missing // expect: error VERI-1010 10052 "incorrect use of predefined macro \"include\". Expected \"\"filename\"\""
`  // expect: error VERI-1004 10046 "missing compiler directive"
module directives(input a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"directives\" at directives.v(14) due to previous errors"
  assign q = a;
endmodule
