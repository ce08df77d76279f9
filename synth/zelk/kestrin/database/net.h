// Net and NetBus: the nodes of the connectivity graph. A net carries one bit; a vector is a NetBus over nets or over
// buses. The netlist owns both.
#ifndef KESTRIN_DATABASE_NET_H
#define KESTRIN_DATABASE_NET_H

#include "containers/map.h"
#include "containers/set.h"
#include "database/designobj.h"
#include "database/port.h"
#include "database/portref.h"
#include "database/primtype.h"

class Array;
class Instance;
class Net;
class Netlist;

/// How kestrin_get_fanout chooses.
enum KESTRIN_GET_FANOUT_ENUM {
  GET_FANOUT_FIRST = 0,  ///< the first match
  GET_FANOUT_SINGLE = 1, ///< the match, if the net has a fanout of exactly 1
  GET_FANOUT_ONLY = 2    ///< the match, if it is the only one
};

/// The order of the connections is a contract: all drivers (connections of ports that aren't inputs) come before all
/// loads. Drivers are pushed at the head, loads are appended at the tail.
class Net : public DesignObj {
public:
  explicit Net(const char* name = nullptr, unsigned long linefile = 0);
  explicit Net(SaveRestore& stream);
  /// Disconnects everything, leaves ring, bus and owner.
  ~Net() override;

  db_object_type ObjectType() const override { return DB_NET; }
  unsigned Supports(const Att* att) const override;
  int NetBusLevel() const override { return -1; }
  NetBus* GetNetBus() const override { return _bus; }
  void SetNetBus(NetBus* bus) override { _bus = bus; }
  void SetName(const char* name) override;
  void Save(SaveRestore& stream) const override;
  /// With what the netlist knows of the net.
  void Save(SaveRestore& stream, FieldAttributes fields) const;
  virtual void Dump(std::ostream& out, unsigned indent = 0) const;
  /// Reports "combinational loop at net %s" when the target is reached backwards from this net through combinational
  /// logic (with this net as target: when the net depends on itself). 1 when so.
  virtual unsigned CheckCombLoop(Net* target);

  Netlist* Owner() const { return _owner; }
  /// The same name, location, attributes, power-up value; no connections, no owner, no bus. A wired net is never
  /// copied.
  Net* Copy() const;

  // Connections.
  /// A port of the net's own netlist. A port of another netlist is an error message and changes nothing.
  void Connect(Port* port);
  void Disconnect(Port* port);
  /// See Instance::Connect and Instance::Disconnect.
  unsigned Connect(Instance* inst, Port* port);
  void Disconnect(Instance* inst, Port* port);
  /// List maintenance, called by Instance.
  void Add(PortRef* ref);
  void Remove(PortRef* ref);

  /// A driver if there is one, else a load, else null.
  PortRef* GetFirstPortRef() const { return _first; }
  /// The first connection of this direction. For inputs, only the tail is looked at.
  PortRef* GetFirstPortRef(port_dir direction) const;
  /// The tail of the list: a load if there is one.
  PortRef* GetLastPortRef() const { return _first ? _first->Previous() : nullptr; }
  Port* GetFirstPort() const;
  Port* GetFirstPort(port_dir direction) const;
  /// The owner's ports on this net; null when there never was one.
  const Set* Ports() const { return _ports; }
  unsigned NumOfPorts() const { return _ports ? _ports->Size() : 0; }
  unsigned NumOfPortRefs() const { return _num_port_refs; }
  /// The driver that counts. A constant primitive always does; otherwise the latest, until the cache is lost, and then
  /// the oldest. Null when undriven.
  PortRef* DrivingPortRef() const;
  /// The instance of DrivingPortRef.
  Instance* Driver() const;
  /// The view type of the driver; PRIM_NONE when undriven.
  prim_type_enum DriverType() const;
  /// The first inout connection of a primitive, of an operator or of a user view with the attribute " prototyped".
  PortRef* GetFirstTrueBidirPortRef() const;
  /// Output and inout ports of the netlist on this net, and all connections but the leading output ones.
  unsigned NumOfFanouts() const;
  /// Nothing reads the net. Connections of user instances keep a net alive, even output ones.
  unsigned IsFanoutFree() const;
  unsigned HasMultipleDrivers() const;

  // What drives it.
  unsigned IsConstant() const;
  unsigned IsGnd() const;
  unsigned IsPwr() const;
  unsigned IsX() const;
  unsigned IsZ() const;
  /// The data input of a driving PRIM_DFFRS, else null.
  Net* RegNet() const;
  /// The input of a driving PRIM_BUF, else null.
  Net* BufNet() const;
  /// The input of a driving PRIM_INV, else null.
  Net* InvNet() const;
  /// The first input of a driving PRIM_INFER_POINT whose second input is `hold`, else this net.
  Net* LookThroughInferPoint(Net* hold);

  // Wiring: nets that are to become one stand on a ring until ResolveWires.
  /// Joins the rings of two nets, connections are not touched. Null, itself or a net of the ring does nothing.
  void Wire(Net* other);
  unsigned IsWired() const { return _wire != nullptr; }
  /// The next net of the ring; null when not wired.
  Net* WireNext() const { return _wire; }
  /// Merges the ring into one net and returns it; the other nets are deleted. A net with a location survives one
  /// without, then one with attributes, then the one with the most connections, then the earlier on the ring.
  Net* ResolveWires();
  /// With PRIM_NONE wires. With OPER_REDUCE_AND or OPER_REDUCE_OR adds `other` to the wired-and or wired-or that drives
  /// this net. Any other type is an assertion.
  void Assign(Net* other, prim_type_enum type);
  /// Whether two nets may become one. Constants stay off user nets with attributes; user nets merge only when neither
  /// has attributes; inout connections forbid it unless allowed.
  unsigned IsCompatible(Net* other, unsigned allow_bidir);
  /// Drives `output` from this net: by merging where the nets are compatible (this net or `output` is deleted then), by
  /// a buffer otherwise. Returns whether they were compatible.
  unsigned PropagateInto(Net* output, unsigned long linefile);
  /// The net to use for this one in an assignment to `other`: itself, or the output of a USER_NET buffer where both
  /// names have to stay.
  Net* Isolate(Net* other, unsigned long linefile);

  // Names and power-up.
  /// A preferred name survives ResolveWires.
  unsigned IsPreferredName() const { return _preferred_name; }
  void SetPreferredName(unsigned preferred) { _preferred_name = preferred ? 1 : 0; }
  /// '0', '1', 'X', 'Z', or 0 when no declaration gave one.
  char PowerUpValue() const { return _power_up; }
  void SetPowerUpValue(char value) { _power_up = value; }

  // Cones.
  /// Deletes what drives this net if nothing reads it, and so on backwards. Anonymous nets that are left without
  /// connections are deleted too and entered into `visited`, when given; nets that are in it already are left alone.
  /// With `keep_user_nets` instances that drive a net with a location stay.
  void DeleteFanoutFreeCone(Set* visited, unsigned keep_user_nets);
  /// Collects the registers and latches that this net reaches through combinational logic.
  void RegisteredFanout(Set& registers);
  /// The net that this one always equals, looked for through buffers, infer points and selections between equals;
  /// itself if there is none. `cache` remembers results by net.
  Net* ReduceConeToSingleNet(Map& cache);
  /// Whether `target` (or with null: a PRIM_Z) reaches this net through buffers, multiplexers, infer points that hold
  /// the target, and selections, without passing a net with a location.
  unsigned CheckDriverFrom(Net* target, Set& visited);

  // Register, latch and tristate extraction.
  Net* ExtractDff(Net* hold, Map& memo);
  Net* ExtractAsyncCondition(Net** condition, Net** value);
  Net* ExtractCondition(Net* hold, Net** condition, unsigned tristate, unsigned copy, Map& conditions, Map& results);
  unsigned MightInferRegister(Net* hold);
  unsigned CreatesLatch(Net* hold, unsigned ignore_self);
  unsigned RequiresInferPoint(Net* target);
  void AddAsyncConditions(Set* done, Net* condition, Net* hold, Instance* dff, unsigned long linefile);

  // Polish.
  /// The default value of an undriven net: '-' when it needs none, else the power-up value, which may be 0.
  char ProcessDanglingNet();
  unsigned ElectricalConflict();
  PortRef* AlwaysEnabledDrivingPortRef();

private:
  friend class Instance;
  friend class Netlist;
  friend class NetlistChecker;
  friend class Port;

  // Packed behind the base: a design has millions of these.
  unsigned _num_port_refs = 0;
  Set* _ports = nullptr;
  PortRef* _first = nullptr;
  Netlist* _owner = nullptr;
  NetBus* _bus = nullptr;
  Net* _wire = nullptr;
  mutable PortRef* _driver = nullptr;
  mutable unsigned char _driver_valid = 0;
  char _power_up = 0;
  unsigned char _preferred_name : 1;

  void RefreshDriver() const;
  void Unwire();
  /// Takes the whole ring apart when all of it belongs to a netlist that goes.
  void LeaveRing(const Netlist* going);
  void MoveConnectionsTo(Net* survivor);
};

/// Positions run from left to right; up when the right index is above the left one. A position can be a hole. A bus of
/// nets has the level 0, a bus of buses the level of its elements plus 1.
class NetBus : public DesignObj {
public:
  explicit NetBus(const char* name = nullptr, int left = 0, int right = 0, unsigned long linefile = 0, int level = 0);
  /// Of a netlist that is being restored and has its nets.
  NetBus(SaveRestore& stream, const Netlist* netlist);
  /// Elements stay and lose their bus.
  ~NetBus() override;

  db_object_type ObjectType() const override { return DB_NETBUS; }
  int NetBusLevel() const override { return _level; }
  void SetNetBusLevel(int level) override { _level = level; }
  NetBus* GetNetBus() const override { return _bus; }
  void SetNetBus(NetBus* bus) override { _bus = bus; }
  void SetName(const char* name) override;
  void Save(SaveRestore& stream) const override;
  virtual void Dump(std::ostream& out, unsigned indent = 0) const;

  int LeftIndex() const { return _left; }
  int RightIndex() const { return _right; }
  unsigned IsUp() const { return _right > _left; }
  /// Of the range, whatever is filled.
  unsigned Size() const { return Distance(_left, _right) + 1; }
  Netlist* Owner() const { return _owner; }
  /// Elements by position: a hole has a null key and a non-null value.
  const Map& Elements() const { return _elements; }
  /// Appends at the right of what is there; a full bus is an assertion.
  void Add(DesignObj* element);
  void AddAtIndex(DesignObj* element, int index);
  /// Leaves a hole.
  void Remove(DesignObj* element);
  /// Null for a hole and out of range.
  DesignObj* ElementAtPos(unsigned pos) const;
  DesignObj* ElementAtIndex(int index) const;
  /// The index of an element of this bus; the left index for anything else.
  int IndexOf(const DesignObj* element) const;
  /// The number of one-bit nets, through all levels.
  unsigned NetCount() const;
  /// The default value that the undriven nets of the bus have in common.
  char ProcessDanglingNetBus();

private:
  friend class Netlist;
  friend class NetlistChecker;
  static unsigned Distance(int a, int b) {
    return a < b ? static_cast<unsigned>(b) - static_cast<unsigned>(a)
                 : static_cast<unsigned>(a) - static_cast<unsigned>(b);
  }
  void ReplaceItem(MapItem* item, DesignObj* element);

  int _left;
  int _right;
  int _level;
  Map _elements;
  Netlist* _owner = nullptr;
  NetBus* _bus = nullptr;
};

/// Whether two nets always carry the same value, as far as their drivers tell. `visited` guards register loops; null at
/// the outermost call.
unsigned kestrin_equivalent_nets(Net* a, Net* b, Set* visited);
/// A load of the net that is an instance of this type (PRIM_ANY: of any), found from the tail of the list; or null.
Instance* kestrin_get_fanout(const Net* net, prim_type_enum type, KESTRIN_GET_FANOUT_ENUM mode);

#endif
