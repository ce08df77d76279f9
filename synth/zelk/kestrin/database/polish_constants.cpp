// Folding of logic: constants, equal instances, operators around selections, transistors that constants control; and
// the names of operators.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "database/operators.h"
#include "database/polish.h"
#include "database/primitives.h"
#include "util/services.h"
#include "util/strings.h"

namespace {
/// Folds every instance once, and again those whose inputs changed after their turn.
class FoldingSweep {
public:
  explicit FoldingSweep(const Netlist* netlist) : _done(HASH_POINTER, netlist->NumOfInsts() + 1) {
    _pending.reserve(netlist->NumOfInsts());
    for (Instance* inst : InstancesOf(netlist)) _pending.emplace_back(inst);
  }

  unsigned Run() {
    unsigned folded = 0;
    for (size_t pos = 0; pos < _pending.size(); pos++) {
      const PendingInstance next = _pending[pos];
      if (!next.IsAlive()) continue;
      _done.Insert(next.inst);
      CollectLoads(next.inst);
      if (!next.inst->Propagate()) continue;
      folded++;
      for (const PendingInstance& load : _loads)
        if (load.IsAlive() && _done.Remove(load.inst)) _pending.push_back(load);
    }
    return folded;
  }

private:
  void CollectLoads(const Instance* inst) {
    _loads.clear();
    if (inst->IsConstantPrimitive()) return;
    for (const PortRef* ref : ConnectionsOf(inst)) {
      if (ref->Direction() != DIR_OUTPUT) continue;
      for (const PortRef* load : LoadsOf(ref->GetNet())) _loads.emplace_back(load->GetInst());
    }
  }

  std::vector<PendingInstance> _pending;
  std::vector<PendingInstance> _loads;
  Set _done;
};
} // namespace

void Netlist::PropagateConstants() {
  ProfileScope scope("***Propagating constants***");
  unsigned total = 0;
  while (unsigned folded = FoldingSweep(this).Run()) total += folded;
  if (total) kestrin_debug("Propagated constants through %d instances", total);
  // Registers let go of asynchronous data that is never loaded; that counts as no change.
  RemoveDanglingLogic();
}

namespace {
/// Commutative over the inputs, since some views accept exchanged ones.
uintptr_t Mix(const void* address) {
  uint64_t word = reinterpret_cast<uintptr_t>(address) >> 2;
  word *= 0x9e3779b97f4a7c15U;
  return static_cast<uintptr_t>(word ^ (word >> 32));
}

/// What tells a net from others for as long as it is driven: when two nets become one, either may be the one that
/// stays, and so does the connection of the first driver.
const void* Identity(const Net* net) {
  const PortRef* driver = net->HasMultipleDrivers() ? nullptr : net->DrivingPortRef();
  return driver ? static_cast<const void*>(driver) : net;
}

uintptr_t Signature(const Instance* inst) {
  uintptr_t sum = Mix(inst->View());
  for (const PortRef* ref : ConnectionsOf(inst))
    if (ref->IsInput()) sum += Mix(Identity(ref->GetNet()));
  return sum ? sum : 1;
}

/// Whether the walk to the inputs goes on behind this driver.
bool IsLogic(const Instance* driver) {
  return (driver->IsPrimitive() || driver->IsOperator()) && !kestrin_is_storage_type(driver->Type());
}

bool IsMergeable(const Instance* inst) {
  return (inst->IsPrimitive() || inst->IsOperator()) && inst->Type() != PRIM_TRI && inst->Type() != OPER_LUT;
}

bool HaveSameAttributes(const Instance* a, const Instance* b) {
  if (a->NumOfAtts() != b->NumOfAtts()) return false;
  for (const Att* att : AttributesOf(a))
    if (!Strings::compare(att->Value(), b->GetAttValue(att->Key()))) return false;
  return true;
}

/// Operators know nothing of the nets on their outputs: a name that has to stay must not be lost.
bool MayMergeOutputs(const Instance* a, const Instance* b) {
  for (const Port* port : PortsOf(a->View())) {
    Net* kept = port->IsInput() ? nullptr : a->GetNet(port);
    Net* merged = port->IsInput() ? nullptr : b->GetNet(port);
    if (!kept || !merged) continue;
    if (kept->HasMultipleDrivers() || merged->HasMultipleDrivers() || !kept->IsCompatible(merged, 0)) return false;
  }
  return true;
}

bool MayMerge(const Instance* a, const Instance* b) {
  return a->View() == b->View() && HaveSameAttributes(a, b) && (!a->IsOperator() || MayMergeOutputs(a, b));
}

/// Merges into the first instance of the same signature that computes the same, or enters the instance.
unsigned MergeWithEqual(Instance* inst, Map& signatures) {
  if (!IsMergeable(inst)) return 0;
  const void* key = ToWord(static_cast<intptr_t>(Signature(inst)));
  for (MapItem* item = signatures.GetItem(key); item; item = signatures.GetNextSameKeyItem(item)) {
    auto* equal = FromWord<Instance*>(item->Value());
    if (MayMerge(equal, inst) && inst->View()->MergeCommonSubexpression(equal, inst)) return 1;
  }
  signatures.Insert(key, inst, /*force_overwrite*/ 0, /*force_insert*/ 1);
  return 0;
}

struct MergeFrame {
  Instance* inst;
  unsigned next_connection;
};
} // namespace

/// The inputs come before the instance, so that equal cones merge from their leaves up. Returns the number merged.
unsigned Instance::EliminateCommonSubexpressions(Set& visited, Map& signatures) {
  unsigned merged = 0;
  if (!visited.Insert(this)) return merged;
  std::vector<MergeFrame> path{{this, 0}};
  while (!path.empty()) {
    MergeFrame& frame = path.back();
    const Array* connections = frame.inst->Connections();
    Instance* driver = nullptr;
    while (connections && frame.next_connection < connections->Size() && !driver) {
      const auto* ref = FromWord<PortRef*>(connections->At(frame.next_connection++));
      if (!ref || !ref->IsInput() || ref->GetNet()->Owner() != frame.inst->Owner()) continue;
      driver = ref->GetNet()->Driver();
      if (driver && (!IsLogic(driver) || !visited.Insert(driver))) driver = nullptr;
    }
    if (driver) {
      path.push_back({driver, 0});
      continue;
    }
    Instance* inst = frame.inst;
    path.pop_back();
    // Inputs that have become one net may decide the output.
    if (!IsMergeable(inst) || !inst->Propagate()) merged += MergeWithEqual(inst, signatures);
  }
  return merged;
}

namespace {
/// Merges what is equal in one sweep over a netlist.
class MergeSweep {
public:
  explicit MergeSweep(Netlist* netlist)
      : _netlist(netlist), _visited(HASH_POINTER, netlist->NumOfInsts() + 1),
        _signatures(HASH_NUM, netlist->NumOfInsts() + 1) {}

  void Run() {
    for (Port* port : PortsOf(_netlist)) {
      Instance* driver = port->GetNet() ? port->GetNet()->Driver() : nullptr;
      if (driver && driver->Owner() == _netlist) Merge(driver);
    }
    for (bool is_for_endpoints : {true, false})
      for (Instance* inst : InstancesOf(_netlist))
        if (IsEndpoint(inst) == is_for_endpoints) Merge(inst);
  }
  unsigned NumMerged() const { return _merged; }
  unsigned long MemUsage() const { return _visited.MemUsage() + _signatures.MemUsage(); }

private:
  static bool IsEndpoint(const Instance* inst) {
    return inst->Type() == PRIM_NONE || kestrin_is_storage_type(inst->Type());
  }
  void Merge(Instance* inst) { _merged += inst->EliminateCommonSubexpressions(_visited, _signatures); }

  Netlist* _netlist;
  Set _visited;
  Map _signatures;
  unsigned _merged = 0;
};
} // namespace

void Netlist::EliminateCommonSubexpressions() {
  ProfileScope scope("***Merging common sub-expressions***");
  unsigned merged = 0;
  unsigned long memory = 0;
  // Registers and constants that have become one decide gates that a sweep has passed, which makes others equal; and
  // they decide multiplexers of named nets, which only the reduction of trees removes.
  for (;;) {
    const unsigned before = NumOfInsts();
    MergeSweep sweep(this);
    sweep.Run();
    merged += sweep.NumMerged();
    memory = std::max(memory, sweep.MemUsage());
    if (NumOfInsts() == before) break;
    PropagateConstants();
    OptimizeMuxTrees();
  }
  kestrin_debug("Merged %d duplicate instances.  Data structures for algorithm consumed %u bytes", merged,
                static_cast<unsigned>(memory));
}

namespace {
/// One sweep over the operators; the number changed.
unsigned OptimizeEachOperator(const Netlist* netlist) {
  std::vector<PendingInstance> operators;
  for (Instance* inst : InstancesOf(netlist))
    if (inst->IsOperator()) operators.emplace_back(inst);
  unsigned optimized = 0;
  for (const PendingInstance& next : operators)
    if (next.IsAlive()) optimized += static_cast<Operator*>(next.view)->Optimize(next.inst) != 0;
  return optimized;
}
} // namespace

void Netlist::OptimizeOperators() {
  ProfileScope scope("***Optimizing operators***");
  if (const unsigned optimized = OptimizeEachOperator(this)) {
    // What the selections have become can be constant, or equal to what was there.
    PropagateConstants();
    EliminateCommonSubexpressions();
    kestrin_debug("Optimized %d operators", optimized);
  }
  for (Instance* inst : InstancesOf(this)) inst->SetControlNet(nullptr);
}

void Netlist::UniquifyOperatorNames() {
  ProfileScope scope("***Creating unique names for operators***");
  std::vector<Instance*> operators;
  for (Instance* inst : InstancesOf(this))
    if (inst->IsOperator() && !inst->IsUserName()) operators.push_back(inst);
  Map next_numbers(HASH_NUM, 0); // by type
  for (Instance* inst : operators) {
    const void* type = ToWord(static_cast<int>(inst->Type()) + 1);
    auto number = FromWord<unsigned>(next_numbers.GetValue(type));
    std::string name;
    do name = inst->View()->OperatorName() + std::to_string(number++);
    while (GetInst(name.c_str()));
    next_numbers.Insert(type, ToWord(number), /*force_overwrite*/ 1);
    inst->SetName(name.c_str());
  }
  kestrin_debug("Renamed %d operators", static_cast<int>(operators.size()));
}

void Netlist::ConvertTransistorsWithConstantControls() {
  ForEachInstanceOf(Prim::Static(PRIM_TRAN), this, [](Instance* tran) {
    const Net* control = tran->GetControl();
    if (control && !control->IsConstant()) return;
    Net* a = tran->GetInput1();
    Net* b = tran->GetInput2();
    const bool is_closed = control && control->IsPwr();
    delete tran;
    if (!is_closed || !a || !b) return;
    a->Wire(b);
    a->ResolveWires();
  });
}
