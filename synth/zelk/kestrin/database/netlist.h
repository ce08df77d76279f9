// Netlist: a view: both a design and the definition that instances point to. It owns ports, nets, instances, buses,
// state machines and parameters; it offers the construction of logic and the passes that clean it up.
#ifndef KESTRIN_DATABASE_NETLIST_H
#define KESTRIN_DATABASE_NETLIST_H

#include <string>

#include "containers/array.h"
#include "containers/map.h"
#include "containers/set.h"
#include "database/designobj.h"
#include "database/port.h"
#include "database/primtype.h"

class Cell;
class ControlNets;
class Fsm;
class Instance;
class Net;
class Param;
class PortRef;
class ResourceSharing;

class Netlist : public DesignObj {
public:
  /// `case_sensitive` tells how names of ports, nets, buses, instances and state machines compare.
  explicit Netlist(const char* name = nullptr, unsigned long linefile = 0, unsigned case_sensitive = 1);
  /// Restores a saved netlist of the type PRIM_NONE, without owner: see Library.
  explicit Netlist(SaveRestore& stream);
  /// Deletes the contents; instances elsewhere that refer to it lose their connections and their view.
  ~Netlist() override;

  db_object_type ObjectType() const override { return DB_NETLIST; }
  unsigned Supports(const Att* att) const override;
  void SetName(const char* name) override;
  void Save(SaveRestore& stream) const override;
  /// A view of any type, without owner; null when the stream goes bad over it.
  static Netlist* RestoreNetlist(SaveRestore& stream, prim_type_enum type);
  /// See Library.
  Netlist* InstallRestored(SaveRestore& stream, Cell* owner);
  /// Hands the ids of this netlist, its ports and port buses to those of the same names of another one, which gets
  /// ports and buses that it lacks; the contents of this one are forgotten.
  void ReplaceBy(SaveRestore& stream, Netlist* existing);

  // What the view is, for its instances. A plain netlist answers 0, null or PRIM_NONE. In slot order.
  /// Whether instances of a primitive or operator take the attribute; null asks whether they take any.
  virtual unsigned SupportsAttribute(const Att*) const { return 0; }
  /// Warns about nets with a location whose fanout exceeds the flag "hdl_initial_fanout_limit".
  virtual void CheckTooManyFanouts();
  virtual unsigned IsPrimitive() const { return 0; }
  virtual unsigned IsCombinational() const { return 0; }
  virtual unsigned IsAssertion() const { return 0; }
  virtual prim_type_enum Type() const { return PRIM_NONE; }
  /// The base of the made-up names of an operator's instances.
  virtual const char* OperatorName() const { return nullptr; }
  virtual buffer_type_enum BufferType() const { return NONE; }
  virtual Port* GetInput() const { return nullptr; }
  virtual Port* GetInput1() const { return nullptr; }
  virtual Port* GetInput2() const { return nullptr; }
  virtual Port* GetOutput() const { return nullptr; }
  virtual Port* GetControl() const { return nullptr; }
  virtual Port* GetAsyncCond() const { return nullptr; }
  virtual Port* GetAsyncVal() const { return nullptr; }
  virtual Port* GetSet() const { return nullptr; }
  virtual Port* GetReset() const { return nullptr; }
  virtual Port* GetClock() const { return nullptr; }
  virtual Port* GetZ() const { return nullptr; }
  virtual Port* GetALoad() const { return nullptr; }
  virtual Port* GetAData() const { return nullptr; }
  virtual unsigned IsOperator() const { return 0; }
  virtual unsigned IsSigned() const { return 0; }
  virtual unsigned OutputSize() const { return 0; }
  virtual unsigned InputSize() const { return 0; }
  virtual unsigned Input1Size() const { return 0; }
  virtual unsigned Input2Size() const { return 0; }
  virtual Port* GetCin() const { return nullptr; }
  virtual Port* GetCout() const { return nullptr; }
  virtual Port* GetInputBit(unsigned) const { return nullptr; }
  virtual Port* GetInput1Bit(unsigned) const { return nullptr; }
  virtual Port* GetInput2Bit(unsigned) const { return nullptr; }
  virtual Port* GetOutputBit(unsigned) const { return nullptr; }
  /// Folds an instance of this view by its inputs; 1 when something changed, and the instance may be deleted then.
  virtual unsigned Propagate(Instance*) { return 0; }
  /// Merges two instances of this view that compute the same: the second goes. 1 when merged.
  virtual unsigned MergeCommonSubexpression(Instance*, Instance*) { return 0; }

  // The container. Objects to be added have no owner; Add takes ownership, Remove gives it back, deleting an object
  // removes it. Names that clash never fail:
  //   port, port bus   the new one becomes "%s__duplicate", "%s__duplicate%d"; nameless: "lsx_anonymous_port%d",
  //                    "lsx_anonymous_portbus%d"
  //   net              the new one becomes " renamed_net_%d"; a nameless net stays nameless
  //   net bus          names are shared with nets: a net keeps its name and the bus becomes " renamed_bus_%d"; an older
  //                    bus becomes " renamed_bus_%d"
  //   instance         a new user instance becomes "%s__duplicate"; otherwise the older one is renamed, a user instance
  //                    and a register to "%s__duplicate", others to " %s_%d"; nameless: " %s_%d" from the prefix
  //   state machine    the older one becomes "fsm%d"
  Cell* Owner() const { return _owner; }
  unsigned IsCaseSensitive() const { return _case_sensitive; }
  void Add(Port* port);
  void Add(PortBus* bus);
  void Add(Net* net);
  void Add(NetBus* bus);
  void Add(Instance* inst);
  void Add(Fsm* fsm);
  /// Inserts before the port at this position; connections of all references stay aligned. Past the end it appends.
  void AddPortAt(unsigned pos, Port* port);
  void Remove(Port* port);
  void Remove(PortBus* bus);
  void Remove(Net* net);
  void Remove(NetBus* bus);
  void Remove(Instance* inst);
  void Remove(Fsm* fsm);

  /// With `nocase_scan` a name that isn't found as it stands is looked for without regard to case, in port order.
  Port* GetPort(const char* name, unsigned nocase_scan = 0) const;
  Port* GetPortAt(unsigned pos) const;
  using DesignObj::GetPortBus;
  PortBus* GetPortBus(const char* name, unsigned nocase_scan = 0) const;
  PortBus* GetPortBusAt(unsigned pos) const;
  Net* GetNet(const char* name) const;
  using DesignObj::GetNetBus;
  NetBus* GetNetBus(const char* name) const;
  Instance* GetInst(const char* name) const;
  Fsm* GetFsm(const char* name) const;
  Fsm* GetFsmAt(unsigned pos) const;
  unsigned IndexOf(const Port* port) const;
  unsigned IndexOf(const PortBus* bus) const;
  unsigned IndexOf(const Fsm* fsm) const;
  unsigned NumOfPorts() const { return _ports.Size(); }
  unsigned NumOfPortBuses() const { return _port_buses.Size(); }
  unsigned NumOfNets() const { return _nets.Size() + _auto_nets.Size(); }
  unsigned NumOfAutoNets() const { return _auto_nets.Size(); }
  unsigned NumOfNetBuses() const { return _net_buses.Size(); }
  unsigned NumOfInsts() const { return _insts.Size(); }
  unsigned NumOfFsms() const { return _fsms.Size(); }
  unsigned NumOfParameters() const { return _params.Size(); }
  unsigned NumOfRefs() const { return _refs.Size(); }
  // The tables by name; see database/views.h for typed walks.
  const Map& Ports() const { return _ports; }
  const Map& PortBuses() const { return _port_buses; }
  const Map& NamedNets() const { return _nets; }
  const Map& AutoNets() const { return _auto_nets; }
  const Map& NetBuses() const { return _net_buses; }
  const Map& Insts() const { return _insts; }
  const Map& Fsms() const { return _fsms; }
  const Map& Params() const { return _params; }
  const Set& References() const { return _refs; }

  /// Replaces the parameter of that name.
  void AddParam(const char* name, const char* value, const char* type, int variable_type);
  Param* GetParam(const char* name) const;
  Param* GetParamNoCase(const char* name) const;

  // Kept by Instance.
  void AddRef(Instance* inst);
  void RemoveRef(Instance* inst);
  /// Moves all references to another view, by port name or by position, and asserts that none is left.
  void ReplaceReferences(Netlist* view, unsigned keep_by_name);

  // Made-up names.
  /// The prefix of made-up instance names, copied; use AutoInstancePrefix below.
  void PushAutoInstanceName(const char* prefix);
  void PopAutoInstanceName();
  const char* CurrentAutoInstanceName() const;
  unsigned NextInstanceIndex() { return _inst_index++; }
  /// A name for a new net that neither a net nor a net bus has: `base`; else prefix, separator, auto_prefix, separator
  /// and base; then with "_N" behind auto_prefix. An empty or null prefix leaves out its separator too.
  void UniquifyBaseNetName(std::string& out, const char* base, const char* prefix, const char* auto_prefix,
                           const char* separator) const;
  unsigned BaseNetNameExists(const char* name) const;

  /// Notes a net of this netlist that may have lost its last load.
  void RegisterPotentiallyFanoutFreeNet(Net* net);
  /// Deletes the cones of the nets noted that nothing reads; drivers of user nets stay.
  void SweepPotentiallyFanoutFreeNets();

  /// The top netlist of the current run.
  static Netlist* PresentDesign() { return _present_design; }
  void SetPresentDesign() { _present_design = this; }
  static void ClearPresentDesign() { _present_design = nullptr; }

  // Hierarchy.
  /// It has only an interface: no instances, and no net that joins several ports unless all are inputs.
  unsigned IsBlackBox() const;
  /// Keeps ports, port buses and parameters only.
  void MakeBlackBox();
  /// A deep copy with the same name and no owner, all in the same order. References and sharing state are not copied.
  Netlist* Copy() const;
  /// Flattens until only primitives, operators and black boxes are left; the number of instances flattened.
  unsigned Flatten();
  /// Flattens these instances once; the number flattened.
  unsigned Ungroup(Set& instances);
  /// Moves instances of this netlist into a new netlist of a new cell of this library, under a new instance, with a
  /// port for each net that crosses the border. Conditions of operators come along; a state machine does when all of
  /// its registers move, and is none any more when only some do. Null names lead to made-up ones. Returns the new
  /// instance.
  Instance* Group(Set& instances, const char* instance_name, const char* cell_name, const char* netlist_name);
  /// Gives each user instance below a view of its own: views already in `seen` are copied into their cell.
  void Uniquify(Set& seen);
  /// Collects this netlist and all views below it, each once; parents before their children with `top_down`, else
  /// after.
  void Hierarchy(Set& out, unsigned top_down);

  // Construction: each makes an instance and returns its output net, a new anonymous one, unless told otherwise. Null
  // inputs stay unconnected.
  Net* Pwr(unsigned long linefile);
  Net* Gnd(unsigned long linefile);
  Net* X(unsigned long linefile);
  Net* Z(unsigned long linefile);
  Net* Inv(Net* i, unsigned long linefile);
  Net* Buf(Net* i, unsigned long linefile, buffer_type_enum type = LOGICAL, const char* name = nullptr);
  Net* UserNetBuf(Net* i, unsigned long linefile, const char* name = nullptr);
  Net* DirectionalBuf(Net* i, unsigned long linefile, const char* name = nullptr);
  Net* ConstBuf(Net* i, unsigned long linefile, const char* name = nullptr);
  // The reverse forms take the output net and return a new net that is the input.
  Net* ReverseBuf(Net* o, unsigned long linefile, buffer_type_enum type = LOGICAL, const char* name = nullptr);
  Net* ReverseUserNetBuf(Net* o, unsigned long linefile, const char* name = nullptr);
  Net* ReverseTristate(Net* o, Net* enable, unsigned long linefile);
  Net* And(Net* a, Net* b, unsigned long linefile);
  Net* Nand(Net* a, Net* b, unsigned long linefile);
  Net* Or(Net* a, Net* b, unsigned long linefile);
  Net* Nor(Net* a, Net* b, unsigned long linefile);
  Net* Xor(Net* a, Net* b, unsigned long linefile);
  Net* Xnor(Net* a, Net* b, unsigned long linefile);
  /// in1 where the control is 1.
  Net* Mux(Net* in0, Net* in1, Net* control, unsigned long linefile);
  Net* Tristate(Net* in, Net* enable, unsigned long linefile);
  Net* Pullup(unsigned long linefile);
  Net* Pulldown(unsigned long linefile);
  void Tran(Net* a, Net* b, Net* control, unsigned long linefile);
  Net* Cmos(Net* d, Net* ncontrol, Net* pcontrol, unsigned long linefile);
  Net* Pmos(Net* d, Net* control, unsigned long linefile);
  Net* Nmos(Net* d, Net* control, unsigned long linefile);
  /// The sum; the carry goes to `cout`.
  Net* Fadd(Net* a, Net* b, Net* cin, Net** cout, unsigned long linefile);
  /// An edge of a clock, as control of multiplexers; `enable` may be null.
  Net* Clock(Net* i, Net* enable, unsigned long linefile);
  Instance* PslAssertion(Net* condition, unsigned long linefile);
  /// The signal `hold` gets the value of this cone.
  Net* InferPoint(Net* in, Net* hold, unsigned long linefile);
  Net* Dff(Net* d, Net* clk, Net* async_val, Net* async_cond, unsigned long linefile, const char* name = nullptr);
  Net* Dffrs(Net* d, Net* clk, Net* set, Net* reset, unsigned long linefile, const char* name = nullptr,
             Net* z = nullptr, Net* aload = nullptr, Net* adata = nullptr);
  Net* Dlatch(Net* d, Net* gate, Net* async_val, Net* async_cond, unsigned long linefile, const char* name = nullptr);
  Net* Dlatchrs(Net* d, Net* gate, Net* set, Net* reset, unsigned long linefile, const char* name = nullptr);
  // Folding forms: constants and equal inputs give no gate; null and X inputs resolve as don't-care.
  Net* OptimizedInv(Net* a, unsigned long linefile);
  Net* OptimizedAnd(Net* a, Net* b, unsigned long linefile);
  Net* OptimizedOr(Net* a, Net* b, unsigned long linefile);
  Net* OptimizedMux(Net* in0, Net* in1, Net* control, unsigned long linefile);

  // Words: arrays of Net*, bit 0 (the least significant one) first, outputs included. A null entry in an output array,
  // a null output array (and a null `cout`) leaves that output unconnected. `Net** o` and `Net** cout`: a null *o gets
  // a new net, which is also stored.
  /// a + b + cin; the output has the size of the larger operand.
  void Adder(Net* cin, const Array* a, const Array* b, const Array* o, Net** cout, unsigned long linefile);
  void Multiplier(unsigned is_signed, const Array* a, const Array* b, const Array* o, unsigned long linefile);
  void Divider(unsigned is_signed, const Array* a, const Array* b, const Array* o, unsigned long linefile);
  void Modulo(unsigned is_signed, const Array* a, const Array* b, const Array* o, unsigned long linefile);
  /// Shifts move `cin` into the bits that become free.
  void ShiftLeft(Net* cin, const Array* a, const Array* amount, const Array* o, unsigned long linefile);
  void ShiftRight(Net* cin, const Array* a, const Array* amount, const Array* o, unsigned long linefile);
  void RotateLeft(const Array* a, const Array* amount, const Array* o, unsigned long linefile);
  void RotateRight(const Array* a, const Array* amount, const Array* o, unsigned long linefile);
  void ReduceAnd(const Array* a, Net** o, unsigned long linefile);
  void ReduceNand(const Array* a, Net** o, unsigned long linefile);
  void ReduceOr(const Array* a, Net** o, unsigned long linefile);
  void ReduceNor(const Array* a, Net** o, unsigned long linefile);
  void ReduceXor(const Array* a, Net** o, unsigned long linefile);
  void ReduceXnor(const Array* a, Net** o, unsigned long linefile);
  void Equal(const Array* a, const Array* b, Net** o, unsigned long linefile);
  /// Unsigned a < b; with a `cin` of 1: a <= b.
  void LessThan(Net* cin, const Array* a, const Array* b, Net** o, unsigned long linefile);
  /// data[sel].
  void Nto1Mux(const Array* sel, const Array* data, Net** o, unsigned long linefile);
  /// The data bit whose select bit is 1; exactly one is.
  void Selector(const Array* sel, const Array* data, Net** o, unsigned long linefile);
  /// The data bit of the highest select bit that is 1.
  void PrioSelector(Net* default_value, const Array* sel, const Array* data, Net** o, unsigned long linefile);
  /// out[i] is 1 when the input reads i.
  void Decoder(const Array* in, const Array* out, unsigned long linefile);
  void Lut(const Array* in, Net** o, unsigned function, unsigned long linefile);
  /// A memory; the instance comes back for its attributes. `be` may be null everywhere, and so may all of a port "b" or
  /// the write part of a port "a" (a ROM). Depths count words.
  Instance* TrueDualPortRam(Net* we_a, const Array* be_a, const Array* waddr_a, unsigned write_depth_a,
                            const Array* wdata_a, const Array* raddr_a, unsigned read_depth_a, const Array* q_a,
                            Net* we_b, const Array* be_b, const Array* waddr_b, unsigned write_depth_b,
                            const Array* wdata_b, const Array* raddr_b, unsigned read_depth_b, const Array* q_b,
                            unsigned long linefile);
  Instance* DualPortRam(Net* we, const Array* be, const Array* waddr, unsigned write_depth, const Array* wdata,
                        const Array* raddr, unsigned read_depth, const Array* q, unsigned long linefile);
  /// The value that is chosen among values (keys) by the conditions under which each is used (Array of Net*).
  Net* InputShare(const Map* values, unsigned long linefile);

  // Names of kinds.
  /// Null from PRIM_ANY on.
  static const char* PrimTypeToString(unsigned type);
  /// Without regard to case; PRIM_ANY for an unknown name.
  static prim_type_enum PrimStringToType(const char* name);
  /// "UNKNOWN" for an unknown number.
  static const char* BufferTypeString(unsigned type);
  /// Makes what is missing of the shared primitive netlists, in the library "Primitives".
  static void CreateAllPrimitives();

  // Resource sharing.
  /// The operators built from now on are noted in this map, view to instance; the caller owns it.
  void PushOperatorSet(Map* operators);
  void PopOperatorSet();
  Map* CurrentOperatorSet() const { return _operator_set; }
  /// Two operators that are never used at the same time.
  void AddCompatibilityEdge(Instance* a, Instance* b);
  ResourceSharing* Sharing() const { return _sharing; }
  void AddControlNetBuffers();
  void RemoveControlNetBuffers();
  void ShareResources();

  // Polish: cleans up an elaborated netlist; the passes run in the order in which they stand here.
  void Polish();
  void ProcessGlobals();
  void ResolveWires();
  void ToSetResetRegisters();
  void PostProcessRamWriteEnables();
  void RemoveDanglingLogic();
  void ProcessDanglingNets();
  void DisconnectSillyFaninCones();
  void OptimizeMuxTrees();
  void ExtractDffsLatchesAndTriStates();
  unsigned ElectricalConflict(unsigned ignore);
  unsigned CheckUserInstanceOutputPortConnections();
  void CheckPortConnectivity();
  void CheckBidirConnectivity();
  void ProcessKeepAttributes();
  void AddAlwaysEnabledTristateBuffers();
  void RemoveUserNetBuffers();
  void AddExtraDirectionalBuffers();
  void PropagateConstants();
  void EliminateCommonSubexpressions();
  void OptimizeOperators();
  void SplitDualReadRams();
  void UniquifyOperatorNames();
  void ConvertTransistorsWithConstantControls();
  /// Cuts every loop of logic with a latch that is always open.
  void BreakLoops();
  /// Walks backwards from a net and cuts the loops met: by a latch, or with `cut` by tying the load to X. Nets visited
  /// are not walked again.
  void LatchInto(Net* net, PortRef* load, Set& visited, Set& in_progress, unsigned cut);

  // Whether two nets are the same clock or condition, through buffers and pairs of inverters.
  static unsigned NetMatch(Net* a, Net* b);

  // Dumps and figures.
  /// Dumps where the flags ask for this label of the pipeline.
  void NetlistDump(const char* label);
  void Dump(const char* file, const char* label) const;
  void NetlistDebussyDump(const char* file, const char* label) const;
  /// Everything in the netlist as text, sorted so that dumps can be compared.
  void Dump(std::ostream& out) const;
  unsigned long MemUsage() const;
  void PrintDetailedMemoryReport() const;
  void PrintConnectivityStats() const;

private:
  friend class Cell;
  friend class DesignObj;
  friend class Instance;
  friend class Net;
  friend class NetlistChecker;
  friend class Port;

  /// An empty netlist; of a primitive or operator another one of its class and sizes.
  Netlist* NewOfSameKind() const;
  hash_type NameHash() const { return _case_sensitive ? HASH_STRING : HASH_STRING_NOCASE; }
  // Into the tables and out of them, with names that clash resolved, and nothing else.
  void Link(Net* net);
  void Unlink(Net* net);
  void Link(Instance* inst);
  void Unlink(Instance* inst);
  void RenamePort(Port* port, const char* name);
  void RenumberPorts();
  void SetControlNet(Instance* inst, Net* net);
  Net* ControlNet(const Instance* inst) const;
  void ReplaceControlNet(const Net* net, Net* other);
  void MakeInstanceName(Instance* inst);
  void ResolveInstanceClash(Instance* inst);
  void RestoreContents(SaveRestore& stream);
  struct RestoredParts;
  void RestoreNet(SaveRestore& stream, RestoredParts& parts);
  void RestoreRings(SaveRestore& stream, const RestoredParts& parts);
  void RestoreParameter(SaveRestore& stream, RestoredParts& parts);
  Netlist* Install(SaveRestore& stream, Cell* owner);
  Port* AddForRestored(SaveRestore& stream, const Port* restored);
  PortBus* AddForRestored(SaveRestore& stream, const PortBus* restored);
  std::string FreeName(const Map& table, const char* prefix, unsigned& counter) const;
  void DeleteContents();
  void ForgetReferences();
  unsigned JoinsPorts(const Net* net) const;

  ResourceSharing* _sharing = nullptr;
  Map* _operator_set = nullptr;
  Array _operator_sets;
  unsigned _case_sensitive;
  Map _ports;
  Map _port_buses;
  Map _nets;
  GigaMap _auto_nets;
  Map _net_buses;
  Map _insts;
  Map _fsms;
  Set _refs;
  Map _params;
  Cell* _owner = nullptr;
  unsigned _inst_index = 0;
  unsigned _anonymous_port_index = 0;
  unsigned _renamed_net_index = 0;
  unsigned _fsm_index = 0;
  Array _auto_instance_names;
  Set* _potentially_fanout_free = nullptr;
  Set* _cnet_buffers = nullptr;
  ControlNets* _control_nets = nullptr; // made with the first one
  static Netlist* _present_design;
};

/// Made-up instance names begin with this prefix while the object lives. A null netlist or prefix changes nothing.
class AutoInstancePrefix {
public:
  AutoInstancePrefix(Netlist* netlist, const char* prefix) : _netlist(prefix ? netlist : nullptr) {
    if (_netlist) _netlist->PushAutoInstanceName(prefix);
  }
  AutoInstancePrefix(const AutoInstancePrefix&) = delete;
  AutoInstancePrefix& operator=(const AutoInstancePrefix&) = delete;
  ~AutoInstancePrefix() {
    if (_netlist) _netlist->PopAutoInstanceName();
  }

private:
  Netlist* _netlist;
};

/// Operators built while the object lives are noted in this map. A null netlist or map changes nothing.
class OperatorSetScope {
public:
  OperatorSetScope(Netlist* netlist, Map* operators) : _netlist(operators ? netlist : nullptr) {
    if (_netlist) _netlist->PushOperatorSet(operators);
  }
  OperatorSetScope(const OperatorSetScope&) = delete;
  OperatorSetScope& operator=(const OperatorSetScope&) = delete;
  ~OperatorSetScope() {
    if (_netlist) _netlist->PopOperatorSet();
  }

private:
  Netlist* _netlist;
};

#endif
