#include "zelk_netlist_creator.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "database/primitives.h"
#include "database/views.h"
#include "fio.h"
#include "stl_util.h"
#include "util/linefile.h"
#include "zelk_utility.h"

const std::string ZELK_NETLIST_CREATOR::m_comment_sign = "//";

enum ZELK_ARG_ENUM : int {
  ARG_NAME,
  ARG_SYMBOL,
  ARG_KEY,
  ARG_TYPE,
  ARG_LIBRARY,
  ARG_CELL,
  ARG_NETLIST,
  ARG_NET,
  ARG_PORT,
  ARG_INSTANCE,
  ARG_VIEW,
  ARG_OBJECT,
  ARG_DIRECTION,
  ARG_LEFT,
  ARG_RIGHT,
  ARG_VALUE,
  ARG_FILE,
  ARG_LINE,
  ARG_SIGNED,
  ARG_FUNCTION,
  ARG_BUFFER_TYPE,
  ARG_POWER_UP,
  ARG_PREFERRED,
  // Roles. Those of a memory's port stand in for the roles of operators.
  ARG_INPUT,
  ARG_INPUT1,
  ARG_INPUT2,
  ARG_OUTPUT,
  ARG_CONTROL,
  ARG_ASYNC_COND,
  ARG_ASYNC_VAL,
  ARG_SET,
  ARG_RESET,
  ARG_CLOCK,
  ARG_Z,
  ARG_ALOAD,
  ARG_ADATA,
  ARG_CIN,
  ARG_COUT,
  ARG_BYTE_ENABLE,
  ARG_READ_DEPTH,
  ARG_WRITE_DEPTH,
  ARG_READ_ADDRESS_B,
  ARG_READ_DATA_B,
  ARG_READ_DEPTH_B,
  ARG_WRITE_ENABLE_B,
  ARG_WRITE_ADDRESS_B,
  ARG_WRITE_DATA_B,
  ARG_WRITE_DEPTH_B,
  ARG_BYTE_ENABLE_B
};

namespace {

constexpr ZELK_ARG_ENUM ARG_WRITE_DATA = ARG_INPUT;
constexpr ZELK_ARG_ENUM ARG_WRITE_ADDRESS = ARG_INPUT1;
constexpr ZELK_ARG_ENUM ARG_READ_ADDRESS = ARG_INPUT2;
constexpr ZELK_ARG_ENUM ARG_READ_DATA = ARG_OUTPUT;
constexpr ZELK_ARG_ENUM ARG_WRITE_ENABLE = ARG_CONTROL;

/// No bus of a hand-written netlist is wider.
constexpr long MAX_WIDTH = 1L << 16;

struct WORD {
  const char* word;
  int value;
};

constexpr WORD ARG_WORDS[] = {
    {"NAME", ARG_NAME},
    {"SYMBOL", ARG_SYMBOL},
    {"KEY", ARG_KEY},
    {"TYPE", ARG_TYPE},
    {"LIBRARY", ARG_LIBRARY},
    {"CELL", ARG_CELL},
    {"NETLIST", ARG_NETLIST},
    {"NET", ARG_NET},
    {"PORT", ARG_PORT},
    {"INSTANCE", ARG_INSTANCE},
    {"VIEW", ARG_VIEW},
    {"OBJECT", ARG_OBJECT},
    {"DIRECTION", ARG_DIRECTION},
    {"LEFT", ARG_LEFT},
    {"RIGHT", ARG_RIGHT},
    {"VALUE", ARG_VALUE},
    {"FILE", ARG_FILE},
    {"LINE", ARG_LINE},
    {"SIGNED", ARG_SIGNED},
    {"FUNCTION", ARG_FUNCTION},
    {"BUFFER_TYPE", ARG_BUFFER_TYPE},
    {"POWER_UP", ARG_POWER_UP},
    {"PREFERRED", ARG_PREFERRED},
    {"IN", ARG_INPUT},
    {"INPUT", ARG_INPUT},
    {"WRITE_DATA", ARG_WRITE_DATA},
    {"INPUT1", ARG_INPUT1},
    {"SEL", ARG_INPUT1},
    {"WRITE_ADDRESS", ARG_WRITE_ADDRESS},
    {"INPUT2", ARG_INPUT2},
    {"AMOUNT", ARG_INPUT2},
    {"DATA", ARG_INPUT2},
    {"READ_ADDRESS", ARG_READ_ADDRESS},
    {"OUT", ARG_OUTPUT},
    {"OUTPUT", ARG_OUTPUT},
    {"READ_DATA", ARG_READ_DATA},
    {"CONTROL", ARG_CONTROL},
    {"CTRL", ARG_CONTROL},
    {"WRITE_ENABLE", ARG_WRITE_ENABLE},
    {"ASYNCCOND", ARG_ASYNC_COND},
    {"ASYNC_COND", ARG_ASYNC_COND},
    {"ASYNCVAL", ARG_ASYNC_VAL},
    {"ASYNC_VAL", ARG_ASYNC_VAL},
    {"SET", ARG_SET},
    {"RESET", ARG_RESET},
    {"CLK", ARG_CLOCK},
    {"CLOCK", ARG_CLOCK},
    {"Z", ARG_Z},
    {"ALOAD", ARG_ALOAD},
    {"ADATA", ARG_ADATA},
    {"CIN", ARG_CIN},
    {"COUT", ARG_COUT},
    {"BYTE_ENABLE", ARG_BYTE_ENABLE},
    {"READ_DEPTH", ARG_READ_DEPTH},
    {"WRITE_DEPTH", ARG_WRITE_DEPTH},
    {"READ_ADDRESS_B", ARG_READ_ADDRESS_B},
    {"READ_DATA_B", ARG_READ_DATA_B},
    {"READ_DEPTH_B", ARG_READ_DEPTH_B},
    {"WRITE_ENABLE_B", ARG_WRITE_ENABLE_B},
    {"WRITE_ADDRESS_B", ARG_WRITE_ADDRESS_B},
    {"WRITE_DATA_B", ARG_WRITE_DATA_B},
    {"WRITE_DEPTH_B", ARG_WRITE_DEPTH_B},
    {"BYTE_ENABLE_B", ARG_BYTE_ENABLE_B},
};

constexpr WORD TYPE_WORDS[] = {
    {"POWER", PRIM_PWR},
    {"PWR", PRIM_PWR},
    {"GROUND", PRIM_GND},
    {"GND", PRIM_GND},
    {"X", PRIM_X},
    {"Z", PRIM_Z},
    {"INV", PRIM_INV},
    {"INVERT", PRIM_INV},
    {"INVERTER", PRIM_INV},
    {"BUF", PRIM_BUF},
    {"BUFFER", PRIM_BUF},
    {"AND", PRIM_AND},
    {"NAND", PRIM_NAND},
    {"OR", PRIM_OR},
    {"NOR", PRIM_NOR},
    {"XOR", PRIM_XOR},
    {"XNOR", PRIM_XNOR},
    {"MUX", PRIM_MUX},
    {"PULLUP", PRIM_PULLUP},
    {"PULL_UP", PRIM_PULLUP},
    {"PULLDOWN", PRIM_PULLDOWN},
    {"PULL_DOWN", PRIM_PULLDOWN},
    {"TRI", PRIM_TRI},
    {"TRISTATE", PRIM_TRI},
    {"DLATCH", PRIM_DLATCH},
    {"DLATCHRS", PRIM_DLATCHRS},
    {"DLATCHSR", PRIM_DLATCHRS},
    {"DFF", PRIM_DFF},
    {"DFFRS", PRIM_DFFRS},
    {"DFFSR", PRIM_DFFRS},
    {"NMOS", PRIM_NMOS},
    {"PMOS", PRIM_PMOS},
    {"CMOS", PRIM_CMOS},
    {"TRAN", PRIM_TRAN},
    {"FADD", PRIM_FADD},
    {"FULLADD", PRIM_FADD},
    {"FULL_ADD", PRIM_FADD},
    {"FULLADDER", PRIM_FADD},
    {"FULL_ADDER", PRIM_FADD},
    {"PSL_ASSERTION", PRIM_PSL_ASSERTION},
    {"CLOCK", PRIM_CLOCK},
    {"INFER_POINT", PRIM_INFER_POINT},
    {"INFERPOINT", PRIM_INFER_POINT},
    {"ADD", OPER_ADDER},
    {"ADDER", OPER_ADDER},
    {"MULTIPLIER", OPER_MULTIPLIER},
    {"MULT", OPER_MULTIPLIER},
    {"DIV", OPER_DIVIDER},
    {"DIVIDER", OPER_DIVIDER},
    {"MOD", OPER_MODULO},
    {"MODULO", OPER_MODULO},
    {"SHIFT_LEFT", OPER_SHIFT_LEFT},
    {"SHIFTLEFT", OPER_SHIFT_LEFT},
    {"SHIFT_RIGHT", OPER_SHIFT_RIGHT},
    {"SHIFTRIGHT", OPER_SHIFT_RIGHT},
    {"ROTATE_LEFT", OPER_ROTATE_LEFT},
    {"ROTATELEFT", OPER_ROTATE_LEFT},
    {"ROTATE_RIGHT", OPER_ROTATE_RIGHT},
    {"ROTATERIGHT", OPER_ROTATE_RIGHT},
    {"REDUCE_AND", OPER_REDUCE_AND},
    {"REDUCEAND", OPER_REDUCE_AND},
    {"REDUCE_OR", OPER_REDUCE_OR},
    {"REDUCEOR", OPER_REDUCE_OR},
    {"REDUCE_XOR", OPER_REDUCE_XOR},
    {"REDUCEXOR", OPER_REDUCE_XOR},
    {"REDUCE_NAND", OPER_REDUCE_NAND},
    {"REDUCENAND", OPER_REDUCE_NAND},
    {"REDUCE_NOR", OPER_REDUCE_NOR},
    {"REDUCENOR", OPER_REDUCE_NOR},
    {"REDUCE_XNOR", OPER_REDUCE_XNOR},
    {"REDUCEXNOR", OPER_REDUCE_XNOR},
    {"LESSTHAN", OPER_LESSTHAN},
    {"LESS_THAN", OPER_LESSTHAN},
    {"EQUAL", OPER_EQUAL},
    {"NTO1MUX", OPER_NTO1MUX},
    {"SELECTOR", OPER_SELECTOR},
    {"SELECT", OPER_SELECTOR},
    {"DECODER", OPER_DECODER},
    {"PRIO_SELECTOR", OPER_PRIO_SELECTOR},
    {"PRIORITY_SELECTOR", OPER_PRIO_SELECTOR},
    {"PRIOSELECTOR", OPER_PRIO_SELECTOR},
    {"PRIORITYSELECTOR", OPER_PRIO_SELECTOR},
    {"DUAL_PORT_RAM", OPER_DUAL_PORT_RAM},
    {"DUALPORTRAM", OPER_DUAL_PORT_RAM},
    {"LUT", OPER_LUT},
};

constexpr WORD BUFFER_WORDS[] = {
    {"LOGICAL", LOGICAL},
    {"LOGICALBUFFER", LOGICAL},
    {"LOGICAL_BUFFER", LOGICAL},
    {"STRUCTURAL", STRUCTURAL},
    {"STRUCTURALBUFFER", STRUCTURAL},
    {"STRUCTURAL_BUFFER", STRUCTURAL},
    {"KEEP", KEEP},
    {"KEEPBUFFER", KEEP},
    {"KEEP_BUFFER", KEEP},
    {"USER_NET", USER_NET},
    {"USERNETBUFFER", USER_NET},
    {"USERNET_BUFFER", USER_NET},
    {"USER_NET_BUFFER", USER_NET},
    {"CONSTANT", CONSTANT},
    {"CONSTANTBUFFER", CONSTANT},
    {"CONSTANT_BUFFER", CONSTANT},
    {"DIRECTIONAL", DIRECTIONAL},
    {"DIRECTIONALBUFFER", DIRECTIONAL},
    {"DIRECTIONAL_BUFFER", DIRECTIONAL},
};

constexpr WORD DIRECTION_WORDS[] = {{"INPUT", DIR_INPUT}, {"OUTPUT", DIR_OUTPUT}, {"INOUT", DIR_INOUT}};

/// The role ports of primitives.
struct ROLE {
  ZELK_ARG_ENUM arg;
  Port* (Netlist::*port)() const;
};
constexpr ROLE ROLES[] = {
    {ARG_INPUT, &Netlist::GetInput},
    {ARG_INPUT1, &Netlist::GetInput1},
    {ARG_INPUT2, &Netlist::GetInput2},
    {ARG_CONTROL, &Netlist::GetControl},
    {ARG_ASYNC_COND, &Netlist::GetAsyncCond},
    {ARG_ASYNC_VAL, &Netlist::GetAsyncVal},
    {ARG_SET, &Netlist::GetSet},
    {ARG_RESET, &Netlist::GetReset},
    {ARG_CLOCK, &Netlist::GetClock},
    {ARG_Z, &Netlist::GetZ},
    {ARG_ALOAD, &Netlist::GetALoad},
    {ARG_ADATA, &Netlist::GetAData},
    {ARG_CIN, &Netlist::GetCin},
    {ARG_OUTPUT, &Netlist::GetOutput},
    {ARG_COUT, &Netlist::GetCout},
};

template <size_t n> const WORD* find_word(const WORD (&words)[n], const std::string& text) {
  const std::string upper = stl_toupper(text);
  const WORD* found = std::find_if(words, words + n, [&](const WORD& word) { return upper == word.word; });
  return found == words + n ? nullptr : found;
}

std::string word_of(ZELK_ARG_ENUM arg) {
  return std::find_if(std::begin(ARG_WORDS), std::end(ARG_WORDS), [arg](const WORD& word) { return word.value == arg; })
      ->word;
}

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

bool to_number(const std::string& text, long& number) {
  char* end = nullptr;
  errno = 0;
  number = std::strtol(text.c_str(), &end, 0);
  return !text.empty() && !*end && !errno && number >= INT_MIN && number <= static_cast<long>(UINT_MAX);
}

std::string element_name(const std::string& bus, long index) { return bus + "[" + std::to_string(index) + "]"; }

} // namespace

struct ZELK_NETLIST_CREATOR::COMMAND {
  const char* word;
  PROCESS process;
  bool needs_netlist;
};

const ZELK_NETLIST_CREATOR::COMMAND ZELK_NETLIST_CREATOR::m_commands[] = {
    {"LIBRARY", &ZELK_NETLIST_CREATOR::process_library, false},
    {"CELL", &ZELK_NETLIST_CREATOR::process_cell, false},
    {"NETLIST", &ZELK_NETLIST_CREATOR::process_netlist, false},
    {"NETBUS", &ZELK_NETLIST_CREATOR::process_netbus, true},
    {"NET", &ZELK_NETLIST_CREATOR::process_net, true},
    {"PORT", &ZELK_NETLIST_CREATOR::process_port, true},
    {"GATE", &ZELK_NETLIST_CREATOR::process_gate, true},
    {"OPERATOR", &ZELK_NETLIST_CREATOR::process_op, true},
    {"OP", &ZELK_NETLIST_CREATOR::process_op, true},
    {"RAM", &ZELK_NETLIST_CREATOR::process_ram, true},
    {"USER_INSTANCE", &ZELK_NETLIST_CREATOR::process_user_instance, true},
    {"CONNECT", &ZELK_NETLIST_CREATOR::process_connect, true},
    {"GET_PORT", &ZELK_NETLIST_CREATOR::process_get_port, true},
    {"ATTRIBUTE", &ZELK_NETLIST_CREATOR::process_attribute, true},
    {"PARAMETER", &ZELK_NETLIST_CREATOR::process_parameter, true},
    {"SET", &ZELK_NETLIST_CREATOR::process_set, false},
};

ZELK_NETLIST_CREATOR::ZELK_NETLIST_CREATOR(const std::string& map_file)
    : m_map_file(map_file), m_source_file(map_file) {}

Netlist* ZELK_NETLIST_CREATOR::create(const std::string& key) {
  forget();
  if (!FIO_PATH(m_map_file).exists()) {
    ZELK_INTERNAL_ERROR(("Cannot find file \"" + m_map_file + "\"").c_str());
    return nullptr;
  }
  std::ifstream file(m_map_file);
  std::string line;
  while (std::getline(file, line)) {
    m_line_number++;
    if (!process_line(line)) return nullptr;
  }
  auto found = m_netlists.find(key);
  return found == m_netlists.end() ? nullptr : found->second;
}

void ZELK_NETLIST_CREATOR::forget() {
  m_line_number = 0;
  m_source_file = m_map_file;
  m_source_line = 0;
  m_library = nullptr;
  m_cell = nullptr;
  m_netlist = nullptr;
  m_scopes.clear();
  m_symbols.clear();
  m_netlists.clear();
}

// Lines.

bool ZELK_NETLIST_CREATOR::line_is_comment(const std::string& line) const {
  size_t begin = 0;
  while (begin < line.size() && is_blank(line[begin])) begin++;
  return line.compare(begin, m_comment_sign.size(), m_comment_sign) == 0;
}

std::string ZELK_NETLIST_CREATOR::append_line_info(const std::string& text) const {
  return text + " (file \"" + m_map_file + "\", line " + std::to_string(m_line_number) + ")";
}

bool ZELK_NETLIST_CREATOR::report(const std::string& text) const {
  ZELK_INTERNAL_ERROR(append_line_info(text).c_str());
  return false;
}

bool ZELK_NETLIST_CREATOR::process_line(const std::string& line) {
  if (line_is_comment(line)) return true;
  // A comment sign within a string is none.
  std::string text;
  bool in_string = false;
  for (size_t at = 0; at < line.size(); at++) {
    if (line[at] == '"') in_string = !in_string;
    if (!in_string && line.compare(at, m_comment_sign.size(), m_comment_sign) == 0) break;
    text += line[at];
  }
  size_t begin = 0;
  while (begin < text.size() && is_blank(text[begin])) begin++;
  if (begin == text.size()) return true;
  size_t end = begin;
  while (end < text.size() && !is_blank(text[end])) end++;
  std::string word = text.substr(begin, end - begin);
  const size_t dot = word.rfind('.');
  Netlist* const current = m_netlist;
  if (dot != std::string::npos) {
    DesignObj* scope = get_from_symbol_table(word.substr(0, dot));
    if (!scope) return false;
    if (scope->ObjectType() != DB_NETLIST) return report("\"" + word.substr(0, dot) + "\" is no netlist");
    m_netlist = static_cast<Netlist*>(scope);
    word.erase(0, dot + 1);
  }
  const std::string upper = stl_toupper(word);
  const COMMAND* command = std::find_if(std::begin(m_commands), std::end(m_commands),
                                        [&](const COMMAND& candidate) { return upper == candidate.word; });
  if (command == std::end(m_commands)) return report("Bad command: " + word);
  ARG_MAP args;
  if (!create_arg_map(text.substr(end), args)) return false;
  if (command->needs_netlist && !m_netlist) return report("No netlist for command: " + word);
  const bool is_good = (this->*command->process)(args);
  if (dot != std::string::npos) m_netlist = current;
  return is_good;
}

bool ZELK_NETLIST_CREATOR::create_arg_map(const std::string& rest, ARG_MAP& args) {
  for (size_t at = 0; at < rest.size();) {
    if (is_blank(rest[at])) {
      at++;
      continue;
    }
    const size_t begin = at;
    while (at < rest.size() && !is_blank(rest[at]) && rest[at] != '=') at++;
    const std::string key = rest.substr(begin, at - begin);
    if (at == rest.size() || rest[at] != '=')
      return report("Invalid argument format.  Every argument must take a value.");
    const size_t value_begin = ++at;
    bool in_string = false;
    for (; at < rest.size() && (in_string || !is_blank(rest[at])); at++)
      if (rest[at] == '"') in_string = !in_string;
    if (in_string) return report("Missing quote.");
    if (at == value_begin) return report("Invalid argument format.  Every argument must take a value.");
    const WORD* arg = find_word(ARG_WORDS, key);
    if (!arg) return report("Invalid argument \"" + key + "\"");
    if (!args.emplace(static_cast<ZELK_ARG_ENUM>(arg->value), rest.substr(value_begin, at - value_begin)).second)
      return report("Argument \"" + key + "\" is given twice");
  }
  return true;
}

// Values.

bool ZELK_NETLIST_CREATOR::value_is_string(const std::string& value) {
  return value.size() >= 2 && value.front() == '"' && value.back() == '"';
}

std::string ZELK_NETLIST_CREATOR::remove_quotes(const std::string& value) {
  return value_is_string(value) ? value.substr(1, value.size() - 2) : value;
}

bool ZELK_NETLIST_CREATOR::get_from_arg_map(ZELK_ARG_ENUM arg, const ARG_MAP& args, std::string& value) const {
  auto found = args.find(arg);
  if (found == args.end()) return report("Missing argument \"" + word_of(arg) + "\"");
  value = remove_quotes(found->second);
  return true;
}

bool ZELK_NETLIST_CREATOR::get_from_arg_map(ZELK_ARG_ENUM arg, const ARG_MAP& args, long& number) const {
  auto found = args.find(arg);
  if (found == args.end() || to_number(remove_quotes(found->second), number)) return true;
  return report("Argument \"" + word_of(arg) + "\" takes a number");
}

std::string ZELK_NETLIST_CREATOR::scoped(const std::string& name) const {
  auto scope = m_scopes.find(m_netlist);
  return (scope == m_scopes.end() ? std::string() : scope->second) + "\n" + name;
}

void ZELK_NETLIST_CREATOR::add_symbol(const ARG_MAP& args, const std::string& name, DesignObj* object,
                                      bool in_netlist) {
  auto given = args.find(ARG_SYMBOL);
  const std::string symbol = given == args.end() ? name : remove_quotes(given->second);
  if (!symbol.empty()) m_symbols[in_netlist ? scoped(symbol) : symbol] = object;
}

DesignObj* ZELK_NETLIST_CREATOR::get_from_symbol_table(const std::string& name) const {
  for (const std::string& key : {scoped(name), name})
    if (auto found = m_symbols.find(key); found != m_symbols.end()) return found->second;
  report("Cannot find \"" + name + "\"");
  return nullptr;
}

template <class T>
T* ZELK_NETLIST_CREATOR::get_from_symbol_table(ZELK_ARG_ENUM arg, const ARG_MAP& args, int object_type) const {
  std::string name;
  DesignObj* object = get_from_arg_map(arg, args, name) ? get_from_symbol_table(name) : nullptr;
  if (!object || object->ObjectType() == object_type) return static_cast<T*>(object);
  report("\"" + name + "\" is nothing for argument \"" + word_of(arg) + "\"");
  return nullptr;
}

bool ZELK_NETLIST_CREATOR::get_from_type_map(const ARG_MAP& args, int& type) const {
  std::string text;
  if (!get_from_arg_map(ARG_TYPE, args, text)) return false;
  const WORD* word = find_word(TYPE_WORDS, text);
  if (!word) return report("Invalid type \"" + text + "\"");
  type = word->value;
  return true;
}

bool ZELK_NETLIST_CREATOR::get_range(const ARG_MAP& args, long& left, long& right) const {
  if (!get_from_arg_map(ARG_LEFT, args, left) || !get_from_arg_map(ARG_RIGHT, args, right)) return false;
  return std::abs(left - right) < MAX_WIDTH || report("Too many bits");
}

bool ZELK_NETLIST_CREATOR::get_linefile(const ARG_MAP& args, unsigned long& linefile) const {
  long line = m_source_line;
  if (!get_from_arg_map(ARG_LINE, args, line)) return false;
  constexpr long MAX_LINE = (1L << 20) - 1;
  if (line < 0 || line > MAX_LINE) return report("Line out of range");
  linefile = line ? LineFile::EncodeLineFile(m_source_file.c_str(), static_cast<unsigned>(line)) : 0;
  return true;
}

/// A bus from its most significant net, the left one, on; holes are left out.
void ZELK_NETLIST_CREATOR::append_nets(DesignObj* object, NETS& nets) const {
  if (object->ObjectType() == DB_NET) return nets.InsertLast(static_cast<Net*>(object));
  for (auto [element, bus] : ElementsOf(static_cast<NetBus*>(object)))
    if (element) append_nets(element, nets);
}

bool ZELK_NETLIST_CREATOR::get_nets(ZELK_ARG_ENUM arg, const ARG_MAP& args, NETS& nets) const {
  auto found = args.find(arg);
  if (found == args.end()) return true;
  const std::string list = remove_quotes(found->second);
  NETS from_left;
  for (size_t at = 0; at <= list.size();) {
    const size_t end = std::min(list.find(',', at), list.size());
    const std::string name = list.substr(at, end - at);
    at = end + 1;
    const size_t bracket = name.find('[');
    const size_t colon = name.find(':');
    std::vector<std::string> parts;
    if (bracket != std::string::npos && colon != std::string::npos && name.back() == ']') {
      long left = 0;
      long right = 0;
      if (!to_number(name.substr(bracket + 1, colon - bracket - 1), left) ||
          !to_number(name.substr(colon + 1, name.size() - colon - 2), right) || std::abs(left - right) >= MAX_WIDTH)
        return report("Invalid range \"" + name + "\"");
      for (long index = left;; index += left < right ? 1 : -1) {
        parts.push_back(element_name(name.substr(0, bracket), index));
        if (index == right) break;
      }
    } else {
      parts.push_back(name);
    }
    for (const std::string& part : parts) {
      DesignObj* object = get_from_symbol_table(part);
      if (!object) return false;
      if (object->ObjectType() != DB_NET && object->ObjectType() != DB_NETBUS)
        return report("\"" + part + "\" is no net");
      append_nets(object, from_left);
      if (from_left.Size() > static_cast<unsigned>(MAX_WIDTH)) return report("Too many bits");
    }
  }
  for (Net* net : from_left)
    if (net->Owner() != m_netlist) return report("A net of \"" + list + "\" belongs to another netlist");
  for (unsigned bit = from_left.Size(); bit-- > 0;) nets.InsertLast(from_left.At(bit));
  return true;
}

bool ZELK_NETLIST_CREATOR::get_net(ZELK_ARG_ENUM arg, const ARG_MAP& args, Net*& net) const {
  NETS nets;
  if (!get_nets(arg, args, nets)) return false;
  if (nets.Size() > 1) return report("Argument \"" + word_of(arg) + "\" takes one net");
  net = nets.Size() ? nets.At(0) : nullptr;
  return true;
}

// Containers.

bool ZELK_NETLIST_CREATOR::process_library(const ARG_MAP& args) {
  std::string name;
  if (!get_from_arg_map(ARG_NAME, args, name)) return false;
  m_library = Libset::Global()->GetLibrary(name.c_str());
  if (!m_library) Libset::Global()->Add(m_library = new Library(name.c_str()));
  m_cell = nullptr;
  add_symbol(args, name, m_library, false);
  return true;
}

bool ZELK_NETLIST_CREATOR::process_cell(const ARG_MAP& args) {
  std::string name;
  if (!get_from_arg_map(ARG_NAME, args, name)) return false;
  Library* library = m_library;
  if (has(ARG_LIBRARY, args)) library = get_from_symbol_table<Library>(ARG_LIBRARY, args, DB_LIBRARY);
  if (!library) return has(ARG_LIBRARY, args) ? false : report("No library for the cell");
  m_cell = library->GetCell(name.c_str());
  if (!m_cell) library->Add(m_cell = new Cell(name.c_str()));
  add_symbol(args, name, m_cell, false);
  return true;
}

bool ZELK_NETLIST_CREATOR::process_netlist(const ARG_MAP& args) {
  std::string name;
  unsigned long linefile = 0;
  if (!get_from_arg_map(ARG_NAME, args, name) || !get_linefile(args, linefile)) return false;
  Cell* cell = m_cell;
  if (has(ARG_CELL, args)) cell = get_from_symbol_table<Cell>(ARG_CELL, args, DB_CELL);
  if (!cell) return has(ARG_CELL, args) ? false : report("No cell for the netlist");
  if (cell->GetNetlist(name.c_str())) return report("The cell has a netlist \"" + name + "\" already");
  m_netlist = new Netlist(name.c_str(), linefile);
  cell->Add(m_netlist);
  m_netlist->SetSourceLang(DB_SOURCE_LANG_VERILOG);
  m_netlist->AddAtt(" cell_name", cell->Name());
  m_netlist->AddAtt(" library_name", cell->Owner()->Name());
  m_scopes[m_netlist] = std::to_string(m_scopes.size());
  add_symbol(args, name, m_netlist, false);
  if (has(ARG_KEY, args)) m_netlists[remove_quotes(args.at(ARG_KEY))] = m_netlist;
  return true;
}

// Nets and ports.

Net* ZELK_NETLIST_CREATOR::add_net(const char* name, unsigned long linefile) {
  auto* net = new Net(name, linefile);
  m_netlist->Add(net);
  return net;
}

bool ZELK_NETLIST_CREATOR::process_net(const ARG_MAP& args) {
  std::string name;
  unsigned long linefile = 0;
  if (!get_linefile(args, linefile)) return false;
  if (has(ARG_NAME, args) && !get_from_arg_map(ARG_NAME, args, name)) return false;
  if (!name.empty() && m_netlist->BaseNetNameExists(name.c_str()))
    return report("The netlist has a net \"" + name + "\" already");
  Net* net = add_net(name.empty() ? nullptr : name.c_str(), linefile);
  if (has(ARG_POWER_UP, args)) net->SetPowerUpValue(remove_quotes(args.at(ARG_POWER_UP))[0]);
  add_symbol(args, name, net, true);
  return true;
}

bool ZELK_NETLIST_CREATOR::add_bus(const std::string& name, long left, long right, unsigned long linefile) {
  if (m_netlist->BaseNetNameExists(name.c_str())) return report("The netlist has a net \"" + name + "\" already");
  auto* bus = new NetBus(name.c_str(), static_cast<int>(left), static_cast<int>(right), linefile);
  m_netlist->Add(bus);
  m_symbols[scoped(name)] = bus;
  for (long index = left;; index += left < right ? 1 : -1) {
    const std::string element = element_name(name, index);
    Net* net = add_net(element.c_str(), linefile);
    bus->AddAtIndex(net, static_cast<int>(index));
    m_symbols[scoped(element)] = net;
    if (index == right) return true;
  }
}

bool ZELK_NETLIST_CREATOR::process_netbus(const ARG_MAP& args) {
  std::string name;
  long left = 0;
  long right = 0;
  unsigned long linefile = 0;
  if (!get_from_arg_map(ARG_NAME, args, name) || !get_range(args, left, right) || !get_linefile(args, linefile))
    return false;
  if (!add_bus(name, left, right, linefile)) return false;
  add_symbol(args, name, m_netlist->GetNetBus(name.c_str()), true);
  return true;
}

bool ZELK_NETLIST_CREATOR::process_port(const ARG_MAP& args) {
  std::string name;
  std::string direction_text;
  long left = 0;
  long right = 0;
  unsigned long linefile = 0;
  if (!get_from_arg_map(ARG_NAME, args, name) || !get_from_arg_map(ARG_DIRECTION, args, direction_text) ||
      !get_range(args, left, right) || !get_linefile(args, linefile))
    return false;
  const WORD* word = find_word(DIRECTION_WORDS, direction_text);
  if (!word) return report("Invalid direction \"" + direction_text + "\"");
  if (m_netlist->GetPort(name.c_str()) || m_netlist->GetPortBus(name.c_str()))
    return report("The netlist has a port \"" + name + "\" already");
  const auto direction = static_cast<port_dir>(word->value);
  const bool is_bus = has(ARG_LEFT, args) || has(ARG_RIGHT, args);
  if (!has(ARG_NET, args)) {
    if (is_bus && !add_bus(name, left, right, linefile)) return false;
    if (!is_bus) {
      if (m_netlist->BaseNetNameExists(name.c_str())) return report("The netlist has a net \"" + name + "\" already");
      m_symbols[scoped(name)] = add_net(name.c_str(), linefile);
    }
  }
  NETS nets;
  const ARG_MAP own_nets = {{ARG_NET, name}};
  if (!get_nets(ARG_NET, has(ARG_NET, args) ? args : own_nets, nets)) return false;
  const auto width = static_cast<unsigned>(std::abs(left - right) + 1);
  if (nets.Size() != width)
    return report("Port \"" + name + "\" has " + std::to_string(width) + " bits, but " + std::to_string(nets.Size()) +
                  " nets");
  auto* bus = is_bus ? new PortBus(name.c_str(), direction, static_cast<int>(left), left < right, linefile) : nullptr;
  if (bus) m_netlist->Add(bus);
  for (unsigned pos = 0; pos < width; pos++) {
    const long index = left < right ? left + pos : left - pos;
    auto* port = new Port(bus ? element_name(name, index).c_str() : name.c_str(), direction, linefile);
    m_netlist->Add(port);
    if (bus) bus->Add(port);
    nets.At(width - 1 - pos)->Connect(port);
  }
  return true;
}

bool ZELK_NETLIST_CREATOR::process_get_port(const ARG_MAP& args) {
  std::string name;
  if (!get_from_arg_map(ARG_NAME, args, name)) return false;
  Netlist* view = m_netlist;
  if (has(ARG_VIEW, args)) view = get_from_symbol_table<Netlist>(ARG_VIEW, args, DB_NETLIST);
  if (!view) return false;
  DesignObj* port = view->GetPort(name.c_str());
  if (!port) port = view->GetPortBus(name.c_str());
  if (!port) return report("Cannot find port \"" + name + "\"");
  std::string symbol;
  if (!get_from_arg_map(ARG_SYMBOL, args, symbol)) return false;
  add_symbol(args, symbol, port, true);
  return true;
}

// Instances.

bool ZELK_NETLIST_CREATOR::connect_role(Instance* inst, Port* port, ZELK_ARG_ENUM arg, const ARG_MAP& args) {
  Net* net = nullptr;
  if (!get_net(arg, args, net)) return false;
  if (!net) return true;
  if (!port) return report("The gate has no \"" + word_of(arg) + "\"");
  if (inst->GetNet(port)) return inst->GetNet(port) == net || report("\"" + word_of(arg) + "\" is connected already");
  return inst->Connect(port, net) != 0;
}

bool ZELK_NETLIST_CREATOR::process_gate(const ARG_MAP& args) {
  int type = 0;
  unsigned long linefile = 0;
  if (!get_from_type_map(args, type) || !get_linefile(args, linefile)) return false;
  if (type > PRIM_INFER_POINT) return report("Type \"" + remove_quotes(args.at(ARG_TYPE)) + "\" is no gate");
  Netlist* view = Prim::Static(static_cast<prim_type_enum>(type));
  if (has(ARG_BUFFER_TYPE, args)) {
    const WORD* kind = find_word(BUFFER_WORDS, remove_quotes(args.at(ARG_BUFFER_TYPE)));
    if (!kind || type != PRIM_BUF) return report("Invalid type \"" + remove_quotes(args.at(ARG_BUFFER_TYPE)) + "\"");
    view = PrimBuf::Static(static_cast<unsigned>(kind->value));
  }
  std::string name;
  if (has(ARG_NAME, args) && !get_from_arg_map(ARG_NAME, args, name)) return false;
  auto* inst = new Instance(name.empty() ? nullptr : name.c_str(), view, linefile);
  m_netlist->Add(inst);
  add_symbol(args, name, inst, true);
  for (const ROLE& role : ROLES)
    if (!connect_role(inst, (view->*role.port)(), role.arg, args)) return false;
  return true;
}

/// The instance behind the outputs gets the name and the symbol of the line.
bool ZELK_NETLIST_CREATOR::name_driver(const NETS& outputs, const ARG_MAP& args) {
  Instance* inst = outputs.Size() ? outputs.At(0)->GetFirstPortRef()->GetInst() : nullptr;
  if (!inst) return true;
  std::string name;
  if (has(ARG_NAME, args)) {
    if (!get_from_arg_map(ARG_NAME, args, name)) return false;
    inst->SetName(name.c_str());
  }
  add_symbol(args, name, inst, true);
  return true;
}

bool ZELK_NETLIST_CREATOR::process_op(const ARG_MAP& args) {
  int type = 0;
  long is_signed = 0;
  long function = 0;
  unsigned long at = 0;
  if (!get_from_type_map(args, type) || !get_from_arg_map(ARG_SIGNED, args, is_signed) ||
      !get_from_arg_map(ARG_FUNCTION, args, function) || !get_linefile(args, at))
    return false;
  if (type <= PRIM_INFER_POINT) return report("Type \"" + remove_quotes(args.at(ARG_TYPE)) + "\" is no operator");
  if (type == OPER_DUAL_PORT_RAM) return process_ram(args);
  NETS a;
  NETS b;
  NETS o;
  Net* cin = nullptr;
  Net* cout = nullptr;
  if (!get_nets(has(ARG_INPUT, args) ? ARG_INPUT : ARG_INPUT1, args, a) || !get_nets(ARG_INPUT2, args, b) ||
      !get_nets(ARG_OUTPUT, args, o) || !get_net(ARG_CIN, args, cin) || !get_net(ARG_COUT, args, cout))
    return false;

  // What the construction functions take for granted.
  const bool has_one_input =
      (type >= OPER_REDUCE_AND && type <= OPER_REDUCE_XNOR) || type == OPER_DECODER || type == OPER_LUT;
  if (!a.Size() || (b.Size() == 0) != has_one_input) return report("Wrong inputs for the operator");
  unsigned width = 1;
  switch (type) {
  case OPER_ADDER: width = std::max(a.Size(), b.Size()); break;
  case OPER_MULTIPLIER: width = a.Size() + b.Size(); break;
  case OPER_MODULO: width = b.Size(); break;
  case OPER_DIVIDER:
  case OPER_SHIFT_LEFT:
  case OPER_SHIFT_RIGHT:
  case OPER_ROTATE_LEFT:
  case OPER_ROTATE_RIGHT: width = a.Size(); break;
  case OPER_DECODER:
    if (a.Size() > 16) return report("Wrong inputs for the operator");
    width = 1U << a.Size();
    break;
  case OPER_LESSTHAN:
  case OPER_EQUAL:
  case OPER_SELECTOR:
  case OPER_PRIO_SELECTOR:
    if (a.Size() != b.Size()) return report("Wrong inputs for the operator");
    break;
  case OPER_LUT:
    if (a.Size() > LutInstance::max_inputs) return report("Wrong inputs for the operator");
    break;
  default: break;
  }
  if (o.Size() != width)
    return report("The operator has " + std::to_string(width) + " output bits, but " + std::to_string(o.Size()) +
                  " nets");
  const bool takes_carry = type == OPER_ADDER || type == OPER_SHIFT_LEFT || type == OPER_SHIFT_RIGHT ||
                           type == OPER_LESSTHAN || type == OPER_PRIO_SELECTOR;
  if ((cin && !takes_carry) || (cout && type != OPER_ADDER)) return report("The operator has no such carry");
  if (!cin && (type == OPER_SHIFT_LEFT || type == OPER_SHIFT_RIGHT || type == OPER_LESSTHAN)) cin = m_netlist->Gnd(0);

  Net* bit = o.At(0);
  const unsigned sign = is_signed != 0;
  switch (type) {
  case OPER_ADDER: m_netlist->Adder(cin, &a, &b, &o, cout ? &cout : nullptr, at); break;
  case OPER_MULTIPLIER: m_netlist->Multiplier(sign, &a, &b, &o, at); break;
  case OPER_DIVIDER: m_netlist->Divider(sign, &a, &b, &o, at); break;
  case OPER_MODULO: m_netlist->Modulo(sign, &a, &b, &o, at); break;
  case OPER_SHIFT_LEFT: m_netlist->ShiftLeft(cin, &a, &b, &o, at); break;
  case OPER_SHIFT_RIGHT: m_netlist->ShiftRight(cin, &a, &b, &o, at); break;
  case OPER_ROTATE_LEFT: m_netlist->RotateLeft(&a, &b, &o, at); break;
  case OPER_ROTATE_RIGHT: m_netlist->RotateRight(&a, &b, &o, at); break;
  case OPER_REDUCE_AND: m_netlist->ReduceAnd(&a, &bit, at); break;
  case OPER_REDUCE_NAND: m_netlist->ReduceNand(&a, &bit, at); break;
  case OPER_REDUCE_OR: m_netlist->ReduceOr(&a, &bit, at); break;
  case OPER_REDUCE_NOR: m_netlist->ReduceNor(&a, &bit, at); break;
  case OPER_REDUCE_XOR: m_netlist->ReduceXor(&a, &bit, at); break;
  case OPER_REDUCE_XNOR: m_netlist->ReduceXnor(&a, &bit, at); break;
  case OPER_LESSTHAN: m_netlist->LessThan(cin, &a, &b, &bit, at); break;
  case OPER_EQUAL: m_netlist->Equal(&a, &b, &bit, at); break;
  case OPER_NTO1MUX: m_netlist->Nto1Mux(&a, &b, &bit, at); break;
  case OPER_SELECTOR: m_netlist->Selector(&a, &b, &bit, at); break;
  case OPER_PRIO_SELECTOR: m_netlist->PrioSelector(cin, &a, &b, &bit, at); break;
  case OPER_DECODER: m_netlist->Decoder(&a, &o, at); break;
  case OPER_LUT: m_netlist->Lut(&a, &bit, static_cast<unsigned>(function), at); break;
  default: return report("Invalid type \"" + remove_quotes(args.at(ARG_TYPE)) + "\"");
  }
  return name_driver(o, args);
}

bool ZELK_NETLIST_CREATOR::process_ram(const ARG_MAP& args) {
  struct SIDE {
    NETS read_address, read_data, write_address, write_data, byte_enable;
    Net* write_enable = nullptr;
    long read_depth = 0;
    long write_depth = 0;
  };
  constexpr ZELK_ARG_ENUM WORDS[2][8] = {{ARG_READ_ADDRESS, ARG_READ_DATA, ARG_WRITE_ADDRESS, ARG_WRITE_DATA,
                                          ARG_BYTE_ENABLE, ARG_WRITE_ENABLE, ARG_READ_DEPTH, ARG_WRITE_DEPTH},
                                         {ARG_READ_ADDRESS_B, ARG_READ_DATA_B, ARG_WRITE_ADDRESS_B, ARG_WRITE_DATA_B,
                                          ARG_BYTE_ENABLE_B, ARG_WRITE_ENABLE_B, ARG_READ_DEPTH_B, ARG_WRITE_DEPTH_B}};
  SIDE sides[2];
  unsigned long at = 0;
  if (!get_linefile(args, at)) return false;
  for (int i = 0; i < 2; i++) {
    SIDE& side = sides[i];
    const auto& words = WORDS[i];
    if (!get_nets(words[0], args, side.read_address) || !get_nets(words[1], args, side.read_data) ||
        !get_nets(words[2], args, side.write_address) || !get_nets(words[3], args, side.write_data) ||
        !get_nets(words[4], args, side.byte_enable) || !get_net(words[5], args, side.write_enable))
      return false;
    auto full_depth = [](const NETS& address) { return address.Size() ? 1L << std::min(address.Size(), 30U) : 0L; };
    side.read_depth = full_depth(side.read_address);
    side.write_depth = full_depth(side.write_address);
    if (!get_from_arg_map(words[6], args, side.read_depth) || !get_from_arg_map(words[7], args, side.write_depth))
      return false;
    if ((side.read_address.Size() == 0) != (side.read_data.Size() == 0)) return report("Incomplete read port");
    const bool writes = side.write_enable || side.write_address.Size() || side.write_data.Size();
    if (writes != (side.write_enable && side.write_address.Size() && side.write_data.Size()))
      return report("Incomplete write port");
    if (side.read_depth < 0 || side.write_depth < 0) return report("Negative depth");
  }
  if (!sides[0].read_data.Size()) return report("Incomplete read port");
  auto given = [](const NETS& nets) { return nets.Size() ? &nets : nullptr; };
  auto depth = [](long words) { return static_cast<unsigned>(words); };
  const SIDE& a = sides[0];
  const SIDE& b = sides[1];
  m_netlist->TrueDualPortRam(a.write_enable, given(a.byte_enable), given(a.write_address), depth(a.write_depth),
                             given(a.write_data), given(a.read_address), depth(a.read_depth), given(a.read_data),
                             b.write_enable, given(b.byte_enable), given(b.write_address), depth(b.write_depth),
                             given(b.write_data), given(b.read_address), depth(b.read_depth), given(b.read_data), at);
  return name_driver(a.read_data, args);
}

bool ZELK_NETLIST_CREATOR::process_user_instance(const ARG_MAP& args) {
  std::string name;
  unsigned long linefile = 0;
  if (!get_from_arg_map(ARG_NAME, args, name) || !get_linefile(args, linefile)) return false;
  auto* view = get_from_symbol_table<Netlist>(ARG_VIEW, args, DB_NETLIST);
  if (!view) return false;
  Set below(HASH_POINTER);
  view->Hierarchy(below, /*top_down*/ 1);
  if (below.Contains(m_netlist)) return report("A netlist can't contain itself");
  auto* inst = new Instance(name.c_str(), view, linefile);
  m_netlist->Add(inst);
  add_symbol(args, name, inst, true);
  return true;
}

bool ZELK_NETLIST_CREATOR::process_connect(const ARG_MAP& args) {
  auto* inst = get_from_symbol_table<Instance>(ARG_INSTANCE, args, DB_INSTANCE);
  std::string name;
  if (!inst || !get_from_arg_map(ARG_PORT, args, name)) return false;
  if (inst->Owner() != m_netlist) return report("The instance belongs to another netlist");
  NETS nets;
  if (!get_nets(ARG_NET, args, nets)) return false;
  std::vector<Port*> ports; // the left one first
  if (PortBus* bus = inst->View()->GetPortBus(name.c_str())) {
    for (DesignObj* element : ElementsOf(bus))
      if (element->ObjectType() == DB_PORT) ports.push_back(static_cast<Port*>(element));
  } else if (Port* port = inst->View()->GetPort(name.c_str())) {
    ports.push_back(port);
  }
  if (ports.empty()) return report("Cannot find port \"" + name + "\"");
  if (ports.size() != nets.Size())
    return report("Port \"" + name + "\" has " + std::to_string(ports.size()) + " bits, but " +
                  std::to_string(nets.Size()) + " nets");
  for (size_t pos = 0; pos < ports.size(); pos++) {
    if (inst->GetNet(ports[pos])) return report("Port \"" + name + "\" is connected already");
    inst->Connect(ports[pos], nets.At(static_cast<unsigned>(ports.size() - 1 - pos)));
  }
  return true;
}

// Properties.

bool ZELK_NETLIST_CREATOR::process_attribute(const ARG_MAP& args) {
  std::string object_name;
  std::string name;
  std::string value;
  if (!get_from_arg_map(ARG_OBJECT, args, object_name) || !get_from_arg_map(ARG_NAME, args, name) ||
      !get_from_arg_map(ARG_VALUE, args, value))
    return false;
  DesignObj* object = get_from_symbol_table(object_name);
  if (!object) return false;
  // Known attributes of strings have the quotes of the source in their values.
  const Att bare(name.c_str(), value.c_str());
  const bool is_bare = bare.Type() == ATT_GENERIC || bare.IsValid();
  object->AddAtt(name.c_str(), is_bare ? value.c_str() : args.at(ARG_VALUE).c_str());
  return true;
}

bool ZELK_NETLIST_CREATOR::process_parameter(const ARG_MAP& args) {
  std::string name;
  std::string value;
  long type = Param::unknown_variable_type;
  if (!get_from_arg_map(ARG_NAME, args, name) || !get_from_arg_map(ARG_VALUE, args, value) ||
      !get_from_arg_map(ARG_TYPE, args, type))
    return false;
  m_netlist->AddParam(name.c_str(), value.c_str(), nullptr, static_cast<int>(type));
  return true;
}

bool ZELK_NETLIST_CREATOR::process_set(const ARG_MAP& args) {
  if (has(ARG_NETLIST, args)) {
    auto* netlist = get_from_symbol_table<Netlist>(ARG_NETLIST, args, DB_NETLIST);
    if (!netlist) return false;
    m_netlist = netlist;
    return true;
  }
  if (has(ARG_FILE, args)) m_source_file = remove_quotes(args.at(ARG_FILE));
  if (!get_from_arg_map(ARG_LINE, args, m_source_line)) return false;
  if (!has(ARG_OBJECT, args)) return true;
  DesignObj* object = get_from_symbol_table(remove_quotes(args.at(ARG_OBJECT)));
  if (!object) return false;
  if (has(ARG_NAME, args)) object->SetName(remove_quotes(args.at(ARG_NAME)).c_str());
  const bool is_net = object->ObjectType() == DB_NET;
  if (!is_net && (has(ARG_POWER_UP, args) || has(ARG_PREFERRED, args)))
    return report("\"" + remove_quotes(args.at(ARG_OBJECT)) + "\" is no net");
  if (has(ARG_POWER_UP, args)) static_cast<Net*>(object)->SetPowerUpValue(remove_quotes(args.at(ARG_POWER_UP))[0]);
  long preferred = 0;
  if (!get_from_arg_map(ARG_PREFERRED, args, preferred)) return false;
  if (has(ARG_PREFERRED, args)) static_cast<Net*>(object)->SetPreferredName(preferred != 0);
  return true;
}
