#include "verilog/veristatetable.h"

#include <algorithm>

#include "database/net.h"
#include "util/services.h"
#include "verilog/vericonstraint.h"
#include "verilog/verielabstate.h"
#include "verilog/veriexpression.h"
#include "verilog/verimoduleitem.h"
#include "verilog/verinets.h"
#include "verilog/veristatement.h"
#include "verilog/verivalue_logic.h"

namespace {

/// Numbers are looked at as such, so that wider variables stay binary.
constexpr unsigned max_width = 31;
/// With less, one-hot registers cost more than they save.
constexpr size_t min_states = 3;

VeriIdDef* NamedId(const VeriExpression* expression) {
  auto* name = const_cast<VeriName*>(expression->AsName());
  if (!name || (name->GetClassId() != ID_VeriIdRef && name->GetClassId() != ID_VeriScopedIdRef)) return nullptr;
  return name->EvaluateId();
}

/// Attributes that ask for the register as it is written.
bool IsKeptByUser(const VeriVariable* variable) {
  const VeriTreeNode* declaration = variable->GetModuleItem();
  if (!declaration) return true;
  for (const char* name : {"keep", "syn_keep", "preserve", "syn_preserve", "noprune"})
    if (declaration->HasAttribute(name)) return true;
  return false;
}

bool MayHoldState(VeriVariable* variable) {
  if (!variable->IsReg() || variable->IsPort() || variable->Dir() || variable->NumUnpacked()) return false;
  if (variable->Is(IDF_IN_SUBPROGRAM) || variable->Is(IDF_AUTOMATIC) || variable->Is(IDF_IN_ERROR)) return false;
  if (variable->IsCounterOnly() || !variable->Is(IDF_ASSIGNED) || !variable->Is(IDF_READ)) return false;
  const VeriConstraint* type = variable->GetConstraint();
  if (!type || !type->IsPacked() || type->IsRealRange() || type->IsString() || type->IsCompositeConstraint())
    return false;
  return type->Size() >= 2 && type->Size() <= max_width && !IsKeptByUser(variable);
}

template <class T> const T* Enclosing(const VeriTreeNode* node) {
  while (node && !dynamic_cast<const T*>(node)) node = node->Parent();
  return static_cast<const T*>(node);
}

/// Whether an assignment is what a reset does: it stands, with other assignments at most, in a branch of the first
/// condition of a process with a clock.
bool IsResetAssignment(const VeriTreeNode* assignment) {
  unsigned conditions = 0;
  for (const VeriTreeNode* node = assignment->Parent(); node; node = node->Parent()) {
    switch (node->GetClassId()) {
    case ID_VeriBlockingAssign:
    case ID_VeriNonBlockingAssign:
    case ID_VeriSeqBlock: continue;
    case ID_VeriConditionalStatement: conditions++; continue;
    case ID_VeriEventControlStatement:
      return conditions == 1 && static_cast<const VeriEventControlStatement*>(node)->HasEdge();
    default: return false;
    }
  }
  return false;
}

} // namespace

/// Reads the references to one variable.
class VeriStateReader {
public:
  VeriStateReader(VeriVariable* variable, VeriStateTable& table)
      : _variable(variable), _type(*variable->GetConstraint()), _table(table) {}

  /// False when the variable cannot be encoded.
  bool Read() {
    if (const VeriExpression* initial = _variable->InitialValue()) {
      int64_t number = 0;
      if (!AddConstant(initial, &number)) return false;
      _table._resets.push_back(number);
    }
    const auto& references = _variable->References();
    return std::all_of(references.begin(), references.end(), [this](const auto& r) { return ReadReference(r); });
  }

private:
  bool ReadReference(const VeriVariable::Reference& reference) {
    const VeriTreeNode* parent = reference.name->Parent();
    if (reference.name->GetClassId() != ID_VeriIdRef || !parent) return false;
    const auto* name = static_cast<const VeriExpression*>(reference.name);
    switch (reference.use) {
    case VERI_USE_EVENT: return parent->GetClassId() != ID_VeriEventExpression;
    case VERI_USE_WRITE: return ReadWrite(name, parent);
    case VERI_USE_READ: return ReadRead(name, parent);
    case VERI_USE_READ_WRITE:
    case VERI_USE_OTHER: break;
    }
    return false;
  }

  bool ReadWrite(const VeriExpression* name, const VeriTreeNode* parent) {
    if (const auto* assign = dynamic_cast<const VeriNetRegAssign*>(parent))
      return assign->Target() == name && ReadSource(assign->Value(), assign);
    const auto* assign = dynamic_cast<const VeriAssignmentOperator*>(parent);
    if (!assign || assign->Target() != name || assign->IsOperand()) return false;
    if (assign->Token() != VERI_ASSIGN_OP && assign->Token() != VERI_LESS_EQ) return false;
    return assign->Value() && ReadSource(assign->Value(), assign);
  }

  /// What a member can become: constants, other variables, and choices between them.
  bool ReadSource(const VeriExpression* value, const VeriTreeNode* assign) {
    if (const auto* choice = dynamic_cast<const VeriQuestionColon*>(value))
      return ReadSource(choice->One(), assign) && ReadSource(choice->Zero(), assign);
    if (VeriIdDef* id = NamedId(value); id && id->IsVar()) {
      if (id->GetConstraint() == nullptr || id->GetConstraint()->Size() != _type.Size()) return false;
      if (id != _variable) _table._sources.Insert(id);
      return true;
    }
    int64_t number = 0;
    if (!AddConstant(value, &number)) return false;
    if (Enclosing<VeriInitialConstruct>(assign)) {
      _table._resets.push_back(number);
    } else if (IsResetAssignment(assign)) {
      _table._resets.push_back(number);
      _table._has_reset = true;
    }
    return true;
  }

  bool ReadRead(const VeriExpression* name, const VeriTreeNode* parent) {
    const VeriTreeNode* child = name;
    while (const auto* choice = dynamic_cast<const VeriQuestionColon*>(parent)) {
      if (choice->Condition() == child) return NeedsNumber();
      child = choice;
      parent = choice->Parent();
    }
    switch (parent ? parent->GetClassId() : ID_VERI_END) {
    case ID_VeriAssignmentOperator: {
      const auto* assign = static_cast<const VeriAssignmentOperator*>(parent);
      return assign->Value() == child && ReadSink(assign->Target());
    }
    case ID_VeriNetRegAssign: {
      const auto* assign = static_cast<const VeriNetRegAssign*>(parent);
      return assign->Value() == child && ReadSink(assign->Target());
    }
    case ID_VeriSystemTaskEnable: return true; // no hardware
    case ID_VeriBinaryOperator: return child == name && ReadTest(name, static_cast<const VeriBinaryOperator*>(parent));
    case ID_VeriCaseStatement: return child == name && ReadCase(name, static_cast<const VeriCaseStatement*>(parent));
    default: return NeedsNumber();
    }
  }

  bool ReadSink(const VeriExpression* target) {
    if (VeriIdDef* id = NamedId(target); id && id->IsVar() && id != _variable) _table._sinks.Insert(id);
    return true;
  }

  bool ReadTest(const VeriExpression* name, const VeriBinaryOperator* test) {
    const VeriExpression* other = test->GetLeft() == name ? test->GetRight() : test->GetLeft();
    if (!VeriStateTable::IsEqualityTest(test->OperType()) || !VeriStateTable::IsStateConstant(other))
      return NeedsNumber();
    _table._num_tests++;
    return AddConstant(other);
  }

  bool ReadCase(const VeriExpression* name, const VeriCaseStatement* statement) {
    if (statement->Expression() != name) return NeedsNumber();
    for (const VeriCaseItem* item : *statement->Items())
      for (const VeriExpression* condition : ItemsOf<VeriExpression*>(item->Conditions())) {
        _table._num_tests++;
        if (!AddConstant(condition)) return false;
      }
    return true;
  }

  /// The table stays until the profit of all is weighed.
  bool NeedsNumber() {
    _table._needs_number = true;
    return true;
  }

  /// Each constant is a known number that the variable can hold.
  bool AddConstant(const VeriExpression* expression, int64_t* number = nullptr) {
    if (!VeriStateTable::IsStateConstant(expression)) return false;
    if (!IsOfThisPlace(expression)) return false;
    OwnedValue value = const_cast<VeriExpression*>(expression)->Evaluate(nullptr);
    if (!value || !value->IsConstant() || value->IsReal() || value->IsAggregate() || value->HasXZ()) return false;
    if (value->IsEnum()) value = value->AsEnum()->TakeEncodedValue();
    int64_t found = 0;
    if (!value->ToInt64(&found) || found < 0 || found >> (_type.Size() - (_type.IsSigned() ? 1 : 0))) return false;
    const VeriIdDef* id = NamedId(expression);
    _table.AddStateConstant(found, id ? id->Name() : "");
    if (number) *number = found;
    return true;
  }

  /// A generate construct gives its parameters a value per round: only a variable of the same round may use them.
  bool IsOfThisPlace(const VeriExpression* expression) const {
    const VeriIdDef* id = NamedId(expression);
    if (!id || !id->Is(IDF_IN_GENERATE)) return true;
    return id->Template()->DeclaringScope() == _variable->Template()->DeclaringScope();
  }

  VeriVariable* _variable;
  const VeriConstraint& _type;
  VeriStateTable& _table;
};

bool VeriStateTable::IsEqualityTest(unsigned token) {
  return token == VERI_EQ || token == VERI_NEQ || token == VERI_CASE_EQ || token == VERI_CASE_NEQ;
}

bool VeriStateTable::IsStateConstant(const VeriExpression* expression) {
  if (expression->IsConst()) return true;
  const VeriIdDef* id = NamedId(expression);
  return id && (id->IsParam() || id->Kind() == VERI_ID_ENUM);
}

VeriVariable* VeriStateTable::EncodedVariable(VeriExpression* name) {
  auto* variable = name->GetClassId() == ID_VeriIdRef ? dynamic_cast<VeriVariable*>(NamedId(name)) : nullptr;
  return variable && variable->FsmStateTable() ? variable : nullptr;
}

std::unique_ptr<VeriStateTable> VeriStateTable::Create(VeriVariable* variable) {
  if (!MayHoldState(variable)) return nullptr;
  auto table = std::make_unique<VeriStateTable>();
  table->_members.Insert(variable);
  table->_width = variable->GetConstraint()->Size();
  if (!VeriStateReader(variable, *table).Read()) return nullptr;
  return table;
}

void VeriStateTable::AddStateConstant(int64_t number, const std::string& name) {
  std::string& known = _states[number];
  if (known.empty()) known = name;
}

/// The members share an encoding from now on.
void VeriStateTable::Merge(VeriStateTable& other) {
  for (Set VeriStateTable::*set : {&VeriStateTable::_members, &VeriStateTable::_sources, &VeriStateTable::_sinks})
    for (void* item : KeysOf<void*>(&(other.*set))) (this->*set).Insert(item);
  for (const auto& [number, name] : other._states) AddStateConstant(number, name);
  _resets.insert(_resets.end(), other._resets.begin(), other._resets.end());
  _num_tests += other._num_tests;
  _has_reset = _has_reset || other._has_reset;
  _needs_number = _needs_number || other._needs_number;
}

/// A machine that no reset puts into a state would never leave the code in which its registers wake up, and one that
/// wakes up in another state than that of its reset has no one state to begin with.
bool VeriStateTable::IsProfitable() const {
  if (_needs_number || _num_tests < 2 || !_has_reset || _states.size() < min_states) return false;
  return std::all_of(_resets.begin(), _resets.end(), [this](int64_t number) { return number == _resets.front(); });
}

void VeriStateTable::DebugDumpTable() const {
  for (const VeriVariable* member : KeysOf<VeriVariable*>(&_members)) kestrin_debug("MEMBER = %s", member->Name());
  for (const VeriVariable* source : KeysOf<VeriVariable*>(&_sources)) kestrin_debug("SOURCE = %s", source->Name());
  for (const VeriVariable* sink : KeysOf<VeriVariable*>(&_sinks)) kestrin_debug("SINK = %s", sink->Name());
}

/// The variables of a module that may be encoded, and what they assign to each other.
class VeriStateNetwork {
public:
  explicit VeriStateNetwork(VeriStateTable::Tables& tables) : _tables(tables) {
    for (const auto& table : _tables) _of[Member(*table)] = table.get();
  }

  void Process() {
    kestrin_debug("Encoding one-hot variables for state machines");
    kestrin_debug("There are %d encodable variables before pruning", static_cast<int>(_tables.size()));
    ProcessAllSources();
    CollapseSCC();
    PropagateStates();
    // What is given up takes those along that it is assigned to.
    while (PruneUnprofitableEncodings()) ProcessAllSources();
    for (const auto& table : _tables) {
      table->CreateStates();
      for (VeriVariable* member : KeysOf<VeriVariable*>(&table->_members)) member->SetFsmStateTable(table.get());
    }
  }

private:
  static VeriVariable* Member(const VeriStateTable& table) { return *KeysOf<VeriVariable*>(&table._members).begin(); }

  void Remove(const std::vector<VeriStateTable*>& gone) {
    for (VeriStateTable* table : gone)
      for (VeriVariable* member : KeysOf<VeriVariable*>(&table->_members)) _of.erase(member);
    auto is_gone = [&](const auto& table) { return std::find(gone.begin(), gone.end(), table.get()) != gone.end(); };
    _tables.erase(std::remove_if(_tables.begin(), _tables.end(), is_gone), _tables.end());
  }

  bool ProcessSources(const VeriStateTable& table) const {
    kestrin_debug("ProcessSources()...");
    for (VeriVariable* source : KeysOf<VeriVariable*>(&table._sources)) {
      if (_of.count(source)) continue;
      kestrin_debug("SOURCE = %s (NOT onehot)", source->Name());
      kestrin_debug("%s isn't encodable because it has an unencodable source", Member(table)->Name());
      return false;
    }
    return true;
  }

  void ProcessAllSources() {
    for (;;) {
      std::vector<VeriStateTable*> gone;
      for (const auto& table : _tables)
        if (!ProcessSources(*table)) gone.push_back(table.get());
      if (gone.empty()) break;
      for (const VeriStateTable* table : gone)
        kestrin_debug("%s has no state table - removing", Member(*table)->Name());
      Remove(gone);
    }
    kestrin_debug("Now there are %d encodable variables", static_cast<int>(_of.size()));
  }

  // Variables that are assigned to each other in a circle share a table: Tarjan's walk along the sources.
  struct Visit {
    unsigned number = 0;
    unsigned low = 0;
    bool is_open = false;
  };

  void Walk(VeriStateTable* table) {
    Visit& visit = _visits[table];
    visit.number = visit.low = ++_num_visits;
    visit.is_open = true;
    _open.push_back(table);
    for (VeriVariable* source : KeysOf<VeriVariable*>(&table->_sources)) {
      VeriStateTable* next = _of.at(source);
      if (!_visits[next].number) Walk(next);
      if (_visits[next].is_open) visit.low = std::min(visit.low, _visits[next].low);
    }
    if (visit.low != visit.number) return;
    std::vector<VeriStateTable*>& group = _groups.emplace_back();
    do {
      group.push_back(_open.back());
      _visits[_open.back()].is_open = false;
      _open.pop_back();
    } while (group.back() != table);
  }

  void CollapseSCC() {
    for (const auto& table : _tables)
      if (!_visits[table.get()].number) Walk(table.get());
    std::vector<VeriStateTable*> merged;
    for (std::vector<VeriStateTable*>& group : _groups) {
      if (group.size() > 1) kestrin_debug("Found a SCC with %d members", static_cast<int>(group.size()));
      VeriStateTable* kept = group.back();
      for (VeriStateTable* table : group) {
        if (group.size() > 1) kestrin_debug("Member = %s", Member(*table)->Name());
        if (table == kept) continue;
        merged.push_back(table);
        kept->Merge(*table);
      }
    }
    Remove(merged);
    _of.clear();
    for (const auto& table : _tables)
      for (VeriVariable* member : KeysOf<VeriVariable*>(&table->_members)) _of[member] = table.get();
  }

  /// Whether any was.
  bool PruneUnprofitableEncodings() {
    std::vector<VeriStateTable*> gone;
    for (const auto& table : _tables)
      if (!table->IsProfitable()) gone.push_back(table.get());
    kestrin_debug("%d/%d tables represent profitable encodings", static_cast<int>(_tables.size() - gone.size()),
                  static_cast<int>(_tables.size()));
    for (const VeriStateTable* table : gone) {
      kestrin_debug("Found unprofitable table with the following members:");
      table->DebugDumpTable();
    }
    Remove(gone);
    return !gone.empty();
  }

  /// A variable has the states of those that are assigned to it, too.
  void PropagateStates() {
    for (bool is_changed = true; is_changed;) {
      is_changed = false;
      for (const auto& table : _tables) {
        const unsigned before = table->NumStates();
        for (VeriVariable* source : KeysOf<VeriVariable*>(&table->_sources))
          if (_of.at(source) != table.get())
            for (const auto& [number, name] : _of.at(source)->_states) table->AddStateConstant(number, name);
        is_changed = is_changed || table->NumStates() != before;
      }
    }
  }

  VeriStateTable::Tables& _tables;
  std::map<VeriVariable*, VeriStateTable*> _of;
  std::map<VeriStateTable*, Visit> _visits;
  std::vector<VeriStateTable*> _open;
  std::vector<std::vector<VeriStateTable*>> _groups;
  unsigned _num_visits = 0;
};

void VeriStateTable::ProcessEncodableNetwork(Tables& tables) {
  if (!tables.empty()) VeriStateNetwork(tables).Process();
}

// States.

namespace {
std::string BinaryText(int64_t number, unsigned width) {
  std::string text;
  for (unsigned bit = width; bit-- > 0;) text += number >> bit & 1 ? '1' : '0';
  return text;
}
} // namespace

/// Plain numbers are called by their digits. Names that the source gives twice are followed by them.
void VeriStateTable::CreateStates() {
  kestrin_debug("CreateStates()...");
  std::map<std::string, unsigned> uses;
  for (const auto& [number, name] : _states) uses[name]++;
  for (auto& [number, name] : _states) {
    if (name.empty())
      name = BinaryText(number, _width);
    else if (uses[name] > 1)
      name += "_" + BinaryText(number, _width);
  }
  kestrin_debug("State table has %d unique state values", static_cast<int>(NumStates()));
  int64_t largest = _states.rbegin()->first;
  int bits = 1;
  while (largest >>= 1) bits++;
  kestrin_debug("State table with %d possible states has maximum state value with %d bits",
                static_cast<int>(NumStates()), bits);
  for (const auto& [number, name] : _states) kestrin_debug("Encoded State = %s", name.c_str());
}

OwnedValue VeriStateTable::CreateValue(const VeriVariable* member) const {
  std::vector<VeriStateName> names;
  for (const auto& [number, name] : _states) names.push_back({name, BinaryText(number, _width)});
  const std::string path = VeriNode::ElabState()->CreateFullName(member->Name());
  return VeriRangeConstraint::CreateStateVectorValue(path.c_str(), names, member->Linefile());
}

unsigned VeriStateTable::PositionOf(int64_t number) const {
  return static_cast<unsigned>(std::distance(_states.begin(), _states.find(number)));
}

int64_t VeriStateTable::NumberOf(const VeriValue& constant) const {
  int64_t number = -1;
  if (const VeriEnum* member = constant.AsEnum()) return NumberOf(member->GetEncodedValue());
  return constant.IsConstant() && !constant.HasXZ() && constant.ToInt64(&number) ? number : -1;
}

OwnedValue VeriStateTable::GetStateEncoding(OwnedValue value, const VeriTreeNode* from) const {
  if (!value || value->IsOnehot()) return value;
  OwnedValue code = VeriValue::Digits(NumStates(), VERI_DIGIT_X);
  if (!value->IsConstant()) {
    auto nets = std::make_unique<VeriNonConstVal>(NumStates());
    unsigned position = 0;
    for (const auto& state : _states) {
      OwnedValue number = VeriValue::FromNumber(state.first, value->Size(), value->IsSigned());
      OwnedValue test = VeriValue::Binary(VERI_OPER_EQ, value->Copy(), std::move(number), from);
      nets->SetBit(position++, test ? test->GetBit(0) : VeriNode::X());
    }
    code = std::move(nets);
  } else if (const int64_t number = NumberOf(*value); _states.count(number)) {
    code->SetTo(VERI_DIGIT_0);
    code->SetBit(PositionOf(number), VeriNode::Pwr());
  }
  code->SetOnehot();
  return code;
}

OwnedValue VeriStateTable::RestoreOriginalEncoding(const VeriValue& code, const VeriConstraint& type,
                                                   const VeriTreeNode* from) const {
  VeriLogic logic(from);
  auto number = std::make_unique<VeriNonConstVal>(_width);
  for (unsigned bit = 0; bit < _width; bit++) {
    ArrayOf<Net> lines;
    unsigned position = 0;
    for (const auto& state : _states) {
      Net* line = code.GetBit(position++);
      if (state.first >> bit & 1) lines.InsertLast(line);
    }
    number->SetBit(bit, lines.Size() ? logic.Reduce(lines, PRIM_OR) : VeriNode::Gnd());
  }
  if (type.IsSigned()) number->SetSigned();
  return VeriValue::ToConst(std::move(number));
}

OwnedValue VeriStateTable::TranslateEncoding(const VeriValue& code, const VeriStateTable& other) const {
  auto nets = std::make_unique<VeriNonConstVal>(NumStates(), VeriNode::Gnd());
  unsigned position = 0;
  for (const auto& state : other._states) {
    Net* line = code.GetBit(position++);
    if (_states.count(state.first)) nets->SetBit(PositionOf(state.first), line);
  }
  OwnedValue translated = VeriValue::ToConst(std::move(nets));
  translated->SetOnehot();
  return translated;
}

Net* VeriStateTable::Equal(const VeriValue& code, const VeriValue& constant) const {
  const int64_t number = NumberOf(constant);
  if (!_states.count(number)) return VeriNode::Gnd();
  auto line = std::make_unique<VeriNonConstVal>(NumStates(), VeriNode::Gnd());
  line->SetBit(PositionOf(number), VeriNode::Pwr());
  std::unique_ptr<VeriNonConstVal> nets = VeriValue::ToNonConstVal(code.Copy());
  return nets->EqualOnehotConstant(*line);
}
