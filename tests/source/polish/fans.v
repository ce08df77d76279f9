// Ports of a unit that nothing inside concerns.
// run: --option HDL_MESSAGE_LEVEL=HIGH
module fans(input unused, input [1:0] half, input a, output y, output z, inout both); // expect: warning VDB-2003 10034 "Output port \"z\" at fans.v(3) has no driver" ; warning VDB-2016 10862 "input port \"half[1]\" at fans.v(3) has no fan-out" ; warning VDB-2016 10862 "input port \"unused\" at fans.v(3) has no fan-out" ; warning VDB-2017 10863 "bidir port \"both\" at fans.v(3) has no fan-in"
  assign y = a & half[0];
endmodule
