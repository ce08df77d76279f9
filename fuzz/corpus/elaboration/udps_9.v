1module udp_most(output y, input a, b, c, d);
  assign y = a + b + c + d == 2 ? 1'bx : a + b + c + d > 2;
endmodule
