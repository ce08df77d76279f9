// Messages, the default report, the registrar of numbers, internal errors and debug output. Nothing is printed here:
// the report's sink presents.
#include "msg.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <unordered_map>

#include "cfg.h"
#include "fio.h"

namespace {

constexpr unsigned MAX_ARGUMENTS = 9;

/// An argument mark %N!x! at a position of a text; length 0 when there is none.
struct PLACEHOLDER {
  unsigned number = 0;
  char type = 0;
  static constexpr size_t LENGTH = 5;
};

bool read_placeholder(std::string_view text, size_t at, PLACEHOLDER& found) {
  if (text.size() - at < PLACEHOLDER::LENGTH || text[at] != '%' || text[at + 2] != '!' || text[at + 4] != '!')
    return false;
  if (text[at + 1] < '1' || text[at + 1] > '9') return false;
  found = {static_cast<unsigned>(text[at + 1] - '0'), text[at + 3]};
  return true;
}

/// The kinds of the arguments, by number; 0 for numbers that the text does not use.
std::array<char, MAX_ARGUMENTS + 1> argument_types(std::string_view text) {
  std::array<char, MAX_ARGUMENTS + 1> types{};
  PLACEHOLDER found;
  for (size_t at = 0; at < text.size(); at++)
    if (read_placeholder(text, at, found)) types[found.number] = found.type;
  return types;
}

std::string substitute(std::string_view text, const std::array<std::string, MAX_ARGUMENTS + 1>& values) {
  std::string result;
  PLACEHOLDER found;
  for (size_t at = 0; at < text.size(); at++) {
    if (read_placeholder(text, at, found)) {
      result += values[found.number];
      at += PLACEHOLDER::LENGTH - 1;
    } else {
      result += text[at];
    }
  }
  return result;
}

/// Where the "/" before the message's name stands: the last one whose rest has the form of a name.
size_t name_separator(std::string_view text) {
  size_t at = text.rfind('/');
  if (at == std::string_view::npos || at + 1 == text.size()) return std::string_view::npos;
  bool is_name = std::all_of(text.begin() + static_cast<long>(at) + 1, text.end(),
                             [](char c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_'; });
  return is_name ? at : std::string_view::npos;
}

} // namespace

void MSG_BASE::fill_args(const char* text, ...) {
  std::string_view all(text);
  size_t separator = name_separator(all);
  m_name = separator == std::string_view::npos ? "" : std::string(all.substr(separator + 1));
  all = all.substr(0, separator);

  std::array<char, MAX_ARGUMENTS + 1> types = argument_types(all);
  std::array<std::string, MAX_ARGUMENTS + 1> values;
  va_list args;
  va_start(args, text);
  for (unsigned number = 1; number <= MAX_ARGUMENTS; number++) {
    if (types[number] == 's') {
      const char* value = va_arg(args, const char*);
      values[number] = value ? value : "";
    } else if (types[number] == 'd') {
      values[number] = std::to_string(va_arg(args, int));
    } else if (types[number] == 'c') {
      values[number] = std::string(1, static_cast<char>(va_arg(args, int)));
    } else {
      break; // numbers are given without gaps
    }
  }
  va_end(args);
  m_text = substitute(all, values);
}

void MSG_BASE::set_location(const char* file, const MSG_TEXT_LOCATION_SCHEMA* schema, const char*, const char*) {
  m_has_location = true;
  m_file = schema && !schema->get_file().empty() ? schema->get_file() : file ? file : "";
  m_line = schema ? schema->get_line() : 0;
}

void MSG_BASE::report(int) { msg_get_default_report()->add(*this); }

void MSG_REPORT::add(const MSG_BASE& message) {
  if (message.get_kind() != MSG_KIND_ERROR && !is_enabled(message.get_id())) return;
  m_counts[message.get_kind()]++;
  if (m_sink) m_sink->on_message(message);
}

void MSG_REPORT::enable_message(unsigned id) {
  auto at = std::lower_bound(m_disabled.begin(), m_disabled.end(), id);
  if (at != m_disabled.end() && *at == id) m_disabled.erase(at);
}

void MSG_REPORT::disable_message(unsigned id) {
  auto at = std::lower_bound(m_disabled.begin(), m_disabled.end(), id);
  if (at == m_disabled.end() || *at != id) m_disabled.insert(at, id);
}

bool MSG_REPORT::is_enabled(unsigned id) const { return !std::binary_search(m_disabled.begin(), m_disabled.end(), id); }

MSG_SINK* MSG_REPORT::set_sink(MSG_SINK* sink) {
  MSG_SINK* former = m_sink;
  m_sink = sink;
  return former;
}

void MSG_REPORT::reset() {
  std::fill(std::begin(m_counts), std::end(m_counts), 0U);
  m_disabled.clear();
}

MSG_REPORT* msg_get_default_report() {
  static MSG_REPORT report;
  return &report;
}

namespace {

struct REGISTERED_IDS {
  const unsigned* ids;
  const int* types;
  unsigned count;
};

std::vector<REGISTERED_IDS>& registered() {
  static std::vector<REGISTERED_IDS> tables;
  return tables;
}

} // namespace

MSG_ID_REGISTRAR::MSG_ID_REGISTRAR(const unsigned* ids, const int* types, unsigned count) : m_ids(ids) {
  registered().push_back({ids, types, count});
}

MSG_ID_REGISTRAR::~MSG_ID_REGISTRAR() {
  std::erase_if(registered(), [this](const REGISTERED_IDS& table) { return table.ids == m_ids; });
}

bool MSG_ID_REGISTRAR::is_known(unsigned id) { return get_kind(id) >= 0; }

int MSG_ID_REGISTRAR::get_kind(unsigned id) {
  for (const REGISTERED_IDS& table : registered())
    for (unsigned i = 0; i < table.count; i++)
      if (table.ids[i] == id) return table.types[i];
  return -1;
}

namespace {
unsigned internal_error_count = 0;
}

void MSG_INTERNAL_ERROR::report(const char* text, const char* area, const char* file, int line) {
  internal_error_count++;
  if (MSG_SINK* sink = msg_get_default_report()->get_sink())
    sink->on_internal_error(text ? text : "", area ? area : "", file ? file : "", line);
}

void MSG_INTERNAL_ERROR::report_and_exit(const char* text, const char* area, const char* file, int line) {
  constexpr int STATUS = 3;
  report(text, area, file, line);
  if (MSG_SINK* sink = msg_get_default_report()->get_sink()) sink->finish(STATUS);
  FIO_OUTPUT_FILE::remove_all();
  std::fflush(nullptr);
  // No statics are taken down: the state that they would walk is the one found broken.
  std::_Exit(STATUS);
}

unsigned MSG_INTERNAL_ERROR::get_count() { return internal_error_count; }
void MSG_INTERNAL_ERROR::reset_count() { internal_error_count = 0; }

bool MSG_LOCAL_DEBUG::is_on() { return cfg_is_on("msg_debug", false); }

void MSG_LOCAL_DEBUG::print(const char* tag, const char* text) {
  MSG_SINK* sink = msg_get_default_report()->get_sink();
  if (sink && is_on()) sink->on_debug(tag, text);
}
