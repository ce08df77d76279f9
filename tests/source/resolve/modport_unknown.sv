// A modport that the interface does not have.
// run: --lint
interface bus;
  logic v;
  modport sink(input v);
endinterface
module m(bus.nothing b); // expect: error SV-1096 10917 "interface \"bus\" has no modport \"nothing\""
endmodule
