// Outputs that an instance leaves open.
// run: --lint --option HDL_MESSAGE_LEVEL=HIGH
module leaf(input a, output y, output z);
  assign y = a;
  assign z = ~a;
endmodule
module open_outputs(input a, output q);
  leaf u(.a(a), .y(q)); // expect: information VERI-2028 10040 "output port \"z\" of instance \"u\" is not connected"
  leaf v(.a(a), .y(), .z()); // expect: information VERI-2028 10040 "output port \"y\" of instance \"v\" is not connected" ; information VERI-2028 10040 "output port \"z\" of instance \"v\" is not connected"
endmodule
