#include "verilog/vericonstraint.h"

#include <algorithm>
#include <limits>

#include "containers/views.h"
#include "database/net.h"
#include "database/netlist.h"
#include "util/services.h"
#include "verilog/veritreenode.h"
#include "verilog/verivalue_report.h"

namespace {
constexpr uint64_t unsigned_max = std::numeric_limits<unsigned>::max();

unsigned saturated(uint64_t number) { return static_cast<unsigned>(std::min(number, unsigned_max)); }

/// The product, at most 2^64-1.
uint64_t product(uint64_t a, uint64_t b) {
  return b && a > std::numeric_limits<uint64_t>::max() / b ? std::numeric_limits<uint64_t>::max() : a * b;
}

uint64_t sum(uint64_t a, uint64_t b) {
  return a > std::numeric_limits<uint64_t>::max() - b ? std::numeric_limits<uint64_t>::max() : a + b;
}

std::string range_text(int left, int right) { return "[" + std::to_string(left) + ":" + std::to_string(right) + "]"; }

std::string element_name(const std::string& name, int64_t index) {
  return name.empty() ? name : name + "[" + std::to_string(index) + "]";
}

std::string member_name(const std::string& name, const std::string& member) {
  return name.empty() ? name : name + "." + member;
}

/// A net of the netlist under construction, at the next place of the bus when there is one.
Net* make_net(const std::string& name, unsigned long linefile, NetBus* bus) {
  auto* net = new Net(name.empty() ? nullptr : name.c_str(), linefile);
  VeriNode::CurrentNetlist()->Add(net);
  if (bus) bus->Add(net);
  return net;
}

/// A bus of the level that its elements need; null for nameless nets.
NetBus* make_bus(const std::string& name, const VeriRangeConstraint& range, unsigned long linefile, int level,
                 NetBus* outer) {
  if (name.empty()) return nullptr;
  auto* bus = new NetBus(name.c_str(), range.LeftBound(), range.RightBound(), linefile, level);
  VeriNode::CurrentNetlist()->Add(bus);
  if (outer) outer->Add(bus);
  return bus;
}

PortBus* make_port_bus(Netlist* netlist, const std::string& name, const VeriRangeConstraint& range, port_dir direction,
                       unsigned long linefile, int level, PortBus* outer) {
  auto* bus = new PortBus(name.c_str(), direction, range.LeftBound(), range.IsUp(), linefile, level);
  netlist->Add(bus);
  if (outer) outer->Add(bus);
  return bus;
}

/// How many levels of buses a type needs above its nets: -1 for a scalar, and for what makes no bus of its own.
int bus_level(const VeriConstraint& type) {
  if (type.IsRangeConstraint()) return 0;
  const VeriConstraint* element = type.IsArrayConstraint() ? type.ElementConstraint() : nullptr;
  if (!element) return -1;
  if (element->IsCompositeConstraint() && element->IsUnpacked()) return -2; // its elements are not alike
  int below = element->IsCompositeConstraint() ? 0 : bus_level(*element);
  return below == -2 ? -2 : below + 1;
}

OwnedValue packed_nets(const std::vector<OwnedValue>& parts, bool is_signed) {
  Array nets;
  for (const OwnedValue& part : parts) part->GetNets(nets);
  auto value = std::make_unique<VeriNonConstVal>(nets);
  if (is_signed) value->SetSigned();
  return value;
}

OwnedValue digits(uint64_t width, veri_digit digit, bool is_signed) {
  OwnedValue value = VeriValue::Digits(static_cast<unsigned>(width), digit);
  if (is_signed) value->SetSigned();
  return value;
}

/// The digit of a constant of a type: an initial value of a type without x and z is 0.
veri_digit digit_of(const VeriConstraint& type, veri_digit digit, bool initial) {
  return initial && type.NumLogicStates() == 2 ? VERI_DIGIT_0 : digit;
}
} // namespace

// What all types share.

const VeriConstraint* VeriConstraint::FinalElementConstraint() const {
  const VeriConstraint* type = this;
  while (const VeriConstraint* element = type->ElementConstraint()) type = element;
  return type;
}

const VeriConstraint* VeriConstraint::ElementConstraintAtDim(unsigned dimension) const {
  const VeriConstraint* type = this;
  while (type && dimension--) type = type->ElementConstraint();
  return type;
}

const VeriRangeConstraint* VeriConstraint::IndexConstraintAtDim(unsigned dimension) const {
  const VeriConstraint* type = ElementConstraintAtDim(dimension);
  return type ? type->IndexConstraint() : nullptr;
}

int VeriConstraint::Left() const { return IndexConstraint() ? IndexConstraint()->LeftBound() : 0; }
int VeriConstraint::Right() const { return IndexConstraint() ? IndexConstraint()->RightBound() : 0; }
int VeriConstraint::Low() const { return std::min(Left(), Right()); }
int VeriConstraint::High() const { return std::max(Left(), Right()); }
veri_range_dir VeriConstraint::Dir() const { return Right() > Left() ? VERI_RANGE_UP : VERI_RANGE_DOWN; }
unsigned VeriConstraint::Size() const { return saturated(TotalBits()); }
int64_t VeriConstraint::PosOf(int64_t) const { return -1; }

int64_t VeriConstraint::PosOf(const VeriValue& index) const {
  int64_t number = 0;
  return index.ToInt64(&number) ? PosOf(number) : -1;
}

bool VeriConstraint::IsTypeCompatible(const VeriConstraint& other) const {
  if (IsRealRange() != other.IsRealRange() || other.IsInterfaceConstraint()) return false;
  if (IsPacked() != other.IsPacked()) return false;
  if (IsPacked()) return TotalBits() == other.TotalBits();
  if (Length() != other.Length() || IsArrayConstraint() != other.IsArrayConstraint()) return false;
  const VeriConstraint* element = ElementConstraint();
  const VeriConstraint* other_element = other.ElementConstraint();
  return element && other_element && element->IsTypeCompatible(*other_element);
}

const VeriConstraint* VeriConstraint::AssignmentConstraint(const VeriConstraint* other,
                                                           const VeriTreeNode* from) const {
  if (!other || IsPacked() || other->IsUnpacked()) return this;
  if (IsCompositeConstraint())
    veri_at(from).Error("assignments to unpacked structs must be aggregate expressions");
  else if (IsArrayConstraint())
    veri_at(from).Error("assignments to unpacked arrays must be aggregate expressions");
  else
    return this;
  return nullptr;
}

const VeriConstraint* VeriConstraint::ComparisonConstraint(const VeriConstraint* other,
                                                           const VeriTreeNode* from) const {
  if (!other) return this;
  if (IsPacked() != other->IsPacked()) {
    veri_at(from).Error("cannot assign or compare packed values to unpacked values or vice versa");
    return nullptr;
  }
  return other->TotalBits() > TotalBits() ? other : this;
}

bool VeriConstraint::ConstrainBy(const VeriValue&, const VeriTreeNode*) const { return true; }

OwnedValue VeriConstraint::CreateValue(const char* name, unsigned long linefile, const VeriTreeNode* from) const {
  if (IsString() || IsDynamicArray()) {
    veri_at(from).Error("no support for %s (SystemVerilog)",
                        IsString() ? "declaring string variables outside functions and tasks"
                                   : "declaring dynamic arrays outside functions and tasks");
    return nullptr;
  }
  if (FinalElementConstraint()->IsRealRange() || IsInterfaceConstraint()) {
    veri_at(from).Error("can't create net value for unsupported range type");
    return nullptr;
  }
  if (IsPacked() && !veri_width_is_supported(TotalBits(), from)) return nullptr;
  if (!veri_object_size_is_supported(TotalBits(), from)) return nullptr;
  return BuildNets(name ? name : "", linefile, nullptr);
}

OwnedValue VeriConstraint::CreateDigitValue(veri_digit digit, const VeriTreeNode* from) const {
  if (IsPacked() && !IsRealRange() && !veri_width_is_supported(TotalBits(), from)) return nullptr;
  return veri_object_size_is_supported(TotalBits(), from) ? BuildConstant(digit, false) : nullptr;
}

OwnedValue VeriConstraint::CreateXValue(const VeriTreeNode* from) const { return CreateDigitValue(VERI_DIGIT_X, from); }

OwnedValue VeriConstraint::CreateInitialValue(const VeriTreeNode* from) const {
  if (IsPacked() && !IsRealRange() && !veri_width_is_supported(TotalBits(), from)) return nullptr;
  return veri_object_size_is_supported(TotalBits(), from) ? BuildConstant(VERI_DIGIT_X, true) : nullptr;
}

OwnedValue VeriConstraint::CreatePatternValue(std::vector<OwnedValue> values, OwnedValue otherwise,
                                              const VeriTreeNode* from) const {
  if (!ElementConstraintAt(0)) {
    veri_at(from).Error("illegal assignment pattern - %s", "the target is neither an array nor a struct");
    return nullptr;
  }
  if (values.size() > Length()) {
    veri_at(from).Error("expression has %d elements; expected %d", static_cast<int>(values.size()),
                        static_cast<int>(Length()));
    return nullptr;
  }
  if (!veri_object_size_is_supported(TotalBits(), from)) return nullptr;
  values.resize(Length());
  std::vector<OwnedValue> elements;
  for (unsigned i = 0; i < Length(); i++) {
    const VeriConstraint* type = ElementConstraintAt(i);
    OwnedValue value = std::move(values[i]);
    if (!value && !otherwise) {
      veri_at(from).Error("the assignment pattern needs a default to cover unmatched elements");
      return nullptr;
    }
    if (!value) {
      // A default that does not have the shape of an array or struct goes on into its elements.
      bool descends = type->IsUnpacked() && !otherwise->IsAggregate();
      value = descends ? type->CreatePatternValue({}, otherwise->Copy(), from) : otherwise->Copy();
    }
    value = VeriValue::CheckAgainst(std::move(value), *type, from, false);
    if (!value) return nullptr;
    elements.push_back(std::move(value));
  }
  auto aggregate = std::make_unique<VeriAggregateValue>(std::move(elements));
  if (IsUnpacked()) return aggregate;
  OwnedValue packed = VeriValue::Pack(std::move(aggregate));
  if (packed && IsSigned()) packed->SetSigned();
  return packed;
}

OwnedValue VeriConstraint::Unpack(OwnedValue value, const VeriTreeNode*) const {
  if (IsPacked()) return value;
  KESTRIN_REPORT_INTERNAL("This constraint doesn't know how to unpack an aggregate value");
  return value;
}

void VeriConstraint::CreatePorts(Netlist* netlist, const char* name, port_dir direction, unsigned long linefile,
                                 Array& ports) const {
  if (veri_object_size_is_supported(TotalBits(), nullptr))
    BuildPorts(netlist, name, direction, linefile, nullptr, ports);
}

// Scalars.

OwnedConstraint VeriLogicConstraint::Copy() const { return std::make_unique<VeriLogicConstraint>(*this); }

std::string VeriLogicConstraint::Image() const { return _num_states == 2 ? "bit" : "logic"; }

OwnedValue VeriLogicConstraint::BuildNets(const std::string& name, unsigned long linefile, NetBus* bus) const {
  auto value = std::make_unique<VeriNonConstVal>(1, make_net(name, linefile, bus));
  if (_signed) value->SetSigned();
  return value;
}

void VeriLogicConstraint::BuildPorts(Netlist* netlist, const std::string& name, port_dir direction,
                                     unsigned long linefile, PortBus* bus, Array& ports) const {
  auto* port = new Port(name.c_str(), direction, linefile);
  netlist->Add(port);
  if (bus) bus->Add(port);
  ports.InsertLast(port);
}

OwnedValue VeriLogicConstraint::BuildConstant(veri_digit digit, bool initial) const {
  return digits(1, digit_of(*this, digit, initial), _signed);
}

// Ranges.

VeriRangeConstraint::VeriRangeConstraint(int left, int right) : _left(left), _right(right) {}

VeriRangeConstraint::VeriRangeConstraint(const VeriRangeConstraint& other)
    : VeriConstraint(other), _left(other._left), _right(other._right), _is_enum(other._is_enum),
      _is_real(other._is_real), _signed(other._signed), _num_states(other._num_states) {
  for (const OwnedValue& member : other._members) _members.push_back(member->Copy());
}

std::unique_ptr<VeriRangeConstraint> VeriRangeConstraint::Integer(unsigned width, bool is_signed, unsigned num_states) {
  auto range = std::make_unique<VeriRangeConstraint>(static_cast<int>(width) - 1, 0);
  range->_signed = is_signed;
  range->_num_states = num_states;
  return range;
}

std::unique_ptr<VeriRangeConstraint> VeriRangeConstraint::RealType() {
  auto range = std::make_unique<VeriRangeConstraint>(63, 0);
  range->_is_real = true;
  range->_signed = true;
  return range;
}

std::unique_ptr<VeriRangeConstraint> VeriRangeConstraint::Enumeration(const VeriConstraint& base,
                                                                      const std::vector<const VeriValue*>& members) {
  auto width = static_cast<int>(std::min<uint64_t>(base.TotalBits(), std::numeric_limits<int>::max()));
  const VeriRangeConstraint* index = base.IndexConstraint();
  bool has_own_range = index && index->Length() == base.TotalBits();
  auto range = has_own_range ? std::make_unique<VeriRangeConstraint>(index->LeftBound(), index->RightBound())
                             : std::make_unique<VeriRangeConstraint>(width - 1, 0);
  range->_is_enum = true;
  range->_signed = base.IsSigned();
  range->_num_states = base.NumLogicStates();
  for (const VeriValue* member : members)
    if (member) range->_members.push_back(member->Copy());
  return range;
}

OwnedConstraint VeriRangeConstraint::Copy() const { return std::make_unique<VeriRangeConstraint>(*this); }

unsigned VeriRangeConstraint::Length() const {
  int64_t span = static_cast<int64_t>(_left) - _right;
  return saturated(static_cast<uint64_t>(span < 0 ? -span : span) + 1);
}

int64_t VeriRangeConstraint::PosOf(int64_t index) const {
  if (_is_real || index < std::min(_left, _right) || index > std::max(_left, _right)) return -1;
  return IsUp() ? index - _left : _left - index;
}

OwnedConstraint VeriRangeConstraint::Slice(int left, int right) const {
  if (_is_real) return nullptr;
  auto slice = std::make_unique<VeriUniformArrayConstraint>(
      VeriRangeConstraint(left, right), std::make_unique<VeriLogicConstraint>(_num_states), true, false);
  return slice;
}

std::string VeriRangeConstraint::Image() const {
  if (_is_real) return "real";
  return (_is_enum ? "enum " : "") + range_text(_left, _right);
}

bool VeriRangeConstraint::ConstrainBy(const VeriValue& value, const VeriTreeNode* from) const {
  if (!_is_enum || !value.IsConstant() || value.HasXZ() || _members.empty()) return true;
  for (const OwnedValue& member : _members) {
    bool same = true;
    for (unsigned bit = 0; bit < std::max(member->Size(), value.Size()) && same; bit++)
      same = member->GetBit(bit) == value.GetBit(bit);
    if (same) return true;
  }
  std::string text = value.IsEnum() ? value.AsEnum()->GetEncodedValue().String() : value.String();
  veri_at(from).Error("enum %s is not a member of the target constraint", text.c_str());
  return false;
}

OwnedValue VeriRangeConstraint::BuildNets(const std::string& name, unsigned long linefile, NetBus* outer) const {
  NetBus* bus = make_bus(name, *this, linefile, 0, outer);
  Array nets;
  for (unsigned i = 0; i < Length(); i++) {
    int64_t index = IsUp() ? static_cast<int64_t>(_left) + i : static_cast<int64_t>(_left) - i;
    nets.InsertLast(make_net(element_name(name, index), linefile, bus));
  }
  auto value = std::make_unique<VeriNonConstVal>(nets);
  if (_signed) value->SetSigned();
  return value;
}

void VeriRangeConstraint::BuildPorts(Netlist* netlist, const std::string& name, port_dir direction,
                                     unsigned long linefile, PortBus* outer, Array& ports) const {
  PortBus* bus = make_port_bus(netlist, name, *this, direction, linefile, 0, outer);
  const VeriLogicConstraint scalar;
  const VeriConstraint& bit = scalar;
  for (unsigned i = 0; i < Length(); i++) {
    int64_t index = IsUp() ? static_cast<int64_t>(_left) + i : static_cast<int64_t>(_left) - i;
    bit.BuildPorts(netlist, element_name(name, index), direction, linefile, bus, ports);
  }
}

OwnedValue VeriRangeConstraint::BuildConstant(veri_digit digit, bool initial) const {
  if (_is_real) return VeriValue::FromReal(0);
  return digits(TotalBits(), digit_of(*this, digit, initial), _signed);
}

OwnedValue VeriRangeConstraint::CreateStateVectorValue(const char* name, const std::vector<VeriStateName>& states,
                                                       unsigned long linefile) {
  Array nets;
  for (size_t i = states.size(); i-- > 0;) {
    Net* net = make_net(std::string(name) + "." + states[i].name, linefile, nullptr);
    net->AddAtt(" :fsm", name);
    net->AddAtt(" :state_position", std::to_string(i).c_str());
    net->AddAtt(ATT_STATE_ENCODING, states[i].code.c_str());
    nets.InsertLast(net);
  }
  auto value = std::make_unique<VeriNonConstVal>(nets);
  value->SetOnehot();
  kestrin_debug("Onehot encoded variable %s has %d states", name, static_cast<int>(states.size()));
  return value;
}

// Arrays of one element type.

VeriUniformArrayConstraint::VeriUniformArrayConstraint(const VeriRangeConstraint& index, OwnedConstraint element,
                                                       bool packed, bool is_signed)
    : VeriArrayConstraint(index), _element(std::move(element)), _packed(packed), _signed(is_signed) {
  KESTRIN_ASSERT(_element != nullptr);
}

std::unique_ptr<VeriUniformArrayConstraint> VeriUniformArrayConstraint::Vector(int left, int right, bool is_signed,
                                                                               unsigned num_states) {
  return std::make_unique<VeriUniformArrayConstraint>(
      VeriRangeConstraint(left, right), std::make_unique<VeriLogicConstraint>(num_states), true, is_signed);
}

VeriUniformArrayConstraint::VeriUniformArrayConstraint(const VeriUniformArrayConstraint& other)
    : VeriArrayConstraint(other), _element(other._element->Copy()), _packed(other._packed), _string(other._string),
      _signed(other._signed), _dynamic(other._dynamic) {}

OwnedConstraint VeriUniformArrayConstraint::Copy() const { return std::make_unique<VeriUniformArrayConstraint>(*this); }

const VeriConstraint* VeriUniformArrayConstraint::ElementConstraintAt(unsigned position) const {
  return position < Length() ? _element.get() : nullptr;
}

OwnedConstraint VeriUniformArrayConstraint::Slice(int left, int right) const {
  // IEEE 1364-2005 clause 5.5.1: part-selects are unsigned.
  auto slice = std::make_unique<VeriUniformArrayConstraint>(VeriRangeConstraint(left, right), _element->Copy(), _packed,
                                                            !_packed && _signed);
  slice->_dynamic = _dynamic;
  return slice;
}

unsigned VeriUniformArrayConstraint::TotalElements() const {
  return saturated(product(Length(), _element->IsArrayConstraint() ? _element->TotalElements() : 1));
}

uint64_t VeriUniformArrayConstraint::TotalBits() const { return product(Length(), _element->TotalBits()); }

std::string VeriUniformArrayConstraint::Image() const {
  if (_string) return "string";
  return _packed ? range_text(Left(), Right()) + _element->Image()
                 : _element->Image() + " " + range_text(Left(), Right());
}

OwnedValue VeriUniformArrayConstraint::Unpack(OwnedValue value, const VeriTreeNode* from) const {
  if (!value || _packed || value->IsAggregate()) return value;
  auto aggregate = std::make_unique<VeriAggregateValue>();
  unsigned size = ElementSize();
  for (unsigned i = 0; i < Length(); i++) {
    OwnedValue element = VeriValue::EvaluateSliced(value->Copy(), i, 1, size);
    if (element && _element->IsSigned()) element->SetSigned();
    aggregate->Append(_element->Unpack(std::move(element), from));
  }
  return aggregate;
}

OwnedValue VeriUniformArrayConstraint::BuildNets(const std::string& name, unsigned long linefile, NetBus* outer) const {
  int level = bus_level(*this);
  NetBus* bus = level < 0 ? nullptr : make_bus(name, _index, linefile, level, outer);
  std::vector<OwnedValue> elements;
  elements.reserve(Length());
  for (unsigned i = 0; i < Length(); i++) {
    int64_t index = _index.IsUp() ? static_cast<int64_t>(Left()) + i : static_cast<int64_t>(Left()) - i;
    elements.push_back(_element->BuildNets(element_name(name, index), linefile, bus));
  }
  if (_packed) return packed_nets(elements, _signed);
  return std::make_unique<VeriAggregateValue>(std::move(elements));
}

void VeriUniformArrayConstraint::BuildPorts(Netlist* netlist, const std::string& name, port_dir direction,
                                            unsigned long linefile, PortBus* outer, Array& ports) const {
  int level = bus_level(*this);
  PortBus* bus = level < 0 ? nullptr : make_port_bus(netlist, name, _index, direction, linefile, level, outer);
  for (unsigned i = 0; i < Length(); i++) {
    int64_t index = _index.IsUp() ? static_cast<int64_t>(Left()) + i : static_cast<int64_t>(Left()) - i;
    _element->BuildPorts(netlist, element_name(name, index), direction, linefile, bus, ports);
  }
}

OwnedValue VeriUniformArrayConstraint::BuildConstant(veri_digit digit, bool initial) const {
  if (_packed) return digits(TotalBits(), digit_of(*this, digit, initial), _signed);
  std::vector<OwnedValue> elements;
  for (unsigned i = 0; i < Length(); i++) elements.push_back(_element->BuildConstant(digit, initial));
  return std::make_unique<VeriAggregateValue>(std::move(elements));
}

// Arrays whose elements differ.

VeriCompositeArrayConstraint::VeriCompositeArrayConstraint(const VeriRangeConstraint& index,
                                                           std::vector<OwnedConstraint> elements)
    : VeriArrayConstraint(index), _elements(std::move(elements)) {
  KESTRIN_ASSERT(_elements.size() == Length());
}

VeriCompositeArrayConstraint::VeriCompositeArrayConstraint(const VeriCompositeArrayConstraint& other)
    : VeriArrayConstraint(other) {
  for (const OwnedConstraint& element : other._elements) _elements.push_back(element->Copy());
}

OwnedConstraint VeriCompositeArrayConstraint::Copy() const {
  return std::make_unique<VeriCompositeArrayConstraint>(*this);
}

const VeriConstraint* VeriCompositeArrayConstraint::ElementConstraintAt(unsigned position) const {
  return position < _elements.size() ? _elements[position].get() : nullptr;
}

unsigned VeriCompositeArrayConstraint::TotalElements() const {
  uint64_t total = 0;
  for (const OwnedConstraint& element : _elements) total += element->IsArrayConstraint() ? element->TotalElements() : 1;
  return saturated(total);
}

uint64_t VeriCompositeArrayConstraint::TotalBits() const {
  uint64_t total = 0;
  for (const OwnedConstraint& element : _elements) total = sum(total, element->TotalBits());
  return total;
}

std::string VeriCompositeArrayConstraint::Image() const {
  return (_elements.empty() ? "" : _elements.front()->Image() + " ") + range_text(Left(), Right());
}

OwnedValue VeriCompositeArrayConstraint::Unpack(OwnedValue value, const VeriTreeNode* from) const {
  if (!value || value->IsAggregate()) return value;
  auto aggregate = std::make_unique<VeriAggregateValue>();
  unsigned bits = value->Size();
  for (const OwnedConstraint& element : _elements) {
    unsigned size = std::min(element->Size(), bits);
    bits -= size;
    Array nets;
    for (unsigned bit = size; bit-- > 0;) nets.InsertLast(value->GetBit(bits + bit));
    aggregate->Append(element->Unpack(VeriValue::FromNets(nets, element->IsSigned()), from));
  }
  return aggregate;
}

OwnedValue VeriCompositeArrayConstraint::BuildNets(const std::string& name, unsigned long linefile, NetBus*) const {
  std::vector<OwnedValue> elements;
  for (unsigned i = 0; i < _elements.size(); i++) {
    int64_t index = _index.IsUp() ? static_cast<int64_t>(Left()) + i : static_cast<int64_t>(Left()) - i;
    elements.push_back(_elements[i]->BuildNets(element_name(name, index), linefile, nullptr));
  }
  return std::make_unique<VeriAggregateValue>(std::move(elements));
}

void VeriCompositeArrayConstraint::BuildPorts(Netlist* netlist, const std::string& name, port_dir direction,
                                              unsigned long linefile, PortBus*, Array& ports) const {
  for (unsigned i = 0; i < _elements.size(); i++) {
    int64_t index = _index.IsUp() ? static_cast<int64_t>(Left()) + i : static_cast<int64_t>(Left()) - i;
    _elements[i]->BuildPorts(netlist, element_name(name, index), direction, linefile, nullptr, ports);
  }
}

OwnedValue VeriCompositeArrayConstraint::BuildConstant(veri_digit digit, bool initial) const {
  std::vector<OwnedValue> elements;
  for (const OwnedConstraint& element : _elements) elements.push_back(element->BuildConstant(digit, initial));
  return std::make_unique<VeriAggregateValue>(std::move(elements));
}

// Structs and unions.

VeriCompositeConstraint::VeriCompositeConstraint(Kind kind, std::vector<Member> members, bool packed, bool is_signed,
                                                 const void* data_type)
    : _kind(kind), _members(std::move(members)), _packed(packed), _signed(is_signed), _data_type(data_type) {}

VeriCompositeConstraint::VeriCompositeConstraint(const VeriCompositeConstraint& other)
    : VeriConstraint(other), _kind(other._kind), _packed(other._packed), _signed(other._signed),
      _data_type(other._data_type) {
  for (const Member& member : other._members) _members.push_back({member.name, member.id, member.type->Copy()});
}

OwnedConstraint VeriCompositeConstraint::Copy() const { return std::make_unique<VeriCompositeConstraint>(*this); }

int VeriCompositeConstraint::MemberPosition(const char* name) const {
  for (size_t i = 0; i < _members.size(); i++)
    if (_members[i].name == name) return static_cast<int>(i);
  return -1;
}

uint64_t VeriCompositeConstraint::MemberOffset(unsigned position) const {
  // The members of a union are aligned at its least significant bit.
  if (_kind == UNION) return TotalBits() - _members[position].type->TotalBits();
  uint64_t offset = 0;
  for (unsigned i = 0; i < position; i++) offset = sum(offset, _members[i].type->TotalBits());
  return offset;
}

const VeriConstraint* VeriCompositeConstraint::ElementConstraintAt(unsigned position) const {
  return position < _members.size() ? _members[position].type.get() : nullptr;
}

uint64_t VeriCompositeConstraint::TotalBits() const {
  uint64_t total = 0;
  for (const Member& member : _members)
    total = _kind == UNION ? std::max(total, member.type->TotalBits()) : sum(total, member.type->TotalBits());
  return total;
}

unsigned VeriCompositeConstraint::NumLogicStates() const {
  for (const Member& member : _members)
    if (member.type->NumLogicStates() != 2) return 4;
  return 2;
}

bool VeriCompositeConstraint::IsTypeCompatible(const VeriConstraint& other) const {
  if (_packed) return VeriConstraint::IsTypeCompatible(other);
  const VeriCompositeConstraint* composite = other.AsComposite();
  if (!composite || composite->_packed || _members.size() != composite->_members.size()) return false;
  if (_data_type && composite->_data_type) return _data_type == composite->_data_type;
  for (size_t i = 0; i < _members.size(); i++)
    if (!_members[i].type->IsTypeCompatible(*composite->_members[i].type)) return false;
  return true;
}

std::string VeriCompositeConstraint::Image() const {
  std::string text = _kind == UNION ? "union" : "struct";
  if (_packed) text += " packed";
  text += "{";
  for (const Member& member : _members) text += member.type->Image() + " " + member.name + ";";
  return text + "}";
}

OwnedValue VeriCompositeConstraint::Unpack(OwnedValue value, const VeriTreeNode* from) const {
  if (!value || _packed || value->IsAggregate()) return value;
  auto aggregate = std::make_unique<VeriAggregateValue>();
  for (unsigned i = 0; i < _members.size(); i++) {
    const VeriConstraint& type = *_members[i].type;
    unsigned low = static_cast<unsigned>(TotalBits() - MemberOffset(i) - type.TotalBits());
    Array nets;
    for (unsigned bit = type.Size(); bit-- > 0;) nets.InsertLast(value->GetBit(low + bit));
    aggregate->Append(type.Unpack(VeriValue::FromNets(nets, type.IsSigned()), from));
  }
  return aggregate;
}

OwnedValue VeriCompositeConstraint::ReadMember(OwnedValue value, unsigned position) const {
  if (!value || position >= _members.size()) return nullptr;
  if (value->IsAggregate()) return value->TakeElement(position);
  const VeriConstraint& type = *_members[position].type;
  OwnedValue member =
      VeriValue::EvaluateSliced(std::move(value), static_cast<int64_t>(MemberOffset(position)), type.Size(), 1);
  if (member && type.IsSigned()) member->SetSigned();
  return member;
}

OwnedValue VeriCompositeConstraint::AssignMember(OwnedValue value, unsigned position, OwnedValue part) const {
  if (!value || !part || position >= _members.size()) return value;
  if (value->IsAggregate()) {
    value->SetElement(position, std::move(part));
    return value;
  }
  return VeriValue::AssignSliced(std::move(value), static_cast<int64_t>(MemberOffset(position)),
                                 _members[position].type->Size(), 1, std::move(part));
}

OwnedValue VeriCompositeConstraint::BuildNets(const std::string& name, unsigned long linefile, NetBus* outer) const {
  if (_packed) {
    // A packed struct is a vector of its own, whatever its members are.
    const VeriRangeConstraint range(static_cast<int>(Size()) - 1, 0);
    const VeriConstraint& bits = range;
    OwnedValue value = bits.BuildNets(name, linefile, outer);
    if (_signed) value->SetSigned();
    return value;
  }
  std::vector<OwnedValue> elements;
  for (const Member& member : _members)
    elements.push_back(member.type->BuildNets(member_name(name, member.name), linefile, nullptr));
  return std::make_unique<VeriAggregateValue>(std::move(elements));
}

void VeriCompositeConstraint::BuildPorts(Netlist* netlist, const std::string& name, port_dir direction,
                                         unsigned long linefile, PortBus* outer, Array& ports) const {
  if (_packed) {
    const VeriRangeConstraint range(static_cast<int>(Size()) - 1, 0);
    const VeriConstraint& bits = range;
    bits.BuildPorts(netlist, name, direction, linefile, outer, ports);
    return;
  }
  for (const Member& member : _members)
    member.type->BuildPorts(netlist, member_name(name, member.name), direction, linefile, nullptr, ports);
}

OwnedValue VeriCompositeConstraint::BuildConstant(veri_digit digit, bool initial) const {
  if (_packed) return digits(TotalBits(), digit_of(*this, digit, initial), _signed);
  std::vector<OwnedValue> elements;
  for (const Member& member : _members) elements.push_back(member.type->BuildConstant(digit, initial));
  return std::make_unique<VeriAggregateValue>(std::move(elements));
}

// Interfaces.

OwnedConstraint VeriInterfaceConstraint::Copy() const { return std::make_unique<VeriInterfaceConstraint>(*this); }

bool VeriInterfaceConstraint::IsTypeCompatible(const VeriConstraint& other) const {
  const VeriInterfaceConstraint* interface = other.AsInterface();
  return interface && interface->_interface == _interface;
}

OwnedValue VeriInterfaceConstraint::BuildNets(const std::string&, unsigned long, NetBus*) const { return nullptr; }

void VeriInterfaceConstraint::BuildPorts(Netlist*, const std::string&, port_dir, unsigned long, PortBus*,
                                         Array&) const {}

OwnedValue VeriInterfaceConstraint::BuildConstant(veri_digit, bool) const { return nullptr; }
