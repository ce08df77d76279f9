// Tokens: words, numbers, strings, operators by dialect, tables of primitives, and the scanner's own errors.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "verilog/scan.h"
#include "verilog/veri_number.h"

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Lexer, AWordOfALaterDialectIsAnIdentifier) {
  EXPECT_EQ(Scan(VERI_95).Tokens("reg generate logic"), "reg ID:generate ID:logic");
  EXPECT_EQ(Scan(VERI_2K).Tokens("reg generate logic"), "reg generate ID:logic");
  EXPECT_EQ(Scan(VERI_SV).Tokens("reg generate logic"), "reg generate logic");
}

TEST(Lexer, EveryWordAndOperatorIsReadBackAsItsOwnToken) {
  const char* const separate_states[] = {"edge", "table", "end", ")"}; // these do more than give a token
  for (unsigned token = VERI_FIRST_TOKEN; token < VERI_AFTER_LAST_TOKEN; token++) {
    if (veri_type_of_token(token) == VERI_TOKEN_VALUE) continue;
    const std::string text = veri_token_text(token);
    if (std::find(std::begin(separate_states), std::end(separate_states), text) != std::end(separate_states)) continue;
    Scan scan(veri_dialect_of_token(token));
    EXPECT_EQ(scan.Tokens(text + " x"), text + " ID:x");
    EXPECT_THAT(Scan::Messages(), IsEmpty()) << text;
    EXPECT_EQ(veri_token_by_text(text.c_str()), token);
  }
}

TEST(Lexer, OperatorsAreAsLongAsTheDialectAllows) {
  EXPECT_EQ(Scan(VERI_95).Tokens("a>>>b **c (* d *)"), "ID:a >> > ID:b * * ID:c ( * ID:d * )");
  EXPECT_EQ(Scan(VERI_2K).Tokens("a>>>=b **c (* d *) (*)"), "ID:a >>> = ID:b ** ID:c (* ID:d *) (*)");
  EXPECT_EQ(Scan(VERI_SV).Tokens("a>>>=b==?c|->d x.*"), "ID:a >>>= ID:b ==? ID:c |-> ID:d ID:x .*");
  EXPECT_EQ(Scan(VERI_2K).Tokens("a~^b^~c"), "ID:a ~^ ID:b ~^ ID:c");
}

TEST(Lexer, AStarBeforeALineCommentMultiplies) { EXPECT_EQ(Scan().Tokens("a *// comment\n b"), "ID:a * ID:b"); }

TEST(Lexer, EscapedNamesLoseTheBackslashUnlessItIsKept) {
  Scan scan;
  EXPECT_EQ(scan.TokensAndLines("\\a+b\n\\c \\d"), "1:ID:a+b 2:ID:c 2:ID:d");
  scan.services.flag_on = "zelk_preserve_escaped_verilog_ids";
  EXPECT_EQ(scan.Tokens("\\a+b ;"), "ID:\\a+b ;");
}

TEST(Lexer, UpperCaseIdsFoldIdentifiersButNoKeywords) {
  Scan scan;
  VeriLex::SetUpperCaseIds(1);
  EXPECT_EQ(scan.Tokens("module Module1 MODULE"), "module ID:MODULE1 ID:MODULE");
}

TEST(Lexer, NumbersAreSplitIntoSizeBaseAndValue) {
  EXPECT_EQ(Scan().Tokens("8'hFf 8 'sd\n 1_0 'b 1x?Z"),
            "NUM:8 BASE:'h VALUE:Ff NUM:8 BASE:'sd VALUE:1_0 BASE:'b VALUE:1x?Z");
  EXPECT_EQ(Scan().Tokens("4'b; '0'X"), "NUM:4 BASE:'b ; FILL:'0 FILL:'X");
  EXPECT_EQ(Scan().Tokens("`define W 1f\n8'h`W;"), "NUM:8 BASE:'h VALUE:1f ;");
}

TEST(Lexer, ADecimalBeyondItsWordWarnsAndIsStillANumber) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("1_000 2147483647"), "NUM:1000 NUM:2147483647");
  EXPECT_THAT(Scan::Messages(), IsEmpty());
  EXPECT_EQ(scan.Tokens("4294967297"), "NUM:1");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: warning: constant value overflow"));
}

TEST(Lexer, RealsNeedAFractionOrAnExponent) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("1.a 1.5 2e3 1_0.2_5E-1"), "NUM:1 . ID:a REAL:1.5 REAL:2e3 REAL:1_0.2_5E-1");
  EXPECT_DOUBLE_EQ(scan.LastToken().real, 1.025);
  scan.Tokens("1e999");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: warning: constant value overflow"));
}

TEST(Lexer, TimeLiteralsAreOfSystemVerilog) {
  EXPECT_EQ(Scan(VERI_SV).Tokens("1ns 2.5us 1step"), "TIME:1ns TIME:2.5us TIME:1step");
  EXPECT_EQ(Scan(VERI_2K).Tokens("1ns"), "NUM:1 ID:ns");
}

TEST(Lexer, StringsKnowThreeEscapesAndNoOctalOnes) {
  EXPECT_EQ(Scan().Tokens(R"("a\101" "\\\"\n\t\r." "" "a//b")"), "\"a101\" \"\\\"\n\t\r.\" \"\" \"a//b\"");
}

TEST(Lexer, AStringThatRunsOverTheLineIsEmptyAndItsNewlineIsNotCounted) {
  Scan scan;
  EXPECT_EQ(scan.TokensAndLines("a \"bc\nd"), "1:ID:a 1:\"\" 1:ID:d");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: syntax error near \"\"bc\" end of line inside a string"));
  EXPECT_EQ(scan.Tokens("\"bc"), "\"\"");
}

TEST(Lexer, SystemNamesKeepTheirDollar) {
  EXPECT_EQ(Scan(VERI_SV).Tokens("$display $"), "SYS:$display $");
  Scan scan(VERI_2K);
  EXPECT_EQ(scan.Tokens("$ a"), "ILLEGAL ID:a");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: syntax error near \"$\""));
}

TEST(Lexer, ASurplusEndIsReportedAndLeftOut) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("begin end end x"), "begin end ID:x");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: syntax error near \"end\"; \"end\" without \"begin\" "));
}

TEST(Lexer, ASurplusParenthesisIsReportedAndKept) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("(a)) b"), "( ID:a ) ) ID:b");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: syntax error near \")\"; mismatched closing parenthesis "));
}

TEST(Lexer, EdgeDescriptorsAreOneToken) {
  EXPECT_EQ(Scan().Tokens("edge [01, x1,\n1Z] c"), "edge [ EDGES:01x11Z ] ID:c");
  EXPECT_EQ(Scan().Tokens("edge c"), "edge ID:c");
  EXPECT_EQ(Scan().Tokens("edge [ab] c"), "edge [ ID:ab ] ID:c");
}

TEST(Lexer, TablesHaveSymbolsOfTheirOwn) {
  Scan scan;
  EXPECT_EQ(
      scan.Tokens("table // inputs\n 0 r ?: x : -;\n (01)b * : 1:0; endtable r"),
      "table LEVEL:0 EDGE:r LEVEL:? : LEVEL:x : LEVEL:- ; EDGE:r LEVEL:b ANY:* : LEVEL:1 : LEVEL:0 ; endtable ID:r");
  EXPECT_EQ(scan.Tokens("table 0 q : 1; endtable"), "table LEVEL:0 ILLEGAL : LEVEL:1 ; endtable");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: illegal character q in UDP table"));
}

TEST(Lexer, AnEdgeInParenthesesIsOneLetter) {
  const struct {
    const char* edge;
    const char* token;
  } cases[] = {{"(10)", "EDGE:f"}, {"(01)", "EDGE:r"}, {"(00)", "EDGE:n"}, {"(x0)", "EDGE:n"}, {"(1?)", "EDGE:n"},
               {"(0b)", "EDGE:p"}, {"(11)", "EDGE:p"}, {"(B1)", "EDGE:p"}, {"(?X)", "ANY:*"}};
  for (const auto& [edge, token] : cases)
    EXPECT_EQ(Scan().Tokens(std::string("table ") + edge), std::string("table ") + token) << edge;
}

TEST(Lexer, WhatIsNoTokenIsAnErrorAndAnIllegalToken) {
  Scan scan;
  const std::string text("a \0 \x80 b", 7);
  EXPECT_EQ(scan.Tokens(text), "ID:a ILLEGAL ILLEGAL ID:b");
  EXPECT_EQ(Scan::Messages().size(), 2U);
}

TEST(Lexer, AByteOrderMarkIsNoPartOfTheText) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("\xEF\xBB\xBFmodule"), "module");
  EXPECT_EQ(scan.Tokens("\xEF\xBB"), "ILLEGAL ILLEGAL");
}

TEST(Lexer, ASyntaxErrorNamesTheTokenOrTheEnd) {
  Scan scan;
  veri_token token;
  const std::string path = scan.AddFile("error.v", "a\n(* b");
  ASSERT_TRUE(VeriLex::StartFlex(path.c_str(), VERI_2K, &scan.macros, nullptr));
  VeriLex::NextToken(&token);
  VeriLex::NextToken(&token);
  VeriLex::Error("; expecting \";\"");
  EXPECT_THAT(Scan::Messages(),
              ElementsAre("2: error: syntax error near \"(*\"; expecting \";\"",
                          "2: error: previous syntax error may be due to incorrect attribute placement"));
  VeriLex::NextToken(&token);
  VeriLex::NextToken(&token);
  EXPECT_EQ(token.code, VERI_END_OF_INPUT);
  VeriLex::Error("");
  EXPECT_THAT(Scan::Messages(), ElementsAre("2: error: syntax near EOF "));
}

TEST(Lexer, EqualTextsAreOneObject) {
  Scan scan;
  scan.Tokens("some_name");
  const char* first = scan.LastToken().text;
  scan.Tokens("other some_name");
  EXPECT_EQ(scan.LastToken().text, first);
}

TEST(Lexer, AMissingFileIsNoFile) {
  Scan scan;
  EXPECT_FALSE(VeriLex::StartFlex("no such file.v", VERI_2K, &scan.macros, nullptr));
  veri_token token;
  VeriLex::NextToken(&token);
  EXPECT_EQ(token.code, VERI_END_OF_INPUT);
}

namespace {

/// The literal's bits, highest first.
std::string bits_of(const char* text) {
  const VeriLiteralBits bits = veri_read_literal(text, 1);
  std::string image;
  for (unsigned bit = bits.Width(); bit-- > 0;)
    image += bits.X(bit) ? 'x' : bits.Z(bit) ? 'z' : bits.Value(bit) ? '1' : '0';
  return image;
}

} // namespace

TEST(Literal, DigitsFillBitsFromTheLowestUp) {
  const MessageLog log;
  EXPECT_EQ(bits_of("8'b10_1"), "00000101");
  EXPECT_EQ(bits_of("6 'o 5x"), "101xxx");
  EXPECT_EQ(bits_of("8'hZ?"), "zzzzzzzz");
  EXPECT_EQ(bits_of("12'Sd100"), "000001100100");
  EXPECT_EQ(bits_of("72'd4722366482869645213695"), std::string(72, '1'));
  EXPECT_EQ(bits_of("'hff"), "00000000000000000000000011111111");
  EXPECT_EQ(bits_of("'z") + bits_of("'1"), "z1");
  EXPECT_THAT(MessageLog::Take(), IsEmpty());
}

TEST(Literal, OnlyBitsThatAreLostAreToldOf) {
  const struct {
    const char* text;
    const char* bits;
    const char* warning;
  } cases[] = {
      {"3'b0001", "001", ""},
      {"3'b1001", "001", "1: warning: literal value truncated to fit in 3 bits"},
      {"3'h7", "111", ""},
      {"3'hF", "111", "1: warning: literal value truncated to fit in 3 bits"},
      {"4'o17", "1111", ""},
      {"2'd4", "00", "1: warning: literal value truncated to fit in 2 bits"},
      {"8'd99999999999999999999", "11111111", "1: warning: literal value truncated to fit in 8 bits"},
      {"8'sd200", "11001000", "1: warning: constant value overflow"},
      {"4'bx1", "xxx1", "1: warning: x/z extended in the significant bits of constant."},
      {"4'dz", "zzzz", "1: warning: x/z extended in the significant bits of constant."},
      {"4'b0x1", "00x1", ""},
  };
  const MessageLog log;
  for (const auto& [text, bits, warning] : cases) {
    EXPECT_EQ(bits_of(text), bits) << text;
    const std::vector<std::string> messages = MessageLog::Take();
    EXPECT_EQ(messages.empty() ? "" : messages[0], warning) << text;
  }
}

TEST(Literal, AWrongDigitIsAnErrorOfItsBase) {
  const struct {
    const char* text;
    const char* error;
  } cases[] = {{"4'b2", "1: error: illegal character in binary number"},
               {"4'o8", "1: error: illegal character in octal number"},
               {"4'hg", "1: error: illegal hexadecimal number"},
               {"4'd1a", "1: error: illegal character in decimal number"}};
  const MessageLog log;
  for (const auto& [text, error] : cases) {
    bits_of(text);
    EXPECT_THAT(MessageLog::Take(), ElementsAre(error)) << text;
  }
}

TEST(Literal, TheQuickAnswerLetsNoMessageSlip) {
  const MessageLog log;
  unsigned fits = 0;
  for (unsigned size = 1; size < 70; size += size < 12 ? 1 : 19)
    for (const char* base : {"'b", "'o", "'sd", "'d", "'H", "'Sh"})
      for (const char* digits : {"0", "1", "7", "8", "9", "10", "1_1", "00001", "13", "fF", "x", "?0", "4294967296",
                                 "2g", "9223372036854775808", "99999999999999999999", "ffffffffffffffffffff"}) {
        if (!veri_literal_fits(size, base, digits)) continue;
        fits++;
        const std::string text = std::to_string(size) + base + digits;
        veri_read_literal(text.c_str(), 1);
        EXPECT_THAT(MessageLog::Take(), IsEmpty()) << text;
      }
  EXPECT_GT(fits, 500U) << "most literals should take the quick way";
  EXPECT_TRUE(veri_literal_fits(8, "'d", "200"));
  EXPECT_FALSE(veri_literal_fits(8, "'sd", "200"));
  EXPECT_TRUE(veri_literal_fits(32, "'h", "dead_beef"));
}
