// Ports, parameters, instances, generate constructs and gates.

module leaf #(parameter W = 4, parameter [W-1:0] K = 3) (input [W-1:0] a, output [W-1:0] y);
  assign y = a ^ K;
endmodule

module leaf_signed (input signed [3:0] a, output signed [5:0] y);
  assign y = a;
endmodule

module leaf_pair (input a, b, output x, y);
  assign x = a & b;
  assign y = a | b;
endmodule

// prove: ports declared after the list
module ports_listed (a, b, y, z);
  input [3:0] a;
  input signed [3:0] b;
  output [3:0] y;
  output [4:0] z;
  reg [4:0] z;
  wire [3:0] y;
  assign y = a & b;
  always @* z = b;
endmodule

// prove: declarations with parameters of a list before the ports
module ports_parameters #(parameter N = 3, M = N * 2) (input [N-1:0] a, input [M-1:0] b, output [N+M-1:0] y);
  assign y = {a, b};
endmodule

// prove: ranges that ascend, and ranges that do not begin at 0
module ports_ranges (input [0:3] a, input [7:4] b, output [1:4] y, output [-1:-4] z);
  assign y = a ^ b;
  assign z = {a[0], b[7], a[3], b[4]};
endmodule

// prove: an output that is read inside
module ports_read_back (input [3:0] a, output [3:0] y, output z);
  assign y = ~a;
  assign z = ^y;
endmodule

// prove: a port that nobody uses
module ports_unused (input [3:0] a, b, output y);
  assign y = |a;
endmodule

// prove: an input that goes straight to outputs
module ports_through (input [3:0] a, output [3:0] y, z, output [1:0] w);
  assign y = a;
  assign z = y;
  assign w = a[2:1];
endmodule

// prove: a parameter that depends on another one
module parameters_derived (input [7:0] a, output [7:0] y);
  parameter A = 3;
  parameter B = A * 2 + 1;
  localparam C = B - A, D = {2{2'b10}};
  parameter signed [3:0] S = 9;
  parameter [3:0] CUT = 8'h5c;
  parameter real R = 2.6;
  parameter integer I = R;
  assign y = a ^ (A + B + C + D + S + CUT + I);
endmodule

// prove: instances with values by position and by name
module parameters_values (input [7:0] a, output [7:0] w, x, output [3:0] y, z);
  leaf #(8, 8'h5a) by_position (a, w);
  leaf #(.K(8'hf0), .W(8)) by_name (.y(x), .a(a));
  leaf default_values (a[3:0], y);
  leaf #(.K(4'd9)) one_of_two (a[7:4], z);
endmodule

// prove: values from defparam
module parameters_defparam (input [7:0] a, output [7:0] x, output [3:0] y);
  leaf one (a, x);
  leaf #(.W(4)) two (.a(a[3:0]), .y(y));
  defparam one.W = 8, one.K = 8'h33;
  defparam two.K = 4'd12;
endmodule

// prove: connections that are too narrow, too wide or signed
module instance_widths (input [2:0] a, input [7:0] b, input signed [2:0] s, output [7:0] w, output [1:0] x, output [7:0] y);
  leaf u1 (a, w[3:0]);
  leaf u2 (b, {x, w[5:4]});
  assign w[7:6] = 2'b01;
  leaf_signed u3 (s, y);
endmodule

// prove: connections that are expressions and concatenations
module instance_expressions (input [3:0] a, b, output [3:0] y, output x, z);
  leaf #(.K(4'd1)) u1 (.a(a + b), .y({y[0], y[3:1]}));
  leaf_pair u2 (.a(^a), .b(a[0] ? b[1] : b[2]), .x(x), .y(z));
endmodule

// prove: open outputs and constant inputs
module instance_open (input a, output x, y);
  leaf_pair u1 (.a(a), .b(1'b1), .x(x), .y());
  leaf_pair u2 (a, 1'b0, , y);
endmodule

// prove: an array of instances with shared and divided connections
module instance_array (input [3:0] a, input b, output [3:0] x, y);
  leaf_pair u [3:0] (.a(a), .b(b), .x(x), .y(y));
endmodule

// prove: a chain through an array of instances
module instance_chain (input a, input [2:0] b, output [2:0] y, output z);
  wire [3:0] c;
  assign c[0] = a;
  leaf_pair u [2:0] (.a(c[2:0]), .b(b), .x(c[3:1]), .y(y));
  assign z = c[3];
endmodule

// prove: a generate loop with nets of its own
module generate_loop (input [3:0] a, b, input ci, output [3:0] s, output co);
  genvar i;
  generate
    for (i = 0; i < 4; i = i + 1) begin : stage
      wire c;
      wire p = a[i] ^ b[i];
      if (i == 0) begin : first
        assign c = ci;
      end else begin : next
        assign c = (a[i-1] & b[i-1]) | (stage[i-1].p & stage[i-1].c);
      end
      assign s[i] = p ^ c;
    end
  endgenerate
  assign co = (a[3] & b[3]) | (stage[3].p & stage[3].c);
endmodule

// prove: a generate loop that counts down by two
module generate_down (input [7:0] a, output [7:0] y);
  genvar g;
  for (g = 7; g > 0; g = g - 2) begin : pair
    assign y[g] = a[g-1];
    assign y[g-1] = a[g];
  end
endmodule

// prove: nested generate loops
module generate_nested (input [3:0] a, b, output [15:0] y);
  genvar i, j;
  for (i = 0; i < 4; i = i + 1) begin : row
    for (j = 0; j < 4; j = j + 1) begin : column
      assign y[4 * i + j] = a[i] & b[j];
    end
  end
endmodule

// prove: generate conditions on parameters, with else chains
module generate_if (input [3:0] a, output [3:0] y, z);
  parameter MODE = 2;
  if (MODE == 0) assign y = a;
  else if (MODE == 1) assign y = ~a;
  else begin : other
    wire [3:0] t = a + 1;
    assign y = t;
  end
  generate
    if (MODE > 5) begin : huge
      assign z = a;
    end else begin : little
      leaf #(.K(MODE)) u (a, z);
    end
  endgenerate
endmodule

// prove: a generate case with lists and a default
module generate_case (input [3:0] a, output [3:0] x, y);
  parameter KIND = 3;
  case (KIND)
    0, 1: assign x = a;
    2, 3: assign x = a - 1;
    default: assign x = 0;
  endcase
  case (KIND + 4)
    1: assign y = a;
    default: begin : rest
      assign y = {a[0], a[3:1]};
    end
  endcase
endmodule

// prove: registers and processes in generate blocks
module generate_registers (input clk, input [2:0] en, input [5:0] d, output [5:0] q);
  genvar i;
  for (i = 0; i < 3; i = i + 1) begin : lane
    reg [1:0] r;
    always @(posedge clk) if (en[i]) r <= d[2 * i +: 2] + i;
    assign q[2 * i +: 2] = r;
  end
endmodule

// prove: localparams and functions' values in generate blocks
module generate_parameters (input [7:0] a, output [7:0] y);
  genvar i;
  for (i = 0; i < 4; i = i + 1) begin : part
    localparam LOW = 2 * i;
    localparam [1:0] MASK = i ^ 2'd1;
    assign y[LOW +: 2] = a[LOW +: 2] ^ MASK;
  end
endmodule

// prove: instances of different sizes in a generate loop
module generate_instances (input [8:0] a, output [8:0] y);
  genvar i;
  for (i = 1; i < 4; i = i + 1) begin : size
    leaf #(.W(i), .K(i)) u (.a(a[i * (i - 1) / 2 +: i]), .y(y[i * (i - 1) / 2 +: i]));
  end
  assign y[8:6] = a[2:0];
endmodule

// prove: names of objects in named and generated blocks
module hierarchical_names (input [3:0] a, output [3:0] y, output [1:0] z);
  genvar i;
  for (i = 0; i < 2; i = i + 1) begin : g
    wire [3:0] n = a + i;
  end
  if (1) begin : outer
    wire [3:0] t;
    if (1) begin : inner
      wire [3:0] t;
      assign t = g[0].n;
    end
    assign t = inner.t ^ g[1].n;
  end
  assign y = outer.t;
  assign z = {outer.inner.t[3], g[1].n[2]};
endmodule

// prove: all gates with several inputs
module gates_inputs (input a, b, c, output [5:0] y);
  and (y[0], a, b, c);
  nand (y[1], a, b, c);
  or (y[2], a, b, c);
  nor (y[3], a, b, c);
  xor (y[4], a, b, c);
  xnor g (y[5], a, b, c);
endmodule

// prove: gates with several outputs
module gates_outputs (input a, b, output [3:0] y);
  buf b1 (y[0], y[1], a);
  not n1 (y[2], y[3], b);
endmodule

// simulate: gates that float
module gates_tristate (input [3:0] a, en, output [3:0] y);
  bufif1 (y[0], a[0], en[0]);
  bufif0 (y[1], a[1], en[1]);
  notif1 (y[2], a[2], en[2]);
  notif0 (y[3], a[3], en[3]);
endmodule

// simulate: wired nets
module wired_nets (input [3:0] a, b, output wand [3:0] x, output wor [3:0] y, output tri [3:0] z);
  assign x = a;
  assign x = b;
  assign y = a;
  assign y = b;
  assign z = a;
endmodule

// prove: supplies
module supplies (input a, output [1:0] y);
  supply0 low;
  supply1 high;
  assign y = {a & high, a | low};
endmodule
