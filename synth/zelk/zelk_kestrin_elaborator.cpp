// What the elaborators of the languages share: flags from the project's options, parameters from and to the host.
#include "zelk_kestrin_elaborator.h"

#include "acf.h"
#include "basex.h"
#include "database/views.h"
#include "tst.h"
#include "util/message.h"
#include "zelk_netlist_creator.h"
#include "zelk_utility.h"

void zelk_delete_parameters(Map*& parameters) {
  for (Param* param : ValuesOf<Param*>(parameters)) delete param;
  delete parameters;
  parameters = nullptr;
}

ZELK_KESTRIN_ELABORATOR::~ZELK_KESTRIN_ELABORATOR() { ZELK_KESTRIN_ELABORATOR::cleanup(); }

HDB_OPTION* ZELK_KESTRIN_ELABORATOR::get_unit_option(int variable) const {
  HDB_OPTION* option = m_elaborate_info->get_option(variable);
  return option ? option : m_elaborate_info->get_option(ACF_SECTION_SYNTHESIS, variable);
}

void ZELK_KESTRIN_ELABORATOR::set_flags() {
  zelk_rebuild_flags();
  ZELK_EXTRACTOR_DATA::instance();
  const HDB_DESIGN_UNIT* unit = m_elaborate_info->get_design_unit();
  const HDB_SOURCE_FILE* src_file = unit ? unit->get_file() : nullptr;
  ZELK_ASSERT(src_file != NULL);
  if (src_file && src_file->is_encrypted()) {
    if (!m_elaborate_info->get_flag_option(ACF_VARIABLE_SHOW_ENCRYPTED_MESSAGES_OF_UNIT))
      Message::CriticalMessagesOnly();
    if (zelk_is_option_on(m_elaborate_info->get_option(ACF_SECTION_HDL_INPUT, ACF_VARIABLE_IP_DEBUG)))
      zelk_flags->set_cfg_flag("zelk_enable_ip_debug", 1);
  }
  if (const HDB_OPTION* limit = m_elaborate_info->get_option(ACF_VARIABLE_INITIAL_FANOUT_LIMIT))
    zelk_flags->set_cfg_flag("hdl_initial_fanout_limit", limit->get_integer());
  if (zelk_is_option_on(get_unit_option(ACF_VARIABLE_RESOURCE_SHARING)))
    zelk_flags->set_cfg_flag("zelk_enable_resource_sharing", 1);
  if (zelk_is_option_off(get_unit_option(ACF_VARIABLE_INFER_RAMS))) {
    zelk_flags->get_cfg_flag("zelk_dont_infer_rams");
    zelk_flags->set_cfg_flag("zelk_dont_infer_verilog_rams", 1);
    zelk_flags->set_cfg_flag("zelk_dont_infer_vhdl_rams", 1);
  }
  if (zelk_is_option_off(get_unit_option(ACF_VARIABLE_INFER_ROMS)) || m_elaborate_info->is_no_inference_mode()) {
    zelk_flags->get_cfg_flag("zelk_dont_infer_roms");
    zelk_flags->set_cfg_flag("zelk_dont_infer_verilog_roms", 1);
    zelk_flags->set_cfg_flag("zelk_dont_infer_vhdl_roms", 1);
  }
  ZELK_EXTRACTOR_DATA::m_elab_info = m_elaborate_info;
}

namespace {

/// A value with the number of a host setting is none of the unit's parameters.
bool is_host_setting(int type) { return acf_is_variable_allowed_in_section_type(type, ACF_SECTION_SYNTHESIS); }

} // namespace

void ZELK_KESTRIN_ELABORATOR::fetch_parameters(const std::vector<std::string>& names) {
  static const bool zelk_super_debug_mode = zelk_cfg_is_on("zelk_super_debug_mode");
  ZELK_ASSERT(!m_parameters);
  for (size_t i = 0; i < names.size(); i++) {
    int type = 0;
    const char* value = m_elaborate_info->get_parameter_value(names[i].c_str(), static_cast<int>(i), &type);
    if (zelk_super_debug_mode)
      zelk_msg_debug("BASEX returned parameter %s = %s", names[i].c_str(), value ? value : "<no value>");
    if (!value || is_host_setting(type)) continue;
    auto* param = new Param(names[i].c_str(), value, nullptr, type);
    if (!m_parameters) m_parameters = new Map(HASH_STRING, 2);
    if (!m_parameters->Insert(param->Name(), param)) delete param;
  }
}

void ZELK_KESTRIN_ELABORATOR::register_single_parameter(const Param* param) {
  ZELK_ASSERT(param);
  if (!param) return;
  const char* name = m_elaborate_info->join(param->Name());
  const char* value = m_elaborate_info->join(param->Value());
  m_elaborate_info->register_parameter(name, value, param->VariableType());
}

void ZELK_KESTRIN_ELABORATOR::register_parameters(const std::vector<std::string>& names) {
  ZELK_ASSERT(m_elaborated_netlist);
  if (!m_elaborated_netlist) return;
  for (const std::string& name : names) {
    const Param* param = m_parameters ? FromWord<Param*>(m_parameters->GetValue(name.c_str())) : nullptr;
    if (!param) param = m_elaborated_netlist->GetParam(name.c_str());
    if (param) register_single_parameter(param);
  }
}

Netlist* ZELK_KESTRIN_ELABORATOR::read_netlist_from_file(const std::string& unit_name,
                                                         const std::vector<std::string>& names) const {
  const std::string map_file = tst_get_value("General Section", "ZELK_NETLIST_CREATOR_MAP_FILE");
  if (map_file.empty()) return nullptr;
  std::string key = unit_name + "_" + (m_library ? m_library->Name() : "") + "(";
  const char* separator = "";
  for (const std::string& name : names) {
    const Param* param = m_parameters ? FromWord<Param*>(m_parameters->GetValue(name.c_str())) : nullptr;
    if (!param) continue;
    key += separator + name + "," + (param->Value() ? param->Value() : "");
    separator = ",";
  }
  return ZELK_NETLIST_CREATOR(map_file).create(key + ")");
}

void ZELK_KESTRIN_ELABORATOR::cleanup() {
  zelk_delete_parameters(m_parameters);
  m_library = nullptr;
  m_elaborated_netlist = nullptr;
}
