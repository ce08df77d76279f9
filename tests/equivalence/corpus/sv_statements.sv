// Statements of SystemVerilog that only the simulator reads.

// simulate: increment and decrement statements
module increments (input logic [3:0] a, output logic [3:0] x, y);
  always_comb begin
    x = a;
    y = a;
    x++;
    ++x;
    y--;
    if (x[0]) --y;
  end
endmodule

// simulate: functions without begin, with return and default directions
module function_return_value (input logic [3:0] a, b, output logic [3:0] y);
  function automatic logic [3:0] clip(logic [3:0] v, logic [3:0] limit);
    if (v > limit) return limit;
    return v;
  endfunction
  assign y = clip(a, b);
endmodule

package corpus_pkg;
  parameter int WIDTH = 5;
  localparam logic [WIDTH-1:0] MASK = 5'b10101;
  typedef enum logic [1:0] {ADD, SUB, XOR} op_t;
  typedef struct packed { op_t op; logic [WIDTH-1:0] value; } command_t;
  function automatic logic [WIDTH-1:0] execute(input command_t c, input logic [WIDTH-1:0] acc);
    case (c.op)
      ADD: execute = acc + c.value;
      SUB: execute = acc - c.value;
      default: execute = (acc ^ c.value) & MASK;
    endcase
  endfunction
endpackage

// simulate: an imported package with types and functions
module package_import (input logic clk, rst, input logic [6:0] c, output logic [4:0] y);
  import corpus_pkg::*;
  command_t command;
  assign command = c;
  always_ff @(posedge clk) if (rst) y <= '0; else y <= execute(command, y);
endmodule

// simulate: wildcard equality
module wildcard_equality (input logic [3:0] a, output logic x, y);
  assign x = a ==? 4'b1??0;
  assign y = a !=? 4'b01xx;
endmodule

// simulate: packed arrays of several dimensions
module packed_arrays (input logic [15:0] a, input logic [1:0] i, j, output logic [3:0] x, output logic y,
                      output logic [15:0] z);
  logic [3:0][3:0] m, n;
  assign m = a;
  assign x = m[2] + m[0];
  assign y = m[3][1];
  always_comb begin
    n = m;
    n[1] = m[2];
    n[0][3:2] = m[3][1:0];
    z = n;
  end
endmodule
