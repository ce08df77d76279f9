// The host's writers of component and instantiation files: texts to be pasted where a design unit is used.
#ifndef SIO_H
#define SIO_H

#include <string>

class HDB_ENTITY;

struct SIO {
  enum HDL_LANGUAGE { HDL_VERILOG = 0, HDL_VHDL = 1 };
};

/// Writes the files of one entity, whose ports and parameters are filled in. False, after a message, when a file could
/// not be written.
class SIO_GENERATOR {
public:
  /// The entity is not owned.
  explicit SIO_GENERATOR(const HDB_ENTITY* entity) : m_entity(entity) {}
  /// A component declaration of VHDL, in the file of that path with ".cmp" behind it.
  bool create_component_file(const std::string& path) const;
  /// An instance with a place for each actual, with "_inst.v" or "_inst.vhd" behind the path.
  bool create_instantiation_file(const std::string& path, SIO::HDL_LANGUAGE language) const;

private:
  const HDB_ENTITY* m_entity;
};

#endif
