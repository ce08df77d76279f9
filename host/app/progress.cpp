// Lines of progress for terminals.
#include "progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "gen.h"

namespace {

constexpr const char* ERASE_LINE = "\r\033[K";

size_t terminal_width(FILE* stream) {
  constexpr size_t USUAL = 80;
  winsize size{};
  bool is_known = ::ioctl(::fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return is_known ? size.ws_col : USUAL;
}

} // namespace

PROGRESS::PROGRESS(FILE* stream, FORM form, MSG_SINK& next)
    : m_stream(stream), m_form(form), m_next(next), m_is_terminal(::isatty(::fileno(stream)) != 0),
      m_start(gen_get_tick_count()) {}

void PROGRESS::show(const char* step, const std::string& object) {
  m_step = std::string(step) + " " + object;
  if (!m_is_terminal) return;
  clear();
  char time[32];
  std::snprintf(time, sizeof time, "[%6.1f s] ", (gen_get_tick_count() - m_start) / 1000);
  std::string line = time + m_step;
  if (m_form == FORM_LINES) {
    line += '\n';
  } else {
    // A longer line would wrap, and only its last part could be erased.
    size_t width = terminal_width(m_stream) - 1;
    if (line.size() > width) line.resize(width);
    m_is_shown = true;
  }
  std::fwrite(line.data(), 1, line.size(), m_stream);
  std::fflush(m_stream);
}

void PROGRESS::clear() {
  if (!m_is_shown) return;
  std::fputs(ERASE_LINE, m_stream);
  std::fflush(m_stream);
  m_is_shown = false;
}

void PROGRESS::on_message(const MSG_BASE& message) {
  clear();
  m_next.on_message(message);
}

void PROGRESS::on_internal_error(const std::string& text, const std::string& area, const std::string& file, int line) {
  clear();
  m_next.on_internal_error(text, area, file, line);
}

void PROGRESS::on_debug(const std::string& tag, const std::string& text) {
  clear();
  m_next.on_debug(tag, text);
}

void PROGRESS::finish(int status) {
  clear();
  m_next.finish(status);
}
