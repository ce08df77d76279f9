// Makes blocks and wires of a module's ports, groups of nodes and instances.
#include "schematic.h"

#include <algorithm>

namespace {

using BLOCK = SCHEMATIC_BLOCK;

/// The label of a term by its type, for nodes of one kind; the order is that of the pins.
struct TERM_LABEL {
  int type;
  const char* label;
};

constexpr TERM_LABEL mux_terms[] = {{CDB_TERM_MUX_FIRST, "0"}, {CDB_TERM_MUX_SECOND, "1"}, {CDB_TERM_MUX_SELECT, "S"}};
constexpr TERM_LABEL register_terms[] = {{CDB_TERM_DATA, "D"},        {CDB_TERM_CLOCK, ""},
                                         {CDB_TERM_RESET, "R"},       {CDB_TERM_SET, "S"},
                                         {CDB_TERM_ASYNC_LOAD, "AL"}, {CDB_TERM_ASYNC_DATA, "AD"}};
constexpr TERM_LABEL latch_terms[] = {
    {CDB_TERM_DATA, "D"}, {CDB_TERM_LATCH_ENABLE, "EN"}, {CDB_TERM_RESET, "R"}, {CDB_TERM_SET, "S"}};
constexpr TERM_LABEL tristate_terms[] = {{CDB_TERM_DATA, ""}, {CDB_TERM_OUTPUT_ENABLE, "EN"}};
constexpr TERM_LABEL operator_inputs[] = {{CDB_OPERATOR_INPUT_1, "a"},           {CDB_OPERATOR_INPUT_2, "b"},
                                          {CDB_OPERATOR_AMOUNT, "by"},           {CDB_OPERATOR_CARRY_IN, "c"},
                                          {CDB_OPERATOR_ADD_NOT_SUBTRACT, "+-"}, {CDB_OPERATOR_SELECT, "s"}};
constexpr TERM_LABEL operator_outputs[] = {{CDB_OPERATOR_OUTPUT, ""}, {CDB_OPERATOR_CARRY_OUT, "c"}};
constexpr TERM_LABEL memory_inputs[] = {{CDB_TERM_RAM_READ_ADDRESS_A, "raddr a"},
                                        {CDB_TERM_RAM_WRITE_ADDRESS_A, "waddr a"},
                                        {CDB_TERM_DATA, "data a"},
                                        {CDB_TERM_RAM_WRITE_ENABLE_A, "we a"},
                                        {CDB_TERM_RAM_BYTE_ENABLE_A, "be a"},
                                        {CDB_TERM_RAM_READ_ADDRESS_B, "raddr b"},
                                        {CDB_TERM_RAM_WRITE_ADDRESS_B, "waddr b"},
                                        {CDB_TERM_RAM_DATA_B, "data b"},
                                        {CDB_TERM_RAM_WRITE_ENABLE_B, "we b"},
                                        {CDB_TERM_RAM_BYTE_ENABLE_B, "be b"}};
constexpr TERM_LABEL memory_outputs[] = {{CDB_TERM_OUTPUT, "q a"}, {CDB_TERM_RAM_OUTPUT_B, "q b"}};

const char* gate_title(CDB_COMB_TYPE type) {
  switch (type) {
  case CDB_COMB_AND: return "&";
  case CDB_COMB_OR: return "\u22651";
  case CDB_COMB_XOR: return "=1";
  case CDB_COMB_NOT:
  case CDB_COMB_BUF: return "1";
  }
  return "";
}

const char* operator_title(CDB_OPERATOR_TYPE type) {
  switch (type) {
  case CDB_OPERATOR_ADDER: return "+";
  case CDB_OPERATOR_MULTIPLIER: return "\u00d7";
  case CDB_OPERATOR_DIVIDER: return "/";
  case CDB_OPERATOR_MODULO: return "mod";
  case CDB_OPERATOR_SHIFT_LEFT: return "<<";
  case CDB_OPERATOR_SHIFT_RIGHT: return ">>";
  case CDB_OPERATOR_ROTATE_LEFT: return "rotate left";
  case CDB_OPERATOR_ROTATE_RIGHT: return "rotate right";
  case CDB_OPERATOR_LESS_THAN: return "<";
  case CDB_OPERATOR_N_TO_1_MUX: return "b[a]";
  case CDB_OPERATOR_SELECTOR: return "select";
  case CDB_OPERATOR_DECODER: return "decode";
  case CDB_OPERATOR_ADD_SUB: return "\u00b1";
  case CDB_OPERATOR_EQUAL: return "=";
  }
  return "";
}

/// What a node is, without its pins.
BLOCK block_of(const CDB_SGATE_NODE& node) {
  BLOCK block;
  switch (node.get_sgate_type()) {
  case CDB_SGATE_BUFFER_ENUM: {
    CDB_BUFFER_TYPE type = static_cast<const CDB_SGATE_BUFFER&>(node).get_buffer_type();
    block.shape = BLOCK::SHAPE_GATE;
    block.title = type == CDB_BUFFER_KEEP ? "keep" : "1";
    break;
  }
  case CDB_SGATE_COMB_ENUM:
    block.shape = BLOCK::SHAPE_GATE;
    block.title = gate_title(static_cast<const CDB_SGATE_COMB&>(node).get_comb_type());
    block.is_inverted = static_cast<const CDB_SGATE_COMB&>(node).get_comb_type() == CDB_COMB_NOT;
    break;
  case CDB_SGATE_DFF_ENUM:
  case CDB_SGATE_STATE_ENUM: block.shape = BLOCK::SHAPE_REGISTER; break;
  case CDB_SGATE_LATCH_ENUM: block.title = "latch"; break;
  case CDB_SGATE_MUX_ENUM: block.shape = BLOCK::SHAPE_MUX; break;
  case CDB_SGATE_IO_BUF_ENUM: block.title = "tri"; break;
  case CDB_SGATE_TRI_BUS_ENUM: block.title = "bus"; break;
  case CDB_SGATE_OPERATOR_ENUM:
    block.title = operator_title(static_cast<const CDB_SGATE_OPERATOR&>(node).get_operator_type());
    if (static_cast<const CDB_SGATE_OPERATOR&>(node).is_signed()) block.title += " signed";
    break;
  case CDB_SGATE_ASYNCHRONOUS_RAM_ENUM:
    block.title = "memory of " + std::to_string(static_cast<const CDB_SGATE_ASYNCHRONOUS_RAM&>(node).get_read_depth());
    break;
  case CDB_SGATE_COMPONENT_ENUM:
    block.title = static_cast<const CDB_SGATE_COMPONENT&>(node).get_entity_name();
    block.name = node.get_string_name() ? node.get_string_name() : "";
    break;
  case CDB_SGATE_IO_ENUM: break;
  }
  const CDB_SGATE_OTERM* output = node.get_first_oterm();
  if (output && output->is_inverted()) block.is_inverted = !block.is_inverted;
  return block;
}

std::string text_of(const SOURCE_PLACE& place) {
  return place.line == 0 ? "" : place.file + ":" + std::to_string(place.line);
}

template <class TERM, class TERMS> std::vector<const TERM*> terms_of_type(const TERMS& terms, int type) {
  std::vector<const TERM*> found;
  for (const auto& term : terms) {
    if (term->get_type() != type) continue;
    if (found.size() <= term->get_index()) found.resize(term->get_index() + 1, nullptr);
    found[term->get_index()] = term.get();
  }
  return found;
}

} // namespace

SCHEMATIC::SCHEMATIC(const MODULE_VIEW& view) : m_view(view) {
  for (const SIGNAL* port : view.get_ports()) add_port(*port);
  for (const NODE_GROUP& group : gather_groups()) add_group(group);
  make_wires();
}

namespace {

using INPUT_TERMS = std::vector<const CDB_SGATE_ITERM*>;

/// Finds single nodes that do the same to the bits of one vector, although what is between them has no name as a
/// vector: the sources of a pin's bits that are of one kind and read by nothing else. They become one group, whose own
/// inputs are looked at in the same way.
class VECTOR_FINDER {
public:
  explicit VECTOR_FINDER(const MODULE_VIEW& view) : m_view(view) {}
  std::vector<NODE_GROUP> find();

private:
  void add_pins(const NODE_GROUP& group);
  void merge_sources(const INPUT_TERMS& pin);
  std::string kind_key(const CDB_SGATE_NODE& node) const;

  const MODULE_VIEW& m_view;
  std::vector<INPUT_TERMS> m_pins;                            // to be looked at
  std::unordered_map<const CDB_SGATE_NODE*, size_t> m_single; // groups of one node
  std::vector<NODE_GROUP> m_groups;                           // an empty one has gone into another
};

std::vector<NODE_GROUP> VECTOR_FINDER::find() {
  for (const SIGNAL* port : m_view.get_ports()) {
    INPUT_TERMS pin;
    for (const CDB_SGATE_IO* io : port->ios) pin.push_back(io ? io->find_iterm(CDB_TERM_DATA) : nullptr);
    m_pins.push_back(std::move(pin));
  }
  for (const NODE_GROUP& group : m_view.get_groups()) {
    if (group.first()->get_sgate_type() == CDB_SGATE_IO_ENUM) continue;
    if (group.nodes.size() == 1) m_single[group.first()] = m_groups.size();
    m_groups.push_back(group);
    add_pins(group);
  }
  for (size_t i = 0; i < m_pins.size(); i++) merge_sources(INPUT_TERMS(m_pins[i]));
  std::erase_if(m_groups, [](const NODE_GROUP& group) { return group.nodes.empty(); });
  return std::move(m_groups);
}

/// Vectors that the nodes read: the same input of all members of a group, or inputs of one type of a single node.
void VECTOR_FINDER::add_pins(const NODE_GROUP& group) {
  if (group.nodes.size() > 1) {
    for (size_t i = 0; i < group.first()->get_iterms().size(); i++) {
      INPUT_TERMS pin;
      for (const CDB_SGATE_NODE* node : group.nodes)
        pin.push_back(i < node->get_iterms().size() ? node->get_iterms()[i].get() : nullptr);
      m_pins.push_back(std::move(pin));
    }
    return;
  }
  std::map<int, INPUT_TERMS> pins;
  bool is_component = group.first()->get_sgate_type() == CDB_SGATE_COMPONENT_ENUM;
  for (const auto& term : group.first()->get_iterms()) {
    if (term->get_type() == CDB_TERM_UNORDERED) continue;
    int key = term->get_type();
    if (is_component) { // bits of one port follow each other
      const auto& component = static_cast<const CDB_SGATE_COMPONENT&>(*group.first());
      const CDB_COMPONENT_PORT* port = component.get_port_of(*term);
      key = 0;
      while (component.get_ports()[static_cast<size_t>(key)]->get_name() != port->get_name()) key++;
    }
    pins[key].push_back(term.get());
  }
  for (auto& [key, pin] : pins) m_pins.push_back(std::move(pin));
}

/// Equal for nodes that can share a block; empty for those that stand alone.
std::string VECTOR_FINDER::kind_key(const CDB_SGATE_NODE& node) const {
  const CDB_SGATE_OTERM* output = node.get_first_oterm();
  std::string key = std::to_string(node.get_sgate_type()) + (output->is_inverted() ? "~" : ":");
  switch (node.get_sgate_type()) {
  case CDB_SGATE_COMB_ENUM:
    return key + std::to_string(static_cast<const CDB_SGATE_COMB&>(node).get_comb_type()) + "/" +
           std::to_string(node.get_iterms().size());
  case CDB_SGATE_MUX_ENUM: {
    BIT select = m_view.input(node.find_iterm(CDB_TERM_MUX_SELECT));
    return key + std::to_string(select.kind) + "." + std::to_string(select.net);
  }
  default: return "";
  }
}

void VECTOR_FINDER::merge_sources(const INPUT_TERMS& pin) {
  std::map<std::string, std::vector<const CDB_SGATE_NODE*>> alike;
  for (const CDB_SGATE_ITERM* term : pin) {
    const CDB_SGATE_OTERM* source = term ? term->get_source() : nullptr;
    if (!source || source->get_fanouts().size() != 1 || !m_single.count(source->get_node())) continue;
    std::string key = kind_key(*source->get_node());
    if (!key.empty()) alike[key].push_back(source->get_node());
  }
  for (const auto& [key, nodes] : alike) {
    if (nodes.size() < 2) continue;
    size_t home = m_single[nodes.front()];
    for (const CDB_SGATE_NODE* node : nodes) {
      m_groups[m_single[node]].nodes.clear();
      m_single.erase(node);
    }
    m_groups[home].nodes = nodes;
    add_pins(m_groups[home]);
  }
}

} // namespace

SCHEMATIC::GROUPS SCHEMATIC::gather_groups() const { return VECTOR_FINDER(m_view).find(); }

size_t SCHEMATIC::add(SCHEMATIC_BLOCK block) {
  m_blocks.push_back(std::move(block));
  m_inputs.emplace_back();
  m_outputs.emplace_back();
  return m_blocks.size() - 1;
}

void SCHEMATIC::add_input(size_t block, const std::string& label, INPUTS terms) {
  SCHEMATIC_PIN pin;
  pin.label = label;
  pin.width = terms.size();
  m_blocks[block].inputs.push_back(std::move(pin));
  m_inputs[block].resize(m_blocks[block].inputs.size());
  m_inputs[block].back() = std::move(terms);
}

void SCHEMATIC::add_output(size_t block, const std::string& label, const OUTPUTS& terms) {
  size_t number = m_blocks[block].outputs.size();
  SCHEMATIC_PIN pin;
  pin.label = label;
  pin.width = terms.size();
  pin.full_name = names_of(terms);
  m_blocks[block].outputs.push_back(std::move(pin));
  m_outputs[block].push_back(terms);
  for (size_t bit = 0; bit < terms.size(); bit++)
    if (terms[bit]) m_drivers[terms[bit]] = {block, number, bit};
}

void SCHEMATIC::add_port(const SIGNAL& port) {
  BLOCK block;
  block.shape = port.direction == CDB_IO_INPUT    ? BLOCK::SHAPE_INPUT
                : port.direction == CDB_IO_OUTPUT ? BLOCK::SHAPE_OUTPUT
                                                  : BLOCK::SHAPE_BIDIR;
  block.title = port.name;
  if (port.is_vector) block.title += "[" + std::to_string(port.left) + ":" + std::to_string(port.right) + "]";
  block.place = text_of(port.place);
  size_t number = add(std::move(block));
  INPUTS inputs;
  OUTPUTS outputs;
  for (const CDB_SGATE_IO* io : port.ios) {
    inputs.push_back(io ? io->find_iterm(CDB_TERM_DATA) : nullptr);
    outputs.push_back(io ? io->find_oterm(CDB_TERM_OUTPUT) : nullptr);
  }
  if (port.direction != CDB_IO_INPUT) add_input(number, "", std::move(inputs));
  if (port.direction != CDB_IO_OUTPUT) add_output(number, "", outputs);
}

/// The controls that a machine holds for its states, by name.
void SCHEMATIC::add_machine_controls(SCHEMATIC_BLOCK& block, const CDB_SGATE_STATE& state) {
  REGISTER_CONTROLS controls = m_view.controls(state);
  for (auto [label, bit] :
       {std::pair("", controls.clock), std::pair("R", controls.reset), std::pair("S", controls.set)}) {
    if (!bit.is_net()) continue;
    SCHEMATIC_PIN pin;
    pin.label = label;
    const NET_PLACE& place = m_view.get_place(bit.net);
    const SIGNAL& signal = m_view.get_signals()[static_cast<size_t>(place.signal)];
    pin.fixed = signal.name;
    if (signal.is_vector) pin.fixed += "[" + std::to_string(signal.index_of(place.offset)) + "]";
    if (!*label) block.clock_pin = static_cast<int>(block.inputs.size());
    block.inputs.push_back(std::move(pin));
  }
}

void SCHEMATIC::add_group(const NODE_GROUP& group) {
  const CDB_SGATE_NODE& node = *group.first();
  BLOCK block = block_of(node);
  block.place = text_of(m_view.place_of(node));
  if (node.get_sgate_type() == CDB_SGATE_COMPONENT_ENUM)
    return add_component(std::move(block), static_cast<const CDB_SGATE_COMPONENT&>(node));
  if (node.get_sgate_type() == CDB_SGATE_OPERATOR_ENUM || node.get_sgate_type() == CDB_SGATE_ASYNCHRONOUS_RAM_ENUM)
    return add_word_node(std::move(block), node);

  auto inputs_of = [&](size_t index) {
    INPUTS terms;
    for (const CDB_SGATE_NODE* member : group.nodes)
      terms.push_back(index < member->get_iterms().size() ? member->get_iterms()[index].get() : nullptr);
    return terms;
  };
  auto named_inputs = [&](size_t number, const auto& table) {
    for (const TERM_LABEL& row : table) {
      if (!node.find_iterm(row.type)) continue;
      INPUTS terms;
      for (const CDB_SGATE_NODE* member : group.nodes) terms.push_back(member->find_iterm(row.type));
      // Controls are the same for all.
      bool is_control = std::all_of(terms.begin(), terms.end(), [&](const CDB_SGATE_ITERM* term) {
        return term && terms.front() && m_view.input(term) == m_view.input(terms.front());
      });
      if (is_control && row.type != CDB_TERM_DATA && row.type != CDB_TERM_MUX_FIRST && row.type != CDB_TERM_MUX_SECOND)
        terms.resize(1);
      if (terms.size() == 1 && terms.front() && terms.front()->is_gnd() && row.type != CDB_TERM_DATA &&
          m_blocks[number].shape == BLOCK::SHAPE_REGISTER)
        continue; // an inactive control
      if (row.type == CDB_TERM_CLOCK) m_blocks[number].clock_pin = static_cast<int>(m_blocks[number].inputs.size());
      add_input(number, row.label, std::move(terms));
    }
  };

  size_t number = add(std::move(block));
  switch (node.get_sgate_type()) {
  case CDB_SGATE_MUX_ENUM: named_inputs(number, mux_terms); break;
  case CDB_SGATE_DFF_ENUM: named_inputs(number, register_terms); break;
  case CDB_SGATE_LATCH_ENUM: named_inputs(number, latch_terms); break;
  case CDB_SGATE_IO_BUF_ENUM: named_inputs(number, tristate_terms); break;
  case CDB_SGATE_STATE_ENUM:
    named_inputs(number, register_terms);
    add_machine_controls(m_blocks[number], static_cast<const CDB_SGATE_STATE&>(node));
    m_inputs[number].resize(m_blocks[number].inputs.size());
    break;
  default:
    for (size_t i = 0; i < node.get_iterms().size(); i++) add_input(number, "", inputs_of(i));
  }
  OUTPUTS outputs;
  for (const CDB_SGATE_NODE* member : group.nodes) outputs.push_back(member->get_first_oterm());
  add_output(number, "", outputs);
  if (m_blocks[number].shape == BLOCK::SHAPE_REGISTER)
    m_blocks[number].name = m_blocks[number].outputs.back().full_name;
}

void SCHEMATIC::add_word_node(SCHEMATIC_BLOCK block, const CDB_SGATE_NODE& node) {
  bool is_memory = node.get_sgate_type() == CDB_SGATE_ASYNCHRONOUS_RAM_ENUM;
  size_t number = add(std::move(block));
  auto add_inputs = [&](const auto& table) {
    for (const TERM_LABEL& row : table) {
      INPUTS terms = terms_of_type<CDB_SGATE_ITERM>(node.get_iterms(), row.type);
      bool is_idle_carry = !is_memory && row.type == CDB_OPERATOR_CARRY_IN && terms.size() == 1 && terms[0]->is_gnd();
      if (!terms.empty() && !is_idle_carry) add_input(number, row.label, std::move(terms));
    }
  };
  auto add_outputs = [&](const auto& table) {
    for (const TERM_LABEL& row : table) {
      OUTPUTS terms = terms_of_type<CDB_SGATE_OTERM>(node.get_oterms(), row.type);
      bool is_read = std::any_of(terms.begin(), terms.end(),
                                 [](const CDB_SGATE_OTERM* term) { return term && term->get_first_fanout(); });
      if (is_read) add_output(number, row.label, terms);
    }
  };
  if (is_memory) {
    add_inputs(memory_inputs);
    add_outputs(memory_outputs);
  } else {
    add_inputs(operator_inputs);
    add_outputs(operator_outputs);
  }
}

/// Bits of a port are one pin. A bidirectional port has a pin on both sides.
void SCHEMATIC::add_component(SCHEMATIC_BLOCK block, const CDB_SGATE_COMPONENT& component) {
  size_t number = add(std::move(block));
  std::vector<std::string> order;
  std::map<std::string, std::vector<const CDB_COMPONENT_PORT*>> ports;
  for (const auto& port : component.get_ports()) {
    std::string name = port->get_position() < 0 ? port->get_name() : std::to_string(port->get_position() + 1);
    if (ports[name].empty()) order.push_back(name);
    ports[name].push_back(port.get());
  }
  for (const std::string& name : order) {
    std::vector<const CDB_COMPONENT_PORT*>& bits = ports[name];
    std::sort(bits.begin(), bits.end(), [](const CDB_COMPONENT_PORT* left, const CDB_COMPONENT_PORT* right) {
      return left->get_index() < right->get_index();
    });
    INPUTS inputs;
    OUTPUTS outputs;
    bool has_input = false;
    bool has_output = false;
    for (const CDB_COMPONENT_PORT* port : bits) {
      inputs.push_back(port->get_iterm());
      outputs.push_back(port->get_oterm());
      has_input |= port->get_iterm() != nullptr;
      has_output |= port->get_oterm() != nullptr;
    }
    if (has_input) add_input(number, name, std::move(inputs));
    if (has_output) add_output(number, name, outputs);
  }
}

namespace {

/// Bits as parts of signals and constants, the highest first: a[3:0], {b, 2'b01}.
class PARTS {
public:
  explicit PARTS(const MODULE_VIEW& view) : m_view(view) {}
  std::string text(const BITS& bits) {
    for (size_t i = bits.size(); i > 0; i--) add(bits[i - 1]);
    flush();
    std::string all;
    for (const std::string& part : m_parts) all += (all.empty() ? "" : ", ") + part;
    return m_parts.size() > 1 ? "{" + all + "}" : all;
  }

private:
  void add(const BIT& bit) {
    if (!bit.is_net()) {
      if (m_signal >= 0) flush();
      m_digits += bit.kind == BIT::ZERO ? '0' : bit.kind == BIT::ONE ? '1' : 'x';
      return;
    }
    const NET_PLACE& place = m_view.get_place(bit.net);
    bool continues = m_digits.empty() && place.signal == m_signal && place.offset + 1 == m_low;
    if (!continues) {
      flush();
      m_signal = place.signal;
      m_high = place.offset;
    }
    m_low = place.offset;
  }
  void flush() {
    if (!m_digits.empty()) m_parts.push_back(std::to_string(m_digits.size()) + "'b" + m_digits);
    if (m_signal >= 0) {
      const SIGNAL& signal = m_view.get_signals()[static_cast<size_t>(m_signal)];
      bool is_whole = !signal.is_vector || (m_low == 0 && m_high + 1 == signal.nets.size());
      std::string index = std::to_string(signal.index_of(m_high));
      if (m_high != m_low) index += ":" + std::to_string(signal.index_of(m_low));
      // The mark behind a name only keeps it apart from the port's.
      std::string name = signal.name;
      if (name.size() > 1 && name.back() == '~') name.pop_back();
      m_parts.push_back(name + (is_whole ? "" : "[" + index + "]"));
    }
    m_digits.clear();
    m_signal = -1;
  }

  const MODULE_VIEW& m_view;
  std::vector<std::string> m_parts;
  std::string m_digits;
  int m_signal = -1;
  size_t m_high = 0;
  size_t m_low = 0;
};

} // namespace

std::string SCHEMATIC::names_of(const OUTPUTS& terms) const {
  BITS bits;
  for (const CDB_SGATE_OTERM* term : terms) bits.push_back(m_view.output(term));
  std::string name = PARTS(m_view).text(bits);
  if (name.empty() || name[0] != '{') return name;
  // Bits of a vector that has no name of its own go by that of the lowest.
  return PARTS(m_view).text({bits.front()}) + "[" + std::to_string(bits.size() - 1) + ":0]";
}

void SCHEMATIC::make_wires() {
  for (size_t block = 0; block < m_blocks.size(); block++)
    for (size_t pin = 0; pin < m_inputs[block].size(); pin++) connect(block, pin, m_inputs[block][pin]);
  std::stable_sort(m_wires.begin(), m_wires.end(), [](const SCHEMATIC_WIRE& left, const SCHEMATIC_WIRE& right) {
    return std::tie(left.block, left.pin) < std::tie(right.block, right.pin);
  });
}

/// One load of each wire that brings bits to the pin; bits without a driver are told in text.
void SCHEMATIC::connect(size_t block, size_t pin, const INPUTS& terms) {
  if (terms.empty()) return; // told by name already
  BITS bits;
  std::vector<std::pair<size_t, size_t>> sources;
  std::map<std::pair<size_t, size_t>, BITS> parts;
  bool has_fixed = false;
  bool is_whole = true;
  for (size_t i = 0; i < terms.size(); i++) {
    bits.push_back(m_view.input(terms[i]));
    const CDB_SGATE_OTERM* source = terms[i] ? terms[i]->get_source() : nullptr;
    auto driver = source ? m_drivers.find(source) : m_drivers.end();
    if (driver == m_drivers.end()) {
      has_fixed = true;
      continue;
    }
    std::pair<size_t, size_t> from{driver->second.block, driver->second.pin};
    if (parts[from].empty()) sources.push_back(from);
    parts[from].push_back(bits.back());
    is_whole &= driver->second.bit == i;
  }
  if (sources.empty()) {
    m_blocks[block].inputs[pin].fixed = PARTS(m_view).text(bits);
    return;
  }
  bool is_plain = sources.size() == 1 && !has_fixed;
  for (const auto& from : sources) {
    auto [at, is_new] = m_wire_of.emplace(from, m_wires.size());
    if (is_new) m_wires.push_back({from.first, from.second, {}});
    bool is_all = is_plain && is_whole && m_blocks[from.first].outputs[from.second].width == terms.size();
    std::string part = is_all ? "" : PARTS(m_view).text(bits);
    m_wires[at->second].loads.push_back({block, pin, std::move(part)});
  }
}
