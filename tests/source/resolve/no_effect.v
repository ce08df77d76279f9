// Legal, and most likely not what was meant.
// run: --lint --std=vlog2001
module no_effect(input a, b, output reg q, output p);
  integer i;
  assign p = a == a; // expect: warning VERI-2119 10651 "comparison of \"a\" with itself"
  always @(a or b) begin
    q = q; // expect: warning VERI-2126 10738 "assignment of \"q\" to itself"
    if (a) ; // expect: warning VERI-2079 10645 "conditional statement has no effect"
    if (b) ; else ; // expect: warning VERI-2079 10645 "conditional statement has no effect"
    for (i = 0; i < 3; i = i + 1) ; // expect: warning VERI-2111 10646 "loop has no statement"
    while (a < a) ; // expect: warning VERI-2119 10651 "comparison of \"a\" with itself" ; warning VERI-2111 10646 "loop has no statement"
    if (a >= b) q = b;
  end
endmodule
