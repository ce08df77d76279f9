// VeriVectorValue: four-state arithmetic on constants, word by word.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "util/services.h"
#include "verilog/veritreenode.h"
#include "verilog/verivalue.h"
#include "verilog/verivalue_report.h"

namespace {
using Plane = std::vector<unsigned char>;
constexpr unsigned word_bits = 64;

size_t plane_size(unsigned width) { return (static_cast<size_t>(width) + word_bits - 1) / word_bits * 8; }

/// Within a byte, the bits of a plane run from the most significant one down.
uint64_t reverse_bytes_bits(uint64_t word) {
  word = (word >> 1 & 0x5555555555555555ULL) | (word & 0x5555555555555555ULL) << 1;
  word = (word >> 2 & 0x3333333333333333ULL) | (word & 0x3333333333333333ULL) << 2;
  return (word >> 4 & 0x0F0F0F0F0F0F0F0FULL) | (word & 0x0F0F0F0F0F0F0F0FULL) << 4;
}

/// Word i holds the bits from 64 * i up, the lowest least significant. A missing plane is all 0.
uint64_t get_word(const Plane& plane, size_t i) {
  if (plane.empty()) return 0;
  uint64_t word = 0;
  for (unsigned byte = 0; byte < 8; byte++) word |= static_cast<uint64_t>(plane[8 * i + byte]) << 8 * byte;
  return reverse_bytes_bits(word);
}

void set_word(Plane& plane, size_t i, uint64_t word) {
  word = reverse_bytes_bits(word);
  for (unsigned byte = 0; byte < 8; byte++) plane[8 * i + byte] = static_cast<unsigned char>(word >> 8 * byte);
}

unsigned char bit_mask(unsigned bit) { return static_cast<unsigned char>(0x80 >> bit % 8); }
bool get_bit(const Plane& plane, unsigned bit) { return !plane.empty() && (plane[bit / 8] & bit_mask(bit)); }

bool is_empty(const Plane& plane) {
  return std::all_of(plane.begin(), plane.end(), [](unsigned char byte) { return !byte; });
}

using Limbs = std::vector<uint32_t>;

void trim(Limbs& limbs) {
  while (!limbs.empty() && !limbs.back()) limbs.pop_back();
}

unsigned bit_length(const Limbs& trimmed) {
  return trimmed.empty()
             ? 0
             : static_cast<unsigned>(32 * trimmed.size()) - static_cast<unsigned>(__builtin_clz(trimmed.back()));
}

/// The lowest `count` limbs of the product.
Limbs multiply(const Limbs& a, const Limbs& b, size_t count) {
  Limbs product(count);
  for (size_t i = 0; i < a.size() && i < count; i++) {
    if (!a[i]) continue;
    uint64_t carry = 0;
    for (size_t j = 0; i + j < count && (j < b.size() || carry); j++) {
      carry += product[i + j] + static_cast<uint64_t>(a[i]) * (j < b.size() ? b[j] : 0);
      product[i + j] = static_cast<uint32_t>(carry);
      carry >>= 32;
    }
  }
  return product;
}

Limbs shifted_left(const Limbs& limbs, unsigned count) {
  Limbs result(limbs.size() + 1);
  for (size_t i = 0; i < limbs.size(); i++) {
    uint64_t wide = static_cast<uint64_t>(limbs[i]) << count;
    result[i] |= static_cast<uint32_t>(wide);
    result[i + 1] = static_cast<uint32_t>(wide >> 32);
  }
  return result;
}

/// Long division by a divisor that is not 0 (Knuth, The Art of Computer Programming 4.3.1, algorithm D).
void divide(Limbs dividend, Limbs divisor, Limbs& quotient, Limbs& remainder) {
  trim(dividend);
  trim(divisor);
  if (dividend.size() < divisor.size()) {
    quotient.clear();
    remainder = dividend;
    return;
  }
  auto shift = static_cast<unsigned>(__builtin_clz(divisor.back()));
  size_t n = divisor.size();
  size_t m = dividend.size() - n;
  Limbs v = shifted_left(divisor, shift);
  Limbs u = shifted_left(dividend, shift);
  quotient.assign(m + 1, 0);
  for (size_t j = m + 1; j-- > 0;) {
    uint64_t top = static_cast<uint64_t>(u[j + n]) << 32 | u[j + n - 1];
    uint64_t guess = top / v[n - 1];
    uint64_t rest = top % v[n - 1];
    while (guess >> 32 || (n > 1 && guess * v[n - 2] > (rest << 32 | u[j + n - 2]))) {
      guess--;
      rest += v[n - 1];
      if (rest >> 32) break;
    }
    int64_t borrow = 0;
    uint64_t carry = 0;
    for (size_t i = 0; i <= n; i++) {
      carry += guess * (i < n ? v[i] : 0);
      int64_t difference = static_cast<int64_t>(u[i + j]) - static_cast<uint32_t>(carry) + borrow;
      u[i + j] = static_cast<uint32_t>(difference);
      borrow = difference >> 32;
      carry >>= 32;
    }
    if (borrow) { // the guess was one too large
      guess--;
      uint64_t sum = 0;
      for (size_t i = 0; i <= n; i++) {
        sum += static_cast<uint64_t>(u[i + j]) + (i < n ? v[i] : 0);
        u[i + j] = static_cast<uint32_t>(sum);
        sum >>= 32;
      }
    }
    quotient[j] = static_cast<uint32_t>(guess);
  }
  remainder.assign(n, 0);
  for (size_t i = 0; i < n; i++)
    remainder[i] = static_cast<uint32_t>((static_cast<uint64_t>(u[i + 1]) << 32 | u[i]) >> shift);
}

Limbs negated(Limbs limbs) {
  uint64_t carry = 1;
  for (uint32_t& limb : limbs) {
    carry += static_cast<uint32_t>(~limb);
    limb = static_cast<uint32_t>(carry);
    carry >>= 32;
  }
  return limbs;
}
} // namespace

VeriVectorValue::VeriVectorValue(unsigned width, char base) : _width(width), _base(base), _bits(plane_size(width)) {}

OwnedValue VeriVectorValue::Copy() const { return std::make_unique<VeriVectorValue>(*this); }

// Digits.

veri_digit VeriVectorValue::Digit(unsigned bit) const {
  if (bit >= _width) return _width && !_fill ? SignDigit() : _fill ? Digit(0) : VERI_DIGIT_0;
  if (get_bit(_x_bits, bit)) return VERI_DIGIT_X;
  if (get_bit(_z_bits, bit)) return VERI_DIGIT_Z;
  return get_bit(_bits, bit) ? VERI_DIGIT_1 : VERI_DIGIT_0;
}

void VeriVectorValue::SetDigit(unsigned bit, veri_digit digit) {
  if (bit >= _width) return;
  auto put = [bit, size = _bits.size()](Plane& plane, bool on) {
    if (plane.empty()) {
      if (!on) return;
      plane.resize(size);
    }
    if (on)
      plane[bit / 8] |= bit_mask(bit);
    else
      plane[bit / 8] &= static_cast<unsigned char>(~bit_mask(bit));
  };
  put(_bits, digit == VERI_DIGIT_1);
  put(_x_bits, digit == VERI_DIGIT_X);
  put(_z_bits, digit == VERI_DIGIT_Z);
}

void VeriVectorValue::SetBit(unsigned bit, Net* net) {
  veri_digit digit;
  if (!veri_is_digit(net, &digit)) {
    KESTRIN_REPORT_INTERNAL("Can't set non-constant bit on this constant value");
    return;
  }
  SetDigit(bit, digit);
  DropEmptyPlanes();
}

void VeriVectorValue::FillFrom(Plane& plane, unsigned bit) const {
  if (plane.empty()) plane.resize(_bits.size());
  for (; bit < _width && bit % 8; bit++) plane[bit / 8] |= bit_mask(bit);
  for (; bit + 8 <= _width; bit += 8) plane[bit / 8] = 0xFF;
  for (; bit < _width; bit++) plane[bit / 8] |= bit_mask(bit);
}

void VeriVectorValue::SetTo(veri_digit digit) {
  std::fill(_bits.begin(), _bits.end(), 0);
  _x_bits.clear();
  _z_bits.clear();
  if (digit == VERI_DIGIT_1) FillFrom(_bits, 0);
  if (digit == VERI_DIGIT_X) FillFrom(_x_bits, 0);
  if (digit == VERI_DIGIT_Z) FillFrom(_z_bits, 0);
}

void VeriVectorValue::DropEmptyPlanes() {
  if (is_empty(_x_bits)) _x_bits.clear();
  if (is_empty(_z_bits)) _z_bits.clear();
}

bool VeriVectorValue::HasX() const { return !is_empty(_x_bits); }
bool VeriVectorValue::HasZ() const { return !is_empty(_z_bits); }
bool VeriVectorValue::IsLessThanZero() const { return IsSigned() && SignDigit() == VERI_DIGIT_1; }

void VeriVectorValue::Resize(unsigned width) {
  veri_digit extension = _fill && _width ? Digit(0) : SignDigit();
  unsigned former = _width;
  _width = width;
  for (Plane* plane : {&_bits, &_x_bits, &_z_bits}) {
    if (plane->empty() && plane != &_bits) continue;
    plane->resize(plane_size(width));
    if (width >= former || width % word_bits == 0) continue;
    size_t last = width / word_bits;
    set_word(*plane, last, get_word(*plane, last) & ((1ULL << width % word_bits) - 1));
  }
  if (width > former) {
    if (extension == VERI_DIGIT_1) FillFrom(_bits, former);
    if (extension == VERI_DIGIT_X) FillFrom(_x_bits, former);
    if (extension == VERI_DIGIT_Z) FillFrom(_z_bits, former);
  }
  DropEmptyPlanes();
}

// Conversions.

int VeriVectorValue::Integer(const VeriTreeNode* from) const {
  if (kestrin_flag("zelk_check_constant_overflow")) {
    int64_t number;
    bool fits = ToInt64(&number) && (IsSigned() ? number == static_cast<int32_t>(number)
                                                : number == static_cast<int64_t>(static_cast<uint32_t>(number)));
    if (!fits && !HasXZ()) veri_at(from).Warning("could not convert a value to 32 bit integer");
  }
  if (!_width) return 0;
  auto low = static_cast<uint32_t>(get_word(_bits, 0));
  if (_width < 32 && SignDigit() == VERI_DIGIT_1) low |= ~0U << _width;
  return static_cast<int>(low);
}

double VeriVectorValue::Real() const {
  bool is_negative = IsLessThanZero();
  Limbs limbs = Magnitude();
  double result = 0;
  for (size_t i = limbs.size(); i-- > 0;) result = std::ldexp(result, 32) + limbs[i];
  return is_negative ? -result : result;
}

std::string VeriVectorValue::Characters() const {
  std::string text;
  for (unsigned byte = (_width + 7) / 8; byte-- > 0;) {
    unsigned char c = 0;
    for (unsigned bit = 0; bit < 8 && 8 * byte + bit < _width; bit++)
      if (get_bit(_bits, 8 * byte + bit)) c |= static_cast<unsigned char>(1U << bit);
    if (c || !text.empty()) text.push_back(static_cast<char>(c));
  }
  return text;
}

std::string VeriVectorValue::String() const { return IsString() ? Characters() : VeriValue::String(); }

/// The absolute value of a signed number, with limbs enough for its width.
VeriVectorValue::Limbs VeriVectorValue::Magnitude() const {
  Limbs limbs((_width + 31) / 32);
  for (size_t i = 0; i < limbs.size(); i++) limbs[i] = static_cast<uint32_t>(get_word(_bits, i / 2) >> 32 * (i % 2));
  if (!IsLessThanZero()) return limbs;
  if (_width % 32) limbs.back() |= ~0U << _width % 32;
  return negated(limbs);
}

void VeriVectorValue::SetNumber(const Limbs& limbs) {
  _x_bits.clear();
  _z_bits.clear();
  for (size_t i = 0; 8 * i < _bits.size(); i++) {
    uint64_t low = 2 * i < limbs.size() ? limbs[2 * i] : 0;
    uint64_t high = 2 * i + 1 < limbs.size() ? limbs[2 * i + 1] : 0;
    uint64_t word = low | high << 32;
    if (word_bits * (i + 1) > _width) word &= (1ULL << _width % word_bits) - 1;
    set_word(_bits, i, word);
  }
}

/// Brings both to one sign and width. False, with this all x, when a digit of either is unknown.
bool VeriVectorValue::Unify(VeriVectorValue& other) {
  CoerceSign(*this, other);
  unsigned width = std::max(_width, other._width);
  if (_width != width) Resize(width);
  if (other._width != width) other.Resize(width);
  _fill = false;
  SetIsString(false);
  if (!HasXZ() && !other.HasXZ()) return true;
  SetTo(VERI_DIGIT_X);
  return false;
}

// Arithmetic.

void VeriVectorValue::Plus(VeriVectorValue& other, veri_digit carry_in, const VeriTreeNode* from) {
  if (!Unify(other) || !_width) return;
  if (carry_in > VERI_DIGIT_1) return SetTo(VERI_DIGIT_X);
  bool left_sign = get_bit(_bits, _width - 1);
  bool right_sign = get_bit(other._bits, _width - 1);
  uint64_t carry = carry_in;
  unsigned top_bits = _width % word_bits;
  for (size_t i = 0; 8 * i < _bits.size(); i++) {
    uint64_t a = get_word(_bits, i);
    uint64_t sum = a + carry;
    carry = sum < carry;
    sum += get_word(other._bits, i);
    carry |= sum < get_word(other._bits, i);
    if (8 * (i + 1) == _bits.size() && top_bits) {
      carry = sum >> top_bits & 1;
      sum &= (1ULL << top_bits) - 1;
    }
    set_word(_bits, i, sum);
  }
  bool sign = get_bit(_bits, _width - 1);
  bool overflow = IsSigned() ? left_sign == right_sign && sign != left_sign : carry != 0;
  if (overflow) veri_at(from).Warning("constant value overflow");
}

void VeriVectorValue::Minus(VeriVectorValue& other, const VeriTreeNode*) {
  if (!Unify(other)) return;
  Limbs difference((_width + 31) / 32);
  int64_t borrow = 0;
  for (size_t i = 0; i < difference.size(); i++) {
    auto limb = [i](const Plane& plane) {
      return static_cast<int64_t>(get_word(plane, i / 2) >> 32 * (i % 2) & 0xFFFFFFFF);
    };
    borrow += limb(_bits) - limb(other._bits);
    difference[i] = static_cast<uint32_t>(borrow);
    borrow >>= 32;
  }
  SetNumber(difference);
}

void VeriVectorValue::Multiply(VeriVectorValue& other, const VeriTreeNode*) {
  if (!Unify(other)) return;
  bool is_negative = IsLessThanZero() != other.IsLessThanZero();
  Limbs product = multiply(Magnitude(), other.Magnitude(), (_width + 31) / 32);
  SetNumber(is_negative ? negated(product) : product);
}

void VeriVectorValue::DivideBy(VeriVectorValue& other, bool want_remainder, const VeriTreeNode* from) {
  if (!Unify(other)) return;
  Limbs divisor = other.Magnitude();
  trim(divisor);
  if (divisor.empty()) {
    veri_at(from).Warning("attempt to divide by 0; returning x");
    return SetTo(VERI_DIGIT_X);
  }
  bool is_negative = IsLessThanZero() != (!want_remainder && other.IsLessThanZero());
  Limbs quotient;
  Limbs remainder;
  divide(Magnitude(), divisor, quotient, remainder);
  Limbs& result = want_remainder ? remainder : quotient;
  result.resize((_width + 31) / 32);
  SetNumber(is_negative ? negated(result) : result);
}

void VeriVectorValue::Divide(VeriVectorValue& other, const VeriTreeNode* from) { DivideBy(other, false, from); }
void VeriVectorValue::Modulo(VeriVectorValue& other, const VeriTreeNode* from) { DivideBy(other, true, from); }

/// The result has the width and sign of the base (IEEE 1364-2005 table 5-22 and, for negative exponents, table 5-6).
void VeriVectorValue::Power(VeriVectorValue& exponent, const VeriTreeNode* from) {
  if (HasXZ() || exponent.HasXZ()) return SetTo(VERI_DIGIT_X);
  if (!_width) return;
  SetIsString(false);
  Limbs base = Magnitude();
  trim(base);
  bool base_is_negative = IsLessThanZero();
  bool base_is_one = base.size() == 1 && base[0] == 1;
  Limbs count = exponent.Magnitude();
  trim(count);
  bool is_odd = !count.empty() && count[0] & 1;
  if (count.empty()) return SetNumber({1});
  if (base_is_one) return base_is_negative && !is_odd ? SetNumber({1}) : void();
  if (exponent.IsLessThanZero()) return base.empty() ? SetTo(VERI_DIGIT_X) : SetTo(VERI_DIGIT_0);
  if (base.empty()) return;

  // A power of 2 in the base leaves the vector at its bottom soon.
  unsigned zeros = 0;
  while (!(base[zeros / 32] >> zeros % 32 & 1)) zeros++;
  if (zeros && (count.size() > 1 || static_cast<uint64_t>(zeros) * count[0] >= _width)) return SetTo(VERI_DIGIT_0);

  size_t limbs = (_width + 31) / 32;
  uint64_t work = static_cast<uint64_t>(limbs) * limbs * bit_length(count);
  if (work > 1ULL << 32) {
    veri_at(from).Error("powers of numbers as wide as this are not supported");
    return SetTo(VERI_DIGIT_X);
  }
  Limbs result{1};
  for (unsigned bit = bit_length(count); bit-- > 0;) {
    result = multiply(result, result, limbs);
    if (count[bit / 32] >> bit % 32 & 1) result = multiply(result, base, limbs);
  }
  result.resize(limbs);
  SetNumber(base_is_negative && is_odd ? negated(result) : result);
}

void VeriVectorValue::Negate() {
  SetIsString(false);
  if (HasXZ()) return SetTo(VERI_DIGIT_X);
  Limbs limbs((_width + 31) / 32);
  for (size_t i = 0; i < limbs.size(); i++) limbs[i] = static_cast<uint32_t>(get_word(_bits, i / 2) >> 32 * (i % 2));
  SetNumber(negated(limbs));
}

// Bitwise.

namespace {
/// A word of digits: ones, and unknown ones (x and z alike).
struct FourState {
  uint64_t one;
  uint64_t unknown;
};

FourState bitwise(veri_oper oper, FourState a, FourState b) {
  uint64_t a_zero = ~(a.one | a.unknown);
  uint64_t b_zero = ~(b.one | b.unknown);
  switch (oper) {
  case VERI_OPER_AND: {
    uint64_t one = a.one & b.one;
    return {one, ~(one | a_zero | b_zero)};
  }
  case VERI_OPER_OR: {
    uint64_t one = a.one | b.one;
    return {one, ~(one | (a_zero & b_zero))};
  }
  case VERI_OPER_XOR:
  case VERI_OPER_XNOR: {
    uint64_t unknown = a.unknown | b.unknown;
    uint64_t differ = a.one ^ b.one;
    return {(oper == VERI_OPER_XOR ? differ : ~differ) & ~unknown, unknown};
  }
  default: KESTRIN_ASSERT(!"bitwise operator"); return {0, 0};
  }
}
} // namespace

void VeriVectorValue::Bitwise(veri_oper oper, VeriVectorValue& other) {
  CoerceSign(*this, other);
  unsigned width = std::max(_width, other._width);
  Resize(width);
  other.Resize(width);
  _fill = false;
  SetIsString(false);
  Plane unknown(_bits.size());
  for (size_t i = 0; 8 * i < _bits.size(); i++) {
    auto digits = [i](const VeriVectorValue& v) {
      return FourState{get_word(v._bits, i), get_word(v._x_bits, i) | get_word(v._z_bits, i)};
    };
    FourState result = bitwise(oper, digits(*this), digits(other));
    uint64_t mask = word_bits * (i + 1) > width ? (1ULL << width % word_bits) - 1 : ~0ULL;
    set_word(_bits, i, result.one & mask);
    set_word(unknown, i, result.unknown & mask);
  }
  _z_bits.clear();
  _x_bits = std::move(unknown);
  DropEmptyPlanes();
}

void VeriVectorValue::Invert() {
  VeriVectorValue ones(_width);
  ones.SetTo(VERI_DIGIT_1);
  if (IsSigned()) ones.SetSigned();
  Bitwise(VERI_OPER_XOR, ones);
}

veri_digit VeriVectorValue::Reduce(veri_oper oper) const {
  bool has_zero = false;
  bool has_one = false;
  bool parity = false;
  for (size_t i = 0; 8 * i < _bits.size(); i++) {
    uint64_t mask = word_bits * (i + 1) > _width ? (1ULL << _width % word_bits) - 1 : ~0ULL;
    uint64_t one = get_word(_bits, i);
    has_one = has_one || one;
    has_zero = has_zero || (~(one | get_word(_x_bits, i) | get_word(_z_bits, i)) & mask);
    parity ^= __builtin_parityll(one) != 0;
  }
  bool unknown = HasXZ();
  auto digit = [](bool known, bool one) { return !known ? VERI_DIGIT_X : one ? VERI_DIGIT_1 : VERI_DIGIT_0; };
  switch (oper) {
  case VERI_OPER_REDUCE_AND: return digit(has_zero || !unknown, !has_zero);
  case VERI_OPER_REDUCE_NAND: return digit(has_zero || !unknown, has_zero);
  case VERI_OPER_REDUCE_OR: return digit(has_one || !unknown, has_one);
  case VERI_OPER_REDUCE_NOR: return digit(has_one || !unknown, !has_one);
  case VERI_OPER_REDUCE_XOR: return digit(!unknown, parity);
  case VERI_OPER_REDUCE_XNOR: return digit(!unknown, !parity);
  default: KESTRIN_REPORT_INTERNAL("unknown reductive operator"); return VERI_DIGIT_X;
  }
}

// Shifts.

void VeriVectorValue::Shift(const VeriVectorValue& amount, bool is_right, bool arithmetic, const VeriTreeNode* from) {
  SetIsString(false);
  if (amount.HasXZ()) return SetTo(VERI_DIGIT_X);
  if (amount.IsSigned()) veri_at(from).Warning("converting signed shift amount to unsigned");
  veri_digit fill = VERI_DIGIT_0;
  if (is_right && arithmetic && IsSigned() && _width) fill = Digit(_width - 1);
  uint64_t count = get_word(amount._bits, 0);
  for (size_t i = 1; 8 * i < amount._bits.size(); i++)
    if (get_word(amount._bits, i)) count = _width;
  if (!amount._width) count = 0;
  if (count >= _width) return SetTo(fill);
  VeriVectorValue result(_width, _base);
  auto distance = static_cast<unsigned>(count);
  for (unsigned bit = 0; bit < _width; bit++) {
    veri_digit digit = is_right ? (bit + distance < _width ? Digit(bit + distance) : fill)
                                : (bit >= distance ? Digit(bit - distance) : VERI_DIGIT_0);
    if (digit) result.SetDigit(bit, digit);
  }
  _bits = std::move(result._bits);
  _x_bits = std::move(result._x_bits);
  _z_bits = std::move(result._z_bits);
}

// Comparison.

veri_digit VeriVectorValue::LessThan(VeriVectorValue& other, bool or_equal) {
  if (!Unify(other)) return VERI_DIGIT_X;
  bool left_negative = IsLessThanZero();
  bool right_negative = other.IsLessThanZero();
  if (left_negative != right_negative) return left_negative ? VERI_DIGIT_1 : VERI_DIGIT_0;
  for (size_t i = _bits.size() / 8; i-- > 0;) {
    uint64_t a = get_word(_bits, i);
    uint64_t b = get_word(other._bits, i);
    if (a != b) return a < b ? VERI_DIGIT_1 : VERI_DIGIT_0;
  }
  return or_equal ? VERI_DIGIT_1 : VERI_DIGIT_0;
}

veri_digit VeriVectorValue::Equal(veri_oper oper, VeriVectorValue& other) {
  CoerceSign(*this, other);
  unsigned width = std::max(_width, other._width);
  Resize(width);
  other.Resize(width);
  bool is_case = oper == VERI_OPER_CASE_EQ || oper == VERI_OPER_CASE_NE;
  bool is_wild = oper == VERI_OPER_WILD_EQ || oper == VERI_OPER_WILD_NE;
  bool is_negated = oper == VERI_OPER_NE || oper == VERI_OPER_CASE_NE || oper == VERI_OPER_WILD_NE;
  bool differ = false;
  bool ambiguous = false;
  for (size_t i = 0; 8 * i < _bits.size(); i++) {
    uint64_t a_unknown = get_word(_x_bits, i) | get_word(_z_bits, i);
    uint64_t b_unknown = get_word(other._x_bits, i) | get_word(other._z_bits, i);
    uint64_t values = get_word(_bits, i) ^ get_word(other._bits, i);
    if (is_case) {
      uint64_t planes =
          (get_word(_x_bits, i) ^ get_word(other._x_bits, i)) | (get_word(_z_bits, i) ^ get_word(other._z_bits, i));
      differ = differ || values || planes;
      continue;
    }
    differ = differ || (values & ~(a_unknown | b_unknown));
    ambiguous = ambiguous || (is_wild ? a_unknown & ~b_unknown : a_unknown | b_unknown);
  }
  if (!differ && ambiguous) return VERI_DIGIT_X;
  return differ == is_negated ? VERI_DIGIT_1 : VERI_DIGIT_0;
}
