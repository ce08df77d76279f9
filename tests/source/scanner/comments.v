// run: --lint
module comments(input a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"comments\" at comments.v(2) due to previous errors"
  /* a comment /* in a comment */ // expect: warning VERI-1017 10059 "found \"/*\" in a comment"
  assign q = a */ a; // expect: error VERI-1001 10043 "found \"*/\" outside of a comment" ; error VERI-1137 10170 "near text \"a\";  expecting \";\""
endmodule
