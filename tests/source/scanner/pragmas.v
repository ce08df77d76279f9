// run: --lint
// synthesis VERILOG_INPUT_VERSION Algol_60 // expect: error VERI-1023 10064 "\"Algol_60\" is an illegal value for the VERILOG_INPUT_VERSION synthesis directive"
// synthesis message_off 10161 // expect: error VERI-1026 10067 "can't disable/enable error message id 10161 with a message_on/message_off directive"
// synthesis message_on 99999 // expect: error 10678 "the message ID 99999 specified in the HDL source is invalid."
// synthesis message_level loud // expect: error VERI-1028 10069 "unrecognized message directive: \"loud\""
module pragmas(input a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"pragmas\" at pragmas.v(6) due to previous errors"
  // synthesis VERILOG_INPUT_VERSION Verilog_2001 // expect: error VERI-1024 10065 "can't switch VERILOG_INPUT_VERSION inside a scope"
  // synthesis message_off 10230 // expect: error VERI-1027 10068 "directive is not allowed inside a scope"
  // synthesis message_level low // expect: error VERI-1027 10068 "directive is not allowed inside a scope"
  // synthesis fabr_builder_info_begin // expect: error VERI-1030 10071 "fabr builder annotation format: annotation is not allowed inside a scope"
  wire w; // synthesis keep // expect: warning VERI-1098 10886 "misplaced attribute \"keep\" with value \"1\""
  reg r;
  // synthesis preserve
  assign q = a; // synthesis keep = 1 keep = 2 // expect: warning VERI-1280 10890 "overriding existing value for attribute \"keep\"" ; warning VERI-1098 10886 "misplaced attribute \"keep\" with value \"2\""
endmodule
// expect@pragmas.v:19: error VERI-1022 10063 "unmatched translate/synthesis off pragma"
// synthesis translate_off
junk
