// Hand-made gate netlists for the tests of the host, a line per node. Bits of vectors are named NAME[index].
#ifndef TESTS_HOST_NETLIST_BUILDER_H
#define TESTS_HOST_NETLIST_BUILDER_H

#include <memory>
#include <string>
#include <vector>

#include "flow/unit_result.h"
#include "hdb_action_pt.h"

class TEST_MODULE : public HDB_ENTITY {
public:
  explicit TEST_MODULE(const std::string& name)
      : HDB_ENTITY(nullptr, MSG_TEXT_LOCATION_SCHEMA("", 0, 0), name.c_str(), nullptr, TYPE_VERILOG_MODULE, {},
                   "work") {}
  HDB_ENTITY* clone_entity(MEM_SEGMENT*) override { return new TEST_MODULE(get_name()); }
};

/// A bit to connect: a term, a constant, or nothing.
struct WIRE {
  CDB_SGATE_OTERM* term = nullptr;
  int constant = -1;
  WIRE(CDB_SGATE_OTERM* source) : term(source) {} // NOLINT: a term is a wire
  static WIRE zero() { return WIRE(nullptr, 0); }
  static WIRE one() { return WIRE(nullptr, 1); }
  static WIRE open() { return WIRE(nullptr, -1); }

private:
  WIRE(CDB_SGATE_OTERM* source, int level) : term(source), constant(level) {}
};
using WIRES = std::vector<WIRE>;

inline void connect(CDB_SGATE_ITERM* input, const WIRE& wire) {
  if (wire.term) wire.term->insert_fanout(input);
  if (wire.constant == 0) input->set_gnd();
  if (wire.constant == 1) input->set_vcc();
}

class NETLIST_BUILDER {
public:
  explicit NETLIST_BUILDER(const std::string& name) : m_unit(name), m_result(std::make_unique<UNIT_RESULT>()) {
    m_result->unit = &m_unit;
    m_result->module_name = name;
    m_result->success = true;
    m_result->hierarchy = std::make_unique<CDB_SGATE_HIERARCHY>();
    m_result->hierarchy->set_netlist(new CDB_SGATE_NETLIST);
  }
  UNIT_RESULT& result() { return *m_result; }
  std::unique_ptr<UNIT_RESULT> take() { return std::move(m_result); }
  CDB_SGATE_HIERARCHY& hierarchy() { return *m_result->hierarchy; }

  template <class NODE> NODE* add(NODE* node, const std::string& name = "") {
    if (!name.empty()) node->set_string_name(name.c_str());
    m_result->get_netlist()->add_node(node, 1);
    return node;
  }
  static std::string bit_name(const std::string& name, unsigned i, unsigned width) {
    return width == 0 ? name : name + "[" + std::to_string(i) + "]";
  }

  WIRE input(const std::string& name) {
    return add(new CDB_SGATE_IO(CDB_IO_INPUT), name)->retrieve_oterm(CDB_TERM_OUTPUT);
  }
  WIRES inputs(const std::string& name, unsigned width) {
    declare(name, width);
    WIRES wires(width, WIRE::open());
    for (unsigned i = width; i > 0; i--) wires[i - 1] = input(bit_name(name, i - 1, width));
    return wires;
  }
  void output(const std::string& name, const WIRE& wire) {
    connect(add(new CDB_SGATE_IO(CDB_IO_OUTPUT), name)->retrieve_iterm(CDB_TERM_DATA), wire);
  }
  void outputs(const std::string& name, const WIRES& wires) {
    declare(name, static_cast<unsigned>(wires.size()));
    for (size_t i = wires.size(); i > 0; i--)
      output(bit_name(name, static_cast<unsigned>(i - 1), static_cast<unsigned>(wires.size())), wires[i - 1]);
  }
  CDB_SGATE_IO* bidirectional(const std::string& name) { return add(new CDB_SGATE_IO(CDB_IO_BIDIR), name); }

  WIRE gate(CDB_COMB_TYPE type, const WIRES& inputs, bool inverted = false, const std::string& name = "") {
    auto* node = add(new CDB_SGATE_COMB(type), name);
    for (const WIRE& wire : inputs) connect(node->insert_unordered_fanin_term(), wire);
    CDB_SGATE_OTERM* output = node->retrieve_oterm(CDB_TERM_OUTPUT);
    output->set_inverted(inverted);
    return output;
  }
  /// A node of single terms by type.
  WIRE cell(CDB_SGATE_NODE* node, const std::vector<std::pair<int, WIRE>>& inputs, const std::string& name = "") {
    add(node, name);
    for (const auto& [type, wire] : inputs) connect(node->retrieve_iterm(type), wire);
    return node->retrieve_oterm(CDB_TERM_OUTPUT);
  }
  WIRE bus(const WIRES& drivers, const std::string& name = "") {
    auto* node = add(new CDB_SGATE_TRI_BUS, name);
    for (const WIRE& wire : drivers) connect(node->insert_unordered_fanin_term(), wire);
    return node->retrieve_oterm(CDB_TERM_OUTPUT);
  }
  CDB_SGATE_OPERATOR* oper(CDB_OPERATOR_TYPE type, bool is_signed = false, const std::string& name = "") {
    auto* node = add(new CDB_SGATE_OPERATOR(type), name);
    node->set_signed(is_signed);
    return node;
  }
  static void feed(CDB_SGATE_NODE* node, int type, const WIRES& wires) {
    for (size_t i = 0; i < wires.size(); i++) connect(node->retrieve_iterm(type, static_cast<unsigned>(i)), wires[i]);
  }
  static WIRES bits(CDB_SGATE_NODE* node, int type, unsigned width) {
    WIRES wires;
    for (unsigned i = 0; i < width; i++) wires.push_back(node->retrieve_oterm(type, i));
    return wires;
  }

private:
  void declare(const std::string& name, unsigned width) {
    if (width != 0) m_result->port_buses.push_back({name, static_cast<int>(width) - 1, 0, false, 0, 0, {}});
  }

  TEST_MODULE m_unit;
  std::unique_ptr<UNIT_RESULT> m_result;
};

#endif
