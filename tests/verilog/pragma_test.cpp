// Comments and what is said in them: pragmas, switched-off text, directives for dialect and messages, annotations.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "verilog/scan.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// The pending pragmas as "name=value", which are pending no more.
std::vector<std::string> pragmas() {
  std::vector<std::string> all;
  if (const auto taken = VeriPragmas::Take())
    for (auto [name, value] : taken->All()) all.push_back(std::string(name) + "=" + value);
  return all;
}

/// Directives that write down what is asked of them; numbers from 9000 are errors, 0 is no message.
class RecordingDirectives : public MessageDirectives {
public:
  explicit RecordingDirectives(std::vector<std::string>* log) : _log(log) {}
  bool CheckMsgId(unsigned id, const char* text, const char*, unsigned) override {
    if (text) _log->push_back(std::string("bad ") + text);
    return id != 0;
  }
  bool IsErrorMessage(unsigned id) const override { return id >= 9000; }
  void MessageOn(unsigned id) override { _log->push_back("on " + std::to_string(id)); }
  void MessageOff(unsigned id) override { _log->push_back("off " + std::to_string(id)); }
  void SetMessageLevel(unsigned level, linefile_type) override { _log->push_back("level " + std::to_string(level)); }
  void RefreshMessageStatus() override { _log->push_back("refresh"); }

private:
  std::vector<std::string>* _log;
};

} // namespace

TEST(Comment, CommentsAreNothingButLines) {
  EXPECT_EQ(Scan().TokensAndLines("a // b\nc /* d\n ** e */ f /**/ g"), "1:ID:a 2:ID:c 3:ID:f 3:ID:g");
}

TEST(Comment, WhatIsWrongWithCommentsIsTold) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("/* a\n /* b */ c */ d"), "ID:c ID:d");
  EXPECT_THAT(Scan::Messages(), ElementsAre("2: warning: /* in comment", "2: error: */ outside comment"));
  EXPECT_EQ(scan.Tokens("a /* b\n c"), "ID:a");
  EXPECT_THAT(Scan::Messages(), ElementsAre("2: error: long comment was not closed"));
}

TEST(Pragma, ACommentThatOpensWithATriggerHoldsPragmas) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("a /* synthesis keep full_case max = 4 enc = \"one, hot\"*/ b"), "ID:a ID:b");
  EXPECT_THAT(pragmas(), ElementsAre("keep=1", "full_case=1", "max=4", "enc=\"one, hot\""));
  EXPECT_THAT(scan.services.checked,
              ElementsAre("synthesis keep", "synthesis full_case", "synthesis max", "synthesis enc"));
  for (const char* trigger : {"norvel", "synopsys", "exemplar", "pragma"}) {
    scan.Tokens(std::string("// \t") + trigger + " keep\n");
    EXPECT_THAT(pragmas(), ElementsAre("keep=1")) << trigger;
  }
  scan.Tokens("// Synthesis a\n//synthesisb\n// x synthesis c\n// synthesis , d\n");
  EXPECT_THAT(pragmas(), IsEmpty());
}

TEST(Pragma, AnUnknownAttributeIsNotKept) {
  Scan scan;
  scan.services.unknown_attribute = "odd";
  scan.Tokens("// synthesis odd keep\n");
  EXPECT_THAT(pragmas(), ElementsAre("keep=1"));
}

TEST(Pragma, TheLastValueOfANameCounts) {
  Scan scan;
  scan.Tokens("// synthesis max=1\n// synthesis max=2\n");
  EXPECT_THAT(pragmas(), ElementsAre("max=2"));
  EXPECT_THAT(Scan::Messages(), ElementsAre("2: warning: overriding existing value for attribute max"));
}

TEST(Pragma, APragmaBehindAClosedDeclarationIsMisplaced) {
  Scan scan;
  scan.Tokens("a; // synthesis keep\nb");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: warning: misplaced attribute keep with value 1"));
  EXPECT_TRUE(VeriPragmas::Empty());
  scan.Tokens("a // synthesis keep\n;");
  EXPECT_THAT(Scan::Messages(), IsEmpty());
  EXPECT_THAT(pragmas(), ElementsAre("keep=1"));

  const std::string path = scan.AddFile("taken.v", "a; // synthesis keep\nb");
  ASSERT_TRUE(VeriLex::StartFlex(path.c_str(), VERI_2K, &scan.macros, nullptr));
  veri_token token;
  VeriLex::NextToken(&token);
  VeriLex::NextToken(&token);
  VeriLex::ClearSemicolonFlag();
  VeriLex::NextToken(&token);
  EXPECT_THAT(pragmas(), ElementsAre("keep=1"));
  EXPECT_THAT(Scan::Messages(), IsEmpty());
}

TEST(TranslateOff, TextIsDroppedUpToTheCommentThatTurnsItOn) {
  EXPECT_EQ(Scan().Tokens("a /* synthesis translate_off */ x /* synthesis translate_on */ b"), "ID:a ID:b");
  EXPECT_EQ(Scan().TokensAndLines("a\n// synopsys translate off\n\"x `endif // y /*\n/* translate_on */\n"
                                  "// norvel synthesis_on more\nb"),
            "1:ID:a 6:ID:b");
}

TEST(TranslateOff, RegionsNest) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("// synthesis translate_off\nx\n// synthesis translate_off\ny\n// synthesis translate_on\nz\n"
                        "// synthesis translate_on\na"),
            "ID:a");
  EXPECT_EQ(VeriLex::GetTranslateOffNesting(), 0U);
}

TEST(TranslateOff, AnUnclosedRegionIsAnError) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("a\n// synthesis translate_off\nb\n"), "ID:a");
  EXPECT_THAT(Scan::Messages(), ElementsAre("4: error: unmatched translate/synthesis off pragma"));
}

TEST(TranslateOff, TheSettingReadsTheTextAllTheSame) {
  Scan scan;
  VeriLex::SetIgnoreTranslateOff(1);
  EXPECT_EQ(scan.Tokens("a /* synthesis translate_off */ b // synthesis translate_on\n c"), "ID:a ID:b ID:c");
}

TEST(ReadComments, CommentsAreReadAsSourceBetweenThePragmas) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("// synthesis read_comments_as_HDL on\n// a /* b */ c\n// synthesis read_comments_as_HDL off\n"
                        "// d\n e"),
            "ID:a ID:b ID:c ID:e");
  EXPECT_THAT(Scan::Messages(), IsEmpty());
  EXPECT_EQ(scan.services.checked.front(), "synthesis read_comments_as_HDL");
}

TEST(InputVersion, TheDialectChangesBetweenDesignUnitsOnly) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("logic // synthesis VERILOG_INPUT_VERSION systemverilog_2005\nlogic\n"
                        "// synthesis VERILOG_INPUT_VERSION Verilog_1995\ngenerate\n"
                        "/* synthesis VERILOG_INPUT_VERSION System_Verilog_2005*/ logic"),
            "ID:logic logic ID:generate logic");
  EXPECT_EQ(scan.client.dialect, VERI_SV);
  scan.Tokens("// synthesis VERILOG_INPUT_VERSION VHDL\n");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: VHDL is an illegal value for the VERILOG_INPUT_VERSION "
                                            "synthesis directive"));
  scan.client.between_units = false;
  EXPECT_EQ(scan.Tokens("// synthesis VERILOG_INPUT_VERSION systemverilog_2005\nlogic"), "ID:logic");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: can't switch VERILOG_INPUT_VERSION inside a scope"));
}

TEST(MessageDirective, IdsAndLevelsReachTheRegisteredDirectives) {
  Scan scan;
  std::vector<std::string> log;
  VeriLex::RegisterMsgDirectives(new RecordingDirectives(&log));
  scan.Tokens("// synthesis message_off 10 20\n// synthesis message_on 10 99999999999 9001\n"
              "// synthesis message_level HIGH\n// synthesis message_level loud\n");
  EXPECT_THAT(log, ElementsAre("off 10", "off 20", "refresh", "on 10", "bad 99999999999", "refresh", "level 2",
                               "refresh", "level 1", "refresh"));
  EXPECT_THAT(scan.services.debug, ElementsAre("message_off 10", "message_off 20", "message_on 10"));
  EXPECT_THAT(
      Scan::Messages(),
      ElementsAre("2: error: can't disable/enable error message id 9001 with a message_on/message_off directive",
                  "4: error: unrecognized message directive: \"loud\"."));
  log.clear();
  scan.client.between_units = false;
  scan.Tokens("// synthesis message_off 10\n// synthesis message_level low\n");
  EXPECT_THAT(log, IsEmpty());
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: message directive is not allowed inside a scope.",
                                            "2: error: message directive is not allowed inside a scope."));
}

TEST(Annotation, LinesAreKeptForTheModuleAndItsPorts) {
  Scan scan;
  EXPECT_EQ(scan.Tokens("// norvel fabr_builder_info_begin\n// one \n\n//two\n//port_info clk\n//  is a clock\n"
                        "//port_info_end\n// three\n// norvel fabr_builder_info_end\nmodule"),
            "module");
  const auto annotations = VeriAnnotations::Take();
  ASSERT_TRUE(annotations);
  const auto lines = [&annotations](const char* key) {
    std::vector<std::string> texts;
    if (const VeriAnnotations::Lines* found = annotations->Find(key))
      for (const char* text : found->texts) texts.emplace_back(text);
    return texts;
  };
  EXPECT_THAT(lines("module"), ElementsAre("one", "two", "three"));
  EXPECT_THAT(lines("clk"), ElementsAre("is a clock"));
  EXPECT_EQ(LineFile::GetLineNo(annotations->Find("clk")->linefile), 6U);
  EXPECT_THAT(Scan::Messages(), IsEmpty());
}

TEST(Annotation, WhatIsOutOfOrderIsAnError) {
  const struct {
    const char* text;
    const char* problem;
  } cases[] = {
      {"// norvel fabr_builder_info_end\n", "unmatched fabr_builder_info_end pragma"},
      {"// norvel fabr_builder_info_begin\n// norvel fabr_builder_info_begin\n",
       "unmatched fabr_builder_info_begin pragma"},
      {"// norvel fabr_builder_info_begin\n//port_info a\n//port_info b\n", "unmatched port_info annotation"},
      {"// norvel fabr_builder_info_begin\n//port_info_end\n", "unmatched port_info_end annotation"},
      {"// norvel fabr_builder_info_begin\n x\n", "expecting annotations"},
  };
  for (const auto& [text, problem] : cases) {
    Scan scan;
    scan.Tokens(text);
    const std::vector<std::string> messages = Scan::Messages();
    ASSERT_EQ(messages.size(), 1U) << problem;
    EXPECT_THAT(messages[0], testing::EndsWith(std::string("fabr builder annotation format error: ") + problem));
  }
  Scan scan;
  scan.client.between_units = false;
  EXPECT_EQ(scan.Tokens("// norvel fabr_builder_info_begin\nx"), "ID:x");
  EXPECT_THAT(Scan::Messages(), ElementsAre("1: error: fabr builder annotation format error: annotation is not allowed "
                                            "inside a scope"));
}
