// What the passes of Polish share: constants that a pass makes once, the test whether an instance still lives, and the
// walk over the selection logic of a cone. The passes themselves are operations of Netlist; their order is the table in
// netlist_polish.cpp.
#ifndef KESTRIN_DATABASE_POLISH_H
#define KESTRIN_DATABASE_POLISH_H

#include <string>

#include "containers/set.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/views.h"

/// One net of each constant for all uses within a pass. A net is made at its first use. The holder must be told when a
/// net is merged into another one: use Tie for that.
class SharedConstants {
public:
  explicit SharedConstants(Netlist* netlist) : _netlist(netlist) {}
  SharedConstants(const SharedConstants&) = delete;
  SharedConstants& operator=(const SharedConstants&) = delete;

  Net* Pwr() { return _pwr ? _pwr : _pwr = _netlist->Pwr(0); }
  Net* Gnd() { return _gnd ? _gnd : _gnd = _netlist->Gnd(0); }
  Net* X() { return _x ? _x : _x = _netlist->X(0); }
  /// Makes the net and the constant one net, which is the constant from now on.
  void TieToPwr(Net* net) { _pwr = Merge(net, Pwr()); }
  void TieToGnd(Net* net) { _gnd = Merge(net, Gnd()); }
  /// Enters the nets made so far, for walks that delete what nothing reads.
  void Protect(Set& visited) const {
    for (Net* net : {_pwr, _gnd, _x}) visited.Insert(net);
  }

private:
  static Net* Merge(Net* net, Net* constant) {
    net->Wire(constant);
    return constant->ResolveWires();
  }
  Netlist* _netlist;
  Net* _pwr = nullptr;
  Net* _gnd = nullptr;
  Net* _x = nullptr;
};

/// An instance in a work list that other changes may delete: the references of its view tell whether it is still there.
struct PendingInstance {
  explicit PendingInstance(Instance* instance) : inst(instance), view(instance->View()) {}
  bool IsAlive() const { return view->References().Contains(inst); }
  Instance* inst;
  Netlist* view;
};

/// The instances of a shared view in one netlist, in the netlist's order: other netlists may refer to the view far more
/// often. The walk survives deletion of the current one.
template <class Visit> void ForEachInstanceOf(const Netlist* view, const Netlist* owner, Visit visit) {
  for (Instance* inst : InstancesOf(owner))
    if (inst->View() == view) visit(inst);
}

/// Walks backwards from a net through what only passes or selects values: buffers, multiplexers, infer points of the
/// signal, n:1 multiplexers and selectors. Every net comes once; the caller decides where the walk goes on.
class SelectionCone {
public:
  /// With a null signal no infer point is passed.
  SelectionCone(Net* start, const Net* signal) : _signal(signal) { Enter(start); }
  /// The next net, null at the end.
  Net* Next() { return _pending.Size() ? _pending.RemoveLast() : nullptr; }
  /// Enters the nets whose values the driver of this net may pass on.
  void EnterSources(const Net* net);

private:
  void Enter(Net* net) {
    if (net && _visited.Insert(net)) _pending.Insert(net);
  }
  const Net* _signal;
  Set _visited;
  ArrayOf<Net> _pending;
};

/// Whether a net is the output of a PRIM_CLOCK.
inline bool kestrin_is_clock_event(const Net* net) { return net && net->DriverType() == PRIM_CLOCK; }

/// Whether neither an instance nor a port drives a net.
inline bool kestrin_is_undriven(const Net* net) {
  return !net->DrivingPortRef() && !net->GetFirstPort(DIR_INPUT) && !net->GetFirstPort(DIR_INOUT);
}

/// The user's name of an object, empty when it has none.
std::string kestrin_user_name(const DesignObj* object);

#endif
