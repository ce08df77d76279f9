// Tables of user-defined primitives.
// run each: --std=vlog2001
primitive separators(q, a);
  output q;
  input a;
  table 0 1; endtable // expect: error VERI-1192 10188 "table entry \"01\" has no \":\" between inputs and output"
endprimitive
primitive inputs(q, a);
  output q;
  input a;
  table 0 1 : 1; endtable // expect: error VERI-1194 10189 "incorrect number of inputs in table entry \"01:1\""
endprimitive
primitive field(q, a);
  output q;
  input a;
  table 0 : 1 1 1 1; endtable // expect: error VERI-1196 10192 "incorrect length of the output field in table entry \"0:1111\""
endprimitive
primitive misplaced(q, a, b);
  output q;
  input a, b;
  table 0 1 : 1 1 1; endtable // expect: error VERI-1195 10190 "misplaced \":\" between present state and output in table entry \"01:111\""
endprimitive
primitive sequential(q, a);
  output q;
  input a;
  table
    0 : 1; // expect: error VERI-1198 10194 "sequential entry \"1:?:0\" in combinational table"
    1 : ? : 0;
  endtable
endprimitive
primitive combinational(q, a);
  output q;
  reg q;
  input a;
  table
    0 : ? : 1; // expect: error VERI-1201 10198 "entry \"1:0\" in sequential table has no present state"
    1 : 0;
  endtable
endprimitive
primitive edges(q, a);
  output q;
  input a;
  table r : 1; endtable // expect: error VERI-1202 10200 "entry \"r:1\" in combinational table has an edge"
endprimitive
primitive empty(q, a); // expect: warning VERI-1215 10180 "empty table will create an empty box UDP"
  output q; // expect: warning VDB-2003 10034 "Output port \"q\" at tables.v(46) has no driver"
  input a;
  table endtable
endprimitive
primitive vector(q, a); // expect: error VERI-1188 10185 "every UDP port must be a scalar"
  output q;
  input [1:0] a;
  table 0 : 1; endtable
endprimitive
primitive both(q, a);
  output q;
  inout a;
  table 0 : 1; endtable
endprimitive
primitive second(a, q); // expect: error VERI-1187 10184 "UDP output must be the first port"
  output q;
  input a;
  table 0 : 1; endtable
endprimitive
primitive none(q, a); // expect: error VERI-1185 10183 "UDP has no output"
  input q, a;
  table 0 : 1; endtable
endprimitive
primitive edges_twice(q, a, b);
  output q;
  input a, b;
  table r f : ? : 1; endtable // expect: error VERI-1225 10284 "table entry has more than one edge : \"rf:?:1\""
endprimitive
primitive clocks(q, a, b);
  output q;
  reg q;
  input a, b;
  table
    r ? : ? : 1; // expect: error VERI-1226 10286 "table changes its state at the edges of more than one clock"
    ? r : ? : 0;
  endtable
endprimitive
primitive toggles(q, a);
  output q;
  reg q;
  input a;
  table
    1 : 0 : 1; // expect: error VERI-1228 10287 "table changes its state back and forth"
    1 : 1 : 0;
  endtable
endprimitive
primitive contradicts(q, a, b);
  output q;
  input a, b;
  table
    0 ? : 0; // expect: error VERI-2058 10290 "table entries contradict each other : \"?0\""
    ? 0 : 1;
  endtable
endprimitive
module uses_clocks(input a, output y); clocks u(y, a, a); endmodule
module uses_toggles(input a, output y); toggles u(y, a); endmodule
module uses_contradicts(input a, output y); contradicts u(y, a, a); endmodule
module uses_separators(input a, output y); separators u(y, a); endmodule
module uses_inputs(input a, output y); inputs u(y, a); endmodule
module uses_field(input a, output y); field u(y, a); endmodule
module uses_misplaced(input a, output y); misplaced u(y, a, a); endmodule
module uses_sequential(input a, output y); sequential u(y, a); endmodule
module uses_combinational(input a, output y); combinational u(y, a); endmodule
module uses_edges(input a, output y); edges u(y, a); endmodule
module uses_empty(input a, output y); empty u(y, a); endmodule
module uses_vector(input a, output y); vector u(y, a); endmodule
module uses_both(input a, output y); both u(y, a); endmodule // expect: error VERI-2012 10655 "cannot assign to input port \"a\""
module uses_second(input a, output y); second u(a, y); endmodule
module uses_none(input a, output y); none u(y, a); endmodule // expect: warning VDB-2020 10030 "Net \"y\" at tables.v(114) has no driver or initial value, using a default initial value '0'"
module uses_twice(input a, output y); edges_twice u(y, a, a); endmodule
