// The project: sections, source files and design units.
#include "hdb_action_pt.h"

#include "fio.h"
#include "gen.h"

HDB_ACTION_PT_INSTANCE::HDB_ACTION_PT_INSTANCE() = default;

HDB_ACTION_PT_INSTANCE::~HDB_ACTION_PT_INSTANCE() {
  for (const auto& unit : m_design_units) unit->on_dbb_exit();
}

HDB_SECTION* HDB_ACTION_PT_INSTANCE::get_section(int type) const {
  for (const auto& section : m_sections)
    if (section->get_type() == type) return section.get();
  return nullptr;
}

HDB_SECTION* HDB_ACTION_PT_INSTANCE::create_section(int type) {
  if (HDB_SECTION* section = get_section(type)) return section;
  m_sections.push_back(std::make_unique<HDB_SECTION>(type));
  return m_sections.back().get();
}

HDB_SOURCE_FILE* HDB_ACTION_PT_INSTANCE::find_source_file(const std::string& filename, const char* library) const {
  std::string full = FIO_PATH(filename).fullpath();
  for (const auto& file : m_source_files) {
    const char* its_library = file->get_library();
    if (library && gen_strcmp(its_library ? its_library : "work", library) != 0) continue;
    if (filename == file->get_unmodified_filename() || FIO_PATH(file->get_unmodified_filename()).fullpath() == full)
      return file.get();
  }
  return nullptr;
}

HDB_SOURCE_FILE* HDB_ACTION_PT_INSTANCE::create_source_file(const std::string& filename, int type) {
  m_source_files.push_back(std::make_unique<HDB_SOURCE_FILE>(filename, type));
  return m_source_files.back().get();
}

namespace {

std::string library_of(const HDB_DESIGN_UNIT& unit) {
  std::string library = "work";
  unit.get_library(&library);
  return library;
}

bool is_same_unit(const HDB_DESIGN_UNIT& left, const HDB_DESIGN_UNIT& right) {
  return left.get_type() == right.get_type() && gen_strcmp(left.get_name(), right.get_name()) == 0 &&
         gen_strcmp(left.get_entity_name(), right.get_entity_name()) == 0 && library_of(left) == library_of(right);
}

} // namespace

void HDB_ACTION_PT_INSTANCE::add_design_unit(HDB_DESIGN_UNIT* unit) {
  for (auto& former : m_design_units) {
    if (!is_same_unit(*former, *unit)) continue;
    former->on_dbb_exit();
    former.reset(unit);
    return;
  }
  m_design_units.emplace_back(unit);
}

HDB_ENTITY* HDB_ACTION_PT_INSTANCE::find_entity(const char* name, unsigned case_sensitive, const char* library,
                                                unsigned* count) const {
  HDB_ENTITY* first = nullptr;
  unsigned found = 0;
  for (const auto& unit : m_design_units) {
    auto* entity = dynamic_cast<HDB_ENTITY*>(unit.get());
    if (!entity || (case_sensitive ? gen_strcmp : gen_stricmp)(entity->get_name(), name) != 0) continue;
    if (library && gen_stricmp(library_of(*entity).c_str(), library) != 0) continue;
    if (!first) first = entity;
    found++;
  }
  if (count) *count = found;
  return first;
}
