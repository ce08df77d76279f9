// Splitting a cone into a condition and data: the asynchronous part of a latch, the enable of a latch, the enable of a
// tristate buffer. Registers whose data can be Z get a register beside them that holds the enable.
#include <vector>

#include "containers/views.h"
#include "database/fsm.h"
#include "database/polish.h"
#include "database/primitives.h"
#include "util/deep.h"

namespace {
/// An assignment of a constant that stands above the rest of a cone.
struct ConstantAssignment {
  Net* condition;
  Net* value;
  unsigned long linefile;
};

/// A constant that a storage element can take asynchronously.
bool IsStorable(const Net* net) { return net && net->IsConstant() && !net->IsZ(); }
} // namespace

Net* Net::ExtractAsyncCondition(Net** condition, Net** value) {
  *condition = nullptr;
  *value = nullptr;
  std::vector<ConstantAssignment> chain; // the one of the highest priority first
  Set visited;
  Net* rest = this;
  bool is_protected = false; // behind a buffer the cone stays as it is
  for (Net* net = this; net && !net->Linefile() && net->NumOfPortRefs() < 3 && visited.Insert(net);) {
    Instance* driver = net->Driver();
    prim_type_enum type = net->DriverType();
    if (type == PRIM_BUF) {
      is_protected = true;
      net = driver->GetInput();
    } else if (type == PRIM_INFER_POINT) {
      net = driver->GetInput();
    } else if (type == PRIM_MUX) {
      Net* control = driver->GetControl();
      if (!control || kestrin_is_clock_event(control)) break;
      bool on_one = IsStorable(driver->GetInput2());
      if (!on_one && !IsStorable(driver->GetInput1())) break;
      const unsigned long linefile = driver->Linefile();
      if (on_one)
        chain.push_back({control, driver->GetInput2(), linefile});
      else
        chain.push_back({_owner->OptimizedInv(control, linefile), driver->GetInput1(), linefile});
      net = on_one ? driver->GetInput1() : driver->GetInput2();
    } else {
      break;
    }
    if (!is_protected && net) rest = net;
  }
  for (auto step = chain.rbegin(); step != chain.rend(); ++step) {
    if (*condition) {
      *value = _owner->OptimizedMux(*value, step->value, step->condition, step->linefile);
      *condition = _owner->OptimizedOr(step->condition, *condition, step->linefile);
    } else {
      *value = step->value;
      *condition = step->condition;
    }
  }
  return rest;
}

namespace {
/// The data of a cone and the condition under which they are the signal's value: null for always, gnd for never.
struct ConditionedData {
  Net* data = nullptr;
  Net* condition = nullptr;
};

/// One walk of ExtractCondition. Of the two modes one looks for the branches where the signal keeps its value, the
/// other for those where it is Z.
class ConditionExtractor {
public:
  ConditionExtractor(Netlist* netlist, Net* hold, unsigned tristate, Map& conditions, Map& results)
      : _netlist(netlist), _hold(hold), _tristate(tristate), _conditions(conditions), _results(results),
        _constants(netlist) {}

  Deep<ConditionedData> Extract(Net* net, unsigned copy);

private:
  Deep<ConditionedData> ExtractFromDriver(Net* net, Instance* driver, unsigned copy);
  Deep<ConditionedData> ExtractFromBuffer(Net* net, Instance* driver, unsigned copy);
  Deep<ConditionedData> ExtractFromMux(Net* net, Instance* driver, unsigned copy);
  Deep<ConditionedData> ExtractFromSelection(Net* net, Instance* driver);
  Deep<ConditionedData> ExtractFromRegister(Net* net, Instance* reg);
  Deep<ConditionedData> ExtractFromSimpleStorage(Net* net, Instance* storage);

  Net* MuxCondition(Net* control, Net* c0, Net* c1, unsigned long linefile);
  Net* BuildSelection(const Instance* like, const Array* data, unsigned long linefile);
  void NameEnable(Net* enable, const Instance* reg);
  static void InitializeEnable(Instance* enable, Instance* reg);
  static bool CanBeZ(Net* net) {
    Set visited;
    return net && net->CheckDriverFrom(nullptr, visited);
  }
  bool IsNever(const ConditionedData& found) const { return found.condition && found.condition->IsGnd(); }
  ConditionedData Never() { return {_constants.X(), _constants.Gnd()}; }
  Net* OrAlways(Net* condition) { return condition ? condition : _constants.Pwr(); }

  Netlist* _netlist;
  Net* _hold;
  unsigned _tristate;
  Map& _conditions;
  Map& _results;
  SharedConstants _constants;
};

Deep<ConditionedData> ConditionExtractor::Extract(Net* net, unsigned copy) {
  if (!_tristate && net == _hold) co_return Never();
  if (_tristate && net->IsZ()) co_return Never();
  if (net->Linefile() || net == _hold) co_return ConditionedData{net, nullptr};
  if (const MapItem* known = _results.GetItem(net))
    co_return ConditionedData{FromWord<Net*>(known->Value()), FromWord<Net*>(_conditions.GetValue(net))};
  // What a loop meets again stays as it is.
  _results.Insert(net, net);
  Instance* driver = net->Driver();
  if (!driver) co_return ConditionedData{net, nullptr};
  ConditionedData found = co_await ExtractFromDriver(net, driver, copy);
  _results.Insert(net, found.data, /*force_overwrite*/ 1);
  if (found.condition) _conditions.Insert(net, found.condition, /*force_overwrite*/ 1);
  co_return found;
}

Deep<ConditionedData> ConditionExtractor::ExtractFromDriver(Net* net, Instance* driver, unsigned copy) {
  ConditionedData found{net, nullptr};
  switch (driver->Type()) {
  case PRIM_BUF: found = co_await ExtractFromBuffer(net, driver, copy); break;
  case PRIM_MUX: found = co_await ExtractFromMux(net, driver, copy); break;
  case PRIM_INFER_POINT: {
    Net* input = driver->GetInput();
    if (driver->GetInput2() != _hold || !input) break;
    ConditionedData inner = co_await Extract(input, /*copy*/ 1);
    if (inner.data != input || inner.condition) found = inner;
    break;
  }
  case OPER_NTO1MUX:
  case OPER_SELECTOR: found = co_await ExtractFromSelection(net, driver); break;
  case PRIM_DFFRS:
    if (_tristate) found = co_await ExtractFromRegister(net, driver);
    break;
  case PRIM_DFF:
  case PRIM_DLATCH:
    if (_tristate) found = co_await ExtractFromSimpleStorage(net, driver);
    break;
  default: break;
  }
  co_return found;
}

Deep<ConditionedData> ConditionExtractor::ExtractFromBuffer(Net* net, Instance* driver, unsigned copy) {
  Net* input = driver->GetInput();
  if (!input) co_return ConditionedData{net, nullptr};
  ConditionedData inner = co_await Extract(input, copy);
  if (inner.data == input) co_return ConditionedData{net, inner.condition};
  if (IsNever(inner)) co_return inner;
  if (copy) {
    inner.data = _netlist->Buf(inner.data, driver->Linefile(), driver->BufferType());
    co_return inner;
  }
  driver->Reconnect(driver->View()->GetInput(), inner.data);
  co_return ConditionedData{net, inner.condition};
}

Net* ConditionExtractor::MuxCondition(Net* control, Net* c0, Net* c1, unsigned long linefile) {
  if (!c0 && !c1) return nullptr;
  if (c0 && c1) return _netlist->OptimizedMux(c0, c1, control, linefile);
  if (c0) return _netlist->OptimizedOr(control, c0, linefile);
  return _netlist->OptimizedOr(_netlist->OptimizedInv(control, linefile), c1, linefile);
}

Deep<ConditionedData> ConditionExtractor::ExtractFromMux(Net* net, Instance* driver, unsigned copy) {
  Net* in0 = driver->GetInput1();
  Net* in1 = driver->GetInput2();
  Net* control = driver->GetControl();
  const unsigned long linefile = driver->Linefile();
  if (!in0 || !in1 || !control) co_return ConditionedData{net, nullptr};
  ConditionedData off = co_await Extract(in0, copy);
  ConditionedData on = co_await Extract(in1, copy);

  if (IsNever(off) && IsNever(on)) co_return Never();
  if (IsNever(off)) {
    Net* condition = on.condition ? _netlist->OptimizedAnd(control, on.condition, linefile) : control;
    co_return ConditionedData{on.data, condition};
  }
  if (IsNever(on)) {
    Net* condition = _netlist->OptimizedInv(control, linefile);
    if (off.condition) condition = _netlist->OptimizedAnd(condition, off.condition, linefile);
    co_return ConditionedData{off.data, condition};
  }
  ConditionedData found{net, MuxCondition(control, off.condition, on.condition, linefile)};
  if (off.data == in0 && on.data == in1) co_return found;
  if (copy) {
    found.data = _netlist->Mux(off.data, on.data, control, linefile);
    co_return found;
  }
  driver->Reconnect(driver->View()->GetInput1(), off.data);
  driver->Reconnect(driver->View()->GetInput2(), on.data);
  co_return found;
}

/// A selection with the select lines of another one.
Net* ConditionExtractor::BuildSelection(const Instance* like, const Array* data, unsigned long linefile) {
  ArrayOf<Net> select(like->Input1Size() + 1);
  for (unsigned bit = 0; bit < like->Input1Size(); bit++) select.Insert(like->GetInput1Bit(bit));
  Net* output = nullptr;
  if (like->Type() == OPER_SELECTOR)
    _netlist->Selector(&select, data, &output, linefile);
  else
    _netlist->Nto1Mux(&select, data, &output, linefile);
  return output;
}

Deep<ConditionedData> ConditionExtractor::ExtractFromSelection(Net* net, Instance* driver) {
  const unsigned size = driver->Input2Size();
  ArrayOf<Net> data(size + 1);
  ArrayOf<Net> conditions(size + 1);
  bool is_changed = false;
  bool is_conditional = false;
  for (unsigned bit = 0; bit < size; bit++) {
    Net* old = driver->GetInput2Bit(bit);
    ConditionedData found;
    if (old) found = co_await Extract(old, /*copy*/ 1);
    is_changed |= found.data != old;
    is_conditional |= found.condition != nullptr;
    data.Insert(found.data);
    conditions.Insert(found.condition);
  }
  if (!is_changed && !is_conditional) co_return ConditionedData{net, nullptr};
  const unsigned long linefile = driver->Linefile();
  ConditionedData result{net, nullptr};
  if (is_changed) result.data = BuildSelection(driver, &data, linefile);
  if (is_conditional) {
    for (unsigned bit = 0; bit < size; bit++) conditions.Set(bit, OrAlways(conditions.At(bit)));
    result.condition = BuildSelection(driver, &conditions, linefile);
  }
  co_return result;
}

/// The enable is called after its register. An instance that has the name already is renamed.
void ConditionExtractor::NameEnable(Net* enable, const Instance* reg) {
  const std::string name = std::string(reg->Name()) + "~en";
  if (Instance* clash = _netlist->GetInst(name.c_str())) {
    std::string free_name;
    for (unsigned number = 0; free_name.empty() || _netlist->GetInst(free_name.c_str()); number++)
      free_name = name + std::to_string(number);
    clash->SetName(free_name.c_str());
  }
  enable->Driver()->SetName(name.c_str());
}

/// A register that wakes up with Z wakes up disabled, and one with a value enabled; without an initial value nothing is
/// driven until the first clock.
void ConditionExtractor::InitializeEnable(Instance* enable, Instance* reg) {
  const char* initial = reg->GetAttValue(ATT_INITIAL_VALUE);
  const bool is_driving = initial && (*initial == '0' || *initial == '1');
  enable->AddAtt(ATT_INITIAL_VALUE, is_driving ? "1" : "0");
  if (initial && (*initial == 'Z' || *initial == 'z')) reg->RemoveAtt(ATT_INITIAL_VALUE);
}

Deep<ConditionedData> ConditionExtractor::ExtractFromRegister(Net* net, Instance* reg) {
  ConditionedData found{net, nullptr};
  Net* d = reg->GetInput();
  Net* z = reg->GetZ();
  const bool has_z = z && !z->IsGnd();
  const bool loads_z = CanBeZ(reg->GetAData());
  if (!d || (!has_z && !loads_z && !CanBeZ(d))) co_return found;
  Netlist* view = reg->View();
  const unsigned long linefile = reg->Linefile();

  // Where the signal keeps its value, register and enable keep theirs: the signal itself may be Z.
  ConditionedData load{d, nullptr};
  if (_hold) {
    Map conditions(HASH_POINTER, 0);
    Map results(HASH_POINTER, 0);
    load.data = d->ExtractCondition(_hold, &load.condition, /*tristate*/ 0, /*copy*/ 1, conditions, results);
  }
  ConditionedData data = co_await Extract(load.data, /*copy*/ 1);
  Net* enable_d = OrAlways(data.condition);
  Net* adata = reg->GetAData();
  ConditionedData loaded{adata, nullptr};
  if (loads_z) {
    loaded = co_await Extract(adata, /*copy*/ 1);
    reg->Reconnect(view->GetAData(), loaded.data);
  }

  // Any asynchronous value is driven, unless it is Z.
  Net* gnd = _constants.Gnd();
  Net* aload = loads_z ? reg->GetALoad() : nullptr;
  ArrayOf<Net> driving(4);
  for (Net* term : {reg->GetSet(), reg->GetReset(), loads_z ? nullptr : reg->GetALoad()})
    if (term && !term->IsGnd()) driving.Insert(term);
  Net* set = driving.Size() ? driving.At(0) : gnd;
  if (driving.Size() > 1) {
    set = nullptr;
    _netlist->ReduceOr(&driving, &set, linefile);
  }
  if (has_z) {
    Net* not_z = _netlist->OptimizedInv(z, linefile);
    set = _netlist->OptimizedAnd(set, not_z, linefile);
    if (aload) aload = _netlist->OptimizedAnd(aload, not_z, linefile);
    reg->Reconnect(view->GetZ(), gnd);
  }
  Net* enable = _netlist->Dffrs(enable_d, reg->GetClock(), set, has_z ? z : gnd, linefile, nullptr, gnd,
                                aload ? aload : gnd, aload ? OrAlways(loaded.condition) : _constants.X());
  NameEnable(enable, reg);
  InitializeEnable(enable->Driver(), reg);

  Net* new_d = data.data;
  if (load.condition) {
    new_d = _netlist->OptimizedMux(net, new_d, load.condition, linefile);
    Instance* enable_reg = enable->Driver();
    enable_reg->Reconnect(view->GetInput(), _netlist->OptimizedMux(enable, enable_d, load.condition, linefile));
  }
  reg->Reconnect(view->GetInput(), new_d);
  found.condition = enable;
  co_return found;
}

Deep<ConditionedData> ConditionExtractor::ExtractFromSimpleStorage(Net* net, Instance* storage) {
  ConditionedData found{net, nullptr};
  Net* d = storage->GetInput();
  if (!d || !CanBeZ(d)) co_return found;
  const unsigned long linefile = storage->Linefile();
  ConditionedData data = co_await Extract(d, /*copy*/ 1);
  storage->Reconnect(storage->View()->GetInput(), data.data);
  Net* condition = storage->GetAsyncCond();
  if (!condition) condition = _constants.Gnd();
  Net* enable_d = OrAlways(data.condition);
  found.condition = storage->Type() == PRIM_DFF
                        ? _netlist->Dff(enable_d, storage->GetClock(), _constants.Pwr(), condition, linefile)
                        : _netlist->Dlatch(enable_d, storage->GetClock(), _constants.Pwr(), condition, linefile);
  NameEnable(found.condition, storage);
  if (storage->Type() == PRIM_DFF) InitializeEnable(found.condition->Driver(), storage);
  co_return found;
}
} // namespace

Net* Net::ExtractCondition(Net* hold, Net** condition, unsigned tristate, unsigned copy, Map& conditions,
                           Map& results) {
  ConditionedData found = ConditionExtractor(_owner, hold, tristate, conditions, results).Extract(this, copy).Run();
  *condition = found.condition;
  return found.data;
}
