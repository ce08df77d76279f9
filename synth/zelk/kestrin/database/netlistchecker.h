// NetlistChecker: whether a netlist is consistent in itself: every pointer has its counterpart, every table its order.
// Builds with assertions run it behind every pass of the pipeline, and tests behind whatever they do to a netlist.
#ifndef KESTRIN_DATABASE_NETLISTCHECKER_H
#define KESTRIN_DATABASE_NETLISTCHECKER_H

#include <string>
#include <vector>

#include "containers/set.h"

class DesignObj;
class Instance;
class Net;
class NetBus;
class Netlist;
class Port;

class NetlistChecker {
public:
  /// Checks at once.
  explicit NetlistChecker(const Netlist* netlist);

  bool IsConsistent() const { return _faults.empty(); }
  /// One line each, "net a: ...".
  const std::vector<std::string>& Faults() const { return _faults; }
  std::string Report() const;

private:
  void CheckPorts();
  void CheckPortBuses();
  void CheckInstances();
  void CheckInstance(const Instance* inst);
  void CheckNets();
  void CheckConnections(const Net* net);
  void CheckRing(const Net* net);
  void CheckNetBuses();
  void CheckFsms();
  void CheckReferences();
  void CheckOwner();
  void Expect(bool condition, const char* kind, const DesignObj* object, const char* rule);

  const Netlist* _netlist;
  std::vector<std::string> _faults;
  Set _ringed; // nets whose rings were walked
};

#ifdef NDEBUG
inline void kestrin_check_netlist(const Netlist*, const char*) {}
#else
/// Fails an assertion over an inconsistent netlist; `after` tells what was done to it last.
void kestrin_check_netlist(const Netlist* netlist, const char* after);
#endif

#endif
