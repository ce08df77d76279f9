// The way of a kernel message to the host: its number, text, place and delivery.
#include "zelk_msg_handler.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "flow/info_objects.h"
#include "msg.h"
#include "util/linefile.h"
#include "util/message.h"
#include "zelk_msgs.h"
#include "zelk_utility.h"

namespace {

std::vector<std::string> debug_lines;
std::vector<std::string> internal_errors;

} // namespace

// The adapter's services, as the handler uses them.
void zelk_msg_debug(const char* format, ...) {
  char text[512];
  va_list args;
  va_start(args, format);
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  debug_lines.emplace_back(text);
}

void zelk_norvel_ie(const char* text, const char*, int) { internal_errors.emplace_back(text); }

namespace {

struct Shown {
  unsigned id;
  MSG_KIND_ENUM kind;
  std::string name;
  std::string text;
  std::string place;
};

class Recorder : public MSG_SINK {
public:
  void on_message(const MSG_BASE& message) override {
    std::string place = message.has_location() ? message.get_file() + ":" + std::to_string(message.get_line()) : "";
    shown.push_back({message.get_id(), message.get_kind(), message.get_name(), message.get_text(), place});
  }
  void on_internal_error(const std::string&, const std::string&, const std::string&, int) override {}
  void on_debug(const std::string&, const std::string&) override {}
  std::vector<Shown> shown;
};

class HandlerTest : public testing::Test {
protected:
  void SetUp() override {
    Message::FreeStaticMemory();
    Message::SetConsoleOutput(0);
    Message::RegisterCallBackMsg(zelk_message_handler);
    zelk_init_message_handler();
    msg_get_default_report()->reset();
    former = msg_get_default_report()->set_sink(&sink);
    place = LineFile::EncodeLineFile("dir/top.v", 12);
    debug_lines.clear();
    internal_errors.clear();
  }
  void TearDown() override {
    msg_get_default_report()->set_sink(former);
    msg_get_default_report()->reset();
    Message::RegisterCallBackMsg(nullptr);
    Message::FreeStaticMemory();
    LineFile::FreeLineFileMaps();
  }
  Recorder sink;
  MSG_SINK* former = nullptr;
  linefile_type place = 0;
};

TEST_F(HandlerTest, SeverityDecidesWhichHostMessageAnIdBecomes) {
  for (msg_type_t type : {MSG_ERROR, MSG_WARNING, MSG_INFO})
    Message::Msg(type, "VERI-1177", place, "see declaration of %s", "a");
  ASSERT_EQ(sink.shown.size(), 3U);
  EXPECT_EQ(sink.shown[0].text, "HDL error at top.v(12): see declaration for object \"a\"");
  EXPECT_EQ(sink.shown[1].text, "HDL warning at top.v(12): see declaration for object \"a\"");
  EXPECT_EQ(sink.shown[2].text, "HDL info at top.v(12): see declaration for object \"a\"");
  EXPECT_EQ(sink.shown[0].id, 10784U);
  EXPECT_EQ(sink.shown[1].id, 10359U);
  EXPECT_EQ(sink.shown[2].id, 10499U);
  EXPECT_EQ(sink.shown[0].name, "EZELK_HDL_SEE_DECLARATION");
  EXPECT_EQ(sink.shown[0].place, "dir/top.v:12");
  EXPECT_EQ(msg_get_default_report()->get_message_count(MSG_KIND_ERROR), 1U);
}

TEST_F(HandlerTest, ArgumentsKeepTheirOrderAndTypes) {
  Message::Msg(MSG_ERROR, "VERI-2015", place,
               "index %d cannot fall outside the declared range [%d:%d] for dimension %d of array %s", 9, 7, 0, 1, "m");
  Message::Msg(MSG_INFO, "VDB-2018", place, "using initial value %c for net %s", '1', "n");
  ASSERT_EQ(sink.shown.size(), 2U);
  EXPECT_EQ(sink.shown[0].text, "Verilog HDL error at top.v(12): index 9 cannot fall outside the declared range [7:0] "
                                "for dimension 1 of array \"m\"");
  EXPECT_EQ(sink.shown[1].text, "Using initial value '1' for net \"n\" at top.v(12)");
}

TEST_F(HandlerTest, UnknownIdsBecomeGenericMessages) {
  Message::Msg(MSG_ERROR, nullptr, place, "strange %s", "thing");
  Message::Msg(MSG_WARNING, "VERI-9999", 0, "strange");
  Message::Msg(MSG_INFO, nullptr, 7, "a line without file");
  Message::Msg(MSG_PROGRAM_ERROR, "VERI-1018", 0, "an information only");
  ASSERT_EQ(sink.shown.size(), 4U);
  EXPECT_EQ(sink.shown[0].text, "Verilog HDL or VHDL error at top.v(12): strange thing");
  EXPECT_EQ(sink.shown[0].place, "dir/top.v:12");
  EXPECT_EQ(sink.shown[1].text, "Verilog HDL or VHDL warning: strange");
  EXPECT_EQ(sink.shown[1].place, "");
  EXPECT_EQ(sink.shown[2].text, "Verilog HDL or VHDL information: a line without file");
  EXPECT_EQ(sink.shown[3].text, "Verilog HDL or VHDL error: an information only");
}

TEST_F(HandlerTest, ProgressMessagesAreDebugOutputWithTheirPlace) {
  Message::Msg(MSG_INFO, "VERI-1018", place, "compiling module %s", "m");
  Message::PrintLine("a comment");
  Message::Msg(MSG_WARNING, "VHDL-1050", place, "library clause for %s is not needed", "ieee");
  EXPECT_TRUE(sink.shown.empty());
  EXPECT_EQ(debug_lines, (std::vector<std::string>{"compiling module m at top.v(12)", "a comment",
                                                   "library clause for ieee is not needed"}));
}

TEST_F(HandlerTest, UnknownTypesAreInternalErrors) {
  Message::Msg(MSG_NONE, "VERI-1177", place, "see declaration of %s", "a");
  EXPECT_EQ(internal_errors, std::vector<std::string>{"Bad Kestrin message type: 0"});
  EXPECT_TRUE(sink.shown.empty());
}

TEST_F(HandlerTest, AnElaborationQueuesItsMessages) {
  HDB_ACTION_PT_INSTANCE project;
  HDB_SOURCE_FILE file("dir/top.v", 0);
  HDB_DESIGN_UNIT unit(&file, MSG_TEXT_LOCATION_SCHEMA("dir/top.v", 1, 0), "top", nullptr,
                       HDB_DESIGN_UNIT::TYPE_UNKNOWN, "work");
  FLOW_ELABORATE_INFO info(project, &unit, {}, "", FLOW_ELABORATE_INFO::PLACE_TOP, FLOW_ELABORATE_INFO::MODE_FULL);
  zelk_current_elab_info = &info;
  Message::Msg(MSG_ERROR, "VERI-1177", place, "see declaration of %s", "a");
  Message::Msg(MSG_INFO, "VERI-1177", place, "see declaration of %s", "b");
  Message::Msg(MSG_INFO, "VERI-1018", place, "compiling module %s", "m");
  Message::Msg(MSG_WARNING, "VERI-9999", 0, "strange");
  zelk_current_elab_info = nullptr;
  EXPECT_TRUE(sink.shown.empty());
  EXPECT_EQ(msg_get_default_report()->get_message_count(MSG_KIND_ERROR), 0U);
  std::vector<std::unique_ptr<MSG_BASE>> queue = info.take_messages();
  ASSERT_EQ(queue.size(), 3U) << "in the order of their raising, without debug output";
  EXPECT_EQ(queue[0]->get_id(), 10784U);
  EXPECT_EQ(queue[0]->get_line(), 12);
  EXPECT_EQ(queue[1]->get_id(), 10499U);
  EXPECT_EQ(queue[2]->get_name(), "WZELK_GENERIC_WARNING");
  for (const auto& message : queue) message->report(0);
  EXPECT_EQ(sink.shown.size(), 3U);
  EXPECT_EQ(msg_get_default_report()->get_message_count(MSG_KIND_ERROR), 1U);
}

TEST_F(HandlerTest, LocationsShowTheFileWithoutItsPath) {
  EXPECT_EQ(zelk_build_location_string(place), "top.v(12)");
  EXPECT_EQ(zelk_build_location_string(12), "");
  Message::Msg(MSG_ERROR, nullptr, LineFile::EncodeLineFile("C:\\work\\a.v", 3), "odd");
  EXPECT_EQ(sink.shown.back().text, "Verilog HDL or VHDL error at a.v(3): odd");
  std::unique_ptr<MSG_TEXT_LOCATION_SCHEMA> schema(zelk_build_text_location_schema(place));
  EXPECT_EQ(schema->get_file(), "dir/top.v");
  EXPECT_EQ(schema->get_line(), 12);
}

TEST(Messages, TheRegistrarKnowsEveryNumberWithItsKind) {
  EXPECT_EQ(MSG_ID_REGISTRAR::get_kind(10784), MSG_KIND_ERROR);
  EXPECT_EQ(MSG_ID_REGISTRAR::get_kind(10499), MSG_KIND_INFO);
  EXPECT_EQ(MSG_ID_REGISTRAR::get_kind(10359), MSG_KIND_WARNING);
  EXPECT_EQ(MSG_ID_REGISTRAR::get_kind(10003), MSG_KIND_ERROR);
  EXPECT_FALSE(MSG_ID_REGISTRAR::is_known(9999));
}

TEST(Messages, NullStringsReadAsEmpty) {
  std::unique_ptr<MSG_BASE> message(MSG_ZELK::E::MODULE_NAMES_DIF_ONLY_IN_CASE("Top", nullptr));
  EXPECT_EQ(message->get_name(), "EZELK_MODULE_NAMES_DIF_ONLY_IN_CASE");
  EXPECT_NE(message->get_text().find("for both \"Top\" and \"\""), std::string::npos);
}

} // namespace
