// The gate netlist of one design unit with one set of parameters, and the hierarchy object in which it travels.
#ifndef CDB_SGATE_H
#define CDB_SGATE_H

#include <memory>
#include <vector>

#include "cdb_hierarchy_base.h"
#include "cdb_sgate_node.h"
#include "cdb_sgate_ram.h"
#include "cdb_state_machine.h"

/// Owns its nodes.
class CDB_SGATE_NETLIST {
public:
  CDB_SGATE_NETLIST() = default;
  ~CDB_SGATE_NETLIST();
  CDB_SGATE_NETLIST(const CDB_SGATE_NETLIST&) = delete;
  CDB_SGATE_NETLIST& operator=(const CDB_SGATE_NETLIST&) = delete;

  /// Takes a node over. The second argument asks the host to keep the node in its name table; it is always so here.
  void add_node(CDB_SGATE_NODE* node, int keep_name);
  /// Deletes a node; its terms are disconnected first.
  void remove_node(CDB_SGATE_NODE* node);
  /// In the order of their adding; later ones may appear while the vector is walked by index.
  const std::vector<std::unique_ptr<CDB_SGATE_NODE>>& get_nodes() const { return m_nodes; }
  /// The netlist is going to a formal verification tool: names are to be kept as they are.
  void initialize_verification_mode() { m_is_verification_mode = true; }
  bool is_verification_mode() const { return m_is_verification_mode; }

private:
  std::vector<std::unique_ptr<CDB_SGATE_NODE>> m_nodes;
  bool m_is_verification_mode = false;
};

/// Owns its state machines and its netlist.
class CDB_SGATE_HIERARCHY : public CDB_HIERARCHY_BASE {
public:
  using MACHINES = std::vector<std::unique_ptr<CDB_STATE_MACHINE>>;
  /// Never null.
  MACHINES* get_machines() { return &m_machines; }
  const MACHINES& get_machines() const { return m_machines; }
  CDB_SGATE_NETLIST* get_netlist() const { return m_netlist.get(); }
  /// Takes the netlist over.
  void set_netlist(CDB_SGATE_NETLIST* netlist) { m_netlist.reset(netlist); }

private:
  MACHINES m_machines;
  std::unique_ptr<CDB_SGATE_NETLIST> m_netlist;
};

#endif
