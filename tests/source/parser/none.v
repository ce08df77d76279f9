// Implicit nets are forbidden.
// run: --lint
`default_nettype none
module none(input wire a, output wire q);
  assign w = a; // expect: error VERI-2082 10225 "cannot declare implicit net \"w\" because the current value of `default_nettype is none"
  leaf u(v, q); // expect: error VERI-2082 10225 "cannot declare implicit net \"v\" because the current value of `default_nettype is none"
endmodule
`default_nettype wire
