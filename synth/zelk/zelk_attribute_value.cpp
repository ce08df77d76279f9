// Takes the texts of synthesis attributes apart.
#include "zelk_attribute_value.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "acf.h"
#include "gen.h"
#include "htl.h"
#include "msg.h"
#include "zelk_utility.h"

namespace {

bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string trim(const std::string& text) {
  size_t begin = 0;
  size_t end = text.size();
  while (begin < end && is_space(text[begin])) begin++;
  while (end > begin && is_space(text[end - 1])) end--;
  return text.substr(begin, end - begin);
}

bool is_decimal(const std::string& text) {
  constexpr size_t MAX_DIGITS = 9;
  return !text.empty() && text.size() <= MAX_DIGITS && text.find_first_not_of("0123456789") == std::string::npos;
}

bool is_quoted(const std::string& text) { return text.size() >= 2 && text.front() == '"' && text.back() == '"'; }

} // namespace

std::string zelk_unquote(const char* text) {
  std::string value = trim(text ? text : "");
  if (is_quoted(value)) value = trim(value.substr(1, value.size() - 2));
  return value;
}

std::vector<std::string> zelk_split_list(const std::string& text) {
  std::vector<std::string> tokens;
  HTL_TOKENIZER tokenizer(text, ",");
  for (const std::string& part : tokenizer.get_tokens())
    if (std::string token = trim(part); !token.empty()) tokens.push_back(token);
  return tokens;
}

std::string convert_norvel_attribute_string(const char* text) {
  std::string value(text ? text : "");
  if (value.size() >= 3 && is_quoted(value)) value = value.substr(1, value.size() - 2);
  std::string result;
  for (size_t i = 0; i < value.size(); i++) {
    if (value[i] == '\\' && ++i == value.size()) break;
    result += value[i];
  }
  return result;
}

namespace {

bool split_quoted_list(const char* text, std::vector<std::string>& items) {
  std::string value = zelk_unquote(text);
  if (value.empty() || value.find('"') != std::string::npos) return false;
  items = zelk_split_list(value);
  return true;
}

} // namespace

bool parse_chip_pin_attr(const char* text, std::vector<std::string>& pins) {
  if (!split_quoted_list(text, pins)) return false;
  for (std::string& pin : pins)
    if (is_decimal(pin)) pin.insert(0, "Pin_");
  zelk_msg_debug("Parsed %zu pin assignments.", pins.size());
  return true;
}

bool parse_msg_attr_value(const char* text, std::vector<std::string>& ids) {
  if (!split_quoted_list(text, ids)) return false;
  zelk_msg_debug("Parsed %zu msg assignments.", ids.size());
  return true;
}

bool is_valid_msg_id(const std::string& id) {
  return is_decimal(id) && MSG_ID_REGISTRAR::is_known(static_cast<unsigned>(std::atoi(id.c_str())));
}

bool is_hdl_msg_id(const std::string& id) {
  constexpr int FIRST_HDL_MESSAGE = 10000;
  constexpr int LAST_HDL_MESSAGE = 10999;
  int number = is_decimal(id) ? std::atoi(id.c_str()) : 0;
  return number >= FIRST_HDL_MESSAGE && number <= LAST_HDL_MESSAGE;
}

namespace {

struct BLOCK_TYPE_NAME {
  const char* name;
  CDB_SUGGESTED_RAM_BLOCK_TYPE type;
};
constexpr BLOCK_TYPE_NAME block_types[] = {
    {"auto", CDB_RAM_BLOCK_AUTO}, {"srb1", CDB_RAM_BLOCK_SRB1},   {"srb2", CDB_RAM_BLOCK_SRB2},
    {"srb6", CDB_RAM_BLOCK_SRB6}, {"logic", CDB_RAM_BLOCK_LOGIC}, {"srb7", CDB_RAM_BLOCK_SRB7},
    {"srb3", CDB_RAM_BLOCK_SRB3}, {"srb5", CDB_RAM_BLOCK_SRB5},   {"srb4", CDB_RAM_BLOCK_SRB4}};

bool equals(const std::string& token, const char* word) { return gen_stricmp(token.c_str(), word) == 0; }

} // namespace

ZELK_RAMSTYLE zelk_parse_ramstyle_attribute(const char* text) {
  ZELK_RAMSTYLE style;
  for (const std::string& token : zelk_split_list(zelk_unquote(text))) {
    if (equals(token, "no_rw_check")) {
      style.no_rw_check = true;
      continue;
    }
    const auto* found = std::find_if(std::begin(block_types), std::end(block_types),
                                     [&](const BLOCK_TYPE_NAME& entry) { return equals(token, entry.name); });
    if (found == std::end(block_types)) {
      zelk_msg_debug("Found illegal value (%s) for ramstyle/romstyle attribute", token.c_str());
      style.is_legal = false;
      continue;
    }
    style.has_block_type = true;
    style.block_type = found->type;
  }
  return style;
}

namespace {

constexpr int DEFAULT_BY_SIZE = -1;

struct ENCODING_PATTERN {
  const char* expression;
  int encoding;
};
/// In the order of their precedence.
constexpr ENCODING_PATTERN encoding_patterns[] = {{"default", DEFAULT_BY_SIZE},
                                                  {"(user|original|user encoded)", ACF_ENUM_USER},
                                                  {"auto", ACF_ENUM_AUTO},
                                                  {"(binary|sequential)", ACF_ENUM_SEQUENTIAL},
                                                  {"(onehot|one-hot)", ACF_ENUM_ONE_HOT},
                                                  {"(compact|minimal bits)", ACF_ENUM_MINIMAL_BITS},
                                                  {"(gray|grey)", ACF_ENUM_GRAY},
                                                  {"johnson", ACF_ENUM_JOHNSON}};

/// Large machines save registers, middle ones logic.
int default_encoding(int state_count) {
  constexpr int MAX_ONE_HOT_STATES = 50;
  constexpr int MIN_ONE_HOT_STATES = 5;
  if (state_count < 0) return ACF_ENUM_NONE;
  if (state_count > MAX_ONE_HOT_STATES) return ACF_ENUM_GRAY;
  return state_count >= MIN_ONE_HOT_STATES ? ACF_ENUM_ONE_HOT : ACF_ENUM_SEQUENTIAL;
}

} // namespace

ZELK_FSM_ENCODING zelk_parse_fsm_encoding(const char* text, int state_count) {
  ZELK_FSM_ENCODING result;
  std::vector<std::string> tokens = zelk_split_list(zelk_unquote(text));
  result.is_safe = std::erase_if(tokens, [](const std::string& token) { return equals(token, "safe"); }) != 0;
  for (const ENCODING_PATTERN& pattern : encoding_patterns) {
    HTL_REGEXP expression(pattern.expression);
    bool matches = std::any_of(tokens.begin(), tokens.end(),
                               [&](const std::string& token) { return expression.match(token.c_str()); });
    if (!matches) continue;
    result.encoding = pattern.encoding == DEFAULT_BY_SIZE ? default_encoding(state_count) : pattern.encoding;
    break;
  }
  return result;
}

int zelk_parse_multstyle(const char* text) {
  std::string style = zelk_unquote(text);
  if (equals(style, "logic")) return ACF_ENUM_LOGIC_ELEMENTS;
  if (equals(style, "dsp") || equals(style, "lpm_mult")) return ACF_ENUM_DSP_BLOCKS;
  return ACF_ENUM_NONE;
}
