// Shows on a terminal what the run is at; where the output goes elsewhere, nothing.
#ifndef HOST_PROGRESS_H
#define HOST_PROGRESS_H

#include <cstdio>
#include <string>

#include "msg.h"

/// Stands before the presentation of messages, so that these never run into the line of progress.
class PROGRESS : public MSG_SINK {
public:
  /// One line that each step overwrites and the end removes, or a line for each step that stays.
  enum FORM { FORM_ONE_LINE, FORM_LINES };
  /// Neither the stream nor the next sink is owned.
  PROGRESS(FILE* stream, FORM form, MSG_SINK& next);

  /// A new step: what is done and to what, a file or a unit.
  void show(const char* step, const std::string& object);
  /// Removes a line that is not to stay.
  void clear();
  /// The last step that was shown, as text; empty before the first.
  const std::string& get_step() const { return m_step; }

  void on_message(const MSG_BASE& message) override;
  void on_internal_error(const std::string& text, const std::string& area, const std::string& file, int line) override;
  void on_debug(const std::string& tag, const std::string& text) override;
  void finish(int status) override;

private:
  FILE* m_stream;
  FORM m_form;
  MSG_SINK& m_next;
  bool m_is_terminal;
  bool m_is_shown = false;
  std::string m_step;
  double m_start;
};

#endif
