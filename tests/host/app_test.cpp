// Arguments, file lists and values of parameters.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "app/arguments.h"
#include "app/command_line.h"
#include "app/parameter_notation.h"
#include "cfg.h"
#include "host/scratch_dir.h"

namespace {

using testing::ElementsAre;
using WORDS = std::vector<std::string>;

bool takes_value(const std::string& option) { return option.size() == 2 || option == "--top"; }

WORDS flatten(const WORDS& words) { return flatten_arguments(words, takes_value); }

TEST(FileList, PathsAreRelativeToTheListAndValuesAreNot) {
  SCRATCH_DIR scratch;
  std::string list = scratch.write("rtl/files.f", "a.v /abs/b.v -I inc -y lib\n--top a.v -D x/y\n-Iother\n");
  EXPECT_THAT(flatten({"-f", list}),
              ElementsAre(scratch.path("rtl/a.v"), "/abs/b.v", "-I", scratch.path("rtl/inc"), "-y",
                          scratch.path("rtl/lib"), "--top", "a.v", "-D", "x/y", "-I", scratch.path("rtl/other")));
}

TEST(FileList, CommentsAndEnvironmentVariables) {
  SCRATCH_DIR scratch;
  ::setenv("HOST_TEST_DIR", "/there", 1);
  std::string list = scratch.write("files.f", "# all\n$HOST_TEST_DIR/a.v // first\n\n${HOST_TEST_DIR}_2/b#.v # last\n");
  EXPECT_THAT(flatten({"-f", list}), ElementsAre("/there/a.v", "/there_2/b#.v"));
  ::unsetenv("HOST_TEST_DIR");
  EXPECT_THROW(flatten({"-f", list}), USAGE_ERROR);
}

TEST(FileList, ListsNestButNotWithinThemselves) {
  SCRATCH_DIR scratch;
  scratch.write("sub/inner.f", "c.v");
  std::string outer = scratch.write("outer.f", "a.v -f sub/inner.f -f sub/inner.f");
  EXPECT_THAT(flatten({"-f", outer}),
              ElementsAre(scratch.path("a.v"), scratch.path("sub/c.v"), scratch.path("sub/c.v")));
  scratch.write("sub/inner.f", "-f ../outer.f");
  EXPECT_THROW(flatten({"-f", outer}), USAGE_ERROR);
  EXPECT_THROW(flatten({"-f", scratch.path("none.f")}), USAGE_ERROR);
  EXPECT_THROW(flatten({"-f", scratch.path("sub")}), USAGE_ERROR) << "a folder is no list";
  EXPECT_THROW(flatten({"a.v", "-f"}), USAGE_ERROR);
}

TEST(FileList, PlusOptionsOfSimulators) {
  EXPECT_THAT(flatten({"+define+A=1+B", "+incdir+x+y", "+define+"}),
              ElementsAre("-D", "A=1", "-D", "B", "-I", "x", "-I", "y"));
}

TEST(ParameterNotation, NumbersKeepTheirWidthAndTextBecomesAString) {
  struct {
    const char* text;
    const char* notation;
  } cases[] = {
      {"8", "8"},
      {"-3", "-3"},
      {"1.5", "1.5"},
      {"4'b01x1", "4'b01x1"},
      {"8'hA5", "8'b10100101"},
      {"6'hA5", "6'b100101"},
      {"8'o17", "8'b00001111"},
      {"5'd19", "5'b10011"},
      {"4'd16", "4'b0000"},
      {"8'hz", "8'bzzzzzzzz"},
      {"70'd1180591620717411303424", "70'b0000000000000000000000000000000000000000000000000000000000000000000000"},
      {"fast", "\"fast\""},
      {"\"fast\"", "\"fast\""},
      {"D\"12\"", "D\"12\""},
      {"+7", "7"},
      {"1_000", "1000"},
      {"-2.5", "-2.5"},
      {"1.5e3", "F\"1.5e3\""},
      {"'1", "'1"},
      {"'hFF", "32'b00000000000000000000000011111111"},
      {"8'shFE", "SB\"11111110\""},
      {"-8'd3", "8'b11111101"},
      {"-4'sd1", "SB\"1111\""},
      {"4 'd 9", "4'b1001"},
      {"8'hx", "8'bxxxxxxxx"},
      {"8'b1010_0101", "8'b10100101"},
      {"6'b?", "6'bzzzzzz"},
      {"8'hxF", "8'bxxxx1111"}};
  for (const auto& test : cases) EXPECT_EQ(parameter_notation(test.text), test.notation) << test.text;
  for (const char* text : {"0'h1", "8'b2", "4'dx", "999999'h1", "8'h", "8'hg"})
    EXPECT_THROW(parameter_notation(text), USAGE_ERROR) << text;
}

/// Parses a command line given as words.
PARSE_RESULT parse(WORDS words, COMMAND_LINE& command, HDB_ACTION_PT_INSTANCE& project) {
  words.insert(words.begin(), "zelk-host");
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  return parse_command_line(static_cast<int>(argv.size()), argv.data(), command, project);
}

TEST(CommandLine, DialectAndLibraryHoldForTheFilesThatFollow) {
  COMMAND_LINE command;
  HDB_ACTION_PT_INSTANCE project;
  ASSERT_EQ(
      parse({"a.v", "--std=vlog95", "--lib", "one", "b.v", "c.vhd", "--std", "vlog2001", "d.v", "--lib=two", "e.v"},
            command, project),
      PARSE_RESULT::RUN);
  std::string seen;
  for (const auto& file : project.get_source_files()) {
    std::string version = "-";
    file->get_argument_value(HDB_SOURCE_FILE::ARGUMENT_HDL_VERSION, &version);
    seen += std::string(file->get_unmodified_filename()) + ":" + (file->get_library() ? file->get_library() : "-") +
            ":" + version + " ";
  }
  EXPECT_EQ(seen, "a.v:-:- b.v:one:VERILOG_1995 c.vhd:one:- d.v:one:VERILOG_2001 e.v:two:VERILOG_2001 ");
}

TEST(CommandLine, SettingsReachTheProject) {
  COMMAND_LINE command;
  HDB_ACTION_PT_INSTANCE project;
  ASSERT_EQ(parse({"-D", "A=1", "+define+B", "--option", "infer_rams=off", "--option=HDL_MESSAGE_ON=10035", "a.v", "-G",
                   "W=8'hff", "-y", "lib", "-o", "x.v", "-o", "y.json", "--top", "t"},
                  command, project),
            PARSE_RESULT::RUN);
  HDB_SECTION* input = project.get_section(ACF_SECTION_HDL_INPUT);
  EXPECT_THAT(input->find_option(ACF_VARIABLE_VERILOG_MACRO)->get_values(), ElementsAre("A=1", "B"));
  EXPECT_THAT(input->find_option(ACF_VARIABLE_HDL_MESSAGE_ON)->get_values(), ElementsAre("10035"));
  EXPECT_FALSE(project.get_section(ACF_SECTION_SYNTHESIS)->find_option(ACF_VARIABLE_INFER_RAMS)->is_on());
  ASSERT_EQ(command.run.top_parameters.size(), 1U);
  EXPECT_EQ(command.run.top_parameters[0].value, "8'b11111111");
  EXPECT_THAT(command.run.library_dirs, ElementsAre("lib"));
  EXPECT_THAT(command.outputs, ElementsAre("x.v", "y.json"));
  EXPECT_EQ(command.run.top, "t");
}

TEST(FileList, OptionsWithPathsAreRelativeHoweverTheyAreWritten) {
  SCRATCH_DIR scratch;
  std::string list = scratch.write("sub/files.f", "--project=p.toml -o out.v --top=a");
  EXPECT_THAT(flatten({"-f", list}),
              ElementsAre("--project", scratch.path("sub/p.toml"), "-o", scratch.path("sub/out.v"), "--top=a"));
}

TEST(CommandLine, MessageOptionsBecomeSettings) {
  COMMAND_LINE command;
  HDB_ACTION_PT_INSTANCE project;
  ASSERT_EQ(parse({"a.v", "--message-level", "low", "--message-level=high", "--message-on", "10035", "--message-off",
                   "10240", "--message-off=10230"},
                  command, project),
            PARSE_RESULT::RUN);
  HDB_SECTION* input = project.get_section(ACF_SECTION_HDL_INPUT);
  EXPECT_EQ(input->find_option(ACF_VARIABLE_HDL_MESSAGE_LEVEL)->get_enum(), ACF_ENUM_HIGH);
  EXPECT_THAT(input->find_option(ACF_VARIABLE_HDL_MESSAGE_ON)->get_values(), ElementsAre("10035"));
  EXPECT_THAT(input->find_option(ACF_VARIABLE_HDL_MESSAGE_OFF)->get_values(), ElementsAre("10240", "10230"));
}

TEST(CommandLine, ALaterValueOfAParameterReplacesTheFormer) {
  COMMAND_LINE command;
  HDB_ACTION_PT_INSTANCE project;
  ASSERT_EQ(parse({"a.v", "-G", "W=1", "-G", "N=x", "-G", "W=2"}, command, project), PARSE_RESULT::RUN);
  ASSERT_EQ(command.run.top_parameters.size(), 2U);
  EXPECT_EQ(command.run.top_parameters[0].value, "2");
}

/// The sources of a project with library and dialect, one a line.
std::string sources_of(const HDB_ACTION_PT_INSTANCE& project, const std::string& root) {
  std::string text;
  for (const auto& file : project.get_source_files()) {
    std::string version = "-";
    file->get_argument_value(HDB_SOURCE_FILE::ARGUMENT_HDL_VERSION, &version);
    std::string name = file->get_unmodified_filename();
    if (name.rfind(root, 0) == 0) name = name.substr(root.size());
    text += name + " " + (file->get_library() ? file->get_library() : "-") + " " + version + "\n";
  }
  return text;
}

TEST(ProjectFile, EverythingOfADesignInOneFile) {
  SCRATCH_DIR scratch;
  std::string file = scratch.write("design/p.toml", R"(
top = "uart"
std = ["vlog2001", "vhdl93"]
include_dirs = "include"
library_dirs = ["cells", "/abs/cells"]
outputs = ["out/uart.v"]
sources = ["rtl/a.v", { file = ["b.v", "c.v"], library = "extra", std = "vlog95" }, "/abs/d.v"]

[libraries]
zlib = "z.v"
alib = ["a1.v", { file = "a2.sv", std = "sv2005" }]

[parameters]
DEPTH = 16
RATE = 2.0
NAME = "fast"
MASK = "4'hA"
ON = true

[defines]
SYNTHESIS = true
DEBUG = false
WIDTH = 8

[settings]
HDL_MESSAGE_LEVEL = "low"
HDL_MESSAGE_OFF = [10240, 10230]
INFER_RAMS = false

[variables]
host_test_variable = 3
)");
  COMMAND_LINE command;
  HDB_ACTION_PT_INSTANCE project;
  ASSERT_EQ(parse({"e.v", "--project", file, "-G", "DEPTH=4", "--message-level", "high"}, command, project),
            PARSE_RESULT::RUN);
  EXPECT_EQ(sources_of(project, scratch.path("design/")), "z.v zlib VERILOG_2001\n"
                                                          "a1.v alib VERILOG_2001\n"
                                                          "a2.sv alib SYSTEMVERILOG_2005\n"
                                                          "rtl/a.v - VERILOG_2001\n"
                                                          "b.v extra VERILOG_1995\n"
                                                          "c.v extra VERILOG_1995\n"
                                                          "/abs/d.v - VERILOG_2001\n"
                                                          "e.v - VERILOG_2001\n");
  EXPECT_EQ(command.run.top, "uart");
  EXPECT_THAT(command.run.library_dirs, ElementsAre(scratch.path("design/cells"), "/abs/cells"));
  EXPECT_THAT(command.outputs, ElementsAre(scratch.path("design/out/uart.v")));
  std::string parameters;
  for (const UNIT_PARAMETER& parameter : command.run.top_parameters)
    parameters += parameter.name + "=" + parameter.value + " ";
  EXPECT_EQ(parameters, "DEPTH=4 RATE=2.0 NAME=\"fast\" MASK=4'b1010 ON=1 ");
  HDB_SECTION* input = project.get_section(ACF_SECTION_HDL_INPUT);
  EXPECT_THAT(input->find_option(ACF_VARIABLE_VERILOG_MACRO)->get_values(), ElementsAre("SYNTHESIS", "WIDTH=8"));
  EXPECT_EQ(input->find_option(ACF_VARIABLE_HDL_MESSAGE_LEVEL)->get_enum(), ACF_ENUM_HIGH);
  EXPECT_THAT(input->find_option(ACF_VARIABLE_HDL_MESSAGE_OFF)->get_values(), ElementsAre("10240", "10230"));
  EXPECT_FALSE(project.get_section(ACF_SECTION_SYNTHESIS)->find_option(ACF_VARIABLE_INFER_RAMS)->is_on());
  EXPECT_EQ(cfg_get_value("host_test_variable"), "3");
}

TEST(ProjectFile, MistakesAreToldWithTheirLine) {
  const struct {
    const char* text;
    const char* problem;
  } cases[] = {{"top = \"a\"\nsource = \"b.v\"\n", ":2: a project has no entry \"source\""},
               {"top = 3\n", ":1: a text is expected"},
               {"\nparameters = 3\n", ":2: a table of names and values is expected"},
               {"sources = [\n  { library = \"x\" }]\n", ":2: a source needs a \"file\""},
               {"sources = [{ file = \"a.v\", lang = \"v\" }]\n", "a source has no \"lang\""},
               {"std = \"c99\"\n", ":1: --std knows no dialect"},
               {"[parameters]\nW = \"8'b2\"\n", ":2: can't read the number 8'b2"},
               {"top = \n", ":1: "}};
  for (const auto& test : cases) {
    SCRATCH_DIR scratch;
    std::string file = scratch.write("p.toml", test.text);
    COMMAND_LINE command;
    HDB_ACTION_PT_INSTANCE project;
    testing::internal::CaptureStderr();
    EXPECT_EQ(parse({"--project", file}, command, project), PARSE_RESULT::WRONG_USAGE) << test.text;
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr(test.problem));
  }
}

TEST(CommandLine, WrongUsageIsToldApartFromHelp) {
  for (const WORDS& words :
       {WORDS{}, WORDS{"--top"}, WORDS{"a.v", "--std=c99"}, WORDS{"a.v", "-o", "x.blif"}, WORDS{"a.v", "-G", "W"},
        WORDS{"a.v", "--option", "NO_SUCH=1"}, WORDS{"a.v", "--sideways"}, WORDS{"a.v", "--option", "NO_MERGE=on"},
        WORDS{"a.v", "--color=maybe"}, WORDS{"a.v", "--message-level", "auto"}, WORDS{"a.v", "--message-on", "ten"},
        WORDS{"a.v", "--diagnostics=xml"}, WORDS{"--project", "/none.toml"}}) {
    COMMAND_LINE command;
    HDB_ACTION_PT_INSTANCE project;
    EXPECT_EQ(parse(words, command, project), PARSE_RESULT::WRONG_USAGE) << testing::PrintToString(words);
  }
  COMMAND_LINE command;
  HDB_ACTION_PT_INSTANCE project;
  testing::internal::CaptureStdout();
  EXPECT_EQ(parse({"--help"}, command, project), PARSE_RESULT::DONE);
  EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::HasSubstr("--lint"));
}

} // namespace
