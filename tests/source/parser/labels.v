// run old: --lint --std=vlog2001
// run new: --lint --std=sv2005
module labels(input a, output q); // expect: error VERI-1072 10112 "Ignored design unit \"labels\" at labels.v(3) due to previous errors"
  assign q = a;
endmodule : other // expect old: error SV-1002 10867 "using a closing label on a design unit is a SystemVerilog feature; the file must be read as SystemVerilog" // expect new: error SV-1003 10868 "closing label \"other\" must match the original label \"labels\""
