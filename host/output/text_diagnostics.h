// Messages for people: severity, number, the host's text, and under it the source line with its number. Notes that
// belong to a message are indented. Internal errors tell where they arose.
#ifndef HOST_TEXT_DIAGNOSTICS_H
#define HOST_TEXT_DIAGNOSTICS_H

#include <cstdio>
#include <string>

#include "diagnostics.h"
#include "platform/source_lines.h"

class TEXT_DIAGNOSTICS : public MSG_SINK {
public:
  enum COLOR { COLOR_OFF, COLOR_ON };
  TEXT_DIAGNOSTICS(FILE* stream, COLOR color, DIAGNOSTICS_DETAIL detail)
      : m_stream(stream), m_color(color), m_detail(detail) {}

  void on_message(const MSG_BASE& message) override;
  void on_internal_error(const std::string& text, const std::string& area, const std::string& file, int line) override;
  void on_debug(const std::string& tag, const std::string& text) override;
  /// Prints the last line of a run: the counts.
  void finish(int status) override;

private:
  std::string styled(const char* style, const std::string& text) const;

  FILE* m_stream;
  SOURCE_LINES m_lines;
  COLOR m_color;
  DIAGNOSTICS_DETAIL m_detail;
};

#endif
