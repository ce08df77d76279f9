// Operators on values: which form of a value computes them, and how operands are brought to one form.
#include <algorithm>
#include <cmath>
#include <limits>

#include "containers/set.h"
#include "database/instance.h"
#include "database/net.h"
#include "verilog/vericonstraint.h"
#include "verilog/veritreenode.h"
#include "verilog/verivalue.h"
#include "verilog/verivalue_logic.h"
#include "verilog/verivalue_report.h"

namespace {
OwnedValue digit_value(veri_digit digit) { return VeriValue::Digits(1, digit); }
OwnedValue bool_value(bool on) { return digit_value(on ? VERI_DIGIT_1 : VERI_DIGIT_0); }

OwnedValue illegal_on_aggregates(veri_oper oper, const VeriTreeNode* from) {
  veri_at(from).Error("no support for non-constant operation with operator %s", veri_oper_text(oper));
  return nullptr;
}

/// The encoded value of an enumeration's name.
OwnedValue plain_value(OwnedValue value) {
  if (!value || !value->IsEnum()) return value;
  bool is_signed = value->IsSigned();
  value = value->AsEnum()->TakeEncodedValue();
  is_signed ? value->SetSigned() : value->SetUnsigned();
  return value;
}
} // namespace

// Fits.

OwnedValue VeriValue::Adjust(OwnedValue value, unsigned width, const VeriTreeNode* from) {
  if (!value || !width || value->IsReal() || value->IsAggregate() || value->Size() == width) return value;
  if (!veri_width_is_supported(width, from)) return nullptr;
  if (VeriNonConstVal* nets = value->AsNonConst()) {
    nets->Resize(width, from);
    return value;
  }
  std::unique_ptr<VeriVectorValue> vector = ToVectorValue(plain_value(std::move(value)));
  if (width > vector->Size() && !vector->IsFill() && vector->SignDigit() > VERI_DIGIT_1)
    veri_at(from).Warning("x/z extended in the significant bits of constant.");
  vector->Resize(width);
  return vector;
}

namespace {
/// Whether a width holds the value: the bits above it are 0, or those of a negative number repeat its sign.
bool loses_nothing(const VeriValue& value, unsigned width) {
  Net* zero = veri_digit_net(VERI_DIGIT_0);
  const bool is_negative = value.IsSigned() && width && value.GetBit(value.Size() - 1) != zero;
  Net* extension = is_negative ? value.GetBit(width - 1) : zero;
  for (unsigned bit = width; bit < value.Size(); bit++)
    if (value.GetBit(bit) != extension) return false;
  return true;
}

void report_truncation(const VeriValue& value, unsigned expression_width, bool is_unsized, unsigned width,
                       const VeriTreeNode* from) {
  if (expression_width <= width) return;
  if (is_unsized && value.IsConstant() && loses_nothing(value, width))
    veri_at(from).Info("truncated unsized constant literal with size %d to size %d with no loss",
                       static_cast<int>(expression_width), static_cast<int>(width));
  else
    veri_at(from).Warning("expression size %d truncated to fit in target size %d", static_cast<int>(expression_width),
                          static_cast<int>(width));
}

OwnedValue check_elements(OwnedValue value, const VeriConstraint& target, const VeriTreeNode* from, bool sign_first) {
  VeriAggregateValue* aggregate = value->AsAggregate();
  if (aggregate->NumOfElements() != target.Length()) {
    veri_at(from).Error("expression has %d elements; expected %d", static_cast<int>(aggregate->NumOfElements()),
                        static_cast<int>(target.Length()));
    return nullptr;
  }
  for (unsigned i = 0; i < aggregate->NumOfElements(); i++) {
    const VeriConstraint* element = target.ElementConstraintAt(i);
    if (!element) return nullptr;
    OwnedValue fitted = VeriValue::CheckAgainst(aggregate->TakeElement(i), *element, from, sign_first);
    if (!fitted) return nullptr;
    aggregate->SetElement(i, std::move(fitted));
  }
  return value;
}
} // namespace

OwnedValue VeriValue::CheckAgainst(OwnedValue value, const VeriConstraint& target, const VeriTreeNode* from,
                                   bool sign_first, unsigned expression_width, bool is_unsized) {
  if (!value || value->IsDualPortValue() || target.IsInterfaceConstraint()) return value;
  if (target.IsRealRange()) {
    if (value->IsConstant() && !value->IsAggregate()) return ToRealValue(std::move(value));
    veri_at(from).Error("synthesis of 'real' values is not supported");
    return nullptr;
  }
  if (target.IsString()) {
    if (value->IsConstant()) return value;
    veri_at(from).Error("no support for %s (SystemVerilog)", "synthesis of string values");
    return nullptr;
  }
  if (value->IsAggregate() && target.IsPacked() && !value->IsUnpacked()) value = Pack(std::move(value));
  if (!value) return nullptr;
  if (value->IsAggregate() != target.IsUnpacked()) {
    veri_at(from).Error("cannot assign or compare packed values to unpacked values or vice versa");
    return nullptr;
  }
  if (value->IsReal()) { // rounded to the target (IEEE 1364-2005 4.8.2), with no word about the bits above
    value = Adjust(ToVectorValue(std::move(value)), target.Size(), from);
    expression_width = 0;
    if (!value) return nullptr;
  }
  if (value->IsAggregate()) return check_elements(std::move(value), target, from, sign_first);

  auto take_sign = [&] { target.IsSigned() ? value->SetSigned() : value->SetUnsigned(); };
  if (sign_first) take_sign();
  unsigned width = target.Size();
  report_truncation(*value, expression_width, is_unsized, width, from);
  if (value->Size() != width) {
    value = Adjust(std::move(value), width, from);
    if (!value) return nullptr;
  }
  if (!sign_first) take_sign();
  if (value->IsInt() && !value->IsSigned()) value = ToVectorValue(std::move(value));
  if (VeriVectorValue* vector = value->AsVector()) vector->SetFill(false);
  if (target.NumLogicStates() == 2 && value->HasXZ()) {
    veri_at(from).Warning("automatically converting 4-state value to 2-state by replacing X and Z with 0");
    value = ToTwoState(std::move(value));
  }
  target.ConstrainBy(*value, from);
  return value;
}

// Constants of one class.

namespace {
/// Both operands are known 32-bit signed numbers.
OwnedValue int_arithmetic(veri_oper oper, int64_t a, int64_t b, const VeriTreeNode* from) {
  int64_t result = 0;
  switch (oper) {
  case VERI_OPER_PLUS: result = a + b; break;
  case VERI_OPER_MINUS: return VeriValue::FromInteger(static_cast<int>(a - b));
  case VERI_OPER_MULTIPLY: result = a * b; break;
  default:
    if (b == 0) {
      veri_at(from).Warning("attempt to divide by 0; returning x");
      return digit_value(VERI_DIGIT_X);
    }
    return VeriValue::FromInteger(static_cast<int>(oper == VERI_OPER_DIVIDE ? a / b : a % b));
  }
  if (result != static_cast<int>(result)) veri_at(from).Warning("constant value overflow");
  return VeriValue::FromInteger(static_cast<int>(result));
}

/// IEEE 1364-2005 table 5-6 for the exponents and bases that are no plain power.
OwnedValue int_power(int base, int exponent) {
  if (exponent < 0) {
    if (base == 0) return digit_value(VERI_DIGIT_X);
    if (base == 1 || base == -1) return VeriValue::FromInteger(exponent % 2 ? base : 1);
    return VeriValue::FromInteger(0);
  }
  uint32_t result = 1;
  auto factor = static_cast<uint32_t>(base);
  for (auto count = static_cast<unsigned>(exponent); count; count >>= 1) {
    if (count & 1) result *= factor;
    factor *= factor;
  }
  return VeriValue::FromInteger(static_cast<int>(result));
}

bool compare(veri_oper oper, int order) {
  switch (oper) {
  case VERI_OPER_LT: return order < 0;
  case VERI_OPER_GT: return order > 0;
  case VERI_OPER_LE: return order <= 0;
  case VERI_OPER_GE: return order >= 0;
  case VERI_OPER_NE:
  case VERI_OPER_CASE_NE:
  case VERI_OPER_WILD_NE: return order != 0;
  default: return order == 0;
  }
}

/// Null for the operators that integers leave to vectors.
OwnedValue int_binary(veri_oper oper, int a, int b, const VeriTreeNode* from) {
  switch (veri_oper_class(oper)) {
  case VeriOperClass::ARITHMETIC: return int_arithmetic(oper, a, b, from);
  case VeriOperClass::POWER: return int_power(a, b);
  case VeriOperClass::RELATIONAL:
  case VeriOperClass::EQUALITY: return bool_value(compare(oper, a < b ? -1 : a > b));
  case VeriOperClass::LOGICAL: return bool_value(oper == VERI_OPER_LOG_AND ? a && b : a || b);
  case VeriOperClass::BITWISE:
    switch (oper) {
    case VERI_OPER_AND: return VeriValue::FromInteger(a & b);
    case VERI_OPER_OR: return VeriValue::FromInteger(a | b);
    case VERI_OPER_XOR: return VeriValue::FromInteger(a ^ b);
    default: return VeriValue::FromInteger(~(a ^ b));
    }
  case VeriOperClass::SHIFT: {
    // The amount is unsigned: a negative one is larger than any width.
    bool all = b < 0 || b > 31;
    auto bits = static_cast<uint32_t>(a);
    if (oper == VERI_OPER_ARITH_SHIFT_RIGHT) return VeriValue::FromInteger(a >> (all ? 31 : b));
    bits = all ? 0 : oper == VERI_OPER_SHIFT_RIGHT ? bits >> b : bits << b;
    return VeriValue::FromInteger(static_cast<int>(bits));
  }
  case VeriOperClass::CONCATENATION: return nullptr;
  case VeriOperClass::UNARY:
  case VeriOperClass::REDUCTION: break;
  }
  veri_at(from).Error("illegal operator on integer number");
  return nullptr;
}

OwnedValue real_binary(veri_oper oper, double a, double b, const VeriTreeNode* from) {
  switch (oper) {
  case VERI_OPER_PLUS: return VeriValue::FromReal(a + b);
  case VERI_OPER_MINUS: return VeriValue::FromReal(a - b);
  case VERI_OPER_MULTIPLY: return VeriValue::FromReal(a * b);
  case VERI_OPER_DIVIDE: return VeriValue::FromReal(a / b);
  case VERI_OPER_POWER: return VeriValue::FromReal(std::pow(a, b));
  case VERI_OPER_LT: return bool_value(a < b);
  case VERI_OPER_GT: return bool_value(a > b);
  case VERI_OPER_LE: return bool_value(a <= b);
  case VERI_OPER_GE: return bool_value(a >= b);
  case VERI_OPER_EQ: return bool_value(a == b);
  case VERI_OPER_NE: return bool_value(a != b);
  case VERI_OPER_LOG_AND: return bool_value(a != 0 && b != 0);
  case VERI_OPER_LOG_OR: return bool_value(a != 0 || b != 0);
  default: break;
  }
  veri_at(from).Error("illegal operator on real number");
  return nullptr;
}

veri_digit vector_condition(const VeriVectorValue& vector) { return vector.Reduce(VERI_OPER_REDUCE_OR); }

OwnedValue vector_binary(veri_oper oper, std::unique_ptr<VeriVectorValue> a, std::unique_ptr<VeriVectorValue> b,
                         const VeriTreeNode* from) {
  switch (oper) {
  case VERI_OPER_PLUS: a->Plus(*b, VERI_DIGIT_0, from); return a;
  case VERI_OPER_MINUS: a->Minus(*b, from); return a;
  case VERI_OPER_MULTIPLY: a->Multiply(*b, from); return a;
  case VERI_OPER_DIVIDE: a->Divide(*b, from); return a;
  case VERI_OPER_MODULO: a->Modulo(*b, from); return a;
  case VERI_OPER_POWER: a->Power(*b, from); return a;
  case VERI_OPER_LT: return digit_value(a->LessThan(*b, false));
  case VERI_OPER_GT: return digit_value(b->LessThan(*a, false));
  case VERI_OPER_LE: return digit_value(a->LessThan(*b, true));
  case VERI_OPER_GE: return digit_value(b->LessThan(*a, true));
  case VERI_OPER_EQ:
  case VERI_OPER_NE:
  case VERI_OPER_CASE_EQ:
  case VERI_OPER_CASE_NE:
  case VERI_OPER_WILD_EQ:
  case VERI_OPER_WILD_NE: return digit_value(a->Equal(oper, *b));
  case VERI_OPER_LOG_AND:
  case VERI_OPER_LOG_OR: {
    VeriVectorValue left(1);
    VeriVectorValue right(1);
    left.SetTo(vector_condition(*a));
    right.SetTo(vector_condition(*b));
    left.Bitwise(oper == VERI_OPER_LOG_AND ? VERI_OPER_AND : VERI_OPER_OR, right);
    return left.Copy();
  }
  case VERI_OPER_AND:
  case VERI_OPER_OR:
  case VERI_OPER_XOR:
  case VERI_OPER_XNOR: a->Bitwise(oper, *b); return a;
  case VERI_OPER_SHIFT_LEFT:
  case VERI_OPER_ARITH_SHIFT_LEFT: a->Shift(*b, false, oper == VERI_OPER_ARITH_SHIFT_LEFT, from); return a;
  case VERI_OPER_SHIFT_RIGHT:
  case VERI_OPER_ARITH_SHIFT_RIGHT: a->Shift(*b, true, oper == VERI_OPER_ARITH_SHIFT_RIGHT, from); return a;
  default: break;
  }
  KESTRIN_REPORT_INTERNAL("unknown operator on constant vectors");
  return nullptr;
}

bool is_shift(veri_oper oper) { return veri_oper_class(oper) == VeriOperClass::SHIFT; }

// Values with logic in them.

OwnedValue nonconst_power(OwnedValue base, OwnedValue exponent, const VeriTreeNode* from) {
  auto refuse = [from](const char* reason) -> OwnedValue {
    veri_at(from).Error("exponentiation not supported for these operands, %s", reason);
    return nullptr;
  };
  unsigned width = base->Size();
  if (!base->IsConstant() && !exponent->IsConstant()) return refuse("either exponent or base must be a constant.");
  if (base->HasXZ() || exponent->HasXZ()) return VeriValue::Digits(width, VERI_DIGIT_X);
  if (exponent->IsConstant()) {
    if (exponent->IsLessThanZero()) return refuse("exponent must be unsigned or constant positive.");
    bool is_signed = base->IsSigned();
    OwnedValue result = VeriValue::FromNumber(1, width, is_signed);
    // Squares beyond the highest bit of the exponent are not built.
    OwnedValue square = std::move(base);
    unsigned bits = exponent->Size();
    while (bits && exponent->GetBit(bits - 1) == veri_digit_net(VERI_DIGIT_0)) bits--;
    for (unsigned bit = 0; bit < bits && square; bit++) {
      if (exponent->GetBit(bit) == veri_digit_net(VERI_DIGIT_1))
        result = VeriValue::Binary(VERI_OPER_MULTIPLY, std::move(result), square->Copy(), from);
      if (bit + 1 < bits) {
        OwnedValue factor = square->Copy();
        square = VeriValue::Binary(VERI_OPER_MULTIPLY, std::move(square), std::move(factor), from);
      }
    }
    return result;
  }
  if (base->IsLessThanZero() || !base->IsOnehotConstant())
    return refuse("exponent base must be a positive power of 2 with non-constant exponent.");
  if (exponent->IsSigned()) return refuse("exponent must be unsigned or constant positive.");
  unsigned zeros = 0;
  while (base->GetBit(zeros) != veri_digit_net(VERI_DIGIT_1)) zeros++;
  OwnedValue one = VeriValue::FromNumber(1, width, base->IsSigned());
  if (!zeros) return one;
  unsigned amount_width = exponent->Size() + 32;
  OwnedValue amount = VeriValue::Binary(VERI_OPER_MULTIPLY, VeriValue::Adjust(std::move(exponent), amount_width, from),
                                        VeriValue::FromNumber(zeros, amount_width, false), from);
  return VeriValue::Binary(VERI_OPER_SHIFT_LEFT, std::move(one), std::move(amount), from);
}

OwnedValue nets_binary(veri_oper oper, OwnedValue left, OwnedValue right, const VeriTreeNode* from) {
  if (is_shift(oper)) {
    bool is_right = oper == VERI_OPER_SHIFT_RIGHT || oper == VERI_OPER_ARITH_SHIFT_RIGHT;
    bool arithmetic = oper == VERI_OPER_ARITH_SHIFT_RIGHT;
    std::unique_ptr<VeriNonConstVal> a = VeriValue::ToNonConstVal(std::move(left));
    a->Shift(*right, is_right, arithmetic, from);
    return a;
  }
  if (oper == VERI_OPER_POWER) return nonconst_power(std::move(left), std::move(right), from);
  if (veri_oper_class(oper) == VeriOperClass::LOGICAL) {
    VeriLogic logic(from);
    Net* a = VeriValue::Condition(std::move(left), from);
    Net* b = VeriValue::Condition(std::move(right), from);
    return VeriValue::FromNet(oper == VERI_OPER_LOG_AND ? logic.And(a, b) : logic.Or(a, b));
  }
  VeriValue::CoerceSign(*left, *right);
  unsigned width = std::max(left->Size(), right->Size());
  std::unique_ptr<VeriNonConstVal> a = VeriValue::ToNonConstVal(VeriValue::Adjust(std::move(left), width, from));
  std::unique_ptr<VeriNonConstVal> b = VeriValue::ToNonConstVal(VeriValue::Adjust(std::move(right), width, from));
  if (!a || !b) return nullptr;
  switch (oper) {
  case VERI_OPER_PLUS: a->Plus(*b, veri_digit_net(VERI_DIGIT_0), from); return a;
  case VERI_OPER_MINUS: a->Minus(*b, from); return a;
  case VERI_OPER_MULTIPLY: a->Multiply(*b, from); return a;
  case VERI_OPER_DIVIDE: a->Divide(*b, from); return a;
  case VERI_OPER_MODULO: a->Modulo(*b, from); return a;
  case VERI_OPER_LT: return VeriValue::FromNet(a->LessThan(*b, false, from));
  case VERI_OPER_GT: return VeriValue::FromNet(b->LessThan(*a, false, from));
  case VERI_OPER_LE: return VeriValue::FromNet(a->LessThan(*b, true, from));
  case VERI_OPER_GE: return VeriValue::FromNet(b->LessThan(*a, true, from));
  case VERI_OPER_EQ:
  case VERI_OPER_NE:
  case VERI_OPER_CASE_EQ:
  case VERI_OPER_CASE_NE:
  case VERI_OPER_WILD_EQ:
  case VERI_OPER_WILD_NE: return VeriValue::FromNet(a->Equal(oper, *b, from));
  case VERI_OPER_AND:
  case VERI_OPER_OR:
  case VERI_OPER_XOR:
  case VERI_OPER_XNOR: a->Bitwise(oper, *b, from); return a;
  default: break;
  }
  veri_at(from).Error("no support for non-constant operation with operator %s", veri_oper_text(oper));
  return nullptr;
}

/// Only equality is defined on whole arrays and structs.
OwnedValue aggregate_binary(veri_oper oper, OwnedValue left, OwnedValue right, const VeriTreeNode* from) {
  if (left->IsAggregate() != right->IsAggregate()) {
    veri_at(from).Error("cannot assign or compare packed values to unpacked values or vice versa");
    return nullptr;
  }
  if (veri_oper_class(oper) != VeriOperClass::EQUALITY || left->IsDualPortValue() || right->IsDualPortValue())
    return illegal_on_aggregates(oper, from);
  if (left->NumOfElements() != right->NumOfElements()) {
    veri_at(from).Error("expression has %d elements; expected %d", static_cast<int>(right->NumOfElements()),
                        static_cast<int>(left->NumOfElements()));
    return nullptr;
  }
  bool is_negated = oper == VERI_OPER_NE || oper == VERI_OPER_CASE_NE || oper == VERI_OPER_WILD_NE;
  OwnedValue result = bool_value(!is_negated);
  for (unsigned i = 0; i < left->NumOfElements() && result; i++) {
    OwnedValue equal = VeriValue::Binary(oper, left->TakeElement(i), right->TakeElement(i), from);
    result = VeriValue::Binary(is_negated ? VERI_OPER_OR : VERI_OPER_AND, std::move(result), std::move(equal), from);
  }
  return result;
}
} // namespace

OwnedValue VeriValue::Binary(veri_oper oper, OwnedValue left, OwnedValue right, const VeriTreeNode* from) {
  if (!left || !right) return nullptr;
  if (oper == VERI_OPER_CONCAT) {
    std::vector<OwnedValue> values;
    values.push_back(std::move(left));
    values.push_back(std::move(right));
    return Concat(std::move(values), from);
  }
  left = plain_value(std::move(left));
  right = plain_value(std::move(right));
  OwnedValue result;
  if (left->IsAggregate() || right->IsAggregate()) {
    result = aggregate_binary(oper, std::move(left), std::move(right), from);
  } else if (left->IsReal() || right->IsReal()) {
    if (!left->IsConstant() || !right->IsConstant()) {
      veri_at(from).Error("not supported use of real number");
      return nullptr;
    }
    result = real_binary(oper, left->Real(), right->Real(), from);
  } else if (left->IsInt() && right->IsInt() && left->IsSigned() && right->IsSigned()) {
    result = int_binary(oper, left->Integer(), right->Integer(), from);
  } else if (left->IsConstant() && right->IsConstant()) {
    // An integer is signed by its class, not because anybody declared the amount so.
    if (is_shift(oper) && right->IsInt()) right->SetUnsigned();
    result = vector_binary(oper, ToVectorValue(std::move(left)), ToVectorValue(std::move(right)), from);
  } else {
    result = ToConst(nets_binary(oper, std::move(left), std::move(right), from));
  }
  if (!result) return nullptr;
  result->ResetBlockingInfo();
  result->SetNotOnehot();
  return result;
}

OwnedValue VeriValue::Unary(veri_oper oper, OwnedValue operand, const VeriTreeNode* from) {
  if (!operand) return nullptr;
  operand = plain_value(std::move(operand));
  operand->ResetBlockingInfo();
  operand->SetNotOnehot();
  if (operand->IsAggregate()) return illegal_on_aggregates(oper, from);
  if (operand->IsReal()) {
    if (oper == VERI_OPER_UNARY_PLUS) return operand;
    if (oper == VERI_OPER_UNARY_MINUS) return FromReal(-operand->Real());
    if (oper == VERI_OPER_LOG_NOT) return bool_value(operand->Real() == 0);
    veri_at(from).Error("illegal operator for real numbers");
    return nullptr;
  }
  if (oper == VERI_OPER_UNARY_PLUS) return operand;
  if (oper == VERI_OPER_LOG_NOT) return FromNet(VeriLogic(from).Inv(Condition(std::move(operand), from)));
  if (operand->IsInt() && operand->IsSigned()) {
    int number = operand->Integer();
    if (oper == VERI_OPER_NOT) return FromInteger(~number);
    if (oper == VERI_OPER_UNARY_MINUS) return FromInteger(static_cast<int>(0U - static_cast<unsigned>(number)));
  }
  bool is_reduction = veri_oper_class(oper) == VeriOperClass::REDUCTION;
  if (operand->IsConstant()) {
    std::unique_ptr<VeriVectorValue> vector = ToVectorValue(std::move(operand));
    if (is_reduction) return digit_value(vector->Reduce(oper));
    if (oper == VERI_OPER_NOT)
      vector->Invert();
    else
      vector->Negate();
    return vector;
  }
  std::unique_ptr<VeriNonConstVal> nets = ToNonConstVal(std::move(operand));
  if (is_reduction) return FromNet(nets->Reduce(oper, from));
  if (oper == VERI_OPER_NOT)
    nets->Invert(from);
  else
    nets->Negate(from);
  return ToConst(std::move(nets));
}

// Concatenation.

OwnedValue VeriValue::Concat(std::vector<OwnedValue> values, const VeriTreeNode* from) {
  uint64_t width = 0;
  bool all_strings = !values.empty();
  for (OwnedValue& value : values) {
    if (value && value->IsReal()) {
      veri_at(from).Error("illegal operator on real number");
      return nullptr;
    }
    value = Pack(std::move(value));
    if (!value || value->IsDualPortValue()) return nullptr;
    all_strings = all_strings && value->IsString();
    width += value->Size();
  }
  if (!veri_width_is_supported(width, from)) return nullptr;
  bool is_constant =
      std::all_of(values.begin(), values.end(), [](const OwnedValue& value) { return value->IsConstant(); });
  if (!is_constant) {
    Array nets(static_cast<unsigned>(width));
    for (const OwnedValue& value : values) value->GetNets(nets);
    return FromNets(nets);
  }
  auto result = std::make_unique<VeriVectorValue>(static_cast<unsigned>(width));
  auto bit = static_cast<unsigned>(width);
  for (OwnedValue& value : values) {
    std::unique_ptr<VeriVectorValue> vector = ToVectorValue(std::move(value));
    bit -= vector->Size();
    for (unsigned i = 0; i < vector->Size(); i++)
      if (veri_digit digit = vector->Digit(i)) result->SetDigit(bit + i, digit);
  }
  result->SetIsString(all_strings);
  return result;
}

OwnedValue VeriValue::Repeat(OwnedValue count, OwnedValue value, const VeriTreeNode* from) {
  if (!count || !value) return nullptr;
  int64_t times = 0;
  if (!count->IsConstant() || !count->ToInt64(&times) || times < 0) {
    // A number that does not even fit 64 bits is too large rather than unknown.
    bool is_too_large = count->IsConstant() && !count->HasXZ() && !count->IsLessThanZero();
    if (is_too_large)
      veri_at(from).Error("vectors of more than %d bits are not supported", static_cast<int>(veri_max_width));
    else
      veri_at(from).Error("the count of a replication must be a known number that is not negative");
    return nullptr;
  }
  value = Pack(std::move(value));
  if (!value) return nullptr;
  unsigned size = value->Size();
  if (size && times > veri_max_width / size) {
    veri_width_is_supported(veri_max_width + 1ULL, from);
    return nullptr;
  }
  if (!size) return value;
  auto copies = static_cast<unsigned>(times);
  if (!value->IsConstant()) {
    Array nets(copies * size);
    for (unsigned i = 0; i < copies; i++) value->GetNets(nets);
    return FromNets(nets);
  }
  auto result = std::make_unique<VeriVectorValue>(copies * size);
  std::unique_ptr<VeriVectorValue> vector = ToVectorValue(std::move(value));
  for (unsigned bit = 0; bit < result->Size(); bit++)
    if (veri_digit digit = vector->Digit(bit % size)) result->SetDigit(bit, digit);
  result->SetIsString(vector->IsString() && copies);
  return result;
}

// Conditions and selection between two.

Net* VeriValue::Condition(OwnedValue value, const VeriTreeNode* from) {
  if (!value) return nullptr;
  if (value->IsReal()) return veri_digit_net(value->Real() != 0 ? VERI_DIGIT_1 : VERI_DIGIT_0);
  if (value->IsAggregate()) value = Pack(std::move(value));
  if (!value || !value->Size()) return nullptr;
  if (value->IsConstant()) return veri_digit_net(vector_condition(*ToVectorValue(std::move(value))));
  return ToNonConstVal(std::move(value))->Reduce(VERI_OPER_REDUCE_OR, from);
}

namespace {
OwnedValue select_elements(Net* condition, OwnedValue one, OwnedValue zero, const VeriTreeNode* from) {
  if (one->IsDualPortValue() || zero->IsDualPortValue()) {
    std::vector<OwnedValue> branches;
    branches.push_back(std::move(zero));
    branches.push_back(std::move(one));
    return VeriDualPortValue::Merge(std::move(branches), [&](std::vector<OwnedValue> values) {
      return VeriValue::Select(condition, std::move(values[1]), std::move(values[0]), from);
    });
  }
  if (!one->IsAggregate() || !zero->IsAggregate()) {
    veri_at(from).Error("cannot assign or compare packed values to unpacked values or vice versa");
    return nullptr;
  }
  if (one->NumOfElements() != zero->NumOfElements()) {
    veri_at(from).Error("expression has %d elements; expected %d", static_cast<int>(one->NumOfElements()),
                        static_cast<int>(zero->NumOfElements()));
    return nullptr;
  }
  for (unsigned i = 0; i < zero->NumOfElements(); i++)
    zero->SetElement(i, VeriValue::Select(condition, one->TakeElement(i), zero->TakeElement(i), from));
  return zero;
}

/// IEEE 1364-2005 clause 5.1.13: where the branches agree the result is known.
OwnedValue merge_unknown(OwnedValue one, OwnedValue zero) {
  if (VeriAggregateValue* aggregate = zero->AsAggregate()) {
    if (one->NumOfElements() != aggregate->NumOfElements()) return nullptr;
    for (unsigned i = 0; i < aggregate->NumOfElements(); i++)
      aggregate->SetElement(i, merge_unknown(one->TakeElement(i), aggregate->TakeElement(i)));
    return zero;
  }
  std::unique_ptr<VeriNonConstVal> merged = VeriValue::ToNonConstVal(std::move(zero));
  for (unsigned bit = 0; bit < merged->Size(); bit++) {
    Net* net = merged->GetBit(bit);
    bool agree = net == one->GetBit(bit) && net != veri_digit_net(VERI_DIGIT_Z);
    if (!agree) merged->SetBit(bit, veri_digit_net(VERI_DIGIT_X));
  }
  return VeriValue::ToConst(std::move(merged));
}
} // namespace

OwnedValue VeriValue::Select(Net* condition, OwnedValue one, OwnedValue zero, const VeriTreeNode* from) {
  if (!condition || !one || !zero) return nullptr;
  bool blocking = one->IsBlocking() || zero->IsBlocking();
  bool non_blocking = one->IsNonBlocking() || zero->IsNonBlocking();
  bool onehot = one->IsOnehot() && zero->IsOnehot();
  OwnedValue result;
  if (condition == veri_digit_net(VERI_DIGIT_0)) {
    result = std::move(zero);
  } else if (condition == veri_digit_net(VERI_DIGIT_1)) {
    result = std::move(one);
  } else if (one->IsReal() || zero->IsReal()) {
    veri_at(from).Error("no support for real number in ?: operator");
    return nullptr;
  } else if (one->IsAggregate() || zero->IsAggregate()) {
    result = select_elements(condition, std::move(one), std::move(zero), from);
  } else {
    CoerceSign(*one, *zero);
    unsigned width = std::max(one->Size(), zero->Size());
    std::unique_ptr<VeriNonConstVal> in1 = ToNonConstVal(Adjust(std::move(one), width, from));
    std::unique_ptr<VeriNonConstVal> in0 = ToNonConstVal(Adjust(std::move(zero), width, from));
    if (!in0 || !in1) return nullptr;
    if (onehot) in0->SetOnehot();
    in0->MuxIn1(condition, *in1, from);
    result = ToConst(std::move(in0));
  }
  if (!result) return nullptr;
  if (blocking) result->SetBlocking();
  if (non_blocking) result->SetNonBlocking();
  onehot ? result->SetOnehot() : result->SetNotOnehot();
  return result;
}

OwnedValue VeriValue::QuestionColon(OwnedValue condition, OwnedValue one, OwnedValue zero, const VeriTreeNode* from) {
  if (!condition || !one || !zero) return nullptr;
  Net* net = Condition(std::move(condition), from);
  if (!net) return nullptr;
  bool is_known = net == veri_digit_net(VERI_DIGIT_0) || net == veri_digit_net(VERI_DIGIT_1);
  if (one->IsReal() || zero->IsReal()) {
    // The result is real whichever branch is taken.
    if (is_known && one->IsConstant() && zero->IsConstant())
      return ToRealValue(net == veri_digit_net(VERI_DIGIT_1) ? std::move(one) : std::move(zero));
    veri_at(from).Error("no support for real number in ?: operator");
    return nullptr;
  }
  if (!one->IsAggregate() && !zero->IsAggregate()) {
    CoerceSign(*one, *zero);
    unsigned width = std::max(one->Size(), zero->Size());
    one = Adjust(std::move(one), width, from);
    zero = Adjust(std::move(zero), width, from);
    if (!one || !zero) return nullptr;
  }
  OwnedValue result = veri_is_digit(net) && !is_known ? merge_unknown(std::move(one), std::move(zero))
                                                      : Select(net, std::move(one), std::move(zero), from);
  if (result) result->ResetBlockingInfo();
  return result;
}

// Comparison of case items.

bool VeriValue::SameDigits(const VeriValue& a, const VeriValue& b) {
  if (!a.IsConstant() || !b.IsConstant() || a.Size() != b.Size() || a.IsSigned() != b.IsSigned()) return false;
  if (a.IsReal() || b.IsReal()) return a.IsReal() && b.IsReal() && a.Real() == b.Real();
  for (unsigned bit = 0; bit < a.Size(); bit++)
    if (a.GetBit(bit) != b.GetBit(bit)) return false;
  return true;
}

Net* VeriValue::CaseMatch(const VeriValue& value, const VeriValue& pattern, bool x_is_wild, bool z_is_wild,
                          const VeriTreeNode* from) {
  bool is_signed = value.IsSigned() && pattern.IsSigned();
  unsigned width = std::max(value.Size(), pattern.Size());
  if (!veri_width_is_supported(width, from)) return nullptr;
  auto extended = [&](const VeriValue& v, unsigned bit) {
    if (bit < v.Size()) return v.GetBit(bit);
    veri_digit digit;
    Net* sign = v.SignBit();
    bool extends_as_itself = is_signed || (veri_is_digit(sign, &digit) && digit > VERI_DIGIT_1);
    return extends_as_itself ? sign : veri_digit_net(VERI_DIGIT_0);
  };
  auto is_wild = [&](const Net* net) {
    return (x_is_wild && net == veri_digit_net(VERI_DIGIT_X)) || (z_is_wild && net == veri_digit_net(VERI_DIGIT_Z));
  };
  Array left;
  Array right;
  for (unsigned bit = width; bit-- > 0;) {
    Net* a = extended(value, bit);
    Net* b = extended(pattern, bit);
    if (is_wild(a) || is_wild(b)) continue;
    left.InsertLast(a);
    right.InsertLast(b);
  }
  return VeriNonConstVal(left).Equal(VERI_OPER_CASE_EQ, VeriNonConstVal(right), from);
}
