// Elaborates a module: options of the language, the tree by its names, the kernel's run, types of ports.
#include "zelk_kestrin_verilog_elaborator.h"

#include <algorithm>
#include <climits>
#include <fstream>
#include <memory>

#include "acf.h"
#include "basex.h"
#include "cfg.h"
#include "database/views.h"
#include "htl.h"
#include "tst.h"
#include "util/message.h"
#include "verilog/veri_file.h"
#include "verilog/veri_tokens.h"
#include "verilog/veriexpression.h"
#include "verilog/veriround.h"
#include "zelk_utility.h"

ZELK_KESTRIN_VERILOG_ELABORATOR::~ZELK_KESTRIN_VERILOG_ELABORATOR() { cleanup(); }

Netlist* ZELK_KESTRIN_VERILOG_ELABORATOR::elaborate(BASEX_ELABORATE_INFO* info) {
  m_elaborate_info = info;
  ZELK_ASSERT(m_elaborate_info);
  if (!m_elaborate_info) return nullptr;
  Message::ClearErrorCount();
  ZELK_ASSERT_TEXT(!VeriTreeNode::TopNode(), "VeriTreeNode::TopNode() == 0");
  set_flags();
  bind();
  if (!m_module) return nullptr;
  HTL_PROFILER profiler("ZELK", "***Verilog elaboration of " + std::string(m_module->Name()) + "***");

  std::vector<std::string> names = parameter_names();
  fetch_parameters(names);
  m_actual_parameters = m_module->CreateActualParameters(m_parameters);
  VeriTreeNode::ClearAdditionalDependencies();
  Netlist* canned = Message::ErrorCount() == 0 ? read_netlist_from_file(m_module->Name(), names) : nullptr;
  m_elaborated_netlist = canned;
  if (!canned && Message::ErrorCount() == 0) run_kernel();
  if (!canned && Message::ErrorCount() == 0 && m_elaborate_info->is_top() && cfg_is_on("zelk_register_port_type", true))
    register_ports_type();
  if (Message::ErrorCount() == 0) {
    if (!canned) add_defaults_to_netlist();
    register_parameters(names);
    register_additional_dependencies();
  }
  Netlist* netlist = m_elaborated_netlist;
  cleanup();
  ZELK_ASSERT_TEXT(!VeriTreeNode::TopNode(), "VeriTreeNode::TopNode() == 0");
  return netlist;
}

void ZELK_KESTRIN_VERILOG_ELABORATOR::set_flags() {
  ZELK_KESTRIN_ELABORATOR::set_flags();
  if (zelk_is_option_on(get_unit_option(ACF_VARIABLE_SKIP_INITIAL_CONSTRUCTS)))
    zelk_flags->set_cfg_flag("zelk_dont_elaborate_initial_constructs", 1);
  if (zelk_is_option_off(
          m_elaborate_info->get_option(ACF_SECTION_SYNTHESIS, ACF_VARIABLE_INFER_VERILOG_STATE_MACHINES)))
    zelk_flags->set_cfg_flag("zelk_dont_infer_verilog_fsms", 1);
  set_loop_limit(ACF_VARIABLE_CONSTANT_LOOP_LIMIT, "zelk_verilog_constant_loop_limit");
  set_loop_limit(ACF_VARIABLE_NON_CONSTANT_LOOP_LIMIT, "zelk_verilog_non_constant_loop_limit");
  if (zelk_cfg_is_on("zelk_dont_infer_fsms")) zelk_flags->set_cfg_flag("zelk_dont_infer_verilog_fsms", 1);
  if (zelk_cfg_is_on("zelk_dont_infer_rams")) zelk_flags->set_cfg_flag("zelk_dont_infer_verilog_rams", 1);
  if (zelk_cfg_is_on("zelk_dont_infer_roms")) zelk_flags->set_cfg_flag("zelk_dont_infer_verilog_roms", 1);
}

void ZELK_KESTRIN_VERILOG_ELABORATOR::set_loop_limit(int variable, const char* key) {
  const HDB_OPTION* option = get_unit_option(variable);
  if (option) {
    int limit = option->get_integer();
    ZELK_ASSERT_TEXT(limit >= 0, "Verilog loop limit must be non-negative");
    zelk_flags->set_cfg_flag(key, limit);
  }
  if (zelk_cfg_is_on("zelk_no_loop_limits")) zelk_flags->set_cfg_flag(key, INT_MAX);
}

void ZELK_KESTRIN_VERILOG_ELABORATOR::bind() {
  const HDB_DESIGN_UNIT* unit = m_elaborate_info->get_design_unit();
  std::string library_name = "work";
  unit->get_library(&library_name);
  VeriLibrary* library = veri_file::GetLibrary(library_name.c_str(), 0, 1);
  if (library) {
    m_module = library->GetModule(unit->get_name());
    bind_library(library_name.c_str());
  } else {
    m_module = veri_file::FindModule(unit->get_name(), nullptr);
    bind_library("work");
  }
  ZELK_ASSERT(m_module);
  if (m_module && m_module->IsPrimitive()) m_elaborate_info->set_primitive();
}

/// The netlist library of the same name.
void ZELK_KESTRIN_VERILOG_ELABORATOR::bind_library(const char* name) {
  m_library = Libset::Global()->GetLibrary(name);
  if (m_library) return;
  m_library = new Library(name);
  Libset::Global()->Add(m_library);
}

std::vector<std::string> ZELK_KESTRIN_VERILOG_ELABORATOR::parameter_names() const {
  std::vector<std::string> names;
  for (const VeriParamId* id : m_module->OverridableParams()) names.emplace_back(id->Name());
  // What the instance told of the interfaces that are connected to the ports.
  for (std::string& name : veri_interface_parameter_names(m_module)) names.push_back(std::move(name));
  return names;
}

void ZELK_KESTRIN_VERILOG_ELABORATOR::run_kernel() {
  m_elaborated_netlist =
      m_module->Elaborate(m_library, m_actual_parameters, m_elaborate_info->is_hierarchical_elaboration());
}

/// Parameters that kept their default, with the value that the run gave them.
void ZELK_KESTRIN_VERILOG_ELABORATOR::add_defaults_to_netlist() {
  if (!m_elaborated_netlist) return;
  for (const auto& [name, value] : m_module->ElaboratedParameters())
    if (!m_elaborated_netlist->GetParam(name.c_str()))
      m_elaborated_netlist->AddParam(name.c_str(), value.c_str(), nullptr, ACF_VARIABLE_PARAMETER_STRING);
}

void ZELK_KESTRIN_VERILOG_ELABORATOR::register_additional_dependencies() {
  for (const char* file : KeysOf<const char*>(VeriTreeNode::AdditionalDependencies())) {
    zelk_msg_debug("Additional dependent file %s", file);
    m_elaborate_info->add_dependent_file(file);
  }
}

namespace {

/// Directions of the host by the token of the direction; -1 for what is none.
int direction_of(const VeriVariable* port) {
  switch (port->Dir()) {
  case VERI_INPUT: return 0;
  case VERI_OUTPUT: return 1;
  case VERI_INOUT: return 2;
  default: return -1;
  }
}

/// The keyword of the declared type; "logic" where there is none.
std::string type_name_of(const VeriVariable* port) {
  const VeriTypeDef* type = port->Type();
  const char* word = type && type->Type() ? VeriTreeNode::PrintToken(type->Type()) : nullptr;
  return word ? word : "logic";
}

bool is_signed(const VeriVariable* port) { return port->Type() && port->Type()->Signing() == VERI_SIGNED; }

/// The ranges of a port's vectors from the outermost on.
std::vector<HDB_RANGE> ranges_of(const PortBus* bus) {
  std::vector<HDB_RANGE> ranges;
  while (bus) {
    ranges.push_back({bus->LeftIndex(), bus->RightIndex(), bus->IsUp() ? 0 : 1});
    const DesignObj* element = bus->ElementAtPos(0);
    bus = element && element->ObjectType() == DB_PORTBUS ? static_cast<const PortBus*>(element) : nullptr;
  }
  return ranges;
}

/// Unpacked dimensions make an array over the array of the packed ones, over single bits.
HDB_HDL_TYPE* create_port_hdb_type(const VeriVariable* port, const PortBus* bus) {
  std::string name = type_name_of(port);
  HDB_HDL_TYPE* type = new HDB_LOGIC_TYPE(name, is_signed(port));
  std::vector<HDB_RANGE> ranges = ranges_of(bus);
  auto packed = ranges.begin() + std::min<ptrdiff_t>(port->NumUnpacked(), static_cast<ptrdiff_t>(ranges.size()));
  auto wrap = [&](std::vector<HDB_RANGE> dimensions, bool is_packed) {
    if (dimensions.empty()) return;
    auto* array = new HDB_ARRAY_TYPE(name, std::move(dimensions), is_packed);
    array->set_element_type(type);
    type = array;
  };
  wrap({packed, ranges.end()}, true);
  wrap({ranges.begin(), packed}, false);
  return type;
}

} // namespace

/// The bounds are those of the elaborated ports, since declared ones may depend on parameters.
void ZELK_KESTRIN_VERILOG_ELABORATOR::register_ports_type() {
  HDB_ACTION_PT_INSTANCE* ap_inst = m_elaborate_info->get_action_pt_inst();
  HDB_ENTITY* entity = ap_inst->find_entity(m_module->FullName().c_str(), 1, m_library->Name(), nullptr);
  if (!entity || !m_elaborated_netlist) return;
  entity->clear_ports();
  for (const VeriVariable* port : m_module->Ports()) {
    ZELK_ASSERT_TEXT(port && port->IsPort(), "port && port->IsPort()");
    int direction = direction_of(port);
    const PortBus* bus = m_elaborated_netlist->GetPortBus(port->Name());
    if (direction < 0 || (!bus && !m_elaborated_netlist->GetPort(port->Name()))) continue;
    zelk_msg_debug("Registering HDB_PORT : %s ", port->Name());
    entity->create_port(port->Name(), direction, ap_inst->get_type_db()->add_type(create_port_hdb_type(port, bus)));
  }
  dump_port_types(entity);
}

void ZELK_KESTRIN_VERILOG_ELABORATOR::dump_port_types(HDB_ENTITY* entity) {
  auto is_asked = [](const char* variable, const char* test) {
    return zelk_cfg_is_on(variable) || (tst_is_regtest_mode() && tst_get_value("General Section", test) == "on");
  };
  std::string name;
  m_elaborate_info->get_dump_name(&name);
  if (is_asked("dump_hdb_type_info", "HDB_TYPE_INFO_TEST")) {
    std::ofstream stream(name + ".hdb_type");
    m_elaborate_info->get_action_pt_inst()->get_type_db()->dump(stream);
  }
  if (is_asked("dump_hdb_port_info", "HDB_PORT_INFO_TEST")) {
    std::ofstream stream(name + ".hdb_port");
    entity->dump(stream);
  }
}

void ZELK_KESTRIN_VERILOG_ELABORATOR::cleanup() {
  VeriModule::DeleteParams(m_actual_parameters);
  m_actual_parameters = nullptr;
  m_module = nullptr;
  ZELK_KESTRIN_ELABORATOR::cleanup();
}
