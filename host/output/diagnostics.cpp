// What all presentations of messages agree on.
#include "diagnostics.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

constexpr const char* severity_words[] = {"error", "info", "warning"}; // by MSG_KIND_ENUM

struct KERNEL_ID {
  unsigned number;
  const char* id;
};

constexpr KERNEL_ID kernel_ids[] = {
#define KERNEL_ID(number, id) {number, id},
#include "kernel_ids.def"
#undef KERNEL_ID
};

} // namespace

const char* severity_word(int kind) { return severity_words[kind]; }

bool is_note(const MSG_BASE& message) {
  if (message.get_kind() != MSG_KIND_INFO) return false;
  for (std::string_view part : {"SEE_DECLARATION", "DECLARED_HERE"})
    if (message.get_name().find(part) != std::string::npos) return true;
  return false;
}

std::string internal_error_place(const std::string& area, const std::string& file, int line) {
  return file.empty() ? area : area + ", " + file + ":" + std::to_string(line);
}

bool is_shown(const MSG_BASE& message, DIAGNOSTICS_DETAIL detail) {
  return detail == DETAIL_ALL || message.get_kind() != MSG_KIND_INFO || is_note(message);
}

std::string kernel_id_of(unsigned number) {
  const auto* found = std::lower_bound(std::begin(kernel_ids), std::end(kernel_ids), number,
                                       [](const KERNEL_ID& row, unsigned wanted) { return row.number < wanted; });
  return found != std::end(kernel_ids) && found->number == number ? found->id : "";
}
