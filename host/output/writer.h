// Writers of outputs: each turns a design into the text of one file format. They read the design and change nothing.
#ifndef HOST_WRITER_H
#define HOST_WRITER_H

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "fio.h"
#include "flow/stage.h"
#include "flow/unit_result.h"
#include "module_view.h"

/// The views of all units of a design, made once for all writers.
class DESIGN_VIEW {
public:
  explicit DESIGN_VIEW(const DESIGN& design);
  /// The top first.
  const std::vector<std::unique_ptr<MODULE_VIEW>>& get_modules() const { return m_modules; }
  const MODULE_VIEW* get_module(const UNIT_RESULT* result) const;
  /// The module that a component instantiates; null for a black box.
  const MODULE_VIEW* get_child(const MODULE_VIEW& parent, const CDB_SGATE_COMPONENT& component) const;

private:
  std::vector<std::unique_ptr<MODULE_VIEW>> m_modules;
  std::unordered_map<const UNIT_RESULT*, const MODULE_VIEW*> m_by_result;
};

/// Verilog 2001, one module per unit and set of parameters.
std::string write_verilog(const DESIGN_VIEW& design);
/// The JSON netlist that open FPGA tools read.
std::string write_json(const DESIGN_VIEW& design);
/// What the netlist holds, per module and in all, and what the stages took when there are any.
std::string write_report(const DESIGN_VIEW& design, const std::vector<STAGE_TIME>& times);
/// What the stages took, each and in all.
std::string write_times(const std::vector<STAGE_TIME>& times);

bool is_known_output(const std::string& path);
bool is_report(const std::string& path);

/// The outputs of a run: they appear together at the end, or none does.
class OUTPUT_FILES {
public:
  /// Writes an output by the extension of its name to a temporary file. False, after a message, when that failed.
  bool write(const std::string& path, const DESIGN_VIEW& design, const std::vector<STAGE_TIME>& times);
  /// Moves all outputs into place. False, after a message, when that failed.
  bool commit();

private:
  bool fail(const std::string& path);

  std::vector<std::pair<std::string, std::unique_ptr<FIO_OUTPUT_FILE>>> m_files;
};

/// A parameter's value in the notation of the design database: its kind and its text. Kinds: 'i' a number as Verilog
/// reads it, 's' a string, 'r' a real number.
struct PARAMETER_VALUE {
  char kind;
  std::string text;
};
PARAMETER_VALUE read_parameter_value(const std::string& text);

/// One port of a black box as its connections tell it, lowest bit first.
struct BLACK_BOX_PORT {
  std::string name; // empty for a positional one
  CDB_IO_DIRECTION direction;
  BITS bits; // none for a position that the instance leaves open
};
std::vector<BLACK_BOX_PORT> black_box_ports(const MODULE_VIEW& view, const CDB_SGATE_COMPONENT& component);

/// What a component connects to each port of its module, in the order of the ports, lowest bit first.
std::vector<std::pair<const SIGNAL*, BITS>>
connections_of(const MODULE_VIEW& view, const CDB_SGATE_COMPONENT& component, const MODULE_VIEW& child);

/// The ports of a component by the full names that its module gives them; positional ones take the module's order.
using PORTS_BY_NAME = std::unordered_map<std::string, const CDB_COMPONENT_PORT*>;
PORTS_BY_NAME ports_by_name(const CDB_SGATE_COMPONENT& component, const MODULE_VIEW& child);

/// How often each module occurs in the whole design.
std::map<const MODULE_VIEW*, unsigned long> count_occurrences(const DESIGN_VIEW& design);

/// Cells of the host itself rather than of the user.
bool is_full_adder(const CDB_SGATE_COMPONENT& component);

#endif
