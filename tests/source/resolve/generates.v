// Generate constructs.
// run: --lint --std=vlog2001
module leaf(input a, output y);
  parameter P = 1;
  assign y = a;
endmodule

module generates(input c, output [3:0] q);
  genvar i;
  leaf out(c, q[3]);
  generate
    for (i = 0; i < 2; i = i + 1) begin : g
      function f; // expect: error VERI-1112 10126 "function/task declaration not allowed inside generate loop"
        input a;
        f = a;
      endfunction
      task t; // expect: error VERI-1112 10126 "function/task declaration not allowed inside generate loop"
        input a;
        ;
      endtask
      leaf in(c, q[i]);
      defparam in.P = 2;
      defparam out.P = 2; // expect: error VERI-1176 10173 "defparam under generate scope cannot change parameter value outside of hierarchy"
    end
  endgenerate
  defparam out.c = 1;
  defparam q = 1; // expect: error VERI-1171 10167 "\"q\" is not a parameter"
endmodule
