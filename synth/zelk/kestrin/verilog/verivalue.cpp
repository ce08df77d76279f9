#include "verilog/verivalue.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "containers/set.h"
#include "database/instance.h"
#include "database/net.h"
#include "util/services.h"
#include "util/strings.h"
#include "verilog/veritreenode.h"
#include "verilog/verivalue_report.h"

// Operators.

namespace {
struct OperInfo {
  const char* text;
  VeriOperClass kind;
};

constexpr OperInfo oper_table[] = {
#define VERI_OPER(symbol, text, kind) {text, VeriOperClass::kind},
#include "verilog/verioper.def"
};
} // namespace

VeriOperClass veri_oper_class(veri_oper oper) { return oper_table[oper].kind; }
const char* veri_oper_text(veri_oper oper) { return oper_table[oper].text; }

// Digits.

Net* veri_digit_net(veri_digit digit) {
  if (VeriNode::ElabState()) {
    switch (digit) {
    case VERI_DIGIT_0: return VeriNode::Gnd();
    case VERI_DIGIT_1: return VeriNode::Pwr();
    case VERI_DIGIT_X: return VeriNode::X();
    case VERI_DIGIT_Z: return VeriNode::Z();
    }
  }
  // Constant expressions are also evaluated outside an elaboration. These nets are never connected to anything.
  static Net* const detached[] = {new Net(" 0"), new Net(" 1"), new Net(" x"), new Net(" z")};
  return detached[digit];
}

bool veri_is_digit(const Net* net, veri_digit* digit) {
  for (veri_digit candidate : {VERI_DIGIT_0, VERI_DIGIT_1, VERI_DIGIT_X, VERI_DIGIT_Z}) {
    if (net != veri_digit_net(candidate)) continue;
    if (digit) *digit = candidate;
    return true;
  }
  return false;
}

Net* veri_canonical_net(Net* net) {
  if (!net) return nullptr;
  switch (net->DriverType()) {
  case PRIM_GND: return veri_digit_net(VERI_DIGIT_0);
  case PRIM_PWR: return veri_digit_net(VERI_DIGIT_1);
  case PRIM_X: return veri_digit_net(VERI_DIGIT_X);
  case PRIM_Z: return veri_digit_net(VERI_DIGIT_Z);
  default: return net;
  }
}

bool veri_width_is_supported(uint64_t width, const VeriTreeNode* from) {
  if (width <= veri_max_width) return true;
  veri_at(from).Error("vectors of more than %d bits are not supported", static_cast<int>(veri_max_width));
  return false;
}

bool veri_object_size_is_supported(uint64_t bits, const VeriTreeNode* from) {
  if (bits <= veri_max_object_bits) return true;
  veri_at(from).Error("objects of more than %d bits are not supported", static_cast<int>(veri_max_object_bits));
  return false;
}

namespace {
char digit_char(veri_digit digit) { return "01xz"[digit]; }

class FallbackNode : public VeriTreeNode {
public:
  FallbackNode() { SetLinefile(0); }
  VERI_CLASS_ID GetClassId() const override { return ID_VERI_END; }
  void Accept(VeriVisitor&) override {}
  void PrettyPrint(std::ostream&, unsigned) const override {}
};
} // namespace

const VeriTreeNode& veri_at(const VeriTreeNode* from) {
  if (!from) from = VeriTreeNode::TopNode();
  if (from) return *from;
  static const FallbackNode fallback;
  return fallback;
}

unsigned long veri_linefile(const VeriTreeNode* from) { return veri_at(from).Linefile(); }

// What all values share.

void VeriValue::GetNets(Array& nets) const {
  for (unsigned bit = Size(); bit-- > 0;) nets.InsertLast(GetBit(bit));
}

void VeriValue::CollectNets(class Set& nets) const {
  if (IsConstant()) return;
  Array all;
  GetNets(all);
  for (Net* net : ItemsOf<Net*>(&all))
    if (!veri_is_digit(net)) nets.Insert(net);
}

bool VeriValue::ContainsNet(const Net* net) const {
  for (unsigned bit = Size(); bit-- > 0;)
    if (GetBit(bit) == net) return true;
  return false;
}

bool VeriValue::IsZero() const {
  if (const VeriRealValue* real = AsReal()) return real->Real() == 0;
  if (!IsConstant()) return false;
  for (unsigned bit = Size(); bit-- > 0;)
    if (GetBit(bit) != veri_digit_net(VERI_DIGIT_0)) return false;
  return true;
}

bool VeriValue::IsOnehotConstant() const {
  if (!IsConstant() || IsReal()) return false;
  unsigned ones = 0;
  for (unsigned bit = Size(); bit-- > 0;) {
    veri_digit digit;
    if (!veri_is_digit(GetBit(bit), &digit) || digit > VERI_DIGIT_1) return false;
    ones += digit;
  }
  return ones == 1;
}

int VeriValue::Integer(const VeriTreeNode* from) const {
  OwnedValue constant = ToConst(Copy());
  return constant->AsVector() ? constant->Integer(from) : 0;
}

bool VeriValue::ToInt64(int64_t* number) const {
  if (const VeriRealValue* real = AsReal()) {
    *number = real->Rounded();
    return true;
  }
  if (!IsConstant() || IsAggregate() || HasXZ()) return false;
  veri_digit extension = VERI_DIGIT_0;
  veri_is_digit(SignBit(), &extension);
  uint64_t bits = 0;
  unsigned width = Size();
  for (unsigned bit = 0; bit < 64; bit++) {
    veri_digit digit = extension;
    if (bit < width) veri_is_digit(GetBit(bit), &digit);
    if (digit == VERI_DIGIT_1) bits |= 1ULL << bit;
  }
  *number = static_cast<int64_t>(bits);
  // Everything from bit 63 on must repeat the sign, which an unsigned number does not have.
  for (unsigned bit = 63; bit < width; bit++)
    if (GetBit(bit) != veri_digit_net(extension)) return false;
  return (*number < 0) == (extension == VERI_DIGIT_1);
}

double VeriValue::Real() const {
  OwnedValue constant = ToConst(Copy());
  return constant->AsVector() ? constant->Real() : 0;
}

std::string VeriValue::String() const {
  return std::to_string(Size()) + "'" + (IsSigned() ? "sb" : "b") + BinaryString();
}

std::string VeriValue::BinaryString() const {
  std::string text;
  text.reserve(Size());
  for (unsigned bit = Size(); bit-- > 0;) {
    veri_digit digit;
    text.push_back(veri_is_digit(GetBit(bit), &digit) ? digit_char(digit) : '?');
  }
  return text;
}

void VeriValue::CoerceSign(VeriValue& a, VeriValue& b) {
  if (a.IsSigned() && b.IsSigned()) return;
  a.SetUnsigned();
  b.SetUnsigned();
}

void VeriValue::CopyMarks(const VeriValue& other) {
  if (other._signed)
    SetSigned();
  else
    SetUnsigned();
  _string = other._string;
  _blocking = other._blocking;
  _non_blocking = other._non_blocking;
  _onehot = other._onehot;
}

void VeriValue::SetBit(unsigned, Net*) { KESTRIN_REPORT_INTERNAL("Can't set individual bits in this value"); }
void VeriValue::SetTo(veri_digit) { KESTRIN_REPORT_INTERNAL("can't set the bits in this value to a net"); }

VeriValue* VeriValue::GetElement(unsigned) const { return nullptr; }

OwnedValue VeriValue::TakeElement(unsigned) {
  KESTRIN_REPORT_INTERNAL("Illegal attempt to take an element from a non-aggregate value");
  return nullptr;
}

void VeriValue::SetElement(unsigned, OwnedValue) {
  KESTRIN_REPORT_INTERNAL("Illegal attempt to set an element in a non-aggregate value");
}

OwnedValue VeriValue::ReplaceMatchingBitsWith(OwnedValue value, Net* match, const VeriValue& with) {
  if (!value) return nullptr;
  if (VeriAggregateValue* aggregate = value->AsAggregate()) {
    for (unsigned i = 0; i < aggregate->NumOfElements(); i++)
      if (const VeriValue* element = with.GetElement(i))
        aggregate->SetElement(i, ReplaceMatchingBitsWith(aggregate->TakeElement(i), match, *element));
    return value;
  }
  bool contains = value->ContainsNet(match);
  if (!contains) return value;
  std::unique_ptr<VeriNonConstVal> nets = ToNonConstVal(std::move(value));
  if (!nets) return nullptr;
  for (unsigned bit = 0; bit < nets->Size(); bit++)
    if (nets->GetBit(bit) == match) nets->SetBit(bit, with.GetBit(bit));
  return ToConst(std::move(nets));
}

OwnedValue VeriValue::ToTwoState(OwnedValue value) {
  if (!value || !value->HasXZ()) return value;
  if (VeriAggregateValue* aggregate = value->AsAggregate()) {
    for (OwnedValue& element : aggregate->Elements()) element = ToTwoState(std::move(element));
    return value;
  }
  if (value->IsEnum()) value = value->AsEnum()->TakeEncodedValue();
  Net* zero = veri_digit_net(VERI_DIGIT_0);
  for (unsigned bit = value->Size(); bit-- > 0;) {
    veri_digit digit;
    if (veri_is_digit(value->GetBit(bit), &digit) && digit > VERI_DIGIT_1) value->SetBit(bit, zero);
  }
  return value;
}

OwnedValue VeriValue::Prune(OwnedValue value) {
  if (!value || value->IsReal() || value->IsAggregate() || !value->Size()) return value;
  unsigned width = value->Size();
  if (value->IsSigned())
    while (width > 1 && value->GetBit(width - 1) == value->GetBit(width - 2)) width--;
  else
    while (width > 1 && value->GetBit(width - 1) == veri_digit_net(VERI_DIGIT_0)) width--;
  return width == value->Size() ? std::move(value) : Adjust(std::move(value), width);
}

void VeriValue::SetDefaultValue(const VeriValue&, const VeriTreeNode*) {
  KESTRIN_REPORT_INTERNAL("can't set default value on a constant value");
}

void VeriValue::Connect(Instance* instance, const Array& ports) const {
  Array nets;
  GetNets(nets);
  for (unsigned i = 0; i < ports.Size() && i < nets.Size(); i++)
    instance->Reconnect(FromWord<Port*>(ports.At(i)), FromWord<Net*>(nets.At(i)));
}

// Representation changes.

OwnedValue VeriValue::FromInteger(int value) { return std::make_unique<VeriIntValue>(value); }
OwnedValue VeriValue::FromReal(double value) { return std::make_unique<VeriRealValue>(value); }

OwnedValue VeriValue::FromNumber(int64_t value, unsigned width, bool is_signed) {
  auto vector = std::make_unique<VeriVectorValue>(width);
  for (unsigned bit = 0; bit < width; bit++)
    if (value >> std::min(bit, 63U) & 1) vector->SetDigit(bit, VERI_DIGIT_1);
  if (is_signed) vector->SetSigned();
  return vector;
}

OwnedValue VeriValue::FromString(std::string_view text) {
  auto length = static_cast<unsigned>(text.size());
  if (!veri_width_is_supported(8ULL * text.size(), nullptr)) return nullptr;
  auto vector = std::make_unique<VeriVectorValue>(std::max(8U, 8 * length));
  for (unsigned i = 0; i < length; i++)
    for (unsigned bit = 0; bit < 8; bit++)
      if (text[length - 1 - i] >> bit & 1) vector->SetDigit(8 * i + bit, VERI_DIGIT_1);
  vector->SetIsString();
  return vector;
}

OwnedValue VeriValue::Digits(unsigned width, veri_digit digit) {
  auto vector = std::make_unique<VeriVectorValue>(width);
  vector->SetTo(digit);
  return vector;
}

OwnedValue VeriValue::FromNet(Net* net) {
  auto nets = std::make_unique<VeriNonConstVal>(1, net);
  return ToConst(std::move(nets));
}

OwnedValue VeriValue::FromNets(const Array& nets, bool is_signed) {
  auto value = std::make_unique<VeriNonConstVal>(nets);
  if (is_signed) value->SetSigned();
  return ToConst(std::move(value));
}

OwnedValue VeriValue::ToNonConst(OwnedValue value, const VeriTreeNode* from) {
  if (!value) return nullptr;
  if (value->IsReal()) {
    veri_at(from).Error("not supported use of real number");
    return nullptr;
  }
  VeriAggregateValue* aggregate = value->AsAggregate();
  if (!aggregate) return ToNonConstVal(std::move(value));
  for (OwnedValue& element : aggregate->Elements()) {
    element = ToNonConst(std::move(element), from);
    if (!element) return nullptr;
  }
  return value;
}

OwnedValue VeriValue::ToConst(OwnedValue value) {
  if (!value || !value->IsConstant()) return value;
  if (VeriAggregateValue* aggregate = value->AsAggregate()) {
    for (OwnedValue& element : aggregate->Elements()) element = ToConst(std::move(element));
    return value;
  }
  if (!value->AsNonConst()) return value;
  return ToVectorValue(std::move(value));
}

std::unique_ptr<VeriNonConstVal> VeriValue::ToNonConstVal(OwnedValue value) {
  if (!value || value->IsReal() || value->IsDualPortValue()) return nullptr;
  if (value->IsAggregate()) value = Pack(std::move(value));
  if (!value) return nullptr;
  if (value->AsNonConst()) return std::unique_ptr<VeriNonConstVal>(value.release()->AsNonConst());
  unsigned width = value->Size();
  auto nets = std::make_unique<VeriNonConstVal>(width);
  for (unsigned bit = 0; bit < width; bit++) nets->SetBit(bit, value->GetBit(bit));
  nets->CopyMarks(*value);
  return nets;
}

std::unique_ptr<VeriVectorValue> VeriValue::ToVectorValue(OwnedValue value) {
  if (!value || !value->IsConstant()) return nullptr;
  if (value->IsEnum()) {
    bool is_signed = value->IsSigned();
    value = value->AsEnum()->TakeEncodedValue();
    is_signed ? value->SetSigned() : value->SetUnsigned();
  }
  if (value->IsAggregate()) value = Pack(std::move(value));
  if (!value) return nullptr;
  if (value->AsVector()) return std::unique_ptr<VeriVectorValue>(value.release()->AsVector());
  unsigned width = value->Size();
  auto vector = std::make_unique<VeriVectorValue>(width);
  const VeriIntValue* integer = value->AsInt();
  for (unsigned bit = 0; bit < width; bit++) {
    veri_digit digit = VERI_DIGIT_0;
    if (integer)
      digit = integer->Digit(bit);
    else
      veri_is_digit(value->GetBit(bit), &digit);
    if (digit) vector->SetDigit(bit, digit);
  }
  vector->CopyMarks(*value);
  return vector;
}

std::unique_ptr<VeriRealValue> VeriValue::ToRealValue(OwnedValue value) {
  if (!value || !value->IsConstant() || value->IsAggregate()) return nullptr;
  auto real = std::make_unique<VeriRealValue>(value->Real());
  return real;
}

OwnedValue VeriValue::Pack(OwnedValue value) {
  if (!value || !value->IsAggregate() || value->IsDualPortValue()) return value;
  uint64_t bits = 0;
  for (const OwnedValue& element : value->AsAggregate()->Elements()) bits += element ? element->Size() : 0;
  if (!veri_object_size_is_supported(bits, nullptr)) return nullptr;
  Array nets(static_cast<unsigned>(bits));
  value->GetNets(nets);
  return FromNets(nets);
}

// Integers, reals, enumerations.

veri_digit VeriConstVal::SignDigit() const {
  if (!Size()) return VERI_DIGIT_0;
  veri_digit top = Digit(Size() - 1);
  return IsSigned() || top > VERI_DIGIT_1 ? top : VERI_DIGIT_0;
}

Net* VeriConstVal::GetBit(unsigned bit) const { return veri_digit_net(Digit(bit)); }
Net* VeriConstVal::SignBit() const { return veri_digit_net(SignDigit()); }

OwnedValue VeriIntValue::Copy() const { return std::make_unique<VeriIntValue>(*this); }

veri_digit VeriIntValue::Digit(unsigned bit) const {
  if (bit >= 32) return IsSigned() && _value < 0 ? VERI_DIGIT_1 : VERI_DIGIT_0;
  return static_cast<uint32_t>(_value) >> bit & 1 ? VERI_DIGIT_1 : VERI_DIGIT_0;
}

void VeriIntValue::SetTo(veri_digit digit) {
  if (digit > VERI_DIGIT_1) return VeriValue::SetTo(digit);
  _value = digit == VERI_DIGIT_1 ? -1 : 0;
}

std::string VeriIntValue::String() const { return std::to_string(_value); }

OwnedValue VeriRealValue::Copy() const { return std::make_unique<VeriRealValue>(*this); }

int64_t VeriRealValue::Rounded() const {
  constexpr double limit = 9223372036854775808.0;
  if (std::isnan(_value)) return 0;
  double rounded = std::round(_value);
  if (rounded >= limit) return std::numeric_limits<int64_t>::max();
  if (rounded < -limit) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(rounded);
}

veri_digit VeriRealValue::Digit(unsigned bit) const {
  return Rounded() >> std::min(bit, 63U) & 1 ? VERI_DIGIT_1 : VERI_DIGIT_0;
}

int VeriRealValue::Integer(const VeriTreeNode*) const {
  return static_cast<int>(
      std::clamp<int64_t>(Rounded(), std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

std::string VeriRealValue::String() const { return OwnedString(Strings::dtoa(_value)).get(); }

std::string VeriRealValue::BinaryString() const {
  KESTRIN_REPORT_INTERNAL("Can't create binary string to represent a real value!");
  return {};
}

VeriEnum::VeriEnum(const VeriIdDef* id, OwnedValue encoded) : _id(id), _encoded(std::move(encoded)) {
  KESTRIN_ASSERT(_encoded && _encoded->IsConstant());
  CopyMarks(*_encoded);
}

OwnedValue VeriEnum::Copy() const {
  auto copy = std::make_unique<VeriEnum>(_id, _encoded->Copy());
  copy->CopyMarks(*this);
  return copy;
}

veri_digit VeriEnum::Digit(unsigned bit) const {
  veri_digit digit = VERI_DIGIT_0;
  veri_is_digit(bit < Size() ? _encoded->GetBit(bit) : _encoded->SignBit(), &digit);
  return digit;
}

void VeriEnum::SetSigned() {
  VeriValue::SetSigned();
  _encoded->SetSigned();
}

void VeriEnum::SetUnsigned() {
  VeriValue::SetUnsigned();
  _encoded->SetUnsigned();
}

// Aggregates.

VeriAggregateValue::VeriAggregateValue(std::vector<OwnedValue> elements) : _elements(std::move(elements)) {
  SetUnpacked();
}

VeriAggregateValue::VeriAggregateValue(const VeriAggregateValue& other) : VeriValue(other) {
  _elements.reserve(other._elements.size());
  for (const OwnedValue& element : other._elements) _elements.push_back(element ? element->Copy() : nullptr);
}

OwnedValue VeriAggregateValue::Copy() const { return std::make_unique<VeriAggregateValue>(*this); }

bool VeriAggregateValue::IsConstant() const {
  return std::all_of(_elements.begin(), _elements.end(), [](const OwnedValue& e) { return !e || e->IsConstant(); });
}

unsigned VeriAggregateValue::Size() const {
  uint64_t bits = 0;
  for (const OwnedValue& element : _elements) bits += element ? element->Size() : 0;
  return static_cast<unsigned>(std::min<uint64_t>(bits, std::numeric_limits<unsigned>::max()));
}

Net* VeriAggregateValue::GetBit(unsigned bit) const {
  for (auto element = _elements.rbegin(); element != _elements.rend(); ++element) {
    if (!*element) continue;
    if (bit < (*element)->Size()) return (*element)->GetBit(bit);
    bit -= (*element)->Size();
  }
  return veri_digit_net(VERI_DIGIT_0);
}

Net* VeriAggregateValue::SignBit() const { return veri_digit_net(VERI_DIGIT_0); }

void VeriAggregateValue::SetBit(unsigned bit, Net* net) {
  for (auto element = _elements.rbegin(); element != _elements.rend(); ++element) {
    if (!*element) continue;
    unsigned size = (*element)->Size();
    if (bit >= size) {
      bit -= size;
      continue;
    }
    if ((*element)->IsConstant() && !veri_is_digit(net)) *element = ToNonConstVal(std::move(*element));
    if (*element) (*element)->SetBit(bit, net);
    return;
  }
}

void VeriAggregateValue::SetTo(veri_digit digit) {
  for (OwnedValue& element : _elements)
    if (element) element->SetTo(digit);
}

void VeriAggregateValue::GetNets(Array& nets) const {
  for (const OwnedValue& element : _elements)
    if (element) element->GetNets(nets);
}

bool VeriAggregateValue::HasX() const {
  return std::any_of(_elements.begin(), _elements.end(), [](const OwnedValue& e) { return e && e->HasX(); });
}

bool VeriAggregateValue::HasZ() const {
  return std::any_of(_elements.begin(), _elements.end(), [](const OwnedValue& e) { return e && e->HasZ(); });
}

bool VeriAggregateValue::IsRegistered() const {
  return std::any_of(_elements.begin(), _elements.end(), [](const OwnedValue& e) { return e && e->IsRegistered(); });
}

std::string VeriAggregateValue::String() const {
  std::string text = "'{";
  for (const OwnedValue& element : _elements) {
    if (text.size() > 2) text += ",";
    if (element) text += element->ParamString();
  }
  return text + "}";
}

VeriValue* VeriAggregateValue::GetElement(unsigned position) const {
  return position < _elements.size() ? _elements[position].get() : nullptr;
}

OwnedValue VeriAggregateValue::TakeElement(unsigned position) {
  return position < _elements.size() ? std::move(_elements[position]) : nullptr;
}

void VeriAggregateValue::SetElement(unsigned position, OwnedValue element) {
  if (position < _elements.size()) _elements[position] = std::move(element);
}
