// Symbolic execution of statements.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <set>
#include <string>

#include "containers/set.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "util/message.h"
#include "util/services.h"
#include "verilog/veri_file.h"
#include "verilog/veriassertion.h"
#include "verilog/veridataflow.h"
#include "verilog/verielabstate.h"
#include "verilog/verinets.h"
#include "verilog/veriram.h"
#include "verilog/veristatement.h"
#include "verilog/veristatetable.h"

void VeriStatement::Elaborate(VeriDataFlow* flow) {
  if (veri_file::CheckForInterrupt(Linefile()) || flow->IsDead()) return;
  VeriNodeScope node(this);
  Execute(flow);
}

namespace {

void ElaborateAll(const VeriNodes<VeriStatement>* statements, VeriDataFlow* flow) {
  for (VeriStatement* statement : ItemsOf<VeriStatement*>(statements))
    if (statement) statement->Elaborate(flow);
}

void InitializeAll(const VeriNodes<VeriStatement>* statements) {
  for (VeriStatement* statement : ItemsOf<VeriStatement*>(statements))
    if (statement) statement->Initialize();
}

void InitializeAll(const VeriModuleItems* items) {
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(items))
    if (item) item->Initialize();
}

void Initialize(VeriStatement* statement) {
  if (statement) statement->Initialize();
}

const char* NameOf(const VeriIdDecl* id) { return id ? id->GetId()->Name() : nullptr; }

} // namespace

// Assignments.

void VeriBlockingAssign::Execute(VeriDataFlow* flow) { _assignment->Execute(flow, false); }

void VeriNonBlockingAssign::Execute(VeriDataFlow* flow) {
  if (!flow->EventControl().empty() && !flow->IsClocked() && !flow->IsInitial())
    Warning("no register inferred for signal assignment in edge-controlled always block");
  _assignment->Execute(flow, true);
}

// Conditions.

namespace {

/// Collects the operands of a tree of OR gates, looking through buffers.
void CollectOrOperands(Net* net, std::vector<Net*>& operands) {
  std::vector<Net*> pending = {net};
  while (!pending.empty()) {
    Net* top = pending.back();
    pending.pop_back();
    operands.push_back(top);
    const Instance* driver = top->Driver();
    if (!driver || driver->Type() != PRIM_OR) continue;
    pending.push_back(driver->GetInput1());
    pending.push_back(driver->GetInput2());
  }
}

/// Takes the edges out of the list that the condition, or a part of its OR, is the level of; whether there was one.
bool TakeMatchingEdges(std::vector<Net*>& edges, Net* condition) {
  std::vector<Net*> operands;
  CollectOrOperands(condition, operands);
  auto matches = [&](Net* edge) {
    return std::any_of(operands.begin(), operands.end(),
                       [&](Net* operand) { return operand && Netlist::NetMatch(edge, operand); });
  };
  size_t before = edges.size();
  edges.erase(std::remove_if(edges.begin(), edges.end(), matches), edges.end());
  return edges.size() != before;
}

/// The one-bit variable that the condition asks for, and what it is where the condition holds.
VeriIdDef* TestedVariable(VeriExpression* condition, bool* value) {
  *value = true;
  const auto* unary = dynamic_cast<const VeriUnaryOperator*>(condition);
  if (unary && (unary->OperType() == VERI_BANG || unary->OperType() == VERI_TILDE)) {
    *value = false;
    condition = unary->GetOperand();
  }
  auto* name = dynamic_cast<VeriIdRef*>(condition);
  VeriIdDef* id = name ? name->EvaluateId() : nullptr;
  if (!id || !id->IsVar()) return nullptr;
  const VeriConstraint* type = id->GetConstraint();
  return type && type->IsPacked() && type->Size() == 1 ? id : nullptr;
}

} // namespace

void VeriConditionalStatement::RunBranch(VeriStatement* branch, VeriDataFlow* flow, bool value) {
  bool sense = true;
  if (VeriIdDef* id = TestedVariable(_condition, &sense))
    flow->AssertValue(id, VeriValue::Digits(1, value == sense ? VERI_DIGIT_1 : VERI_DIGIT_0));
  if (branch) branch->Elaborate(flow);
}

void VeriConditionalStatement::Execute(VeriDataFlow* flow) {
  Net* condition = _condition->EvaluateCondition(flow);
  if (!condition) return;
  veri_digit digit = VERI_DIGIT_X;
  if (veri_is_digit(condition, &digit)) {
    VeriStatement* taken = digit == VERI_DIGIT_1 ? _then : _else;
    if (taken) taken->Elaborate(flow);
    return;
  }
  std::vector<Net*> edges = flow->EventControl();
  bool is_split = !edges.empty() && !flow->IsClocked();
  if (is_split && !TakeMatchingEdges(edges, condition)) {
    _condition->Warning("if-condition does not match any sensitivity list edge");
    is_split = false;
  }
  VeriDataFlow then_flow(flow);
  VeriDataFlow else_flow(flow);
  if (is_split) {
    if (edges.size() == 1)
      else_flow.SetClock(edges.front());
    else
      else_flow.SetEventControl(std::move(edges));
  }
  RunBranch(_then, &then_flow, true);
  RunBranch(_else, &else_flow, false);
  flow->PopOutOfIf(condition, then_flow, else_flow, this);
}

void VeriConditionalStatement::Initialize() {
  ::Initialize(_then);
  ::Initialize(_else);
}

unsigned VeriConditionalStatement::MutuallyExclusive(const VeriTreeNode* a, const VeriTreeNode* b) const {
  return (a == _then && b == _else) || (a == _else && b == _then);
}

// Case.

/// What is known of one case statement while it is elaborated, and the choice of the logic for it.
class VeriCaseAnalysis {
public:
  VeriCaseAnalysis(VeriCaseStatement* statement, VeriDataFlow* flow) : _statement(statement), _flow(flow) {}
  void Run();

private:
  struct Item {
    VeriStatement* body = nullptr;
    std::vector<OwnedValue> patterns;
    std::vector<const VeriExpression*> conditions; // where the patterns stand
    Net* match = nullptr;
  };

  bool Evaluate();
  bool AddPattern(Item& item, const VeriExpression* condition, OwnedValue pattern);
  bool AddRange(Item& item, const VeriRange& range, const VeriTypeInfo& type);
  void ReadCode();
  void Narrow();
  bool FitsIn(const VeriValue& pattern, unsigned width, bool is_signed) const;
  bool RunConstant();
  void Analyze();
  template <class Visit> void ForEachState(const VeriValue& pattern, Visit visit) const;
  void Cover(const VeriValue& pattern, const VeriTreeNode* from);
  bool CoversAllStates() const {
    auto is_covered = [this](int64_t number) {
      return _covered.size() > static_cast<size_t>(number) && _covered[static_cast<size_t>(number)];
    };
    return _code && _states->AllStates(is_covered);
  }
  void DecideCompleteness();
  void DecideParallel();
  bool AllOnehot() const;
  bool WantsSelectors() const;
  void RunWithMuxes();
  void RunWithSelectors();
  bool MatchNets();
  bool Matches(const VeriValue& value, const VeriValue& pattern) const;
  Net* MatchNet(const VeriValue& pattern) const;
  bool XIsWild() const { return _statement->_token == VERI_CASEX || _statement->_is_inside; }
  bool ZIsWild() const { return _statement->_token != VERI_CASE || _statement->_is_inside; }
  bool HasWild(const VeriValue& pattern) const {
    return (XIsWild() && pattern.HasX()) || (ZIsWild() && pattern.HasZ());
  }
  double States() const { return _width < 1000 ? std::ldexp(1.0, static_cast<int>(_width)) : HUGE_VAL; }
  std::unique_ptr<VeriDataFlow> RunBranch(VeriStatement* body) {
    auto branch = std::make_unique<VeriDataFlow>(_flow);
    if (body) body->Elaborate(branch.get());
    return branch;
  }

  static constexpr unsigned max_counted_width = 20;

  VeriCaseStatement* _statement;
  VeriDataFlow* _flow;
  OwnedValue _value;
  const VeriStateTable* _states = nullptr; // of a variable that is encoded by them
  OwnedValue _code;
  std::vector<Item> _items; // without the default
  const VeriCaseItem* _default = nullptr;
  unsigned _width = 0;
  bool _all_constant = true;
  bool _is_counted = false;
  std::vector<bool> _covered;
  double _num_covered = 0;
  bool _overlaps = false;
  bool _is_unsure = false; // overlap with wild or non-constant bits
  bool _is_complete = false;
  bool _is_parallel = false;
};

bool VeriCaseAnalysis::Evaluate() {
  // All expressions take part in one size and sign (IEEE 1364-2005 9.5).
  VeriExpression* expression = _statement->_expression;
  VeriTypeInfo own = expression->TypeInfer(_flow);
  VeriTypeInfo type = own;
  for (VeriCaseItem* item : *_statement->_items)
    for (VeriExpression* condition : ItemsOf<VeriExpression*>(item->Conditions())) {
      VeriTypeInfo info = condition->TypeInfer(_flow);
      if (info.size > own.size && !info.is_unsized)
        condition->Warning("case item expression size (%d) should not exceed case expression size (%d)",
                           static_cast<int>(info.size), static_cast<int>(own.size));
      if (info.size < own.size && !info.is_unsized)
        condition->Warning("case item expression size (%d) is less than case expression size (%d)",
                           static_cast<int>(info.size), static_cast<int>(own.size));
      type.size = std::max(type.size, info.size);
      type.is_signed = type.is_signed && info.is_signed;
    }
  type.is_real = false;
  _value = expression->EvaluateIn(_flow, type);
  if (!_value) return false;
  _value = VeriValue::ToConst(std::move(_value));
  _width = _value->Size();
  for (VeriCaseItem* item : *_statement->_items) {
    if (!item->Conditions()) {
      if (_default) item->Error("default case should appear only once");
      _default = item;
      continue;
    }
    Item& added = _items.emplace_back();
    added.body = item->Statement();
    for (VeriExpression* condition : *item->Conditions()) {
      const VeriRange* range = condition->AsRange();
      const bool is_good =
          range ? AddRange(added, *range, type) : AddPattern(added, condition, condition->EvaluateIn(_flow, type));
      if (!is_good) return false;
    }
  }
  if (_all_constant && !_value->IsConstant()) {
    ReadCode();
    Narrow();
  }
  return true;
}

/// False after an error.
bool VeriCaseAnalysis::AddPattern(Item& item, const VeriExpression* condition, OwnedValue pattern) {
  if (!pattern) return false;
  pattern = VeriValue::ToConst(std::move(pattern));
  if (!pattern->IsConstant()) {
    _all_constant = false;
  } else if ((pattern->HasX() && !XIsWild()) || (pattern->HasZ() && !ZIsWild())) {
    condition->Warning("case condition never applies due to comparison with x or z");
    if (!_value->IsConstant()) return true;
  }
  item.patterns.push_back(std::move(pattern));
  item.conditions.push_back(condition);
  return true;
}

/// A range of numbers is one pattern for each of the aligned blocks that it consists of; a bound `$` is the first or
/// last number of the width.
bool VeriCaseAnalysis::AddRange(Item& item, const VeriRange& range, const VeriTypeInfo& type) {
  constexpr unsigned max_width = 63;
  uint64_t bounds[2] = {0, 0};
  const VeriExpression* expressions[2] = {range.GetLeft(), range.GetRight()};
  for (unsigned i = 0; i < 2; i++) {
    auto* bound = const_cast<VeriExpression*>(expressions[i]);
    if (bound->IsOpen() && !type.is_signed) {
      bounds[i] = i ? (uint64_t{1} << std::min(type.size, max_width)) - 1 : 0;
      continue;
    }
    OwnedValue value = bound->EvaluateIn(_flow, type);
    if (!value) return false;
    value = VeriValue::ToConst(std::move(value));
    const bool is_number = value->IsConstant() && !value->HasX() && !value->HasZ();
    const bool is_negative = type.is_signed && value->GetBit(value->Size() - 1) == VeriNode::Pwr();
    if (!is_number || is_negative || type.size > max_width) {
      bound->Error("no support for %s (SystemVerilog)", "a range of a case statement that is not of plain numbers");
      return false;
    }
    for (unsigned bit = 0; bit < value->Size(); bit++)
      if (value->GetBit(bit) == VeriNode::Pwr()) bounds[i] |= uint64_t{1} << bit;
  }
  for (uint64_t first = bounds[0]; first <= bounds[1];) {
    unsigned wild = 0;
    auto block = [&first](unsigned bits) { return first | ((uint64_t{1} << bits) - 1); };
    while (wild < type.size && !(first & (uint64_t{1} << wild)) && block(wild + 1) <= bounds[1]) wild++;
    std::string text = std::to_string(type.size) + "'b";
    for (unsigned bit = type.size; bit--;) text += bit < wild ? 'z' : (first >> bit & 1) ? '1' : '0';
    if (!AddPattern(item, &range, VeriValue::FromLiteral(text))) return false;
    first = block(wild) + 1;
  }
  return true;
}

/// A variable that is encoded by its states tells by a single bit whether an item applies.
void VeriCaseAnalysis::ReadCode() {
  const VeriVariable* machine = VeriStateTable::EncodedVariable(_statement->_expression);
  if (!machine) return;
  _states = machine->FsmStateTable();
  _code = static_cast<VeriIdRef*>(_statement->_expression)->EvaluateCode(_flow);
}

/// Whether the bits of a pattern above a width are those that the extension of a value of this width has.
bool VeriCaseAnalysis::FitsIn(const VeriValue& pattern, unsigned width, bool is_signed) const {
  veri_digit extension = VERI_DIGIT_0;
  if (is_signed) veri_is_digit(pattern.GetBit(width - 1), &extension);
  for (unsigned bit = width; bit < pattern.Size(); bit++) {
    veri_digit digit = VERI_DIGIT_X;
    veri_is_digit(pattern.GetBit(bit), &digit);
    const bool is_wild = (digit == VERI_DIGIT_X && XIsWild()) || (digit == VERI_DIGIT_Z && ZIsWild());
    if (digit != extension && (is_signed || !is_wild)) return false;
  }
  return true;
}

/// Items are often wider than the expression, as plain numbers are. Above its own width the expression is 0 or repeats
/// its sign: an item that differs there never applies, and the others say the same in that width.
void VeriCaseAnalysis::Narrow() {
  OwnedValue pruned = VeriValue::Prune(_value->Copy());
  const unsigned width = pruned->Size();
  if (width >= _width) return;
  const bool is_signed = _value->IsSigned();
  for (const Item& item : _items)
    for (const OwnedValue& pattern : item.patterns)
      if (is_signed && HasWild(*pattern)) return;
  _value = std::move(pruned);
  _width = width;
  for (Item& item : _items) {
    std::vector<OwnedValue> fitting;
    for (size_t i = 0; i < item.patterns.size(); i++) {
      if (FitsIn(*item.patterns[i], width, is_signed))
        fitting.push_back(VeriValue::Adjust(std::move(item.patterns[i]), width));
      else
        item.conditions[i]->Warning("case condition never applies");
    }
    item.patterns = std::move(fitting);
  }
}

bool VeriCaseAnalysis::Matches(const VeriValue& value, const VeriValue& pattern) const {
  for (unsigned bit = 0; bit < _width; bit++) {
    veri_digit a = VERI_DIGIT_X;
    veri_digit b = VERI_DIGIT_X;
    veri_is_digit(value.GetBit(bit), &a);
    veri_is_digit(pattern.GetBit(bit), &b);
    bool is_wild = (XIsWild() && (a == VERI_DIGIT_X || b == VERI_DIGIT_X)) ||
                   (ZIsWild() && (a == VERI_DIGIT_Z || b == VERI_DIGIT_Z));
    if (!is_wild && a != b) return false;
  }
  return true;
}

/// A constant expression, as far as the items are constant up to the match: only the matching body runs.
bool VeriCaseAnalysis::RunConstant() {
  if (!_value->IsConstant()) return false;
  VeriStatement* body = _default ? _default->Statement() : nullptr;
  for (const Item& item : _items) {
    bool is_match = false;
    for (const OwnedValue& pattern : item.patterns) {
      if (!pattern->IsConstant()) return false;
      is_match |= Matches(*_value, *pattern);
    }
    if (!is_match) continue;
    body = item.body;
    break;
  }
  if (body) body->Elaborate(_flow);
  return true;
}

/// Calls `visit` for every state that the pattern stands for; there are 2^20 at most. A digit that matches nothing
/// leaves no state.
template <class Visit> void VeriCaseAnalysis::ForEachState(const VeriValue& pattern, Visit visit) const {
  unsigned base = 0;
  std::vector<unsigned> wild;
  for (unsigned bit = 0; bit < _width; bit++) {
    veri_digit digit = VERI_DIGIT_X;
    veri_is_digit(pattern.GetBit(bit), &digit);
    if (digit == VERI_DIGIT_1) base |= 1U << bit;
    if (digit <= VERI_DIGIT_1) continue;
    if (!(digit == VERI_DIGIT_X ? XIsWild() : ZIsWild())) return;
    wild.push_back(bit);
  }
  for (unsigned choice = 0; choice < 1U << wild.size(); choice++) {
    unsigned state = base;
    for (unsigned i = 0; i < wild.size(); i++)
      if (choice >> i & 1) state |= 1U << wild[i];
    visit(state);
  }
}

void VeriCaseAnalysis::Cover(const VeriValue& pattern, const VeriTreeNode* from) {
  bool overlaps = false;
  ForEachState(pattern, [&](unsigned state) {
    if (_covered[state])
      overlaps = true;
    else
      _num_covered++;
    _covered[state] = true;
  });
  if (!overlaps) return;
  _overlaps = true;
  if (HasWild(pattern))
    from->Warning("casex or casez item overlaps with a previous casex or casez item");
  else
    from->Warning("case item overlaps with a previous case item");
}

void VeriCaseAnalysis::Analyze() {
  _is_counted = _all_constant && _width <= max_counted_width;
  if (_is_counted) {
    _covered.assign(size_t{1} << _width, false);
    unsigned position = 0;
    for (VeriCaseItem* item : *_statement->_items) {
      if (!item->Conditions()) continue;
      for (const OwnedValue& pattern : _items[position].patterns) Cover(*pattern, item);
      position++;
    }
    if (kestrin_flag("zelk_debug_case_coverage"))
      kestrin_debug("case statement at line %u covers %u/%u states", LineFile::GetLineNo(_statement->Linefile()),
                    static_cast<unsigned>(_num_covered), static_cast<unsigned>(States()));
    return;
  }
  if (_width > 31 && !_default)
    _statement->Warning("can't check case statement for completeness because the case expression has too many possible "
                        "states");
  if (!_all_constant) {
    _is_unsure = true;
    return;
  }
  // Too wide to count: values without wild bits are compared as such.
  std::vector<std::string> seen;
  for (const Item& item : _items)
    for (const OwnedValue& pattern : item.patterns) {
      if (HasWild(*pattern)) _is_unsure = true;
      seen.push_back(pattern->BinaryString());
    }
  std::sort(seen.begin(), seen.end());
  _overlaps = std::adjacent_find(seen.begin(), seen.end()) != seen.end();
}

void VeriCaseAnalysis::DecideCompleteness() {
  bool has_full_case = _statement->HasAttribute("full_case") || _statement->HasAttribute("synthesis_full_case");
  if (_default) {
    _is_complete = true;
    if (has_full_case) _statement->Warning("ignoring full_case attribute on case statement with explicit default");
  } else if (_is_counted && (_num_covered >= States() || CoversAllStates())) {
    _is_complete = true;
  } else if (_statement->_qualifier) {
    _is_complete = true;
    _statement->Warning("unique or priority keyword makes case statement complete");
  } else if (has_full_case) {
    _is_complete = true;
    _statement->Warning("full_case directive is effective : might cause synthesis - simulation differences");
  } else if (_is_unsure && !_value->IsConstant()) {
    _statement->Warning("case statement has overlapping case item expressions with non-constant or don't care bits - "
                        "unable to check case statement for completeness");
  } else if (!_flow->IsClocked()) {
    _statement->Warning("case statement is incomplete");
  }
  if (!_is_complete && _all_constant && _items.size() > 1 && AllOnehot())
    _statement->Info("consider adding a full_case attribute to enable additional optimizations to this case statement "
                     "with onehot case item expressions");
}

void VeriCaseAnalysis::DecideParallel() {
  bool may_overlap = _overlaps || _is_unsure;
  _is_parallel = !may_overlap;
  if (!may_overlap) return;
  if (_statement->_qualifier == VERI_UNIQUE) {
    _is_parallel = true;
    if (_overlaps) _statement->Warning("unique case statement has overlapping case items");
  } else if (_statement->HasAttribute("parallel_case") && _statement->_qualifier != VERI_PRIORITY) {
    _is_parallel = true;
    _statement->Warning("parallel_case directive is effective : might cause synthesis - simulation differences");
  }
}

bool VeriCaseAnalysis::AllOnehot() const {
  for (const Item& item : _items)
    for (const OwnedValue& pattern : item.patterns)
      if (!pattern->IsOnehotConstant()) return false;
  return _width > 1;
}

bool VeriCaseAnalysis::WantsSelectors() const {
  if (!_is_counted || _value->IsConstant()) return true;
  double states = States();
  double coverage = 100.0 * static_cast<double>(_items.size()) / states;
  bool is_sparse = _width > 31 || (states >= 514 && coverage < 60);
  if (_width >= 13 && is_sparse) return true;
  if (_items.size() < 3 && states > 2) return true;
  if (_overlaps) return true;
  return (_is_complete && AllOnehot()) || _code;
}

void VeriCaseAnalysis::RunWithMuxes() {
  std::vector<std::unique_ptr<VeriDataFlow>> branches;
  std::vector<VeriDataFlow*> by_state(size_t{1} << _width, nullptr);
  for (const Item& item : _items) {
    branches.push_back(RunBranch(item.body));
    for (const OwnedValue& pattern : item.patterns)
      ForEachState(*pattern, [&](unsigned state) {
        if (!by_state[state]) by_state[state] = branches.back().get();
      });
  }
  std::unique_ptr<VeriDataFlow> rest = RunBranch(_default ? _default->Statement() : nullptr);
  // States that cannot occur do not come out of the statement.
  if (!_default && _is_complete) rest->SetDead(true);
  for (VeriDataFlow*& branch : by_state)
    if (!branch) branch = rest.get();
  Array selectors;
  _value->GetNets(selectors);
  _flow->PopOutOfCaseWithMuxes(selectors, by_state, _statement);
}

Net* VeriCaseAnalysis::MatchNet(const VeriValue& pattern) const {
  if (_code) return veri_canonical_net(_states->Equal(*_code, pattern));
  Net* match = VeriValue::CaseMatch(*_value, pattern, XIsWild(), ZIsWild(), _statement);
  return match ? veri_canonical_net(match) : nullptr;
}

/// One net per item that tells whether it is the first to match; false after an error.
bool VeriCaseAnalysis::MatchNets() {
  Net* before = VeriNode::Gnd();
  for (Item& item : _items) {
    Net* any = VeriNode::Gnd();
    for (const OwnedValue& pattern : item.patterns) {
      Net* match = MatchNet(*pattern);
      if (!match) return false;
      any = veri_or(any, match);
    }
    if (any == VeriNode::Gnd() && !item.patterns.empty()) _statement->Warning("case condition never applies");
    item.match = _is_parallel ? any : veri_and(any, veri_not(before));
    before = veri_or(before, any);
  }
  return true;
}

void VeriCaseAnalysis::RunWithSelectors() {
  if (!MatchNets()) return;
  std::vector<std::unique_ptr<VeriDataFlow>> owned;
  std::vector<VeriDataFlow*> branches;
  Array onehot;
  Net* any = VeriNode::Gnd();
  for (const Item& item : _items) {
    if (item.match == VeriNode::Gnd()) continue;
    any = veri_or(any, item.match);
    onehot.Insert(item.match);
    owned.push_back(RunBranch(item.body));
    branches.push_back(owned.back().get());
  }
  if (any != VeriNode::Pwr() && (_default || !_is_complete || branches.empty())) {
    onehot.Insert(veri_not(any));
    owned.push_back(RunBranch(_default ? _default->Statement() : nullptr));
    branches.push_back(owned.back().get());
  }
  if (branches.size() == 2)
    _flow->PopOutOfIf(FromWord<Net*>(onehot.At(0)), *branches[0], *branches[1], _statement);
  else
    _flow->PopOutOfCaseWithSelectors(onehot, branches, _statement);
}

void VeriCaseAnalysis::Run() {
  if (!Evaluate() || RunConstant()) return;
  Analyze();
  DecideCompleteness();
  DecideParallel();
  if (WantsSelectors())
    RunWithSelectors();
  else
    RunWithMuxes();
}

void VeriCaseStatement::Execute(VeriDataFlow* flow) { VeriCaseAnalysis(this, flow).Run(); }

void VeriCaseStatement::Initialize() {
  for (VeriCaseItem* item : *_items) ::Initialize(item->Statement());
}

unsigned VeriCaseStatement::MutuallyExclusive(const VeriTreeNode* a, const VeriTreeNode* b) const {
  return a != b && dynamic_cast<const VeriCaseItem*>(a) && dynamic_cast<const VeriCaseItem*>(b);
}

// Loops.

VeriLoop::Limits VeriLoop::EvaluateLoopLimits() const {
  Limits limits{ElabState()->ConstantLoopLimit(), ElabState()->NonConstantLoopLimit()};
  if (HasAttribute("norvel_loop_limit")) {
    int limit = std::max(0, AttributeValue("norvel_loop_limit", limits.constant));
    limits.constant = limits.non_constant = limit;
  }
  return limits;
}

void VeriLoop::Run(VeriDataFlow* flow, VeriExpression* condition, bool test_first,
                   const std::function<void()>& repetition) {
  Limits limits = EvaluateLoopLimits();
  for (int count = 0;; count++) {
    if (veri_file::CheckForInterrupt(Linefile()) || flow->IsDead()) break;
    if (condition && (test_first || count > 0)) {
      Net* net = condition->EvaluateCondition(flow);
      veri_digit digit = VERI_DIGIT_X;
      if (!net) break;
      if (veri_is_digit(net, &digit)) {
        if (digit != VERI_DIGIT_1) break;
        if (count >= limits.constant) {
          Error("loop count limit (%d) exceeded; condition is never false", limits.constant);
          break;
        }
      } else {
        if (count >= limits.non_constant) {
          Error("non-constant loop must terminate within %d iterations", limits.non_constant);
          break;
        }
        flow->DoGoto(BreakLabel(), veri_not(net), this);
      }
    } else if (!condition && count >= limits.non_constant) {
      Error("non-constant loop must terminate within %d iterations", limits.non_constant);
      break;
    }
    if (_body) _body->Elaborate(flow);
    flow->ResolveGotos(ContinueLabel(), this);
    if (repetition && !flow->IsDead()) repetition();
  }
  flow->ResolveGotos(BreakLabel(), this);
}

void VeriLoop::Initialize() { ::Initialize(_body); }

void VeriFor::Initialize() { VeriLoop::Initialize(); }

void VeriFor::Execute(VeriDataFlow* flow) {
  if (_declaration)
    for (VeriIdDecl* id : *_declaration->Ids()) {
      VeriIdDef* variable = id->GetId()->Current();
      const VeriConstraint* type = variable->GetConstraint();
      OwnedValue value = type && id->Value() ? id->Value()->EvaluateFor(*type, flow) : nullptr;
      if (!value && type) value = type->CreateXValue(this);
      if (!value) return;
      value->SetBlocking();
      flow->SetAssignValue(variable, std::move(value));
    }
  ElaborateAll(_initials, flow);
  if (_condition && _condition->IsConst()) _condition->Warning("conditional expression evaluates to constant value.");
  Run(flow, _condition, true, [&] { ElaborateAll(_repetitions, flow); });
  // The loop's own variables end with it.
  if (_declaration)
    for (VeriIdDecl* id : *_declaration->Ids()) flow->Values().Remove(id->GetId()->Current());
}

void VeriWhile::Execute(VeriDataFlow* flow) { Run(flow, _condition, !_is_do_while, nullptr); }

void VeriForever::Execute(VeriDataFlow* flow) { Run(flow, nullptr, true, nullptr); }

void VeriRepeat::Execute(VeriDataFlow* flow) {
  OwnedValue value = _count->Evaluate(flow);
  if (!value) return;
  value = VeriValue::ToConst(std::move(value));
  int64_t count = 0;
  if (!value->IsConstant()) {
    _count->Error("no support for %s", "using a non-constant repeat expression");
    count = 1;
  } else if (!value->HasXZ() && !value->ToInt64(&count)) {
    count = INT_MAX;
  }
  Limits limits = EvaluateLoopLimits();
  for (int64_t round = 0; round < count; round++) {
    if (veri_file::CheckForInterrupt(Linefile()) || flow->IsDead()) break;
    if (round == limits.constant) {
      Error("loop count limit (%d) exceeded; condition is never false", limits.constant);
      break;
    }
    if (_body) _body->Elaborate(flow);
    flow->ResolveGotos(ContinueLabel(), this);
  }
  flow->ResolveGotos(BreakLabel(), this);
}

// Blocks.

void VeriSeqBlock::Initialize() {
  VeriNamedPathScope path(NameOf(_id));
  InitializeAll(_declarations);
  InitializeAll(_statements);
}

void VeriSeqBlock::Execute(VeriDataFlow* flow) {
  VeriNamedPathScope path(NameOf(_id));
  ElaborateAll(_statements, flow);
  if (_id) flow->ResolveGotos(_id->GetId(), this);
}

void VeriParBlock::Execute(VeriDataFlow*) { Warning("parallel (fork-join) block ignored"); }

// Events and delays.

void VeriEventControlStatement::Initialize() { ::Initialize(_statement); }

namespace {

/// Naming a memory here makes no port of it.
OwnedValue EvaluateEvent(VeriExpression* event, VeriDataFlow* flow) {
  VeriRamDisabled disabled;
  return event->Evaluate(flow);
}

/// The text of an event without its edge.
std::string OperandImage(const VeriExpression& expression) {
  const auto* event = dynamic_cast<const VeriEventExpression*>(&expression);
  return event ? event->Operand()->Image() : expression.Image();
}

} // namespace

void VeriEventControlStatement::Execute(VeriDataFlow* flow) {
  if (!flow->Process()) return Error("event control outside always construct is not supported for synthesis");
  if (flow->IsProcess() && !flow->IsInitial())
    return Error("multiple event control statements not supported for synthesis");
  auto ids = std::make_unique<Set>();
  std::vector<Net*> edges;
  std::vector<unsigned> senses;
  std::set<std::string> levels;
  bool has_level = false;
  for (VeriExpression* expression : *_events) {
    expression->AddToSensList(*ids);
    OwnedValue value = EvaluateEvent(expression, flow);
    if (!value) return;
    const auto* event = dynamic_cast<const VeriEventExpression*>(expression);
    if (event && event->Condition())
      return event->Error("no support for %s (SystemVerilog)", "a conditional event beside others");
    if (!expression->IsEdge()) {
      if (!levels.insert(OperandImage(*expression)).second)
        expression->Warning("sensitivity list already contains %s", OperandImage(*expression).c_str());
      has_level = true;
      continue;
    }
    Net* net = value->GetBit(0);
    if (veri_is_digit(net)) continue;
    bool is_repeated = false;
    for (size_t i = 0; i < edges.size(); i++) {
      if (edges[i] == net) {
        expression->Warning("sensitivity list already contains %s", OperandImage(*expression).c_str());
        is_repeated = true;
      } else if (Netlist::NetMatch(net->InvNet() ? net->InvNet() : net,
                                   edges[i]->InvNet() ? edges[i]->InvNet() : edges[i]) &&
                 senses[i] != expression->IsEdge()) {
        expression->Error("event control statement tests for multiple distinct edges on %s",
                          OperandImage(*expression).c_str());
        return;
      }
    }
    if (is_repeated) continue;
    edges.push_back(net);
    senses.push_back(expression->IsEdge());
  }
  if (has_level && !edges.empty()) {
    Warning("no support for synthesis of mixed edge and level triggers. Assume level triggers only.");
    edges.clear();
  }
  bool is_star = !_events->Size();
  if (edges.empty()) {
    if (!is_star) flow->SetSensList(std::move(ids));
  } else {
    flow->SetEdgeIds(std::move(ids));
  }
  if (edges.size() == 1) flow->SetClock(edges.front());
  flow->SetEventControl(std::move(edges));
  flow->SetProcess();
  if (_statement) _statement->Elaborate(flow);
}

void VeriDelayControlStatement::Initialize() { ::Initialize(_statement); }

void VeriDelayControlStatement::Execute(VeriDataFlow* flow) {
  if (_statement) _statement->Elaborate(flow);
}

// Subprograms.

namespace {

/// Whether the identifier is declared in the scope or in one below it.
bool IsInside(const VeriIdDef* id, const VeriScope* scope) {
  for (const VeriScope* at = id->Template()->DeclaringScope(); at; at = at->Upper())
    if (at == scope) return true;
  return false;
}

} // namespace

/// The expression of each formal, from the arguments by order and by name and from the default values of the
/// declaration (IEEE 1800-2005 12.4.3 and 12.4.4). Empty with a message when the call does not fit.
std::vector<VeriExpression*> VeriSubprogram::MatchArguments(const VeriExpressions* args,
                                                            const VeriTreeNode* from) const {
  std::vector<VeriExpression*> actuals(_formals.size(), nullptr);
  unsigned count = args ? args->Size() : 0;
  bool fits = true;
  for (unsigned pos = 0; pos < count; pos++) {
    VeriExpression* arg = args->At(pos);
    const auto* named = dynamic_cast<const VeriPortConnect*>(arg);
    size_t place = pos;
    if (named && named->NamedFormal()) {
      auto has_name = [&](const VeriVariable* formal) {
        return std::strcmp(formal->Name(), named->NamedFormal()) == 0;
      };
      place = static_cast<size_t>(std::find_if(_formals.begin(), _formals.end(), has_name) - _formals.begin());
      arg = named->Connection();
    }
    if (place < actuals.size())
      actuals[place] = arg;
    else
      fits = false;
  }
  for (size_t place = 0; place < actuals.size(); place++) {
    if (!actuals[place]) actuals[place] = _formals[place]->InitialValue();
    fits = fits && actuals[place];
  }
  if (fits) return actuals;
  from->Error("call of %s has %d arguments; expected %d", GetId()->Name(), static_cast<int>(count),
              static_cast<int>(_formals.size()));
  return {};
}

bool VeriSubprogram::BindInputs(const std::vector<VeriExpression*>& actuals, VeriDataFlow* caller, VeriDataFlow* callee,
                                const VeriTreeNode* from) {
  for (size_t pos = 0; pos < actuals.size(); pos++) {
    VeriIdDef* formal = _formals[pos]->Current();
    const VeriConstraint* type = formal->GetConstraint();
    if (!type) return false;
    OwnedValue value =
        _formals[pos]->Dir() == VERI_OUTPUT ? type->CreateXValue(from) : actuals[pos]->EvaluateFor(*type, caller);
    if (!value) return false;
    value->ResetBlockingInfo();
    value->SetBlocking();
    callee->SetAssignValue(formal, std::move(value));
  }
  return true;
}

OwnedValue VeriSubprogram::Call(const VeriExpressions* args, VeriDataFlow* flow, const VeriTreeNode* from) {
  VeriElaborationState* state = ElabState();
  if (veri_file::CheckForInterrupt(from->Linefile())) return nullptr;
  if (state->FuncDepth() >= max_call_depth) {
    from->Error("failed to elaborate task or function %s", GetId()->Name());
    return nullptr;
  }
  VeriDataFlow callee(flow, flow && flow->IsInitial());
  callee.SetSubprogramRoot();
  // Each call has locals of its own, which begin unknown.
  bool is_complete = true;
  _scope->Apply([&](VeriIdDef* id) {
    if (!id->IsVar() && !id->IsFunction()) return;
    VeriIdDef* local = id->Current();
    const VeriConstraint* type = local->GetConstraint();
    OwnedValue value = type ? type->CreateInitialValue(from) : nullptr;
    if (!value) is_complete = false;
    callee.SetAssignValue(local, std::move(value));
  });
  VeriIdDef* result_id = GetId()->Current();
  if (GetId()->IsFunction()) {
    const VeriConstraint* type = result_id->GetConstraint();
    OwnedValue value = type ? type->CreateInitialValue(from) : nullptr;
    if (!value) return nullptr;
    callee.SetAssignValue(result_id, std::move(value));
  }
  const std::vector<VeriExpression*> actuals = MatchArguments(args, from);
  if (!is_complete || actuals.size() != _formals.size() || !BindInputs(actuals, flow, &callee, from)) return nullptr;
  state->PushFuncStack(GetId());
  ElaborateAll(_statements, &callee);
  state->PopFuncStack();
  callee.ResolveGotos(GetId(), from);
  // What the body assigned outside of itself, then the outputs.
  for (auto [id, value] : callee.Values().All()) {
    if (id == result_id || IsInside(id, _scope.get())) continue;
    if (flow)
      flow->SetAssignValue(id, value->Copy());
    else
      from->Error("task call outside of sequential construct is not allowed");
  }
  for (unsigned pos = 0; pos < _formals.size(); pos++) {
    if (_formals[pos]->Dir() == VERI_INPUT) continue;
    VeriExpression* actual = actuals[pos];
    OwnedConstraint type = actual->EvaluateConstraint(flow);
    const VeriValue* value = callee.IdValue(_formals[pos]->Current());
    OwnedValue fitted =
        type && value ? VeriValue::CheckAgainst(value->Copy(), *type, actual, false, value->Size()) : nullptr;
    if (fitted) actual->Assign(std::move(fitted), flow, false);
  }
  if (!GetId()->IsFunction()) return nullptr;
  const VeriValue* result = callee.IdValue(result_id);
  if (!result) return nullptr;
  OwnedValue copy = result->Copy();
  copy->ResetBlockingInfo();
  return copy;
}

void VeriTaskEnable::Execute(VeriDataFlow* flow) {
  VeriIdDef* id = _name->EvaluateId();
  auto* callee = id ? dynamic_cast<VeriSubprogram*>(id->GetModuleItem()) : nullptr;
  if (!callee) {
    if (_name->IsHier())
      Error("external reference %s not supported for synthesis", _name->Image().c_str());
    else
      Error("task %s is not declared", _name->Image().c_str());
    return;
  }
  callee->Call(_args, flow, this);
}

// Jumps.

namespace {

/// Whether the statement stands in the block or subprogram of this identifier.
bool StandsIn(const VeriTreeNode* statement, const VeriIdDef* id) {
  const VeriScope* scope = id->LocalScope();
  for (const VeriTreeNode* node = statement; node && scope; node = node->Parent())
    if (node->GetScope() == scope) return true;
  return false;
}

} // namespace

void VeriDisable::Execute(VeriDataFlow* flow) {
  VeriIdDef* id = _name->GetId();
  if (!id || !StandsIn(this, id)) return Error("external disable constructs not supported for synthesis");
  flow->DoGoto(id, nullptr, this);
}

void VeriJumpStatement::Execute(VeriDataFlow* flow) {
  if (_token == VERI_RETURN) {
    if (!_subprogram) return;
    VeriIdDef* result = _subprogram->Current();
    const VeriConstraint* type = _value && _subprogram->IsFunction() ? result->GetConstraint() : nullptr;
    OwnedValue value = type ? _value->EvaluateFor(*type, flow) : nullptr;
    if (value) {
      value->ResetBlockingInfo();
      value->SetBlocking();
      flow->SetAssignValue(result, std::move(value));
    }
    return flow->DoGoto(_subprogram, nullptr, this);
  }
  if (!_loop) return;
  flow->DoGoto(_token == VERI_BREAK ? _loop->BreakLabel() : _loop->ContinueLabel(), nullptr, this);
}

// What has no effect in hardware.

void VeriNullStatement::Execute(VeriDataFlow*) {}
void VeriAssertion::Execute(VeriDataFlow*) {}
void VeriGenVarAssign::Execute(VeriDataFlow*) {}
void VeriWait::Execute(VeriDataFlow*) { Warning("wait statement ignored"); }
void VeriEventTrigger::Execute(VeriDataFlow*) { Warning("event trigger ignored"); }
void VeriAssign::Execute(VeriDataFlow*) { Warning("assign statement not supported for synthesis"); }
void VeriDeAssign::Execute(VeriDataFlow*) { Warning("deassign statement not supported for synthesis"); }
void VeriForce::Execute(VeriDataFlow*) { Warning("force statement not supported for synthesis"); }
void VeriRelease::Execute(VeriDataFlow*) { Warning("release statement not supported for synthesis"); }
