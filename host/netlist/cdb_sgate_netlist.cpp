// The netlist as the owner of its nodes.
#include "cdb_sgate.h"

CDB_SGATE_NETLIST::~CDB_SGATE_NETLIST() {
  // Connections go first and from the end of each fanout list, so that the deletion of terms finds nothing to search.
  for (const auto& node : m_nodes)
    for (const auto& oterm : node->get_oterms())
      while (!oterm->get_fanouts().empty()) oterm->get_fanouts().back()->disconnect_from_source(0);
}

void CDB_SGATE_NETLIST::add_node(CDB_SGATE_NODE* node, int) {
  node->m_netlist = this;
  m_nodes.emplace_back(node);
}

void CDB_SGATE_NETLIST::remove_node(CDB_SGATE_NODE* node) {
  std::erase_if(m_nodes, [node](const auto& mine) { return mine.get() == node; });
}
