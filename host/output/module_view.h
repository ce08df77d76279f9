// How writers see one unit: ports and signals as named vectors, every term as a bit of one of them, and the nodes that
// do the same to the bits of a vector gathered in groups. The netlist itself stays one of single bits.
#ifndef HOST_MODULE_VIEW_H
#define HOST_MODULE_VIEW_H

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "flow/unit_result.h"

/// A constant or a bit of a signal.
struct BIT {
  enum KIND { ZERO, ONE, UNKNOWN, UNCONNECTED, NET };
  KIND kind = UNKNOWN;
  int net = -1;
  bool operator==(const BIT&) const = default;
  bool is_net() const { return kind == NET; }
};

/// Bits of a value, least significant first.
using BITS = std::vector<BIT>;

/// Whether so few lines of a wide decoder are used that a comparison for each reads better than a shift.
inline bool is_sparse_decoder(const BITS& outputs) {
  size_t used = 0;
  for (const BIT& bit : outputs) used += bit.is_net() ? 1 : 0;
  return outputs.size() > 16 && used * 4 < outputs.size();
}

/// A scalar or a vector. Bit k of the vector has the index right + k, or right - k when left is below right.
struct SIGNAL {
  std::string name;
  bool is_vector = false;
  int left = 0;
  int right = 0;
  std::vector<int> nets; // by offset from the right; -1 where the vector has no bit
  SOURCE_PLACE place;
  bool is_port = false;
  CDB_IO_DIRECTION direction = CDB_IO_INPUT; // of a port
  std::vector<const CDB_SGATE_IO*> ios;      // of a port, by offset; null where the port has no bit

  int index_of(size_t offset) const {
    return left >= right ? right + static_cast<int>(offset) : right - static_cast<int>(offset);
  }
  /// False when the index is outside the bounds.
  bool offset_of(int index, size_t& offset) const;
};

/// Where a net stands.
struct NET_PLACE {
  int signal = -1; // of MODULE_VIEW::get_signals
  unsigned offset = 0;
};

/// A register's controls as bits. State nodes of machines and flip-flops look alike here.
struct REGISTER_CONTROLS {
  BIT clock;
  bool clock_falls = false;
  BIT reset{BIT::ZERO};
  BIT set{BIT::ZERO};
  bool is_async_low = false; // reset and set act when they are 0
  BIT load{BIT::ZERO};
  bool operator==(const REGISTER_CONTROLS&) const = default;
};

/// Nodes of the same kind and controls that drive bits of one signal, lowest bit first; most groups hold one node.
struct NODE_GROUP {
  std::vector<const CDB_SGATE_NODE*> nodes;
  const CDB_SGATE_NODE* first() const { return nodes.front(); }
};

class MODULE_VIEW {
public:
  explicit MODULE_VIEW(const UNIT_RESULT& result);

  const UNIT_RESULT& get_result() const { return m_result; }
  /// Ports first, in the order of the unit.
  const std::vector<SIGNAL>& get_signals() const { return m_signals; }
  const std::vector<const SIGNAL*>& get_ports() const { return m_ports; }
  const NET_PLACE& get_place(int net) const { return m_places[static_cast<size_t>(net)]; }
  size_t get_net_count() const { return m_places.size(); }
  const std::vector<NODE_GROUP>& get_groups() const { return m_groups; }

  /// What an input term reads; a null term is unconnected.
  BIT input(const CDB_SGATE_ITERM* term) const;
  /// What an output term drives; a null term is unconnected.
  BIT output(const CDB_SGATE_OTERM* term) const;
  /// The node whose output a bit is, a bus for what several drive; null for constants.
  const CDB_SGATE_NODE* driver_of(const BIT& bit) const {
    return bit.is_net() ? m_drivers[static_cast<size_t>(bit.net)] : nullptr;
  }
  /// The bits of an operator's or memory's vector.
  BITS input_bits(const CDB_SGATE_NODE& node, int type, unsigned width) const;
  BITS output_bits(const CDB_SGATE_NODE& node, int type, unsigned width) const;
  /// Input i of each node of a group.
  BITS group_inputs(const NODE_GROUP& group, int type, unsigned index = 0) const;
  BITS group_outputs(const NODE_GROUP& group) const;
  /// Inputs of a component's port, or outputs, or the joined net of a bidirectional one.
  BIT component_port(const CDB_COMPONENT_PORT* port) const;
  REGISTER_CONTROLS controls(const CDB_SGATE_NODE& node) const;
  /// A driver of a bus of several drivers that is not the bus itself already.
  bool is_joined(const CDB_SGATE_ITERM& bus_input) const;

  /// Port of this module by the full name of one of its bits.
  bool find_port_bit(const std::string& full_name, const SIGNAL*& port, size_t& offset) const;
  /// Place in the source of a node; line 0 when it is unknown.
  SOURCE_PLACE place_of(const CDB_SGATE_NODE& node) const;

private:
  void make_ports();
  void join_buses();
  void join_bus_input(const CDB_SGATE_ITERM& input, const CDB_SGATE_OTERM* bus);
  const CDB_SGATE_OTERM* joined(const CDB_SGATE_OTERM* term) const;
  void make_signals();
  void make_groups();
  void bind(const CDB_SGATE_OTERM* term, int signal, size_t offset);
  std::string group_key(const CDB_SGATE_NODE& node) const;
  bool reads_signal(const CDB_SGATE_NODE& node, int signal) const;

  const UNIT_RESULT& m_result;
  std::vector<SIGNAL> m_signals;
  std::vector<const SIGNAL*> m_ports;
  std::vector<NET_PLACE> m_places;
  std::vector<const CDB_SGATE_NODE*> m_drivers; // by net
  std::vector<NODE_GROUP> m_groups;
  std::unordered_map<const CDB_SGATE_OTERM*, const CDB_SGATE_OTERM*> m_joined; // to the bus that it is one with
  std::unordered_map<const CDB_SGATE_OTERM*, int> m_nets;
  std::unordered_map<std::string, std::pair<size_t, size_t>> m_port_bits; // full name to signal and offset
};

#endif
