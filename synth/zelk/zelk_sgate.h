// The conversion of a kernel netlist into the host's gate netlist: one node per instance, one term per connection, the
// names that the user knows, attributes as assignments, state machines. It reads the kernel's database and writes the
// host's; the only things it changes in the kernel's are attributes that it has used up. The files of the family:
// zelk_sgate (the order of steps, nodes), zelk_sgate_component, zelk_sgate_connect, zelk_sgate_name,
// zelk_sgate_attribute, zelk_sgate_fsm, zelk_sgate_dump.
#ifndef ZELK_SGATE_H
#define ZELK_SGATE_H

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "cdb_sgate.h"
#include "database/att.h"
#include "zelk_attribute_value.h"

class BASEX_ELABORATE_INFO;
class DesignObj;
class Fsm;
class HDB_DESIGN_UNIT;
class Instance;
class MSG_BASE;
class Net;
class Netlist;
class Port;
class PortBus;
class PortRef;
class Set;

class ZELK_SGATE {
public:
  /// Neither is owned. The netlist is flat and polished: user cells are the only hierarchy left in it.
  ZELK_SGATE(BASEX_ELABORATE_INFO* info, Netlist* netlist);
  ~ZELK_SGATE();
  ZELK_SGATE(const ZELK_SGATE&) = delete;
  ZELK_SGATE& operator=(const ZELK_SGATE&) = delete;

  /// Converts and hands the hierarchy over to the info object. False when the netlist holds what the host has no node
  /// for: messages tell what, and nothing is handed over.
  bool convert_netlist();

private:
  enum OPTION { OPTION_TIEOFF = 1, OPTION_CONVERT_FSM = 2, OPTION_NO_ATTRIBUTES = 4, OPTION_IP_DEBUG = 8 };
  enum LEVEL { LEVEL_GND, LEVEL_VCC };
  enum TRI_BUS_NAME { NAME_AS_NEEDED, NAME_FORCED };

  bool is_on(OPTION option) const { return (m_options & option) != 0; }
  void read_options();
  void prepare_verification_mode();
  bool is_ip_debug_wanted() const;
  void fill_hierarchy();

  // Nodes.
  bool create_sgate_instances();
  void create_sgate_instance(Instance* inst);
  CDB_SGATE_NODE* create_node(Instance* inst);
  CDB_SGATE_NODE* create_buffer(Instance* inst) const;
  CDB_SGATE_NODE* create_register(Instance* inst);
  CDB_SGATE_NODE* create_ram(Instance* inst);
  void refuse(MSG_BASE* message, const Instance* inst);
  const char* create_node_name(Instance* inst, const CDB_SGATE_NODE& node);
  void protect_keep_lcells();
  void set_ram_flags(CDB_SGATE_ASYNCHRONOUS_RAM* ram, const Instance* inst) const;

  // Components.
  CDB_SGATE_NODE* create_component(Instance* inst);
  void set_block_configuration(CDB_SGATE_COMPONENT* component, const Instance* inst) const;
  void set_component_parameters(CDB_SGATE_COMPONENT* component, const Netlist* view) const;
  void create_sgate_component_ports();
  void create_component_port_objects(CDB_SGATE_COMPONENT* component, const Port* port, Set& seen);
  void create_component_port_elements(CDB_SGATE_COMPONENT* component, DesignObj* object);
  CDB_COMPONENT_PORT* create_sgate_component_port(CDB_SGATE_COMPONENT* component, const Port* port);

  // Ports of the netlist.
  void create_sgate_io();
  void create_sgate_io_elements(DesignObj* object);
  void create_sgate_io(Port* port);

  // Connections.
  void create_sgate_connections();
  void connect_net(Net* net);
  void connect_loads(Net* net, CDB_SGATE_OTERM* driver);
  void handle_pwr_gnd_conn();
  void handle_pwr_gnd_net(Net* net);
  void create_single_terminal_net(Net* net);
  void create_unconnected_source(Net* net, CDB_SGATE_OTERM*& source, CDB_SGATE_ITERM* load);
  void terminate_output(Net* net, PortRef* ref);
  void terminate_bidirectional(Net* net, PortRef* ref);
  void terminate_port(Port* port);
  CDB_SGATE_OTERM* process_multiple_driver_net(Net* net);
  bool net_has_multiple_drivers(const Net* net) const;
  bool is_single_constant(const Net* net) const;
  CDB_SGATE_OTERM* find_net_driver(Net* net);
  CDB_SGATE_NODE* get_node(const Instance* inst) const;
  CDB_SGATE_IO* get_io(const Port* port) const;
  CDB_SGATE_ITERM* get_iterm(const PortRef* ref);
  CDB_SGATE_OTERM* get_oterm(const PortRef* ref);
  CDB_SGATE_ITERM* get_io_iterm(const Port* port);
  CDB_SGATE_OTERM* get_io_oterm(const Port* port);
  CDB_SGATE_ITERM* get_operator_iterm(CDB_SGATE_OPERATOR* node, const Port* port) const;
  CDB_SGATE_OTERM* get_operator_oterm(CDB_SGATE_OPERATOR* node, const Port* port) const;
  CDB_COMPONENT_PORT* get_component_port(CDB_SGATE_COMPONENT* component, const Port* port);
  CDB_SGATE_OTERM* do_keep_and_ip_debug(CDB_SGATE_OTERM* oterm, Net* net, TRI_BUS_NAME& naming);
  CDB_SGATE_NODE* find_keeper(CDB_SGATE_OTERM* oterm, const Net* net, TRI_BUS_NAME& naming) const;
  bool is_named_after(const CDB_SGATE_NODE& node, const char* name) const;
  CDB_SGATE_NODE* insert_keeper(CDB_SGATE_OTERM* oterm, const Net* net);
  void move_net_attributes(const CDB_SGATE_NODE& keeper, Net* net);
  void convert_const_bufs_to_const_iterms();
  void drop_bus_constant(CDB_SGATE_NODE& bus);

  // Names.
  const char* create_node_instance_name(const char* name, const char* suffix);
  const char* create_system_name(const char* name);
  const char* create_tri_bus_name(const Net* net, TRI_BUS_NAME naming) const;
  const char* create_net_name(const Net* net) const;
  void name_net(Net* net, CDB_SGATE_OTERM* driver, TRI_BUS_NAME naming);
  void name_tri_bus(const Net* net, CDB_SGATE_OTERM* driver, TRI_BUS_NAME naming);
  const char* get_host_name(const Instance* inst) const;
  const char* get_host_name(const Net* net) const;
  void register_user_identifiers();
  void register_net_and_instance_names();
  void register_instance_name(const Instance* inst);
  void register_net_name(const Net* net);
  void register_net_buses();
  void register_port_names();
  void register_port_bus(const PortBus* bus);

  // Attributes.
  void fill_attribute_table();
  void process_attributes();
  void process_attributes_of(DesignObj* obj);
  void process_single_attribute(DesignObj* obj, Att* att);
  void set_assignment(int variable, const char* value);
  void set_instance_assignment(const char* name, int variable, const char* value);
  void set_instance_assignment(const CDB_SGATE_NODE* node, int variable, const char* value);
  /// On the node of an instance, or on the whole netlist when the object is the netlist itself.
  void assign(DesignObj* obj, int variable, const char* value);
  void process_norvel_attribute(DesignObj* obj, Att* att);
  void process_chip_pin_attribute(DesignObj* obj, Att* att);
  void process_direct_enable_attribute(DesignObj* obj, Att* att);
  void process_dont_merge_attribute(DesignObj* obj, Att* att);
  void process_dont_replicate_attribute(DesignObj* obj, Att* att);
  void process_dont_retime_attribute(DesignObj* obj, Att* att);
  void process_fsm_encoding_attribute(DesignObj* obj, Att* att);
  void process_initial_value_attribute(DesignObj* obj, Att* att);
  void process_maxfan_attribute(DesignObj* obj, Att* att);
  void process_max_ram_depth_attribute(DesignObj* obj, Att* att);
  void process_msg_enable_disable_attributes(DesignObj* obj, Att* att);
  void process_multstyle_attribute(DesignObj* obj, Att* att);
  void process_noprune_attribute(DesignObj* obj, Att* att);
  void process_preserve_attribute(DesignObj* obj, Att* att);
  void process_ramstyle_attribute(DesignObj* obj, Att* att);
  void process_ram_init_file_attribute(DesignObj* obj, Att* att);
  void process_useioff_attribute(DesignObj* obj, Att* att);
  void assign_pins(const PortBus* bus, const Att* att, const std::vector<std::string>& pins);
  void set_ram_style(const Instance* inst, const DesignObj* obj, const Att* att, const ZELK_RAMSTYLE& style);
  CDB_SGATE_ASYNCHRONOUS_RAM* get_ram(const DesignObj* obj) const;
  void ip_debug_alias_name_preprocess();
  void ip_debug_alias_net(Net* net, const std::string& alias);
  void make_ip_debug_visible(CDB_SGATE_OTERM* oterm, const Net* net);

  // State machines.
  void create_state_machines();
  void create_state_machine(Fsm* fsm);
  void set_states();
  void configure_state(Instance* inst, CDB_SGATE_STATE* node);
  const char* create_state_name(Instance* inst);
  void sanity_check_state_machines();
  void sanity_check_state_machine(const CDB_STATE_MACHINE& machine);
  CDB_STATE_MACHINE* get_machine(const Fsm* fsm) const;
  CDB_STATE_MACHINE* get_machine_of(const Instance* inst) const;
  /// A signal of a state register that the machine holds for all its states. A null term is the constant level.
  void process_fsm_signal(const PortRef* ref, CDB_SGATE_OTERM* oterm, LEVEL level);
  void set_fsm_reset(CDB_STATE_MACHINE* machine, CDB_SGATE_OTERM* oterm, LEVEL level);
  bool is_state_signal(const PortRef* ref) const;

  using HANDLER = void (ZELK_SGATE::*)(DesignObj*, Att*);

  BASEX_ELABORATE_INFO* m_elaborate_info;
  Netlist* m_netlist;
  HDB_DESIGN_UNIT* m_design_unit;
  std::unique_ptr<CDB_SGATE_NETLIST> m_sgate_netlist;
  std::unique_ptr<CDB_SGATE_HIERARCHY> m_sgate_hierarchy;
  std::unordered_map<const Instance*, CDB_SGATE_NODE*> m_instance_map;
  std::unordered_map<const Port*, CDB_SGATE_IO*> m_io_map;
  std::unordered_map<const Net*, CDB_SGATE_OTERM*> m_net_map; // of user nets
  CDB_SGATE_HIERARCHY::MACHINES* m_machines = nullptr;
  std::unordered_map<const Fsm*, CDB_STATE_MACHINE*> m_machine_map;
  std::unordered_map<const Instance*, CDB_STATE_MACHINE*> m_state_map;
  unsigned m_options = 0;
  bool m_is_refused = false;
  std::map<ATT_ENUM, HANDLER> m_attribute_table;
  std::unordered_set<std::string> m_user_names;            // names of the host's objects that came from the user
  std::unordered_map<std::string, std::string> m_name_map; // name in the host to name in the kernel where they differ
  std::unordered_map<std::string, Net*> m_ip_debug_aliases;
  unsigned m_ip_debug_count = 0;
};

/// The text between quotes of a parameter of a library primitive, whose value has a letter for its type before the
/// quotes; for other parameters the value S"UNUSED" becomes UNUSED.
std::string convert_param_to_norvel_format(const std::string& value, bool is_wysiwyg);

/// Splits a port's name: its base and its index, which is -1 for a port of no bus. The position counts ports and buses
/// of the view before it when the view connects by order, and is -1 otherwise.
void breakup_portname(const Port* port, std::string& base, int& position, int& index);

/// Notes for the host that a source of this name has to be looked for.
void create_source_component_for_hdb(BASEX_ELABORATE_INFO* info, const char* name);

/// Writes a readable text of a gate netlist to the file "zelk_sgate_N", N counting up from 0.
void dump_sgate_text_netlist_canonical(const CDB_SGATE_HIERARCHY& hierarchy);

/// What a read port of a memory sees of a write by the write port; both are 'A' or 'B'.
CDB_READ_DURING_WRITE kestrin_get_read_during_write_behavior(const Instance* inst, char read, char write);

#endif
