// Statements, operators and simple types of SystemVerilog that all tools read.

// prove: always_comb
module comb_process (input logic [3:0] a, b, output logic [3:0] y);
  always_comb begin
    y = a;
    if (b > a) y = b;
  end
endmodule

// prove: always_ff with a reset
module ff_process (input logic clk, rst_n, input logic [3:0] d, output logic [3:0] q);
  always_ff @(posedge clk or negedge rst_n)
    if (!rst_n) q <= '0;
    else q <= d + 1'b1;
endmodule

// simulate: always_latch
module latch_process (input logic en, input logic [3:0] d, output logic [3:0] q);
  always_latch if (en) q = d;
endmodule

// prove: fill literals take the width of their context
module fill_literals (input logic s, input logic [6:0] a, output logic [6:0] y, z, output logic f);
  assign y = s ? '1 : '0;
  assign z = a ^ '1;
  assign f = a == '1;
endmodule

// prove: two-state and integer types
module integer_types (input logic [7:0] a, output logic [15:0] y);
  byte b;
  shortint s;
  int i;
  bit [3:0] n;
  always_comb begin
    b = a;
    s = b;
    i = s * 3;
    n = i;
    y = {n, i[11:0]};
  end
endmodule

// prove: unsigned forms of signed types
module integer_signs (input logic [7:0] a, output logic [15:0] y, z);
  byte unsigned b;
  byte c;
  always_comb begin
    b = a;
    c = a;
    y = b;
    z = c;
  end
endmodule

// prove: a named type
module typedef_vector (input logic [3:0] a, output logic [3:0] y);
  typedef logic [3:0] nibble;
  nibble t;
  assign t = ~a;
  assign y = t;
endmodule

// simulate: an enumeration with its own codes
module enum_codes (input logic clk, rst, input logic go, output logic [1:0] y);
  typedef enum logic [1:0] {IDLE = 2'd2, RUN = 2'd0, STOP = 2'd3} state_t;
  state_t state;
  always_ff @(posedge clk)
    if (rst) state <= IDLE;
    else
      case (state)
        IDLE: if (go) state <= RUN;
        RUN: if (!go) state <= STOP;
        STOP: state <= IDLE;
        default: state <= IDLE;
      endcase
  assign y = state;
endmodule

// prove: an enumeration numbers its members by itself
module enum_default (input logic [2:0] a, output logic [2:0] y);
  typedef enum logic [2:0] {A, B, C = 3'd5, D} kind_t;
  kind_t k;
  always_comb begin
    if (a == 3'd1) k = B;
    else if (a == 3'd6) k = D;
    else if (a[0]) k = C;
    else k = A;
    y = k;
  end
endmodule

// prove: a packed struct is a vector
module packed_struct (input logic [11:0] a, output logic [3:0] x, output logic [7:0] y, output logic [11:0] z);
  typedef struct packed {
    logic [3:0] tag;
    logic [6:0] data;
    logic valid;
  } item_t;
  item_t i, o;
  assign i = a;
  assign x = i.tag;
  assign y = i.data + i.valid;
  always_comb begin
    o = i;
    o.tag = i.tag + 1;
    o.valid = ~i.valid;
    if (i.valid) o.data[3:0] = i.data[6:3];
  end
  assign z = o;
endmodule

// prove: nested packed structs
module packed_nested (input logic [9:0] a, output logic [9:0] y);
  typedef struct packed { logic [1:0] hi; logic [2:0] lo; } half_t;
  typedef struct packed { half_t left; half_t right; } whole_t;
  whole_t w, v;
  assign w = a;
  always_comb begin
    v.left = w.right;
    v.right.hi = w.left.hi ^ w.right.hi;
    v.right.lo = w.left.lo;
  end
  assign y = v;
endmodule

// prove: a packed union
module packed_union (input logic [7:0] a, output logic [3:0] x, output logic [7:0] y);
  typedef struct packed { logic [3:0] h; logic [3:0] l; } pair_t;
  typedef union packed { logic [7:0] whole; pair_t parts; } either_t;
  either_t u;
  assign u.whole = a;
  assign x = u.parts.h + u.parts.l;
  assign y = u.whole;
endmodule

// prove: registers of a struct type
module struct_registers (input logic clk, rst, input logic [3:0] d, input logic v, output logic [4:0] y);
  typedef struct packed { logic valid; logic [3:0] data; } word_t;
  word_t r;
  always_ff @(posedge clk)
    if (rst) r <= '0;
    else begin
      r.valid <= v;
      if (v) r.data <= d;
    end
  assign y = r;
endmodule

package corpus_pkg;
  parameter int WIDTH = 5;
  localparam logic [WIDTH-1:0] MASK = 5'b10101;
endpackage

// prove: names of a package
module package_scoped (input logic [corpus_pkg::WIDTH-1:0] a, output logic [4:0] y);
  assign y = a ^ corpus_pkg::MASK;
endmodule

// prove: increments and assignment operators
module assignment_operators (input logic [7:0] a, b, output logic [7:0] y);
  always_comb begin
    y = a;
    y += b;
    y -= 3;
    y ^= a;
    y |= 8'h11;
    y &= 8'hf7;
    y <<= 1;
    y >>= 2;
  end
endmodule

// prove: a loop variable of its own
module loop_variable (input logic [7:0] a, output logic [7:0] y, output logic [3:0] n);
  always_comb begin
    n = 0;
    for (int i = 0; i < 8; i++) begin
      y[i] = a[7 - i];
      n = n + a[i];
    end
  end
endmodule

// prove: unique and priority
module unique_priority (input logic [1:0] s, input logic [3:0] a, b, output logic [3:0] x, y);
  always_comb begin
    unique case (s)
      2'd0: x = a;
      2'd1: x = b;
      2'd2: x = a + b;
      2'd3: x = a - b;
    endcase
    priority casez (s)
      2'b?1: y = a;
      2'b1?: y = b;
      default: y = '0;
    endcase
  end
endmodule

// prove: a signed logic type
module logic_signed (input logic signed [3:0] a, b, output logic signed [7:0] y, output logic lt);
  assign y = a * b;
  assign lt = a < b;
endmodule

module child #(parameter int W = 4, parameter logic [W-1:0] K = '1) (input logic [W-1:0] a, output logic [W-1:0] y);
  assign y = a ^ K;
endmodule

// simulate: connections by name alone, and by star, whose scope yosys does not see in a generate block
module implicit_ports (input logic [3:0] a, output logic [3:0] y, z);
  child u1 (.a, .y);
  if (1) begin : other
    logic [3:0] y;
    child #(.K(4'd5)) u2 (.*);
    assign z = y;
  end
endmodule

// prove: parameters of types of their own
module typed_parameters (input logic [7:0] a, output logic [7:0] y, z);
  parameter byte B = -3;
  localparam logic [3:0] L = 8'h9c;
  localparam bit [7:0] T = 8'd200;
  assign y = a + B;
  assign z = a ^ L ^ T;
endmodule
