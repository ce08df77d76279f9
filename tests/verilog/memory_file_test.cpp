// Memory files: what is read, what is refused, and where the words go.
#include <gtest/gtest.h>

#include "verilog/elaboration.h"
#include "verilog/veridataflow.h"
#include "verilog/verimemoryfile.h"

namespace {

class MemoryFile : public testing::Test {
protected:
  MemoryFile() { _analysis.Read("module m; reg [7:0] up [2:5]; reg signed [3:0] down [3:0]; endmodule\n"); }

  std::unique_ptr<VeriMemoryFile> Read(const std::string& text, bool is_binary = false) {
    Analysis::Messages();
    std::string path = _analysis.AddFile("words.mem", text);
    return VeriMemoryFile::ReadMemoryFile(path.c_str(), "words.mem", is_binary, Analysis::Module("m"));
  }
  Lines MessagesOf(const std::string& text, bool is_binary = false) {
    EXPECT_EQ(Read(text, is_binary), nullptr);
    return Analysis::Messages();
  }
  /// The elements by position, joined by blanks; the messages when nothing is stored.
  std::string Load(const char* variable, const std::string& text, std::optional<int64_t> start = {},
                   std::optional<int64_t> stop = {}) {
    auto file = Read(text);
    VeriDataFlow flow(nullptr, /*is_initial=*/true);
    VeriVariable* memory = Analysis::Variable("m", variable);
    std::string result;
    if (!file || !file->LoadMemory(memory, &flow, start, stop, Analysis::Module("m"))) {
      for (const std::string& line : Analysis::Messages()) result += line;
      return result;
    }
    const VeriValue* value = flow.Values().Find(memory);
    for (unsigned i = 0; i < value->NumOfElements(); i++)
      result += (i ? " " : "") + value->GetElement(i)->BinaryString();
    for (const std::string& line : Analysis::Messages()) result += " " + line;
    return result;
  }

  Analysis _analysis;
};

TEST_F(MemoryFile, WordsStandBetweenWhiteSpaceAndComments) {
  auto file = Read("// one\n12 3_4\t/* two\n / * 5 */ab//x\n@1F 0\r\n\fz x@0_2 7/**/8");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->NumOfWords(), 8U);
  EXPECT_EQ(file->NumOfAddresses(), 2U);
  EXPECT_EQ(Analysis::Messages(), Lines{});
  EXPECT_EQ(_analysis.services.debug.back(), "Processed 2 addresses and 8 words in memory file");
}

TEST_F(MemoryFile, AnEmptyFileHasNoWords) {
  for (const char* text : {"", "\n", "// nothing", "/**/"}) {
    auto file = Read(text);
    ASSERT_TRUE(file) << text;
    EXPECT_EQ(file->NumOfWords(), 0U) << text;
  }
}

TEST_F(MemoryFile, WhatIsNoNumberIsReportedWhereItStands) {
  EXPECT_EQ(MessagesOf("12\n1g\n"), Lines{"2: error: illegal character g in hexidecimal number"});
  EXPECT_EQ(MessagesOf("01\n\n12\n", true), Lines{"3: error: illegal character in binary number"});
  EXPECT_EQ(MessagesOf("@1x 0"), Lines{"1: error: illegal character x in hexidecimal number"});
  EXPECT_EQ(MessagesOf("@ 0"), Lines{"1: error: syntax error near @"});
  EXPECT_EQ(MessagesOf("0 _ 0"), Lines{"1: error: syntax error near _"});
  EXPECT_EQ(MessagesOf("0 / 0"), Lines{"1: error: syntax error near /"});
  EXPECT_EQ(MessagesOf("0\n#1"), Lines{"2: error: syntax error near #"});
  EXPECT_EQ(MessagesOf(std::string("0\n\0", 3)), Lines{"2: error: syntax error near ?"});
  EXPECT_EQ(MessagesOf("1\n/* 2\n/* 3\n"),
            (Lines{"3: warning: /* in comment", "4: error: long comment was not closed"}));
}

TEST_F(MemoryFile, AFolderIsNoFile) {
  EXPECT_EQ(VeriMemoryFile::ReadMemoryFile("/", "root", false, Analysis::Module("m")), nullptr);
  EXPECT_EQ(Analysis::Messages().back(), "1: error: cannot open file root");
}

TEST_F(MemoryFile, WordsFillTheMemoryFromTheLowestIndex) {
  EXPECT_EQ(Load("up", "1 2 3 4"), "00000001 00000010 00000011 00000100");
  EXPECT_EQ(Load("down", "1 2 3 4"), "0100 0011 0010 0001");
}

TEST_F(MemoryFile, WordsAreFittedToTheElements) {
  EXPECT_EQ(Load("up", "1ff Xz 5 z"), "11111111 xxxxzzzz 00000101 0000zzzz");
}

TEST_F(MemoryFile, StartAndStopGiveRangeAndDirection) {
  EXPECT_EQ(Load("up", "1 2", 4), "xxxxxxxx xxxxxxxx 00000001 00000010");
  EXPECT_EQ(Load("up", "1 2 3", 4, 2), "00000011 00000010 00000001 xxxxxxxx");
  EXPECT_EQ(Load("up", "1", 6), "1: error: start or stop address isn't within the declared range [2:5] of memory up");
}

TEST_F(MemoryFile, AnAddressJumps) {
  EXPECT_EQ(Load("up", "@4 1 2 @2 3"), "00000011 xxxxxxxx 00000001 00000010");
  EXPECT_EQ(Load("up", "@4 1\n2\n3"), "3: error: address 6 in memory file must be within range [2:5]");
  EXPECT_EQ(Load("up", "@3 1 @ffffffffffffffffffff 2"),
            "1: error: address 2147483647 in memory file must be within range [2:5]");
  EXPECT_EQ(Load("up", "@2 1", 3, 5), "1: error: address 2 in memory file must be within range [3:5]");
}

TEST_F(MemoryFile, WithoutAddressesTheNumberOfWordsIsChecked) {
  const std::string told = " 1: warning: number of words (%) in memory file does not match the number of elements in "
                           "the address range [2:5]";
  EXPECT_EQ(Load("up", "1"), "00000001 xxxxxxxx xxxxxxxx xxxxxxxx" + std::string(told).replace(told.find('%'), 1, "1"));
  EXPECT_EQ(Load("up", "1 2 3 4 5"),
            "00000001 00000010 00000011 00000100" + std::string(told).replace(told.find('%'), 1, "5"));
}

TEST_F(MemoryFile, ASecondFileKeepsWhatTheFirstOneStored) {
  VeriDataFlow flow(nullptr, /*is_initial=*/true);
  VeriVariable* memory = Analysis::Variable("m", "up");
  for (const char* text : {"@2 1 2", "@3 7"}) {
    auto file = Read(text);
    ASSERT_TRUE(file->LoadMemory(memory, &flow, {}, {}, Analysis::Module("m")));
  }
  const VeriValue* value = flow.Values().Find(memory);
  EXPECT_EQ(value->GetElement(0)->BinaryString(), "00000001");
  EXPECT_EQ(value->GetElement(1)->BinaryString(), "00000111");
  EXPECT_EQ(value->GetElement(2)->BinaryString(), "xxxxxxxx");
}

TEST_F(MemoryFile, AWordOfAnyLengthIsRead) {
  EXPECT_EQ(Load("up", "@2 " + std::string(5000000, 'f') + "80"), "10000000 xxxxxxxx xxxxxxxx xxxxxxxx");
}

} // namespace
