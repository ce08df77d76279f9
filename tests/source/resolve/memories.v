// Whole memories, real numbers as indices, sizes in concatenations.
// run: --lint --std=vlog2001
module memories(input [1:0] a, output [7:0] q, output reg [7:0] p);
  reg [7:0] m [0:3];
  reg [7:0] cube [0:3][0:1];
  real r;
  initial $readmemh("none.hex", m);
  assign q = m; // expect: error VERI-1131 10164 "array \"m\" should be indexed by 1 dimensions"
  always @(a) begin
    m = 0; // expect: error VERI-1131 10164 "array \"m\" should be indexed by 1 dimensions"
    p = cube; // expect: error VERI-1131 10164 "array \"cube\" should be indexed by 2 dimensions"
    p = cube[1]; // expect: error VERI-1140 10138 "indexed name does not fully index array \"cube\""
    p = m[1:0]; // expect: error VERI-1145 10141 "part-select of memory \"m\" is not allowed"
    p = m[a][r]; // expect: error VERI-2024 10255 "index \"r\" cannot be a real value"
    p = m[1.5]; // expect: error VERI-2024 10255 "index \"1.5\" cannot be a real value"
    p = cube[a][0][1][2]; // expect: error VERI-1130 10163 "indexed name specifies too many indices for array \"cube\""
    p = a[0][1]; // expect: error VERI-1130 10163 "indexed name specifies too many indices for array \"a\""
    p = r[0]; // expect: error VERI-1141 10139 "cannot index into non-array \"r\""
    p = {a, 3}; // expect: warning VERI-1063 10264 "unsized constant \"3\" in concatenation is taken as 32 bits"
    p = {2{1}}; // expect: warning VERI-1063 10264 "unsized constant \"1\" in concatenation is taken as 32 bits"
    p = {a, 6'd3};
  end
endmodule
