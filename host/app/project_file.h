// The project file: sources, libraries, top unit, parameters and settings of a design in TOML.
#ifndef HOST_PROJECT_FILE_H
#define HOST_PROJECT_FILE_H

#include <string>

#include "project_builder.h"

/// Reads a project file. Its paths are relative to it. A top unit that the command already names stays. Throws
/// USAGE_ERROR, with the line, for a file that cannot be read, is no TOML, or has an entry that is unknown or of a
/// wrong kind.
void read_project_file(const std::string& path, PROJECT_BUILDER& builder, COMMAND_LINE& command);

#endif
