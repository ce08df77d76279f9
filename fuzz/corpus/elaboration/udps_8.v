1module udp_mux(output y, input s, a, b);
  assign y = s ? b : a;
endmodule
