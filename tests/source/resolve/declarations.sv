// What can be declared where.
// run: --lint
module declarations(input logic a, inout var logic b, output logic q); // expect: error SV-1078 10841 "inout port \"b\" cannot be a variable"
  wire bit w; // expect: error SV-1079 10842 "net \"w\" cannot have type \"bit\""
  wire logic v;
  automatic int i; // expect: error SV-1048 10838 "variable \"i\" outside of subprograms and processes cannot be automatic"
  always_comb begin
    automatic int j;
    j = a;
    q = j[0];
  end
endmodule
