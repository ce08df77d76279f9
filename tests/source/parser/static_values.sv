// A variable of a static subprogram keeps its value between calls, which hardware does not.
// run: --lint
module m(input logic a, output logic y);
  function int count();
    int n = 0; // expect: warning SV-1019 10937 "static variable \"n\" gets its initial value at each call"
    static int kept = 0;
    n = n + kept;
    return n;
  endfunction
  function automatic int fresh();
    int n = 0;
    return n + 1;
  endfunction
  assign y = a;
endmodule
