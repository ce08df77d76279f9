// System tasks that say something.
// run each: --std=vlog2001
module display(input a, output y);
  assign y = a;
  initial begin
    $display("plain %d", 5); // expect: information VERI-2060 10648 "plain           5"
    $display("Info: %b", 2'b10); // expect: information VERI-2060 10648 "Info: 10"
    $display("Warning: %h", 8'hab); // expect: warning VERI-2060 10649 "Warning: ab"
    $display("%s", a); // expect: information VERI-2060 10648 "<non-constant>"
  end
endmodule
module display_error(input a, output y);
  assign y = a;
  initial $display("Error: %0d", 7); // expect: error VERI-2060 10650 "Error: 7"
endmodule
module no_file(input [1:0] a, output [7:0] y);
  reg [7:0] m [0:3];
  initial $readmemh("missing.hex", m); // expect: error VERI-1020 10054 "cannot open file \"missing.hex\""
  assign y = m[a];
endmodule
module no_memory(input a, output y);
  reg r; // expect: warning VERI-2030 10036 "object \"r\" assigned a value but never read"
  initial $readmemh("bad.hex", r); // expect: error VERI-1095 10116 "argument 2 to \"$readmemh\" must be a memory identifier"
  assign y = a;
endmodule
module no_name(input [1:0] a, output [7:0] y);
  reg [7:0] m [0:3];
  initial $readmemh(a, m); // expect: error VERI-1095 10116 "argument 1 to \"$readmemh\" must be a string"
  assign y = m[a];
endmodule
module bad_digit(input [1:0] a, output [7:0] y);
  reg [7:0] m [0:3];
  initial $readmemh("bad.hex", m);
  assign y = m[a];
endmodule
module bad_binary(input [1:0] a, output [7:0] y);
  reg [7:0] m [0:3];
  initial $readmemb("bad.hex", m);
  assign y = m[a];
endmodule
module few_words(input [1:0] a, output [7:0] y);
  reg [7:0] m [0:3];
  initial $readmemh("two.hex", m); // expect: warning VERI-2089 10850 "number of words (2) in memory file does not match the number of elements in the address range [0:3]"
  assign y = m[a];
endmodule
module bad_range(input [1:0] a, output [7:0] y);
  reg [7:0] m [0:3];
  initial $readmemh("two.hex", m, 2, 9); // expect: error VERI-2069 10215 "start or stop address isn't within the declared range [0:3] of memory \"m\""
  assign y = m[a];
endmodule
module bad_address(input [1:0] a, output [7:0] y);
  reg [7:0] m [0:3];
  initial $readmemh("far.hex", m);
  assign y = m[a];
endmodule
// expect@bad.hex:1: error VERI-2067 10213 "illegal character g in hexadecimal number"
// expect@bad.hex:1: error VERI-1038 10079 "illegal character in binary number"
// expect@far.hex:1: error VERI-2070 10217 "address 9 in memory file must be within range [0:3]"
