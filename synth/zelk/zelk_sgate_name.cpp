// The names of the gate netlist: what nodes and terms are called so that users find their own names again, and what the
// host is told about the objects of the source.
#include "acf.h"
#include "basex.h"
#include "database/views.h"
#include "gen.h"
#include "htl.h"
#include "util/linefile.h"
#include "zelk_sgate.h"
#include "zelk_utility.h"

namespace {

MSG_TEXT_LOCATION_SCHEMA place_of(const DesignObj* object) {
  return {LineFile::GetFileName(object->Linefile()), static_cast<int>(LineFile::GetLineNo(object->Linefile())), 0};
}

/// The name without the blank of system-made ones; null for none.
const char* visible_name(const DesignObj* object) {
  const char* name = object->Name();
  if (!name || !*name) return nullptr;
  return name[0] == ' ' ? name + 1 : name;
}

} // namespace

const char* ZELK_SGATE::create_system_name(const char* name) {
  std::string base(name + 1);
  std::string text = base;
  for (unsigned count = 0; m_netlist->GetPort(text.c_str()) || m_netlist->GetInst(text.c_str()); count++)
    text = base + "_" + std::to_string(count);
  return m_elaborate_info->join(text.c_str());
}

/// The name of the node that an instance or a kept net becomes. A port of the same name takes precedence.
const char* ZELK_SGATE::create_node_instance_name(const char* name, const char* suffix) {
  const char* result = nullptr;
  if (name[0] == ' ')
    result = create_system_name(name);
  else if (m_netlist->GetPort(name))
    result = m_elaborate_info->join(name, nullptr, suffix ? suffix : "~reg0");
  else
    return m_elaborate_info->join(name);
  m_name_map[result] = name;
  const Instance* inst = m_netlist->GetInst(name);
  if (inst && inst->Linefile()) m_elaborate_info->register_identifier_with_location(result, place_of(inst));
  return result;
}

const char* ZELK_SGATE::create_tri_bus_name(const Net* net, TRI_BUS_NAME naming) const {
  const char* name = visible_name(net);
  if (!name) return nullptr;
  bool is_taken = naming == NAME_FORCED || m_netlist->GetInst(name) || m_netlist->GetPort(name);
  return m_elaborate_info->join(name, nullptr, is_taken ? "~" : nullptr);
}

const char* ZELK_SGATE::create_net_name(const Net* net) const {
  const char* name = visible_name(net);
  if (!name) return nullptr;
  const Port* port = m_netlist->GetPort(name);
  const Instance* driver = net->Driver();
  bool is_taken = port && !port->IsInput();
  if (!is_taken && driver && kestrin_is_register_type(driver->Type()))
    is_taken = gen_stricmp(driver->Name(), name) != 0;
  return m_elaborate_info->join(name, nullptr, is_taken ? "~" : nullptr);
}

void ZELK_SGATE::name_tri_bus(const Net* net, CDB_SGATE_OTERM* driver, TRI_BUS_NAME naming) {
  CDB_SGATE_NODE* node = driver->get_node();
  ZELK_ASSERT_TEXT(node->get_sgate_type() == CDB_SGATE_TRI_BUS_ENUM, "Node should be a tri_bus");
  ZELK_ASSERT_TEXT(!node->get_string_name(), "Tri-bus already has a name!");
  if (const char* name = create_tri_bus_name(net, naming)) node->set_string_name(name);
}

void ZELK_SGATE::name_net(Net* net, CDB_SGATE_OTERM* driver, TRI_BUS_NAME naming) {
  bool is_tri_bus = driver->get_node()->get_sgate_type() == CDB_SGATE_TRI_BUS_ENUM;
  if (is_tri_bus) {
    name_tri_bus(net, driver, naming);
    const char* name = driver->get_node()->get_string_name();
    if (net->Linefile() && name) m_user_names.insert(name);
  }
  if (!net->Linefile()) return;
  if (!is_tri_bus && !driver->get_string_name()) {
    if (const char* name = create_net_name(net)) driver->set_string_name(name);
  }
  if (driver->get_string_name()) m_user_names.insert(driver->get_string_name());
  m_net_map[net] = driver;
}

/// The node's name where it is the user's; null where the kernel's name is not in the gate netlist.
const char* ZELK_SGATE::get_host_name(const Instance* inst) const {
  const CDB_SGATE_NODE* node = get_node(inst);
  const char* name = node ? node->get_string_name() : nullptr;
  return name && m_user_names.count(name) ? name : nullptr;
}

const char* ZELK_SGATE::get_host_name(const Net* net) const {
  auto at = m_net_map.find(net);
  if (at == m_net_map.end()) return nullptr;
  const CDB_SGATE_NODE* node = at->second->get_node();
  const char* name =
      node->get_sgate_type() == CDB_SGATE_TRI_BUS_ENUM ? node->get_string_name() : at->second->get_string_name();
  return name && m_user_names.count(name) ? name : nullptr;
}

void ZELK_SGATE::register_user_identifiers() {
  HTL_PROFILER profiler("ZELK", "***register_user_identifiers()***");
  auto announce = [this](const DesignObj* object) {
    if (object->Linefile() && object->IsUserName()) m_elaborate_info->register_user_identifier(object->Name());
  };
  for (const Net* net : NamedNetsOf(m_netlist)) announce(net);
  for (const Net* net : AutoNetsOf(m_netlist)) announce(net);
  for (const NetBus* bus : NetBusesOf(m_netlist)) announce(bus);
  for (const Instance* inst : InstancesOf(m_netlist)) {
    if (!inst->IsUserName()) continue;
    m_elaborate_info->register_user_identifier(inst->Name());
    const Port* port = m_netlist->GetPort(inst->Name());
    const CDB_SGATE_NODE* node = get_node(inst);
    // A kept buffer of an output port's name goes by another name in the host.
    bool is_kept = inst->Type() == PRIM_BUF && inst->BufferType() == KEEP;
    if (is_kept && port && port->IsOutput() && node && gen_strcmp(node->get_string_name(), inst->Name()) != 0)
      m_elaborate_info->register_user_identifier(node->get_string_name());
  }
  for (const Port* port : PortsOf(m_netlist)) announce(port);
  for (const PortBus* bus : PortBusesOf(m_netlist)) announce(bus);
}

void ZELK_SGATE::register_net_and_instance_names() {
  for (const Instance* inst : InstancesOf(m_netlist)) register_instance_name(inst);
  for (const Net* net : NamedNetsOf(m_netlist)) register_net_name(net);
  for (const Net* net : AutoNetsOf(m_netlist)) register_net_name(net);
  register_net_buses();
}

void ZELK_SGATE::register_instance_name(const Instance* inst) {
  if (!inst->Linefile() || !inst->IsUserName()) return;
  const CDB_SGATE_NODE* node = get_node(inst);
  const Net* output = inst->Type() == PRIM_BUF ? inst->GetOutput() : nullptr;
  if (node && output && gen_strcmp(node->get_string_name(), output->Name()) == 0) return;
  m_elaborate_info->register_instance(inst->Name(), get_host_name(inst), place_of(inst));
}

namespace {

constexpr int MAX_BUS_LEVELS = 2;

bool has_onehot_bit(const NetBus* bus) {
  for (auto [element, owner] : ElementsOf(bus)) {
    if (!element) continue;
    bool found = element->ObjectType() == DB_NETBUS ? has_onehot_bit(static_cast<const NetBus*>(element))
                                                    : element->GetAtt(" :onehot") != nullptr;
    if (found) return true;
  }
  return false;
}

const NetBus* outermost(const NetBus* bus) {
  while (bus && bus->GetNetBus()) bus = bus->GetNetBus();
  return bus;
}

/// Whether the bus speaks for its bits.
bool is_told_by_bus(const NetBus* bus) {
  const NetBus* top = outermost(bus);
  return top && top->NetBusLevel() < MAX_BUS_LEVELS && !has_onehot_bit(top);
}

} // namespace

void ZELK_SGATE::register_net_name(const Net* net) {
  if (!net->Linefile() || !net->IsUserName() || is_told_by_bus(net->GetNetBus())) return;
  m_elaborate_info->register_net(net->Name(), get_host_name(net), place_of(net));
}

/// Vectors of bits, also as rows of a vector of vectors.
void ZELK_SGATE::register_net_buses() {
  for (const NetBus* bus : NetBusesOf(m_netlist)) {
    if (bus->NetBusLevel() > 0 || !bus->IsUserName() || !is_told_by_bus(bus)) continue;
    if (outermost(bus)->Linefile())
      m_elaborate_info->register_net_bus(bus->Name(), bus->LeftIndex(), bus->RightIndex(), place_of(outermost(bus)));
  }
}

namespace {

/// Vectors nested deeper are told bit by bit.
constexpr int MAX_PORT_BUS_LEVEL = 1;

const PortBus* outermost(const PortBus* bus) {
  while (bus && bus->GetPortBus()) bus = bus->GetPortBus();
  return bus;
}

} // namespace

void ZELK_SGATE::register_port_names() {
  const Netlist* design = Netlist::PresentDesign() ? Netlist::PresentDesign() : m_netlist;
  for (const Port* port : PortsOf(design)) {
    const PortBus* bus = outermost(port->GetPortBus());
    if (port->Linefile() && port->Name() && (!bus || bus->PortBusLevel() > MAX_PORT_BUS_LEVEL))
      m_elaborate_info->register_port(port->Name(), place_of(port));
  }
  for (const PortBus* bus : PortBusesOf(design))
    if (!bus->GetPortBus() && bus->Linefile() && bus->Name()) register_port_bus(bus);
}

void ZELK_SGATE::register_port_bus(const PortBus* bus) {
  if (bus->PortBusLevel() > MAX_PORT_BUS_LEVEL) return;
  if (bus->PortBusLevel() == 0) {
    m_elaborate_info->register_port_bus(bus->Name(), bus->LeftIndex(), bus->RightIndex(), place_of(bus));
    return;
  }
  const DesignObj* row = bus->ElementAtIndex(bus->LeftIndex());
  if (!row || row->ObjectType() != DB_PORTBUS) return;
  const auto* inner = static_cast<const PortBus*>(row);
  m_elaborate_info->register_port_bus(bus->Name(), bus->LeftIndex(), bus->RightIndex(), inner->LeftIndex(),
                                      inner->RightIndex(), place_of(bus));
}
