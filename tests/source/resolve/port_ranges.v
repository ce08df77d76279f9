// A port and its net have the same range.
// run: --lint --std=vlog2001
module port_ranges(a, b, c, q); // expect: error VERI-1072 10112 "Ignored design unit \"port_ranges\" at port_ranges.v(3) due to previous errors"
  input [3:0] a;
  wire [2:0] a; // expect: error VERI-2049 10289 "range of \"a\" differs from the one in its port declaration"
  input [3:0] b;
  wire [3:0] b;
  parameter W = 4;
  input [W-1:0] c;
  wire [3:0] c;
  output q;
  reg q;
  always @(a) q = a[0] & b[0] & c[0];
endmodule
