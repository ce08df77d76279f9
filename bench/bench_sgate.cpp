// The conversion of a netlist into gates at three sizes: registers with a hold, named bits of vectors, one clock. Time
// per bit must stay level; the fitted complexity is printed behind the family.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "database/views.h"
#include "flow/info_objects.h"
#include "host/netlist_builder.h"
#include "util/linefile.h"
#include "zelk_sgate.h"
#include "zelk_utility.h"

namespace {

constexpr int64_t smallest = 10'000;

/// Words of 32 bits, each bit `q <= en ? q ^ d : q`.
std::unique_ptr<Netlist> make_design(int64_t bits) {
  auto netlist = std::make_unique<Netlist>("bench");
  unsigned long place = LineFile::EncodeLineFile("bench.v", 1);
  auto port = [&](const std::string& name, port_dir direction) {
    auto* made = new Port(name.c_str(), direction, place);
    auto* net = new Net(name.c_str(), place);
    netlist->Add(made);
    netlist->Add(net);
    net->Connect(made);
    return net;
  };
  Net* clk = port("clk", DIR_INPUT);
  Net* enable = port("en", DIR_INPUT);
  Net* data = port("d", DIR_INPUT);
  Net* zero = netlist->Gnd(0);
  for (int64_t i = 0; i < bits; i++) {
    std::string name = "core|word" + std::to_string(i / 32) + "[" + std::to_string(i % 32) + "]";
    auto* hold = new Net;
    netlist->Add(hold);
    Net* next = netlist->Mux(hold, netlist->Xor(hold, data, place), enable, place);
    Net* q = netlist->Dffrs(next, clk, zero, zero, place, name.c_str());
    hold->Wire(q);
    q = hold->ResolveWires();
    q->SetName(name.c_str());
    q->SetLinefile(place);
  }
  return netlist;
}

void ConvertRegisters(benchmark::State& state) {
  zelk_connect_kernel();
  std::unique_ptr<Netlist> netlist = make_design(state.range(0));
  for (auto _ : state) {
    HDB_ACTION_PT_INSTANCE project;
    auto* unit = new TEST_MODULE("bench");
    project.add_design_unit(unit);
    FLOW_ELABORATE_INFO info(project, unit, {}, "", FLOW_ELABORATE_INFO::PLACE_TOP, FLOW_ELABORATE_INFO::MODE_FULL);
    if (!ZELK_SGATE(&info, netlist.get()).convert_netlist()) state.SkipWithError("not converted");
    benchmark::DoNotOptimize(info.take_result());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(ConvertRegisters)
    ->Arg(smallest)
    ->Arg(10 * smallest)
    ->Arg(50 * smallest)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

} // namespace
