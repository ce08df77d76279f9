// run each: --std=vlog2001
module two_controls(input a, b, output reg y);
  always @(posedge a) begin
    @(posedge b) y = a; // expect: error VERI-1218 10206 "multiple event control statements not supported for synthesis"
  end
endmodule
module in_initial(input a, b, output reg y);
  initial @(posedge a) y = 1;
  always @(posedge b) y = a;
endmodule
module in_task(input a, output reg y);
  task t;
    @(a) y = a; // expect: error VERI-1218 10206 "multiple event control statements not supported for synthesis"
  endtask
  always @(posedge a) t;
endmodule
module mixed(input a, b, output reg y);
  always @(posedge a or b) y = b; // expect: warning VERI-1163 10196 "no support for synthesis of mixed edge and level triggers. Assume level triggers only"
endmodule
module twice(input a, output reg y);
  always @(a or a) y = a; // expect: warning VERI-1164 10261 "sensitivity list already contains \"a\""
endmodule
module both_edges(input a, d, output reg y);
  always @(posedge a or negedge a) y = d; // expect: error VERI-1223 10211 "event control statement tests for multiple distinct edges on \"a\""
endmodule
module vector_edge(input [1:0] a, input d, output reg y);
  always @(posedge a) y <= d; // expect: warning VERI-1222 10197 "edge of vector \"a\" is only sensitive to the LSB"
endmodule
module array_edge(input d, output reg y);
  reg [1:0] m [0:1]; // expect: warning VERI-2033 10858 "object \"m\" used but never assigned" ; warning VDB-2020 10030 "Net \"m[0]\" at events.v(30) has no driver or initial value, using a default initial value '0'"
  always @(posedge m[0]) y <= d; // expect: warning VERI-1222 10197 "edge of vector \"m[0]\" is only sensitive to the LSB"
endmodule
module no_match(input c, r, d, output reg y);
  always @(posedge c or posedge r) if (d) y <= 0; else y <= d; // expect: warning VERI-2002 10238 "if-condition does not match any sensitivity list edge"
endmodule
module missing(input a, b, output reg y);
  always @(a) y = a & b; // expect: warning VERI-1221 10235 "variable \"b\" is read inside the Always Construct but isn't in the Always Construct's Event Control"
endmodule
module named_event(input a, output reg y, output z);
  event e; // expect: warning VDB-2020 10030 "Net \"e\" at events.v(40) has no driver or initial value, using a default initial value '0'"
  assign z = e; // expect: warning VERI-1143 10216 "use of events is not supported; event ignored"
  always @(a) begin
    -> e; // expect: warning VERI-1025 10066 "event trigger ignored"
    y = a;
  end
endmodule
