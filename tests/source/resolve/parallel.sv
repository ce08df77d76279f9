// Where parallel blocks cannot stand, and numbers for enumerations.
// run: --lint
module parallel(input logic a, output logic q, p, r);
  typedef enum {IDLE, BUSY} state;
  state s;
  function logic f(input logic x);
    fork // expect: error VERI-2080 10307 "function \"f\" cannot contain a parallel block"
      f = x;
    join
  endfunction
  task automatic t(input logic x);
    fork
      return; // expect: error SV-1067 10840 "return from within a parallel block of \"t\""
    join
  endtask
  always_comb fork // expect: error SV-1061 10839 "\"always_comb\" cannot contain a parallel block"
    q = a;
  join
  always_comb s = 1; // expect: warning SV-1086 10910 "enum variable \"s\" is assigned a number without a cast"
  always_ff @(posedge a) p <= s == BUSY;
  always @(a) r = f(a);
endmodule
