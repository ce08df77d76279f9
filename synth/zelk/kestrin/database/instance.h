// Instance and LutInstance: the uses of views in a netlist. An instance owns its connections; the netlist owns the
// instance.
#ifndef KESTRIN_DATABASE_INSTANCE_H
#define KESTRIN_DATABASE_INSTANCE_H

#include "containers/array.h"
#include "database/designobj.h"
#include "database/port.h"
#include "database/portref.h"
#include "database/primtype.h"
#include "database/ram.h"

class Fsm;
class Map;
class Net;
class Netlist;
class Param;
class Set;

/// An instance answers for the roles of its view's ports ("the clock", "bit 3 of the first input") with the net that is
/// connected there: null when the view has no such port or nothing is connected.
class Instance : public DesignObj {
public:
  /// Registers with the view. Without a view nothing can be connected until Instantiate.
  explicit Instance(const char* name = nullptr, Netlist* view = nullptr, unsigned long linefile = 0);
  explicit Instance(SaveRestore& stream);
  /// Disconnects everything, leaves its state machine, its view and its owner.
  ~Instance() override;

  db_object_type ObjectType() const override { return DB_INSTANCE; }
  unsigned Supports(const Att* att) const override;
  void SetName(const char* name) override;
  void Save(SaveRestore& stream) const override;
  // In slot order.
  /// Same name, location, attributes and view; no connections, no owner.
  virtual Instance* Copy() const;
  /// Parameters are the view's.
  virtual const Map* Params() const;
  virtual void AddParam(const char* name, const char* value, const char* type, int variable_type);
  virtual Param* GetParam(const char* name) const;
  /// The state machine that a register belongs to, or null.
  virtual Fsm* GetFsm() const;
  virtual unsigned LutFunction() const { return 0; }
  virtual void Dump(std::ostream& out, unsigned indent = 0) const;

  Param* GetParamNoCase(const char* name) const;
  Netlist* Owner() const { return _owner; }
  Netlist* View() const { return _view; }
  /// Gives a view to an instance that has none.
  void Instantiate(Netlist* view);
  /// The condition under which an operator is active: a net of the owner, which an instance must have. Null takes it
  /// off; so does the net's end, and when two nets become one the other takes its place.
  void SetControlNet(Net* net);
  Net* ControlNet() const;
  /// Creation number of an infer point.
  void SetSequence(unsigned sequence) { _sequence = sequence; }
  unsigned Sequence() const { return _sequence; }

  // Connections.
  /// Connects a port of the view to a net of the owner. 0, with an error message and no change, when the port is
  /// connected already or the net belongs to another netlist.
  unsigned Connect(Port* port, Net* net);
  /// Does nothing for an unconnected port.
  void Disconnect(Port* port);
  /// Disconnect, then Connect; a null net leaves the port unconnected.
  void Reconnect(Port* port, Net* net);
  void DisconnectAll();
  Net* GetNet(const Port* port) const;
  PortRef* GetPortRef(const Port* port) const;
  /// Connected ports.
  unsigned NumOfPortRefs() const;
  /// By port index, null entries for unconnected ports; null when nothing was ever connected.
  const Array* Connections() const { return _connections; }
  void Add(PortRef* ref);
  void Remove(PortRef* ref);

  // What it is.
  prim_type_enum Type() const;
  unsigned IsPrimitive() const;
  unsigned IsOperator() const;
  unsigned IsCombinational() const;
  /// PRIM_PWR to PRIM_Z.
  unsigned IsConstantPrimitive() const { return kestrin_is_constant_type(Type()); }
  buffer_type_enum BufferType() const;
  /// Only for a PRIM_BUF.
  void ChangeBufferType(buffer_type_enum type);

  // The nets on the view's role ports.
  Net* GetInput() const;
  Net* GetInput1() const;
  Net* GetInput2() const;
  Net* GetOutput() const;
  Net* GetControl() const;
  Net* GetAsyncCond() const;
  Net* GetAsyncVal() const;
  Net* GetSet() const;
  Net* GetReset() const;
  Net* GetClock() const;
  Net* GetZ() const;
  Net* GetALoad() const;
  Net* GetAData() const;
  Net* GetCin() const;
  Net* GetCout() const;
  Net* GetInputBit(unsigned bit) const;
  Net* GetInput1Bit(unsigned bit) const;
  Net* GetInput2Bit(unsigned bit) const;
  Net* GetOutputBit(unsigned bit) const;
  unsigned OutputSize() const;
  unsigned InputSize() const;
  unsigned Input1Size() const;
  unsigned Input2Size() const;
  unsigned IsSigned() const;

  // Wiring by role: arrays of Net*, bit 0 first; null entries stay unconnected.
  void ConnectInput(const Array* nets);
  void ConnectInput1(const Array* nets);
  void ConnectInput2(const Array* nets);
  void ConnectOutput(const Array* nets);
  void ConnectControl(Net* net);
  void ConnectCin(Net* net);
  void ConnectCout(Net* net);

  // Memories (views of type OPER_DUAL_PORT_RAM): one bit or all bits of an element of a port, 0 for "a" and 1 for "b".
  // What does not exist has the size 0 and null nets; an array comes back with an entry for each bit, bit 0 first.
  Net* GetReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const;
  Net* GetWritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const;
  void GetReadArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, Array& nets) const;
  void GetWriteArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, Array& nets) const;
  void ConnectReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit, Net* net);
  void ConnectWritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit, Net* net);
  void ConnectReadArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, const Array* nets);
  void ConnectWriteArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, const Array* nets);
  void DisconnectReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit);
  void DisconnectWritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit);
  unsigned GetReadPortSize(unsigned port, KESTRIN_RAM_PORT_ELEMENT element) const;
  unsigned GetWritePortSize(unsigned port, KESTRIN_RAM_PORT_ELEMENT element) const;
  unsigned GetReadDepth(unsigned port) const;
  unsigned GetWriteDepth(unsigned port) const;
  /// How many different addresses the ports use.
  unsigned NumUniqueAddresses() const;

  // Changes.
  /// Moves to another view. Connected ports are matched by name, and what finds no match is disconnected; or by
  /// position: the n-th connected port goes to the n-th port of the new view.
  void ReplaceView(Netlist* view, unsigned by_name);
  /// Puts the view's contents in place of the instance, which is deleted; new instances are appended to the array, when
  /// given. 0 without change for a black box or an instance without owner.
  unsigned Flatten(Array* new_instances = nullptr);
  /// Deletes a primitive or operator whose outputs nothing reads; the nets of its inputs go into the set, when given.
  /// 1 when deleted. Kept: what has `noprune`, assertions, with `keep_user_nets` drivers of nets with a location.
  unsigned DeleteIfFanoutFree(Set* inputs, unsigned keep_user_nets);
  /// Folds the instance where its inputs allow; 1 when it changed something (the instance may be deleted then).
  unsigned Propagate();
  /// Merges this instance with equal ones met before; see Netlist::EliminateCommonSubexpressions.
  unsigned EliminateCommonSubexpressions(Set& visited, Map& signatures);

  // Registers.
  void AddSyncHold(Net* condition, Net* value, unsigned long linefile);
  void AddAsyncHold(Net* condition, Net* hold, unsigned long linefile);
  void AddAsyncCondition(Net* condition, Net* value, unsigned long linefile);

protected:
  Instance(const Instance& other, int copy_tag);

private:
  friend class Netlist;
  friend class NetlistChecker;

  friend class Port;

  Net* RoleNet(const Port* port) const { return port ? GetNet(port) : nullptr; }
  void ConnectRole(const Port* port, Net* net);
  void ConnectBits(const Array* nets, Port* (Netlist::*bit)(unsigned) const);
  /// The view's port at this position goes: its connection too, and those behind it move up.
  void DropPortAt(unsigned index);
  /// The view got a port at this position.
  void InsertPortAt(unsigned index);
  void ForgetView();

  unsigned _sequence = 0;
  Array* _connections = nullptr;
  Netlist* _owner = nullptr;
  Netlist* _view;
};

/// An instance of an OPER_LUT view with at most 5 inputs, with its truth table: bit i is the output for input value i.
class LutInstance : public Instance {
public:
  static constexpr unsigned max_inputs = 5;
  LutInstance(const char* name, Netlist* view, unsigned function, unsigned long linefile = 0);
  explicit LutInstance(SaveRestore& stream);
  Instance* Copy() const override;
  void Save(SaveRestore& stream) const override;
  unsigned LutFunction() const override { return _function; }

private:
  LutInstance(const LutInstance& other, int copy_tag);
  unsigned _function;
};

/// Whether two registers have the same view and equivalent nets on all ports but the data input and the outputs.
unsigned kestrin_compatible_secondaries(Instance* a, Instance* b, Set* visited);

#endif
