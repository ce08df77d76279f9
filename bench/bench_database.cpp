// The netlist database: building, naming, walking, folding, copying and deleting netlists of three sizes.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "database/primitives.h"
#include "database/views.h"

namespace {

/// Gates in a row, each fed by the one before it and by one input.
std::unique_ptr<Netlist> ChainOfGates(int64_t gates) {
  auto netlist = std::make_unique<Netlist>("chain");
  auto* port = new Port("i", DIR_INPUT);
  netlist->Add(port);
  auto* input = new Net("i", 1);
  netlist->Add(input);
  input->Connect(port);
  Net* net = input;
  for (int64_t i = 0; i < gates; i++) net = netlist->And(net, input, 0);
  return netlist;
}

void BuildGates(benchmark::State& state) {
  Netlist::CreateAllPrimitives();
  for (auto _ : state) {
    auto netlist = ChainOfGates(state.range(0));
    state.PauseTiming();
    netlist.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void DeleteGates(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto netlist = ChainOfGates(state.range(0));
    state.ResumeTiming();
    netlist.reset();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void NameNets(benchmark::State& state) {
  for (auto _ : state) {
    Netlist netlist("names");
    for (int64_t i = 0; i < state.range(0); i++) netlist.Add(new Net(("net_" + std::to_string(i)).c_str(), 1));
    benchmark::DoNotOptimize(netlist.GetNet("net_0"));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void CopyGates(benchmark::State& state) {
  auto netlist = ChainOfGates(state.range(0));
  for (auto _ : state) std::unique_ptr<Netlist>(netlist->Copy());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void WalkDrivers(benchmark::State& state) {
  auto netlist = ChainOfGates(state.range(0));
  for (auto _ : state) {
    unsigned loads = 0;
    for (Net* net : NetsOf(netlist.get()))
      if (Instance* driver = net->Driver()) loads += driver->GetInput1() != driver->GetInput2();
    benchmark::DoNotOptimize(loads);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void FoldGates(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    Netlist netlist("fold");
    Net* one = netlist.Pwr(0);
    Net* net = netlist.Inv(nullptr, 0);
    for (int64_t i = 0; i < state.range(0); i++) net = netlist.And(net, one, 0);
    state.ResumeTiming();
    for (Instance* inst : InstancesOf(&netlist)) inst->Propagate();
    state.PauseTiming();
    netlist.MakeBlackBox();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// The largest design: two equal chains are built, merged into one, and swept from their end. An anonymous net and a
/// gate cost the object itself, a slot in the table of the netlist and three connections; nothing of it depends on how
/// many there are.
void BuildMergeSweepDelete(benchmark::State& state) {
  for (auto _ : state) {
    auto netlist = ChainOfGates(state.range(0) / 2);
    Net* input = netlist->GetNet("i");
    Net* ends[2] = {};
    for (Net* net : NetsOf(netlist.get()))
      if (net->IsFanoutFree()) ends[0] = net;
    Net* net = input;
    for (int64_t i = 0; i < state.range(0) / 2; i++) net = netlist->And(net, input, 0);
    ends[1] = net;
    const double objects = static_cast<double>(netlist->NumOfNets() + netlist->NumOfInsts());
    state.counters["bytes_per_object"] = static_cast<double>(netlist->MemUsage()) / objects;
    netlist->Or(ends[0], ends[1], 0);
    netlist->EliminateCommonSubexpressions();
    state.counters["gates_left"] = netlist->NumOfInsts();
    for (Net* end : NetsOf(netlist.get()))
      if (end->IsFanoutFree()) netlist->RegisterPotentiallyFanoutFreeNet(end);
    netlist->SweepPotentiallyFanoutFreeNets();
    if (netlist->NumOfInsts()) state.SkipWithError("gates that nothing reads are left");
    netlist.reset();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(BuildMergeSweepDelete)
    ->Arg(50'000)
    ->Arg(500'000)
    ->Arg(5'000'000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(BuildGates)->Range(1 << 10, 1 << 18)->RangeMultiplier(16);
BENCHMARK(DeleteGates)->Range(1 << 10, 1 << 18)->RangeMultiplier(16);
BENCHMARK(NameNets)->Range(1 << 10, 1 << 18)->RangeMultiplier(16);
BENCHMARK(CopyGates)->Range(1 << 10, 1 << 18)->RangeMultiplier(16);
BENCHMARK(WalkDrivers)->Range(1 << 10, 1 << 18)->RangeMultiplier(16);
BENCHMARK(FoldGates)->Range(1 << 10, 1 << 18)->RangeMultiplier(16);
