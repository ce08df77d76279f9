1module udp_jk(output reg q, input clk, j, k, rst);
  always @(posedge clk or posedge rst)
    if (rst) q <= 0;
    else q <= j & ~q | ~k & q;
endmodule
