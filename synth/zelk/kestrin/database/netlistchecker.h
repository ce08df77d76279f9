// NetlistChecker: whether a netlist is consistent in itself: every pointer has its counterpart, every table its order.
// Passes are tested with it, and it is what to call when one is suspected.
#ifndef KESTRIN_DATABASE_NETLISTCHECKER_H
#define KESTRIN_DATABASE_NETLISTCHECKER_H

#include <string>
#include <vector>

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
  void Expect(bool condition, const char* kind, const DesignObj* object, const char* rule);

  const Netlist* _netlist;
  std::vector<std::string> _faults;
};

#endif
