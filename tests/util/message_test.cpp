// Message: repetition, counting and its limit, forced severities, hiding, outputs.
#include "util/message.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "containers/views.h"
#include "util/messagetable.h"

namespace {

struct Call {
  msg_type_t type;
  std::string id;
  std::string text;
};
std::vector<Call> calls;
std::vector<std::string> lines;

void RecordCall(msg_type_t type, const char* id, linefile_type, const char* format, va_list args) {
  char text[256];
  std::vsnprintf(text, sizeof text, format, args);
  calls.push_back({type, id ? id : "", text});
}

void RecordLine(const char* text) { lines.emplace_back(text); }

class MessageTest : public testing::Test {
protected:
  void SetUp() override {
    Message::FreeStaticMemory();
    Message::SetConsoleOutput(0);
    Message::RegisterCallBackMsg(RecordCall);
    calls.clear();
    lines.clear();
    place = LineFile::EncodeLineFile("top.v", 12);
  }
  void TearDown() override {
    Message::RegisterCallBackMsg(nullptr);
    Message::RegisterCallBackError(nullptr);
    Message::RegisterCallBackWarning(nullptr);
    Message::RegisterCallBackInfo(nullptr);
    Message::FreeStaticMemory();
    LineFile::FreeLineFileMaps();
  }
  linefile_type place = 0;
};

constexpr const char* id = "VERI-1000";

TEST_F(MessageTest, TheSameMessageAtTheSamePlaceIsShownOnce) {
  for (int i = 0; i < 2; i++) {
    Message::Msg(MSG_WARNING, id, place, "net %s has %d", "a", 1);
    Message::Msg(MSG_WARNING, id, place, "net %s has %d", "b", 1);
    Message::Msg(MSG_WARNING, id, place, "net %s has %d", "a", 2);
    Message::Msg(MSG_WARNING, id, place + 1, "net %s has %d", "a", 1);
    Message::Msg(MSG_INFO, id, place, "net %s has %d", "a", 1);
    Message::Msg(MSG_WARNING, "VERI-1001", place, "net %s has %d", "a", 1);
  }
  EXPECT_EQ(calls.size(), 6U);
}

TEST_F(MessageTest, SomeMessagesAreNeverRepetitions) {
  for (int i = 0; i < 2; i++) {
    Message::Msg(MSG_WARNING, id, 0, "without a place");
    Message::Msg(MSG_COMMENT, id, place, "a comment");
    Message::Msg(MSG_INFO, "VERI-2060", place, "verilog $display call: %s", "tick");
    Message::Msg(MSG_INFO, "SV-1124", place, "$info: %s", "tick");
    Message::Error(place, "from ", "pieces");
  }
  EXPECT_EQ(calls.size(), 10U);
}

TEST_F(MessageTest, RepetitionComparesStringsCharactersAndPlainDecimals) {
  Message::Msg(MSG_INFO, id, place, "%c", 'a');
  Message::Msg(MSG_INFO, id, place, "%c", 'b');
  EXPECT_EQ(calls.size(), 2U);
  // Other conversions do not tell messages apart.
  Message::Msg(MSG_INFO, "VERI-1001", place, "%5d", 1);
  Message::Msg(MSG_INFO, "VERI-1001", place, "%5d", 2);
  Message::Msg(MSG_INFO, "VERI-1002", place, "%lu %s", 1UL, "x");
  Message::Msg(MSG_INFO, "VERI-1002", place, "%lu %s", 2UL, "x");
  Message::Msg(MSG_INFO, "VERI-1002", place, "%lu %s", 2UL, "y");
  EXPECT_EQ(calls.size(), 5U);
}

TEST_F(MessageTest, APercentSignTakesAnArgumentFromTheComparisonAndNeverReadsBeyond) {
  Message::Msg(MSG_INFO, id, place, "%d%% of %s and %s", 50, "a", "b");
  Message::Msg(MSG_INFO, id, place, "%d%% of %s and %s", 50, "c", "b");
  EXPECT_EQ(calls.size(), 1U);
  Message::Msg(MSG_INFO, id, place, "%d%% of %s and %s", 60, "a", "b");
  EXPECT_EQ(calls.size(), 2U);
  Message::Msg(MSG_INFO, "VERI-1001", place, "%% %s %d %f", "a", 3, 0.5);
  EXPECT_EQ(calls.back().text, "% a 3 0.500000");
}

TEST_F(MessageTest, ANullArgumentEqualsAnEmptyOneAndANullIdIsAKey) {
  // Not a constant for the compiler, which would refuse a null one at an optimised build.
  const char* volatile none = nullptr;
  Message::Msg(MSG_INFO, nullptr, place, "[%s]", "");
  Message::Msg(MSG_INFO, nullptr, place, "[%s]", static_cast<const char*>(none));
  EXPECT_EQ(calls.size(), 1U);
}

TEST_F(MessageTest, ANewRunShowsAMessageAgain) {
  Message::Msg(MSG_ERROR, id, place, "wrong");
  Message::ClearErrorCount();
  EXPECT_EQ(Message::ErrorCount(), 0U);
  Message::Msg(MSG_ERROR, id, place, "wrong");
  EXPECT_EQ(calls.size(), 2U);
  EXPECT_EQ(Message::ErrorCount(), 1U);
}

TEST_F(MessageTest, AfterTwentyErrorsNothingIsShown) {
  for (unsigned i = 1; i <= 19; i++) Message::Msg(MSG_ERROR, id, 0, "error %u", i);
  EXPECT_EQ(calls.size(), 19U);
  Message::Msg(MSG_ERROR, id, 0, "error 20");
  ASSERT_EQ(calls.size(), 20U);
  EXPECT_EQ(calls.back().type, MSG_COMMENT);
  EXPECT_EQ(calls.back().text, "Sorry, too many errors..");
  EXPECT_EQ(Message::ErrorCount(), 21U);
  Message::Msg(MSG_WARNING, id, 0, "late");
  Message::PrintLine("late");
  EXPECT_EQ(calls.size(), 20U);
  Message::ClearErrorCount();
  Message::Msg(MSG_WARNING, id, 0, "again");
  EXPECT_EQ(calls.size(), 21U);
}

TEST_F(MessageTest, ForcedTypesReplaceTheRaisers) {
  EXPECT_EQ(Message::SetMessageType(nullptr, MSG_ERROR), 0U);
  EXPECT_EQ(Message::SetMessageType(id, MSG_WARNING), 1U);
  EXPECT_EQ(Message::SetMessageType(std::string(id).c_str(), MSG_IGNORE), 1U);
  Message::Msg(MSG_ERROR, id, place, "ignored");
  EXPECT_EQ(Message::ErrorCount(), 0U);
  EXPECT_TRUE(calls.empty());

  Message::SetMessageType(id, MSG_ERROR);
  Message::Msg(MSG_WARNING, id, place, "now an error");
  EXPECT_EQ(Message::ErrorCount(), 1U);
  EXPECT_EQ(Message::ClearMessageType(id), 1U);
  EXPECT_EQ(Message::ClearMessageType(id), 0U);
  Message::Msg(MSG_WARNING, id, place, "a warning");
  EXPECT_EQ(calls.back().type, MSG_WARNING);

  Message::SetMessageType(id, MSG_NONE);
  Message::Msg(MSG_ERROR, id, place, "plain");
  EXPECT_EQ(calls.back().type, MSG_NONE);
  Message::ClearAllMessageTypes();
  Message::Msg(MSG_ERROR, id, place + 1, "an error");
  EXPECT_EQ(calls.back().type, MSG_ERROR);
}

TEST_F(MessageTest, HidingLetsCriticalMessagesThrough) {
  Message::MakeCritical("VERI-1001");
  Message::MakeCritical(std::string("VERI-1001").c_str());
  Message::CriticalMessagesOnly();
  EXPECT_TRUE(Message::HidingMessages());
  Message::Msg(MSG_WARNING, id, 0, "hidden");
  Message::Msg(MSG_WARNING, nullptr, 0, "hidden");
  Message::Msg(MSG_WARNING, "VERI-1001", 0, "critical");
  Message::Msg(MSG_ERROR, id, 0, "error");
  Message::Msg(MSG_PROGRAM_ERROR, id, 0, "program error");
  EXPECT_EQ(calls.size(), 3U);
  Message::ShowAllMessages();
  Message::Msg(MSG_WARNING, id, 0, "shown");
  EXPECT_EQ(calls.size(), 4U);
}

TEST_F(MessageTest, PlainCallbacksGetTheLineWithoutItsId) {
  Message::PrintIds(1);
  Message::RegisterCallBackError(RecordLine);
  Message::RegisterCallBackWarning(RecordLine);
  Message::RegisterCallBackInfo(RecordLine);
  Message::Msg(MSG_ERROR, id, place, "bad %s", "net");
  Message::Msg(MSG_WARNING, id, 0, "odd");
  Message::Msg(MSG_INFO, id, LineFile::EncodeLineFile(nullptr, 3), "so");
  Message::Msg(MSG_COMMENT, id, 0, "no");
  Message::Msg(MSG_PROGRAM_ERROR, id, 0, "no");
  EXPECT_EQ(lines, (std::vector<std::string>{"top.v(12): ERROR: bad net\n", "WARNING: odd\n", "INFO: so\n"}));
}

TEST_F(MessageTest, TextOfAnyLengthArrivesWhole) {
  Message::RegisterCallBackError(RecordLine);
  std::string longer(10000, 'x');
  Message::Msg(MSG_ERROR, id, 0, "%s", longer.c_str());
  EXPECT_EQ(lines.back(), "ERROR: " + longer + "\n");
}

TEST_F(MessageTest, TheConsoleShowsErrorsOnTheErrorStream) {
  Message::SetConsoleOutput(1);
  Message::PrintIds(1);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  Message::Msg(MSG_ERROR, id, place, "bad");
  Message::Msg(MSG_WARNING, nullptr, place, "odd");
  Message::Msg(MSG_PROGRAM_ERROR, id, 0, "broken");
  Message::Msg(MSG_NONE, id, 0, "plain");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "top.v(12): ERROR: bad (VERI-1000)\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "top.v(12): WARNING: odd\nPROGRAM ERROR: broken (VERI-1000)\nplain (VERI-1000)\n");
}

TEST_F(MessageTest, TheLogHoldsAllMessages) {
  std::string path = testing::TempDir() + "zelk_message_test.log";
  EXPECT_EQ(Message::OpenLogFile(nullptr), 0U);
  EXPECT_EQ(Message::OpenLogFile(testing::TempDir().c_str()), 0U);
  EXPECT_EQ(calls.back().type, MSG_WARNING);
  EXPECT_EQ(calls.back().text, "cannot open log file " + testing::TempDir());
  ASSERT_EQ(Message::OpenLogFile(path.c_str()), 1U);
  Message::CriticalMessagesOnly();
  Message::Msg(MSG_WARNING, id, place, "odd");
  Message::CloseLogFile();
  Message::Msg(MSG_ERROR, id, place, "bad");
  std::stringstream text;
  text << std::ifstream(path).rdbuf();
  EXPECT_EQ(text.str(), "-- all messages logged in file " + path + "\ntop.v(12): WARNING: odd\n");
  std::filesystem::remove(path);
}

TEST_F(MessageTest, RepetitionsAtOnePlaceAreFoundAmongManyMessages) {
  for (int i = 0; i < 20000; i++) Message::Msg(MSG_WARNING, id, place, "word %d", i);
  EXPECT_EQ(calls.size(), 20000U);
  for (int i = 0; i < 20000; i++) Message::Msg(MSG_WARNING, id, place, "word %d", i);
  EXPECT_EQ(calls.size(), 20000U);
}

TEST(MessageTable, GivesOneAddressPerIdAndNullForUnknownFormats) {
  Map* verilog = nullptr;
  Map* database = nullptr;
  EXPECT_STREQ(kestrin_message_id(verilog, MESSAGE_VERILOG, "see declaration of %s"), "VERI-1177");
  EXPECT_STREQ(kestrin_message_id(verilog, MESSAGE_VERILOG, "$info: %s"), "SV-1124");
  EXPECT_EQ(kestrin_message_id(verilog, MESSAGE_VERILOG, "no such message"), nullptr);
  EXPECT_EQ(kestrin_message_id(verilog, MESSAGE_VERILOG, nullptr), nullptr);
  EXPECT_STREQ(kestrin_message_id(database, MESSAGE_DATABASE, "inferred latch %s"), "VDB-2009");
  EXPECT_EQ(kestrin_message_id(database, MESSAGE_DATABASE, "see declaration of %s"), nullptr);
  delete verilog;
  delete database;
}

} // namespace
