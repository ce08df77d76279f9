// Types and features of SystemVerilog that only verilator reads.

// verilate: void functions with outputs
module function_void (input logic [3:0] a, b, output logic [3:0] s, d);
  function automatic void both(input logic [3:0] p, q, output logic [3:0] sum, difference);
    sum = p + q;
    difference = p - q;
  endfunction
  always_comb both(a, b, s, d);
endmodule

package statement_pkg;
  parameter int WIDTH = 5;
  typedef logic [WIDTH-1:0] word_t;
  localparam word_t MASK = 5'b10101;
endpackage

// verilate: static casts of width and sign
module size_casts (input logic [3:0] a, input logic signed [3:0] s, output logic [7:0] x, y, z);
  assign x = 8'(a) + 8'(s);
  assign y = 2'(a) + 1'b1;
  assign z = signed'(a) + s;
endmodule

// verilate: a case inside a function with an enumeration
module enum_function (input logic [1:0] a, output logic [3:0] y);
  typedef enum logic [1:0] {NONE, LOW, HIGH, BOTH} level_t;
  function automatic logic [3:0] decode(input level_t l);
    case (l)
      NONE: decode = 4'd0;
      LOW: decode = 4'd3;
      HIGH: decode = 4'd12;
      BOTH: decode = 4'd15;
    endcase
  endfunction
  assign y = decode(level_t'(a));
endmodule

// verilate: the array query functions
module array_queries (input logic [7:0] a, output logic [15:0] y, z);
  logic [5:2][1:0] m;
  logic [3:0] u [1:4][0:6];
  localparam int N = $bits(m) + $left(m) * 8 + $right(m) * 64 + $size(m) * 256 + $clog2(37);
  localparam int M = $size(u) + $size(u, 2) * 8 + $high(u, 3) * 64 + $low(u) * 256 + $dimensions(u) * 512;
  assign m = a;
  assign y = m + N;
  assign z = $bits(u) + M + $increment(u) + $unpacked_dimensions(u);
endmodule

// verilate: casts to types keep what an assignment would keep
module type_casts (input logic [3:0] a, b, input logic signed [3:0] s, output logic [7:0] w, x, y, z);
  typedef logic [5:0] six_t;
  assign w = six_t'(a + b);
  assign x = byte'(s);
  assign y = 6'(s) + 8'sd0;
  assign z = unsigned'(s);
endmodule

// verilate: an unpacked structure, assigned as a whole and by members
module unpacked_struct (input logic [3:0] a, input logic s, output logic [3:0] y, output logic z);
  typedef struct { logic [3:0] value; logic flag; } pair_t;
  pair_t p, q;
  always_comb begin
    p.value = a;
    p.flag = ^a;
    q = p;
    if (s) begin
      q.value = a + 4'd1;
      q.flag = p.flag & s;
    end
    y = q.value;
    z = q.flag;
  end
endmodule

// verilate: an unpacked array, copied as a whole
module unpacked_copy (input logic [3:0] a, b, input logic i, s, output logic [3:0] y);
  logic [3:0] m [0:1];
  logic [3:0] n [0:1];
  always_comb begin
    m[0] = a;
    m[1] = b;
    n = m;
    if (s) n[1] = m[0];
    y = n[i];
  end
endmodule

// verilate: patterns by position
module pattern_position (input logic [3:0] a, b, input logic [1:0] i, output logic [3:0] y, output logic [7:0] z);
  logic [3:0] m [0:2];
  typedef struct packed { logic [3:0] h; logic [3:0] l; } pair_t;
  pair_t p;
  assign m = '{a, b, a ^ b};
  assign y = i == 2'd3 ? 4'd0 : m[i];
  assign p = '{b, a};
  assign z = p;
endmodule

// verilate: patterns by name, with a default
module pattern_names (input logic [3:0] a, output logic [11:0] y);
  typedef struct packed { logic [3:0] x; logic [3:0] y; logic [3:0] z; } triple_t;
  triple_t t;
  assign t = '{y: a, default: 4'd3};
  assign y = t;
endmodule

// verilate: patterns by repetition and with a default
module pattern_repeated (input logic [3:0] a, input logic [1:0] i, output logic [3:0] x, y, z);
  logic [3:0] m [0:3];
  logic [3:0] n [0:3];
  logic [3:0] o [3:0];
  assign m = '{4{~a}};
  assign n = '{4{a}};
  assign o = '{default: '0};
  assign x = m[i];
  assign y = n[i];
  assign z = o[i] | a;
endmodule

// verilate: nested patterns
module pattern_nested (input logic [3:0] a, b, input logic i, j, output logic [3:0] y);
  logic [3:0] m [0:1][0:1];
  assign m = '{'{a, b}, '{b + 4'd1, a + 4'd1}};
  assign y = m[i][j];
endmodule

// verilate: a pattern with its type before it
module pattern_typed (input logic [3:0] a, output logic [7:0] y);
  typedef struct packed { logic [3:0] h; logic [3:0] l; } pair_t;
  assign y = pair_t'{l: a, h: 4'd9};
endmodule

// verilate: an array of structures
module struct_array (input logic clk, rst, we, input logic [1:0] i, input logic [3:0] d, output logic [4:0] y);
  typedef struct packed { logic valid; logic [3:0] data; } slot_t;
  slot_t slots [0:3];
  always_ff @(posedge clk)
    if (rst)
      for (int k = 0; k < 4; k++) slots[k] <= '0;
    else if (we) begin
      slots[i].valid <= 1'b1;
      slots[i].data <= d;
    end
  assign y = slots[i];
endmodule

// verilate: an array inside of a structure
module array_in_struct (input logic [3:0] a, b, input logic i, output logic [3:0] y);
  typedef struct packed { logic [1:0][3:0] words; logic last; } frame_t;
  frame_t f;
  always_comb begin
    f.words[0] = a;
    f.words[1] = b;
    f.last = i;
    f.words[i][0] = f.last;
    y = f.words[i];
  end
endmodule

// verilate: elements of a packed array have the sign of their named type, the array has none
module signed_elements (input signed [1:0] a, input [5:0] b, output [9:0] y, z, w);
  typedef logic signed [2:0] small_t;
  small_t [1:0] d;
  byte e;
  assign d = b;
  assign e = {b, 2'b0};
  assign y = a ^ d[0];
  assign z = a ^ d;
  assign w = a ^ e[7];
endmodule

// verilate: signed members of a structure
module struct_signed (input logic signed [3:0] a, output logic signed [7:0] y);
  typedef struct packed { logic signed [3:0] s; logic [3:0] u; } mixed_t;
  mixed_t m;
  assign m = '{s: a, u: a};
  assign y = m.s + m.u * 0 + m.s;
endmodule

// verilate: break and continue
module loop_jumps (input logic [7:0] a, output logic [3:0] n, first);
  always_comb begin
    n = 0;
    for (int i = 0; i < 8; i++) begin
      if (!a[i]) continue;
      n = n + 1;
      if (n == 3) break;
    end
    first = 8;
    for (int i = 0; i < 8; i++)
      if (a[i]) begin
        first = i;
        break;
      end
  end
endmodule

// verilate: do while
module loop_do (input logic [3:0] a, output logic [3:0] y);
  always_comb begin
    int i;
    i = 0;
    y = a;
    do begin
      y = y + 4'd3;
      i++;
    end while (i < 3);
  end
endmodule

// verilate: return leaves a function or a task
module return_early (input logic [3:0] a, b, output logic [3:0] y, z);
  function automatic logic [3:0] search(input logic [3:0] v);
    for (int i = 3; i >= 0; i--)
      if (v[i]) return i;
    return 4'd9;
  endfunction
  task automatic store(input logic [3:0] v, output logic [3:0] r);
    r = v;
    if (v < 4) return;
    r = v - 4;
  endtask
  always_comb begin
    y = search(a);
    store(b, z);
  end
endmodule

// verilate: default values of arguments, and arguments by name
module arguments_named (input logic [3:0] a, b, output logic [3:0] x, y);
  function automatic logic [3:0] f(input logic [3:0] p, input logic [3:0] q = 4'd5);
    return p - q;
  endfunction
  assign x = f(a) + f(.q(b), .p(a));
  assign y = f(b, a);
endmodule

// verilate: structures as arguments and results
module argument_types (input logic [7:0] a, output logic [3:0] y);
  typedef struct packed { logic [3:0] h; logic [3:0] l; } pair_t;
  function automatic pair_t swap(input pair_t p);
    return '{h: p.l, l: p.h};
  endfunction
  pair_t t;
  assign t = swap(a);
  assign y = t.h - t.l;
endmodule

// verilate: unpacked arrays as arguments and results
module argument_arrays (input logic [3:0] a, b, c, output logic [5:0] y);
  typedef logic [3:0] list_t [0:2];
  function automatic logic [5:0] sum(input list_t l);
    sum = 0;
    for (int i = 0; i < 3; i++) sum = sum + l[i];
  endfunction
  list_t m;
  assign m = '{a, b, c};
  assign y = sum(m);
endmodule

module array_ports (input logic [3:0] a [0:1], output logic [3:0] y [0:1]);
  assign y[0] = a[1];
  assign y[1] = a[0] + 1;
endmodule

// verilate: unpacked arrays as ports
module connect_arrays (input logic [3:0] a, b, output logic [3:0] x, y);
  logic [3:0] m [0:1], n [0:1];
  assign m[0] = a;
  assign m[1] = b;
  array_ports u (.a(m), .y(n));
  assign x = n[0];
  assign y = n[1];
endmodule

package corpus_types;
  typedef struct packed { logic [3:0] h; logic [3:0] l; } pair_t;
  typedef struct { logic [3:0] v; logic f; } loose_t;
  typedef enum logic [1:0] {RED, GREEN = 2'd2, BLUE} colour_t;
  typedef enum {ONE = 1, THREE = 3, NINE = 9} odd_t;
endpackage

module struct_ports (input corpus_types::pair_t p, output corpus_types::pair_t q);
  assign q = '{h: p.l, l: p.h};
endmodule

// verilate: packed structures as ports
module connect_structs (input logic [7:0] a, output logic [7:0] y);
  corpus_types::pair_t t;
  struct_ports u (a, t);
  assign y = t;
endmodule

module loose_ports (input corpus_types::loose_t p, output corpus_types::loose_t q);
  assign q.v = p.v + 4'd1;
  assign q.f = ~p.f;
endmodule

// verilate: unpacked structures as ports
module connect_loose (input logic [3:0] a, input logic f, output logic [3:0] y, output logic g);
  corpus_types::loose_t s, t;
  always_comb begin
    s.v = a;
    s.f = f;
  end
  loose_ports u (.p(s), .q(t));
  assign y = t.v;
  assign g = t.f;
endmodule

// verilate: an enumeration as a port
module enum_port (input logic [1:0] a, output corpus_types::colour_t y);
  import corpus_types::*;
  always_comb
    case (a)
      2'd0: y = GREEN;
      2'd1: y = BLUE;
      default: y = RED;
    endcase
endmodule

// verilate: an enumeration over int
module enum_int (input logic [3:0] a, output logic [31:0] y);
  import corpus_types::*;
  odd_t o;
  always_comb begin
    if (a == 1) o = ONE;
    else if (a == 3) o = THREE;
    else o = NINE;
    y = o + a;
  end
endmodule

// verilate: a structure in a concatenation that is assigned to
module concat_targets (input logic [7:0] a, output logic [3:0] x, output logic y, output logic [2:0] z);
  typedef struct packed { logic [3:0] v; logic f; } part_t;
  part_t p;
  always_comb begin
    {p, z} = a;
    x = p.v;
    y = p.f;
  end
endmodule

// verilate: parameters of structure and enumeration types
module typed_constants (input logic [7:0] a, output logic [7:0] x, output logic [1:0] y);
  import corpus_types::*;
  localparam pair_t P = '{h: 4'd3, l: 4'd12};
  localparam colour_t C = BLUE;
  localparam logic [7:0] TABLE [0:3] = '{8'h11, 8'h5a, 8'hc3, 8'h99};
  assign x = a ^ P ^ TABLE[a[1:0]];
  assign y = C ^ a[1:0];
endmodule

// verilate: an assignment inside of an expression
module assignment_in_expression (input logic [3:0] a, output logic [3:0] x, y);
  always_comb begin
    x = a;
    y = (x += 4'd2) ^ 4'd1;
  end
endmodule

// verilate: counting functions
module bit_functions (input logic [7:0] a, output logic [3:0] n, output logic one, none);
  assign n = $countones(a);
  assign one = $onehot(a);
  assign none = $onehot0(a);
endmodule

// verilate: variables declared and initialised in blocks
module block_variables (input logic [3:0] a, b, output logic [3:0] y);
  always_comb begin
    automatic logic [3:0] t = a + b;
    begin
      automatic logic [3:0] u = t ^ a;
      t = u + 1;
    end
    y = t;
  end
endmodule

// verilate: part selects of unpacked dimensions
module unpacked_slices (input logic [15:0] a, output logic [7:0] y);
  logic [3:0] m [0:3];
  logic [3:0] n [0:1];
  always_comb begin
    for (int i = 0; i < 4; i++) m[i] = a[4 * i +: 4];
    n = m[1:2];
    y = {n[1], n[0]};
  end
endmodule

// verilate: indexed parts of packed dimensions
module packed_dimensions (input logic [15:0] a, input logic [1:0] i, input logic [3:0] d, output logic [7:0] x,
                          output logic [15:0] y);
  logic [3:0][3:0] m, n;
  assign m = a;
  assign x = m[2:1];
  always_comb begin
    n = m;
    n[i] = d;
    n[3][i] = 1'b0;
    y = n;
  end
endmodule

// verilate: comparisons of unpacked values
module unpacked_compare (input logic [3:0] a, b, c, d, output logic y, z);
  logic [3:0] m [0:1];
  logic [3:0] n [0:1];
  assign m = '{a, b};
  assign n = '{c, d};
  assign y = m == n;
  assign z = m != n;
endmodule

// verilate: a conditional expression of unpacked values
module unpacked_conditional (input logic [3:0] a, b, input logic s, i, output logic [3:0] y);
  logic [3:0] m [0:1];
  logic [3:0] n [0:1];
  logic [3:0] o [0:1];
  assign m = '{a, b};
  assign n = '{b, a};
  assign o = s ? m : n;
  assign y = o[i];
endmodule

// verilate: unique and priority conditions
module unique_if (input logic [1:0] s, input logic [3:0] a, b, output logic [3:0] y);
  always_comb begin
    y = 0;
    unique if (s == 2'd1) y = a;
    else if (s == 2'd2) y = b;
    else y = a ^ b;
    priority if (s[0]) y[0] = 1'b1;
    else y[1] = 1'b0;
  end
endmodule

// verilate: a case with values, wild bits and ranges
module case_inside (input logic [5:0] a, input logic [2:0] low, output logic [2:0] y, output logic [1:0] z);
  always_comb begin
    case (a) inside
      6'd3, [6'd9:6'd14]: y = 3'd1;
      6'b11???1: y = 3'd2;
      [6'd33:6'd40]: y = 3'd3;
      [6'd60:6'd63]: y = 3'd4;
      default: y = 3'd5;
    endcase
    case (low) inside
      [3'd0:3'd2]: z = 2'd0;
      [3'd2:3'd5]: z = 2'd1;
      default: z = 2'd2;
    endcase
  end
endmodule

// verilate: an increment behind its operand gives the old value, one before it the new
module old_values (input logic [3:0] a, output logic [3:0] y, z, last);
  always_comb begin
    last = a;
    y = last++;
    z = --last;
    last++;
  end
endmodule
