// Takes what the command line and the project file ask for, one by one and in their order, into the design database and
// the options of the run.
#ifndef HOST_PROJECT_BUILDER_H
#define HOST_PROJECT_BUILDER_H

#include <string>
#include <vector>

#include "command_line.h"
#include "hdb_action_pt.h"

class PROJECT_BUILDER {
public:
  /// Neither is owned.
  PROJECT_BUILDER(COMMAND_LINE& command, HDB_ACTION_PT_INSTANCE& project) : m_command(command), m_project(project) {}

  /// A source with the present library and dialect. All operations throw USAGE_ERROR for what they cannot take.
  void add_file(const std::string& name);
  /// The destination library of the files that follow; empty is the default one.
  void set_library(const std::string& name) { m_library = name; }
  /// The dialect, by its name for users, of the files of its language that follow.
  void set_standard(const std::string& name);
  /// NAME or NAME=TEXT.
  void add_macro(const std::string& text);
  void add_include_dir(const std::string& directory);
  void add_library_dir(const std::string& directory);
  /// NAME=VALUE of a configuration variable, of a setting of the project, of a parameter of the top unit. A further
  /// value of a parameter, or of a setting that has one value, replaces the former.
  void set_variable(const std::string& text);
  void set_option(const std::string& text);
  void add_parameter(const std::string& text);
  void set_message_level(const std::string& level);
  void enable_message(const std::string& number);
  void disable_message(const std::string& number);
  void add_output(const std::string& path);

  /// The present library and dialects, to be put back after a group of files.
  struct FILE_STATE {
    std::string library;
    std::string verilog_standard;
    std::string vhdl_standard;
  };
  FILE_STATE get_file_state() const { return {m_library, m_verilog_standard, m_vhdl_standard}; }
  void set_file_state(const FILE_STATE& state);

private:
  void add_message(int variable, const std::string& number);

  COMMAND_LINE& m_command;
  HDB_ACTION_PT_INSTANCE& m_project;
  std::string m_library;
  std::string m_verilog_standard;
  std::string m_vhdl_standard;
};

#endif
