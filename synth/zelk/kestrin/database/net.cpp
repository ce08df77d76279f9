// Net: connections, driver, wiring, propagation, isolation and the walks over cones; NetBus.
#include "database/net.h"

#include <string>
#include <vector>

#include "containers/views.h"
#include "database/instance.h"
#include "database/netlist.h"
#include "database/views.h"
#include "util/services.h"

namespace {

bool TouchesBidir(const Net* net) { return net->GetFirstPort(DIR_INOUT) || net->GetFirstTrueBidirPortRef(); }

bool IsConstantDriver(const PortRef* ref) { return ref && ref->GetInst()->IsConstantPrimitive(); }

/// The nets of which one, unchanged, is the output of an instance: the input of a buffer, both inputs of a multiplexer,
/// the cone of an infer point, the data of a selection.
void PassedNets(const Instance* driver, std::vector<Net*>& nets) {
  switch (driver->Type()) {
  case PRIM_BUF: nets.push_back(driver->GetInput()); return;
  case PRIM_INFER_POINT: nets.push_back(driver->GetInput1()); return;
  case PRIM_MUX:
    nets.push_back(driver->GetInput1());
    nets.push_back(driver->GetInput2());
    return;
  case OPER_NTO1MUX:
  case OPER_SELECTOR:
    for (unsigned bit = 0; bit < driver->Input2Size(); bit++) nets.push_back(driver->GetInput2Bit(bit));
    return;
  default: return;
  }
}

} // namespace

Net::Net(const char* name, unsigned long linefile) : DesignObj(name, linefile), _preferred_name(0) {}

Net::~Net() {
  while (_first) _first->GetInst()->Disconnect(_first->GetPort());
  for (Port* port : PortsOf(this)) port->_net = nullptr;
  delete _ports;
  Unwire();
  if (_bus) _bus->Remove(this);
  if (_owner) _owner->Remove(this);
}

unsigned Net::Supports(const Att* att) const { return !att || kestrin_att_supported(ATT_ON_NET, att->Type()); }

void Net::SetName(const char* name) {
  Netlist* owner = _owner;
  if (!owner) {
    Rename(name);
    return;
  }
  owner->Unlink(this);
  Rename(name);
  owner->Link(this);
}

Net* Net::Copy() const {
  KESTRIN_ASSERT(!_wire);
  auto* copy = new Net(nullptr, Linefile());
  copy->CopyNames(*this);
  copy->CopyFrom(*this);
  copy->_power_up = _power_up;
  copy->_preferred_name = _preferred_name;
  return copy;
}

void Net::Connect(Port* port) {
  KESTRIN_ASSERT(port);
  if (port->_owner && _owner && port->_owner != _owner) {
    port->Error("connection to external net %s is not allowed", ExternalName());
    return;
  }
  KESTRIN_ASSERT(!port->_net);
  if (!_ports) _ports = new Set(HASH_POINTER);
  unsigned inserted = _ports->Insert(port);
  KESTRIN_ASSERT(inserted);
  port->_net = this;
}

void Net::Disconnect(Port* port) {
  KESTRIN_ASSERT(port);
  unsigned removed = _ports ? _ports->Remove(port) : 0;
  KESTRIN_ASSERT(removed);
  port->_net = nullptr;
}

unsigned Net::Connect(Instance* inst, Port* port) { return inst->Connect(port, this); }

void Net::Disconnect(Instance* inst, Port* port) { inst->Disconnect(port); }

void Net::Add(PortRef* ref) {
  RefreshDriver();
  ref->_net = this;
  if (!_first) {
    ref->_next = nullptr;
    ref->_previous = ref;
    _first = ref;
  } else if (ref->IsInput()) {
    PortRef* tail = _first->_previous;
    tail->_next = ref;
    ref->_previous = tail;
    ref->_next = nullptr;
    _first->_previous = ref;
  } else {
    ref->_next = _first;
    ref->_previous = _first->_previous;
    _first->_previous = ref;
    _first = ref;
  }
  _num_port_refs++;
  if (!ref->IsInput() && !IsConstantDriver(_driver)) _driver = ref;
}

void Net::Remove(PortRef* ref) {
  KESTRIN_ASSERT(ref->_net == this && _first);
  PortRef* next = ref->_next;
  if (ref == _first) {
    _first = next;
    if (next) next->_previous = ref->_previous;
  } else {
    ref->_previous->_next = next;
    (next ? next : _first)->_previous = ref->_previous;
  }
  ref->_next = ref->_previous = nullptr;
  _num_port_refs--;
  if (ref == _driver) {
    _driver = nullptr;
    _driver_valid = 0;
  }
}

PortRef* Net::GetFirstPortRef(port_dir direction) const {
  if (direction == DIR_INPUT) {
    PortRef* tail = GetLastPortRef();
    return tail && tail->IsInput() ? tail : nullptr;
  }
  for (PortRef* ref : DriversOf(this))
    if (ref->Direction() == direction) return ref;
  return nullptr;
}

Port* Net::GetFirstPort() const {
  for (Port* port : PortsOf(this)) return port;
  return nullptr;
}

Port* Net::GetFirstPort(port_dir direction) const {
  for (Port* port : PortsOf(this))
    if (port->Direction() == direction) return port;
  return nullptr;
}

void Net::RefreshDriver() const {
  if (_driver_valid) return;
  _driver = nullptr;
  for (PortRef* ref : DriversOf(this)) {
    _driver = ref;
    if (IsConstantDriver(ref)) break;
  }
  _driver_valid = 1;
}

PortRef* Net::DrivingPortRef() const {
  RefreshDriver();
  return _driver;
}

Instance* Net::Driver() const {
  PortRef* ref = DrivingPortRef();
  return ref ? ref->GetInst() : nullptr;
}

prim_type_enum Net::DriverType() const {
  Instance* driver = Driver();
  return driver ? driver->Type() : PRIM_NONE;
}

PortRef* Net::GetFirstTrueBidirPortRef() const {
  for (PortRef* ref : DriversOf(this)) {
    if (ref->Direction() != DIR_INOUT) continue;
    const Instance* inst = ref->GetInst();
    if (inst->IsPrimitive() || inst->IsOperator() || (inst->View() && inst->View()->GetAtt(" prototyped"))) return ref;
  }
  return nullptr;
}

unsigned Net::NumOfFanouts() const {
  unsigned count = _num_port_refs;
  for (PortRef* ref : DriversOf(this)) count -= ref->Direction() == DIR_OUTPUT;
  for (Port* port : PortsOf(this)) count += port->IsOutput() || port->IsInout();
  return count;
}

unsigned Net::IsFanoutFree() const {
  if (_wire || GetFirstPort(DIR_OUTPUT) || GetFirstPort(DIR_INOUT)) return 0;
  for (PortRef* ref : PortRefsOf(this)) {
    const Instance* inst = ref->GetInst();
    if (ref->Direction() != DIR_OUTPUT || !(inst->IsPrimitive() || inst->IsOperator())) return 0;
  }
  return 1;
}

unsigned Net::HasMultipleDrivers() const {
  unsigned drivers = 0;
  for (Port* port : PortsOf(this)) drivers += !port->IsOutput();
  if (_first && !_first->IsInput()) drivers += _first->Next() && !_first->Next()->IsInput() ? 2 : 1;
  return drivers > 1;
}

unsigned Net::IsConstant() const { return kestrin_is_constant_type(DriverType()); }
unsigned Net::IsGnd() const { return DriverType() == PRIM_GND; }
unsigned Net::IsPwr() const { return DriverType() == PRIM_PWR; }
unsigned Net::IsX() const { return DriverType() == PRIM_X; }
unsigned Net::IsZ() const { return DriverType() == PRIM_Z; }

Net* Net::RegNet() const { return DriverType() == PRIM_DFFRS ? Driver()->GetInput() : nullptr; }
Net* Net::BufNet() const { return DriverType() == PRIM_BUF ? Driver()->GetInput() : nullptr; }
Net* Net::InvNet() const { return DriverType() == PRIM_INV ? Driver()->GetInput() : nullptr; }

Net* Net::LookThroughInferPoint(Net* hold) {
  if (DriverType() != PRIM_INFER_POINT || Driver()->GetInput2() != hold) return this;
  return Driver()->GetInput1();
}

// Exchanging the pointers of two nets joins two rings, and would split one. Whether it is one is asked from both nets
// at the same time, so that the shorter ring tells.
void Net::Wire(Net* other) {
  if (!other || other == this) return;
  const Net* from_here = _wire;
  const Net* from_there = other->_wire;
  while (from_here && from_there && from_here != this && from_there != other) {
    if (from_here == other || from_there == this) return;
    from_here = from_here->_wire;
    from_there = from_there->_wire;
  }
  Net* mine = _wire ? _wire : this;
  Net* others = other->_wire ? other->_wire : other;
  _wire = others;
  other->_wire = mine;
}

void Net::Unwire() {
  if (!_wire) return;
  Net* before = _wire;
  while (before->_wire != this) before = before->_wire;
  before->_wire = _wire == before ? nullptr : _wire;
  _wire = nullptr;
}

void Net::LeaveRing(const Netlist* going) {
  if (!_wire) return;
  const Net* at = _wire;
  while (at != this && at->_owner == going) at = at->_wire;
  if (at != this) return Unwire();
  for (Net* net = this; net->_wire;) {
    Net* next = net->_wire;
    net->_wire = nullptr;
    net = next;
  }
}

namespace {

/// Whether a net is a better survivor of a ring than the best one so far.
bool SurvivesBefore(const Net* net, const Net* best) {
  if (!net->Linefile() != !best->Linefile()) return net->Linefile() != 0;
  if (net->HasAtts() != best->HasAtts()) return net->HasAtts();
  return net->NumOfPortRefs() > best->NumOfPortRefs();
}

} // namespace

// List order is kept: what moves goes in front of the survivor's drivers and behind its loads, in its own order.
void Net::MoveConnectionsTo(Net* survivor) {
  for (Port* port : PortsOf(this)) {
    Disconnect(port);
    if (!survivor->_ports) survivor->_ports = new Set(HASH_POINTER);
    survivor->_ports->Insert(port);
    port->_net = survivor;
  }
  std::vector<PortRef*> drivers;
  for (PortRef* ref : DriversOf(this)) drivers.push_back(ref);
  for (auto ref = drivers.rbegin(); ref != drivers.rend(); ++ref) {
    Remove(*ref);
    survivor->Add(*ref);
  }
  while (PortRef* load = _first) {
    Remove(load);
    survivor->Add(load);
  }
  if (_owner && _owner == survivor->_owner) _owner->ReplaceControlNet(this, survivor);
}

Net* Net::ResolveWires() {
  if (!_wire) return this;
  Net* survivor = this;
  for (Net* net = _wire; net != this; net = net->_wire)
    if (SurvivesBefore(net, survivor)) survivor = net;

  const Net* named = nullptr;
  Net* at = this;
  do {
    if (at->_preferred_name) {
      named = at;
      break;
    }
    if (!named && at->Linefile() && at->IsUserName()) named = at;
    at = at->_wire;
  } while (at != this);
  std::string name;
  unsigned long linefile = 0;
  bool rename = named && named != survivor && !survivor->_preferred_name;
  bool preferred = named && named->_preferred_name;
  if (rename) {
    name = named->Name() ? named->Name() : "";
    linefile = named->Linefile();
    rename = !name.empty();
  }

  while (survivor->_wire) {
    Net* merged = survivor->_wire;
    survivor->CopyFrom(*merged);
    if (!survivor->_power_up) survivor->_power_up = merged->_power_up;
    merged->MoveConnectionsTo(survivor);
    // The net behind the survivor leaves the ring without a walk to the net before it.
    survivor->_wire = merged->_wire == survivor ? nullptr : merged->_wire;
    merged->_wire = nullptr;
    delete merged;
  }
  if (rename) {
    survivor->SetName(name.c_str());
    survivor->SetLinefile(linefile);
    if (preferred) survivor->_preferred_name = 1;
  }
  return survivor;
}

void Net::Assign(Net* other, prim_type_enum type) {
  if (!other || other == this) return;
  if (type == PRIM_NONE) {
    Wire(other);
    return;
  }
  KESTRIN_ASSERT_TEXT(type == OPER_REDUCE_AND || type == OPER_REDUCE_OR,
                      "type == OPER_REDUCE_AND || type == OPER_REDUCE_OR");
  Array inputs;
  unsigned long linefile = other->Linefile() ? other->Linefile() : Linefile();
  if (Instance* driver = Driver(); driver && driver->Type() == type) {
    for (unsigned bit = 0; bit < driver->InputSize(); bit++)
      if (Net* input = driver->GetInputBit(bit)) inputs.InsertLast(input);
    delete driver;
  }
  inputs.InsertLast(other);
  Net* output = this;
  if (type == OPER_REDUCE_AND)
    _owner->ReduceAnd(&inputs, &output, linefile);
  else
    _owner->ReduceOr(&inputs, &output, linefile);
}

unsigned Net::IsCompatible(Net* other, unsigned allow_bidir) {
  if (!other) return 0;
  bool constant = IsConstant();
  if (!constant && other->IsConstant()) return other->IsCompatible(this, allow_bidir);
  if ((TouchesBidir(this) || TouchesBidir(other)) && (!allow_bidir || constant)) return 0;
  if (constant) return !(other->Linefile() && other->HasAtts()) && !other->GetFirstPortRef(DIR_INOUT);
  if (!Linefile() || !other->Linefile()) return 1;
  return !HasAtts() && !other->HasAtts();
}

unsigned Net::PropagateInto(Net* output, unsigned long linefile) {
  if (!output) return 0;
  if (output == this) return 1;
  KESTRIN_ASSERT(!IsWired() && !output->IsWired());
  bool no_directional = kestrin_flag("zelk_dont_add_directional_buffers") != 0;
  if (IsCompatible(output, no_directional)) {
    Wire(output);
    ResolveWires();
    return 1;
  }
  buffer_type_enum type = LOGICAL;
  if (IsConstant())
    type = CONSTANT;
  else if (!no_directional && (TouchesBidir(this) || TouchesBidir(output)))
    type = DIRECTIONAL;
  Net* scratch = _owner->Buf(this, linefile, type);
  Instance* buffer = scratch->Driver();
  buffer->Reconnect(buffer->View()->GetOutput(), output);
  delete scratch;
  return 0;
}

namespace {

/// Whether an assignment of a net to another needs a buffer to keep both of them, as their places in the source tell.
bool KeepsBothNets(const Net* value, const Net* target) {
  bool from_source = value->Linefile() != 0;
  bool to_source = target->Linefile() != 0;
  bool wanted = (to_source && (value->IsConstant() || from_source)) || (value->HasAtts() && !to_source) ||
                (target->HasAtts() && !from_source) || value->IsWired();
  if (!wanted || value->IsZ()) return wanted;
  bool fewer_names = kestrin_flag("zelk_preserve_fewer_names") || value->Owner()->IsAttOn(ATT_LSX_PRESERVE_FEWER_NAMES);
  return !fewer_names || value->HasAtts() || target->HasAtts();
}

/// Tristates, latches and registers.
bool IsNamedByItsDriver(prim_type_enum type) { return type >= PRIM_TRI && type <= PRIM_DFFRS; }

} // namespace

Net* Net::Isolate(Net* other, unsigned long linefile) {
  if (!other || other == this) return this;
  if (RemoveAtt(" resolved_wired_three_state")) return this;
  if (!_owner || _owner != other->_owner) return this;
  bool wanted = KeepsBothNets(this, other);
  prim_type_enum type = DriverType();
  if (type == PRIM_INFER_POINT && Driver()->GetInput2() != other) wanted = true;
  if (!wanted || (!Linefile() && IsNamedByItsDriver(type))) return this;
  AutoInstancePrefix prefix(_owner, other->Linefile() ? other->Name() : nullptr);
  return _owner->UserNetBuf(this, linefile);
}

// Nets are worked off a list, because cones are deeper than the stack.
void Net::DeleteFanoutFreeCone(Set* visited, unsigned keep_user_nets) {
  Set own_visited(HASH_POINTER);
  if (!visited) visited = &own_visited;
  std::vector<Net*> open{this};
  while (!open.empty()) {
    Net* net = open.back();
    open.pop_back();
    if (visited->Contains(net) || !net->IsFanoutFree()) continue;
    Set drivers(HASH_POINTER); // an instance may drive the net by several ports
    for (PortRef* ref : DriversOf(net)) drivers.Insert(ref->GetInst());
    Set inputs(HASH_POINTER);
    for (Instance* driver : KeysOf<Instance*>(&drivers)) driver->DeleteIfFanoutFree(&inputs, keep_user_nets);
    for (Net* input : KeysOf<Net*>(&inputs)) open.push_back(input);
    if (net->_first || net->NumOfPorts() || net->_wire || net->_bus || net->Name() || net->Linefile()) continue;
    visited->Insert(net);
    delete net;
  }
}

unsigned Net::CheckCombLoop(Net* target) {
  Set visited(HASH_POINTER);
  std::vector<Net*> open{this};
  while (!open.empty()) {
    Net* net = open.back();
    open.pop_back();
    for (PortRef* ref : DriversOf(net)) {
      const Instance* driver = ref->GetInst();
      if (!driver->IsCombinational() || !visited.Insert(driver)) continue;
      for (PortRef* input : ConnectionsOf(driver)) {
        if (!input->IsInput()) continue;
        if (input->GetNet() == target) {
          target->Warning("combinational loop at net %s", target->ExternalName());
          return 1;
        }
        open.push_back(input->GetNet());
      }
    }
  }
  return 0;
}

void Net::RegisteredFanout(Set& registers) {
  Set visited(HASH_POINTER);
  std::vector<Net*> open{this};
  visited.Insert(this);
  while (!open.empty()) {
    Net* net = open.back();
    open.pop_back();
    for (PortRef* load : LoadsOf(net)) {
      Instance* inst = load->GetInst();
      if (kestrin_is_storage_type(inst->Type())) {
        registers.Insert(inst);
        continue;
      }
      if (!inst->IsCombinational()) continue;
      for (PortRef* output : ConnectionsOf(inst))
        if (!output->IsInput() && visited.Insert(output->GetNet())) open.push_back(output->GetNet());
    }
  }
}

namespace {

/// A net whose reduction waits for those of the nets that it passes on.
struct reduction {
  Net* net;
  std::vector<Net*> passed;
  size_t next = 0;
  Net* common = nullptr;
};

bool CanBeReduced(const Net* net) { return !net->Linefile() && !net->IsWired() && !net->HasMultipleDrivers(); }

} // namespace

Net* Net::ReduceConeToSingleNet(Map& cache) {
  std::vector<reduction> open;
  auto enter = [&](Net* net) {
    cache.Insert(net, net); // what comes back to it finds the net itself
    reduction frame{net, {}, 0, nullptr};
    if (CanBeReduced(net) && net->Driver()) PassedNets(net->Driver(), frame.passed);
    open.push_back(std::move(frame));
  };
  if (Net* known = FromWord<Net*>(cache.GetValue(this))) return known;
  enter(this);
  while (!open.empty()) {
    reduction& top = open.back();
    bool differs = false;
    Net* waiting = nullptr;
    while (top.next < top.passed.size() && !differs) {
      Net* input = top.passed[top.next];
      Net* reduced = input ? FromWord<Net*>(cache.GetValue(input)) : nullptr;
      if (input && !reduced) {
        waiting = input;
        break;
      }
      differs = !reduced || (top.common && top.common != reduced);
      top.common = reduced;
      top.next++;
    }
    if (waiting) {
      enter(waiting);
      continue;
    }
    if (!top.passed.empty() && !differs) cache.Insert(top.net, top.common, 1);
    open.pop_back();
  }
  return FromWord<Net*>(cache.GetValue(this));
}

unsigned Net::CheckDriverFrom(Net* target, Set& visited) {
  std::vector<Net*> open{this};
  while (!open.empty()) {
    Net* net = open.back();
    open.pop_back();
    if (!net || !visited.Insert(net)) continue;
    if (target ? net == target : net->IsZ()) return 1;
    const Instance* driver = net->Driver();
    if (net->Linefile() || !driver) continue;
    if (driver->Type() == PRIM_INFER_POINT && target && driver->GetInput2() != target) continue;
    PassedNets(driver, open);
  }
  return 0;
}

namespace {

/// Register loops are followed no further than this; beyond it two nets count as different.
constexpr unsigned max_compared_registers = 512;

} // namespace

unsigned kestrin_equivalent_nets(Net* a, Net* b, Set* visited) {
  if (!a || !b) return 0;
  if (a == b) return 1;
  if (a->IsConstant() && b->IsConstant()) return a->DriverType() == b->DriverType();
  if (a->BufNet() == b || b->BufNet() == a) return 1;
  if (!a->RegNet() || a->RegNet() != b->RegNet()) return 0;
  Set own_visited(HASH_POINTER);
  if (!visited) visited = &own_visited;
  auto pair = FromWord<unsigned long>(a->Driver()) ^ FromWord<unsigned long>(b->Driver());
  if (visited->Size() >= max_compared_registers || (pair && !visited->Insert(ToWord(pair)))) return 0;
  return kestrin_compatible_secondaries(a->Driver(), b->Driver(), visited);
}

Instance* kestrin_get_fanout(const Net* net, prim_type_enum type, KESTRIN_GET_FANOUT_ENUM mode) {
  if (!net || (mode == GET_FANOUT_SINGLE && net->NumOfFanouts() != 1)) return nullptr;
  Instance* match = nullptr;
  for (PortRef* load : LoadsOf(net)) {
    Instance* inst = load->GetInst();
    if (type != PRIM_ANY && inst->Type() != type) continue;
    if (mode != GET_FANOUT_ONLY) return inst;
    if (match) return nullptr;
    match = inst;
  }
  return match;
}

NetBus::NetBus(const char* name, int left, int right, unsigned long linefile, int level)
    : DesignObj(name, linefile), _left(left), _right(right), _level(level), _elements(HASH_POINTER, 0) {}

NetBus::~NetBus() {
  for (auto [element, bus] : ElementsOf(this))
    if (element) element->SetNetBus(nullptr);
  if (_bus) _bus->Remove(this);
  if (_owner) _owner->Remove(this);
}

void NetBus::SetName(const char* name) {
  Netlist* owner = _owner;
  if (owner) owner->Remove(this);
  Rename(name);
  if (owner) owner->Add(this);
}

// A slot that is freed is the next one to be used, so that what takes the place of an element stands where it stood.
void NetBus::ReplaceItem(MapItem* item, DesignObj* element) {
  _elements.Remove(item);
  _elements.Insert(element, this, 0, 1);
}

void NetBus::Add(DesignObj* element) {
  KESTRIN_ASSERT(_elements.Size() != Size());
  KESTRIN_ASSERT_TEXT(!element->GetNetBus(), "!elem->GetNetBus()");
  KESTRIN_ASSERT_TEXT(NetBusLevel() == element->NetBusLevel() + 1, "NetBusLevel() == elem->NetBusLevel() + 1");
  _elements.Insert(element, this, 0, 1);
  element->SetNetBus(this);
}

void NetBus::AddAtIndex(DesignObj* element, int index) {
  long long idx = IsUp() ? 0LL + index - _left : 0LL + _left - index;
  KESTRIN_ASSERT_TEXT(idx >= 0 && idx < Size(), "idx>=0 && idx<(int)Size()");
  KESTRIN_ASSERT_TEXT(!element->GetNetBus(), "!elem->GetNetBus()");
  KESTRIN_ASSERT_TEXT(NetBusLevel() == element->NetBusLevel() + 1, "NetBusLevel() == elem->NetBusLevel() + 1");
  while (_elements.Size() < idx) _elements.Insert(nullptr, this, 0, 1);
  if (_elements.Size() == idx) {
    _elements.Insert(element, this, 0, 1);
  } else {
    MapItem* item = _elements.GetItemAt(static_cast<unsigned>(idx));
    KESTRIN_ASSERT(!item->Key());
    ReplaceItem(item, element);
  }
  element->SetNetBus(this);
}

void NetBus::Remove(DesignObj* element) {
  MapItem* item = element && element->GetNetBus() == this ? _elements.GetItem(element) : nullptr;
  if (!item) return;
  ReplaceItem(item, nullptr);
  element->SetNetBus(nullptr);
}

DesignObj* NetBus::ElementAtPos(unsigned pos) const {
  return pos < _elements.Size() ? FromWord<DesignObj*>(_elements.GetItemAt(pos)->Key()) : nullptr;
}

DesignObj* NetBus::ElementAtIndex(int index) const {
  long long pos = IsUp() ? 0LL + index - _left : 0LL + _left - index;
  return pos < 0 || pos >= Size() ? nullptr : ElementAtPos(static_cast<unsigned>(pos));
}

int NetBus::IndexOf(const DesignObj* element) const {
  int pos = element ? static_cast<int>(_elements.IndexOf(element)) : 0;
  return IsUp() ? _left + pos : _left - pos;
}

unsigned NetBus::NetCount() const {
  unsigned count = 0;
  for (auto [element, bus] : ElementsOf(this)) {
    if (!element) continue;
    bool is_bus = element->ObjectType() == DB_NETBUS;
    KESTRIN_ASSERT_TEXT(is_bus || element->ObjectType() == DB_NET, "element is a net or a net bus");
    count += is_bus ? static_cast<const NetBus*>(element)->NetCount() : 1;
  }
  return count;
}
