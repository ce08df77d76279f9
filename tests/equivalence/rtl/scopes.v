// Names across the scopes of generate constructs, blocks and subprograms.

// Each round has its own net and block of statements; a round reads the one before it by its path.
module scopes_rounds(input clk, input [7:0] a, b, output [7:0] sum, mix, output reg [7:0] q, output parity);
  genvar i, j;
  function majority;
    input x, y, z;
    majority = (x & y) | (x & z) | (y & z);
  endfunction
  generate
    for (i = 0; i < 8; i = i + 1) begin : bit_
      wire carry_in, carry;
      if (i == 0) begin : first
        assign carry_in = 1'b0;
      end else begin : other
        assign carry_in = bit_[i-1].carry;
      end
      assign carry = majority(a[i], b[i], carry_in);
      xor (odd, a[i], b[i]); // a net of each round that nothing declares
      assign sum[i] = odd ^ carry_in;
      always @(posedge clk) begin : store
        reg held;
        integer k;
        held = carry;
        for (k = 0; k < i; k = k + 1) held = held ^ a[k];
        q[i] <= held;
      end
    end
    for (i = 0; i < 4; i = i + 1) begin : row
      wire [1:0] cell_;
      for (j = 0; j < 2; j = j + 1) begin : col
        wire x = a[2*i+j] & b[7-(2*i+j)];
        case (i % 2)
          0: begin : even assign cell_[j] = x; end
          default: begin : uneven assign cell_[j] = ~x; end
        endcase
      end
      assign mix[2*i+1:2*i] = cell_ ^ {col[0].x, col[1].x};
    end
  endgenerate
  assign parity = row[0].col[1].x ^ row[3].col[0].x ^ bit_[7].carry;
endmodule

module scopes_leaf(input [3:0] a, output [3:0] y);
  parameter K = 1;
  parameter M = 2;
  assign y = a * K + M;
endmodule

// Blocks by name, the same names in several scopes, and parameters from outside.
module scopes_blocks(input clk, input sel, input [3:0] a, output reg [3:0] y, output [3:0] z, w, output [1:0] v);
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
