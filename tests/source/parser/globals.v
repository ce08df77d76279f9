// run old: --lint --std=vlog2001
// run new: --lint --std=sv2005
parameter P = 1; // expect old: error SV-1002 10867 "declaring global objects is a SystemVerilog feature; the file must be read as SystemVerilog"
module globals(input a, output q); // expect old: error VERI-1072 10112 "Ignored design unit \"globals\" at globals.v(4) due to previous errors"
  assign q = a & P;
endmodule
