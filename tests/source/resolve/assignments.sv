// Constants, enumerations, results of functions, and statements that are never reached.
// run: --lint --std=sv2005
typedef enum logic [1:0] {A, B} first_t;
typedef enum logic [1:0] {C, D} second_t;
module m (input logic a, input first_t s, output logic y, output first_t e, output logic z);
  const int c = 1;
  const int d; // expect: error SV-1077 10856 "constant \"d\" has no value"
  second_t u;
  always_comb begin
    e = C; // expect: error SV-1087 10640 "\"C\" is assigned to \"e\", which has another enum type"
    u = s; // expect: error SV-1087 10640 "\"s\" is assigned to \"u\", which has another enum type"
    c = 2; // expect: error SV-1076 10854 "cannot assign to constant \"c\""
    $clog2(3); // expect: warning VERI-2025 10755 "result of system function \"$clog2\" is not used"
    unique case (s)
      A: y = a;
    endcase
  end
  function automatic logic f(input logic x); // expect: warning VERI-2044 10218 "function \"f\" could return x because it may not be assigned an output value in every possible path through the function"
    if (x) f = 1;
  endfunction
  function automatic logic g(input logic x);
    return x;
    g = 1; // expect: warning VERI-2053 10764 "statement is never reached"
  endfunction
  always_comb begin
    for (int i = 0; i < 3; i++) begin
      break;
      z = 1; // expect: warning VERI-2053 10764 "statement is never reached"
    end
    z = f(a) ^ g(a);
  end
endmodule
