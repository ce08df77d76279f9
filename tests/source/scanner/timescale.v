// run: --lint
`timescale 1ns / 1ps
`timescale 10 us/100 ns
`timescale 1ps / 1ns // expect: error VERI-1035 10312 "time precision must not be coarser than the time unit"
`timescale 5 ns / 1 ps // expect: error VERI-1034 10311 "numbers of a time scale must be 1, 10 or 100"
module timescale(input a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"timescale\" at timescale.v(6) due to previous errors"
  assign q = a;
endmodule
