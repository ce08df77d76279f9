// The tables of the conversion: for every kind of instance the node that stands for it, its numbers, and the number of
// the term that each port becomes; for what has no node, what is told instead.
#include <algorithm>
#include <ostream>
#include <sstream>

#include "database/operators.h"
#include "database/primitives.h"
#include "sgate_fixture.h"

namespace {

struct KIND {
  prim_type_enum type;
  CDB_SGATE_ENUM node;
  int number; // of the gate, operator or buffer; -1 where the node has none
  bool is_inverted;
  const char* terms; // PORT=term number, in any order; vectors by their base name
  buffer_type_enum buffer = LOGICAL;
};

void PrintTo(const KIND& kind, std::ostream* stream) { *stream << Netlist::PrimTypeToString(kind.type); }

constexpr const char* GATE_TERMS = "a0=1000 a1=1000 o=2";
constexpr const char* VECTOR_GATE_TERMS = "a=1000 o=2";
constexpr const char* WORD_TERMS = "a=1 b=2 o=3";

const KIND kinds[] = {
    {PRIM_INV, CDB_SGATE_COMB_ENUM, 3, false, "i=1000 o=2"},
    {PRIM_AND, CDB_SGATE_COMB_ENUM, 0, false, GATE_TERMS},
    {PRIM_NAND, CDB_SGATE_COMB_ENUM, 0, true, GATE_TERMS},
    {PRIM_OR, CDB_SGATE_COMB_ENUM, 1, false, GATE_TERMS},
    {PRIM_NOR, CDB_SGATE_COMB_ENUM, 1, true, GATE_TERMS},
    {PRIM_XOR, CDB_SGATE_COMB_ENUM, 2, false, GATE_TERMS},
    {PRIM_XNOR, CDB_SGATE_COMB_ENUM, 2, true, GATE_TERMS},
    {OPER_REDUCE_AND, CDB_SGATE_COMB_ENUM, 0, false, VECTOR_GATE_TERMS},
    {OPER_REDUCE_NAND, CDB_SGATE_COMB_ENUM, 0, true, VECTOR_GATE_TERMS},
    {OPER_REDUCE_OR, CDB_SGATE_COMB_ENUM, 1, false, VECTOR_GATE_TERMS},
    {OPER_REDUCE_NOR, CDB_SGATE_COMB_ENUM, 1, true, VECTOR_GATE_TERMS},
    {OPER_REDUCE_XOR, CDB_SGATE_COMB_ENUM, 2, false, VECTOR_GATE_TERMS},
    {OPER_REDUCE_XNOR, CDB_SGATE_COMB_ENUM, 2, true, VECTOR_GATE_TERMS},
    {PRIM_MUX, CDB_SGATE_MUX_ENUM, -1, false, "a0=11 a1=12 c=52 o=2"},
    {PRIM_TRI, CDB_SGATE_IO_BUF_ENUM, -1, false, "i=18 c=20 o=2"},
    {PRIM_DLATCHRS, CDB_SGATE_LATCH_ENUM, -1, false, "d=18 gate=19 s=25 r=5 q=2"},
    {PRIM_DFF, CDB_SGATE_DFF_ENUM, -1, false, "d=18 clk=6 async_val=0 async_cond=1 q=2"},
    {PRIM_DFFRS, CDB_SGATE_DFF_ENUM, -1, false, "d=18 clk=6 s=25 r=5 aload=1 adata=0 q=2"},
    {PRIM_BUF, CDB_SGATE_BUFFER_ENUM, 4, false, "i=18 o=2", LOGICAL},
    {PRIM_BUF, CDB_SGATE_BUFFER_ENUM, 4, false, "i=18 o=2", STRUCTURAL},
    {PRIM_BUF, CDB_SGATE_BUFFER_ENUM, 5, false, "i=18 o=2", KEEP},
    {PRIM_BUF, CDB_SGATE_COMB_ENUM, 4, false, "i=1000 o=2", USER_NET},
    {PRIM_BUF, CDB_SGATE_BUFFER_ENUM, 4, false, "i=18 o=2", CONSTANT},
    {PRIM_BUF, CDB_SGATE_BUFFER_ENUM, 13, false, "i=18 o=2", DIRECTIONAL},
    {OPER_ADDER, CDB_SGATE_OPERATOR_ENUM, 0, false, "cin=0 a=1 b=2 o=3 cout=4"},
    {OPER_MULTIPLIER, CDB_SGATE_OPERATOR_ENUM, 1, false, WORD_TERMS},
    {OPER_DIVIDER, CDB_SGATE_OPERATOR_ENUM, 2, false, WORD_TERMS},
    {OPER_MODULO, CDB_SGATE_OPERATOR_ENUM, 3, false, WORD_TERMS},
    {OPER_SHIFT_LEFT, CDB_SGATE_OPERATOR_ENUM, 4, false, "cin=0 a=1 amount=5 o=3"},
    {OPER_SHIFT_RIGHT, CDB_SGATE_OPERATOR_ENUM, 5, false, "cin=0 a=1 amount=5 o=3"},
    {OPER_ROTATE_LEFT, CDB_SGATE_OPERATOR_ENUM, 6, false, "a=1 amount=5 o=3"},
    {OPER_ROTATE_RIGHT, CDB_SGATE_OPERATOR_ENUM, 7, false, "a=1 amount=5 o=3"},
    {OPER_LESSTHAN, CDB_SGATE_OPERATOR_ENUM, 8, false, "cin=0 a=1 b=2 o=3"},
    {OPER_NTO1MUX, CDB_SGATE_OPERATOR_ENUM, 9, false, "sel=1 data=2 o=3"},
    {OPER_SELECTOR, CDB_SGATE_OPERATOR_ENUM, 10, false, "sel=1 data=2 o=3"},
    {OPER_DECODER, CDB_SGATE_OPERATOR_ENUM, 11, false, "a=1 o=3"},
    {OPER_EQUAL, CDB_SGATE_OPERATOR_ENUM, 16, false, WORD_TERMS},
};

std::string base_of(const Port* port) {
  std::string name = port->Name();
  return name.substr(0, name.find('['));
}

class SgateKindTest : public SgateTest, public testing::WithParamInterface<KIND> {
protected:
  /// An instance with a port of the netlist on each of its own: "i_" inputs, "o_" outputs.
  Instance* instantiate(Netlist* view) {
    auto* inst = new Instance("it", view, place(5));
    netlist->Add(inst);
    for (Port* port : PortsOf(view)) {
      std::string name = port->Name();
      if (name == "az") continue; // no register has an asynchronous tristate any more
      inst->Connect(port, port->IsInput() ? in("i_" + name) : out("o_" + name));
    }
    return inst;
  }
  static Netlist* view_of(prim_type_enum type, buffer_type_enum buffer = LOGICAL, unsigned is_signed = 0) {
    if (type == PRIM_BUF) return PrimBuf::Static(buffer);
    if (Netlist* primitive = Prim::Static(type)) return primitive;
    Operator* made = Operator::New(type, 2, type == OPER_NTO1MUX ? 4 : 2, is_signed);
    auto* cell = new Cell(made->CellName().c_str());
    Libset::Global()->GetLibrary("work")->Add(cell);
    cell->Add(made);
    return made;
  }
  int number_of(const CDB_SGATE_NODE& node) const {
    switch (node.get_sgate_type()) {
    case CDB_SGATE_COMB_ENUM: return static_cast<const CDB_SGATE_COMB&>(node).get_comb_type();
    case CDB_SGATE_BUFFER_ENUM: return static_cast<const CDB_SGATE_BUFFER&>(node).get_buffer_type();
    case CDB_SGATE_OPERATOR_ENUM: return static_cast<const CDB_SGATE_OPERATOR&>(node).get_operator_type();
    default: return -1;
    }
  }
};

std::string sorted_words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  std::sort(words.begin(), words.end());
  words.erase(std::unique(words.begin(), words.end()), words.end());
  std::string all;
  for (const std::string& word : words) all += word + " ";
  return all;
}

TEST_P(SgateKindTest, HasItsNodeAndItsTerms) {
  const KIND& kind = GetParam();
  Netlist* view = view_of(kind.type, kind.buffer);
  instantiate(view);
  ASSERT_TRUE(convert());
  std::string terms;
  std::set<const CDB_SGATE_NODE*> found;
  for (const Port* port : PortsOf(view)) {
    std::string name = port->Name();
    if (name == "az") continue;
    const CDB_SGATE_TERM* term = nullptr;
    if (port->IsInput()) {
      const CDB_SGATE_OTERM* outside = named("i_" + name)->find_oterm(CDB_TERM_OUTPUT);
      ASSERT_TRUE(outside && outside->get_fanouts().size() == 1) << name;
      term = outside->get_first_fanout();
    } else {
      term = named("o_" + name)->find_iterm(CDB_TERM_DATA)->get_source();
    }
    ASSERT_TRUE(term) << name;
    found.insert(term->get_node());
    terms += base_of(port) + "=" + std::to_string(term->get_type()) + " ";
    size_t bracket = name.find('[');
    if (bracket != std::string::npos && term->get_type() != CDB_TERM_UNORDERED) {
      EXPECT_EQ(term->get_index(), std::stoul(name.substr(bracket + 1))) << name;
    }
  }
  ASSERT_EQ(found.size(), 1U);
  const CDB_SGATE_NODE& node = **found.begin();
  EXPECT_EQ(node.get_sgate_type(), kind.node);
  EXPECT_EQ(number_of(node), kind.number);
  EXPECT_EQ(node.get_first_oterm()->is_inverted(), kind.is_inverted);
  EXPECT_EQ(sorted_words(terms), sorted_words(kind.terms));
  EXPECT_STREQ(node.get_string_name(), "it");
  EXPECT_EQ(node.get_source_line(), 5U);
}

INSTANTIATE_TEST_SUITE_P(Table, SgateKindTest, testing::ValuesIn(kinds));

TEST_F(SgateKindTest, OnlyOperatorsThatHaveASignCarryIt) {
  for (prim_type_enum type : {OPER_MULTIPLIER, OPER_DIVIDER, OPER_MODULO}) {
    auto* inst = new Instance(Netlist::PrimTypeToString(type), view_of(type, LOGICAL, 1), place(5));
    netlist->Add(inst);
    for (Port* port : PortsOf(inst->View())) {
      std::string name = std::string(inst->Name()) + "." + port->Name();
      inst->Connect(port, port->IsInput() ? in(name) : out(name));
    }
  }
  ASSERT_TRUE(convert());
  for (const CDB_SGATE_NODE* node : nodes(CDB_SGATE_OPERATOR_ENUM))
    EXPECT_TRUE(static_cast<const CDB_SGATE_OPERATOR*>(node)->is_signed()) << node->get_string_name();
}

TEST_F(SgateKindTest, AttributesDecideWhatABufferBecomes) {
  const struct {
    const char* name;
    ATT_ENUM attribute;
    CDB_SGATE_ENUM node;
    int number;
  } rows[] = {{"keep", ATT_KEEP, CDB_SGATE_BUFFER_ENUM, 5},
              {"fanout", ATT_MAXFAN, CDB_SGATE_BUFFER_ENUM, 5},
              {"enable", ATT_DIRECT_ENABLE, CDB_SGATE_BUFFER_ENUM, 5},
              {"debug", ATT_IP_DEBUG_VISIBLE, CDB_SGATE_BUFFER_ENUM, 4},
              {"attribute", ATT_NORVEL_ATTRIBUTE, CDB_SGATE_COMB_ENUM, 4}};
  for (const auto& row : rows) {
    Net* made = netlist->Buf(in(std::string("i_") + row.name), place(3), LOGICAL, row.name);
    made->Driver()->AddAtt(row.attribute, "1");
    out((std::string("o_") + row.name).c_str(), made);
  }
  ASSERT_TRUE(convert());
  for (const auto& row : rows) {
    const CDB_SGATE_NODE* node = named(row.name);
    ASSERT_TRUE(node) << row.name;
    EXPECT_EQ(node->get_sgate_type(), row.node) << row.name;
    EXPECT_EQ(number_of(*node), row.number) << row.name;
  }
}

TEST_F(SgateKindTest, AFullAdderIsAComponentOfTheHost) {
  Net* carry = nullptr;
  Net* sum = netlist->Fadd(in("a"), in("b"), in("c"), &carry, place(3));
  out("sum", sum);
  out("carry", carry);
  ASSERT_TRUE(convert());
  auto* adder = only<CDB_SGATE_COMPONENT>(CDB_SGATE_COMPONENT_ENUM);
  ASSERT_TRUE(adder);
  EXPECT_EQ(adder->get_entity_name(), "fadd");
  EXPECT_TRUE(adder->is_host_primitive());
  std::string ports;
  for (const auto& port : adder->get_ports())
    ports += port->get_name() + "=" + (port->get_iterm() ? source(port->get_iterm()) : "out") + " ";
  EXPECT_EQ(sorted_words(ports), "a=a b=b cin=c cout=out o=out ");
}

TEST_F(SgateKindTest, AMemoryOfTwoPortsHasTheTermsOfBoth) {
  auto word = [this](const char* name, unsigned width, port_dir direction) { return bus(name, width, direction); };
  auto be_a = word("be_a", 2, DIR_INPUT);
  auto be_b = word("be_b", 2, DIR_INPUT);
  auto waddr_a = word("waddr_a", 2, DIR_INPUT);
  auto waddr_b = word("waddr_b", 2, DIR_INPUT);
  auto raddr_a = word("raddr_a", 2, DIR_INPUT);
  auto raddr_b = word("raddr_b", 2, DIR_INPUT);
  auto wdata_a = word("wdata_a", 2, DIR_INPUT);
  auto wdata_b = word("wdata_b", 2, DIR_INPUT);
  auto q_a = word("q_a", 2, DIR_OUTPUT);
  auto q_b = word("q_b", 2, DIR_OUTPUT);
  Instance* ram = netlist->TrueDualPortRam(in("we_a"), be_a.get(), waddr_a.get(), 4, wdata_a.get(), raddr_a.get(), 4,
                                           q_a.get(), in("we_b"), be_b.get(), waddr_b.get(), 4, wdata_b.get(),
                                           raddr_b.get(), 4, q_b.get(), place(3));
  ram->AddAtt(ATT_TRUE_DUAL_PORT, "1");
  ASSERT_TRUE(convert());
  auto* node = only<CDB_SGATE_ASYNCHRONOUS_RAM>(CDB_SGATE_ASYNCHRONOUS_RAM_ENUM);
  ASSERT_TRUE(node);
  const std::pair<const char*, int> inputs[] = {{"waddr_a", 34},  {"waddr_b", 101}, {"raddr_a", 35},
                                                {"raddr_b", 102}, {"wdata_a", 18},  {"wdata_b", 92}};
  for (auto [name, term] : inputs)
    for (unsigned i = 0; i < 2; i++)
      EXPECT_EQ(source(node, term, i), std::string(name) + "[" + std::to_string(i) + "]");
  const std::pair<const char*, int> enables[] = {{"be_a", 170}, {"be_b", 171}};
  for (auto [name, term] : enables)
    for (unsigned i = 0; i < 2; i++)
      EXPECT_EQ(source(node, term, i), std::string(name) + "[" + std::to_string(1 - i) + "]");
  EXPECT_EQ(source(node, 31), "we_a");
  EXPECT_EQ(source(node, 99), "we_b");
  EXPECT_EQ(named("q_a[1]")->find_iterm(CDB_TERM_DATA)->get_source(), node->find_oterm(2, 1));
  EXPECT_EQ(named("q_b[1]")->find_iterm(CDB_TERM_DATA)->get_source(), node->find_oterm(41, 1));
}

TEST_F(SgateKindTest, SwitchesAndPullsAreRefusedInTheHostsWords) {
  Net* d = in("d");
  Net* c = in("c");
  out("o0", netlist->Pullup(place(11)));
  out("o1", netlist->Pulldown(place(12)));
  out("o2", netlist->Nmos(d, c, place(13)));
  out("o3", netlist->Pmos(d, c, place(14)));
  out("o4", netlist->Cmos(d, c, in("n"), place(15)));
  netlist->Tran(in("x"), in("y"), in("z"), place(16));
  EXPECT_FALSE(convert());
  EXPECT_EQ(result->hierarchy, nullptr);
  std::vector<std::string> told;
  for (const auto& message : messages)
    told.push_back(std::to_string(message->get_line()) + " " + message->get_name() + ": " + message->get_text());
  std::sort(told.begin(), told.end());
  const std::string feature = "Verilog HDL unsupported feature error at file \"t.v\" ";
  const std::string pull = " EZELK_VERI_UNSUPPORTED_PULLUP: " + feature + "line (";
  const std::string pull_end = "): can't synthesize pullup or pulldown primitive";
  const std::string gate = " EZELK_VERI_UNSUPPORTED_PRIM_GATE: " + feature + "(line ";
  const std::string gate_end = "): cannot synthesize MOS switch gate primitive";
  EXPECT_EQ(told, (std::vector<std::string>{
                      "11" + pull + "11" + pull_end, "12" + pull + "12" + pull_end, "13" + gate + "13" + gate_end,
                      "14" + gate + "14" + gate_end, "15" + gate + "15" + gate_end,
                      "16 EZELK_VERI_UNSUPPORTED_TRAN: " + feature +
                          "(line 16): can't synthesize tran, rtran, or tranif bidirectional pass gate primitive"}));
}

struct INTERNAL_ERRORS : MSG_SINK {
  std::vector<std::string> texts;
  void on_message(const MSG_BASE&) override {}
  void on_internal_error(const std::string& text, const std::string&, const std::string&, int) override {
    texts.push_back(text);
  }
  void on_debug(const std::string&, const std::string&) override {}
};

TEST_F(SgateKindTest, WhatPolishShouldHaveReplacedIsAnInternalErrorAndAGate) {
  const struct {
    prim_type_enum type;
    const char* text;
  } rows[] = {{PRIM_DLATCH, "Unexpected PRIM_DLATCH"},
              {PRIM_CLOCK, "Found unconverted clock primitive during SGATE conversion"},
              {PRIM_PSL_ASSERTION, "Unknown netlist object in SGATE conversion"},
              {PRIM_INFER_POINT, "Unknown netlist object in SGATE conversion"},
              {OPER_LUT, "Unknown netlist object in SGATE conversion"},
              {OPER_PRIO_SELECTOR, "No support for OPER_PRIOR_SELECTOR"}};
  INTERNAL_ERRORS sink;
  MSG_SINK* former = msg_get_default_report()->set_sink(&sink);
  std::vector<std::string> expected;
  for (const auto& row : rows) {
    Netlist* view = view_of(row.type);
    auto* inst = new Instance(Netlist::PrimTypeToString(row.type), view, place(5));
    netlist->Add(inst);
    for (Port* port : PortsOf(view)) inst->Connect(port, in(std::string(inst->Name()) + "." + port->Name()));
    expected.emplace_back(row.text);
  }
  convert();
  msg_get_default_report()->set_sink(former);
  std::sort(expected.begin(), expected.end());
  std::vector<std::string> told;
  for (const std::string& text : sink.texts)
    if (std::find(expected.begin(), expected.end(), text) != expected.end()) told.push_back(text);
  std::sort(told.begin(), told.end());
  EXPECT_EQ(told, expected);
  MSG_INTERNAL_ERROR::reset_count();
}

} // namespace
