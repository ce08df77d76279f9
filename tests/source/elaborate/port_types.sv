// run each: --std=sv2005
package p;
  typedef struct { logic a; logic b; } pair;
endpackage
module leaf(input p::pair a, output p::pair y);
  assign y = a;
endmodule
module packed_in(input logic [1:0] c, output logic q);
  p::pair r;
  leaf u(.a(c), .y(r)); // expect: error SV-1017 10882 "can't pass value from actual to formal input \"a\" with incompatible type"
  assign q = r.a;
endmodule
module packed_out(input logic c, output logic [1:0] q);
  p::pair s;
  assign s = '{c, c};
  leaf u(.a(s), .y(q)); // expect: error SV-1018 10883 "can't pass value from formal output \"y\" to actual with incompatible type"
endmodule
module expression_in(input logic c, output logic q);
  p::pair r;
  leaf u(.a({c, c}), .y(r)); // expect: error SV-1016 10881 "can't connect expression with incompatible type to formal \"a\""
  assign q = r.a;
endmodule
module unknown_module(input logic a, output logic y);
  nothing u(.a, .y); // expect: error SV-1105 10932 "can't resolve implicit port connection(s) to instance \"u\" without a module declaration or an extern equivalent"
endmodule
