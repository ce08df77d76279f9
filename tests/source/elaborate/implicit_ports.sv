// Ports that an instance binds by their names alone, or leaves open.
// run each:
// ignore: information warning
interface bus;
  logic [7:0] data;
endinterface
module user(bus b, output logic q);
  assign q = b.data[0];
endmodule
module leaf(input logic a, input logic [3:0] c, output logic q);
  assign q = a & c[0];
endmodule
module open_interface(output logic q);
  user u(.q(q)); // expect: error SV-1101 10638 "interface port \"b\" must be connected"
endmodule
module narrow(input logic a, input logic [1:0] c, output logic q);
  leaf u(.*); // expect: error SV-1022 10887 "can't implicitly bind port \"c\" on instance \"u\" of module \"leaf\" - matching object in present scope does not have an equivalent data type"
endmodule
module by_name(input logic a, input logic [4:0] c, output logic q);
  leaf u(.a, .c, .q); // expect: error SV-1022 10887 "can't implicitly bind port \"c\" on instance \"u\" of module \"leaf\" - matching object in present scope does not have an equivalent data type"
endmodule
module fitting(input logic a, input logic [3:0] c, output logic q);
  leaf u(.*);
endmodule
