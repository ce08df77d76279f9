// run each: --std=vlog2001
module leaf(input a, output y);
  parameter P = 1;
  localparam L = 2; // expect: error VERI-1113 10127 "localparam \"L\" cannot be overwritten"
  assign y = a & P & L; // expect: warning VERI-1209 10230 "truncated value with size 32 to match size of target (1)"
endmodule
module plain(input a, output y);
  assign y = a;
endmodule
primitive same(y, a);
  output y;
  input a;
  table 0 : 0; 1 : 1; endtable
endprimitive
module local_override(input a, output y);
  leaf #(.L(3)) u(a, y);
endmodule
module unknown_name(input a, output y);
  leaf #(.Q(3)) u(a, y); // expect: error VERI-1125 10132 "module \"leaf\" does not have a parameter named \"Q\""
endmodule
module none_expected(input a, output y);
  plain #(3) u(a, y); // expect: error VERI-1123 10130 "module \"plain\" does not expect any parameters"
endmodule
module too_many(input a, output y);
  leaf #(3, 4) u(a, y); // expect: error VERI-1124 10131 "too many parameters for instance of module \"leaf\" - module declares 1 parameters not 2"
endmodule
module not_constant(input a, output y);
  leaf #(a) u(a, y); // expect: error VERI-1197 10220 "value for parameter \"P\" must be constant expression"
endmodule
module both_ways(input a, output y);
  defparam u.P = 2;
  leaf #(3) u(a, y); // expect: error VERI-1148 10144 "no support for specifying parameters for instance \"u\" using both defparam statements and an ordered module instance parameter value assignment"
endmodule
module of_primitive(input a, output y);
  same #(.P(3)) u(y, a); // expect: error VERI-1126 10133 "primitive \"same\" does not have named parameters"
endmodule
module defparam_of_primitive(input a, output y);
  defparam u.P = 2; // expect: error VERI-1127 10134 "cannot override parameters on primitive instance \"u\" using defparams - primitives do not declare parameters"
  same u(y, a);
endmodule
module unresolved(input a, output y);
  defparam u.nothing.P = 2; // expect: error VERI-1175 10172 "can't synthesize cross-hierarchy defparam assignment \"u.nothing.P\" on \"u\""
  leaf u(a, y);
endmodule
module circle(input a, output y);
  parameter A = B; // expect: error VERI-1122 10129 "value of \"A\" depends on itself"
  parameter B = A; // expect: error VERI-2008 10702 "\"A\" is not an object that has a value"
  assign y = a & A;
endmodule
module from_net(input a, output y);
  parameter A = a; // expect: error VERI-2007 10701 "expression \"a\" must be constant"
  assign y = A;
endmodule
module from_function(input a, output y);
  function integer f;
    input integer x;
    f = x + a; // expect: error VERI-2007 10701 "expression \"a\" must be constant"
  endfunction
  localparam A = f(1);
  assign y = A;
endmodule
