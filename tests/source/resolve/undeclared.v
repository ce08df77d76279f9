// Names that nothing declares, alone and several in a line.
module undeclared(input a, output x, output y, output z);
  assign x = b; // expect: error VERI-1128 10161 "object \"b\" is not declared"
  assign y = c & a; // expect: error VERI-1128 10161 "object \"c\" is not declared"
  assign z = d | // expect: error VERI-1128 10161 "object \"d\" is not declared"
             e; // expect: error VERI-1128 10161 "object \"e\" is not declared"
endmodule
