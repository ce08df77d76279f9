// The run over a hierarchy, with a front end that reads "NAME: CHILD#W=VALUE CHILD ..." lines, one unit per line. A
// child parameter "W+1" passes the unit's own W plus one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "flow/info_objects.h"
#include "flow/run.h"
#include "host/scratch_dir.h"
#include "output/text_diagnostics.h"
#include "output/writer.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using WORDS = std::vector<std::string>;

class LINE_ELABORATOR : public BASEX_ELABORATOR {
public:
  explicit LINE_ELABORATOR(WORDS children) : m_children(std::move(children)) {}
  using BASEX_ELABORATOR::elaborate;
  CDB_HIERARCHY_BASE* elaborate(BASEX_ELABORATE_INFO* info) override {
    auto* hierarchy = new CDB_SGATE_HIERARCHY;
    hierarchy->set_netlist(new CDB_SGATE_NETLIST);
    const char* width = info->get_parameter_value("W", 0, nullptr);
    info->register_parameter("W", width ? width : "1", 0);
    int number = 0;
    for (const std::string& child : m_children)
      add_child(*hierarchy->get_netlist(), child, width ? width : "1", number++);
    if (!info->is_hierarchical_elaboration()) elaborated += std::string(info->get_design_unit()->get_name()) + " ";
    info->set_hierarchy(hierarchy);
    info->set_success(true);
    return nullptr;
  }
  BASEX_ELABORATOR* clone(MEM_SEGMENT*) override { return new LINE_ELABORATOR(m_children); }
  static std::string elaborated;

private:
  static void add_child(CDB_SGATE_NETLIST& netlist, const std::string& text, const std::string& width, int number) {
    size_t hash = text.find('#');
    auto* node = new CDB_SGATE_COMPONENT(text.substr(0, hash).c_str(), CDB_SGATE_COMPONENT::PROTOTYPE_KNOWN);
    node->set_string_name(("u" + std::to_string(number)).c_str());
    if (hash != std::string::npos) {
      std::string value = text.substr(text.find('=') + 1);
      if (value == "W+1") value = std::to_string(std::stoi(width) + 1);
      node->set_parameter("W", value.c_str(), 0);
    }
    netlist.add_node(node, 1);
  }
  WORDS m_children;
};
std::string LINE_ELABORATOR::elaborated;

class LINE_UNIT : public HDB_ENTITY {
public:
  using HDB_ENTITY::HDB_ENTITY;
  bool on_dbb_exit() override {
    delete get_elaborator();
    return true;
  }
  HDB_ENTITY* clone_entity(MEM_SEGMENT*) override { return nullptr; }
};

class LINE_ANALYZER : public BASEX_ANALYZER {
public:
  LINE_ANALYZER() : BASEX_ANALYZER(&services) {}
  bool analyze(BASEX_ANALYZE_INFO* info) override {
    std::istringstream text(SCRATCH_DIR::read(info->source_file->get_unmodified_filename()));
    for (std::string line; std::getline(text, line);) {
      std::istringstream words(line);
      std::string name;
      words >> name;
      name.pop_back();
      WORDS children;
      for (std::string child; words >> child;) children.push_back(child);
      info->entity_list.push_back(new LINE_UNIT(info->source_file, MSG_TEXT_LOCATION_SCHEMA("", 0, 0), name.c_str(),
                                                new LINE_ELABORATOR(children), HDB_DESIGN_UNIT::TYPE_VERILOG_MODULE, {},
                                                "work"));
    }
    return true;
  }
  BASEX_ANALYZER* clone(MEM_SEGMENT*) override { return new LINE_ANALYZER; }

private:
  static const BASEX_ANALYZER_SERVICES services;
};
const BASEX_ANALYZER_SERVICES LINE_ANALYZER::services = {
    [](BASEX_ANALYZER*, HDB_ACTION_PT_INSTANCE*, WORDS*, WORDS*) { return true; }, [](BASEX_ANALYZER*) {},
    [](BASEX_ANALYZER*, std::string&, std::string&) { return false; },
    [](BASEX_ANALYZER*, std::string&, std::string&) { return false; }};

struct TEXT_SINK : MSG_SINK {
  std::string text;
  void on_message(const MSG_BASE& message) override { text += message.get_text() + "\n"; }
  void on_internal_error(const std::string& words, const std::string&, const std::string&, int) override {
    text += words;
  }
  void on_debug(const std::string&, const std::string&) override {}
};

class RunTest : public testing::Test {
protected:
  RunTest() {
    library.use(std::make_unique<LINE_ANALYZER>());
    msg_get_default_report()->set_sink(&sink);
    LINE_ELABORATOR::elaborated.clear();
  }
  ~RunTest() override {
    msg_get_default_report()->set_sink(nullptr);
    msg_get_default_report()->reset();
  }
  bool execute(const std::string& text) {
    project.create_source_file(scratch.write("design.v", text), HDB_SOURCE_FILE::TYPE_VERILOG);
    run = std::make_unique<RUN>(project, library, options);
    return run->execute();
  }
  WORDS module_names() {
    WORDS names;
    for (const auto& result : run->get_design().units) names.push_back(result->module_name);
    return names;
  }
  SCRATCH_DIR scratch;
  ANALYZER_LIBRARY library;
  HDB_ACTION_PT_INSTANCE project;
  RUN_OPTIONS options;
  std::unique_ptr<RUN> run;
  TEXT_SINK sink;
};

TEST_F(RunTest, EachUnitIsElaboratedOncePerSetOfParameters) {
  ASSERT_TRUE(execute("top: mid mid leaf#W=4\nmid: leaf#W=8 leaf#W=4\nleaf:\n"));
  EXPECT_EQ(LINE_ELABORATOR::elaborated, "top mid leaf leaf ");
  EXPECT_THAT(module_names(), ElementsAre("top", "mid", "leaf_W_4", "leaf_W_8"));
  EXPECT_THAT(sink.text, IsEmpty());
}

TEST_F(RunTest, ADefaultAndItsValueGivenAreTheSame) {
  ASSERT_TRUE(execute("top: leaf leaf#W=1 leaf#W=2 leaf#W=1\nleaf:\n"));
  EXPECT_EQ(LINE_ELABORATOR::elaborated, "top leaf leaf ");
  EXPECT_THAT(module_names(), ElementsAre("top", "leaf_W_1", "leaf_W_2"));
  options.top = "top";
  ASSERT_TRUE(execute("top: leaf#W=1 leaf leaf\nleaf:\n"));
  EXPECT_THAT(module_names(), ElementsAre("top", "leaf"));
}

TEST_F(RunTest, TopIsTheOneThatNothingInstantiates) {
  ASSERT_TRUE(execute("leaf:\nother: leaf\nroot: other leaf\n"));
  EXPECT_EQ(module_names().front(), "root");
}

TEST_F(RunTest, SeveralTopsAreListed) {
  EXPECT_FALSE(execute("a: c\nb: c\nc:\n"));
  EXPECT_THAT(sink.text, HasSubstr("\"a\", \"b\""));
}

TEST_F(RunTest, NamedTopMustExist) {
  options.top = "nobody";
  EXPECT_FALSE(execute("a:\n"));
  EXPECT_THAT(sink.text, HasSubstr("\"nobody\""));
}

TEST_F(RunTest, ParameterThatTheTopDoesNotHaveIsAnError) {
  options.top_parameters = {{"W", -1, "3", 396}, {"DEPTH", -1, "3", 396}};
  EXPECT_FALSE(execute("a:\n"));
  EXPECT_THAT(sink.text, HasSubstr("\"DEPTH\""));
  EXPECT_THAT(sink.text, Not(HasSubstr("\"W\"")));
}

TEST_F(RunTest, BlackBoxIsToldOnceAndKept) {
  options.top = "top";
  ASSERT_TRUE(execute("top: mid vendor vendor\nmid: vendor\n"));
  EXPECT_EQ(std::count(sink.text.begin(), sink.text.end(), '\n'), 1);
  EXPECT_THAT(sink.text, HasSubstr("\"vendor\""));
  EXPECT_THAT(write_verilog(DESIGN_VIEW(run->get_design())), HasSubstr("vendor u2"));
}

TEST_F(RunTest, LibraryDirectoryProvidesWhatNoSourceDeclares) {
  scratch.write("lib/part.v", "part: deeper\n");
  scratch.write("lib/deeper.sv", "deeper:\n");
  options.library_dirs = {scratch.path("elsewhere"), scratch.path("lib")};
  ASSERT_TRUE(execute("top: part\n"));
  EXPECT_THAT(module_names(), ElementsAre("top", "part", "deeper"));
  EXPECT_THAT(sink.text, IsEmpty());
}

TEST_F(RunTest, UnitThatReachesItselfIsAnError) {
  options.top = "a";
  EXPECT_FALSE(execute("a: b\nb: a\n"));
  EXPECT_THAT(sink.text, HasSubstr("instantiates itself"));
}

TEST_F(RunTest, ParametersThatGrowOnEachLevelEnd) {
  options.top = "a";
  EXPECT_FALSE(execute("a: a#W=W+1\n"));
  EXPECT_THAT(sink.text, HasSubstr("grows without end"));
}

TEST_F(RunTest, MissingFileAndUnknownLanguageAreErrors) {
  project.create_source_file(scratch.path("none.v"), HDB_SOURCE_FILE::TYPE_VERILOG);
  project.create_source_file(scratch.write("a.txt", ""), HDB_SOURCE_FILE::TYPE_UNKNOWN);
  EXPECT_FALSE(execute("a:\n"));
  EXPECT_THAT(sink.text, HasSubstr("none.v"));
  EXPECT_THAT(sink.text, HasSubstr("a.txt"));
  EXPECT_EQ(LINE_ELABORATOR::elaborated, "");
}

TEST_F(RunTest, ValuesOfParametersAreKeptAsPeopleWriteThem) {
  FLOW_ELABORATE_INFO info(project, nullptr, {}, "", FLOW_ELABORATE_INFO::PLACE_TOP, FLOW_ELABORATE_INFO::MODE_FULL);
  const struct {
    const char* value;
    const char* readable;
  } rows[] = {{"D\"-8\"", "-8"}, {"B\"00000101\"", "5"}, {"4'b1000", "8"}, {"32'hFF", "255"}, {"S\"a\nb\"", "a\nb"},
              {"\"ab\"", "ab"},  {"4'b10x0", "4'b10x0"}, {"3.5", "3.5"},   {"", ""}};
  for (const auto& row : rows) info.register_parameter("P", row.value, 0);
  std::unique_ptr<UNIT_RESULT> result = info.take_result();
  for (size_t i = 0; i < std::size(rows); i++) EXPECT_EQ(result->used_parameters[i].value, rows[i].readable);
}

TEST_F(RunTest, LintStopsBeforeElaboration) {
  options.is_lint = true;
  EXPECT_TRUE(execute("a: b\n"));
  EXPECT_EQ(LINE_ELABORATOR::elaborated, "");
}

} // namespace
