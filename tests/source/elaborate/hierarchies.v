// Names with a path, and defparams. Each module is a top.
// run each: --std=vlog2001
// ignore: information
module leaf(input a, output y); // expect: error VERI-1121 10128 "parameter \"V\" is not defined in this module"
  parameter W = 3;
  wire t = a;
  assign y = t;
endmodule
module no_element(input a, output y);
  leaf u(.a(a), .y());
  assign y = u.nothing; // expect: error VERI-1082 10207 "external reference \"u.nothing\" not supported for synthesis"
endmodule
module indices(input a, output y);
  leaf u(.a(a), .y());
  assign y = u[0][1].t; // expect: error VERI-1082 10207 "external reference \"u[0][1].t\" not supported for synthesis"
endmodule
module no_parameter(input a, output y);
  leaf u(.a(a), .y(y));
  defparam u.V = 3;
endmodule
module below(input a, output y);
  no_parameter u(.a(a), .y(y));
  defparam u.u.W = 3; // expect: error VERI-1175 10172 "can't synthesize cross-hierarchy defparam assignment \"u.u.W\" on \"u\""
endmodule
module through(input a, output y);
  no_parameter u(.a(a), .y());
  assign y = u.u.t; // expect: error VERI-1082 10207 "external reference \"u.u.t\" not supported for synthesis"
endmodule
module no_such(input a, output y);
  leaf #(.Z(1)) u(.a(a), .y(y)); // expect: error VERI-1125 10132 "module \"leaf\" does not have a parameter named \"Z\""
endmodule
