// The objects through which one analysis or one elaboration talks to this host.
#ifndef HOST_INFO_OBJECTS_H
#define HOST_INFO_OBJECTS_H

#include <memory>
#include <string>
#include <vector>

#include "basex.h"
#include "cfg.h"
#include "unit_result.h"

class FLOW_ANALYZE_INFO : public BASEX_ANALYZE_INFO {
public:
  FLOW_ANALYZE_INFO(HDB_ACTION_PT_INSTANCE& project, HDB_SOURCE_FILE* file) : m_project(project) { source_file = file; }

  HDB_ACTION_PT_INSTANCE* get_action_pt_inst() override { return &m_project; }
  std::string get_project_path() override;
  // Files for other entry tools are asked for by configuration variables.
  bool is_create_default_symbol_file() override { return cfg_is_on("create_symbol_files", false); }
  bool is_create_default_include_file() override { return cfg_is_on("create_include_files", false); }
  bool is_create_default_component_file() override { return cfg_is_on("create_component_files", false); }
  bool is_create_default_instantiation_file() override { return cfg_is_on("create_instantiation_files", false); }
  bool is_create_xml_interface_file() override { return m_xml; }
  bool is_simgen_mode() override { return false; }
  void set_xml(bool on) { m_xml = on; }

private:
  HDB_ACTION_PT_INSTANCE& m_project;
  bool m_xml = false;
};

class FLOW_ELABORATE_INFO : public BASEX_ELABORATE_INFO {
public:
  enum MODE { MODE_FULL, MODE_HIERARCHY_ONLY };
  enum PLACE { PLACE_BELOW, PLACE_TOP };
  FLOW_ELABORATE_INFO(HDB_ACTION_PT_INSTANCE& project, HDB_DESIGN_UNIT* unit,
                      const std::vector<UNIT_PARAMETER>& parameters, const std::string& architecture, PLACE place,
                      MODE mode);

  /// The result, to be taken once after the elaboration.
  std::unique_ptr<UNIT_RESULT> take_result() { return std::move(m_result); }
  std::vector<std::unique_ptr<MSG_BASE>> take_messages() { return std::move(m_messages); }
  /// Names of given parameters that the elaboration never asked for.
  std::vector<std::string> get_unused_parameters() const;

  HDB_DESIGN_UNIT* get_design_unit() override { return m_result->unit; }
  HDB_ACTION_PT_INSTANCE* get_action_pt_inst() override { return &m_project; }
  const std::vector<HDB_DESIGN_UNIT*>& get_design_unit_list() override { return m_unit_list; }
  const char* get_architecture() override { return m_architecture.empty() ? nullptr : m_architecture.c_str(); }
  const char* get_instance_name() override { return m_result->unit->get_name(); }
  bool is_top() override { return m_place == PLACE_TOP; }
  bool is_hierarchical_elaboration() override { return m_mode == MODE_HIERARCHY_ONLY; }
  bool is_no_inference_mode() override { return false; }
  void get_dump_name(std::string* name) override { *name = m_result->unit->get_name(); }

  const char* get_parameter_value(const char* name, int position, int* type) override;
  HDB_OPTION* get_option(int variable) override;
  HDB_OPTION* get_option(int section, int variable) override;
  bool get_flag_option(int variable) override;
  void register_parameter(const char* name, const char* value, int type) override;
  void add_dependent_file(const char* filename) override { m_result->dependent_files.emplace_back(filename); }
  void set_primitive() override { m_result->is_primitive = true; }

  void set_hierarchy(CDB_SGATE_HIERARCHY* hierarchy) override { m_result->hierarchy.reset(hierarchy); }
  void set_success(bool success) override { m_result->success = success; }
  void queue_message(MSG_BASE* message) override { m_messages.emplace_back(message); }

  const char* join(const char* a, const char* component, const char* suffix, const char* d, const char* e,
                   const char* f) override;
  void register_user_identifier(const char*) override {}
  void register_identifier_with_location(const char* name, const MSG_TEXT_LOCATION_SCHEMA& location) override;
  void register_net(const char* name, const char* host_name, const MSG_TEXT_LOCATION_SCHEMA& location) override;
  void register_instance(const char* name, const char* host_name, const MSG_TEXT_LOCATION_SCHEMA& location) override;
  void register_net_bus(const char* name, int left, int right, const MSG_TEXT_LOCATION_SCHEMA& location) override;
  void register_instance_bus(const char* name, const MSG_TEXT_LOCATION_SCHEMA& location) override;
  void register_port(const char* name, const MSG_TEXT_LOCATION_SCHEMA& location) override;
  void register_port_bus(const char* name, int left, int right, const MSG_TEXT_LOCATION_SCHEMA& location) override;
  void register_port_bus(const char* name, int left, int right, int inner_left, int inner_right,
                         const MSG_TEXT_LOCATION_SCHEMA& location) override;

  void set_instance_assignment(const char* name, int variable, const char* value) override;
  void set_global_assignment(int variable, const char* value) override;
  void set_text_assignment(const char* name, const char* text, const MSG_TEXT_LOCATION_SCHEMA& location) override;
  void set_global_text_assignment(const char* text, const MSG_TEXT_LOCATION_SCHEMA& location) override;
  void set_io_default(CDB_SGATE_NETLIST*, CDB_SGATE_IO*, int, bool) override {}

private:
  HDB_ACTION_PT_INSTANCE& m_project;
  std::vector<HDB_DESIGN_UNIT*> m_unit_list;
  std::unique_ptr<UNIT_RESULT> m_result;
  std::vector<std::unique_ptr<MSG_BASE>> m_messages;
  std::vector<bool> m_asked; // parallel to the parameters
  std::string m_architecture;
  PLACE m_place;
  MODE m_mode;
};

#endif
