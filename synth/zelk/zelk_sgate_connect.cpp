// The connections of the gate netlist: nets become fanouts of one output term each, constants are told to their loads,
// nets of several drivers go through a bus node, and what the user wants kept gets a node of its own.
#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>

#include "acf.h"
#include "basex.h"
#include "database/views.h"
#include "htl.h"
#include "zelk_msgs.h"
#include "zelk_sgate.h"
#include "zelk_utility.h"

namespace {

/// A term by the name of a kernel port.
struct NAMED_TERM {
  std::string_view name;
  int term;
};

template <size_t N> int find_term(const NAMED_TERM (&table)[N], std::string_view name) {
  for (const NAMED_TERM& entry : table)
    if (entry.name == name) return entry.term;
  return -1;
}

constexpr NAMED_TERM mux_inputs[] = {
    {"a0", CDB_TERM_MUX_FIRST}, {"a1", CDB_TERM_MUX_SECOND}, {"c", CDB_TERM_MUX_SELECT}};
constexpr NAMED_TERM register_inputs[] = {{"d", CDB_TERM_DATA},
                                          {"clk", CDB_TERM_CLOCK},
                                          {"r", CDB_TERM_RESET},
                                          {"s", CDB_TERM_SET},
                                          {"adata", CDB_TERM_ASYNC_DATA},
                                          {"aload", CDB_TERM_ASYNC_LOAD},
                                          {"async_val", CDB_TERM_ASYNC_DATA},
                                          {"async_cond", CDB_TERM_ASYNC_LOAD}};
constexpr NAMED_TERM latch_inputs[] = {
    {"d", CDB_TERM_DATA}, {"gate", CDB_TERM_LATCH_ENABLE}, {"r", CDB_TERM_RESET}, {"s", CDB_TERM_SET}};
constexpr NAMED_TERM tristate_inputs[] = {{"i", CDB_TERM_DATA}, {"c", CDB_TERM_OUTPUT_ENABLE}};
constexpr NAMED_TERM ram_inputs[] = {{"we_a", CDB_TERM_RAM_WRITE_ENABLE_A},
                                     {"be_a", CDB_TERM_RAM_BYTE_ENABLE_A},
                                     {"wdata_a", CDB_TERM_DATA},
                                     {"waddr_a", CDB_TERM_RAM_WRITE_ADDRESS_A},
                                     {"raddr_a", CDB_TERM_RAM_READ_ADDRESS_A},
                                     {"we_b", CDB_TERM_RAM_WRITE_ENABLE_B},
                                     {"be_b", CDB_TERM_RAM_BYTE_ENABLE_B},
                                     {"wdata_b", CDB_TERM_RAM_DATA_B},
                                     {"waddr_b", CDB_TERM_RAM_WRITE_ADDRESS_B},
                                     {"raddr_b", CDB_TERM_RAM_READ_ADDRESS_B}};
constexpr NAMED_TERM ram_outputs[] = {{"q_a", CDB_TERM_OUTPUT}, {"q_b", CDB_TERM_RAM_OUTPUT_B}};
constexpr NAMED_TERM operator_inputs[] = {{"cin", CDB_OPERATOR_CARRY_IN}, {"a", CDB_OPERATOR_INPUT_1},
                                          {"i", CDB_OPERATOR_INPUT_1},    {"b", CDB_OPERATOR_INPUT_2},
                                          {"data", CDB_OPERATOR_INPUT_2}, {"amount", CDB_OPERATOR_AMOUNT},
                                          {"sel", CDB_OPERATOR_INPUT_1},  {"addnsub", CDB_OPERATOR_ADD_NOT_SUBTRACT}};
constexpr NAMED_TERM operator_outputs[] = {{"o", CDB_OPERATOR_OUTPUT}, {"cout", CDB_OPERATOR_CARRY_OUT}};

struct INDEXED_PORT {
  std::string_view base;
  unsigned index = 0;
};

/// A bit's name is its vector's with the index in brackets.
INDEXED_PORT split_port_name(const Port* port) {
  std::string_view name(port->Name() ? port->Name() : "");
  size_t open = name.rfind('[');
  if (open == std::string_view::npos || name.back() != ']') return {name, 0};
  INDEXED_PORT split{name.substr(0, open), 0};
  std::from_chars(name.data() + open + 1, name.data() + name.size() - 1, split.index);
  return split;
}

void report_unknown_term(std::string_view name) {
  ZELK_INTERNAL_ERROR(("wrong oterm type - " + std::string(name)).c_str());
}

void tie(CDB_SGATE_ITERM* iterm, bool is_vcc) {
  if (is_vcc)
    iterm->set_vcc();
  else
    iterm->set_gnd();
}

} // namespace

CDB_SGATE_NODE* ZELK_SGATE::get_node(const Instance* inst) const {
  auto at = m_instance_map.find(inst);
  return at == m_instance_map.end() ? nullptr : at->second;
}

CDB_SGATE_IO* ZELK_SGATE::get_io(const Port* port) const {
  auto at = m_io_map.find(port);
  return at == m_io_map.end() ? nullptr : at->second;
}

CDB_SGATE_ITERM* ZELK_SGATE::get_io_iterm(const Port* port) {
  CDB_SGATE_IO* io = get_io(port);
  return io ? io->retrieve_iterm(CDB_TERM_DATA) : nullptr;
}

CDB_SGATE_OTERM* ZELK_SGATE::get_io_oterm(const Port* port) {
  CDB_SGATE_IO* io = get_io(port);
  return io ? io->retrieve_oterm(CDB_TERM_OUTPUT) : nullptr;
}

CDB_SGATE_ITERM* ZELK_SGATE::get_operator_iterm(CDB_SGATE_OPERATOR* node, const Port* port) const {
  INDEXED_PORT name = split_port_name(port);
  int term = find_term(operator_inputs, name.base);
  if (name.base == "sel" && node->get_operator_type() == CDB_OPERATOR_ADD_SUB) term = CDB_OPERATOR_SELECT;
  if (term >= 0) return node->retrieve_iterm(term, name.index);
  report_unknown_term(name.base);
  return nullptr;
}

CDB_SGATE_OTERM* ZELK_SGATE::get_operator_oterm(CDB_SGATE_OPERATOR* node, const Port* port) const {
  INDEXED_PORT name = split_port_name(port);
  int term = find_term(operator_outputs, name.base);
  if (term >= 0) return node->retrieve_oterm(term, name.index);
  report_unknown_term(name.base);
  return nullptr;
}

CDB_COMPONENT_PORT* ZELK_SGATE::get_component_port(CDB_SGATE_COMPONENT* component, const Port* port) {
  return create_sgate_component_port(component, port);
}

namespace {

CDB_SGATE_ITERM* get_ram_iterm(CDB_SGATE_ASYNCHRONOUS_RAM* ram, const Port* port) {
  INDEXED_PORT name = split_port_name(port);
  int term = find_term(ram_inputs, name.base);
  if (term < 0) return nullptr;
  unsigned index = name.index;
  // The host counts byte enables from the other end.
  if (term == CDB_TERM_RAM_BYTE_ENABLE_A || term == CDB_TERM_RAM_BYTE_ENABLE_B) {
    auto side =
        term == CDB_TERM_RAM_BYTE_ENABLE_A ? CDB_SGATE_ASYNCHRONOUS_RAM::PORT_A : CDB_SGATE_ASYNCHRONOUS_RAM::PORT_B;
    index = ram->get_sizes(side).byte_enable - index - 1;
  }
  return ram->retrieve_iterm(term, index);
}

CDB_SGATE_OTERM* get_ram_oterm(CDB_SGATE_ASYNCHRONOUS_RAM* ram, const Port* port) {
  INDEXED_PORT name = split_port_name(port);
  int term = find_term(ram_outputs, name.base);
  return term < 0 ? nullptr : ram->retrieve_oterm(term, name.index);
}

template <size_t N>
CDB_SGATE_ITERM* get_named_iterm(CDB_SGATE_NODE* node, const NAMED_TERM (&table)[N], const Port* port) {
  int term = port->Name() ? find_term(table, port->Name()) : -1;
  return term < 0 ? nullptr : node->retrieve_iterm(term);
}

} // namespace

CDB_SGATE_ITERM* ZELK_SGATE::get_iterm(const PortRef* ref) {
  CDB_SGATE_NODE* node = get_node(ref->GetInst());
  const Port* port = ref->GetPort();
  if (!node) return nullptr;
  CDB_SGATE_ITERM* iterm = nullptr;
  switch (node->get_sgate_type()) {
  case CDB_SGATE_BUFFER_ENUM:
  case CDB_SGATE_IO_ENUM: iterm = node->retrieve_iterm(CDB_TERM_DATA); break;
  case CDB_SGATE_COMB_ENUM:
  case CDB_SGATE_TRI_BUS_ENUM: iterm = node->insert_unordered_fanin_term(); break;
  case CDB_SGATE_MUX_ENUM: iterm = get_named_iterm(node, mux_inputs, port); break;
  case CDB_SGATE_DFF_ENUM: iterm = get_named_iterm(node, register_inputs, port); break;
  case CDB_SGATE_STATE_ENUM:
    if (is_state_signal(ref)) return nullptr;
    iterm = node->retrieve_iterm(CDB_TERM_DATA);
    break;
  case CDB_SGATE_LATCH_ENUM: iterm = get_named_iterm(node, latch_inputs, port); break;
  case CDB_SGATE_IO_BUF_ENUM: iterm = get_named_iterm(node, tristate_inputs, port); break;
  case CDB_SGATE_OPERATOR_ENUM: iterm = get_operator_iterm(static_cast<CDB_SGATE_OPERATOR*>(node), port); break;
  case CDB_SGATE_COMPONENT_ENUM:
    iterm = get_component_port(static_cast<CDB_SGATE_COMPONENT*>(node), port)->retrieve_iterm();
    break;
  case CDB_SGATE_ASYNCHRONOUS_RAM_ENUM:
    iterm = get_ram_iterm(static_cast<CDB_SGATE_ASYNCHRONOUS_RAM*>(node), port);
    break;
  }
  ZELK_ASSERT_TEXT(iterm, "get iterm of an unknown type");
  ZELK_ASSERT_TEXT(!iterm || !iterm->is_connected(), "Port iterm already connected");
  return iterm;
}

CDB_SGATE_OTERM* ZELK_SGATE::get_oterm(const PortRef* ref) {
  CDB_SGATE_NODE* node = get_node(ref->GetInst());
  const Port* port = ref->GetPort();
  if (!node) return nullptr;
  CDB_SGATE_OTERM* oterm = nullptr;
  switch (node->get_sgate_type()) {
  case CDB_SGATE_BUFFER_ENUM:
  case CDB_SGATE_COMB_ENUM:
  case CDB_SGATE_MUX_ENUM:
  case CDB_SGATE_DFF_ENUM:
  case CDB_SGATE_STATE_ENUM:
  case CDB_SGATE_LATCH_ENUM:
  case CDB_SGATE_IO_ENUM:
  case CDB_SGATE_IO_BUF_ENUM:
  case CDB_SGATE_TRI_BUS_ENUM: oterm = node->retrieve_oterm(CDB_TERM_OUTPUT); break;
  case CDB_SGATE_OPERATOR_ENUM: oterm = get_operator_oterm(static_cast<CDB_SGATE_OPERATOR*>(node), port); break;
  case CDB_SGATE_COMPONENT_ENUM:
    oterm = get_component_port(static_cast<CDB_SGATE_COMPONENT*>(node), port)->retrieve_oterm();
    break;
  case CDB_SGATE_ASYNCHRONOUS_RAM_ENUM:
    oterm = get_ram_oterm(static_cast<CDB_SGATE_ASYNCHRONOUS_RAM*>(node), port);
    break;
  }
  ZELK_ASSERT_TEXT(oterm, "get oterm of an unknown type");
  ZELK_ASSERT_TEXT(!oterm || !oterm->get_first_fanout(), "Driver oterm already connected");
  return oterm;
}

void ZELK_SGATE::create_sgate_connections() {
  HTL_PROFILER profiler("ZELK", "***create_sgate_connections()***");
  if (is_on(OPTION_IP_DEBUG)) ip_debug_alias_name_preprocess();
  handle_pwr_gnd_conn();
  for (Net* net : NamedNetsOf(m_netlist)) connect_net(net);
  for (Net* net : AutoNetsOf(m_netlist)) connect_net(net);
}

/// Drivers are connections of ports that aren't inputs, and ports of the netlist that aren't outputs.
bool ZELK_SGATE::net_has_multiple_drivers(const Net* net) const {
  unsigned count = 0;
  bool is_bidirectional = false;
  for (const PortRef* ref : DriversOf(net)) {
    count++;
    is_bidirectional |= ref->Direction() != DIR_OUTPUT;
  }
  for (const Port* port : PortsOf(net)) {
    if (port->IsOutput()) continue;
    count++;
    is_bidirectional |= !port->IsInput();
  }
  ZELK_ASSERT_TEXT(count > 0, "Net should have atleast one driver");
  return count > 1 || is_bidirectional;
}

bool ZELK_SGATE::is_single_constant(const Net* net) const {
  return (net->IsPwr() || net->IsGnd()) && !net_has_multiple_drivers(net);
}

namespace {

bool is_undriven(const Net* net) {
  for (const Port* port : PortsOf(net))
    if (!port->IsOutput()) return false;
  const PortRef* first = net->GetFirstPortRef();
  return !first || first->IsInput();
}

} // namespace

void ZELK_SGATE::connect_net(Net* net) {
  if (net->NumOfPorts() + net->NumOfPortRefs() <= 1 || is_undriven(net)) {
    if (!net->IsPwr() && !net->IsGnd()) create_single_terminal_net(net);
    return;
  }
  if (is_single_constant(net)) return;
  CDB_SGATE_OTERM* driver = net_has_multiple_drivers(net) ? process_multiple_driver_net(net) : find_net_driver(net);
  ZELK_ASSERT_TEXT(driver, "Empty driver oterm");
  if (!driver) return;
  TRI_BUS_NAME naming = NAME_AS_NEEDED;
  driver = do_keep_and_ip_debug(driver, net, naming);
  connect_loads(net, driver);
  name_net(net, driver, naming);
}

void ZELK_SGATE::connect_loads(Net* net, CDB_SGATE_OTERM* driver) {
  auto connect = [driver](CDB_SGATE_ITERM* iterm) {
    ZELK_ASSERT(iterm && !iterm->is_connected());
    if (iterm && !iterm->is_connected()) driver->insert_fanout(iterm);
  };
  for (const PortRef* ref : PortRefsOf(net)) {
    if (ref->Direction() == DIR_OUTPUT) continue;
    if (is_state_signal(ref))
      process_fsm_signal(ref, driver, LEVEL_VCC);
    else
      connect(get_iterm(ref));
  }
  for (const Port* port : PortsOf(net))
    if (!port->IsInput()) connect(get_io_iterm(port));
}

void ZELK_SGATE::handle_pwr_gnd_conn() {
  for (Net* net : NetsOf(m_netlist))
    if (is_single_constant(net)) handle_pwr_gnd_net(net);
}

void ZELK_SGATE::handle_pwr_gnd_net(Net* net) {
  bool is_vcc = net->IsPwr();
  for (const PortRef* ref : PortRefsOf(net)) {
    if (!ref->IsInput()) continue;
    if (is_state_signal(ref))
      process_fsm_signal(ref, nullptr, is_vcc ? LEVEL_VCC : LEVEL_GND);
    else if (CDB_SGATE_ITERM* iterm = get_iterm(ref))
      tie(iterm, is_vcc);
  }
  for (const Port* port : PortsOf(net))
    if (CDB_SGATE_ITERM* iterm = port->IsOutput() ? get_io_iterm(port) : nullptr) tie(iterm, is_vcc);
}

/// Nets of one connection, and nets that nothing drives.
void ZELK_SGATE::create_single_terminal_net(Net* net) {
  CDB_SGATE_OTERM* source = nullptr;
  for (PortRef* ref : PortRefsOf(net)) {
    switch (ref->Direction()) {
    case DIR_INPUT:
      if (is_state_signal(ref))
        process_fsm_signal(ref, nullptr, LEVEL_GND);
      else
        create_unconnected_source(net, source, get_iterm(ref));
      break;
    case DIR_OUTPUT: terminate_output(net, ref); break;
    case DIR_INOUT:
    case DIR_NONE: terminate_bidirectional(net, ref); break;
    }
  }
  for (Port* port : PortsOf(net)) terminate_port(port);
}

/// An undriven input gets a gate whose only input is open, so that it has a driver and reads as unknown. All loads of a
/// net share it.
void ZELK_SGATE::create_unconnected_source(Net* net, CDB_SGATE_OTERM*& source, CDB_SGATE_ITERM* load) {
  if (!load) return;
  if (!source) {
    auto* node = new CDB_SGATE_COMB(CDB_COMB_AND);
    m_sgate_netlist->add_node(node, 1);
    node->insert_unordered_fanin_term();
    source = node->retrieve_oterm(CDB_TERM_OUTPUT);
    if (const char* name = create_net_name(net)) {
      node->set_string_name(name);
      source->set_string_name(m_elaborate_info->join(name, nullptr, "~"));
    }
  }
  source->insert_fanout(load);
}

void ZELK_SGATE::terminate_output(Net* net, PortRef* ref) {
  CDB_SGATE_OTERM* oterm = get_oterm(ref);
  ZELK_ASSERT(oterm != NULL && oterm->get_first_fanout() == NULL);
  if (!oterm) return;
  TRI_BUS_NAME naming = NAME_AS_NEEDED;
  oterm = do_keep_and_ip_debug(oterm, net, naming);
  name_net(net, oterm, naming);
}

void ZELK_SGATE::terminate_bidirectional(Net* net, PortRef* ref) {
  bool is_vcc = net->GetAtt(ATT_VCC) != nullptr;
  bool is_gnd = net->GetAtt(ATT_GND) != nullptr;
  CDB_SGATE_ITERM* iterm = get_iterm(ref);
  if (!iterm) return;
  if (is_vcc || is_gnd) {
    tie(iterm, is_vcc);
    return;
  }
  auto* bus = new CDB_SGATE_TRI_BUS;
  m_sgate_netlist->add_node(bus, 1);
  if (CDB_SGATE_OTERM* oterm = get_oterm(ref)) oterm->insert_fanout(bus->insert_unordered_fanin_term());
  bus->retrieve_oterm(CDB_TERM_OUTPUT)->insert_fanout(iterm);
  if (const char* name = create_tri_bus_name(net, NAME_AS_NEEDED)) bus->set_string_name(name);
}

void ZELK_SGATE::terminate_port(Port* port) {
  if (port->IsOutput()) {
    std::string text = "output on Cell " + std::string(m_netlist->Owner() ? m_netlist->Owner()->ExternalName() : "") +
                       " Port " + port->ExternalName();
    m_elaborate_info->queue_message(MSG_ZELK::W::UNCONNECTED_GND_WARNING(text.c_str()));
    return;
  }
  CDB_SGATE_OTERM* oterm = get_io_oterm(port);
  ZELK_ASSERT(oterm != NULL && oterm->get_first_fanout() == NULL);
  if (oterm && !oterm->get_string_name() && port->Name()) oterm->set_string_name(port->Name());
}

CDB_SGATE_OTERM* ZELK_SGATE::process_multiple_driver_net(Net* net) {
  auto* bus = new CDB_SGATE_TRI_BUS;
  m_sgate_netlist->add_node(bus, 1);
  for (const PortRef* ref : DriversOf(net)) {
    CDB_SGATE_ITERM* iterm = bus->insert_unordered_fanin_term();
    prim_type_enum type = ref->GetInst()->Type();
    if (type == PRIM_PWR || type == PRIM_GND)
      tie(iterm, type == PRIM_PWR);
    else if (CDB_SGATE_OTERM* oterm = get_oterm(ref))
      oterm->insert_fanout(iterm);
  }
  for (const Port* port : PortsOf(net)) {
    if (port->IsOutput()) continue;
    CDB_SGATE_ITERM* iterm = bus->insert_unordered_fanin_term();
    if (CDB_SGATE_OTERM* oterm = get_io_oterm(port)) oterm->insert_fanout(iterm);
  }
  return bus->retrieve_oterm(CDB_TERM_OUTPUT);
}

CDB_SGATE_OTERM* ZELK_SGATE::find_net_driver(Net* net) {
  const Port* driver = nullptr;
  for (const Port* port : PortsOf(net)) {
    if (port->IsOutput()) continue;
    if (!driver || (port->IsInput() && !driver->IsInput())) driver = port;
  }
  CDB_SGATE_OTERM* oterm = nullptr;
  if (driver)
    oterm = get_io_oterm(driver);
  else if (const PortRef* ref = net->DrivingPortRef())
    oterm = get_oterm(ref);
  ZELK_ASSERT(oterm != 0);
  return oterm;
}

namespace {

constexpr ATT_ENUM keeping_attributes[] = {ATT_KEEP, ATT_MAXFAN, ATT_DIRECT_ENABLE};
constexpr ATT_ENUM debug_attributes[] = {ATT_IP_DEBUG_VISIBLE, ATT_IP_DEBUG_ALIAS};

/// Attributes whose value is a text count when they are there at all.
bool is_wanted(const Net* net, ATT_ENUM type) {
  bool has_text = type == ATT_MAXFAN || type == ATT_IP_DEBUG_ALIAS;
  return has_text ? net->GetAtt(type) != nullptr : net->IsAttOn(type) != 0;
}

bool is_any_wanted(const Net* net, std::initializer_list<ATT_ENUM> types) {
  return std::any_of(types.begin(), types.end(), [net](ATT_ENUM type) { return is_wanted(net, type); });
}

bool has_bidirectional_port(const Net* net) {
  for (const Port* port : PortsOf(net))
    if (port->IsInout()) return true;
  return false;
}

} // namespace

bool ZELK_SGATE::is_named_after(const CDB_SGATE_NODE& node, const char* name) const {
  if (!node.get_string_name() || !name) return false;
  auto at = m_name_map.find(node.get_string_name());
  return (at == m_name_map.end() ? node.get_string_name() : at->second) == std::string_view(name);
}

/// The node that already bears the net's name and drives it, also through a bus.
CDB_SGATE_NODE* ZELK_SGATE::find_keeper(CDB_SGATE_OTERM* oterm, const Net* net, TRI_BUS_NAME& naming) const {
  auto can_keep = [&](const CDB_SGATE_NODE& node) {
    switch (node.get_sgate_type()) {
    case CDB_SGATE_BUFFER_ENUM:
    case CDB_SGATE_DFF_ENUM:
    case CDB_SGATE_IO_BUF_ENUM:
    case CDB_SGATE_STATE_ENUM: return is_named_after(node, net->Name());
    default: return false;
    }
  };
  CDB_SGATE_NODE* driver = oterm->get_node();
  if (can_keep(*driver)) return driver;
  if (driver->get_sgate_type() != CDB_SGATE_TRI_BUS_ENUM) return nullptr;
  for (const auto& input : driver->get_iterms()) {
    if (!input->get_source() || !can_keep(*input->get_source()->get_node())) continue;
    naming = NAME_FORCED;
    return input->get_source()->get_node();
  }
  return nullptr;
}

CDB_SGATE_NODE* ZELK_SGATE::insert_keeper(CDB_SGATE_OTERM* oterm, const Net* net) {
  auto* keeper = new CDB_SGATE_BUFFER(CDB_BUFFER_KEEP);
  if (net->Name()) keeper->set_string_name(create_node_instance_name(net->Name(), "~buf0"));
  m_sgate_netlist->add_node(keeper, 1);
  oterm->insert_fanout(keeper->retrieve_iterm(CDB_TERM_DATA));
  return keeper;
}

/// What the keeper stands for becomes assignments on it and is gone from the net.
void ZELK_SGATE::move_net_attributes(const CDB_SGATE_NODE& keeper, Net* net) {
  if (const char* fanout = net->GetAttValue(ATT_MAXFAN)) {
    set_instance_assignment(&keeper, ACF_VARIABLE_MAXIMUM_FANOUT, zelk_unquote(fanout).c_str());
    net->RemoveAtt(ATT_MAXFAN);
  }
  if (net->IsAttOn(ATT_DIRECT_ENABLE)) {
    set_instance_assignment(&keeper, ACF_VARIABLE_IMPLEMENT_AS_CLOCK_ENABLE, "on");
    net->RemoveAtt(ATT_DIRECT_ENABLE);
  }
}

CDB_SGATE_OTERM* ZELK_SGATE::do_keep_and_ip_debug(CDB_SGATE_OTERM* oterm, Net* net, TRI_BUS_NAME& naming) {
  bool is_debugged = is_on(OPTION_IP_DEBUG) && is_any_wanted(net, {ATT_IP_DEBUG_VISIBLE, ATT_IP_DEBUG_ALIAS});
  bool is_kept = is_any_wanted(net, {ATT_KEEP, ATT_MAXFAN, ATT_DIRECT_ENABLE});
  if (!net->Linefile() || !net->Name() || (!is_debugged && !is_kept)) return oterm;
  if (has_bidirectional_port(net)) {
    zelk_msg_debug("Dropped keep attributes of net %s, which is connected to a bidirectional port",
                   net->ExternalName());
    for (ATT_ENUM type : keeping_attributes) net->RemoveAtt(type);
    if (is_on(OPTION_IP_DEBUG))
      for (ATT_ENUM type : debug_attributes) net->RemoveAtt(type);
    return oterm;
  }

  CDB_SGATE_NODE* sgate_keeper = find_keeper(oterm, net, naming);
  bool is_new = !sgate_keeper;
  if (is_new) {
    sgate_keeper = insert_keeper(oterm, net);
    if (oterm->get_node()->get_sgate_type() == CDB_SGATE_TRI_BUS_ENUM) name_tri_bus(net, oterm, NAME_FORCED);
  }
  move_net_attributes(*sgate_keeper, net);
  bool is_register =
      sgate_keeper->get_sgate_type() == CDB_SGATE_DFF_ENUM || sgate_keeper->get_sgate_type() == CDB_SGATE_STATE_ENUM;
  if (!is_new && is_register && !is_debugged && !net->IsAttOn(ATT_PRESERVE))
    set_instance_assignment(sgate_keeper, ACF_VARIABLE_PRESERVE_REGISTER, "on");

  CDB_SGATE_OTERM* tmp_oterm = sgate_keeper->retrieve_oterm(CDB_TERM_OUTPUT);
  ZELK_ASSERT(sgate_keeper->get_string_name() && tmp_oterm->get_string_name() == 0);
  if (!tmp_oterm->get_string_name()) tmp_oterm->set_string_name(sgate_keeper->get_string_name());
  if (is_debugged) make_ip_debug_visible(tmp_oterm, net);
  return is_new ? tmp_oterm : oterm;
}

namespace {

bool is_wire_buffer(const CDB_SGATE_NODE& node) {
  if (node.get_sgate_type() != CDB_SGATE_BUFFER_ENUM) return false;
  CDB_BUFFER_TYPE type = static_cast<const CDB_SGATE_BUFFER&>(node).get_buffer_type();
  return type == CDB_BUFFER_WIRE || type == CDB_BUFFER_DIRECTIONAL;
}

void fold_wire_buffer(CDB_SGATE_NODE& node) {
  if (!is_wire_buffer(node)) return;
  const CDB_SGATE_ITERM* input = node.get_single_iterm();
  if (input && input->is_constant() && node.get_first_oterm())
    set_all_fanouts_constant(node.get_first_oterm(), input->is_vcc());
}

void fold_open_tristate(CDB_SGATE_NODE& node) {
  if (node.get_sgate_type() != CDB_SGATE_IO_BUF_ENUM) return;
  const CDB_SGATE_ITERM* enable = node.find_iterm(CDB_TERM_OUTPUT_ENABLE);
  const CDB_SGATE_ITERM* data = node.find_iterm(CDB_TERM_DATA);
  if (enable && enable->is_vcc() && data && data->is_constant() && node.get_first_oterm())
    set_all_fanouts_constant(node.get_first_oterm(), data->is_vcc());
}

} // namespace

void ZELK_SGATE::convert_const_bufs_to_const_iterms() {
  const auto& nodes = m_sgate_netlist->get_nodes();
  for (const auto& node : nodes) fold_wire_buffer(*node);
  for (const auto& node : nodes) fold_open_tristate(*node);
  for (const auto& node : nodes) drop_bus_constant(*node);
}

/// A component whose bidirectional port meets nothing but a constant reads the constant.
void ZELK_SGATE::drop_bus_constant(CDB_SGATE_NODE& bus) {
  if (bus.get_sgate_type() != CDB_SGATE_TRI_BUS_ENUM) return;
  if (bus.get_iterms().size() != 2 || bus.get_oterms().size() != 1) return;
  const CDB_SGATE_ITERM* iterm_const = bus.get_iterms()[0].get();
  const CDB_SGATE_ITERM* iterm_other = bus.get_iterms()[1].get();
  if (!iterm_const->is_constant()) std::swap(iterm_const, iterm_other);
  if (!iterm_const->is_constant() || !iterm_other->get_source()) return;
  if (bus.get_first_oterm()->get_fanouts().size() != 1) return;
  CDB_SGATE_ITERM* fanout = bus.get_first_oterm()->get_first_fanout();
  const CDB_SGATE_NODE* driver = iterm_other->get_source()->get_node();
  if (driver != fanout->get_node() || driver->get_sgate_type() != CDB_SGATE_COMPONENT_ENUM) return;
  fanout->disconnect_from_source(2);
  if (!iterm_const->is_gnd()) ZELK_ASSERT(iterm_const->is_vcc());
  tie(fanout, iterm_const->is_vcc());
}
