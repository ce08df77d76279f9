// VeriNonConstVal: word-level logic on vectors of nets. Bits that are constant nets are decided here; only what is left
// becomes operators and gates of the netlist under construction.
#include <algorithm>

#include "containers/set.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "util/services.h"
#include "verilog/veritreenode.h"
#include "verilog/verivalue.h"
#include "verilog/verivalue_logic.h"
#include "verilog/verivalue_report.h"

namespace {
Net* zero() { return veri_digit_net(VERI_DIGIT_0); }
Net* one() { return veri_digit_net(VERI_DIGIT_1); }
Net* unknown() { return veri_digit_net(VERI_DIGIT_X); }
bool is_unknown(const Net* net) { return net == unknown() || net == veri_digit_net(VERI_DIGIT_Z); }
} // namespace

// Gates on nets that may be constants.

VeriLogic::VeriLogic(const VeriTreeNode* from) : _linefile(veri_linefile(from)) {}

Netlist* VeriLogic::netlist() const { return VeriNode::CurrentNetlist(); }

Net* VeriLogic::Inv(Net* a) const {
  veri_digit digit;
  if (!veri_is_digit(a, &digit)) return netlist()->Inv(a, _linefile);
  return veri_digit_net(digit == VERI_DIGIT_0 ? VERI_DIGIT_1 : digit == VERI_DIGIT_1 ? VERI_DIGIT_0 : VERI_DIGIT_X);
}

// An unknown bit that meets logic may be taken as either value: it is taken as the one that needs no gate.
Net* VeriLogic::And(Net* a, Net* b) const {
  if (a == zero() || b == zero()) return zero();
  if (is_unknown(a) || is_unknown(b)) return veri_is_digit(a) && veri_is_digit(b) ? unknown() : zero();
  if (a == one() || a == b) return b;
  return b == one() ? a : netlist()->And(a, b, _linefile);
}

Net* VeriLogic::Or(Net* a, Net* b) const {
  if (a == one() || b == one()) return one();
  if (is_unknown(a) || is_unknown(b)) return veri_is_digit(a) && veri_is_digit(b) ? unknown() : one();
  if (a == zero() || a == b) return b;
  return b == zero() ? a : netlist()->Or(a, b, _linefile);
}

Net* VeriLogic::Xor(Net* a, Net* b) const {
  if (is_unknown(a) || is_unknown(b)) return unknown();
  if (a == b) return zero();
  if (a == zero()) return b;
  if (b == zero()) return a;
  if (a == one()) return Inv(b);
  return b == one() ? Inv(a) : netlist()->Xor(a, b, _linefile);
}

Net* VeriLogic::Xnor(Net* a, Net* b) const {
  if (veri_is_digit(a) || veri_is_digit(b) || a == b) return Inv(Xor(a, b));
  return netlist()->Xnor(a, b, _linefile);
}

Net* VeriLogic::Mux(Net* in0, Net* in1, Net* control) const {
  if (in0 == in1 || control == zero()) return in0;
  if (control == one() || is_unknown(control) || in0 == unknown()) return in1;
  if (in1 == unknown()) return in0;
  return netlist()->Mux(in0, in1, control, _linefile);
}

Net* VeriLogic::Reduce(const Array& nets, prim_type_enum gate) const {
  bool is_and = gate == PRIM_AND;
  bool is_xor = gate == PRIM_XOR;
  Net* neutral = is_and ? one() : zero();
  Net* absorbing = is_and ? zero() : one();
  Array inputs;
  Set seen;
  bool has_unknown = false;
  bool inverted = false;
  bool has_logic = false;
  for (Net* net : ItemsOf<Net*>(&nets)) {
    if (!is_xor && net == absorbing) return absorbing;
    has_logic = has_logic || !veri_is_digit(net);
    if (is_unknown(net))
      has_unknown = true;
    else if (is_xor && net == one())
      inverted = !inverted;
    else if (net != neutral && (is_xor || seen.Insert(net)))
      inputs.InsertLast(net);
  }
  if (has_unknown) return is_xor || !has_logic ? unknown() : absorbing;
  Net* result = nullptr;
  if (!inputs.Size())
    result = neutral;
  else if (inputs.Size() == 1)
    result = FromWord<Net*>(inputs.At(0));
  else if (inputs.Size() == 2)
    result = is_and   ? And(FromWord<Net*>(inputs.At(0)), FromWord<Net*>(inputs.At(1)))
             : is_xor ? Xor(FromWord<Net*>(inputs.At(0)), FromWord<Net*>(inputs.At(1)))
                      : Or(FromWord<Net*>(inputs.At(0)), FromWord<Net*>(inputs.At(1)));
  else if (is_and)
    netlist()->ReduceAnd(&inputs, &result, _linefile);
  else if (is_xor)
    netlist()->ReduceXor(&inputs, &result, _linefile);
  else
    netlist()->ReduceOr(&inputs, &result, _linefile);
  return inverted ? Inv(result) : result;
}

Net* VeriLogic::NewNet() const {
  auto* net = new Net;
  netlist()->Add(net);
  return net;
}

void VeriLogic::NewNets(ArrayOf<Net>& nets, unsigned count) const {
  for (unsigned i = 0; i < count; i++) nets.InsertLast(NewNet());
}

// The vector.

VeriNonConstVal::VeriNonConstVal(unsigned width) : _nets(width, zero()) {
  if (!width) _nets.Reset();
}

VeriNonConstVal::VeriNonConstVal(unsigned width, Net* fill) : _nets(width, fill) {
  if (!width) _nets.Reset();
}

VeriNonConstVal::VeriNonConstVal(const Array& nets) : _nets(nets.Size()) {
  for (Net* net : ItemsOf<Net*>(&nets)) _nets.InsertLast(net);
}

OwnedValue VeriNonConstVal::Copy() const { return std::make_unique<VeriNonConstVal>(*this); }

bool VeriNonConstVal::IsConstant() const {
  for (Net* net : _nets)
    if (!veri_is_digit(net)) return false;
  return true;
}

Net* VeriNonConstVal::GetBit(unsigned bit) const { return bit < Size() ? _nets.At(Size() - 1 - bit) : SignBit(); }

Net* VeriNonConstVal::SignBit() const {
  if (!Size()) return zero();
  Net* top = _nets.At(0);
  return IsSigned() || is_unknown(top) ? top : zero();
}

void VeriNonConstVal::SetBit(unsigned bit, Net* net) {
  if (bit < Size()) _nets.Set(Size() - 1 - bit, net);
}

void VeriNonConstVal::SetTo(veri_digit digit) {
  Net* net = veri_digit_net(digit);
  for (unsigned i = 0; i < Size(); i++) _nets.Set(i, net);
}

bool VeriNonConstVal::HasX() const { return ContainsNet(unknown()); }
bool VeriNonConstVal::HasZ() const { return ContainsNet(veri_digit_net(VERI_DIGIT_Z)); }

bool VeriNonConstVal::ContainsNet(const Net* net) const {
  for (Net* candidate : _nets)
    if (candidate == net) return true;
  return false;
}

namespace {
/// The register whose output the net is.
Instance* register_of(const Net* net) {
  Instance* driver = veri_is_digit(net) ? nullptr : net->Driver();
  return driver && kestrin_is_register_type(driver->Type()) ? driver : nullptr;
}

/// The same, when the register was made for the value at hand and nothing reads it yet, so that it may be changed.
Instance* fresh_register_of(const Net* net) {
  Instance* reg = register_of(net);
  return reg && !net->Linefile() && !net->NumOfFanouts() && reg->Owner() == VeriNode::CurrentNetlist() ? reg : nullptr;
}
} // namespace

bool VeriNonConstVal::IsRegistered() const {
  for (Net* net : _nets)
    if (register_of(net)) return true;
  return false;
}

void VeriNonConstVal::NetsFromLsb(Array& nets) const {
  for (unsigned i = Size(); i-- > 0;) nets.InsertLast(_nets.At(i));
}

void VeriNonConstVal::Resize(unsigned width, const VeriTreeNode* from) {
  unsigned former = Size();
  if (width == former) return;
  if (width < former) {
    _nets.Remove(0, former - width);
    return;
  }
  Net* extension = SignBit();
  if (is_unknown(extension)) veri_at(from).Warning("x/z extended in the significant bits of constant.");
  ArrayOf<Net> nets(width);
  for (unsigned i = former; i < width; i++) nets.InsertLast(extension);
  nets.Append(&_nets);
  _nets.Reset();
  _nets.Append(&nets);
}

// Arithmetic.

namespace {
/// Bit 0 first, as addition goes.
struct Addition {
  std::vector<Net*> a;
  std::vector<Net*> b;
  std::vector<Net*> sum;
  Net* carry;
};

std::vector<Net*> from_lsb(const VeriNonConstVal& value) {
  Array nets(value.Size());
  value.NetsFromLsb(nets);
  std::vector<Net*> result;
  for (Net* net : ItemsOf<Net*>(&nets)) result.push_back(net);
  return result;
}

bool are_opposite(const Net* a, const Net* b) { return (a == zero() && b == one()) || (a == one() && b == zero()); }

/// Of three inputs, two that make the outcome known: the third one passes. Null when no two do.
bool decide_bit(const VeriLogic& logic, Net* a, Net* b, Net*& carry, Net*& sum) {
  Net* inputs[] = {a, b, carry};
  for (unsigned third = 3; third-- > 0;) {
    Net* first = inputs[(third + 1) % 3];
    Net* second = inputs[(third + 2) % 3];
    if (first == second) {
      sum = inputs[third];
      carry = first;
      return true;
    }
    if (are_opposite(first, second)) {
      sum = logic.Inv(inputs[third]);
      carry = inputs[third];
      return true;
    }
  }
  return false;
}

/// Adds what constants and equal nets do not decide, with one adder for each stretch of undecided bits.
void add(const VeriLogic& logic, Addition& addition) {
  unsigned width = static_cast<unsigned>(addition.a.size());
  addition.sum.assign(width, nullptr);
  bool optimize = !kestrin_flag("zelk_disable_adder_width_optimizations");
  for (unsigned bit = 0; bit < width;) {
    Net* a = addition.a[bit];
    Net* b = addition.b[bit];
    if (optimize && decide_bit(logic, a, b, addition.carry, addition.sum[bit])) {
      bit++;
      continue;
    }
    unsigned end = bit + 1;
    while (end < width &&
           !(optimize && (addition.a[end] == addition.b[end] || are_opposite(addition.a[end], addition.b[end]))))
      end++;
    ArrayOf<Net> left;
    ArrayOf<Net> right;
    ArrayOf<Net> sum;
    for (unsigned i = bit; i < end; i++) {
      left.InsertLast(addition.a[i]);
      right.InsertLast(addition.b[i]);
      addition.sum[i] = logic.NewNet();
      sum.InsertLast(addition.sum[i]);
    }
    Net* carry_out = nullptr;
    logic.netlist()->Adder(addition.carry, &left, &right, &sum, end < width ? &carry_out : nullptr, logic.linefile());
    addition.carry = carry_out;
    bit = end;
  }
}

void set_from_lsb(VeriNonConstVal& value, const std::vector<Net*>& nets) {
  unsigned width = value.Size();
  for (unsigned bit = 0; bit < width && bit < nets.size(); bit++) value.SetBit(bit, nets[bit]);
}

std::unique_ptr<VeriVectorValue> constant_copy(const VeriNonConstVal& value) {
  return VeriValue::ToVectorValue(value.Copy());
}

void set_digits(VeriNonConstVal& value, const VeriVectorValue& digits) {
  for (unsigned bit = 0; bit < value.Size(); bit++) value.SetBit(bit, digits.GetBit(bit));
}

/// Both sides are constants although they stand in vectors of nets: IEEE arithmetic decides every bit.
bool constant_plus(VeriNonConstVal& left, const VeriNonConstVal& right, Net* carry_in, const VeriTreeNode* from) {
  veri_digit carry;
  if (!left.IsConstant() || !right.IsConstant() || !veri_is_digit(carry_in, &carry)) return false;
  unsigned width = left.Size();
  std::unique_ptr<VeriVectorValue> a = constant_copy(left);
  std::unique_ptr<VeriVectorValue> b = constant_copy(right);
  bool is_signed = a->IsSigned() && b->IsSigned();
  a->Resize(width + 1);
  b->Resize(width + 1);
  a->Plus(*b, carry, from);
  if (is_signed ? a->Digit(width) != a->Digit(width - 1) : a->Digit(width) == VERI_DIGIT_1)
    veri_at(from).Warning("possible loss of carry or borrow bit");
  set_digits(left, *a);
  return true;
}

using ConstantOperation = void (VeriVectorValue::*)(VeriVectorValue&, const VeriTreeNode*);

bool constant_operation(VeriNonConstVal& left, const VeriNonConstVal& right, ConstantOperation operation,
                        const VeriTreeNode* from) {
  if (!left.IsConstant() || !right.IsConstant()) return false;
  std::unique_ptr<VeriVectorValue> a = constant_copy(left);
  std::unique_ptr<VeriVectorValue> b = constant_copy(right);
  ((*a).*operation)(*b, from);
  set_digits(left, *a);
  return true;
}

bool set_to_x_for_unknown(VeriNonConstVal& left, const VeriNonConstVal& right) {
  if (!left.HasXZ() && !right.HasXZ()) return false;
  left.SetTo(VERI_DIGIT_X);
  return true;
}

/// The operand without the leading bits that only extend it.
void significant_bits(const VeriNonConstVal& value, Array& nets) {
  unsigned width = value.Size();
  if (value.IsSigned())
    while (width > 1 && value.GetBit(width - 1) == value.GetBit(width - 2)) width--;
  else
    while (width > 1 && value.GetBit(width - 1) == zero()) width--;
  for (unsigned bit = 0; bit < width; bit++) nets.InsertLast(value.GetBit(bit));
}

/// The number of zeros below the only one bit of a positive constant that is a power of 2; -1 otherwise.
int power_of_two(const VeriNonConstVal& value) {
  int exponent = -1;
  for (unsigned bit = 0; bit < value.Size(); bit++) {
    Net* net = value.GetBit(bit);
    if (net == zero()) continue;
    if (net != one() || exponent >= 0) return -1;
    exponent = static_cast<int>(bit);
  }
  if (value.IsSigned() && exponent == static_cast<int>(value.Size()) - 1) return -1;
  return exponent;
}

bool is_all_zero(const VeriNonConstVal& value) {
  for (Net* net : value.Nets())
    if (net != zero()) return false;
  return true;
}

/// Sets a vector to these low bits and extends it to its width.
void set_extended(VeriNonConstVal& value, const ArrayOf<Net>& low) {
  unsigned width = value.Size();
  Net* extension = value.IsSigned() ? low.GetLast() : zero();
  for (unsigned bit = 0; bit < width; bit++) value.SetBit(bit, bit < low.Size() ? low.At(bit) : extension);
}
} // namespace

void VeriNonConstVal::Plus(const VeriNonConstVal& other, Net* carry_in, const VeriTreeNode* from) {
  if (!Size() || constant_plus(*this, other, carry_in, from)) return;
  if (set_to_x_for_unknown(*this, other) || is_unknown(carry_in)) return SetTo(VERI_DIGIT_X);
  Addition addition{from_lsb(*this), from_lsb(other), {}, carry_in};
  add(VeriLogic(from), addition);
  set_from_lsb(*this, addition.sum);
}

void VeriNonConstVal::Minus(const VeriNonConstVal& other, const VeriTreeNode* from) {
  if (constant_operation(*this, other, &VeriVectorValue::Minus, from)) return;
  if (set_to_x_for_unknown(*this, other)) return;
  VeriLogic logic(from);
  Addition addition{from_lsb(*this), from_lsb(other), {}, one()};
  // Where both operands have the same net a bit only passes the borrow on; and low zeros of the subtrahend take
  // nothing.
  if (addition.a == addition.b) return SetTo(VERI_DIGIT_0);
  for (Net*& net : addition.b) net = logic.Inv(net);
  add(logic, addition);
  set_from_lsb(*this, addition.sum);
}

void VeriNonConstVal::Multiply(const VeriNonConstVal& other, const VeriTreeNode* from) {
  if (constant_operation(*this, other, &VeriVectorValue::Multiply, from)) return;
  if (set_to_x_for_unknown(*this, other)) return;
  if (is_all_zero(*this) || is_all_zero(other)) return SetTo(VERI_DIGIT_0);
  for (bool swapped : {false, true}) {
    int exponent = power_of_two(swapped ? *this : other);
    if (exponent < 0) continue;
    VeriNonConstVal shifted(swapped ? other : *this);
    shifted.Shift(VeriIntValue(exponent), false, false, from);
    for (unsigned bit = 0; bit < Size(); bit++) SetBit(bit, shifted.GetBit(bit));
    return;
  }
  VeriLogic logic(from);
  Array left;
  Array right;
  significant_bits(*this, left);
  significant_bits(other, right);
  ArrayOf<Net> product;
  logic.NewNets(product, std::min(left.Size() + right.Size(), Size()));
  logic.netlist()->Multiplier(IsSigned(), &left, &right, &product, logic.linefile());
  set_extended(*this, product);
}

void VeriNonConstVal::Divide(const VeriNonConstVal& other, const VeriTreeNode* from) {
  if (constant_operation(*this, other, &VeriVectorValue::Divide, from)) return;
  if (set_to_x_for_unknown(*this, other)) return;
  if (is_all_zero(other)) {
    veri_at(from).Warning("attempt to divide by 0; returning x");
    return SetTo(VERI_DIGIT_X);
  }
  int exponent = power_of_two(other);
  if (exponent == 0) return;
  if (exponent > 0 && !IsSigned()) return Shift(VeriIntValue(exponent), true, false, from);
  VeriLogic logic(from);
  Array left;
  Array right;
  significant_bits(*this, left);
  significant_bits(other, right);
  // The most negative number divided by -1 needs one bit more.
  if (IsSigned() && left.Size() < Size()) left.InsertLast(left.GetLast());
  ArrayOf<Net> quotient;
  logic.NewNets(quotient, left.Size());
  logic.netlist()->Divider(IsSigned(), &left, &right, &quotient, logic.linefile());
  set_extended(*this, quotient);
}

void VeriNonConstVal::Modulo(const VeriNonConstVal& other, const VeriTreeNode* from) {
  if (constant_operation(*this, other, &VeriVectorValue::Modulo, from)) return;
  if (set_to_x_for_unknown(*this, other)) return;
  if (is_all_zero(other)) {
    veri_at(from).Warning("attempt to divide by 0; returning x");
    return SetTo(VERI_DIGIT_X);
  }
  int exponent = power_of_two(other);
  if (exponent == 0) return SetTo(VERI_DIGIT_0);
  if (exponent > 0 && !IsSigned()) {
    for (auto bit = static_cast<unsigned>(exponent); bit < Size(); bit++) SetBit(bit, zero());
    return;
  }
  VeriLogic logic(from);
  Array left;
  Array right;
  significant_bits(*this, left);
  significant_bits(other, right);
  ArrayOf<Net> remainder;
  logic.NewNets(remainder, right.Size());
  logic.netlist()->Modulo(IsSigned(), &left, &right, &remainder, logic.linefile());
  set_extended(*this, remainder);
}

void VeriNonConstVal::Negate(const VeriTreeNode* from) {
  VeriNonConstVal subtrahend(*this);
  SetTo(VERI_DIGIT_0);
  Minus(subtrahend, from);
}

// Bits.

void VeriNonConstVal::Invert(const VeriTreeNode* from) {
  VeriLogic logic(from);
  for (unsigned bit = 0; bit < Size(); bit++) SetBit(bit, logic.Inv(GetBit(bit)));
}

void VeriNonConstVal::Bitwise(veri_oper oper, const VeriNonConstVal& other, const VeriTreeNode* from) {
  VeriLogic logic(from);
  for (unsigned bit = 0; bit < Size(); bit++) {
    Net* a = GetBit(bit);
    Net* b = other.GetBit(bit);
    Net* result = nullptr;
    switch (oper) {
    case VERI_OPER_AND: result = logic.And(a, b); break;
    case VERI_OPER_OR: result = logic.Or(a, b); break;
    case VERI_OPER_XOR: result = logic.Xor(a, b); break;
    case VERI_OPER_XNOR: result = logic.Xnor(a, b); break;
    default: KESTRIN_ASSERT(!"bitwise operator");
    }
    SetBit(bit, result);
  }
}

Net* VeriNonConstVal::Reduce(veri_oper oper, const VeriTreeNode* from) const {
  VeriLogic logic(from);
  switch (oper) {
  case VERI_OPER_REDUCE_AND: return logic.Reduce(_nets, PRIM_AND);
  case VERI_OPER_REDUCE_OR: return logic.Reduce(_nets, PRIM_OR);
  case VERI_OPER_REDUCE_XOR: return logic.Reduce(_nets, PRIM_XOR);
  case VERI_OPER_REDUCE_NAND: return logic.Inv(logic.Reduce(_nets, PRIM_AND));
  case VERI_OPER_REDUCE_NOR: return logic.Inv(logic.Reduce(_nets, PRIM_OR));
  case VERI_OPER_REDUCE_XNOR: return logic.Inv(logic.Reduce(_nets, PRIM_XOR));
  default: KESTRIN_REPORT_INTERNAL("unknown reductive operator"); return unknown();
  }
}

void VeriNonConstVal::Shift(const VeriValue& amount, bool is_right, bool arithmetic, const VeriTreeNode* from) {
  unsigned width = Size();
  if (!width) return;
  if (amount.HasXZ()) return SetTo(VERI_DIGIT_X);
  Net* fill = is_right && arithmetic && IsSigned() ? GetBit(width - 1) : zero();
  if (amount.IsConstant()) {
    // An amount is unsigned, whatever its sign (IEEE 1364 5.1.12): a negative one is a large one of its width.
    uint64_t count = 0;
    for (unsigned bit = 0; bit < amount.Size() && count < width; bit++)
      if (amount.GetBit(bit) != zero()) count = bit < 32 ? count | 1ULL << bit : width;
    count = std::min<uint64_t>(count, width);
    std::vector<Net*> nets = from_lsb(*this);
    auto distance = static_cast<unsigned>(count);
    for (unsigned bit = 0; bit < width; bit++) {
      if (is_right)
        SetBit(bit, bit + distance < width ? nets[bit + distance] : fill);
      else
        SetBit(bit, bit >= distance ? nets[bit - distance] : zero());
    }
    return;
  }
  if (ContainsNet(unknown()) || ContainsNet(veri_digit_net(VERI_DIGIT_Z))) return SetTo(VERI_DIGIT_X);
  VeriLogic logic(from);
  Array left;
  NetsFromLsb(left);
  unsigned amount_width = amount.Size();
  while (amount_width > 1 && amount.GetBit(amount_width - 1) == zero()) amount_width--;
  Array count;
  for (unsigned bit = 0; bit < amount_width; bit++) count.InsertLast(amount.GetBit(bit));
  ArrayOf<Net> shifted;
  logic.NewNets(shifted, width);
  if (is_right)
    logic.netlist()->ShiftRight(fill, &left, &count, &shifted, logic.linefile());
  else
    logic.netlist()->ShiftLeft(fill, &left, &count, &shifted, logic.linefile());
  for (unsigned bit = 0; bit < width; bit++) SetBit(bit, shifted.At(bit));
}

// Comparison.

Net* VeriNonConstVal::LessThan(const VeriNonConstVal& other, bool or_equal, const VeriTreeNode* from) const {
  unsigned width = Size();
  if (HasXZ() || other.HasXZ()) return unknown();
  bool is_signed = IsSigned() && other.IsSigned();
  std::vector<Net*> a = from_lsb(*this);
  std::vector<Net*> b = from_lsb(other);
  // Signs count the other way round: exchanged, they compare as the top bits of unsigned numbers.
  if (is_signed && width) std::swap(a[width - 1], b[width - 1]);
  // Leading bits that are equal decide nothing.
  while (width && a[width - 1] == b[width - 1]) width--;
  if (!width) return or_equal ? one() : zero();
  auto all = [width](const std::vector<Net*>& nets, const Net* net) {
    return std::all_of(nets.begin(), nets.begin() + width, [net](const Net* n) { return n == net; });
  };
  if (all(or_equal ? a : b, zero())) return or_equal ? one() : zero();
  if (all(or_equal ? b : a, one())) return or_equal ? one() : zero();
  if (are_opposite(a[width - 1], b[width - 1])) return b[width - 1];
  ArrayOf<Net> left;
  ArrayOf<Net> right;
  for (unsigned bit = 0; bit < width; bit++) {
    left.InsertLast(a[bit]);
    right.InsertLast(b[bit]);
  }
  VeriLogic logic(from);
  Net* result = nullptr;
  logic.netlist()->LessThan(or_equal ? one() : zero(), &left, &right, &result, logic.linefile());
  return result;
}

Net* VeriNonConstVal::Equal(veri_oper oper, const VeriNonConstVal& other, const VeriTreeNode* from) const {
  bool is_case = oper == VERI_OPER_CASE_EQ || oper == VERI_OPER_CASE_NE;
  bool is_wild = oper == VERI_OPER_WILD_EQ || oper == VERI_OPER_WILD_NE;
  bool is_negated = oper == VERI_OPER_NE || oper == VERI_OPER_CASE_NE || oper == VERI_OPER_WILD_NE;
  VeriLogic logic(from);
  ArrayOf<Net> left;
  ArrayOf<Net> right;
  bool ambiguous = false;
  unsigned width = std::max(Size(), other.Size());
  for (unsigned bit = 0; bit < width; bit++) {
    Net* a = GetBit(bit);
    Net* b = other.GetBit(bit);
    if (is_wild && is_unknown(b)) continue;
    if (is_unknown(a) || is_unknown(b)) {
      // Logic is never x or z, so that it cannot be identical with one.
      if (is_case && a != b) return is_negated ? one() : zero();
      ambiguous = ambiguous || !is_case;
      continue;
    }
    if (are_opposite(a, b)) return is_negated ? one() : zero();
    if (a == b) continue;
    left.InsertLast(a);
    right.InsertLast(b);
  }
  // Unknown where the other bits agree and decided where they do not: a constant is right in both cases.
  if (ambiguous) return !left.Size() ? unknown() : is_negated ? one() : zero();
  Net* equal = nullptr;
  if (left.Size() < 2 || kestrin_flag("zelk_dont_extract_equality_ops")) {
    ArrayOf<Net> bits;
    for (unsigned i = 0; i < left.Size(); i++) bits.InsertLast(logic.Xnor(left.At(i), right.At(i)));
    equal = logic.Reduce(bits, PRIM_AND);
  } else {
    logic.netlist()->Equal(&left, &right, &equal, logic.linefile());
  }
  return is_negated ? logic.Inv(equal) : equal;
}

Net* VeriNonConstVal::EqualOnehotConstant(const VeriValue& constant) const {
  for (unsigned bit = 0; bit < Size(); bit++)
    if (constant.GetBit(bit) == one()) return GetBit(bit);
  return zero();
}

// Merging.

namespace {
/// A register that a branch assigns takes the other branch's value too: a constant through its asynchronous controls,
/// anything else as data. `others_turn` is 1 where the other value is assigned.
Net* merge_into_register(Instance* reg, Net* output, Net* other, Net* others_turn, unsigned long linefile) {
  if (veri_is_digit(other))
    reg->AddAsyncCondition(others_turn, other, linefile);
  else
    reg->AddAsyncHold(others_turn, other, linefile);
  return output;
}
} // namespace

void VeriNonConstVal::MuxIn1(Net* condition, const VeriNonConstVal& one_value, const VeriTreeNode* from) {
  VeriLogic logic(from);
  // What a tristate driver controls keeps its multiplexer even where both branches agree.
  bool keeps_equal = !veri_is_digit(condition) && condition->DriverType() == PRIM_TRI;
  for (unsigned bit = 0; bit < Size(); bit++) {
    Net* in0 = GetBit(bit);
    Net* in1 = one_value.GetBit(bit);
    if (in0 == in1) {
      if (keeps_equal && !veri_is_digit(in0)) SetBit(bit, logic.netlist()->Mux(in0, in1, condition, logic.linefile()));
      continue;
    }
    Net* result = nullptr;
    Instance* reg = nullptr;
    if (in0 == unknown() || in1 == unknown() || veri_is_digit(condition))
      result = logic.Mux(in0, in1, condition);
    else if ((reg = fresh_register_of(in1)))
      result = merge_into_register(reg, in1, in0, logic.Inv(condition), logic.linefile());
    else if ((reg = fresh_register_of(in0)))
      result = merge_into_register(reg, in0, in1, condition, logic.linefile());
    else
      result = logic.Mux(in0, in1, condition);
    SetBit(bit, result);
  }
}
