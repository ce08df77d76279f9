// The JSON netlist of open FPGA tools: modules with ports, word-level cells and names. Nets are numbered from 2, since
// the format keeps 0 and 1 for constants.
#include "writer.h"

#include <algorithm>
#include <bitset>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <map>
#include <unordered_map>

#include <nlohmann/json.hpp>

#include "ram_view.h"
#include "signal_names.h"

using JSON = nlohmann::ordered_json;

namespace {

constexpr int FIRST_NET = 2;

/// A member whose name is new. An object in order looks names up one by one, which large modules cannot afford.
JSON& new_member(JSON& object, const std::string& name) {
  return object.get_ref<JSON::object_t&>().emplace_back(name, JSON()).second;
}

JSON json_bit(const BIT& bit) {
  switch (bit.kind) {
  case BIT::ZERO: return "0";
  case BIT::ONE: return "1";
  case BIT::UNKNOWN:
  case BIT::UNCONNECTED: return "x";
  case BIT::NET: return bit.net + FIRST_NET;
  }
  return "x";
}

JSON json_bits(const BITS& bits) {
  JSON list = JSON::array();
  for (const BIT& bit : bits) list.push_back(json_bit(bit));
  return list;
}

/// Integers are strings of 32 binary digits.
std::string json_integer(unsigned long value) {
  constexpr unsigned WIDTH = 32;
  std::string digits(WIDTH, '0');
  for (unsigned i = 0; i < WIDTH; i++)
    if (value >> i & 1U) digits[WIDTH - 1 - i] = '1';
  return digits;
}

/// The digits of a number as binary ones; only binary digits can be unknown.
std::string binary_digits(const std::string& digits, unsigned bits_per_digit) {
  std::string binary;
  for (char digit : digits) {
    auto letter = static_cast<char>(std::tolower(static_cast<unsigned char>(digit)));
    if (bits_per_digit == 1) {
      binary += letter;
      continue;
    }
    int value = letter >= 'a' ? letter - 'a' + 10 : letter - '0';
    for (unsigned bit = bits_per_digit; bit-- > 0;) binary += (value >> bit & 1) != 0 ? '1' : '0';
  }
  return binary;
}

/// A literal with width and base, as the notations of values give it.
std::string json_literal(const std::string& text, size_t quote) {
  size_t base = quote + (text[quote + 1] == 's' ? 2 : 1);
  unsigned bits_per_digit = text[base] == 'h' ? 4 : text[base] == 'o' ? 3 : 1;
  std::string binary = binary_digits(text.substr(base + 1), bits_per_digit);
  size_t width = std::strtoul(text.c_str(), nullptr, 10);
  if (width <= binary.size()) return binary.substr(binary.size() - width);
  char fill = binary[0] == '1' ? '0' : binary[0];
  return std::string(width - binary.size(), fill) + binary;
}

/// A parameter's value: numbers as binary digits, as wide as they are; strings that readers could take for digits with
/// a blank behind them, which readers drop.
std::string json_parameter(const std::string& text) {
  PARAMETER_VALUE value = read_parameter_value(text);
  if (value.kind == 's') {
    size_t end = value.text.find_first_not_of("01xz");
    bool looks_like_digits = end == std::string::npos || value.text.find_first_not_of(' ', end) == std::string::npos;
    return looks_like_digits ? value.text + " " : value.text;
  }
  if (value.kind != 'i') return value.text;
  size_t quote = value.text.find('\'');
  if (quote != std::string::npos) return json_literal(value.text, quote);
  errno = 0;
  long long number = std::strtoll(value.text.c_str(), nullptr, 10);
  if (errno == ERANGE) return value.text;
  bool is_int = number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<unsigned>::max();
  return is_int ? json_integer(static_cast<unsigned long>(number))
                : std::bitset<64>(static_cast<unsigned long long>(number)).to_string();
}

JSON attributes_of(const SOURCE_PLACE& place) {
  JSON attributes = JSON::object();
  if (!place.file.empty()) attributes["src"] = place.file + ":" + std::to_string(place.line);
  return attributes;
}

/// One cell under construction: type, parameters and connections in the order of their adding.
struct CELL {
  std::string type;
  JSON parameters = JSON::object();
  JSON directions = JSON::object();
  JSON connections = JSON::object();
  JSON attributes = JSON::object();

  explicit CELL(const char* cell_type) : type(cell_type) {}
  CELL& set(const char* name, unsigned long value) {
    parameters[name] = json_integer(value);
    return *this;
  }
  CELL& digits(const char* name, const std::string& binary) {
    parameters[name] = binary;
    return *this;
  }
  CELL& in(const std::string& port, const BITS& bits) { return connect(port, "input", bits); }
  CELL& out(const std::string& port, const BITS& bits) { return connect(port, "output", bits); }
  CELL& connect(const std::string& port, const char* direction, const BITS& bits) {
    directions[port] = direction;
    connections[port] = json_bits(bits);
    return *this;
  }
};

class JSON_MODULE {
public:
  JSON_MODULE(const DESIGN_VIEW& design, const MODULE_VIEW& view, JSON& modules)
      : m_design(design), m_view(view), m_modules(modules), m_next_net(static_cast<int>(view.get_net_count())) {}
  void write(bool is_top);

private:
  void write_ports(JSON& module);
  void write_names(JSON& module);
  std::string power_up_of(const BITS& bits) const;
  void write_group(const NODE_GROUP& group);
  void write_gate(const NODE_GROUP& group);
  void write_register(const NODE_GROUP& group);
  void write_latch(const NODE_GROUP& group);
  /// Data that is taken while an enable is 1.
  struct LEVEL_LOAD {
    BIT enable;
    BITS data;
  };
  /// Makes a control that forces a constant win over a load.
  void override_load(LEVEL_LOAD& load, const BIT& control, BIT::KIND value, const CDB_SGATE_NODE& node);
  void write_bus(const CDB_SGATE_NODE& node);
  void write_component(const CDB_SGATE_COMPONENT& component);
  void write_full_adder(const CDB_SGATE_COMPONENT& component);
  void declare_black_box(const CDB_SGATE_COMPONENT& component, const std::vector<BLACK_BOX_PORT>& ports);
  void write_operator(const CDB_SGATE_OPERATOR& node);
  void write_adder(const CDB_SGATE_OPERATOR& node);
  void write_shift(const CDB_SGATE_OPERATOR& node, BITS y);
  void write_rotate(const CDB_SGATE_OPERATOR& node, BITS y);
  void write_less_than(const CDB_SGATE_OPERATOR& node, const BITS& y);
  void write_selector(const CDB_SGATE_OPERATOR& node, const BITS& y);
  void write_ram(const CDB_SGATE_ASYNCHRONOUS_RAM& ram);
  static BITS word_address(const BITS& address, unsigned words, unsigned part, size_t width);
  BIT port_enable(const RAM_WRITE_PORT& port);
  BITS bit_enables(const RAM_WRITE_PORT& port);

  /// The bits of a port or of a net with a name.
  BITS signal_bits(const SIGNAL& signal);
  BIT new_net() { return {BIT::NET, m_next_net++}; }
  BITS new_nets(size_t width);
  /// A net for each output that goes nowhere.
  BITS complete(BITS bits);
  BITS inverted(const BITS& bits);
  /// The outputs of a group as its cell drives them: through inverters where the output is inverted.
  BITS cell_outputs(const NODE_GROUP& group);
  void add(const CELL& cell, const CDB_SGATE_NODE& node);
  void add_unary(const char* type, const BITS& a, const BITS& y, const CDB_SGATE_NODE& node);
  void add_binary(const char* type, const BITS& a, const BITS& b, const BITS& y, const CDB_SGATE_NODE& node,
                  bool is_signed = false);

  const DESIGN_VIEW& m_design;
  const MODULE_VIEW& m_view;
  JSON& m_modules;
  JSON m_cells = JSON::object();
  SIGNAL_NAMES m_cell_names;
  const CDB_SGATE_NODE* m_current = nullptr;
  std::unordered_map<int, char> m_power_up; // digits by net
  int m_next_net;
  /// Nets of inputs that nothing reads: a constant in their place would be taken for a driver of what is connected
  /// there.
  std::map<std::pair<const SIGNAL*, size_t>, BIT> m_unread_inputs;
};

void JSON_MODULE::write(bool is_top) {
  const UNIT_RESULT& result = m_view.get_result();
  JSON module = JSON::object();
  const MSG_TEXT_LOCATION_SCHEMA& place = result.unit->get_location();
  module["attributes"] = attributes_of({place.get_file(), place.get_line()});
  if (is_top) module["attributes"]["top"] = json_integer(1);
  if (!result.exact_parameters.empty()) {
    JSON defaults = JSON::object();
    for (const UNIT_PARAMETER& parameter : result.exact_parameters)
      defaults[parameter.name] = json_parameter(parameter.value);
    module["parameter_default_values"] = defaults;
  }
  write_ports(module);
  // Cells and nets share one name space.
  for (const SIGNAL& signal : m_view.get_signals()) m_cell_names.reserve(signal.name);
  for (const NODE_GROUP& group : m_view.get_groups()) write_group(group);
  module["cells"] = std::move(m_cells);
  write_names(module);
  m_modules[result.module_name] = std::move(module);
}

void JSON_MODULE::write_ports(JSON& module) {
  static constexpr const char* directions[] = {"input", "output", "inout"};
  JSON ports = JSON::object();
  for (const SIGNAL* port : m_view.get_ports()) {
    JSON& entry = ports[port->name];
    entry["direction"] = directions[port->direction];
    bool counts_from_zero = port->right == 0 || !port->is_vector;
    if (!counts_from_zero) entry["offset"] = std::min(port->left, port->right);
    if (port->left < port->right) entry["upto"] = 1;
    entry["bits"] = json_bits(signal_bits(*port));
  }
  module["ports"] = std::move(ports);
}

BITS JSON_MODULE::signal_bits(const SIGNAL& signal) {
  BITS bits;
  for (size_t offset = 0; offset < signal.nets.size(); offset++) {
    if (signal.nets[offset] >= 0) {
      bits.push_back({BIT::NET, signal.nets[offset]});
      continue;
    }
    const CDB_SGATE_IO* io = signal.is_port ? signal.ios[offset] : nullptr;
    BIT bit = m_view.input(io ? io->find_iterm(CDB_TERM_DATA) : nullptr);
    if (bit.kind == BIT::UNCONNECTED && signal.is_port && signal.direction != CDB_IO_OUTPUT) {
      auto [unread, is_new] = m_unread_inputs.try_emplace({&signal, offset});
      if (is_new) unread->second = new_net();
      bit = unread->second;
    }
    bits.push_back(bit);
  }
  return bits;
}

void JSON_MODULE::write_names(JSON& module) {
  JSON names = JSON::object();
  for (const SIGNAL& signal : m_view.get_signals()) {
    const BITS bits = signal_bits(signal);
    JSON& entry = new_member(names, signal.name);
    entry["hide_name"] = signal.is_port || !signal.place.file.empty() ? 0 : 1;
    entry["bits"] = json_bits(bits);
    if (signal.is_vector && std::min(signal.left, signal.right) != 0)
      entry["offset"] = std::min(signal.left, signal.right);
    if (signal.left < signal.right) entry["upto"] = 1;
    entry["attributes"] = attributes_of(signal.place);
    std::string power_up = power_up_of(bits);
    if (!power_up.empty()) entry["attributes"]["init"] = power_up;
  }
  module["netnames"] = std::move(names);
}

/// What the registers of a name hold at power-up, the most significant bit first; empty when nothing is told.
std::string JSON_MODULE::power_up_of(const BITS& bits) const {
  std::string digits;
  bool is_told = false;
  for (auto bit = bits.rbegin(); bit != bits.rend(); ++bit) {
    auto at = bit->is_net() ? m_power_up.find(bit->net) : m_power_up.end();
    is_told |= at != m_power_up.end();
    digits += at == m_power_up.end() ? 'x' : at->second;
  }
  return is_told ? digits : "";
}

BITS JSON_MODULE::new_nets(size_t width) {
  BITS bits;
  for (size_t i = 0; i < width; i++) bits.push_back(new_net());
  return bits;
}

BITS JSON_MODULE::complete(BITS bits) {
  for (BIT& bit : bits)
    if (!bit.is_net()) bit = new_net();
  return bits;
}

void JSON_MODULE::add(const CELL& cell, const CDB_SGATE_NODE& node) {
  std::string name = node.get_string_name() ? node.get_string_name() : "";
  JSON& entry = new_member(m_cells, m_cell_names.make_unique(name.empty() ? "$cell" : name));
  entry["hide_name"] = name.empty() ? 1 : 0;
  entry["type"] = cell.type;
  entry["parameters"] = cell.parameters;
  entry["attributes"] = attributes_of(m_view.place_of(node));
  for (const auto& [key, value] : cell.attributes.items()) entry["attributes"][key] = value;
  entry["port_directions"] = cell.directions;
  entry["connections"] = cell.connections;
}

void JSON_MODULE::add_unary(const char* type, const BITS& a, const BITS& y, const CDB_SGATE_NODE& node) {
  CELL cell(type);
  cell.set("A_SIGNED", 0).set("A_WIDTH", a.size()).set("Y_WIDTH", y.size()).in("A", a).out("Y", y);
  add(cell, node);
}

void JSON_MODULE::add_binary(const char* type, const BITS& a, const BITS& b, const BITS& y, const CDB_SGATE_NODE& node,
                             bool is_signed) {
  CELL cell(type);
  cell.set("A_SIGNED", is_signed).set("A_WIDTH", a.size()).set("B_SIGNED", is_signed).set("B_WIDTH", b.size());
  cell.set("Y_WIDTH", y.size()).in("A", a).in("B", b).out("Y", y);
  add(cell, node);
}

BITS JSON_MODULE::inverted(const BITS& bits) {
  BITS result = new_nets(bits.size());
  add_unary("$not", bits, result, *m_current);
  return result;
}

BITS JSON_MODULE::cell_outputs(const NODE_GROUP& group) {
  BITS outputs = complete(m_view.group_outputs(group));
  const CDB_SGATE_OTERM* term = group.first()->get_first_oterm();
  if (!term || !term->is_inverted()) return outputs;
  BITS raw = new_nets(outputs.size());
  add_unary("$not", raw, outputs, *group.first());
  return raw;
}

bool drives_something(const MODULE_VIEW& view, const NODE_GROUP& group) {
  BITS outputs = view.group_outputs(group);
  return std::any_of(outputs.begin(), outputs.end(), [](const BIT& bit) { return bit.is_net(); });
}

void JSON_MODULE::write_group(const NODE_GROUP& group) {
  const CDB_SGATE_NODE& node = *group.first();
  m_current = &node;
  CDB_SGATE_ENUM type = node.get_sgate_type();
  switch (type) {
  case CDB_SGATE_TRI_BUS_ENUM: return write_bus(node);
  case CDB_SGATE_COMPONENT_ENUM: return write_component(static_cast<const CDB_SGATE_COMPONENT&>(node));
  case CDB_SGATE_OPERATOR_ENUM: return write_operator(static_cast<const CDB_SGATE_OPERATOR&>(node));
  case CDB_SGATE_ASYNCHRONOUS_RAM_ENUM: return write_ram(static_cast<const CDB_SGATE_ASYNCHRONOUS_RAM&>(node));
  case CDB_SGATE_IO_ENUM: return;
  default: break;
  }
  if (!drives_something(m_view, group)) return;
  switch (type) {
  case CDB_SGATE_BUFFER_ENUM:
    return add_unary("$pos", m_view.group_inputs(group, CDB_TERM_UNORDERED), cell_outputs(group), node);
  case CDB_SGATE_COMB_ENUM: return write_gate(group);
  case CDB_SGATE_MUX_ENUM: {
    BITS y = cell_outputs(group);
    CELL cell("$mux");
    cell.set("WIDTH", y.size()).in("A", m_view.group_inputs(group, CDB_TERM_MUX_FIRST));
    cell.in("B", m_view.group_inputs(group, CDB_TERM_MUX_SECOND));
    cell.in("S", {m_view.input(node.find_iterm(CDB_TERM_MUX_SELECT))}).out("Y", y);
    return add(cell, node);
  }
  case CDB_SGATE_DFF_ENUM:
  case CDB_SGATE_STATE_ENUM: return write_register(group);
  case CDB_SGATE_LATCH_ENUM: return write_latch(group);
  case CDB_SGATE_IO_BUF_ENUM: {
    BITS y = complete(m_view.group_outputs(group));
    BITS data = m_view.group_inputs(group, CDB_TERM_DATA);
    if (node.get_first_oterm()->is_inverted()) data = inverted(data);
    CELL cell("$tribuf");
    cell.set("WIDTH", y.size()).in("A", data).in("EN", {m_view.input(node.find_iterm(CDB_TERM_OUTPUT_ENABLE))});
    return add(cell.out("Y", y), node);
  }
  default: return;
  }
}

void JSON_MODULE::write_gate(const NODE_GROUP& group) {
  static constexpr const char* types[] = {"$and", "$or", "$xor", "$not", "$pos"};           // by CDB_COMB_TYPE
  static constexpr const char* wide_types[] = {"$reduce_and", "$reduce_or", "$reduce_xor"}; // the same
  const CDB_SGATE_NODE& node = *group.first();
  CDB_COMB_TYPE type = static_cast<const CDB_SGATE_COMB&>(node).get_comb_type();
  size_t inputs = node.get_iterms().size();
  BITS y = cell_outputs(group);
  if (inputs == 2 && type <= CDB_COMB_XOR)
    return add_binary(types[type], m_view.group_inputs(group, CDB_TERM_UNORDERED, 0),
                      m_view.group_inputs(group, CDB_TERM_UNORDERED, 1), y, node);
  if (inputs == 1)
    return add_unary(type == CDB_COMB_NOT ? "$not" : "$pos", m_view.group_inputs(group, CDB_TERM_UNORDERED, 0), y,
                     node);
  if (type > CDB_COMB_XOR) return;
  // More inputs, or none: one reduction per bit.
  for (size_t i = 0; i < group.nodes.size(); i++) {
    BITS a;
    for (const auto& term : group.nodes[i]->get_iterms()) a.push_back(m_view.input(term.get()));
    if (a.empty()) a.push_back({type == CDB_COMB_AND ? BIT::ONE : BIT::ZERO});
    add_unary(wide_types[type], a, {y[i]}, *group.nodes[i]);
  }
}

bool is_level(const BIT& bit, BIT::KIND level) { return bit.kind == level; }

void JSON_MODULE::override_load(LEVEL_LOAD& load, const BIT& control, BIT::KIND value, const CDB_SGATE_NODE& node) {
  BITS data = new_nets(load.data.size());
  CELL mux("$mux");
  mux.set("WIDTH", data.size()).in("A", load.data).in("B", BITS(data.size(), BIT{value})).in("S", {control});
  add(mux.out("Y", data), node);
  BIT enable = new_net();
  add_binary("$or", {load.enable}, {control}, {enable}, node);
  load = {enable, data};
}

void JSON_MODULE::write_register(const NODE_GROUP& group) {
  const CDB_SGATE_NODE& node = *group.first();
  REGISTER_CONTROLS controls = m_view.controls(node);
  BITS q = cell_outputs(group);
  BIT::KIND inactive = controls.is_async_low ? BIT::ONE : BIT::ZERO;
  bool has_reset = !is_level(controls.reset, inactive) && !is_level(controls.reset, BIT::ZERO);
  bool has_set = !is_level(controls.set, inactive) && !is_level(controls.set, BIT::ZERO);
  bool has_load = !is_level(controls.load, BIT::ZERO);
  BITS d = m_view.group_inputs(group, CDB_TERM_DATA);

  CELL cell("$dff");
  cell.set("WIDTH", q.size()).set("CLK_POLARITY", controls.clock_falls ? 0 : 1);
  if (has_load) {
    // Reset and set become parts of the load and of what is loaded.
    LEVEL_LOAD load{controls.load, m_view.group_inputs(group, CDB_TERM_ASYNC_DATA)};
    if (has_set) override_load(load, controls.set, BIT::ONE, node);
    if (has_reset) override_load(load, controls.reset, BIT::ZERO, node);
    cell.type = "$aldff";
    cell.set("ALOAD_POLARITY", 1).in("ALOAD", {load.enable}).in("AD", load.data);
  } else if (has_reset && has_set) {
    cell.type = "$dffsr";
    cell.set("SET_POLARITY", !controls.is_async_low).set("CLR_POLARITY", !controls.is_async_low);
    cell.in("SET", BITS(q.size(), controls.set)).in("CLR", BITS(q.size(), controls.reset));
  } else if (has_reset || has_set) {
    cell.type = "$adff";
    cell.set("ARST_POLARITY", !controls.is_async_low).digits("ARST_VALUE", std::string(q.size(), has_set ? '1' : '0'));
    cell.in("ARST", {has_set ? controls.set : controls.reset});
  }
  cell.in("CLK", {controls.clock}).in("D", d).out("Q", q);
  add(cell, node);
  if (node.get_sgate_type() != CDB_SGATE_DFF_ENUM) return;
  CDB_POWER_UP_ENUM power_up = static_cast<const CDB_SGATE_DFF&>(node).get_power_up();
  if (power_up == CDB_POWER_UP_UNKNOWN) return;
  for (const BIT& bit : q) m_power_up[bit.net] = power_up == CDB_POWER_UP_HIGH ? '1' : '0';
}

/// Reset and set become parts of the enable and of the data: readers agree on the plain latch, and not on the others.
void JSON_MODULE::write_latch(const NODE_GROUP& group) {
  const CDB_SGATE_NODE& node = *group.first();
  REGISTER_CONTROLS controls = m_view.controls(node);
  LEVEL_LOAD load{controls.clock, m_view.group_inputs(group, CDB_TERM_DATA)};
  if (!is_level(controls.set, BIT::ZERO)) override_load(load, controls.set, BIT::ONE, node);
  if (!is_level(controls.reset, BIT::ZERO)) override_load(load, controls.reset, BIT::ZERO, node);
  BITS q = cell_outputs(group);
  CELL cell("$dlatch");
  cell.set("WIDTH", q.size()).set("EN_POLARITY", 1).in("EN", {load.enable}).in("D", load.data).out("Q", q);
  add(cell, node);
}

void JSON_MODULE::write_bus(const CDB_SGATE_NODE& node) {
  BIT bus = m_view.output(node.get_first_oterm());
  if (!bus.is_net()) return;
  for (const auto& input : node.get_iterms())
    if (input->is_connected() && !m_view.is_joined(*input)) add_unary("$pos", {m_view.input(input.get())}, {bus}, node);
}

void JSON_MODULE::write_component(const CDB_SGATE_COMPONENT& component) {
  if (is_full_adder(component)) return write_full_adder(component);
  static constexpr const char* directions[] = {"input", "output", "inout"};
  if (const MODULE_VIEW* child = m_design.get_child(m_view, component)) {
    CELL cell(child->get_result().module_name.c_str());
    for (const auto& [port, bits] : connections_of(m_view, component, *child))
      cell.connect(port->name, directions[port->direction], port->direction == CDB_IO_INPUT ? bits : complete(bits));
    return add(cell, component);
  }
  CELL cell(component.get_entity_name().c_str());
  for (const CDB_SGATE_COMPONENT::PARAMETER& parameter : component.get_parameters())
    if (!parameter.name.empty() && parameter.name[0] != ' ')
      cell.parameters[parameter.name] = json_parameter(parameter.value);
  std::vector<BLACK_BOX_PORT> ports = black_box_ports(m_view, component);
  declare_black_box(component, ports);
  for (size_t i = 0; i < ports.size(); i++) {
    if (ports[i].bits.empty()) continue;
    std::string name = ports[i].name.empty() ? "$" + std::to_string(i + 1) : ports[i].name;
    cell.connect(name, directions[ports[i].direction],
                 ports[i].direction == CDB_IO_INPUT ? ports[i].bits : complete(ports[i].bits));
  }
  add(cell, component);
}

/// A black box is declared with the ports that its instances have in all, so that readers know the directions.
void JSON_MODULE::declare_black_box(const CDB_SGATE_COMPONENT& component, const std::vector<BLACK_BOX_PORT>& ports) {
  static constexpr const char* directions[] = {"input", "output", "inout"};
  JSON& module = m_modules[component.get_entity_name()];
  if (module.is_null()) {
    module = JSON::object();
    module["attributes"]["blackbox"] = json_integer(1);
    module["ports"] = JSON::object();
    module["cells"] = JSON::object();
    module["netnames"] = JSON::object();
  }
  if (!module["attributes"].contains("blackbox")) return;
  int net = FIRST_NET;
  for (const JSON& port : module["ports"]) net += static_cast<int>(port["bits"].size());
  for (size_t i = 0; i < ports.size(); i++) {
    if (ports[i].bits.empty()) continue;
    JSON& port = module["ports"][ports[i].name.empty() ? "$" + std::to_string(i + 1) : ports[i].name];
    if (port.is_null()) port = {{"direction", directions[ports[i].direction]}, {"bits", JSON::array()}};
    while (port["bits"].size() < ports[i].bits.size()) port["bits"].push_back(net++);
  }
}

void JSON_MODULE::write_full_adder(const CDB_SGATE_COMPONENT& component) {
  auto bit = [&](const char* name) {
    for (const auto& port : component.get_ports())
      if (port->get_name() == name) return m_view.component_port(port.get());
    return BIT{BIT::UNCONNECTED};
  };
  CELL cell("$fa");
  cell.set("WIDTH", 1).in("A", {bit("a")}).in("B", {bit("b")}).in("C", {bit("cin")});
  add(cell.out("X", complete({bit("cout")})).out("Y", complete({bit("o")})), component);
}

void JSON_MODULE::write_operator(const CDB_SGATE_OPERATOR& node) {
  unsigned width = node.get_output_width(CDB_OPERATOR_OUTPUT);
  BITS y = complete(m_view.output_bits(node, CDB_OPERATOR_OUTPUT, width));
  BITS a = m_view.input_bits(node, CDB_OPERATOR_INPUT_1, node.get_input_width(CDB_OPERATOR_INPUT_1));
  BITS b = m_view.input_bits(node, CDB_OPERATOR_INPUT_2, node.get_input_width(CDB_OPERATOR_INPUT_2));
  switch (node.get_operator_type()) {
  case CDB_OPERATOR_ADDER:
  case CDB_OPERATOR_ADD_SUB: return write_adder(node);
  case CDB_OPERATOR_MULTIPLIER: return add_binary("$mul", a, b, y, node, node.is_signed());
  case CDB_OPERATOR_DIVIDER: return add_binary("$div", a, b, y, node, node.is_signed());
  case CDB_OPERATOR_MODULO: return add_binary("$mod", a, b, y, node, node.is_signed());
  case CDB_OPERATOR_SHIFT_LEFT:
  case CDB_OPERATOR_SHIFT_RIGHT: return write_shift(node, y);
  case CDB_OPERATOR_ROTATE_LEFT:
  case CDB_OPERATOR_ROTATE_RIGHT: return write_rotate(node, y);
  case CDB_OPERATOR_LESS_THAN: return write_less_than(node, y);
  case CDB_OPERATOR_EQUAL: return add_binary("$eq", a, b, y, node);
  case CDB_OPERATOR_N_TO_1_MUX: return add_binary("$shiftx", b, a, y, node);
  case CDB_OPERATOR_SELECTOR: return write_selector(node, y);
  case CDB_OPERATOR_DECODER:
    if (!is_sparse_decoder(y)) return add_binary("$shl", {{BIT::ONE}}, a, y, node);
    for (size_t line = 0; line < y.size(); line++) {
      if (!y[line].is_net()) continue;
      BITS number;
      for (size_t bit = 0; bit < a.size(); bit++) number.push_back({line >> bit & 1 ? BIT::ONE : BIT::ZERO});
      add_binary("$eq", a, number, {y[line]}, node);
    }
    return;
  }
}

void JSON_MODULE::write_adder(const CDB_SGATE_OPERATOR& node) {
  BITS a = m_view.input_bits(node, CDB_OPERATOR_INPUT_1, node.get_input_width(CDB_OPERATOR_INPUT_1));
  BITS b = m_view.input_bits(node, CDB_OPERATOR_INPUT_2, node.get_input_width(CDB_OPERATOR_INPUT_2));
  BIT carry = m_view.input(node.find_iterm(CDB_OPERATOR_CARRY_IN));
  if (carry.kind == BIT::UNCONNECTED) carry.kind = BIT::ZERO;
  const CDB_SGATE_OTERM* carry_out = node.find_oterm(CDB_OPERATOR_CARRY_OUT);
  size_t width = std::max({a.size(), b.size(), static_cast<size_t>(node.get_output_width(CDB_OPERATOR_OUTPUT))});
  BITS y = complete(m_view.output_bits(node, CDB_OPERATOR_OUTPUT, static_cast<unsigned>(width)));
  BIT subtract{BIT::ZERO};
  if (node.get_operator_type() == CDB_OPERATOR_ADD_SUB)
    subtract = inverted({m_view.input(node.find_iterm(CDB_OPERATOR_ADD_NOT_SUBTRACT))}).front();
  bool is_plain = carry.kind == BIT::ZERO && !carry_out && subtract.kind == BIT::ZERO;
  if (is_plain) return add_binary("$add", a, b, y, node);
  BITS carries = new_nets(width);
  if (carry_out && m_view.output(carry_out).is_net()) carries.back() = m_view.output(carry_out);
  CELL cell("$alu");
  cell.set("A_SIGNED", 0).set("A_WIDTH", a.size()).set("B_SIGNED", 0).set("B_WIDTH", b.size()).set("Y_WIDTH", width);
  cell.in("A", a).in("B", b).in("CI", {carry}).in("BI", {subtract});
  add(cell.out("X", new_nets(width)).out("Y", y).out("CO", carries), node);
}

void JSON_MODULE::write_shift(const CDB_SGATE_OPERATOR& node, BITS y) {
  bool is_left = node.get_operator_type() == CDB_OPERATOR_SHIFT_LEFT;
  BITS a = m_view.input_bits(node, CDB_OPERATOR_INPUT_1, node.get_input_width(CDB_OPERATOR_INPUT_1));
  BITS amount = m_view.input_bits(node, CDB_OPERATOR_AMOUNT, node.get_input_width(CDB_OPERATOR_AMOUNT));
  BIT fill = m_view.input(node.find_iterm(CDB_OPERATOR_CARRY_IN));
  while (y.size() < a.size()) y.push_back(new_net());
  const char* type = is_left ? "$shl" : "$shr";
  if (fill.kind == BIT::ZERO || fill.kind == BIT::UNCONNECTED) return add_binary(type, a, amount, y, node);
  if (!is_left && fill == a.back()) {
    CELL cell("$sshr");
    cell.set("A_SIGNED", 1).set("A_WIDTH", a.size()).set("B_SIGNED", 0).set("B_WIDTH", amount.size());
    return add(cell.set("Y_WIDTH", y.size()).in("A", a).in("B", amount).out("Y", y), node);
  }
  BITS shifted = new_nets(a.size());
  BITS kept = new_nets(a.size());
  BITS filling = new_nets(a.size());
  add_binary(type, a, amount, shifted, node);
  add_binary(type, BITS(a.size(), BIT{BIT::ONE}), amount, kept, node);
  add_binary("$and", inverted(kept), BITS(a.size(), fill), filling, node);
  add_binary("$or", shifted, filling, y, node);
}

void JSON_MODULE::write_rotate(const CDB_SGATE_OPERATOR& node, BITS y) {
  BITS a = m_view.input_bits(node, CDB_OPERATOR_INPUT_1, node.get_input_width(CDB_OPERATOR_INPUT_1));
  BITS amount = m_view.input_bits(node, CDB_OPERATOR_AMOUNT, node.get_input_width(CDB_OPERATOR_AMOUNT));
  while (y.size() < a.size()) y.push_back(new_net());
  BITS twice = a;
  twice.insert(twice.end(), a.begin(), a.end());
  BITS width_bits; // the width as a constant
  for (size_t rest = a.size(); rest != 0; rest >>= 1) width_bits.push_back({rest & 1U ? BIT::ONE : BIT::ZERO});
  BITS steps = new_nets(amount.size());
  add_binary("$mod", amount, width_bits, steps, node);
  if (node.get_operator_type() == CDB_OPERATOR_ROTATE_RIGHT) return add_binary("$shr", twice, steps, y, node);
  BITS wide = new_nets(a.size());
  wide.insert(wide.end(), y.begin(), y.end());
  add_binary("$shl", twice, steps, wide, node);
}

void JSON_MODULE::write_less_than(const CDB_SGATE_OPERATOR& node, const BITS& y) {
  BITS a = m_view.input_bits(node, CDB_OPERATOR_INPUT_1, node.get_input_width(CDB_OPERATOR_INPUT_1));
  BITS b = m_view.input_bits(node, CDB_OPERATOR_INPUT_2, node.get_input_width(CDB_OPERATOR_INPUT_2));
  BIT carry = m_view.input(node.find_iterm(CDB_OPERATOR_CARRY_IN));
  if (!carry.is_net()) return add_binary(carry.kind == BIT::ONE ? "$le" : "$lt", a, b, y, node, node.is_signed());
  BITS less = new_nets(1);
  BITS at_most = new_nets(1);
  add_binary("$lt", a, b, less, node, node.is_signed());
  add_binary("$le", a, b, at_most, node, node.is_signed());
  CELL cell("$mux");
  add(cell.set("WIDTH", 1).in("A", less).in("B", at_most).in("S", {carry}).out("Y", y), node);
}

void JSON_MODULE::write_selector(const CDB_SGATE_OPERATOR& node, const BITS& y) {
  BITS select = m_view.input_bits(node, CDB_OPERATOR_INPUT_1, node.get_input_width(CDB_OPERATOR_INPUT_1));
  BITS data = m_view.input_bits(node, CDB_OPERATOR_INPUT_2, node.get_input_width(CDB_OPERATOR_INPUT_2));
  BITS chosen = new_nets(select.size());
  add_binary("$and", select, data, chosen, node);
  add_unary("$reduce_or", chosen, y, node);
}

/// The address of one word of a port: the port's address above the number of the word.
BITS JSON_MODULE::word_address(const BITS& address, unsigned words, unsigned part, size_t width) {
  BITS bits;
  for (unsigned rest = words; rest > 1; rest >>= 1, part >>= 1) bits.push_back({part & 1U ? BIT::ONE : BIT::ZERO});
  bits.insert(bits.end(), address.begin(), address.end());
  bits.resize(width, BIT{BIT::ZERO});
  return bits;
}

/// What lets a port write at all, its reset included.
BIT JSON_MODULE::port_enable(const RAM_WRITE_PORT& port) {
  if (!port.has_reset()) return port.enable;
  BIT is_free = port.reset_is_low ? port.reset : inverted({port.reset}).front();
  if (port.enable.kind == BIT::ONE) return is_free;
  BIT enable = new_net();
  add_binary("$and", {port.enable}, {is_free}, {enable}, *m_current);
  return enable;
}

/// The write enables of all bits of a port: its own enable, or that of each lane.
BITS JSON_MODULE::bit_enables(const RAM_WRITE_PORT& port) {
  BIT enable = port_enable(port);
  if (port.lanes.empty()) return BITS(port.data.size(), enable);
  BITS lanes = port.lanes;
  if (enable.kind != BIT::ONE) {
    lanes = new_nets(port.lanes.size());
    add_binary("$and", BITS(lanes.size(), enable), port.lanes, lanes, *m_current);
  }
  size_t lane_width = std::max<size_t>(port.data.size() / lanes.size(), 1);
  BITS enables;
  for (size_t bit = 0; bit < port.data.size(); bit++) enables.push_back(lanes[bit / lane_width]);
  return enables;
}

/// For each word of a write port, the last one first, a row of the words over which it has priority.
std::string priority_mask(const RAM_VIEW& memory) {
  std::vector<const RAM_WRITE_PORT*> words;
  for (const RAM_WRITE_PORT& port : memory.writes) words.insert(words.end(), port.words, &port);
  auto wins = [&](size_t word, size_t over) {
    return over < word && words[word] != words[over] && words[word]->is_clocked &&
           words[word]->has_clock_of(*words[over]);
  };
  std::string digits;
  for (size_t word = words.size(); word-- > 0;)
    for (size_t over = words.size(); over-- > 0;) digits += wins(word, over) ? '1' : '0';
  return digits;
}

void JSON_MODULE::write_ram(const CDB_SGATE_ASYNCHRONOUS_RAM& ram) {
  RAM_VIEW memory(m_view, ram);
  size_t address_width = 1;
  while ((1UL << address_width) < memory.depth) address_width++;
  auto append = [](BITS& bits, const BITS& more) { bits.insert(bits.end(), more.begin(), more.end()); };
  BITS read_address, read_data, write_address, write_data, write_enable, write_clock;
  std::string is_clocked, rises; // by write port, the last one first
  for (const RAM_READ_PORT& port : memory.reads) {
    for (unsigned part = 0; part < port.words; part++)
      append(read_address, word_address(port.address, port.words, part, address_width));
    append(read_data, complete(port.data));
  }
  for (const RAM_WRITE_PORT& port : memory.writes) {
    for (unsigned part = 0; part < port.words; part++) {
      append(write_address, word_address(port.address, port.words, part, address_width));
      write_clock.push_back(port.is_clocked ? port.clock : BIT{BIT::UNKNOWN});
      is_clocked.insert(0, 1, port.is_clocked ? '1' : '0');
      rises.insert(0, 1, port.clock_falls ? '0' : '1');
    }
    append(write_enable, bit_enables(port));
    append(write_data, port.data);
  }
  size_t reads = read_address.size() / address_width;
  size_t writes = write_address.size() / address_width;

  CELL cell("$mem_v2");
  std::string name = ram.get_string_name() ? ram.get_string_name() : "ram";
  cell.parameters["MEMID"] = "\\" + name;
  cell.set("SIZE", memory.depth).set("OFFSET", 0).set("ABITS", address_width).set("WIDTH", memory.width);
  std::string contents;
  for (auto word = memory.contents.rbegin(); word != memory.contents.rend(); ++word) contents += *word;
  cell.digits("INIT", contents.empty() ? "x" : contents);
  auto repeated = [](size_t count, char digit) { return std::string(std::max<size_t>(count, 1), digit); };
  cell.set("RD_PORTS", reads).set("WR_PORTS", writes);
  for (const char* parameter : {"RD_CLK_ENABLE", "RD_WIDE_CONTINUATION", "RD_CE_OVER_SRST"})
    cell.digits(parameter, repeated(reads, '0'));
  for (const char* parameter : {"RD_TRANSPARENCY_MASK", "RD_COLLISION_X_MASK"})
    cell.digits(parameter, repeated(reads * writes, '0'));
  for (const char* parameter : {"RD_ARST_VALUE", "RD_SRST_VALUE", "RD_INIT_VALUE"})
    cell.digits(parameter, repeated(reads * memory.width, 'x'));
  if (!writes) is_clocked = rises = "0";
  cell.digits("RD_CLK_POLARITY", repeated(reads, '1')).digits("WR_CLK_POLARITY", rises);
  cell.digits("WR_CLK_ENABLE", is_clocked).digits("WR_WIDE_CONTINUATION", repeated(writes, '0'));
  cell.digits("WR_PRIORITY_MASK", writes ? priority_mask(memory) : "0");
  cell.in("RD_CLK", BITS(reads, BIT{BIT::UNKNOWN})).in("RD_EN", BITS(reads, BIT{BIT::ONE}));
  cell.in("RD_ARST", BITS(reads, BIT{BIT::ZERO})).in("RD_SRST", BITS(reads, BIT{BIT::ZERO}));
  cell.in("RD_ADDR", read_address).out("RD_DATA", read_data);
  cell.in("WR_CLK", write_clock).in("WR_EN", write_enable);
  add(cell.in("WR_ADDR", write_address).in("WR_DATA", write_data), ram);
}

} // namespace

std::string write_json(const DESIGN_VIEW& design) {
  JSON root = JSON::object();
  root["creator"] = "zelk-host";
  JSON modules = JSON::object();
  bool is_top = true;
  for (const auto& module : design.get_modules()) {
    JSON_MODULE(design, *module, modules).write(is_top);
    is_top = false;
  }
  root["modules"] = std::move(modules);
  return root.dump(1, ' ', false, JSON::error_handler_t::replace) + "\n";
}
