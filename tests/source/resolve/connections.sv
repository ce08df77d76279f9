// .name and .*
// run: --lint
module leaf(input logic a, b, output logic y);
  assign y = a & b;
endmodule

module connections(input logic a, b, output logic y, input logic c, output logic [3:0] q);
  leaf u0(.*);
  leaf u1(.a, .b, .y(q[0]));
  leaf u2(a, .*); // expect: error VERI-2050 10658 "instance \"u2\" mixes connections by name and by order"
  leaf u3(.*, .y(q[1]), .*); // expect: error SV-1071 10805 "instance \"u3\" has more than one .*"
  leaf u4(.a, .d, .y(q[2])); // expect: error VERI-1128 10161 "object \"d\" is not declared" ; warning VERI-2076 10242 "input port \"b\" of instance \"u4\" is not connected"
endmodule
