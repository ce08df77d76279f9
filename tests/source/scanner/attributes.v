// run: --lint --std=vlog2001
module attributes(input a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"attributes\" at attributes.v(2) due to previous errors"
  (* keep, keep *) wire w; // expect: warning VERI-1280 10890 "overriding existing value for attribute \"keep\""
  (* keep = 1 *) (* keep = 2 *) wire v; // expect: warning VERI-1280 10890 "overriding existing value for attribute \"keep\""
  assign q = (* keep *) a; // expect: error VERI-1137 10170 "near text \"(*\";  expecting an operand" ; error VERI-1139 10135 "previous syntax error may be due to incorrect attribute placement"
endmodule
