// run each: --std=vlog2001
module latch(input a, b, output reg y);
  always @(a or b) if (a) y = b; // expect: warning VERI-2004 10240 "inferring latch(es) for variable \"y\", which holds its previous value in one or more paths through the always construct" ; information VDB-2009 10041 "Inferred latch for \"y\" at always.v(3)"
endmodule
module mixed_marks(input c, a, output reg y, output reg z);
  always @(posedge c) begin
    y = a;
    y <= ~a;
    z = y;
  end
endmodule
module two_bits(input [1:0] a, output reg y);
  always @(a) if (a) y = 1; else y = 0; // expect: warning VERI-1193 10263 "condition expression wider than single-bit"
endmodule
module constant_condition(input a, output reg y);
  integer i;
  always @(a) begin
    y = a;
    for (i = 0; 1'b0; i = i + 1) y = 0; // expect: warning VERI-2036 10037 "conditional expression evaluates to a constant"
  end
endmodule
module loop(input a, output y);
  wire w = ~w & a;
  assign y = w;
endmodule
module initial_value(input a, c, output reg y);
  initial y = a; // expect: warning VERI-2026 10830 "initial value of \"y\" is not constant and has no effect"
  always @(posedge c) y <= a;
endmodule
module declared_value(input a, c, output reg y);
  reg r = a; // expect: error VERI-1184 10182 "expression in variable declaration assignment to \"r\" must be constant"
  always @(posedge c) y <= r;
endmodule
module ignored(input a, c, output reg y);
  reg r; // expect: warning VERI-2030 10036 "object \"r\" assigned a value but never read"
  initial $monitor("%b", y); // expect: warning VERI-1157 10175 "system task ignored"
  always @(posedge c) begin
    fork // expect: warning VERI-1147 10021 "parallel (fork-join) block ignored"
      y <= a;
    join
    wait (a) y <= a; // expect: warning VERI-1158 10176 "wait statement ignored"
    force r = a; // expect: warning VERI-1166 10846 "force statement not supported for synthesis"
    release r; // expect: warning VERI-1167 10038 "release statement not supported for synthesis"
    assign r = a; // expect: warning VERI-1168 10090 "assign statement not supported for synthesis"
    deassign r; // expect: warning VERI-1169 10103 "deassign statement not supported for synthesis"
    y <= a;
  end
endmodule
