// Netlist as a container: its tables, the names in them, references, parameters and what is noted while it is built.
#include "database/netlist.h"

#include <string>
#include <vector>

#include "containers/views.h"
#include "database/cell.h"
#include "database/controlnets.h"
#include "database/fsm.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/param.h"
#include "database/resourcesharing.h"
#include "database/views.h"
#include "util/services.h"
#include "util/strings.h"

Netlist* Netlist::_present_design = nullptr;

namespace {

void Insert(Map& table, const DesignObj* object) {
  unsigned inserted = table.Insert(object->Name(), object);
  KESTRIN_ASSERT(inserted);
}

bool InUse(const Map& table, const std::string& name) { return table.GetItem(name.c_str()) != nullptr; }

/// "%s__duplicate", and behind it a number from 1 up.
std::string DuplicateName(const Map& table, const char* name) {
  std::string base = std::string(name) + "__duplicate";
  std::string duplicate = base;
  for (unsigned number = 1; InUse(table, duplicate); number++) duplicate = base + std::to_string(number);
  return duplicate;
}

} // namespace

Netlist::Netlist(const char* name, unsigned long linefile, unsigned case_sensitive)
    : DesignObj(name, linefile), _operator_sets(1), _case_sensitive(case_sensitive ? 1 : 0), _ports(NameHash()),
      _port_buses(NameHash()), _nets(NameHash()), _auto_nets(HASH_POINTER), _net_buses(NameHash()), _insts(NameHash()),
      _fsms(NameHash()), _params(HASH_STRING), _auto_instance_names(1) {
  _auto_instance_names.InsertLast(Strings::save("comb"));
}

Netlist::~Netlist() {
  DeleteContents();
  ForgetReferences();
  for (PortBus* bus : PortBusesOf(this)) {
    bus->_owner = nullptr;
    delete bus;
  }
  for (Port* port : PortsOf(this)) {
    port->_owner = nullptr;
    delete port;
  }
  for (Param* param : ParamsOf(this)) delete param;
  for (char* prefix : ItemsOf<char*>(&_auto_instance_names)) Strings::free_string(prefix);
  if (_owner) _owner->Remove(this);
  if (_present_design == this) _present_design = nullptr;
}

// Objects are cut off before they go, so that none of them is looked up to be removed.
void Netlist::DeleteContents() {
  delete _sharing;
  _sharing = nullptr;
  for (Fsm* fsm : FsmsOf(this)) {
    fsm->_owner = nullptr;
    delete fsm;
  }
  _fsms.Reset();
  for (Instance* inst : InstancesOf(this)) {
    inst->_owner = nullptr;
    delete inst;
  }
  _insts.Reset();
  for (NetBus* bus : NetBusesOf(this)) {
    bus->_owner = nullptr;
    delete bus;
  }
  _net_buses.Reset();
  for (Net* net : NetsOf(this)) net->LeaveRing(this);
  for (Net* net : NetsOf(this)) {
    net->_owner = nullptr;
    delete net;
  }
  _auto_nets.Reset();
  _nets.Reset();
  delete _potentially_fanout_free;
  _potentially_fanout_free = nullptr;
  delete _cnet_buffers;
  _cnet_buffers = nullptr;
  delete _control_nets;
  _control_nets = nullptr;
}

void Netlist::ForgetReferences() {
  for (Instance* inst : ReferencesOf(this)) inst->ForgetView();
  _refs.Reset();
}

// A view of the system takes what its instances take.
unsigned Netlist::Supports(const Att* att) const { return Type() == PRIM_NONE || SupportsAttribute(att); }

void Netlist::SetName(const char* name) {
  Cell* owner = _owner;
  if (owner) owner->Remove(this);
  Rename(name);
  if (owner) owner->Add(this);
}

void Netlist::CheckTooManyFanouts() {
  int limit = kestrin_flag("hdl_initial_fanout_limit");
  if (limit < 1) return;
  for (Net* net : NetsOf(this)) {
    if (!net->Linefile() || net->IsConstant() || net->NumOfFanouts() <= static_cast<unsigned>(limit)) continue;
    int connections = static_cast<int>(net->NumOfPorts() + net->NumOfPortRefs()) - 1;
    net->Warning("net %s has fanout %d, which exceeds the limit of %d", net->ExternalName(), connections, limit);
  }
}

std::string Netlist::FreeName(const Map& table, const char* prefix, unsigned& counter) const {
  std::string name;
  do name = prefix + std::to_string(counter++);
  while (InUse(table, name));
  return name;
}

// Ports. The index of a port is its position among the live items of the table.

void Netlist::RenumberPorts() {
  unsigned index = 0;
  for (Port* port : PortsOf(this)) port->_index = index++;
}

void Netlist::Add(Port* port) {
  KESTRIN_ASSERT(!port->Owner());
  if (!port->Name()) port->SetName(FreeName(_ports, "lsx_anonymous_port", _anonymous_port_index).c_str());
  if (InUse(_ports, port->Name())) port->SetName(DuplicateName(_ports, port->Name()).c_str());
  Insert(_ports, port);
  port->_owner = this;
  port->_index = _ports.Size() - 1;
  if (_ports.GetValueAt(port->_index) == port) return;
  // It took the slot of a port that was removed.
  RenumberPorts();
  for (Instance* inst : ReferencesOf(this)) inst->InsertPortAt(port->_index);
}

void Netlist::AddPortAt(unsigned pos, Port* port) {
  unsigned count = _ports.Size();
  Add(port);
  if (pos >= count) return;
  if (port->_index != count) { // recycled a slot in the middle
    for (Instance* inst : ReferencesOf(this)) inst->DropPortAt(port->_index);
  }
  std::vector<Port*> order;
  for (Port* present : PortsOf(this))
    if (present != port) order.push_back(present);
  order.insert(order.begin() + pos, port);
  _ports.Reset();
  for (Port* present : order) Insert(_ports, present);
  RenumberPorts();
  KESTRIN_ASSERT_TEXT(IndexOf(port) == pos, "IndexOf(port) == pos");
  for (Instance* inst : ReferencesOf(this)) inst->InsertPortAt(pos);
}

void Netlist::Remove(Port* port) {
  if (!port || port->_owner != this) return;
  unsigned index = port->_index;
  _ports.Remove(port->Name());
  port->_owner = nullptr;
  for (Instance* inst : ReferencesOf(this)) inst->DropPortAt(index);
  if (index < _ports.Size()) RenumberPorts();
}

// The slot that the port leaves is the one that it takes again, so that its index stays.
void Netlist::RenamePort(Port* port, const char* name) {
  _ports.Remove(port->Name());
  port->_owner = nullptr;
  port->SetName(name);
  if (!port->Name()) port->SetName(FreeName(_ports, "lsx_anonymous_port", _anonymous_port_index).c_str());
  if (InUse(_ports, port->Name())) port->SetName(DuplicateName(_ports, port->Name()).c_str());
  Insert(_ports, port);
  port->_owner = this;
}

Port* Netlist::GetPort(const char* name, unsigned nocase_scan) const {
  if (!name) return nullptr;
  if (auto* port = FromWord<Port*>(_ports.GetValue(name))) return port;
  if (nocase_scan)
    for (Port* port : PortsOf(this))
      if (Strings::compare_nocase(port->Name(), name)) return port;
  return nullptr;
}

Port* Netlist::GetPortAt(unsigned pos) const {
  return pos < _ports.Size() ? FromWord<Port*>(_ports.GetValueAt(pos)) : nullptr;
}

unsigned Netlist::IndexOf(const Port* port) const { return port && port->_owner == this ? port->_index : 0; }

void Netlist::Add(PortBus* bus) {
  KESTRIN_ASSERT_TEXT(!bus->Owner(), "!port_bus->Owner()");
  if (!bus->Name()) bus->SetName(FreeName(_port_buses, "lsx_anonymous_portbus", _anonymous_port_index).c_str());
  if (InUse(_port_buses, bus->Name())) bus->SetName(DuplicateName(_port_buses, bus->Name()).c_str());
  Insert(_port_buses, bus);
  bus->_owner = this;
}

void Netlist::Remove(PortBus* bus) {
  if (!bus || bus->_owner != this) return;
  _port_buses.Remove(bus->Name());
  bus->_owner = nullptr;
}

PortBus* Netlist::GetPortBus(const char* name, unsigned nocase_scan) const {
  if (!name) return nullptr;
  if (auto* bus = FromWord<PortBus*>(_port_buses.GetValue(name))) return bus;
  if (nocase_scan)
    for (PortBus* bus : PortBusesOf(this))
      if (Strings::compare_nocase(bus->Name(), name)) return bus;
  return nullptr;
}

PortBus* Netlist::GetPortBusAt(unsigned pos) const {
  return pos < _port_buses.Size() ? FromWord<PortBus*>(_port_buses.GetValueAt(pos)) : nullptr;
}

unsigned Netlist::IndexOf(const PortBus* bus) const { return bus ? _port_buses.IndexOf(bus->Name()) : 0; }

// Nets.

void Netlist::Add(Net* net) {
  KESTRIN_ASSERT(!net->Owner());
  Link(net);
}

void Netlist::Link(Net* net) {
  if (!net->Name()) {
    _auto_nets.Insert(net, net, 0, 1);
    net->_owner = this;
    return;
  }
  if (InUse(_nets, net->Name())) {
    kestrin_debug("Achtung! User net %s collides with existing net, using auto-generated name", net->Name());
    net->SetName(FreeName(_nets, " renamed_net_", _renamed_net_index).c_str());
  }
  Insert(_nets, net);
  net->_owner = this;
}

// While nets are renamed two may share a name, so the net itself is looked for among all of its name.
void Netlist::Unlink(Net* net) {
  net->_owner = nullptr;
  if (!net->Name()) {
    _auto_nets.Remove(static_cast<const void*>(net));
    return;
  }
  MapItem* item = _nets.GetItem(net->Name());
  while (item && item->Value() != net) item = _nets.GetNextSameKeyItem(item);
  _nets.Remove(item);
}

void Netlist::Remove(Net* net) {
  if (!net || net->_owner != this) return;
  Unlink(net);
  ReplaceControlNet(net, nullptr);
  if (_potentially_fanout_free) _potentially_fanout_free->Remove(net);
}

Net* Netlist::GetNet(const char* name) const { return name ? FromWord<Net*>(_nets.GetValue(name)) : nullptr; }

void Netlist::Add(NetBus* bus) {
  KESTRIN_ASSERT_TEXT(!bus->Owner(), "!net_bus->Owner()");
  auto rename = [this](NetBus* renamed) {
    std::string name;
    do name = FreeName(_net_buses, " renamed_bus_", _renamed_net_index);
    while (InUse(_nets, name));
    renamed->SetName(name.c_str());
  };
  if (!bus->Name() || InUse(_nets, bus->Name())) rename(bus);
  if (NetBus* older = GetNetBus(bus->Name())) {
    Remove(older);
    Insert(_net_buses, bus);
    rename(older);
    Insert(_net_buses, older);
    older->_owner = this;
  } else {
    Insert(_net_buses, bus);
  }
  bus->_owner = this;
}

void Netlist::Remove(NetBus* bus) {
  if (!bus || bus->_owner != this) return;
  _net_buses.Remove(bus->Name());
  bus->_owner = nullptr;
}

NetBus* Netlist::GetNetBus(const char* name) const {
  return name ? FromWord<NetBus*>(_net_buses.GetValue(name)) : nullptr;
}

unsigned Netlist::BaseNetNameExists(const char* name) const { return GetNet(name) || GetNetBus(name); }

void Netlist::UniquifyBaseNetName(std::string& out, const char* base, const char* prefix, const char* auto_prefix,
                                  const char* separator) const {
  std::string wanted = base ? base : "";
  out = wanted;
  if (!BaseNetNameExists(out.c_str())) return;
  auto decorated = [&](const std::string& number) {
    std::string name;
    for (const std::string& part : {std::string(prefix ? prefix : ""), (auto_prefix ? auto_prefix : "") + number})
      if (!part.empty()) name.append(part).append(separator);
    return name + wanted;
  };
  out = decorated("");
  for (unsigned number = 1; BaseNetNameExists(out.c_str()); number++) out = decorated("_" + std::to_string(number));
  kestrin_debug("Base net name %s was already in use - using %s", wanted.c_str(), out.c_str());
}

void Netlist::RegisterPotentiallyFanoutFreeNet(Net* net) {
  KESTRIN_ASSERT(net->Owner() == this);
  if (!_potentially_fanout_free) _potentially_fanout_free = new Set(HASH_POINTER);
  _potentially_fanout_free->Insert(net);
}

void Netlist::SweepPotentiallyFanoutFreeNets() {
  if (!_potentially_fanout_free) return;
  Array nets(_potentially_fanout_free->Size());
  for (Net* net : KeysOf<Net*>(_potentially_fanout_free)) nets.InsertLast(net);
  Set visited(HASH_POINTER);
  for (Net* net : ItemsOf<Net*>(&nets))
    if (!visited.Contains(net)) net->DeleteFanoutFreeCone(&visited, /*keep_user_nets*/ 1);
  delete _potentially_fanout_free;
  _potentially_fanout_free = nullptr;
}

// Instances.

void Netlist::PushAutoInstanceName(const char* prefix) { _auto_instance_names.InsertLast(Strings::save(prefix)); }

void Netlist::PopAutoInstanceName() {
  KESTRIN_ASSERT_TEXT(_auto_instance_names.Size() > 1, "_auto_instance_names.Size() > 1");
  Strings::free_string(FromWord<char*>(_auto_instance_names.RemoveLast()));
}

const char* Netlist::CurrentAutoInstanceName() const { return FromWord<const char*>(_auto_instance_names.GetLast()); }

void Netlist::MakeInstanceName(Instance* inst) {
  std::string prefix = " ";
  prefix.append(CurrentAutoInstanceName()).append("_");
  inst->SetName(FreeName(_insts, prefix.c_str(), _inst_index).c_str());
}

namespace {

/// Instances that a user refers to keep their name as the front of a made-up one.
bool IsNamedByUser(const Instance* inst) { return inst->Type() == PRIM_NONE || kestrin_is_register_type(inst->Type()); }

} // namespace

void Netlist::ResolveInstanceClash(Instance* inst) {
  Instance* older = GetInst(inst->Name());
  if (!older) return;
  std::string name;
  if (IsNamedByUser(inst)) {
    name = DuplicateName(_insts, inst->Name());
  } else {
    const char* base = inst->Name();
    std::string prefix = std::string(" ") + (*base == ' ' ? base + 1 : base) + "_";
    do name = FreeName(_insts, prefix.c_str(), _inst_index);
    while (InUse(_insts, name.substr(1)));
  }
  if (inst->Type() == PRIM_NONE) {
    inst->SetName(name.c_str());
    return;
  }
  Unlink(older);
  older->SetName(name.c_str());
  Insert(_insts, older);
  older->_owner = this;
}

void Netlist::Add(Instance* inst) {
  KESTRIN_ASSERT(!inst->Owner());
  Link(inst);
}

void Netlist::Link(Instance* inst) {
  if (inst->Name())
    ResolveInstanceClash(inst);
  else
    MakeInstanceName(inst);
  Insert(_insts, inst);
  inst->_owner = this;
}

void Netlist::Unlink(Instance* inst) {
  _insts.Remove(inst->Name());
  inst->_owner = nullptr;
}

void Netlist::Remove(Instance* inst) {
  if (!inst || inst->_owner != this) return;
  if (_sharing) _sharing->DeleteAllCompatibilityEdges(inst);
  if (_cnet_buffers) _cnet_buffers->Remove(inst);
  SetControlNet(inst, nullptr);
  Unlink(inst);
}

void Netlist::SetControlNet(Instance* inst, Net* net) {
  KESTRIN_ASSERT(!net || net->Owner() == this);
  if (!_control_nets && net) _control_nets = new ControlNets;
  if (_control_nets) _control_nets->Set(inst, net);
}

Net* Netlist::ControlNet(const Instance* inst) const { return _control_nets ? _control_nets->Of(inst) : nullptr; }

void Netlist::ReplaceControlNet(const Net* net, Net* other) {
  if (_control_nets) _control_nets->Replace(net, other);
}

Instance* Netlist::GetInst(const char* name) const {
  return name ? FromWord<Instance*>(_insts.GetValue(name)) : nullptr;
}

// State machines.

void Netlist::Add(Fsm* fsm) {
  KESTRIN_ASSERT(!fsm->Owner());
  if (!fsm->Name()) fsm->SetName(FreeName(_fsms, "fsm", _fsm_index).c_str());
  if (Fsm* older = GetFsm(fsm->Name())) {
    Remove(older);
    Insert(_fsms, fsm);
    older->SetName(FreeName(_fsms, "fsm", _fsm_index).c_str());
    Insert(_fsms, older);
    older->_owner = this;
  } else {
    Insert(_fsms, fsm);
  }
  fsm->_owner = this;
}

void Netlist::Remove(Fsm* fsm) {
  if (!fsm || fsm->_owner != this) return;
  _fsms.Remove(fsm->Name());
  fsm->_owner = nullptr;
}

Fsm* Netlist::GetFsm(const char* name) const { return name ? FromWord<Fsm*>(_fsms.GetValue(name)) : nullptr; }

Fsm* Netlist::GetFsmAt(unsigned pos) const {
  return pos < _fsms.Size() ? FromWord<Fsm*>(_fsms.GetValueAt(pos)) : nullptr;
}

unsigned Netlist::IndexOf(const Fsm* fsm) const { return fsm ? _fsms.IndexOf(fsm->Name()) : 0; }

// Parameters.

void Netlist::AddParam(const char* name, const char* value, const char* type, int variable_type) {
  auto* param = new Param(name ? name : "", value, type, variable_type);
  auto* former = FromWord<Param*>(_params.GetValue(param->Name()));
  _params.Insert(param->Name(), param, 1);
  delete former;
}

Param* Netlist::GetParam(const char* name) const { return name ? FromWord<Param*>(_params.GetValue(name)) : nullptr; }

Param* Netlist::GetParamNoCase(const char* name) const {
  for (Param* param : ParamsOf(this))
    if (Strings::compare_nocase(param->Name(), name)) return param;
  return nullptr;
}

// References.

void Netlist::AddRef(Instance* inst) { _refs.Insert(inst); }

void Netlist::RemoveRef(Instance* inst) { _refs.Remove(inst); }

void Netlist::ReplaceReferences(Netlist* view, unsigned keep_by_name) {
  if (view == this) return;
  for (Instance* inst : ReferencesOf(this)) inst->ReplaceView(view, keep_by_name);
  KESTRIN_ASSERT(!NumOfRefs());
}

// Operators and sharing.

void Netlist::PushOperatorSet(Map* operators) {
  _operator_sets.InsertLast(_operator_set);
  _operator_set = operators;
}

void Netlist::PopOperatorSet() { _operator_set = FromWord<Map*>(_operator_sets.RemoveLast()); }

void Netlist::AddCompatibilityEdge(Instance* a, Instance* b) {
  if (!_sharing) _sharing = new ResourceSharing;
  _sharing->AddCompatibilityEdge(a, b);
}

unsigned long Netlist::MemUsage() const {
  unsigned long bytes = sizeof(Netlist) + _ports.MemUsage() + _port_buses.MemUsage() + _nets.MemUsage() +
                        _auto_nets.MemUsage() + _net_buses.MemUsage() + _insts.MemUsage() + _fsms.MemUsage() +
                        _params.MemUsage() + _refs.MemUsage();
  bytes += NumOfPorts() * sizeof(Port) + NumOfPortBuses() * sizeof(PortBus) + NumOfNetBuses() * sizeof(NetBus);
  for (Net* net : NetsOf(this)) {
    bytes += sizeof(Net) + net->NumOfPortRefs() * sizeof(PortRef) + Strings::len(net->Name());
    if (net->Ports()) bytes += net->Ports()->MemUsage();
  }
  for (Instance* inst : InstancesOf(this)) {
    bytes += sizeof(Instance) + Strings::len(inst->Name());
    if (inst->Connections()) bytes += inst->Connections()->MemUsage();
  }
  if (_sharing) bytes += _sharing->MemUsage();
  return bytes;
}
