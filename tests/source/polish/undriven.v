// Nets without drivers.
// run each: --option HDL_MESSAGE_LEVEL=HIGH --std=vlog2001
module no_driver(input a, output y);
  wire w; // expect: warning VERI-2033 10858 "object \"w\" used but never assigned" ; warning VDB-2020 10030 "Net \"w\" at undriven.v(4) has no driver or initial value, using a default initial value '0'"
  assign y = a & w;
endmodule
module with_initial(input a, output y);
  reg r = 1'b1; // expect: information VDB-2018 10872 "Using initial value '1' for net \"r\" at undriven.v(8)"
  assign y = a & r;
endmodule
module with_unknown(input a, output y);
  reg r = 1'bx; // expect: warning VDB-2019 10873 "Using initial value X (don't care) for net \"r\" at undriven.v(12)"
  assign y = a & r;
endmodule
module vector(input a, output y);
  reg [1:0] r = 2'b10; // expect: information VDB-2018 10872 "Using initial value '1' for net \"r[1]\" at undriven.v(16)" ; information VDB-2018 10872 "Using initial value '0' for net \"r[0]\" at undriven.v(16)"
  assign y = a & r[0] & r[1];
endmodule
module open_output(input a, output y, output [1:0] z); // expect: warning VDB-2003 10034 "Output port \"z[1]\" at undriven.v(19) has no driver" ; warning VDB-2003 10034 "Output port \"y\" at undriven.v(19) has no driver"
  assign z[0] = a;
endmodule
module leaf(input a, input b, output y, output z); // expect: warning VDB-2003 10034 "Output port \"z\" at undriven.v(22) has no driver" ; warning VDB-2016 10862 "input port \"b\" at undriven.v(22) has no fan-out"
  assign y = a;
endmodule
module open_input(input a, output y);
  leaf u(.a(a), .y(y)); // expect: warning VERI-2076 10242 "input port \"b\" of instance \"u\" is not connected" ; information VERI-2028 10040 "output port \"z\" of instance \"u\" is not connected"
endmodule
