// zelk-host: a small design tool around the front end. Sources in, netlists and messages out.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <new>

#include "command_line.h"
#include "crash_guard.h"
#include "fio.h"
#include "flow/run.h"
#include "heap_settings.h"
#include "output/flat_design.h"
#include "output/text_diagnostics.h"
#include "output/writer.h"
#include "progress.h"

namespace {

enum EXIT_STATUS { EXIT_DONE = 0, EXIT_DESIGN_ERRORS = 1, EXIT_WRONG_USAGE = 2, EXIT_INTERNAL_ERROR = 3 };

TEXT_DIAGNOSTICS::COLOR color_of(const COMMAND_LINE& command) {
  const char* refusal = std::getenv("NO_COLOR");
  bool is_wanted = ::isatty(STDERR_FILENO) && (!refusal || !*refusal);
  bool is_on = command.color == "always" || (command.color == "auto" && is_wanted);
  return is_on ? TEXT_DIAGNOSTICS::COLOR_ON : TEXT_DIAGNOSTICS::COLOR_OFF;
}

bool warnings_count(const COMMAND_LINE& command) {
  return command.werror && msg_get_default_report()->get_message_count(MSG_KIND_WARNING) != 0;
}

/// Reports come last, so that they can tell the time of the others.
void write_outputs(const COMMAND_LINE& command, const DESIGN_VIEW& view, std::vector<STAGE_TIME>& times) {
  OUTPUT_FILES files;
  for (const std::string& path : command.outputs) {
    if (is_report(path)) continue;
    STAGE stage(times, "write " + path);
    if (!files.write(path, view, {})) return;
  }
  const std::vector<STAGE_TIME> shown = command.time ? times : std::vector<STAGE_TIME>();
  for (const std::string& path : command.outputs)
    if (is_report(path) && !files.write(path, view, shown)) return;
  if (!files.commit()) return;
  if (command.stats) std::cout << write_report(view, shown);
}

void write_design(const COMMAND_LINE& command, RUN& run) {
  if (command.outputs.empty() && !command.stats) return;
  std::vector<STAGE_TIME>& times = run.get_stage_times();
  DESIGN_VIEW hierarchy(run.get_design());
  if (!command.flatten) return write_outputs(command, hierarchy, times);
  DESIGN flat;
  {
    STAGE stage(times, "flatten");
    flat = flatten_design(hierarchy);
  }
  if (flat.get_top()) write_outputs(command, DESIGN_VIEW(flat), times);
}

EXIT_STATUS run_design(const COMMAND_LINE& command, HDB_ACTION_PT_INSTANCE& project, ANALYZER_LIBRARY& library,
                       PROGRESS& progress) {
  RUN run(project, library, command.run);
  run.set_progress([&progress](const char* step, const std::string& object) { progress.show(step, object); });
  bool is_good = run.execute();
  if (is_good && !warnings_count(command) && !command.run.is_lint) write_design(command, run);
  progress.clear();
  // The report of the standard output tells the times already.
  if (command.time && !command.stats) std::cout << write_times(run.get_stage_times());
  if (MSG_INTERNAL_ERROR::get_count()) return EXIT_INTERNAL_ERROR;
  return is_good && !has_errors() && !warnings_count(command) ? EXIT_DONE : EXIT_DESIGN_ERRORS;
}

std::unique_ptr<MSG_SINK> make_diagnostics(const COMMAND_LINE& command) {
  DIAGNOSTICS_DETAIL detail = command.quiet ? DETAIL_QUIET : DETAIL_ALL;
  if (command.diagnostics == "json") return make_json_diagnostics(stderr, detail);
  if (command.diagnostics == "sarif") return make_sarif_diagnostics(stderr, detail);
  return std::make_unique<TEXT_DIAGNOSTICS>(stderr, color_of(command), detail);
}

/// Where messages go while a run lasts.
PROGRESS* current_progress = nullptr;

/// A fault loses none of the messages that were gathered.
void tell_fault(const char* what) {
  std::string text = what;
  if (!current_progress->get_step().empty()) text += " (" + current_progress->get_step() + ")";
  MSG_INTERNAL_ERROR::report(text.c_str(), "HOST", "", 0);
  current_progress->finish(EXIT_INTERNAL_ERROR);
  FIO_OUTPUT_FILE::remove_all();
}

/// The messages of a run have a sink while the object lives, and so has a fault.
class MESSAGE_SCOPE {
public:
  explicit MESSAGE_SCOPE(PROGRESS& progress) {
    current_progress = &progress;
    msg_get_default_report()->set_sink(&progress);
    set_last_words(tell_fault);
  }
  MESSAGE_SCOPE(const MESSAGE_SCOPE&) = delete;
  MESSAGE_SCOPE& operator=(const MESSAGE_SCOPE&) = delete;
  ~MESSAGE_SCOPE() {
    set_last_words(nullptr);
    msg_get_default_report()->set_sink(nullptr);
    current_progress = nullptr;
  }
};

EXIT_STATUS load_and_run(const COMMAND_LINE& command, HDB_ACTION_PT_INSTANCE& project, ANALYZER_LIBRARY& library,
                         PROGRESS& progress) {
  std::string problem;
  try {
    if (library.load(problem)) return run_design(command, project, library, progress);
  } catch (const std::bad_alloc&) {
    problem = "out of memory";
  } catch (const std::exception& thrown) {
    problem = thrown.what();
  }
  MSG_INTERNAL_ERROR::report(problem.c_str(), "HOST", __FILE__, __LINE__);
  FIO_OUTPUT_FILE::remove_all();
  return EXIT_INTERNAL_ERROR;
}

EXIT_STATUS run_program(int argc, char** argv) {
  COMMAND_LINE command;
  // The library outlives the project, whose design units hold its elaborators.
  ANALYZER_LIBRARY library;
  HDB_ACTION_PT_INSTANCE project;
  switch (parse_command_line(argc, argv, command, project)) {
  case PARSE_RESULT::DONE: return EXIT_DONE;
  case PARSE_RESULT::WRONG_USAGE: return EXIT_WRONG_USAGE;
  case PARSE_RESULT::RUN: break;
  }
  std::unique_ptr<MSG_SINK> diagnostics = make_diagnostics(command);
  PROGRESS progress(stderr, command.progress ? PROGRESS::FORM_LINES : PROGRESS::FORM_ONE_LINE, *diagnostics);
  MESSAGE_SCOPE scope(progress);
  EXIT_STATUS status = load_and_run(command, project, library, progress);
  progress.finish(status);
  return status;
}

} // namespace

int main(int argc, char** argv) {
  install_crash_guard();
  prefer_large_pages();
  try {
    return run_program(argc, argv);
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "internal error: %s (%s:%d)\n", problem.what(), __FILE__, __LINE__);
  }
  FIO_OUTPUT_FILE::remove_all();
  return EXIT_INTERNAL_ERROR;
}
