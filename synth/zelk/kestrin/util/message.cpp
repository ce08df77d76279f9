#include "util/message.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "containers/views.h"
#include "util/strings.h"

Map* Message::_forced_message_types = nullptr;
Set* Message::_critical_messages = nullptr;
unsigned Message::_error_count = 0;
unsigned Message::_max_error_count = Message::default_max_error_count;
unsigned Message::_print_ids = 0;
unsigned Message::_console_output = 1;
unsigned Message::_critical_msgs_only = 0;
message_callback Message::_msg_callback_func = nullptr;
message_text_callback Message::_error_func = nullptr;
message_text_callback Message::_warning_func = nullptr;
message_text_callback Message::_info_func = nullptr;
FILE* Message::logfile = nullptr;

namespace {

constexpr unsigned table_size = 383;
constexpr char pieces_format[] = "%s%s%s%s%s";

const char* PrefixOf(msg_type_t type) {
  switch (type) {
  case MSG_ERROR: return "ERROR:";
  case MSG_WARNING: return "WARNING:";
  case MSG_INFO: return "INFO:";
  case MSG_COMMENT: return "--";
  case MSG_PROGRAM_ERROR: return "PROGRAM ERROR:";
  case MSG_NONE:
  case MSG_IGNORE: break;
  }
  return nullptr;
}

const char* OrEmpty(const char* text) { return text ? text : ""; }

// The text of system tasks is the user's own; a repetition of it is meant.
bool MayRepeat(const char* id) {
  static constexpr std::string_view ids[] = {"SV-1124", "SV-1123", "SV-1122", "SV-1121", "VERI-2060"};
  if (!id) return false;
  for (std::string_view repeatable : ids)
    if (repeatable == id) return true;
  return false;
}

std::string FormatText(const char* format, va_list args) {
  va_list copy;
  va_copy(copy, args);
  char buffer[512];
  int size = std::vsnprintf(buffer, sizeof buffer, format, copy);
  va_end(copy);
  if (size < 0) return format;
  if (static_cast<size_t>(size) < sizeof buffer) return std::string(buffer, static_cast<size_t>(size));
  std::string text(static_cast<size_t>(size), 0);
  va_copy(copy, args);
  std::vsnprintf(text.data(), text.size() + 1, format, copy);
  va_end(copy);
  return text;
}

// One argument of a message as the caller passed it.
struct ArgumentWord {
  char conversion;
  const char* string;
  long long number;
};

// The arguments that the conversions of a format take, in order.
std::vector<ArgumentWord> ReadArguments(const char* format, va_list args) {
  std::vector<ArgumentWord> words;
  va_list copy;
  va_copy(copy, args);
  for (const char* at = std::strchr(format, '%'); at; at = std::strchr(at, '%')) {
    at++;
    if (*at == '%') {
      at++;
      continue;
    }
    unsigned longs = 0;
    bool is_size = false;
    for (; *at && std::strchr("-+ #0123456789.*lhzjt", *at); at++) {
      if (*at == '*') words.push_back({'*', nullptr, va_arg(copy, int)});
      longs += *at == 'l';
      is_size = is_size || *at == 'z' || *at == 'j' || *at == 't';
    }
    if (!*at) break;
    char conversion = *at++;
    if (conversion == 's')
      words.push_back({conversion, va_arg(copy, const char*), 0});
    else if (std::strchr("aAeEfFgG", conversion))
      words.push_back({conversion, nullptr, static_cast<long long>(va_arg(copy, double))});
    else if (conversion == 'p' || is_size || longs)
      words.push_back({conversion, nullptr, va_arg(copy, long)});
    else
      words.push_back({conversion, nullptr, va_arg(copy, int)});
  }
  va_end(copy);
  return words;
}

// The arguments that tell two messages apart. This looks at the one character behind each percent sign: strings,
// characters and decimal numbers without flags count, and everything else, a doubled percent sign too, passes over one
// argument.
std::vector<std::string> TellingArguments(const char* format, va_list args) {
  std::vector<std::string> collected;
  const std::vector<ArgumentWord> words = ReadArguments(format, args);
  size_t next = 0;
  for (const char* at = format; *at && next < words.size(); at++) {
    if (*at != '%' || !*++at) continue;
    const ArgumentWord& word = words[next++];
    if (*at == 's' && word.conversion == 's') collected.emplace_back(OrEmpty(word.string));
    if (*at == 'c' && word.conversion == 'c') collected.emplace_back(1, static_cast<char>(word.number));
    if (*at == 'd' && word.conversion == 'd') collected.push_back(std::to_string(word.number));
  }
  return collected;
}

// What was shown: id (by its address), severity and place, and the arguments. In this order, messages whose arguments
// begin with those of another stand right behind it.
struct ShownMessage {
  const char* id;
  msg_type_t type;
  linefile_type linefile;
  std::vector<std::string> arguments;

  auto Place() const { return std::tuple(reinterpret_cast<uintptr_t>(id), type, linefile); }
  bool operator<(const ShownMessage& other) const {
    return std::tuple_cat(Place(), std::tie(arguments)) < std::tuple_cat(other.Place(), std::tie(other.arguments));
  }
  /// Every argument of this message is one of the other's, at the same position.
  bool IsRepetitionOf(const ShownMessage& other) const {
    return Place() == other.Place() && arguments.size() <= other.arguments.size() &&
           std::equal(arguments.begin(), arguments.end(), other.arguments.begin());
  }
};

std::set<ShownMessage>* outputted_messages = nullptr;

} // namespace

void Message::Msg(msg_type_t type, const char* id, linefile_type linefile, const char* format, ...) {
  va_list args;
  va_start(args, format);
  MsgVaList(type, id, linefile, format, args);
  va_end(args);
}

void Message::MsgVaList(msg_type_t type, const char* id, linefile_type linefile, const char* format, va_list args) {
  if (!format) return;
  if (const MapItem* forced = id && _forced_message_types ? _forced_message_types->GetItem(id) : nullptr)
    type = FromWord<msg_type_t>(forced->Value());
  if (type == MSG_IGNORE) return;
  if (IsRepeated(type, id, linefile, format, args)) return;
  if (type == MSG_ERROR && ++_error_count == _max_error_count) {
    Msg(MSG_COMMENT, nullptr, 0, "Sorry, too many errors..");
    _error_count++;
  }
  if (_error_count > _max_error_count) return;

  std::string line;
  if (const char* file = LineFile::GetFileName(linefile))
    line.append(file).append("(").append(std::to_string(LineFile::GetLineNo(linefile))).append("): ");
  if (const char* prefix = PrefixOf(type)) line.append(prefix).append(" ");
  line += FormatText(format, args);

  if (_console_output) WriteLine(type == MSG_ERROR ? stderr : stdout, line, id);
  if (logfile) WriteLine(logfile, line, id);
  if (_msg_callback_func && (!_critical_msgs_only || IsCritical(id, type))) {
    va_list copy;
    va_copy(copy, args);
    _msg_callback_func(type, id, linefile, format, copy);
    va_end(copy);
  }
  message_text_callback text_callback = type == MSG_ERROR     ? _error_func
                                        : type == MSG_WARNING ? _warning_func
                                        : type == MSG_INFO    ? _info_func
                                                              : nullptr;
  // The plain callbacks never see the id.
  if (text_callback) text_callback(line.append("\n").c_str());
}

// Remembers a message that is not a repetition.
bool Message::IsRepeated(msg_type_t type, const char* id, linefile_type linefile, const char* format, va_list args) {
  bool is_tested = type == MSG_ERROR || type == MSG_WARNING || type == MSG_INFO;
  if (!is_tested || !linefile || MayRepeat(id) || std::strcmp(format, pieces_format) == 0) return false;
  if (!outputted_messages) outputted_messages = new std::set<ShownMessage>;
  ShownMessage message{id, type, linefile, TellingArguments(format, args)};
  auto shown = outputted_messages->lower_bound(message);
  if (shown != outputted_messages->end() && message.IsRepetitionOf(*shown)) return true;
  outputted_messages->insert(shown, std::move(message));
  return false;
}

void Message::WriteLine(FILE* stream, const std::string& line, const char* id) {
  std::fputs(line.c_str(), stream);
  if (_print_ids && id) std::fprintf(stream, " (%s)", id);
  std::fputc('\n', stream);
  std::fflush(stream);
}

void Message::Error(linefile_type linefile, const char* a, const char* b, const char* c, const char* d, const char* e) {
  Msg(MSG_ERROR, nullptr, linefile, pieces_format, OrEmpty(a), OrEmpty(b), OrEmpty(c), OrEmpty(d), OrEmpty(e));
}

void Message::Warning(linefile_type linefile, const char* a, const char* b, const char* c, const char* d,
                      const char* e) {
  Msg(MSG_WARNING, nullptr, linefile, pieces_format, OrEmpty(a), OrEmpty(b), OrEmpty(c), OrEmpty(d), OrEmpty(e));
}

void Message::Info(linefile_type linefile, const char* a, const char* b, const char* c, const char* d, const char* e) {
  Msg(MSG_INFO, nullptr, linefile, pieces_format, OrEmpty(a), OrEmpty(b), OrEmpty(c), OrEmpty(d), OrEmpty(e));
}

void Message::PrintLine(const char* a, const char* b, const char* c, const char* d, const char* e) {
  Msg(MSG_COMMENT, nullptr, 0, pieces_format, OrEmpty(a), OrEmpty(b), OrEmpty(c), OrEmpty(d), OrEmpty(e));
}

unsigned Message::SetMessageType(const char* id, msg_type_t type) {
  if (!id) return 0;
  ClearMessageType(id);
  if (!_forced_message_types) _forced_message_types = new Map(HASH_STRING, table_size);
  return _forced_message_types->Insert(Strings::save(id), ToWord(type));
}

unsigned Message::ClearMessageType(const char* id) {
  MapItem* item = id && _forced_message_types ? _forced_message_types->GetItem(id) : nullptr;
  if (!item) return 0;
  OwnedString key(FromWord<char*>(item->Key()));
  return _forced_message_types->Remove(item);
}

void Message::ClearAllMessageTypes() {
  for (auto [id, type] : Entries<char*, msg_type_t>(_forced_message_types)) Strings::free_string(id);
  delete _forced_message_types;
  _forced_message_types = nullptr;
}

void Message::MakeCritical(const char* id) {
  if (!id) return;
  if (!_critical_messages) _critical_messages = new Set(HASH_STRING, 2);
  if (!_critical_messages->Contains(id)) _critical_messages->Insert(Strings::save(id));
}

unsigned Message::IsCritical(const char* id, msg_type_t type) {
  if (type == MSG_ERROR || type == MSG_PROGRAM_ERROR) return 1;
  return id && _critical_messages && _critical_messages->Contains(id);
}

unsigned Message::OpenLogFile(const char* path) {
  if (!path) return 0;
  CloseLogFile();
  logfile = std::fopen(path, "w");
  if (!logfile) {
    Warning(0, "cannot open log file ", path);
    return 0;
  }
  PrintLine("all messages logged in file ", path);
  return 1;
}

void Message::CloseLogFile() {
  if (logfile) std::fclose(logfile);
  logfile = nullptr;
}

void Message::ClearErrorCount() {
  _error_count = 0;
  delete outputted_messages;
  outputted_messages = nullptr;
}

void Message::FreeStaticMemory() {
  for (char* id : KeysOf<char*>(_critical_messages)) Strings::free_string(id);
  delete _critical_messages;
  _critical_messages = nullptr;
  ClearErrorCount();
  ClearAllMessageTypes();
  _critical_msgs_only = 0;
  _max_error_count = default_max_error_count;
  _console_output = 1;
  _print_ids = 0;
}
