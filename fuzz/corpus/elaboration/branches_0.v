1module prio_regs(input clk, rst, input [15:0] c, input [3:0] d, output reg [3:0] q, output reg [3:0] p);
  integer i;
  always @(posedge clk) begin
    for (i = 0; i < 16; i = i + 1) if (c[i]) q <= d + i;
    if (rst) begin q <= 0; p <= 0; end else
    if (c[0]) p <= 1; else if (c[1]) p <= 2; else if (c[2]) p <= 3; else if (c[3]) p <= d; else if (c[4]) p <= ~d;
    else if (c[5]) p <= d+1; else if (c[6]) p <= p + 1; else if (c[7]) p <= p ^ d; else if (c[8]) p <= 9;
    else if (c[9]) p <= 10; else if (c[10]) p <= 11; else if (c[11]) p <= p - 1; else if (c[12]) p <= d - 1;
    else if (c[13]) p <= {p[2:0],p[3]}; else if (c[14]) p <= 14; else if (c[15]) p <= p;
  end
endmodule
