// run each: --std=sv2005
module warns(input logic a, output logic y);
  assign y = a;
  initial begin
    $info("number %0d", 5); // expect: information SV-1124 10988 "number 5"
    $warning("careful"); // expect: warning SV-1123 10991 "careful"
    (* critical *) $warning("very careful"); // expect: warning SV-1127 11000 "very careful"
  end
endmodule
module fails(input logic a, output logic y);
  assign y = a;
  initial $error("wrong"); // expect: error SV-1122 10986 "wrong"
endmodule
module ends(input logic a, output logic y);
  assign y = a;
  initial $fatal(1, "dead"); // expect: error SV-1121 10985 "dead"
endmodule
