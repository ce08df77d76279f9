1module branch_regs(input clk, rst, input a, b, c, input [3:0] d, output reg [3:0] q);
  always @(posedge clk)
    if (rst) q <= 4'd3;
    else begin
      if (a) begin if (b) begin if (c) q <= d; else q <= q + 1; end else if (!a) q <= 4'hf; else q <= ~q; end
      else if (b) begin q <= {q[0], q[3:1]}; if (a) q <= 0; if (c) q[2] <= d[2]; end
    end
endmodule
