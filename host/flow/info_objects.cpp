// Answers of the host to an analysis or elaboration, and the gathering of what it hands over.
#include "info_objects.h"

#include <cctype>
#include <charconv>

#include "gen.h"
#include "htl.h"

namespace {

SOURCE_PLACE place_of(const MSG_TEXT_LOCATION_SCHEMA& location) { return {location.get_file(), location.get_line()}; }

/// Entities of VHDL know no case.
int compare_names(const HDB_DESIGN_UNIT& unit, const char* left, const char* right) {
  bool is_verilog = unit.get_type() == HDB_DESIGN_UNIT::TYPE_VERILOG_MODULE;
  return is_verilog ? gen_strcmp(left, right) : gen_stricmp(left, right);
}

} // namespace

std::string FLOW_ANALYZE_INFO::get_project_path() { return gen_get_project_dir_path(); }

FLOW_ELABORATE_INFO::FLOW_ELABORATE_INFO(HDB_ACTION_PT_INSTANCE& project, HDB_DESIGN_UNIT* unit,
                                         const std::vector<UNIT_PARAMETER>& parameters, const std::string& architecture,
                                         PLACE place, MODE mode)
    : m_project(project), m_result(std::make_unique<UNIT_RESULT>()), m_asked(parameters.size()),
      m_architecture(architecture), m_place(place), m_mode(mode) {
  m_result->unit = unit;
  m_result->parameters = parameters;
  for (const auto& other : project.get_design_units())
    if (other->get_file() == unit->get_file()) m_unit_list.push_back(other.get());
}

const char* FLOW_ELABORATE_INFO::get_parameter_value(const char* name, int position, int* type) {
  for (size_t i = 0; i < m_result->parameters.size(); i++) {
    const UNIT_PARAMETER& parameter = m_result->parameters[i];
    bool is_it = parameter.name.empty() ? position >= 0 && parameter.position == position
                                        : compare_names(*m_result->unit, parameter.name.c_str(), name) == 0;
    if (!is_it) continue;
    m_asked[i] = true;
    if (type) *type = parameter.type;
    return parameter.value.c_str();
  }
  return nullptr;
}

std::vector<std::string> FLOW_ELABORATE_INFO::get_unused_parameters() const {
  std::vector<std::string> names;
  for (size_t i = 0; i < m_asked.size(); i++)
    if (!m_asked[i]) names.push_back(m_result->parameters[i].name);
  return names;
}

HDB_OPTION* FLOW_ELABORATE_INFO::get_option(int variable) { return get_option(ACF_SECTION_SYNTHESIS, variable); }

HDB_OPTION* FLOW_ELABORATE_INFO::get_option(int section, int variable) {
  HDB_SECTION* found = m_project.get_section(section);
  return found ? found->find_option(variable) : nullptr;
}

bool FLOW_ELABORATE_INFO::get_flag_option(int variable) {
  HDB_OPTION* option = get_option(variable);
  return option && option->is_on();
}

namespace {

/// The number of a text of digits; false when the text has other characters or does not fit.
bool read_number(const std::string& digits, int base, long long& number) {
  const char* end = digits.data() + digits.size();
  auto [stop, problem] = std::from_chars(digits.data(), end, number, base);
  return problem == std::errc() && stop == end;
}

/// A parameter's value as people write it: typed texts such as D"8" and literals such as 4'b1000 become plain numbers
/// and strings. What is neither stays as it is.
std::string readable_value(const std::string& value) {
  static const HTL_REGEXP typed("(S?[BOQ]|U?D|[XH])\"[ +]*(-?\\w+)\"", HTL_REGEXP::CASE_IGNORED);
  static const HTL_REGEXP text("S?\"((?s).*)\"", HTL_REGEXP::CASE_IGNORED);
  static const HTL_REGEXP literal("\\d*'s?([bodh])(\\w+)", HTL_REGEXP::CASE_IGNORED);
  std::vector<std::string> groups;
  if (text.match(value.c_str(), &groups)) return groups[0];
  if (!typed.match(value.c_str(), &groups) && !literal.match(value.c_str(), &groups)) return value;
  int base = 10;
  switch (std::tolower(static_cast<unsigned char>(groups[0].back()))) {
  case 'b': base = 2; break;
  case 'o':
  case 'q': base = 8; break;
  case 'x':
  case 'h': base = 16; break;
  default: break;
  }
  long long number = 0;
  return read_number(groups[1], base, number) ? std::to_string(number) : value;
}

} // namespace

void FLOW_ELABORATE_INFO::register_parameter(const char* name, const char* value, int type) {
  m_result->used_parameters.push_back({name, -1, readable_value(value ? value : ""), type});
  m_result->exact_parameters.push_back({name, -1, value ? value : "", type});
}

const char* FLOW_ELABORATE_INFO::join(const char* a, const char* component, const char* suffix, const char* d,
                                      const char* e, const char* f) {
  std::string text;
  for (const char* part : {a, component, suffix, d, e, f})
    if (part) text += part;
  return m_result->string_pool.insert(std::move(text)).first->c_str();
}

void FLOW_ELABORATE_INFO::register_identifier_with_location(const char* name,
                                                            const MSG_TEXT_LOCATION_SCHEMA& location) {
  m_result->places[name] = place_of(location);
}

void FLOW_ELABORATE_INFO::register_net(const char* name, const char* host_name,
                                       const MSG_TEXT_LOCATION_SCHEMA& location) {
  m_result->nets.push_back({name, host_name ? host_name : name, place_of(location)});
}

void FLOW_ELABORATE_INFO::register_instance(const char* name, const char* host_name,
                                            const MSG_TEXT_LOCATION_SCHEMA& location) {
  m_result->instances.push_back({name, host_name ? host_name : name, place_of(location)});
}

void FLOW_ELABORATE_INFO::register_net_bus(const char* name, int left, int right,
                                           const MSG_TEXT_LOCATION_SCHEMA& location) {
  m_result->net_buses.push_back({name, left, right, false, 0, 0, place_of(location)});
}

void FLOW_ELABORATE_INFO::register_instance_bus(const char* name, const MSG_TEXT_LOCATION_SCHEMA& location) {
  m_result->places[name] = place_of(location);
}

void FLOW_ELABORATE_INFO::register_port(const char* name, const MSG_TEXT_LOCATION_SCHEMA& location) {
  m_result->places[name] = place_of(location);
}

void FLOW_ELABORATE_INFO::register_port_bus(const char* name, int left, int right,
                                            const MSG_TEXT_LOCATION_SCHEMA& location) {
  m_result->port_buses.push_back({name, left, right, false, 0, 0, place_of(location)});
}

void FLOW_ELABORATE_INFO::register_port_bus(const char* name, int left, int right, int inner_left, int inner_right,
                                            const MSG_TEXT_LOCATION_SCHEMA& location) {
  m_result->port_buses.push_back({name, left, right, true, inner_left, inner_right, place_of(location)});
}

void FLOW_ELABORATE_INFO::set_instance_assignment(const char* name, int variable, const char* value) {
  m_result->assignments.push_back({name, variable, value});
}

void FLOW_ELABORATE_INFO::set_global_assignment(int variable, const char* value) {
  m_result->assignments.push_back({"", variable, value});
}

void FLOW_ELABORATE_INFO::set_text_assignment(const char* name, const char* text, const MSG_TEXT_LOCATION_SCHEMA&) {
  m_result->assignments.push_back({name, ACF_VARIABLE_NONE, text});
}

void FLOW_ELABORATE_INFO::set_global_text_assignment(const char* text, const MSG_TEXT_LOCATION_SCHEMA&) {
  m_result->assignments.push_back({"", ACF_VARIABLE_NONE, text});
}
