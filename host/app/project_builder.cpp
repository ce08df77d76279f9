// What the options of the command line and the entries of a project file do.
#include "project_builder.h"

#include <charconv>

#include "arguments.h"
#include "cfg.h"
#include "gen.h"
#include "msg.h"
#include "output/writer.h"
#include "parameter_notation.h"

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

} // namespace

void PROJECT_BUILDER::add_file(const std::string& name) {
  HDB_SOURCE_FILE* file = m_project.create_source_file(name, HDB_SOURCE_FILE::path_to_file_type(name));
  if (!m_library.empty()) file->set_library(m_library);
  const std::string& standard = file->get_type() == HDB_SOURCE_FILE::TYPE_VHDL ? m_vhdl_standard : m_verilog_standard;
  if (!standard.empty()) file->set_argument_value(HDB_SOURCE_FILE::ARGUMENT_HDL_VERSION, standard);
}

void PROJECT_BUILDER::set_standard(const std::string& name) {
  const STANDARD* standard = find_standard(name);
  if (!standard) throw USAGE_ERROR("--std knows no dialect \"" + name + "\"");
  (standard->is_vhdl ? m_vhdl_standard : m_verilog_standard) = standard->value;
}

void PROJECT_BUILDER::add_macro(const std::string& text) {
  m_project.create_section(ACF_SECTION_HDL_INPUT)->create_option(ACF_VARIABLE_VERILOG_MACRO)->add_value(text);
}

void PROJECT_BUILDER::add_include_dir(const std::string& directory) { gen_add_search_dir(directory); }

void PROJECT_BUILDER::add_library_dir(const std::string& directory) { m_command.run.library_dirs.push_back(directory); }

void PROJECT_BUILDER::set_variable(const std::string& text) {
  auto [name, value] = split_assignment(text, "--set");
  cfg_set_value(name, value);
}

namespace {

bool is_bool(const std::string& value) {
  return gen_stricmp(value.c_str(), "on") == 0 || gen_stricmp(value.c_str(), "off") == 0;
}

/// False when the text is no number or does not fit.
template <class NUMBER> bool read_number(const std::string& text, NUMBER& number) {
  auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
  return problem == std::errc() && end == text.data() + text.size();
}

void check_option_value(int variable, const std::string& name, const std::string& value) {
  std::string expected;
  int number = 0;
  switch (acf_get_variable_kind(variable)) {
  case ACF_KIND_BOOL:
    if (!is_bool(value)) expected = "on or off";
    break;
  case ACF_KIND_INTEGER:
    if (!read_number(value, number)) expected = "a number";
    break;
  case ACF_KIND_ENUM_VALUE: {
    std::vector<int> known;
    acf_get_variable_enum_value_types(&known, variable, 0, 0);
    bool is_known = acf_convert_old_value_to_new(variable, value.c_str(), 0) != nullptr;
    for (int one : known) {
      const char* name_of_one = acf_enum_type_to_user_string(one);
      is_known = is_known || gen_stricmp(name_of_one, value.c_str()) == 0;
      expected += std::string(expected.empty() ? "" : ", ") + name_of_one;
    }
    if (is_known) return;
    break;
  }
  case ACF_KIND_STRING:
  case ACF_KIND_MULTI_STRING: break;
  }
  if (!expected.empty()) throw USAGE_ERROR("setting " + name + " is " + expected + ", not \"" + value + "\"");
}

} // namespace

void PROJECT_BUILDER::set_option(const std::string& text) {
  auto [name, value] = split_assignment(text, "--option");
  int variable = acf_get_variable_by_name(name.c_str());
  int section = acf_get_variable_section(variable);
  if (variable == ACF_VARIABLE_NONE || section < ACF_SECTION_EDA_TOOLS)
    throw USAGE_ERROR("--option knows no setting \"" + name + "\"");
  check_option_value(variable, name, value);
  HDB_OPTION* option = m_project.create_section(section)->create_option(variable);
  if (acf_get_variable_kind(variable) == ACF_KIND_MULTI_STRING)
    option->add_value(value);
  else
    option->set_string(value);
}

void PROJECT_BUILDER::add_parameter(const std::string& text) {
  auto [name, value] = split_assignment(text, "-G");
  std::string notation = parameter_notation(value);
  for (UNIT_PARAMETER& parameter : m_command.run.top_parameters) {
    if (parameter.name != name) continue;
    parameter.value = notation;
    return;
  }
  m_command.run.top_parameters.push_back({name, -1, notation, ACF_VARIABLE_PARAMETER_STRING});
}

void PROJECT_BUILDER::set_message_level(const std::string& level) {
  constexpr int LEVELS[] = {ACF_ENUM_LOW, ACF_ENUM_MEDIUM, ACF_ENUM_HIGH};
  int value = acf_string_to_enum_type_enum(level.c_str());
  for (int known : LEVELS)
    if (value == known) return set_option("HDL_MESSAGE_LEVEL=" + level);
  throw USAGE_ERROR("--message-level is low, medium or high, not \"" + level + "\"");
}

void PROJECT_BUILDER::add_message(int variable, const std::string& number) {
  if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos)
    throw USAGE_ERROR("\"" + number + "\" is no message number");
  m_project.create_section(ACF_SECTION_HDL_INPUT)->create_option(variable)->add_value(number);
}

namespace {

/// The library takes the numbers of messages on the languages only; it is the report that keeps the others.
bool is_host_message(const std::string& number, unsigned& id) {
  constexpr unsigned FIRST_OF_LANGUAGES = 10000;
  constexpr unsigned LAST_OF_LANGUAGES = 10999;
  return read_number(number, id) && (id < FIRST_OF_LANGUAGES || id > LAST_OF_LANGUAGES) &&
         MSG_ID_REGISTRAR::is_known(id);
}

} // namespace

void PROJECT_BUILDER::enable_message(const std::string& number) {
  unsigned id = 0;
  if (is_host_message(number, id)) return msg_get_default_report()->enable_message(id);
  add_message(ACF_VARIABLE_HDL_MESSAGE_ON, number);
}

void PROJECT_BUILDER::disable_message(const std::string& number) {
  unsigned id = 0;
  if (is_host_message(number, id)) return msg_get_default_report()->disable_message(id);
  add_message(ACF_VARIABLE_HDL_MESSAGE_OFF, number);
}

void PROJECT_BUILDER::add_output(const std::string& path) {
  if (!is_known_output(path)) throw USAGE_ERROR("-o " + path + ": the extension names no known format");
  m_command.outputs.push_back(path);
}

void PROJECT_BUILDER::set_file_state(const FILE_STATE& state) {
  m_library = state.library;
  m_verilog_standard = state.verilog_standard;
  m_vhdl_standard = state.vhdl_standard;
}
