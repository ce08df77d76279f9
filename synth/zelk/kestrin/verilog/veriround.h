// The bodies of generate constructs and the objects of interfaces, entered while they are elaborated. Beside the scopes
// of identifiers it knows the elaboration state; it makes no objects of its own.
#ifndef KESTRIN_VERILOG_VERIROUND_H
#define KESTRIN_VERILOG_VERIROUND_H

#include <functional>
#include <string>
#include <vector>

#include "verilog/verielabstate.h"
#include "verilog/veriscope.h"

class VeriExpression;
class VeriModport;
class VeriModule;
class VeriVariable;

/// A body is entered while the object lives: its names, its objects, its genvar.
class VeriRoundScope {
public:
  explicit VeriRoundScope(const VeriGenerateRound& round);
  VeriRoundScope(const VeriRoundScope&) = delete;
  VeriRoundScope& operator=(const VeriRoundScope&) = delete;
  ~VeriRoundScope();

private:
  VeriGenerateRound _round;
  VeriNamedPathScope _path;
  VeriGeneratedScope _generated;
};

/// The items of a body, until an error ends the elaboration.
void veri_for_each_item(const VeriGenerateRound& round, const std::function<void(VeriModuleItem*)>& pass);

// Interfaces (IEEE 1800-2005 clause 20).

/// What a port that is an interface shows of it.
struct VeriInterfaceMember {
  std::string name;
  unsigned direction = 0;               ///< the token, as the module with the port sees it
  VeriExpression* expression = nullptr; ///< what the name stands for in a modport; null: the object of this name
};

/// The objects of an interface as a body of the present generated scope, under the name of the instance or the port.
/// Parameters take their values from the entries of the map whose key is the prefix and the parameter's name.
VeriGenerateRound veri_make_interface(VeriModule* interface, const std::string& label, const Map* parameters,
                                      const std::string& prefix);
/// The interface of a port in a run with these parameters; null for a generic port of which nothing is said, and for
/// one that is not known. `modport` is set to the modport that limits the port, or to null.
VeriModule* veri_port_interface(const VeriVariable* port, const Map* parameters, VeriModport** modport);
/// What the port of a module shows: the ports of the modport, or all variables. Without modport those that the module
/// assigns are outputs, and the others inputs.
std::vector<VeriInterfaceMember> veri_interface_members(const VeriModule* module, const VeriVariable* port,
                                                        const VeriModule* interface, const VeriModport* modport);
/// The keys under which an instance tells a module about the interfaces that are connected to its ports: all that the
/// head of the module lets expect, and those of one port.
std::vector<std::string> veri_interface_parameter_names(const VeriModule* module);
std::string veri_interface_name_key(const char* port);
std::string veri_modport_name_key(const char* port);

#endif
