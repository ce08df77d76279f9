// Options and sections of a project's settings.
#include "hdb_section.h"

#include <cstdlib>

#include "gen.h"
#include "hdb_action_pt.h"

void HDB_ASSIGNMENT::set_flag(int flag, bool on) {
  if (on)
    m_flags |= 1U << flag;
  else
    m_flags &= ~(1U << flag);
}

bool HDB_OPTION::is_on() const { return gen_stricmp(get_string(), "on") == 0; }
int HDB_OPTION::get_integer() const { return static_cast<int>(std::strtol(get_string(), nullptr, 10)); }
int HDB_OPTION::get_enum() const { return acf_string_to_enum_type_enum(get_string()); }

HDB_SECTION* HDB_SECTION::find_section(HDB_ACTION_PT_INSTANCE* ap_inst, int type) { return ap_inst->get_section(type); }

HDB_OPTION* HDB_SECTION::find_option(int variable) const {
  for (const auto& option : m_options)
    if (option->get_variable() == variable && option->get_target().empty()) return option.get();
  return nullptr;
}

HDB_OPTION* HDB_SECTION::create_option(int variable) {
  HDB_OPTION* option = find_option(variable);
  return option ? option : create_assignment(variable, "");
}

HDB_OPTION* HDB_SECTION::create_assignment(int variable, const std::string& target) {
  m_options.push_back(std::make_unique<HDB_OPTION>(variable));
  m_options.back()->set_target(target);
  return m_options.back().get();
}

std::vector<HDB_OPTION*> HDB_SECTION::find_assignments(int variable) const {
  std::vector<HDB_OPTION*> found;
  for (const auto& option : m_options)
    if (option->get_variable() == variable) found.push_back(option.get());
  return found;
}
