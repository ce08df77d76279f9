1module udp_set_reset(output reg q, input s, r);
  always @* if (r) q = 0; else if (s) q = 1;
endmodule
