// ControlNets: the conditions under which operators of a netlist are active, for the sharing of resources. Few
// instances have one, so they stand in tables of the netlist and not in every instance. It owns nothing.
#ifndef KESTRIN_DATABASE_CONTROLNETS_H
#define KESTRIN_DATABASE_CONTROLNETS_H

#include "containers/map.h"

class Instance;
class Net;

class ControlNets {
public:
  /// The condition of an instance, or null.
  Net* Of(const Instance* inst) const;
  /// A null net takes the condition off.
  void Set(Instance* inst, Net* net);
  /// The condition of all instances that have this net goes over to another one; null takes it off.
  void Replace(const Net* net, Net* other);

private:
  Map _net_of{HASH_POINTER};
  Map _instances_of{HASH_POINTER}; // several items of one net
};

#endif
