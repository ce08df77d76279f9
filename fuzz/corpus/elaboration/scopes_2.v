1module scopes_blocks(input clk, input sel, input [3:0] a, output reg [3:0] y, output [3:0] z, w, output [1:0] v);
  reg [3:0] t;
  always @* begin : outer
    reg [3:0] t;
    t = a + 4'd1;
    begin : inner
      reg [3:0] t;
      t = outer.t ^ 4'd3;
      y = sel ? t : outer.t;
    end
  end
  always @(posedge clk) t <= outer.inner.t;
  task swap;
    input [3:0] x;
    output [3:0] r;
    begin : body
      reg [1:0] t;
      t = x[3:2];
      r = {x[1:0], t};
    end
  endtask
  reg [3:0] s;
  always @* swap(t, s);
  scopes_leaf low(.a(s), .y(z));
  defparam low.K = 3;
  genvar g;
  generate
    for (g = 0; g < 2; g = g + 1) begin : copy
      wire [3:0] r;
      scopes_leaf #(.M(g)) leaf(.a(a), .y(r));
      defparam leaf.K = g + 2;
      assign v[g] = ^r;
    end
  endgenerate
  assign w = copy[0].r & copy[1].r;
endmodule
