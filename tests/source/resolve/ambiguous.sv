// A name that two packages have.
// run: --lint --std=sv2005
// ignore: information
package p;
  localparam W = 3;
endpackage
package q;
  localparam W = 4;
endpackage
module m import p::*, q::*; (input logic a, output logic y); // expect: error SV-1090 10899 "\"W\" was imported from multiple packages with ::* - none of the imported declarations are visible"
  logic [W-1:0] t; // expect: error VERI-1128 10161 "object \"W\" is not declared"
  assign y = a;
endmodule
