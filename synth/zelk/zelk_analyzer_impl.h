// How a source file is analysed: the frame around a parse, the choice of dialect, the macros that are carried from file
// to file, and the registration of what was found in the host's database. It uses the kernel's file drivers; what it
// keeps across calls is static and guarded by nothing.
#ifndef ZELK_ANALYZER_IMPL_H
#define ZELK_ANALYZER_IMPL_H

#include <string>
#include <vector>

#include "containers/map.h"
#include "htl.h"

class BASEX_ANALYZE_INFO;
class HDB_ACTION_PT_INSTANCE;
class HDB_DESIGN_UNIT;
class HDB_ENTITY;
class HDB_SOURCE_FILE;
class MSG_TEXT_LOCATION_SCHEMA;
class Set;
class VeriDesignUnit;
class VeriLibrary;
class ZELK_MSG_DIRECTIVES;
class veri_file;

/// Language versions of the kernel.
enum VERI_DIALECT_ENUM { VERI_DIALECT_1995 = 1, VERI_DIALECT_2001 = 2, VERI_DIALECT_SYSTEM_2005 = 3 };
enum VHDL_DIALECT_ENUM { VHDL_DIALECT_1987 = 1, VHDL_DIALECT_1993 = 2, VHDL_DIALECT_2008 = 3 };

class ZELK_ANALYZER_IMPL {
public:
  ZELK_ANALYZER_IMPL();
  ~ZELK_ANALYZER_IMPL();
  ZELK_ANALYZER_IMPL(const ZELK_ANALYZER_IMPL&) = delete;
  ZELK_ANALYZER_IMPL& operator=(const ZELK_ANALYZER_IMPL&) = delete;

  bool analyze(BASEX_ANALYZE_INFO* info);
  void delete_all_zelk_static_data();
  bool resolve_all_design_units(HDB_ACTION_PT_INSTANCE* ap_inst, std::vector<std::string>* files,
                                std::vector<std::string>* dependencies);
  bool convert_hsp_parameter_to_verilog(std::string& value, std::string& type);
  bool convert_hsp_parameter_to_vhdl(std::string& value, std::string& type);

  /// The dialect for a file, after its own argument, the project's setting and its type. A missing setting of the
  /// project is created with its default.
  int get_verilog_input_version(HDB_SOURCE_FILE* file);
  int get_vhdl_input_version(HDB_SOURCE_FILE* file);

  // Files that depend on others, gathered over the whole project. A file never depends on itself.
  static void AddDependency(const char* name, const char* dependency);
  static void AddReverseDependency(const char* name, const char* dependency);
  static void ClearDependencyHashes();

private:
  using DEPENDENCIES = HTL_HASH<std::string, HTL_HASH_SET<std::string>*>;

  // One call of analyze.
  bool analyze_by_type(int type);
  bool veri_analyzer();
  bool vhdl_analyzer();
  void set_flags();
  void set_formal_tool_flags();
  std::string path_for_kernel(HDB_SOURCE_FILE* file) const;
  const char* get_destination_library(HDB_SOURCE_FILE* file) const;
  ZELK_MSG_DIRECTIVES* apply_project_message_settings();
  bool wants_interface_files() const;
  void resolve_for_interface_files();
  bool write_interface_files();
  void write_xml_interface_file();

  // Interface files of the host's own kinds, and what they need of the entities that this call found.
  void set_port_and_parameter_to_hdb_entity();
  void veri_set_port_and_parameter_to_hdb_entity(HDB_ENTITY* entity);
  void check_for_same_veri_module_name();
  void create_default_symbol_file();
  void create_default_include_file();
  /// False when a file could not be written.
  bool create_default_component_file();
  bool create_default_instantiation_file();
  HDB_ACTION_PT_INSTANCE* get_action_pt_inst() const;

  // Verilog macros of the project and of earlier files.
  void initialize_verilog_compiler_directives();
  void define_project_macros();
  void define_project_macro(const std::string& text);
  void add_verilog_compiler_directives();
  void update_verilog_compiler_directives();
  void print_verilog_compiler_directives();
  static void delete_verilog_compiler_directives();
  static void store_macro(const char* name, const char* text, const char* args, const char* filename,
                          unsigned long linefile);
  static void remove_macro(const char* name);
  bool is_stored_as_it_is(const char* name) const;

  // Registration in the host's database.
  void register_design_unit(VeriDesignUnit* unit);
  void register_module(VeriDesignUnit* unit);
  void register_package(VeriDesignUnit* unit);
  void add_to_entity_list(HDB_DESIGN_UNIT* unit);
  HDB_SOURCE_FILE* find_or_create_source_file(const char* filename, const char* library);
  void create_basic_verilog_dependencies(const char* file);
  void create_implicit_verilog_dependencies(VeriDesignUnit* unit);
  void create_implicit_verilog_dependencies(VeriLibrary* library, const Set& items);
  static void append_dependencies(const DEPENDENCIES& all, std::vector<std::string>& from,
                                  std::vector<std::string>& to);

  BASEX_ANALYZE_INFO* m_info = nullptr; // during one call
  bool m_has_filled_entities = false;   // in this call
  veri_file* m_veri_file = nullptr;     // owned

  static Map* m_macro_defs;
  static Map* m_macro_args;
  static Map* m_macro_filenames;
  static Map* m_macro_linefiles;
  static DEPENDENCIES m_dependencies;
  static DEPENDENCIES m_reverse_dependencies;
};

#endif
