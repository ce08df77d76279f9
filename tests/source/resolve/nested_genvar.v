// One genvar for two loops within each other.
// run: --lint --std=vlog2001
module nested_genvar(input a, output q);
  genvar i, j;
  generate
    for (i = 0; i < 2; i = i + 1) begin : outer
      for (j = 0; j < 2; j = j + 1) begin : fine
        wire w;
      end
      for (i = 0; i < 2; i = i + 1) begin : inner // expect: error VERI-1262 10288 "genvar \"i\" already counts a loop around this one"
        wire w;
      end
    end
    for (i = 0; i < 2; i = i + 1) begin : behind
      wire w;
    end
  endgenerate
  assign q = a;
endmodule
