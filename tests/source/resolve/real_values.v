// Where real numbers make no sense.
// run: --lint --std=vlog2001
module real_values(input [3:0] a, output reg [3:0] q);
  real r;
  reg [r:0] v; // expect: error VERI-2095 10295 "bound \"r\" of a range cannot be a real value"
  always @(posedge r) q = a; // expect: error VERI-2093 10294 "edge of real value \"r\""
  always @(a) begin
    q = {a, r}; // expect: error VERI-2092 10293 "part \"r\" of a concatenation cannot be a real value"
    q = {1.5{a}}; // expect: error VERI-2087 10292 "replication count \"1.5\" cannot be a real value"
    q = a[2.0:0]; // expect: error VERI-2095 10295 "bound \"2.0\" of a range cannot be a real value"
    case (r) // expect: error VERI-2088 10319 "case expression \"r\" cannot be a real value"
      0: q = 1;
    endcase
  end
endmodule
