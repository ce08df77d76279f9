// run each: --std=vlog2001
module few_terminals(input a, output y);
  and g(y, a);
endmodule
module no_input(input a, output y);
  buf g(y); // expect: error VERI-1159 10156 "need at least one output and one input to this gate"
endmodule
module many_enables(input a, output y);
  bufif1 g(y, a, a, a); // expect: error VERI-1165 10157 "need 3 terminals to this gate"
endmodule
module by_name(input a, output y);
  and g(.y(y), .a(a), .b(a)); // expect: error VERI-1169 10160 "name-based port connection not allowed in gate-instantiation"
endmodule
module left_open(input a, output y);
  and g(y, a, ); // expect: error VERI-1153 10186 "unconnected terminal in instantiation of gate \"and\""
endmodule
module switches(input a, output y);
  nmos g(y, a, a); // expect: error VERI-1156 10155 "no support for instantiation of gate \"nmos\""
endmodule
module pulls(output y, output z);
  pullup g(y, z); // expect: error VERI-1155 10154 "no support for multiple terminals on pullup/down sources"
endmodule
module widths(input [1:0] a, output y);
  and g(y, a, a); // expect: warning VERI-1107 10849 "actual bit length 2 differs from formal bit length 1"
endmodule
