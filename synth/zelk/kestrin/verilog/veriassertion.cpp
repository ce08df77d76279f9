// Assertions, sequences and properties as nodes: what they own, and their source text.
#include "verilog/veriassertion.h"

#include <ostream>

#include "verilog/veriprint_util.h"

namespace {

/// Operands that are operators stand in parentheses.
void PrintOperand(std::ostream& out, const VeriExpression* operand) {
  const bool is_operator = operand->GetClassId() == ID_VeriSequenceOperator;
  if (is_operator) out << '(';
  operand->PrettyPrint(out, 0);
  if (is_operator) out << ')';
}

} // namespace

// Assertions.

VeriAssertion::VeriAssertion(unsigned token, bool is_of_property, VeriExpression* expression,
                             VeriStatement* then_statement, VeriStatement* else_statement, unsigned long linefile)
    : VeriStatement(linefile), _token(token), _is_of_property(is_of_property), _expression(Adopt(expression)),
      _then(Adopt(then_statement)), _else(Adopt(else_statement)) {}

VeriAssertion::~VeriAssertion() {
  delete _expression;
  delete _then;
  delete _else;
}

void VeriAssertion::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _expression);
  veri_visit(visitor, _then);
  veri_visit(visitor, _else);
}

void VeriAssertion::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  if (!_label.empty()) {
    PrintName(out, _label.c_str());
    out << " : ";
  }
  out << PrintToken(_token) << (_is_of_property ? " property (" : " (");
  _expression->PrettyPrint(out, 0);
  out << ')';
  if (!_then && !_else) {
    out << ";\n";
    return;
  }
  out << '\n';
  if (_then) veri_print_nested(out, _then, level, /*is_before_else=*/_else != nullptr);
  if (!_else) return;
  PrintLevel(out, level);
  out << "else\n";
  veri_print_nested(out, _else, level);
}

VeriConcurrentAssertion::VeriConcurrentAssertion(VeriStatement* assertion, unsigned long linefile)
    : VeriModuleItem(linefile), _assertion(Adopt(assertion)) {}

VeriConcurrentAssertion::~VeriConcurrentAssertion() { delete _assertion; }

void VeriConcurrentAssertion::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _assertion); }

void VeriConcurrentAssertion::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, HasAttributes() ? level : 0);
  _assertion->PrettyPrint(out, HasAttributes() ? 0 : level);
}

// Declarations.

VeriPropertyBase::VeriPropertyBase(VeriIdDecl* id, VeriModuleItems* ports, VeriModuleItems* declarations,
                                   VeriExpression* body, std::unique_ptr<VeriScope> scope, unsigned long linefile)
    : VeriModuleItem(linefile), _id(Adopt(id)), _ports(Adopt(ports)), _declarations(Adopt(declarations)),
      _body(Adopt(body)), _scope(std::move(scope)) {}

VeriPropertyBase::~VeriPropertyBase() {
  delete _body;
  delete _declarations;
  delete _ports;
  _scope.reset();
  delete _id;
}

void VeriPropertyBase::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _id);
  veri_visit(visitor, _ports);
  veri_visit(visitor, _declarations);
  veri_visit(visitor, _body);
}

void VeriPropertyBase::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  const char* word = PrintToken(Token());
  out << word << ' ';
  PrintName(out, GetId()->Name());
  const char* before = " (";
  for (const VeriModuleItem* port : ItemsOf<const VeriModuleItem*>(_ports)) {
    out << before;
    before = ", ";
    static_cast<const VeriDataDecl*>(port)->PrintHead(out, 0);
  }
  out << (*before == ',' ? ");\n" : ";\n");
  veri_print_lines(out, _declarations, level + 1);
  PrintLevel(out, level + 1);
  _body->PrettyPrint(out, 0);
  out << ";\n";
  PrintLevel(out, level);
  out << "end" << word << '\n';
}

// Operators.

VeriSequenceOperator::VeriSequenceOperator(unsigned token, VeriExpression* left, VeriExpression* control,
                                           VeriExpression* right, unsigned long linefile)
    : VeriExpression(linefile), _token(token), _left(Adopt(left)), _control(Adopt(control)), _right(Adopt(right)) {
  Deepen(left);
  Deepen(control);
  Deepen(right);
}

VeriSequenceOperator::~VeriSequenceOperator() {
  delete _left;
  delete _control;
  delete _right;
  delete _list;
}

void VeriSequenceOperator::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _list);
  veri_visit(visitor, _left);
  veri_visit(visitor, _control);
  veri_visit(visitor, _right);
}

void VeriSequenceOperator::PrintRepetition(std::ostream& out) const {
  PrintOperand(out, _left);
  out << ' ' << PrintToken(_token);
  if (_control) _control->PrettyPrint(out, 0);
  out << ']';
}

void VeriSequenceOperator::PrettyPrint(std::ostream& out, unsigned) const {
  switch (_token) {
  case VERI_REPEAT_CONSECUTIVE:
  case VERI_REPEAT_NON_CONSECUTIVE:
  case VERI_REPEAT_GOTO: return PrintRepetition(out);
  case VERI_CYCLE_DELAY: {
    if (_left) {
      PrintOperand(out, _left);
      out << ' ';
    }
    const bool is_range = _control->AsRange() != nullptr;
    out << PrintToken(_token) << (is_range ? '[' : '(');
    _control->PrettyPrint(out, 0);
    out << (is_range ? "] " : ") ");
    break;
  }
  case VERI_AT:
    out << "@(";
    veri_print_list(out, _list, " or ");
    out << ") ";
    break;
  case VERI_DISABLE:
    out << "disable iff (";
    _control->PrettyPrint(out, 0);
    out << ") ";
    break;
  case VERI_IF:
    out << "if (";
    _control->PrettyPrint(out, 0);
    out << ") ";
    PrintOperand(out, _left);
    if (!_right) return;
    out << " else ";
    break;
  case VERI_FIRST_MATCH:
  case VERI_COMMA:
    if (_token == VERI_FIRST_MATCH) out << PrintToken(_token) << ' ';
    out << '(';
    PrintOperand(out, _right);
    for (const VeriExpression* step : ItemsOf<const VeriExpression*>(_list)) {
      out << ", ";
      step->PrettyPrint(out, 0);
    }
    out << ')';
    return;
  case VERI_NOT: out << PrintToken(_token) << ' '; break;
  default:
    PrintOperand(out, _left);
    out << ' ' << PrintToken(_token) << ' ';
    break;
  }
  PrintOperand(out, _right);
}
