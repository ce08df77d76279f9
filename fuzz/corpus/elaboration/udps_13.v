1module udp_dff_controls(output reg q, input clk, d, set, rst);
  always @(negedge clk or posedge set or posedge rst)
    if (rst) q <= 0;
    else if (set) q <= 1;
    else q <= d;
endmodule
