// The command line of zelk-host: what it asks for, and the project that its sources and settings make up.
#ifndef HOST_COMMAND_LINE_H
#define HOST_COMMAND_LINE_H

#include <string>
#include <vector>

#include "flow/run.h"
#include "hdb_action_pt.h"

struct COMMAND_LINE {
  RUN_OPTIONS run;
  std::vector<std::string> outputs;
  bool stats = false;
  bool time = false;
  bool flatten = false;
  bool quiet = false;
  bool werror = false;
  bool progress = false;
  std::string color = "auto";
  std::string diagnostics = "text";
};

enum class PARSE_RESULT { RUN, DONE, WRONG_USAGE };

/// Reads the arguments into the command line and the project. DONE after --help or --version; on wrong usage the
/// problem was printed to the standard error stream.
PARSE_RESULT parse_command_line(int argc, char** argv, COMMAND_LINE& command, HDB_ACTION_PT_INSTANCE& project);

#endif
