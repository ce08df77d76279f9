// Targets of assignments: whole, parts by constant and variable indices, concatenations, arrays.

// prove: continuous assignments to bits and parts
module target_parts (input [3:0] a, b, output [7:0] y);
  assign y[0] = a[3];
  assign y[3:1] = a[2:0];
  assign y[7:4] = b;
endmodule

// prove: a continuous assignment to a concatenation
module target_concat (input [3:0] a, b, output [3:0] s, output c, output [1:0] hi, lo);
  assign {c, s} = a + b;
  assign {hi, lo} = a ^ b;
endmodule

// prove: an assignment to nested concatenations with parts
module target_nested (input [7:0] a, output reg [3:0] x, y);
  always @* {{x[1:0], y[3]}, x[3:2], {y[0], y[2:1]}} = a;
endmodule

// prove: an assignment cuts what does not fit and extends what is short
module target_width (input [7:0] a, input signed [3:0] s, output [3:0] cut, output [11:0] long, signed_long);
  assign cut = a;
  assign long = a;
  assign signed_long = s;
endmodule

// prove: net declarations with assignments
module declaration_assign (input [3:0] a, b, output [3:0] y);
  wire [3:0] t = a & b, u = a | b;
  assign y = t ^ u;
endmodule

// prove: a bit by a variable index
module bit_variable (input [7:0] a, input [2:0] i, input d, output reg [7:0] y);
  always @* begin
    y = a;
    y[i] = d;
  end
endmodule

// prove: a bit by a variable index in a vector that does not begin at 0
module bit_offset (input [7:0] a, input [3:0] i, input d, output reg [11:4] y);
  always @* begin
    y = a;
    y[i] = d;
  end
endmodule

// prove: a bit by a variable index in an ascending vector
module bit_ascending (input [7:0] a, input [2:0] i, input d, output reg [0:7] y, output z);
  always @* begin
    y = a;
    y[i] = d;
  end
  assign z = y[i] ^ y[0];
endmodule

// simulate: reads of a bit outside the range are unknown
module bit_outside (input [4:0] a, input [2:0] i, output y);
  assign y = a[i];
endmodule

// simulate: writes outside the range do nothing
module write_outside (input [4:0] a, input [2:0] i, input d, output reg [4:0] y);
  always @* begin
    y = a;
    y[i] = d;
  end
endmodule

// simulate: a signed index can be negative, and reach a range below 0
module index_signed (input [7:0] a, input signed [2:0] i, input d, output reg [3:-4] y, output z);
  always @* begin
    y = a;
    y[i] = d;
  end
  assign z = y[-i - 1];
endmodule

// prove: indexed parts upward and downward
module part_variable (input [15:0] a, input [1:0] i, output [3:0] up, down);
  assign up = a[i * 4 +: 4];
  assign down = a[i * 4 + 3 -: 4];
endmodule

// prove: indexed parts of an ascending vector
module part_ascending (input [0:15] a, input [1:0] i, output [3:0] up, down);
  assign up = a[i * 4 +: 4];
  assign down = a[i * 4 + 3 -: 4];
endmodule

// simulate: indexed parts that reach over the end
module part_outside (input [9:0] a, input [3:0] i, output [3:0] y, z);
  assign y = a[i +: 4];
  assign z = a[i -: 4];
endmodule

// prove: a write to an indexed part
module part_write (input [15:0] a, input [1:0] i, input [3:0] d, output reg [15:0] y, z);
  always @* begin
    y = a;
    y[i * 4 +: 4] = d;
    z = a;
    z[i * 4 + 3 -: 4] = ~d;
  end
endmodule

// simulate: a write to an indexed part that reaches over the end
module part_write_outside (input [9:0] a, input [3:0] i, input [3:0] d, output reg [9:0] y);
  always @* begin
    y = a;
    y[i +: 4] = d;
  end
endmodule

// prove: several writes to parts of one variable, the later one wins
module part_order (input [7:0] a, b, input [2:0] i, output reg [7:0] y);
  always @* begin
    y = a;
    y[5:2] = b[3:0];
    y[i] = ~y[i];
    y[0] = y[7];
  end
endmodule

// prove: an array of vectors, written and read in a process
module array_process (input [3:0] a, b, c, d, input [1:0] i, j, output reg [3:0] y);
  reg [3:0] m [0:3];
  always @* begin
    m[0] = a;
    m[1] = b;
    m[2] = c;
    m[3] = d;
    m[i] = m[j] + 1;
    y = m[3] ^ m[i];
  end
endmodule

// simulate: an array with two dimensions
module array_two (input [3:0] a, b, input i, input [1:0] j, output reg [3:0] y);
  reg [3:0] m [0:1][3:0];
  integer k;
  always @* begin
    for (k = 0; k < 4; k = k + 1) begin
      m[0][k] = a + k;
      m[1][k] = b - k;
    end
    y = m[i][j];
  end
endmodule

// simulate: a bit and a part of an element
module array_bits (input [3:0] a, b, input i, input [1:0] j, output reg [3:0] y, output z);
  reg [3:0] m [1:0];
  always @* begin
    m[0] = a;
    m[1] = b;
    m[i][j] = ~m[i][j];
    m[~i][2:1] = 2'b10;
    y = m[0] ^ m[1];
  end
  assign z = m[1][j];
endmodule

// simulate: an array of nets
module array_nets (input [3:0] a, b, input i, output [3:0] y);
  wire [3:0] n [0:1];
  assign n[0] = a & b;
  assign n[1] = a | b;
  assign y = n[i];
endmodule

// prove: blocking assignments are seen at once
module blocking_order (input [3:0] a, b, output reg [3:0] x, y);
  always @* begin
    x = a;
    y = x + b;
    x = y ^ a;
  end
endmodule

// prove: non-blocking assignments read the old values
module nonblocking_order (input clk, input [3:0] d, output reg [3:0] x, y, z);
  always @(posedge clk) begin
    x <= d;
    y <= x;
    z <= y;
  end
endmodule

// prove: blocking assignments under a clock make one register of a chain
module blocking_clock (input clk, input [3:0] d, output reg [3:0] y);
  reg [3:0] t;
  always @(posedge clk) begin
    t = d + 1;
    y <= t ^ d;
  end
endmodule

// prove: registers are swapped without a temporary
module nonblocking_swap (input clk, load, input [3:0] a, b, output reg [3:0] x, y);
  always @(posedge clk)
    if (load) begin
      x <= a;
      y <= b;
    end else begin
      x <= y;
      y <= x;
    end
endmodule

// prove: the last non-blocking assignment wins
module nonblocking_last (input clk, s, input [3:0] a, b, output reg [3:0] q);
  always @(posedge clk) begin
    q <= a;
    if (s) q <= b;
    q[0] <= ~a[0];
  end
endmodule

// prove: a non-blocking write to a variable bit
module nonblocking_bit (input clk, d, input [2:0] i, output reg [7:0] q);
  always @(posedge clk) q[i] <= d;
endmodule

// prove: a non-blocking write to a variable part
module nonblocking_part (input clk, input [3:0] d, input i, output reg [7:0] q);
  always @(posedge clk) q[i * 4 +: 4] <= d;
endmodule

// prove: non-blocking assignments to a concatenation
module nonblocking_concat (input clk, input [4:0] d, output reg [1:0] a, output reg [2:0] b);
  always @(posedge clk) {a, b} <= d + 1;
endmodule

// prove: a shift register by parts of itself
module shift_register (input clk, d, output reg [5:0] q);
  always @(posedge clk) begin
    q[0] <= d;
    q[5:1] <= q[4:0];
  end
endmodule

// simulate: delays are dropped
module delays (input clk, input [3:0] a, b, output [3:0] y, output reg [3:0] q);
  assign #1 y = a & b;
  always @(posedge clk) q <= #1 a ^ b;
endmodule

// prove: integers are variables like others
module integers (input signed [7:0] a, b, output reg [7:0] y);
  integer i;
  always @* begin
    i = a - b;
    if (i < 0) i = -i;
    y = i[7:0];
  end
endmodule

// prove: implicit nets of instances and assignments
module implicit_nets (input a, b, c, output y);
  and g1 (n1, a, b);
  assign n2 = n1 ^ c;
  or g2 (y, n1, n2);
endmodule
