// Saving, restoring and dumping netlists of three sizes. The rates (items per second) should not fall with the size.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "database/debussydump.h"
#include "database/primitives.h"
#include "database/views.h"
#include "util/message.h"
#include "util/saverestore.h"

namespace {

/// Words of eight bits through adders and registers: per stage 8 registers, an adder, a bus and its named nets.
std::unique_ptr<Netlist> Pipeline(int64_t stages) {
  auto netlist = std::make_unique<Netlist>("pipeline");
  auto* port = new Port("clk", DIR_INPUT);
  netlist->Add(port);
  auto* clk = new Net("clk", 1);
  netlist->Add(clk);
  clk->Connect(port);
  ArrayOf<Net> word(8, clk);
  for (int64_t stage = 0; stage < stages; stage++) {
    const std::string name = "stage" + std::to_string(stage);
    auto* bus = new NetBus(name.c_str(), 7, 0);
    netlist->Add(bus);
    ArrayOf<Net> sum(8);
    for (int bit = 0; bit < 8; bit++) {
      auto* net = new Net;
      netlist->Add(net);
      sum.InsertLast(net);
    }
    netlist->Adder(nullptr, &word, &word, &sum, nullptr, 1);
    for (int bit = 0; bit < 8; bit++) {
      Net* q = netlist->Dff(sum.At(static_cast<unsigned>(bit)), clk, nullptr, nullptr, 1);
      q->SetName((name + "[" + std::to_string(bit) + "]").c_str());
      bus->AddAtIndex(q, bit);
      word.Set(static_cast<unsigned>(bit), q);
    }
  }
  return netlist;
}

std::string Path() { return (std::filesystem::temp_directory_path() / "zelk_bench_persistence.db").string(); }

void SaveTo(const Netlist& netlist) {
  SaveRestore stream(Path().c_str(), 0);
  netlist.Save(stream);
}

void Finish(benchmark::State& state, const Netlist& netlist) {
  state.SetItemsProcessed(state.iterations() * (netlist.NumOfInsts() + netlist.NumOfNets()));
  state.counters["file_bytes_per_object"] = static_cast<double>(std::filesystem::file_size(Path())) /
                                            static_cast<double>(netlist.NumOfInsts() + netlist.NumOfNets());
  std::filesystem::remove(Path());
}

void SaveNetlist(benchmark::State& state) {
  const auto netlist = Pipeline(state.range(0));
  for (auto _ : state) SaveTo(*netlist);
  Finish(state, *netlist);
}

void RestoreNetlist(benchmark::State& state) {
  const auto netlist = Pipeline(state.range(0));
  SaveTo(*netlist);
  for (auto _ : state) {
    SaveRestore stream(Path().c_str(), 1);
    auto restored = std::make_unique<Netlist>(stream);
    if (!stream.IsOK() || restored->NumOfNets() != netlist->NumOfNets()) state.SkipWithError("not restored");
    state.PauseTiming();
    restored.reset();
    state.ResumeTiming();
  }
  Finish(state, *netlist);
}

void DumpText(benchmark::State& state) {
  const auto netlist = Pipeline(state.range(0));
  for (auto _ : state) {
    std::ostringstream out;
    netlist->Dump(out);
    benchmark::DoNotOptimize(out.str().size());
  }
  state.SetItemsProcessed(state.iterations() * (netlist->NumOfInsts() + netlist->NumOfNets()));
}

void DumpForViewer(benchmark::State& state) {
  const auto netlist = Pipeline(state.range(0));
  for (auto _ : state) {
    std::ostringstream out;
    const DebussyDump dump(netlist.get(), out);
    benchmark::DoNotOptimize(out.str().size());
  }
  state.SetItemsProcessed(state.iterations() * (netlist->NumOfInsts() + netlist->NumOfNets()));
}

BENCHMARK(SaveNetlist)->Arg(300)->Arg(3000)->Arg(30000)->Unit(benchmark::kMillisecond);
BENCHMARK(RestoreNetlist)->Arg(300)->Arg(3000)->Arg(30000)->Unit(benchmark::kMillisecond);
BENCHMARK(DumpText)->Arg(300)->Arg(3000)->Arg(30000)->Unit(benchmark::kMillisecond);
BENCHMARK(DumpForViewer)->Arg(300)->Arg(3000)->Arg(30000)->Unit(benchmark::kMillisecond);

} // namespace
