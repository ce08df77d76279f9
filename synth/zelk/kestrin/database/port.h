// Port and PortBus: the interface of a netlist. A port is one bit and sits directly on a net inside; a vector is a
// PortBus over ports or over buses. The netlist owns both.
#ifndef KESTRIN_DATABASE_PORT_H
#define KESTRIN_DATABASE_PORT_H

#include "containers/set.h"
#include "database/designobj.h"

class Net;
class Netlist;

/// Seen from inside the object that the port belongs to: an input port of a netlist drives the net inside, and an input
/// port of an instance's view is a load of the net outside.
enum port_dir { DIR_INOUT = 0, DIR_INPUT = 1, DIR_OUTPUT = 2, DIR_NONE = 3 };

class Port : public DesignObj {
public:
  explicit Port(const char* name = nullptr, port_dir direction = DIR_NONE, unsigned long linefile = 0);
  explicit Port(SaveRestore& stream);
  /// Disconnects, leaves its bus and its owner; connections of the owner's references go too.
  ~Port() override;

  db_object_type ObjectType() const override { return DB_PORT; }
  unsigned Supports(const Att* att) const override;
  int PortBusLevel() const override { return -1; }
  PortBus* GetPortBus() const override { return _bus; }
  void SetPortBus(PortBus* bus) override { _bus = bus; }
  void SetName(const char* name) override;
  void Save(SaveRestore& stream) const override;
  virtual void Dump(std::ostream& out, unsigned indent = 0) const;

  /// The net inside; null when unconnected. Connect with Net::Connect.
  Net* GetNet() const { return _net; }
  port_dir Direction() const { return _direction; }
  bool IsInput() const { return _direction == DIR_INPUT; }
  bool IsOutput() const { return _direction == DIR_OUTPUT; }
  bool IsInout() const { return _direction == DIR_INOUT; }
  /// Also re-sorts the connections of the owner's references, whose order depends on it.
  void SetDirection(port_dir direction);
  Netlist* Owner() const { return _owner; }
  /// The position among the owner's ports, at no cost.
  unsigned Index() const { return _index; }

private:
  friend class Net;
  friend class Netlist;
  unsigned _index = 0; // kept by the owner
  Net* _net = nullptr;
  PortBus* _bus = nullptr;
  Netlist* _owner = nullptr;
  port_dir _direction;
};

/// Elements are in position order, from left to right. A bus of ports has the level 0, a bus of buses the level of its
/// elements plus 1.
class PortBus : public DesignObj {
public:
  /// `is_up`: indices ascend from left to right.
  explicit PortBus(const char* name = nullptr, port_dir direction = DIR_NONE, int left = 0, unsigned is_up = 0,
                   unsigned long linefile = 0, int level = 0);
  /// Of a netlist that is being restored and has its ports.
  PortBus(SaveRestore& stream, const Netlist* netlist);
  /// Elements stay and lose their bus.
  ~PortBus() override;

  db_object_type ObjectType() const override { return DB_PORTBUS; }
  unsigned Supports(const Att* att) const override;
  int PortBusLevel() const override { return _level; }
  void SetPortBusLevel(int level) override { _level = level; }
  PortBus* GetPortBus() const override { return _bus; }
  void SetPortBus(PortBus* bus) override { _bus = bus; }
  void SetName(const char* name) override;
  void Save(SaveRestore& stream) const override;
  virtual void Dump(std::ostream& out, unsigned indent = 0) const;

  port_dir Direction() const { return _direction; }
  void SetDirection(port_dir direction) { _direction = direction; }
  unsigned IsUp() const { return _is_up; }
  int LeftIndex() const { return _left; }
  /// The left index for an empty bus.
  int RightIndex() const;
  unsigned Size() const { return _elements.Size(); }
  /// The number of one-bit ports, through all levels.
  unsigned PortCount() const;
  Netlist* Owner() const { return _owner; }
  const Set& Elements() const { return _elements; }
  /// Appends at the right. The element's bus must be none or this one, and its level fit.
  void Add(DesignObj* element);
  void Remove(DesignObj* element);
  /// Null past the end.
  DesignObj* ElementAtPos(unsigned pos) const;
  /// Null out of range.
  DesignObj* ElementAtIndex(int index) const;
  /// The index of an element of this bus; the left index for anything else.
  int IndexOf(const DesignObj* element) const;

private:
  friend class Netlist;
  int _left;
  Set _elements;
  Netlist* _owner = nullptr;
  PortBus* _bus = nullptr;
  int _level;
  port_dir _direction;
  unsigned _is_up : 1;
};

#endif
