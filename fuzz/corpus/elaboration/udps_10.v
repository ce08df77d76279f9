1module udp_latch(output reg q, input en, d);
  always @* if (en) q = d;
endmodule
