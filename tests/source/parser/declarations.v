// run: --lint --std=vlog2001
module declarations(a, b, c, q); // expect: error VERI-1072 10112 "Ignored design unit \"declarations\" at declarations.v(2) due to previous errors"
  input a;
  input integer b; // expect: error SV-1005 10870 "objects with type \"integer\" cannot be declared as \"input\""
  inout reg c; // expect: error SV-1005 10870 "objects with type \"reg\" cannot be declared as \"inout\""
  output q;
  input a; // expect: error VERI-1115 10146 "port \"a\" is already declared"
  reg r; // expect: information VERI-1177 10499 "see declaration for object \"r\""
  wire r; // expect: error VERI-1116 10148 "object \"r\" is already declared in the present scope"
  integer [3:0] i; // expect: error SV-1006 10871 "objects with type \"integer\" cannot be declared with a range"
  real [1:0] x; // expect: error SV-1006 10871 "objects with type \"real\" cannot be declared with a range"
  wire a;
  wire a; // expect: error VERI-1120 10150 "cannot redeclare object \"a\" because the port declaration for \"a\" already specifies net or variable type"
  reg [1:0] m [0:1], m; // expect: error VERI-1116 10148 "object \"m\" is already declared in the present scope" ; information VERI-1177 10499 "see declaration for object \"m\""
  parameter r = 1; // expect: error VERI-1116 10148 "object \"r\" is already declared in the present scope"
endmodule
