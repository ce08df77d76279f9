1module udp_dff_enable(output reg q, input en, d, clk);
  always @(posedge clk) if (en) q <= d;
endmodule
