// Values of literals, by the rules of IEEE 1364-2005 clause 3.5 and 1800 clause 5.7.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>

#include "util/strings.h"
#include "verilog/verivalue.h"

namespace {
/// Without underscores and blanks.
std::string plain(std::string_view text) {
  std::string result;
  for (char c : text)
    if (c != '_' && !std::isspace(static_cast<unsigned char>(c))) result.push_back(c);
  return result;
}

bool all_digits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool is_x(char c) { return c == 'x' || c == 'X'; }
bool is_z(char c) { return c == 'z' || c == 'Z' || c == '?'; }

int hex_digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

/// The limbs of a decimal number, nine digits at a time; limbs beyond `max_limbs` are lost.
std::vector<uint32_t> decimal_limbs(std::string_view digits, size_t max_limbs) {
  std::vector<uint32_t> limbs;
  for (size_t i = 0; i < digits.size();) {
    size_t count = std::min<size_t>(9, digits.size() - i);
    uint32_t scale = 1;
    uint32_t group = 0;
    for (size_t j = 0; j < count; j++) {
      scale *= 10;
      group = group * 10 + static_cast<uint32_t>(digits[i + j] - '0');
    }
    i += count;
    uint64_t carry = group;
    for (uint32_t& limb : limbs) {
      carry += static_cast<uint64_t>(limb) * scale;
      limb = static_cast<uint32_t>(carry);
      carry >>= 32;
    }
    if (carry && limbs.size() < max_limbs) limbs.push_back(static_cast<uint32_t>(carry));
  }
  return limbs;
}

unsigned bit_length(const std::vector<uint32_t>& limbs) {
  unsigned length = 0;
  for (unsigned bit = 0; bit < 32 * limbs.size(); bit++)
    if (limbs[bit / 32] >> bit % 32 & 1) length = bit + 1;
  return length;
}

/// An upper bound of the bits of a decimal number.
uint64_t decimal_width(std::string_view digits) { return digits.size() * 10ULL / 3 + 1; }

void set_number(VeriVectorValue& vector, const std::vector<uint32_t>& limbs) {
  for (unsigned bit = 0; bit < vector.Size() && bit / 32 < limbs.size(); bit++)
    if (limbs[bit / 32] >> bit % 32 & 1) vector.SetDigit(bit, VERI_DIGIT_1);
}

/// Sets the bits from the digits of a base that is a power of two. A leading x or z extends to the left.
bool set_digits(VeriVectorValue& vector, std::string_view digits, unsigned bits_per_digit) {
  unsigned bit = 0;
  veri_digit extension = VERI_DIGIT_0;
  for (auto c = digits.rbegin(); c != digits.rend(); ++c) {
    int number = hex_digit(*c);
    bool known = number >= 0 && number < 1 << bits_per_digit;
    if (!known && !is_x(*c) && !is_z(*c)) return false;
    extension = known ? VERI_DIGIT_0 : is_x(*c) ? VERI_DIGIT_X : VERI_DIGIT_Z;
    for (unsigned i = 0; i < bits_per_digit; i++, bit++) {
      veri_digit digit = known ? (number >> i & 1 ? VERI_DIGIT_1 : VERI_DIGIT_0) : extension;
      if (bit < vector.Size() && digit) vector.SetDigit(bit, digit);
    }
  }
  if (extension)
    for (; bit < vector.Size(); bit++) vector.SetDigit(bit, extension);
  return true;
}

OwnedValue based_literal(std::string_view size, std::string_view rest) {
  uint64_t width = 0;
  for (char c : size) width = std::min<uint64_t>(width * 10 + static_cast<uint64_t>(c - '0'), 1ULL << 40);
  if (!size.empty() && width == 0) return nullptr;
  if (!veri_width_is_supported(width, nullptr)) return nullptr;

  bool is_signed = !rest.empty() && (rest[0] == 's' || rest[0] == 'S');
  if (is_signed) rest.remove_prefix(1);
  if (rest.empty()) return nullptr;
  char base = static_cast<char>(std::tolower(static_cast<unsigned char>(rest[0])));
  std::string_view digits = rest.substr(1);
  unsigned bits_per_digit = base == 'b' ? 1 : base == 'o' ? 3 : base == 'h' ? 4 : 0;
  if ((!bits_per_digit && base != 'd') || digits.empty()) return nullptr;

  bool is_decimal_number = base == 'd' && all_digits(digits);
  if (!width) {
    width = std::max<uint64_t>(32, base == 'd' ? (is_decimal_number ? decimal_width(digits) : 1)
                                               : static_cast<uint64_t>(digits.size()) * bits_per_digit);
    if (!veri_width_is_supported(width, nullptr)) return nullptr;
  }
  auto vector = std::make_unique<VeriVectorValue>(static_cast<unsigned>(width), base);
  if (is_decimal_number) {
    std::vector<uint32_t> limbs = decimal_limbs(digits, width / 32 + 1);
    if (size.empty()) vector->Resize(std::max(32U, bit_length(limbs) + (is_signed ? 1 : 0)));
    set_number(*vector, limbs);
  } else if (base == 'd') {
    if (digits.size() != 1 || (!is_x(digits[0]) && !is_z(digits[0]))) return nullptr;
    vector->SetTo(is_x(digits[0]) ? VERI_DIGIT_X : VERI_DIGIT_Z);
  } else if (!set_digits(*vector, digits, bits_per_digit)) {
    return nullptr;
  }
  if (is_signed) vector->SetSigned();
  return vector;
}

/// 'b1 has a base, '1 fills.
OwnedValue fill_literal(char c) {
  veri_digit digit = VERI_DIGIT_0;
  if (c == '1')
    digit = VERI_DIGIT_1;
  else if (is_x(c))
    digit = VERI_DIGIT_X;
  else if (is_z(c))
    digit = VERI_DIGIT_Z;
  else if (c != '0')
    return nullptr;
  auto vector = std::make_unique<VeriVectorValue>(1);
  vector->SetTo(digit);
  vector->SetFill();
  return vector;
}

OwnedValue decimal_literal(std::string_view digits) {
  if (!veri_width_is_supported(decimal_width(digits), nullptr)) return nullptr;
  std::vector<uint32_t> limbs = decimal_limbs(digits, std::numeric_limits<size_t>::max());
  unsigned length = bit_length(limbs);
  if (length < 32) return VeriValue::FromInteger(limbs.empty() ? 0 : static_cast<int>(limbs[0]));
  auto vector = std::make_unique<VeriVectorValue>(length + 1, 'd');
  set_number(*vector, limbs);
  vector->SetSigned();
  return vector;
}

/// The characters of a quoted string, escapes resolved (clause 3.6.3).
std::string unquoted(std::string_view text) {
  std::string result;
  for (size_t i = 0; i < text.size(); i++) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      result.push_back(text[i]);
      continue;
    }
    char c = text[++i];
    if (c >= '0' && c <= '7') {
      int code = 0;
      size_t end = std::min(text.size(), i + 3);
      for (; i < end && text[i] >= '0' && text[i] <= '7'; i++) code = code * 8 + (text[i] - '0');
      i--;
      result.push_back(static_cast<char>(code));
    } else if (c != '\n') { // an escaped line end continues the string
      result.push_back(c == 'n' ? '\n' : c == 't' ? '\t' : c);
    }
  }
  return result;
}
} // namespace

OwnedValue VeriValue::FromLiteral(std::string_view text) {
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
    return FromString(unquoted(text.substr(1, text.size() - 2)));
  std::string literal = plain(text);
  bool is_negative = !literal.empty() && literal[0] == '-';
  if (is_negative) return Unary(VERI_OPER_UNARY_MINUS, FromLiteral(std::string_view(literal).substr(1)));

  size_t quote = literal.find('\'');
  if (quote != std::string::npos) {
    std::string_view size = std::string_view(literal).substr(0, quote);
    std::string_view rest = std::string_view(literal).substr(quote + 1);
    if (size.empty() && rest.size() == 1) return fill_literal(rest[0]);
    return size.empty() || all_digits(size) ? based_literal(size, rest) : nullptr;
  }
  if (all_digits(literal)) return decimal_literal(literal);
  bool is_real = !literal.empty() && literal[0] >= '0' && literal[0] <= '9' &&
                 literal.find_first_not_of("0123456789.eE+-") == std::string::npos;
  return is_real ? FromReal(Strings::atof(literal.c_str())) : nullptr;
}
