// Interfaces where none can stand.
// run: --lint --std=sv2005
// ignore: information
interface bus;
  logic valid;
endinterface
module directed(input bus b, output logic y); // expect: error SV-1027 10892 "can't declare interface port with a direction" ; error VERI-1072 10112 "Ignored design unit \"directed\" at interface_ports.sv(7) due to previous errors"
  assign y = b.valid;
endmodule
module with_value(bus b = 1, output logic y); // expect: error SV-1028 10893 "interface ports can't have initial values" ; error VERI-1072 10112 "Ignored design unit \"with_value\" at interface_ports.sv(10) due to previous errors"
  assign y = b.valid;
endmodule
module object(input logic a, output logic y); // expect: error VERI-1072 10112 "Ignored design unit \"object\" at interface_ports.sv(13) due to previous errors"
  bus w; // expect: error VERI-1137 10170 "near text \";\";  expecting \"(\""
  assign y = a;
endmodule
