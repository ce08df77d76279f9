// One elaboration: flags, binding of the unit's tree, parameters from the host, the kernel's run, and what the host is
// told of the result. One object lives on the stack for one unit; the languages derive from the base.
#ifndef ZELK_KESTRIN_ELABORATOR_H
#define ZELK_KESTRIN_ELABORATOR_H

#include <string>
#include <vector>

class BASEX_ELABORATE_INFO;
class HDB_ENTITY;
class HDB_OPTION;
class Library;
class Map;
class Netlist;
class Param;

class ZELK_KESTRIN_ELABORATOR {
public:
  virtual ~ZELK_KESTRIN_ELABORATOR();
  ZELK_KESTRIN_ELABORATOR(const ZELK_KESTRIN_ELABORATOR&) = delete;
  ZELK_KESTRIN_ELABORATOR& operator=(const ZELK_KESTRIN_ELABORATOR&) = delete;

  /// The unit's netlist, owned by the caller, or null. A netlist comes back also when errors were found on the way.
  virtual Netlist* elaborate(BASEX_ELABORATE_INFO* info) = 0;

protected:
  ZELK_KESTRIN_ELABORATOR() = default;

  /// Rebuilds the flags from the settings that both languages share.
  void set_flags();
  /// Option of the unit, else of the section for synthesis.
  HDB_OPTION* get_unit_option(int variable) const;
  /// Asks the host for each declared name, in declaration order, and keeps what it overrides.
  void fetch_parameters(const std::vector<std::string>& names);
  /// Tells the host the values that were used, defaults too.
  void register_parameters(const std::vector<std::string>& names);
  void register_single_parameter(const Param* param);
  /// A netlist that tests wrote down for the unit and its parameters in place of an elaborated one; null without one.
  Netlist* read_netlist_from_file(const std::string& unit_name, const std::vector<std::string>& names) const;
  void cleanup();

  BASEX_ELABORATE_INFO* m_elaborate_info = nullptr;
  Library* m_library = nullptr;
  Netlist* m_elaborated_netlist = nullptr;
  Map* m_parameters = nullptr; // name to Param, owned
};

/// Frees the parameters of a map and the map.
void zelk_delete_parameters(Map*& parameters);

#endif
