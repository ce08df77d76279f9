// What is no register, what becomes a latch.
// run each: --std=vlog2001
module latch(input e, d, output reg q);
  always @(e or d) if (e) q = d; // expect: warning VERI-2004 10240 "inferring latch(es) for variable \"q\", which holds its previous value in one or more paths through the always construct" ; information VDB-2009 10041 "Inferred latch for \"q\" at registers.v(4)"
endmodule
module both_edges(input c, d, e, output reg q);
  always @(posedge c) if (e) q <= d; // expect: error VDB-1001 10029 "Constant driver at registers.v(7)"
  always @(negedge c) if (!e) q <= d; // expect: error VDB-1000 10028 "Can't resolve multiple constant drivers for net \"q\" at registers.v(8)"
endmodule
module two_clocks(input c, k, d, output reg q);
  always @(posedge c or posedge k) q <= d; // expect: warning VERI-2001 10237 "can't infer register for assignment in edge-triggered always construct because the clock isn't obvious. Generated combinational logic instead"
endmodule
module three_edges(input c, k, r, d, output reg q);
  always @(posedge c or posedge k or posedge r) if (r) q <= 0; else q <= d; // expect: warning VERI-2001 10237 "can't infer register for assignment in edge-triggered always construct because the clock isn't obvious. Generated combinational logic instead"
endmodule
module no_template(input c, r, s, d, output reg q);
  always @(posedge c or posedge r) begin
    if (r) q <= 0;
    else q <= d;
    if (s) q <= 1; // expect: warning VERI-2002 10238 "if-condition does not match any sensitivity list edge"
  end
endmodule
module not_held(input c, r, d, output reg q);
  always @(posedge c or posedge r) begin
    q <= d; // expect: warning VERI-2001 10237 "can't infer register for assignment in edge-triggered always construct because the clock isn't obvious. Generated combinational logic instead"
    if (r) q <= 0;
  end
endmodule
module loop(input a, output y);
  wire v, w;
  assign v = w & a;
  assign w = v | a;
  assign y = w;
endmodule
