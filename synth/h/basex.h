// The synthesis flow's interface to a front end: the analyzer that reads source files, the elaborators that the
// analyzer leaves in each design unit, and the info objects through which one analysis or elaboration talks to the
// flow.
#ifndef BASEX_H
#define BASEX_H

#include <string>
#include <vector>

#include "cdb_hierarchy_base.h"
#include "hdb_action_pt.h"
#include "mem_segment.h"
#include "msg.h"

class CDB_SGATE_HIERARCHY;
class CDB_SGATE_IO;
class CDB_SGATE_NETLIST;

/// Everything that one analyze call is told, and the list in which it leaves what it found.
class BASEX_ANALYZE_INFO {
public:
  virtual ~BASEX_ANALYZE_INFO() = default;

  /// Design units found, in the order of the source; the flow takes them over after the call.
  std::vector<HDB_DESIGN_UNIT*> entity_list;
  /// The file to analyse.
  HDB_SOURCE_FILE* source_file = nullptr;

  virtual HDB_ACTION_PT_INSTANCE* get_action_pt_inst() = 0;
  /// Project directory with "/" at the end.
  virtual std::string get_project_path() = 0;
  /// Interface files that this call has to write beside its analysis.
  virtual bool is_create_default_symbol_file() = 0;
  virtual bool is_create_default_include_file() = 0;
  virtual bool is_create_default_component_file() = 0;
  virtual bool is_create_default_instantiation_file() = 0;
  virtual bool is_create_xml_interface_file() = 0;
  /// The run produces simulation models.
  virtual bool is_simgen_mode() = 0;
};

/// Services of an analyzer beside the analysis of a file. They are handed to the base class as a table, so that more of
/// them can be added without moving a virtual slot. Each takes the analyzer as its first argument.
class BASEX_ANALYZER;
struct BASEX_ANALYZER_SERVICES {
  /// Resolves all units after the last file. With both lists given, item i of the first is a file that depends on item
  /// i of the second. False when errors arose.
  bool (*resolve_all_design_units)(BASEX_ANALYZER*, HDB_ACTION_PT_INSTANCE*, std::vector<std::string>*,
                                   std::vector<std::string>*);
  /// Forgets everything learnt, as if the library had been loaded afresh.
  void (*delete_static_data)(BASEX_ANALYZER*);
  /// Rewrite a parameter value of the user interface as source text, in place. True when the value was understood and
  /// its type was consumed.
  bool (*convert_parameter_to_verilog)(BASEX_ANALYZER*, std::string& value, std::string& type);
  bool (*convert_parameter_to_vhdl)(BASEX_ANALYZER*, std::string& value, std::string& type);
};

class BASEX_ANALYZER {
public:
  virtual ~BASEX_ANALYZER() = default;
  /// True only if everything asked for succeeded and the default report's error count did not grow.
  virtual bool analyze(BASEX_ANALYZE_INFO* info) = 0;
  virtual BASEX_ANALYZER* clone(MEM_SEGMENT* segment) = 0;

  const BASEX_ANALYZER_SERVICES& get_services() const { return *m_services; }

protected:
  explicit BASEX_ANALYZER(const BASEX_ANALYZER_SERVICES* services) : m_services(services) {}

private:
  const BASEX_ANALYZER_SERVICES* m_services;
};

/// Base of what an elaborator is told.
class BASEX_EXTRACT_INFO {
public:
  virtual ~BASEX_EXTRACT_INFO() = default;
};

/// Everything that one elaboration is told, asks for and hands over.
class BASEX_ELABORATE_INFO : public BASEX_EXTRACT_INFO {
public:
  // What to elaborate.
  virtual HDB_DESIGN_UNIT* get_design_unit() = 0;
  virtual HDB_ACTION_PT_INSTANCE* get_action_pt_inst() = 0;
  /// Units of the design unit's source, for the search of a configuration.
  virtual const std::vector<HDB_DESIGN_UNIT*>& get_design_unit_list() = 0;
  /// Null, or "A:" and an architecture or "C:" and a configuration.
  virtual const char* get_architecture() = 0;
  virtual const char* get_instance_name() = 0;
  virtual bool is_top() = 0;
  /// Only the hierarchy below the unit is wanted.
  virtual bool is_hierarchical_elaboration() = 0;
  /// Neither ROMs nor state machine objects are wanted.
  virtual bool is_no_inference_mode() = 0;
  /// Base name of debug files.
  virtual void get_dump_name(std::string* name) = 0;

  // Parameters and options.
  /// The value of a parameter by name, or null. A position from 0 up also finds an ordered value; -1 asks by name
  /// alone. Names with a leading blank are private channels. `type` gets the number of the value's type.
  virtual const char* get_parameter_value(const char* name, int position, int* type) = 0;
  /// Option of this unit, or null.
  virtual HDB_OPTION* get_option(int variable) = 0;
  /// Option of a section of the project, or null.
  virtual HDB_OPTION* get_option(int section, int variable) = 0;
  virtual bool get_flag_option(int variable) = 0;
  /// A parameter on which the result depends, with the value that was used.
  virtual void register_parameter(const char* name, const char* value, int type) = 0;
  /// A file that the elaboration read.
  virtual void add_dependent_file(const char* filename) = 0;
  /// The unit is a user-defined primitive.
  virtual void set_primitive() = 0;

  // Result.
  /// Takes the hierarchy over.
  virtual void set_hierarchy(CDB_SGATE_HIERARCHY* hierarchy) = 0;
  virtual void set_success(bool success) = 0;
  /// Takes the message over; it is reported when the flow takes the queue.
  virtual void queue_message(MSG_BASE* message) = 0;

  // Names. All texts that are handed over may die after the call, except where the pool holds them.
  /// The joined text, interned for as long as the result lives. The second argument is the name of a component and the
  /// third a suffix; null arguments are empty.
  virtual const char* join(const char* a, const char* component = nullptr, const char* suffix = nullptr,
                           const char* d = nullptr, const char* e = nullptr, const char* f = nullptr) = 0;
  /// A name that came from the user.
  virtual void register_user_identifier(const char* name) = 0;
  /// A name with its place in the source (copied).
  virtual void register_identifier_with_location(const char* name, const MSG_TEXT_LOCATION_SCHEMA& location) = 0;
  /// A user's net or instance of one or of several bits by its name; `host_name` is the name in the netlist of what
  /// carries it, or null when it is the same.
  virtual void register_net(const char* name, const char* host_name, const MSG_TEXT_LOCATION_SCHEMA& location) = 0;
  virtual void register_instance(const char* name, const char* host_name, const MSG_TEXT_LOCATION_SCHEMA& location) = 0;
  /// A vector net with its declared bounds; the bits are named NAME[index].
  virtual void register_net_bus(const char* name, int left, int right, const MSG_TEXT_LOCATION_SCHEMA& location) = 0;
  virtual void register_instance_bus(const char* name, const MSG_TEXT_LOCATION_SCHEMA& location) = 0;
  virtual void register_port(const char* name, const MSG_TEXT_LOCATION_SCHEMA& location) = 0;
  virtual void register_port_bus(const char* name, int left, int right, const MSG_TEXT_LOCATION_SCHEMA& location) = 0;
  /// A port of two dimensions; the bits are named NAME[i][j] with i in the first and j in the second range.
  virtual void register_port_bus(const char* name, int left, int right, int inner_left, int inner_right,
                                 const MSG_TEXT_LOCATION_SCHEMA& location) = 0;

  // Assignments on nodes by name and on the whole netlist.
  virtual void set_instance_assignment(const char* name, int variable, const char* value) = 0;
  virtual void set_global_assignment(int variable, const char* value) = 0;
  /// A whole assignment as text, to be read by the host.
  virtual void set_text_assignment(const char* name, const char* text, const MSG_TEXT_LOCATION_SCHEMA& location) = 0;
  virtual void set_global_text_assignment(const char* text, const MSG_TEXT_LOCATION_SCHEMA& location) = 0;
  /// What an unconnected input of the unit reads as (1 ground, 2 power), and whether the port is a VHDL buffer.
  virtual void set_io_default(CDB_SGATE_NETLIST* netlist, CDB_SGATE_IO* io, int value, bool is_vhdl_buffer) = 0;
};

/// One per design unit. The result of an elaboration goes to the info object; the returned pointer is always null.
class BASEX_ELABORATOR {
public:
  virtual ~BASEX_ELABORATOR() = default;
  virtual CDB_HIERARCHY_BASE* elaborate(BASEX_EXTRACT_INFO*) { return nullptr; }
  virtual CDB_HIERARCHY_BASE* elaborate(BASEX_ELABORATE_INFO* info) = 0;
  virtual BASEX_ELABORATOR* clone(MEM_SEGMENT* segment) = 0;
};

#endif
