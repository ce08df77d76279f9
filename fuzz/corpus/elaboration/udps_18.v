1module udp_registers(input clk, rst, d, e, s, output [3:0] q);
  udp_dff u1(q[0], clk, d);
  udp_dff_controls u2(q[1], clk, d, s & ~rst, rst);
  udp_dff_enable u3(q[2], e, d, clk);
  udp_jk u4(q[3], clk, d, e, rst);
endmodule
