// run: --lint
module unsupported(input logic a, output logic q); // expect: error VERI-1072 10112 "Ignored design unit \"unsupported\" at unsupported.sv(2) due to previous errors"
  class k; endclass // expect: error SV-1066 10847 "classes are not supported"
  alias a = q; // expect: error SV-1069 10851 "net aliases are not supported"
  bind unsupported leaf u(); // expect: error SV-1068 10848 "bind directives are not supported"
  program p; endprogram // expect: error SV-1075 10853 "programs are not supported"
  import "DPI-C" function int f(int x); // expect: error SV-1103 10922 "functions of another language are not supported"
  virtual interface i v; // expect: error SV-1094 10915 "virtual interfaces are not supported"
  extern function int g(int x); // expect: error SV-1112 10924 "extern subprograms are not supported"
  int d[]; // expect: error SV-1080 10859 "dynamic arrays are not supported"
  int h[string]; // expect: error SV-1081 10860 "associative arrays are not supported"
  int l[$]; // expect: error SV-1082 10864 "queues are not supported"
  assign q = {<<{a}}; // expect: error SV-1085 10642 "streaming concatenations are not supported"
  initial begin
    disable fork; // expect: error SV-1070 10852 "disable fork is not supported"
    wait fork; // expect: error SV-1093 10914 "wait fork is not supported"
    expect (a ##1 q); // expect: error SV-1113 10925 "expect statements are not supported"
    randcase 1: ; endcase // expect: error SV-1111 10923 "random choices of statements are not supported"
    wait_order (a, q); // expect: error SV-1114 10926 "wait_order statements are not supported"
  end
endmodule
