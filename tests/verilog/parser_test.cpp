// The grammar: what is accepted, the tree that it gives, told by its own source text, and what is said of mistakes.
#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "verilog/analysis.h"
#include "verilog/veri_tokens.h"
#include "verilog/veriscope.h"
#include "verilog/verivisitor.h"

namespace {

std::string PrintedLibrary(const char* name) {
  std::ostringstream out;
  veri_file::GetLibrary(name)->PrettyPrint(out, 0);
  return out.str();
}

/// The tree as source text; the messages when the text is refused.
std::string Printed(const std::string& text, veri_dialect dialect = VERI_2K) {
  Analysis analysis;
  if (analysis.Read(text, dialect)) return PrintedLibrary("work");
  std::string messages;
  for (const std::string& line : Analysis::Messages()) messages += line + "\n";
  return messages;
}

/// The item of a module with this body, as it is printed.
std::string Item(const std::string& text, veri_dialect dialect = VERI_2K) {
  std::string printed = Printed("module m;\n" + text + "\nendmodule\n", dialect);
  const std::string head = "module m;\n";
  const std::string tail = "endmodule\n\n";
  if (!printed.starts_with(head) || !printed.ends_with(tail)) return printed;
  return printed.substr(head.size(), printed.size() - head.size() - tail.size());
}

Lines ErrorsOf(const std::string& text, veri_dialect dialect = VERI_2K) {
  Analysis analysis;
  analysis.Read(text, dialect);
  Lines errors;
  for (const std::string& line : Analysis::Messages())
    if (line.find(": error: ") != std::string::npos && line.find("ignored due to previous errors") == std::string::npos)
      errors.push_back(line.substr(0, line.find(" (VERI")).substr(0, line.find(" (SV")));
  return errors;
}

// The language.

TEST(Grammar, OperatorsBindByTheirTableAndFromTheLeft) {
  EXPECT_EQ(Item("assign y = a + b * c - d;"), "    assign y = (a + (b * c)) - d;\n");
  EXPECT_EQ(Item("assign y = a || b && c | d ^ e & f == g;"),
            "    assign y = a || (b && (c | (d ^ (e & (f == g)))));\n");
  EXPECT_EQ(Item("assign y = -a ** ~b << 1 < c;"), "    assign y = (((-a) ** (~b)) << 1) < c;\n");
  EXPECT_EQ(Item("assign y = a ? b : c ? d : e;"), "    assign y = a ? b : (c ? d : e);\n");
}

TEST(Grammar, AnElseBelongsToTheNearestIf) {
  EXPECT_EQ(Item("initial if (a) if (b) x = 1; else x = 2;"), "    initial\n"
                                                              "        if (a)\n"
                                                              "            if (b)\n"
                                                              "                x = 1;\n"
                                                              "            else\n"
                                                              "                x = 2;\n");
}

TEST(Grammar, SizedNumbersArePrintedInBinary) {
  EXPECT_EQ(Item("parameter P = 8'hx5, Q = 4 'sd 5, R = 'h1F, S = 12, T = 3'bz1;"),
            "    parameter P = 8'bxxxx0101, Q = 4'sb0101, R = 'h1F, S = 12, T = 3'bzz1;\n");
}

TEST(Grammar, StringsKeepTheirCharacters) {
  EXPECT_EQ(Item(R"(initial $display("a\\b \"c\"\n");)"), "    initial\n"
                                                          "        $display(\"a\\\\b \\\"c\\\"\\n\");\n");
}

TEST(Grammar, UnnamedGenerateBlocksAreNumberedByTheirConstruct) {
  EXPECT_EQ(Item("genvar i;\n"
                 "if (A) wire a; else wire b;\n"
                 "if (B) begin : named wire c; end\n"
                 "wire genblk3;\n"
                 "for (i = 0; i < 2; i = i + 1) if (C) wire d;"),
            "    genvar i;\n"
            "    if (A)\n"
            "        begin : genblk1\n"
            "            wire a;\n"
            "        end\n"
            "    else\n"
            "        begin : genblk1\n"
            "            wire b;\n"
            "        end\n"
            "    if (B)\n"
            "        begin : named\n"
            "            wire c;\n"
            "        end\n"
            "    wire genblk3;\n"
            "    for (i = 0; i < 2; i = i + 1)\n"
            "        begin : genblk03\n"
            "            if (C)\n"
            "                begin : genblk1\n"
            "                    wire d;\n"
            "                end\n"
            "        end\n");
}

TEST(Grammar, PragmasAndAttributeInstancesEndUpInOneList) {
  EXPECT_EQ(Item("/* synthesis keep = 1 */ (* mark = \"x\" *) wire w /* synthesis late */;"),
            "    (* late = 1, mark = \"x\", keep = 1 *) wire w;\n");
  EXPECT_EQ(Item("initial case (a) /* synthesis full_case */ 1: b = 2; endcase"),
            "    initial\n"
            "        (* full_case = 1 *) case (a)\n"
            "            1 :\n"
            "                b = 2;\n"
            "        endcase\n");
}

TEST(Grammar, APragmaBelongsToWhatFollowsUnlessItStandsBeforeTheSemicolonOrComma) {
  EXPECT_EQ(Item("always @(a) if (a) b = 1 /* synthesis one */;\n"
                 "// synthesis two\n"
                 "sub u /* synthesis three */ (a);\n"),
            "    always\n"
            "        @(a)\n"
            "            if (a)\n"
            "                (* one = 1 *) b = 1;\n"
            "    (* three = 1, two = 1 *) sub u (a);\n");
  EXPECT_EQ(Printed("module m(input a /* synthesis one */, /* synthesis two */ output b, (* three *) input c) "
                    "/* synthesis four */; endmodule\n"),
            "(* four = 1 *) module m ((* one = 1 *) input a, (* two = 1 *) output b, (* three *) input c);\n"
            "endmodule\n\n");
}

TEST(Grammar, AutomaticVariablesTakeTheirValueEachTime) {
  EXPECT_EQ(Item("always_comb begin automatic int k = a; static int n = 1; int p = 2; k++; end", VERI_SV),
            "    always_comb\n"
            "        begin\n"
            "            automatic int k;\n"
            "            static int n = 1;\n"
            "            int p = 2;\n"
            "            k = a;\n"
            "            k++;\n"
            "        end\n");
  EXPECT_EQ(Item("function int f(int a); int k = a; return k; endfunction", VERI_SV), "    function int f;\n"
                                                                                      "        input int a;\n"
                                                                                      "        int k;\n"
                                                                                      "        begin\n"
                                                                                      "            k = a;\n"
                                                                                      "            return k;\n"
                                                                                      "        end\n"
                                                                                      "    endfunction\n");
}

TEST(Grammar, ABlockWithoutDeclarationsHasNoScope) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("module m; initial begin begin : inner reg r; r = 1; end end endmodule\n"));
  const VeriScope* scope = Analysis::Module("m")->GetScope();
  ASSERT_EQ(scope->Children().Size(), 1U);
  ASSERT_NE(scope->FindHere("inner"), nullptr);
  EXPECT_NE(scope->FindHere("inner")->LocalScope()->FindHere("r"), nullptr);
}

// Ports.

TEST(Ports, ANonAnsiPortMergesWithItsNetOrVariable) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("module m(a, b, c, d);\n"
                            "input a; wire a;\n"
                            "output [3:0] b; reg b;\n"
                            "reg signed [1:0] c; output c;\n"
                            "output d; integer d;\n"
                            "endmodule\n"));
  const VeriVariable* a = Analysis::Variable("m", "a");
  EXPECT_EQ(a->Dir(), unsigned{VERI_INPUT});
  EXPECT_EQ(a->NetType(), unsigned{VERI_WIRE});
  const VeriVariable* b = Analysis::Variable("m", "b");
  EXPECT_TRUE(b->IsReg());
  EXPECT_NE(b->Type()->Ranges(), nullptr);
  const VeriVariable* c = Analysis::Variable("m", "c");
  EXPECT_EQ(c->Dir(), unsigned{VERI_OUTPUT});
  EXPECT_EQ(c->Type()->Signing(), unsigned{VERI_SIGNED});
  EXPECT_EQ(Analysis::Variable("m", "d")->Type()->Type(), unsigned{VERI_INTEGER});
}

TEST(Ports, AListOfDeclarationsLeavesNothingToTheBody) {
  EXPECT_EQ(ErrorsOf("module m(input a, output [1:0] b);\nreg a;\nwire [1:0] b;\nendmodule\n"),
            (Lines{"2: error: object a declared in a list of port declarations cannot be redeclared within the module "
                   "body",
                   "3: error: object b declared in a list of port declarations cannot be redeclared within the module "
                   "body"}));
}

TEST(Ports, EachIsDeclaredOnceAndTypedOnce) {
  EXPECT_EQ(ErrorsOf("module m(a, b, c);\ninput a;\noutput a;\noutput reg b;\nwire b;\nwire c;\nparameter c = 1;\n"
                     "endmodule\n"),
            (Lines{"3: error: port a is already declared",
                   "5: error: cannot redeclare object \"b\" because the port declaration for \"b\" already specifies "
                   "net or variable type",
                   "7: error: c is already declared"}));
}

TEST(Ports, TheTypesOfVerilogArePerDirection) {
  EXPECT_EQ(ErrorsOf("module m(input reg a, inout integer b, output real c, output time d);\nendmodule\n"),
            (Lines{"1: error: objects with type reg cannot be declared as input",
                   "1: error: objects with type integer cannot be declared as inout",
                   "1: error: objects with type real cannot be declared as output"}));
  EXPECT_EQ(ErrorsOf("module m(input event e);\ninteger [3:0] i;\nendmodule\n", VERI_SV),
            (Lines{"1: error: cannot declare \"input\" port(s) with type \"event\"",
                   "2: error: objects with type integer cannot be declared with a range"}));
}

TEST(Ports, OnlyWrittenConnectionsMakeImplicitNets) {
  Analysis analysis;
  EXPECT_EQ(analysis.Errors("module sub(input a, b, c); endmodule\n"
                            "module m;\n"
                            "function f(input x); return x; endfunction\n"
                            "sub u(.a, .b(n), .c(f(k)));\n"
                            "endmodule\n",
                            VERI_SV),
            Lines{"4: error: a is not declared"});
}

// Mistakes.

TEST(SyntaxErrors, TheHintNamesWhatWasLegal) {
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      {"module m; reg r\n", "2: error: syntax near EOF ;  expecting \";\""},
      {"module m; reg while; endmodule",
       "1: error: syntax error near \"while\";  expecting an identifier (\"while\" is a reserved keyword )"},
      {"module m; assign a = b c; endmodule", "1: error: syntax error near \"c\";  expecting \";\""},
      {"module m; assign a = ; endmodule", "1: error: syntax error near \";\";  expecting an operand"},
      {"module m; assign a = (b; endmodule", "1: error: syntax error near \";\";  expecting \")\""},
      {"module m; assign a = {b; endmodule", "1: error: syntax error near \";\";  expecting \"}\""},
      {"module m; assign a = b[1; endmodule", "1: error: syntax error near \";\";  expecting \"]\""},
      {"module m; initial begin a = 1; endmodule", "1: error: syntax error near \"endmodule\";  expecting \"end\""},
      {"module m; always #1; case endmodule", "1: error: syntax error near \"endmodule\";  expecting \"(\""},
      {"module m; initial case (a) 1: b = 1; endmodule",
       "1: error: syntax error near \"endmodule\";  expecting \"endcase\""},
      {"module m; function f; input x; f = x; endmodule",
       "1: error: syntax error near \"endmodule\";  expecting \"endfunction\""},
      {"module m; generate wire w; endmodule", "1: error: syntax error near \"endmodule\";  expecting \"endgenerate\""},
      {"module m; wire w; 3", "1: error: syntax error near \"3\";  expecting \"endmodule\""},
      {"wire w endmodule", "1: error: syntax error near \"endmodule\";  expecting \";\""},
      {"3", "1: error: syntax error near \"3\";  expecting a description"},
      {"module m(input a, b; endmodule", "1: error: syntax error near \";\";  expecting \")\""},
      {"module m; initial x <= y", "1: error: syntax near EOF ;  expecting \";\""},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.text);
    const Lines errors = ErrorsOf(one.text);
    ASSERT_FALSE(errors.empty());
    EXPECT_EQ(errors.front(), one.message);
  }
}

TEST(SyntaxErrors, OneFileTellsSeveral) {
  EXPECT_EQ(ErrorsOf("module m(input a;\n"
                     "  assign x = a\n"
                     "  wire q;\n"
                     "  always @(a) begin\n"
                     "    if (a) x <= ;\n"
                     "    else y = 1\n"
                     "    foo = bar;\n"
                     "  end\n"
                     "  initial case (a) 1: x = 2; 2: y = 3 endcase\n"
                     "endmodule\n"
                     "module n; wire 3; endmodule\n"
                     "module o; initial begin if (a) begin a = 1; else b = 2; end endmodule\n"),
            (Lines{"1: error: syntax error near \";\";  expecting \")\"",
                   "3: error: syntax error near \"wire\";  expecting \";\"",
                   "5: error: syntax error near \";\";  expecting \"@\", or an operand",
                   "7: error: syntax error near \"foo\";  expecting \";\"",
                   "9: error: syntax error near \"endcase\";  expecting \";\"",
                   "11: error: syntax error near \"3\";  expecting an identifier",
                   "12: error: syntax error near \"else\";  expecting \"end\""}));
}

TEST(SyntaxErrors, AUnitBehindABrokenOneIsStillRead) {
  EXPECT_EQ(ErrorsOf("module m; initial begin a = 1; endmodule\nmodule n; endmodule : k\n"),
            (Lines{"1: error: syntax error near \"endmodule\";  expecting \"end\"",
                   "2: error: using a closing label on a design unit is a SystemVerilog feature"}));
}

TEST(SyntaxErrors, ABrokenLoopHeadBehindItsBodyIsLeft) {
  EXPECT_EQ(ErrorsOf("module m;\ninitial begin do a++; while type (a < 3); end\nassign = 1;\nendmodule\n", VERI_SV),
            Lines{"2: error: syntax error near \"type\";  expecting \"(\""});
}

TEST(SyntaxErrors, ListsOfNamesTellSlipsOfTheKeyboard) {
  EXPECT_EQ(ErrorsOf("module m;\nwire a,;\nreg b, = 1;\nendmodule\n"),
            (Lines{"2: error: syntax error near \",\", expecting \";\"",
                   "3: error: syntax error near \"=\", expecting an identifier or \",\""}));
}

TEST(Dialects, SystemVerilogIsRefusedInVerilog) {
  EXPECT_EQ(ErrorsOf("parameter P = 1;\n"
                     "module m #(localparam L = 1) (input a, wire b);\n"
                     "reg [3:0][1:0] r;\n"
                     "reg s [4];\n"
                     "initial begin reg t; t = '1; end\n"
                     "sub u(.a);\n"
                     "endmodule : m\n"),
            (Lines{"1: error: declaring global objects is a SystemVerilog feature",
                   "2: error: a local parameter in a parameter list is a SystemVerilog feature",
                   "2: error: Implicit port direction is a SystemVerilog feature",
                   "3: error: multiple packed dimensions is a SystemVerilog feature",
                   "4: error: dimension given by its size is a SystemVerilog feature",
                   "5: error: a declaration in an unnamed block is a SystemVerilog feature",
                   "5: error: '1 is a SystemVerilog feature",
                   "6: error: an implicit port connection is a SystemVerilog feature",
                   "7: error: using a closing label on a design unit is a SystemVerilog feature"}));
}

TEST(Dialects, AGlobalDeclarationIsAddedAllTheSame) {
  Analysis analysis;
  EXPECT_FALSE(analysis.Read("parameter P = 1;\n"));
  EXPECT_EQ(veri_file::GetLibrary("work")->GlobalItems().Size(), 1U);
}

TEST(Dialects, NamesThatBecomeKeywordsAreWarnedOf) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("module m;\nwire logic, generate;\nendmodule\n", VERI_95));
  EXPECT_EQ(Analysis::Messages(), (Lines{"2: warning: logic is a SystemVerilog-2005 keyword",
                                         "2: warning: generate is a Verilog-2001 keyword"}));
}

TEST(ClosingLabels, MustBeTheNameOfWhatTheyClose) {
  EXPECT_EQ(ErrorsOf("module m;\n"
                     "initial begin : a end : b\n"
                     "initial begin end : c\n"
                     "endmodule : n\n",
                     VERI_SV),
            (Lines{"2: error: closing label b must match the original label a",
                   "3: error: closing label c must match the original label <unnamed>",
                   "4: error: closing label n must match the original label m"}));
}

TEST(Literals, ASizeOfZeroIsRefused) {
  EXPECT_EQ(ErrorsOf("module m;\nwire a = 0'b0;\nwire b = 3'b0;\nendmodule\n"),
            Lines{"2: error: sized number cannot have 0 size"});
  EXPECT_EQ(ErrorsOf("module m;\nwire b = 3'b0;\nendmodule\n", VERI_95), Lines{});
}

TEST(Names, ARangeIsTheLastIndex) {
  EXPECT_EQ(ErrorsOf("module m;\nassign a = b[3:0][1];\nendmodule\n"),
            Lines{"2: error: range must be the final index in the indexed name"});
}

// Whatever the depth of the nesting, one message ends it.

std::string Repeated(const std::string& text, unsigned count) {
  std::string result;
  for (unsigned i = 0; i < count; i++) result += text;
  return result;
}

TEST(DeepNesting, EndsWithAMessage) {
  constexpr unsigned deep = 100000;
  const std::string bodies[] = {
      "assign a = " + Repeated("(", deep) + "b" + Repeated(")", deep) + ";",
      "assign a = b" + Repeated(" + b", deep) + ";",
      "assign a = " + Repeated("~", deep) + "b;",
      "assign a = " + Repeated("{", deep) + "b" + Repeated("}", deep) + ";",
      "assign a = " + Repeated("b[", deep) + "1" + Repeated("]", deep) + ";",
      "assign a = b" + Repeated(".b", deep) + ";",
      "assign a = " + Repeated("b ? c : ", deep) + "d;",
      "initial " + Repeated("begin ", deep) + Repeated("end ", deep),
      "initial " + Repeated("if (a) ", deep) + ";",
      Repeated("if (a) begin ", deep) + Repeated("end ", deep),
  };
  for (const std::string& body : bodies) {
    SCOPED_TRACE(body.substr(0, 40));
    EXPECT_EQ(ErrorsOf("module m;\n" + body + "\nendmodule\n"), Lines{"2: error: parser stack overflow"});
  }
}

TEST(DeepNesting, WhatIsLongButFlatIsRead) {
  constexpr unsigned many = 20000;
  EXPECT_EQ(ErrorsOf("module m;\nassign a = {b" + Repeated(", b", many) + "};\nassign c = d" + Repeated("[1]", many) +
                     ";\ninitial begin " + Repeated("a = 1;", many) + " end\nendmodule\n"),
            Lines{});
}

TEST(SyntaxErrors, AFileCutOffAnywhereIsReported) {
  const std::string text = "package p; typedef enum {A, B} e; endpackage\n"
                           "module m import p::*; #(parameter int W = 8) (input e a, output logic [W-1:0] q);\n"
                           "typedef struct packed { logic x; } s; s v = '{x: 1};\n"
                           "function automatic int f(int i); return i + 1; endfunction\n"
                           "always_comb begin : b automatic int k = 3; for (int i = 0; i < 3; i++) q[i] = k; end : b\n"
                           "for (genvar g = 0; g < 2; g++) begin : gb sub #(.W(g)) u (.a, .b(q), .*); end\n"
                           "assert property (@(posedge a) b) else $error(\"x\"); endmodule : m\n";
  for (size_t length = 0; length < text.size(); length++) {
    Analysis analysis;
    const bool is_legal = analysis.Read(text.substr(0, length), VERI_SV);
    const Lines messages = Analysis::Messages();
    const bool is_reported = std::any_of(messages.begin(), messages.end(), [](const std::string& line) {
      return line.find(": error: ") != std::string::npos;
    });
    EXPECT_NE(is_legal, is_reported) << length;
  }
}

} // namespace
