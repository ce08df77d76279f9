// Synthesis attributes after all nodes and connections stand: they become assignments of the host, on a node by its
// name or on the whole netlist, and fields of nodes. An attribute without a handler means nothing to the host.
#include <charconv>
#include <cstring>

#include "acf.h"
#include "basex.h"
#include "cfg.h"
#include "database/views.h"
#include "htl.h"
#include "util/linefile.h"
#include "zelk_msgs.h"
#include "zelk_sgate.h"
#include "zelk_utility.h"

void ZELK_SGATE::fill_attribute_table() {
  m_attribute_table = {
      {ATT_NORVEL_ATTRIBUTE, &ZELK_SGATE::process_norvel_attribute},
      {ATT_CHIP_PIN, &ZELK_SGATE::process_chip_pin_attribute},
      {ATT_DIRECT_ENABLE, &ZELK_SGATE::process_direct_enable_attribute},
      {ATT_DONT_MERGE, &ZELK_SGATE::process_dont_merge_attribute},
      {ATT_DONT_REPLICATE, &ZELK_SGATE::process_dont_replicate_attribute},
      {ATT_DONT_RETIME, &ZELK_SGATE::process_dont_retime_attribute},
      {ATT_FSM_ENCODING, &ZELK_SGATE::process_fsm_encoding_attribute},
      {ATT_INITIAL_VALUE, &ZELK_SGATE::process_initial_value_attribute},
      {ATT_MAXFAN, &ZELK_SGATE::process_maxfan_attribute},
      {ATT_MAXIMUM_DEPTH, &ZELK_SGATE::process_max_ram_depth_attribute},
      {ATT_MESSAGE_DISABLE, &ZELK_SGATE::process_msg_enable_disable_attributes},
      {ATT_MESSAGE_ENABLE, &ZELK_SGATE::process_msg_enable_disable_attributes},
      {ATT_MULTSTYLE, &ZELK_SGATE::process_multstyle_attribute},
      {ATT_NOPRUNE, &ZELK_SGATE::process_noprune_attribute},
      {ATT_PRESERVE, &ZELK_SGATE::process_preserve_attribute},
      {ATT_RAMSTYLE, &ZELK_SGATE::process_ramstyle_attribute},
      {ATT_RAM_INIT_FILE, &ZELK_SGATE::process_ram_init_file_attribute},
      {ATT_ROMSTYLE, &ZELK_SGATE::process_ramstyle_attribute},
      {ATT_SYN_ALLOW_RETIMING, &ZELK_SGATE::process_dont_retime_attribute},
      {ATT_SYN_REPLICATE, &ZELK_SGATE::process_dont_replicate_attribute},
      {ATT_USEIOFF, &ZELK_SGATE::process_useioff_attribute},
  };
}

void ZELK_SGATE::process_attributes() {
  if (is_on(OPTION_NO_ATTRIBUTES)) return;
  HTL_PROFILER profiler("ZELK", "***process_attributes()***");
  process_attributes_of(m_netlist);
  for (PortBus* bus : PortBusesOf(m_netlist)) process_attributes_of(bus);
  for (Port* port : PortsOf(m_netlist)) process_attributes_of(port);
  for (Instance* inst : InstancesOf(m_netlist)) process_attributes_of(inst);
  for (Net* net : NamedNetsOf(m_netlist)) process_attributes_of(net);
  for (Net* net : AutoNetsOf(m_netlist)) process_attributes_of(net);
  for (Fsm* fsm : FsmsOf(m_netlist)) process_attributes_of(fsm);
}

void ZELK_SGATE::process_attributes_of(DesignObj* obj) {
  if (!obj->HasAtts()) return;
  for (Att* att : AttributesOf(obj)) process_single_attribute(obj, att);
}

void ZELK_SGATE::process_single_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att);
  auto handler = m_attribute_table.find(att->Type());
  if (handler != m_attribute_table.end()) (this->*handler->second)(obj, att);
}

void ZELK_SGATE::set_assignment(int variable, const char* value) {
  ZELK_ASSERT(value);
  m_elaborate_info->set_global_assignment(variable, value);
}

void ZELK_SGATE::set_instance_assignment(const char* name, int variable, const char* value) {
  ZELK_ASSERT(name && value);
  m_elaborate_info->set_instance_assignment(name, variable, value);
}

void ZELK_SGATE::set_instance_assignment(const CDB_SGATE_NODE* node, int variable, const char* value) {
  ZELK_ASSERT(node && value);
  if (node && node->get_string_name()) set_instance_assignment(node->get_string_name(), variable, value);
}

namespace {

/// The object as what its type says it is, or null. The only place where attributes' owners are told apart.
const Instance* as_instance(const DesignObj* obj) {
  return obj->ObjectType() == DB_INSTANCE ? static_cast<const Instance*>(obj) : nullptr;
}
const Port* as_port(const DesignObj* obj) {
  return obj->ObjectType() == DB_PORT ? static_cast<const Port*>(obj) : nullptr;
}
const PortBus* as_port_bus(const DesignObj* obj) {
  return obj->ObjectType() == DB_PORTBUS ? static_cast<const PortBus*>(obj) : nullptr;
}
const Net* as_net(const DesignObj* obj) { return obj->ObjectType() == DB_NET ? static_cast<const Net*>(obj) : nullptr; }
const Fsm* as_fsm(const DesignObj* obj) { return obj->ObjectType() == DB_FSM ? static_cast<const Fsm*>(obj) : nullptr; }

/// The bits of a port in the order of its declaration, through all levels.
void collect_bits(const PortBus* bus, std::vector<const Port*>& bits) {
  for (const DesignObj* element : ElementsOf(bus)) {
    if (const PortBus* inner = as_port_bus(element))
      collect_bits(inner, bits);
    else if (const Port* port = as_port(element))
      bits.push_back(port);
  }
}

bool has_no_node(const Instance* inst) { return inst->Type() == PRIM_PWR || inst->Type() == PRIM_GND; }

} // namespace

void ZELK_SGATE::assign(DesignObj* obj, int variable, const char* value) {
  if (obj == m_netlist) {
    set_assignment(variable, value);
    return;
  }
  const Instance* inst = as_instance(obj);
  if (!inst || has_no_node(inst)) return;
  const CDB_SGATE_NODE* node = get_node(inst);
  ZELK_ASSERT(node);
  if (node) set_instance_assignment(node, variable, value);
}

void ZELK_SGATE::process_dont_merge_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_DONT_MERGE);
  if (att->IsOn()) assign(obj, ACF_VARIABLE_NO_MERGE, "on");
}

void ZELK_SGATE::process_preserve_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_PRESERVE);
  if (att->IsOn()) assign(obj, ACF_VARIABLE_PRESERVE_REGISTER, "on");
}

void ZELK_SGATE::process_noprune_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_NOPRUNE);
  if (!att->IsOn()) return;
  assign(obj, ACF_VARIABLE_KEEP_FANOUT_FREE_NODE, "on");
  const Instance* inst = as_instance(obj);
  bool is_register = inst && kestrin_is_register_type(inst->Type());
  if (is_register || obj == m_netlist) assign(obj, ACF_VARIABLE_PRESERVE_REGISTER, "on");
}

void ZELK_SGATE::process_maxfan_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_MAXFAN);
  std::string value = zelk_unquote(att->Value());
  int fanout = 0;
  std::from_chars(value.data(), value.data() + value.size(), fanout);
  if (fanout > 0) assign(obj, ACF_VARIABLE_MAXIMUM_FANOUT, value.c_str());
}

void ZELK_SGATE::process_direct_enable_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_DIRECT_ENABLE);
  if (att->IsOn() && obj != m_netlist) assign(obj, ACF_VARIABLE_IMPLEMENT_AS_CLOCK_ENABLE, "on");
}

void ZELK_SGATE::process_dont_replicate_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && (att->Type() == ATT_DONT_REPLICATE || att->Type() == ATT_SYN_REPLICATE));
  bool forbids = att->Type() == ATT_DONT_REPLICATE ? att->IsOn() : !att->IsOn();
  if (forbids) assign(obj, ACF_VARIABLE_NETLIST_OPTIMIZATION, "Never Allow");
}

void ZELK_SGATE::process_dont_retime_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && (att->Type() == ATT_DONT_RETIME || att->Type() == ATT_SYN_ALLOW_RETIMING));
  bool forbids = att->Type() == ATT_DONT_RETIME ? att->IsOn() : !att->IsOn();
  if (forbids) assign(obj, ACF_VARIABLE_NETLIST_OPTIMIZATION, "Never Allow");
}

void ZELK_SGATE::process_useioff_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_USEIOFF);
  std::vector<const Port*> bits;
  if (const PortBus* bus = as_port_bus(obj)) collect_bits(bus, bits);
  if (const Port* port = as_port(obj)) bits.push_back(port);
  const char* value = att->IsOn() ? "on" : "off";
  for (const Port* port : bits) {
    const CDB_SGATE_IO* io = get_io(port);
    if (!io) continue;
    if (port->IsInout()) set_instance_assignment(io, ACF_VARIABLE_FAST_OUTPUT_ENABLE_REGISTER, value);
    if (!port->IsInput()) set_instance_assignment(io, ACF_VARIABLE_FAST_OUTPUT_REGISTER, value);
    if (!port->IsOutput()) set_instance_assignment(io, ACF_VARIABLE_FAST_INPUT_REGISTER, value);
  }
}

void ZELK_SGATE::process_initial_value_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_INITIAL_VALUE);
  const Instance* inst = as_instance(obj);
  if (!inst || !kestrin_is_register_type(inst->Type())) return;
  CDB_SGATE_NODE* sgate_node = get_node(inst);
  ZELK_ASSERT(sgate_node);
  if (!sgate_node || sgate_node->get_sgate_type() == CDB_SGATE_STATE_ENUM) return;
  ZELK_ASSERT_TEXT(sgate_node->get_sgate_type() == CDB_SGATE_DFF_ENUM, "sgate_dff");
  auto* sgate_dff = static_cast<CDB_SGATE_DFF*>(sgate_node);
  const char* value = att->Value() ? att->Value() : "";
  if (!std::strcmp(value, "1")) sgate_dff->set_power_up(CDB_POWER_UP_HIGH);
  if (!std::strcmp(value, "0")) sgate_dff->set_power_up(CDB_POWER_UP_LOW);
}

void ZELK_SGATE::process_norvel_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_NORVEL_ATTRIBUTE);
  const char* file = LineFile::GetFileName(obj->Linefile());
  if (!file) return;
  std::string text = convert_norvel_attribute_string(att->Value());
  MSG_TEXT_LOCATION_SCHEMA place(file, static_cast<int>(LineFile::GetLineNo(obj->Linefile())), 0);
  if (obj == m_netlist) {
    m_elaborate_info->set_global_text_assignment(text.c_str(), place);
    return;
  }
  const CDB_SGATE_NODE* node = nullptr;
  if (const Port* port = as_port(obj)) node = get_io(port);
  if (const Instance* inst = as_instance(obj)) node = get_node(inst);
  if (node && node->get_string_name())
    m_elaborate_info->set_text_assignment(node->get_string_name(), text.c_str(), place);
}

void ZELK_SGATE::process_multstyle_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_MULTSTYLE);
  int style = zelk_parse_multstyle(att->Value());
  if (obj == m_netlist) {
    if (style)
      set_assignment(ACF_VARIABLE_MULTIPLIER_STYLE, acf_enum_type_to_user_string(style));
    else
      zelk_msg_debug("Ignored illegal multstyle = %s attribute attached to entity", att->Value());
    return;
  }
  const Instance* inst = as_instance(obj);
  if (!inst || (inst->Type() != OPER_MULTIPLIER && inst->Type() != PRIM_NONE)) return;
  if (style)
    assign(obj, ACF_VARIABLE_MULTIPLIER_STYLE, acf_enum_type_to_user_string(style));
  else
    zelk_msg_debug("Ignored illegal multstyle = %s attribute attached to instance %s", att->Value(),
                   inst->ExternalName());
}

CDB_SGATE_ASYNCHRONOUS_RAM* ZELK_SGATE::get_ram(const DesignObj* obj) const {
  const Instance* inst = as_instance(obj);
  if (!inst || inst->Type() != OPER_DUAL_PORT_RAM) return nullptr;
  CDB_SGATE_NODE* sgate_node = get_node(inst);
  ZELK_ASSERT(sgate_node);
  if (!sgate_node) return nullptr;
  ZELK_ASSERT(sgate_node->get_sgate_type() == CDB_SGATE_ASYNCHRONOUS_RAM_ENUM);
  return static_cast<CDB_SGATE_ASYNCHRONOUS_RAM*>(sgate_node);
}

void ZELK_SGATE::process_ram_init_file_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_RAM_INIT_FILE);
  if (CDB_SGATE_ASYNCHRONOUS_RAM* ram = get_ram(obj)) ram->set_mif_file(zelk_unquote(att->Value()).c_str());
}

void ZELK_SGATE::process_max_ram_depth_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_MAXIMUM_DEPTH);
  std::string value = zelk_unquote(att->Value());
  unsigned depth = 0;
  auto [end, problem] = std::from_chars(value.data(), value.data() + value.size(), depth);
  if (value.empty() || problem != std::errc() || end != value.data() + value.size()) {
    zelk_msg_debug("Found illegal value (%s) for maximum_depth attribute on design object \"%s\"", value.c_str(),
                   obj->ExternalName());
  } else if (CDB_SGATE_ASYNCHRONOUS_RAM* ram = get_ram(obj)) {
    ram->set_maximum_depth(depth);
  } else {
    zelk_msg_debug("Ignoring maximum_depth attribute with value %s.  ZELK didn't infer any RAMs at this location.",
                   value.c_str());
  }
}

void ZELK_SGATE::process_ramstyle_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && (att->Type() == ATT_RAMSTYLE || att->Type() == ATT_ROMSTYLE));
  ZELK_RAMSTYLE style = zelk_parse_ramstyle_attribute(att->Value());
  if (!style.is_legal) {
    zelk_msg_debug("Found illegal value for ramstyle/romstyle attribute on design object \"%s\"", obj->ExternalName());
    return;
  }
  if (obj == m_netlist) {
    for (const Instance* inst : InstancesOf(m_netlist)) set_ram_style(inst, obj, att, style);
    return;
  }
  const Instance* inst = as_instance(obj);
  if (const Net* net = as_net(obj)) inst = net->Driver();
  if (inst) set_ram_style(inst, obj, att, style);
}

void ZELK_SGATE::set_ram_style(const Instance* inst, const DesignObj* obj, const Att* att, const ZELK_RAMSTYLE& style) {
  CDB_SGATE_ASYNCHRONOUS_RAM* ram = get_ram(inst);
  if (!ram) return;
  bool is_ramstyle = att->Type() == ATT_RAMSTYLE;
  // What stands on the memory itself is closer than what stands on the unit.
  bool is_overridden = obj == m_netlist && inst->GetAtt(att->Type());
  if (is_overridden) return;
  if (inst->GetAtt(" :rom")) {
    if (is_ramstyle && obj->GetAtt(ATT_ROMSTYLE)) return;
    if (style.has_block_type) ram->set_block_type(style.block_type);
    return;
  }
  if (!is_ramstyle) return;
  if (style.has_block_type) ram->set_block_type(style.block_type);
  if (!style.no_rw_check) return;
  ram->set_no_rw_check(true);
  static const bool old_no_rw_check_interpretation = zelk_cfg_is_on("old_no_rw_check_interpretation");
  if (!old_no_rw_check_interpretation) return;
  using RAM = CDB_SGATE_ASYNCHRONOUS_RAM;
  for (RAM::PORT read : {RAM::PORT_A, RAM::PORT_B})
    for (RAM::PORT write : {RAM::PORT_A, RAM::PORT_B}) ram->set_read_during_write(read, write, CDB_READ_DONT_CARE);
}

void ZELK_SGATE::process_fsm_encoding_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_FSM_ENCODING);
  const Fsm* fsm = as_fsm(obj);
  ZELK_FSM_ENCODING wanted = zelk_parse_fsm_encoding(att->Value(), fsm ? static_cast<int>(fsm->NumStates()) : -1);
  const char* encoding = wanted.encoding ? acf_enum_type_to_user_string(wanted.encoding) : nullptr;
  if (obj == m_netlist) {
    if (wanted.is_safe) set_assignment(ACF_VARIABLE_SAFE_STATE_MACHINE, "on");
    if (encoding) set_assignment(ACF_VARIABLE_STATE_MACHINE_ENCODING, encoding);
    return;
  }
  const char* name = nullptr;
  if (fsm) {
    const CDB_STATE_MACHINE* machine = get_machine(fsm);
    bool is_logic = !is_on(OPTION_CONVERT_FSM) || !fsm->HasCleanReset();
    if (is_logic) return;
    ZELK_ASSERT_TEXT(machine, "couldn't find state machine when applying FSM encoding attribute");
    name = machine ? machine->get_string_name() : nullptr;
  } else if (const Instance* inst = as_instance(obj); inst && inst->Type() == PRIM_NONE) {
    const CDB_SGATE_NODE* node = get_node(inst);
    ZELK_ASSERT(node);
    name = node ? node->get_string_name() : nullptr;
  }
  if (!name) return;
  if (wanted.is_safe) set_instance_assignment(name, ACF_VARIABLE_SAFE_STATE_MACHINE, "on");
  if (encoding) set_instance_assignment(name, ACF_VARIABLE_STATE_MACHINE_ENCODING, encoding);
}

void ZELK_SGATE::process_chip_pin_attribute(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && att->Type() == ATT_CHIP_PIN);
  std::vector<std::string> pins;
  if (!parse_chip_pin_attr(att->Value(), pins)) return;
  if (const PortBus* bus = as_port_bus(obj)) {
    assign_pins(bus, att, pins);
    return;
  }
  const Port* port = as_port(obj);
  const CDB_SGATE_IO* io = port ? get_io(port) : nullptr;
  if (!io) return;
  if (pins.size() != 1) {
    m_elaborate_info->queue_message(MSG_ZELK::W::TOO_FEW_OR_TOO_MANY_PIN_ASSIGNMENTS(att->Key(), port->ExternalName(),
                                                                                     static_cast<int>(pins.size()), 1));
    return;
  }
  zelk_msg_debug("Pin %s assigned to location %s", io->get_string_name(), pins[0].c_str());
  set_instance_assignment(io, ACF_VARIABLE_LOCATION, pins[0].c_str());
}

void ZELK_SGATE::assign_pins(const PortBus* bus, const Att* att, const std::vector<std::string>& pins) {
  std::vector<const Port*> bits;
  collect_bits(bus, bits);
  if (bits.size() != pins.size()) {
    m_elaborate_info->queue_message(MSG_ZELK::W::TOO_FEW_OR_TOO_MANY_PIN_ASSIGNMENTS(
        att->Key(), bus->ExternalName(), static_cast<int>(pins.size()), static_cast<int>(bits.size())));
    return;
  }
  for (size_t i = 0; i < bits.size(); i++) {
    const CDB_SGATE_IO* io = get_io(bits[i]);
    if (!io) continue;
    zelk_msg_debug("Pin %s assigned to %s", io->get_string_name(), pins[i].c_str());
    set_instance_assignment(io, ACF_VARIABLE_LOCATION, pins[i].c_str());
  }
}

void ZELK_SGATE::process_msg_enable_disable_attributes(DesignObj* obj, Att* att) {
  ZELK_ASSERT(obj && att && (att->Type() == ATT_MESSAGE_DISABLE || att->Type() == ATT_MESSAGE_ENABLE));
  std::vector<std::string> ids;
  if (!parse_msg_attr_value(att->Value(), ids)) return;
  int variable = att->Type() == ATT_MESSAGE_DISABLE ? ACF_VARIABLE_MESSAGE_DISABLE : ACF_VARIABLE_MESSAGE_ENABLE;
  for (const std::string& id : ids)
    if (is_valid_msg_id(id) && !is_hdl_msg_id(id)) assign(obj, variable, id.c_str());
}

void ZELK_SGATE::ip_debug_alias_name_preprocess() {
  std::unordered_set<std::string> handled;
  for (Net* net : NamedNetsOf(m_netlist)) {
    const char* alias = net->GetAttValue(ATT_IP_DEBUG_ALIAS);
    if (!net->Linefile() || !alias || !*alias) continue;
    std::string base(net->Name());
    bool is_bit = base.find('[') != std::string::npos;
    base.erase(std::min(base.find('['), base.size()));
    if (handled.count(base)) continue;
    ip_debug_alias_net(net, zelk_unquote(alias));
    if (!is_bit) handled.insert(base);
  }
}

/// An alias belongs to one net; a name that the netlist already has for another net is no alias.
void ZELK_SGATE::ip_debug_alias_net(Net* net, const std::string& alias) {
  const Net* namesake = m_netlist->GetNet(alias.c_str());
  bool is_taken = !m_ip_debug_aliases.emplace(alias, net).second || (namesake && namesake != net);
  if (is_taken) m_elaborate_info->queue_message(MSG_ZELK::W::IP_DEBUG_ALIAS_ATTRIBUTE_ILLEGAL(alias.c_str()));
}

void ZELK_SGATE::make_ip_debug_visible(CDB_SGATE_OTERM* oterm, const Net* net) {
  std::string name = zelk_unquote(net->GetAttValue(ATT_IP_DEBUG_ALIAS));
  auto alias = m_ip_debug_aliases.find(name);
  if (alias == m_ip_debug_aliases.end() || alias->second != net) {
    do name = "norvel_ip_debug_alias_net_" + std::to_string(m_ip_debug_count++);
    while (m_ip_debug_aliases.count(name) || m_netlist->GetNet(name.c_str()));
  }
  CDB_SGATE_NODE* node = oterm->get_node();
  node->set_string_name(name.c_str());
  oterm->set_string_name(name.c_str());
  for (int variable :
       {ACF_VARIABLE_PRESERVE_REGISTER, ACF_VARIABLE_KEEP_FANOUT_FREE_NODE, ACF_VARIABLE_IP_DEBUG_VISIBLE})
    set_instance_assignment(node, variable, "on");
}
