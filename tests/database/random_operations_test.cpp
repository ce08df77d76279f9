// Whatever is done to netlists, in whatever order, they stay consistent, and a saved one comes back.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "database/netlist_fixture.h"
#include "support/database_file.h"

namespace {

class RandomOperations : public NetlistTest, public testing::WithParamInterface<unsigned> {
protected:
  static constexpr int num_operations = 25000;
  static constexpr size_t max_netlists = 8;

  void SetUp() override {
    NetlistTest::SetUp();
    random.seed(GetParam());
    library = new Library("work");
    Libset::Global()->Add(library);
    for (int i = 0; i < 4; i++) NewNetlist(new Netlist(nullptr, 1), nullptr);
  }

  void NewNetlist(Netlist* netlist, Cell* cell) {
    if (!cell) library->Add(cell = new Cell);
    cell->Add(netlist);
    netlists.push_back(netlist);
  }

  unsigned Below(unsigned bound) { return bound ? static_cast<unsigned>(random() % bound) : 0; }
  bool Chance(unsigned one_in) { return Below(one_in) == 0; }
  /// Few names, so that they clash.
  std::string Name() { return (Chance(5) ? " n_" : "n") + std::to_string(Below(30)); }
  template <class T, class Range> T* Any(const Range& range) {
    std::vector<T*> all;
    for (T* object : range) all.push_back(object);
    return all.empty() ? nullptr : all[Below(static_cast<unsigned>(all.size()))];
  }
  Netlist* AnyNetlist() { return netlists[Below(static_cast<unsigned>(netlists.size()))]; }
  Net* AnyNet(Netlist* n) { return Any<Net>(NetsOf(n)); }
  Instance* AnyInstance(Netlist* n) { return Any<Instance>(InstancesOf(n)); }
  Port* AnyPort(Netlist* n) { return Any<Port>(PortsOf(n)); }

  void AddNet(Netlist* n) { n->Add(new Net(Chance(2) ? Name().c_str() : nullptr, Chance(2) ? 5 : 0)); }
  void AddPort(Netlist* n) {
    auto* port = new Port(Name().c_str(), static_cast<port_dir>(Below(3)));
    Chance(2) ? n->Add(port) : n->AddPortAt(Below(n->NumOfPorts() + 1), port);
    if (Net* net = AnyNet(n); net && !Chance(3)) net->Connect(port);
  }
  void AddInstance(Netlist* n) {
    Netlist* view = Prim::Static(static_cast<prim_type_enum>(PRIM_PWR + Below(PRIM_INFER_POINT)));
    if (Chance(4)) view = AnyNetlist();
    Set below(HASH_POINTER);
    view->Hierarchy(below, 1);
    if (below.Contains(n)) return;
    auto* inst = new Instance(Chance(2) ? Name().c_str() : nullptr, view, Chance(2) ? 7 : 0);
    n->Add(inst);
    for (Port* port : PortsOf(view))
      if (Net* net = AnyNet(n); net && !Chance(4)) inst->Connect(port, net);
  }
  void AddWordOperator(Netlist* n) {
    ArrayOf<Net> a, b, o;
    for (unsigned bit = 0, width = 1 + Below(3); bit < width; bit++)
      for (ArrayOf<Net>* word : {&a, &b, &o}) word->InsertLast(AnyNet(n));
    if (!a.At(0)) return;
    if (Chance(2)) return n->Adder(AnyNet(n), &a, &b, &o, nullptr, 0);
    Net* out = nullptr;
    n->Selector(&a, &b, &out, 0);
  }
  void Reconnect(Netlist* n) {
    Instance* inst = AnyInstance(n);
    Port* port = inst && inst->View() ? AnyPort(inst->View()) : nullptr;
    if (port) inst->Reconnect(port, Chance(3) ? nullptr : AnyNet(n));
  }
  void MovePort(Netlist* n) {
    Port* port = AnyPort(n);
    if (!port) return;
    if (port->GetNet()) port->GetNet()->Disconnect(port);
    if (Net* net = AnyNet(n); net && !Chance(3)) net->Connect(port);
    if (Chance(4)) port->SetDirection(static_cast<port_dir>(Below(3)));
  }
  void Rename(Netlist* n) {
    DesignObj* objects[] = {AnyNet(n), AnyInstance(n), AnyPort(n), Any<NetBus>(NetBusesOf(n)), Any<Fsm>(FsmsOf(n))};
    if (DesignObj* object = objects[Below(5)]) object->SetName(Name().c_str());
  }
  void Delete(Netlist* n) {
    DesignObj* objects[] = {AnyNet(n), AnyInstance(n), AnyInstance(n), AnyPort(n), Any<NetBus>(NetBusesOf(n))};
    delete objects[Below(5)];
  }
  void Wire(Netlist* n) {
    Net* net = AnyNet(n);
    if (net) net->Assign(AnyNet(n), Chance(4) ? OPER_REDUCE_AND : PRIM_NONE);
    if (net && Chance(2)) net->ResolveWires();
  }
  void ResolveAll(Netlist* n) {
    while (true) {
      Net* wired = nullptr;
      for (Net* net : NetsOf(n))
        if (net->IsWired()) wired = net;
      if (!wired) return;
      wired->ResolveWires();
    }
  }
  void Bus(Netlist* n) {
    auto* bus = Any<NetBus>(NetBusesOf(n));
    if (!bus || Chance(4))
      n->Add(bus = new NetBus(Name().c_str(), static_cast<int>(Below(4)), static_cast<int>(Below(4))));
    Net* net = AnyNet(n);
    const int index = bus->IsUp() ? bus->LeftIndex() : bus->RightIndex();
    if (net && net->GetNetBus()) net->GetNetBus()->Remove(net);
    if (net && !bus->ElementAtIndex(index)) bus->AddAtIndex(net, index);
  }
  void MakeFsm(Netlist* n) {
    Instance* reg = AnyInstance(n);
    if (!reg || !kestrin_is_register_type(reg->Type()) || reg->GetFsm()) return;
    auto* fsm = Any<Fsm>(FsmsOf(n));
    if (!fsm) n->Add(fsm = new Fsm(Name().c_str()));
    fsm->AddState(reg, "s");
  }
  void Fold(Netlist* n) {
    ResolveAll(n);
    if (Instance* inst = AnyInstance(n)) inst->Propagate();
    Net* from = AnyNet(n);
    Net* to = AnyNet(n);
    if (from && to && Chance(3)) from->PropagateInto(to, 0);
  }
  void Sweep(Netlist* n) {
    if (Net* net = AnyNet(n)) n->RegisterPotentiallyFanoutFreeNet(net);
    if (Chance(4)) n->SweepPotentiallyFanoutFreeNets();
  }
  void Merge(Netlist* n) {
    ResolveAll(n);
    Instance* first = AnyInstance(n);
    if (!first || !first->View()) return;
    for (Instance* second : InstancesOf(n))
      if (second != first && second->View() == first->View())
        if (first->View()->MergeCommonSubexpression(first, second)) return;
  }
  void ChangeView(Netlist* n) {
    Instance* inst = AnyInstance(n);
    if (!inst || !inst->View()) return;
    if (inst->Type() == PRIM_BUF) return inst->ChangeBufferType(static_cast<buffer_type_enum>(Below(NONE)));
    if (inst->Type() >= PRIM_AND && inst->Type() <= PRIM_XNOR)
      return inst->ReplaceView(Prim::Static(static_cast<prim_type_enum>(PRIM_AND + Below(6))), Below(2));
    if (inst->IsOperator()) inst->SetControlNet(Chance(3) ? nullptr : AnyNet(n));
  }
  void Isolate(Netlist* n) {
    Net* net = AnyNet(n);
    if (net) net->Isolate(AnyNet(n), Chance(2) ? 9 : 0);
  }
  void BusOfPorts(Netlist* n) {
    auto* bus = Any<PortBus>(PortBusesOf(n));
    if (bus && Chance(4)) {
      delete bus;
      return;
    }
    if (!bus) n->Add(bus = new PortBus(Name().c_str(), DIR_INPUT, static_cast<int>(Below(4)), Below(2)));
    Port* port = AnyPort(n);
    if (port && port->GetPortBus()) port->GetPortBus()->Remove(port);
    if (port) bus->Add(port);
  }
  void ChangeHierarchy(Netlist* n) {
    ResolveAll(n);
    Instance* inst = AnyInstance(n);
    if (Chance(2)) {
      if (inst && inst->View()) {
        ResolveAll(inst->View());
        inst->Flatten();
      }
      return;
    }
    Set group(HASH_POINTER);
    for (Instance* member : InstancesOf(n))
      if (Chance(3)) group.Insert(member);
    if (Chance(4)) return MakeUnique(n, group);
    if (netlists.size() >= max_netlists || !inst) return;
    netlists.push_back(n->Group(group, nullptr, nullptr, nullptr)->View());
  }
  /// How many views there would be if each instance had its own; walks no further than to the limit.
  static unsigned NumOfUses(const Netlist* n, unsigned limit) {
    unsigned uses = 0;
    for (const Instance* inst : InstancesOf(n))
      if (inst->View() && inst->Type() == PRIM_NONE && uses < limit) uses += 1 + NumOfUses(inst->View(), limit - uses);
    return uses;
  }
  /// What is made for it goes again.
  void MakeUnique(Netlist* n, Set& group) {
    Set below(HASH_POINTER);
    n->Hierarchy(below, 1);
    for (unsigned pos = 0; pos < below.Size(); pos++) ResolveAll(FromWord<Netlist*>(below.GetAt(pos)));
    if (Chance(2) || NumOfUses(n, 50) >= 50) {
      n->Ungroup(group);
      return;
    }
    Set seen(HASH_POINTER);
    for (Netlist* known : netlists) seen.Insert(known);
    n->Uniquify(seen);
    below.Reset();
    n->Hierarchy(below, 0);
    for (unsigned pos = 0; pos < below.Size(); pos++) {
      auto* made = FromWord<Netlist*>(below.GetAt(pos));
      ASSERT_EQ(NetlistChecker(made).Report(), "");
      if (made->Type() != PRIM_NONE || std::count(netlists.begin(), netlists.end(), made)) continue;
      for (Instance* inst : ReferencesOf(made)) delete inst;
      delete made;
    }
  }
  void CopyAndDelete(Netlist* n) {
    ResolveAll(n);
    std::unique_ptr<Netlist> copy(n->Copy());
    ASSERT_EQ(NetlistChecker(copy.get()).Report(), "");
    EXPECT_EQ(copy->NumOfInsts(), n->NumOfInsts());
    if (netlists.size() > 4 && Chance(2)) {
      const size_t gone = Below(static_cast<unsigned>(netlists.size()));
      delete netlists[gone];
      netlists.erase(netlists.begin() + static_cast<std::ptrdiff_t>(gone));
    }
  }
  static std::string Saved(const Netlist* n, const std::string& path) {
    {
      SaveRestore stream(path.c_str(), 0);
      n->Save(stream);
      EXPECT_TRUE(stream.IsOK());
    }
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  /// Views that are there already stay, so the contents of this netlist alone are compared.
  void SaveAndRestore(Netlist* n) {
    Set below(HASH_POINTER);
    n->Hierarchy(below, 1);
    for (unsigned pos = 0; pos < below.Size(); pos++) ResolveAll(FromWord<Netlist*>(below.GetAt(pos)));
    const std::string path = TemporaryFile("random_" + std::to_string(GetParam()));
    const std::string bytes = Saved(n, path);
    {
      SaveRestore stream(path.c_str(), 1);
      Netlist restored(stream);
      ASSERT_TRUE(stream.IsOK());
      ASSERT_EQ(NetlistChecker(&restored).Report(), "");
      EXPECT_TRUE(Saved(&restored, path + "2") == bytes);
    }
    std::filesystem::remove(path);
    std::filesystem::remove(path + "2");
  }

  void Step() {
    Netlist* n = AnyNetlist();
    if (n->NumOfInsts() + n->NumOfNets() > 120) return Delete(n);
    switch (Below(24)) {
    case 0:
    case 1:
    case 2: return AddNet(n);
    case 3: return AddPort(n);
    case 4:
    case 5:
    case 6: return AddInstance(n);
    case 7: return AddWordOperator(n);
    case 8:
    case 9: return Reconnect(n);
    case 10: return MovePort(n);
    case 11: return Rename(n);
    case 12:
    case 13: return Delete(n);
    case 14: return Wire(n);
    case 15: return Bus(n);
    case 16: return MakeFsm(n);
    case 17: return Fold(n);
    case 18: return Sweep(n);
    case 19: return Merge(n);
    case 20: return ChangeView(n);
    case 21: return Isolate(n);
    case 22: return BusOfPorts(n);
    default: break;
    }
    if (Chance(3)) return ChangeHierarchy(n);
    return Chance(2) ? CopyAndDelete(n) : SaveAndRestore(n);
  }

  std::mt19937 random;
  Library* library = nullptr;
  std::vector<Netlist*> netlists;
};

TEST_P(RandomOperations, KeepEveryNetlistConsistent) {
  for (int operation = 0; operation < num_operations; operation++) {
    ASSERT_NO_FATAL_FAILURE(Step()) << operation;
    if (operation % 20) continue;
    for (Netlist* n : netlists) ASSERT_EQ(NetlistChecker(n).Report(), "") << operation;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomOperations, testing::Range(1U, 6U));

} // namespace
