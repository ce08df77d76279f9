// Random netlists of the shapes that elaboration leaves: registers, latches and tristates behind trees of branches.
#ifndef TESTS_DATABASE_RANDOM_DESIGN_H
#define TESTS_DATABASE_RANDOM_DESIGN_H

#include <random>
#include <string>
#include <vector>

#include "netlist_bench.h"

/// With `floats` the values of signals can be Z, and no logic reads them.
class RandomDesign : public NetlistBench {
public:
  RandomDesign(unsigned seed, bool floats) : _random(seed), _floats(floats) {
    for (const char* name : {"c", "k"}) _clocks.push_back(In(name));
    for (int i = 0; i < 6; i++) _inputs.push_back(In("i" + std::to_string(i)));
    _values = _inputs;
    const unsigned signals = 2 + Pick(5);
    for (unsigned i = 0; i < signals; i++) _signals.push_back(Out("q" + std::to_string(i)));
    for (Net* signal : _signals) {
      Assign(signal);
      if (!floats) _values.push_back(signal);
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

  /// What a branch assigns.
  Net* Leaf(Net* hold, int depth) {
    if (Pick(3) == 0) return hold;
    return _floats && Pick(3) == 0 ? Z() : Expression(depth);
  }

  /// A tree of branches, some of which keep the value. The same conditions come again on the way down.
  Net* Branches(Net* hold, int depth) {
    if (depth == 0 || Pick(4) == 0) return Leaf(hold, 2);
    if (Pick(6) == 0) {
      ArrayOf<Net> select(2);
      ArrayOf<Net> data(4);
      for (int bit = 0; bit < 2; bit++) select.Insert(Any(_inputs));
      for (int bit = 0; bit < 4; bit++) data.Insert(Leaf(hold, 1));
      Net* output = nullptr;
      n->Nto1Mux(&select, &data, &output, At());
      return output;
    }
    return Mux(Branches(hold, depth - 1), Branches(hold, depth - 1), Any(_inputs));
  }

  /// Signals that may float begin with a reset, since a latch has no initial value.
  Net* Initialized(Net* cone) {
    if (!_floats) return cone;
    if (!_reset) _reset = In("reset");
    return Mux(cone, Gnd(), _reset);
  }

  void Assign(Net* signal) {
    // An edge that is met while another asynchronous term is active shows nothing, so data may be anything.
    if (Pick(4) == 0) {
      Infer(signal, Initialized(Mux(Branches(signal, 3), signal, Any(_inputs))));
      return;
    }
    Net* clock = Any(_clocks);
    Net* event = Pick(3) ? Rise(clock, Pick(3) ? nullptr : Any(_inputs)) : Fall(clock);
    Net* cone = Mux(signal, Branches(signal, 4), event);
    if (Pick(3) == 0) cone = Mux(cone, Branches(signal, 2), event);
    while (Pick(2)) {
      Net* value = _floats && Pick(3) == 0 ? Branches(Gnd(), 1)
                   : Pick(3)               ? (Pick(2) ? Pwr() : Gnd())
                                           : (Pick(2) ? signal : Any(_inputs));
      cone = Pick(2) ? Mux(cone, value, Any(_inputs)) : Mux(value, cone, Any(_inputs));
    }
    Infer(signal, Initialized(cone));
  }

  std::mt19937 _random;
  bool _floats;
  Net* _reset = nullptr;
  std::vector<Net*> _clocks;
  std::vector<Net*> _inputs;
  std::vector<Net*> _values;
  std::vector<Net*> _signals;
};

#endif
