// run local: -G L=3
// run unknown: -G NOTHING=3
module host_parameters(input a, output y); // expect local: error 20007 "Top unit \"host_parameters\" has no parameter \"L\"" // expect unknown: error 20007 "Top unit \"host_parameters\" has no parameter \"NOTHING\""
  parameter P = 1;
  localparam L = 2;
  assign y = a & P & L; // expect: warning VERI-1209 10230 "truncated value with size 32 to match size of target (1)"
endmodule
