// Delivers the kernel's messages to the host: at once, or through the queue of the elaboration that runs.
#include "zelk_msg_handler.h"

#include <memory>

#include "basex.h"
#include "gen_string_hash.h"
#include "msg.h"
#include "stl_util.h"
#include "util/linefile.h"
#include "zelk_kernel_arguments.h"
#include "zelk_msgs.h"
#include "zelk_utility.h"

BASEX_ELABORATE_INFO* zelk_current_elab_info = nullptr;

namespace {

// Host numbers and marks by kernel id.
GEN_STRING_HASH zelk_error_msg_id_hash;
GEN_STRING_HASH zelk_warning_msg_id_hash;
GEN_STRING_HASH zelk_info_msg_id_hash;

using GENERIC_MESSAGE = MSG_BASE* (*)(const char* text);
using GENERIC_MESSAGE_WITH_LOC = MSG_BASE* (*)(const char* text, const char* location);

// What the severity of a message decides.
struct SEVERITY {
  const GEN_STRING_HASH& ids;
  GENERIC_MESSAGE generic;
  GENERIC_MESSAGE_WITH_LOC generic_with_loc;
};

const SEVERITY severity_of_errors = {zelk_error_msg_id_hash,
                                     [](const char* text) -> MSG_BASE* { return MSG_ZELK::E::GENERIC_ERROR(text); },
                                     [](const char* text, const char* location) -> MSG_BASE* {
                                       return MSG_ZELK::E::GENERIC_ERROR_WITH_LOC(text, location);
                                     }};
const SEVERITY severity_of_warnings = {zelk_warning_msg_id_hash,
                                       [](const char* text) -> MSG_BASE* { return MSG_ZELK::W::GENERIC_WARNING(text); },
                                       [](const char* text, const char* location) -> MSG_BASE* {
                                         return MSG_ZELK::W::GENERIC_WARNING_WITH_LOC(text, location);
                                       }};
const SEVERITY severity_of_infos = {zelk_info_msg_id_hash,
                                    [](const char* text) -> MSG_BASE* { return MSG_ZELK::I::GENERIC_INFO(text); },
                                    [](const char* text, const char* location) -> MSG_BASE* {
                                      return MSG_ZELK::I::GENERIC_INFO_WITH_LOC(text, location);
                                    }};

const SEVERITY* severity_of(msg_type_t type) {
  switch (type) {
  case MSG_ERROR:
  case MSG_PROGRAM_ERROR: return &severity_of_errors;
  case MSG_WARNING: return &severity_of_warnings;
  case MSG_INFO: return &severity_of_infos;
  case MSG_NONE:
  case MSG_IGNORE:
  case MSG_COMMENT: break;
  }
  return nullptr;
}

void deliver(std::unique_ptr<MSG_BASE> message, unsigned long linefile) {
  const char* file = LineFile::GetFileName(linefile);
  if (file && *file) {
    std::unique_ptr<MSG_TEXT_LOCATION_SCHEMA> schema(zelk_build_text_location_schema(linefile));
    message->set_location(file, schema.get(), "", "");
  }
  if (zelk_current_elab_info)
    zelk_current_elab_info->queue_message(message.release());
  else
    message->report(0);
}

void deliver_generic(const SEVERITY& severity, const std::string& text, const std::string& location,
                     unsigned long linefile) {
  MSG_BASE* message =
      location.empty() ? severity.generic(text.c_str()) : severity.generic_with_loc(text.c_str(), location.c_str());
  deliver(std::unique_ptr<MSG_BASE>(message), linefile);
}

} // namespace

void zelk_init_message_handler() {
  zelk_init_error_msg_id_hash(zelk_error_msg_id_hash);
  zelk_init_warning_msg_id_hash(zelk_warning_msg_id_hash);
  zelk_init_info_msg_id_hash(zelk_info_msg_id_hash);
  zelk_current_elab_info = nullptr;
}

std::string zelk_build_location_string(unsigned long linefile) {
  const char* file = LineFile::GetFileName(linefile);
  if (!file || !*file) return "";
  // The file may have been named on another host.
  std::string name = file;
  name.erase(0, name.find_last_of("/\\") + 1);
  return name + "(" + std::to_string(LineFile::GetLineNo(linefile)) + ")";
}

MSG_TEXT_LOCATION_SCHEMA* zelk_build_text_location_schema(unsigned long linefile) {
  return new MSG_TEXT_LOCATION_SCHEMA(LineFile::GetFileName(linefile), static_cast<int>(LineFile::GetLineNo(linefile)),
                                      0);
}

void zelk_message_handler(msg_type_t type, const char* id, unsigned long linefile, const char* format, va_list args) {
  // The arguments are read twice: for the text, and for the host's own message.
  ZELK_KERNEL_ARGUMENTS arguments(args);
  std::string text;
  stl_vsprintf(text, format, args);
  if (type == MSG_COMMENT) {
    zelk_msg_debug("%s", text.c_str());
    return;
  }
  const SEVERITY* severity = severity_of(type);
  if (!severity) {
    ZELK_INTERNAL_ERROR(("Bad Kestrin message type: " + std::to_string(type)).c_str());
    return;
  }

  const std::string location = zelk_build_location_string(linefile);
  int number = 0;
  if (!id || !severity->ids.find(id, number)) {
    deliver_generic(*severity, text, location, linefile);
    return;
  }
  if (number == ZELK_MSG_DROPPED) return;
  if (number == ZELK_MSG_DEBUG || number == ZELK_MSG_DEBUG_AT) {
    if (number == ZELK_MSG_DEBUG_AT) text += " at " + location;
    zelk_msg_debug("%s", text.c_str());
    return;
  }
  MSG_BASE* message = zelk_make_kernel_message(number, arguments, location.c_str());
  if (!message) {
    std::string error = "Bad Norvel ID " + std::to_string(number) + " for ZELK message ID " + id + " found.";
    ZELK_INTERNAL_ERROR(error.c_str());
    return;
  }
  deliver(std::unique_ptr<MSG_BASE>(message), linefile);
}
