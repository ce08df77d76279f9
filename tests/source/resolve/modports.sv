// A port of a modport that is no object.
// run: --lint --std=sv2005
interface bus;
  logic [7:0] data;
  modport sink(input data, nothing); // expect: error SV-1023 10888 "modport port \"nothing\" does not correspond to an object in the enclosing interface"
endinterface
