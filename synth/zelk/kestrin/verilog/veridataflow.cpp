#include "verilog/veridataflow.h"

#include <algorithm>

#include "database/net.h"
#include "database/netlist.h"
#include "util/services.h"
#include "verilog/verinets.h"
#include "verilog/veritreenode.h"

VeriValueTable::~VeriValueTable() {
  for (VeriValue* value : ValuesOf<VeriValue*>(&_values)) delete value;
}

void VeriValueTable::Set(VeriIdDef* id, OwnedValue value) {
  delete Find(id);
  if (value)
    _values.Insert(id, value.release(), 1 /* overwrite */);
  else
    _values.Remove(id);
}

OwnedValue VeriValueTable::Take(VeriIdDef* id) {
  OwnedValue value(Find(id));
  if (value) _values.Remove(id);
  return value;
}

void VeriValueTable::Remove(VeriIdDef* id) { Take(id); }

VeriDataFlow::VeriDataFlow(VeriDataFlow* parent, bool is_initial)
    : _parent(parent), _is_initial(parent ? parent->_is_initial : is_initial) {
  if (!parent) return;
  _clock = parent->_clock;
  _clock_event = parent->_clock_event;
  _process = parent->_process;
  _is_process = parent->_is_process;
}

VeriDataFlow::~VeriDataFlow() = default;

// Clocks.

void VeriDataFlow::SetClock(Net* clock) {
  _clock = clock;
  _clock_event = nullptr;
  const class Set* ids = nullptr;
  for (const VeriDataFlow* flow = this; flow && !ids; flow = flow->_parent) ids = flow->_edge_ids.get();
  for (VeriIdDef* id : KeysOf<VeriIdDef*>(ids)) {
    const VeriValue* value = id->GetValue();
    if (!value || value->Size() != 1) continue;
    Net* net = value->GetBit(0);
    if (net == clock) return AssertValue(id, VeriValue::Digits(1, VERI_DIGIT_1));
    if (clock->InvNet() == net) return AssertValue(id, VeriValue::Digits(1, VERI_DIGIT_0));
  }
  const char* name = clock->Name() ? clock->Name() : "";
  kestrin_debug("Couldn't locate user clock net based on clock net %s", name);
}

Net* VeriDataFlow::ClockEvent() {
  if (!_clock) return nullptr;
  if (!_clock_event && _parent && _parent->_clock == _clock) _clock_event = _parent->ClockEvent();
  if (!_clock_event)
    _clock_event = VeriNode::CurrentNetlist()->Clock(_clock, VeriNode::Pwr(), _process ? _process->Linefile() : 0);
  return _clock_event;
}

OwnedValue VeriDataFlow::Register(OwnedValue value, VeriIdDef* id, const VeriTreeNode* from) {
  const VeriValue* hold = id->GetValue();
  if (!value || !_clock || !hold) return value;
  // Registers are extracted from selections by the clock's event later, unless they are to be made at once.
  Net* event = kestrin_flag("zelk_dont_use_new_dff_algorithm") ? nullptr : ClockEvent();
  return VeriValue::Register(std::move(value), _clock, event, *hold, from);
}

// Sensitivity.

void VeriDataFlow::SensListCheck(VeriIdDef* id, const VeriTreeNode* from) const {
  if (_clock || id->IsParam() || id->IsGenVar() || id->Is(IDF_LOCAL_TO_PROCESS) || IsAssigned(id)) return;
  for (const VeriDataFlow* flow = this; flow; flow = flow->_parent)
    if (flow->_sens_list) {
      if (!flow->_sens_list->Contains(id)) from->Warning("%s should be on the sensitivity list", id->Name());
      return;
    }
}

// Values.

VeriValue* VeriDataFlow::IdValue(VeriIdDef* id) const {
  for (const VeriDataFlow* flow = this; flow; flow = flow->_parent)
    if (VeriValue* value = flow->_values.Find(id)) return value;
  return id->GetValue();
}

VeriValue* VeriDataFlow::BlockingValue(VeriIdDef* id, const VeriTreeNode* from) const {
  for (const VeriDataFlow* flow = this; flow; flow = flow->_parent) {
    if (VeriValue* value = flow->_values.Find(id)) {
      if (value->IsBlocking() && value->IsNonBlocking())
        from->Error("mixed blocking and non-blocking assignments on %s is not supported", id->Name());
      if (value->IsBlocking() || !value->IsNonBlocking()) return value;
    }
    if (VeriValue* value = flow->_asserts.Find(id)) return value;
  }
  return id->GetValue();
}

bool VeriDataFlow::IsAssigned(const VeriIdDef* id) const {
  for (const VeriDataFlow* flow = this; flow; flow = flow->_parent)
    if (flow->_values.Find(id)) return true;
  return false;
}

void VeriDataFlow::SetAssignValue(VeriIdDef* id, OwnedValue value) { _values.Set(id, std::move(value)); }

void VeriDataFlow::AssertValue(VeriIdDef* id, OwnedValue value) { _asserts.Set(id, std::move(value)); }

// Merges.

namespace {

/// How values of a variable were assigned in any of the branches.
struct Marks {
  bool blocking = false;
  bool non_blocking = false;
  void Add(const VeriValue* value) {
    if (!value) return;
    blocking |= value->IsBlocking();
    non_blocking |= value->IsNonBlocking();
  }
  OwnedValue Put(OwnedValue value) const {
    if (!value) return value;
    value->ResetBlockingInfo();
    if (blocking) value->SetBlocking();
    if (non_blocking) value->SetNonBlocking();
    return value;
  }
};

/// The only value there is, where all branches but one are not reached or know none; else null and all stay.
OwnedValue TakeSingle(std::vector<OwnedValue>& values) {
  OwnedValue* single = nullptr;
  for (OwnedValue& value : values) {
    if (!value) continue;
    if (single) return nullptr;
    single = &value;
  }
  return single ? std::move(*single) : nullptr;
}

Net* AreaCondition(const VeriGotoArea* area) {
  if (!area) return VeriNode::Gnd();
  return area->condition ? area->condition : VeriNode::Pwr();
}

OwnedValue CopyOf(const VeriValue* value) { return value ? value->Copy() : nullptr; }

} // namespace

OwnedValue VeriDataFlow::TakeBranchValue(VeriDataFlow& branch, VeriIdDef* id, bool registered,
                                         const VeriTreeNode* from) {
  if (branch._is_dead) return nullptr;
  OwnedValue value = CopyOf(branch.IdValue(id));
  return registered ? branch.Register(std::move(value), id, from) : std::move(value);
}

void VeriDataFlow::MergeBranches(const std::vector<VeriDataFlow*>& branches, const Merge& merge,
                                 const VeriTreeNode* from) {
  MergeGotos(branches, merge, from);
  bool all_dead = true;
  ::Set ids(HASH_POINTER);
  for (VeriDataFlow* branch : branches) {
    if (branch->_is_dead) continue;
    all_dead = false;
    for (auto [id, value] : branch->_values.All()) ids.Insert(id);
  }
  if (all_dead) {
    _is_dead = true;
    return;
  }
  for (VeriIdDef* id : KeysOf<VeriIdDef*>(&ids)) {
    Marks marks;
    marks.Add(_values.Find(id));
    std::vector<OwnedValue> values;
    for (VeriDataFlow* branch : branches) {
      if (!branch->_is_dead) marks.Add(branch->_values.Find(id));
      values.push_back(TakeBranchValue(*branch, id, branch->_clock && !_clock, from));
    }
    OwnedValue result = TakeSingle(values);
    if (!result) result = merge(std::move(values));
    if (result) SetAssignValue(id, marks.Put(std::move(result)));
  }
}

void VeriDataFlow::MergeGotos(const std::vector<VeriDataFlow*>& branches, const Merge& merge,
                              const VeriTreeNode* from) {
  std::vector<const void*> labels;
  for (const VeriDataFlow* branch : branches)
    for (const auto& area : branch->_goto_areas)
      if (std::find(labels.begin(), labels.end(), area->label) == labels.end()) labels.push_back(area->label);
  for (const void* label : labels) {
    auto merged = std::make_unique<VeriGotoArea>();
    merged->label = label;
    std::vector<OwnedValue> conditions;
    ::Set ids(HASH_POINTER);
    for (const VeriDataFlow* branch : branches) {
      VeriGotoArea* area = branch->FindArea(label);
      conditions.push_back(VeriValue::FromNet(AreaCondition(area)));
      if (!area) continue;
      for (auto [id, value] : area->values.All()) ids.Insert(id);
    }
    if (OwnedValue condition = merge(std::move(conditions)))
      merged->condition = veri_canonical_net(condition->GetBit(0));
    for (VeriIdDef* id : KeysOf<VeriIdDef*>(&ids)) {
      Marks marks;
      std::vector<OwnedValue> values;
      for (VeriDataFlow* branch : branches) {
        VeriGotoArea* area = branch->FindArea(label);
        if (!area) {
          values.emplace_back();
          continue;
        }
        marks.Add(area->values.Find(id));
        OwnedValue value = area->values.Take(id);
        if (!value) value = CopyOf(IdValue(id));
        if (branch->_clock && !_clock) value = branch->Register(std::move(value), id, from);
        values.push_back(std::move(value));
      }
      OwnedValue result = TakeSingle(values);
      if (!result) result = merge(std::move(values));
      if (result) merged->values.Set(id, marks.Put(std::move(result)));
    }
    AddGotoArea(std::move(merged), from);
  }
}

void VeriDataFlow::PopOutOfIf(Net* condition, VeriDataFlow& then_flow, VeriDataFlow& else_flow,
                              const VeriTreeNode* from) {
  auto select = [&](std::vector<OwnedValue> values) {
    OwnedValue single = TakeSingle(values);
    return single ? std::move(single) : VeriValue::Select(condition, std::move(values[0]), std::move(values[1]), from);
  };
  MergeBranches({&then_flow, &else_flow}, select, from);
}

void VeriDataFlow::PopOutOfCaseWithMuxes(const Array& selectors, const std::vector<VeriDataFlow*>& branches,
                                         const VeriTreeNode* from) {
  MergeBranches(
      branches, [&](std::vector<OwnedValue> values) { return VeriValue::Nto1Mux(selectors, std::move(values), from); },
      from);
}

void VeriDataFlow::PopOutOfCaseWithSelectors(const Array& onehot, const std::vector<VeriDataFlow*>& branches,
                                             const VeriTreeNode* from) {
  MergeBranches(
      branches, [&](std::vector<OwnedValue> values) { return VeriValue::Selector(onehot, std::move(values), from); },
      from);
}

// Jumps.

VeriGotoArea* VeriDataFlow::FindArea(const void* label) const {
  for (const auto& area : _goto_areas)
    if (area->label == label) return area.get();
  return nullptr;
}

void VeriDataFlow::DoGoto(const void* label, Net* condition, const VeriTreeNode* from) {
  veri_digit digit = VERI_DIGIT_X;
  if (condition && veri_is_digit(condition, &digit)) {
    if (digit != VERI_DIGIT_1) return;
    condition = nullptr;
  }
  auto area = std::make_unique<VeriGotoArea>();
  area->label = label;
  area->condition = condition;
  for (auto [id, value] : _values.All()) area->values.Set(id, value->Copy());
  AddGotoArea(std::move(area), from);
  if (!condition) _is_dead = true;
}

void VeriDataFlow::AddGotoArea(std::unique_ptr<VeriGotoArea> area, const VeriTreeNode* from) {
  // Who left before cannot leave again.
  Net* condition = AreaCondition(area.get());
  for (const auto& earlier : _goto_areas) condition = veri_and(condition, veri_not(AreaCondition(earlier.get())));
  VeriGotoArea* present = FindArea(area->label);
  if (!present) {
    area->condition = condition;
    for (auto [id, value] : _values.All())
      if (!area->values.Find(id)) area->values.Set(id, value->Copy());
    _goto_areas.push_back(std::move(area));
    return;
  }
  for (auto [id, value] : _values.All()) {
    if (!area->values.Find(id)) area->values.Set(id, value->Copy());
    if (!present->values.Find(id)) present->values.Set(id, CopyOf(_parent ? _parent->IdValue(id) : id->GetValue()));
  }
  for (auto [id, value] : area->values.All()) {
    const VeriValue* old = present->values.Find(id);
    if (!old) old = _parent ? _parent->IdValue(id) : id->GetValue();
    Marks marks;
    marks.Add(value);
    marks.Add(old);
    OwnedValue merged = old ? VeriValue::Select(condition, value->Copy(), old->Copy(), from) : value->Copy();
    present->values.Set(id, marks.Put(std::move(merged)));
  }
  present->condition = veri_or(AreaCondition(present), condition);
}

void VeriDataFlow::ResolveGotos(const void* label, const VeriTreeNode* from) {
  std::unique_ptr<VeriGotoArea> area;
  for (auto it = _goto_areas.begin(); it != _goto_areas.end(); ++it)
    if ((*it)->label == label) {
      area = std::move(*it);
      _goto_areas.erase(it);
      break;
    }
  if (!area) return;
  ::Set ids(HASH_POINTER);
  for (auto [id, value] : area->values.All()) ids.Insert(id);
  for (auto [id, value] : _values.All()) ids.Insert(id);
  for (VeriIdDef* id : KeysOf<VeriIdDef*>(&ids)) {
    OwnedValue left = area->values.Take(id);
    if (!left) left = CopyOf(_parent ? _parent->IdValue(id) : id->GetValue());
    Marks marks;
    marks.Add(left.get());
    marks.Add(_values.Find(id));
    OwnedValue stayed = _is_dead ? nullptr : CopyOf(IdValue(id));
    OwnedValue result = !left ? std::move(stayed)
                        : !stayed
                            ? std::move(left)
                            : VeriValue::Select(AreaCondition(area.get()), std::move(left), std::move(stayed), from);
    if (result) SetAssignValue(id, marks.Put(std::move(result)));
  }
  _is_dead = false;
}
