// Symbol, include, component and instantiation files of the units that one analysis found: which units, under which
// names, in which order, and what a failure means. What the files hold is the host's.
#include "basex.h"
#include "fio.h"
#include "fio_extension.h"
#include "gen.h"
#include "gio.h"
#include "sio.h"
#include "util/linefile.h"
#include "verilog/veri_file.h"
#include "verilog/veri_tokens.h"
#include "verilog/veriexpression.h"
#include "verilog/verilibrary.h"
#include "verilog/verimodule.h"
#include "zelk_analyzer_impl.h"
#include "zelk_entity.h"
#include "zelk_msgs.h"
#include "zelk_report.h"
#include "zelk_utility.h"

namespace {

std::vector<HDB_ENTITY*> entities_of(const BASEX_ANALYZE_INFO& info) {
  std::vector<HDB_ENTITY*> entities;
  for (HDB_DESIGN_UNIT* unit : info.entity_list)
    if (unit->get_type() == HDB_DESIGN_UNIT::TYPE_VERILOG_MODULE) entities.push_back(static_cast<HDB_ENTITY*>(unit));
  return entities;
}

VeriModule* module_of(const HDB_ENTITY& entity) {
  std::string name = "work";
  entity.get_library(&name);
  VeriLibrary* library = veri_file::GetLibrary(name.c_str(), 0, 1);
  return library ? library->GetModule(entity.get_name()) : nullptr;
}

/// Directions of the host by the token of the direction; -1 for what has none.
int direction_of(const VeriVariable& port) {
  switch (port.Dir()) {
  case VERI_INPUT: return 0;
  case VERI_OUTPUT: return 1;
  case VERI_INOUT: return 2;
  default: return -1;
  }
}

/// The bounds as the source has them: they may depend on parameters.
std::string build_port_range_from_expr(const VeriVariable& port) {
  std::string text;
  if (!port.Type() || !port.Type()->Ranges()) return text;
  for (const VeriRange* range : ItemsOf<const VeriRange*>(port.Type()->Ranges())) {
    if (!range->GetLeft() || !range->GetRight()) continue;
    text += (text.empty() ? "" : "][") + range->GetLeft()->Image() + ":" + range->GetRight()->Image();
  }
  return text;
}

bool has_plain_ports(const VeriModule& module) {
  for (const VeriExpression* port : ItemsOf<const VeriExpression*>(module.PortExpressions()))
    if (port && (port->IsConcat() || port->GetClassId() == ID_VeriPortConnect)) return false;
  return true;
}

void set_ports(HDB_ACTION_PT_INSTANCE& ap_inst, HDB_ENTITY& entity, const VeriModule& module) {
  entity.clear_ports();
  if (!has_plain_ports(module)) {
    zelk_report(MSG_ZELK::E::SYMBOL_CANT_HANDLE_VERILOG_PORT_EXPRESSION(entity.get_name()));
    return;
  }
  for (const VeriVariable* port : module.Ports()) {
    int direction = direction_of(*port);
    if (direction < 0 || port->NumUnpacked() != 0) {
      zelk_report(MSG_ZELK::E::SYMBOL_CANT_HANDLE_VERILOG_PORT(entity.get_name(), port->Name()));
      continue;
    }
    bool is_signed = port->Type() && port->Type()->Signing() == VERI_SIGNED;
    const HDB_HDL_TYPE* type = ap_inst.get_type_db()->add_type(new HDB_LOGIC_TYPE("logic", is_signed));
    entity.create_port(port->Name(), direction, type)->range = build_port_range_from_expr(*port);
  }
}

/// Only literals can be told as defaults; the others are listed.
void set_parameters(ZELK_ENTITY& entity, const VeriModule& module) {
  HDB_ENTITY::PARAMETERS parameters;
  std::vector<ZELK_PARAMETER_DATA> data;
  bool is_first = true;
  for (const VeriParamId* id : module.OverridableParams()) {
    const VeriExpression* value = id->InitialValue();
    bool is_literal = value && value->IsConst();
    if (!is_literal && is_first) zelk_report(MSG_ZELK::I::PARAM_DEFAULT_VAL_NOT_CREATED());
    if (!is_literal) zelk_report(MSG_ZELK::I::PARAM_DEFAULT_VAL_NOT_CREATED_SUB(id->Name()));
    is_first &= is_literal;
    data.push_back({id->Name(), "parameter", is_literal ? value->Image() : ""});
    parameters.push_back({data.back().name, data.back().type, data.back().default_value});
  }
  entity.set_parameters(std::move(parameters));
  entity.set_parameter_data(std::move(data));
}

} // namespace

void ZELK_ANALYZER_IMPL::set_port_and_parameter_to_hdb_entity() {
  ZELK_ASSERT_TEXT(m_info, "entity_list != NULL");
  int type = m_info->source_file->get_type();
  bool is_verilog = type == HDB_SOURCE_FILE::TYPE_VERILOG || type == HDB_SOURCE_FILE::TYPE_SYSTEMVERILOG;
  ZELK_ASSERT_TEXT(is_verilog, "cannot read format");
  if (!is_verilog || m_has_filled_entities) return;
  m_has_filled_entities = true; // the tree does not change between the writers
  for (HDB_ENTITY* entity : entities_of(*m_info)) veri_set_port_and_parameter_to_hdb_entity(entity);
}

void ZELK_ANALYZER_IMPL::veri_set_port_and_parameter_to_hdb_entity(HDB_ENTITY* entity) {
  const VeriModule* module = module_of(*entity);
  if (!module) return;
  set_ports(*get_action_pt_inst(), *entity, *module);
  set_parameters(*static_cast<ZELK_ENTITY*>(entity), *module);
}

/// Files of such units overwrite each other where names of files know no case; both are written nevertheless.
void ZELK_ANALYZER_IMPL::check_for_same_veri_module_name() {
  std::vector<HDB_ENTITY*> entities = entities_of(*m_info);
  for (size_t i = 0; i < entities.size(); i++)
    for (size_t k = i + 1; k < entities.size(); k++)
      if (gen_stricmp(entities[i]->get_name(), entities[k]->get_name()) == 0)
        zelk_report(MSG_ZELK::E::MODULE_NAMES_DIF_ONLY_IN_CASE(entities[i]->get_name(), entities[k]->get_name()));
}

void ZELK_ANALYZER_IMPL::create_default_symbol_file() {
  ZELK_ASSERT(m_info->is_create_default_symbol_file());
  check_for_same_veri_module_name();
  std::string start = FIO_PATH(m_info->get_project_path()).fullpath();
  for (HDB_ENTITY* entity : entities_of(*m_info)) {
    std::string path = start + entity->get_name();
    GIO_SYMBOL_CREATOR(entity->get_name(), entity)
        .create_symbol_file(path + FIO_EXTENSION_TYPE_INFO::get_extension_string(FIO_EXTENSION_SYMBOL));
  }
}

void ZELK_ANALYZER_IMPL::create_default_include_file() {
  ZELK_ASSERT(m_info->is_create_default_include_file());
  check_for_same_veri_module_name();
  std::string start = FIO_PATH(m_info->get_project_path()).fullpath();
  for (HDB_ENTITY* entity : entities_of(*m_info)) {
    std::string path = start + entity->get_name();
    GIO_SYMBOL_CREATOR(entity->get_name(), entity)
        .create_include_file(path + FIO_EXTENSION_TYPE_INFO::get_extension_string(FIO_EXTENSION_INCLUDE));
  }
}

/// Ends at the first failure.
bool ZELK_ANALYZER_IMPL::create_default_component_file() {
  ZELK_ASSERT(m_info->is_create_default_component_file());
  check_for_same_veri_module_name();
  std::string start = FIO_PATH(m_info->get_project_path()).fullpath();
  for (HDB_ENTITY* entity : entities_of(*m_info))
    if (!SIO_GENERATOR(entity).create_component_file(start + entity->get_name())) return false;
  return true;
}

/// Writes all, and fails when one of them does.
bool ZELK_ANALYZER_IMPL::create_default_instantiation_file() {
  ZELK_ASSERT(m_info->is_create_default_instantiation_file());
  check_for_same_veri_module_name();
  FIO_PATH path;
  path.directory(gen_get_project_dir_path());
  bool is_good = true;
  for (HDB_ENTITY* entity : entities_of(*m_info)) {
    path.filename(entity->get_name());
    is_good &= SIO_GENERATOR(entity).create_instantiation_file(path.fullpath(), SIO::HDL_VERILOG);
  }
  return is_good;
}
