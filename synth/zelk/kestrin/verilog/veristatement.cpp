// Statements as nodes: what they own, and their source text.
#include "verilog/veristatement.h"

#include <ostream>

#include "verilog/veriprint_util.h"

namespace {

bool TakesElse(const VeriStatement* statement) { return statement && statement->TakesElse(); }

void PrintControl(std::ostream& out, const VeriDelayOrEventControl* control) {
  if (!control) return;
  control->PrettyPrint(out, 0);
  out << ' ';
}

void PrintEvents(std::ostream& out, const VeriExpressions* events) {
  out << "@(";
  if (events->Size())
    veri_print_list(out, events, " or ");
  else
    out << '*';
  out << ')';
}

void PrintBlock(std::ostream& out, unsigned level, const char* begin, const char* end, const VeriIdDecl* id,
                const VeriModuleItems* declarations, const VeriStatements* statements) {
  out << begin;
  if (id) {
    out << " : ";
    id->PrettyPrint(out, 0);
  }
  out << '\n';
  veri_print_lines(out, declarations, level + 1);
  veri_print_lines(out, statements, level + 1);
  VeriTreeNode::PrintLevel(out, level);
  out << end << '\n';
}

/// The statements in the head of a loop: assignments without their semicolons.
void PrintAssignments(std::ostream& out, const VeriStatements* statements) {
  const char* before = "";
  for (const VeriStatement* statement : ItemsOf<VeriStatement*>(statements)) {
    const auto* assign = dynamic_cast<const VeriBlockingAssign*>(statement);
    if (!assign) continue;
    out << before;
    before = ", ";
    assign->Assignment()->PrettyPrint(out, 0);
  }
}

} // namespace

void veri_print_nested(std::ostream& out, const VeriStatement* statement, unsigned level, bool is_before_else) {
  const bool needs_block = is_before_else && TakesElse(statement);
  if (needs_block) {
    VeriTreeNode::PrintLevel(out, level);
    out << "begin\n";
  }
  if (statement) {
    statement->PrettyPrint(out, level + 1);
  } else {
    VeriTreeNode::PrintLevel(out, level + 1);
    out << ";\n";
  }
  if (needs_block) {
    VeriTreeNode::PrintLevel(out, level);
    out << "end\n";
  }
}

VeriDelayOrEventControl::VeriDelayOrEventControl(VeriExpression* delay, VeriExpression* repeat, VeriExpressions* events,
                                                 unsigned long linefile)
    : VeriTreeNode(linefile), _delay(Adopt(delay)), _repeat(Adopt(repeat)), _events(Adopt(events)) {}

VeriDelayOrEventControl::~VeriDelayOrEventControl() {
  delete _delay;
  delete _repeat;
  delete _events;
}

void VeriDelayOrEventControl::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _delay);
  veri_visit(visitor, _repeat);
  veri_visit(visitor, _events);
}

void VeriDelayOrEventControl::PrettyPrint(std::ostream& out, unsigned) const {
  if (_delay) {
    out << "#(";
    _delay->PrettyPrint(out, 0);
    out << ')';
  }
  if (_repeat) {
    out << "repeat (";
    _repeat->PrettyPrint(out, 0);
    out << ") ";
  }
  if (_events) PrintEvents(out, _events);
}

// Assignments.

VeriBlockingAssign::VeriBlockingAssign(VeriAssignmentOperator* assignment, VeriDelayOrEventControl* control,
                                       unsigned long linefile)
    : VeriStatement(linefile), _assignment(Adopt(assignment)), _control(Adopt(control)) {}

VeriBlockingAssign::~VeriBlockingAssign() {
  delete _assignment;
  delete _control;
}

void VeriBlockingAssign::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _assignment);
  veri_visit(visitor, _control);
}

void VeriBlockingAssign::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  if (_control && _assignment->Value()) {
    _assignment->Target()->PrettyPrint(out, 0);
    out << ' ' << PrintToken(_assignment->Token()) << ' ';
    PrintControl(out, _control);
    _assignment->Value()->PrettyPrint(out, 0);
  } else {
    _assignment->PrettyPrint(out, 0);
  }
  out << ";\n";
}

VeriNonBlockingAssign::VeriNonBlockingAssign(VeriAssignmentOperator* assignment, VeriDelayOrEventControl* control,
                                             unsigned long linefile)
    : VeriStatement(linefile), _assignment(Adopt(assignment)), _control(Adopt(control)) {}

VeriNonBlockingAssign::~VeriNonBlockingAssign() {
  delete _assignment;
  delete _control;
}

void VeriNonBlockingAssign::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _assignment);
  veri_visit(visitor, _control);
}

void VeriNonBlockingAssign::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  _assignment->Target()->PrettyPrint(out, 0);
  out << " <= ";
  PrintControl(out, _control);
  _assignment->Value()->PrettyPrint(out, 0);
  out << ";\n";
}

// Branches.

VeriConditionalStatement::VeriConditionalStatement(VeriExpression* condition, VeriStatement* then_statement,
                                                   VeriStatement* else_statement, unsigned qualifier,
                                                   unsigned long linefile)
    : VeriStatement(linefile), _condition(Adopt(condition)), _then(Adopt(then_statement)), _else(Adopt(else_statement)),
      _qualifier(qualifier) {}

VeriStatement* VeriConditionalStatement::TakeElse() {
  VeriStatement* branch = std::exchange(_else, nullptr);
  if (branch) branch->ClearParent();
  return branch;
}

VeriConditionalStatement::~VeriConditionalStatement() {
  delete _condition;
  delete _then;
  delete _else;
}

void VeriConditionalStatement::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _condition);
  veri_visit(visitor, _then);
  veri_visit(visitor, _else);
}

bool VeriConditionalStatement::TakesElse() const { return _else ? _else->TakesElse() : true; }

void VeriConditionalStatement::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  if (_qualifier) out << PrintToken(_qualifier) << ' ';
  out << "if (";
  _condition->PrettyPrint(out, 0);
  out << ")\n";
  veri_print_nested(out, _then, level, /*is_before_else=*/_else != nullptr);
  if (!_else) return;
  PrintLevel(out, level);
  out << "else\n";
  veri_print_nested(out, _else, level);
}

VeriCaseItem::VeriCaseItem(VeriExpressions* conditions, VeriStatement* statement, unsigned long linefile)
    : VeriTreeNode(linefile), _conditions(Adopt(conditions)), _statement(Adopt(statement)) {}

VeriCaseItem::~VeriCaseItem() {
  delete _conditions;
  delete _statement;
}

void VeriCaseItem::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _conditions);
  veri_visit(visitor, _statement);
}

void VeriCaseItem::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintLevel(out, level);
  if (_conditions)
    veri_print_values(out, *_conditions);
  else
    out << "default";
  out << " :\n";
  veri_print_nested(out, _statement, level);
}

VeriCaseStatement::VeriCaseStatement(unsigned token, unsigned qualifier, VeriExpression* expression,
                                     VeriNodes<VeriCaseItem>* items, unsigned long linefile)
    : VeriStatement(linefile), _token(token), _qualifier(qualifier), _expression(Adopt(expression)),
      _items(Adopt(items)) {}

VeriCaseStatement::~VeriCaseStatement() {
  delete _expression;
  delete _items;
}

void VeriCaseStatement::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _expression);
  veri_visit(visitor, _items);
}

void VeriCaseStatement::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  if (_qualifier) out << PrintToken(_qualifier) << ' ';
  out << PrintToken(_token) << " (";
  _expression->PrettyPrint(out, 0);
  out << (_is_inside ? ") inside\n" : ")\n");
  veri_print_lines(out, _items, level + 1);
  PrintLevel(out, level);
  out << "endcase\n";
}

// Loops.

VeriLoop::VeriLoop(VeriStatement* body, std::unique_ptr<VeriScope> scope, unsigned long linefile)
    : VeriStatement(linefile), _body(Adopt(body)), _scope(std::move(scope)) {}

VeriLoop::~VeriLoop() { delete _body; }

bool VeriLoop::TakesElse() const { return ::TakesElse(_body); }

VeriFor::VeriFor(VeriDataDecl* declaration, VeriStatements* initials, VeriExpression* condition,
                 VeriStatements* repetitions, VeriStatement* body, std::unique_ptr<VeriScope> scope,
                 unsigned long linefile)
    : VeriLoop(body, std::move(scope), linefile), _declaration(Adopt(declaration)), _initials(Adopt(initials)),
      _condition(Adopt(condition)), _repetitions(Adopt(repetitions)) {}

VeriFor::~VeriFor() {
  delete _declaration;
  delete _initials;
  delete _condition;
  delete _repetitions;
}

void VeriFor::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _declaration);
  veri_visit(visitor, _initials);
  veri_visit(visitor, _condition);
  veri_visit(visitor, _repetitions);
  veri_visit(visitor, _body);
}

void VeriFor::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "for (";
  if (_declaration)
    _declaration->PrintHead(out, 0);
  else
    PrintAssignments(out, _initials);
  out << "; ";
  if (_condition) _condition->PrettyPrint(out, 0);
  out << "; ";
  PrintAssignments(out, _repetitions);
  out << ")\n";
  veri_print_nested(out, _body, level);
}

VeriWhile::VeriWhile(VeriExpression* condition, VeriStatement* body, std::unique_ptr<VeriScope> scope, bool is_do_while,
                     unsigned long linefile)
    : VeriLoop(body, std::move(scope), linefile), _condition(Adopt(condition)), _is_do_while(is_do_while) {}

VeriWhile::~VeriWhile() { delete _condition; }

void VeriWhile::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _condition);
  veri_visit(visitor, _body);
}

void VeriWhile::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << (_is_do_while ? "do\n" : "while (");
  if (!_is_do_while) {
    _condition->PrettyPrint(out, 0);
    out << ")\n";
  }
  veri_print_nested(out, _body, level);
  if (!_is_do_while) return;
  PrintLevel(out, level);
  out << "while (";
  _condition->PrettyPrint(out, 0);
  out << ");\n";
}

VeriRepeat::VeriRepeat(VeriExpression* count, VeriStatement* body, std::unique_ptr<VeriScope> scope,
                       unsigned long linefile)
    : VeriLoop(body, std::move(scope), linefile), _count(Adopt(count)) {}

VeriRepeat::~VeriRepeat() { delete _count; }

void VeriRepeat::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _count);
  veri_visit(visitor, _body);
}

void VeriRepeat::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "repeat (";
  _count->PrettyPrint(out, 0);
  out << ")\n";
  veri_print_nested(out, _body, level);
}

void VeriForever::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _body); }

void VeriForever::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "forever\n";
  veri_print_nested(out, _body, level);
}

// Blocks.

VeriSeqBlock::VeriSeqBlock(VeriIdDecl* id, VeriModuleItems* declarations, VeriStatements* statements,
                           std::unique_ptr<VeriScope> scope, unsigned long linefile)
    : VeriStatement(linefile), _id(Adopt(id)), _declarations(Adopt(declarations)), _statements(Adopt(statements)),
      _scope(std::move(scope)) {}

VeriStatement* VeriSeqBlock::OnlyStatement() const {
  const bool has_declarations = _declarations && _declarations->Size();
  return _statements && _statements->Size() == 1 && !has_declarations ? _statements->GetFirst() : nullptr;
}

VeriSeqBlock::~VeriSeqBlock() {
  delete _statements;
  delete _declarations;
  _scope.reset();
  delete _id;
}

void VeriSeqBlock::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _declarations);
  veri_visit(visitor, _statements);
}

void VeriSeqBlock::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  PrintBlock(out, level, "begin", "end", _id, _declarations, _statements);
}

VeriParBlock::VeriParBlock(VeriIdDecl* id, VeriModuleItems* declarations, VeriStatements* statements,
                           std::unique_ptr<VeriScope> scope, unsigned join_token, unsigned long linefile)
    : VeriStatement(linefile), _id(Adopt(id)), _declarations(Adopt(declarations)), _statements(Adopt(statements)),
      _scope(std::move(scope)), _join_token(join_token) {}

VeriParBlock::~VeriParBlock() {
  delete _statements;
  delete _declarations;
  _scope.reset();
  delete _id;
}

void VeriParBlock::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _declarations);
  veri_visit(visitor, _statements);
}

void VeriParBlock::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  PrintBlock(out, level, "fork", PrintToken(_join_token), _id, _declarations, _statements);
}

// Events and delays.

VeriEventControlStatement::VeriEventControlStatement(VeriExpressions* events, VeriStatement* statement,
                                                     unsigned long linefile)
    : VeriStatement(linefile), _events(Adopt(events)), _statement(Adopt(statement)) {}

bool VeriEventControlStatement::HasEdge() const {
  for (const VeriExpression* event : ItemsOf<VeriExpression*>(_events))
    if (event && event->IsEdge()) return true;
  return false;
}

VeriEventControlStatement::~VeriEventControlStatement() {
  delete _events;
  delete _statement;
}

void VeriEventControlStatement::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _events);
  veri_visit(visitor, _statement);
}

bool VeriEventControlStatement::TakesElse() const { return ::TakesElse(_statement); }

void VeriEventControlStatement::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  PrintEvents(out, _events);
  out << '\n';
  veri_print_nested(out, _statement, level);
}

VeriDelayControlStatement::VeriDelayControlStatement(VeriExpression* delay, VeriStatement* statement,
                                                     unsigned long linefile)
    : VeriStatement(linefile), _delay(Adopt(delay)), _statement(Adopt(statement)) {}

VeriDelayControlStatement::~VeriDelayControlStatement() {
  delete _delay;
  delete _statement;
}

void VeriDelayControlStatement::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _delay);
  veri_visit(visitor, _statement);
}

bool VeriDelayControlStatement::TakesElse() const { return ::TakesElse(_statement); }

void VeriDelayControlStatement::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "#(";
  _delay->PrettyPrint(out, 0);
  out << ")\n";
  veri_print_nested(out, _statement, level);
}

VeriWait::VeriWait(VeriExpression* condition, VeriStatement* statement, unsigned long linefile)
    : VeriStatement(linefile), _condition(Adopt(condition)), _statement(Adopt(statement)) {}

VeriWait::~VeriWait() {
  delete _condition;
  delete _statement;
}

void VeriWait::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _condition);
  veri_visit(visitor, _statement);
}

bool VeriWait::TakesElse() const { return ::TakesElse(_statement); }

void VeriWait::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "wait (";
  _condition->PrettyPrint(out, 0);
  out << ")\n";
  veri_print_nested(out, _statement, level);
}

VeriGenVarAssign::VeriGenVarAssign(VeriName* name, VeriExpression* value, unsigned long linefile)
    : VeriStatement(linefile), _name(Adopt(name)), _value(Adopt(value)) {}

VeriGenVarAssign::~VeriGenVarAssign() {
  delete _name;
  delete _value;
}

void VeriGenVarAssign::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _name);
  veri_visit(visitor, _value);
}

/// As it stands in the head of the loop.
void VeriGenVarAssign::PrettyPrint(std::ostream& out, unsigned) const {
  _name->PrettyPrint(out, 0);
  out << " = ";
  _value->PrettyPrint(out, 0);
}

VeriEventTrigger::VeriEventTrigger(VeriName* name, unsigned long linefile)
    : VeriStatement(linefile), _name(Adopt(name)) {}

VeriEventTrigger::~VeriEventTrigger() { delete _name; }

void VeriEventTrigger::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _name); }

void VeriEventTrigger::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "-> ";
  _name->PrettyPrint(out, 0);
  out << ";\n";
}

// Calls and jumps.

VeriTaskEnable::VeriTaskEnable(VeriName* name, VeriExpressions* args, unsigned long linefile)
    : VeriStatement(linefile), _name(Adopt(name)), _args(Adopt(args)) {}

VeriTaskEnable::~VeriTaskEnable() {
  delete _name;
  delete _args;
}

void VeriTaskEnable::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _name);
  veri_visit(visitor, _args);
}

void VeriTaskEnable::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  _name->PrettyPrint(out, 0);
  if (_args && _args->Size()) {
    out << '(';
    veri_print_list(out, _args);
    out << ')';
  }
  out << ";\n";
}

VeriSystemTaskEnable::VeriSystemTaskEnable(const char* name, VeriExpressions* args, unsigned long linefile)
    : VeriStatement(linefile), _name(name), _args(Adopt(args)) {}

VeriSystemTaskEnable::~VeriSystemTaskEnable() { delete _args; }

void VeriSystemTaskEnable::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _args); }

void VeriSystemTaskEnable::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << _name;
  if (_args && _args->Size()) {
    out << '(';
    veri_print_list(out, _args);
    out << ')';
  }
  out << ";\n";
}

VeriDisable::VeriDisable(VeriName* name, unsigned long linefile) : VeriStatement(linefile), _name(Adopt(name)) {}

VeriDisable::~VeriDisable() { delete _name; }

void VeriDisable::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _name); }

void VeriDisable::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "disable ";
  _name->PrettyPrint(out, 0);
  out << ";\n";
}

VeriJumpStatement::VeriJumpStatement(unsigned token, VeriExpression* value, unsigned long linefile)
    : VeriStatement(linefile), _token(token), _value(Adopt(value)) {}

VeriJumpStatement::~VeriJumpStatement() { delete _value; }

void VeriJumpStatement::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _value); }

void VeriJumpStatement::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << PrintToken(_token);
  if (_value) {
    out << ' ';
    _value->PrettyPrint(out, 0);
  }
  out << ";\n";
}

void VeriNullStatement::VisitChildren(VeriVisitor&) {}

void VeriNullStatement::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << ";\n";
}

// Procedural continuous assignments.

#define VERI_PROCEDURAL_TEXT(name, word)                                                                               \
  void name::VisitChildren(VeriVisitor& visitor) {                                                                     \
    veri_visit(visitor, _target);                                                                                      \
    veri_visit(visitor, _value);                                                                                       \
  }                                                                                                                    \
  void name::PrettyPrint(std::ostream& out, unsigned level) const {                                                    \
    PrintFront(out, level);                                                                                            \
    out << (word) << ' ';                                                                                              \
    _target->PrettyPrint(out, 0);                                                                                      \
    if (_value) {                                                                                                      \
      out << " = ";                                                                                                    \
      _value->PrettyPrint(out, 0);                                                                                     \
    }                                                                                                                  \
    out << ";\n";                                                                                                      \
  }
VERI_PROCEDURAL_TEXT(VeriAssign, "assign")
VERI_PROCEDURAL_TEXT(VeriDeAssign, "deassign")
VERI_PROCEDURAL_TEXT(VeriForce, "force")
VERI_PROCEDURAL_TEXT(VeriRelease, "release")
#undef VERI_PROCEDURAL_TEXT
