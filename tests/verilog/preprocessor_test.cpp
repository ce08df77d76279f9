// The preprocessor: macros, conditional text, includes and the other compiler directives, in the tokens that come out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "verilog/scan.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// `text` so many times.
std::string repeated(const std::string& text, unsigned times) {
  std::string all;
  while (times--) all += text;
  return all;
}

} // namespace

// Macros.

TEST(Macro, AUseIsReplacedByTheBodyOnTheLineOfTheUse) {
  EXPECT_EQ(Scan().TokensAndLines("`define W 8\nreg [`W-1:0]\na"),
            "2:reg 2:[ 2:NUM:8 2:- 2:NUM:1 2:: 2:NUM:0 2:] 3:ID:a");
}

TEST(Macro, ABodyContinuesBehindABackslash) {
  EXPECT_EQ(Scan().TokensAndLines("`define A a \\\n  b \\\r\n c\n`A d"), "4:ID:a 4:ID:b 4:ID:c 4:ID:d");
}

TEST(Macro, ALineCommentEndsTheBodyEvenInAString) {
  Scan scan;
  scan.Tokens("`define S \"a//b\"\n`define T x // comment\n`define U y // more \\\n z\n");
  EXPECT_STREQ(scan.macros.MacroValue("S"), "\"a");
  EXPECT_STREQ(scan.macros.MacroValue("T"), "x ");
  EXPECT_STREQ(scan.macros.MacroValue("U"), "y  z");
}

TEST(Macro, AnExpansionJoinsWhatStandsBehindIt) {
  EXPECT_EQ(Scan().Tokens("`define LT <\n`define ONE 1\na `LT= b `ONE.5"), "ID:a <= ID:b REAL:1.5");
}

TEST(Macro, AFileThatEndsInABodyDefinesAnEmptyMacro) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("a `define LAST text"), "ID:a");
  EXPECT_STREQ(scan.macros.MacroValue("LAST"), "");
  scan.Tokens("`define LONG some \\\ntext");
  EXPECT_STREQ(scan.macros.MacroValue("LONG"), "");
  EXPECT_THAT(Scan::Messages(), IsEmpty());
}

TEST(Macro, AnUndefinedNameWarnsOnceAndIsDefinedThen) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("a `FOO `FOO\n`ifdef FOO\nb\n`endif"), "ID:a ID:b");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: warning: use of undefined macro FOO"));
}

TEST(Macro, ARecursiveMacroIsReportedAndNotExpanded) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("`define A `A\n`A x"), "ID:x");
  EXPECT_THAT(Scan::Messages(), ElementsAre("2: error: macro A causes infinite loop"));
  EXPECT_EQ(scan.Tokens("`define B `C\n`define C `D\n`define D `C /* `B */\n`B x"), "ID:x");
  EXPECT_THAT(Scan::Messages(), ElementsAre("4: error: macro C causes infinite loop"));
}

TEST(Macro, AMacroThatMakesItsOwnNameOrDoublesForeverEnds) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("`define EVIL(x) `x(x)\n`EVIL(EVIL) y"), "ID:y");
  EXPECT_THAT(Scan::Messages(), ElementsAre("2: error: macro EVIL causes infinite loop"));
  std::string doubling = "`define M0 `M1 `M1\n";
  for (unsigned i = 1; i < 60; i++)
    doubling += "`define M" + std::to_string(i) + " `M" + std::to_string(i + 1) + " `M" + std::to_string(i + 1) + "\n";
  EXPECT_EQ(scan.Tokens(doubling + "`define M60\n`M0 y"), "ID:y");
  EXPECT_THAT(Scan::Messages(), testing::Contains(HasSubstr("causes infinite loop")));
}

TEST(Macro, DeepNestingIsNoRecursion) {
  std::string text = "`define N0 end_of_it\n";
  for (unsigned i = 1; i <= 200; i++) text += "`define N" + std::to_string(i) + " `N" + std::to_string(i - 1) + "\n";
  Scan scan;
  EXPECT_EQ(scan.Tokens(text + "`N200"), "ID:end_of_it");
  EXPECT_THAT(Scan::Messages(), IsEmpty());
}

TEST(Macro, ActualsAreDividedAtCommasOutsideOfNesting) {
  EXPECT_EQ(Scan().Tokens("`define M(a,b) a+b\n`M(f(1,2),{3,4})"), "ID:f ( NUM:1 , NUM:2 ) + { NUM:3 , NUM:4 }");
  EXPECT_EQ(Scan().Tokens("`define M(a,b) a b\n`M (\"x,)\", //c )\n y /* ) */ z)"), "\"x,)\" ID:y ID:z");
}

TEST(Macro, WrongActualsAreErrorsAndExpandToNothing) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("`define M(a,b) a b\n`M(1) ;"), ";");
  EXPECT_THAT(Scan::Messages(), ElementsAre("2: error: incorrect number of macro arguments"));
  EXPECT_EQ(scan.Tokens("( `M ) ;"), "( ) ;");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: missing arguments for macro M"));
  EXPECT_EQ(scan.Tokens("`M(" + repeated("1,", 200) + "1) ;"), ";");
  EXPECT_THAT(Scan::Messages(),
              ElementsAre("1: error: too many macro arguments", "1: error: incorrect number of macro arguments"));
}

TEST(Macro, FormalsAreReplacedAsWholeWordsInStringsToo) {
  EXPECT_EQ(Scan().Tokens("`define M(a, b_c) a ab a$ b_c \"a\"\n`M(1,x)"), "NUM:1 ID:ab ID:a$ ID:x \"1\"");
}

TEST(Macro, SystemVerilogQuotesAndPastesWithBackquotes) {
  const char* text = "`define M(a) `\"a`\" n_``a``_x `\"\\`\"`\"\n`M(q)";
  EXPECT_EQ(Scan(VERI_SV).Tokens("`define M(a) `\"a`\" n_``a``_x\n`M(q)"), "\"q\" ID:n_q_x");
  EXPECT_EQ(Scan(VERI_SV).Tokens("`define M(a) `\"`\\`\"a`\\`\"`\"\n`M(q)"), "\"\"q\"\"");
  Scan scan(VERI_2K);
  scan.Tokens(text);
  EXPECT_THAT(Scan::Messages(), testing::Contains("2: error: missing compiler directive"));
}

TEST(Macro, AWrongListOfFormalsLeavesAMacroWithoutFormals) {
  const struct {
    const char* formals;
    const char* error;
  } cases[] = {
      {"(1a)", "1: error: near 1a) : illegal macro parameter"},
      {"()", "1: error: near ) : illegal macro parameter"},
      {"(a,)", "1: error: near ) : illegal macro parameter"},
      {"(a=1)", "1: error: near =1) : illegal character in macro parameter"},
      {"(a b)", "1: error: near b) : illegal character in macro parameter"},
  };
  for (const auto& [formals, error] : cases) {
    Scan scan;
    EXPECT_EQ(scan.Tokens(std::string("`define M") + formals + " text\n`M;"), "ID:text ;") << formals;
    EXPECT_THAT(Scan::Messages(), ElementsAre(error));
  }
  Scan scan;
  EXPECT_EQ(scan.TokensAndLines("`define M( a ,\n $b_1 ) a\n`M(x,y)"), "3:ID:x");
  EXPECT_STREQ(scan.macros.MacroArgs("M"), "a,$b_1");
}

TEST(Macro, ARedefinitionWarnsWhenItChangesAnything) {
  Scan scan;
  const std::string file = scan.AddFile("main.v", "");
  scan.Tokens("`define A 1\n`define A 1\n`define A 2\n");
  EXPECT_THAT(Scan::Messages(),
              ElementsAre("3: warning: redefinition of macro A, which was defined in " + file + ", line 1."));
  EXPECT_STREQ(scan.macros.MacroValue("A"), "2");
  EXPECT_EQ(LineFile::GetLineNo(scan.macros.MacroLinefile("A")), 1U);
  EXPECT_EQ(scan.macros.MacroFilename("A"), file);
  scan.macros.DefineMacro("H", "1", nullptr, 0);
  EXPECT_EQ(scan.macros.MacroFilename("H"), nullptr);
  scan.Tokens("`define H 2\n");
  EXPECT_THAT(Scan::Messages(), ElementsAre(HasSubstr("redefinition of macro H, which was defined in the Tesmark II")));
}

TEST(Macro, NamesOfDirectivesCanNeitherBeDefinedNorUndefinedNorUsedAsMacros) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("`define timescale 1\n`undef include\n`define\n`include 5\nx"), "NUM:5 ID:x");
  EXPECT_THAT(Scan::Messages(),
              ElementsAre("1: error: cannot re-define predefined macro timescale",
                          "2: error: cannot undefine predefined macro include",
                          "3: error: incorrect use of predefined macro define. Expected macro_name",
                          "4: error: incorrect use of predefined macro include. Expected \"filename\""));
  EXPECT_TRUE(scan.macros.IsPredefinedMacro("elsifdef"));
  EXPECT_FALSE(scan.macros.IsDefinedMacro("elsif"));
}

TEST(Macro, MacrosCarryOverToTheNextFileUntilTheyAreUndefined) {
  Scan scan;
  scan.Tokens("`define A 1\n`define B 2\n`undef A\n`undef UNKNOWN\n");
  EXPECT_EQ(scan.Tokens("`ifdef A\na\n`endif\n`B"), "NUM:2");
  scan.macros.UndefineAllMacros();
  EXPECT_EQ(scan.Tokens("`ifdef B\nb\n`endif\n`ifdef define\nc\n`endif"), "ID:c");
}

TEST(Macro, TheClientLearnsOfTestsAndExpansions) {
  Scan scan;
  const std::string file = scan.AddFile("main.v", "");
  scan.Tokens("`define M(x) x+1\n`define E\n`ifdef E\n`elsif M\n`endif\n`ifndef NONE\n`endif\n`M(2) `E");
  EXPECT_THAT(scan.client.macros, ElementsAre("E()=", "M(x)=x+1", "E()="));
  EXPECT_THAT(scan.client.files, testing::Each(file));
}

TEST(Macro, AnExpansionLargerThanTheTextBeforeItIsScannedOnItsOwn) {
  Scan scan;
  const std::string body = repeated("word ", 20000);
  scan.macros.DefineMacro("BIG", body.c_str(), nullptr, 0);
  EXPECT_EQ(scan.Tokens("`BIG x"), repeated("ID:word ", 20000) + "ID:x");
  EXPECT_THAT(scan.services.debug, ElementsAre("using scan string for 100000 chars"));
  scan.macros.DefineMacro("LINES", "a\nb", nullptr, 0);
  EXPECT_EQ(scan.TokensAndLines("\n`LINES c"), "2:ID:a 3:ID:b 2:ID:c");
}

// Conditional text.

TEST(Conditional, TheFirstBranchThatHoldsIsRead) {
  const std::string text = "`ifdef A\na\n`elsif B\nb\n`elsif C\nc\n`else\nd\n`endif\n;";
  EXPECT_EQ(Scan().Tokens(text), "ID:d ;");
  EXPECT_EQ(Scan().Tokens("`define C\n" + text), "ID:c ;");
  EXPECT_EQ(Scan().Tokens("`define B\n`define C\n" + text), "ID:b ;");
  EXPECT_EQ(Scan().Tokens("`define A\n`define C\n" + text), "ID:a ;");
  EXPECT_EQ(Scan().Tokens("`ifndef A\na\n`else\nb\n`endif"), "ID:a");
}

TEST(Conditional, NothingInASkippedBranchIsReadButConditionalsAndComments) {
  EXPECT_EQ(Scan().TokensAndLines("`ifdef A\n`ifdef B\nb\n`else\nc\n`endif\n`define D\n/* `endif */ // `endif\n\"x\n"
                                  "`include \"none\"\n`elsewhere\n`else\ne\n`endif\n`ifdef D\n`endif"),
            "13:ID:e");
  EXPECT_EQ(Scan().Tokens("`define A\n`ifdef A\na\n`elsif B\n`ifdef C\n`endif\nb\n`elsif A\n`ifndef C\n`endif\nc\n"
                          "`else\n`ifdef A\n`endif\nd\n`endif"),
            "ID:a");
}

TEST(Conditional, AnUnbalancedConditionalIsAnError) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("`else\n`elsif A\n`endif\nx"), "ID:x");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: `else without `if", "2: error: `elsif without `if",
                                            "3: error: `endif without `if"));
  EXPECT_EQ(scan.Tokens("`ifdef A\nx"), "");
  EXPECT_THAT(Scan::Messages(), ElementsAre("2: error: unexpected EOF : missing `endif"));
  EXPECT_EQ(scan.Tokens("`ifndef A\nx"), "ID:x");
  EXPECT_THAT(Scan::Messages(), ElementsAre("2: error: unexpected EOF : missing `endif"));
}

TEST(Conditional, TooDeepABranchIsAnErrorOnlyWhenItIsRead) {
  Scan scan;
  EXPECT_EQ(scan.Tokens(repeated("`ifndef A\n", 51) + "x\n" + repeated("`endif\n", 51)), "ID:x");
  EXPECT_THAT(Scan::Messages(), ElementsAre("51: error: 'ifdef/'ifndef block exceeds nesting limit of 50"));
  EXPECT_EQ(scan.Tokens(repeated("`ifdef A\n", 10000) + "x\n" + repeated("`endif\n", 10000) + "y"), "ID:y");
  EXPECT_THAT(Scan::Messages(), IsEmpty());
}

// Includes.

TEST(Include, AFileIsReadInPlaceWithItsOwnLines) {
  Scan scan;
  const std::string path = scan.AddFile("sub/defs.vh", "`define W 3\na\n`include \"more.vh\"\nc");
  scan.AddFile("sub/more.vh", "b");
  EXPECT_EQ(scan.TokensAndLines("x\n`include \"sub/defs.vh\" y\n`W"), "1:ID:x 2:ID:a 1:ID:b 4:ID:c 2:ID:y 3:NUM:3");
  EXPECT_EQ(scan.client.files.front(), path);
}

TEST(Include, TheNameMayStandInAngleBracketsOrAMacro) {
  Scan scan;
  scan.AddFile("a.vh", "a ");
  EXPECT_EQ(scan.Tokens("`include <a.vh>\n`define NAME \"a.vh\"\n`include `NAME\n b"), "ID:a ID:a ID:b");
}

TEST(Include, AMissingFileIsAnErrorAndScanningGoesOn) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("`include \"none.vh\" x"), "ID:x");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: cannot open file none.vh"));
}

TEST(Include, AFileThatIncludesItselfEnds) {
  Scan scan;
  scan.AddFile("self.vh", "`include \"self.vh\"\n`include \"self.vh\"\n");
  EXPECT_EQ(scan.Tokens("`include \"self.vh\"\n x"), "ID:x");
  EXPECT_THAT(Scan::Messages(), testing::Contains("1: error: cannot open file self.vh"));
}

TEST(Include, WhatAFileLeavesOpenGoesOnBehindIt) {
  Scan scan;
  scan.AddFile("open.vh", "`ifdef NONE\n a");
  EXPECT_EQ(scan.Tokens("`include \"open.vh\"\n b\n`endif\n c"), "ID:c");
  scan.AddFile("define.vh", "`define LAST 5");
  EXPECT_EQ(scan.Tokens("`include \"define.vh\"\n`LAST"), "NUM:5");
  EXPECT_THAT(Scan::Messages(), IsEmpty());
}

// Other directives.

TEST(Directive, LineSetsFileAndLineOfWhatFollows) {
  Scan scan;
  EXPECT_EQ(scan.TokensAndLines("`line 40 \"other.v\" 1\na\nb"), "40:ID:a 41:ID:b");
  EXPECT_STREQ(LineFile::GetFileName(scan.LastToken().linefile), "other.v");
  EXPECT_EQ(scan.TokensAndLines("`line 99999999999 \"other.v\" 1\na\n"), "1048575:ID:a");
}

TEST(Directive, DirectivesStayInForceUntilTheyAreReset) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("`celldefine\n`default_nettype tri0\n`unconnected_drive pull1\n`timescale 1 ns/10ps\nx"),
            "ID:x");
  EXPECT_EQ(VeriLex::GetCelldefine(), 1U);
  EXPECT_EQ(VeriLex::GetDefaultNettype(), static_cast<unsigned>(VERI_TRI0));
  EXPECT_EQ(VeriLex::GetUnconnectedDrive(), static_cast<unsigned>(VERI_PULL1));
  EXPECT_EQ(scan.client.timescale, "1 ns/10ps");
  scan.Tokens("`default_nettype none\n`nounconnected_drive\n`endcelldefine\n");
  EXPECT_EQ(VeriLex::GetDefaultNettype(), VeriLex::VERI_NONE_NETTYPE);
  EXPECT_EQ(VeriLex::GetUnconnectedDrive(), 0U);
  EXPECT_EQ(VeriLex::GetCelldefine(), 0U);
  scan.Tokens("`celldefine\n`resetall\n");
  EXPECT_EQ(VeriLex::GetDefaultNettype(), static_cast<unsigned>(VERI_WIRE));
  EXPECT_EQ(VeriLex::GetCelldefine(), 0U);
  EXPECT_THAT(Scan::Messages(), IsEmpty());
}

TEST(Directive, UnknownArgumentsAreIgnoredWithAWarningAndMissingOnesAreMisuse) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("`default_nettype reg\n`unconnected_drive up\n`timescale fast\n` x\n`default_decay_time 5 a\n"
                        "`default_decay_time infinite\n`delay_mode_path b"),
            "ID:fast ID:x ID:a ID:b");
  EXPECT_THAT(Scan::Messages(),
              ElementsAre("1: warning: unknown nettype reg ignored", "2: warning: unknown unconnected_drive up ignored",
                          "3: error: incorrect use of predefined macro timescale. Expected <timeunit>/<time_precision>",
                          "4: error: missing compiler directive"));
}
