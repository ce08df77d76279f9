// run: --lint
module ends(input a, output reg q); // expect: error VERI-1072 10112 "Ignored design unit \"ends\" at ends.v(2) due to previous errors"
  always @(a) q = a); // expect: error VERI-1137 10170 "near text \")\"; mismatched closing parenthesis "
  end // expect: error VERI-1137 10170 "near text \"end\"; \"end\" without \"begin\" "
  always @(a) begin q = a; end end // expect: error VERI-1137 10170 "near text \"end\"; \"end\" without \"begin\" "
endmodule
