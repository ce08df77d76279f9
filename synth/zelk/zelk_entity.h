// A design unit of the library in the host's database.
#ifndef ZELK_ENTITY_H
#define ZELK_ENTITY_H

#include "hdb_design_unit.h"

/// A parameter as the writers of interface files need it.
struct ZELK_PARAMETER_DATA {
  std::string name;
  std::string type;
  std::string default_value; // empty when it is no literal
};

class ZELK_ENTITY : public HDB_ENTITY {
public:
  using HDB_ENTITY::HDB_ENTITY;

  /// Deletes the elaborator.
  bool on_dbb_exit() override;
  /// A unit of the same file, place, library, name and kind with an elaborator of its own.
  HDB_ENTITY* clone_entity(MEM_SEGMENT* segment) override;
  virtual ZELK_ENTITY* dynamic_cast_to_ZELK_ENTITY() { return this; }

  const std::vector<ZELK_PARAMETER_DATA>& get_parameter_data() const { return m_parameter_data; }
  void set_parameter_data(std::vector<ZELK_PARAMETER_DATA> data) { m_parameter_data = std::move(data); }

private:
  std::vector<ZELK_PARAMETER_DATA> m_parameter_data;
};

#endif
