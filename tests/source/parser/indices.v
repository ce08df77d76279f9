// run: --lint --std=vlog2001
module indices(input [3:0] a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"indices\" at indices.v(2) due to previous errors"
  reg [3:0] m [0:3];
  assign q = m[1:0][2]; // expect: error VERI-1053 10088 "range must be the final index in the indexed name"
endmodule
