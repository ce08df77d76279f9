// Polish on netlists of three sizes: registers behind trees of branches, as elaboration leaves them, and gates at
// random. The lines that end in BigO tell how the time of the whole pipeline, and of each scope that it names to the
// profiler, grows. With ZELK_BENCH_RTLIL set to a folder, the netlists of gates are left there as yosys reads them, in
// gates_<count>.il, for compare_polish.py.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "database/primitives.h"
#include "database/views.h"
#include "util/message.h"
#include "util/services.h"

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

/// Gates over 64 inputs and a register behind each eighth gate. One gate in sixteen has a constant input, one in
/// sixteen does what another does, and what nothing reads is a tenth. Each is written as a cell of yosys on the way.
class Gates {
public:
  explicit Gates(int64_t gates, std::ostream* cells) : _cells(cells) {
    Write("module \\gates\n");
    for (int i = 0; i < 64; i++) AddNet(PortNet("i" + std::to_string(i), DIR_INPUT), " input " + std::to_string(i + 1));
    _clock = PortNet("c", DIR_INPUT);
    Write("wire input 65 \\c\n");
    while (_netlist->NumOfInsts() < gates) AddGate();
    for (int i = 0; i < 64; i++) {
      const size_t source = _nets.size() - 1 - i * (_nets.size() / 640);
      const std::string name = "o" + std::to_string(i);
      Net* output = PortNet(name, DIR_OUTPUT);
      output->Wire(_nets[source]->Isolate(output, 1));
      Write("wire output " + std::to_string(66 + i) + " \\" + name + "\nconnect \\" + name + " " + NameOf(source) +
            "\n");
    }
    Write("end\n");
  }
  Netlist* netlist() { return _netlist.get(); }

private:
  void Write(const std::string& text) {
    if (_cells) *_cells << text;
  }
  static std::string NameOf(size_t net) { return "$n" + std::to_string(net); }
  Net* PortNet(const std::string& name, port_dir direction) {
    auto* port = new Port(name.c_str(), direction, 1);
    auto* net = new Net(name.c_str(), 1);
    _netlist->Add(port);
    _netlist->Add(net);
    net->Connect(port);
    return net;
  }
  void AddNet(Net* net, const std::string& options = "") {
    const std::string name = options.empty() ? NameOf(_nets.size()) : "\\" + std::string(net->Name());
    Write("wire" + options + " " + name + "\n");
    if (!options.empty())
      Write("wire " + NameOf(_nets.size()) + "\nconnect " + NameOf(_nets.size()) + " " + name + "\n");
    _nets.push_back(net);
  }
  /// The net that is added next is its output.
  void WriteCell(const std::string& type, const std::string& inputs, const std::string& output) {
    const std::string name = NameOf(_nets.size() - 1);
    Write("cell " + type + " $g" + std::to_string(_nets.size()) + "\n" + inputs + "connect \\" + output + " " + name +
          "\nend\n");
  }

  void AddGate() {
    if (_random() % 16) // near ones, so that depth and fanout are those of a design
      _last = {_random() % std::min<size_t>(_nets.size(), 4000), _random() % std::min<size_t>(_nets.size(), 400),
               _random() % 4, !(_random() % 16)};
    const size_t a = _nets.size() - 1 - _last.back_a;
    const size_t b = _nets.size() - 1 - _last.back_b;
    if (_nets.size() % 8 == 0) {
      AddNet(_netlist->Dffrs(_nets[a], _clock, _netlist->Gnd(0), _netlist->Gnd(0), 0));
      WriteCell("$_DFF_P_", "connect \\C \\c\nconnect \\D " + NameOf(a) + "\n", "Q");
      return;
    }
    static constexpr struct {
      prim_type_enum type;
      const char* cell;
    } kinds[] = {{PRIM_AND, "$_AND_"}, {PRIM_OR, "$_OR_"}, {PRIM_XOR, "$_XOR_"}, {PRIM_XNOR, "$_XNOR_"}};
    AddNet(Gate(kinds[_last.kind].type, _nets[a], _last.has_constant ? _netlist->Pwr(0) : _nets[b]));
    WriteCell(kinds[_last.kind].cell,
              "connect \\A " + NameOf(a) + "\nconnect \\B " + (_last.has_constant ? "1'1" : NameOf(b)) + "\n", "Y");
  }
  /// Not the operations that fold on the way: the passes are to find what folds.
  Net* Gate(prim_type_enum type, Net* a, Net* b) {
    auto* output = new Net;
    auto* inst = new Instance(nullptr, Prim::Static(type));
    _netlist->Add(output);
    _netlist->Add(inst);
    inst->Connect(inst->View()->GetInput1(), a);
    inst->Connect(inst->View()->GetInput2(), b);
    inst->Connect(inst->View()->GetOutput(), output);
    return output;
  }

  struct Choice {
    size_t back_a, back_b, kind;
    bool has_constant;
  };
  std::unique_ptr<Netlist> _netlist = std::make_unique<Netlist>("gates");
  std::ostream* _cells;
  std::mt19937 _random{7};
  Net* _clock;
  std::vector<Net*> _nets;
  Choice _last{};
};

/// Adds up the processor time of the scopes that the kernel names to its profiler.
class ScopeTimes : public KernelServices {
public:
  ScopeTimes() { KernelServices::Set(this); }
  ~ScopeTimes() override { KernelServices::Set(nullptr); }
  void* ProfileBegin(const char* name) override { return new std::pair(std::string(name), std::clock()); }
  void ProfileEnd(void* scope) override {
    const std::unique_ptr<std::pair<std::string, std::clock_t>> begun(
        static_cast<std::pair<std::string, std::clock_t>*>(scope));
    _seconds[begun->first] += static_cast<double>(std::clock() - begun->second) / CLOCKS_PER_SEC;
  }
  const std::map<std::string, double>& Seconds() const { return _seconds; }

private:
  std::map<std::string, double> _seconds;
};

constexpr int64_t gate_counts[] = {10000, 100000, 1000000};

/// By size; measured once, since all scopes of a size come from one run.
const std::map<std::string, double>& PolishGates(int64_t gates) {
  static std::map<int64_t, std::map<std::string, double>> runs;
  auto [run, is_new] = runs.try_emplace(gates);
  if (!is_new) return run->second;
  Message::SetConsoleOutput(0);
  const char* folder = std::getenv("ZELK_BENCH_RTLIL");
  std::ofstream file;
  if (folder) file.open(std::string(folder) + "/gates_" + std::to_string(gates) + ".il");
  Gates design(gates, folder ? &file : nullptr);
  file.close();
  ScopeTimes times;
  design.netlist()->Polish();
  return run->second = times.Seconds();
}

void RegisterScopes() {
  for (const auto& [name, smallest] : PolishGates(gate_counts[0])) {
    const std::string scope = name;
    auto* bench = benchmark::RegisterBenchmark(("Polish gates: " + scope).c_str(), [scope](benchmark::State& state) {
      const double seconds = PolishGates(state.range(0)).at(scope);
      for (auto _ : state) state.SetIterationTime(seconds);
      if (state.range(0) > gate_counts[0])
        state.counters["exponent"] = std::log10(seconds / PolishGates(state.range(0) / 10).at(scope));
    });
    for (int64_t gates : gate_counts) bench->Arg(gates);
    bench->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
  }
}

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

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  RegisterScopes();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
