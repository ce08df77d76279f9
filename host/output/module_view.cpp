// Builds the vectors and groups of a module from the single bits of its netlist.
#include "module_view.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "signal_names.h"

bool SIGNAL::offset_of(int index, size_t& offset) const {
  int low = std::min(left, right);
  int high = std::max(left, right);
  if (index < low || index > high) return false;
  offset = static_cast<size_t>(left >= right ? index - right : right - index);
  return true;
}

MODULE_VIEW::MODULE_VIEW(const UNIT_RESULT& result) : m_result(result) {
  make_ports();
  join_buses();
  make_signals();
  for (const SIGNAL& signal : m_signals)
    if (signal.is_port) m_ports.push_back(&signal);
  make_groups();
}

namespace {

/// The first bus of each name.
class BUSES_BY_NAME {
public:
  explicit BUSES_BY_NAME(const std::vector<NAMED_BUS>& buses) {
    for (const NAMED_BUS& bus : buses) m_buses.emplace(bus.name, &bus);
  }
  const NAMED_BUS* find(const std::string& name) const {
    auto at = m_buses.find(name);
    return at == m_buses.end() ? nullptr : at->second;
  }

private:
  std::unordered_map<std::string_view, const NAMED_BUS*> m_buses;
};

SOURCE_PLACE find_place(const UNIT_RESULT& result, const std::string& name) {
  auto at = result.places.find(name);
  return at == result.places.end() ? SOURCE_PLACE() : at->second;
}

/// Bits of a port as they come, before their vector is known.
struct PORT_BITS {
  std::string name;
  bool is_vector = false;
  std::vector<std::pair<int, const CDB_SGATE_IO*>> bits; // with their index
};

/// An escaped name may look like a bit of a vector: vectors are what the unit declares. Those of more than two
/// dimensions are not told, and show by the indices in front of the last.
INDEXED_NAME split_port_name(const std::string& text, const BUSES_BY_NAME& buses) {
  INDEXED_NAME name = split_index(text);
  if (!name.has_index || buses.find(name.base) || split_index(name.base).has_index) return name;
  return {text, 0, false};
}

std::vector<PORT_BITS> gather_ports(const UNIT_RESULT& result, const BUSES_BY_NAME& buses) {
  std::vector<PORT_BITS> ports;
  std::map<std::pair<std::string, bool>, size_t> by_name; // a scalar may have the name of a row
  for (const auto& node : result.get_netlist()->get_nodes()) {
    if (node->get_sgate_type() != CDB_SGATE_IO_ENUM) continue;
    std::string text = node->get_string_name() ? node->get_string_name() : "";
    INDEXED_NAME name = split_port_name(text, buses);
    auto [at, is_new] = by_name.emplace(std::pair(name.base, name.has_index), ports.size());
    if (is_new) ports.push_back({name.base, name.has_index, {}});
    ports[at->second].bits.emplace_back(name.index, static_cast<const CDB_SGATE_IO*>(node.get()));
  }
  return ports;
}

/// The declared bounds, or the span of the indices with the higher on the left.
void set_bounds(SIGNAL& signal, const NAMED_BUS* bus, int low, int high) {
  signal.left = high;
  signal.right = low;
  bool is_declared =
      bus && !bus->is_two_level && std::min(bus->left, bus->right) <= low && std::max(bus->left, bus->right) >= high;
  if (!is_declared) return;
  signal.left = bus->left;
  signal.right = bus->right;
}

size_t span_of(const SIGNAL& signal) {
  return static_cast<size_t>(std::abs(static_cast<long>(signal.left) - signal.right)) + 1;
}

} // namespace

void MODULE_VIEW::make_ports() {
  BUSES_BY_NAME buses(m_result.port_buses);
  for (const PORT_BITS& port : gather_ports(m_result, buses)) {
    SIGNAL signal;
    signal.name = port.name;
    signal.is_port = true;
    signal.is_vector = port.is_vector;
    signal.direction = port.bits.front().second->get_direction();
    const NAMED_BUS* bus = buses.find(port.name);
    signal.place = bus ? bus->place : find_place(m_result, port.name);
    if (port.is_vector) {
      auto [low, high] = std::minmax_element(port.bits.begin(), port.bits.end());
      set_bounds(signal, bus, low->first, high->first);
    }
    signal.nets.assign(span_of(signal), -1);
    signal.ios.assign(span_of(signal), nullptr);
    size_t number = m_signals.size();
    for (auto [index, io] : port.bits) {
      size_t offset = 0;
      if (port.is_vector) signal.offset_of(index, offset);
      signal.ios[offset] = io;
      m_port_bits[io->get_string_name() ? io->get_string_name() : ""] = {number, offset};
    }
    m_signals.push_back(std::move(signal));
  }
}

/// A bus of several drivers, the bidirectional ports on it and the tristate drivers that serve it alone are one net.
void MODULE_VIEW::join_buses() {
  for (const auto& node : m_result.get_netlist()->get_nodes()) {
    if (node->get_sgate_type() != CDB_SGATE_TRI_BUS_ENUM) continue;
    const CDB_SGATE_OTERM* bus = node->get_first_oterm();
    if (!bus) continue;
    for (const auto& input : node->get_iterms()) join_bus_input(*input, bus);
  }
}

namespace {

/// Drivers that may share a net with others: tristate drivers and ports.
bool can_share_net(const CDB_SGATE_OTERM& driver) {
  switch (driver.get_node()->get_sgate_type()) {
  case CDB_SGATE_IO_ENUM:
  case CDB_SGATE_TRI_BUS_ENUM:
  case CDB_SGATE_COMPONENT_ENUM: return true;
  case CDB_SGATE_IO_BUF_ENUM: return driver.get_fanouts().size() == 1 && !driver.is_inverted();
  default: return false;
  }
}

bool is_bidirectional_io(const CDB_SGATE_NODE& node) {
  return node.get_sgate_type() == CDB_SGATE_IO_ENUM &&
         static_cast<const CDB_SGATE_IO&>(node).get_direction() == CDB_IO_BIDIR;
}

} // namespace

void MODULE_VIEW::join_bus_input(const CDB_SGATE_ITERM& input, const CDB_SGATE_OTERM* bus) {
  const CDB_SGATE_OTERM* source = input.get_source();
  if (!source || !can_share_net(*source)) return;
  bool is_plain_input =
      source->get_node()->get_sgate_type() == CDB_SGATE_IO_ENUM && !is_bidirectional_io(*source->get_node());
  if (is_plain_input) return;
  if (joined(source) != joined(bus)) m_joined[joined(source)] = joined(bus);
}

const CDB_SGATE_OTERM* MODULE_VIEW::joined(const CDB_SGATE_OTERM* term) const {
  for (auto at = m_joined.find(term); at != m_joined.end(); at = m_joined.find(term)) term = at->second;
  return term;
}

bool MODULE_VIEW::is_joined(const CDB_SGATE_ITERM& bus_input) const {
  const CDB_SGATE_OTERM* source = bus_input.get_source();
  const CDB_SGATE_OTERM* bus = bus_input.get_node()->get_first_oterm();
  return source && bus && joined(source) == joined(bus);
}

void MODULE_VIEW::bind(const CDB_SGATE_OTERM* term, int signal, size_t offset) {
  int net = static_cast<int>(m_places.size());
  if (!m_nets.emplace(joined(term), net).second) return;
  m_places.push_back({signal, static_cast<unsigned>(offset)});
  m_drivers.push_back(term->get_node());
  m_signals[static_cast<size_t>(signal)].nets[offset] = net;
}

namespace {

/// The name of what an output term drives: its own, or one made from its node's.
std::string wanted_name(const CDB_SGATE_OTERM& term) {
  if (term.get_string_name()) return term.get_string_name();
  const CDB_SGATE_NODE& node = *term.get_node();
  std::string name = node.get_string_name() ? node.get_string_name() : "";
  if (node.get_sgate_type() == CDB_SGATE_COMPONENT_ENUM)
    return name + "." + static_cast<const CDB_SGATE_COMPONENT&>(node).get_port_of(term)->get_full_name();
  if (node.get_oterms().size() == 1) return name;
  if (term.get_type() == CDB_OPERATOR_CARRY_OUT) return name + "~cout";
  const char* port = term.get_type() == CDB_TERM_RAM_OUTPUT_B ? "~b[" : "~o[";
  return name + port + std::to_string(term.get_index()) + "]";
}

/// Bits of a wished vector in the order of their nodes.
struct VECTOR_BITS {
  std::string name;
  bool is_vector = false;
  std::vector<std::pair<int, const CDB_SGATE_OTERM*>> bits;
};

/// What stores a value and what computes one do not share a vector.
bool is_storage(const CDB_SGATE_NODE& node) {
  return node.get_sgate_type() == CDB_SGATE_DFF_ENUM || node.get_sgate_type() == CDB_SGATE_STATE_ENUM ||
         node.get_sgate_type() == CDB_SGATE_LATCH_ENUM;
}

/// A vector may have holes as long as most of it is there.
bool is_dense(const VECTOR_BITS& vector, int low, int high) {
  constexpr long SLACK = 32;
  return static_cast<long>(high) - low < 4 * static_cast<long>(vector.bits.size()) + SLACK;
}

} // namespace

void MODULE_VIEW::make_signals() {
  // Ports come first: what an input brings and what a bidirectional port is one with bear the port's name.
  for (size_t number = 0; number < m_signals.size(); number++) {
    for (size_t offset = 0; offset < m_signals[number].ios.size(); offset++) {
      const CDB_SGATE_IO* io = m_signals[number].ios[offset];
      if (!io || io->get_direction() == CDB_IO_OUTPUT) continue;
      if (io->get_first_oterm()) bind(io->get_first_oterm(), static_cast<int>(number), offset);
    }
  }

  std::vector<VECTOR_BITS> vectors;
  std::unordered_map<std::string, size_t> by_name;
  for (const auto& node : m_result.get_netlist()->get_nodes()) {
    for (const auto& term : node->get_oterms()) {
      if (joined(term.get()) != term.get() || m_nets.count(term.get())) continue;
      std::string text = wanted_name(*term);
      INDEXED_NAME name = split_index(text);
      std::string base = name.has_index ? name.base : text;
      auto [at, is_new] = by_name.emplace((is_storage(*node) ? "=" : "~") + base, vectors.size());
      if (is_new) vectors.push_back({base, name.has_index, {}});
      VECTOR_BITS& vector = vectors[at->second];
      if (vector.is_vector == name.has_index) {
        vector.bits.emplace_back(name.index, term.get());
      } else { // a scalar and a vector of one name
        vectors.push_back({text, false, {{0, term.get()}}});
      }
    }
  }

  BUSES_BY_NAME buses(m_result.net_buses);
  SIGNAL_NAMES names;
  for (const SIGNAL& port : m_signals) names.reserve(port.name);
  for (const VECTOR_BITS& vector : vectors) {
    auto [low, high] = std::minmax_element(vector.bits.begin(), vector.bits.end());
    if (vector.is_vector && is_dense(vector, low->first, high->first)) {
      SIGNAL signal;
      signal.is_vector = true;
      const NAMED_BUS* bus = buses.find(vector.name);
      set_bounds(signal, bus, low->first, high->first);
      if (bus) signal.place = bus->place;
      signal.nets.assign(span_of(signal), -1);
      signal.name = names.make_unique(vector.name);
      m_signals.push_back(std::move(signal));
    }
    int number = static_cast<int>(m_signals.size()) - 1;
    for (auto [index, term] : vector.bits) {
      size_t offset = 0;
      bool fits = vector.is_vector && is_dense(vector, low->first, high->first) &&
                  m_signals[static_cast<size_t>(number)].offset_of(index, offset) &&
                  m_signals[static_cast<size_t>(number)].nets[offset] < 0;
      if (fits) {
        bind(term, number, offset);
        continue;
      }
      SIGNAL scalar;
      scalar.name = names.make_unique(vector.is_vector ? vector.name + "[" + std::to_string(index) + "]" : vector.name);
      scalar.place = find_place(m_result, vector.name);
      scalar.nets.assign(1, -1);
      m_signals.push_back(std::move(scalar));
      bind(term, static_cast<int>(m_signals.size()) - 1, 0);
    }
  }
}

BIT MODULE_VIEW::input(const CDB_SGATE_ITERM* term) const {
  if (!term || !term->is_connected()) return {BIT::UNCONNECTED};
  if (term->is_gnd()) return {BIT::ZERO};
  if (term->is_vcc()) return {BIT::ONE};
  return output(term->get_source());
}

BIT MODULE_VIEW::output(const CDB_SGATE_OTERM* term) const {
  if (!term) return {BIT::UNCONNECTED};
  auto at = m_nets.find(joined(term));
  return at == m_nets.end() ? BIT{BIT::UNCONNECTED} : BIT{BIT::NET, at->second};
}

BITS MODULE_VIEW::input_bits(const CDB_SGATE_NODE& node, int type, unsigned width) const {
  BITS bits;
  for (unsigned i = 0; i < width; i++) bits.push_back(input(node.find_iterm(type, i)));
  return bits;
}

BITS MODULE_VIEW::output_bits(const CDB_SGATE_NODE& node, int type, unsigned width) const {
  BITS bits;
  for (unsigned i = 0; i < width; i++) bits.push_back(output(node.find_oterm(type, i)));
  return bits;
}

BITS MODULE_VIEW::group_inputs(const NODE_GROUP& group, int type, unsigned index) const {
  BITS bits;
  for (const CDB_SGATE_NODE* node : group.nodes) {
    const CDB_SGATE_ITERM* term = node->find_iterm(type, index);
    // Gates and buffers may have made their input under either type.
    if (type == CDB_TERM_UNORDERED && index < node->get_iterms().size()) term = node->get_iterms()[index].get();
    bits.push_back(input(term));
  }
  return bits;
}

BITS MODULE_VIEW::group_outputs(const NODE_GROUP& group) const {
  BITS bits;
  for (const CDB_SGATE_NODE* node : group.nodes) bits.push_back(output(node->get_first_oterm()));
  return bits;
}

BIT MODULE_VIEW::component_port(const CDB_COMPONENT_PORT* port) const {
  if (!port) return {BIT::UNCONNECTED};
  BIT read = input(port->get_iterm());
  // A bidirectional port that reads a constant drives nothing that anyone reads.
  bool is_tied = read.kind == BIT::ZERO || read.kind == BIT::ONE;
  if (port->get_oterm() && !is_tied && output(port->get_oterm()).is_net()) return output(port->get_oterm());
  return read;
}

namespace {

BIT machine_control(const MODULE_VIEW& view, const CDB_SGATE_OTERM* term, bool is_inverted) {
  if (term) return view.output(term);
  return {is_inverted ? BIT::ZERO : BIT::ONE};
}

} // namespace

REGISTER_CONTROLS MODULE_VIEW::controls(const CDB_SGATE_NODE& node) const {
  REGISTER_CONTROLS controls;
  if (node.get_sgate_type() == CDB_SGATE_STATE_ENUM) {
    const auto& state = static_cast<const CDB_SGATE_STATE&>(node);
    const CDB_STATE_MACHINE* machine = state.get_machine();
    controls.clock = machine_control(*this, machine->get_clk(), machine->clk_is_inverted());
    controls.clock_falls = machine->get_clk() && machine->clk_is_inverted();
    if (!machine->has_reset()) return controls;
    BIT reset = machine_control(*this, machine->get_reset(), machine->reset_is_inverted());
    controls.is_async_low = machine->get_reset() && machine->reset_is_inverted();
    BIT inactive{controls.is_async_low ? BIT::ONE : BIT::ZERO};
    controls.set = state.is_reset_state() ? reset : inactive;
    controls.reset = state.is_reset_state() ? inactive : reset;
    return controls;
  }
  auto control = [&](int type) {
    const CDB_SGATE_ITERM* term = node.find_iterm(type);
    return term ? input(term) : BIT{BIT::ZERO};
  };
  controls.clock = control(node.get_sgate_type() == CDB_SGATE_LATCH_ENUM ? CDB_TERM_LATCH_ENABLE : CDB_TERM_CLOCK);
  controls.reset = control(CDB_TERM_RESET);
  controls.set = control(CDB_TERM_SET);
  controls.load = control(CDB_TERM_ASYNC_LOAD);
  return controls;
}

namespace {

std::string text_of(const BIT& bit) { return std::to_string(bit.kind) + "." + std::to_string(bit.net); }

std::string text_of(const REGISTER_CONTROLS& controls) {
  std::string text;
  for (const BIT& bit : {controls.clock, controls.reset, controls.set, controls.load}) text += text_of(bit) + ",";
  return text + (controls.clock_falls ? "f" : "r") + (controls.is_async_low ? "l" : "h");
}

} // namespace

/// A gate that reads another bit of the vector that it drives: in one group with that bit's gate the vector would seem
/// to feed itself.
bool MODULE_VIEW::reads_signal(const CDB_SGATE_NODE& node, int signal) const {
  return std::any_of(node.get_iterms().begin(), node.get_iterms().end(), [&](const auto& term) {
    BIT bit = input(term.get());
    return bit.is_net() && get_place(bit.net).signal == signal;
  });
}

/// Nodes of equal keys do the same to their bits; empty for nodes that stand alone.
std::string MODULE_VIEW::group_key(const CDB_SGATE_NODE& node) const {
  const CDB_SGATE_OTERM* term = node.get_oterms().size() == 1 ? node.get_first_oterm() : nullptr;
  if (!term || joined(term) != term || !output(term).is_net()) return "";
  const NET_PLACE& place = get_place(output(term).net);
  if (!is_storage(node) && reads_signal(node, place.signal)) return "";
  std::string key = std::to_string(place.signal) + ":" + std::to_string(node.get_sgate_type()) +
                    (term->is_inverted() ? "~" : "") + ":";
  switch (node.get_sgate_type()) {
  case CDB_SGATE_BUFFER_ENUM: return key + std::to_string(static_cast<const CDB_SGATE_BUFFER&>(node).get_buffer_type());
  case CDB_SGATE_COMB_ENUM:
    return key + std::to_string(static_cast<const CDB_SGATE_COMB&>(node).get_comb_type()) + "/" +
           std::to_string(node.get_iterms().size());
  case CDB_SGATE_MUX_ENUM: return key + text_of(input(node.find_iterm(CDB_TERM_MUX_SELECT)));
  case CDB_SGATE_DFF_ENUM:
    return key + text_of(controls(node)) + std::to_string(static_cast<const CDB_SGATE_DFF&>(node).get_power_up());
  case CDB_SGATE_STATE_ENUM:
  case CDB_SGATE_LATCH_ENUM: return key + text_of(controls(node));
  case CDB_SGATE_IO_BUF_ENUM: return key + text_of(input(node.find_iterm(CDB_TERM_OUTPUT_ENABLE)));
  case CDB_SGATE_IO_ENUM:
  case CDB_SGATE_TRI_BUS_ENUM:
  case CDB_SGATE_COMPONENT_ENUM:
  case CDB_SGATE_OPERATOR_ENUM:
  case CDB_SGATE_ASYNCHRONOUS_RAM_ENUM: return "";
  }
  return "";
}

void MODULE_VIEW::make_groups() {
  std::unordered_map<std::string, size_t> by_key;
  for (const auto& node : m_result.get_netlist()->get_nodes()) {
    std::string key = group_key(*node);
    if (!key.empty()) {
      auto [at, is_new] = by_key.emplace(key, m_groups.size());
      if (!is_new) {
        m_groups[at->second].nodes.push_back(node.get());
        continue;
      }
    }
    m_groups.push_back({{node.get()}});
  }
  for (NODE_GROUP& group : m_groups) {
    if (group.nodes.size() < 2) continue;
    auto offset = [this](const CDB_SGATE_NODE* node) { return get_place(output(node->get_first_oterm()).net).offset; };
    std::sort(group.nodes.begin(), group.nodes.end(),
              [&](const CDB_SGATE_NODE* left, const CDB_SGATE_NODE* right) { return offset(left) < offset(right); });
  }
}

bool MODULE_VIEW::find_port_bit(const std::string& full_name, const SIGNAL*& port, size_t& offset) const {
  auto at = m_port_bits.find(full_name);
  if (at == m_port_bits.end()) return false;
  port = &m_signals[at->second.first];
  offset = at->second.second;
  return true;
}

SOURCE_PLACE MODULE_VIEW::place_of(const CDB_SGATE_NODE& node) const {
  if (node.get_source_line() != 0) return {node.get_source_file(), static_cast<int>(node.get_source_line())};
  return node.get_string_name() ? find_place(m_result, node.get_string_name()) : SOURCE_PLACE();
}
