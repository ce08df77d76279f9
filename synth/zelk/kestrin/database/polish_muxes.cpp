// Simplification of the multiplexer trees that symbolic execution leaves, so that extraction meets its templates:
// feedback that only repeats a net goes, and selections that an outer selection has decided already.
#include <vector>

#include "database/polish.h"
#include "database/primitives.h"
#include "util/services.h"

namespace {
/// Whether this driver only feeds a net back to itself.
bool RepeatsNet(Net* net, const Instance* driver, Map& cache) {
  prim_type_enum type = driver->Type();
  if (type != PRIM_BUF && type != PRIM_INFER_POINT) return false;
  Net* input = driver->GetInput();
  return input && input->ReduceConeToSingleNet(cache) == net;
}

void ReplaceByReduced(Instance* inst, Port* port, Map& cache) {
  Net* net = inst->GetNet(port);
  if (!net) return;
  Net* reduced = net->ReduceConeToSingleNet(cache);
  if (reduced != net) inst->Reconnect(port, reduced);
}
} // namespace

void Netlist::DisconnectSillyFaninCones() {
  Map cache(HASH_POINTER, NumOfInsts() + 1);
  for (Net* net : NetsOf(this)) {
    if (!net->Linefile()) continue;
    for (PortRef* ref : DriversOf(net))
      if (ref->Direction() == DIR_OUTPUT && RepeatsNet(net, ref->GetInst(), cache))
        ref->GetInst()->Disconnect(ref->GetPort());
  }
  ForEachInstanceOf(Prim::Static(PRIM_MUX), this, [&cache](Instance* mux) {
    if (!kestrin_is_clock_event(mux->GetControl())) return;
    ReplaceByReduced(mux, mux->View()->GetInput1(), cache);
    ReplaceByReduced(mux, mux->View()->GetInput2(), cache);
  });
  RemoveDanglingLogic();
}

namespace {
/// Reduces one tree. On the way down it remembers what the controls passed have decided.
class MuxTreeReducer {
public:
  MuxTreeReducer(Netlist* netlist, Net* hold) : _netlist(netlist), _hold(hold) {}

  /// The net that replaces the tree at this root.
  Net* Reduce(Net* root) { return ReduceDriver(root, 0); }

private:
  /// Trees are followed to this depth.
  static constexpr unsigned max_depth = 12;

  /// A control whose value is decided within a branch. A clock event is known by its clock and enable.
  struct Decision {
    Net* control;
    bool value;
  };

  Net* ReduceBelow(Net* net, unsigned depth) {
    return net->Linefile() || depth > max_depth ? net : ReduceDriver(net, depth);
  }
  Net* ReduceDriver(Net* net, unsigned depth);
  Net* ReduceMux(Net* net, const Instance* mux, unsigned depth);
  Net* ReduceBranch(Net* branch, Net* control, bool value, unsigned depth) {
    _decisions.push_back({control, value});
    Net* reduced = ReduceBelow(branch, depth + 1);
    _decisions.pop_back();
    return reduced;
  }
  const Decision* FindDecision(Net* control, bool* value) const;
  static bool DecidesEvent(const Instance* decided, bool value, const Instance* event);

  Netlist* _netlist;
  Net* _hold;
  std::vector<Decision> _decisions; // from the root down
};

Net* MuxTreeReducer::ReduceDriver(Net* net, unsigned depth) {
  const Instance* driver = net->Driver();
  if (!driver || net->HasMultipleDrivers()) return net;
  switch (driver->Type()) {
  case PRIM_MUX: return ReduceMux(net, driver, depth);
  case PRIM_BUF:
  case PRIM_INFER_POINT: {
    Net* input = driver->GetInput();
    if (!input || (driver->Type() == PRIM_INFER_POINT && driver->GetInput2() != _hold)) return net;
    Net* reduced = ReduceBelow(input, depth + 1);
    return reduced == input ? net : reduced;
  }
  default: return net;
  }
}

Net* MuxTreeReducer::ReduceMux(Net* net, const Instance* mux, unsigned depth) {
  Net* in0 = mux->GetInput1();
  Net* in1 = mux->GetInput2();
  Net* control = mux->GetControl();
  if (!in0 || !in1 || !control) return net;
  bool value = false;
  if (FindDecision(control, &value)) return ReduceBelow(value ? in1 : in0, depth + 1);

  Net* new0 = ReduceBranch(in0, control, false, depth);
  Net* new1 = ReduceBranch(in1, control, true, depth);
  if (new0 == new1) return new0;
  if (new0 == in0 && new1 == in1) return net;
  const std::string name = kestrin_user_name(net);
  AutoInstancePrefix prefix(_netlist, name.empty() ? nullptr : name.c_str());
  return _netlist->Mux(new0, new1, control, mux->Linefile());
}

/// Whether the outcome of a clock event, with its enable, tells that of another event of the same edge.
bool MuxTreeReducer::DecidesEvent(const Instance* decided, bool value, const Instance* event) {
  const Net* clock = decided->GetInput();
  const Net* other = event->GetInput();
  bool is_same_edge = clock == other || (clock && other && clock->InvNet() && clock->InvNet() == other->InvNet());
  if (!is_same_edge) return false;
  if (decided->GetControl() == event->GetControl()) return true;
  // An event that happened had its edge; one that did not, and had no condition, had none.
  const Net* enable = (value ? event : decided)->GetControl();
  return !enable || enable->IsPwr();
}

const MuxTreeReducer::Decision* MuxTreeReducer::FindDecision(Net* control, bool* value) const {
  const Net* inverted = control->InvNet();
  const bool is_event = kestrin_is_clock_event(control);
  for (const Decision& decision : _decisions) {
    const Net* known = decision.control;
    bool is_inverse = (inverted && inverted == known) || (known->InvNet() && known->InvNet() == control);
    bool is_same =
        known == control || (inverted && inverted == known->InvNet()) ||
        (is_event && kestrin_is_clock_event(known) && DecidesEvent(known->Driver(), decision.value, control->Driver()));
    if (!is_same && !is_inverse) continue;
    *value = decision.value != is_inverse;
    return &decision;
  }
  return nullptr;
}

/// Whether a multiplexer is within a tree: it feeds multiplexers only.
bool FeedsMuxesOnly(const Net* output) {
  if (output->NumOfPorts()) return false;
  for (const PortRef* ref : LoadsOf(output)) {
    const Instance* load = ref->GetInst();
    if (load->Type() != PRIM_MUX || ref->GetPort() == load->View()->GetControl()) return false;
  }
  return true;
}

/// Whether only storage and its tristate buffers read a tree: it was reduced with the signal that they were extracted
/// from, and what extraction put on top stays as it is.
bool FeedsStorageOnly(const Net* output) {
  if (output->NumOfPorts() || output->NumOfFanouts() == 0) return false;
  for (const PortRef* ref : LoadsOf(output)) {
    const prim_type_enum type = ref->GetInst()->Type();
    if (!kestrin_is_storage_type(type) && type != PRIM_TRI) return false;
  }
  return true;
}

class MuxTreePass {
public:
  explicit MuxTreePass(Netlist* netlist) : _netlist(netlist) {}

  void Run() {
    // What stands behind an infer point is reduced with the signal known, and first.
    for (prim_type_enum type : {PRIM_INFER_POINT, PRIM_MUX})
      ForEachInstanceOf(Prim::Static(type), _netlist, [this](Instance* root) { _roots.emplace_back(root); });
    for (const PendingInstance& root : _roots) {
      if (!root.IsAlive()) continue;
      if (root.inst->Type() == PRIM_INFER_POINT)
        ReduceInferPoint(root.inst);
      else
        ReduceMux(root.inst);
    }
    kestrin_debug("Optimized %d mux trees, skipping %d internal trees", _num_optimized, _num_internal);
  }

private:
  void ReduceInferPoint(Instance* ipoint) {
    Net* input = ipoint->GetInput();
    if (!input || input->Linefile()) return;
    Net* reduced = MuxTreeReducer(_netlist, ipoint->GetInput2()).Reduce(input);
    if (reduced == input) return;
    ipoint->Reconnect(ipoint->View()->GetInput(), reduced);
    input->DeleteFanoutFreeCone(nullptr, /*keep_user_nets*/ 1);
    _num_optimized++;
  }

  void ReduceMux(Instance* mux) {
    Net* output = mux->GetOutput();
    if (!output || output->IsWired() || output->HasMultipleDrivers()) return;
    if (FeedsMuxesOnly(output)) {
      _num_internal++;
      return;
    }
    if (FeedsStorageOnly(output)) return;
    Net* reduced = MuxTreeReducer(_netlist, nullptr).Reduce(output);
    if (reduced == output) return;
    Replace(mux, output, reduced);
    _num_optimized++;
  }

  /// The reduced tree drives the output in place of the old one.
  void Replace(Instance* mux, Net* output, Net* reduced) {
    const unsigned long linefile = mux->Linefile();
    Net* old = new Net(nullptr, 0);
    _netlist->Add(old);
    mux->Reconnect(mux->View()->GetOutput(), old);
    reduced->PropagateInto(output, linefile);
    old->DeleteFanoutFreeCone(nullptr, /*keep_user_nets*/ 1);
  }

  Netlist* _netlist;
  std::vector<PendingInstance> _roots;
  int _num_optimized = 0;
  int _num_internal = 0;
};
} // namespace

void Netlist::OptimizeMuxTrees() {
  ProfileScope scope("***Optimizing mux trees***");
  MuxTreePass(this).Run();
}
