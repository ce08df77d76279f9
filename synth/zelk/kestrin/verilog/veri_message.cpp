// Messages that are raised at a location.
#include "verilog/veri_message.h"

#include <cstdarg>

#include "containers/map.h"
#include "util/message.h"
#include "util/messagetable.h"

namespace {
Map* formats = nullptr;
} // namespace

const char* veri_message_id(const char* format) { return kestrin_message_id(formats, MESSAGE_VERILOG, format); }

void veri_free_message_table() {
  delete formats;
  formats = nullptr;
}

void veri_error(linefile_type linefile, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Message::MsgVaList(MSG_ERROR, veri_message_id(format), linefile, format, args);
  va_end(args);
}

void veri_warning(linefile_type linefile, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Message::MsgVaList(MSG_WARNING, veri_message_id(format), linefile, format, args);
  va_end(args);
}

void veri_info(linefile_type linefile, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Message::MsgVaList(MSG_INFO, veri_message_id(format), linefile, format, args);
  va_end(args);
}
