// Design units, their ports and the cells that they look for.
#include "hdb_design_unit.h"

#include "basex.h"

HDB_SOURCE_COMPONENT* HDB_SOURCE_COMPONENT_COL::find(const std::string& name) const {
  for (const auto& component : m_components)
    if (component->get_name() == name) return component.get();
  return nullptr;
}

HDB_SOURCE_COMPONENT* HDB_SOURCE_COMPONENT_COL::create(const std::string& name) {
  m_components.push_back(std::make_unique<HDB_SOURCE_COMPONENT>(name));
  return m_components.back().get();
}

HDB_DESIGN_UNIT::HDB_DESIGN_UNIT(HDB_SOURCE_FILE* file, const MSG_TEXT_LOCATION_SCHEMA& location, const char* name,
                                 BASEX_ELABORATOR* elaborator, TYPE type, const char* library)
    : m_file(file), m_location(location), m_name(name), m_library(library ? library : ""), m_elaborator(elaborator),
      m_type(type) {}

HDB_DESIGN_UNIT::~HDB_DESIGN_UNIT() = default;

bool HDB_DESIGN_UNIT::get_library(std::string* text) const {
  if (m_library.empty()) return false;
  *text = m_library;
  return true;
}

HDB_PORT* HDB_ENTITY::create_port(const std::string& name, int direction, const HDB_HDL_TYPE* type) {
  m_ports.push_back(std::make_unique<HDB_PORT>(HDB_PORT{name, direction, type}));
  return m_ports.back().get();
}

void HDB_ENTITY::dump(std::ostream& stream) const {
  static constexpr const char* directions[] = {"input", "output", "inout", "buffer"};
  for (const auto& port : m_ports) {
    stream << directions[port->direction] << ' ' << port->name << ": ";
    port->type->dump(stream);
    stream << '\n';
  }
}

bool HDB_VHDL_CONFIGURATION::on_dbb_exit() {
  delete get_elaborator();
  set_elaborator(nullptr);
  return true;
}
