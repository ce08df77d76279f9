// XML descriptions of design units for builders of systems: ports, parameters and annotations, straight from the tree.
#ifndef ZELK_FABR_INTERFACE_H
#define ZELK_FABR_INTERFACE_H

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "xml_writer.h"

class HDB_ACTION_PT_INSTANCE;
class HDB_SOURCE_FILE;
class Library;
class Map;
class Netlist;
class PortBus;
class VeriExpression;
class VeriModule;
class VeriParamId;
class VeriVariable;

/// What to write: all units of a file, or one unit with the parameter values of an instance.
struct ZELK_FABR_REQUEST {
  std::string entity; // empty: all units
  std::string instance;
  std::string parameters; // "name=value;" one behind the other
};

/// One document. Mistakes of the source are messages and make an operation false; the document is complete in form even
/// then.
class ZELK_FABR_VERILOG_INTERFACE {
public:
  ZELK_FABR_VERILOG_INTERFACE(std::ostream& stream, const std::string& input, const std::string& language_version);
  /// Ends the document.
  ~ZELK_FABR_VERILOG_INTERFACE();
  ZELK_FABR_VERILOG_INTERFACE(const ZELK_FABR_VERILOG_INTERFACE&) = delete;
  ZELK_FABR_VERILOG_INTERFACE& operator=(const ZELK_FABR_VERILOG_INTERFACE&) = delete;

  /// True only if each unit could be written.
  bool write_interfaces(const std::vector<VeriModule*>& units);
  bool write_inst_interface(const std::vector<VeriModule*>& units, const ZELK_FABR_REQUEST& request);

private:
  void Header(const std::string& input, const std::string& language_version);
  void Footer();
  bool write_interface(VeriModule* unit, const Map* actuals);
  void write_annotations(const VeriModule* unit, const char* key, unsigned level);
  bool check_annotated_ports(const VeriModule* unit) const;
  bool write_port(const VeriModule* unit, const VeriVariable* port, const Netlist* view);
  bool write_parameter(const VeriParamId* id, const Map* actuals);
  /// A start tag with the attributes of the element.
  void open(const char* name, unsigned level, const std::vector<std::pair<const char*, std::string>>& attributes);
  void write_empty(const char* name, unsigned level,
                   const std::vector<std::pair<const char*, std::string>>& attributes);

  XML_WRITER m_writer;
  bool m_is_inst_request = false;
};

/// Writes the document of a file that was just analysed; false, with messages, when something could not be described.
bool create_xml_interface_file(HDB_ACTION_PT_INSTANCE* ap_inst, const HDB_SOURCE_FILE* file,
                               const std::string& language_version, const std::vector<VeriModule*>& units);

#endif
