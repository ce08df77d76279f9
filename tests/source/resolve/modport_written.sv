// What a modport gives to be read only, and a task that has no result.
// run: --lint
// ignore: information
interface bus;
  logic [7:0] data;
  logic v;
  modport source(output data, input v);
endinterface
module m(bus.source b, output logic q);
  assign b.data = 8'd0;
  assign b.v = 1'b1; // expect: error SV-1097 10918 "\"v\" cannot be written through modport \"source\""
  assign q = $display("x"); // expect: error VERI-2081 10318 "system task \"$display\" cannot be called like a function"
endmodule
