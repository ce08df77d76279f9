// The order of the conversion's steps and the making of nodes: which node stands for which instance, and its name.
#include "zelk_sgate.h"

#include "acf.h"
#include "basex.h"
#include "cfg.h"
#include "database/ram.h"
#include "database/views.h"
#include "eti_util.h"
#include "hdb_design_unit.h"
#include "htl.h"
#include "util/linefile.h"
#include "zelk_msgs.h"
#include "zelk_utility.h"

namespace {

const bool zelk_debug_sgate_conversion = zelk_cfg_is_on("zelk_debug_sgate_conversion");

} // namespace

ZELK_SGATE::ZELK_SGATE(BASEX_ELABORATE_INFO* info, Netlist* netlist)
    : m_elaborate_info(info), m_netlist(netlist), m_design_unit(info->get_design_unit()) {
  fill_attribute_table();
}

ZELK_SGATE::~ZELK_SGATE() = default;

bool ZELK_SGATE::convert_netlist() {
  HTL_PROFILER profiler("ZELK", "***converting kestrin netlist to sgates***");
  read_options();
  m_sgate_netlist = std::make_unique<CDB_SGATE_NETLIST>();
  prepare_verification_mode();
  if (is_ip_debug_wanted()) m_options |= OPTION_IP_DEBUG;
  if (zelk_debug_sgate_conversion)
    zelk_msg_debug("Converting %s with options %x", m_netlist->ExternalName(), m_options);
  m_sgate_hierarchy = std::make_unique<CDB_SGATE_HIERARCHY>();
  m_machines = m_sgate_hierarchy->get_machines();
  ZELK_ASSERT_TEXT(m_machines, "m_sgate_hierarchy->get_machines() != 0");
  m_sgate_hierarchy->set_instance_name(m_elaborate_info->get_instance_name());

  if (!create_sgate_instances()) {
    m_sgate_hierarchy.reset();
    m_sgate_netlist.reset();
    return false;
  }
  fill_hierarchy();
  CDB_SGATE_HIERARCHY* hierarchy = m_sgate_hierarchy.get();
  hierarchy->set_netlist(m_sgate_netlist.release());
  m_elaborate_info->set_hierarchy(m_sgate_hierarchy.release());
  m_elaborate_info->set_success(true);
  register_net_and_instance_names();
  register_port_names();
  if (zelk_cfg_is_on("zelk_dump_sgate")) dump_sgate_text_netlist_canonical(*hierarchy);
  return true;
}

void ZELK_SGATE::fill_hierarchy() {
  create_sgate_io();
  if (!zelk_cfg_is_on("zelk_no_compatible_range")) create_sgate_component_ports();
  create_sgate_connections();
  convert_const_bufs_to_const_iterms();
  process_attributes();
  register_user_identifiers();
  protect_keep_lcells();
  if (!m_machines->empty()) sanity_check_state_machines();
}

void ZELK_SGATE::read_options() {
  if (zelk_cfg_is_on("zelk_enable_tieoff")) m_options |= OPTION_TIEOFF;
  if (!zelk_cfg_is_on("zelk_dont_convert_fsm") && !m_elaborate_info->is_no_inference_mode())
    m_options |= OPTION_CONVERT_FSM;
  if (zelk_cfg_is_on("zelk_disable_attribute")) m_options |= OPTION_NO_ATTRIBUTES;
}

void ZELK_SGATE::prepare_verification_mode() {
  if (zelk_cfg_is_on("sgn_stop_verplex_mode")) return;
  HDB_ACTION_PT_INSTANCE* ap_inst = m_elaborate_info->get_action_pt_inst();
  ZELK_ASSERT_TEXT(ap_inst, "ap_inst != NULL");
  if (!ap_inst) return;
  HDB_OPTION* option = zelk_get_string_option(ap_inst, ACF_SECTION_EDA_TOOLS, ACF_VARIABLE_EDA_FORMAL_TOOL);
  if (!option) return;
  switch (ETI_UTIL::eda_tool_type_string_to_enum(option->get_string())) {
  case ETI_TOOL_CONFORMAL:
  case ETI_TOOL_FORMALITY:
  case ETI_TOOL_CUSTOM_FORMAL: m_sgate_netlist->initialize_verification_mode(); break;
  default: break;
  }
}

bool ZELK_SGATE::is_ip_debug_wanted() const {
  const HDB_SOURCE_FILE* file = m_design_unit ? m_design_unit->get_file() : nullptr;
  if (file && file->is_encrypted() &&
      zelk_is_option_on(m_elaborate_info->get_option(ACF_SECTION_HDL_INPUT, ACF_VARIABLE_IP_DEBUG)))
    return true;
  return zelk_cfg_is_on("zelk_enable_ip_debug");
}

bool ZELK_SGATE::create_sgate_instances() {
  HTL_PROFILER profiler("ZELK", "***create_sgate_instances()***");
  m_instance_map.reserve(m_netlist->NumOfInsts());
  if (m_netlist->NumOfFsms()) {
    if (is_on(OPTION_CONVERT_FSM)) {
      zelk_msg_debug("Converting %u Kestrin FSMs", m_netlist->NumOfFsms());
      create_state_machines();
    } else {
      zelk_msg_debug("Keeping %u Kestrin FSMs as regular logic", m_netlist->NumOfFsms());
    }
  }
  // All refusals of the netlist are told in one run.
  for (Instance* inst : InstancesOf(m_netlist)) create_sgate_instance(inst);
  if (m_is_refused) return false;
  if (!m_machines->empty()) set_states();
  return true;
}

namespace {

/// Not every instance has a node: constants are told to their loads, and refused kinds end the conversion.
bool has_node(prim_type_enum type) { return type != PRIM_PWR && type != PRIM_GND; }

CDB_SGATE_NODE* create_gate(CDB_COMB_TYPE type, bool is_inverted) {
  auto* node = new CDB_SGATE_COMB(type);
  if (is_inverted) node->retrieve_oterm(CDB_TERM_OUTPUT)->set_inverted(true);
  return node;
}

CDB_SGATE_NODE* create_operator(CDB_OPERATOR_TYPE type, const Instance* inst) {
  auto* node = new CDB_SGATE_OPERATOR(type);
  node->set_signed(inst->IsSigned());
  return node;
}

/// What has no node in the host is a gap in the polish; the gate keeps the conversion going.
CDB_SGATE_NODE* create_stand_in(const char* text) {
  ZELK_INTERNAL_ERROR(text);
  return new CDB_SGATE_COMB(CDB_COMB_AND);
}

CDB_SGATE_NODE* create_full_adder() {
  auto* node = new CDB_SGATE_COMPONENT("fadd", CDB_SGATE_COMPONENT::PROTOTYPE_KNOWN);
  node->set_host_primitive(true);
  return node;
}

CDB_SGATE_NODE* create_undefined_source() {
  auto* node = new CDB_SGATE_BUFFER(CDB_BUFFER_CONSTANT_SOURCE);
  node->retrieve_iterm(CDB_TERM_DATA)->set_gnd();
  return node;
}

} // namespace

CDB_SGATE_NODE* ZELK_SGATE::create_node(Instance* inst) {
  constexpr bool INVERTED = true;
  constexpr bool PLAIN = false;
  std::string line = std::to_string(LineFile::GetLineNo(inst->Linefile()));
  const char* file = LineFile::GetFileName(inst->Linefile());
  switch (inst->Type()) {
  case PRIM_NONE: return create_component(inst);
  case PRIM_PWR:
  case PRIM_GND: return nullptr;
  case PRIM_X:
  case PRIM_Z: return create_undefined_source();
  case PRIM_INV: return create_gate(CDB_COMB_NOT, PLAIN);
  case PRIM_BUF: return create_buffer(inst);
  case PRIM_AND:
  case OPER_REDUCE_AND: return create_gate(CDB_COMB_AND, PLAIN);
  case PRIM_NAND:
  case OPER_REDUCE_NAND: return create_gate(CDB_COMB_AND, INVERTED);
  case PRIM_OR:
  case OPER_REDUCE_OR: return create_gate(CDB_COMB_OR, PLAIN);
  case PRIM_NOR:
  case OPER_REDUCE_NOR: return create_gate(CDB_COMB_OR, INVERTED);
  case PRIM_XOR:
  case OPER_REDUCE_XOR: return create_gate(CDB_COMB_XOR, PLAIN);
  case PRIM_XNOR:
  case OPER_REDUCE_XNOR: return create_gate(CDB_COMB_XOR, INVERTED);
  case PRIM_MUX: return new CDB_SGATE_MUX;
  case PRIM_PULLUP:
  case PRIM_PULLDOWN: refuse(MSG_ZELK::E::VERI_UNSUPPORTED_PULLUP(file, line.c_str()), inst); return nullptr;
  case PRIM_TRI: return new CDB_SGATE_IO_BUF;
  case PRIM_DLATCH: return create_stand_in("Unexpected PRIM_DLATCH");
  case PRIM_DLATCHRS: return new CDB_SGATE_LATCH;
  case PRIM_DFF:
  case PRIM_DFFRS: return create_register(inst);
  case PRIM_NMOS:
  case PRIM_PMOS:
  case PRIM_CMOS: refuse(MSG_ZELK::E::VERI_UNSUPPORTED_PRIM_GATE(file, line.c_str()), inst); return nullptr;
  case PRIM_TRAN: refuse(MSG_ZELK::E::VERI_UNSUPPORTED_TRAN(file, line.c_str()), inst); return nullptr;
  case PRIM_FADD: return create_full_adder();
  case PRIM_CLOCK: return create_stand_in("Found unconverted clock primitive during SGATE conversion");
  case OPER_ADDER: return create_operator(CDB_OPERATOR_ADDER, inst);
  case OPER_MULTIPLIER: return create_operator(CDB_OPERATOR_MULTIPLIER, inst);
  case OPER_DIVIDER: return create_operator(CDB_OPERATOR_DIVIDER, inst);
  case OPER_MODULO: return create_operator(CDB_OPERATOR_MODULO, inst);
  case OPER_SHIFT_LEFT: return create_operator(CDB_OPERATOR_SHIFT_LEFT, inst);
  case OPER_SHIFT_RIGHT: return create_operator(CDB_OPERATOR_SHIFT_RIGHT, inst);
  case OPER_ROTATE_LEFT: return create_operator(CDB_OPERATOR_ROTATE_LEFT, inst);
  case OPER_ROTATE_RIGHT: return create_operator(CDB_OPERATOR_ROTATE_RIGHT, inst);
  case OPER_LESSTHAN: return create_operator(CDB_OPERATOR_LESS_THAN, inst);
  case OPER_EQUAL: return new CDB_SGATE_OPERATOR(CDB_OPERATOR_EQUAL);
  case OPER_NTO1MUX: return new CDB_SGATE_OPERATOR(CDB_OPERATOR_N_TO_1_MUX);
  case OPER_SELECTOR: return new CDB_SGATE_OPERATOR(CDB_OPERATOR_SELECTOR);
  case OPER_DECODER: return new CDB_SGATE_OPERATOR(CDB_OPERATOR_DECODER);
  case OPER_PRIO_SELECTOR: return create_stand_in("No support for OPER_PRIOR_SELECTOR");
  case OPER_DUAL_PORT_RAM: return create_ram(inst);
  case PRIM_PSL_ASSERTION:
  case PRIM_INFER_POINT:
  case OPER_LUT:
  case PRIM_ANY: break;
  }
  return create_stand_in("Unknown netlist object in SGATE conversion");
}

void ZELK_SGATE::refuse(MSG_BASE* message, const Instance* inst) {
  const char* file = LineFile::GetFileName(inst->Linefile());
  MSG_TEXT_LOCATION_SCHEMA place(file, static_cast<int>(LineFile::GetLineNo(inst->Linefile())), 0);
  message->set_location(place.get_file().c_str(), &place, "", "");
  m_elaborate_info->queue_message(message);
  m_is_refused = true;
}

CDB_SGATE_NODE* ZELK_SGATE::create_buffer(Instance* inst) const {
  auto is_any_on = [inst](std::initializer_list<ATT_ENUM> types) {
    for (ATT_ENUM type : types)
      if (inst->IsAttOn(type)) return true;
    return false;
  };
  buffer_type_enum type = inst->BufferType();
  if (type == USER_NET) return new CDB_SGATE_COMB(CDB_COMB_BUF);
  if (type == DIRECTIONAL) return new CDB_SGATE_BUFFER(CDB_BUFFER_DIRECTIONAL);
  if (type == KEEP || is_any_on({ATT_KEEP, ATT_MAXFAN, ATT_DIRECT_ENABLE}))
    return new CDB_SGATE_BUFFER(CDB_BUFFER_KEEP);
  if (is_on(OPTION_IP_DEBUG) && (inst->GetAtt(ATT_IP_DEBUG_VISIBLE) || inst->GetAtt(ATT_IP_DEBUG_ALIAS)))
    return new CDB_SGATE_BUFFER(CDB_BUFFER_KEEP);
  if (inst->GetAtt(ATT_NORVEL_ATTRIBUTE)) return new CDB_SGATE_COMB(CDB_COMB_BUF);
  return new CDB_SGATE_BUFFER(CDB_BUFFER_WIRE);
}

CDB_SGATE_NODE* ZELK_SGATE::create_register(Instance* inst) {
  if (!get_machine_of(inst)) return new CDB_SGATE_DFF;
  auto* node = new CDB_SGATE_STATE;
  configure_state(inst, node);
  return node;
}

CDB_SGATE_NODE* ZELK_SGATE::create_ram(Instance* inst) {
  bool is_true_dual_port = inst->GetAtt(ATT_TRUE_DUAL_PORT) != nullptr;
  CDB_SGATE_ASYNCHRONOUS_RAM::PORT_SIZES sizes[2];
  for (unsigned port = 0; port < 2; port++) {
    sizes[port].byte_enable = inst->GetWritePortSize(port, RAM_BYTE_ENABLE);
    if (port == 1 && !is_true_dual_port) break;
    sizes[port].read_address = inst->GetReadPortSize(port, RAM_READ_ADDRESS);
    sizes[port].read_data = inst->GetReadPortSize(port, RAM_READ_DATA);
    sizes[port].write_address = inst->GetWritePortSize(port, RAM_WRITE_ADDRESS);
    sizes[port].write_data = inst->GetWritePortSize(port, RAM_WRITE_DATA);
  }
  auto* ram = new CDB_SGATE_ASYNCHRONOUS_RAM(sizes[0], sizes[1]);
  set_ram_flags(ram, inst);
  return ram;
}

namespace {

/// The suffix of a node's name where a port of the netlist has the instance's name.
const char* suffix_of(prim_type_enum type) {
  switch (type) {
  case PRIM_BUF: return "~buf0";
  case PRIM_DLATCHRS: return "$latch";
  case PRIM_FADD: return "$fadd";
  default: return nullptr;
  }
}

} // namespace

const char* ZELK_SGATE::create_node_name(Instance* inst, const CDB_SGATE_NODE& node) {
  const char* name = inst->Name();
  if (!name) return nullptr;
  if (node.get_sgate_type() == CDB_SGATE_STATE_ENUM) return create_state_name(inst);
  bool is_component = inst->Type() == PRIM_NONE;
  std::string text(name);
  size_t underscore = text.rfind('_');
  if (!is_component && text[0] == ' ' && underscore != std::string::npos && !inst->RequiresUniqueName())
    return m_elaborate_info->join(text.substr(1, underscore - 1).c_str(), nullptr, "~");
  return create_node_instance_name(name, is_component ? nullptr : suffix_of(inst->Type()));
}

void ZELK_SGATE::create_sgate_instance(Instance* inst) {
  prim_type_enum type = inst->Type();
  if (!has_node(type)) return;
  std::unique_ptr<CDB_SGATE_NODE> node(create_node(inst));
  if (!node) {
    ZELK_ASSERT_TEXT(m_is_refused, "sgate_node != 0");
    return;
  }
  const char* name = create_node_name(inst, *node);
  ZELK_ASSERT_TEXT(name, "sgate_name != 0");
  node->set_string_name(name);
  const Fsm* fsm = node->get_sgate_type() == CDB_SGATE_STATE_ENUM ? inst->GetFsm() : nullptr;
  unsigned long linefile = fsm ? fsm->Linefile() : inst->Linefile();
  if (linefile) {
    const char* file = LineFile::GetFileName(linefile);
    if (file) node->set_source_location(file, LineFile::GetLineNo(linefile));
    bool is_user_name = inst->IsUserName() || node->get_sgate_type() == CDB_SGATE_COMPONENT_ENUM;
    if (name && is_user_name) m_user_names.insert(name);
  }
  m_instance_map[inst] = node.get();
  m_sgate_netlist->add_node(node.release(), 1);
}

void ZELK_SGATE::protect_keep_lcells() {
  unsigned count = 0;
  for (const auto& node : m_sgate_netlist->get_nodes()) {
    if (node->get_sgate_type() != CDB_SGATE_BUFFER_ENUM) continue;
    if (static_cast<const CDB_SGATE_BUFFER*>(node.get())->get_buffer_type() != CDB_BUFFER_KEEP) continue;
    set_instance_assignment(node.get(), ACF_VARIABLE_IGNORE_LCELL, "off");
    set_instance_assignment(node.get(), ACF_VARIABLE_REMOVE_REDUNDANT_USER_CELLS, "off");
    count++;
  }
  zelk_msg_debug("Added IGNORE_LCELL = OFF and REMOVE_REDUNDANT_USER_CELLS = OFF assignments to %u keep lcell buffers",
                 count);
}

CDB_READ_DURING_WRITE kestrin_get_read_during_write_behavior(const Instance* inst, char read, char write) {
  const std::string read_letter(1, read);
  const std::string write_letter(1, write);
  const std::string both = read_letter + write_letter;
  if (kestrin_get_ram_behavior(inst, ATT_READ_AFTER_WRITE, both.c_str())) return CDB_READ_NEW_DATA;
  if (kestrin_get_ram_behavior(inst, ATT_ASYNCHRONOUS_READ, read_letter.c_str())) return CDB_READ_ASYNCHRONOUS;
  if (kestrin_get_ram_behavior(inst, ATT_SEQUENTIAL_READ_WRITE, both.c_str())) return CDB_READ_OLD_DATA;
  if (kestrin_get_ram_behavior(inst, ATT_BLOCKING_WRITE, write_letter.c_str())) return CDB_READ_DONT_CARE;
  return CDB_READ_OLD_DATA;
}

void ZELK_SGATE::set_ram_flags(CDB_SGATE_ASYNCHRONOUS_RAM* ram, const Instance* inst) const {
  using RAM = CDB_SGATE_ASYNCHRONOUS_RAM;
  unsigned read_depth = inst->GetReadDepth(0);
  unsigned write_depth = inst->GetWriteDepth(0);
  ram->set_depths(read_depth, write_depth ? write_depth : read_depth);
  for (RAM::PORT read : {RAM::PORT_A, RAM::PORT_B}) {
    for (RAM::PORT write : {RAM::PORT_A, RAM::PORT_B}) {
      const char letters[] = {static_cast<char>('A' + read), static_cast<char>('A' + write), 0};
      ram->set_read_during_write(read, write, kestrin_get_read_during_write_behavior(inst, letters[0], letters[1]));
      ram->set_exclusive_read_write(read, write, kestrin_get_ram_behavior(inst, ATT_EXCLUSIVE_READ_WRITE, letters));
    }
  }
  ram->set_async_clear(inst->GetAtt(" :async_clear") != nullptr);
  ram->set_true_dual_port(inst->GetAtt(ATT_TRUE_DUAL_PORT) != nullptr);
}
