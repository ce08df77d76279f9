// The methods that the language gives to every enumeration, IEEE 1800-2005 clause 4.10.4. Of a value that is not
// constant the next and the previous one are selected by comparing it with all members.
#include <algorithm>

#include "verilog/veriexpression.h"
#include "verilog/verimoduleitem.h"

namespace {

OwnedValue Equal(const VeriValue& value, const VeriValue& member, const VeriTreeNode* from) {
  return VeriValue::Binary(VERI_OPER_EQ, value.Copy(), member.Copy(), from);
}

bool IsTrue(const OwnedValue& value) { return value && value->IsConstant() && value->Integer() == 1; }

} // namespace

std::vector<VeriValue*> VeriEnumTypeDef::MemberValues() const {
  std::vector<VeriValue*> values;
  for (const VeriIdDecl* element : *_elements)
    if (VeriValue* value = element->GetId()->Current()->GetValue()) values.push_back(value);
  return values;
}

/// How many members a call goes on; one without an argument. -1 after an error.
int VeriSelectedName::EvaluateSteps(const VeriExpressions* args) const {
  if (!args || !args->Size()) return 1;
  OwnedValue steps = args->GetFirst()->EvaluateConstant();
  return steps ? steps->Integer(this) : -1;
}

/// What is no member leads to none: the value that a variable of the type starts with.
OwnedValue VeriSelectedName::EvaluateNeighbour(const std::vector<VeriValue*>& members, int steps,
                                               VeriDataFlow* flow) const {
  OwnedValue value = _prefix->Evaluate(flow);
  if (!value) return nullptr;
  const auto count = static_cast<int>(members.size());
  OwnedValue result = VeriValue::Digits(members.front()->Size(), VERI_DIGIT_X);
  for (int pos = count - 1; pos >= 0; pos--) {
    const int neighbour = ((pos + steps) % count + count) % count;
    OwnedValue is_here = Equal(*value, *members[static_cast<size_t>(pos)], this);
    if (!is_here) return nullptr;
    result =
        VeriValue::Select(is_here->GetBit(0), members[static_cast<size_t>(neighbour)]->Copy(), std::move(result), this);
    if (!result) return nullptr;
  }
  return result;
}

OwnedValue VeriSelectedName::EvaluateMemberName(const std::vector<VeriValue*>& members, VeriDataFlow* flow) const {
  OwnedValue value = _prefix->Evaluate(flow);
  if (!value) return nullptr;
  if (!value->IsConstant()) {
    Error("no support for %s (SystemVerilog)", "the name of an enumeration's value that is not constant");
    return nullptr;
  }
  for (VeriValue* member : members)
    if (const VeriEnum* named = member->AsEnum(); named && IsTrue(Equal(*value, *member, this)))
      return VeriValue::FromString(named->GetEnumId()->Name());
  return VeriValue::FromString("");
}

OwnedValue VeriSelectedName::EvaluateMethod(const VeriExpressions* args, VeriDataFlow* flow) const {
  VeriNodeScope node(this);
  const std::vector<VeriValue*> members = _enum->MemberValues();
  if (members.empty()) return nullptr;
  const int steps = EvaluateSteps(args);
  if (steps < 0) return nullptr;
  const int count = static_cast<int>(members.size());
  switch (_method) {
  case METHOD_FIRST: return members.front()->Copy();
  case METHOD_LAST: return members.back()->Copy();
  case METHOD_NUM: return VeriValue::FromInteger(count);
  case METHOD_NEXT: return EvaluateNeighbour(members, steps % count, flow);
  case METHOD_PREV: return EvaluateNeighbour(members, -(steps % count), flow);
  case METHOD_NAME: return EvaluateMemberName(members, flow);
  case METHOD_NONE: break;
  }
  return nullptr;
}

OwnedConstraint VeriSelectedName::MethodConstraint() const {
  switch (_method) {
  case METHOD_FIRST:
  case METHOD_LAST:
  case METHOD_NEXT:
  case METHOD_PREV: return _enum->CreateConstraint();
  case METHOD_NUM: return VeriRangeConstraint::Integer(32, true, 2);
  case METHOD_NAME:
  case METHOD_NONE: break;
  }
  return nullptr;
}
