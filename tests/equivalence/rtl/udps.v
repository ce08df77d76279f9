// User-defined primitives. yosys reads no tables, so it gets what they mean as modules.

`ifndef YOSYS
primitive udp_mux(output y, input s, input a, input b);
  table
    0 0 ? : 0;
    0 1 ? : 1;
    1 ? 0 : 0;
    1 ? 1 : 1;
    x 0 0 : 0;
    x 1 1 : 1;
  endtable
endprimitive

primitive udp_most(y, a, b, c, d);
  output y;
  input a, b, c, d;
  table
    1 1 1 b : 1;
    1 1 b 1 : 1;
    1 ? 1 1 : 1;
    ? 1 1 1 : 1;
    0 0 b b : 0;
    0 b 0 b : 0;
    0 b b 0 : 0;
    b 0 0 b : 0;
    b 0 b 0 : 0;
    b b 0 0 : 0;
  endtable
endprimitive

primitive udp_latch(output reg q, input en, input d);
  table
    1 0 : ? : 0;
    1 1 : ? : 1;
    0 ? : ? : -;
  endtable
endprimitive

primitive udp_set_reset(q, s, r);
  output q;
  reg q;
  input s, r;
  table
    1 0 : ? : 1;
    0 1 : ? : 0;
    0 0 : 0 : 0;
    0 0 : 1 : 1;
    1 1 : ? : 0;
  endtable
endprimitive

primitive udp_dff(output reg q, input clk, input d);
  table
    (01) 0 : ? : 0;
    (01) 1 : ? : 1;
    (0x) 1 : 1 : 1;
    (0x) 0 : 0 : 0;
    (?0) ? : ? : -;
    ?    * : ? : -;
  endtable
endprimitive

primitive udp_dff_controls(output reg q, input clk, input d, input set, input rst);
  table
    ? ? ? 1 : ? : 0;
    ? ? 1 0 : ? : 1;
    f 0 0 0 : ? : 0;
    f 1 0 0 : ? : 1;
    r ? 0 0 : ? : -;
    ? * 0 0 : ? : -;
    ? ? n 0 : ? : -;
    ? ? 0 n : ? : -;
  endtable
endprimitive

primitive udp_dff_enable(output reg q, input en, input d, input clk);
  table
    0 ? r : ? : -;
    1 0 r : ? : 0;
    1 1 r : ? : 1;
    ? ? f : ? : -;
    * ? ? : ? : -;
    ? * ? : ? : -;
  endtable
endprimitive

primitive udp_jk(output reg q, input clk, input j, input k, input rst);
  table
    ? ? ? 1 : ? : 0;
    r 0 0 0 : ? : -;
    r 0 1 0 : ? : 0;
    r 1 0 0 : ? : 1;
    r 1 1 0 : 0 : 1;
    r 1 1 0 : 1 : 0;
    f ? ? 0 : ? : -;
    b * ? 0 : ? : -;
    b ? * 0 : ? : -;
    ? ? ? n : ? : -;
  endtable
endprimitive
`else
module udp_mux(output y, input s, a, b);
  assign y = s ? b : a;
endmodule

module udp_most(output y, input a, b, c, d);
  assign y = a + b + c + d == 2 ? 1'bx : a + b + c + d > 2;
endmodule

module udp_latch(output reg q, input en, d);
  always @* if (en) q = d;
endmodule

module udp_set_reset(output reg q, input s, r);
  always @* if (r) q = 0; else if (s) q = 1;
endmodule

module udp_dff(output reg q, input clk, d);
  always @(posedge clk) q <= d;
endmodule

module udp_dff_controls(output reg q, input clk, d, set, rst);
  always @(negedge clk or posedge set or posedge rst)
    if (rst) q <= 0;
    else if (set) q <= 1;
    else q <= d;
endmodule

module udp_dff_enable(output reg q, input en, d, clk);
  always @(posedge clk) if (en) q <= d;
endmodule

module udp_jk(output reg q, input clk, j, k, rst);
  always @(posedge clk or posedge rst)
    if (rst) q <= 0;
    else q <= j & ~q | ~k & q;
endmodule
`endif

module udp_gates(input s, a, b, c, output y, z);
  udp_mux u1(y, s, a, b);
  udp_most u2(z, s, a, b, c);
endmodule

module udp_latches(input en, d, s, r, output q, p);
  udp_latch u1(q, en, d);
  udp_set_reset u2(p, s, r);
endmodule

module udp_registers(input clk, rst, d, e, s, output [3:0] q);
  udp_dff u1(q[0], clk, d);
  udp_dff_controls u2(q[1], clk, d, s & ~rst, rst);
  udp_dff_enable u3(q[2], e, d, clk);
  udp_jk u4(q[3], clk, d, e, rst);
endmodule
