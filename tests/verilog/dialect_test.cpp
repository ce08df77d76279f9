// What each dialect added: taken by it and by those after it; before, refused with a message that says what is wrong,
// or read as something else.
#include <gtest/gtest.h>

#include "verilog/analysis.h"

namespace {

/// The messages of a text in a dialect, without the echo that the unit is ignored.
Lines Errors(const std::string& text, veri_dialect dialect) {
  Analysis analysis;
  analysis.Read(text, dialect);
  Lines errors;
  for (const std::string& line : Analysis::Messages())
    if (line.find(": error: ") != std::string::npos && line.find("ignored due to previous errors") == std::string::npos)
      errors.push_back(line);
  return errors;
}

struct Construct {
  const char* name;
  const char* text; ///< an item of a module, or units when it begins with '@'
  /// What is said before the dialect, without the line; with a null the text means something else there.
  const char* refusal;
};

std::string Source(const Construct& construct) {
  if (construct.text[0] == '@') return construct.text + 1;
  return std::string("module m;\n") + construct.text + "\nendmodule\n";
}

void Check(const Construct& construct, veri_dialect since, veri_dialect before) {
  SCOPED_TRACE(construct.name);
  for (const veri_dialect dialect : {VERI_95, VERI_2K, VERI_SV}) {
    if (dialect < since) continue;
    EXPECT_EQ(Errors(Source(construct), dialect), Lines()) << "dialect " << dialect;
  }
  const Lines errors = Errors(Source(construct), before);
  if (!construct.refusal) {
    EXPECT_EQ(errors, Lines()) << "read as something else";
    return;
  }
  ASSERT_FALSE(errors.empty()) << "nothing said";
  EXPECT_NE(errors.front().find(construct.refusal), std::string::npos) << errors.front();
}

constexpr Construct of_2001[] = {
    {"list of port declarations", "@module m(input a, output reg q);\nendmodule\n",
     "no support for a list of port declarations before Verilog 2001"},
    {"list of parameters", "@module m #(parameter W = 8)();\nendmodule\n",
     "no support for a list of parameters in the head of a module before Verilog 2001"},
    {"ports of a function in a list", "function f(input a);\nf = a;\nendfunction",
     "no support for a list of port declarations before Verilog 2001"},
    {"ports of a task in a list", "task t(input a);\n;\nendtask",
     "no support for a list of port declarations before Verilog 2001"},
    {"generate region", "generate\nendgenerate", "syntax error near"},
    {"generate loop", "genvar i;\ngenerate for (i = 0; i < 2; i = i + 1) begin : b end endgenerate",
     "syntax error near"},
    {"generate if", "if (1) sub u();", "no support for a generate construct before Verilog 2001"},
    {"generate case", "case (1) 1: sub u(); endcase", "no support for a generate construct before Verilog 2001"},
    {"genvar", "genvar g;", "syntax error near"},
    {"localparam", "localparam P = 1;", "syntax error near"},
    {"signed type", "reg signed [3:0] r;", "syntax error near"},
    {"signed net", "wire signed [3:0] w;", "syntax error near"},
    {"unsigned number with a sign", "parameter P = 4'sd3;", nullptr},
    {"parameter with a type", "parameter integer P = 1;", "no support for a parameter with a type before Verilog 2001"},
    {"value of a variable", "reg r = 1;",
     "no support for a value in the declaration of a variable before Verilog 2001"},
    {"array of several dimensions", "reg [3:0] r [0:3][0:1];",
     "no support for an array of several dimensions before Verilog 2001"},
    {"array of nets", "wire [3:0] w [0:3];", "no support for an array of nets before Verilog 2001"},
    {"bit of an element", "reg [3:0] r [0:3]; wire w;\nassign w = r[0][1];",
     "no support for an index into an element of an array before Verilog 2001"},
    {"indexed part-select up", "wire [7:0] a; wire [3:0] b;\nassign b = a[0 +: 4];", "syntax error near"},
    {"indexed part-select down", "wire [7:0] a; wire [3:0] b;\nassign b = a[3 -: 4];", "syntax error near"},
    {"power", "parameter P = 2 ** 3;", "syntax error near"},
    {"arithmetic shift left", "parameter P = 2 <<< 3;", "syntax error near"},
    {"arithmetic shift right", "parameter P = 2 >>> 3;", "syntax error near"},
    {"event list of all", "reg a, b;\nalways @* a = b;",
     "no support for an event list of all that is read before Verilog 2001"},
    {"event list of all in parentheses", "reg a, b;\nalways @(*) a = b;",
     "no support for an event list of all that is read before Verilog 2001"},
    {"comma in an event list", "reg a, b, c;\nalways @(a, b) c = a;",
     "no support for a comma in an event list before Verilog 2001"},
    {"parameter by name", "sub #(.W(1)) u();", "no support for a parameter given by its name before Verilog 2001"},
    {"attribute", "(* x *) wire w;", "syntax error near"},
    {"automatic function", "function automatic f; input a;\nf = a;\nendfunction", "syntax error near"},
    {"automatic task", "task automatic t;\n;\nendtask", "syntax error near"},
    {"configuration", "@config c;\ndesign m;\ndefault liblist work;\nendconfig\n", "syntax error near"},
    {"pulse style", "wire y;\nspecify\npulsestyle_onevent y;\nendspecify", "syntax error near"},
    {"word as a name", "wire \\signed ;", nullptr},
};

constexpr Construct of_systemverilog[] = {
    {"logic", "logic l;", "syntax error near"},
    {"bit", "bit [3:0] b;", "syntax error near"},
    {"byte", "byte b;", "syntax error near"},
    {"int", "int i;", "syntax error near"},
    {"shortint", "shortint i;", "syntax error near"},
    {"longint", "longint i;", "syntax error near"},
    {"string", "string s;", "syntax error near"},
    {"var", "var v;", "syntax error near"},
    {"const", "const int k = 1;", "syntax error near"},
    {"typedef", "typedef reg [3:0] t;", "syntax error near"},
    {"enum", "enum {A, B} e;", "syntax error near"},
    {"struct", "struct packed { reg a; } s;", "syntax error near"},
    {"union", "union packed { reg a; reg b; } s;", "syntax error near"},
    {"package", "@package p;\nendpackage\n", "syntax error near"},
    {"import", "@package p; endpackage\nmodule m;\nimport p::*;\nendmodule\n", "syntax error near"},
    {"interface", "@interface i;\nendinterface\n", "syntax error near"},
    {"interface port", "@interface i;\nendinterface\nmodule m(i.mp p);\nendmodule\n", "syntax error near"},
    {"nested module", "module n;\nendmodule", "syntax error near \"module\";  expecting \"endmodule\""},
    {"always_comb", "reg a, b;\nalways_comb a = b;", "syntax error near"},
    {"always_ff", "reg a, b;\nalways_ff @(posedge b) a <= b;", "syntax error near"},
    {"always_latch", "reg a, b;\nalways_latch if (b) a <= b;", "syntax error near"},
    {"final block", "final $finish;", "syntax error near"},
    {"unique", "reg a;\ninitial unique if (a) a = 1;", "syntax error near"},
    {"priority", "reg a;\ninitial priority case (a) 1: a = 0; endcase", "syntax error near"},
    {"do while", "reg a;\ninitial do a = 1; while (a);", "syntax error near"},
    {"foreach", "reg a [0:3];\ninitial foreach (a[i]) a[i] = 0;", "syntax error near"},
    {"return", "function f(input a);\nreturn a;\nendfunction", "syntax error near"},
    {"break", "reg a;\ninitial while (a) break;", nullptr},       // enables a task of that name
    {"continue", "reg a;\ninitial while (a) continue;", nullptr}, // likewise
    {"increment", "integer i;\ninitial i++;", "syntax error near"},
    {"assignment operator", "integer i;\ninitial i += 1;", "syntax error near"},
    {"assignment in an expression", "integer i;\ninitial if ((i = 1)) i = 2;",
     "an assignment in an expression is a SystemVerilog feature"},
    {"wild equality", "reg a, b;\ninitial a = b ==? 1;", "syntax error near"},
    {"old value of an increment", "integer i, j;\ninitial i = j++;", "syntax error near"},
    {"case inside", "reg a, b;\ninitial case (a) inside 0, [1:1]: b = 0; endcase", "syntax error near"},
    {"condition of an event", "reg a, b;\nalways @(posedge a iff b) b = 0;", "syntax error near"},
    {"ports of an extern declaration",
     "@extern module m(input a, output b);\nmodule m(.*);\nassign b = a;\nendmodule\n", "syntax error near"},
    {"type announced", "typedef t;\ntypedef reg [3:0] t;\nt v;", "syntax error near"},
    {"inside", "reg a, b;\ninitial a = b inside {1, 2};", "syntax error near"},
    {"cast", "reg a, b;\ninitial a = signed'(b);", "syntax error near"},
    {"size cast", "reg a, b;\ninitial a = 4'(b);", "syntax error near"},
    {"unsized literal", "reg a;\ninitial a = '1;", "'1 is a SystemVerilog feature"},
    {"assignment pattern", "reg a;\ninitial a = '{1};", "syntax error near"},
    {"time literal", "reg a;\ninitial #1ns a = 1;", "syntax error near"},
    {"local variable of a loop", "initial for (integer i = 0; i < 2; i = i + 1) ;",
     "a declaration in a for statement is a SystemVerilog feature"},
    {"declaration in an unnamed block", "initial begin\nreg r;\nend",
     "a declaration in an unnamed block is a SystemVerilog feature"},
    {"genvar of a loop", "generate for (genvar i = 0; i < 2; i = i + 1) begin : b end endgenerate",
     "a genvar declared in a loop is a SystemVerilog feature"},
    {"several statements of a function", "function f(input a);\nf = a;\nf = f;\nendfunction",
     "a subprogram with several statements is a SystemVerilog feature"},
    {"subprogram without statements", "task t;\nendtask", "a subprogram without statements is a SystemVerilog feature"},
    {"void function", "function void f(input a);\n;\nendfunction", "syntax error near"},
    {"argument by name", "function f(input a);\nf = a;\nendfunction\nwire w;\nassign w = f(.a(1));",
     "an argument by name is a SystemVerilog feature"},
    {"implicit port connection", "wire a;\nsub u(.a);", "an implicit port connection is a SystemVerilog feature"},
    {"connection of all ports", "sub u(.*);", "syntax error near"},
    {"port without direction", "@module m(input a, wire [1:0] b);\nendmodule\n",
     "Implicit port direction is a SystemVerilog feature"},
    {"array port", "@module m(input a [0:1]);\nendmodule\n", "an array port is a SystemVerilog feature"},
    {"parameter without keyword", "@module m #(W = 8)();\nendmodule\n",
     "a parameter without keyword is a SystemVerilog feature"},
    {"local parameter in a list", "@module m #(parameter W = 8, localparam V = W)();\nendmodule\n",
     "a local parameter in a parameter list is a SystemVerilog feature"},
    {"parameter without value", "@module m #(parameter W)();\nendmodule\n",
     "a parameter without value is a SystemVerilog feature"},
    {"type parameter", "@module m #(parameter type T = reg)();\nendmodule\n",
     "a parameter without value is a SystemVerilog"},
    {"dimension by size", "reg a [4];", "dimension given by its size is a SystemVerilog feature"},
    {"several packed dimensions", "reg [1:0][3:0] a;", "multiple packed dimensions is a SystemVerilog feature"},
    {"null item", ";", "null module item is a SystemVerilog feature"},
    {"statement label", "reg a;\ninitial x: a = 1;", "statement label is a SystemVerilog feature"},
    {"label at the end of a block", "initial begin : b\nend : b",
     "using a closing label on a design unit is a SystemVerilog feature"},
    {"label at the end of a unit", "@module m;\nendmodule : m\n",
     "using a closing label on a design unit is a SystemVerilog feature"},
    {"global declaration", "@parameter P = 1;\n", "declaring global objects is a SystemVerilog feature"},
    {"global function", "@function f(input a);\nf = a;\nendfunction\n",
     "declaring global objects is a SystemVerilog feature"},
    {"time unit", "@module m;\ntimeunit 1ns;\nendmodule\n", "syntax error near"},
    {"extern module", "@extern module m(input a);\n", "syntax error near"},
    {"assertion", "reg a;\ninitial assert (a);", nullptr}, // enables a task of that name
    {"concurrent assertion", "reg a;\nassert property (@(posedge a) a);", "syntax error near"},
    {"property", "property p; 1; endproperty", "syntax error near"},
    {"sequence", "sequence s; 1; endsequence", "syntax error near"},
    {"join_none", "initial fork\njoin_none", "syntax error near"},
    {"iff", "reg a, b;\nalways @(posedge a iff b) b = a;", "syntax error near"},
    {"lifetime of a variable", "initial begin : b static integer i; end", "syntax error near"},
    {"lifetime of a unit", "@module automatic m;\nendmodule\n",
     "the lifetime of a design unit is a SystemVerilog feature"},
};

TEST(Dialect, Verilog2001TakesWhatItAddedAndVerilog95DoesNot) {
  for (const Construct& construct : of_2001) Check(construct, VERI_2K, VERI_95);
}

TEST(Dialect, SystemVerilogTakesWhatItAddedAndVerilog2001DoesNot) {
  for (const Construct& construct : of_systemverilog) Check(construct, VERI_SV, VERI_2K);
}

TEST(Dialect, WordsOfLaterDialectsAreNamesWithAWarning) {
  for (const auto& [word, since] : {std::pair("localparam", VERI_2K), std::pair("genvar", VERI_2K),
                                    std::pair("logic", VERI_SV), std::pair("interface", VERI_SV)}) {
    Analysis analysis;
    const veri_dialect before = since == VERI_2K ? VERI_95 : VERI_2K;
    EXPECT_TRUE(analysis.Read(std::string("module m;\nwire ") + word + ";\nendmodule\n", before));
    const Lines messages = Analysis::Messages();
    ASSERT_EQ(messages.size(), 1U) << word;
    const std::string year = since == VERI_2K ? " is a Verilog-2001 keyword" : " is a SystemVerilog-2005 keyword";
    EXPECT_NE(messages.front().find(word + year), std::string::npos) << messages.front();
  }
}

// What has no node is refused at its place, and the rest is read.

TEST(Dialect, WhatIsNotSupportedIsRefusedOnceAndTheRestIsRead) {
  constexpr std::pair<const char*, const char*> refused[] = {
      {"class c; int x; function f; endfunction endclass", "classes are not supported"},
      {"class c; class d; endclass endclass : c", "classes are not supported"},
      {"virtual class c; endclass", "classes are not supported"},
      {"program p; initial x = 1; endprogram", "programs are not supported"},
      {"bind top sub u(.a(b));", "bind directives are not supported"},
      {"alias a = b;", "net aliases are not supported"},
      {"import \"DPI-C\" function int f(int x);", "functions of another language are not supported"},
      {"export \"DPI-C\" function f;", "functions of another language are not supported"},
      {"virtual interface i v;", "virtual interfaces are not supported"},
      {"int q[$];", "queues are not supported"},
      {"int q[string];", "associative arrays are not supported"},
      {"int q[];", "dynamic arrays are not supported"},
      {"int q[*];", "associative arrays are not supported"},
      {"initial x = {<<8{y}};", "streaming concatenations are not supported"},
      {"initial {>>{x}} = y;", "streaming concatenations are not supported"},
      {"initial x = new;", "classes are not supported"},
      {"initial x = null;", "classes are not supported"},
      {"initial x = new[3];", "dynamic arrays are not supported"},
      {"initial randcase 1: x = 1; endcase", "random choices of statements are not supported"},
      {"initial wait_order (a, b) ;", "wait_order statements are not supported"},
      {"initial expect (a ##1 b);", "expect statements are not supported"},
      {"initial disable fork;", "disable fork is not supported"},
      {"initial wait fork;", "wait fork is not supported"},
      {"extern function int f(int x);", "extern subprograms are not supported"},
  };
  for (const auto& [text, error] : refused) {
    SCOPED_TRACE(text);
    EXPECT_EQ(Errors(std::string("module m;\nwire a, b;\n") + text + "\nwire a;\nendmodule\n", VERI_SV),
              (Lines{std::string("3: error: ") + error, "4: error: a is already declared"}));
  }
}

// Recovery.

TEST(Recovery, IndependentErrorsAreReportedOnceEachAndNothingElse) {
  struct Broken {
    const char* item;
    const char* error;
  };
  constexpr Broken broken[] = {
      {"wire a b;", "syntax error near \"b\";  expecting \";\""},
      {"assign = 1;", "syntax error near \"=\";  expecting \"(\""},
      {"always @(posedge) x = 1;", "syntax error near \")\";  expecting an operand"},
      {"initial begin x = ; y = 1; end", "syntax error near \";\";  expecting \"@\", or an operand"},
      {"function f; input a; f = a endfunction", "syntax error near \"endfunction\";  expecting \";\""},
      {"task t; begin x = 1; endtask", "syntax error near \"endtask\";  expecting \"end\""},
      {"sub u(.a(1), .b(2);", "syntax error near \";\";  expecting \")\""},
      {"parameter = 3;", "syntax error near \"=\";  expecting an identifier"},
      {"reg [7:0 r;", "syntax error near \"r\";  expecting \"]\""},
      {"always case (x) 1: y = 1; 2 y = 2; endcase", "syntax error near \"y\";  expecting \":\""},
      {"and g1(a, b;", "syntax error near \";\";  expecting \")\""},
      {"initial if (x y = 1;", "syntax error near \"y\";  expecting \")\""},
      {"assign w = {a, b;", "syntax error near \";\";  expecting \"}\""},
      {"generate for (i = 0; i < 2) begin : g end endgenerate", "syntax error near \")\";  expecting \";\""},
      {"initial x = 4'b;", "syntax error near \";\""},
      {"defparam u.W 3;", "syntax error near \"3\""},
      {"wire input;", "syntax error near \"input\";  expecting an identifier (\"input\" is a reserved keyword )"},
  };
  std::string text = "module m;\n";
  Lines expected;
  unsigned line = 1;
  for (const Broken& one : broken) {
    text += std::string(one.item) + "\nwire ok" + std::to_string(line) + ";\n";
    expected.push_back(std::to_string(line + 1) + ": error: " + one.error);
    line += 2;
  }
  text += "reg ok1;\nendmodule\nmodule after;\nendmodule\n"; // what stands between was read
  expected.push_back(std::to_string(line + 1) + ": error: ok1 is already declared");
  const Lines errors = Errors(text, VERI_2K);
  ASSERT_EQ(errors.size(), expected.size()) << testing::PrintToString(errors);
  for (size_t i = 0; i < errors.size(); i++)
    EXPECT_TRUE(errors[i].starts_with(expected[i])) << errors[i] << " for " << expected[i];
}

TEST(Recovery, AMissingEndOfAUnitIsToldAtTheNextOne) {
  EXPECT_EQ(
      Errors("module a;\nwire x;\nmodule b;\nwire x, x;\nendmodule\n", VERI_2K),
      (Lines{"3: error: syntax error near \"module\";  expecting \"endmodule\"", "4: error: x is already declared"}));
  EXPECT_EQ(
      Errors("module a;\ninitial begin\nx = 1;\nprimitive p(y, z);\noutput y; input z;\ntable 0 : 0; endtable\n"
             "endprimitive\nmodule b;\nwire x, x;\nendmodule\n",
             VERI_SV),
      (Lines{"4: error: syntax error near \"primitive\";  expecting \"end\"", "9: error: x is already declared"}));
}

} // namespace
