// Evaluation of expressions, literals and types (IEEE 1364-2005 clauses 5.1, 5.4 and 5.5).
#include <algorithm>
#include <climits>
#include <iterator>
#include <map>
#include <sstream>

#include "database/net.h"
#include "util/services.h"
#include "verilog/veridataflow.h"
#include "verilog/verielabstate.h"
#include "verilog/veriexpression.h"
#include "verilog/verimodule.h"
#include "verilog/veristatetable.h"
#include "verilog/verivalue_logic.h"

namespace {

struct OperatorRow {
  unsigned token;
  veri_oper binary; // VERI_OPER_COUNT: none
  veri_oper unary;
};

constexpr OperatorRow operator_rows[] = {
    {VERI_PLUS, VERI_OPER_PLUS, VERI_OPER_UNARY_PLUS},
    {VERI_MINUS, VERI_OPER_MINUS, VERI_OPER_UNARY_MINUS},
    {VERI_STAR, VERI_OPER_MULTIPLY, VERI_OPER_COUNT},
    {VERI_SLASH, VERI_OPER_DIVIDE, VERI_OPER_COUNT},
    {VERI_MODULO, VERI_OPER_MODULO, VERI_OPER_COUNT},
    {VERI_POWER, VERI_OPER_POWER, VERI_OPER_COUNT},
    {VERI_LESS, VERI_OPER_LT, VERI_OPER_COUNT},
    {VERI_GREATER, VERI_OPER_GT, VERI_OPER_COUNT},
    {VERI_LESS_EQ, VERI_OPER_LE, VERI_OPER_COUNT},
    {VERI_GREATER_EQ, VERI_OPER_GE, VERI_OPER_COUNT},
    {VERI_EQ, VERI_OPER_EQ, VERI_OPER_COUNT},
    {VERI_NEQ, VERI_OPER_NE, VERI_OPER_COUNT},
    {VERI_CASE_EQ, VERI_OPER_CASE_EQ, VERI_OPER_COUNT},
    {VERI_CASE_NEQ, VERI_OPER_CASE_NE, VERI_OPER_COUNT},
    {VERI_WILD_EQ, VERI_OPER_WILD_EQ, VERI_OPER_COUNT},
    {VERI_WILD_NEQ, VERI_OPER_WILD_NE, VERI_OPER_COUNT},
    {VERI_LOG_AND, VERI_OPER_LOG_AND, VERI_OPER_COUNT},
    {VERI_LOG_OR, VERI_OPER_LOG_OR, VERI_OPER_COUNT},
    {VERI_AMPERSAND, VERI_OPER_AND, VERI_OPER_REDUCE_AND},
    {VERI_BAR, VERI_OPER_OR, VERI_OPER_REDUCE_OR},
    {VERI_CARET, VERI_OPER_XOR, VERI_OPER_REDUCE_XOR},
    {VERI_XNOR_OP, VERI_OPER_XNOR, VERI_OPER_REDUCE_XNOR},
    {VERI_NAND_OP, VERI_OPER_COUNT, VERI_OPER_REDUCE_NAND},
    {VERI_NOR_OP, VERI_OPER_COUNT, VERI_OPER_REDUCE_NOR},
    {VERI_BANG, VERI_OPER_COUNT, VERI_OPER_LOG_NOT},
    {VERI_TILDE, VERI_OPER_COUNT, VERI_OPER_NOT},
    {VERI_SHIFT_LEFT, VERI_OPER_SHIFT_LEFT, VERI_OPER_COUNT},
    {VERI_SHIFT_RIGHT, VERI_OPER_SHIFT_RIGHT, VERI_OPER_COUNT},
    {VERI_ARITH_SHIFT_LEFT, VERI_OPER_ARITH_SHIFT_LEFT, VERI_OPER_COUNT},
    {VERI_ARITH_SHIFT_RIGHT, VERI_OPER_ARITH_SHIFT_RIGHT, VERI_OPER_COUNT},
    {VERI_PLUS_ASSIGN, VERI_OPER_PLUS, VERI_OPER_COUNT},
    {VERI_MINUS_ASSIGN, VERI_OPER_MINUS, VERI_OPER_COUNT},
    {VERI_STAR_ASSIGN, VERI_OPER_MULTIPLY, VERI_OPER_COUNT},
    {VERI_SLASH_ASSIGN, VERI_OPER_DIVIDE, VERI_OPER_COUNT},
    {VERI_MODULO_ASSIGN, VERI_OPER_MODULO, VERI_OPER_COUNT},
    {VERI_AND_ASSIGN, VERI_OPER_AND, VERI_OPER_COUNT},
    {VERI_OR_ASSIGN, VERI_OPER_OR, VERI_OPER_COUNT},
    {VERI_XOR_ASSIGN, VERI_OPER_XOR, VERI_OPER_COUNT},
    {VERI_SHIFT_LEFT_ASSIGN, VERI_OPER_SHIFT_LEFT, VERI_OPER_COUNT},
    {VERI_SHIFT_RIGHT_ASSIGN, VERI_OPER_SHIFT_RIGHT, VERI_OPER_COUNT},
    {VERI_ARITH_SHIFT_LEFT_ASSIGN, VERI_OPER_ARITH_SHIFT_LEFT, VERI_OPER_COUNT},
    {VERI_ARITH_SHIFT_RIGHT_ASSIGN, VERI_OPER_ARITH_SHIFT_RIGHT, VERI_OPER_COUNT},
    {VERI_INCREMENT, VERI_OPER_PLUS, VERI_OPER_COUNT},
    {VERI_DECREMENT, VERI_OPER_MINUS, VERI_OPER_COUNT},
};

const OperatorRow& RowOf(unsigned token) {
  for (const OperatorRow& row : operator_rows)
    if (row.token == token) return row;
  KESTRIN_ASSERT_TEXT(false, "unknown operator token");
}

/// Size and sign of an operand pair in which both take part (table 5-22).
VeriTypeInfo Wider(const VeriTypeInfo& a, const VeriTypeInfo& b) {
  VeriTypeInfo info;
  info.size = std::max(a.size, b.size);
  info.is_real = a.is_real || b.is_real;
  info.is_signed = (a.is_signed && b.is_signed) || info.is_real;
  info.is_unsized = a.is_unsized && b.is_unsized;
  return info;
}

VeriTypeInfo InfoOf(const VeriConstraint& type) {
  VeriTypeInfo info;
  info.size = type.Size();
  info.is_signed = type.IsSigned();
  info.is_real = type.IsRealRange();
  return info;
}

VeriTypeInfo InfoOf(const VeriValue& value) {
  VeriTypeInfo info;
  info.size = value.Size();
  info.is_signed = value.IsSigned();
  info.is_real = value.IsReal();
  return info;
}

} // namespace

// What all expressions share.

OwnedValue VeriExpression::Evaluate(VeriDataFlow* flow) { return EvaluateIn(flow, TypeInfer(flow)); }

OwnedValue VeriExpression::EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) {
  VeriNodeScope node(this);
  VeriTypeInfo own = TypeInfer(flow);
  VeriTypeInfo context = own;
  if (!own.is_real && !target.IsRealRange() && target.IsPacked()) context.size = std::max(own.size, target.Size());
  OwnedValue value = EvaluateIn(flow, context);
  if (!value) return nullptr;
  return VeriValue::CheckAgainst(std::move(value), target, this, false /* sign_first */, own.size, own.is_unsized);
}

OwnedValue VeriExpression::EvaluateState(const VeriVariable* target, VeriDataFlow* flow) {
  OwnedValue value = EvaluateFor(*const_cast<VeriVariable*>(target)->GetConstraint(), flow);
  return target->FsmStateTable()->GetStateEncoding(std::move(value), this);
}

OwnedValue VeriExpression::EvaluateConstant() {
  VeriNodeScope node(this);
  OwnedValue value = Evaluate(nullptr);
  if (value) value = VeriValue::ToConst(std::move(value));
  if (!value || value->IsConstant()) return value;
  Error("expression %s is not constant", Image().c_str());
  return nullptr;
}

Net* VeriExpression::EvaluateCondition(VeriDataFlow* flow) {
  VeriNodeScope node(this);
  OwnedValue value = Evaluate(flow);
  if (!value) return nullptr;
  if (value->Size() > 1 && !value->IsInt() && !value->IsReal() && !(value->IsConstant() && IsConst()))
    Warning("condition expression wider than single-bit");
  return VeriValue::Condition(std::move(value), this);
}

void VeriExpression::Assign(OwnedValue /*value*/, VeriDataFlow* /*flow*/, bool /*non_blocking*/) {
  Error("illegal expression in target");
}

OwnedValue VeriExpression::EvaluateNets() {
  Error("illegal expression in target");
  return nullptr;
}

void VeriExpression::AddToSensList(Set& /*ids*/) {}

OwnedValue VeriExpression::FitTo(OwnedValue value, const VeriTypeInfo& type, const VeriTreeNode* from) {
  if (!value || type.is_real || value->IsReal() || value->IsAggregate() || value->IsDualPortValue()) return value;
  if (!type.is_signed) value->SetUnsigned();
  return VeriValue::Adjust(std::move(value), type.size, from);
}

std::unique_ptr<VeriExpression> VeriExpression::ToConstantExpression(const VeriValue& value, unsigned long linefile) {
  if (!value.IsConstant() || value.IsAggregate()) return nullptr;
  OwnedValue copy = value.Copy();
  if (VeriEnum* member = copy->AsEnum()) copy = member->TakeEncodedValue();
  std::string text = value.ParamString();
  if (copy->IsInt()) return std::make_unique<VeriIntLiteral>(text.c_str(), std::move(copy), linefile);
  if (copy->IsReal()) return std::make_unique<VeriRealLiteral>(text.c_str(), std::move(copy), linefile);
  return std::make_unique<VeriVectorLiteral>(text.c_str(), std::move(copy), linefile);
}

// Operators.

VeriTypeInfo VeriBinaryOperator::TypeInfer(VeriDataFlow* flow) {
  if (_token == VERI_INSIDE) return {};
  switch (veri_oper_class(RowOf(_token).binary)) {
  case VeriOperClass::ARITHMETIC:
  case VeriOperClass::BITWISE: return Wider(_left->TypeInfer(flow), _right->TypeInfer(flow));
  case VeriOperClass::POWER: {
    VeriTypeInfo info = _left->TypeInfer(flow);
    if (_right->TypeInfer(flow).is_real) info.is_real = true;
    return info;
  }
  case VeriOperClass::SHIFT: return _left->TypeInfer(flow);
  case VeriOperClass::RELATIONAL:
  case VeriOperClass::EQUALITY:
  case VeriOperClass::LOGICAL:
  case VeriOperClass::CONCATENATION:
  case VeriOperClass::UNARY:
  case VeriOperClass::REDUCTION: return {};
  }
  return {};
}

namespace {

OwnedValue Compare(unsigned token, VeriExpression* left, VeriExpression* right, VeriDataFlow* flow) {
  const VeriTypeInfo operands = Wider(left->TypeInfer(flow), right->TypeInfer(flow));
  OwnedValue left_value = operands.is_real ? left->Evaluate(flow) : left->EvaluateIn(flow, operands);
  OwnedValue right_value = operands.is_real ? right->Evaluate(flow) : right->EvaluateIn(flow, operands);
  return VeriValue::Binary(RowOf(token).binary, std::move(left_value), std::move(right_value), left);
}

} // namespace

/// Whether the left side is this value, in which x and z count as any, or lies in this range.
OwnedValue VeriBinaryOperator::EvaluateIsIn(VeriExpression* element, VeriDataFlow* flow) {
  const VeriRange* range = element->AsRange();
  if (!range) return Compare(VERI_WILD_EQ, _left, element, flow);
  OwnedValue result;
  if (!range->GetLeft()->IsOpen()) result = Compare(VERI_GREATER_EQ, _left, range->GetLeft(), flow);
  if (range->GetRight()->IsOpen()) return result ? std::move(result) : VeriValue::FromNumber(1, 1, false);
  OwnedValue below = Compare(VERI_LESS_EQ, _left, range->GetRight(), flow);
  if (range->GetLeft()->IsOpen()) return below;
  return VeriValue::Binary(RowOf(VERI_AMPERSAND).binary, std::move(result), std::move(below), this);
}

OwnedValue VeriBinaryOperator::EvaluateInside(VeriDataFlow* flow) {
  OwnedValue result;
  for (VeriExpression* element : *static_cast<VeriConcat*>(_right)->Parts()) {
    OwnedValue is_in = EvaluateIsIn(element, flow);
    if (!is_in) return nullptr;
    result = result ? VeriValue::Binary(RowOf(VERI_BAR).binary, std::move(result), std::move(is_in), this)
                    : std::move(is_in);
  }
  return result;
}

OwnedValue VeriBinaryOperator::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  VeriNodeScope node(this);
  if (_token == VERI_INSIDE) return FitTo(EvaluateInside(flow), type, this);
  veri_oper oper = RowOf(_token).binary;
  OwnedValue left;
  OwnedValue right;
  switch (veri_oper_class(oper)) {
  case VeriOperClass::ARITHMETIC:
  case VeriOperClass::BITWISE:
    if (type.is_real) {
      left = _left->Evaluate(flow);
      right = _right->Evaluate(flow);
    } else {
      left = _left->EvaluateIn(flow, type);
      right = _right->EvaluateIn(flow, type);
    }
    break;
  case VeriOperClass::POWER:
  case VeriOperClass::SHIFT:
    left = type.is_real ? _left->Evaluate(flow) : _left->EvaluateIn(flow, type);
    right = _right->Evaluate(flow);
    break;
  case VeriOperClass::RELATIONAL:
  case VeriOperClass::EQUALITY: {
    if (OwnedValue test = EvaluateStateTest(flow)) return FitTo(std::move(test), type, this);
    VeriTypeInfo operands = Wider(_left->TypeInfer(flow), _right->TypeInfer(flow));
    if (operands.is_real) {
      left = _left->Evaluate(flow);
      right = _right->Evaluate(flow);
    } else {
      left = _left->EvaluateIn(flow, operands);
      right = _right->EvaluateIn(flow, operands);
    }
    break;
  }
  case VeriOperClass::LOGICAL:
  case VeriOperClass::CONCATENATION:
  case VeriOperClass::UNARY:
  case VeriOperClass::REDUCTION:
    left = _left->Evaluate(flow);
    right = _right->Evaluate(flow);
    break;
  }
  return FitTo(VeriValue::Binary(oper, std::move(left), std::move(right), this), type, this);
}

/// The comparison of a variable that is encoded by its states with a constant; null for any other operation.
OwnedValue VeriBinaryOperator::EvaluateStateTest(VeriDataFlow* flow) {
  if (!VeriStateTable::IsEqualityTest(_token)) return nullptr;
  for (auto [name, other] : {std::pair(_left, _right), std::pair(_right, _left)}) {
    const VeriVariable* machine = VeriStateTable::EncodedVariable(name);
    if (!machine || !VeriStateTable::IsStateConstant(other)) continue;
    OwnedValue code = static_cast<VeriIdRef*>(name)->EvaluateCode(flow);
    OwnedValue constant = other->Evaluate(flow);
    if (!code || !constant) return nullptr;
    Net* equal = machine->FsmStateTable()->Equal(*code, *constant);
    const bool is_negated = _token == VERI_NEQ || _token == VERI_CASE_NEQ;
    return VeriValue::ToConst(VeriValue::FromNet(is_negated ? VeriLogic(this).Inv(equal) : equal));
  }
  return nullptr;
}

void VeriBinaryOperator::AddToSensList(Set& ids) {
  _left->AddToSensList(ids);
  _right->AddToSensList(ids);
}

VeriTypeInfo VeriUnaryOperator::TypeInfer(VeriDataFlow* flow) {
  veri_oper oper = RowOf(_token).unary;
  if (oper == VERI_OPER_LOG_NOT || veri_oper_class(oper) == VeriOperClass::REDUCTION) return {};
  return _operand->TypeInfer(flow);
}

OwnedValue VeriUnaryOperator::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  VeriNodeScope node(this);
  veri_oper oper = RowOf(_token).unary;
  bool is_self_determined =
      type.is_real || oper == VERI_OPER_LOG_NOT || veri_oper_class(oper) == VeriOperClass::REDUCTION;
  OwnedValue operand = is_self_determined ? _operand->Evaluate(flow) : _operand->EvaluateIn(flow, type);
  return FitTo(VeriValue::Unary(oper, std::move(operand), this), type, this);
}

void VeriUnaryOperator::AddToSensList(Set& ids) { _operand->AddToSensList(ids); }

VeriTypeInfo VeriQuestionColon::TypeInfer(VeriDataFlow* flow) {
  return Wider(_one->TypeInfer(flow), _zero->TypeInfer(flow));
}

OwnedValue VeriQuestionColon::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  VeriNodeScope node(this);
  OwnedValue condition = _condition->Evaluate(flow);
  if (!condition) return nullptr;
  Net* net = VeriValue::Condition(condition->Copy(), this);
  veri_digit digit = VERI_DIGIT_X;
  // Only the branch that counts, so that functions can end their recursion.
  if (net && veri_is_digit(net, &digit) && digit <= VERI_DIGIT_1)
    return (digit == VERI_DIGIT_1 ? _one : _zero)->EvaluateIn(flow, type);
  OwnedValue one = _one->EvaluateIn(flow, type);
  OwnedValue zero = _zero->EvaluateIn(flow, type);
  return FitTo(VeriValue::QuestionColon(std::move(condition), std::move(one), std::move(zero), this), type, this);
}

OwnedValue VeriQuestionColon::EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) {
  if (target.IsPacked() || target.IsRealRange()) return VeriExpression::EvaluateFor(target, flow);
  VeriNodeScope node(this);
  OwnedValue condition = _condition->Evaluate(flow);
  OwnedValue one = _one->EvaluateFor(target, flow);
  OwnedValue zero = _zero->EvaluateFor(target, flow);
  return VeriValue::QuestionColon(std::move(condition), std::move(one), std::move(zero), this);
}

OwnedValue VeriQuestionColon::EvaluateState(const VeriVariable* target, VeriDataFlow* flow) {
  VeriNodeScope node(this);
  Net* condition = _condition->EvaluateCondition(flow);
  if (!condition) return nullptr;
  veri_digit digit = VERI_DIGIT_X;
  if (veri_is_digit(condition, &digit)) return (digit == VERI_DIGIT_1 ? _one : _zero)->EvaluateState(target, flow);
  OwnedValue one = _one->EvaluateState(target, flow);
  OwnedValue zero = _zero->EvaluateState(target, flow);
  return VeriValue::Select(condition, std::move(one), std::move(zero), this);
}

void VeriQuestionColon::AddToSensList(Set& ids) {
  _condition->AddToSensList(ids);
  _one->AddToSensList(ids);
  _zero->AddToSensList(ids);
}

VeriTypeInfo VeriConcat::TypeInfer(VeriDataFlow* flow) {
  uint64_t size = 0;
  for (VeriExpression* part : *_parts) size += part->TypeInfer(flow).size;
  if (_count) {
    OwnedValue count = _count->EvaluateConstant();
    int64_t number = 0;
    if (count && count->ToInt64(&number) && number > 0)
      size = number > INT_MAX ? UINT_MAX : size * static_cast<uint64_t>(number);
    else
      size = 0;
  }
  VeriTypeInfo info;
  info.size = static_cast<unsigned>(std::min<uint64_t>(size, UINT_MAX));
  return info;
}

OwnedValue VeriConcat::EvaluateParts(VeriDataFlow* flow) {
  std::vector<OwnedValue> values;
  for (VeriExpression* part : *_parts) {
    OwnedValue value = part->Evaluate(flow);
    if (!value) return nullptr;
    if (value->IsAggregate()) value = VeriValue::Pack(std::move(value));
    if (value->Size()) values.push_back(std::move(value));
  }
  return VeriValue::Concat(std::move(values), this);
}

OwnedValue VeriConcat::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  VeriNodeScope node(this);
  OwnedValue value;
  if (_count) {
    OwnedValue count = _count->EvaluateConstant();
    int64_t number = 1;
    const bool is_part = Parent() && Parent()->GetClassId() == ID_VeriConcat;
    // IEEE 1364-2005 clause 5.1.14: nothing at all can only be a part of something.
    if (count && count->ToInt64(&number) && number == 0 && !is_part) Warning("replication by zero has no value");
    if (count) value = VeriValue::Repeat(std::move(count), EvaluateParts(flow), this);
  } else {
    value = EvaluateParts(flow);
  }
  return FitTo(std::move(value), type, this);
}

OwnedConstraint VeriConcat::EvaluateConstraint(VeriDataFlow* flow) {
  if (_count) return nullptr;
  VeriTypeInfo info = TypeInfer(flow);
  if (!info.size || !veri_width_is_supported(info.size, this)) return nullptr;
  return VeriUniformArrayConstraint::Vector(static_cast<int>(info.size) - 1, 0);
}

void VeriConcat::Assign(OwnedValue value, VeriDataFlow* flow, bool non_blocking) {
  int64_t position = 0;
  for (VeriExpression* part : *_parts) {
    unsigned size = part->TypeInfer(flow).size;
    OwnedValue slice = VeriValue::EvaluateSliced(value->Copy(), position, size, 1);
    position += size;
    OwnedConstraint type = part->EvaluateConstraint(flow);
    if (!type) {
      part->Error("illegal expression in target");
      return;
    }
    if (slice) slice = VeriValue::CheckAgainst(std::move(slice), *type, part, false);
    if (slice) part->Assign(std::move(slice), flow, non_blocking);
  }
}

OwnedValue VeriConcat::EvaluateNets() {
  std::vector<OwnedValue> values;
  if (_count) return VeriExpression::EvaluateNets();
  for (VeriExpression* part : *_parts) {
    values.push_back(part->EvaluateNets());
    if (!values.back()) return nullptr;
  }
  return VeriValue::Concat(std::move(values), this);
}

void VeriConcat::AddToSensList(Set& ids) {
  for (VeriExpression* part : *_parts) part->AddToSensList(ids);
}

bool VeriRange::EvaluateBounds(int* left, int* right) const {
  OwnedValue high = _left->EvaluateConstant();
  OwnedValue low = _right ? _right->EvaluateConstant() : nullptr;
  if (!high || (_right && !low)) return false;
  int64_t numbers[2] = {};
  bool is_known = high->ToInt64(&numbers[0]) && (!_right || low->ToInt64(&numbers[1]));
  if (!_right) { // [n] stands for [0:n-1]
    numbers[1] = numbers[0] - 1;
    numbers[0] = 0;
  }
  for (int64_t number : numbers) is_known = is_known && number >= INT_MIN && number <= INT_MAX;
  if (is_known && !_right && numbers[1] < 0) {
    Error("size %s of a dimension must be positive", Image().c_str());
    return false;
  }
  if (!is_known) {
    Error("bounds of range %s are not known numbers of 32 bits", Image().c_str());
    return false;
  }
  *left = static_cast<int>(numbers[0]);
  *right = static_cast<int>(numbers[1]);
  return true;
}

void VeriRange::AddToSensList(Set& ids) {
  _left->AddToSensList(ids);
  if (_right) _right->AddToSensList(ids);
}

// Calls.

namespace {

VeriSubprogram* CalleeOf(VeriName* name) {
  VeriIdDef* id = name->EvaluateId();
  return id ? dynamic_cast<VeriSubprogram*>(id->GetModuleItem()) : nullptr;
}

VeriConstraint* ResultType(VeriName* name) {
  VeriIdDef* id = name->EvaluateId();
  return id && id->IsFunction() ? id->GetConstraint() : nullptr;
}

} // namespace

namespace {

const VeriSelectedName* MethodOf(const VeriName* name) {
  const auto* selected = dynamic_cast<const VeriSelectedName*>(name);
  return selected && selected->GetMethodType() != METHOD_NONE ? selected : nullptr;
}

VeriTypeInfo MethodInfo(const VeriSelectedName* method) {
  OwnedConstraint type = method->MethodConstraint();
  return type ? InfoOf(*type) : VeriTypeInfo();
}

} // namespace

VeriTypeInfo VeriFunctionCall::TypeInfer(VeriDataFlow*) {
  if (const VeriSelectedName* method = MethodOf(_name)) return MethodInfo(method);
  const VeriConstraint* type = ResultType(_name);
  return type ? InfoOf(*type) : VeriTypeInfo();
}

OwnedConstraint VeriFunctionCall::EvaluateConstraint(VeriDataFlow*) {
  if (const VeriSelectedName* method = MethodOf(_name)) return method->MethodConstraint();
  const VeriConstraint* type = ResultType(_name);
  return type ? type->Copy() : nullptr;
}

OwnedValue VeriFunctionCall::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  VeriNodeScope node(this);
  if (const VeriSelectedName* method = MethodOf(_name)) return FitTo(method->EvaluateMethod(_args, flow), type, this);
  VeriSubprogram* callee = CalleeOf(_name);
  if (!callee || !callee->GetId()->IsFunction()) {
    if (_name->IsHier())
      Error("external reference %s not supported for synthesis", _name->Image().c_str());
    else
      Error("function %s is not declared", _name->Image().c_str());
    return nullptr;
  }
  return FitTo(callee->Call(_args, flow, this), type, this);
}

void VeriFunctionCall::AddToSensList(Set& ids) {
  if (const VeriSelectedName* method = MethodOf(_name)) method->GetPrefix()->AddToSensList(ids);
  for (VeriExpression* arg : ItemsOf<VeriExpression*>(_args))
    if (arg) arg->AddToSensList(ids);
}

void VeriPortConnect::AddToSensList(Set& ids) {
  if (_connection) _connection->AddToSensList(ids);
}

struct VeriSystemFunctionCall::Function {
  unsigned min_args;
  unsigned max_args;
  OwnedValue (VeriSystemFunctionCall::*evaluate)(VeriDataFlow* flow);
};

const VeriSystemFunctionCall::Function* VeriSystemFunctionCall::FindFunction(const std::string& name) {
  static const std::map<std::string, Function> functions = {
      {"$signed", {1, 1, &VeriSystemFunctionCall::EvaluateSign}},
      {"$unsigned", {1, 1, &VeriSystemFunctionCall::EvaluateSign}},
      {"$clog2", {1, 1, &VeriSystemFunctionCall::EvaluateClog2}},
      {"$bits", {1, 1, &VeriSystemFunctionCall::EvaluateBits}},
      {"$countones", {1, 1, &VeriSystemFunctionCall::EvaluateCount}},
      {"$onehot", {1, 1, &VeriSystemFunctionCall::EvaluateCount}},
      {"$onehot0", {1, 1, &VeriSystemFunctionCall::EvaluateCount}},
      {"$isunknown", {1, 1, &VeriSystemFunctionCall::EvaluateCount}},
      {"$size", {1, 2, &VeriSystemFunctionCall::EvaluateQuery}},
      {"$left", {1, 2, &VeriSystemFunctionCall::EvaluateQuery}},
      {"$right", {1, 2, &VeriSystemFunctionCall::EvaluateQuery}},
      {"$low", {1, 2, &VeriSystemFunctionCall::EvaluateQuery}},
      {"$high", {1, 2, &VeriSystemFunctionCall::EvaluateQuery}},
      {"$increment", {1, 2, &VeriSystemFunctionCall::EvaluateQuery}},
      {"$dimensions", {1, 1, &VeriSystemFunctionCall::EvaluateQuery}},
      {"$unpacked_dimensions", {1, 1, &VeriSystemFunctionCall::EvaluateQuery}},
  };
  auto found = functions.find(name);
  return found == functions.end() ? nullptr : &found->second;
}

VeriTypeInfo VeriSystemFunctionCall::TypeInfer(VeriDataFlow* flow) {
  VeriTypeInfo info;
  info.size = 32;
  info.is_signed = true;
  if (NumOfArgs() == 1 && (_name == "$signed" || _name == "$unsigned")) {
    info = _args->GetFirst()->TypeInfer(flow);
    info.is_signed = _name == "$signed";
    info.is_unsized = false;
  }
  return info;
}

OwnedValue VeriSystemFunctionCall::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  VeriNodeScope node(this);
  const Function* function = FindFunction(_name);
  if (!function) {
    Error("system function call %s not supported", _name.c_str());
    return nullptr;
  }
  unsigned count = NumOfArgs();
  if (count < function->min_args || count > function->max_args) {
    if (function->max_args == 1)
      Error("system call %s expects one argument", _name.c_str());
    else
      Error("%s expects at least %d arguments but no more than %d", _name.c_str(), static_cast<int>(function->min_args),
            static_cast<int>(function->max_args));
    return nullptr;
  }
  return FitTo((this->*function->evaluate)(flow), type, this);
}

OwnedValue VeriSystemFunctionCall::EvaluateSign(VeriDataFlow* flow) {
  OwnedValue value = _args->GetFirst()->Evaluate(flow);
  if (!value) return nullptr;
  if (value->IsReal()) {
    Error("argument %d to %s must be a %s", 1, _name.c_str(), "binary-valued integer or vector");
    return nullptr;
  }
  if (value->IsAggregate()) value = VeriValue::Pack(std::move(value));
  if (_name == "$signed")
    value->SetSigned();
  else
    value->SetUnsigned();
  return value;
}

OwnedValue VeriSystemFunctionCall::EvaluateClog2(VeriDataFlow* flow) {
  OwnedValue value = _args->GetFirst()->Evaluate(flow);
  if (!value) return nullptr;
  if (!value->IsConstant() || value->HasXZ()) {
    Error("argument %d to %s must be a %s", 1, _name.c_str(), "constant");
    return nullptr;
  }
  value->SetUnsigned(); // IEEE 1364-2005 17.11.1: the argument counts as unsigned
  std::string digits = value->BinaryString();
  size_t first = digits.find('1');
  if (first == std::string::npos) return VeriValue::FromInteger(0);
  bool is_power = digits.find('1', first + 1) == std::string::npos;
  auto top = static_cast<int>(digits.size() - 1 - first);
  return VeriValue::FromInteger(is_power ? top : top + 1);
}

OwnedValue VeriSystemFunctionCall::EvaluateBits(VeriDataFlow* flow) {
  VeriExpression* arg = _args->GetFirst();
  OwnedConstraint type = arg->EvaluateConstraint(flow);
  return VeriValue::FromInteger(static_cast<int>(type ? type->Size() : arg->TypeInfer(flow).size));
}

OwnedValue VeriSystemFunctionCall::EvaluateCount(VeriDataFlow* flow) {
  OwnedValue value = _args->GetFirst()->Evaluate(flow);
  if (!value) return nullptr;
  if (_name == "$isunknown") return VeriValue::FromNumber(value->HasXZ(), 1, false);
  unsigned size = value->Size();
  unsigned width = 1;
  while (size >> width) width++;
  OwnedValue sum = VeriValue::FromNumber(0, width, false);
  for (unsigned bit = 0; bit < size; bit++)
    sum = VeriValue::Binary(VERI_OPER_PLUS, std::move(sum),
                            VeriValue::Adjust(VeriValue::FromNet(value->GetBit(bit)), width, this), this);
  if (_name == "$countones") return sum;
  veri_oper oper = _name == "$onehot" ? VERI_OPER_EQ : VERI_OPER_LE;
  return VeriValue::Binary(oper, std::move(sum), VeriValue::FromNumber(1, width, false), this);
}

OwnedValue VeriSystemFunctionCall::EvaluateQuery(VeriDataFlow* flow) {
  OwnedConstraint type = _args->GetFirst()->EvaluateConstraint(flow);
  unsigned dimensions = 0;
  while (type && type->IndexConstraintAtDim(dimensions)) dimensions++;
  if (_name == "$dimensions") return VeriValue::FromInteger(static_cast<int>(dimensions));
  if (_name == "$unpacked_dimensions") return VeriValue::FromInteger(type ? static_cast<int>(type->NumUnpacked()) : 0);
  if (!dimensions) {
    Error("argument to %s does not denote an object or type with array dimensions, returning 'x", _name.c_str());
    return VeriValue::Digits(32, VERI_DIGIT_X);
  }
  int64_t dimension = 1;
  if (NumOfArgs() == 2) {
    OwnedValue number = _args->GetLast()->EvaluateConstant();
    if (!number) return nullptr;
    if (!number->ToInt64(&dimension)) dimension = 0;
  }
  if (dimension < 1 || dimension > dimensions) {
    Error("argument (%d) to %s does not denote a valid dimension in object with %d dimensions, returning 'x",
          static_cast<int>(std::clamp<int64_t>(dimension, INT_MIN, INT_MAX)), _name.c_str(),
          static_cast<int>(dimensions));
    return VeriValue::Digits(32, VERI_DIGIT_X);
  }
  const VeriRangeConstraint* range = type->IndexConstraintAtDim(static_cast<unsigned>(dimension) - 1);
  int left = range->LeftBound();
  int right = range->RightBound();
  if (_name == "$left") return VeriValue::FromInteger(left);
  if (_name == "$right") return VeriValue::FromInteger(right);
  if (_name == "$low") return VeriValue::FromInteger(std::min(left, right));
  if (_name == "$high") return VeriValue::FromInteger(std::max(left, right));
  if (_name == "$increment") return VeriValue::FromInteger(left >= right ? 1 : -1);
  return VeriValue::FromInteger(static_cast<int>(range->Length()));
}

void VeriSystemFunctionCall::AddToSensList(Set& ids) {
  for (VeriExpression* arg : ItemsOf<VeriExpression*>(_args)) arg->AddToSensList(ids);
}

// Assignments.

OwnedValue VeriAssignmentOperator::EvaluateRight(const VeriConstraint& target, VeriDataFlow* flow) {
  if (_token == VERI_ASSIGN_OP || _token == VERI_LESS_EQ) return _value->EvaluateFor(target, flow);
  VeriTypeInfo type = _target->TypeInfer(flow);
  veri_oper oper = RowOf(_token).binary;
  bool is_shift = veri_oper_class(oper) == VeriOperClass::SHIFT;
  OwnedValue right;
  if (!_value) {
    right = VeriValue::FromInteger(1);
  } else if (is_shift) {
    right = _value->Evaluate(flow);
  } else {
    type = Wider(type, _value->TypeInfer(flow));
    right = type.is_real ? _value->Evaluate(flow) : _value->EvaluateIn(flow, type);
  }
  OwnedValue left = type.is_real ? _target->Evaluate(flow) : _target->EvaluateIn(flow, type);
  OwnedValue result = VeriValue::Binary(oper, std::move(left), std::move(right), this);
  if (!result) return nullptr;
  return VeriValue::CheckAgainst(std::move(result), target, this, false);
}

void VeriAssignmentOperator::Execute(VeriDataFlow* flow, bool non_blocking) {
  VeriNodeScope node(this);
  OwnedConstraint type = _target->EvaluateConstraint(flow);
  if (!type) {
    // A target without a type has been reported, unless it is no target at all.
    if (!_target->AsName() && !_target->IsConcat()) _target->Error("illegal expression in target");
    return;
  }
  const bool is_plain = _token == VERI_ASSIGN_OP || _token == VERI_LESS_EQ;
  const VeriVariable* machine = is_plain ? VeriStateTable::EncodedVariable(_target) : nullptr;
  OwnedValue value = machine ? _value->EvaluateState(machine, flow) : EvaluateRight(*type, flow);
  if (value) _target->Assign(std::move(value), flow, non_blocking);
}

OwnedValue VeriAssignmentOperator::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  OwnedValue former = _gives_old_value ? _target->EvaluateIn(flow, type) : nullptr;
  Execute(flow, false);
  return _gives_old_value ? std::move(former) : _target->EvaluateIn(flow, type);
}

void VeriAssignmentOperator::AddToSensList(Set& ids) {
  if (_value) _value->AddToSensList(ids);
}

// Patterns and casts.

VeriTypeInfo VeriAssignmentPattern::TypeInfer(VeriDataFlow* flow) {
  VeriTypeInfo info;
  info.size = 0;
  for (const Part& part : _parts) info.size += part.value->TypeInfer(flow).size;
  if (!info.size) info.size = 1;
  return info;
}

OwnedValue VeriAssignmentPattern::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  std::vector<OwnedValue> values;
  for (const Part& part : _parts) {
    if (part.key || part.is_default) {
      Error("illegal assignment pattern - %s", "the context gives no type");
      return nullptr;
    }
    values.push_back(part.value->Evaluate(flow));
    if (!values.back()) return nullptr;
  }
  return FitTo(VeriValue::Concat(std::move(values), this), type, this);
}

namespace {

/// A key that names nothing in the target.
void ReportKey(VeriExpression& key, const VeriConstraint& target) {
  if (target.AsComposite()) return key.Error("%s is not a member of the structure", key.Image().c_str());
  OwnedValue index = key.EvaluateConstant();
  int64_t number = 0;
  const VeriRangeConstraint* range = target.IndexConstraint();
  if (index && range && index->ToInt64(&number))
    key.Error("index %d cannot fall outside the declared range [%d:%d] for dimension %d of array %s",
              static_cast<int>(number), range->LeftBound(), range->RightBound(), 1, "of this pattern");
}

} // namespace

OwnedValue VeriAssignmentPattern::EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) {
  VeriNodeScope node(this);
  if (!target.IsArrayConstraint() && !target.IsCompositeConstraint()) {
    Error("illegal assignment pattern - %s", "the target is neither an array nor a structure");
    return nullptr;
  }
  std::vector<OwnedValue> values(target.Length());
  OwnedValue otherwise;
  unsigned position = 0;
  for (const Part& part : _parts) {
    if (part.is_default) {
      const VeriConstraint* element = target.ElementConstraintAt(0);
      if (element) otherwise = part.value->EvaluateFor(*element, flow);
      continue;
    }
    int64_t place = position++;
    if (part.key) {
      position--;
      const VeriCompositeConstraint* composite = target.AsComposite();
      const char* name = part.key->GetName();
      if (composite) {
        place = name ? composite->MemberPosition(name) : -1;
      } else {
        OwnedValue index = part.key->EvaluateConstant();
        int64_t number = 0;
        place = index && index->ToInt64(&number) ? target.AsArray()->PosOf(number) : -1;
      }
    }
    const VeriConstraint* element =
        place >= 0 && place < target.Length() ? target.ElementConstraintAt(static_cast<unsigned>(place)) : nullptr;
    if (!element && part.key) {
      ReportKey(*part.key, target);
      return nullptr;
    }
    if (!element) {
      Error("expression has %d elements; expected %d", static_cast<int>(_parts.size()),
            static_cast<int>(target.Length()));
      return nullptr;
    }
    values[static_cast<size_t>(place)] = part.value->EvaluateFor(*element, flow);
    if (!values[static_cast<size_t>(place)]) return nullptr;
  }
  return target.CreatePatternValue(std::move(values), std::move(otherwise), this);
}

void VeriAssignmentPattern::AddToSensList(Set& ids) {
  for (const Part& part : _parts) part.value->AddToSensList(ids);
}

/// A cast is to a type, to a width, or to a sign alone.
bool VeriTypeCast::NamesType() const {
  if (const auto* primitive = dynamic_cast<const VeriPrimitiveTypeDef*>(_type)) return primitive->Type() != 0;
  if (_type->IsTypeName()) return true;
  VeriName* name = _type->AsName();
  return name && name->GetId() && name->GetId()->IsDataType();
}

OwnedConstraint VeriTypeCast::EvaluateConstraint(VeriDataFlow* flow) {
  if (NamesType()) return _type->EvaluateConstraint(flow);
  VeriTypeInfo info = TypeInfer(flow);
  if (info.is_real) return VeriRangeConstraint::RealType();
  return VeriUniformArrayConstraint::Vector(static_cast<int>(info.size) - 1, 0, info.is_signed);
}

VeriTypeInfo VeriTypeCast::TypeInfer(VeriDataFlow* flow) {
  if (NamesType()) {
    OwnedConstraint own = _type->EvaluateConstraint(flow);
    return own ? InfoOf(*own) : VeriTypeInfo();
  }
  VeriTypeInfo info = _operand->TypeInfer(flow);
  info.is_unsized = false;
  if (const auto* sign = dynamic_cast<const VeriPrimitiveTypeDef*>(_type)) {
    info.is_signed = sign->Signing() == VERI_SIGNED;
    return info;
  }
  OwnedValue size = _type->EvaluateConstant();
  int64_t number = 0;
  if (size && size->ToInt64(&number) && number <= 0)
    Error("the width of a cast must be positive, not %d", static_cast<int>(number));
  if (size && size->ToInt64(&number) && number > 0 && number < UINT_MAX) info.size = static_cast<unsigned>(number);
  return info;
}

/// A value of the type as an assignment to a variable of it would leave it, with no word about lost bits: to lose them
/// is what a cast is for.
OwnedValue VeriTypeCast::EvaluateTyped(const VeriConstraint& own, VeriDataFlow* flow) {
  if (dynamic_cast<VeriAssignmentPattern*>(_operand)) return _operand->EvaluateFor(own, flow);
  VeriTypeInfo operand = _operand->TypeInfer(flow);
  if (!operand.is_real) operand.size = std::max(operand.size, own.Size());
  OwnedValue value = _operand->EvaluateIn(flow, operand);
  if (value && value->IsAggregate()) value = VeriValue::Pack(std::move(value));
  if (value && value->IsReal() && !own.IsRealRange()) value = VeriValue::ToVectorValue(std::move(value));
  if (!value) return nullptr;
  if (own.IsRealRange()) return VeriValue::CheckAgainst(std::move(value), own, this, false);
  value = VeriValue::Adjust(std::move(value), own.Size(), this);
  if (!value) return nullptr;
  own.IsSigned() ? value->SetSigned() : value->SetUnsigned();
  return own.IsUnpacked() ? own.Unpack(std::move(value), this) : std::move(value);
}

OwnedValue VeriTypeCast::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  VeriNodeScope node(this);
  OwnedConstraint own = EvaluateConstraint(flow);
  return own ? FitTo(EvaluateTyped(*own, flow), type, this) : nullptr;
}

OwnedValue VeriTypeCast::EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) {
  if (target.IsPacked()) return VeriExpression::EvaluateFor(target, flow);
  VeriNodeScope node(this);
  OwnedConstraint own = EvaluateConstraint(flow);
  OwnedValue value = own ? EvaluateTyped(*own, flow) : nullptr;
  return VeriValue::CheckAgainst(std::move(value), target, this, false);
}

void VeriTypeCast::AddToSensList(Set& ids) { _operand->AddToSensList(ids); }

OwnedValue VeriEventExpression::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo&) {
  VeriNodeScope node(this);
  OwnedValue value = _operand->Evaluate(flow);
  if (!value || !_edge) return value;
  if (value->IsAggregate()) {
    Error("illegal edge expression involving an array");
    return nullptr;
  }
  if (value->Size() > 1)
    Warning("edge of vector %s is only sensitive to the LSB",
            _operand->AsName() ? _operand->Image().c_str() : "<multi-bit expression>");
  OwnedValue bit = VeriValue::FromNet(value->GetBit(0));
  return _edge == VERI_NEGEDGE ? VeriValue::Unary(VERI_OPER_NOT, std::move(bit), this) : std::move(bit);
}

// Literals.

VeriTypeInfo VeriLiteral::TypeInfer(VeriDataFlow*) {
  VeriTypeInfo info = InfoOf(Value());
  const VeriVectorValue* vector = Value().AsVector();
  info.is_unsized = Value().IsInt() || (vector && vector->IsFill()) || *_text == '\'';
  return info;
}

OwnedValue VeriLiteral::EvaluateIn(VeriDataFlow*, const VeriTypeInfo& type) {
  const VeriVectorValue* vector = Value().AsVector();
  if (vector && vector->IsFill() && !type.is_real) return VeriValue::Digits(type.size, vector->Digit(0));
  return FitTo(Value().Copy(), type, this);
}

OwnedValue VeriLiteral::EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) {
  if (target.IsString()) return Value().Copy();
  return VeriExpression::EvaluateFor(target, flow);
}

// Names.

namespace {

/// A local variable of a function that nothing was assigned to in this call. Whatever is assigned is marked.
void CheckHasValue(const VeriIdDef* id, const VeriValue* value, const VeriTreeNode* from) {
  if (!id->Is(IDF_IN_SUBPROGRAM) || !value || value->IsBlocking() || value->IsNonBlocking() || !value->IsConstant())
    return;
  const VeriIdDef* subprogram = id->DeclaringScope() ? id->DeclaringScope()->GetSubprogram() : nullptr;
  if (subprogram && subprogram->IsFunction() && value->HasX())
    from->Warning("variable %s may not be assigned a value prior to its use in this expression", id->Name());
}

/// What a process reads of an object at this point, borrowed; null for what is unknown or has no value.
const VeriValue* BorrowValue(VeriIdDef* id, VeriDataFlow* flow, const VeriTreeNode* from) {
  if (!flow || !(id->IsVar() || id->IsFunction())) return id->GetValue();
  flow->SensListCheck(id, from);
  const VeriValue* value = flow->BlockingValue(id, from);
  CheckHasValue(id, value, from);
  // Before its first assignment a variable of an initial construct is unknown.
  bool is_own = value == id->GetValue();
  return is_own && flow->IsInitial() && !id->IsNet() ? nullptr : value;
}

/// An object without a value: x for the variables of a process, a mistake for anything else.
OwnedValue UnknownValue(VeriIdDef* id, const VeriDataFlow* flow, const VeriTreeNode* from) {
  // Outside of processes it has no value before there are nets, where parameters and types are made.
  if (id->IsVar() && (!flow || id->IsNet())) {
    from->Error("expression %s is not constant", id->Name());
    return nullptr;
  }
  if (!id->IsVar() && !id->IsFunction()) {
    from->Error("%s is not an object that has a value", id->Name());
    return nullptr;
  }
  const VeriConstraint* type = id->GetConstraint();
  return type ? type->CreateXValue(from) : nullptr;
}

const VeriStateTable* StateTableOf(const VeriIdDef* id) {
  return id->IsVar() ? static_cast<const VeriVariable*>(id)->FsmStateTable() : nullptr;
}

OwnedValue ReadVariable(VeriIdDef* id, VeriDataFlow* flow, const VeriTreeNode* from) {
  const VeriValue* value = BorrowValue(id, flow, from);
  if (!value) return UnknownValue(id, flow, from);
  const VeriStateTable* table = StateTableOf(id);
  return table ? table->RestoreOriginalEncoding(*value, *id->GetConstraint(), from) : value->Copy();
}

/// The value that a partial assignment starts from.
OwnedValue CurrentValueOf(VeriIdDef* id, VeriDataFlow* flow, const VeriTreeNode* from) {
  const VeriValue* value = flow->IdValue(id);
  bool is_own = value == id->GetValue();
  if (value && !(is_own && flow->IsInitial())) return value->Copy();
  const VeriConstraint* type = id->GetConstraint();
  return type ? type->CreateXValue(from) : nullptr;
}

void StoreValue(VeriIdDef* id, OwnedValue value, VeriDataFlow* flow, bool non_blocking, bool is_partial) {
  bool was_blocking = is_partial && value->IsBlocking();
  bool was_non_blocking = is_partial && value->IsNonBlocking();
  value->ResetBlockingInfo();
  if (non_blocking || was_non_blocking) value->SetNonBlocking();
  if (!non_blocking || was_blocking) value->SetBlocking();
  flow->SetAssignValue(id, std::move(value));
}

veri_net_resolution ResolutionOf(const VeriIdDef* id) {
  const auto* variable = dynamic_cast<const VeriVariable*>(id);
  switch (variable ? variable->NetType() : 0) {
  case VERI_WAND:
  case VERI_TRIAND: return VERI_RESOLVE_AND;
  case VERI_WOR:
  case VERI_TRIOR: return VERI_RESOLVE_OR;
  case VERI_TRIREG: return VERI_RESOLVE_TRIREG;
  default: return VERI_RESOLVE_WIRE;
  }
}

/// Drives nets from a value; places out of range have no net.
void DriveNets(OwnedValue nets, OwnedValue value, const VeriIdDef* id, const VeriTreeNode* from) {
  if (!nets || !value) return;
  nets->NetAssignFrom(std::move(value), ResolutionOf(id), true, from);
}

/// Whether the name can be assigned to; reports it when not.
bool IsTarget(VeriIdDef* id, const VeriTreeNode* from) {
  if (!id) return false;
  if (id->IsVar() || id->IsFunction()) return true;
  if (id->IsGenVar())
    from->Error("cannot assign to generate variable %s here", id->Name());
  else
    from->Error("cannot assign to non-variable %s", id->Name());
  return false;
}

void AssignWhole(VeriIdDef* id, OwnedValue value, VeriDataFlow* flow, bool non_blocking, const VeriTreeNode* from) {
  if (!IsTarget(id, from)) return;
  if (const VeriStateTable* table = StateTableOf(id)) value = table->GetStateEncoding(std::move(value), from);
  if (flow && non_blocking && id->Is(IDF_AUTOMATIC))
    return from->Error("illegal assignment - %s", "automatic variables can't have non-blocking assignments");
  if (flow) return StoreValue(id, std::move(value), flow, non_blocking, false);
  if (id->Is(IDF_AUTOMATIC))
    return from->Error("illegal assignment - %s", "automatic variables can't have continuous assignments");
  if (VeriValue* nets = id->GetValue()) DriveNets(nets->Copy(), std::move(value), id, from);
}

OwnedValue NetsOfId(VeriIdDef* id, const VeriTreeNode* from) {
  if (!IsTarget(id, from)) return nullptr;
  const VeriValue* nets = id->GetValue();
  if (!nets) from->Error("%s is not an object that has a value", id->Name());
  return nets ? nets->Copy() : nullptr;
}

OwnedConstraint TypeOfId(VeriIdDef* id) {
  const VeriConstraint* type = id ? id->GetConstraint() : nullptr;
  if (type) return type->Copy();
  const VeriValue* value = id ? id->GetValue() : nullptr;
  if (!value || value->IsAggregate()) return nullptr;
  if (value->IsReal()) return VeriRangeConstraint::RealType();
  return VeriUniformArrayConstraint::Vector(static_cast<int>(value->Size()) - 1, 0, value->IsSigned());
}

} // namespace

VeriTypeInfo VeriName::TypeInfer(VeriDataFlow* flow) {
  OwnedConstraint type = EvaluateConstraint(flow);
  return type ? InfoOf(*type) : VeriTypeInfo();
}

void VeriName::AddToSensList(Set& ids) {
  VeriIdDef* id = EvaluateId();
  if (id && (id->IsVar() || id->IsFunction())) ids.Insert(id);
}

VeriIdDef* VeriIdRef::EvaluateId() { return _id ? _id->Current() : nullptr; }

namespace {

/// The scope that an object opens in this run: none for the body of a generate construct, which exists only as the
/// generated scopes of its rounds.
VeriScope* ExistingScope(VeriIdDef* id) {
  VeriScope* scope = id ? id->Current()->LocalScope() : nullptr;
  return scope && scope->Kind() != SCOPE_GENERATE ? scope : nullptr;
}

} // namespace

VeriScope* VeriIdRef::EvaluateScope() {
  if (!_id) return nullptr;
  for (VeriScope* scope = ElabState() ? ElabState()->CurrentGenerated() : nullptr; scope; scope = scope->Upper())
    if (VeriScope* found = scope->FindGenerated(_name)) return found;
  return ExistingScope(_id);
}

namespace {

bool IsEvent(const VeriIdDef* id) {
  const auto* variable = id->IsVar() ? static_cast<const VeriVariable*>(id) : nullptr;
  return variable && variable->Type() && variable->Type()->Type() == VERI_EVENT;
}

} // namespace

OwnedValue VeriIdRef::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  VeriIdDef* id = EvaluateId();
  if (!id) {
    Error("external reference %s not supported for synthesis", _name);
    return nullptr;
  }
  if (IsEvent(id)) Warning("use of events is not supported; event ignored");
  return FitTo(ReadVariable(id, flow, this), type, this);
}

OwnedValue VeriIdRef::EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) {
  return VeriExpression::EvaluateFor(target, flow);
}

OwnedValue VeriIdRef::EvaluateCode(VeriDataFlow* flow) {
  VeriVariable* variable = VeriStateTable::EncodedVariable(this);
  if (!variable) return nullptr;
  const VeriValue* value = BorrowValue(variable, flow, this);
  if (!value) return variable->FsmStateTable()->GetStateEncoding(UnknownValue(variable, flow, this), this);
  OwnedValue code = value->Copy();
  code->SetOnehot(); // merged branches may have lost the mark
  return code;
}

OwnedValue VeriIdRef::EvaluateState(const VeriVariable* target, VeriDataFlow* flow) {
  OwnedValue code = EvaluateCode(flow);
  if (!code) return VeriExpression::EvaluateState(target, flow);
  const VeriStateTable* own = VeriStateTable::EncodedVariable(this)->FsmStateTable();
  const VeriStateTable* table = target->FsmStateTable();
  return own == table ? std::move(code) : table->TranslateEncoding(*code, *own);
}

OwnedConstraint VeriIdRef::EvaluateConstraint(VeriDataFlow*) { return TypeOfId(EvaluateId()); }

void VeriIdRef::Assign(OwnedValue value, VeriDataFlow* flow, bool non_blocking) {
  VeriIdDef* id = EvaluateId();
  if (!id) return Error("external reference %s not supported for synthesis", _name);
  AssignWhole(id, std::move(value), flow, non_blocking, this);
}

OwnedValue VeriIdRef::EvaluateNets() { return NetsOfId(EvaluateId(), this); }

OwnedValue VeriScopedIdRef::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  VeriIdDef* id = EvaluateId();
  return id ? FitTo(ReadVariable(id, flow, this), type, this) : nullptr;
}

OwnedConstraint VeriScopedIdRef::EvaluateConstraint(VeriDataFlow*) { return TypeOfId(EvaluateId()); }

VeriScope* VeriSelectedName::EvaluateScope() {
  VeriScope* scope = _prefix->EvaluateScope();
  if (!scope) return nullptr;
  if (VeriScope* found = scope->FindGenerated(_suffix)) return found;
  return ExistingScope(scope->FindHere(_suffix.c_str()));
}

namespace {

/// Whether a step of the path fulfils the test.
template <class F> bool AnyStep(const VeriName* path, const F& test) {
  while (path) {
    if (const VeriIdDef* id = path->GetId(); id && test(id)) return true;
    if (const auto* selected = dynamic_cast<const VeriSelectedName*>(path))
      path = selected->GetPrefix();
    else if (const auto* indexed = dynamic_cast<const VeriIndexedName*>(path))
      path = indexed->GetPrefix();
    else
      path = nullptr;
  }
  return false;
}

} // namespace

namespace {

/// Whether the name means a declared object, and not a part of one.
bool IsWholeObject(VeriName* name) {
  if (auto* selected = dynamic_cast<VeriSelectedName*>(name)) return !selected->EvaluateIsMember();
  return !dynamic_cast<VeriIndexedName*>(name);
}

/// Whether the name leads through a scope that only elaboration knows: a round of a generate construct or an interface.
bool LeadsThroughScope(VeriName* name) {
  while (auto* indexed = dynamic_cast<VeriIndexedName*>(name)) name = indexed->GetPrefix();
  auto* selected = dynamic_cast<VeriSelectedName*>(name);
  return selected && (LeadsThroughScope(selected->GetPrefix()) || selected->GetPrefix()->EvaluateScope());
}

} // namespace

bool VeriSelectedName::EvaluateIsMember() {
  if (_is_member || _id || _prefix->GetId() || _prefix->EvaluateScope() || !LeadsThroughScope(_prefix))
    return _is_member;
  OwnedConstraint prefix = _prefix->EvaluateConstraint(nullptr);
  _is_member = prefix && prefix->IsCompositeConstraint();
  return _is_member;
}

VeriIdDef* VeriSelectedName::EvaluateId() {
  if (EvaluateIsMember()) return _prefix->EvaluateId();
  if (_id) {
    const bool leads_into_subprogram =
        AnyStep(_prefix, [](const VeriIdDef* id) { return id->IsFunction() || id->IsTask(); });
    if (!leads_into_subprogram) return _id->Current();
    Error("can't synthesize hierarchical reference to object %s declared in function or task", _id->Name());
    return nullptr;
  }
  VeriScope* scope = _prefix->EvaluateScope();
  VeriIdDef* id = scope ? scope->FindHere(_suffix.c_str()) : nullptr;
  if (id) return id->Current();
  ReportBrokenPath(scope != nullptr);
  return nullptr;
}

void VeriSelectedName::ReportBrokenPath(bool prefix_is_found) const {
  const auto* indexed = dynamic_cast<const VeriIndexedName*>(_prefix);
  const VeriIdDef* prefix = _prefix->GetId();
  if (AnyStep(_prefix, [](const VeriIdDef* id) { return id->IsInst() || id->IsDesignUnit(); }))
    Error("external reference %s not supported for synthesis", Image().c_str());
  else if (prefix_is_found)
    Error("cannot resolve hierarchy path element %s - no matching declaration", _suffix.c_str());
  else if (indexed && indexed->Indices().Size() > 1)
    Error("hierarchical prefix %s has too many indicies", _prefix->Image().c_str());
  else if (indexed && indexed->Indices().GetFirst()->AsRange())
    Error("hierarchical name %s is not yet supported", Image().c_str());
  else if (prefix && !prefix->IsBlock())
    Error("%s is not a hierarchy", _prefix->Image().c_str());
  else
    Error("cannot resolve hierarchy path element %s - no matching declaration", _prefix->Image().c_str());
}

int VeriSelectedName::MemberPosition(const VeriConstraint& prefix) const {
  const VeriCompositeConstraint* composite = prefix.AsComposite();
  int position = composite ? composite->MemberPosition(_suffix.c_str()) : -1;
  if (position < 0) Error("%s is not declared under this prefix", _suffix.c_str());
  return position;
}

OwnedConstraint VeriSelectedName::EvaluateConstraint(VeriDataFlow* flow) {
  if (_method != METHOD_NONE) return MethodConstraint();
  if (!EvaluateIsMember()) return TypeOfId(EvaluateId());
  OwnedConstraint prefix = _prefix->EvaluateConstraint(flow);
  int position = prefix ? MemberPosition(*prefix) : -1;
  return position < 0 ? nullptr : prefix->ElementConstraintAt(static_cast<unsigned>(position))->Copy();
}

VeriTypeInfo VeriSelectedName::TypeInfer(VeriDataFlow* flow) {
  return _method != METHOD_NONE ? MethodInfo(this) : VeriName::TypeInfer(flow);
}

void VeriSelectedName::AddToSensList(Set& ids) {
  if (EvaluateIsMember() || _method != METHOD_NONE)
    _prefix->AddToSensList(ids);
  else
    VeriName::AddToSensList(ids);
}

OwnedValue VeriSelectedName::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  if (_method != METHOD_NONE) return FitTo(EvaluateMethod(nullptr, flow), type, this);
  if (!EvaluateIsMember()) {
    VeriIdDef* id = EvaluateId();
    return id ? FitTo(ReadVariable(id, flow, this), type, this) : nullptr;
  }
  OwnedConstraint prefix = _prefix->EvaluateConstraint(flow);
  OwnedValue value = prefix ? _prefix->Evaluate(flow) : nullptr;
  int position = value ? MemberPosition(*prefix) : -1;
  if (position < 0) return nullptr;
  return FitTo(prefix->AsComposite()->ReadMember(std::move(value), static_cast<unsigned>(position)), type, this);
}

void VeriSelectedName::Assign(OwnedValue value, VeriDataFlow* flow, bool non_blocking) {
  if (!EvaluateIsMember()) {
    VeriIdDef* id = EvaluateId();
    if (id) AssignWhole(id, std::move(value), flow, non_blocking, this);
    return;
  }
  if (!flow) {
    VeriIdDef* id = EvaluateId();
    return DriveNets(EvaluateNets(), std::move(value), id, this);
  }
  // The whole structure with one member replaced is assigned to the prefix.
  OwnedConstraint prefix = _prefix->EvaluateConstraint(flow);
  int position = prefix ? MemberPosition(*prefix) : -1;
  if (position < 0) return;
  VeriIdDef* id = _prefix->EvaluateId();
  if (!IsTarget(id, this)) return;
  OwnedValue whole = _prefix->CurrentValue(flow);
  if (!whole) return;
  bool was_blocking = whole->IsBlocking();
  bool was_non_blocking = whole->IsNonBlocking();
  whole = prefix->AsComposite()->AssignMember(std::move(whole), static_cast<unsigned>(position), std::move(value));
  if (!whole) return;
  if (!IsWholeObject(_prefix)) return _prefix->Assign(std::move(whole), flow, non_blocking);
  whole->ResetBlockingInfo();
  if (was_blocking) whole->SetBlocking();
  if (was_non_blocking) whole->SetNonBlocking();
  StoreValue(id, std::move(whole), flow, non_blocking, true);
}

OwnedValue VeriName::CurrentValue(VeriDataFlow* flow) {
  VeriIdDef* id = EvaluateId();
  return id ? CurrentValueOf(id, flow, this) : nullptr;
}

OwnedValue VeriSelectedName::CurrentValue(VeriDataFlow* flow) {
  if (!EvaluateIsMember()) return VeriName::CurrentValue(flow);
  OwnedConstraint prefix = _prefix->EvaluateConstraint(flow);
  int position = prefix ? MemberPosition(*prefix) : -1;
  OwnedValue whole = position < 0 ? nullptr : _prefix->CurrentValue(flow);
  return whole ? prefix->AsComposite()->ReadMember(std::move(whole), static_cast<unsigned>(position)) : nullptr;
}

OwnedValue VeriSelectedName::EvaluateNets() {
  if (!EvaluateIsMember()) return NetsOfId(EvaluateId(), this);
  OwnedConstraint prefix = _prefix->EvaluateConstraint(nullptr);
  OwnedValue nets = prefix ? _prefix->EvaluateNets() : nullptr;
  int position = nets ? MemberPosition(*prefix) : -1;
  if (position < 0) return nullptr;
  return prefix->AsComposite()->ReadMember(std::move(nets), static_cast<unsigned>(position));
}

VeriScope* VeriIndexedName::EvaluateScope() {
  // One round of a generate loop: label[value].
  if (_indices.Size() != 1 || _indices.GetFirst()->AsRange()) return nullptr;
  OwnedValue index = _indices.GetFirst()->EvaluateConstant();
  int64_t number = 0;
  if (!index || !index->ToInt64(&number)) return nullptr;
  std::string suffix = "[" + std::to_string(number) + "]";
  if (const auto* selected = dynamic_cast<VeriSelectedName*>(_prefix)) {
    VeriScope* scope = selected->GetPrefix()->EvaluateScope();
    return scope ? scope->FindGenerated(selected->GetSuffix() + suffix) : nullptr;
  }
  const char* name = _prefix->GetName();
  if (!name || !ElabState()) return nullptr;
  for (VeriScope* scope = ElabState()->CurrentGenerated(); scope; scope = scope->Upper())
    if (VeriScope* found = scope->FindGenerated(name + suffix)) return found;
  return nullptr;
}

bool VeriIndexedName::EvaluateIndices(VeriDataFlow* flow, VeriIndices& out) {
  for (VeriExpression* expression : _indices) {
    VeriIndex index;
    if (const VeriRange* range = expression->AsRange()) {
      index.kind = range->GetPartSelectToken() == VERI_PLUS_COLON    ? VERI_INDEX_UP
                   : range->GetPartSelectToken() == VERI_MINUS_COLON ? VERI_INDEX_DOWN
                                                                     : VERI_INDEX_RANGE;
      bool is_constant = index.kind == VERI_INDEX_RANGE;
      index.left = is_constant ? range->GetLeft()->EvaluateConstant() : range->GetLeft()->Evaluate(flow);
      index.right = range->GetRight()->EvaluateConstant();
      if (!index.right) return false;
    } else {
      index.left = expression->Evaluate(flow);
    }
    if (!index.left) return false;
    out.push_back(std::move(index));
  }
  return true;
}

OwnedConstraint VeriIndexedName::EvaluateConstraint(VeriDataFlow* flow) {
  OwnedConstraint prefix = _prefix->EvaluateConstraint(flow);
  VeriIndices indices;
  if (!prefix || !EvaluateIndices(flow, indices)) return nullptr;
  return VeriValue::PartialConstraint(*prefix, indices);
}

VeriTypeInfo VeriIndexedName::TypeInfer(VeriDataFlow* flow) {
  // Bits are by far the most frequent, and need no evaluation of the index.
  OwnedConstraint prefix = _prefix->EvaluateConstraint(flow);
  if (!prefix) return {};
  const VeriConstraint* element = prefix->ElementConstraintAtDim(_indices.Size());
  // A bit or element of a packed object is unsigned, unless the element is of a named type that is signed, which its
  // constraint knows (IEEE 1364-2005 5.5.1, IEEE 1800-2017 7.4.1).
  if (element && !_indices.GetLast()->AsRange()) return InfoOf(*element);
  OwnedConstraint type = EvaluateConstraint(flow);
  if (!type) return {};
  VeriTypeInfo info = InfoOf(*type);
  if (_indices.GetLast()->AsRange() && (_indices.Size() > prefix->NumUnpacked() || type->IsPacked()))
    info.is_signed = false;
  return info;
}

OwnedValue VeriIndexedName::Read(VeriDataFlow* flow) {
  VeriNodeScope node(this);
  OwnedConstraint prefix = _prefix->EvaluateConstraint(flow);
  VeriIndices indices;
  if (!prefix) {
    _prefix->EvaluateId();
    return nullptr;
  }
  if (!EvaluateIndices(flow, indices)) return nullptr;
  std::string name = _prefix->Image();
  // A plain object is read in place: copying a large array for each read of an element would be slow.
  VeriIdDef* id = dynamic_cast<VeriIdRef*>(_prefix) ? _prefix->EvaluateId() : nullptr;
  const VeriValue* borrowed = id ? BorrowValue(id, flow, this) : nullptr;
  if (borrowed && borrowed->IsDualPortValue()) return VeriDualPortValue::Read(id, flow, this, indices);
  if (borrowed) return VeriValue::ReadPartial(*borrowed, *prefix, indices, name.c_str(), this);
  OwnedValue value = _prefix->Evaluate(flow);
  return value ? VeriValue::ReadPartial(*value, *prefix, indices, name.c_str(), this) : nullptr;
}

OwnedValue VeriIndexedName::EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) {
  OwnedValue value = Read(flow);
  if (!value || value->IsAggregate()) return value;
  if (!value->IsReal()) TypeInfer(flow).is_signed ? value->SetSigned() : value->SetUnsigned();
  return FitTo(std::move(value), type, this);
}

OwnedValue VeriIndexedName::EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) {
  return VeriExpression::EvaluateFor(target, flow);
}

void VeriIndexedName::Assign(OwnedValue value, VeriDataFlow* flow, bool non_blocking) {
  VeriNodeScope node(this);
  VeriIdDef* id = _prefix->EvaluateId();
  if (!IsTarget(id, this)) return;
  if (!flow) return DriveNets(EvaluateNets(), std::move(value), id, this);
  OwnedConstraint prefix = _prefix->EvaluateConstraint(flow);
  VeriIndices indices;
  if (!prefix || !EvaluateIndices(flow, indices)) return;
  // What the name selects from: a whole object, or a part that is itself assigned as a whole.
  bool is_object = IsWholeObject(_prefix);
  OwnedValue whole = _prefix->CurrentValue(flow);
  if (!whole) return;
  bool was_blocking = whole->IsBlocking();
  bool was_non_blocking = whole->IsNonBlocking();
  std::string name = _prefix->Image();
  whole = whole->IsDualPortValue()
              ? VeriDualPortValue::Write(std::move(whole), this, std::move(indices), std::move(value), non_blocking)
              : VeriValue::AssignPartial(std::move(whole), *prefix, indices, std::move(value), name.c_str(), this);
  if (!whole) return;
  if (!is_object) return _prefix->Assign(std::move(whole), flow, non_blocking);
  whole->ResetBlockingInfo();
  if (was_blocking) whole->SetBlocking();
  if (was_non_blocking) whole->SetNonBlocking();
  StoreValue(id, std::move(whole), flow, non_blocking, true);
}

OwnedValue VeriIndexedName::CurrentValue(VeriDataFlow* flow) {
  OwnedConstraint prefix = _prefix->EvaluateConstraint(flow);
  VeriIndices indices;
  OwnedValue whole = prefix ? _prefix->CurrentValue(flow) : nullptr;
  if (!whole || !EvaluateIndices(flow, indices)) return nullptr;
  if (whole->IsDualPortValue()) {
    // A port of a memory writes whole words: parts of them by name need registers.
    if (const auto* memory = dynamic_cast<const VeriVariable*>(_prefix->EvaluateId())) ElabState()->RefuseRam(memory);
    return nullptr;
  }
  return VeriValue::ReadPartial(*whole, *prefix, indices, _prefix->Image().c_str(), this);
}

OwnedValue VeriIndexedName::EvaluateNets() {
  OwnedConstraint prefix = _prefix->EvaluateConstraint(nullptr);
  VeriIndices indices;
  if (!prefix || !EvaluateIndices(nullptr, indices)) return nullptr;
  for (const VeriIndex& index : indices)
    if (!index.left->IsConstant()) {
      Error("illegal expression in target");
      return nullptr;
    }
  OwnedValue nets = _prefix->EvaluateNets();
  if (!nets) return nullptr;
  OwnedValue part = VeriValue::ReadPartial(*nets, *prefix, indices, _prefix->Image().c_str(), this);
  if (!part || part->IsAggregate()) return part;
  // Out of range there is nothing to drive.
  std::unique_ptr<VeriNonConstVal> targets = VeriValue::ToNonConstVal(std::move(part));
  for (unsigned pos = 0; targets && pos < targets->Size(); pos++)
    if (veri_is_digit(targets->Nets().At(pos))) targets->Nets().Set(pos, nullptr);
  return targets;
}

void VeriIndexedName::AddToSensList(Set& ids) {
  _prefix->AddToSensList(ids);
  for (VeriExpression* index : _indices) index->AddToSensList(ids);
}

// Types.

VeriTypeInfo VeriTypeDef::TypeInfer(VeriDataFlow*) {
  OwnedConstraint type = CreateConstraint();
  return type ? InfoOf(*type) : VeriTypeInfo();
}

OwnedConstraint VeriTypeDef::AddPackedRanges(OwnedConstraint element, const VeriNodes<VeriRange>* ranges,
                                             bool is_signed, const VeriTreeNode* from) {
  for (unsigned pos = ranges ? ranges->Size() : 0; element && pos-- > 0;) {
    int left = 0;
    int right = 0;
    if (!ranges->At(pos)->EvaluateBounds(&left, &right)) return nullptr;
    VeriRangeConstraint index(left, right);
    // Only the vector as a whole is signed, its parts are not.
    bool sign = is_signed && pos == 0;
    uint64_t bits = static_cast<uint64_t>(index.Length()) * element->Size();
    if (!veri_width_is_supported(bits, ranges->At(pos))) return nullptr;
    element = std::make_unique<VeriUniformArrayConstraint>(index, std::move(element), true /* packed */, sign);
  }
  (void)from;
  return element;
}

OwnedConstraint VeriPrimitiveTypeDef::CreateConstraint() const {
  bool is_signed = _signing == VERI_SIGNED;
  auto integer = [&](unsigned width, unsigned states) -> OwnedConstraint {
    return VeriRangeConstraint::Integer(width, _signing != VERI_UNSIGNED, states);
  };
  switch (_token) {
  case VERI_INTEGER: return integer(32, 4);
  case VERI_INT: return integer(32, 2);
  case VERI_SHORTINT: return integer(16, 2);
  case VERI_LONGINT: return integer(64, 2);
  case VERI_BYTE: return integer(8, 2);
  case VERI_TIME: return VeriRangeConstraint::Integer(64, is_signed, 4);
  case VERI_REAL:
  case VERI_REALTIME:
  case VERI_SHORTREAL: return VeriRangeConstraint::RealType();
  case VERI_STRING: {
    auto text = VeriUniformArrayConstraint::Vector(7, 0);
    text->SetString();
    return text;
  }
  default: break;
  }
  unsigned states = _token == VERI_BIT ? 2 : 4;
  bool is_scalar = !_ranges || !_ranges->Size();
  return AddPackedRanges(std::make_unique<VeriLogicConstraint>(states, is_signed && is_scalar), _ranges, is_signed,
                         this);
}

OwnedConstraint VeriTypeName::CreateConstraint() const {
  VeriIdDef* id = _name->EvaluateId();
  const VeriConstraint* type = id ? id->GetConstraint() : nullptr;
  if (!type) return nullptr;
  // The elements have the sign of their type, the vector of them has none (IEEE 1800-2017 7.4.1).
  return AddPackedRanges(type->Copy(), _ranges, false /* is_signed */, this);
}

OwnedConstraint VeriArrayTypeDef::CreateConstraint() const {
  OwnedConstraint element = _element->CreateConstraint();
  if (!element) return nullptr;
  const bool is_signed = element->IsSigned();
  return AddPackedRanges(std::move(element), _ranges, is_signed, this);
}

OwnedConstraint VeriEnumTypeDef::BaseConstraint() const {
  return _base ? _base->CreateConstraint() : VeriRangeConstraint::Integer(32, true, 2);
}

namespace {

/// The value that an enumeration gives to a name (IEEE 1800-2005 clause 4.10); null after an error.
OwnedValue EvaluateMember(const VeriIdDecl& element, const VeriConstraint& base) {
  OwnedValue value = element.Value()->EvaluateConstant();
  if (!value) return nullptr;
  if (value->HasXZ() && base.NumLogicStates() == 2) {
    element.Error("enum name %s has an unknown value but a type of two states", element.GetId()->Name());
    return nullptr;
  }
  int64_t number = 0;
  const unsigned width = base.Size();
  if (width < 63 && value->ToInt64(&number)) {
    const int64_t limit = int64_t{1} << (base.IsSigned() ? width - 1 : width);
    if (number >= limit || number < (base.IsSigned() ? -limit : 0)) {
      element.Error("value of enum name %s does not fit in %d bits", element.GetId()->Name(), static_cast<int>(width));
      return nullptr;
    }
  }
  return element.Value()->EvaluateFor(base, nullptr);
}

} // namespace

void VeriEnumTypeDef::EvaluateMembers() const {
  OwnedConstraint base = BaseConstraint();
  if (!base) return;
  if (base->IsRealRange()) {
    Error("an enumeration cannot have the base type %s", _base->Image().c_str());
    return;
  }
  auto number = [&](int value) { return VeriValue::FromNumber(value, base->Size(), base->IsSigned()); };
  OwnedValue former_value; // of the member before; null for the first
  std::map<std::string, const char*> names;
  for (VeriIdDecl* element : *_elements) {
    VeriNodeScope node(element);
    VeriIdDef* id = element->GetId()->Current();
    OwnedValue value = element->Value() ? EvaluateMember(*element, *base)
                       : former_value   ? VeriValue::Binary(VERI_OPER_PLUS, std::move(former_value), number(1))
                                        : number(0);
    if (!element->Value() && (!value || value->HasXZ()))
      element->Error("enum name %s needs a value because the one before it is unknown", id->Name());
    if (!value || !value->IsConstant()) value = VeriValue::Digits(base->Size(), VERI_DIGIT_X);
    const auto [former, is_new] = names.emplace(value->BinaryString(), id->Name());
    if (!is_new && !value->HasXZ()) element->Error("enum name %s has the same value as %s", id->Name(), former->second);
    former_value = value->Copy();
    id->SetValue(std::make_unique<VeriEnum>(id, std::move(value)));
  }
}

OwnedConstraint VeriEnumTypeDef::CreateConstraint() const {
  OwnedConstraint base = BaseConstraint();
  if (!base) return nullptr;
  std::vector<const VeriValue*> members;
  for (VeriIdDecl* element : *_elements)
    if (const VeriValue* value = element->GetId()->Current()->GetValue()) members.push_back(value);
  return VeriRangeConstraint::Enumeration(*base, members);
}

OwnedConstraint VeriStructUnionTypeDef::CreateConstraint() const {
  if (_is_tagged) {
    Error("no support for %s (SystemVerilog)", "tagged unions");
    return nullptr;
  }
  std::vector<VeriCompositeConstraint::Member> members;
  for (VeriDataDecl* declaration : *_members)
    for (VeriIdDecl* id : *declaration->Ids()) {
      OwnedConstraint type = veri_object_constraint(declaration->DataType(), id->Ranges(), id);
      if (!type) return nullptr;
      if (_token == VERI_UNION && _packed && !members.empty() && type->TotalBits() != members.front().type->TotalBits())
        id->Error("member %s of the packed union has %d bits, but the first one has %d", id->GetId()->Name(),
                  static_cast<int>(type->TotalBits()), static_cast<int>(members.front().type->TotalBits()));
      members.push_back({id->GetId()->Name(), id->GetId(), std::move(type)});
    }
  auto kind = _token == VERI_UNION ? VeriCompositeConstraint::UNION : VeriCompositeConstraint::STRUCT;
  return std::make_unique<VeriCompositeConstraint>(kind, std::move(members), _packed, _signing == VERI_SIGNED, this);
}

OwnedConstraint veri_object_constraint(const VeriTypeDef* type, const VeriNodes<VeriRange>* unpacked,
                                       const VeriTreeNode* from) {
  OwnedConstraint element = type ? type->CreateConstraint() : std::make_unique<VeriLogicConstraint>();
  for (unsigned pos = unpacked ? unpacked->Size() : 0; element && pos-- > 0;) {
    int left = 0;
    int right = 0;
    if (!unpacked->At(pos)->EvaluateBounds(&left, &right)) return nullptr;
    VeriRangeConstraint index(left, right);
    bool is_signed = element->IsSigned();
    element = std::make_unique<VeriUniformArrayConstraint>(index, std::move(element), false /* packed */, is_signed);
  }
  if (element && !veri_object_size_is_supported(element->TotalBits(), from)) return nullptr;
  return element;
}

OwnedValue VeriOpen::EvaluateIn(VeriDataFlow*, const VeriTypeInfo&) {
  Error("no support for %s (SystemVerilog)", "$ as a value");
  return nullptr;
}

OwnedValue VeriPattern::EvaluateIn(VeriDataFlow*, const VeriTypeInfo&) {
  Error("no support for %s (SystemVerilog)", "pattern matching");
  return nullptr;
}
