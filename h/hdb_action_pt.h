// The project as one run sees it: its settings, its source files in order, its design units and their port types.
#ifndef HDB_ACTION_PT_H
#define HDB_ACTION_PT_H

#include <memory>
#include <string>
#include <vector>

#include "hdb_design_unit.h"
#include "hdb_section.h"
#include "hdb_source_file.h"
#include "hdb_type.h"

class HDB_ACTION_PT_INSTANCE {
public:
  HDB_ACTION_PT_INSTANCE();
  ~HDB_ACTION_PT_INSTANCE();
  HDB_ACTION_PT_INSTANCE(const HDB_ACTION_PT_INSTANCE&) = delete;
  HDB_ACTION_PT_INSTANCE& operator=(const HDB_ACTION_PT_INSTANCE&) = delete;

  /// Null when the project has no such section.
  HDB_SECTION* get_section(int type) const;
  /// Finds or makes it.
  HDB_SECTION* create_section(int type);

  /// By the name that the user wrote or its full path. A null library finds the file in any library, otherwise the
  /// file's library ("work" when it has none) must be that one. Null when there is none.
  HDB_SOURCE_FILE* find_source_file(const std::string& filename, const char* library) const;
  HDB_SOURCE_FILE* create_source_file(const std::string& filename, int type);
  const std::vector<std::unique_ptr<HDB_SOURCE_FILE>>& get_source_files() const { return m_source_files; }

  /// Takes a unit over. A unit of the same kind, name and library replaces the earlier one.
  void add_design_unit(HDB_DESIGN_UNIT* unit);
  const std::vector<std::unique_ptr<HDB_DESIGN_UNIT>>& get_design_units() const { return m_design_units; }
  /// An entity or module. A null library finds it in any; `count`, when asked for, is the number of units that fit, of
  /// which the first is returned. Null when there is none.
  HDB_ENTITY* find_entity(const char* name, unsigned case_sensitive, const char* library, unsigned* count) const;

  HDB_TYPE_DB* get_type_db() { return &m_types; }

private:
  std::vector<std::unique_ptr<HDB_SECTION>> m_sections;
  std::vector<std::unique_ptr<HDB_SOURCE_FILE>> m_source_files;
  HDB_TYPE_DB m_types;
  std::vector<std::unique_ptr<HDB_DESIGN_UNIT>> m_design_units;
};

#endif
