// Words of later dialects as names.
// run: --lint --std=vlog95
module keywords(a, localparam, logic, q);
  input a, localparam, logic; // expect: warning VERI-1207 10136 "\"localparam\" is a Verilog-2001 keyword" ; warning SV-1000 10920 "\"logic\" is a SystemVerilog-2005 keyword"
  output q;
  wire genvar; // expect: warning VERI-1207 10136 "\"genvar\" is a Verilog-2001 keyword"
  wire priority; // expect: warning SV-1000 10920 "\"priority\" is a SystemVerilog-2005 keyword"
  assign q = a;
  assign genvar = localparam;
  assign priority = logic;
endmodule
