// Random netlists of the shapes that elaboration leaves: Polish must not change what their outputs show, for any inputs
// and edges.
#include <gtest/gtest.h>

#include <random>

#include "database/netlistchecker.h"
#include "netlist_bench.h"

namespace {
class RandomDesign : public NetlistBench {
public:
  explicit RandomDesign(unsigned seed) : _random(seed) {
    for (const char* name : {"c", "k"}) _clocks.push_back(In(name));
    for (int i = 0; i < 6; i++) _inputs.push_back(In("i" + std::to_string(i)));
    _values = _inputs;
    const unsigned signals = 2 + Pick(5);
    for (unsigned i = 0; i < signals; i++) _signals.push_back(Out("q" + std::to_string(i)));
    for (Net* signal : _signals) {
      Assign(signal);
      _values.push_back(signal);
    }
    for (int i = 0; i < 3; i++) Drive(Out("y" + std::to_string(i)), Expression(4));
  }
  const std::vector<Net*>& Signals() const { return _signals; }

private:
  unsigned Pick(unsigned limit) { return static_cast<unsigned>(_random() % limit); }
  Net* Any(const std::vector<Net*>& nets) { return nets[Pick(static_cast<unsigned>(nets.size()))]; }

  Net* Expression(int depth) {
    if (depth == 0 || Pick(5) == 0) return Pick(8) ? Any(_values) : Pick(2) ? Pwr() : Gnd();
    Net* a = Expression(depth - 1);
    Net* b = Expression(depth - 1);
    switch (Pick(8)) {
    case 0: return And(a, b);
    case 1: return Or(a, b);
    case 2: return Xor(a, b);
    case 3: return Inv(a);
    case 4: return n->Nand(a, b, At());
    case 5: return n->Xnor(a, b, At());
    case 6: { // a signal of the source in between
      Net* named = Named("w" + std::to_string(line));
      Drive(named, a);
      return named;
    }
    default: return Mux(a, b, Expression(depth - 1));
    }
  }

  /// A tree of branches, some of which keep the value. The same conditions come again on the way down.
  Net* Branches(Net* hold, int depth) {
    if (depth == 0 || Pick(4) == 0) return Pick(3) ? Expression(2) : hold;
    if (Pick(6) == 0) {
      ArrayOf<Net> select(2);
      ArrayOf<Net> data(4);
      for (int bit = 0; bit < 2; bit++) select.Insert(Any(_inputs));
      for (int bit = 0; bit < 4; bit++) data.Insert(Pick(3) ? Expression(1) : hold);
      Net* output = nullptr;
      n->Nto1Mux(&select, &data, &output, At());
      return output;
    }
    return Mux(Branches(hold, depth - 1), Branches(hold, depth - 1), Any(_inputs));
  }

  void Assign(Net* signal) {
    // An edge that is met while another asynchronous term is active shows nothing, so data may be anything.
    if (Pick(4) == 0) {
      Infer(signal, Mux(Branches(signal, 3), signal, Any(_inputs)));
      return;
    }
    Net* clock = Any(_clocks);
    Net* event = Pick(3) ? Rise(clock, Pick(3) ? nullptr : Any(_inputs)) : Fall(clock);
    Net* cone = Mux(signal, Branches(signal, 4), event);
    if (Pick(3) == 0) cone = Mux(cone, Branches(signal, 2), event);
    while (Pick(2)) {
      Net* value = Pick(3) ? (Pick(2) ? Pwr() : Gnd()) : (Pick(2) ? signal : Any(_inputs));
      cone = Pick(2) ? Mux(cone, value, Any(_inputs)) : Mux(value, cone, Any(_inputs));
    }
    Infer(signal, cone);
  }

  std::mt19937 _random;
  std::vector<Net*> _clocks;
  std::vector<Net*> _inputs;
  std::vector<Net*> _values;
  std::vector<Net*> _signals;
};

/// What all outputs show over a run of random inputs and edges. Nothing is known before a signal got its first value,
/// so all begin with 0.
std::vector<bool> Show(const Netlist* netlist, unsigned seed) {
  Simulator simulator(netlist);
  std::mt19937 random(seed);
  std::vector<bool> shown;
  bool levels[2] = {false, false};
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
      if (port->IsOutput()) shown.push_back(simulator.Get(port->Name()));
  }
  return shown;
}

TEST(Polish, KeepsWhatRandomDesignsShow) {
  for (unsigned seed = 1; seed <= 400; seed++) {
    MessageLog log;
    RandomDesign design(seed);
    design.n->ResolveWires();
    const std::vector<bool> before = Show(design.n, seed);
    design.n->Polish();
    ASSERT_EQ(Message::ErrorCount(), 0U) << "seed " << seed << ": " << log.lines()[0];
    EXPECT_EQ(design.Count(PRIM_INFER_POINT) + design.Count(PRIM_CLOCK) + design.Count(PRIM_DLATCH), 0U);
    EXPECT_EQ(NetlistChecker(design.n).Report(), "");
    ASSERT_EQ(Show(design.n, seed), before) << "seed " << seed;
  }
}
} // namespace
