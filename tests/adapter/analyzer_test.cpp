// The library as the host meets it: analysis of files, registration of units, dependencies, elaboration.
#include "zelk_analyzer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "acf.h"
#include "cfg.h"
#include "database/views.h"
#include "flow/info_objects.h"
#include "gen.h"
#include "hdb_action_pt.h"
#include "host/scratch_dir.h"
#include "zelk_utility.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct RECORDING_SINK : MSG_SINK {
  std::vector<std::string> texts;
  void on_message(const MSG_BASE& message) override { texts.push_back(message.get_name() + " " + message.get_text()); }
  void on_internal_error(const std::string& text, const std::string&, const std::string&, int) override {
    texts.push_back("internal: " + text);
  }
  void on_debug(const std::string&, const std::string&) override {}
};

class AnalyzerTest : public testing::Test {
protected:
  AnalyzerTest() {
    gen_set_project_dir(folder.path(""));
    msg_get_default_report()->set_sink(&sink);
  }
  ~AnalyzerTest() override {
    project.reset();
    analyzer.delete_all_zelk_static_data();
    msg_get_default_report()->set_sink(nullptr);
    msg_get_default_report()->reset();
    MSG_INTERNAL_ERROR::reset_count();
    cfg_clear();
    gen_set_project_dir(".");
  }

  HDB_SOURCE_FILE* add_file(const std::string& name, const std::string& text) {
    folder.write(name, text);
    return project->create_source_file(folder.path(name), HDB_SOURCE_FILE::path_to_file_type(name));
  }
  bool analyze(HDB_SOURCE_FILE* file) {
    FLOW_ANALYZE_INFO info(*project, file);
    info.set_xml(wants_xml);
    bool is_good = analyzer.analyze(&info);
    units.clear();
    for (HDB_DESIGN_UNIT* unit : info.entity_list) {
      units.emplace_back(unit->get_name());
      project->add_design_unit(unit);
    }
    return is_good;
  }
  bool analyze(const std::string& name, const std::string& text) { return analyze(add_file(name, text)); }
  bool resolve() { return analyzer.resolve_all_design_units(project.get(), nullptr, nullptr); }
  void set_option(int variable, const std::string& value) {
    project->create_section(ACF_SECTION_HDL_INPUT)->create_option(variable)->add_value(value);
  }
  /// The result of one elaboration; the queue's messages are in the sink.
  std::unique_ptr<UNIT_RESULT> elaborate(const char* name, const std::vector<UNIT_PARAMETER>& parameters = {}) {
    HDB_ENTITY* unit = project->find_entity(name, 1, nullptr, nullptr);
    if (!unit) return nullptr;
    FLOW_ELABORATE_INFO info(*project, unit, parameters, "", FLOW_ELABORATE_INFO::PLACE_TOP,
                             FLOW_ELABORATE_INFO::MODE_FULL);
    EXPECT_EQ(unit->get_elaborator()->elaborate(&info), nullptr);
    for (const auto& message : info.take_messages()) message->report(0);
    return info.take_result();
  }

  SCRATCH_DIR folder;
  RECORDING_SINK sink;
  ZELK_ANALYZER analyzer;
  std::unique_ptr<HDB_ACTION_PT_INSTANCE> project = std::make_unique<HDB_ACTION_PT_INSTANCE>();
  std::vector<std::string> units;
  bool wants_xml = false;
};

TEST_F(AnalyzerTest, UnitsAreRegisteredInTheOrderOfTheSource) {
  ASSERT_TRUE(analyze("m.v", "module b; endmodule\nmodule a; endmodule\n"));
  EXPECT_THAT(units, ElementsAre("b", "a"));
  const HDB_ENTITY* unit = project->find_entity("a", 1, "work", nullptr);
  ASSERT_TRUE(unit);
  EXPECT_EQ(unit->get_type(), HDB_DESIGN_UNIT::TYPE_VERILOG_MODULE);
  EXPECT_EQ(unit->get_location().get_line(), 2);
  EXPECT_EQ(unit->get_location().get_file(), "m.v");
  EXPECT_TRUE(unit->get_elaborator());
}

TEST_F(AnalyzerTest, AUnitOfAnIncludedFileBelongsToASourceFileOfItsOwn) {
  folder.write("inc.v", "module x; endmodule\nmodule y; endmodule\n");
  ASSERT_TRUE(analyze("top.v", "`include \"inc.v\"\nmodule top; endmodule\n"));
  EXPECT_THAT(units, ElementsAre("x", "y", "top"));
  const HDB_SOURCE_FILE* x = project->find_entity("x", 1, nullptr, nullptr)->get_file();
  EXPECT_STREQ(x->get_unmodified_filename(), "inc.v");
  EXPECT_EQ(x->get_fio_user_type(), 8);
  EXPECT_EQ(project->find_entity("y", 1, nullptr, nullptr)->get_file(), x);
  EXPECT_THAT(project->get_source_files(), SizeIs(2));
  std::vector<std::string> files;
  std::vector<std::string> dependencies;
  ASSERT_TRUE(analyzer.resolve_all_design_units(project.get(), &files, &dependencies));
  ASSERT_THAT(files, ElementsAre("top.v"));
  EXPECT_THAT(dependencies[0], testing::EndsWith("inc.v"));
}

TEST_F(AnalyzerTest, AMacroOfOneFileHoldsInLaterFilesUntilItIsUndefined) {
  constexpr const char* probe = "`ifdef M\nmodule %1; endmodule\n`else\nmodule %2; endmodule\n`endif\n";
  auto text = [](const char* name) {
    std::string made(probe);
    made.replace(made.find("%1"), 2, std::string(name) + "_with");
    return made.replace(made.find("%2"), 2, std::string(name) + "_without");
  };
  ASSERT_TRUE(analyze("a.v", "`define M 1\n"));
  ASSERT_TRUE(analyze("b.v", text("b")));
  EXPECT_THAT(units, ElementsAre("b_with"));
  EXPECT_FALSE(analyze("c.v", "`undef M\nmodule c; syntax error\n"));
  ASSERT_TRUE(analyze("d.v", text("d")));
  EXPECT_THAT(units, ElementsAre("d_with"));
  ASSERT_TRUE(analyze("e.v", "`undef M\n"));
  ASSERT_TRUE(analyze("f.v", text("f")));
  EXPECT_THAT(units, ElementsAre("f_without"));
  ASSERT_TRUE(analyze("g.v", "`define M 1\n"));
  analyzer.delete_all_zelk_static_data();
  ASSERT_TRUE(analyze("h.v", text("h")));
  EXPECT_THAT(units, ElementsAre("h_without"));
}

TEST_F(AnalyzerTest, MacrosOfTheProjectAreDefinedAndBadOnesAreRefused) {
  for (const char* macro : {"GOOD=1", "ADD(a,b)=a+b", "1BAD=x", "BAD(a,)=x"})
    set_option(ACF_VARIABLE_VERILOG_MACRO, macro);
  analyze("m.v",
          "`ifdef GOOD\nmodule m; wire [`ADD(1,2):0] w; endmodule\n`endif\n`ifdef BAD\nmodule bad; endmodule\n`endif\n"
          "`ifdef NORVEL_RESERVED_LSX\nmodule ours; endmodule\n`endif\n");
  EXPECT_THAT(units, ElementsAre("m", "ours"));
  ASSERT_THAT(sink.texts, SizeIs(2));
  EXPECT_THAT(sink.texts[0], testing::StartsWith("EZELK_VERI_ILLEGAL_CHAR_IN_MACRO_NAME"));
  EXPECT_THAT(sink.texts[1], testing::StartsWith("EZELK_VERI_BAD_MACRO_PARAM_GUI"));
}

TEST_F(AnalyzerTest, ASystemVerilogFileIsSystemVerilogWhateverTheSettings) {
  constexpr const char* text = "module m; logic l; endmodule\n";
  set_option(ACF_VARIABLE_VERILOG_INPUT_VERSION, "VERILOG_2001");
  EXPECT_TRUE(analyze("m.sv", text));
  EXPECT_FALSE(analyze("m.v", text));
  HDB_SOURCE_FILE* file = add_file("n.v", "module n; logic l; endmodule\n");
  file->set_argument_value(HDB_SOURCE_FILE::ARGUMENT_HDL_VERSION, "SystemVerilog_2005");
  EXPECT_TRUE(analyze(file));
}

TEST_F(AnalyzerTest, AnIllegalVersionOfAFileIsAnErrorAndMeansTheDefaultDialect) {
  set_option(ACF_VARIABLE_VERILOG_INPUT_VERSION, "SystemVerilog_2005");
  HDB_SOURCE_FILE* file = add_file("m.v", "module m; reg logic; endmodule\n");
  file->set_argument_value(HDB_SOURCE_FILE::ARGUMENT_HDL_VERSION, "VHDL93");
  EXPECT_FALSE(analyze(file));
  EXPECT_THAT(sink.texts, Contains(testing::StartsWith("EZELK_ILLEGAL_HDL_VERSION_ARGUMENT")));
  EXPECT_THAT(units, ElementsAre("m"));
}

TEST_F(AnalyzerTest, AMissingVersionOfTheProjectIsMadeAndNotStored) {
  HDB_SECTION* section = project->create_section(ACF_SECTION_HDL_INPUT);
  ASSERT_TRUE(analyze("m.v", "module m; endmodule\n"));
  const HDB_OPTION* option = section->find_option(ACF_VARIABLE_VERILOG_INPUT_VERSION);
  ASSERT_TRUE(option);
  EXPECT_EQ(option->get_enum(), ACF_ENUM_VERILOG_2001);
  EXPECT_FALSE(option->get_flag(HDB_ASSIGNMENT::FLAG_STORED));
}

TEST_F(AnalyzerTest, AFileOfNoLanguageIsAnInternalErrorAndOneOfVhdlAnError) {
  EXPECT_FALSE(analyze("m.txt", ""));
  EXPECT_THAT(sink.texts, ElementsAre("internal: ZELK cannot analyze files with this format"));
  sink.texts.clear();
  EXPECT_FALSE(analyze("m.vhd", "entity m is end;"));
  EXPECT_THAT(sink.texts, SizeIs(1));
}

TEST_F(AnalyzerTest, AFileThatIsGoneIsReported) {
  HDB_SOURCE_FILE* file = project->create_source_file(folder.path("gone.v"), HDB_SOURCE_FILE::TYPE_VERILOG);
  EXPECT_FALSE(analyze(file));
  EXPECT_THAT(sink.texts, ElementsAre(testing::StartsWith("EZELK_CANT_OPEN_FILE")));
}

TEST_F(AnalyzerTest, AnElaborationGivesANetlistWithTheParametersThatWereUsed) {
  ASSERT_TRUE(analyze("m.v", "module m #(parameter W = 3, parameter N = 1) (input [W-1:0] a, output y);\n"
                             "  assign y = ^a & N[0];\nendmodule\n"));
  ASSERT_TRUE(resolve());
  std::unique_ptr<UNIT_RESULT> result = elaborate("m", {{"W", -1, "5", ACF_VARIABLE_PARAMETER_STRING}});
  EXPECT_THAT(sink.texts, IsEmpty());
  ASSERT_TRUE(result && result->success && result->get_netlist());
  unsigned inputs = 0;
  for (const auto& node : result->get_netlist()->get_nodes())
    if (node->get_sgate_type() == CDB_SGATE_IO_ENUM)
      inputs += static_cast<const CDB_SGATE_IO&>(*node).get_direction() == CDB_IO_INPUT;
  EXPECT_EQ(inputs, 5U);
  std::vector<std::string> used;
  for (const UNIT_PARAMETER& parameter : result->used_parameters)
    used.push_back(parameter.name + "=" + parameter.value);
  EXPECT_THAT(used, ElementsAre("W=5", "N=1"));
  // Port types come from the elaborated ports.
  const HDB_ENTITY* unit = project->find_entity("m", 1, nullptr, nullptr);
  ASSERT_THAT(unit->get_ports(), SizeIs(2));
  const auto* type = dynamic_cast<const HDB_ARRAY_TYPE*>(unit->get_ports()[0]->type);
  ASSERT_TRUE(type);
  EXPECT_EQ(type->get_ranges()[0].left, 4);
}

TEST_F(AnalyzerTest, AttributesOfPortsReachTheirBits) {
  ASSERT_TRUE(analyze("m.v", "module m((* chip_pin = \"A1, 7\" *) input [1:0] a, (* useioff = 1 *) output [1:0] y);\n"
                             "  assign y = a;\nendmodule\n"));
  ASSERT_TRUE(resolve());
  std::unique_ptr<UNIT_RESULT> result = elaborate("m");
  ASSERT_TRUE(result && result->success);
  std::vector<std::string> assignments;
  for (const NAMED_ASSIGNMENT& assignment : result->assignments)
    assignments.push_back(std::string(acf_get_variable_name(assignment.variable)) + " " + assignment.node + " " +
                          assignment.value);
  EXPECT_THAT(assignments,
              testing::UnorderedElementsAre("LOCATION a[1] A1", "LOCATION a[0] Pin_7", "FAST_OUTPUT_REGISTER y[1] on",
                                            "FAST_OUTPUT_REGISTER y[0] on"));
}

TEST_F(AnalyzerTest, AttributesOfTheLanguageAreKnownAndHaveTheirEffect) {
  ASSERT_TRUE(analyze("m.v", "module m(input [1:0] s, input a, b, output reg y);\n"
                             "  always @* (* full_case *) case (s) 0: y = a; 1: y = b; endcase\nendmodule\n"));
  ASSERT_TRUE(resolve());
  std::unique_ptr<UNIT_RESULT> result = elaborate("m");
  ASSERT_TRUE(result && result->success);
  for (const auto& node : result->get_netlist()->get_nodes()) EXPECT_NE(node->get_sgate_type(), CDB_SGATE_LATCH_ENUM);
  EXPECT_THAT(sink.texts, testing::Not(Contains(testing::StartsWith("WZELK_INVALID_ATTRIBUTE_TYPE"))));
}

TEST_F(AnalyzerTest, AnErrorOfAnElaborationIsQueuedAndGivesNoHierarchy) {
  ASSERT_TRUE(analyze("m.v", "module m(input a, output y);\n  wire w = missing.inner;\n  assign y = a;\nendmodule\n"));
  resolve();
  unsigned before = msg_get_default_report()->get_message_count(MSG_KIND_ERROR);
  std::unique_ptr<UNIT_RESULT> result = elaborate("m");
  ASSERT_TRUE(result);
  EXPECT_GT(msg_get_default_report()->get_message_count(MSG_KIND_ERROR) + before, 0U);
  EXPECT_FALSE(result->success);
  EXPECT_EQ(result->hierarchy, nullptr);
}

TEST_F(AnalyzerTest, NothingOfAnElaborationStaysInTheLibraries) {
  ASSERT_TRUE(analyze("m.v", "module s(input a, output y); assign y = !a; endmodule\n"
                             "module m(input a, output y); s u(a, y); endmodule\n"));
  ASSERT_TRUE(resolve());
  ASSERT_TRUE(elaborate("m")->success);
  for (const Library* library : LibrariesOf(Libset::Global())) {
    bool is_shared = library == Library::Primitives() || library == Library::Operators();
    EXPECT_TRUE(is_shared || library->NumOfCells() == 0) << library->Name();
  }
  // The tree is as before: a second run gives the same.
  EXPECT_TRUE(elaborate("m")->success);
}

TEST_F(AnalyzerTest, AnInterfaceFileDescribesTheUnitsOfAFile) {
  wants_xml = true;
  ASSERT_TRUE(
      analyze("m.v", "module m #(parameter P = 7) (input [3:0] a, output y);\n  assign y = a[0];\nendmodule\n"));
  std::string text = SCRATCH_DIR::read(folder.path("m.xml"));
  for (const char* part :
       {"<MODULE name=\"m\">", "name=\"a\" direction=\"input\" type=\"std_logic_vector\" rangeleft=\"3\"",
        "name=\"y\" direction=\"output\" type=\"std_logic\"", "name=\"P\" value=\"7\""})
    EXPECT_THAT(text, testing::HasSubstr(part));
}

TEST(EntryPointTest, TheEntryPointGivesAnAnalyzerAndCloningAFreshOne) {
  std::unique_ptr<BASEX_ANALYZER> analyzer(static_cast<BASEX_ANALYZER*>(zelk_dyn_create_analyzer()));
  std::unique_ptr<BASEX_ANALYZER> clone(analyzer->clone(nullptr));
  EXPECT_NE(clone.get(), analyzer.get());
  std::string value = "FF";
  std::string type = "H";
  EXPECT_TRUE(clone->get_services().convert_parameter_to_verilog(clone.get(), value, type));
  EXPECT_EQ(value, "8'hFF");
  type = "B";
  EXPECT_FALSE(clone->get_services().convert_parameter_to_verilog(clone.get(), value, type));
  EXPECT_EQ(type, "B");
}

} // namespace
