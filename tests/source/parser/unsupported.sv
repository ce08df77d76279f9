// run: --lint
module unsupported(input logic a, output logic q); // expect: error VERI-1072 10112 "Ignored design unit \"unsupported\" at unsupported.sv(2) due to previous errors"
  class k; endclass // expect: error SV-1008 10875 "no support for classes"
  alias a = q; // expect: error SV-1008 10875 "no support for net aliases"
  bind unsupported leaf u(); // expect: error SV-1008 10875 "no support for bind directives"
  assign q = {<<{a}}; // expect: error SV-1008 10875 "no support for streaming concatenations"
endmodule
