// Presents messages as text.
#include "text_diagnostics.h"

#include <fmt/format.h>

namespace {

constexpr const char* styles[] = {"\033[1;31m", "\033[1;36m", "\033[1;35m"}; // by MSG_KIND_ENUM
constexpr const char* STYLE_OFF = "\033[0m";
constexpr const char* STYLE_DIM = "\033[2m";

std::string plural(unsigned count, const char* word) {
  return fmt::format("{} {}{}", count, word, count == 1 ? "" : "s");
}

/// Names of a source may hold characters that a terminal obeys.
std::string printable(std::string text) {
  for (char& c : text)
    if ((static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t') || c == '\x7f') c = '?';
  return text;
}

} // namespace

std::string TEXT_DIAGNOSTICS::styled(const char* style, const std::string& text) const {
  return m_color == COLOR_ON ? style + text + STYLE_OFF : text;
}

void TEXT_DIAGNOSTICS::on_message(const MSG_BASE& message) {
  if (!is_shown(message, m_detail)) return;
  const char* indent = is_note(message) ? "  " : "";
  const char* word = is_note(message) ? "note" : severity_word(message.get_kind());
  std::string head = styled(styles[message.get_kind()], fmt::format("{} {}", word, message.get_id()));
  std::string text = fmt::format("{}{}: {}\n", indent, head, printable(message.get_text()));
  std::string source;
  if (message.has_location() && m_lines.get(message.get_file(), message.get_line(), source))
    text += fmt::format("{}{} {}\n", indent, styled(STYLE_DIM, fmt::format("{:>6} |", message.get_line())), source);
  std::fwrite(text.data(), 1, text.size(), m_stream);
}

void TEXT_DIAGNOSTICS::on_internal_error(const std::string& text, const std::string& area, const std::string& file,
                                         int line) {
  std::string all = fmt::format("{}: {} ({})\n", styled(styles[MSG_KIND_ERROR], "internal error"), text,
                                internal_error_place(area, file, line));
  std::fwrite(all.data(), 1, all.size(), m_stream);
  std::fflush(m_stream);
}

void TEXT_DIAGNOSTICS::on_debug(const std::string& tag, const std::string& text) {
  std::string all = fmt::format("{} {}\n", styled(STYLE_DIM, tag + ":"), text);
  std::fwrite(all.data(), 1, all.size(), m_stream);
}

void TEXT_DIAGNOSTICS::finish(int status) {
  MSG_REPORT* report = msg_get_default_report();
  std::string text = fmt::format("{}, {}", plural(report->get_message_count(MSG_KIND_ERROR), "error"),
                                 plural(report->get_message_count(MSG_KIND_WARNING), "warning"));
  if (MSG_INTERNAL_ERROR::get_count()) text += ", " + plural(MSG_INTERNAL_ERROR::get_count(), "internal error");
  bool warnings_failed = status == 1 && report->get_message_count(MSG_KIND_ERROR) == 0;
  fmt::print(m_stream, "{}{}\n", text, warnings_failed ? " that count as errors" : "");
  std::fflush(m_stream);
}
