// A result is assigned as a whole, by bits, by members or within a concatenation.
// run: --lint --std=sv2005
module function_results(input logic [3:0] a, output logic [7:0] y, output logic [3:0] z, output logic [3:0] w,
                        output logic [7:0] v);
  typedef struct packed { logic [3:0] high; logic [3:0] low; } pair;
  function automatic pair by_members(input logic [3:0] s);
    by_members.high = s;
    by_members.low[3:0] = ~s;
  endfunction
  function automatic [3:0] by_bits(input logic [3:0] s);
    by_bits[1:0] = s[3:2];
    by_bits[3:2] = s[1:0];
  endfunction
  function automatic [3:0] in_concatenation(input logic [3:0] s);
    {in_concatenation[0], in_concatenation[3:1]} = s;
  endfunction
  function automatic pair reads_only(input logic [3:0] s); // expect: warning VERI-2104 10296 "function \"reads_only\" never assigns its result"
    pair copy;
    copy.high = s;
  endfunction
  assign y = by_members(a);
  assign z = by_bits(a);
  assign w = in_concatenation(a);
  assign v = reads_only(a);
endmodule
