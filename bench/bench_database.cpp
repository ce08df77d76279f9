// The netlist database: building, naming, walking, folding, copying and deleting netlists of three sizes.
#include <benchmark/benchmark.h>

#include <malloc.h>

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

double HeapBytes() {
  const struct mallinfo2 heap = mallinfo2();
  return static_cast<double>(heap.uordblks + heap.hblkhd);
}

/// What the objects of a large netlist take from the heap, with all that comes with them: 50'000, 500'000 and 5'000'000
/// of each on a machine of 64 bits.
///   a net         189, 151, 134 bytes. The object is 104: name, first name, attributes, location and mark of every
///                 object 40, ends and length of its list of connections 12, the driver that makes Driver() a look and
///                 no walk 9, and its ports, owner, bus and ring 32. The table of nameless nets, by which a net that
///                 goes is found without a walk, has 24 for a slot and 4 and more for a bucket; it doubles up to a
///                 million slots and then grows by pages, so that the share of free slots falls from a half to nothing.
///   an instance   226, 189, 171 bytes. The object is 72: as every object 40, and its connections, owner, view and
///                 sequence. Its name takes 32, since users and dumps find it by that; the table of names as much as
///                 that of nets; and 24 its place among the references of its view, without which neither a view can
///                 be replaced nor an object be deleted at any time.
///   a connection  77, 70, 69 bytes: the object 40, which is five pointers (instance, port, net and both neighbours,
///                 so that any one leaves its net at once), and for a gate of three ports a third of the array by which
///                 a port finds its connection without a search.
/// Attributes, ports of a net and connections of an instance take nothing until there are some.
void MeasureBytes(benchmark::State& state) {
  Netlist::CreateAllPrimitives();
  const auto count = static_cast<double>(state.range(0));
  for (auto _ : state) {
    auto netlist = std::make_unique<Netlist>("bytes");
    double before = HeapBytes();
    auto grown = [&](double objects) {
      const double after = HeapBytes();
      const double bytes = (after - before) / objects;
      before = after;
      return bytes;
    };
    for (int64_t i = 0; i < state.range(0); i++) netlist->Add(new Net);
    state.counters["bytes_per_net"] = grown(count);
    Prim* view = Prim::Static(PRIM_AND);
    for (int64_t i = 0; i < state.range(0); i++) netlist->Add(new Instance(nullptr, view));
    state.counters["bytes_per_instance"] = grown(count);
    Net* last = nullptr;
    MapIter nets;
    nets.First(&netlist->AutoNets());
    for (Instance* inst : InstancesOf(netlist.get())) {
      void* net = nullptr;
      nets.Item(nullptr, &net);
      nets.Next();
      inst->Connect(view->GetOutput(), static_cast<Net*>(net));
      inst->Connect(view->GetInput1(), last ? last : static_cast<Net*>(net));
      inst->Connect(view->GetInput2(), last ? last : static_cast<Net*>(net));
      last = static_cast<Net*>(net);
    }
    state.counters["bytes_per_connection"] = grown(3 * count);
  }
  state.counters["sizeof_net"] = sizeof(Net);
  state.counters["sizeof_instance"] = sizeof(Instance);
  state.counters["sizeof_connection"] = sizeof(PortRef);
}

// What takes the same time however large the netlist is.

/// A load comes to a net with many loads, and the first one goes.
void MoveLoad(benchmark::State& state) {
  auto netlist = ChainOfGates(state.range(0));
  Net* net = netlist->GetNet("i");
  Instance* inst = netlist->Inv(nullptr, 0)->Driver();
  for (auto _ : state) {
    inst->Connect(inst->View()->GetInput(), net);
    benchmark::DoNotOptimize(net->GetLastPortRef());
    inst->Disconnect(inst->View()->GetInput());
  }
  state.SetComplexityN(state.range(0));
}

/// Asking for the driver and the first connections of a net with many loads.
void AskForDriver(benchmark::State& state) {
  auto netlist = ChainOfGates(state.range(0));
  Net* net = netlist->GetNet("i");
  Instance* inst = netlist->Inv(nullptr, 0)->Driver();
  inst->Reconnect(inst->View()->GetOutput(), net);
  for (auto _ : state) {
    benchmark::DoNotOptimize(net->Driver());
    benchmark::DoNotOptimize(net->GetFirstPortRef());
    benchmark::DoNotOptimize(net->GetFirstPortRef(DIR_INPUT));
    benchmark::DoNotOptimize(net->NumOfPortRefs());
    benchmark::DoNotOptimize(net->NumOfFanouts());
    benchmark::DoNotOptimize(net->IsFanoutFree());
  }
  state.SetComplexityN(state.range(0));
}

/// The net on the last port of a view with many ports.
void FindByPort(benchmark::State& state) {
  Netlist view("wide");
  for (int64_t i = 0; i < state.range(0); i++) view.Add(new Port(("p" + std::to_string(i)).c_str(), DIR_INPUT));
  Netlist netlist("top");
  auto* net = new Net;
  netlist.Add(net);
  auto* inst = new Instance("u", &view);
  netlist.Add(inst);
  Port* last = view.GetPortAt(view.NumOfPorts() - 1);
  for (auto _ : state) {
    inst->Connect(last, net);
    benchmark::DoNotOptimize(inst->GetNet(last));
    benchmark::DoNotOptimize(view.IndexOf(last));
    inst->Disconnect(last);
  }
  state.SetComplexityN(state.range(0));
}

/// A gate with its net comes to a large netlist and goes.
void AddAndDeleteGate(benchmark::State& state) {
  auto netlist = ChainOfGates(state.range(0));
  Net* input = netlist->GetNet("i");
  for (auto _ : state) {
    Net* net = netlist->And(input, input, 0);
    delete net->Driver();
    delete net;
  }
  state.SetComplexityN(state.range(0));
}

/// Two nets on a ring of many: joining is an exchange of two pointers.
void WireNets(benchmark::State& state) {
  Netlist netlist("ring");
  auto* first = new Net;
  netlist.Add(first);
  for (int64_t i = 1; i < state.range(0); i++) {
    auto* net = new Net;
    netlist.Add(net);
    first->Wire(net);
  }
  for (auto _ : state) {
    state.PauseTiming();
    auto* net = new Net;
    netlist.Add(net);
    state.ResumeTiming();
    first->Wire(net);
  }
  state.SetComplexityN(state.range(0));
}

} // namespace

BENCHMARK(MeasureBytes)->Arg(50'000)->Arg(500'000)->Arg(5'000'000)->Unit(benchmark::kMillisecond)->Iterations(1);
#define ZELK_CONSTANT_TIME(name)                                                                                       \
  BENCHMARK(name)->RangeMultiplier(32)->Range(1 << 10, 1 << 20)->Complexity(benchmark::o1)
ZELK_CONSTANT_TIME(MoveLoad);
ZELK_CONSTANT_TIME(AskForDriver);
ZELK_CONSTANT_TIME(FindByPort);
ZELK_CONSTANT_TIME(AddAndDeleteGate);
ZELK_CONSTANT_TIME(WireNets)->Iterations(1000);
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
