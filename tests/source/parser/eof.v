// run: --lint
module eof(input a);
  reg r
 // expect: error VERI-1138 10171 "near end of file ;  expecting \";\""