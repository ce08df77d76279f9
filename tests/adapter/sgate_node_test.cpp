// Which node stands for which instance, and how its terms are connected.
#include "acf.h"
#include "database/ram.h"
#include "sgate_fixture.h"

namespace {

using testing::Test;

class SgateNodeTest : public SgateTest {};

struct GATE {
  const char* name;
  Net* (Netlist::*build)(Net*, Net*, unsigned long);
  CDB_COMB_TYPE type;
  bool is_inverted;
};
constexpr GATE gates[] = {
    {"and", &Netlist::And, CDB_COMB_AND, false}, {"nand", &Netlist::Nand, CDB_COMB_AND, true},
    {"or", &Netlist::Or, CDB_COMB_OR, false},    {"nor", &Netlist::Nor, CDB_COMB_OR, true},
    {"xor", &Netlist::Xor, CDB_COMB_XOR, false}, {"xnor", &Netlist::Xnor, CDB_COMB_XOR, true},
};

TEST_F(SgateNodeTest, InvertingGatesAreGatesWithAnInvertedOutput) {
  Net* a = in("a");
  Net* b = in("b");
  Netlist* const n = netlist; // g++ 12 checks a member of nobody when it is called through here
  for (const GATE& gate : gates) {
    Net* y = (n->*gate.build)(a, b, place(3));
    name_driver(y, gate.name);
    out(("y_" + std::string(gate.name)).c_str(), y);
  }
  ASSERT_TRUE(convert());
  for (const GATE& gate : gates) {
    SCOPED_TRACE(gate.name);
    const CDB_SGATE_NODE* node = named(gate.name);
    ASSERT_TRUE(node && node->get_sgate_type() == CDB_SGATE_COMB_ENUM);
    EXPECT_EQ(static_cast<const CDB_SGATE_COMB*>(node)->get_comb_type(), gate.type);
    EXPECT_EQ(node->get_first_oterm()->is_inverted(), gate.is_inverted);
    ASSERT_EQ(node->get_iterms().size(), 2U);
    EXPECT_EQ(source(node->get_iterms()[0].get()) + source(node->get_iterms()[1].get()), "ab");
    EXPECT_EQ(output_source("y_" + std::string(gate.name)), gate.name);
  }
}

TEST_F(SgateNodeTest, RegistersMultiplexersAndTristatesFindTheirTermsByRole) {
  Net* d = in("d");
  Net* clk = in("clk");
  Net* q = netlist->Dffrs(d, clk, in("s"), in("r"), place(4), "q", nullptr, in("load"), in("data"));
  Net* latch = netlist->Dlatchrs(d, clk, netlist->Gnd(0), in("clear"), place(4), "l");
  Net* mux = netlist->Mux(q, latch, in("sel"), place(4));
  name_driver(mux, "m");
  Net* tri = netlist->Tristate(mux, in("oe"), place(4));
  name_driver(tri, "t");
  out("y", tri);
  ASSERT_TRUE(convert());
  const CDB_SGATE_NODE* dff = named("q");
  EXPECT_EQ(source(dff, CDB_TERM_DATA), "d");
  EXPECT_EQ(source(dff, CDB_TERM_CLOCK), "clk");
  EXPECT_EQ(source(dff, CDB_TERM_SET), "s");
  EXPECT_EQ(source(dff, CDB_TERM_RESET), "r");
  EXPECT_EQ(source(dff, CDB_TERM_ASYNC_LOAD), "load");
  EXPECT_EQ(source(dff, CDB_TERM_ASYNC_DATA), "data");
  const CDB_SGATE_NODE* l = named("l");
  EXPECT_EQ(source(l, CDB_TERM_LATCH_ENABLE), "clk");
  EXPECT_EQ(source(l, CDB_TERM_SET), "0");
  EXPECT_EQ(source(l, CDB_TERM_RESET), "clear");
  const CDB_SGATE_NODE* m = named("m");
  EXPECT_EQ(source(m, CDB_TERM_MUX_FIRST), "q");
  EXPECT_EQ(source(m, CDB_TERM_MUX_SECOND), "l");
  EXPECT_EQ(source(m, CDB_TERM_MUX_SELECT), "sel");
  const CDB_SGATE_NODE* t = named("t");
  EXPECT_EQ(source(t, CDB_TERM_DATA), "m");
  EXPECT_EQ(source(t, CDB_TERM_OUTPUT_ENABLE), "oe");
}

TEST_F(SgateNodeTest, OperatorsHaveVectorsOfTermsWithBitZeroFirst) {
  auto a = bus("a", 4, DIR_INPUT);
  auto b = bus("b", 4, DIR_INPUT);
  auto o = bus("o", 4, DIR_OUTPUT);
  Net* cout = nullptr;
  netlist->Adder(in("cin"), a.get(), b.get(), o.get(), &cout, place(3));
  out("carry", cout);
  ASSERT_TRUE(convert());
  auto* adder = only<CDB_SGATE_OPERATOR>(CDB_SGATE_OPERATOR_ENUM);
  ASSERT_TRUE(adder);
  EXPECT_EQ(adder->get_operator_type(), CDB_OPERATOR_ADDER);
  EXPECT_EQ(adder->get_input_width(CDB_OPERATOR_INPUT_1), 4U);
  EXPECT_EQ(source(adder, CDB_OPERATOR_CARRY_IN), "cin");
  for (unsigned i = 0; i < 4; i++) {
    const std::string index = "[" + std::to_string(i) + "]";
    EXPECT_EQ(source(adder, CDB_OPERATOR_INPUT_1, i), "a" + index);
    EXPECT_EQ(source(adder, CDB_OPERATOR_INPUT_2, i), "b" + index);
    const CDB_SGATE_NODE* port = named("o" + index);
    EXPECT_EQ(port->find_iterm(CDB_TERM_DATA)->get_source(), adder->find_oterm(CDB_OPERATOR_OUTPUT, i));
  }
  EXPECT_EQ(named("carry")->find_iterm(CDB_TERM_DATA)->get_source(), adder->find_oterm(CDB_OPERATOR_CARRY_OUT));
}

TEST_F(SgateNodeTest, EachWordOperatorHasItsNumberAndItsSign) {
  auto a = bus("a", 2, DIR_INPUT);
  auto b = bus("b", 2, DIR_INPUT);
  auto data = bus("data", 4, DIR_INPUT);
  auto word = [this](unsigned width) {
    auto bits = std::make_unique<ArrayOf<Net>>();
    for (unsigned i = 0; i < width; i++) {
      auto* bit = new Net;
      netlist->Add(bit);
      bits->InsertLast(bit);
    }
    return bits;
  };
  auto check = [this](const char* name, Net* output) { out(name, output); };
  auto mult = word(4);
  auto div = word(2);
  auto mod = word(2);
  auto left = word(2);
  auto right = word(2);
  auto decoded = word(4);
  Net* gnd = netlist->Gnd(0);
  netlist->Multiplier(1, a.get(), b.get(), mult.get(), place(3));
  netlist->Divider(1, a.get(), b.get(), div.get(), place(3));
  netlist->Modulo(0, a.get(), b.get(), mod.get(), place(3));
  netlist->ShiftLeft(gnd, a.get(), b.get(), left.get(), place(3));
  netlist->RotateRight(a.get(), b.get(), right.get(), place(3));
  netlist->Decoder(a.get(), decoded.get(), place(3));
  Net* less = nullptr;
  Net* equal = nullptr;
  Net* muxed = nullptr;
  Net* selected = nullptr;
  netlist->LessThan(gnd, a.get(), b.get(), &less, place(3));
  netlist->Equal(a.get(), b.get(), &equal, place(3));
  netlist->Nto1Mux(a.get(), data.get(), &muxed, place(3));
  netlist->Selector(a.get(), b.get(), &selected, place(3));
  const struct {
    const char* name;
    Net* output;
    CDB_OPERATOR_TYPE type;
    bool is_signed;
  } rows[] = {{"mult", mult->At(3), CDB_OPERATOR_MULTIPLIER, true},
              {"div", div->At(0), CDB_OPERATOR_DIVIDER, true},
              {"mod", mod->At(0), CDB_OPERATOR_MODULO, false},
              {"left", left->At(1), CDB_OPERATOR_SHIFT_LEFT, false},
              {"right", right->At(1), CDB_OPERATOR_ROTATE_RIGHT, false},
              {"decoded", decoded->At(3), CDB_OPERATOR_DECODER, false},
              {"less", less, CDB_OPERATOR_LESS_THAN, false},
              {"equal", equal, CDB_OPERATOR_EQUAL, false},
              {"muxed", muxed, CDB_OPERATOR_N_TO_1_MUX, false},
              {"selected", selected, CDB_OPERATOR_SELECTOR, false}};
  for (const auto& row : rows) check(row.name, row.output);
  ASSERT_TRUE(convert());
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const CDB_SGATE_OTERM* driver = named(row.name)->find_iterm(CDB_TERM_DATA)->get_source();
    ASSERT_TRUE(driver && driver->get_node()->get_sgate_type() == CDB_SGATE_OPERATOR_ENUM);
    const auto* oper = static_cast<const CDB_SGATE_OPERATOR*>(driver->get_node());
    EXPECT_EQ(oper->get_operator_type(), row.type);
    EXPECT_EQ(oper->is_signed(), row.is_signed);
  }
  // Shift amounts have terms of their own; selects of multiplexers are the first input.
  const CDB_SGATE_NODE* shift = named("left")->find_iterm(CDB_TERM_DATA)->get_source()->get_node();
  EXPECT_EQ(source(shift, CDB_OPERATOR_AMOUNT, 1), "b[1]");
  EXPECT_EQ(source(shift, CDB_OPERATOR_CARRY_IN), "0");
  const CDB_SGATE_NODE* mux = named("muxed")->find_iterm(CDB_TERM_DATA)->get_source()->get_node();
  EXPECT_EQ(source(mux, CDB_OPERATOR_INPUT_1, 1), "a[1]");
  EXPECT_EQ(source(mux, CDB_OPERATOR_INPUT_2, 3), "data[3]");
}

TEST_F(SgateNodeTest, ConstantsAreToldToTheirLoadsAndUnknownsReadAsGround) {
  out("zero", netlist->Gnd(0));
  out("one", netlist->Pwr(0));
  Net* x = netlist->X(place(3));
  out("unknown", x);
  ASSERT_TRUE(convert());
  EXPECT_EQ(output_source("zero"), "0");
  EXPECT_EQ(output_source("one"), "1");
  auto* buffer = only<CDB_SGATE_BUFFER>(CDB_SGATE_BUFFER_ENUM);
  ASSERT_TRUE(buffer);
  EXPECT_EQ(buffer->get_buffer_type(), CDB_BUFFER_CONSTANT_SOURCE);
  EXPECT_EQ(source(buffer, CDB_TERM_DATA), "0");
  EXPECT_EQ(named("unknown")->find_iterm(CDB_TERM_DATA)->get_source(), buffer->get_first_oterm());
}

TEST_F(SgateNodeTest, WireBuffersOfConstantsDisappearIntoConstantTerms) {
  Net* wire = netlist->ConstBuf(netlist->Pwr(0), place(3));
  Net* kept = netlist->Buf(netlist->Pwr(0), place(3), KEEP, "kept");
  out("w", wire);
  out("k", kept);
  ASSERT_TRUE(convert());
  EXPECT_EQ(output_source("w"), "1");
  EXPECT_EQ(output_source("k"), "kept");
  EXPECT_EQ(assignments(ACF_VARIABLE_IGNORE_LCELL), std::vector<std::string>{"kept=off"});
}

TEST_F(SgateNodeTest, WhatTheHostHasNoNodeForIsReportedOnEachOccurrenceAndGivesNoNetlist) {
  netlist->Tran(in("a"), in("b"), in("c"), place(7));
  netlist->Tran(in("d"), in("e"), in("f"), place(8));
  out("y", netlist->Pullup(place(9)));
  EXPECT_FALSE(convert());
  ASSERT_EQ(messages.size(), 3U);
  EXPECT_EQ(messages[0]->get_name(), "EZELK_VERI_UNSUPPORTED_TRAN");
  EXPECT_EQ(messages[0]->get_line(), 7);
  EXPECT_EQ(messages[1]->get_line(), 8);
  EXPECT_EQ(messages[2]->get_name(), "EZELK_VERI_UNSUPPORTED_PULLUP");
  EXPECT_EQ(result->hierarchy, nullptr);
  EXPECT_FALSE(result->success);
}

TEST_F(SgateNodeTest, AUserCellIsAComponentWithItsPortsLibraryAndParameters) {
  auto* cell = new Cell("sub(W,2)");
  Libset::Global()->GetLibrary("work")->Add(cell);
  auto* view = new Netlist("BlackBox");
  cell->Add(view);
  view->AddAtt(" cell_name", "sub");
  view->AddAtt(" prototyped", "1");
  view->AddParam("W", "2", nullptr, 7);
  auto* vector = new PortBus("d", DIR_INPUT, 1, 0);
  for (int i = 1; i >= 0; i--) {
    auto* bit = new Port(("d[" + std::to_string(i) + "]").c_str(), DIR_INPUT);
    view->Add(bit);
    vector->Add(bit);
  }
  view->Add(vector);
  view->Add(new Port("q", DIR_OUTPUT));
  view->Add(new Port("unused", DIR_OUTPUT));
  auto* inst = new Instance("u1", view, place(5));
  netlist->Add(inst);
  inst->AddAtt(" library_name", "lib");
  inst->Connect(view->GetPort("d[0]"), in("a"));
  inst->Connect(view->GetPort("d[1]"), netlist->Pwr(0));
  inst->Connect(view->GetPort("q"), out("y"));
  ASSERT_TRUE(convert());
  auto* component = only<CDB_SGATE_COMPONENT>(CDB_SGATE_COMPONENT_ENUM);
  ASSERT_TRUE(component);
  EXPECT_STREQ(component->get_string_name(), "u1");
  EXPECT_EQ(component->get_source_line(), 5U);
  EXPECT_EQ(component->get_entity_name(), "sub");
  EXPECT_EQ(component->get_library_name(), "lib");
  EXPECT_EQ(component->get_prototype(), CDB_SGATE_COMPONENT::PROTOTYPE_KNOWN);
  ASSERT_EQ(component->get_parameters().size(), 1U);
  EXPECT_EQ(component->get_parameters()[0].name + "=" + component->get_parameters()[0].value, "W=2");
  EXPECT_EQ(component->get_parameters()[0].type, 7);
  // All ports of the declaration are there, a vector's bits from its last element on.
  std::string ports;
  for (const auto& port : component->get_ports()) ports += port->get_full_name() + " ";
  EXPECT_EQ(ports, "d[0] d[1] q unused ");
  EXPECT_EQ(source(component->get_ports()[0]->get_iterm()), "a");
  EXPECT_EQ(source(component->get_ports()[1]->get_iterm()), "1");
  EXPECT_EQ(output_source("y"), "u1");
}

TEST_F(SgateNodeTest, AMemoryCountsByteEnablesFromTheOtherEnd) {
  auto be = bus("be", 2, DIR_INPUT);
  auto waddr = bus("waddr", 3, DIR_INPUT);
  auto wdata = bus("wdata", 4, DIR_INPUT);
  auto raddr = bus("raddr", 3, DIR_INPUT);
  auto q = bus("q", 4, DIR_OUTPUT);
  Instance* ram =
      netlist->DualPortRam(in("we"), be.get(), waddr.get(), 8, wdata.get(), raddr.get(), 8, q.get(), place(3));
  ram->AddAtt(ATT_READ_AFTER_WRITE, "AA");
  ram->AddAtt(ATT_RAMSTYLE, "\"srb7, no_rw_check\"");
  ASSERT_TRUE(convert());
  auto* node = only<CDB_SGATE_ASYNCHRONOUS_RAM>(CDB_SGATE_ASYNCHRONOUS_RAM_ENUM);
  ASSERT_TRUE(node);
  const auto& sizes = node->get_sizes(CDB_SGATE_ASYNCHRONOUS_RAM::PORT_A);
  EXPECT_EQ(sizes.read_address, 3U);
  EXPECT_EQ(sizes.read_data, 4U);
  EXPECT_EQ(sizes.byte_enable, 2U);
  EXPECT_EQ(node->get_sizes(CDB_SGATE_ASYNCHRONOUS_RAM::PORT_B).read_data, 0U);
  EXPECT_EQ(node->get_write_depth(), 8U);
  EXPECT_EQ(source(node, CDB_TERM_RAM_WRITE_ENABLE_A), "we");
  EXPECT_EQ(source(node, CDB_TERM_RAM_BYTE_ENABLE_A, 0), "be[1]");
  EXPECT_EQ(source(node, CDB_TERM_RAM_BYTE_ENABLE_A, 1), "be[0]");
  EXPECT_EQ(source(node, CDB_TERM_RAM_WRITE_ADDRESS_A, 2), "waddr[2]");
  EXPECT_EQ(source(node, CDB_TERM_DATA, 3), "wdata[3]");
  EXPECT_EQ(source(node, CDB_TERM_RAM_READ_ADDRESS_A, 0), "raddr[0]");
  EXPECT_EQ(named("q[2]")->find_iterm(CDB_TERM_DATA)->get_source(), node->find_oterm(CDB_TERM_OUTPUT, 2));
  EXPECT_EQ(node->get_read_during_write(CDB_SGATE_ASYNCHRONOUS_RAM::PORT_A, CDB_SGATE_ASYNCHRONOUS_RAM::PORT_A),
            CDB_READ_NEW_DATA);
  EXPECT_EQ(node->get_block_type(), CDB_RAM_BLOCK_SRB7);
  EXPECT_TRUE(node->is_no_rw_check());
}

TEST_F(SgateNodeTest, ANetOfSeveralDriversIsOneBus) {
  Net* io = port("io", DIR_INOUT);
  for (const char* name : {"t1", "t2"}) {
    Net* made = netlist->Tristate(in(std::string("d_") + name), in(std::string("e_") + name), place(3));
    Instance* tri = name_driver(made, name);
    tri->Reconnect(tri->View()->GetOutput(), io);
    delete made;
  }
  ASSERT_TRUE(convert());
  auto* bus = only<CDB_SGATE_TRI_BUS>(CDB_SGATE_TRI_BUS_ENUM);
  ASSERT_TRUE(bus);
  std::vector<std::string> sources;
  for (const auto& term : bus->get_iterms()) sources.push_back(source(term.get()));
  std::sort(sources.begin(), sources.end());
  EXPECT_EQ(sources, (std::vector<std::string>{"io", "t1", "t2"}));
  EXPECT_EQ(named("io")->find_iterm(CDB_TERM_DATA)->get_source(), bus->get_first_oterm());
}

TEST_F(SgateNodeTest, AnUndrivenNetReadsThroughAGateWithAnOpenInput) {
  Net* floating = net("floating");
  name_driver(netlist->And(floating, in("a"), place(3)), "g1");
  name_driver(netlist->Or(floating, in("b"), place(3)), "g2");
  out("y1", netlist->GetInst("g1")->GetOutput());
  out("y2", netlist->GetInst("g2")->GetOutput());
  ASSERT_TRUE(convert());
  const CDB_SGATE_NODE* open = named("floating");
  ASSERT_TRUE(open);
  ASSERT_EQ(open->get_iterms().size(), 1U);
  EXPECT_EQ(source(open->get_iterms()[0].get()), "open");
  EXPECT_EQ(open->get_first_oterm()->get_fanouts().size(), 2U);
  EXPECT_STREQ(open->get_first_oterm()->get_string_name(), "floating~");
}

} // namespace
