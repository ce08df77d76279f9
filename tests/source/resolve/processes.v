// Processes, events, disable.
// run: --lint --std=vlog2001
module processes(input c, output reg q, output reg p, output reg r);
  parameter P = 1;
  event happens;
  always q = c; // expect: warning VERI-1084 10227 "always construct has no timing control and never ends"
  always begin // expect: warning VERI-1084 10227 "always construct has no timing control and never ends"
    p = c;
  end
  always #5 r = ~r;
  always @(c) begin : named
    -> happens;
    -> c; // expect: error VERI-2034 10239 "\"c\" is not an event"
    disable named;
    disable c; // expect: error VERI-2055 10244 "\"c\" is not a block or task that can be disabled"
    disable P; // expect: error VERI-2055 10244 "\"P\" is not a block or task that can be disabled"
  end
  always @(1'b1 or c) q = c; // expect: warning VERI-1160 10326 "event expression \"1'b1\" is constant and never changes"
  always @(posedge P) q = c; // expect: warning VERI-1160 10326 "event expression \"P\" is constant and never changes"
endmodule
