// User-defined primitives, pulls, and ports that are expressions: constructs that only the simulator reads.

primitive majority (output y, input a, input b, input c);
  table
    0 0 ? : 0;
    0 ? 0 : 0;
    ? 0 0 : 0;
    1 1 ? : 1;
    1 ? 1 : 1;
    ? 1 1 : 1;
  endtable
endprimitive

primitive latched (q, en, d);
  output q;
  input en, d;
  reg q;
  table
    1 0 : ? : 0;
    1 1 : ? : 1;
    0 ? : ? : -;
  endtable
endprimitive

primitive edged (q, c, d);
  output q;
  input c, d;
  reg q;
  initial q = 1'b0;
  table
    r 0 : ? : 0;
    r 1 : ? : 1;
    f ? : ? : -;
    ? * : ? : -;
  endtable
endprimitive

// simulate: a combinational primitive
module udp_majority (input a, b, c, output y);
  majority u (y, a, b, c);
endmodule

// simulate: a level-sensitive primitive
module udp_latch (input en, d, output q);
  latched u (q, en, d);
endmodule

// simulate: an edge-sensitive primitive with a value at power-up
module udp_register (input clk, d, output q);
  edged u (q, clk, d);
endmodule

module renamed_ports (.in(a), .out({y, x}));
  input [1:0] a;
  output x, y;
  assign x = a[0] & a[1];
  assign y = a[0] | a[1];
endmodule

module split_ports (a[3:2], a[1:0], y);
  input [3:0] a;
  output [3:0] y;
  assign y = ~a;
endmodule

// simulate: a bidirectional connection of two instances
module inout_instances (input s, a, b, output y);
  wire w;
  half_driver u1 (.en(s), .d(a), .w(w));
  half_driver u2 (.en(~s), .d(b), .w(w));
  assign y = w;
endmodule

module half_driver (input en, d, inout w);
  assign w = en ? d : 1'bz;
endmodule

// simulate: gates with strengths and delays
module gates_strength (input a, b, output x, y);
  and (strong0, strong1) #1 g1 (x, a, b);
  or #(1, 2) g2 (y, a, b);
endmodule

// simulate: an ascending array of instances of wider ports
module instance_array_wide (input [7:0] a, output [7:0] y);
  leaf #(.K(4'd10)) u [0:1] (a, y);
endmodule

module leaf #(parameter W = 4, parameter [W-1:0] K = 3) (input [W-1:0] a, output [W-1:0] y);
  assign y = a ^ K;
endmodule

// simulate: an array of gates
module gates_array (input [3:0] a, b, input c, output [3:0] x, y);
  and g1 [3:0] (x, a, b);
  xor g2 [3:0] (y, a, c);
endmodule

// simulate: ports with other names inside, of several ports, and of parts
module port_expressions (input p, s, input [2:0] q, input [1:0] r, input [3:0] a, output [6:0] y, z, output [3:0] v);
  inside_ports named (.p(p), .r(r), .s(s), .y(y));
  inside_ports ordered (p, q, r, s, z);
  outside_ports out (.low(v[1:0]), .high(v[3:2]), .a(a));
endmodule
module inside_ports (.p(a), {b, c}, .r(d[3:2]), .s(d[0]), y);
  input a;
  input b;
  input [1:0] c;
  input [3:0] d;
  output [6:0] y;
  assign y = {a, b, c, d[3:2], d[0]};
endmodule
module outside_ports (.low(v[1:0]), .high({w, v[2]}), a);
  input [3:0] a;
  output [2:0] v;
  output w;
  assign v = a[2:0];
  assign w = ^a;
endmodule
