// run: --set zelk_dont_elaborate_initial_constructs=on
module initial_off(input c, d, output reg q);
  initial q = 1; // expect: warning VERI-1060 10101 "Initial Construct is not supported and will be ignored"
  always @(posedge c) q <= d;
endmodule
