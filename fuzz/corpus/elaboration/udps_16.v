1module udp_gates(input s, a, b, c, output y, z);
  udp_mux u1(y, s, a, b);
  udp_most u2(z, s, a, b, c);
endmodule
