// run each: --std=vlog2001
module condition(input a, output y);
  generate if (a) assign y = 1; endgenerate
endmodule
module selection(input a, output y);
  generate case (a) 0: assign y = 1; endcase endgenerate
endmodule
module selection_item(input a, output y);
  parameter P = 1;
  generate case (P) a: assign y = 1; endcase endgenerate
endmodule
module round(input a, output y);
  genvar i;
  generate for (i = 0; i < a; i = i + 1) begin : g wire w; end endgenerate
endmodule
module endless(input a, output y);
  genvar i;
  generate for (i = 0; i < 100000; i = i + 1) begin : g wire w; end endgenerate
endmodule
module not_a_genvar(input a, output y);
  integer i;
  generate for (i = 0; i < 2; i = i + 1) begin : g wire w; end endgenerate // expect: error VERI-1104 10124 "\"i\" is not a genvar"
endmodule
module wide_condition(input a, output y);
  generate if (2'b10) assign y = a; endgenerate
endmodule
