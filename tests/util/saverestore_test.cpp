// SaveRestore: what is written reads back, and damaged files end in zeros.
#include "util/saverestore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "containers/assertion.h"
#include "util/message.h"

namespace {

std::vector<std::string> lines;
void RecordLine(const char* text) { lines.emplace_back(text); }

std::vector<std::string> reports;
void RecordReport(const char* text, const char*, int) { reports.emplace_back(text); }

class SaveRestoreTest : public testing::Test {
protected:
  void SetUp() override {
    path = testing::TempDir() + "zelk_saverestore_test.db";
    Message::SetConsoleOutput(0);
    Message::RegisterCallBackError(RecordLine);
    Message::RegisterCallBackInfo(RecordLine);
    lines.clear();
    reports.clear();
    kestrin_set_report_handler(RecordReport);
  }
  void TearDown() override {
    kestrin_set_report_handler(nullptr);
    Message::RegisterCallBackError(nullptr);
    Message::RegisterCallBackInfo(nullptr);
    Message::FreeStaticMemory();
    LineFile::FreeLineFileMaps();
    std::filesystem::remove(path);
  }
  std::unique_ptr<SaveRestore> Writer() { return std::make_unique<SaveRestore>(path.c_str(), 0); }
  std::unique_ptr<SaveRestore> Reader() { return std::make_unique<SaveRestore>(path.c_str(), 1); }

  std::string Bytes() {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void SetBytes(const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }

  std::string path;
};

std::string Word(uint32_t value) { return {reinterpret_cast<const char*>(&value), sizeof value}; }

TEST_F(SaveRestoreTest, ValuesReadBackAsTheyWereWritten) {
  const std::string longer(200000, 'x');
  {
    auto out = Writer();
    out->SaveInteger(-5);
    out->SaveInteger(2147483647);
    out->SaveString("text");
    out->SaveString("");
    out->SaveString(nullptr);
    out->SaveString(longer.c_str());
    out->SaveDouble(0.1);
    out->SaveDouble(-1e200);
    EXPECT_TRUE(out->IsOK());
  }
  auto in = Reader();
  EXPECT_EQ(in->RestoreInteger(), -5);
  EXPECT_EQ(in->RestoreInteger(), 2147483647);
  EXPECT_STREQ(OwnedString(in->RestoreString()).get(), "text");
  EXPECT_STREQ(OwnedString(in->RestoreString()).get(), "");
  EXPECT_EQ(in->RestoreString(), nullptr);
  EXPECT_EQ(OwnedString(in->RestoreString()).get(), longer);
  EXPECT_DOUBLE_EQ(in->RestoreDouble(), 0.1);
  EXPECT_DOUBLE_EQ(in->RestoreDouble(), -1e200);
  in.reset();
  EXPECT_TRUE(reports.empty()) << "the end mark follows";
}

TEST_F(SaveRestoreTest, TheFileBeginsAndEndsWithTheMagicNumber) {
  Writer()->SaveInteger(1);
  EXPECT_EQ(Bytes(), Word(52390930) + Word(21) + Word(1) + Word(0x031F6C12));
}

TEST_F(SaveRestoreTest, AFileOfTheOtherByteOrderRestores) {
  {
    auto out = Writer();
    out->SaveInteger(0x01020304);
    out->SaveInteger(-2);
  }
  std::string bytes = Bytes();
  for (size_t i = 0; i + 4 <= bytes.size(); i += 4) std::reverse(bytes.begin() + i, bytes.begin() + i + 4);
  SetBytes(bytes);
  auto in = Reader();
  EXPECT_EQ(in->RestoreInteger(), 0x01020304);
  EXPECT_EQ(in->RestoreInteger(), -2);
  in.reset();
  EXPECT_TRUE(reports.empty());
}

TEST_F(SaveRestoreTest, FilesThatAreNoDatabaseAreRefused) {
  SetBytes("something else altogether");
  EXPECT_FALSE(Reader()->IsOK());
  EXPECT_EQ(lines.back(), "ERROR: file " + path + " is probably not a Kestrin binary database file\n");
  SetBytes(Word(52390930) + Word(22));
  EXPECT_FALSE(Reader()->IsOK());
  EXPECT_EQ(lines.back(), "ERROR: file " + path + " was created with a different version ; cannot restore\n");
  SetBytes(Word(52390930) + Word(0x50015) + Word(7) + Word(52390930));
  EXPECT_EQ(Reader()->RestoreInteger(), 7) << "only the lower half of the version word counts";
  std::filesystem::remove(path);
  auto in = Reader();
  EXPECT_FALSE(in->IsOK());
  EXPECT_EQ(in->RestoreInteger(), 0);
  EXPECT_EQ(lines.back(), "ERROR: cannot open file " + path + "\n");
}

TEST_F(SaveRestoreTest, ATruncatedFileReadsAsZerosFromTheCutOn) {
  {
    auto out = Writer();
    out->SaveInteger(1);
    out->SaveString("abcdef");
    out->SaveInteger(2);
  }
  SetBytes(Bytes().substr(0, 19));
  auto in = Reader();
  EXPECT_EQ(in->RestoreInteger(), 1);
  EXPECT_EQ(in->RestoreString(), nullptr);
  EXPECT_FALSE(in->IsOK());
  EXPECT_EQ(in->RestoreInteger(), 0);
  EXPECT_EQ(in->RestoreLinefile(), 0U);
  EXPECT_EQ(in->RestorePointer(), nullptr);
}

TEST_F(SaveRestoreTest, AbsurdLengthsAndAMissingEndAreNoticed) {
  SetBytes(Word(52390930) + Word(21) + Word(0x7FFFFFFF) + "short");
  auto in = Reader();
  EXPECT_EQ(in->RestoreString(), nullptr);
  EXPECT_FALSE(in->IsOK());
  SetBytes(Word(52390930) + Word(21) + Word(0x80000000) + "short");
  EXPECT_EQ(Reader()->RestoreString(), nullptr);
  SetBytes(Word(52390930) + Word(21) + Word(5));
  Reader().reset();
  EXPECT_EQ(reports.size(), 1U) << "of the one stream that was good to its end";
}

TEST_F(SaveRestoreTest, ObjectsReferToEachOtherByTheOrderOfRegistration) {
  int a = 0;
  int b = 0;
  {
    auto out = Writer();
    out->RegisterPointer(&a);
    out->RegisterPointer(&b);
    EXPECT_TRUE(out->IsSaved(&a));
    out->SavePointer(&b);
    out->SavePointer(nullptr);
    out->SavePointer(&a);
  }
  int restored_a = 0;
  int restored_b = 0;
  int replacement = 0;
  auto in = Reader();
  in->RegisterPointer(&restored_a);
  in->RegisterPointer(&restored_b);
  EXPECT_EQ(in->Pointer2Id(&restored_b), 2U);
  EXPECT_EQ(in->RestorePointer(), &restored_b);
  EXPECT_EQ(in->RestorePointer(), nullptr);
  in->ReRegister(&restored_a, &replacement);
  EXPECT_FALSE(in->IsRegistered(&restored_a));
  EXPECT_EQ(in->RestorePointer(), &replacement);
  EXPECT_TRUE(in->IsOK());
  in->UnRegister(&replacement);
  EXPECT_EQ(in->Id2Pointer(1), nullptr);
}

TEST_F(SaveRestoreTest, UnknownObjectsAndSecondRegistrationsSpoilTheStream) {
  int a = 0;
  auto out = Writer();
  out->SavePointer(&a);
  EXPECT_FALSE(out->IsOK());
  out = Writer();
  out->RegisterPointer(&a);
  out->RegisterPointer(&a);
  EXPECT_FALSE(out->IsOK());
  out.reset();
  SetBytes(Word(52390930) + Word(21) + Word(9) + Word(52390930));
  auto in = Reader();
  EXPECT_EQ(in->RestorePointer(), nullptr);
  EXPECT_FALSE(in->IsOK());
}

TEST_F(SaveRestoreTest, LocationsSurviveAChangeOfFileIds) {
  {
    auto out = Writer();
    out->SaveLinefile(LineFile::EncodeLineFile("a.v", 3));
    out->SaveLinefile(LineFile::EncodeLineFile("b.v", 4));
    out->SaveLinefile(LineFile::EncodeLineFile("a.v", 5));
    out->SaveLinefile(0);
    out->SaveLinefile(6);
  }
  EXPECT_EQ(lines, (std::vector<std::string>{"a.v(3): INFO: object saved from new file\n",
                                             "b.v(4): INFO: object saved from new file\n"}));
  LineFile::FreeLineFileMaps();
  LineFile::EncodeLineFile("other.v", 1);
  auto in = Reader();
  for (const char* expected : {"a.v:3", "b.v:4", "a.v:5"}) {
    linefile_type location = in->RestoreLinefile();
    ASSERT_NE(LineFile::GetFileName(location), nullptr);
    EXPECT_EQ(LineFile::GetFileName(location) + (":" + std::to_string(LineFile::GetLineNo(location))), expected);
  }
  EXPECT_EQ(in->RestoreLinefile(), 0U);
  EXPECT_EQ(in->RestoreLinefile(), 6U);
}

} // namespace
