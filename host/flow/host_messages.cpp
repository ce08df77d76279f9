// Builds and reports the host's own messages from their table.
#include "host_messages.h"

#include <memory>

#include "msg.h"

namespace {

struct ROW {
  unsigned number;
  char severity;
  const char* text;
};

constexpr ROW rows[] = {
#define HOST_MESSAGE(severity, number, name, text) {number, #severity[0], text "/" #severity "HOST_" #name},
#include "host_messages.def"
#undef HOST_MESSAGE
};

std::unique_ptr<MSG_BASE> make_message(char severity) {
  if (severity == 'E') return std::make_unique<MSG_E>();
  if (severity == 'W') return std::make_unique<MSG_W>();
  return std::make_unique<MSG_I>();
}

const unsigned ids_of_rows[] = {
#define HOST_MESSAGE(severity, number, name, text) number,
#include "host_messages.def"
#undef HOST_MESSAGE
};

constexpr int kind_of(char severity) {
  return severity == 'E' ? MSG_KIND_ERROR : severity == 'W' ? MSG_KIND_WARNING : MSG_KIND_INFO;
}

const int kinds_of_rows[] = {
#define HOST_MESSAGE(severity, number, name, text) kind_of(#severity[0]),
#include "host_messages.def"
#undef HOST_MESSAGE
};

const MSG_ID_REGISTRAR registrar(ids_of_rows, kinds_of_rows, std::size(rows));

} // namespace

void report_host_message(HOST_MESSAGE_ENUM message, const std::vector<std::string>& arguments, const std::string& file,
                         int line) {
  constexpr size_t MAX_ARGUMENTS = 4;
  const char* texts[MAX_ARGUMENTS] = {"", "", "", ""};
  for (size_t i = 0; i < arguments.size() && i < MAX_ARGUMENTS; i++) texts[i] = arguments[i].c_str();
  for (const ROW& row : rows) {
    if (row.number != static_cast<unsigned>(message)) continue;
    std::unique_ptr<MSG_BASE> object = make_message(row.severity);
    object->fill_args(row.text, texts[0], texts[1], texts[2], texts[3]);
    object->set_id(row.number);
    MSG_TEXT_LOCATION_SCHEMA schema(file.c_str(), line, 0);
    if (!file.empty()) object->set_location(file.c_str(), &schema, "", "");
    object->report(0);
  }
}
