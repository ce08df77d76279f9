// Design units of a project: modules, entities, architectures, configurations, packages. They are made by the analyzer
// and owned by the project from the end of the analysis of their file on.
#ifndef HDB_DESIGN_UNIT_H
#define HDB_DESIGN_UNIT_H

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "hdb_source_file.h"
#include "hdb_type.h"
#include "mem_segment.h"
#include "msg.h"

class BASEX_ELABORATOR;

/// Design units for which the host is to look for a source, by the name under which they are instantiated.
class HDB_SOURCE_COMPONENT {
public:
  explicit HDB_SOURCE_COMPONENT(const std::string& name) : m_name(name) {}
  const std::string& get_name() const { return m_name; }

private:
  std::string m_name;
};

class HDB_SOURCE_COMPONENT_COL {
public:
  HDB_SOURCE_COMPONENT* find(const std::string& name) const;
  HDB_SOURCE_COMPONENT* create(const std::string& name);
  const std::vector<std::unique_ptr<HDB_SOURCE_COMPONENT>>& get_components() const { return m_components; }

private:
  std::vector<std::unique_ptr<HDB_SOURCE_COMPONENT>> m_components;
};

class HDB_DESIGN_UNIT {
public:
  enum TYPE {
    TYPE_UNKNOWN = 0,
    TYPE_VHDL_ENTITY = 4,
    TYPE_VHDL_CONFIGURATION = 5,
    TYPE_VHDL_ARCHITECTURE = 6,
    TYPE_VHDL_PACKAGE = 7,
    TYPE_VHDL_PACKAGE_BODY = 8,
    TYPE_VERILOG_MODULE = 11
  };

  /// The location is copied. The elaborator may be null; it is owned by the unit until on_dbb_exit.
  HDB_DESIGN_UNIT(HDB_SOURCE_FILE* file, const MSG_TEXT_LOCATION_SCHEMA& location, const char* name,
                  BASEX_ELABORATOR* elaborator, TYPE type, const char* library);
  virtual ~HDB_DESIGN_UNIT();
  HDB_DESIGN_UNIT(const HDB_DESIGN_UNIT&) = delete;
  HDB_DESIGN_UNIT& operator=(const HDB_DESIGN_UNIT&) = delete;

  TYPE get_type() const { return m_type; }
  const char* get_name() const { return m_name.c_str(); }
  /// False, with `text` untouched, for a unit without a library.
  bool get_library(std::string* text) const;
  HDB_SOURCE_FILE* get_file() const { return m_file; }
  const MSG_TEXT_LOCATION_SCHEMA& get_location() const { return m_location; }
  BASEX_ELABORATOR* get_elaborator() const { return m_elaborator; }
  void set_elaborator(BASEX_ELABORATOR* elaborator) { m_elaborator = elaborator; }
  /// Cells instantiated here for which the host has to find a source.
  HDB_SOURCE_COMPONENT_COL* get_source_components() { return &m_source_components; }
  /// The unit that this one belongs to by name: the entity of an architecture or configuration; empty for others.
  virtual const char* get_entity_name() const { return ""; }

  /// Called once before the project ends. A unit with an elaborator deletes it here.
  virtual bool on_dbb_exit() { return true; }

private:
  HDB_SOURCE_FILE* m_file;
  MSG_TEXT_LOCATION_SCHEMA m_location;
  std::string m_name;
  std::string m_library;
  HDB_SOURCE_COMPONENT_COL m_source_components;
  BASEX_ELABORATOR* m_elaborator;
  TYPE m_type;
};

/// A port of an entity. Directions: 0 input, 1 output, 2 bidirectional, 3 buffer.
struct HDB_PORT {
  std::string name;
  int direction;
  const HDB_HDL_TYPE* type; // owned by the type database
  std::string range{};      // "left:right" as the source has it, further dimensions behind "]["; empty for a single bit
};

class HDB_ENTITY : public HDB_DESIGN_UNIT {
public:
  using PARAMETERS = std::vector<std::vector<std::string>>;
  /// What an entity is in its language. Only modules can be the top of a design by themselves.
  enum ROLE { ROLE_MODULE, ROLE_PRIMITIVE, ROLE_INTERFACE };
  HDB_ENTITY(HDB_SOURCE_FILE* file, const MSG_TEXT_LOCATION_SCHEMA& location, const char* name,
             BASEX_ELABORATOR* elaborator, TYPE type, PARAMETERS parameters, const char* library)
      : HDB_DESIGN_UNIT(file, location, name, elaborator, type, library), m_parameters(std::move(parameters)) {}

  virtual HDB_ENTITY* clone_entity(MEM_SEGMENT* segment) = 0;
  ROLE get_role() const { return m_role; }
  void set_role(ROLE role) { m_role = role; }
  /// Parameters whose values decide the unit's shape, as triples of text.
  const PARAMETERS& get_parameters() const { return m_parameters; }
  void set_parameters(PARAMETERS parameters) { m_parameters = std::move(parameters); }
  /// The macros that the text of the unit and of the packages in it uses, as triples of name with formals, text and
  /// place of the definition: another definition makes another unit.
  const PARAMETERS& get_macros() const { return m_macros; }
  void set_macros(PARAMETERS macros) { m_macros = std::move(macros); }

  HDB_PORT* create_port(const std::string& name, int direction, const HDB_HDL_TYPE* type);
  const std::vector<std::unique_ptr<HDB_PORT>>& get_ports() const { return m_ports; }
  void clear_ports() { m_ports.clear(); }
  void dump(std::ostream& stream) const;

private:
  PARAMETERS m_parameters;
  PARAMETERS m_macros;
  ROLE m_role = ROLE_MODULE;
  std::vector<std::unique_ptr<HDB_PORT>> m_ports;
};

class HDB_VHDL_PACKAGE : public HDB_DESIGN_UNIT {
public:
  HDB_VHDL_PACKAGE(HDB_SOURCE_FILE* file, const MSG_TEXT_LOCATION_SCHEMA& location, const char* name,
                   const char* library)
      : HDB_DESIGN_UNIT(file, location, name, nullptr, TYPE_VHDL_PACKAGE, library) {}
};

class HDB_VHDL_PACKAGE_BODY : public HDB_DESIGN_UNIT {
public:
  HDB_VHDL_PACKAGE_BODY(HDB_SOURCE_FILE* file, const MSG_TEXT_LOCATION_SCHEMA& location, const char* name,
                        const char* library)
      : HDB_DESIGN_UNIT(file, location, name, nullptr, TYPE_VHDL_PACKAGE_BODY, library) {}
};

class HDB_VHDL_ARCHITECTURE : public HDB_DESIGN_UNIT {
public:
  HDB_VHDL_ARCHITECTURE(HDB_SOURCE_FILE* file, const MSG_TEXT_LOCATION_SCHEMA& location, const char* name,
                        const char* entity, const char* library)
      : HDB_DESIGN_UNIT(file, location, name, nullptr, TYPE_VHDL_ARCHITECTURE, library), m_entity(entity) {}
  const char* get_entity_name() const override { return m_entity.c_str(); }

private:
  std::string m_entity;
};

class HDB_VHDL_CONFIGURATION : public HDB_DESIGN_UNIT {
public:
  HDB_VHDL_CONFIGURATION(HDB_SOURCE_FILE* file, const MSG_TEXT_LOCATION_SCHEMA& location, const char* name,
                         const char* entity, const char* library, BASEX_ELABORATOR* elaborator)
      : HDB_DESIGN_UNIT(file, location, name, elaborator, TYPE_VHDL_CONFIGURATION, library), m_entity(entity) {}
  const char* get_entity_name() const override { return m_entity.c_str(); }
  bool on_dbb_exit() override;

private:
  std::string m_entity;
};

#endif
