// What the writers make of names, vectors, hierarchy and values; what nodes mean is proven elsewhere.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "acf.h"

#include <nlohmann/json.hpp>

#include "host/netlist_builder.h"
#include "host/scratch_dir.h"
#include "output/mif_file.h"
#include "output/signal_names.h"
#include "output/text_diagnostics.h"
#include "output/writer.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using JSON = nlohmann::json;

std::string verilog(NETLIST_BUILDER& builder) {
  DESIGN design;
  design.units.push_back(builder.take());
  return write_verilog(DESIGN_VIEW(design));
}

TEST(SignalNames, LastIndexIsTheBitOfTheVector) {
  struct {
    const char* text;
    const char* base;
    int index;
    bool has_index;
  } cases[] = {{"q[3]", "q", 3, true},         {"q[3]~reg0", "q~reg0", 3, true},
               {"m[2][1]", "m[2]", 1, true},   {"q[-2]", "q", -2, true},
               {"q", "q", 0, false},           {"[3]", "[3]", 0, false},
               {"q[]", "q[]", 0, false},       {"q[x]", "q[x]", 0, false},
               {"b[0].q", "b[0].q", 0, false}, {"b[0].q[1]", "b[0].q", 1, true},
               {"q[-]", "q[-]", 0, false},     {"q[99999999999]", "q[99999999999]", 0, false}};
  for (const auto& test : cases) {
    INDEXED_NAME name = split_index(test.text);
    EXPECT_EQ(name.base, test.base) << test.text;
    EXPECT_EQ(name.has_index, test.has_index) << test.text;
    EXPECT_EQ(name.index, test.index) << test.text;
  }
}

TEST(SignalNames, IllegalNamesAndKeywordsAreEscaped) {
  EXPECT_EQ(verilog_identifier("a_1$"), "a_1$");
  EXPECT_EQ(verilog_identifier("1a"), "\\1a ");
  EXPECT_EQ(verilog_identifier("reg"), "\\reg ");
  EXPECT_EQ(verilog_identifier("logic"), "\\logic ");
  EXPECT_EQ(verilog_identifier("a b"), "\\a_b ");
  EXPECT_EQ(verilog_identifier(""), "\\ ");
}

TEST(SignalNames, EachNameIsGivenOnce) {
  SIGNAL_NAMES names;
  names.reserve("a");
  EXPECT_EQ(names.make_unique("a"), "a_0");
  EXPECT_EQ(names.make_unique("a"), "a_1");
  EXPECT_EQ(names.make_unique("a_0"), "a_0_0");
  EXPECT_EQ(names.make_unique("b"), "b");
}

TEST(VerilogWriter, AGateThatReadsItsOwnVectorStandsAlone) {
  NETLIST_BUILDER n("m");
  WIRE a = n.input("a");
  WIRE first = n.gate(CDB_COMB_NOT, {a}, false, "x[0]");
  WIRE second = n.gate(CDB_COMB_NOT, {first}, false, "x[1]");
  n.output("o[0]", first);
  n.output("o[1]", second);
  EXPECT_THAT(verilog(n), HasSubstr("assign x[1] = ~(x[0]);"));
}

TEST(VerilogWriter, BitsOfOneNameBecomeAVectorWithItsDeclaredBounds) {
  NETLIST_BUILDER n("m");
  WIRES a;
  for (int i : {5, 4, 3}) a.insert(a.begin(), n.input("a[" + std::to_string(i) + "]"));
  for (unsigned i = 0; i < 3; i++)
    n.output("o[" + std::to_string(i + 3) + "]", n.gate(CDB_COMB_NOT, {a[i]}, false, "w[" + std::to_string(i) + "]"));
  n.result().port_buses = {{"a", 5, 3, false, 0, 0, {}}, {"o", 3, 5, false, 0, 0, {}}};
  std::string text = verilog(n);
  EXPECT_THAT(text, HasSubstr("input [5:3] a;"));
  EXPECT_THAT(text, HasSubstr("output [3:5] o;"));
  EXPECT_THAT(text, HasSubstr("wire [2:0] w;"));
  EXPECT_THAT(text, HasSubstr("assign w = ~(a);"));
  EXPECT_THAT(text, HasSubstr("assign o = {w[0], w[1], w[2]};"));
}

TEST(VerilogWriter, RegistersAndLogicOfOneNameStayApart) {
  NETLIST_BUILDER n("m");
  WIRE clock = n.input("clk");
  WIRE d = n.input("d");
  WIRE q = n.cell(new CDB_SGATE_DFF, {{CDB_TERM_DATA, d}, {CDB_TERM_CLOCK, clock}}, "s[0]");
  n.output("a", q);
  n.output("b", n.gate(CDB_COMB_NOT, {q}, false, "s[1]"));
  std::string text = verilog(n);
  EXPECT_THAT(text, HasSubstr("reg [0:0] s;"));
  EXPECT_THAT(text, HasSubstr("wire [1:1] s_0;"));
}

TEST(VerilogWriter, ABidirectionalPortThatReadsAConstantIsOnATiedWire) {
  NETLIST_BUILDER builder("m");
  auto* cell = builder.add(new CDB_SGATE_COMPONENT("cell", CDB_SGATE_COMPONENT::PROTOTYPE_KNOWN), "u");
  CDB_COMPONENT_PORT* port = cell->retrieve_known_port("p", CDB_IO_BIDIR);
  port->retrieve_iterm()->set_vcc();
  builder.bus({port->retrieve_oterm(), WIRE::one()});
  std::string text = verilog(builder);
  EXPECT_THAT(text, HasSubstr("wire tied = 1'b1;"));
  EXPECT_THAT(text, HasSubstr("u(.p(tied))"));
}

TEST(VerilogWriter, NamesThatMeetAreMadeDifferent) {
  NETLIST_BUILDER n("m");
  WIRE a = n.input("a");
  n.output("b", n.gate(CDB_COMB_NOT, {n.gate(CDB_COMB_NOT, {a}, false, "a")}, false, "b"));
  std::string text = verilog(n);
  EXPECT_THAT(text, HasSubstr("wire a_0;"));
  EXPECT_THAT(text, HasSubstr("assign b = b_0;"));
}

/// A top with two instances of a child, of which one leaves a bit open.
DESIGN two_level_design() {
  static NETLIST_BUILDER* keep[2]; // the units outlive the design, as in a project
  delete keep[0];
  delete keep[1];
  auto& child = *(keep[0] = new NETLIST_BUILDER("child"));
  WIRES in = child.inputs("i", 2);
  child.outputs("o", {in[1], in[0]});
  auto& top = *(keep[1] = new NETLIST_BUILDER("top"));
  WIRE a = top.input("a");
  auto* node = top.add(new CDB_SGATE_COMPONENT("child", CDB_SGATE_COMPONENT::PROTOTYPE_KNOWN), "u 1");
  connect(node->retrieve_known_port("i[1]", CDB_IO_INPUT)->retrieve_iterm(), a);
  top.output("y", node->retrieve_known_port("o[0]", CDB_IO_OUTPUT)->retrieve_oterm());
  auto* box = top.add(new CDB_SGATE_COMPONENT("vendor", CDB_SGATE_COMPONENT::PROTOTYPE_UNKNOWN), "u2");
  box->set_parameter("SIZE", "8", 0);
  box->set_parameter("MODE", "\"fast\"", 0);
  box->set_parameter(" block_config", "x", 0);
  for (int i : {0, 1}) connect(box->retrieve_unknown_port("d", i, CDB_IO_INPUT)->retrieve_iterm(), i ? a : WIRE::one());
  top.output("z", box->retrieve_unknown_port("q", -1, CDB_IO_OUTPUT)->retrieve_oterm());
  DESIGN design;
  top.result().children[node] = &child.result();
  design.units.push_back(top.take());
  design.units.push_back(child.take());
  return design;
}

TEST(VerilogWriter, InstancesConnectByNameAndBlackBoxesKeepTheirParameters) {
  DESIGN design = two_level_design();
  std::string text = write_verilog(DESIGN_VIEW(design));
  EXPECT_THAT(text, HasSubstr("child \\u_1 (.i({a, 1'bx}), .o({unused, \\u_1.o }));"));
  EXPECT_THAT(text, HasSubstr("vendor #(.SIZE(8), .MODE(\"fast\")) u2(.d({a, 1'b1}), .q(\\u2.q ));"));
}

TEST(JsonWriter, HoldsPortsCellsAndNamesOfEveryModule) {
  DESIGN design = two_level_design();
  JSON root = JSON::parse(write_json(DESIGN_VIEW(design)));
  const JSON& top = root["modules"]["top"];
  EXPECT_EQ(top["attributes"]["top"], "00000000000000000000000000000001");
  EXPECT_EQ(top["ports"]["a"]["direction"], "input");
  int a = top["ports"]["a"]["bits"][0];
  EXPECT_EQ(top["cells"]["u 1"]["type"], "child");
  EXPECT_EQ(top["cells"]["u 1"]["connections"]["i"], JSON({"x", a}));
  EXPECT_EQ(top["cells"]["u2"]["parameters"]["SIZE"], "00000000000000000000000000001000");
  EXPECT_EQ(top["cells"]["u2"]["parameters"]["MODE"], "fast");
  EXPECT_EQ(root["modules"]["vendor"]["ports"]["d"]["bits"].size(), 2U);
  EXPECT_EQ(root["modules"]["child"]["ports"]["o"]["bits"], JSON({root["modules"]["child"]["ports"]["i"]["bits"][1],
                                                                  root["modules"]["child"]["ports"]["i"]["bits"][0]}));
}

TEST(Writers, EqualDesignsGiveEqualBytes) {
  DESIGN first = two_level_design();
  std::string verilog_text = write_verilog(DESIGN_VIEW(first));
  std::string json_text = write_json(DESIGN_VIEW(first));
  DESIGN second = two_level_design();
  EXPECT_EQ(verilog_text, write_verilog(DESIGN_VIEW(second)));
  EXPECT_EQ(json_text, write_json(DESIGN_VIEW(second)));
}

TEST(Report, CountsNodesPerModuleAndInAll) {
  DESIGN design = two_level_design();
  std::string text = write_report(DESIGN_VIEW(design), {{"analyse", 0.5, 12}});
  EXPECT_THAT(text, HasSubstr("module child (once)"));
  EXPECT_THAT(text, HasSubstr("black box vendor"));
  EXPECT_THAT(text, HasSubstr("0.500 s     12.0 MB  analyse"));
}

TEST(Report, TellsWhatTheSourcesAskOfLaterSteps) {
  DESIGN design = two_level_design();
  design.units.front()->assignments = {{"q", ACF_VARIABLE_MAXIMUM_FANOUT, "8"},
                                       {"", ACF_VARIABLE_NO_MERGE, "on"},
                                       {"r", ACF_VARIABLE_NONE, "-name X 1"}};
  std::string text = write_report(DESIGN_VIEW(design), {});
  EXPECT_THAT(text, HasSubstr("  assignment MAXIMUM_FANOUT = 8 on q\n  assignment NO_MERGE = on\n"
                              "  assignment -name X 1 on r\n"));
}

TEST(ParameterValue, EachNotationOfTheDatabaseReadsAsVerilog) {
  struct {
    const char* text;
    char kind;
    const char* verilog;
  } cases[] = {{"\"abc\"", 's', "abc"},     {"12", 'i', "12"},         {"-7", 'i', "-7"},
               {"4'b0101", 'i', "4'b0101"}, {"S\"abc\"", 's', "abc"},  {"B\"0101\"", 'i', "4'b0101"},
               {"SB\"11\"", 'i', "2'sb11"}, {"H\"ff\"", 'i', "8'hff"}, {"O\"17\"", 'i', "6'o17"},
               {"D\"12\"", 'i', "12"},      {"UD\"12\"", 'i', "12"},   {"F\"1.5e3\"", 'r', "1.5e3"},
               {"2.5", 'r', "2.5"},         {"name", 's', "name"}};
  for (const auto& test : cases) {
    PARAMETER_VALUE value = read_parameter_value(test.text);
    EXPECT_EQ(value.text, test.verilog) << test.text;
    EXPECT_EQ(value.kind, test.kind) << test.text;
  }
}

TEST(MemoryFile, WordsAndRangesByAddress) {
  SCRATCH_DIR scratch;
  MIF_FILE file;
  ASSERT_TRUE(file.read(scratch.write("a.mif", "-- begin_signature\n-- x\n-- end_signature\nWIDTH=2;\nDEPTH=4;\n"
                                               "ADDRESS_RADIX=UNS;\nDATA_RADIX=BIN;\nCONTENT BEGIN\n0 :\t01;\n"
                                               "[1..2] :\t10;\n3 :\t11;\nEND;\n")));
  std::string words;
  for (const auto& [address, word] : file.get_words()) words += std::to_string(address) + "=" + word + " ";
  EXPECT_EQ(words, "0=01 1=10 2=10 3=11 ");
  EXPECT_FALSE(MIF_FILE().read(scratch.write("b.mif", "WIDTH=2;\n0 : 011;\n")));
  EXPECT_FALSE(MIF_FILE().read(scratch.path("none.mif")));
}

std::string shown(const MSG_BASE& message, DIAGNOSTICS_DETAIL detail = DETAIL_ALL) {
  SCRATCH_DIR scratch;
  std::string path = scratch.path("out");
  FILE* stream = std::fopen(path.c_str(), "w");
  TEXT_DIAGNOSTICS(stream, TEXT_DIAGNOSTICS::COLOR_OFF, detail).on_message(message);
  std::fclose(stream);
  return SCRATCH_DIR::read(path);
}

template <class MESSAGE> MESSAGE located(const char* text, const std::string& file, int line) {
  MESSAGE message;
  message.fill_args(text);
  message.set_id(10161);
  MSG_TEXT_LOCATION_SCHEMA schema(file.c_str(), line, 0);
  message.set_location(file.c_str(), &schema, "", "");
  return message;
}

TEST(TextDiagnostics, TheSourceLineStandsUnderTheMessage) {
  SCRATCH_DIR scratch;
  std::string file = scratch.write("a.v", "module m;\n\tassign x = y;\n");
  EXPECT_EQ(shown(located<MSG_E>("text at a.v(2)/EZELK_X", file, 2)),
            "error 10161: text at a.v(2)\n     2 |  assign x = y;\n");
  EXPECT_EQ(shown(located<MSG_W>("text", file, 9)), "warning 10161: text\n");
  EXPECT_EQ(shown(located<MSG_I>("see/IZELK_HDL_SEE_DECLARATION", file, 1)),
            "  note 10161: see\n       1 | module m;\n");
  EXPECT_EQ(shown(located<MSG_I>("text", file, 1), DETAIL_QUIET), "");
}

} // namespace
