1module udp_dff(output reg q, input clk, d);
  always @(posedge clk) q <= d;
endmodule
