// Connections and parameters of instances, as far as names tell.
// run: --lint --std=vlog2001
module leaf(a, b, y);
  input a, b;
  output y;
  parameter P = 1;
  assign y = a & b & P;
endmodule

module instances(input c, output [6:0] q);
  leaf u0(c, c, q[0]);
  leaf u1(c, .b(c), .y(q[1])); // expect: error VERI-2050 10658 "instance \"u1\" mixes connections by name and by order"
  leaf u2(.a(c), .y(q[2])); // expect: warning VERI-2076 10242 "input port \"b\" of instance \"u2\" is not connected"
  leaf u3(.a(c), .b(), .y(q[3])); // expect: warning VERI-2076 10242 "input port \"b\" of instance \"u3\" is not connected"
  leaf u4(c, , q[4]); // expect: warning VERI-2076 10242 "input port \"b\" of instance \"u4\" is not connected"
  leaf #(.P(1), .P(2)) u5(c, c, q[5]); // expect: error VERI-2051 10243 "parameter \"P\" is given more than one value"
  leaf (c, c, q[6]); // expect: error VERI-2014 10656 "instance of module \"leaf\" has no name"
endmodule
