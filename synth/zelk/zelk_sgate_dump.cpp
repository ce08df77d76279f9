// A readable text of a gate netlist, one node per paragraph in the order of names, so that two can be compared.
#include <algorithm>
#include <fstream>
#include <vector>

#include "fio.h"
#include "zelk_sgate.h"

namespace {

constexpr const char* DUMP_NAME = "zelk_sgate_";

const char* kind_of(const CDB_SGATE_NODE& node) {
  switch (node.get_sgate_type()) {
  case CDB_SGATE_BUFFER_ENUM: return "buffer";
  case CDB_SGATE_COMB_ENUM: return "comb";
  case CDB_SGATE_DFF_ENUM: return "dff";
  case CDB_SGATE_IO_ENUM: return "io";
  case CDB_SGATE_IO_BUF_ENUM: return "io_buf";
  case CDB_SGATE_STATE_ENUM: return "state";
  case CDB_SGATE_MUX_ENUM: return "mux";
  case CDB_SGATE_TRI_BUS_ENUM: return "tri_bus";
  case CDB_SGATE_LATCH_ENUM: return "latch";
  case CDB_SGATE_COMPONENT_ENUM: return "component";
  case CDB_SGATE_OPERATOR_ENUM: return "operator";
  case CDB_SGATE_ASYNCHRONOUS_RAM_ENUM: return "ram";
  }
  return "unknown";
}

std::string name_of(const CDB_SGATE_NODE& node) {
  return node.get_string_name() ? node.get_string_name() : "<no name>";
}

std::string detail_of(const CDB_SGATE_NODE& node) {
  switch (node.get_sgate_type()) {
  case CDB_SGATE_BUFFER_ENUM: return std::to_string(static_cast<const CDB_SGATE_BUFFER&>(node).get_buffer_type());
  case CDB_SGATE_COMB_ENUM: return std::to_string(static_cast<const CDB_SGATE_COMB&>(node).get_comb_type());
  case CDB_SGATE_IO_ENUM: return std::to_string(static_cast<const CDB_SGATE_IO&>(node).get_direction());
  case CDB_SGATE_COMPONENT_ENUM: return static_cast<const CDB_SGATE_COMPONENT&>(node).get_entity_name();
  case CDB_SGATE_OPERATOR_ENUM: {
    const auto& oper = static_cast<const CDB_SGATE_OPERATOR&>(node);
    return std::to_string(oper.get_operator_type()) + (oper.is_signed() ? " signed" : "");
  }
  case CDB_SGATE_STATE_ENUM: return static_cast<const CDB_SGATE_STATE&>(node).get_state_name();
  case CDB_SGATE_DFF_ENUM:
  case CDB_SGATE_IO_BUF_ENUM:
  case CDB_SGATE_MUX_ENUM:
  case CDB_SGATE_TRI_BUS_ENUM:
  case CDB_SGATE_LATCH_ENUM:
  case CDB_SGATE_ASYNCHRONOUS_RAM_ENUM: return "";
  }
  return "";
}

std::string source_of(const CDB_SGATE_ITERM& term) {
  if (term.is_gnd()) return "gnd";
  if (term.is_vcc()) return "vcc";
  const CDB_SGATE_OTERM* source = term.get_source();
  if (!source) return "open";
  return name_of(*source->get_node()) + "." + std::to_string(source->get_type()) + "[" +
         std::to_string(source->get_index()) + "]";
}

void dump_sgate_node(std::ostream& stream, const CDB_SGATE_NODE& node) {
  stream << kind_of(node) << " " << name_of(node);
  if (std::string detail = detail_of(node); !detail.empty()) stream << " (" << detail << ")";
  stream << "\n";
  for (const auto& term : node.get_iterms())
    stream << "  in " << term->get_type() << "[" << term->get_index() << "] = " << source_of(*term) << "\n";
  for (const auto& term : node.get_oterms()) {
    stream << "  out " << term->get_type() << "[" << term->get_index() << "]"
           << (term->is_inverted() ? " inverted" : "");
    if (term->get_string_name()) stream << " " << term->get_string_name();
    stream << " fanout " << term->get_fanouts().size() << "\n";
  }
}

} // namespace

void dump_sgate_text_netlist_canonical(const CDB_SGATE_HIERARCHY& hierarchy) {
  unsigned number = 0;
  while (FIO_PATH(DUMP_NAME + std::to_string(number)).exists()) number++;
  std::ofstream stream(DUMP_NAME + std::to_string(number));
  stream << "hierarchy " << hierarchy.get_instance_name() << "\n";
  if (!hierarchy.get_netlist()) return;
  std::vector<const CDB_SGATE_NODE*> nodes;
  for (const auto& node : hierarchy.get_netlist()->get_nodes()) nodes.push_back(node.get());
  std::stable_sort(nodes.begin(), nodes.end(), [](const CDB_SGATE_NODE* left, const CDB_SGATE_NODE* right) {
    return name_of(*left) < name_of(*right);
  });
  for (const CDB_SGATE_NODE* node : nodes) dump_sgate_node(stream, *node);
  for (const auto& machine : hierarchy.get_machines()) {
    stream << "machine " << machine->get_string_name() << " states " << machine->get_num_states() << "\n";
    for (const CDB_SGATE_STATE* state : machine->get_states())
      stream << "  state " << name_of(*state) << (state->is_reset_state() ? " reset" : "") << "\n";
  }
}
