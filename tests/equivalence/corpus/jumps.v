// Jumps, and loops whose course depends on data: constructs that only the simulator reads.

// simulate: a for loop that ends by a variable condition
module for_variable (input [2:0] n, input [7:0] a, output reg [7:0] y);
  integer i;
  always @* begin
    y = 0;
    for (i = 0; i < n; i = i + 1) y[i] = a[i];
  end
endmodule

// simulate: a while loop that ends by its data
module while_variable (input [3:0] a, output reg [3:0] y, output reg [2:0] n);
  reg [3:0] t;
  always @* begin
    t = a;
    n = 0;
    while (t != 0) begin
      t = t >> 1;
      n = n + 1;
    end
    y = {t[0], n};
  end
endmodule

// simulate: forever, left by disable
module forever_disable (input [7:0] a, output reg [3:0] y);
  integer i;
  always @* begin
    i = 0;
    begin : search
      forever begin
        if (i == 8) disable search;
        if (a[i]) disable search;
        i = i + 1;
      end
    end
    y = i;
  end
endmodule

// simulate: disable leaves a block early
module disable_block (input [1:0] s, input [3:0] a, output reg [3:0] y);
  always @* begin : all
    y = 4'd1;
    begin : inner
      if (s[0]) disable inner;
      y = a;
      if (s[1]) disable all;
      y = y + 1;
    end
    y = y ^ 4'd8;
  end
endmodule

// simulate: disable of a loop's body goes on with the next round
module disable_continue (input [7:0] a, output reg [3:0] n);
  integer i;
  always @* begin
    n = 0;
    for (i = 0; i < 8; i = i + 1) begin : round
      if (!a[i]) disable round;
      n = n + 1;
    end
  end
endmodule

// simulate: disable of the block around a loop ends it
module disable_break (input [7:0] a, output reg [3:0] first);
  integer i;
  always @* begin
    first = 8;
    begin : loop
      for (i = 0; i < 8; i = i + 1)
        if (a[i]) begin
          first = i;
          disable loop;
        end
    end
  end
endmodule

// simulate: a jump within a case within a loop
module disable_deep (input [7:0] a, input [1:0] s, output reg [7:0] y);
  integer i;
  always @* begin
    y = 8'hff;
    begin : done
      for (i = 0; i < 4; i = i + 1) begin : round
        case ({s, a[i]})
          3'b001: disable done;
          3'b011: disable round;
          3'b111: y = y - 3;
          default: y = y ^ a;
        endcase
        y = y + 1;
      end
      y[0] = 1'b0;
    end
  end
endmodule

// simulate: a recursive function whose depth is constant
module function_recursive (input [7:0] a, output [7:0] y, output [15:0] z);
  function automatic [7:0] reverse(input [7:0] v, input integer n);
    if (n == 1) reverse = v & 8'd1;
    else reverse = ((v & 8'd1) << (n - 1)) | reverse(v >> 1, n - 1);
  endfunction
  function automatic integer factorial(input integer n);
    factorial = n < 2 ? 1 : n * factorial(n - 1);
  endfunction
  assign y = reverse(a, 8);
  assign z = a + factorial(6);
endmodule

// simulate: a disable of the function's own name returns early
module function_return (input [3:0] a, output [3:0] y);
  function [3:0] f(input [3:0] v);
    begin : body
      f = 4'd2;
      if (v < 3) disable body;
      f = v - 1;
      if (v[0]) disable body;
      f = f << 1;
    end
  endfunction
  assign y = f(a);
endmodule

// simulate: an initial value that is computed from another one
module initial_order (input clk, output reg [3:0] a, b);
  initial begin
    a = 4'd3;
    b = a + 2;
  end
  always @(posedge clk) begin
    a <= b;
    b <= a + 1;
  end
endmodule

// simulate: time variables
module times (input signed [7:0] a, output reg [7:0] y);
  time t;
  always @* begin
    t = a;
    y = t[63:56] ^ t[7:0];
  end
endmodule

// simulate: a while loop with a constant course
module while_constant (input [7:0] a, output reg [3:0] y);
  integer i;
  always @* begin
    y = 0;
    i = 1;
    while (i < 8) begin
      y = y + a[i];
      i = i * 2;
    end
  end
endmodule
