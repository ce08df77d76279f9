// Reads the numbers that users write for parameters: any base and width, signed or not, with underscores.
#include "parameter_notation.h"

#include <algorithm>
#include <vector>

#include "arguments.h"
#include "htl.h"

namespace {

constexpr unsigned long MAX_WIDTH = 1UL << 16;
constexpr unsigned long UNSIZED_WIDTH = 32;

/// A base by its letter: the bits of a digit, 0 for decimal, and the digits.
struct BASE {
  char letter;
  unsigned digit_bits;
  const char* digits;
};

constexpr BASE bases[] = {
    {'b', 1, "01xz?"}, {'o', 3, "01234567xz?"}, {'d', 0, "0123456789"}, {'h', 4, "0123456789abcdefxz?"}};

bool is_unknown(char digit) { return digit == 'x' || digit == 'z'; }

std::string digits_to_binary(const std::string& digits, unsigned digit_bits) {
  std::string binary;
  for (char c : digits) {
    char digit = c == '?' ? 'z' : c;
    int value = is_unknown(digit) ? 0 : digit <= '9' ? digit - '0' : digit - 'a' + 10;
    for (unsigned bit = digit_bits; bit > 0; bit--)
      binary += is_unknown(digit) ? digit : (value >> (bit - 1) & 1) != 0 ? '1' : '0';
  }
  return binary;
}

std::string decimal_to_binary(std::string digits) {
  std::string binary;
  while (digits.find_first_not_of('0') != std::string::npos) {
    int rest = 0;
    for (char& c : digits) {
      int value = rest * 10 + (c - '0');
      c = static_cast<char>('0' + value / 2);
      rest = value % 2;
    }
    binary += rest != 0 ? '1' : '0';
  }
  std::reverse(binary.begin(), binary.end());
  return binary.empty() ? "0" : binary;
}

/// Unknown top digits fill up with themselves, others with zeros (IEEE 1364, 3.5.1).
std::string fit(std::string binary, unsigned long width) {
  char fill = is_unknown(binary[0]) ? binary[0] : '0';
  if (binary.size() < width) binary.insert(0, width - binary.size(), fill);
  return binary.substr(binary.size() - width);
}

/// The two's complement. Unknown digits stay and spoil nothing beyond them that a reader could rely on.
void negate(std::string& binary) {
  bool is_inverting = false;
  for (auto bit = binary.rbegin(); bit != binary.rend(); ++bit) {
    if (is_inverting && !is_unknown(*bit)) *bit = *bit == '0' ? '1' : '0';
    is_inverting |= *bit != '0';
  }
}

std::string without_underscores(std::string text) {
  std::erase(text, '_');
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

std::string based_number(const std::vector<std::string>& parts, const std::string& text) {
  enum PART { SIGN, WIDTH, SIGNED, LETTER, DIGITS };
  auto refuse = [&text] { throw USAGE_ERROR("can't read the number " + text); };
  std::string width_text = without_underscores(parts[WIDTH]);
  unsigned long width = width_text.size() > 5 ? 0 : width_text.empty() ? UNSIZED_WIDTH : std::stoul(width_text);
  std::string digits = without_underscores(parts[DIGITS]);
  char letter = static_cast<char>(std::tolower(static_cast<unsigned char>(parts[LETTER][0])));
  const BASE& base =
      *std::find_if(std::begin(bases), std::end(bases), [=](const BASE& b) { return b.letter == letter; });
  if (width == 0 || width > MAX_WIDTH || digits.empty() || digits.find_first_not_of(base.digits) != std::string::npos)
    refuse();
  std::string binary = base.digit_bits == 0 ? decimal_to_binary(digits) : digits_to_binary(digits, base.digit_bits);
  binary = fit(binary, width);
  if (parts[SIGN] == "-") negate(binary);
  if (!parts[SIGNED].empty()) return "SB\"" + binary + "\"";
  return std::to_string(width) + "'b" + binary;
}

} // namespace

std::string parameter_notation(const std::string& text) {
  static const HTL_REGEXP ready("\"(?s).*\"|[A-Za-z]+\"(?s).*\"|'[01xXzZ]");
  static const HTL_REGEXP integer("[+]?(-?[0-9][0-9_]*)");
  static const HTL_REGEXP real("[+]?(-?[0-9_]*\\.[0-9_]+)");
  static const HTL_REGEXP scaled("([+-]?[0-9_]+(?:\\.[0-9_]+)?[eE][+-]?[0-9]+)");
  static const HTL_REGEXP based("([+-]?) *([0-9_]*) *'([sS]?)([bodhBODH]) *([0-9a-zA-Z_?]*)");
  std::vector<std::string> parts;
  if (ready.match(text.c_str())) return text;
  if (integer.match(text.c_str(), &parts) || real.match(text.c_str(), &parts)) return without_underscores(parts[0]);
  if (scaled.match(text.c_str(), &parts)) return "F\"" + without_underscores(parts[0]) + "\"";
  if (based.match(text.c_str(), &parts)) return based_number(parts, text);
  return "\"" + text + "\"";
}
