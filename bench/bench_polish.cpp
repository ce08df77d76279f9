// Polish on netlists of three sizes: registers behind trees of branches, as elaboration leaves them.
#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "database/primitives.h"
#include "database/views.h"
#include "util/message.h"

namespace {

class Registers {
public:
  explicit Registers(int64_t registers) : _random(1) {
    _clock = PortNet("c", DIR_INPUT);
    Net* reset = PortNet("r", DIR_INPUT);
    for (int i = 0; i < 64; i++) _inputs.push_back(PortNet("i" + std::to_string(i), DIR_INPUT));
    for (int64_t i = 0; i < registers; i++) _signals.push_back(PortNet("q" + std::to_string(i), DIR_OUTPUT));
    Net* event = _netlist->Clock(_clock, _netlist->Pwr(0), 0);
    for (Net* signal : _signals) {
      Net* clocked = _netlist->Mux(signal, Data(signal), event, 0);
      Net* cone = _netlist->Mux(clocked, _netlist->Gnd(0), reset, 0);
      signal->Wire(_netlist->InferPoint(cone, signal, 0));
    }
  }
  Netlist* netlist() { return _netlist.get(); }

private:
  Net* PortNet(const std::string& name, port_dir direction) {
    auto* port = new Port(name.c_str(), direction, 1);
    auto* net = new Net(name.c_str(), 1);
    _netlist->Add(port);
    _netlist->Add(net);
    net->Connect(port);
    return net;
  }
  Net* Any(const std::vector<Net*>& nets) { return nets[_random() % nets.size()]; }
  Net* Data(Net* signal) {
    Net* data = Any(_signals);
    for (int i = 0; i < 8; i++) {
      if (_random() % 4)
        data = _netlist->Mux(data, _random() % 3 ? Any(_signals) : signal, Any(_inputs), 0);
      else
        data = _netlist->Xor(data, Any(_inputs), 0);
    }
    return data;
  }

  std::unique_ptr<Netlist> _netlist = std::make_unique<Netlist>("registers");
  std::mt19937 _random;
  Net* _clock;
  std::vector<Net*> _inputs;
  std::vector<Net*> _signals;
};

void PolishRegisters(benchmark::State& state) {
  Message::SetConsoleOutput(0);
  for (auto _ : state) {
    state.PauseTiming();
    auto design = std::make_unique<Registers>(state.range(0));
    state.ResumeTiming();
    design->netlist()->Polish();
    state.PauseTiming();
    design.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(PolishRegisters)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// One net that all folding runs through, from the last gate built to the first.
void FoldChain(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto netlist = std::make_unique<Netlist>("chain");
    Net* output = new Net("y", 1);
    netlist->Add(output);
    Net* next = output;
    Net* pwr = netlist->Pwr(0);
    for (int64_t i = 0; i < state.range(0); i++) {
      Net* input = new Net;
      netlist->Add(input);
      Net* made = netlist->And(input, pwr, 0);
      Instance* gate = made->Driver();
      gate->Reconnect(gate->View()->GetOutput(), next);
      next = input;
    }
    state.ResumeTiming();
    netlist->PropagateConstants();
    benchmark::DoNotOptimize(netlist->NumOfInsts());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(FoldChain)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace
