// Elaboration of identifiers: types, nets and values.
#include "database/net.h"
#include "util/services.h"
#include "verilog/verielabstate.h"
#include "verilog/veriexpression.h"
#include "verilog/veriid.h"
#include "verilog/verimodule.h"
#include "verilog/veriram.h"
#include "verilog/veristatetable.h"

VeriConstraint* VeriValuedId::GetConstraint() {
  if (_constraint) return _constraint.get();
  if (IsGenVar())
    SetConstraint(VeriRangeConstraint::Integer(32, true, 4));
  else if (Kind() != VERI_ID_ENUM)
    SetConstraint(veri_object_constraint(_type, _unpacked, GetModuleItem()));
  return _constraint.get();
}

void VeriVariable::Initialize() {
  if (GetValue()) return;
  const VeriConstraint* type = GetConstraint();
  // A real has no nets: processes compute with it, and what needs its bits is refused where it does.
  if (!type || type->IsRealRange()) return;
  const VeriTreeNode* from = GetModuleItem();
  std::string name = ElabState()->CreateFullName(Name());
  OwnedValue nets = _state_table ? _state_table->CreateValue(this) : VeriRam::CreateDualPortValue(this);
  if (!nets) nets = type->CreateValue(name.c_str(), Linefile(), from);
  if (!nets) return;
  SetValue(std::move(nets));
  if (IsNet() || !_initial) return;
  OwnedValue initial = _initial->EvaluateFor(*type, nullptr);
  if (!initial) return;
  if (!initial->IsConstant())
    return _initial->Error("expression in variable declaration assignment to %s must be constant", Name());
  if (_state_table) initial = _state_table->GetStateEncoding(std::move(initial), from);
  GetValue()->SetDefaultValue(*initial, from);
}

unsigned VeriParamId::IsOverridable() const { return _token == VERI_PARAMETER; }

void VeriParamId::Initialize() {
  if (VeriValuedId::GetValue()) return;
  VeriExpression* expression = _actual ? _actual : _initial;
  if (!expression) return;
  if (_in_progress) return Error("value of %s depends on itself", Name());
  _in_progress = 1;
  const VeriPrimitiveTypeDef* primitive = dynamic_cast<const VeriPrimitiveTypeDef*>(Type());
  bool is_typed = NumUnpacked() || (Type() && (!primitive || primitive->Type() || primitive->Ranges()));
  OwnedValue value;
  if (is_typed) {
    if (const VeriConstraint* type = VeriValuedId::GetConstraint()) value = expression->EvaluateFor(*type, nullptr);
    if (value && !value->IsConstant()) {
      expression->Error("expression %s is not constant", expression->Image().c_str());
      value = nullptr;
    }
  } else {
    value = expression->EvaluateConstant();
    if (value && primitive && primitive->Signing() == VERI_SIGNED) value->SetSigned();
    if (value && primitive && primitive->Signing() == VERI_UNSIGNED) value->SetUnsigned();
    if (value && !value->IsReal() && !value->IsAggregate())
      SetConstraint(VeriUniformArrayConstraint::Vector(static_cast<int>(value->Size()) - 1, 0, value->IsSigned()));
    else if (value && value->IsReal())
      SetConstraint(VeriRangeConstraint::RealType());
  }
  _in_progress = 0;
  // After an error the parameter still has a value, so that what uses it is not reported as well.
  if (!value) value = VeriValue::Digits(32, VERI_DIGIT_X);
  SetValue(std::move(value));
}

VeriValue* VeriParamId::GetValue() {
  if (!VeriValuedId::GetValue()) Initialize();
  return VeriValuedId::GetValue();
}

VeriConstraint* VeriParamId::GetConstraint() {
  if (!VeriValuedId::GetValue()) Initialize();
  return VeriValuedId::GetConstraint();
}

void VeriEnumId::Initialize() { GetValue(); }

VeriValue* VeriEnumId::GetValue() {
  if (!VeriValuedId::GetValue())
    if (const auto* type = dynamic_cast<const VeriEnumTypeDef*>(_enum_type)) type->EvaluateMembers();
  return VeriValuedId::GetValue();
}
