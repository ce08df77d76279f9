// Jumps and results in SystemVerilog.
// run: --lint
module jumps(input logic c, output logic q);
  function logic one(input logic a);
    if (a) return; // expect: error SV-1062 10803 "return from function \"one\" needs a value"
    return a;
  endfunction
  function void none(input logic a);
    if (a) return 1; // expect: error SV-1063 10644 "return from \"none\" cannot have a value"
    return;
  endfunction
  task work(input logic a);
    if (a) return a; // expect: error SV-1063 10644 "return from \"work\" cannot have a value"
    return;
  endtask
  always_comb begin
    q = c;
    none(c);
    one(c); // expect: warning SV-1013 10885 "result of function \"one\" is not used"
    q = none(c); // expect: error SV-1060 10826 "function \"none\" has no value"
    break; // expect: error SV-1035 10707 "\"break\" stands outside of a loop"
    for (int i = 0; i < 3; i++) begin // expect: warning VERI-2053 10764 "statement is never reached"
      if (c) continue;
      break;
    end
    continue; // expect: error SV-1035 10707 "\"continue\" stands outside of a loop"
    return; // expect: error SV-1034 10706 "\"return\" stands outside of a function or task"
  end
endmodule
