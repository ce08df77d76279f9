// A comment that nothing closes.
// run: --lint
module open_comment(input a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"open_comment\" at open_comment.v(3) due to previous errors"
  assign q = a;
endmodule
/* goes on

 // expect: error VERI-1000 10042 "long comment was not closed"