// Expressions, names and types as nodes: what they own, and their source text.
#include "verilog/veriexpression.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <sstream>

#include "verilog/verimoduleitem.h"
#include "verilog/veriprint_util.h"

std::string VeriExpression::Image() const {
  std::ostringstream out;
  PrettyPrint(out, 0);
  return out.str();
}

void VeriExpression::Deepen(const VeriExpression* child) {
  if (child) _depth = std::max(_depth, child->_depth + 1);
}

namespace {

void Print(std::ostream& out, const VeriTreeNode* node) {
  if (node) node->PrettyPrint(out, 0);
}

/// Operands that are operators themselves stand in parentheses, so that no table of precedence is needed.
void PrintOperand(std::ostream& out, const VeriExpression* operand) {
  VERI_CLASS_ID id = operand->GetClassId();
  bool is_compound = id == ID_VeriBinaryOperator || id == ID_VeriUnaryOperator || id == ID_VeriQuestionColon ||
                     id == ID_VeriMinTypMaxExpr;
  if (is_compound) out << '(';
  operand->PrettyPrint(out, 0);
  if (is_compound) out << ')';
}

void PrintRanges(std::ostream& out, const VeriNodes<VeriRange>* ranges) {
  for (const VeriRange* range : ItemsOf<VeriRange*>(ranges)) {
    out << '[';
    range->PrettyPrint(out, 0);
    out << ']';
  }
}

} // namespace

// Operators.

VeriBinaryOperator::VeriBinaryOperator(unsigned token, VeriExpression* left, VeriExpression* right,
                                       unsigned long linefile)
    : VeriExpression(linefile), _token(token), _left(Adopt(left)), _right(Adopt(right)) {
  Deepen(left);
  Deepen(right);
}

VeriBinaryOperator::~VeriBinaryOperator() {
  delete _left;
  delete _right;
}

void VeriBinaryOperator::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _left);
  veri_visit(visitor, _right);
}

void VeriBinaryOperator::PrettyPrint(std::ostream& out, unsigned) const {
  PrintOperand(out, _left);
  out << ' ' << PrintToken(_token) << ' ';
  PrintAttributes(out, 0);
  PrintOperand(out, _right);
}

VeriUnaryOperator::VeriUnaryOperator(unsigned token, VeriExpression* operand, unsigned long linefile)
    : VeriExpression(linefile), _token(token), _operand(Adopt(operand)) {
  Deepen(operand);
}

VeriUnaryOperator::~VeriUnaryOperator() { delete _operand; }

void VeriUnaryOperator::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _operand); }

void VeriUnaryOperator::PrettyPrint(std::ostream& out, unsigned) const {
  out << PrintToken(_token);
  if (HasAttributes()) out << ' ';
  PrintAttributes(out, 0);
  PrintOperand(out, _operand);
}

VeriQuestionColon::VeriQuestionColon(VeriExpression* condition, VeriExpression* one, VeriExpression* zero,
                                     unsigned long linefile)
    : VeriExpression(linefile), _condition(Adopt(condition)), _one(Adopt(one)), _zero(Adopt(zero)) {
  Deepen(condition);
  Deepen(one);
  Deepen(zero);
}

VeriQuestionColon::~VeriQuestionColon() {
  delete _condition;
  delete _one;
  delete _zero;
}

void VeriQuestionColon::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _condition);
  veri_visit(visitor, _one);
  veri_visit(visitor, _zero);
}

void VeriQuestionColon::PrettyPrint(std::ostream& out, unsigned) const {
  PrintOperand(out, _condition);
  out << " ? ";
  PrintAttributes(out, 0);
  PrintOperand(out, _one);
  out << " : ";
  PrintOperand(out, _zero);
}

VeriConcat::VeriConcat(VeriExpression* count, VeriExpressions* parts, unsigned long linefile)
    : VeriExpression(linefile), _count(Adopt(count)), _parts(Adopt(parts)) {
  Deepen(count);
  for (const VeriExpression* part : *parts) Deepen(part);
}

VeriConcat::~VeriConcat() {
  delete _count;
  delete _parts;
}

void VeriConcat::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _count);
  veri_visit(visitor, _parts);
}

void VeriConcat::PrettyPrint(std::ostream& out, unsigned) const {
  out << '{';
  if (_count) {
    PrintOperand(out, _count);
    out << '{';
  }
  veri_print_values(out, *_parts);
  out << (_count ? "}}" : "}");
}

VeriMinTypMaxExpr::VeriMinTypMaxExpr(VeriExpression* min, VeriExpression* typ, VeriExpression* max,
                                     unsigned long linefile)
    : VeriExpression(linefile), _min(Adopt(min)), _typ(Adopt(typ)), _max(Adopt(max)) {
  Deepen(min);
  Deepen(typ);
  Deepen(max);
}

VeriMinTypMaxExpr::~VeriMinTypMaxExpr() {
  delete _min;
  delete _typ;
  delete _max;
}

void VeriMinTypMaxExpr::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _min);
  veri_visit(visitor, _typ);
  veri_visit(visitor, _max);
}

void VeriMinTypMaxExpr::PrettyPrint(std::ostream& out, unsigned) const {
  if (!_typ) out << '(';
  PrintOperand(out, _min);
  out << (_typ ? " : " : ", ");
  if (_typ) {
    PrintOperand(out, _typ);
    out << " : ";
  }
  PrintOperand(out, _max);
  if (!_typ) out << ')';
}

VeriRange::VeriRange(VeriExpression* left, VeriExpression* right, unsigned token, unsigned long linefile)
    : VeriExpression(linefile), _left(Adopt(left)), _right(Adopt(right)), _token(token) {
  Deepen(left);
  Deepen(right);
}

VeriRange::~VeriRange() {
  delete _left;
  delete _right;
}

void VeriRange::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _left);
  veri_visit(visitor, _right);
}

void VeriRange::PrettyPrint(std::ostream& out, unsigned) const {
  Print(out, _left);
  if (!_right) return;
  out << ' ' << PrintToken(_token) << ' ';
  Print(out, _right);
}

VeriFunctionCall::VeriFunctionCall(VeriName* name, VeriExpressions* args, unsigned long linefile)
    : VeriExpression(linefile), _name(Adopt(name)), _args(Adopt(args)) {
  for (const VeriExpression* arg : ItemsOf<VeriExpression*>(args)) Deepen(arg);
}

VeriFunctionCall::~VeriFunctionCall() {
  delete _name;
  delete _args;
}

void VeriFunctionCall::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _name);
  veri_visit(visitor, _args);
}

void VeriFunctionCall::PrettyPrint(std::ostream& out, unsigned) const {
  Print(out, _name);
  if (HasAttributes()) out << ' ';
  PrintAttributes(out, 0);
  out << '(';
  veri_print_list(out, _args);
  out << ')';
}

VeriSystemFunctionCall::VeriSystemFunctionCall(const char* name, VeriExpressions* args, unsigned long linefile)
    : VeriExpression(linefile), _name(name), _args(Adopt(args)) {
  for (const VeriExpression* arg : ItemsOf<VeriExpression*>(args)) Deepen(arg);
}

VeriSystemFunctionCall::~VeriSystemFunctionCall() { delete _args; }

void VeriSystemFunctionCall::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _args); }

void VeriSystemFunctionCall::PrettyPrint(std::ostream& out, unsigned) const {
  out << _name;
  if (!_args) return;
  out << '(';
  veri_print_list(out, _args);
  out << ')';
}

VeriAssignmentOperator::VeriAssignmentOperator(VeriExpression* target, unsigned token, VeriExpression* value,
                                               unsigned long linefile)
    : VeriExpression(linefile), _target(Adopt(target)), _token(token), _value(Adopt(value)) {
  Deepen(target);
  Deepen(value);
}

VeriAssignmentOperator::~VeriAssignmentOperator() {
  delete _target;
  delete _value;
}

void VeriAssignmentOperator::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _target);
  veri_visit(visitor, _value);
}

void VeriAssignmentOperator::PrettyPrint(std::ostream& out, unsigned) const {
  if (_is_operand) out << '(';
  const bool is_prefix = _is_operand && !_value && !_gives_old_value;
  if (is_prefix) out << PrintToken(_token);
  Print(out, _target);
  if (is_prefix) out << ')';
  if (is_prefix) return;
  if (_value) out << ' ';
  out << PrintToken(_token);
  if (_value) out << ' ';
  Print(out, _value);
  if (_is_operand) out << ')';
}

VeriAssignmentPattern::VeriAssignmentPattern(std::vector<Part> parts, unsigned long linefile)
    : VeriExpression(linefile), _parts(std::move(parts)) {
  for (const Part& part : _parts) {
    Deepen(Adopt(part.key));
    Deepen(Adopt(part.value));
  }
}

VeriAssignmentPattern::~VeriAssignmentPattern() {
  for (const Part& part : _parts) {
    delete part.key;
    delete part.value;
  }
}

void VeriAssignmentPattern::VisitChildren(VeriVisitor& visitor) {
  for (const Part& part : _parts) {
    veri_visit(visitor, part.key);
    veri_visit(visitor, part.value);
  }
}

void VeriAssignmentPattern::PrettyPrint(std::ostream& out, unsigned) const {
  const char* before = "'{";
  for (const Part& part : _parts) {
    out << before;
    before = ", ";
    Print(out, part.key);
    if (part.is_default) out << "default";
    if (part.key || part.is_default) out << ": ";
    Print(out, part.value);
  }
  out << '}';
}

VeriTypeCast::VeriTypeCast(VeriExpression* type, VeriExpression* operand, unsigned long linefile)
    : VeriExpression(linefile), _type(Adopt(type)), _operand(Adopt(operand)) {
  Deepen(type);
  Deepen(operand);
}

VeriTypeCast::~VeriTypeCast() {
  delete _type;
  delete _operand;
}

void VeriTypeCast::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _type);
  veri_visit(visitor, _operand);
}

void VeriTypeCast::PrettyPrint(std::ostream& out, unsigned) const {
  PrintOperand(out, _type);
  out << "'(";
  Print(out, _operand);
  out << ')';
}

VeriEventExpression::VeriEventExpression(unsigned edge, VeriExpression* operand, unsigned long linefile)
    : VeriExpression(linefile), _edge(edge), _operand(Adopt(operand)) {
  Deepen(operand);
}

VeriEventExpression::~VeriEventExpression() {
  delete _operand;
  delete _condition;
}

void VeriEventExpression::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _operand);
  veri_visit(visitor, _condition);
}

void VeriEventExpression::PrettyPrint(std::ostream& out, unsigned) const {
  if (_edge) out << PrintToken(_edge) << ' ';
  Print(out, _operand);
  if (!_condition) return;
  out << " iff ";
  Print(out, _condition);
}

// Ports.

VeriPortConnect::VeriPortConnect(const char* formal, VeriExpression* connection, bool is_implicit,
                                 unsigned long linefile)
    : VeriExpression(linefile), _formal(formal), _connection(Adopt(connection)), _is_implicit(is_implicit) {
  Deepen(connection);
}

VeriPortConnect::~VeriPortConnect() { delete _connection; }

void VeriPortConnect::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _connection); }

void VeriPortConnect::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintAttributes(out, level);
  if (IsDotStar()) {
    out << ".*";
    return;
  }
  if (!NamedFormal()) return Print(out, _connection);
  out << '.';
  PrintName(out, NamedFormal());
  if (_is_implicit) return;
  out << '(';
  Print(out, _connection);
  out << ')';
}

void VeriPortOpen::PrettyPrint(std::ostream&, unsigned) const {}

void VeriOpen::PrettyPrint(std::ostream& out, unsigned) const { out << '$'; }

VeriPattern::VeriPattern(VeriExpression* left, VeriExpression* right, unsigned token, unsigned long linefile)
    : VeriExpression(linefile), _left(Adopt(left)), _right(Adopt(right)), _token(token) {
  Deepen(left);
  Deepen(right);
}

VeriPattern::~VeriPattern() {
  delete _left;
  delete _right;
}

void VeriPattern::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _left);
  veri_visit(visitor, _right);
}

void VeriPattern::PrettyPrint(std::ostream& out, unsigned) const {
  const bool is_infix = _token == VERI_MATCHES || _token == VERI_TRIPLE_AND;
  if (is_infix) PrintOperand(out, _left);
  if (is_infix) out << ' ';
  out << PrintToken(_token);
  if (is_infix || _token == VERI_TAGGED) out << ' ';
  if (!is_infix) Print(out, _left);
  if (!_right) return;
  if (!is_infix) out << ' ';
  PrintOperand(out, _right);
}

VeriAnsiPortDecl::VeriAnsiPortDecl(VeriDataDecl* decl, unsigned long linefile)
    : VeriExpression(linefile), _decl(Adopt(decl)) {}

VeriAnsiPortDecl::~VeriAnsiPortDecl() { delete _decl; }

void VeriAnsiPortDecl::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _decl); }

void VeriAnsiPortDecl::PrettyPrint(std::ostream& out, unsigned level) const { _decl->PrintHead(out, level); }

// Literals.

VeriLiteral::VeriLiteral(const char* text, OwnedValue value, unsigned long linefile) : VeriLiteral(text, linefile) {
  _value = std::move(value);
}

VeriLiteral::VeriLiteral(const char* text, unsigned long linefile) : VeriExpression(linefile) {
  const size_t size = std::strlen(text) + 1;
  _text = static_cast<const char*>(std::memcpy(kestrin_pool_allocate(size), text, size));
}

VeriLiteral::~VeriLiteral() { kestrin_pool_free(const_cast<char*>(_text), std::strlen(_text) + 1); }

const VeriValue& VeriLiteral::Value() const {
  if (!_value) _value = MakeValue();
  if (!_value) _value = VeriValue::FromNumber(0, 1, /*is_signed=*/false);
  return *_value;
}

OwnedValue VeriLiteral::MakeValue() const { return VeriValue::FromLiteral(_text); }

OwnedValue VeriIntLiteral::MakeValue() const {
  return VeriValue::FromInteger(static_cast<int>(static_cast<unsigned>(std::strtoul(Text(), nullptr, 10))));
}

unsigned VeriTimeLiteral::Unit() const {
  const std::string text = Text();
  const std::string unit = text.substr(text.find_first_not_of("0123456789._"));
  unsigned code = 1;
  for (const char* name : {"fs", "ps", "ns", "us", "ms", "s"}) {
    if (unit == name) break;
    code++;
  }
  return code;
}

/// Sized numbers are written in binary; the others, which their text alone tells apart, as they were read.
void VeriLiteral::PrettyPrint(std::ostream& out, unsigned) const {
  const VeriVectorValue* vector = Value().AsVector();
  if (!std::strchr(_text, '\'') || *_text == '\'' || *_text == '"' || !vector) {
    out << _text;
    return;
  }
  out << vector->Size() << (vector->IsSigned() ? "'sb" : "'b");
  for (unsigned bit = vector->Size(); bit-- > 0;) out << "01xz"[vector->Digit(bit)];
}

// Names.

VeriIdRef::VeriIdRef(const char* name, unsigned long linefile) : VeriFullName(linefile), _name(name) {}

void VeriIdRef::PrettyPrint(std::ostream& out, unsigned) const { PrintName(out, _name); }

VeriScopedIdRef::VeriScopedIdRef(const char* package, const char* name, unsigned long linefile)
    : VeriFullName(linefile), _package(package), _name(name) {}

void VeriScopedIdRef::PrettyPrint(std::ostream& out, unsigned) const {
  if (_package.front() == '$') // $unit
    out << _package;
  else
    PrintName(out, _package.c_str());
  out << "::";
  PrintName(out, _name.c_str());
}

VeriSelectedName::VeriSelectedName(VeriName* prefix, const char* suffix, unsigned long linefile)
    : VeriFullName(linefile), _prefix(Adopt(prefix)), _suffix(suffix) {
  Deepen(prefix);
}

VeriSelectedName::~VeriSelectedName() { delete _prefix; }

VeriName* VeriSelectedName::Copy() const {
  VeriName* prefix = _prefix->Copy();
  return prefix ? new VeriSelectedName(prefix, _suffix.c_str(), Linefile()) : nullptr;
}

void VeriSelectedName::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _prefix); }

void VeriSelectedName::PrettyPrint(std::ostream& out, unsigned) const {
  Print(out, _prefix);
  out << '.';
  PrintName(out, _suffix.c_str());
}

VeriIndexedName::VeriIndexedName(VeriName* prefix, unsigned long linefile)
    : VeriName(linefile), _prefix(Adopt(prefix)) {
  Deepen(prefix);
}

VeriIndexedName::~VeriIndexedName() { delete _prefix; }

void VeriIndexedName::AddIndex(VeriExpression* index) {
  _indices.InsertLast(Adopt(index));
  Deepen(index);
}

void VeriIndexedName::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _prefix);
  veri_visit(visitor, &_indices);
}

void VeriIndexedName::PrettyPrint(std::ostream& out, unsigned) const {
  Print(out, _prefix);
  for (const VeriExpression* index : _indices) {
    out << '[';
    Print(out, index);
    out << ']';
  }
}

// Types.

VeriPrimitiveTypeDef::VeriPrimitiveTypeDef(unsigned token, unsigned signing, VeriNodes<VeriRange>* ranges,
                                           unsigned long linefile)
    : VeriTypeDef(linefile), _token(token), _signing(signing), _ranges(Adopt(ranges)) {}

VeriPrimitiveTypeDef::~VeriPrimitiveTypeDef() { delete _ranges; }

void VeriPrimitiveTypeDef::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _ranges); }

void VeriPrimitiveTypeDef::PrettyPrint(std::ostream& out, unsigned) const {
  const char* between = "";
  for (unsigned token : {_token, _signing})
    if (token) {
      out << between << PrintToken(token);
      between = " ";
    }
  if (_ranges && _ranges->Size()) out << between;
  PrintRanges(out, _ranges);
}

VeriArrayTypeDef::VeriArrayTypeDef(VeriTypeDef* element, VeriNodes<VeriRange>* ranges, unsigned long linefile)
    : VeriTypeDef(linefile), _element(Adopt(element)), _ranges(Adopt(ranges)) {}

VeriArrayTypeDef::~VeriArrayTypeDef() {
  delete _element;
  delete _ranges;
}

void VeriArrayTypeDef::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _element);
  veri_visit(visitor, _ranges);
}

void VeriArrayTypeDef::PrettyPrint(std::ostream& out, unsigned level) const {
  _element->PrettyPrint(out, level);
  out << ' ';
  PrintRanges(out, _ranges);
}

VeriTypeName::VeriTypeName(VeriName* name, VeriNodes<VeriRange>* ranges, unsigned long linefile)
    : VeriTypeDef(linefile), _name(Adopt(name)), _ranges(Adopt(ranges)) {}

VeriTypeName::~VeriTypeName() {
  delete _name;
  delete _ranges;
}

void VeriTypeName::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _name);
  veri_visit(visitor, _ranges);
}

void VeriTypeName::PrettyPrint(std::ostream& out, unsigned) const {
  Print(out, _name);
  if (_ranges && _ranges->Size()) out << ' ';
  PrintRanges(out, _ranges);
}

VeriEnumTypeDef::VeriEnumTypeDef(VeriTypeDef* base, VeriNodes<VeriIdDecl>* elements, unsigned long linefile)
    : VeriTypeDef(linefile), _base(Adopt(base)), _elements(Adopt(elements)) {}

VeriEnumTypeDef::~VeriEnumTypeDef() {
  delete _base;
  delete _elements;
}

void VeriEnumTypeDef::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _base);
  veri_visit(visitor, _elements);
}

void VeriEnumTypeDef::PrettyPrint(std::ostream& out, unsigned) const {
  out << "enum ";
  if (_base) {
    Print(out, _base);
    out << ' ';
  }
  out << '{';
  veri_print_list(out, _elements);
  out << '}';
}

VeriStructUnionTypeDef::VeriStructUnionTypeDef(unsigned token, bool packed, unsigned signing,
                                               VeriNodes<VeriDataDecl>* members, unsigned long linefile)
    : VeriTypeDef(linefile), _token(token), _packed(packed), _signing(signing), _members(Adopt(members)) {}

VeriStructUnionTypeDef::~VeriStructUnionTypeDef() { delete _members; }

void VeriStructUnionTypeDef::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _members); }

void VeriStructUnionTypeDef::PrettyPrint(std::ostream& out, unsigned level) const {
  out << PrintToken(_token);
  if (_is_tagged) out << " tagged";
  if (_packed) out << " packed";
  if (_signing) out << ' ' << PrintToken(_signing);
  out << " {\n";
  veri_print_lines(out, _members, level + 1);
  PrintLevel(out, level);
  out << '}';
}

VeriInterfaceTypeDef::VeriInterfaceTypeDef(VeriName* name, const char* modport, unsigned long linefile)
    : VeriTypeDef(linefile), _name(Adopt(name)), _modport(modport ? modport : "") {}

VeriInterfaceTypeDef::~VeriInterfaceTypeDef() { delete _name; }

void VeriInterfaceTypeDef::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _name); }

void VeriInterfaceTypeDef::PrettyPrint(std::ostream& out, unsigned) const {
  if (_name)
    Print(out, _name);
  else
    out << PrintToken(VERI_INTERFACE);
  if (!ModportName()) return;
  out << '.';
  PrintName(out, ModportName());
}
