// run: --lint --std=vlog2001
module clash(input a, output y); // expect: error VERI-1072 10112 "Ignored design unit \"clash\" at generate_label.v(2) due to previous errors"
  wire g; // expect: information VERI-1177 10499 "see declaration for object \"g\""
  genvar i;
  generate for (i = 0; i < 2; i = i + 1) begin : g wire w; end endgenerate // expect: error VERI-1116 10148 "object \"g\" is already declared in the present scope"
  assign y = a;
endmodule
