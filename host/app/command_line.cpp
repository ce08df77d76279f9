// Options of zelk-host. Options that concern the files behind them take effect in the order of the command line.
#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

#include "arguments.h"
#include "cfg.h"
#include "gen.h"
#include "htl.h"
#include "output/writer.h"

namespace {

/// A dialect of --std: the languages that it concerns and the setting's value for their files.
struct STANDARD {
  const char* name;
  bool is_vhdl;
  const char* value;
};

constexpr STANDARD standards[] = {
    {"vlog95", false, "VERILOG_1995"}, {"vlog2001", false, "VERILOG_2001"}, {"sv2005", false, "SYSTEMVERILOG_2005"},
    {"vhdl87", true, "VHDL87"},        {"vhdl93", true, "VHDL93"},          {"vhdl2008", true, "VHDL_2008"},
};

const STANDARD* find_standard(const std::string& name) {
  for (const STANDARD& standard : standards)
    if (name == standard.name) return &standard;
  return nullptr;
}

std::pair<std::string, std::string> split_assignment(const std::string& text, const char* option) {
  size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) throw USAGE_ERROR(std::string(option) + " needs NAME=VALUE");
  return {text.substr(0, equals), text.substr(equals + 1)};
}

/// Takes the options one by one in the order of the command line.
class PROJECT_BUILDER {
public:
  PROJECT_BUILDER(COMMAND_LINE& command, HDB_ACTION_PT_INSTANCE& project) : m_command(command), m_project(project) {}

  void add_file(const std::string& name) {
    HDB_SOURCE_FILE* file = m_project.create_source_file(name, HDB_SOURCE_FILE::path_to_file_type(name));
    if (!m_library.empty()) file->set_library(m_library);
    const std::string& standard = file->get_type() == HDB_SOURCE_FILE::TYPE_VHDL ? m_vhdl_standard : m_verilog_standard;
    if (!standard.empty()) file->set_argument_value(HDB_SOURCE_FILE::ARGUMENT_HDL_VERSION, standard);
  }
  void set_library(const std::string& name) { m_library = name; }
  void set_standard(const std::string& name) {
    const STANDARD* standard = find_standard(name);
    if (!standard) throw USAGE_ERROR("--std knows no dialect \"" + name + "\"");
    (standard->is_vhdl ? m_vhdl_standard : m_verilog_standard) = standard->value;
  }
  void add_macro(const std::string& text) {
    m_project.create_section(ACF_SECTION_HDL_INPUT)->create_option(ACF_VARIABLE_VERILOG_MACRO)->add_value(text);
  }
  void add_include_dir(const std::string& directory) { gen_add_search_dir(directory); }
  void add_library_dir(const std::string& directory) { m_command.run.library_dirs.push_back(directory); }
  void set_variable(const std::string& text) {
    auto [name, value] = split_assignment(text, "--set");
    cfg_set_value(name, value);
  }
  void set_option(const std::string& text) {
    auto [name, value] = split_assignment(text, "--option");
    int variable = acf_get_variable_by_name(name.c_str());
    int section = acf_get_variable_section(variable);
    if (variable == ACF_VARIABLE_NONE || section < ACF_SECTION_EDA_TOOLS)
      throw USAGE_ERROR("--option knows no setting \"" + name + "\"");
    HDB_OPTION* option = m_project.create_section(section)->create_option(variable);
    if (acf_get_variable_kind(variable) == ACF_KIND_MULTI_STRING)
      option->add_value(value);
    else
      option->set_string(value);
  }
  void add_parameter(const std::string& text) {
    auto [name, value] = split_assignment(text, "-G");
    m_command.run.top_parameters.push_back({name, -1, parameter_notation(value), ACF_VARIABLE_PARAMETER_STRING});
  }
  void add_output(const std::string& path) {
    if (!is_known_output(path)) throw USAGE_ERROR("-o " + path + ": the extension names no known format");
    m_command.outputs.push_back(path);
  }

private:
  COMMAND_LINE& m_command;
  HDB_ACTION_PT_INSTANCE& m_project;
  std::string m_library;
  std::string m_verilog_standard;
  std::string m_vhdl_standard;
};

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
    {"-o", "FILE", "Write .v (Verilog 2001), .json (netlist) or .txt (report)", &PROJECT_BUILDER::add_output},
};

class PARSER {
public:
  PARSER(COMMAND_LINE& command, HDB_ACTION_PT_INSTANCE& project);
  PARSE_RESULT parse(int argc, char** argv);

private:
  bool takes_value(const std::string& option) const;
  void act_in_order();

  COMMAND_LINE& m_command;
  HDB_ACTION_PT_INSTANCE& m_project;
  CLI::App m_app{"Reads Verilog designs and writes their gate netlists."};
  std::map<const CLI::Option*, const ORDERED_OPTION*> m_ordered;
  std::map<const ORDERED_OPTION*, std::vector<std::string>> m_values;
  std::string m_list; // -f, for the help only: lists are read before
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
  m_app.add_option("--top", command.run.top, "Top unit; by default the one that nothing instantiates")
      ->type_name("NAME");
  m_app.add_flag("--lint", command.run.is_lint, "Analyse and resolve only");
  m_app.add_flag("--stats", command.stats, "Print what the netlist holds, with time and memory");
  m_app.add_flag("--quiet", command.quiet, "Show errors and warnings only");
  m_app.add_flag("--werror", command.werror, "Warnings count as errors");
  m_app.add_flag("--progress", command.progress, "Show each step");
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
  std::map<const CLI::Option*, size_t> next;
  for (const CLI::Option* option : m_app.parse_order()) {
    auto row = m_ordered.find(option);
    if (row == m_ordered.end()) continue;
    size_t& at = next[option];
    if (at >= option->results().size()) continue;
    (builder.*row->second->act)(option->results()[at++]);
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

std::string binary_digits(const std::string& digits, unsigned bits_per_digit) {
  std::string binary;
  for (char c : digits) {
    if (c == '_') continue;
    bool is_unknown = c == 'x' || c == 'X' || c == 'z' || c == 'Z' || c == '?';
    int value = is_unknown ? 0 : static_cast<int>(std::stoul(std::string(1, c), nullptr, 16));
    for (unsigned bit = bits_per_digit; bit > 0; bit--)
      binary += is_unknown ? static_cast<char>(std::tolower(c)) : value >> (bit - 1) & 1 ? '1' : '0';
  }
  return binary;
}

std::string decimal_to_binary(std::string digits) {
  std::erase(digits, '_');
  std::string binary;
  while (digits.find_first_not_of('0') != std::string::npos) {
    int rest = 0;
    for (char& c : digits) {
      int value = rest * 10 + (c - '0');
      c = static_cast<char>('0' + value / 2);
      rest = value % 2;
    }
    binary.insert(binary.begin(), rest ? '1' : '0');
  }
  return binary.empty() ? "0" : binary;
}

} // namespace

std::string parameter_notation(const std::string& text) {
  constexpr unsigned long MAX_WIDTH = 1UL << 16;
  static const HTL_REGEXP plain("-?[0-9]+|-?[0-9]*\\.[0-9]+|\".*\"|[A-Za-z]+\".*\"");
  static const HTL_REGEXP sized("([0-9]+)'([bodhBODH])([0-9a-fA-FxXzZ_?]+)");
  if (plain.match(text.c_str())) return text;
  std::vector<std::string> groups;
  if (!sized.match(text.c_str(), &groups)) return "\"" + text + "\"";
  static const std::map<char, std::pair<unsigned, const char*>> bases = {
      {'b', {1, "01xXzZ_?"}}, {'o', {3, "01234567xXzZ_?"}}, {'h', {4, "0123456789abcdefABCDEFxXzZ_?"}}};
  char base = static_cast<char>(std::tolower(groups[1][0]));
  unsigned long width = groups[0].size() > 5 ? 0 : std::stoul(groups[0]);
  const char* allowed = base == 'd' ? "0123456789_" : bases.at(base).second;
  if (width == 0 || width > MAX_WIDTH || groups[2].find_first_not_of(allowed) != std::string::npos)
    throw USAGE_ERROR("-G can't read the number " + text);
  std::string binary = base == 'd' ? decimal_to_binary(groups[2]) : binary_digits(groups[2], bases.at(base).first);
  char fill = binary[0] == 'x' || binary[0] == 'z' ? binary[0] : '0';
  if (binary.size() < width) binary.insert(0, width - binary.size(), fill);
  return groups[0] + "'b" + binary.substr(binary.size() - width);
}

PARSE_RESULT parse_command_line(int argc, char** argv, COMMAND_LINE& command, HDB_ACTION_PT_INSTANCE& project) {
  return PARSER(command, project).parse(argc, argv);
}
