// Values of structures and arrays. Each module is a top.
// run each: --std=sv2005
// ignore: information warning
typedef struct {logic [3:0] x; logic y;} pair_t;
module structures(input logic [4:0] a, output logic y);
  pair_t p;
  assign p = a; // expect: error SV-1009 10876 "cannot assign or compare packed values to unpacked values or vice versa"
  assign y = p.y;
endmodule
module arrays(input logic [4:0] a, output logic y);
  logic p [1:0];
  assign p = a; // expect: error SV-1009 10876 "cannot assign or compare packed values to unpacked values or vice versa"
  assign y = p[0];
endmodule
module slices(input logic [3:0] a, output logic y);
  logic p [3:0], q [3:0];
  always_comb begin
    for (int i = 0; i < 4; i++) q[i] = a[i];
    p[1:0] = q[2:0]; // expect: error SV-1012 10879 "expression has 3 elements; expected 2"
    p[3:2] = q[1:0];
  end
  assign y = p[0];
endmodule
