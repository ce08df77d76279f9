// Verilog 2001 from gate netlists. Combinational nodes become continuous assignments, registers and latches become
// always blocks, components become instances; whole vectors are written where groups allow it.
#include "writer.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

#include "ram_view.h"
#include "signal_names.h"

namespace {

using OUT = std::back_insert_iterator<std::string>;

class VERILOG_MODULE {
public:
  VERILOG_MODULE(const DESIGN_VIEW& design, const MODULE_VIEW& view, std::string& text)
      : m_design(design), m_view(view), m_text(text), m_out(text) {}
  void write();

private:
  void collect_names();
  void write_header();
  void write_declarations();
  void write_helpers();
  void write_output_ports();
  void write_group(const NODE_GROUP& group);
  void write_buffer(const NODE_GROUP& group);
  void write_gate(const NODE_GROUP& group);
  void write_mux(const NODE_GROUP& group);
  void write_register(const NODE_GROUP& group);
  void write_latch(const NODE_GROUP& group);
  void write_tristate(const NODE_GROUP& group);
  void write_bus(const CDB_SGATE_NODE& node);
  void write_component(const CDB_SGATE_COMPONENT& component);
  void write_full_adder(const CDB_SGATE_COMPONENT& component);
  void write_operator(const CDB_SGATE_OPERATOR& node);
  void write_ram(const CDB_SGATE_ASYNCHRONOUS_RAM& ram);
  void write_ram_port(const RAM_VIEW& memory, const std::string& name, const RAM_WRITE_PORT& port);
  std::string ram_word(const std::string& name, const BITS& address, unsigned words, unsigned part) const;
  std::string operator_value(const CDB_SGATE_OPERATOR& node) const;
  std::string shift_value(const CDB_SGATE_OPERATOR& node) const;

  /// `{...}` over bits with the highest first; slices of vectors are joined.
  std::string value(const BITS& bits) const;
  std::string value(const BIT& bit) const { return value(BITS{bit}); }
  /// The same as the target of an assignment or a port that drives: bits that are no nets get a wire of their own.
  std::string target(const BITS& bits);
  std::string slice(const SIGNAL& signal, size_t low, size_t high) const;
  /// A bit for an event or a condition: constants are given by a wire.
  std::string event(const BIT& bit);
  std::string operand(const CDB_SGATE_OPERATOR& node, int term) const;
  std::string instance_name(const CDB_SGATE_NODE& node);
  void assign(const BITS& outputs, bool is_inverted, const std::string& text);
  template <class... ARGUMENTS> void print(fmt::format_string<ARGUMENTS...> format, ARGUMENTS&&... arguments) {
    fmt::format_to(m_out, format, std::forward<ARGUMENTS>(arguments)...);
  }

  const DESIGN_VIEW& m_design;
  const MODULE_VIEW& m_view;
  std::string& m_text;
  OUT m_out;
  std::string m_body; // held back while declarations that it needs are not complete
  SIGNAL_NAMES m_names;
  std::vector<bool> m_is_register; // by signal
  std::vector<std::string> m_helpers;
  std::string m_zero;
  std::string m_one;
};

std::string range_text(const SIGNAL& signal) {
  return signal.is_vector ? fmt::format("[{}:{}] ", signal.left, signal.right) : "";
}

bool is_storage(CDB_SGATE_ENUM type) {
  return type == CDB_SGATE_DFF_ENUM || type == CDB_SGATE_STATE_ENUM || type == CDB_SGATE_LATCH_ENUM;
}

char constant_digit(const BIT& bit) {
  switch (bit.kind) {
  case BIT::ZERO: return '0';
  case BIT::ONE: return '1';
  case BIT::UNKNOWN:
  case BIT::UNCONNECTED:
  case BIT::NET: return 'x';
  }
  return 'x';
}

void VERILOG_MODULE::collect_names() {
  const std::vector<SIGNAL>& signals = m_view.get_signals();
  for (const SIGNAL& signal : signals) m_names.reserve(signal.name);
  m_is_register.assign(signals.size(), false);
  for (const NODE_GROUP& group : m_view.get_groups()) {
    if (!is_storage(group.first()->get_sgate_type())) continue;
    for (const BIT& bit : m_view.group_outputs(group))
      if (bit.is_net()) m_is_register[static_cast<size_t>(m_view.get_place(bit.net).signal)] = true;
  }
}

void VERILOG_MODULE::write() {
  collect_names();
  write_header();
  write_declarations();
  // The body is made first: it tells which further wires are needed.
  std::string declared;
  declared.swap(m_text);
  for (const NODE_GROUP& group : m_view.get_groups()) write_group(group);
  write_output_ports();
  declared.swap(m_text);
  write_helpers();
  m_text += declared;
  print("endmodule\n");
}

void VERILOG_MODULE::write_header() {
  const UNIT_RESULT& result = m_view.get_result();
  const MSG_TEXT_LOCATION_SCHEMA& place = result.unit->get_location();
  if (!place.get_file().empty()) print("(* src = \"{}:{}\" *)\n", place.get_file(), place.get_line());
  print("module {}(", verilog_identifier(result.module_name));
  const char* separator = "";
  for (const SIGNAL* port : m_view.get_ports()) {
    print("{}{}", separator, verilog_identifier(port->name));
    separator = ", ";
  }
  print(");\n");
  static constexpr const char* directions[] = {"input", "output", "inout"};
  for (const SIGNAL* port : m_view.get_ports())
    print("  {} {}{};\n", directions[port->direction], range_text(*port), verilog_identifier(port->name));
}

void VERILOG_MODULE::write_declarations() {
  const std::vector<SIGNAL>& signals = m_view.get_signals();
  for (size_t i = 0; i < signals.size(); i++) {
    if (signals[i].is_port) continue;
    print("  {} {}{};\n", m_is_register[i] ? "reg" : "wire", range_text(signals[i]),
          verilog_identifier(signals[i].name));
  }
}

void VERILOG_MODULE::write_helpers() {
  for (const std::string& helper : m_helpers) print("  {}\n", helper);
}

/// What an output port shows: the net that it reads, or unconnected where it needs no assignment because it is one with
/// its bus or reads nothing.
BIT shown_bit(const MODULE_VIEW& view, const SIGNAL& port, size_t offset) {
  const CDB_SGATE_IO* io = port.ios[offset];
  const CDB_SGATE_ITERM* term = io ? io->find_iterm(CDB_TERM_DATA) : nullptr;
  BIT source = view.input(term);
  return source == BIT{BIT::NET, port.nets[offset]} ? BIT{BIT::UNCONNECTED} : source;
}

void VERILOG_MODULE::write_output_ports() {
  for (const SIGNAL* port : m_view.get_ports()) {
    if (port->direction == CDB_IO_INPUT) continue;
    BITS sources;
    for (size_t offset = 0; offset < port->ios.size(); offset++) sources.push_back(shown_bit(m_view, *port, offset));
    for (size_t low = 0; low < sources.size(); low++) {
      size_t high = low;
      while (high < sources.size() && sources[high].kind != BIT::UNCONNECTED) high++;
      if (high == low) continue;
      print("  assign {} = {};\n", slice(*port, low, high - 1),
            value(BITS(sources.begin() + low, sources.begin() + high)));
      low = high;
    }
  }
}

std::string VERILOG_MODULE::slice(const SIGNAL& signal, size_t low, size_t high) const {
  std::string name = verilog_identifier(signal.name);
  if (!signal.is_vector || (low == 0 && high + 1 == signal.nets.size())) return name;
  if (low == high) return fmt::format("{}[{}]", name, signal.index_of(low));
  return fmt::format("{}[{}:{}]", name, signal.index_of(high), signal.index_of(low));
}

std::string VERILOG_MODULE::value(const BITS& bits) const {
  std::vector<std::string> parts; // highest first
  for (size_t end = bits.size(); end > 0;) {
    size_t begin = end - 1;
    if (!bits[begin].is_net()) {
      std::string digits(1, constant_digit(bits[begin]));
      while (begin > 0 && !bits[begin - 1].is_net()) digits += constant_digit(bits[--begin]);
      parts.push_back(fmt::format("{}'b{}", digits.size(), digits));
    } else {
      const NET_PLACE& top = m_view.get_place(bits[begin].net);
      const NET_PLACE* low = &top;
      while (begin > 0 && bits[begin - 1].is_net()) {
        const NET_PLACE& next = m_view.get_place(bits[begin - 1].net);
        if (next.signal != low->signal || next.offset + 1 != low->offset) break;
        low = &next;
        begin--;
      }
      parts.push_back(slice(m_view.get_signals()[static_cast<size_t>(top.signal)], low->offset, top.offset));
    }
    end = begin;
  }
  return parts.size() == 1 ? parts.front() : fmt::format("{{{}}}", fmt::join(parts, ", "));
}

std::string VERILOG_MODULE::target(const BITS& bits) {
  bool is_complete = std::all_of(bits.begin(), bits.end(), [](const BIT& bit) { return bit.is_net(); });
  if (is_complete) return value(bits);
  std::vector<std::string> parts;
  for (auto bit = bits.rbegin(); bit != bits.rend(); ++bit) {
    if (bit->is_net()) {
      parts.push_back(value(*bit));
      continue;
    }
    bool is_tied = bit->kind == BIT::ZERO || bit->kind == BIT::ONE;
    std::string name = verilog_identifier(m_names.make_unique(is_tied ? "tied" : "unused"));
    m_helpers.push_back(fmt::format("wire {}{};", name, is_tied ? " = " + value(*bit) : ""));
    parts.push_back(name);
  }
  return parts.size() == 1 ? parts.front() : fmt::format("{{{}}}", fmt::join(parts, ", "));
}

std::string VERILOG_MODULE::event(const BIT& bit) {
  if (bit.is_net()) return value(bit);
  bool is_one = bit.kind == BIT::ONE;
  std::string& name = is_one ? m_one : m_zero;
  if (name.empty()) {
    name = verilog_identifier(m_names.make_unique(is_one ? "const_1" : "const_0"));
    m_helpers.push_back(fmt::format("wire {} = 1'b{};", name, is_one ? 1 : 0));
  }
  return name;
}

void VERILOG_MODULE::assign(const BITS& outputs, bool is_inverted, const std::string& text) {
  bool drives = std::any_of(outputs.begin(), outputs.end(), [](const BIT& bit) { return bit.is_net(); });
  if (!drives) return;
  if (is_inverted)
    print("  assign {} = ~({});\n", target(outputs), text);
  else
    print("  assign {} = {};\n", target(outputs), text);
}

void VERILOG_MODULE::write_group(const NODE_GROUP& group) {
  const CDB_SGATE_NODE& node = *group.first();
  switch (node.get_sgate_type()) {
  case CDB_SGATE_BUFFER_ENUM: return write_buffer(group);
  case CDB_SGATE_COMB_ENUM: return write_gate(group);
  case CDB_SGATE_MUX_ENUM: return write_mux(group);
  case CDB_SGATE_DFF_ENUM:
  case CDB_SGATE_STATE_ENUM: return write_register(group);
  case CDB_SGATE_LATCH_ENUM: return write_latch(group);
  case CDB_SGATE_IO_BUF_ENUM: return write_tristate(group);
  case CDB_SGATE_TRI_BUS_ENUM: return write_bus(node);
  case CDB_SGATE_COMPONENT_ENUM: return write_component(static_cast<const CDB_SGATE_COMPONENT&>(node));
  case CDB_SGATE_OPERATOR_ENUM: return write_operator(static_cast<const CDB_SGATE_OPERATOR&>(node));
  case CDB_SGATE_ASYNCHRONOUS_RAM_ENUM: return write_ram(static_cast<const CDB_SGATE_ASYNCHRONOUS_RAM&>(node));
  case CDB_SGATE_IO_ENUM: return;
  }
}

bool is_inverted(const NODE_GROUP& group) {
  const CDB_SGATE_OTERM* output = group.first()->get_first_oterm();
  return output && output->is_inverted();
}

void VERILOG_MODULE::write_buffer(const NODE_GROUP& group) {
  assign(m_view.group_outputs(group), is_inverted(group), value(m_view.group_inputs(group, CDB_TERM_UNORDERED)));
}

void VERILOG_MODULE::write_gate(const NODE_GROUP& group) {
  static constexpr const char* symbols[] = {" & ", " | ", " ^ ", "", ""}; // by CDB_COMB_TYPE
  static constexpr unsigned long_list = 8;
  CDB_COMB_TYPE type = static_cast<const CDB_SGATE_COMB*>(group.first())->get_comb_type();
  auto count = static_cast<unsigned>(group.first()->get_iterms().size());
  if (count > long_list && group.nodes.size() == 1) {
    // A reduction reads better than a chain of operators, and readers need no recursion for it.
    BITS bits;
    for (unsigned i = 0; i < count; i++) bits.push_back(m_view.group_inputs(group, CDB_TERM_UNORDERED, i).front());
    return assign(m_view.group_outputs(group), is_inverted(group), std::string(1, symbols[type][1]) + value(bits));
  }
  std::vector<std::string> inputs;
  for (unsigned i = 0; i < count; i++) inputs.push_back(value(m_view.group_inputs(group, CDB_TERM_UNORDERED, i)));
  if (inputs.empty()) inputs.emplace_back(type == CDB_COMB_AND ? "1'b1" : "1'b0");
  assign(m_view.group_outputs(group), is_inverted(group) != (type == CDB_COMB_NOT),
         fmt::format("{}", fmt::join(inputs, symbols[type])));
}

void VERILOG_MODULE::write_mux(const NODE_GROUP& group) {
  BIT select = m_view.input(group.first()->find_iterm(CDB_TERM_MUX_SELECT));
  assign(m_view.group_outputs(group), is_inverted(group),
         fmt::format("{} ? {} : {}", value(select), value(m_view.group_inputs(group, CDB_TERM_MUX_SECOND)),
                     value(m_view.group_inputs(group, CDB_TERM_MUX_FIRST))));
}

/// The value that an asynchronous control or the power-up gives to a group; an inverted output shows the complement of
/// what is stored, and what is written here is what the output shows.
std::string constant_value(const NODE_GROUP& group, bool level) {
  return fmt::format("{}'b{}", group.nodes.size(),
                     std::string(group.nodes.size(), level != is_inverted(group) ? '1' : '0'));
}

void VERILOG_MODULE::write_register(const NODE_GROUP& group) {
  BITS outputs = m_view.group_outputs(group);
  if (!outputs.front().is_net()) return;
  REGISTER_CONTROLS controls = m_view.controls(*group.first());
  std::string q = value(outputs);
  std::string invert = is_inverted(group) ? "~" : "";

  std::string events = fmt::format("{} {}", controls.clock_falls ? "negedge" : "posedge", event(controls.clock));
  std::string branches;
  BIT inactive{controls.is_async_low ? BIT::ONE : BIT::ZERO};
  auto add = [&](const BIT& bit, bool is_low, const std::string& data) {
    events += fmt::format(" or {} {}", is_low ? "negedge" : "posedge", event(bit));
    branches += fmt::format("    if ({}{}) {} <= {};\n    else\n", is_low ? "!" : "", event(bit), q, data);
  };
  if (controls.reset != inactive && controls.reset != BIT{BIT::ZERO})
    add(controls.reset, controls.is_async_low, constant_value(group, false));
  if (controls.set != inactive && controls.set != BIT{BIT::ZERO})
    add(controls.set, controls.is_async_low, constant_value(group, true));
  if (controls.load != BIT{BIT::ZERO})
    add(controls.load, false, invert + value(m_view.group_inputs(group, CDB_TERM_ASYNC_DATA)));

  if (group.first()->get_sgate_type() == CDB_SGATE_DFF_ENUM) {
    CDB_POWER_UP_ENUM power_up = static_cast<const CDB_SGATE_DFF*>(group.first())->get_power_up();
    if (power_up != CDB_POWER_UP_UNKNOWN)
      print("  initial {} = {};\n", q, constant_value(group, power_up == CDB_POWER_UP_HIGH));
  }
  print("  always @({})\n{}    {} <= {}{};\n", events, branches, q, invert,
        value(m_view.group_inputs(group, CDB_TERM_DATA)));
}

void VERILOG_MODULE::write_latch(const NODE_GROUP& group) {
  BITS outputs = m_view.group_outputs(group);
  if (!outputs.front().is_net()) return;
  REGISTER_CONTROLS controls = m_view.controls(*group.first());
  std::string q = value(outputs);
  print("  always @*\n");
  if (controls.reset != BIT{BIT::ZERO})
    print("    if ({}) {} = {};\n    else\n", event(controls.reset), q, constant_value(group, false));
  if (controls.set != BIT{BIT::ZERO})
    print("    if ({}) {} = {};\n    else\n", event(controls.set), q, constant_value(group, true));
  print("    if ({}) {} = {}{};\n", event(controls.clock), q, is_inverted(group) ? "~" : "",
        value(m_view.group_inputs(group, CDB_TERM_DATA)));
}

void VERILOG_MODULE::write_tristate(const NODE_GROUP& group) {
  BIT enable = m_view.input(group.first()->find_iterm(CDB_TERM_OUTPUT_ENABLE));
  BITS outputs = m_view.group_outputs(group);
  std::string data = (is_inverted(group) ? "~" : "") + value(m_view.group_inputs(group, CDB_TERM_DATA));
  assign(outputs, false,
         fmt::format("{} ? {} : {}'b{}", value(enable), data, outputs.size(), std::string(outputs.size(), 'z')));
}

void VERILOG_MODULE::write_bus(const CDB_SGATE_NODE& node) {
  BIT bus = m_view.output(node.get_first_oterm());
  if (!bus.is_net()) return;
  for (const auto& input : node.get_iterms())
    if (input->is_connected() && !m_view.is_joined(*input)) assign({bus}, false, value(m_view.input(input.get())));
}

std::string VERILOG_MODULE::instance_name(const CDB_SGATE_NODE& node) {
  return verilog_identifier(m_names.make_unique(node.get_string_name() ? node.get_string_name() : "u"));
}

/// A string literal of the text (IEEE 1364, 2.6.3).
std::string string_literal(const std::string& text) {
  std::string literal = "\"";
  for (char c : text) {
    auto code = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\')
      literal += {'\\', c};
    else if (c == '\n')
      literal += "\\n";
    else if (code < ' ' || code == 127)
      literal += fmt::format("\\{:03o}", code);
    else
      literal += c;
  }
  return literal + "\"";
}

/// A parameter's value as Verilog text.
std::string parameter_text(const std::string& text) {
  PARAMETER_VALUE value = read_parameter_value(text);
  return value.kind == 's' ? string_literal(value.text) : value.text;
}

std::string parameter_list(const CDB_SGATE_COMPONENT& component) {
  std::vector<std::string> values;
  for (const CDB_SGATE_COMPONENT::PARAMETER& parameter : component.get_parameters()) {
    if (!parameter.name.empty() && parameter.name[0] == ' ') continue; // private to the front end
    std::string text = parameter_text(parameter.value);
    values.push_back(parameter.name.empty() ? text : fmt::format(".{}({})", verilog_identifier(parameter.name), text));
  }
  return values.empty() ? "" : fmt::format(" #({})", fmt::join(values, ", "));
}

bool is_unconnected(const BITS& bits) {
  return std::all_of(bits.begin(), bits.end(), [](const BIT& bit) { return bit.kind == BIT::UNCONNECTED; });
}

void VERILOG_MODULE::write_component(const CDB_SGATE_COMPONENT& component) {
  if (is_full_adder(component)) return write_full_adder(component);
  std::vector<std::string> connections;
  auto connect = [&](const std::string& port, CDB_IO_DIRECTION direction, const BITS& bits) {
    std::string actual = is_unconnected(bits) ? "" : direction == CDB_IO_INPUT ? value(bits) : target(bits);
    connections.push_back(port.empty() ? actual : fmt::format(".{}({})", verilog_identifier(port), actual));
  };
  const MODULE_VIEW* child = m_design.get_child(m_view, component);
  if (child) {
    for (const auto& [port, bits] : connections_of(m_view, component, *child))
      connect(port->name, port->direction, bits);
  } else {
    for (const BLACK_BOX_PORT& port : black_box_ports(m_view, component)) connect(port.name, port.direction, port.bits);
  }
  std::string module = child ? child->get_result().module_name : component.get_entity_name();
  print("  {}{} {}({});\n", verilog_identifier(module), child ? "" : parameter_list(component),
        instance_name(component), fmt::join(connections, ", "));
}

void VERILOG_MODULE::write_full_adder(const CDB_SGATE_COMPONENT& component) {
  auto bit = [&](const char* name) {
    for (const auto& port : component.get_ports())
      if (port->get_name() == name) return m_view.component_port(port.get());
    return BIT{BIT::UNCONNECTED};
  };
  assign({bit("o"), bit("cout")}, false,
         fmt::format("{} + {} + {}", value(bit("a")), value(bit("b")), value(bit("cin"))));
}

std::string VERILOG_MODULE::operand(const CDB_SGATE_OPERATOR& node, int term) const {
  std::string text = value(m_view.input_bits(node, term, node.get_input_width(term)));
  return node.is_signed() ? fmt::format("$signed({})", text[0] == '{' ? text : "{" + text + "}") : text;
}

std::string VERILOG_MODULE::shift_value(const CDB_SGATE_OPERATOR& node) const {
  unsigned width = node.get_input_width(CDB_OPERATOR_INPUT_1);
  std::string a = operand(node, CDB_OPERATOR_INPUT_1);
  std::string amount = value(m_view.input_bits(node, CDB_OPERATOR_AMOUNT, node.get_input_width(CDB_OPERATOR_AMOUNT)));
  BIT fill = m_view.input(node.find_iterm(CDB_OPERATOR_CARRY_IN));
  switch (node.get_operator_type()) {
  case CDB_OPERATOR_ROTATE_LEFT:
    return fmt::format("({0} << ({1} % {2})) | ({0} >> ({2} - {1} % {2}))", a, amount, width);
  case CDB_OPERATOR_ROTATE_RIGHT:
    return fmt::format("({0} >> ({1} % {2})) | ({0} << ({2} - {1} % {2}))", a, amount, width);
  default: break;
  }
  const char* symbol = node.get_operator_type() == CDB_OPERATOR_SHIFT_LEFT ? "<<" : ">>";
  bool fills_zero = fill.kind == BIT::ZERO || fill.kind == BIT::UNCONNECTED;
  std::string shifted = fmt::format("({} {} {})", a, symbol, amount);
  if (fills_zero) return shifted;
  return fmt::format("{0} | ({{{1}{{{2}}}}} & ~({{{1}{{1'b1}}}} {3} {4}))", shifted, width, value(fill), symbol,
                     amount);
}

std::string VERILOG_MODULE::operator_value(const CDB_SGATE_OPERATOR& node) const {
  std::string a = operand(node, CDB_OPERATOR_INPUT_1);
  std::string b = operand(node, CDB_OPERATOR_INPUT_2);
  BIT carry = m_view.input(node.find_iterm(CDB_OPERATOR_CARRY_IN));
  std::string plus_carry = carry.kind == BIT::NET || carry.kind == BIT::ONE ? " + " + value(carry) : "";
  switch (node.get_operator_type()) {
  case CDB_OPERATOR_ADDER: return fmt::format("{} + {}{}", a, b, plus_carry);
  case CDB_OPERATOR_MULTIPLIER: return fmt::format("{} * {}", a, b);
  case CDB_OPERATOR_DIVIDER: return fmt::format("{} / {}", a, b);
  case CDB_OPERATOR_MODULO: return fmt::format("{} % {}", a, b);
  case CDB_OPERATOR_SHIFT_LEFT:
  case CDB_OPERATOR_SHIFT_RIGHT:
  case CDB_OPERATOR_ROTATE_LEFT:
  case CDB_OPERATOR_ROTATE_RIGHT: return shift_value(node);
  case CDB_OPERATOR_LESS_THAN:
    if (carry.kind == BIT::ONE) return fmt::format("{} <= {}", a, b);
    if (carry.kind == BIT::NET) return fmt::format("{} ? {} <= {} : {} < {}", value(carry), a, b, a, b);
    return fmt::format("{} < {}", a, b);
  case CDB_OPERATOR_EQUAL: return fmt::format("{} == {}", a, b);
  case CDB_OPERATOR_SELECTOR: return fmt::format("|({} & {})", a, b);
  case CDB_OPERATOR_DECODER: return fmt::format("{}'b1 << {}", node.get_output_width(CDB_OPERATOR_OUTPUT), a);
  case CDB_OPERATOR_ADD_SUB: {
    std::string add = value(m_view.input(node.find_iterm(CDB_OPERATOR_ADD_NOT_SUBTRACT)));
    return fmt::format("{} ? {} + {}{} : {} + ~{}{}", add, a, b, plus_carry, a, b, plus_carry);
  }
  case CDB_OPERATOR_N_TO_1_MUX: return "";
  }
  return "";
}

void VERILOG_MODULE::write_operator(const CDB_SGATE_OPERATOR& node) {
  BITS outputs = m_view.output_bits(node, CDB_OPERATOR_OUTPUT, node.get_output_width(CDB_OPERATOR_OUTPUT));
  if (node.get_operator_type() == CDB_OPERATOR_DECODER && is_sparse_decoder(outputs)) {
    std::string word = operand(node, CDB_OPERATOR_INPUT_1);
    for (size_t line = 0; line < outputs.size(); line++)
      if (outputs[line].is_net()) assign({outputs[line]}, false, fmt::format("{} == {}", word, line));
    return;
  }
  if (const CDB_SGATE_OTERM* carry = node.find_oterm(CDB_OPERATOR_CARRY_OUT)) {
    // The carry stands behind the widest input, even where fewer output bits are used.
    unsigned width = std::max(node.get_input_width(CDB_OPERATOR_INPUT_1), node.get_input_width(CDB_OPERATOR_INPUT_2));
    outputs.resize(std::max<size_t>(width, outputs.size()), BIT{BIT::UNCONNECTED});
    outputs.push_back(m_view.output(carry));
  }
  if (outputs.empty()) return;
  if (node.get_operator_type() != CDB_OPERATOR_N_TO_1_MUX) return assign(outputs, false, operator_value(node));
  // A select of bits needs a name for the vector.
  unsigned width = node.get_input_width(CDB_OPERATOR_INPUT_2);
  std::string data = verilog_identifier(m_names.make_unique("mux_data"));
  m_helpers.push_back(fmt::format("wire [{}:0] {};", width - 1, data));
  print("  assign {} = {};\n", data, operand(node, CDB_OPERATOR_INPUT_2));
  assign(outputs, false, fmt::format("{}[{}]", data, operand(node, CDB_OPERATOR_INPUT_1)));
}

void VERILOG_MODULE::write_ram(const CDB_SGATE_ASYNCHRONOUS_RAM& ram) {
  RAM_VIEW memory(m_view, ram);
  std::string name = instance_name(ram);
  m_helpers.push_back(fmt::format("reg [{}:0] {} [0:{}];", memory.width - 1, name, memory.depth - 1));
  if (!memory.contents.empty()) {
    print("  initial begin\n");
    for (size_t address = 0; address < memory.contents.size(); address++)
      print("    {}[{}] = {}'b{};\n", name, address, memory.width, memory.contents[address]);
    print("  end\n");
  }
  for (size_t i = 0; i < memory.writes.size(); i++) {
    const RAM_WRITE_PORT& port = memory.writes[i];
    bool is_first_of_clock = i == 0 || !port.has_clock_of(memory.writes[i - 1]);
    if (is_first_of_clock && i != 0) print("  end\n");
    if (is_first_of_clock && port.is_clocked)
      print("  always @({} {}) begin\n", port.clock_falls ? "negedge" : "posedge", event(port.clock));
    else if (is_first_of_clock)
      print("  always @* begin\n");
    write_ram_port(memory, name, port);
  }
  if (!memory.writes.empty()) print("  end\n");
  for (const RAM_READ_PORT& port : memory.reads) {
    std::vector<std::string> words; // highest first
    for (unsigned part = port.words; part > 0; part--)
      words.push_back(ram_word(name, port.address, port.words, part - 1));
    assign(port.data, false, fmt::format("{{{}}}", fmt::join(words, ", ")));
  }
}

std::string VERILOG_MODULE::ram_word(const std::string& name, const BITS& address, unsigned words,
                                     unsigned part) const {
  return words == 1 ? fmt::format("{}[{}]", name, value(address))
                    : fmt::format("{}[{} * {} + {}]", name, value(address), words, part);
}

/// Each part that one lane and one word have in common is written on its own.
void VERILOG_MODULE::write_ram_port(const RAM_VIEW& memory, const std::string& name, const RAM_WRITE_PORT& port) {
  unsigned lane_width = port.lanes.empty() ? memory.width : static_cast<unsigned>(port.data.size() / port.lanes.size());
  unsigned step = std::max(std::min(lane_width, memory.width), 1U);
  std::string condition = port.is_clocked ? value({port.enable}) : event(port.enable);
  if (port.has_reset())
    condition = fmt::format("{}{} && {}", port.reset_is_low ? "" : "!", value({port.reset}), condition);
  const bool is_always_on = condition == "1'b1";
  print("    {}begin\n", is_always_on ? "" : fmt::format("if ({}) ", condition));
  const char* becomes = port.is_clocked ? "<=" : "=";
  for (unsigned low = 0; low + step <= port.data.size(); low += step) {
    std::string place = ram_word(name, port.address, port.words, low / memory.width);
    if (step != memory.width) place += fmt::format("[{}:{}]", low % memory.width + step - 1, low % memory.width);
    std::string data = value(BITS(port.data.begin() + low, port.data.begin() + low + step));
    if (port.lanes.empty())
      print("      {} {} {};\n", place, becomes, data);
    else
      print("      if ({}) {} {} {};\n", value({port.lanes[low / lane_width]}), place, becomes, data);
  }
  print("    end\n");
}

} // namespace

std::string write_verilog(const DESIGN_VIEW& design) {
  std::string text = "// Gate netlist. Each module is one design unit with one set of parameters.\n";
  for (const auto& module : design.get_modules()) {
    text += '\n';
    std::string body;
    VERILOG_MODULE(design, *module, body).write();
    text += body;
  }
  return text;
}
