// run each: --std=sv2005
module enum_twice(input logic c, output logic q);
  typedef enum logic [1:0] {A = 0, B = 0} e; // expect: error SV-1036 10806 "enum name \"B\" has the same value as \"A\""
  e s;
  assign s = A;
  assign q = s == B;
endmodule
module enum_large(input logic c, output logic q);
  typedef enum logic [1:0] {A = 5, B = 1} e; // expect: error SV-1037 10807 "value of enum name \"A\" does not fit in 2 bits"
  e s;
  assign s = A;
  assign q = s == B;
endmodule
module enum_unknown(input logic c, output logic q);
  typedef enum bit [1:0] {A = 2'b0x, B = 1} e; // expect: error SV-1039 10809 "enum name \"A\" has an unknown value but a type of two states"
  e s;
  assign s = B;
  assign q = s == B;
endmodule
module enum_behind_unknown(input logic c, output logic q);
  typedef enum logic [1:0] {A = 2'bxx, B} e; // expect: error SV-1038 10808 "enum name \"B\" needs a value because the one before it is unknown"
  e s;
  assign s = A;
  assign q = s == B;
endmodule
module enum_real(input logic c, output logic q);
  typedef enum real {A, B} e; // expect: error SV-1040 10810 "an enumeration cannot have the base type \"real\""
  e s;
  assign s = A;
  assign q = s == B;
endmodule
module union_sizes(input logic c, output logic q);
  typedef union packed { logic [3:0] a; logic [2:0] b; } t; // expect: error SV-1044 10814 "member \"b\" of the packed union has 3 bits, but the first one has 4"
  t s;
  assign s = '0;
  assign q = s.b[0];
endmodule
module no_member(input logic c, output logic q);
  typedef struct { logic a; logic b; } t;
  t s;
  assign s = '{a: 1, z: 0}; // expect: error SV-1045 10815 "\"z\" is not a member of the structure"
  assign q = s.a;
endmodule
module few_elements(input logic c, output logic q);
  typedef struct { logic a; logic b; } t;
  t s;
  assign s = '{1}; // expect: error SV-1119 10907 "the assignment pattern needs a default to cover unmatched elements"
  assign q = s.a;
endmodule
module many_elements(input logic c, output logic q);
  typedef struct { logic a; logic b; } t;
  t s;
  assign s = '{1, 0, 1}; // expect: error SV-1012 10879 "expression has 3 elements; expected 2"
  assign q = s.a;
endmodule
module key_outside(input logic c, output logic q);
  logic a [0:3];
  assign a = '{5: 1, default: 0}; // expect: error VERI-2015 10251 "index 5 cannot fall outside the declared range [0:3] for dimension 1 of array \"of this pattern\""
  assign q = a[0];
endmodule
module pattern_of_bit(input logic c, output logic q);
  logic a;
  assign a = '{1}; // expect: error SV-1118 10901 "illegal assignment pattern - the target is neither an array nor a structure"
  assign q = a;
endmodule
module cast_width(input logic c, output logic q);
  assign q = (-1)'(c); // expect: error SV-1052 10825 "the width of a cast must be positive, not -1"
endmodule
module cast_variable(input logic [1:0] c, output logic q);
  assign q = c'(c); // expect: error VERI-2007 10701 "expression \"c\" must be constant" ; warning VERI-1209 10230 "truncated value with size 2 to match size of target (1)"
endmodule
module strings(input logic c, output logic q);
  string s; // expect: error SV-1008 10875 "no support for declaring string variables outside functions and tasks"
  assign q = c;
endmodule
module sizes(input logic c, output logic q);
  logic a [0:3];
  logic b [0:2];
  always_comb b = '{default: c};
  assign a = b; // expect: error SV-1012 10879 "expression has 3 elements; expected 4"
  assign q = a[0];
endmodule
module packed_to_unpacked(input logic [3:0] c, output logic q);
  logic a [0:3];
  assign a = c; // expect: error SV-1009 10876 "cannot assign or compare packed values to unpacked values or vice versa"
  assign q = a[0];
endmodule
module struct_from_bits(input logic [1:0] c, output logic q);
  struct { logic a; logic b; } s;
  assign s = c; // expect: error SV-1009 10876 "cannot assign or compare packed values to unpacked values or vice versa"
  assign q = s.a;
endmodule
module two_states(input logic c, output logic q);
  bit [1:0] b;
  assign b = 2'bx1; // expect: warning SV-1084 10898 "automatically converting 4-state value to 2-state by replacing X and Z with 0"
  assign q = b[0];
endmodule
module not_latched(input logic c, output logic q);
  always_latch q = c; // expect: warning SV-1001 10999 "always_latch construct does not infer latched logic"
endmodule
module latched(input logic c, output logic q);
  always_comb if (c) q = 1; // expect: warning VERI-2004 10240 "inferring latch(es) for variable \"q\", which holds its previous value in one or more paths through the always construct" ; error SV-1014 10166 "always_comb construct does not infer purely combinational logic"
endmodule
module overlapping(input logic [1:0] c, output logic q);
  always_comb unique case (c) // expect: warning SV-1125 10958 "unique or priority keyword makes case statement complete" ; warning SV-1104 10935 "unique case statement has overlapping case items"
    0, 1: q = 1;
    1: q = 0; // expect: warning VERI-2040 10272 "case item overlaps with a previous case item"
  endcase
endmodule
module automatic_variable(input logic c, output logic q);
  task automatic t(input logic x);
    logic r; // expect: warning VERI-2030 10036 "object \"r\" assigned a value but never read"
    r <= x; // expect: error SV-1015 10880 "illegal assignment - automatic variables can't have non-blocking assignments"
  endtask
  always_comb begin
    t(c);
    q = c;
  end
endmodule
module query_arity(input logic [3:0] c, output int q);
  assign q = $left(c, 1, 2); // expect: error SV-1106 10902 "\"$left\" expects at least 1 arguments but no more than 2"
endmodule
module query_dimension(input logic [3:0] c, output int q);
  assign q = $left(c, 3); // expect: error SV-1107 10903 "argument (3) to \"$left\" does not denote a valid dimension in object with 1 dimensions, returning 'x" ; warning SV-1084 10898 "automatically converting 4-state value to 2-state by replacing X and Z with 0"
endmodule
module query_scalar(input logic c, output int q);
  assign q = $left(5); // expect: error SV-1108 10904 "argument to \"$left\" does not denote an object or type with array dimensions, returning 'x" ; warning SV-1084 10898 "automatically converting 4-state value to 2-state by replacing X and Z with 0"
endmodule
module dimension(input logic c, output logic q);
  logic a [0]; // expect: error SV-1056 10643 "size \"0\" of a dimension must be positive"
  assign q = c;
endmodule
module dimension_negative(input logic c, output logic q);
  logic a [-1]; // expect: error SV-1056 10643 "size \"-1\" of a dimension must be positive"
  assign q = c;
endmodule
module of_any_type #(parameter int N = 4, parameter type T = logic [3:0]) (input T c, output T q);
  assign q = c;
endmodule
module type_parameter(input logic [1:0] c, output logic [1:0] q);
  of_any_type #(.N(2), .T(logic [1:0])) u(.c(c), .q(q)); // expect: error SV-1008 10875 "no support for values for parameters of a module with type parameters"
endmodule
