// The host's writers of symbol and include files: what other entry tools need in order to place a design unit.
#ifndef GIO_H
#define GIO_H

#include <string>

class HDB_ENTITY;

/// Writes the files of one entity, whose ports and parameters are filled in. A file that cannot be written is a
/// message.
class GIO_SYMBOL_CREATOR {
public:
  /// The entity is not owned.
  GIO_SYMBOL_CREATOR(const char* name, const HDB_ENTITY* entity) : m_name(name), m_entity(entity) {}
  /// The outline of a block with its pins by side.
  void create_symbol_file(const std::string& path) const;
  /// The declaration of the unit for other Verilog sources.
  void create_include_file(const std::string& path) const;

private:
  std::string m_name;
  const HDB_ENTITY* m_entity;
};

#endif
