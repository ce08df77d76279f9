// Conditions, cases with their attributes, loops and jumps, functions and tasks.

// prove: an if chain is a priority
module if_chain (input [3:0] s, input [3:0] a, b, c, output reg [3:0] y);
  always @*
    if (s[0]) y = a;
    else if (s[1]) y = b;
    else if (s[2]) y = c;
    else if (s[3]) y = a ^ b;
    else y = 4'd9;
endmodule

// prove: a default before the conditions
module if_default (input [1:0] s, input [3:0] a, output reg [3:0] y, output reg f);
  always @* begin
    y = 4'd0;
    f = 1'b0;
    if (s[0]) y = a;
    if (s[1]) begin
      y[3] = ~y[3];
      f = |a;
    end
  end
endmodule

// prove: nested conditions with several variables
module if_nested (input [2:0] s, input [3:0] a, b, output reg [3:0] x, y);
  always @* begin
    x = a;
    y = b;
    if (s[0]) begin
      if (s[1]) x = b;
      else y = a;
      if (s[2]) {x, y} = {y, x};
    end else if (s[2]) x = x + y;
  end
endmodule

// prove: a condition of several bits is true when one of them is
module if_wide (input [3:0] s, input signed [1:0] t, input a, b, output reg x, y);
  always @* begin
    if (s) x = a; else x = b;
    if (t) y = b; else y = a;
  end
endmodule

// prove: constant conditions leave one branch
module if_constant (input [3:0] a, b, output reg [3:0] x, y, z);
  parameter ON = 1;
  always @* begin
    if (ON) x = a; else x = b;
    if (ON == 0) y = a; else y = b;
    z = a;
    if (1'bx) z = b;
  end
endmodule

// prove: the condition's variable is known in the branches
module if_known (input s, input [3:0] a, output reg [3:0] x, y);
  always @* begin
    if (s) x = {4{s}} & a; else x = {4{s}} | a;
    if (!s) y = a + s; else y = a - s;
  end
endmodule

// prove: a case with all values
module case_all (input [1:0] s, input [3:0] a, b, c, d, output reg [3:0] y);
  always @*
    case (s)
      2'd0: y = a;
      2'd1: y = b;
      2'd2: y = c;
      2'd3: y = d;
    endcase
endmodule

// prove: a case with a default and lists of values
module case_lists (input [3:0] s, input [3:0] a, b, output reg [3:0] y);
  always @*
    case (s)
      4'd1, 4'd3, 4'd5: y = a;
      4'd2, 4'd12: y = b;
      4'd15: y = a & b;
      default: y = a ^ b;
    endcase
endmodule

// prove: a default that is not the last item
module case_default_first (input [1:0] s, input [3:0] a, b, output reg [3:0] y);
  always @*
    case (s)
      default: y = a;
      2'd2: y = b;
      2'd1: y = a - b;
    endcase
endmodule

// prove: of overlapping items the first one wins
module case_overlap (input [2:0] s, input [1:0] a, b, output reg [1:0] y);
  always @*
    casez (s)
      3'b1??: y = a;
      3'b?1?: y = b;
      3'b111: y = 2'd0;
      3'b??1: y = ~a;
      default: y = 2'd3;
    endcase
endmodule

// prove: casez takes ? and z of the items for anything
module case_z (input [3:0] s, input [3:0] a, output reg [3:0] y);
  always @*
    casez (s)
      4'b0001: y = a;
      4'b001z: y = a + 1;
      4'b01??: y = a + 2;
      4'b1???: y = a + 3;
      default: y = 0;
    endcase
endmodule

// prove: casex takes x, too
module case_x (input [3:0] s, input [3:0] a, output reg [3:0] y);
  always @*
    casex (s)
      4'b1xxx: y = a;
      4'b01xx: y = ~a;
      4'b001z: y = a << 1;
      4'b0001: y = a >> 1;
      4'b0000: y = 4'd5;
    endcase
endmodule

// simulate: an item with x in a plain case never applies
module case_never (input [1:0] s, input [3:0] a, output reg [3:0] y);
  always @*
    case (s)
      2'b1x: y = 4'd1;
      2'b10: y = a;
      2'b0z: y = 4'd2;
      default: y = ~a;
    endcase
endmodule

// prove: the reversed case finds the first condition that holds
module case_reversed (input [3:0] r, output reg [3:0] g);
  always @*
    case (1'b1)
      r[0]: g = 4'b0001;
      r[1]: g = 4'b0010;
      r[2]: g = 4'b0100;
      r[3]: g = 4'b1000;
      default: g = 4'b0000;
    endcase
endmodule

// prove: items that are expressions
module case_expressions (input [2:0] s, a, b, output reg [2:0] y);
  always @*
    case (s)
      a: y = b;
      a + 3'd1: y = a;
      b ^ 3'd5, 3'd7: y = a & b;
      default: y = s;
    endcase
endmodule

// prove: items and expression of different widths and signs
module case_widths (input signed [2:0] s, input [1:0] u, input [3:0] a, output reg [3:0] x, y);
  always @* begin
    case (s)
      -1: x = a;
      -4: x = a + 1;
      3: x = a + 2;
      default: x = 0;
    endcase
    case (u)
      4'd1: y = a;
      4'd5: y = ~a;
      default: y = 4'd3;
    endcase
  end
endmodule

// prove: a constant case expression selects its item at once
module case_constant (input [3:0] a, output reg [3:0] y);
  parameter MODE = 2;
  always @*
    case (MODE)
      1: y = a;
      2: y = ~a;
      default: y = 0;
    endcase
endmodule

// prove: a sparse case over a wide expression
module case_sparse (input [15:0] s, input [3:0] a, output reg [3:0] y);
  always @*
    case (s)
      16'h0000: y = a;
      16'h1234: y = a + 4'd3;
      16'hfffe: y = ~a;
      16'hffff: y = 4'd0;
      default: y = 4'd7;
    endcase
endmodule

// prove: a dense case of constants is a table
module case_table (input [3:0] s, output reg [6:0] y);
  always @*
    case (s)
      4'h0: y = 7'h3f; 4'h1: y = 7'h06; 4'h2: y = 7'h5b; 4'h3: y = 7'h4f;
      4'h4: y = 7'h66; 4'h5: y = 7'h6d; 4'h6: y = 7'h7d; 4'h7: y = 7'h07;
      4'h8: y = 7'h7f; 4'h9: y = 7'h6f; 4'ha: y = 7'h77; 4'hb: y = 7'h7c;
      4'hc: y = 7'h39; 4'hd: y = 7'h5e; 4'he: y = 7'h79; 4'hf: y = 7'h71;
    endcase
endmodule

// simulate: a full_case attribute completes the case where no item matches
module case_full_attribute (input [1:0] s, input [3:0] a, b, output reg [3:0] y);
  wire [1:0] t = {s[1], s[1] & s[0]};
  always @*
    (* full_case *)
    case (t)
      2'b00: y = a;
      2'b10: y = b;
      2'b11: y = a & b;
    endcase
endmodule

// simulate: a parallel_case attribute on items that never meet
module case_parallel_attribute (input [1:0] s, input [3:0] a, b, c, output reg [3:0] y);
  wire [2:0] h = 3'b001 << s;
  always @*
    (* full_case, parallel_case *)
    case (1'b1)
      h[0]: y = a;
      h[1]: y = b;
      h[2]: y = c;
      default: y = 4'd0;
    endcase
endmodule

// simulate: the same attributes as a comment
module case_comment (input [1:0] s, input [3:0] a, b, output reg [3:0] y);
  always @*
    case (s & 2'b10) // synthesis full_case parallel_case
      2'b00: y = a;
      2'b10: y = b;
    endcase
endmodule

// prove: cases within cases
module case_nested (input [1:0] s, t, input [3:0] a, b, output reg [3:0] y);
  always @* begin
    y = 4'd0;
    case (s)
      2'd0: y = a;
      2'd1:
        case (t)
          2'd0: y = b;
          2'd1: y = a | b;
          2'd2: ;
          default: y[1:0] = t;
        endcase
      2'd2: if (t[0]) y = a + b;
    endcase
  end
endmodule

// prove: several variables, some of them not in each item
module case_partial (input [1:0] s, input [3:0] a, b, output reg [3:0] x, y, z);
  always @* begin
    {x, y, z} = {a, b, 4'd0};
    case (s)
      2'd1: x = b;
      2'd2: begin y = a; z = 4'd1; end
      2'd3: {x, z} = {z, x};
    endcase
  end
endmodule

// prove: a for loop over the bits
module for_bits (input [7:0] a, output reg [7:0] y, output reg [3:0] n);
  integer i;
  always @* begin
    n = 0;
    for (i = 0; i < 8; i = i + 1) begin
      y[i] = a[7 - i];
      n = n + a[i];
    end
  end
endmodule

// prove: a for loop that counts down by steps
module for_down (input [11:0] a, output reg [3:0] y);
  integer i;
  always @* begin
    y = 0;
    for (i = 11; i >= 0; i = i - 3) y = (y << 1) | a[i];
  end
endmodule

// prove: nested for loops
module for_nested (input [3:0] a, b, output reg [7:0] p);
  integer i, j;
  always @* begin
    p = 0;
    for (i = 0; i < 4; i = i + 1)
      for (j = 0; j < 4; j = j + 1)
        p = p + ((a[i] & b[j]) << (i + j));
  end
endmodule

// prove: a loop whose body never runs
module for_never (input [3:0] a, output reg [3:0] y);
  integer i;
  always @* begin
    y = a;
    for (i = 5; i < 5; i = i + 1) y = ~y;
  end
endmodule

// simulate: repeat with a constant count
module repeat_constant (input [3:0] a, output reg [7:0] y);
  always @* begin
    y = a;
    repeat (3) y = y + (y << 1);
  end
endmodule

// simulate: repeat with a parameter, zero times
module repeat_zero (input [3:0] a, output reg [3:0] y);
  parameter N = 0;
  always @* begin
    y = a;
    repeat (N) y = ~y;
  end
endmodule

// prove: a function with local variables
module function_local (input [3:0] a, b, output [4:0] y);
  function [4:0] distance;
    input [3:0] p, q;
    reg [3:0] high, low;
    begin
      if (p > q) begin high = p; low = q; end
      else begin high = q; low = p; end
      distance = high - low;
    end
  endfunction
  assign y = distance(a, b) + distance(b, 4'd8);
endmodule

// prove: a function is signed or not by its declaration
module function_sign (input [3:0] a, output signed [7:0] x, y);
  function signed [3:0] as_signed(input [3:0] v);
    as_signed = v;
  endfunction
  function [3:0] as_unsigned(input signed [3:0] v);
    as_unsigned = v;
  endfunction
  assign x = as_signed(a);
  assign y = as_unsigned(a);
endmodule

// prove: functions that call functions
module function_nested (input [3:0] a, b, c, output [3:0] y);
  function [3:0] max2(input [3:0] p, q);
    max2 = p > q ? p : q;
  endfunction
  function [3:0] max3(input [3:0] p, q, r);
    max3 = max2(max2(p, q), r);
  endfunction
  assign y = max3(a, b, c);
endmodule

// prove: a function with a loop
module function_loop (input [7:0] a, output [3:0] y);
  function [3:0] ones;
    input [7:0] v;
    integer i;
    begin
      ones = 0;
      for (i = 0; i < 8; i = i + 1) ones = ones + v[i];
    end
  endfunction
  assign y = ones(a) ^ ones(8'h1f);
endmodule

// prove: a constant function sizes a vector
module function_constant (input [8:0] a, output [WIDTH - 1:0] y);
  parameter DEPTH = 300;
  localparam WIDTH = log2(DEPTH);
  function integer log2;
    input integer n;
    integer m;
    begin
      log2 = 0;
      for (m = n - 1; m > 0; m = m >> 1) log2 = log2 + 1;
    end
  endfunction
  assign y = ~a;
endmodule

// simulate: a task with all directions
module task_directions (input [3:0] a, b, output reg [3:0] s, d, c);
  task calculate;
    input [3:0] x, y;
    output [3:0] sum, difference;
    inout [3:0] count;
    begin
      sum = x + y;
      difference = x - y;
      if (sum == difference) count = count + 1;
    end
  endtask
  always @* begin
    c = a & 4'd3;
    calculate(a, b, s, d, c);
  end
endmodule

// simulate: a task that reads and writes variables of the module
module task_outer (input clk, input [3:0] a, output reg [3:0] q, output reg [3:0] n);
  task count(input [3:0] step);
    begin
      n = n + step;
      if (n == 4'd9) n = 0;
    end
  endtask
  initial n = 0;
  always @(posedge clk) begin
    count(a);
    count(4'd1);
    q <= n;
  end
endmodule

// prove: a task's outputs go to parts and concatenations
module task_targets (input [3:0] a, output reg [7:0] y, output reg c);
  task add(input [3:0] p, q, output [4:0] r);
    r = p + q;
  endtask
  always @* begin
    y = 0;
    add(a, 4'd7, {c, y[5:2]});
    add(a, y[5:2], y[4:0]);
  end
endmodule

// prove: a named block with its own variables
module block_local (input [3:0] a, b, output reg [3:0] y);
  always @* begin : work
    reg [3:0] t;
    integer i;
    t = a;
    for (i = 0; i < 2; i = i + 1) begin : inner
      reg [3:0] u;
      u = t ^ b;
      t = u + i;
    end
    y = t;
  end
endmodule

// prove: the null statement and empty blocks
module empty_statements (input s, input [3:0] a, output reg [3:0] y);
  always @* begin
    ;
    begin end
    y = a;
    if (s) ; else y = ~a;
    if (s) begin end
  end
endmodule
