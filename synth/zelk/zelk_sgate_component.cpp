// Components of the gate netlist: user cells with their parameters, their way to a library unit, and their ports.
#include <climits>
#include <cstdlib>
#include <cstring>

#include "acf.h"
#include "basex.h"
#include "database/views.h"
#include "gen.h"
#include "htl.h"
#include "wys_info.h"
#include "zelk_sgate.h"
#include "zelk_utility.h"

namespace {

constexpr size_t ZELK_DEFAULT_PORT_NAME_SIZE = 1024;
constexpr const char* ORDERED_PORTS = "OrderedPorts";

CDB_SGATE_COMPONENT::PROTOTYPE prototype_of(const Netlist* view) {
  if (view->SourceLang() == DB_SOURCE_LANG_VHDL && !view->GetParamNoCase("lpm_type") &&
      !zelk_cfg_is_on("zelk_no_compatible_range"))
    return CDB_SGATE_COMPONENT::PROTOTYPE_COMPATIBLE;
  return view->IsAttOn(" prototyped") ? CDB_SGATE_COMPONENT::PROTOTYPE_KNOWN : CDB_SGATE_COMPONENT::PROTOTYPE_UNKNOWN;
}

const char* entity_name_of(const Instance* inst) {
  if (const char* name = inst->GetAttValue(" entity_name")) return name;
  if (const char* name = inst->View()->GetAttValue(" cell_name")) return name;
  return inst->View()->Owner() ? inst->View()->Owner()->Name() : inst->View()->Name();
}

bool has_positional_ports(const Netlist* view) { return view->Name() && !std::strcmp(view->Name(), ORDERED_PORTS); }

CDB_IO_DIRECTION direction_of(port_dir direction) {
  switch (direction) {
  case DIR_INPUT: return CDB_IO_INPUT;
  case DIR_OUTPUT: return CDB_IO_OUTPUT;
  case DIR_INOUT: return CDB_IO_BIDIR;
  case DIR_NONE: break;
  }
  ZELK_INTERNAL_ERROR("Unknown port type during extraction");
  return CDB_IO_INPUT;
}

/// The bus that holds a port, through all levels; the port itself when it stands alone.
const DesignObj* outermost(const Port* port) {
  const DesignObj* object = port;
  while (const PortBus* bus = object->GetPortBus()) object = bus;
  return object;
}

} // namespace

void create_source_component_for_hdb(BASEX_ELABORATE_INFO* info, const char* name) {
  HDB_DESIGN_UNIT* unit = info->get_design_unit();
  if (!unit || unit->get_source_components()->find(name)) return;
  unit->get_source_components()->create(name);
}

CDB_SGATE_NODE* ZELK_SGATE::create_component(Instance* inst) {
  const Netlist* view = inst->View();
  const char* entity = view ? entity_name_of(inst) : nullptr;
  if (!entity) {
    ZELK_INTERNAL_ERROR("entity != 0");
    return new CDB_SGATE_COMB(CDB_COMB_AND);
  }
  auto* component = new CDB_SGATE_COMPONENT(entity, prototype_of(view));
  component->set_positional_ports(has_positional_ports(view));
  if (const char* configuration = inst->GetAttValue(" config_name"))
    component->set_architecture_name(("C:" + std::string(configuration)).c_str());
  else if (const char* architecture = inst->GetAttValue(" arch_name"))
    component->set_architecture_name(("A:" + std::string(architecture)).c_str());
  set_block_configuration(component, inst);
  const char* library = inst->GetAttValue(" library_name");
  component->set_library_name(library ? library : "");
  if (WYS_INFO::get_wysiwyg_type_for_string(entity) == WYS_UNKNOWN && gen_stricmp(entity, "CLKLOCK") != 0)
    create_source_component_for_hdb(m_elaborate_info, entity);
  set_component_parameters(component, view);
  return component;
}

/// A block configuration travels down to the elaboration of the sub-unit in parameters that no user can name.
void ZELK_SGATE::set_block_configuration(CDB_SGATE_COMPONENT* component, const Instance* inst) const {
  const char* configuration = inst->GetAttValue(" block_config");
  if (!configuration) return;
  component->set_parameter(" block_config", configuration, ACF_VARIABLE_PARAMETER_STRING);
  for (const char* key : {" block_config_lib", " block_config_use_clauses"})
    if (const char* value = inst->GetAttValue(key)) component->set_parameter(key, value, ACF_VARIABLE_PARAMETER_STRING);
  const char* block_config_linefile = inst->GetAttValue(" block_config_linefile");
  ZELK_ASSERT(block_config_linefile != NULL);
  component->set_parameter(" block_config_linefile", block_config_linefile, ACF_VARIABLE_PARAMETER_STRING);
}

void ZELK_SGATE::set_component_parameters(CDB_SGATE_COMPONENT* component, const Netlist* view) const {
  bool is_wysiwyg = WYS_INFO::get_wysiwyg_type_for_string(component->get_entity_name().c_str()) != WYS_UNKNOWN;
  int position = 0;
  for (const Param* param : ParamsOf(view)) {
    std::string text = convert_param_to_norvel_format(param->Value() ? param->Value() : "", is_wysiwyg);
    const char* value = m_elaborate_info->join(text.c_str());
    if (param->Name() && *param->Name())
      component->set_parameter(param->Name(), value, param->VariableType());
    else
      component->set_parameter_at_pos(position, value, param->VariableType());
    position++;
  }
}

std::string convert_param_to_norvel_format(const std::string& value, bool is_wysiwyg) {
  if (!is_wysiwyg) return value == "S\"UNUSED\"" ? "UNUSED" : value;
  if (value.empty() || (value[0] != 'S' && value[0] != 'D'))
    zelk_msg_debug("Warning - WYSIWYG parametervalue %s is not of type STRING or INT", value.c_str());
  bool is_quoted = value.size() >= 3 && value[1] == '"' && value.back() == '"';
  return is_quoted ? value.substr(2, value.size() - 3) : value;
}

void ZELK_SGATE::create_sgate_component_ports() {
  for (const Instance* inst : InstancesOf(m_netlist)) {
    if (inst->Type() != PRIM_NONE || !inst->View()) continue;
    CDB_SGATE_NODE* node = get_node(inst);
    if (!node || node->get_sgate_type() != CDB_SGATE_COMPONENT_ENUM) continue;
    auto* component = static_cast<CDB_SGATE_COMPONENT*>(node);
    if (!component->is_prototype_known() || inst->View()->GetParamNoCase("lpm_type")) continue;
    Set seen;
    for (const Port* port : PortsOf(inst->View())) create_component_port_objects(component, port, seen);
  }
}

void ZELK_SGATE::create_component_port_objects(CDB_SGATE_COMPONENT* component, const Port* port, Set& seen) {
  if (!port->GetPortBus()) {
    create_sgate_component_port(component, port);
    return;
  }
  auto* object = const_cast<DesignObj*>(outermost(port));
  if (seen.Insert(object)) create_component_port_elements(component, object);
}

void ZELK_SGATE::create_component_port_elements(CDB_SGATE_COMPONENT* component, DesignObj* object) {
  if (object->ObjectType() != DB_PORTBUS) {
    create_sgate_component_port(component, static_cast<const Port*>(object));
    return;
  }
  const auto* bus = static_cast<const PortBus*>(object);
  for (unsigned pos = bus->Size(); pos > 0; pos--)
    if (DesignObj* element = bus->ElementAtPos(pos - 1)) create_component_port_elements(component, element);
}

CDB_COMPONENT_PORT* ZELK_SGATE::create_sgate_component_port(CDB_SGATE_COMPONENT* component, const Port* port) {
  CDB_IO_DIRECTION direction = direction_of(port->Direction());
  if (component->is_prototype_known()) return component->retrieve_known_port(port->Name(), direction);
  ZELK_ASSERT_TEXT(m_netlist->SourceLang() != DB_SOURCE_LANG_VHDL, "netlist->SourceLang() != DB_SOURCE_LANG_VHDL");
  std::string base;
  int position = -1;
  int index = -1;
  breakup_portname(port, base, position, index);
  if (component->has_positional_ports()) return component->retrieve_nameless_port(position, index, direction);
  return component->retrieve_unknown_port(base.c_str(), index, direction);
}

namespace {

/// Cuts a trailing index off a bit's name: it must be a plain decimal in brackets.
bool cut_index(std::string& name, long& index) {
  if (name.empty() || name.back() != ']') return false;
  size_t open = name.rfind('[');
  if (open == std::string::npos) return false;
  std::string digits = name.substr(open + 1, name.size() - open - 2);
  bool is_number = !digits.empty() && digits.find_first_not_of("-0123456789") == std::string::npos;
  ZELK_ASSERT_TEXT(is_number, "ret == 1");
  if (!is_number) return false;
  index = std::strtol(digits.c_str(), nullptr, 10);
  name.erase(open);
  return true;
}

/// Ports of ordered connections are named by their positions from 1 on. Instances that leave a position open do not
/// make its port, so that the ports before this one need not be all.
int position_of(const Port* port) {
  int number = 0;
  std::sscanf(outermost(port)->Name(), "p_%d", &number);
  ZELK_ASSERT_TEXT(number > 0, "Bad port position");
  return number - 1;
}

} // namespace

void breakup_portname(const Port* port, std::string& base, int& position, int& index) {
  base = port->Name() ? port->Name() : "";
  ZELK_ASSERT_TEXT(base.size() <= ZELK_DEFAULT_PORT_NAME_SIZE, "len <= ZELK_DEFAULT_PORT_NAME_SIZE");
  index = -1;
  position = port->Owner() && has_positional_ports(port->Owner()) ? position_of(port) : -1;
  const PortBus* bus = port->GetPortBus();
  if (!bus) return;
  index = bus->IndexOf(port);
  long named_index = 0;
  if (!cut_index(base, named_index)) return;
  ZELK_ASSERT_TEXT(named_index >= 0, "Bad port index");
  ZELK_ASSERT_TEXT(named_index == index, "IndexOf disagrees with port[index]");
}

void ZELK_SGATE::create_sgate_io() {
  HTL_PROFILER profiler("ZELK", "***create_sgate_io()***");
  Set seen;
  for (Port* port : PortsOf(m_netlist)) {
    auto* object = const_cast<DesignObj*>(outermost(port));
    if (seen.Insert(object)) create_sgate_io_elements(object);
  }
}

void ZELK_SGATE::create_sgate_io_elements(DesignObj* object) {
  if (object->ObjectType() != DB_PORTBUS) {
    create_sgate_io(static_cast<Port*>(object));
    return;
  }
  const auto* bus = static_cast<const PortBus*>(object);
  for (unsigned pos = bus->Size(); pos > 0; pos--)
    if (DesignObj* element = bus->ElementAtPos(pos - 1)) create_sgate_io_elements(element);
}

void ZELK_SGATE::create_sgate_io(Port* port) {
  constexpr int DEFAULT_GND = 1;
  constexpr int DEFAULT_VCC = 2;
  auto* sgate_io = new CDB_SGATE_IO(direction_of(port->Direction()));
  const char* port_name = port->Name() ? m_elaborate_info->join(port->Name()) : nullptr;
  ZELK_ASSERT(port_name != 0);
  sgate_io->set_string_name(port_name);
  m_sgate_netlist->add_node(sgate_io, 1);
  m_io_map[port] = sgate_io;

  int value = DEFAULT_GND;
  const char* initial = port->IsInput() ? port->GetAttValue(ATT_INITIAL_VALUE) : nullptr;
  if (initial && !std::strcmp(initial, "1")) {
    zelk_msg_debug("Setting default value = VCC for port %s", port_name);
    value = DEFAULT_VCC;
  }
  bool is_vhdl_buffer =
      m_netlist->SourceLang() == DB_SOURCE_LANG_VHDL && port->IsOutput() && port->GetAtt("_ZELK_VHDL_BUF_");
  m_elaborate_info->set_io_default(m_sgate_netlist.get(), sgate_io, value, is_vhdl_buffer);
}
