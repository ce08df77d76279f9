// Arguments by name, and by reference.
// run: --lint
module arguments(input logic a, output logic q);
  function logic f(input logic x, input logic y);
    return x & y;
  endfunction
  task by_reference(ref logic x); // expect: error SV-1083 10837 "argument \"x\" by reference needs an automatic subprogram"
    x = 1;
  endtask
  task automatic fine(ref logic x);
    x = 1;
  endtask
  always_comb begin
    q = f(.x(a), .y(a));
    q = f(.x(a), .z(a)); // expect: error SV-1072 10833 "\"f\" has no argument named \"z\""
    q = f(.x(a), .x(a)); // expect: error SV-1073 10834 "argument \"x\" is given more than once"
    q = f(.x(a), a); // expect: error SV-1074 10835 "arguments by order must come before those by name"
  end
endmodule
