// Messages, settings, paths and files of the host.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "acf.h"
#include "cfg.h"
#include "fio.h"
#include "gen.h"
#include "gen_string_hash.h"
#include "hdb_section.h"
#include "host/scratch_dir.h"
#include "htl.h"
#include "msg.h"
#include "platform/source_lines.h"
#include "xml_writer.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

TEST(Message, ArgumentsGoWhereTheirNumbersStand) {
  MSG_E message;
  message.fill_args("array \"%1!s!\" has %2!d! elements of '%3!c!', 100% at %4!s!/EZELK_SOME_NAME", "a", -3, 'x',
                    "f.v(1)");
  EXPECT_EQ(message.get_text(), "array \"a\" has -3 elements of 'x', 100% at f.v(1)");
  EXPECT_EQ(message.get_name(), "EZELK_SOME_NAME");
}

TEST(Message, NumbersMayStandInAnyOrderAndRepeat) {
  MSG_W message;
  message.fill_args("error at %3!s!: %1!s!/%2!s!, %1!s!/WZELK_X", "one", "two", "place");
  EXPECT_EQ(message.get_text(), "error at place: one/two, one");
}

TEST(Message, SlashThatBeginsNoNameStaysInTheText) {
  MSG_I message;
  message.fill_args("either/or");
  EXPECT_EQ(message.get_text(), "either/or");
  EXPECT_EQ(message.get_name(), "");
}

struct RECORDING_SINK : MSG_SINK {
  std::vector<unsigned> ids;
  std::vector<std::string> internal;
  void on_message(const MSG_BASE& message) override { ids.push_back(message.get_id()); }
  void on_internal_error(const std::string& text, const std::string&, const std::string&, int) override {
    internal.push_back(text);
  }
  void on_debug(const std::string&, const std::string&) override {}
};

class ReportTest : public testing::Test {
protected:
  ReportTest() { msg_get_default_report()->set_sink(&sink); }
  ~ReportTest() override {
    msg_get_default_report()->set_sink(nullptr);
    msg_get_default_report()->reset();
    MSG_INTERNAL_ERROR::reset_count();
  }
  template <class MESSAGE> void report(unsigned id) {
    MESSAGE message;
    message.set_id(id);
    message.report(0);
  }
  RECORDING_SINK sink;
};

TEST_F(ReportTest, DisabledWarningsAreNeitherCountedNorShownButErrorsAlwaysAre) {
  MSG_REPORT* messages = msg_get_default_report();
  for (unsigned id : {10035U, 10041U, 10035U}) messages->disable_message(id);
  report<MSG_W>(10035);
  report<MSG_E>(10041);
  messages->enable_message(10035);
  report<MSG_W>(10035);
  EXPECT_THAT(sink.ids, ElementsAre(10041, 10035));
  EXPECT_EQ(messages->get_message_count(MSG_KIND_ERROR), 1U);
  EXPECT_EQ(messages->get_message_count(MSG_KIND_WARNING), 1U);
  EXPECT_EQ(messages->get_message_count(MSG_KIND_INFO), 0U);
}

TEST_F(ReportTest, InternalErrorIsShownCountedAndReturns) {
  MSG_INTERNAL_ERROR::report("condition", "ZELK", "file.cpp", 12);
  EXPECT_THAT(sink.internal, ElementsAre("condition"));
  EXPECT_EQ(MSG_INTERNAL_ERROR::get_count(), 1U);
}

TEST(Registrar, KnowsItsNumbersWhileItLives) {
  static const unsigned ids[] = {54321, 54322};
  static const int types[] = {MSG_KIND_WARNING, MSG_KIND_INFO};
  {
    MSG_ID_REGISTRAR registrar(ids, types, 2);
    EXPECT_EQ(MSG_ID_REGISTRAR::get_kind(54322), MSG_KIND_INFO);
    EXPECT_FALSE(MSG_ID_REGISTRAR::is_known(54323));
  }
  EXPECT_FALSE(MSG_ID_REGISTRAR::is_known(54321));
}

TEST(Configuration, VariableIsOnByWordOrNumberElseByDefault) {
  struct {
    const char* value;
    bool is_on;
  } cases[] = {{"on", true}, {"ON", true},  {"Yes", true},  {"true", true}, {"1", true},   {"20", true},
               {"0", false}, {"00", false}, {"off", false}, {"", false},    {"1x", false}, {"enabled", false}};
  for (const auto& test : cases) {
    cfg_set_value("variable", test.value);
    EXPECT_EQ(cfg_is_on("variable", true), test.is_on) << test.value;
  }
  cfg_clear();
  EXPECT_TRUE(cfg_is_on("variable", true));
  EXPECT_FALSE(cfg_is_on("variable", false));
  EXPECT_EQ(cfg_get_value("variable"), "");
}

TEST(Settings, NumbersNamesAndSectionsAgree) {
  EXPECT_EQ(acf_get_variable_by_name("verilog_input_version"), 271);
  EXPECT_EQ(acf_get_variable_section(ACF_VARIABLE_EDA_FORMAL_TOOL), 7);
  EXPECT_EQ(acf_string_to_enum_type_enum("systemverilog_2005"), 36);
  EXPECT_STREQ(acf_enum_type_to_user_string(35), "VERILOG_1995");
  EXPECT_EQ(acf_string_to_enum_type_enum("VERILOG_2099"), ACF_ENUM_NONE);
  EXPECT_TRUE(acf_is_variable_allowed_in_section_type(376, 12));
  EXPECT_FALSE(acf_is_variable_allowed_in_section_type(396, 12)) << "parameters are no settings";
  EXPECT_STREQ(acf_convert_old_value_to_new(273, "1993", 52), "VHDL93");
  EXPECT_EQ(acf_convert_old_value_to_new(271, "1993", 52), nullptr);
  std::vector<int> values;
  acf_get_variable_enum_value_types(&values, 271, 0, 52);
  EXPECT_THAT(values, ElementsAre(34, 35, 36));
}

TEST(Settings, ProjectOptionIsFoundAmongAssignmentsToTargets) {
  HDB_SECTION section(14);
  section.create_assignment(274, "lib")->set_string("target");
  EXPECT_EQ(section.find_option(274), nullptr);
  HDB_OPTION* option = section.create_option(274);
  EXPECT_EQ(section.create_option(274), option);
  EXPECT_EQ(section.find_assignments(274).size(), 2U);
  EXPECT_TRUE(option->get_flag(HDB_ASSIGNMENT::FLAG_STORED));
  option->set_flag(HDB_ASSIGNMENT::FLAG_STORED, false);
  EXPECT_FALSE(option->get_flag(HDB_ASSIGNMENT::FLAG_STORED));
}

TEST(Path, PartsOfAName) {
  FIO_PATH path("a/b.c/file.v");
  EXPECT_EQ(path.filename(), "file.v");
  EXPECT_EQ(path.directory(), "a/b.c/");
  EXPECT_EQ(path.extension(), "v");
  EXPECT_EQ(FIO_PATH("a/b.c/").tail(), "b.c");
  EXPECT_EQ(FIO_PATH("a/b.c/file").extension(), "");
  path.filename("x");
  EXPECT_EQ(path.get_path(), "a/b.c/x");
  path.directory("d");
  EXPECT_EQ(path.get_path(), "d/x");
  path.extension("xml");
  EXPECT_EQ(path.get_path(), "d/x.xml");
  EXPECT_EQ(FIO_PATH("/p/./q/../r.v").fullpath(), "/p/r.v");
  EXPECT_EQ(FIO_PATH("/p/q/r.v").get_relative_to(FIO_PATH("/p/s")).get_path(), "../q/r.v");
  EXPECT_EQ(FIO_PATH("./a/b").levels(), 2U);
}

TEST(OutputFile, AppearsWholeOnCommitAndNeverOtherwise) {
  SCRATCH_DIR scratch;
  std::string target = scratch.write("out.v", "former");
  {
    FIO_OUTPUT_FILE file(target);
    file.write("half");
    EXPECT_EQ(SCRATCH_DIR::read(target), "former");
  }
  EXPECT_EQ(SCRATCH_DIR::read(target), "former");
  {
    FIO_OUTPUT_FILE file(target);
    file.write("whole");
    EXPECT_TRUE(file.commit());
  }
  EXPECT_EQ(SCRATCH_DIR::read(target), "whole");
  {
    FIO_OUTPUT_FILE file(scratch.path("missing/out.v"));
    EXPECT_FALSE(file.is_open());
  }
  FIO_OUTPUT_FILE left(scratch.path("left.v"));
  FIO_OUTPUT_FILE::remove_all();
  EXPECT_EQ(std::distance(fs::directory_iterator(scratch.path("")), fs::directory_iterator()), 1);
}

TEST(FindFile, AsItStandsThenInTheProjectThenInSearchDirectories) {
  SCRATCH_DIR scratch;
  std::string in_project = scratch.write("project/a.v", "");
  std::string in_search = scratch.write("search/b.v", "");
  scratch.write("search/a.v", "");
  gen_set_project_dir(scratch.path("project"));
  gen_add_search_dir(scratch.path("search"));
  std::string found;
  EXPECT_TRUE(gen_find_file("a.v", found));
  EXPECT_EQ(found, in_project);
  EXPECT_TRUE(gen_find_file("b.v", found));
  EXPECT_EQ(found, in_search);
  EXPECT_FALSE(gen_find_file("c.v", found));
  EXPECT_FALSE(gen_find_file(scratch.path("search").c_str(), found)) << "a directory is no file";
  EXPECT_EQ(gen_get_relative_path_if_starts_with_project_dir(in_project), "a.v");
  EXPECT_EQ(gen_get_relative_path_if_starts_with_project_dir(in_search), in_search);
  gen_clear_search_dirs();
  gen_set_project_dir(".");
}

TEST(FindFile, IncludeBesideTheIncludingFileComesFirst) {
  SCRATCH_DIR scratch;
  std::string beside = scratch.write("rtl/defs.vh", "");
  scratch.write("search/defs.vh", "");
  std::string other = scratch.write("search/other.vh", "");
  gen_add_search_dir(scratch.path("search"));
  std::string relative, absolute;
  std::string current = scratch.path("rtl/top.v");
  ASSERT_TRUE(gen_find_include_file("defs.vh", current.c_str(), "rtl/top.v", relative, absolute));
  EXPECT_EQ(relative, "rtl/defs.vh");
  EXPECT_EQ(absolute, beside);
  ASSERT_TRUE(gen_find_include_file("other.vh", current.c_str(), "rtl/top.v", relative, absolute));
  EXPECT_EQ(absolute, other);
  EXPECT_FALSE(gen_find_include_file("none.vh", current.c_str(), "rtl/top.v", relative, absolute));
  gen_clear_search_dirs();
}

TEST(Regexp, MatchIsOfTheWholeTextAndSearchOfAPart) {
  HTL_REGEXP number("([0-9]+)'(b?)([01]+)");
  std::vector<std::string> groups;
  EXPECT_TRUE(number.match("4'b0101", &groups));
  EXPECT_THAT(groups, ElementsAre("4", "b", "0101"));
  EXPECT_FALSE(number.match("x4'b0101"));
  size_t first = 0, length = 0;
  EXPECT_TRUE(number.search("x4'01y", nullptr, &first, &length));
  EXPECT_EQ(first, 1U);
  EXPECT_EQ(length, 4U);
  EXPECT_TRUE(HTL_REGEXP("(user|original)", HTL_REGEXP::CASE_IGNORED).match("ORIGINAL"));
}

TEST(Containers, HashAndSetKeepTheOrderOfInsertion) {
  HTL_HASH<std::string, int> hash;
  HTL_HASH_SET<std::string> set;
  for (const char* key : {"z", "a", "m", "a"}) {
    hash[key]++;
    set.insert(key);
  }
  std::string order;
  for (const auto& [key, count] : hash) order += key + std::to_string(count);
  for (const auto& key : set) order += key;
  EXPECT_EQ(order, "z1a2m1zam");
  GEN_STRING_HASH numbers;
  numbers.insert("id", 1);
  numbers.insert("id", -2);
  int value = 0;
  EXPECT_TRUE(numbers.find("id", value));
  EXPECT_EQ(value, -2);
  EXPECT_FALSE(numbers.find("other", value));
}

TEST(Tokenizer, EmptyTokensAreDropped) {
  EXPECT_THAT(HTL_TOKENIZER(",a, b,,c", ", ").get_tokens(), ElementsAre("a", "b", "c"));
  EXPECT_TRUE(HTL_TOKENIZER("", ",").get_tokens().empty());
}

TEST(SourceLines, AnyLineOfAFileByNumber) {
  SCRATCH_DIR scratch;
  std::string name = scratch.write("f.v", "first\r\n\tthird?\n\nlast");
  SOURCE_LINES lines;
  std::string text;
  EXPECT_TRUE(lines.get(name, 2, text));
  EXPECT_EQ(text, " third?");
  EXPECT_TRUE(lines.get(name, 1, text));
  EXPECT_EQ(text, "first");
  EXPECT_TRUE(lines.get(name, 4, text));
  EXPECT_EQ(text, "last");
  EXPECT_FALSE(lines.get(name, 5, text));
  EXPECT_FALSE(lines.get(name, 0, text));
  EXPECT_FALSE(lines.get(scratch.path("none"), 1, text));
}

TEST(XmlWriter, ElementsAreIndentedAndAttributesEscaped) {
  std::ostringstream stream;
  XML_WRITER writer(stream);
  writer.reset("PORT");
  writer.add_attribute("name", "a<\"b\">&c");
  writer.start(1, true);
  writer.reset("PORTS");
  writer.start(0, false);
  writer.end("PORTS", 0);
  EXPECT_EQ(stream.str(), "  <PORT name=\"a&lt;&quot;b&quot;&gt;&amp;c\"/>\n<PORTS>\n</PORTS>\n");
}

} // namespace
