// run: --lint
module open_ifdef(input a, output q);
  assign q = a;
endmodule
`ifdef A
`ifndef B
 // expect: error VERI-1009 10051 "unexpected end of file: missing `endif"