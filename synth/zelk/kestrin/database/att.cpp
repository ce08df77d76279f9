#include "database/att.h"

#include <cctype>
#include <cstring>
#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>

#include "containers/assertion.h"
#include "containers/map.h"
#include "containers/views.h"
#include "database/designobj.h"
#include "util/strings.h"

namespace {

enum value_form {
  FORM_STRING,
  FORM_BOOL,
  FORM_BOOL_OR_NUMBER,
  FORM_QUOTED_NUMBER,
  FORM_DEPTH,
  FORM_ENUM_ENCODING,
  FORM_FSM_ENCODING,
  FORM_MULTSTYLE,
  FORM_RAMSTYLE,
  FORM_ANY
};

struct known_attribute {
  const char* name;
  value_form form;
};

constexpr known_attribute known_attributes[] = {
#define KESTRIN_ATT(symbol, canonical, form) {canonical, form},
#include "database/att.def"
};

struct attribute_alias {
  ATT_ENUM type;
  const char* alias;
};

constexpr attribute_alias aliases[] = {
#define KESTRIN_ATT_ALIAS(symbol, alias) {symbol, alias},
#include "database/att.def"
};

bool EqualsNoCase(std::string_view text, std::string_view word) {
  if (text.size() != word.size()) return false;
  for (size_t i = 0; i < text.size(); i++)
    if (std::tolower(static_cast<unsigned char>(text[i])) != std::tolower(static_cast<unsigned char>(word[i])))
      return false;
  return true;
}

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> words) {
  for (std::string_view word : words)
    if (EqualsNoCase(text, word)) return true;
  return false;
}

bool IsNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool IsQuoted(std::string_view text) { return text.size() >= 2 && text.front() == '"' && text.back() == '"'; }

std::string_view Unquote(std::string_view text) { return text.substr(1, text.size() - 2); }

std::string_view Trim(std::string_view text) {
  size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool IsBool(std::string_view text) {
  return IsOneOf(IsQuoted(text) ? Unquote(text) : text, {"0", "1", "on", "off", "true", "false"});
}

// The values of logic types, of which encodings are made.
bool IsStateLiteral(std::string_view text) {
  return !text.empty() && text.find_first_not_of("01dhluxzDHLUXZ- ") == std::string_view::npos;
}

bool IsEnumEncoding(std::string_view text) {
  return IsOneOf(text, {"default", "binary", "sequential", "gray", "grey", "johnson", "onehot", "one-hot"}) ||
         IsStateLiteral(text);
}

bool IsFsmEncoding(std::string_view text) {
  return IsOneOf(text, {"safe", "default", "binary", "sequential", "gray", "grey", "johnson", "compact", "auto",
                        "onehot", "one-hot", "user", "original"}) ||
         IsStateLiteral(text);
}

bool IsRamStyle(std::string_view text) {
  return IsOneOf(text, {"srb1", "srb2", "srb6", "auto", "logic", "srb7", "srb3", "srb5", "srb4", "no_rw_check"});
}

bool IsMultStyle(std::string_view text) { return IsOneOf(text, {"logic", "dsp", "lpm_mult"}); }

bool IsQuotedList(std::string_view text, bool (*is_element)(std::string_view)) {
  if (!IsQuoted(text)) return false;
  std::string_view rest = Unquote(text);
  while (true) {
    size_t comma = rest.find(',');
    if (!is_element(Trim(rest.substr(0, comma)))) return false;
    if (comma == std::string_view::npos) return true;
    rest = rest.substr(comma + 1);
  }
}

bool HasForm(std::string_view text, value_form form) {
  switch (form) {
  case FORM_STRING: return text.size() > 2 && IsQuoted(text);
  case FORM_BOOL: return IsBool(text);
  case FORM_BOOL_OR_NUMBER: return IsBool(text) || IsNumber(text);
  case FORM_QUOTED_NUMBER: return IsQuoted(text) && IsNumber(Unquote(text));
  case FORM_DEPTH: return IsOneOf(text, {"0", "32", "64", "128", "256", "512", "1024", "2048", "4096"});
  case FORM_ENUM_ENCODING: return IsQuotedList(text, IsEnumEncoding);
  case FORM_FSM_ENCODING: return IsQuotedList(text, IsFsmEncoding);
  case FORM_MULTSTYLE: return IsQuoted(text) && IsMultStyle(Trim(Unquote(text)));
  case FORM_RAMSTYLE: return IsQuotedList(text, IsRamStyle);
  case FORM_ANY: return true;
  }
  return false;
}

using type_mask = unsigned long long;

constexpr type_mask Types(std::initializer_list<ATT_ENUM> types) {
  type_mask mask = 0;
  for (ATT_ENUM type : types) mask |= type_mask{1} << type;
  return mask;
}

// In the order of att_supporter.
constexpr type_mask supported_types[ATT_SUPPORTER_COUNT] = {
    // nets
    Types({ATT_NORVEL_ATTRIBUTE, ATT_DIRECT_ENABLE, ATT_ENUM_ENCODING, ATT_FSM_ENCODING, ATT_GND, ATT_INITIAL_VALUE,
           ATT_STATE_ENCODING, ATT_VCC, ATT_IP_DEBUG_ALIAS, ATT_IP_DEBUG_VISIBLE, ATT_KEEP, ATT_MAXFAN, ATT_NOPRUNE,
           ATT_PROBE}),
    // ports and their buses
    Types(
        {ATT_NORVEL_ATTRIBUTE, ATT_CHIP_PIN, ATT_INITIAL_VALUE, ATT_IP_DEBUG_ALIAS, ATT_IP_DEBUG_VISIBLE, ATT_USEIOFF}),
    // buffers
    Types({ATT_NORVEL_ATTRIBUTE, ATT_IP_DEBUG_VISIBLE, ATT_KEEP, ATT_MAXFAN, ATT_NOPRUNE, ATT_PROBE}),
    // registers and infer points
    Types({ATT_NORVEL_ATTRIBUTE, ATT_DONT_MERGE, ATT_DONT_REPLICATE, ATT_DONT_RETIME, ATT_INITIAL_VALUE,
           ATT_IP_DEBUG_ALIAS, ATT_IP_DEBUG_VISIBLE, ATT_MAXFAN, ATT_MESSAGE_DISABLE, ATT_MESSAGE_ENABLE, ATT_NOPRUNE,
           ATT_PRESERVE, ATT_PROBE, ATT_SYN_ALLOW_RETIMING, ATT_SYN_REPLICATE, ATT_USEIOFF, ATT_GENERIC}),
    // operators
    Types({ATT_MAXIMUM_DEPTH, ATT_MULTSTYLE, ATT_RAMSTYLE, ATT_RAM_INIT_FILE}),
    // multipliers
    Types({ATT_NORVEL_ATTRIBUTE, ATT_MULTSTYLE}),
    // memories
    Types({ATT_NORVEL_ATTRIBUTE, ATT_ASYNCHRONOUS_READ, ATT_BLOCKING_WRITE, ATT_EXCLUSIVE_READ_WRITE,
           ATT_READ_AFTER_WRITE, ATT_SEQUENTIAL_READ_WRITE, ATT_TRUE_DUAL_PORT, ATT_MAXIMUM_DEPTH, ATT_RAMSTYLE,
           ATT_RAM_INIT_FILE}),
    // instances of user views
    Types({ATT_NORVEL_ATTRIBUTE,
           ATT_BLACK_BOX,
           ATT_SYNTHESIS_PLAINBOX,
           ATT_PLAINBOX_DEFPARAM,
           ATT_PLAINBOX_MACRONAME,
           ATT_DONT_MERGE,
           ATT_DONT_REPLICATE,
           ATT_DONT_RETIME,
           ATT_ENUM_ENCODING,
           ATT_FSM_ENCODING,
           ATT_KEEP,
           ATT_MAXFAN,
           ATT_MAXIMUM_DEPTH,
           ATT_MESSAGE_DISABLE,
           ATT_MESSAGE_ENABLE,
           ATT_MULTSTYLE,
           ATT_NOPRUNE,
           ATT_PRESERVE,
           ATT_RAMSTYLE,
           ATT_ROMSTYLE,
           ATT_SYNTHESIS_GREYBOX,
           ATT_SYN_ALLOW_RETIMING,
           ATT_SYN_REPLICATE,
           ATT_GENERIC}),
};

} // namespace

Map* Att::_types = nullptr;

Att::Att(const char* key, const char* value) : _key(nullptr), _value(Strings::save(value)) {
  const char* canonical = TypeToString(Type(key));
  _key = Strings::save(canonical ? canonical : key);
}

Att::Att(ATT_ENUM type, const char* value) : _key(nullptr), _value(Strings::save(value)) {
  KESTRIN_ASSERT(TypeToString(type));
  _key = Strings::save(TypeToString(type));
}

Att::Att(const Att& other) : _key(Strings::save(other._key)), _value(Strings::save(other._value)) {}

Att::~Att() {
  Strings::free_string(_key);
  Strings::free_string(_value);
}

void Att::SetValue(const char* value) {
  char* copy = Strings::save(value);
  Strings::free_string(_value);
  _value = copy;
}

unsigned Att::IsOn() const {
  if (!_value) return 0;
  return Strings::compare_nocase(_value, "true") || Strings::compare_nocase(_value, "on") || Strings::atoi(_value) > 0;
}

unsigned Att::IsValid() const {
  ATT_ENUM type = Type();
  if (type >= ATT_GENERIC) {
    KESTRIN_REPORT_INTERNAL("Cannot check value of invalid attribute.");
    return 0;
  }
  return HasForm(_value ? _value : "", known_attributes[type].form);
}

unsigned Att::ChangesDesignFunctionality() const {
  ATT_ENUM type = Type();
  return type == ATT_NORVEL_ATTRIBUTE || type == ATT_INITIAL_VALUE || type == ATT_RAM_INIT_FILE;
}

ATT_ENUM Att::Type(const char* name) {
  if (!name) return ATT_GENERIC;
  if (!_types) {
    _types = new Map(HASH_STRING_NOCASE, 2 * ATT_GENERIC);
    int number = 1;
    for (const known_attribute& known : known_attributes) _types->Insert(known.name, ToWord(number++));
    for (const attribute_alias& entry : aliases) _types->Insert(entry.alias, ToWord(entry.type + 1));
  }
  int number = FromWord<int>(_types->GetValue(name));
  return number ? static_cast<ATT_ENUM>(number - 1) : ATT_GENERIC;
}

const char* Att::TypeToString(unsigned type) { return type < ATT_GENERIC ? known_attributes[type].name : nullptr; }

void Att::FreeStaticMemory() {
  delete _types;
  _types = nullptr;
}

void Att::Dump(std::ostream& out, unsigned indent) const {
  DesignObj::PrintLevel(out, indent);
  out << "Attribute " << _key << " = " << (_value ? _value : "") << "\n";
}

unsigned kestrin_att_supported(att_supporter kind, ATT_ENUM type) {
  return kind < ATT_SUPPORTER_COUNT && type <= ATT_GENERIC ? (supported_types[kind] >> type) & 1 : 0;
}
