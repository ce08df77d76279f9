// The passes of Polish besides extraction, each on the smallest netlist that shows its rule.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/netlistchecker.h"
#include "database/primitives.h"
#include "netlist_bench.h"
#include "netlist_fixture.h"

namespace {
using Lines = std::vector<std::string>;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class Passes : public ::testing::Test, public NetlistBench {
protected:
  void SetUp() override { KernelServices::Set(&services); }
  void TearDown() override {
    EXPECT_EQ(NetlistChecker(n).Report(), "");
    KernelServices::Set(nullptr);
  }
  void BusOf(const std::string& name, int size) {
    auto* bus = new NetBus(name.c_str(), size - 1, 0, At());
    n->Add(bus);
    for (int bit = size - 1; bit >= 0; bit--) bus->Add(Named(name + "[" + std::to_string(bit) + "]"));
  }
  /// A user instance whose ports have these directions; they are called p0, p1 and so on.
  Instance* UserInstance(const char* name, std::initializer_list<std::pair<port_dir, Net*>> connections) {
    views.push_back(std::make_unique<Netlist>("view"));
    Netlist* view = views.back().get();
    auto* inst = new Instance(name, view, At());
    n->Add(inst);
    for (auto [direction, net] : connections) {
      auto* port = new Port(("p" + std::to_string(view->NumOfPorts())).c_str(), direction);
      view->Add(port);
      inst->Connect(port, net);
    }
    return inst;
  }
  TestServices services;
  std::vector<std::unique_ptr<Netlist>> views;
  MessageLog log;
  Net* a = In("a");
  Net* b = In("b");
  Net* c = In("c");
  Net* y = Out("y");
};

TEST_F(Passes, DanglingLogicGoesAndWhatHasToStayStays) {
  Drive(y, And(a, b));
  Named("unread")->Wire(Or(a, b));
  Net* forced = Named("forced");
  forced->AddAtt("noprune", "1");
  forced->Wire(Xor(a, b));
  UserInstance("u", {{DIR_INPUT, Inv(c)}});
  n->PslAssertion(n->Nor(a, b, At()), At());
  n->ResolveWires();
  n->RemoveDanglingLogic();
  EXPECT_FALSE(Get("unread"));
  EXPECT_EQ(Count(PRIM_AND) + Count(PRIM_XOR) + Count(PRIM_INV) + Count(PRIM_NOR), 4U);
  EXPECT_EQ(Count(PRIM_OR), 0U);
}

TEST_F(Passes, UndrivenNetsTakeTheirInitialValueAndAreReportedByRuns) {
  struct {
    const char* name;
    char value;
  } const nets[] = {{"n0", '0'}, {"n1", '1'}, {"nx", 'X'}, {"none", 0}};
  Net* read = a;
  for (const auto& net : nets) {
    Net* made = Named(net.name);
    made->SetPowerUpValue(net.value);
    read = Xor(read, made);
  }
  BusOf("bus", 4);
  Get("bus[3]")->SetPowerUpValue('1');
  for (int bit = 0; bit < 4; bit++) read = Xor(read, Get("bus[" + std::to_string(bit) + "]"));
  Drive(Get("bus[0]"), a);
  Drive(y, read);
  Out("open");
  n->ResolveWires();
  n->ProcessDanglingNets();
  EXPECT_THAT(log.lines(),
              ElementsAre("using initial value 1 for net bus[3]",
                          "net bus[2..1] has no driver or initial value, using the default initial value 0",
                          "using initial value 0 for net n0", "using initial value 1 for net n1",
                          "using initial value X (don't care) for net nx",
                          "net none has no driver or initial value, using the default initial value 0",
                          "output port open has no driver"));
  for (const Net* net : NetsOf(n)) EXPECT_TRUE(net->Driver() || net->GetFirstPort(DIR_INPUT)) << net->ExternalName();
  EXPECT_EQ(Count(PRIM_PWR) + Count(PRIM_GND), 2U);
  EXPECT_FALSE(n->GetPort("open")->GetNet());
}

TEST_F(Passes, StorageBecomesSetReset) {
  enum Term { GND, PWR, X, COND, VAL, INV, AND, NAND };
  struct {
    Term cond, val, set, reset;
  } const cases[] = {{GND, VAL, GND, GND}, {COND, GND, GND, COND}, {COND, PWR, COND, GND},
                     {COND, X, GND, COND}, {PWR, VAL, VAL, INV},   {COND, VAL, AND, NAND}};
  auto net_of = [&](Term term) {
    return term == COND ? b : term == VAL ? c : term == GND ? Gnd() : term == PWR ? Pwr() : n->X(0);
  };
  auto matches = [&](const Net* net, Term term) {
    switch (term) {
    case GND: return net->IsGnd() != 0;
    case COND: return net == Get("b");
    case VAL: return net == Get("c");
    case INV: return net->InvNet() == Get("c");
    default:
      return net->DriverType() == PRIM_AND && net->Driver()->GetInput1() == Get("b") &&
             (term == AND ? net->Driver()->GetInput2() : net->Driver()->GetInput2()->InvNet()) == Get("c");
    }
  };
  for (const auto& one : cases) {
    Net* q = Out("q" + std::to_string(line));
    Net* l = Out("l" + std::to_string(line));
    q->Wire(n->Dff(a, b, net_of(one.val), net_of(one.cond), At(), q->Name()));
    l->Wire(n->Dlatch(a, b, net_of(one.val), net_of(one.cond), At(), l->Name()));
    q->Driver();
    n->ResolveWires();
    DriverOf(q->Name())->AddAtt("preserve", "1");
    n->ToSetResetRegisters();
    for (Net* output : {q, l}) {
      const Instance* made = output->Driver();
      EXPECT_EQ(made->Type(), output == q ? PRIM_DFFRS : PRIM_DLATCHRS);
      EXPECT_STREQ(made->Name(), output->Name());
      EXPECT_TRUE(matches(made->GetSet(), one.set)) << one.cond << one.val;
      EXPECT_TRUE(matches(made->GetReset(), one.reset)) << one.cond << one.val;
    }
    EXPECT_TRUE(q->Driver()->IsAttOn(ATT_PRESERVE));
  }
}

TEST_F(Passes, FeedbackThatRepeatsANetIsCut) {
  Infer(y, Mux(y, n->Buf(y, At()), a));
  n->ResolveWires();
  n->DisconnectSillyFaninCones();
  EXPECT_FALSE(Get("y")->Driver());
  EXPECT_EQ(n->NumOfInsts(), 0U);
}

TEST_F(Passes, BranchesThatAnOuterControlDecidesAreDropped) {
  Net* deep = Mux(Mux(a, b, c), Mux(Inv(a), Inv(b), Inv(c)), c);
  Infer(y, Mux(deep, a, Rise(b)));
  n->ResolveWires();
  n->OptimizeMuxTrees();
  const Instance* outer = Get("y")->Driver()->GetInput()->Driver();
  ASSERT_EQ(outer->Type(), PRIM_MUX);
  const Instance* inner = outer->GetInput1()->Driver();
  EXPECT_EQ(inner->GetInput1(), Get("a"));
  EXPECT_EQ(inner->GetInput2()->InvNet(), Get("a"));
}

TEST_F(Passes, SecondAssignmentOnTheSameEdgeReplacesTheFirst) {
  Net* enable = In("e");
  Net* r = Out("r");
  Infer(y, Mux(Mux(y, a, Rise(c)), b, Rise(c)));
  Infer(r, Mux(Mux(r, a, Rise(c)), b, Rise(c, enable))); // the first one counts where the second is disabled
  n->ResolveWires();
  n->OptimizeMuxTrees();
  EXPECT_EQ(Get("y")->Driver()->GetInput()->Driver()->GetInput1(), Get("y"));
  EXPECT_EQ(Get("r")->Driver()->GetInput()->Driver()->GetInput1()->DriverType(), PRIM_MUX);
}

TEST_F(Passes, ConflictsAreReportedAtADriver) {
  for (Net* driver : {And(a, b), Or(a, b)}) y->Wire(driver);
  Net* port = In("driven");
  port->Wire(Inv(a));
  Net* bus = Out("bus");
  for (Net* driver : {n->Tristate(a, b, At()), n->Tristate(b, a, At()), n->Pullup(At())}) bus->Wire(driver);
  Net* shared = Out("shared");
  UserInstance("u", {{DIR_OUTPUT, shared}});
  shared->Wire(Xor(a, b));
  n->ResolveWires();
  EXPECT_TRUE(n->ElectricalConflict(0));
  EXPECT_THAT(log.lines(), ElementsAre("net y is constantly driven from multiple places", "another driver from here",
                                       "net driven is already driven by input port driven", "driven declared here"));
}

TEST_F(Passes, OutputOfAUserInstanceThatMeetsADriverIsReported) {
  UserInstance("u", {{DIR_OUTPUT, y}});
  y->Wire(Xor(a, b));
  n->ResolveWires();
  EXPECT_TRUE(n->ElectricalConflict(0));
  ASSERT_EQ(log.lines().size(), 1U);
  EXPECT_THAT(log.lines()[0], HasSubstr("output port p0 on instance u also driven by"));
}

TEST_F(Passes, PolishStopsAtAConflict) {
  class Dumps : public TestServices {
  public:
    int Flag(const char* key) override {
      if (std::string(key).rfind("zelk_dump_netlist_", 0) == 0) labels.push_back(key + 18);
      return 0;
    }
    Lines labels;
  } dumps;
  KernelServices::Set(&dumps);
  for (Net* driver : {And(a, b), Or(a, b)}) y->Wire(driver);
  n->Polish();
  ASSERT_GE(dumps.labels.size(), 2U);
  EXPECT_EQ(dumps.labels.front(), "before_process_globals");
  EXPECT_EQ(dumps.labels[dumps.labels.size() - 2], "after_dff_extraction");
  EXPECT_EQ(dumps.labels.back(), "on_electrical_conflict");
}

TEST_F(Passes, PortsWithoutFanoutAndLoopsOfBidirectionalPortsAreReported) {
  Net* io = Inout("io");
  Net* other = Inout("other");
  Net* third = Inout("third");
  io->Wire(n->Buf(other, At()));
  other->Wire(n->Buf(io, At()));
  third->Wire(n->Buf(io, At()));
  Drive(y, And(a, b));
  n->ResolveWires();
  n->CheckPortConnectivity();
  EXPECT_THAT(log.lines(), ::testing::UnorderedElementsAre(
                               "bidir port io indirectly feeds itself", "bidir port other indirectly feeds itself",
                               "bidir ports io and other indirectly drive each other",
                               "bidir port third is fed by a unidirectional connection from bidir port io",
                               "bidir port third is fed by a unidirectional connection from bidir port other",
                               "input port c has no fan-out"));
}

TEST_F(Passes, BufferOfAKeptNetCarriesItsName) {
  Net* kept = Named("kept");
  kept->AddAtt("keep", "1");
  Drive(kept, And(a, b));
  Net* reg = Named("reg");
  reg->AddAtt("keep", "1");
  reg->Wire(n->Dffrs(a, c, Gnd(), Gnd(), At(), "reg"));
  Net* floating = Named("floating");
  floating->AddAtt("keep", "1");
  floating->Wire(n->Tristate(a, b, At()));
  Drive(y, Xor(Xor(kept, reg), floating));
  n->ResolveWires();
  n->ProcessKeepAttributes();
  EXPECT_EQ(DriverOf("kept")->BufferType(), KEEP);
  EXPECT_STREQ(DriverOf("kept")->Name(), "kept");
  EXPECT_EQ(DriverOf("reg")->Type(), PRIM_DFFRS);
  EXPECT_FALSE(Get("floating")->GetAtt(ATT_KEEP));
}

TEST_F(Passes, UserNetBuffersGoUnlessTheyProtectSomething) {
  Net* w = Named("w");
  Drive(w, And(a, b));
  Drive(y, w);
  Net* io = Inout("io");
  Drive(io, w);
  Net* from_io = Out("from_io");
  Drive(from_io, io);
  Net* shared = Out("shared");
  Drive(shared, c);
  shared->Wire(n->Tristate(a, b, At()));
  Net* tied = Named("tied");
  Drive(tied, Gnd());
  Instance* user = UserInstance("u", {{DIR_INOUT, tied}});
  n->ResolveWires();
  ASSERT_EQ(Count(PRIM_BUF), 5U);
  n->RemoveUserNetBuffers();
  EXPECT_EQ(Get("y") ? Get("y")->DriverType() : Get("w")->DriverType(), PRIM_AND);
  for (const char* name : {"io", "from_io"}) EXPECT_EQ(DriverOf(name)->BufferType(), DIRECTIONAL) << name;
  EXPECT_FALSE(Get("c")->GetFirstPort(DIR_OUTPUT)); // not shorted to what the tristate buffer drives
  EXPECT_EQ(Count(PRIM_BUF), 3U);
  EXPECT_TRUE(user->GetNet(user->View()->GetPortAt(0))->GetAtt(ATT_GND));
}

TEST_F(Passes, LoadsOfABidirectionalNetStandBehindABuffer) {
  Net* io = Inout("io");
  y->Wire(And(io, a));
  n->ResolveWires();
  n->AddExtraDirectionalBuffers();
  const Net* read = DriverOf("y")->GetInput1();
  EXPECT_STREQ(read->Name(), "io~direct");
  EXPECT_EQ(read->Driver()->BufferType(), DIRECTIONAL);
  EXPECT_EQ(read->BufNet(), Get("io"));
}

TEST_F(Passes, AlwaysEnabledDriverOfASharedNetGetsATristateBuffer) {
  y->Wire(n->Tristate(a, b, At()));
  y->Wire(And(a, c));
  n->ResolveWires();
  n->AddAlwaysEnabledTristateBuffers();
  unsigned enabled = 0;
  for (const PortRef* driver : DriversOf(Get("y"))) {
    EXPECT_EQ(driver->GetInst()->Type(), PRIM_TRI);
    enabled += driver->GetInst()->GetControl()->IsPwr() && driver->GetInst()->GetAtt(" :tri");
  }
  EXPECT_EQ(enabled, 1U);
}

TEST_F(Passes, ConstantsRunThroughLogicWhateverItsOrder) {
  // Built from the output to the input, so that a sweep in order of creation folds one gate only.
  Net* next = y;
  for (int i = 0; i < 3000; i++) {
    Instance* gate = And(a, b)->Driver();
    Net* output = gate->GetOutput();
    gate->Disconnect(gate->View()->GetInput1());
    next->Wire(output);
    Net* input = new Net;
    n->Add(input);
    gate->Connect(gate->View()->GetInput1(), input);
    next = input;
  }
  next->Wire(Gnd());
  n->ResolveWires();
  n->PropagateConstants();
  EXPECT_EQ(Count(PRIM_AND), 1U); // the one that drives a net of the source
  EXPECT_TRUE(DriverOf("y")->GetInput1()->IsGnd());
}

TEST_F(Passes, EqualLogicMergesFromTheLeavesUp) {
  Drive(y, Or(And(a, b), Inv(c)));
  Drive(Out("z"), Or(Inv(c), And(b, a)));
  Net* kept = Out("kept");
  kept->AddAtt("keep", "1");
  kept->Wire(And(a, b));
  Net* q = Out("q");
  q->Wire(n->Dffrs(a, c, Gnd(), Gnd(), At(), "q"));
  Net* p = Out("p");
  p->Wire(n->Dffrs(a, c, Gnd(), Gnd(), At(), "p"));
  n->ResolveWires();
  DriverOf("p")->AddAtt(ATT_INITIAL_VALUE, "1");
  n->EliminateCommonSubexpressions();
  EXPECT_EQ(Count(PRIM_AND), 1U);
  EXPECT_EQ(Count(PRIM_OR), 1U);
  EXPECT_EQ(Count(PRIM_INV), 1U);
  EXPECT_EQ(Count(PRIM_DFFRS), 2U); // their initial values differ
}

TEST_F(Passes, OperatorsAreCountedByKind) {
  UserInstance("Add1", {{DIR_INPUT, a}});
  ArrayOf<Net> word(2);
  word.Insert(a);
  word.Insert(b);
  for (int i = 0; i < 3; i++) {
    Net* carry = nullptr;
    n->Adder(Gnd(), &word, &word, nullptr, &carry, At());
  }
  Net* any = nullptr;
  n->ReduceOr(&word, &any, At());
  n->UniquifyOperatorNames();
  for (const char* name : {"Add0", "Add2", "Add3", "WideOr0"}) EXPECT_TRUE(n->GetInst(name)) << name;
}

TEST_F(Passes, PassGatesWithConstantControlsAreWiresOrNothing) {
  Net* p = Inout("p");
  Net* q = Inout("q");
  Net* r = Inout("r");
  Net* s = Inout("s");
  n->Tran(p, q, Pwr(), At());
  n->Tran(q, r, Gnd(), At());
  n->Tran(r, s, a, At());
  n->ConvertTransistorsWithConstantControls();
  EXPECT_EQ(n->GetPort("p")->GetNet(), n->GetPort("q")->GetNet());
  EXPECT_EQ(Count(PRIM_TRAN), 1U);
}

TEST_F(Passes, LoopsOfLogicAreCutByALatch) {
  Net* loop = And(a, b);
  Net* closed = Or(loop, c);
  loop->Driver()->Reconnect(loop->Driver()->View()->GetInput2(), closed);
  y->Wire(closed);
  n->ResolveWires();
  n->BreakLoops();
  EXPECT_EQ(Count(PRIM_DLATCH), 1U);
  EXPECT_FALSE(Get("y")->CheckCombLoop(Get("y")));
}

TEST_F(Passes, NetsOfOtherNetlistsBecomePorts) {
  views.push_back(std::make_unique<Netlist>("other"));
  Netlist* other = views.back().get();
  other->AddAtt(" library_name", "work");
  other->AddAtt(" cell_name", "m(8)");
  Net* foreign = new Net("bus[1]", At());
  other->Add(foreign);
  Drive(y, And(a, b));
  Net* w = Named("w");
  w->Wire(foreign);
  n->ProcessGlobals();
  n->ResolveWires();
  const Port* port = n->GetPort("global.bp.work.m(8).bus_1_");
  ASSERT_TRUE(port);
  EXPECT_EQ(port->Direction(), DIR_NONE);
  EXPECT_EQ(port->GetNet()->Owner(), n);
  EXPECT_FALSE(foreign->IsWired());
}
} // namespace
