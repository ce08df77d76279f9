// Functions whose result some path leaves open. Where a case lists as many values as its expression has, none does.
// run: --lint --std=vlog2001
module m(input [1:0] a, input b, output [3:0] y);
  function no_else; // expect: warning VERI-2044 10218 "function \"no_else\" could return x because it may not be assigned an output value in every possible path through the function"
    input x;
    if (x) no_else = 1'b1;
  endfunction
  function no_default; // expect: warning VERI-2044 10218 "function \"no_default\" could return x because it may not be assigned an output value in every possible path through the function"
    input [1:0] x;
    case (x)
      2'd0: no_default = 1'b1;
      2'd1: no_default = 1'b0;
      2'd2: no_default = 1'b0;
    endcase
  endfunction
  function all_values;
    input [1:0] x;
    case (x)
      2'd0: all_values = 1'b1;
      2'd1, 2'd2: all_values = 1'b0;
      2'd3: all_values = 1'b0;
    endcase
  endfunction
  function first_a_default;
    input x;
    begin
      first_a_default = 1'b0;
      if (x) first_a_default = 1'b1;
    end
  endfunction
  function in_a_loop;
    input [3:0] x;
    integer i;
    for (i = 0; i < 4; i = i + 1) in_a_loop = x[i];
  endfunction
  function else_chain;
    input [1:0] x;
    if (x[0])
      else_chain = 1'b1;
    else if (x[1])
      else_chain = 1'b0;
    else begin
      else_chain = 1'b1;
    end
  endfunction
  assign y = {no_else(b), no_default(a), all_values(a) ^ first_a_default(b), in_a_loop(a) ^ else_chain(a)};
endmodule
