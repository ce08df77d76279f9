// Digits to bits, and the warnings about what does not fit.
#include "verilog/veri_number.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

#include "util/strings.h"
#include "verilog/veri_chars.h"
#include "verilog/veri_message.h"

namespace {

/// More digits than these do not fit in a machine integer.
constexpr size_t max_short_decimal = 9;

struct Binary {
  std::vector<uint32_t> words; // lowest first
  bool overflows = false;
};

/// The low words of a decimal of any length, from pieces of nine digits.
Binary binary_of_decimal(const std::string& digits, size_t max_words) {
  Binary result;
  std::vector<uint32_t>& words = result.words;
  for (size_t at = 0; at < digits.size();) {
    // The first piece takes what the others leave.
    const size_t length = at ? max_short_decimal : (digits.size() - 1) % max_short_decimal + 1;
    uint64_t carry = std::stoul(digits.substr(at, length));
    uint64_t factor = 1;
    for (size_t i = 0; i < length; i++) factor *= 10;
    for (uint32_t& word : words) {
      carry += word * factor;
      word = static_cast<uint32_t>(carry);
      carry >>= 32;
    }
    if (carry && words.size() < max_words)
      words.push_back(static_cast<uint32_t>(carry));
    else
      result.overflows |= carry != 0;
    at += length;
  }
  return result;
}

} // namespace

/// One reading: the literal under construction, and where its messages go.
class VeriLiteralReader {
public:
  explicit VeriLiteralReader(linefile_type linefile) : _linefile(linefile) {}

  VeriLiteralBits Read(const char* text) {
    std::string compact;
    for (; *text; text++)
      if (*text != '_' && *text != '\n' && !veri_is(*text, VERI_CHAR_SPACE)) compact += Folded(*text);
    const size_t apostrophe = std::min(compact.find('\''), compact.size());
    if (apostrophe) {
      _bits._is_sized = true;
      _bits._width = static_cast<unsigned>(Strings::atoi(compact.substr(0, apostrophe).c_str()));
    }
    size_t at = apostrophe + 1;
    if (at < compact.size() && compact[at] == 's') {
      _bits._is_signed = true;
      at++;
    }
    const char base = at < compact.size() ? compact[at] : '\0';
    if (base && std::strchr("bodh", base)) {
      _bits._base = base;
      ReadDigits(compact.substr(at + 1));
    } else {
      _bits._width = 1;
      AddDigit(base, 1);
    }
    return std::move(_bits);
  }

private:
  static char Folded(char c) {
    if (c == '?') return 'z';
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }

  void ReadDigits(const std::string& digits) {
    if (_bits._base == 'd') {
      ReadDecimal(digits);
    } else {
      const unsigned bits_of_digit = _bits._base == 'b' ? 1 : _bits._base == 'o' ? 3 : 4;
      for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit)
        if (!AddDigit(*digit, bits_of_digit)) return;
    }
    ExtendUnknown();
  }

  void ReadDecimal(const std::string& digits) {
    const size_t unknown = digits.find_first_of("xz");
    if (unknown != std::string::npos) {
      AddDigit(digits[unknown], 1);
      return;
    }
    if (digits.find_first_not_of("0123456789") != std::string::npos)
      return veri_error(_linefile, "illegal character in decimal number");
    if (digits.empty()) return;
    const Binary binary = binary_of_decimal(digits, _bits._width / 32 + 1);
    for (const uint32_t word : binary.words)
      for (unsigned bit = 0; bit < 32; bit++)
        if (_bits._value.size() < _bits._width) {
          _bits._value.push_back((word >> bit) & 1);
        } else if (word >> bit) {
          return WarnOfTruncation();
        }
    if (binary.overflows) return WarnOfTruncation();
    if (_bits._is_signed && _bits._width && _bits.Value(_bits._width - 1))
      veri_warning(_linefile, "constant value overflow");
  }

  /// Adds the next higher digit. False when the reading ends with it.
  bool AddDigit(char digit, unsigned bits_of_digit) {
    const size_t start = _bits._value.size();
    const size_t room = _bits._width > start ? _bits._width - start : 0;
    if (digit == 'x' || digit == 'z') {
      if (!room) return WarnOfTruncation(), false;
      std::vector<bool>& plane = digit == 'x' ? _bits._x : _bits._z;
      const size_t end = start + std::min<size_t>(room, bits_of_digit);
      plane.resize(start, false);
      plane.resize(end, true);
      _bits._value.resize(end, false);
      _highest = digit;
      return true;
    }
    const int value = DigitValue(digit, bits_of_digit);
    if (value < 0) return ReportBadDigit(), false;
    _highest = digit;
    for (unsigned bit = 0; bit < bits_of_digit && bit < room; bit++) _bits._value.push_back((value >> bit) & 1);
    if (room >= bits_of_digit || !(value >> room)) return true;
    WarnOfTruncation();
    return false;
  }

  static int DigitValue(char digit, unsigned bits_of_digit) {
    int value = -1;
    if (digit >= '0' && digit <= '9') value = digit - '0';
    if (digit >= 'a' && digit <= 'f') value = digit - 'a' + 10;
    return value >> bits_of_digit ? -1 : value;
  }

  void ReportBadDigit() {
    switch (_bits._base) {
    case 'o': return veri_error(_linefile, "illegal character in octal number");
    case 'h': return veri_error(_linefile, "illegal hexadecimal number");
    default: return veri_error(_linefile, "illegal character in binary number");
    }
  }

  void WarnOfTruncation() {
    veri_warning(_linefile, "literal value truncated to fit in %d bits", static_cast<int>(_bits._width));
  }

  /// An unknown highest digit stands for all bits above it.
  void ExtendUnknown() {
    if ((_highest != 'x' && _highest != 'z') || _bits._value.size() >= _bits._width) return;
    veri_warning(_linefile, "x/z extended in the significant bits of constant.");
    _bits._extension = _highest;
  }

  linefile_type _linefile;
  VeriLiteralBits _bits;
  char _highest = 0; // digit read last
};

VeriLiteralBits veri_read_literal(const char* text, linefile_type linefile) {
  return VeriLiteralReader(linefile).Read(text ? text : "");
}

bool veri_literal_fits(unsigned size, const char* base, const char* digits) {
  constexpr unsigned most_bits = 60;
  if (*base == '\'') base++;
  const bool is_signed = *base == 's' || *base == 'S';
  if (is_signed) base++;
  const char kind = static_cast<char>(*base | 0x20);
  const unsigned radix = kind == 'b' ? 2 : kind == 'o' ? 8 : kind == 'd' ? 10 : kind == 'h' ? 16 : 0;
  uint64_t number = 0;
  for (; *digits; digits++) {
    if (*digits == '_') continue;
    const bool is_decimal = *digits >= '0' && *digits <= '9';
    const auto value = static_cast<unsigned>(is_decimal ? *digits - '0' : (*digits | 0x20) - 'a' + 10);
    if (value >= radix || number >> most_bits) return false;
    number = number * radix + value;
  }
  // A decimal is a number that must not become negative; the other bases tell bits.
  return std::bit_width(number) + (is_signed && radix == 10) <= size;
}
