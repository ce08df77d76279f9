1module udp_latches(input en, d, s, r, output q, p);
  udp_latch u1(q, en, d);
  udp_set_reset u2(p, s, r);
endmodule
