// run each: --std=vlog2001
module leaf(input a, input [1:0] b, output y);
  assign y = a & b[0] & b[1];
endmodule
module one_more(input a, output y);
  leaf u(a, 2'b11, y, a); // expect: error VERI-2056 10285 "instance \"u\" specifies 4 actual port connections but module \"leaf\" only expects 3"
endmodule
module no_such_port(input a, output y);
  leaf u(.a(a), .b(2'b11), .z(y)); // expect: error VERI-1107 10125 "cannot find port \"z\" on this module"
endmodule
module port_twice(input a, output y);
  leaf u(.a(a), .a(a), .b(2'b11), .y(y)); // expect: error VERI-2011 10708 "port \"a\" is connected more than once"
endmodule
module to_variable(input a, output reg y);
  leaf u(a, 2'b11, y); // expect: error VERI-2065 10663 "output or inout port \"y\" must be connected to a structural net expression"
endmodule
module to_expression(input a, output y);
  leaf u(a, 2'b11, y & a); // expect: error VERI-2065 10663 "output or inout port \"y\" must be connected to a structural net expression"
endmodule
module real_value(input a, output y);
  leaf u(1.5, 2'b11, y); // expect: error VERI-1151 10151 "can't connect port to a real value"
endmodule
module array_width(input [4:0] a, output [2:0] y);
  leaf u[2:0](a, 2'b11, y); // expect: error VERI-2071 10219 "illegal connection to port \"a\" in array of instances - actual bit length (5) doesn't equal the port width (1) or divide evenly by the number of instances (3)"
endmodule
module array_unknown(input [2:0] a, output [2:0] y);
  nothing u[2:0](a, y); // expect: error VERI-2072 10221 "cannot elaborate array of instances because the instantiated module's declaration hasn't been analyzed"
endmodule
module from_inside(input a, output y);
  wire w; // expect: warning VERI-2030 10036 "object \"w\" assigned a value but never read"
  leaf u(a, 2'b11, w);
  assign y = u.y; // expect: error VERI-1082 10207 "external reference \"u.y\" not supported for synthesis"
endmodule
module to_inside(input a, output y);
  leaf u(a, 2'b11, y);
  assign u.a = a; // expect: error VERI-1082 10207 "external reference \"u.a\" not supported for synthesis"
endmodule
