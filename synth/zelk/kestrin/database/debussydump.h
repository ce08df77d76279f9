// DebussyDump: a netlist as structural Verilog for a viewer, behind the views of its instances as empty modules.
// Every name is an escaped identifier whose prefix tells its kind: \N: a net, \O: an operator or its output, \I: an
// instance or a scalar input, \AI: an array input.
#ifndef KESTRIN_DATABASE_DEBUSSYDUMP_H
#define KESTRIN_DATABASE_DEBUSSYDUMP_H

#include <iosfwd>
#include <map>
#include <set>
#include <string>

#include "containers/set.h"

class DesignObj;
class Instance;
class Net;
class Netlist;
class Port;

class DebussyDump {
public:
  /// Writes the file "db/FILE_LABEL.v", or skips the dump when it can't be opened.
  DebussyDump(const Netlist* netlist, const char* file, const char* label);
  /// Writes to a stream.
  DebussyDump(const Netlist* netlist, std::ostream& out);

private:
  void Run();
  void HeaderDump(const Netlist* view);
  void NetlistDump();
  void SymbolDump(const Netlist* view);
  void PortDump(const Netlist* view);
  void WireDump();
  void ConnectPorts();
  void PrimitiveDump(const Instance* inst);
  void ComponentDump(const Instance* inst);
  void SupplyDump(const Instance* inst);
  const std::string& Unique(const void* object, std::string name);
  std::string ModuleName(const Netlist* view);
  std::string GetInstanceName(const Instance* inst);
  std::string GetNetName(const Net* net);
  std::string Input(const Instance* inst, const Port* port);

  const Netlist* _netlist;
  std::ostream* _out;
  Set _symbols;
  std::map<const void*, std::string> _names; // of modules, nets and instances
  std::set<std::string> _taken;
  size_t _num_nameless = 0;
};

#endif
