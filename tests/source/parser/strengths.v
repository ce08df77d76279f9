// Strengths and delays, which have no effect in hardware and still have rules.
// run: --lint --std=vlog2001
module strengths(input a, output [6:0] q); // expect: error VERI-1072 10112 "Ignored design unit \"strengths\" at strengths.v(3) due to previous errors"
  wire (strong0, strong1) w0 = a;
  wire (strong0, pull0) w1 = a; // expect: error VERI-1281 10300 "strengths \"strong0\" and \"pull0\" are for the same value"
  wire (highz0, highz1) w2 = a; // expect: error VERI-1283 10301 "strengths \"highz0\" and \"highz1\" drive nothing"
  assign (pull1, highz0) q[0] = a;
  assign #(1, 2, 3, 4) q[1] = a; // expect: error VERI-1279 10299 "a delay has at most 3 values, not 4"
  and #(1, 2) g(q[2], a, a);
  and #(1, 2, 3, 4, 5) h(q[3], a, a); // expect: error VERI-1279 10299 "a delay has at most 3 values, not 5"
  nand (weak1, weak1) i(q[4], a, a); // expect: error VERI-1281 10300 "strengths \"weak1\" and \"weak1\" are for the same value"
endmodule
