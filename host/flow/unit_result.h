// What the elaboration of one unit with one set of parameters gave, and the design that these results make up. Writers
// read it and change nothing.
#ifndef HOST_UNIT_RESULT_H
#define HOST_UNIT_RESULT_H

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "cdb_sgate.h"
#include "hdb_design_unit.h"

/// A parameter by name or, with an empty name, by position.
struct UNIT_PARAMETER {
  std::string name;
  int position = -1;
  std::string value;
  int type = 0;
};

struct SOURCE_PLACE {
  std::string file;
  int line = 0;
};

/// A vector of the source with its declared bounds; inner bounds only for a vector of vectors.
struct NAMED_BUS {
  std::string name;
  int left = 0;
  int right = 0;
  bool is_two_level = false;
  int inner_left = 0;
  int inner_right = 0;
  SOURCE_PLACE place;
};

struct NAMED_OBJECT {
  std::string name;
  std::string host_name; // in the netlist
  SOURCE_PLACE place;
};

struct NAMED_ASSIGNMENT {
  std::string node; // empty for the whole netlist
  int variable = 0; // ACF_VARIABLE_NONE when the text is a whole assignment
  std::string value;
};

class UNIT_RESULT {
public:
  HDB_DESIGN_UNIT* unit = nullptr;
  std::vector<UNIT_PARAMETER> parameters;       // as asked for
  std::vector<UNIT_PARAMETER> used_parameters;  // as used, defaults too, as people write them
  std::vector<UNIT_PARAMETER> exact_parameters; // the same in the notation of values, which tells widths and signs
  std::unique_ptr<CDB_SGATE_HIERARCHY> hierarchy;
  bool success = false;
  bool is_primitive = false;

  std::vector<NAMED_BUS> port_buses;
  std::vector<NAMED_BUS> net_buses;
  std::vector<NAMED_OBJECT> nets;
  std::vector<NAMED_OBJECT> instances;
  std::vector<NAMED_ASSIGNMENT> assignments;
  std::unordered_map<std::string, SOURCE_PLACE> places; // of names, ports too
  std::vector<std::string> dependent_files;

  /// Results of the units that the components name; absent for black boxes.
  std::unordered_map<const CDB_SGATE_COMPONENT*, const UNIT_RESULT*> children;
  /// Name of the module in outputs.
  std::string module_name;

  CDB_SGATE_NETLIST* get_netlist() const { return hierarchy ? hierarchy->get_netlist() : nullptr; }

  // Texts interned for the netlist.
  std::unordered_set<std::string> string_pool;
};

struct DESIGN {
  std::vector<std::unique_ptr<UNIT_RESULT>> units; // the top first, then as the worklist met them
  UNIT_RESULT* get_top() const { return units.empty() ? nullptr : units.front().get(); }
};

/// Gives every result its module name: the unit's name; where a unit occurs with several sets of parameters, followed
/// by the parameters in which they differ. The top keeps its plain name.
void name_modules(DESIGN& design);

#endif
