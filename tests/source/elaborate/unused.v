// run: --option HDL_MESSAGE_LEVEL=HIGH
module unused(input a, output y);
  wire never; // expect: information VERI-2029 10035 "object \"never\" declared but not used"
  wire written = a; // expect: warning VERI-2030 10036 "object \"written\" assigned a value but never read"
  wire read; // expect: warning VERI-2033 10858 "object \"read\" used but never assigned" ; warning VDB-2020 10030 "Net \"read\" at unused.v(5) has no driver or initial value, using a default initial value '0'"
  reg [1:0] part; // expect: warning VERI-2030 10036 "object \"part\" assigned a value but never read"
  assign y = a & read;
  always @(a) part[0] = a;
endmodule
