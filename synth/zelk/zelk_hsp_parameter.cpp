// Reads the forms of parameter values: strings, numbers of several bases, reals, single digits.
#include "zelk_hsp_parameter.h"

#include "gen.h"
#include "htl.h"

namespace {

/// A form: the letters that name it, what its text looks like, and what stands around it in Verilog. The width of
/// numbers with a base is that of their digits.
struct PARAMETER_FORM {
  const char* type;
  const char* pattern;
  const char* base; // null: the text as it is
  unsigned digit_bits;
};
constexpr PARAMETER_FORM forms[] = {
    {"S", "(?s).*", "\"", 0},
    {"B", "[01xXzZ]+", "'b", 1},
    {"SB", "[01xXzZ]+", "'sb", 1},
    {"R", "[01xXzZ]", "'b", 1},
    {"D", " *[+-]?[0-9]+", nullptr, 0},
    {"UD", "[0-9]+", nullptr, 0},
    {"F", "[+-]?[0-9]+(\\.[0-9]+)?([Ee][+-]?[0-9]+)?", nullptr, 0},
    {"UF", "[0-9]+(\\.[0-9]+)?([Ee][+-]?[0-9]+)?", nullptr, 0},
    {"O", "[0-7]+", "'o", 3},
    {"Q", "[0-7]+", "'o", 3},
    {"SO", "[0-7]+", "'so", 3},
    {"SQ", "[0-7]+", "'so", 3},
    {"X", "[A-Fa-f0-9]+", "'h", 4},
    {"H", "[A-Fa-f0-9]+", "'h", 4},
};

std::string quote(const std::string& text) {
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string to_literal(const PARAMETER_FORM& form, const std::string& text) {
  if (!form.base) return text.substr(text.find_first_not_of(' '));
  if (form.digit_bits == 0) return quote(text);
  return std::to_string(text.size() * form.digit_bits) + form.base + text;
}

} // namespace

void zelk_convert_parameter_to_verilog(std::string& value, std::string& type) {
  for (const PARAMETER_FORM& form : forms) {
    if (gen_stricmp(type.c_str(), form.type) != 0) continue;
    if (!HTL_REGEXP(form.pattern).match(value.c_str())) return;
    value = to_literal(form, value);
    type.clear();
    return;
  }
}
