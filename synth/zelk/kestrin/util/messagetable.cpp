#include "util/messagetable.h"

#include <span>

#include "containers/views.h"

const char* kestrin_message_id(Map*& map, message_language language, const char* format) {
  if (!format) return nullptr;
  if (!map) {
    map = new Map(HASH_STRING, 23);
    for (const message_row& row : std::span(kestrin_message_rows, kestrin_num_of_message_rows))
      if (row.language == language) map->Insert(row.format, row.id);
  }
  return FromWord<const char*>(map->GetValue(format));
}
