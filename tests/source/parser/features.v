// What SystemVerilog adds is refused before.
// run: --lint --std=vlog2001
module features(input a, output reg q); // expect: error VERI-1072 10112 "Ignored design unit \"features\" at features.v(3) due to previous errors"
  wire w = '1; // expect: error SV-1002 10867 "'1 is a SystemVerilog feature; the file must be read as SystemVerilog"
  always @(a) q = '0; // expect: error SV-1002 10867 "'0 is a SystemVerilog feature; the file must be read as SystemVerilog"
endmodule
