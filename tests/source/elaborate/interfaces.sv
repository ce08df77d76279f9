// Interfaces and modports that do not fit. Each module is a top.
// run each: --std=sv2005
// ignore: information warning
interface bus;
  logic [7:0] data;
  modport source(output data);
  modport sink(input data);
endinterface
module user(bus.source b);
  assign b.data = 8'd0;
endmodule
module crossed(input logic a, output logic y);
  bus w();
  user u(.b(w.sink)); // expect: error SV-1029 10894 "actual modport specification \"sink\" does not match formal modport specification \"source\""
  assign y = a;
endmodule
module several(bus w [1:0]); // expect: error SV-1026 10891 "can't declare unpacked array of interfaces"
endmodule
module array(input logic a, output logic y);
  bus w [1:0] ();
  several u(.w(w)); // expect: error SV-1016 10881 "can't connect expression with incompatible type to formal \"w\""
  assign y = a;
endmodule
module with_net(inout wire [7:0] d);
endmodule
module narrow(input logic a, output logic y);
  logic [3:0] t;
  with_net u(.d(t));
  assign y = a;
endmodule
