// Elaboration of module items: declarations, continuous assignments, processes, generate constructs.
#include <set>

#include "database/instance.h"
#include "database/net.h"
#include "database/views.h"
#include "util/services.h"
#include "verilog/veri_file.h"
#include "verilog/veridataflow.h"
#include "verilog/verielabstate.h"
#include "verilog/verimoduleitem.h"
#include "verilog/verinets.h"
#include "verilog/veriround.h"
#include "verilog/veristatement.h"
#include "verilog/veristatetable.h"

// Declarations.

void VeriDataDecl::Prepare() {
  for (VeriIdDecl* id : *_ids)
    if (id->GetId())
      if (auto* variable = dynamic_cast<VeriVariable*>(id->GetId()->Current())) ElabState()->AddEncodable(variable);
}

void VeriDataDecl::Initialize() {
  for (VeriIdDecl* id : *_ids)
    if (id->GetId()) id->GetId()->Current()->Initialize();
}

namespace {

/// What a net type drives by itself.
void DriveByType(VeriIdDef* id, unsigned net_type, const VeriTreeNode* from) {
  VeriValue* nets = id->GetValue();
  if (!nets) return;
  auto drive = [&](veri_digit digit) {
    nets->NetAssignFrom(VeriValue::Digits(nets->Size(), digit), VERI_RESOLVE_WIRE, true, from);
  };
  auto pull = [&](Net* (Netlist::*make)(unsigned long)) {
    Array bits;
    nets->GetNets(bits);
    for (Net* bit : ItemsOf<Net*>(&bits)) bit->Wire((VeriNode::CurrentNetlist()->*make)(from->Linefile()));
  };
  switch (net_type) {
  case VERI_SUPPLY0: return drive(VERI_DIGIT_0);
  case VERI_SUPPLY1: return drive(VERI_DIGIT_1);
  case VERI_TRI0: return pull(&Netlist::Pulldown);
  case VERI_TRI1: return pull(&Netlist::Pullup);
  default: return;
  }
}

} // namespace

namespace {

/// Only instances are wanted: what makes logic has nothing to do.
bool IsHierarchyOnly() { return VeriNode::ElabState()->Mode() == ELAB_HIERARCHY_ONLY; }

} // namespace

void VeriDataDecl::Elaborate() {
  VeriNodeScope node(this);
  for (VeriIdDecl* decl : *_ids) {
    auto* variable = decl->IdAs<VeriVariable>();
    if (!variable) continue;
    VeriIdDef* id = variable->Current();
    const VeriValue* value = id->GetValue();
    if (value) ApplyAttributesTo(*value);
    if (!variable->IsNet() || !value) continue;
    DriveByType(id, _net_type, this);
    if (!decl->Value() || IsHierarchyOnly()) continue;
    const VeriConstraint* type = id->GetConstraint();
    OwnedValue source = type ? decl->Value()->EvaluateFor(*type, nullptr) : nullptr;
    if (source) id->GetValue()->NetAssignFrom(std::move(source), VERI_RESOLVE_WIRE, true, decl);
  }
}

void VeriDataDecl::ApplyAttributesTo(const VeriValue& value) const {
  if (!Attributes()) return;
  Array nets;
  value.GetNets(nets);
  for (Net* net : ItemsOf<Net*>(&nets))
    if (!veri_is_digit(net)) ApplyAttributes(net);
}

void VeriParamDecl::Initialize() {
  for (VeriIdDecl* id : *_ids) id->GetId()->Current()->Initialize();
}

// Continuous assignments.

void VeriNetRegAssign::Elaborate() {
  VeriNodeScope node(this);
  OwnedConstraint type = _target->EvaluateConstraint(nullptr);
  if (!type) {
    if (!_target->AsName() && !_target->IsConcat()) _target->Error("illegal expression in target");
    return;
  }
  const VeriVariable* machine = VeriStateTable::EncodedVariable(_target);
  OwnedValue value = machine ? _value->EvaluateState(machine, nullptr) : _value->EvaluateFor(*type, nullptr);
  if (value) _target->Assign(std::move(value), nullptr, false);
}

void VeriContinuousAssign::Elaborate() {
  if (IsHierarchyOnly()) return;
  for (VeriNetRegAssign* assign : *_assigns) {
    if (veri_file::CheckForInterrupt(Linefile())) return;
    assign->Elaborate();
  }
}

// Processes.

void VeriAlwaysConstruct::Initialize() {
  if (_statement) _statement->Initialize();
}

void VeriAlwaysConstruct::Elaborate() {
  if (!_statement || IsHierarchyOnly() || veri_file::CheckForInterrupt(Linefile())) return;
  VeriNodeScope node(this);
  VeriDataFlow flow(nullptr);
  flow.SetProcessNode(this);
  ElabState()->SetProcess(this);
  _statement->Elaborate(&flow);
  ElabState()->SetProcess(nullptr);
  if (!veri_file::CheckForInterrupt(Linefile())) Connect(flow);
}

namespace {

/// All nets in the cones of the given ones.
class ConeNets {
public:
  void Add(const VeriValue& value) {
    Array nets;
    value.GetNets(nets);
    for (Net* net : ItemsOf<Net*>(&nets)) Enter(net);
    while (!_open.empty()) {
      Net* net = _open.back();
      _open.pop_back();
      for (PortRef* driver : DriversOf(net))
        if (_instances.Insert(driver->GetInst()))
          for (PortRef* input : ConnectionsOf(driver->GetInst()))
            if (input->IsInput()) Enter(input->GetNet());
    }
  }
  bool ContainsAny(const VeriValue& value) const {
    Array nets;
    value.GetNets(nets);
    for (Net* net : ItemsOf<Net*>(&nets))
      if (_nets.Contains(net)) return true;
    return false;
  }

private:
  void Enter(Net* net) {
    if (net && !veri_is_digit(net) && _nets.Insert(net)) _open.push_back(net);
  }
  Set _nets{HASH_POINTER};
  Set _instances{HASH_POINTER};
  std::vector<Net*> _open;
};

/// A variable of a block inside the process is often assigned on some paths only, because the others do not enter the
/// block. What it holds there is nobody's concern when no other value is made of it.
std::set<VeriIdDef*> PassingVariables(const VeriDataFlow& flow, const VeriTreeNode* process) {
  std::set<VeriIdDef*> passing;
  for (auto [id, value] : flow.Values().All()) {
    const auto* variable = dynamic_cast<const VeriVariable*>(id->Template());
    const VeriScope* scope = id->Template()->DeclaringScope();
    const bool is_local = variable && scope && scope->Kind() == SCOPE_BLOCK && variable->IsNamedOnlyIn(process);
    if (is_local && id->GetValue() && id->GetValue()->CreatesLoop(*value, true)) passing.insert(id);
  }
  if (passing.empty()) return passing;
  ConeNets used;
  for (auto [id, value] : flow.Values().All())
    if (!passing.count(id)) used.Add(*value);
  for (auto at = passing.begin(); at != passing.end();)
    at = used.ContainsAny(*(*at)->GetValue()) ? passing.erase(at) : std::next(at);
  return passing;
}

} // namespace

/// Binds the variables' nets to the values at the end of the process.
void VeriAlwaysConstruct::Connect(VeriDataFlow& flow) {
  bool is_level_sensitive = flow.EventControl().empty();
  bool has_latch = false;
  std::set<VeriIdDef*> passing;
  if (is_level_sensitive) passing = PassingVariables(flow, this);
  for (auto [id, final_value] : flow.Values().All()) {
    if (passing.count(id)) continue;
    const auto* variable = dynamic_cast<const VeriVariable*>(id->Template());
    VeriValue* nets = id->GetValue();
    if (!nets || !variable || variable->IsCounterOnly()) continue;
    OwnedValue value = final_value->Copy();
    if (flow.IsClocked()) {
      value = flow.Register(std::move(value), id, this);
    } else if (is_level_sensitive && nets->CreatesLoop(*value, true)) {
      has_latch = true;
      if (_token != VERI_ALWAYS_LATCH)
        Warning("variable %s may not be assigned a value in every possible path through this Always Construct",
                id->Name());
    }
    if (value) nets->NetAssignFrom(std::move(value), VERI_RESOLVE_WIRE, true, this);
  }
  if (_token == VERI_ALWAYS_LATCH && !has_latch && is_level_sensitive)
    Warning("always_latch construct does not infer latched logic");
  if (_token == VERI_ALWAYS_COMB && has_latch) Error("always_comb construct does not infer purely combinational logic");
  CurrentNetlist()->SweepPotentiallyFanoutFreeNets();
}

void VeriInitialConstruct::Initialize() {
  if (_statement) _statement->Initialize();
}

void VeriInitialConstruct::Elaborate() {
  bool is_off = kestrin_flag("zelk_dont_elaborate_initial_constructs");
  if (HasAttribute("enable_verilog_initial_construct")) is_off = !AttributeValue("enable_verilog_initial_construct", 0);
  if (is_off && !IsHierarchyOnly()) Warning("initial construct ignored");
  if (is_off || !_statement || IsHierarchyOnly() || veri_file::CheckForInterrupt(Linefile())) return;
  VeriNodeScope node(this);
  VeriDataFlow flow(nullptr, true);
  flow.SetProcessNode(this);
  _statement->Elaborate(&flow);
  for (auto [id, final_value] : flow.Values().All()) {
    VeriValue* nets = id->GetValue();
    const auto* variable = dynamic_cast<const VeriVariable*>(id->Template());
    if (!nets || (variable && variable->IsCounterOnly())) continue;
    OwnedValue value = VeriValue::ToConst(final_value->Copy());
    if (!value->IsConstant()) {
      Warning("initial value of %s is not constant", id->Name());
      continue;
    }
    nets->SetDefaultValue(*value, this);
  }
}

// Generate constructs.

VeriRoundScope::VeriRoundScope(const VeriGenerateRound& round)
    : _round(round), _path(round.generated ? round.label.c_str() : nullptr), _generated(round.generated) {
  if (round.generated) VeriNode::ElabState()->PushGenerated(round.generated);
  if (round.genvar) round.genvar->SetValue(VeriValue::FromInteger(round.value));
}

VeriRoundScope::~VeriRoundScope() {
  if (_round.genvar) _round.genvar->SetValue(nullptr);
  if (_round.generated) VeriNode::ElabState()->PopGenerated();
}

void veri_for_each_item(const VeriGenerateRound& round, const std::function<void(VeriModuleItem*)>& pass) {
  if (round.single) pass(round.single);
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(round.items))
    if (item && !veri_file::CheckForInterrupt(item->Linefile())) pass(item);
}

void VeriGenerateItem::AddRound(VeriGenerateBlock* body, VeriIdDef* genvar, int value) {
  VeriGenerateRound round;
  round.label = body->Label();
  if (genvar) round.label += "[" + std::to_string(value) + "]";
  round.items = body->Items();
  round.genvar = genvar;
  round.value = value;
  VeriScope* around = ElabState()->CurrentGenerated();
  if (body->GetScope()) round.generated = body->GetScope()->Generate(around, round.label);
  ElabState()->Rounds(this).push_back(round);
  VeriRoundScope scope(round);
  veri_for_each_item(round, [](VeriModuleItem* item) { item->GenerateObjects(); });
}

void VeriGenerateItem::AddPicked(VeriModuleItem* item) {
  if (!item) return;
  VeriGenerateRound round;
  round.single = item;
  ElabState()->Rounds(this).push_back(round);
  item->GenerateObjects();
}

void VeriGenerateItem::ForEachRound(const std::function<void(VeriModuleItem*)>& pass) {
  std::vector<VeriGenerateRound> rounds = ElabState()->Rounds(this);
  for (const VeriGenerateRound& round : rounds) {
    if (veri_file::CheckForInterrupt(Linefile())) return;
    VeriRoundScope scope(round);
    veri_for_each_item(round, pass);
  }
}

void VeriGenerateItem::Prepare() {
  ForEachRound([](VeriModuleItem* item) { item->Prepare(); });
}

void VeriGenerateItem::Initialize() {
  ForEachRound([](VeriModuleItem* item) { item->Initialize(); });
}

void VeriGenerateItem::Elaborate() {
  ForEachRound([](VeriModuleItem* item) { item->Elaborate(); });
}

void VeriGenerateConstruct::GenerateObjects() {
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_items))
    if (item) item->GenerateObjects();
}

void VeriGenerateConstruct::Prepare() {
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_items))
    if (item) item->Prepare();
}

void VeriGenerateConstruct::Initialize() {
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_items))
    if (item) item->Initialize();
}

void VeriGenerateConstruct::Elaborate() {
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_items))
    if (item) item->Elaborate();
}

void VeriGenerateBlock::GenerateObjects() { AddRound(this, nullptr, 0); }

VeriModuleItem* VeriGenerateConditional::PickBranch() const {
  Net* condition = _condition->EvaluateCondition(nullptr);
  if (!condition) return nullptr;
  veri_digit digit = VERI_DIGIT_X;
  if (!veri_is_digit(condition, &digit)) {
    _condition->Error("generate condition is not constant");
    return nullptr;
  }
  return digit == VERI_DIGIT_1 ? _then : _else;
}

void VeriGenerateConditional::GenerateObjects() {
  VeriNodeScope node(this);
  AddPicked(PickBranch());
}

VeriModuleItem* VeriGenerateCase::PickBranch() const {
  OwnedValue value = _expression->Evaluate(nullptr);
  if (!value) return nullptr;
  value = VeriValue::ToConst(std::move(value));
  if (!value->IsConstant()) {
    _expression->Error("generate case expression is not constant");
    return nullptr;
  }
  VeriModuleItem* otherwise = nullptr;
  for (VeriGenerateCaseItem* item : *_items) {
    if (!item->Conditions()) otherwise = item->Item();
    for (VeriExpression* condition : ItemsOf<VeriExpression*>(item->Conditions())) {
      OwnedValue pattern = condition->Evaluate(nullptr);
      if (!pattern) return nullptr;
      pattern = VeriValue::ToConst(std::move(pattern));
      if (!pattern->IsConstant()) {
        condition->Error("generate case item condition is not constant");
        return nullptr;
      }
      Net* match = VeriValue::Condition(VeriValue::Binary(VERI_OPER_CASE_EQ, value->Copy(), std::move(pattern), item));
      if (match == Pwr()) return item->Item();
    }
  }
  return otherwise;
}

void VeriGenerateCase::GenerateObjects() {
  VeriNodeScope node(this);
  AddPicked(PickBranch());
}

void VeriGenerateFor::GenerateObjects() {
  VeriNodeScope node(this);
  VeriName* genvar = _initial->Name();
  VeriIdDef* id = genvar->EvaluateId();
  if (!id) return;
  if (!id->IsGenVar()) return genvar->Error("%s is not a genvar", id->Name());
  auto* body = dynamic_cast<VeriGenerateBlock*>(_body);
  auto* step = dynamic_cast<VeriAssignmentOperator*>(_repetition);
  OwnedValue value = _initial->Value()->EvaluateConstant();
  const VeriConstraint* type = id->GetConstraint();
  if (!body || !step || !value || !type) return;
  int limit = ElabState()->ConstantLoopLimit();
  if (HasAttribute("norvel_loop_limit")) limit = AttributeValue("norvel_loop_limit", limit);
  std::set<int> seen;
  for (int count = 0; value && !veri_file::CheckForInterrupt(Linefile()); count++) {
    int number = value->Integer(this);
    // A value that comes again would declare the same objects again.
    if (!seen.insert(number).second) break;
    id->SetValue(VeriValue::FromInteger(number));
    Net* condition = _condition->EvaluateCondition(nullptr);
    veri_digit digit = VERI_DIGIT_X;
    if (!condition) break;
    if (!veri_is_digit(condition, &digit)) {
      _condition->Error("generate loop condition is not constant");
      break;
    }
    if (digit != VERI_DIGIT_1) break;
    if (count >= limit) {
      Error("loop count limit (%d) exceeded; condition is never false", limit);
      break;
    }
    AddRound(body, id, number);
    id->SetValue(VeriValue::FromInteger(number));
    value = step->EvaluateRight(*type, nullptr);
    if (value) value = VeriValue::ToConst(std::move(value));
    if (value && !value->IsConstant()) {
      _repetition->Error("generate loop condition is not constant");
      break;
    }
  }
  id->SetValue(nullptr);
}

// Defparams.

void VeriDefParam::GenerateObjects() {
  for (VeriDefParamAssign* assign : *_assigns) {
    ElabState()->Defparams().Insert(assign);
    if (!assign->IsBound()) ElabState()->UnboundDefparams().Insert(assign);
  }
}

const char* VeriDefParamAssign::MatchesInstance(const VeriIdDef* instance) const {
  const auto* path = dynamic_cast<const VeriSelectedName*>(_name);
  if (!path) return nullptr;
  VeriName* prefix = path->GetPrefix();
  VeriIdDef* id = prefix->GetId();
  if (const auto* selected = dynamic_cast<const VeriSelectedName*>(prefix); selected && !id) {
    VeriScope* scope = selected->GetPrefix()->EvaluateScope();
    id = scope ? scope->FindHere(selected->GetSuffix().c_str()) : nullptr;
  }
  return id && id->Current() == instance ? path->GetSuffix().c_str() : nullptr;
}

void VeriDefParamAssign::ReportUnresolved() const {
  const auto* path = dynamic_cast<const VeriSelectedName*>(_name);
  for (VeriName* prefix = path ? path->GetPrefix() : nullptr; prefix;) {
    const auto* above = dynamic_cast<const VeriSelectedName*>(prefix);
    prefix = above ? above->GetPrefix() : nullptr;
    if (!prefix || !prefix->GetId() || !prefix->GetId()->IsInst()) continue;
    Error("can't synthesize cross-hierarchy defparam assignment %s on %s", _name->Image().c_str(),
          prefix->GetId()->Name());
    return;
  }
  Error("cannot resolve defparam id %s to a specific parameter on an instance in the current module",
        _name->Image().c_str());
}

// Final blocks have no part in the hardware.
void VeriIgnoredItem::Elaborate() {
  if (_token == VERI_COVERGROUP) Error("no support for %s (SystemVerilog)", "coverage groups");
  if (_token == VERI_CLOCKING) Error("no support for %s (SystemVerilog)", "clocking blocks");
}
