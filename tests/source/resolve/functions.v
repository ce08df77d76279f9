// What functions and tasks may hold and how they are called in Verilog.
// run: --lint --std=vlog2001
module functions(input c, output reg q);
  function no_input; // expect: error VERI-2016 10653 "function \"no_input\" must have at least one input"
    no_input = 1;
  endfunction
  function two_ways;
    input a;
    output b; // expect: error VERI-2017 10657 "argument \"b\" of function \"two_ways\" must be an input"
    inout d; // expect: error VERI-2017 10657 "argument \"d\" of function \"two_ways\" must be an input"
    two_ways = a;
  endfunction
  function waits;
    input a;
    begin
      #1 waits = a; // expect: error VERI-2018 10652 "function \"waits\" cannot contain timing controls"
      @(a) waits = a; // expect: error VERI-2018 10652 "function \"waits\" cannot contain timing controls"
      waits = #1 a; // expect: error VERI-2018 10652 "function \"waits\" cannot contain timing controls"
      wait (a) waits = a; // expect: error VERI-2018 10652 "function \"waits\" cannot contain timing controls"
      waits <= a; // expect: error VERI-2019 10233 "function \"waits\" cannot contain non-blocking assignments"
    end
  endfunction
  task work;
    input a;
    output b;
    b = a;
  endtask
  function enables;
    input a;
    begin
      work(a, enables); // expect: error VERI-2020 10234 "function \"enables\" cannot enable task \"work\""
      enables = a;
    end
  endfunction
  always @(c) begin
    waits(c); // expect: error VERI-2064 10249 "function \"waits\" cannot be enabled like a task"
    q = work(c, q); // expect: error VERI-2075 10256 "task \"work\" cannot be called like a function"
    work(c, q + 1); // expect: error VERI-1088 10108 "illegal expression in target"
    work(c, {q});
    q = nothing(c); // expect: error VERI-1091 10111 "function \"nothing\" is not declared"
    nothing(c); // expect: error VERI-1093 10114 "task \"nothing\" is not declared"
    q = c(1); // expect: error VERI-1091 10111 "function \"c\" is not declared"
    c; // expect: error VERI-1093 10114 "task \"c\" is not declared"
  end
endmodule
