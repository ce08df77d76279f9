// PortRef: one connection of one port of one instance to one net, a link of the net's list. It is the smallest and the
// most frequent object of the database.
#ifndef KESTRIN_DATABASE_PORTREF_H
#define KESTRIN_DATABASE_PORTREF_H

#include "containers/pool.h"
#include "database/port.h"

class Instance;
class Net;

/// Whoever disconnects deletes it: use Instance::Disconnect or Net::Disconnect, never delete.
class PortRef : public Pooled {
public:
  Instance* GetInst() const { return _inst; }
  Net* GetNet() const { return _net; }
  /// A port of the instance's view.
  Port* GetPort() const { return _port; }
  port_dir Direction() const { return _port->Direction(); }
  /// A load, seen from the net; anything else counts as driver.
  bool IsInput() const { return Direction() == DIR_INPUT; }
  /// Towards the loads; null behind the last.
  PortRef* Next() const { return _next; }
  /// Towards the drivers; of the first one it is the last one.
  PortRef* Previous() const { return _previous; }

private:
  friend class Instance;
  friend class Net;
  PortRef(Instance* inst, Port* port, Net* net) : _inst(inst), _net(net), _port(port) {}
  ~PortRef() = default;

  Instance* _inst;
  Net* _net;
  Port* _port;
  PortRef* _next = nullptr;
  PortRef* _previous = nullptr;
};

#endif
