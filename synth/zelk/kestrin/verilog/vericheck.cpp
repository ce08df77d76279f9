#include "verilog/vericheck.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "verilog/verilibrary.h"
#include "verilog/verimodule.h"
#include "verilog/veriresolve.h"
#include "verilog/veristatement.h"
#include "verilog/verivisitor.h"

namespace {

/// The object that a name reads or writes: that of the whole name, for a member that of the structure.
VeriIdDef* object_of(const VeriName* name) {
  while (name) {
    if (name->GetClassId() == ID_VeriIndexedName) {
      name = static_cast<const VeriIndexedName*>(name)->GetPrefix();
    } else if (name->GetClassId() == ID_VeriSelectedName &&
               static_cast<const VeriSelectedName*>(name)->IsStructMember()) {
      name = static_cast<const VeriSelectedName*>(name)->GetPrefix();
    } else {
      return name->GetId();
    }
  }
  return nullptr;
}

/// Calls `visit` for each name of a target.
template <class F> void for_each_name(const VeriExpression* target, const F& visit) {
  if (!target) return;
  if (target->GetClassId() == ID_VeriConcat) {
    for (const VeriExpression* part : *static_cast<const VeriConcat*>(target)->Parts()) for_each_name(part, visit);
  } else if (const VeriName* name = target->AsName()) {
    visit(name);
  }
}

const VeriVariable* to_variable(const VeriIdDef* id) {
  return id && id->IsVar() ? static_cast<const VeriVariable*>(id) : nullptr;
}

/// Declared with `const`.
bool is_constant(const VeriVariable& object) {
  const auto* decl = dynamic_cast<const VeriDataDecl*>(object.GetModuleItem());
  return decl && decl->IsConstant();
}

bool has_type(const VeriValuedId* id, unsigned token) { return id && id->Type() && id->Type()->Type() == token; }

bool is_void(const VeriFunctionDecl& function) {
  return function.DataType() && function.DataType()->Type() == VERI_VOID;
}

const VeriPortConnect* to_connect(const VeriExpression* connect) {
  return connect && connect->GetClassId() == ID_VeriPortConnect ? static_cast<const VeriPortConnect*>(connect)
                                                                : nullptr;
}

bool is_named(const VeriExpression* connect) { return to_connect(connect) && to_connect(connect)->NamedFormal(); }

VeriDesignUnit* find_unit(const VeriDesignUnit& user, const char* name) {
  const VeriLibrary* library = user.GetLibrary();
  return library && name ? library->GetDefinition(name) : nullptr;
}

/// The module that instances of this name are of; null when it is not known.
const VeriModule* find_module(const VeriDesignUnit& user, const char* name) {
  VeriDesignUnit* unit = find_unit(user, name);
  return unit && unit->IsModule() ? static_cast<const VeriModule*>(unit) : nullptr;
}

/// A set bit of the value of a user-defined primitive: 0, 1, 1'b0, 1'b1, 1'bx.
bool is_initial_of_udp(const VeriExpression* value) {
  if (!value->IsConst()) return false;
  const auto& literal = static_cast<const VeriLiteral&>(*value).Value();
  if (!literal.IsInt()) return literal.Size() == 1 && !literal.HasZ();
  const int number = literal.Integer();
  return number == 0 || number == 1;
}

bool has_port_declarations(const VeriDesignUnit& unit) {
  return unit.IsModule() && static_cast<const VeriModule&>(unit).HasAnsiPorts();
}

/// Looks for a return with a value.
class ReturnFinder : public VeriVisitor {
public:
  using VeriVisitor::Visit;
  void Visit(VeriJumpStatement& jump) override { found = found || jump.Value(); }
  bool found = false;
};

bool has_return(VeriFunctionDecl& function) {
  ReturnFinder finder;
  function.VisitChildren(finder);
  return finder.found;
}

bool is_nothing(const VeriStatement* statement) {
  return !statement || statement->GetClassId() == ID_VeriNullStatement;
}

/// The same whole variable on both sides.
bool is_self_assignment(const VeriAssignmentOperator& assignment) {
  const VeriExpression* target = assignment.Target();
  const VeriExpression* value = assignment.Value();
  return assignment.Token() == VERI_ASSIGN_OP && target && value && target->GetClassId() == ID_VeriIdRef &&
         value->GetClassId() == ID_VeriIdRef && target->AsName()->GetId() == value->AsName()->GetId();
}

/// Nothing behind an event control.
bool is_empty_process(const VeriStatement* statement) {
  if (!statement || statement->GetClassId() != ID_VeriEventControlStatement) return !statement;
  return is_nothing(static_cast<const VeriEventControlStatement*>(statement)->Statement());
}

/// Which paths through the body of a function assign its result. A loop counts as entered.
class ResultPaths : public VeriVisitor {
public:
  explicit ResultPaths(const VeriIdDef& result) : _result(result) {}
  using VeriVisitor::Visit;
  /// On all paths up to here.
  bool IsAssigned() const { return _is_assigned; }

  void Visit(VeriBlockingAssign& assign) override { Assign(assign.Assignment()->Target()); }
  void Visit(VeriNonBlockingAssign& assign) override { Assign(assign.Assignment()->Target()); }
  void Visit(VeriJumpStatement& jump) override { _is_assigned = _is_assigned || jump.Value(); }
  void Visit(VeriConditionalStatement& statement) override {
    const bool then = AfterBranch(statement.Then());
    const bool otherwise = AfterBranch(statement.Else());
    _is_assigned = _is_assigned || (then && otherwise);
  }
  void Visit(VeriCaseStatement& statement) override {
    bool is_complete = statement.Qualifier() || statement.GetAttribute("full_case");
    bool all = true;
    unsigned choices = 0;
    for (const VeriCaseItem* item : ItemsOf<const VeriCaseItem*>(statement.Items())) {
      all = AfterBranch(item->Statement()) && all;
      if (!item->Conditions()) is_complete = true;
      if (item->Conditions()) choices += item->Conditions()->Size();
    }
    // As many as there are values, it seems.
    if (choices > 1 && (choices & (choices - 1)) == 0) is_complete = true;
    _is_assigned = _is_assigned || (all && is_complete);
  }
  // What is called may assign it by a reference to the name, as a task in the function does.
  void Visit(VeriTaskEnable&) override { _is_assigned = true; }
  void Visit(VeriDisable&) override { _is_assigned = true; }

private:
  bool AfterBranch(VeriStatement* branch) {
    const bool before = _is_assigned;
    if (branch) branch->Accept(*this);
    return std::exchange(_is_assigned, before);
  }
  void Assign(const VeriExpression* target) {
    for_each_name(target, [this](const VeriName* name) { _is_assigned = _is_assigned || object_of(name) == &_result; });
  }

  const VeriIdDef& _result;
  bool _is_assigned = false;
};

bool assigns_on_all_paths(const VeriFunctionDecl& function) {
  ResultPaths paths(*function.GetId());
  for (VeriStatement* statement : ItemsOf<VeriStatement*>(function.Statements()))
    if (statement) statement->Accept(paths);
  return paths.IsAssigned();
}

/// What stands behind a jump.
void check_reached(const VeriStatements* statements) {
  const VeriStatement* former = nullptr;
  for (const VeriStatement* statement : ItemsOf<const VeriStatement*>(statements)) {
    if (former && former->GetClassId() == ID_VeriJumpStatement && !is_nothing(statement))
      return statement->Warning("statement is never reached");
    former = statement;
  }
}

/// A system function whose call is worth its result only.
bool is_pure_function(std::string_view name) {
  constexpr std::string_view names[] = {"$signed", "$unsigned", "$clog2", "$bits",      "$size",   "$left",
                                        "$right",  "$low",      "$high",  "$countones", "$onehot", "$onehot0"};
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

/// The enumeration of a value that stands alone; null for none, and for what has no type of its own.
const VeriTypeDef* enum_of(const VeriExpression* value) {
  const VeriName* name = value ? value->AsName() : nullptr;
  if (!name || (name->GetClassId() != ID_VeriIdRef && name->GetClassId() != ID_VeriScopedIdRef)) return nullptr;
  const auto* valued = dynamic_cast<const VeriValuedId*>(name->GetId());
  const VeriVariable* variable = to_variable(valued);
  if (!valued || (variable && variable->NumUnpacked())) return nullptr;
  const VeriTypeDef* type = veri_real_type(valued->Type());
  return type && type->GetClassId() == ID_VeriEnumTypeDef ? type : nullptr;
}

class UnitChecker : public VeriVisitor {
public:
  explicit UnitChecker(const VeriDesignUnit& unit) : _unit(unit), _has_port_declarations(has_port_declarations(unit)) {}
  using VeriVisitor::Visit;

  void Visit(VeriPrimitive& primitive) override;
  void Visit(VeriDataDecl& decl) override;
  void Visit(VeriFunctionDecl& function) override;
  void Visit(VeriTaskDecl& task) override;
  void Visit(VeriGenerateFor& loop) override;
  void Visit(VeriCaseStatement& statement) override;
  void Visit(VeriConditionalStatement& statement) override;
  void Visit(VeriFor& loop) override { VisitLoop(loop); }
  void Visit(VeriWhile& loop) override { VisitLoop(loop); }
  void Visit(VeriRepeat& loop) override { VisitLoop(loop); }
  void Visit(VeriForever& loop) override { VisitLoop(loop); }
  void Visit(VeriNetRegAssign& assign) override;
  void Visit(VeriModuleInstantiation& instantiation) override;
  void Visit(VeriAlwaysConstruct& always) override;

  void Visit(VeriBlockingAssign& assign) override;
  void Visit(VeriNonBlockingAssign& assign) override;
  void Visit(VeriDelayOrEventControl& control) override { CheckTimingControl(control); }
  void Visit(VeriEventControlStatement& statement) override;
  void Visit(VeriDelayControlStatement& statement) override;
  void Visit(VeriWait& wait) override;
  void Visit(VeriParBlock& block) override;
  void Visit(VeriInitialConstruct& initial) override { VisitProcess(initial); }
  void Visit(VeriTaskEnable& enable) override;
  void Visit(VeriDisable& disable) override;
  void Visit(VeriEventTrigger& trigger) override;
  void Visit(VeriJumpStatement& jump) override;
  void Visit(VeriSeqBlock& block) override;
  void Visit(VeriSystemTaskEnable& enable) override;

  // Operators hold no statements.
  void Visit(VeriBinaryOperator&) override {}
  void Visit(VeriUnaryOperator&) override {}
  void Visit(VeriQuestionColon&) override {}
  void Visit(VeriConcat&) override {}
  void Visit(VeriFunctionCall&) override {}
  void Visit(VeriIndexedName&) override {}
  void Visit(VeriSelectedName&) override {}

private:
  static bool IsSystemVerilog() { return VeriNode::IsSystemVerilog(); }
  void CheckPort(const VeriVariable& port, const VeriIdDecl& place) const;
  void CheckFormals(const VeriFunctionDecl& function) const;
  void VisitLoop(VeriLoop& loop);
  void CheckDeclared(const VeriDataDecl& decl) const;
  void CheckEnumTarget(const VeriAssignmentOperator& assignment) const;
  void CheckEnumTypes(const VeriExpression* target, const VeriExpression* value) const;
  void CheckReferences(const VeriSubprogram& subprogram) const;
  void CheckDriver(const VeriVariable& object, const VeriName& name, bool is_continuous);
  void CheckPlace(const VeriSubprogram& subprogram) const;
  void CheckTarget(const VeriExpression* target, bool is_continuous);
  void CheckTimingControl(const VeriTreeNode& control);
  void CheckConnections(const VeriInst& inst, const VeriModule* module) const;
  void CheckOpenInputs(const VeriInst& inst, const VeriModule& module, bool by_name) const;
  void CheckParameters(const VeriModuleInstantiation& instantiation) const;
  void CheckOutputOfUdp(const VeriPrimitive& primitive, VeriModuleItem& item) const;
  void VisitProcess(VeriModuleItem& process);
  template <class T> void VisitInside(T& item, const VeriTreeNode*& present);

  const VeriDesignUnit& _unit;
  bool _has_port_declarations;               // in its head
  const VeriTreeNode* _function = nullptr;   // that the statement stands in
  const VeriTreeNode* _subprogram = nullptr; // likewise, also a task
  const VeriTreeNode* _generate_loop = nullptr;
  std::vector<const VeriIdDef*> _genvars; // of the loops around
  const VeriAlwaysConstruct* _always = nullptr;
  std::map<const VeriVariable*, const VeriAlwaysConstruct*> _drivers; // null for a continuous assignment
  bool _has_timing_control = false;
  bool _is_in_process = false;
  bool _is_in_fork = false;
};

/// The children, with the item as the present one of its kind.
template <class T> void UnitChecker::VisitInside(T& item, const VeriTreeNode*& present) {
  const VeriTreeNode* former = present;
  present = &item;
  item.VisitChildren(*this);
  present = former;
}

// Primitives, IEEE 1364-2005 clause 8.1.

void UnitChecker::Visit(VeriPrimitive& primitive) {
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(primitive.Items())) CheckOutputOfUdp(primitive, *item);
}

void UnitChecker::CheckOutputOfUdp(const VeriPrimitive& primitive, VeriModuleItem& item) const {
  const VeriVariable* output = primitive.Ports().empty() ? nullptr : primitive.Ports().front();
  if (!output) return;
  if (item.GetClassId() == ID_VeriDataDecl && !item.IsPortDeclaration()) {
    for (const VeriIdDecl* decl : *static_cast<VeriDataDecl&>(item).Ids())
      if (decl->GetId() != output)
        decl->Error("only the output of a UDP can be a register, not %s", decl->GetId()->Name());
  }
  if (item.GetClassId() != ID_VeriInitialConstruct) return;
  if (!output->IsReg()) {
    item.Error("initial statement in combinational UDP %s", primitive.Name());
    return;
  }
  const VeriStatement* statement = static_cast<VeriInitialConstruct&>(item).Statement();
  if (!statement || statement->GetClassId() != ID_VeriBlockingAssign) return;
  const VeriExpression* value = static_cast<const VeriBlockingAssign*>(statement)->Assignment()->Value();
  if (value && !is_initial_of_udp(value))
    value->Error("initial value of UDP output %s must be 0, 1 or x", output->Name());
}

// Declarations.

void UnitChecker::Visit(VeriDataDecl& decl) {
  CheckDeclared(decl);
  if (_subprogram || _has_port_declarations) return;
  for (const VeriIdDecl* id : ItemsOf<VeriIdDecl*>(decl.Ids()))
    if (const VeriVariable* variable = to_variable(id->GetId()); variable && decl.Direction())
      CheckPort(*variable, *id);
}

/// Two states, or no bits at all: what a net cannot have (IEEE 1800-2005 clause 5.5).
bool is_for_variables(unsigned type) {
  switch (type) {
  case VERI_BIT:
  case VERI_BYTE:
  case VERI_SHORTINT:
  case VERI_INT:
  case VERI_LONGINT:
  case VERI_REAL:
  case VERI_SHORTREAL:
  case VERI_STRING: return true;
  default: return false;
  }
}

void UnitChecker::CheckDeclared(const VeriDataDecl& decl) const {
  const VeriTypeDef* type = decl.DataType();
  for (const VeriIdDecl* id : ItemsOf<VeriIdDecl*>(decl.Ids())) {
    const char* name = id->GetId()->Name();
    if (decl.NetType() && type && is_for_variables(type->Type()))
      id->Error("net %s cannot have type %s", name, VeriTreeNode::PrintToken(type->Type()));
    if (decl.Lifetime() == VERI_AUTOMATIC && !_subprogram && !_is_in_process)
      id->Error("variable %s outside of subprograms and processes cannot be automatic", name);
    if (decl.IsConstant() && !decl.Direction() && !id->Value()) id->Error("constant %s has no value", name);
    if (decl.Direction() == VERI_INOUT && decl.IsVar() && !_subprogram)
      id->Error("inout port %s cannot be a variable", name);
  }
}

void UnitChecker::CheckPort(const VeriVariable& port, const VeriIdDecl& place) const {
  if (port.Is(IDF_IN_ERROR)) return;
  if (!port.IsPort())
    place.Error("%s has a direction but is not in the list of ports of %s", port.Name(), _unit.Name());
  else if (port.IsReg() && port.Is(IDF_MERGED_PORT) &&
           (port.Dir() == VERI_INOUT || (port.Dir() == VERI_INPUT && !IsSystemVerilog())))
    place.Error("objects with type %s cannot be declared as %s", "reg", VeriTreeNode::PrintToken(port.Dir()));
}

// Subprograms, IEEE 1364-2005 clause 10.4.4.

// IEEE 1364-2005 clause 12.4.1.
void UnitChecker::CheckPlace(const VeriSubprogram& subprogram) const {
  if (_generate_loop && !IsSystemVerilog())
    subprogram.Error("function/task declaration not allowed inside generate loop");
}

void UnitChecker::Visit(VeriFunctionDecl& function) {
  CheckPlace(function);
  CheckReferences(function);
  if (!is_void(function) && !function.GetId()->Is(IDF_ASSIGNED) && !function.GetId()->Is(IDF_IN_ERROR) &&
      !has_return(function))
    function.Warning("function %s never assigns its result", function.GetId()->Name());
  else if (!is_void(function) && !function.GetId()->Is(IDF_IN_ERROR) && !assigns_on_all_paths(function))
    function.Warning("function %s could return x because it may not be assigned an output value in every possible "
                     "path through the function",
                     function.GetId()->Name());
  check_reached(function.Statements());
  if (!IsSystemVerilog()) CheckFormals(function);
  const VeriTreeNode* former = std::exchange(_function, &function);
  VisitInside(function, _subprogram);
  _function = former;
}

/// IEEE 1800-2005 clause 12.4.2.
void UnitChecker::CheckReferences(const VeriSubprogram& subprogram) const {
  for (const VeriVariable* formal : subprogram.Formals())
    if (formal->Dir() == VERI_REF && !subprogram.IsAutomatic())
      formal->Error("argument %s by reference needs an automatic subprogram", formal->Name());
}

void UnitChecker::Visit(VeriTaskDecl& task) {
  CheckPlace(task);
  CheckReferences(task);
  check_reached(task.Statements());
  VisitInside(task, _subprogram);
}

void UnitChecker::CheckFormals(const VeriFunctionDecl& function) const {
  const char* name = function.GetId()->Name();
  if (function.Formals().empty()) function.Error("function %s must have at least one input", name);
  for (const VeriVariable* formal : function.Formals())
    if (formal->Dir() != VERI_INPUT) formal->Error("argument %s of function %s must be an input", formal->Name(), name);
}

// Generate constructs, IEEE 1364-2005 clause 12.4.

void UnitChecker::Visit(VeriGenerateFor& loop) {
  const VeriIdDef* genvar = loop.Genvar()->GetId();
  if (genvar && std::find(_genvars.begin(), _genvars.end(), genvar) != _genvars.end())
    loop.Error("genvar %s already counts a loop around this one", genvar->Name());
  _genvars.push_back(genvar);
  VisitInside(loop, _generate_loop);
  _genvars.pop_back();
}

// Assignments.

void UnitChecker::Visit(VeriNetRegAssign& assign) {
  CheckTarget(assign.Target(), /*is_continuous=*/true);
  CheckEnumTypes(assign.Target(), assign.Value());
}

void UnitChecker::Visit(VeriBlockingAssign& assign) {
  CheckTarget(assign.Assignment()->Target(), /*is_continuous=*/false);
  CheckEnumTarget(*assign.Assignment());
  if (is_self_assignment(*assign.Assignment()))
    assign.Warning("assignment of %s to itself", assign.Assignment()->Target()->GetName());
  assign.VisitChildren(*this);
}

void UnitChecker::Visit(VeriNonBlockingAssign& assign) {
  if (_function && !IsSystemVerilog())
    assign.Error("function %s cannot contain non-blocking assignments",
                 static_cast<const VeriFunctionDecl*>(_function)->GetId()->Name());
  CheckTarget(assign.Assignment()->Target(), /*is_continuous=*/false);
  CheckEnumTarget(*assign.Assignment());
  assign.VisitChildren(*this);
}

/// IEEE 1800-2005 clause 4.10.3.
void UnitChecker::CheckEnumTypes(const VeriExpression* target, const VeriExpression* value) const {
  const VeriTypeDef* wanted = enum_of(target);
  const VeriTypeDef* given = enum_of(value);
  if (wanted && given && wanted != given)
    value->Error("%s is assigned to %s, which has another enum type", value->GetName(), target->GetName());
}

void UnitChecker::CheckEnumTarget(const VeriAssignmentOperator& assignment) const {
  const VeriName* name = assignment.Target() ? assignment.Target()->AsName() : nullptr;
  const VeriVariable* object = name && name->GetClassId() == ID_VeriIdRef ? to_variable(name->GetId()) : nullptr;
  const VeriTypeDef* type = object && !object->NumUnpacked() ? veri_real_type(object->Type()) : nullptr;
  if (type && type->GetClassId() == ID_VeriEnumTypeDef && assignment.Value() && assignment.Value()->IsConst())
    assignment.Warning("enum variable %s is assigned a number without a cast", object->Name());
  if (assignment.Token() == VERI_ASSIGN_OP || assignment.Token() == VERI_LESS_EQ)
    CheckEnumTypes(assignment.Target(), assignment.Value());
}

/// A variable has one continuous driver, and what a process for hardware assigns, no other process assigns (IEEE
/// 1800-2005 clauses 5.6 and 11.2). Parts of a variable may have drivers of their own.
void UnitChecker::CheckDriver(const VeriVariable& object, const VeriName& name, bool is_continuous) {
  if (object.IsNet() || name.GetClassId() != ID_VeriIdRef || _subprogram || (!is_continuous && !_always)) return;
  const auto [former, is_new] = _drivers.emplace(&object, _always);
  if (is_new || (!is_continuous && former->second == _always)) return;
  if (is_continuous || !former->second)
    name.Error("variable %s has a continuous driver and another one", object.Name());
  else if (_always->Token() != VERI_ALWAYS || former->second->Token() != VERI_ALWAYS)
    name.Error("variable %s is assigned by another process, too", object.Name());
}

void UnitChecker::CheckTarget(const VeriExpression* target, bool is_continuous) {
  for_each_name(target, [this, is_continuous](const VeriName* name) {
    const VeriVariable* object = to_variable(object_of(name));
    if (!object) return;
    if (IsSystemVerilog() && !object->InDynamicScope()) CheckDriver(*object, *name, is_continuous);
    if (is_constant(*object))
      name->Error("cannot assign to constant %s", object->Name());
    else if (object->IsPort() && object->Dir() == VERI_INPUT)
      name->Error("cannot assign to input port %s", object->Name());
    else if (!is_continuous && object->IsNet() && !object->Is(IDF_IN_SUBPROGRAM))
      name->Error("cannot assign to non-variable %s", object->Name());
    else if (is_continuous && object->IsReg() && !IsSystemVerilog())
      name->Error("variable %s cannot be the target of a continuous assignment", object->Name());
  });
}

// Processes.

void UnitChecker::Visit(VeriAlwaysConstruct& always) {
  _always = &always;
  _has_timing_control = false;
  const VeriStatement* statement = always.Statement();
  if (always.Token() == VERI_ALWAYS_FF && (!statement || statement->GetClassId() != ID_VeriEventControlStatement))
    always.Error("always_ff needs an event control at its start");
  VisitProcess(always);
  if (is_empty_process(statement))
    always.Warning("always construct has no statement");
  else if (always.Token() == VERI_ALWAYS && !_has_timing_control)
    always.Warning("always construct has no timing control and never ends");
  _always = nullptr;
}

void UnitChecker::CheckTimingControl(const VeriTreeNode& control) {
  _has_timing_control = true;
  if (_function)
    control.Error("function %s cannot contain timing controls",
                  static_cast<const VeriFunctionDecl*>(_function)->GetId()->Name());
  else if (_always && (_always->Token() == VERI_ALWAYS_COMB || _always->Token() == VERI_ALWAYS_LATCH))
    control.Error("%s cannot contain timing controls", VeriTreeNode::PrintToken(_always->Token()));
}

void UnitChecker::Visit(VeriEventControlStatement& statement) {
  CheckTimingControl(statement);
  statement.VisitChildren(*this);
}

void UnitChecker::Visit(VeriDelayControlStatement& statement) {
  CheckTimingControl(statement);
  statement.VisitChildren(*this);
}

void UnitChecker::Visit(VeriWait& wait) {
  CheckTimingControl(wait);
  wait.VisitChildren(*this);
}

void UnitChecker::VisitProcess(VeriModuleItem& process) {
  _is_in_process = true;
  process.VisitChildren(*this);
  _is_in_process = false;
}

void UnitChecker::Visit(VeriParBlock& block) {
  if (_function)
    block.Error("function %s cannot contain a parallel block",
                static_cast<const VeriFunctionDecl*>(_function)->GetId()->Name());
  else if (_always && _always->Token() != VERI_ALWAYS)
    block.Error("%s cannot contain a parallel block", VeriTreeNode::PrintToken(_always->Token()));
  const bool former = std::exchange(_is_in_fork, true);
  block.VisitChildren(*this);
  _is_in_fork = former;
}

void UnitChecker::Visit(VeriTaskEnable& enable) {
  const VeriIdDef* id = enable.Name()->GetId();
  if (!id) return;
  _has_timing_control = _has_timing_control || id->IsTask(); // it may hold one
  if (id->IsTask() && _function)
    enable.Error("function %s cannot enable task %s", static_cast<const VeriFunctionDecl*>(_function)->GetId()->Name(),
                 id->Name());
  const VeriTreeNode* item = id->GetModuleItem();
  if (!id->IsFunction() || !item || item->GetClassId() != ID_VeriFunctionDecl) return;
  if (!IsSystemVerilog())
    enable.Error("function %s cannot be enabled like a task", id->Name());
  else if (!is_void(static_cast<const VeriFunctionDecl&>(*item)))
    enable.Warning("result of function %s is not used", id->Name());
}

void UnitChecker::Visit(VeriCaseStatement& statement) {
  const VeriNodes<VeriCaseItem>& items = *statement.Items();
  if (items.Size() == 1 && !items.GetFirst()->Conditions()) statement.Warning("case statement has a default item only");
  statement.VisitChildren(*this);
}

void UnitChecker::Visit(VeriConditionalStatement& statement) {
  if (is_nothing(statement.Then()) && is_nothing(statement.Else()))
    statement.Warning("conditional statement has no effect");
  statement.VisitChildren(*this);
}

void UnitChecker::VisitLoop(VeriLoop& loop) {
  if (is_nothing(loop.Body())) loop.Warning("loop has no statement");
  loop.VisitChildren(*this);
}

void UnitChecker::Visit(VeriSeqBlock& block) {
  check_reached(block.Statements());
  block.VisitChildren(*this);
}

void UnitChecker::Visit(VeriSystemTaskEnable& enable) {
  if (is_pure_function(enable.Name())) enable.Warning("result of system function %s is not used", enable.Name());
}

void UnitChecker::Visit(VeriDisable& disable) {
  const VeriIdDef* id = disable.Name()->GetId();
  if (id && !id->IsBlock() && !id->IsTask() && !id->IsFunction())
    disable.Error("%s is not a block or task that can be disabled", id->Name());
}

void UnitChecker::Visit(VeriEventTrigger& trigger) {
  const VeriVariable* event = to_variable(trigger.Name()->GetId());
  if (event && !has_type(event, VERI_EVENT)) trigger.Error("%s is not an event", event->Name());
}

// IEEE 1800-2005 clauses 10.5.1 and 12.3.1.
void UnitChecker::Visit(VeriJumpStatement& jump) {
  if (jump.Token() != VERI_RETURN) {
    if (!jump.Loop()) jump.Error("%s outside of a loop", VeriTreeNode::PrintToken(jump.Token()));
    return;
  }
  if (!_subprogram) {
    jump.Error("%s outside of a subprogram", "return");
    return;
  }
  const auto* subprogram = static_cast<const VeriSubprogram*>(_subprogram);
  if (_is_in_fork) jump.Error("return from within a parallel block of %s", subprogram->GetId()->Name());
  const bool has_result = _function && !is_void(static_cast<const VeriFunctionDecl&>(*_function));
  if (has_result && !jump.Value())
    jump.Error("return from function %s needs a value", subprogram->GetId()->Name());
  else if (!has_result && jump.Value())
    jump.Error("return from %s cannot have a value", subprogram->GetId()->Name());
}

// Instances, IEEE 1364-2005 clauses 12.1.2, 12.2.2 and 12.3.

void UnitChecker::Visit(VeriModuleInstantiation& instantiation) {
  const VeriModule* module = find_module(_unit, instantiation.ModuleName());
  const VeriDesignUnit* other = module ? nullptr : find_unit(_unit, instantiation.ModuleName());
  if (other) instantiation.Error("%s cannot be instantiated", other->Name());
  CheckParameters(instantiation);
  for (const VeriInst* inst : ItemsOf<VeriInst*>(instantiation.Insts())) {
    if (!*inst->Name() && !(module && module->IsPrimitive()))
      inst->Error("instance of module %s has no name", instantiation.ModuleName());
    CheckConnections(*inst, module);
  }
}

void UnitChecker::CheckParameters(const VeriModuleInstantiation& instantiation) const {
  Set seen(HASH_STRING);
  for (const VeriExpression* parameter : ItemsOf<VeriExpression*>(instantiation.Parameters()))
    if (is_named(parameter) && !seen.Insert(to_connect(parameter)->NamedFormal()))
      parameter->Error("parameter %s is given more than one value", to_connect(parameter)->NamedFormal());
}

void UnitChecker::CheckConnections(const VeriInst& inst, const VeriModule* module) const {
  unsigned by_name = 0;
  unsigned by_order = 0;
  unsigned stars = 0;
  for (const VeriExpression* connect : ItemsOf<VeriExpression*>(inst.Connects())) {
    const bool is_star = to_connect(connect) && to_connect(connect)->IsDotStar();
    (is_star ? stars : is_named(connect) ? by_name : by_order)++;
  }
  if (by_order && (by_name || stars)) {
    inst.Error("instance %s mixes connections by name and by order", inst.Name());
    return;
  }
  if (stars > 1) inst.Error("instance %s has more than one .*", inst.Name());
  if (module && !module->IsPrimitive() && !module->IsInterface() && !stars && !veri_has_port_expressions(*module))
    CheckOpenInputs(inst, *module, by_name != 0);
}

/// An input that nothing is connected to has no value.
void UnitChecker::CheckOpenInputs(const VeriInst& inst, const VeriModule& module, bool by_name) const {
  Set connected(HASH_STRING);
  unsigned position = 0;
  for (const VeriExpression* connect : ItemsOf<VeriExpression*>(inst.Connects())) {
    const VeriPortConnect* port = to_connect(connect);
    const bool is_open =
        !connect || connect->GetClassId() == ID_VeriPortOpen || (port && !port->Connection() && !port->IsImplicit());
    if (by_name && port && !is_open) connected.Insert(port->NamedFormal());
    if (!by_name && !is_open && position < module.Ports().size()) connected.Insert(module.Ports()[position]->Name());
    position++;
  }
  for (const VeriVariable* port : module.Ports()) {
    if (port->InitialValue() || connected.Contains(port->Name())) continue;
    if (port->Dir() == VERI_INPUT)
      inst.Warning("input port %s of instance %s is not connected", port->Name(), inst.Name());
    else if (by_name && port->Dir() == VERI_OUTPUT)
      inst.Info("output port %s of instance %s is not connected", port->Name(), inst.Name());
  }
}

} // namespace

bool veri_has_port_expressions(const VeriModule& module) {
  for (const VeriExpression* entry : ItemsOf<const VeriExpression*>(module.PortExpressions()))
    if (entry && !dynamic_cast<const VeriAnsiPortDecl*>(entry) && !dynamic_cast<const VeriIdRef*>(entry)) return true;
  return false;
}

void veri_check_unit(VeriDesignUnit& unit) {
  UnitChecker checker(unit);
  unit.Accept(checker);
}
