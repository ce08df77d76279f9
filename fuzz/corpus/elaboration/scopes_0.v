1module scopes_rounds(input clk, input [7:0] a, b, output [7:0] sum, mix, output reg [7:0] q, output parity);
  genvar i, j;
  generate
    for (i = 0; i < 8; i = i + 1) begin : bit_
      wire carry_in, carry;
      if (i == 0) begin : first
        assign carry_in = 1'b0;
      end else begin : other
        assign carry_in = bit_[i-1].carry;
      end
      function majority;
        input x, y, z;
        majority = (x & y) | (x & z) | (y & z) ^ (i == 9);
      endfunction
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
