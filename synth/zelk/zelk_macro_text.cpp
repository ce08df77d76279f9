// Splits and checks the text of a project's macro.
#include "zelk_macro_text.h"

#include <algorithm>
#include <string_view>

namespace {

/// Blank and the characters 9 to 13.
bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$'; }

std::string without_trailing_space(std::string text) {
  while (!text.empty() && is_space(text.back())) text.pop_back();
  return text;
}

/// Parameters separated by single commas up to the closing parenthesis, which ends the text. `joined` gets them.
bool parse_parameters(std::string_view text, std::string& joined) {
  std::string compact;
  std::copy_if(text.begin(), text.end(), std::back_inserter(compact), [](char c) { return !is_space(c); });
  size_t at = 0;
  for (;;) {
    if (at >= compact.size() || !is_letter(compact[at])) return false;
    while (at < compact.size() && (is_letter(compact[at]) || is_digit(compact[at]))) at++;
    if (at >= compact.size()) return false;
    if (compact[at] == ')') break;
    if (compact[at++] != ',') return false;
  }
  if (at + 1 != compact.size()) return false;
  joined = compact.substr(0, at);
  return true;
}

/// The position of the first character that a macro's name cannot have there.
size_t find_bad_character(const std::string& name) {
  for (size_t i = 0; i < name.size(); i++)
    if (!is_letter(name[i]) && !(i > 0 && is_digit(name[i]))) return i;
  return std::string::npos;
}

} // namespace

ZELK_MACRO_TEXT zelk_parse_macro_text(const std::string& text) {
  ZELK_MACRO_TEXT macro;
  size_t equals = text.find('=');
  macro.has_text = equals != std::string::npos;
  if (macro.has_text) macro.text = text.substr(equals + 1);
  std::string definition = without_trailing_space(text.substr(0, equals));

  size_t open = definition.find('(');
  macro.has_parameters = open != std::string::npos;
  macro.name = without_trailing_space(definition.substr(0, open));
  if (macro.has_parameters && !parse_parameters(std::string_view(definition).substr(open + 1), macro.parameters)) {
    macro.parameters = definition.substr(open + 1);
    macro.problem = ZELK_MACRO_TEXT::BAD_PARAMETERS;
    return macro;
  }
  size_t bad = find_bad_character(macro.name);
  if (bad != std::string::npos) {
    macro.bad_character = macro.name[bad];
    macro.problem = ZELK_MACRO_TEXT::BAD_CHARACTER;
  }
  return macro;
}
