// Changes of registers: synchronous and asynchronous terms that extraction adds to them, and the pass that turns all
// storage into forms with set and reset.
#include "containers/views.h"
#include "database/fsm.h"
#include "database/polish.h"
#include "database/primitives.h"
#include "util/strings.h"

namespace {
/// Gives inputs of a register new terms under one condition; an open input counts as constant 0.
class RegisterTerms {
public:
  RegisterTerms(Instance* reg, Net* condition, unsigned long linefile)
      : _reg(reg), _netlist(reg->Owner()), _condition(condition), _linefile(linefile) {}

  /// Active under the condition, too.
  void Activate(Port* port) {
    Net* old = _reg->GetNet(port);
    if (!old) old = _netlist->Gnd(_linefile);
    _reg->Reconnect(port, _netlist->OptimizedOr(old, _condition, _linefile));
  }
  /// Not active under the condition.
  void Mask(Port* port) {
    Net* old = _reg->GetNet(port);
    if (!old || old->IsGnd()) return;
    if (!_inverse) _inverse = _netlist->OptimizedInv(_condition, _linefile);
    _reg->Reconnect(port, _netlist->OptimizedAnd(old, _inverse, _linefile));
  }
  /// The value under the condition.
  void Select(Port* port, Net* value) {
    _reg->Reconnect(port, _netlist->OptimizedMux(_reg->GetNet(port), value, _condition, _linefile));
  }

private:
  Instance* _reg;
  Netlist* _netlist;
  Net* _condition;
  Net* _inverse = nullptr;
  unsigned long _linefile;
};
} // namespace

void Instance::AddSyncHold(Net* condition, Net* value, unsigned long linefile) {
  KESTRIN_ASSERT_TEXT(Type() == PRIM_DFF || Type() == PRIM_DFFRS, "Type() == PRIM_DFF || Type() == PRIM_DFFRS");
  RegisterTerms(this, condition, linefile).Select(_view->GetInput(), value);
}

void Instance::AddAsyncCondition(Net* condition, Net* value, unsigned long linefile) {
  RegisterTerms terms(this, condition, linefile);
  if (Type() == PRIM_DFF) {
    terms.Activate(_view->GetAsyncCond());
    terms.Select(_view->GetAsyncVal(), value);
    return;
  }
  if (Type() != PRIM_DFFRS) {
    KESTRIN_REPORT_INTERNAL("Can't add asynchronous condition to non-register");
    return;
  }
  if (!value || value->IsX()) return;
  if (value->IsZ()) {
    // Whoever makes the enable of the tristate buffer masks the other terms with this one.
    terms.Activate(_view->GetZ());
    return;
  }

  // What is assigned later has priority: it takes its condition out of the other terms.
  Port* active = _view->GetALoad();
  if (value->IsPwr()) active = _view->GetSet();
  if (value->IsGnd()) active = _view->GetReset();
  terms.Activate(active);
  if (active == _view->GetALoad()) terms.Select(_view->GetAData(), value);
  for (Port* port : {_view->GetSet(), _view->GetReset(), _view->GetZ(), _view->GetALoad()})
    if (port != active) terms.Mask(port);
}

void Instance::AddAsyncHold(Net* condition, Net* hold, unsigned long linefile) {
  if (Type() != PRIM_DFF && Type() != PRIM_DFFRS) {
    KESTRIN_REPORT_INTERNAL("Can't add asynchronous hold condition to non-register");
    return;
  }
  AddSyncHold(condition, hold, linefile);
  RegisterTerms terms(this, condition, linefile);
  if (Type() == PRIM_DFF) {
    terms.Mask(_view->GetAsyncCond());
    return;
  }
  for (Port* port : {_view->GetSet(), _view->GetReset(), _view->GetZ(), _view->GetALoad()}) terms.Mask(port);
}

namespace {
/// Turns PRIM_DFF and PRIM_DLATCH into their forms with set and reset.
class SetResetConversion {
public:
  explicit SetResetConversion(Netlist* netlist) : _netlist(netlist), _constants(netlist) {}

  void Convert(Instance* old) {
    const unsigned long linefile = old->Linefile();
    Secondaries terms = Split(old);
    Net* made = old->Type() == PRIM_DFF
                    ? _netlist->Dffrs(old->GetInput(), old->GetClock(), terms.set, terms.reset, linefile)
                    : _netlist->Dlatchrs(old->GetInput(), old->GetClock(), terms.set, terms.reset, linefile);
    Replace(old, made);
  }

private:
  struct Secondaries {
    Net* set = nullptr;
    Net* reset = nullptr;
  };

  /// What the condition and the value of an asynchronous assignment mean for set and reset.
  Secondaries Split(const Instance* old) {
    Net* condition = old->GetAsyncCond();
    Net* value = old->GetAsyncVal();
    const unsigned long linefile = old->Linefile();
    Net* gnd = _constants.Gnd();
    if (!condition || !value || condition->IsGnd()) return {gnd, gnd};
    if (value->IsGnd() || value->IsX()) return {gnd, condition};
    if (value->IsPwr()) return {condition, gnd};
    Net* inverse = _netlist->Inv(value, linefile);
    if (condition->IsPwr()) return {value, inverse};
    return {_netlist->And(condition, value, linefile), _netlist->And(condition, inverse, linefile)};
  }

  /// The new register takes over the name, the attributes, the state and the output.
  void Replace(Instance* old, Net* made) {
    Instance* reg = made->Driver();
    Net* output = old->GetOutput();
    OwnedString name(Strings::save(old->Name()));
    Fsm* fsm = old->GetFsm();
    OwnedString state(fsm ? Strings::save(fsm->StateName(old)) : nullptr);
    reg->CopyFrom(*old);
    delete old;
    reg->SetName(name.get());
    if (fsm) fsm->AddState(reg, state.get());
    if (!output) return;
    output->Wire(made);
    output->ResolveWires();
  }

  Netlist* _netlist;
  SharedConstants _constants;
};
} // namespace

void Netlist::ToSetResetRegisters() {
  ForEachInstanceOf(Prim::Static(PRIM_DFFRS), this, [](Instance* reg) {
    if (reg->GetZ() && reg->GetZ()->IsGnd()) reg->Disconnect(reg->View()->GetZ());
  });
  SetResetConversion conversion(this);
  for (prim_type_enum type : {PRIM_DFF, PRIM_DLATCH})
    ForEachInstanceOf(Prim::Static(type), this, [&](Instance* old) { conversion.Convert(old); });
}
