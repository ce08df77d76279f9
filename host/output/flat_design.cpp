// Copies the netlists of a hierarchy into one. First each occurrence of a unit becomes a scope with copies of its
// nodes, then every input of a copy is connected to the copy of what drives it, through any number of ports; buses of
// several drivers that bidirectional ports connect become one bus.
#include "flat_design.h"

#include <algorithm>

#include "flow/host_messages.h"

namespace {

/// More nodes than any machine of today would bear.
constexpr unsigned long MAX_NODES = 100'000'000;

template <class NODE> const NODE& as(const CDB_SGATE_NODE& node) { return static_cast<const NODE&>(node); }

std::unique_ptr<CDB_SGATE_NODE> copy_register(const CDB_SGATE_DFF& node) {
  auto copy = std::make_unique<CDB_SGATE_DFF>();
  copy->set_power_up(node.get_power_up());
  return copy;
}

std::unique_ptr<CDB_SGATE_NODE> copy_state(const CDB_SGATE_STATE& node) {
  auto copy = std::make_unique<CDB_SGATE_STATE>();
  copy->set_state_name(node.get_state_name().c_str());
  copy->set_user_encoding(node.get_user_encoding());
  copy->set_is_reset_state(node.is_reset_state());
  return copy;
}

std::unique_ptr<CDB_SGATE_NODE> copy_operator(const CDB_SGATE_OPERATOR& node) {
  auto copy = std::make_unique<CDB_SGATE_OPERATOR>(node.get_operator_type());
  copy->set_signed(node.is_signed());
  return copy;
}

std::unique_ptr<CDB_SGATE_NODE> copy_ram(const CDB_SGATE_ASYNCHRONOUS_RAM& node) {
  using RAM = CDB_SGATE_ASYNCHRONOUS_RAM;
  auto copy = std::make_unique<RAM>(node.get_sizes(RAM::PORT_A), node.get_sizes(RAM::PORT_B));
  copy->set_depths(node.get_read_depth(), node.get_write_depth());
  copy->set_mif_file(node.get_mif_file().c_str());
  copy->set_block_type(node.get_block_type());
  copy->set_maximum_depth(node.get_maximum_depth());
  copy->set_no_rw_check(node.is_no_rw_check());
  copy->set_true_dual_port(node.is_true_dual_port());
  copy->set_async_clear(node.has_async_clear());
  for (RAM::PORT read : {RAM::PORT_A, RAM::PORT_B}) {
    for (RAM::PORT write : {RAM::PORT_A, RAM::PORT_B}) {
      copy->set_read_during_write(read, write, node.get_read_during_write(read, write));
      copy->set_exclusive_read_write(read, write, node.is_exclusive_read_write(read, write));
    }
  }
  return copy;
}

CDB_COMPONENT_PORT* copy_port(CDB_SGATE_COMPONENT& copy, const CDB_COMPONENT_PORT& port) {
  if (port.get_position() >= 0) {
    int index = port.get_index() == CDB_COMPONENT_PORT::NO_INDEX ? -1 : port.get_index();
    return copy.retrieve_nameless_port(port.get_position(), index, port.get_direction());
  }
  if (copy.is_prototype_known()) return copy.retrieve_known_port(port.get_full_name().c_str(), port.get_direction());
  int index = port.get_index() == CDB_COMPONENT_PORT::NO_INDEX ? -1 : port.get_index();
  return copy.retrieve_unknown_port(port.get_name().c_str(), index, port.get_direction());
}

std::unique_ptr<CDB_SGATE_NODE> copy_component(const CDB_SGATE_COMPONENT& node) {
  auto copy = std::make_unique<CDB_SGATE_COMPONENT>(node.get_entity_name().c_str(), node.get_prototype());
  copy->set_architecture_name(node.get_architecture_name().c_str());
  copy->set_library_name(node.get_library_name().c_str());
  copy->set_positional_ports(node.has_positional_ports());
  copy->set_host_primitive(node.is_host_primitive());
  for (const CDB_SGATE_COMPONENT::PARAMETER& parameter : node.get_parameters()) {
    if (parameter.name.empty())
      copy->set_parameter_at_pos(parameter.position, parameter.value.c_str(), parameter.type);
    else
      copy->set_parameter(parameter.name.c_str(), parameter.value.c_str(), parameter.type);
  }
  for (const auto& port : node.get_ports()) {
    CDB_COMPONENT_PORT* made = copy_port(*copy, *port);
    if (port->get_iterm()) made->retrieve_iterm();
    if (port->get_oterm()) made->retrieve_oterm();
  }
  return copy;
}

/// A node of the same kind and properties, without connections.
std::unique_ptr<CDB_SGATE_NODE> copy_kind(const CDB_SGATE_NODE& node) {
  switch (node.get_sgate_type()) {
  case CDB_SGATE_BUFFER_ENUM: return std::make_unique<CDB_SGATE_BUFFER>(as<CDB_SGATE_BUFFER>(node).get_buffer_type());
  case CDB_SGATE_COMB_ENUM: return std::make_unique<CDB_SGATE_COMB>(as<CDB_SGATE_COMB>(node).get_comb_type());
  case CDB_SGATE_DFF_ENUM: return copy_register(as<CDB_SGATE_DFF>(node));
  case CDB_SGATE_IO_ENUM: return std::make_unique<CDB_SGATE_IO>(as<CDB_SGATE_IO>(node).get_direction());
  case CDB_SGATE_IO_BUF_ENUM: return std::make_unique<CDB_SGATE_IO_BUF>();
  case CDB_SGATE_STATE_ENUM: return copy_state(as<CDB_SGATE_STATE>(node));
  case CDB_SGATE_MUX_ENUM: return std::make_unique<CDB_SGATE_MUX>();
  case CDB_SGATE_TRI_BUS_ENUM: return std::make_unique<CDB_SGATE_TRI_BUS>();
  case CDB_SGATE_LATCH_ENUM: return std::make_unique<CDB_SGATE_LATCH>();
  case CDB_SGATE_COMPONENT_ENUM: return copy_component(as<CDB_SGATE_COMPONENT>(node));
  case CDB_SGATE_OPERATOR_ENUM: return copy_operator(as<CDB_SGATE_OPERATOR>(node));
  case CDB_SGATE_ASYNCHRONOUS_RAM_ENUM: return copy_ram(as<CDB_SGATE_ASYNCHRONOUS_RAM>(node));
  }
  return nullptr;
}

/// An occurrence of a unit. The first is the top.
struct SCOPE {
  const MODULE_VIEW* view = nullptr;
  int parent = -1;
  std::string prefix;  // of names
  PORTS_BY_NAME ports; // of its instance in the parent, by the names of the unit's ports
  std::unordered_map<const CDB_COMPONENT_PORT*, const CDB_SGATE_IO*> ios; // the unit's ports by those of its instance
  std::unordered_map<const CDB_SGATE_COMPONENT*, int> children;
  std::unordered_map<const CDB_SGATE_NODE*, CDB_SGATE_NODE*> copies;
};

/// What an input reads, after all ports on the way.
struct SOURCE {
  enum KIND { OPEN, GND, VCC, DRIVER };
  KIND kind = OPEN;
  CDB_SGATE_OTERM* driver = nullptr; // a copy
};

class FLATTENER {
public:
  explicit FLATTENER(const DESIGN_VIEW& view) : m_view(view) {}
  DESIGN flatten();

private:
  using TERM_KEY = std::pair<int, const CDB_SGATE_TERM*>;
  struct KEY_HASH {
    size_t operator()(const TERM_KEY& key) const {
      return std::hash<const void*>()(key.second) * 31 + static_cast<size_t>(key.first);
    }
  };

  bool fits() const;
  void make_scopes();
  void copy_nodes(int scope);
  void copy_names(int scope);
  void connect_nodes(int scope);
  void copy_machines(int scope);
  void copy_machine(int scope, const CDB_STATE_MACHINE& machine);

  const CDB_SGATE_IO* find_io(int scope, const std::string& name) const;
  int child_of(int scope, const CDB_SGATE_NODE& node) const;
  bool is_inner_io(int scope, const CDB_SGATE_NODE& node) const {
    return scope != 0 && node.get_sgate_type() == CDB_SGATE_IO_ENUM;
  }
  const CDB_SGATE_ITERM* through_port(int& scope, const CDB_SGATE_OTERM& term) const;
  SOURCE resolve(int scope, const CDB_SGATE_ITERM* term);
  SOURCE resolve(int scope, const CDB_SGATE_OTERM& term);
  static void connect(const SOURCE& source, CDB_SGATE_ITERM* load);

  // Buses, by the number of their class.
  int bus_number(int scope, const CDB_SGATE_NODE& node);
  int bus_class(int number);
  void join_ports(int scope);
  void make_buses();
  std::vector<int> buses_around(int scope, const CDB_SGATE_ITERM* input, const CDB_SGATE_OTERM* output);
  bool is_within(int bus, int scope, const CDB_SGATE_OTERM& source);

  std::string named(int scope, const char* name) const {
    return m_scopes[static_cast<size_t>(scope)].prefix + (name ? name : "");
  }

  const DESIGN_VIEW& m_view;
  std::vector<SCOPE> m_scopes;
  std::unordered_map<const MODULE_VIEW*, std::unordered_map<std::string, const CDB_SGATE_IO*>> m_ios;
  std::unordered_map<TERM_KEY, SOURCE, KEY_HASH> m_resolved;
  struct BUS {
    int scope;
    const CDB_SGATE_NODE* node;
    int parent; // in its class
  };
  std::vector<BUS> m_buses;
  std::unordered_map<TERM_KEY, int, KEY_HASH> m_bus_numbers; // by the bus' output
  std::vector<CDB_SGATE_NODE*> m_bus_copies;                 // by number of the class
  std::unique_ptr<UNIT_RESULT> m_result;
};

const std::vector<std::unique_ptr<CDB_SGATE_NODE>>& nodes_of(const MODULE_VIEW& view) {
  return view.get_result().get_netlist()->get_nodes();
}

bool is_bus(const CDB_SGATE_NODE& node) { return node.get_sgate_type() == CDB_SGATE_TRI_BUS_ENUM; }

DESIGN FLATTENER::flatten() {
  const UNIT_RESULT& top = m_view.get_modules().front()->get_result();
  if (!fits()) {
    report_host_message(HOST_MESSAGE_TOO_LARGE_TO_FLATTEN, {top.unit->get_name(), std::to_string(MAX_NODES)});
    return {};
  }
  m_result = std::make_unique<UNIT_RESULT>();
  m_result->unit = top.unit;
  m_result->parameters = top.parameters;
  m_result->used_parameters = top.used_parameters;
  m_result->success = top.success;
  m_result->port_buses = top.port_buses;
  m_result->module_name = top.module_name;
  m_result->hierarchy = std::make_unique<CDB_SGATE_HIERARCHY>();
  m_result->hierarchy->set_instance_name(top.hierarchy->get_instance_name().c_str());
  m_result->hierarchy->set_netlist(new CDB_SGATE_NETLIST);

  make_scopes();
  int count = static_cast<int>(m_scopes.size());
  for (int scope = 0; scope < count; scope++) copy_nodes(scope);
  for (int scope = 1; scope < count; scope++) join_ports(scope);
  make_buses();
  for (int scope = 0; scope < count; scope++) {
    connect_nodes(scope);
    copy_machines(scope);
    copy_names(scope);
  }
  DESIGN design;
  design.units.push_back(std::move(m_result));
  return design;
}

/// Counts before copying: a few units that instantiate each other by the hundred make more than memory holds.
bool FLATTENER::fits() const {
  std::map<const MODULE_VIEW*, unsigned long> occurrences = count_occurrences(m_view);
  unsigned long total = 0;
  for (const auto& [view, count] : occurrences) {
    unsigned long nodes = nodes_of(*view).size() + 1;
    if (count > MAX_NODES / nodes) return false;
    total += count * nodes;
  }
  return total <= MAX_NODES;
}

/// One scope per occurrence, a parent before its children.
void FLATTENER::make_scopes() {
  m_scopes.emplace_back();
  m_scopes.front().view = m_view.get_modules().front().get();
  for (size_t i = 0; i < m_scopes.size(); i++) {
    const MODULE_VIEW& view = *m_scopes[i].view;
    auto& ios = m_ios[&view];
    bool is_new = ios.empty();
    for (const auto& node : nodes_of(view)) {
      if (is_new && node->get_sgate_type() == CDB_SGATE_IO_ENUM && node->get_string_name())
        ios[node->get_string_name()] = static_cast<const CDB_SGATE_IO*>(node.get());
      if (node->get_sgate_type() != CDB_SGATE_COMPONENT_ENUM) continue;
      const auto& component = as<CDB_SGATE_COMPONENT>(*node);
      const MODULE_VIEW* child = m_view.get_child(view, component);
      if (!child) continue;
      SCOPE scope;
      scope.view = child;
      scope.parent = static_cast<int>(i);
      scope.prefix = named(static_cast<int>(i), component.get_string_name()) + ".";
      scope.ports = ports_by_name(component, *child);
      m_scopes[i].children[&component] = static_cast<int>(m_scopes.size());
      m_scopes.push_back(std::move(scope));
    }
  }
}

int FLATTENER::child_of(int scope, const CDB_SGATE_NODE& node) const {
  if (node.get_sgate_type() != CDB_SGATE_COMPONENT_ENUM) return -1;
  const auto& children = m_scopes[static_cast<size_t>(scope)].children;
  auto at = children.find(&as<CDB_SGATE_COMPONENT>(node));
  return at == children.end() ? -1 : at->second;
}

/// Ports between scopes, instances of elaborated units and buses are not copied as they stand.
void FLATTENER::copy_nodes(int scope) {
  SCOPE& mine = m_scopes[static_cast<size_t>(scope)];
  for (const auto& node : nodes_of(*mine.view)) {
    if (is_inner_io(scope, *node) || child_of(scope, *node) >= 0 || is_bus(*node)) continue;
    std::unique_ptr<CDB_SGATE_NODE> copy = copy_kind(*node);
    if (node->get_string_name()) copy->set_string_name(named(scope, node->get_string_name()).c_str());
    if (node->get_source_line() != 0)
      copy->set_source_location(node->get_source_file().c_str(), node->get_source_line());
    for (const auto& term : node->get_iterms()) copy->retrieve_iterm(term->get_type(), term->get_index());
    for (const auto& term : node->get_oterms()) {
      CDB_SGATE_OTERM* made = copy->retrieve_oterm(term->get_type(), term->get_index());
      made->set_inverted(term->is_inverted());
      if (term->get_string_name()) made->set_string_name(named(scope, term->get_string_name()).c_str());
    }
    mine.copies[node.get()] = copy.get();
    m_result->get_netlist()->add_node(copy.release(), 1);
  }
}

const CDB_SGATE_IO* FLATTENER::find_io(int scope, const std::string& name) const {
  const auto& ios = m_ios.at(m_scopes[static_cast<size_t>(scope)].view);
  auto at = ios.find(name);
  return at == ios.end() ? nullptr : at->second;
}

/// The input on the other side of the port that a term belongs to, with its scope: of the parent's instance for a port
/// of a unit, of the unit's port for an instance. The scope is -1 when the term belongs to no port.
const CDB_SGATE_ITERM* FLATTENER::through_port(int& scope, const CDB_SGATE_OTERM& term) const {
  const CDB_SGATE_NODE& node = *term.get_node();
  const SCOPE& mine = m_scopes[static_cast<size_t>(scope)];
  if (is_inner_io(scope, node)) {
    scope = mine.parent;
    auto port = mine.ports.find(node.get_string_name() ? node.get_string_name() : "");
    return port == mine.ports.end() ? nullptr : port->second->get_iterm();
  }
  int child = child_of(scope, node);
  scope = child;
  if (child < 0) return nullptr;
  const auto& ios = m_scopes[static_cast<size_t>(child)].ios;
  auto io = ios.find(as<CDB_SGATE_COMPONENT>(node).get_port_of(term));
  return io == ios.end() ? nullptr : io->second->find_iterm(CDB_TERM_DATA);
}

SOURCE FLATTENER::resolve(int scope, const CDB_SGATE_ITERM* term) {
  if (!term || !term->is_connected()) return {};
  if (term->is_constant()) return {term->is_gnd() ? SOURCE::GND : SOURCE::VCC, nullptr};
  return resolve(scope, *term->get_source());
}

/// Walks through ports to what drives them; the answer is kept for all terms on the way. Wires that only lead around in
/// a circle have no driver.
SOURCE FLATTENER::resolve(int scope, const CDB_SGATE_OTERM& term) {
  std::vector<TERM_KEY> way;
  SOURCE found;
  const CDB_SGATE_OTERM* at = &term;
  for (;;) {
    auto [known, is_new] = m_resolved.emplace(TERM_KEY{scope, at}, SOURCE());
    if (!is_new) { // also a circle, which is still open
      found = known->second;
      break;
    }
    way.emplace_back(scope, at);
    if (is_bus(*at->get_node())) {
      found = {SOURCE::DRIVER,
               m_bus_copies[static_cast<size_t>(bus_class(bus_number(scope, *at->get_node())))]->retrieve_oterm(
                   CDB_TERM_OUTPUT)};
      break;
    }
    int next = scope;
    const CDB_SGATE_ITERM* beyond = through_port(next, *at);
    if (next < 0) {
      CDB_SGATE_NODE* copy = m_scopes[static_cast<size_t>(scope)].copies.at(at->get_node());
      found = {SOURCE::DRIVER, copy->retrieve_oterm(at->get_type(), at->get_index())};
      break;
    }
    if (!beyond || !beyond->is_connected()) break;
    if (beyond->is_constant()) {
      found.kind = beyond->is_gnd() ? SOURCE::GND : SOURCE::VCC;
      break;
    }
    scope = next;
    at = beyond->get_source();
  }
  for (const TERM_KEY& key : way) m_resolved[key] = found;
  return found;
}

void FLATTENER::connect(const SOURCE& source, CDB_SGATE_ITERM* load) {
  switch (source.kind) {
  case SOURCE::OPEN: break;
  case SOURCE::GND: load->set_gnd(); break;
  case SOURCE::VCC: load->set_vcc(); break;
  case SOURCE::DRIVER: source.driver->insert_fanout(load); break;
  }
}

void FLATTENER::connect_nodes(int scope) {
  const SCOPE& mine = m_scopes[static_cast<size_t>(scope)];
  for (const auto& node : nodes_of(*mine.view)) {
    auto copy = mine.copies.find(node.get());
    if (copy == mine.copies.end()) continue;
    for (const auto& term : node->get_iterms())
      connect(resolve(scope, term.get()), copy->second->find_iterm(term->get_type(), term->get_index()));
  }
}

int FLATTENER::bus_number(int scope, const CDB_SGATE_NODE& node) {
  auto [at, is_new] = m_bus_numbers.emplace(TERM_KEY{scope, node.get_first_oterm()}, static_cast<int>(m_buses.size()));
  if (is_new) m_buses.push_back({scope, &node, at->second});
  return at->second;
}

int FLATTENER::bus_class(int number) {
  while (m_buses[static_cast<size_t>(number)].parent != number) {
    BUS& bus = m_buses[static_cast<size_t>(number)];
    bus.parent = m_buses[static_cast<size_t>(bus.parent)].parent;
    number = bus.parent;
  }
  return number;
}

/// The buses that a bidirectional port has on one side: what feeds the input there and what the output feeds.
std::vector<int> FLATTENER::buses_around(int scope, const CDB_SGATE_ITERM* input, const CDB_SGATE_OTERM* output) {
  std::vector<int> buses;
  if (input && input->get_source() && is_bus(*input->get_source()->get_node()))
    buses.push_back(bus_number(scope, *input->get_source()->get_node()));
  if (output)
    for (const CDB_SGATE_ITERM* load : output->get_fanouts())
      if (is_bus(*load->get_node()) && load->get_node()->get_first_oterm())
        buses.push_back(bus_number(scope, *load->get_node()));
  return buses;
}

/// Ports of a scope meet those of its instance. The buses on both sides of a bidirectional one are one bus.
void FLATTENER::join_ports(int scope) {
  SCOPE& mine = m_scopes[static_cast<size_t>(scope)];
  for (const auto& [name, port] : mine.ports) {
    const CDB_SGATE_IO* io = find_io(scope, name);
    if (io) mine.ios[port] = io;
    if (!io || io->get_direction() != CDB_IO_BIDIR) continue;
    std::vector<int> buses = buses_around(mine.parent, port->get_iterm(), port->get_oterm());
    std::vector<int> inner = buses_around(scope, io->find_iterm(CDB_TERM_DATA), io->find_oterm(CDB_TERM_OUTPUT));
    buses.insert(buses.end(), inner.begin(), inner.end());
    for (int bus : buses) {
      int one = bus_class(buses.front());
      int other = bus_class(bus);
      m_buses[static_cast<size_t>(std::max(one, other))].parent = std::min(one, other);
    }
  }
}

/// Whether a driver of a bus is only the way to another part of the same bus.
bool FLATTENER::is_within(int bus, int scope, const CDB_SGATE_OTERM& source) {
  SOURCE found = resolve(scope, source);
  if (found.kind == SOURCE::OPEN) return true;
  return found.driver && found.driver->get_node() == m_bus_copies[static_cast<size_t>(bus)];
}

void FLATTENER::make_buses() {
  for (size_t scope = 0; scope < m_scopes.size(); scope++)
    for (const auto& node : nodes_of(*m_scopes[scope].view))
      if (is_bus(*node) && node->get_first_oterm()) bus_number(static_cast<int>(scope), *node);
  m_bus_copies.assign(m_buses.size(), nullptr);
  for (size_t i = 0; i < m_buses.size(); i++) {
    int root = bus_class(static_cast<int>(i));
    CDB_SGATE_NODE*& copy = m_bus_copies[static_cast<size_t>(root)];
    const BUS& bus = m_buses[i];
    if (!copy) {
      auto made = std::make_unique<CDB_SGATE_TRI_BUS>();
      CDB_SGATE_OTERM* output = made->retrieve_oterm(CDB_TERM_OUTPUT);
      const char* net = bus.node->get_first_oterm()->get_string_name();
      if (net) output->set_string_name(named(bus.scope, net).c_str());
      if (bus.node->get_string_name()) made->set_string_name(named(bus.scope, bus.node->get_string_name()).c_str());
      copy = made.get();
      m_result->get_netlist()->add_node(made.release(), 1);
    }
  }
  for (size_t i = 0; i < m_buses.size(); i++) {
    const BUS bus = m_buses[i];
    int root = bus_class(static_cast<int>(i));
    for (const auto& input : bus.node->get_iterms()) {
      if (!input->is_connected() || (input->get_source() && is_within(root, bus.scope, *input->get_source()))) continue;
      connect(resolve(bus.scope, input.get()), m_bus_copies[static_cast<size_t>(root)]->insert_unordered_fanin_term());
    }
  }
}

/// A control of a machine as a term, or as power or ground without one.
struct CONTROL {
  CDB_SGATE_OTERM* term;
  bool is_inverted;
};

CONTROL control_of(const SOURCE& source, bool is_inverted) {
  bool is_low = source.kind == SOURCE::GND || source.kind == SOURCE::OPEN;
  return {source.driver, is_low ? !is_inverted : is_inverted};
}

void FLATTENER::copy_machine(int scope, const CDB_STATE_MACHINE& machine) {
  auto copy = std::make_unique<CDB_STATE_MACHINE>();
  copy->set_string_name(named(scope, machine.get_string_name()).c_str());
  copy->set_num_user_bits(machine.get_num_user_bits());
  copy->set_num_states(machine.get_num_states());
  copy->set_orig_reset_position_in_seq_encoding(machine.get_orig_reset_position_in_seq_encoding());
  auto control = [&](CDB_SGATE_OTERM* term, bool is_inverted) {
    return term ? control_of(resolve(scope, *term), is_inverted) : CONTROL{nullptr, is_inverted};
  };
  CONTROL clock = control(machine.get_clk(), machine.clk_is_inverted());
  CONTROL enable = control(machine.get_clk_en(), machine.clk_en_is_inverted());
  CONTROL reset = control(machine.get_reset(), machine.reset_is_inverted());
  if (machine.has_clk()) copy->set_clk(clock.term, clock.is_inverted);
  copy->set_clk_en(enable.term, enable.is_inverted);
  if (machine.has_reset()) copy->set_reset(reset.term, reset.is_inverted);
  const auto& copies = m_scopes[static_cast<size_t>(scope)].copies;
  std::vector<CDB_SGATE_STATE*> states;
  for (const CDB_SGATE_STATE* state : machine.get_states()) {
    states.push_back(static_cast<CDB_SGATE_STATE*>(copies.at(state)));
    states.back()->set_machine(copy.get());
    if (state == machine.get_reset_state()) copy->set_reset_state(states.back());
  }
  copy->set_states(std::move(states));
  m_result->hierarchy->get_machines()->push_back(std::move(copy));
}

void FLATTENER::copy_machines(int scope) {
  const CDB_SGATE_HIERARCHY& hierarchy = *m_scopes[static_cast<size_t>(scope)].view->get_result().hierarchy;
  for (const auto& machine : hierarchy.get_machines()) copy_machine(scope, *machine);
}

/// Places, vectors and assignments by the names of the copies. A unit's own assignments go to its instance.
void FLATTENER::copy_names(int scope) {
  const UNIT_RESULT& unit = m_scopes[static_cast<size_t>(scope)].view->get_result();
  const std::string& prefix = m_scopes[static_cast<size_t>(scope)].prefix;
  for (const auto& [name, place] : unit.places) m_result->places[prefix + name] = place;
  for (NAMED_BUS bus : unit.net_buses) {
    bus.name = prefix + bus.name;
    m_result->net_buses.push_back(std::move(bus));
  }
  for (NAMED_ASSIGNMENT assignment : unit.assignments) {
    bool is_whole = assignment.node.empty() && scope != 0;
    assignment.node = is_whole                  ? prefix.substr(0, prefix.size() - 1)
                      : assignment.node.empty() ? ""
                                                : prefix + assignment.node;
    m_result->assignments.push_back(std::move(assignment));
  }
  for (const std::string& file : unit.dependent_files)
    if (std::find(m_result->dependent_files.begin(), m_result->dependent_files.end(), file) ==
        m_result->dependent_files.end())
      m_result->dependent_files.push_back(file);
}

} // namespace

DESIGN flatten_design(const DESIGN_VIEW& view) { return FLATTENER(view).flatten(); }
