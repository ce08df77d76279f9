// Structures and assignment patterns, as far as names tell.
// run: --lint
package known;
  typedef logic [3:0] nibble;
endpackage

module types(input logic c, output logic q);
  typedef struct packed { logic a; logic a; } twice; // expect: error SV-1041 10811 "member \"a\" is already declared"
  typedef struct packed { real a; logic b; } with_real; // expect: error SV-1042 10813 "packed \"struct\" cannot have the unpacked member \"a\""
  typedef struct packed { logic a [3:0]; logic b; } with_array; // expect: error SV-1042 10813 "packed \"struct\" cannot have the unpacked member \"a\""
  typedef struct { logic a; logic b; } loose;
  typedef struct packed { loose a; logic b; } with_loose; // expect: error SV-1042 10813 "packed \"struct\" cannot have the unpacked member \"a\""
  import nowhere::*; // expect: error SV-1064 10827 "package \"nowhere\" is not declared"
  import known::nothing; // expect: error SV-1065 10828 "\"nothing\" is not declared in package \"known\""
  import known::nibble;
  loose s;
  nibble n;
  always_comb begin
    s = '{a: 1, a: 0, b: 1}; // expect: error SV-1046 10816 "element \"a\" of the assignment pattern is given more than once"
    s = '{default: 1, default: 0}; // expect: error SV-1047 10817 "assignment pattern has more than one default"
    n = s.a;
    n = s.z; // expect: error SV-1091 10900 "\"z\" is not declared under this prefix"
    q = n[0];
  end
endmodule
