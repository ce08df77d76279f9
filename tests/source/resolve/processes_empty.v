// Constructs without effect.
// run: --lint --std=vlog2001
module processes_empty(input a, output reg q, output p);
  always @(a) ; // expect: warning VERI-2106 10336 "always construct has no statement"
  always @(a) case (a) // expect: warning VERI-2120 10639 "case statement has a default item only"
    default: q = a;
  endcase
  function f; // expect: warning VERI-2104 10296 "function \"f\" never assigns its result"
    input x;
    ;
  endfunction
  assign p = f(a);
endmodule
