// Options of zelk-host. Options that concern the files behind them take effect in the order of the command line.
#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <map>

#include "arguments.h"
#include "gen.h"
#include "project_builder.h"
#include "project_file.h"

namespace {

/// An option that can be given any number of times and acts in order.
struct ORDERED_OPTION {
  const char* names;
  const char* value;
  const char* help;
  void (PROJECT_BUILDER::*act)(const std::string&);
};

constexpr ORDERED_OPTION ordered_options[] = {
    {"files", "FILE", "Sources; .v .vh Verilog, .sv .svh SystemVerilog, .vhd .vhdl VHDL", &PROJECT_BUILDER::add_file},
    {"-D", "NAME[=TEXT]", "Define a macro (also +define+NAME=TEXT)", &PROJECT_BUILDER::add_macro},
    {"-I", "DIR", "Search includes there (also +incdir+DIR)", &PROJECT_BUILDER::add_include_dir},
    {"-y", "DIR", "Search undeclared units there, in files of their name", &PROJECT_BUILDER::add_library_dir},
    {"--lib", "NAME", "Destination library of the files that follow", &PROJECT_BUILDER::set_library},
    {"--std", "DIALECT", "Of the files that follow: vlog95 vlog2001 sv2005 vhdl87 vhdl93 vhdl2008",
     &PROJECT_BUILDER::set_standard},
    {"-G", "NAME=VALUE", "Parameter of the top unit", &PROJECT_BUILDER::add_parameter},
    {"--set", "VAR=VALUE", "Configuration variable", &PROJECT_BUILDER::set_variable},
    {"--option", "NAME=VALUE", "Project setting", &PROJECT_BUILDER::set_option},
    {"--message-level", "LEVEL", "Which warnings and infos are shown: low, medium or high",
     &PROJECT_BUILDER::set_message_level},
    {"--message-on", "NUMBER", "Show a message whatever the level", &PROJECT_BUILDER::enable_message},
    {"--message-off", "NUMBER", "Show a message never, unless it is an error", &PROJECT_BUILDER::disable_message},
    {"-o", "FILE", "Write .v (Verilog 2001), .json (netlist), .dot or .svg (schematic) or .txt (report)",
     &PROJECT_BUILDER::add_output},
};

class PARSER {
public:
  PARSER(COMMAND_LINE& command, HDB_ACTION_PT_INSTANCE& project);
  PARSE_RESULT parse(int argc, char** argv);

private:
  bool takes_value(const std::string& option) const;
  void act_in_order();
  void check_outputs() const;

  COMMAND_LINE& m_command;
  HDB_ACTION_PT_INSTANCE& m_project;
  CLI::App m_app{"Reads Verilog designs and writes their gate netlists."};
  std::map<const CLI::Option*, const ORDERED_OPTION*> m_ordered;
  std::map<const ORDERED_OPTION*, std::vector<std::string>> m_values;
  std::string m_list; // -f, for the help only: lists are read before
  std::string m_project_file;
};

PARSER::PARSER(COMMAND_LINE& command, HDB_ACTION_PT_INSTANCE& project) : m_command(command), m_project(project) {
  m_app.name("zelk-host");
  m_app.set_version_flag("--version", gen_get_version());
  m_app.footer("Exit status: 0 done, 1 errors in the design, 2 wrong usage, 3 internal error.");
  for (const ORDERED_OPTION& row : ordered_options) {
    CLI::Option* option = m_app.add_option(row.names, m_values[&row], row.help);
    option->type_name(row.value)->take_all();
    if (row.names[0] == '-') option->allow_extra_args(false); // one value each time
    m_ordered[option] = &row;
  }
  m_app.add_option("-f", m_list, "Read options and files from a list; paths are relative to it")->type_name("FILE");
  m_app.add_option("--project", m_project_file, "Read sources, parameters and settings from a TOML file; options win")
      ->type_name("FILE");
  m_app.add_option("--top", command.run.top, "Top unit; by default the one that nothing instantiates")
      ->type_name("NAME");
  m_app.add_flag("--lint", command.run.is_lint, "Analyse and resolve only");
  m_app.add_flag("--flatten", command.flatten, "Write one module instead of the hierarchy");
  m_app.add_flag("--xml", command.run.write_xml, "Describe the ports and parameters of each source in an XML file");
  m_app.add_flag("--stats", command.stats, "Print what the netlist holds");
  m_app.add_flag("--time", command.time, "Print the time and the peak memory of each stage");
  m_app.add_flag("--quiet", command.quiet, "Show errors and warnings only");
  m_app.add_flag("--werror", command.werror, "Warnings count as errors");
  m_app.add_flag("--progress", command.progress, "Keep a line for each step, on a terminal");
  m_app.add_option("--color", command.color, "auto, always or never")
      ->type_name("WHEN")
      ->check(CLI::IsMember({"auto", "always", "never"}));
  m_app.add_option("--diagnostics", command.diagnostics, "Form of the messages: text, json or sarif")
      ->type_name("FORM")
      ->check(CLI::IsMember({"text", "json", "sarif"}));
}

bool PARSER::takes_value(const std::string& option) const {
  const CLI::Option* found = m_app.get_option_no_throw(option);
  return found && found->get_items_expected_max() > 0;
}

void PARSER::act_in_order() {
  PROJECT_BUILDER builder(m_command, m_project);
  if (!m_project_file.empty()) read_project_file(m_project_file, builder, m_command);
  std::map<const CLI::Option*, size_t> next;
  for (const CLI::Option* option : m_app.parse_order()) {
    auto row = m_ordered.find(option);
    if (row == m_ordered.end()) continue;
    size_t& at = next[option];
    if (at >= option->results().size()) continue;
    (builder.*row->second->act)(option->results()[at++]);
  }
}

/// A slip of the keyboard must not cost a source.
void PARSER::check_outputs() const {
  for (const std::string& output : m_command.outputs)
    for (const auto& source : m_project.get_source_files()) {
      std::error_code none; // a file that is not there is no source
      if (std::filesystem::equivalent(output, source->get_unmodified_filename(), none))
        throw USAGE_ERROR("output " + output + " is one of the sources and would replace it");
    }
}

PARSE_RESULT PARSER::parse(int argc, char** argv) {
  try {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    arguments = flatten_arguments(arguments, [this](const std::string& option) { return takes_value(option); });
    std::reverse(arguments.begin(), arguments.end());
    m_app.parse(arguments);
    act_in_order();
    if (m_project.get_source_files().empty()) throw USAGE_ERROR("no source files; see --help");
    check_outputs();
    return PARSE_RESULT::RUN;
  } catch (const CLI::Success& done) {
    m_app.exit(done);
    return PARSE_RESULT::DONE;
  } catch (const CLI::ParseError& problem) {
    std::cerr << "zelk-host: " << problem.what() << '\n';
  } catch (const USAGE_ERROR& problem) {
    std::cerr << "zelk-host: " << problem.what() << '\n';
  }
  return PARSE_RESULT::WRONG_USAGE;
}

} // namespace

PARSE_RESULT parse_command_line(int argc, char** argv, COMMAND_LINE& command, HDB_ACTION_PT_INSTANCE& project) {
  return PARSER(command, project).parse(argc, argv);
}
