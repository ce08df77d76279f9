// run each: --std=vlog2001
module count(input a, output y);
  function f;
    input x;
    f = x;
  endfunction
  assign y = f(a, a); // expect: error VERI-2010 10704 "call of \"f\" has 2 arguments; expected 1"
endmodule
module endless(input a, output y);
  function automatic f;
    input x;
    f = f(x); // expect: error VERI-1090 10110 "failed to elaborate task or function \"f\""
  endfunction
  assign y = f(a);
endmodule
module local_object(input a, output reg y);
  task t;
    reg x;
    x = a;
  endtask
  always @(a) begin
    t;
    y = t.x; // expect: error VERI-1089 10109 "can't synthesize hierarchical reference to object \"x\" declared in function or task"
  end
endmodule
module no_value_yet(input a, output y);
  function f;
    input x;
    reg r; // expect: warning VERI-2033 10858 "object \"r\" used but never assigned"
    f = x & r; // expect: warning VERI-2006 10241 "variable \"r\" may not be assigned a value prior to its use in this expression"
  endfunction
  assign y = f(a);
endmodule
module outside_process(input a, output y);
  reg r; // expect: warning VERI-2030 10036 "object \"r\" assigned a value but never read"
  function f;
    input x;
    begin
      r = x;
      f = x;
    end
  endfunction
  assign y = f(a); // expect: error VERI-1094 10115 "task call outside of sequential construct is not allowed"
endmodule
