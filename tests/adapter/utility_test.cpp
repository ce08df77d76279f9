// The services of the adapter: flags, file look-up, memory files, message directives, checks of attributes.
#include "zelk_utility.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "cfg.h"
#include "containers/views.h"
#include "gen.h"
#include "host/scratch_dir.h"
#include "msg.h"
#include "output/mif_file.h"
#include "util/services.h"
#include "util/strings.h"
#include "zelk_attribute_check.h"
#include "zelk_mif.h"
#include "zelk_msg_directives.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct RECORDING_SINK : MSG_SINK {
  std::vector<std::string> names;
  void on_message(const MSG_BASE& message) override { names.push_back(message.get_name()); }
  void on_internal_error(const std::string& text, const std::string&, const std::string&, int) override {
    names.push_back("internal: " + text);
  }
  void on_debug(const std::string&, const std::string&) override {}
};

class AdapterTest : public testing::Test {
protected:
  AdapterTest() {
    zelk_connect_kernel();
    zelk_rebuild_flags();
    msg_get_default_report()->set_sink(&sink);
  }
  ~AdapterTest() override {
    delete zelk_flags;
    zelk_flags = nullptr;
    msg_get_default_report()->set_sink(nullptr);
    msg_get_default_report()->reset();
    MSG_INTERNAL_ERROR::reset_count();
    cfg_clear();
  }
  RECORDING_SINK sink;
};

using FlagStoreTest = AdapterTest;

TEST_F(FlagStoreTest, AFlagNobodyWroteTakesItsConfigurationVariableOnce) {
  cfg_set_value("zelk_some_flag", "on");
  EXPECT_EQ(zelk_flags->get_cfg_flag("zelk_some_flag"), 1);
  cfg_set_value("zelk_some_flag", "off");
  EXPECT_EQ(kestrin_flag("zelk_some_flag"), 1);
  zelk_rebuild_flags();
  EXPECT_EQ(kestrin_flag("zelk_some_flag"), 0);
}

TEST_F(FlagStoreTest, AWrittenFlagWinsOverTheVariableAndMayBeALimit) {
  cfg_set_value("zelk_limit", "on");
  kestrin_set_flag("zelk_limit", 2147483647);
  EXPECT_EQ(zelk_flags->get_cfg_flag("zelk_limit"), 2147483647);
}

class FindFileTest : public AdapterTest {
protected:
  FindFileTest() { gen_set_project_dir(folder.path("")); }
  ~FindFileTest() override {
    gen_clear_search_dirs();
    gen_set_project_dir(".");
  }
  /// The reported and the full name joined by " -> ".
  std::string find(const char* name, const char* absolute, const char* relative) {
    auto [reported, full] = zelk_find_file(name, absolute, relative);
    OwnedString owned_reported(reported);
    OwnedString owned_full(full);
    std::string text = std::string(reported) + " -> " + (full ? full : "none");
    std::string root = folder.path("");
    for (size_t at = text.find(root); at != std::string::npos; at = text.find(root)) text.replace(at, root.size(), "@");
    return text;
  }
  SCRATCH_DIR folder;
};

TEST_F(FindFileTest, AnIncludeIsLookedForBesideItsFileAndThenAlongTheSearchDirectories) {
  std::string top = folder.write("rtl/top.v", "");
  folder.write("rtl/defs.vh", "");
  folder.write("inc/more.vh", "");
  gen_add_search_dir(folder.path("inc"));
  EXPECT_EQ(find("defs.vh", top.c_str(), "rtl/top.v"), "rtl/defs.vh -> @rtl/defs.vh");
  EXPECT_EQ(find("more.vh", top.c_str(), "rtl/top.v"), "inc/more.vh -> @inc/more.vh");
  EXPECT_EQ(find("absent.vh", top.c_str(), "rtl/top.v"), "absent.vh -> none");
}

TEST_F(FindFileTest, OneOfTheCurrentNamesServesForBoth) {
  std::string top = folder.write("rtl/top.v", "");
  folder.write("rtl/defs.vh", "");
  EXPECT_EQ(find("defs.vh", nullptr, "rtl/top.v"), "rtl/defs.vh -> @rtl/defs.vh");
  EXPECT_EQ(find("defs.vh", top.c_str(), nullptr), "@rtl/defs.vh -> @rtl/defs.vh");
  EXPECT_EQ(find("defs.vh", nullptr, "gone/top.v"), "defs.vh -> none");
}

TEST_F(FindFileTest, AFileOfTheProjectIsReportedAsGiven) {
  folder.write("data/rom.hex", "");
  EXPECT_EQ(find("data/rom.hex", nullptr, nullptr), "data/rom.hex -> @data/rom.hex");
}

class MifTest : public AdapterTest {
protected:
  MifTest() : base(folder.path("m")) {
    contents.width = 2;
    contents.depth = 4;
    contents.path = base.c_str();
    contents.entity_name = "top";
    contents.unique_name = "top.mem";
  }
  std::string generate(const std::vector<const char*>& text) {
    ArrayOf<char> words;
    for (const char* word : text) words.InsertLast(const_cast<char*>(word));
    contents.words = &words;
    return zelk_generate_mif(contents);
  }
  SCRATCH_DIR folder;
  std::string base;
  MemoryContents contents;
};

TEST_F(MifTest, TheHostReadsBackWhatWasWritten) {
  MIF_FILE file;
  ASSERT_TRUE(file.read(generate({"00", "00", "00", "1x"})));
  EXPECT_EQ(file.get_width(), 2U);
  EXPECT_EQ(file.get_words().at(2), "00");
  EXPECT_EQ(file.get_words().at(3), "1x");
}

TEST_F(MifTest, TheSameContentsUseTheSameFileAndOthersAnother) {
  std::string first = generate({"00", "01", "10", "11"});
  EXPECT_EQ(generate({"00", "01", "10", "11"}), first);
  EXPECT_NE(generate({"00", "01", "10", "10"}), first);
  contents.unique_name = "other.mem";
  EXPECT_NE(generate({"00", "01", "10", "11"}), first);
}

TEST_F(MifTest, AFileOfTheUserIsLeftAlone) {
  std::string first = generate({"00", "01", "10", "11"});
  std::ofstream(first) << "mine";
  std::string second = generate({"00", "01", "10", "11"});
  EXPECT_NE(second, first);
  EXPECT_EQ(SCRATCH_DIR::read(first), "mine");
}

TEST_F(MifTest, AWordOfAnotherWidthIsAnInternalErrorAndAnUnwritablePlaceIsReported) {
  generate({"001"});
  EXPECT_THAT(sink.names, ElementsAre("internal: entry && Strings::len(entry) == width"));
  sink.names.clear();
  base = folder.path("absent/m");
  contents.path = base.c_str();
  EXPECT_EQ(generate({"00"}), "");
  EXPECT_THAT(sink.names, ElementsAre("EZELK_CANT_OPEN_FILE"));
}

using DirectivesTest = AdapterTest;

TEST_F(DirectivesTest, ALevelShowsWhatItNamesAndSingleSwitchesWinOverIt) {
  const unsigned of_medium = 10041;
  const unsigned of_high = 10035;
  const unsigned always = 10237;
  const MSG_REPORT* report = msg_get_default_report();
  auto shown = [&] {
    return std::vector<bool>{report->is_enabled(of_medium), report->is_enabled(of_high), report->is_enabled(always)};
  };
  ZELK_MSG_DIRECTIVES::DisableMessage(always);
  ZELK_MSG_DIRECTIVES::EnableMessageLevel(MESSAGE_LEVEL_LOW);
  EXPECT_THAT(shown(), ElementsAre(false, false, true));
  ZELK_MSG_DIRECTIVES::EnableMessageLevel(MESSAGE_LEVEL_MEDIUM);
  EXPECT_THAT(shown(), ElementsAre(true, false, true));
  ZELK_MSG_DIRECTIVES::EnableMessageLevel(MESSAGE_LEVEL_HIGH);
  EXPECT_THAT(shown(), ElementsAre(true, true, true));

  ZELK_MSG_DIRECTIVES directives;
  directives.SetMessageLevel(MESSAGE_LEVEL_LOW, 0);
  directives.MessageOff(of_high);
  directives.MessageOn(of_high);
  directives.MessageOff(always);
  directives.RefreshMessageStatus();
  EXPECT_THAT(shown(), ElementsAre(false, true, false));
}

TEST_F(DirectivesTest, OnlyKnownNumbersOfSourceMessagesCanBeSwitched) {
  EXPECT_TRUE(ZELK_MSG_DIRECTIVES::check_msg_id(10035, "10035", "t.v", 3));
  EXPECT_THAT(sink.names, IsEmpty());
  EXPECT_FALSE(ZELK_MSG_DIRECTIVES::check_msg_id(0, "ten", "t.v", 3));
  EXPECT_FALSE(ZELK_MSG_DIRECTIVES::check_msg_id(4, "4", "t.v", 3));
  EXPECT_FALSE(ZELK_MSG_DIRECTIVES::check_msg_id(4, "4", nullptr, 0));
  EXPECT_FALSE(ZELK_MSG_DIRECTIVES::check_msg_id(11000, "11000", "t.v", 3));
  EXPECT_THAT(sink.names, ElementsAre("EZELK_INVALID_MESSAGE_ID_STRING", "EZELK_INVALID_SRC_MESSAGE_ID",
                                      "EZELK_INVALID_MESSAGE_ID", "WZELK_NON_HDL_MSG_ID_WITH_DIRECTIVES"));
}

using AttributeCheckTest = AdapterTest;

TEST_F(AttributeCheckTest, UnknownNamesAndIllegalValuesAreWarnings) {
  EXPECT_TRUE(zelk_check_attribute_name("syn_keep", "t.v", 1));
  EXPECT_FALSE(zelk_check_attribute_name("syn_kep", "t.v", 1));
  zelk_check_attribute_value("keep", "1", "t.v", 1);
  zelk_check_attribute_value("keep", "maybe", "t.v", 1);
  zelk_check_attribute_value("message_disable", "\"10035, 4\"", "t.v", 1);
  EXPECT_THAT(sink.names,
              ElementsAre("WZELK_INVALID_ATTRIBUTE_TYPE", "WZELK_INVALID_ATTRIBUTE_VALUE",
                          "WZELK_HDL_ID_WITH_ENABLE_DISABLE_MESSAGE", "WZELK_INVALID_ENABLE_DISABLE_MESSAGE_ID"));
}

TEST_F(AttributeCheckTest, DirectivesThatFormalToolsReadAreCheckedOnlyWithSuchATool) {
  zelk_check_attribute_or_directive("full_case", "t.v", 1, false, "exemplar");
  EXPECT_THAT(sink.names, IsEmpty());
  zelk_flags->set_cfg_flag("zelk_conformal_mode", 1);
  zelk_check_attribute_or_directive("Full_Case", "t.v", 1, false, "exemplar");
  zelk_check_attribute_or_directive("full_case", "t.v", 1, false, "synopsys");
  zelk_check_attribute_or_directive("parallel_case", "t.v", 1, true, nullptr);
  zelk_check_attribute_or_directive("read_comments_as_HDL", "t.v", 1, false, "norvel");
  zelk_check_attribute_or_directive("keep", "t.v", 1, true, nullptr);
  EXPECT_THAT(sink.names,
              ElementsAre("EZELK_ILLEGAL_TRIGGER_IN_FV_MODE", "EZELK_VERILOG_2001_ATTRIBUTE_IN_CONFORMAL_MODE",
                          "EZELK_ILLEGAL_SYNTHESIS_DIRECTIVE_IN_FV_MODE"));
}

} // namespace
