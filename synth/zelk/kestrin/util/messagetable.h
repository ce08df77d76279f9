// The kernel's table of messages: which id a printf format has. The rows come from the message catalogue.
#ifndef KESTRIN_UTIL_MESSAGETABLE_H
#define KESTRIN_UTIL_MESSAGETABLE_H

class Map;

/// Whose messages: a format may have one id in each.
enum message_language { MESSAGE_DATABASE, MESSAGE_VERILOG, MESSAGE_VHDL };

struct message_row {
  message_language language;
  const char* format;
  const char* id;
};

extern const message_row kestrin_message_rows[];
extern const unsigned kestrin_num_of_message_rows;

/// The id of a format, null when the catalogue has none. `map` holds the formats of the language: it is made when it is
/// null, and the caller deletes it. An id has one address, whatever the format.
const char* kestrin_message_id(Map*& map, message_language language, const char* format);

#endif
