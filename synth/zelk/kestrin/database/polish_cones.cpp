// Questions about cones: whether the value of a signal asks for a register, holds the signal itself or needs an infer
// point. Elaboration asks them before it leaves a cone to the extraction.
#include <vector>

#include "containers/views.h"
#include "database/polish.h"
#include "util/strings.h"

std::string kestrin_user_name(const DesignObj* object) {
  OwnedString name(object->ExtractUserName(/*use_original*/ 1));
  return name ? name.get() : "";
}

void SelectionCone::EnterSources(const Net* net) {
  const Instance* driver = net->Driver();
  if (!driver) return;
  switch (driver->Type()) {
  case PRIM_BUF: Enter(driver->GetInput()); return;
  case PRIM_MUX:
    Enter(driver->GetInput1());
    Enter(driver->GetInput2());
    return;
  case PRIM_INFER_POINT:
    if (_signal && driver->GetInput2() == _signal) Enter(driver->GetInput());
    return;
  case OPER_NTO1MUX:
  case OPER_SELECTOR:
    for (unsigned bit = 0; bit < driver->Input2Size(); bit++) Enter(driver->GetInput2Bit(bit));
    return;
  default: return;
  }
}

unsigned Net::MightInferRegister(Net* hold) {
  SelectionCone cone(this, hold);
  while (Net* net = cone.Next()) {
    if (net->Linefile()) continue;
    if (net->DriverType() == PRIM_MUX && kestrin_is_clock_event(net->Driver()->GetControl())) return 1;
    cone.EnterSources(net);
  }
  return 0;
}

unsigned Net::CreatesLatch(Net* value, unsigned ignore_self) {
  if (!value || IsConstant() || value->IsConstant()) return 0;
  if (ignore_self && value == this) return 0;
  if (value->MightInferRegister(this)) return 0;
  SelectionCone cone(value, this);
  while (Net* net = cone.Next()) {
    if (net == this) return 1;
    if (!net->Linefile()) cone.EnterSources(net);
  }
  return 0;
}

unsigned Net::RequiresInferPoint(Net* target) {
  SelectionCone cone(this, target);
  while (Net* net = cone.Next()) {
    if (net == target || net->IsZ()) return 1;
    if (net->Linefile()) continue;
    if (net->DriverType() == PRIM_MUX && kestrin_is_clock_event(net->Driver()->GetControl())) return 1;
    cone.EnterSources(net);
  }
  return 0;
}

namespace {
struct ConditionedNet {
  Net* net;
  Net* condition;
};
} // namespace

void Net::AddAsyncConditions(Set* done, Net* condition, Net* hold, Instance* dff, unsigned long linefile) {
  Netlist* owner = _owner;
  std::vector<ConditionedNet> pending{{this, condition}};
  while (!pending.empty()) {
    auto [net, active] = pending.back();
    pending.pop_back();
    if (!net || net->IsConstant() || net == hold || net->Linefile() || !done->Insert(net)) continue;
    Instance* driver = net->Driver();
    switch (net->DriverType()) {
    case PRIM_MUX: {
      Net* control = driver->GetControl();
      Net* inverse = owner->OptimizedInv(control, linefile);
      pending.push_back({driver->GetInput1(), owner->OptimizedAnd(active, inverse, linefile)});
      pending.push_back({driver->GetInput2(), owner->OptimizedAnd(active, control, linefile)});
      break;
    }
    case PRIM_BUF:
    case PRIM_INFER_POINT: pending.push_back({driver->GetInput(), active}); break;
    default: dff->AddAsyncCondition(active, net, linefile);
    }
  }
}

namespace {
/// Calls `visit` for a net and the nets wired to it, until one answers true.
template <class Visit> bool any_on_ring(Net* net, Visit visit) {
  Net* member = net;
  do {
    if (visit(member)) return true;
    member = member->WireNext();
  } while (member && member != net);
  return false;
}

/// Where a net's value comes from, looked for through buffers and inverters.
struct SignalSource {
  explicit SignalSource(Net* start) : net(start) {
    Set visited(HASH_POINTER);
    while (visited.Insert(net) && Step()) {}
  }

  bool Step() {
    return any_on_ring(net, [this](const Net* member) {
      Net* input = member->BufNet();
      Net* inverted = input ? nullptr : member->InvNet();
      if (!input && !inverted) return false;
      is_inverted = is_inverted != (inverted != nullptr);
      net = input ? input : inverted;
      return true;
    });
  }

  Net* net;
  bool is_inverted = false;
};
} // namespace

unsigned Netlist::NetMatch(Net* a, Net* b) {
  if (!a || !b) return 0;
  SignalSource first(a);
  SignalSource second(b);
  if (first.is_inverted != second.is_inverted) return 0;
  return any_on_ring(first.net, [&](const Net* member) { return member == second.net; });
}
