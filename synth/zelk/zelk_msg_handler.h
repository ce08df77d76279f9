// The bridge from the kernel's messages to the host's: the callback that the kernel calls with every message, and the
// tables of host numbers by kernel id. Tables and builders are made from the message catalogue.
#ifndef ZELK_MSG_HANDLER_H
#define ZELK_MSG_HANDLER_H

#include <cstdarg>
#include <string>

#include "util/message.h"

class BASEX_ELABORATE_INFO;
class GEN_STRING_HASH;
class MSG_BASE;
class MSG_TEXT_LOCATION_SCHEMA;
class ZELK_KERNEL_ARGUMENTS;

/// Marks in the tables of host numbers, for kernel messages that become no host message.
enum ZELK_MSG_MARK_ENUM {
  ZELK_MSG_DEBUG = -1,    // debug output
  ZELK_MSG_DEBUG_AT = -2, // debug output with the location
  ZELK_MSG_DROPPED = -3
};

/// The elaboration that runs: its queue takes the messages. Null outside of elaborations, when messages are reported
/// at once.
extern BASEX_ELABORATE_INFO* zelk_current_elab_info;

/// Fills the tables and forgets the elaboration. Messages before it are generic ones.
void zelk_init_message_handler();
/// Turns a kernel message into a host message and delivers it. An id without a number becomes a generic message.
void zelk_message_handler(msg_type_t type, const char* id, unsigned long linefile, const char* format, va_list args);

/// "file(line)" with the file's name without its path; empty for a location without file.
std::string zelk_build_location_string(unsigned long linefile);
/// The place as the host holds it, owned by the caller.
MSG_TEXT_LOCATION_SCHEMA* zelk_build_text_location_schema(unsigned long linefile);

// Derived from the catalogue.
void zelk_init_error_msg_id_hash(GEN_STRING_HASH& hash);
void zelk_init_warning_msg_id_hash(GEN_STRING_HASH& hash);
void zelk_init_info_msg_id_hash(GEN_STRING_HASH& hash);
/// The host message of a number, owned by the caller; null for a number that no kernel message has.
MSG_BASE* zelk_make_kernel_message(int number, ZELK_KERNEL_ARGUMENTS& arguments, const char* location);

#endif
