// Messages that are raised at a location.
#include "verilog/veri_message.h"

#include <cstdarg>

#include "util/message.h"
#include "verilog/verinode.h"

void veri_error(linefile_type linefile, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Message::MsgVaList(MSG_ERROR, VeriNode::GetMessageId(format), linefile, format, args);
  va_end(args);
}

void veri_warning(linefile_type linefile, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Message::MsgVaList(MSG_WARNING, VeriNode::GetMessageId(format), linefile, format, args);
  va_end(args);
}
