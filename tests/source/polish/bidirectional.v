// Bidirectional pins.
// run each: --std=vlog2001
module leaf(inout a, inout b); // expect: warning VDB-2006 10665 "Bidirectional port \"a\" at bidirectional.v(3) has a one-way connection to bidirectional port \"b\""
  assign a = b;
endmodule
module pins(inout a, inout b);
  leaf u(a, b);
endmodule
module itself(inout a);
  assign a = a;
endmodule
module one_way(inout a, inout b); // expect: warning VDB-2006 10665 "Bidirectional port \"a\" at bidirectional.v(12) has a one-way connection to bidirectional port \"b\""
  assign a = b;
endmodule
module each_other(inout a, inout b); // expect: error VDB-2005 10666 "Bidirectional port \"a\" at bidirectional.v(15) indirectly feeds itself" ; error VDB-2007 10664 "Bidirectional ports \"a\" and \"b\" at bidirectional.v(15) indirectly drive each other" ; error VDB-2005 10666 "Bidirectional port \"b\" at bidirectional.v(15) indirectly feeds itself"
  assign a = b;
  assign b = a;
endmodule
module enabled(inout a, input e, d, output y);
  assign a = e ? d : 1'bz;
  assign y = a;
endmodule
