// Random netlists of the shapes that elaboration leaves: Polish must not change what their outputs show, for any inputs
// and edges.
#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "database/netlistchecker.h"
#include "database/polishpass.h"
#include "database/primitives.h"
#include "netlist_bench.h"
#include "random_design.h"

namespace {
/// What all outputs show over a run of random inputs and edges.
std::string Show(const Netlist* netlist, unsigned seed) {
  Simulator simulator(netlist);
  std::mt19937 random(seed);
  std::string shown;
  bool levels[2] = {false, false};
  for (bool reset : {true, false}) {
    simulator.Set("reset", reset);
    simulator.Settle();
  }
  for (int step = 0; step < 60; step++) {
    if (random() % 2) {
      simulator.Set("i" + std::to_string(random() % 6), random() % 2 != 0);
      simulator.Settle();
    } else {
      unsigned clock = static_cast<unsigned>(random() % 2);
      levels[clock] = !levels[clock];
      simulator.Edge(clock ? "k" : "c", levels[clock]);
    }
    for (const Port* port : PortsOf(netlist))
      if (port->IsOutput()) shown += simulator.Get(port->Name());
    shown += ' ';
  }
  return shown;
}

void ExpectUnchanged(unsigned seed, bool floats) {
  MessageLog log;
  RandomDesign design(seed, floats);
  design.n->ResolveWires();
  const std::string before = Show(design.n, seed);
  design.n->Polish();
  ASSERT_EQ(Message::ErrorCount(), 0U) << "seed " << seed << ": " << log.lines()[0];
  EXPECT_EQ(design.Count(PRIM_INFER_POINT) + design.Count(PRIM_CLOCK) + design.Count(PRIM_DLATCH), 0U);
  EXPECT_EQ(NetlistChecker(design.n).Report(), "");
  ASSERT_EQ(Show(design.n, seed), before) << "seed " << seed;
}

std::string Text(const Netlist* netlist) {
  std::ostringstream text;
  netlist->Dump(text);
  return text.str();
}

/// No pass alone changes what is shown.
void ExpectEachPassKeeps(unsigned seed, bool floats) {
  MessageLog log;
  RandomDesign design(seed, floats);
  design.n->ResolveWires();
  const std::string before = Show(design.n, seed);
  for (const PolishPass& pass : kestrin_polish_passes()) {
    if (!pass.IsWanted()) continue;
    ASSERT_TRUE(pass.run(design.n)) << pass.name << ", seed " << seed;
    ASSERT_EQ(Show(design.n, seed), before) << pass.name << ", seed " << seed;
    ASSERT_EQ(NetlistChecker(design.n).Report(), "") << pass.name << ", seed " << seed;
  }
}

/// Instances of all kinds on nets of all kinds, joined by chance: with loops, with many drivers and with none.
class RandomGraph : public NetlistBench {
public:
  explicit RandomGraph(unsigned seed) : _random(seed) {
    for (int i = 0; i < 3; i++) _nets.push_back(In("i" + std::to_string(i)));
    for (int i = 0; i < 3; i++) _nets.push_back(Out("o" + std::to_string(i)));
    for (int i = 0; i < 2; i++) _nets.push_back(Inout("b" + std::to_string(i)));
    for (int i = 0; i < 8; i++) _nets.push_back(Named("w" + std::to_string(i)));
    for (int i = 0; i < 20; i++) n->Add(_nets.emplace_back(new Net));
    for (int i = 0; i < 8; i++) {
      if (Pick(3) == 0) Any()->AddAtt(Pick(2) ? "keep" : "noprune", "1");
      if (Pick(3) == 0) Any()->SetPowerUpValue("01XZ"[Pick(4)]);
    }
    for (int i = 0; i < 40; i++) Place();
    for (int i = 0; i < 5; i++) Any()->Wire(Any());
  }

private:
  unsigned Pick(unsigned limit) { return static_cast<unsigned>(_random() % limit); }
  Net* Any() { return _nets[Pick(static_cast<unsigned>(_nets.size()))]; }

  void Place() {
    if (Pick(8) == 0) {
      ArrayOf<Net> select(2);
      ArrayOf<Net> data(4);
      for (int bit = 0; bit < 2; bit++) select.Insert(Any());
      for (int bit = 0; bit < 4; bit++) data.Insert(Any());
      Net* output = Any();
      n->Nto1Mux(&select, &data, &output, At());
      return;
    }
    const prim_type_enum types[] = {PRIM_MUX, PRIM_MUX, PRIM_MUX, PRIM_INFER_POINT, PRIM_INFER_POINT, PRIM_CLOCK};
    const unsigned choice = Pick(PRIM_INFER_POINT + 10);
    const prim_type_enum type = choice <= PRIM_INFER_POINT ? static_cast<prim_type_enum>(choice) : types[Pick(6)];
    Netlist* view = Prim::Static(type);
    if (type == PRIM_BUF) view = PrimBuf::Static(Pick(2) ? USER_NET : LOGICAL);
    if (!view) return;
    auto* inst = new Instance(nullptr, view, At());
    n->Add(inst);
    for (Port* port : PortsOf(view))
      if (Pick(12)) inst->Connect(port, Any());
    inst->SetSequence(n->NumOfInsts());
  }

  std::mt19937 _random;
  std::vector<Net*> _nets;
};

TEST(Polish, EndsOnAnyGraph) {
  for (unsigned seed = 1; seed <= 500; seed++) {
    MessageLog log;
    RandomGraph graph(seed);
    graph.n->Polish();
    // A conflict stops the pipeline; the passes behind it must end, too.
    graph.n->ProcessKeepAttributes();
    graph.n->AddAlwaysEnabledTristateBuffers();
    graph.n->RemoveUserNetBuffers();
    graph.n->AddExtraDirectionalBuffers();
    graph.n->PropagateConstants();
    graph.n->EliminateCommonSubexpressions();
    graph.n->OptimizeOperators();
    graph.n->ConvertTransistorsWithConstantControls();
    graph.n->BreakLoops();
    ASSERT_EQ(NetlistChecker(graph.n).Report(), "") << "seed " << seed;
  }
}

TEST(Polish, KeepsWhatRandomDesignsShowWithEachPass) {
  for (unsigned seed = 1; seed <= 30 && !HasFatalFailure(); seed++)
    for (bool floats : {false, true}) ExpectEachPassKeeps(seed, floats);
}

/// Polishing what is polished changes nothing.
void ExpectStable(unsigned seed, Netlist* netlist) {
  MessageLog log;
  netlist->Polish();
  if (Message::ErrorCount()) return; // a conflict has ended the pipeline
  const std::string polished = Text(netlist);
  netlist->Polish();
  EXPECT_EQ(Text(netlist), polished) << "seed " << seed;
}

TEST(Polish, ChangesNothingTheSecondTime) {
  for (unsigned seed = 1; seed <= 100; seed++) {
    for (bool floats : {false, true}) {
      RandomDesign design(seed, floats);
      ExpectStable(seed, design.n);
    }
    RandomGraph graph(seed);
    ExpectStable(seed, graph.n);
  }
}

TEST(Polish, KeepsWhatRandomDesignsShow) {
  for (unsigned seed = 1; seed <= 300 && !HasFatalFailure(); seed++) ExpectUnchanged(seed, /*floats*/ false);
}

TEST(Polish, KeepsWhatRandomDesignsThatFloatShow) {
  for (unsigned seed = 1; seed <= 300 && !HasFatalFailure(); seed++) ExpectUnchanged(seed, /*floats*/ true);
}
} // namespace
