// What a netlist does with the views around it: copies, flattening, grouping, unique views, walks over the hierarchy.
#include "database/netlist.h"

#include <algorithm>
#include <string>
#include <vector>

#include "containers/views.h"
#include "database/cell.h"
#include "database/fsm.h"
#include "database/instance.h"
#include "database/library.h"
#include "database/net.h"
#include "database/operators.h"
#include "database/param.h"
#include "database/primitives.h"
#include "database/views.h"
#include "util/services.h"

// Several ports on one net are a connection through the netlist, unless all of them drive it.
unsigned Netlist::JoinsPorts(const Net* net) const {
  if (net->NumOfPorts() < 2) return 0;
  for (Port* port : PortsOf(net))
    if (!port->IsInput()) return 1;
  return 0;
}

unsigned Netlist::IsBlackBox() const {
  if (NumOfInsts()) return 0;
  for (Net* net : NetsOf(this))
    if (JoinsPorts(net)) return 0;
  return 1;
}

void Netlist::MakeBlackBox() { DeleteContents(); }

namespace {

/// Copies the contents of a netlist into an empty one, object by object in their order.
class NetlistCopier {
public:
  NetlistCopier(const Netlist* from, Netlist* to) : _from(from), _to(to), _copies(HASH_POINTER, 64) {}

  void CopyPorts() {
    for (Port* port : PortsOf(_from)) {
      auto* copy = new Port(nullptr, port->Direction(), port->Linefile());
      Enter(port, copy);
    }
    for (PortBus* bus : PortBusesOf(_from)) {
      auto* copy =
          new PortBus(nullptr, bus->Direction(), bus->LeftIndex(), bus->IsUp(), bus->Linefile(), bus->PortBusLevel());
      Enter(bus, copy);
    }
    for (PortBus* bus : PortBusesOf(_from))
      for (DesignObj* element : ElementsOf(bus)) CopyOf(bus)->Add(CopyOf(element));
  }

  void CopyParams() {
    for (Param* param : ParamsOf(_from))
      _to->AddParam(param->Name(), param->Value(), param->TypeText(), param->VariableType());
  }

  void CopyInstances() {
    for (Instance* inst : InstancesOf(_from)) {
      Instance* copy = inst->Copy();
      _to->Add(copy);
      _copies.Insert(inst, copy);
    }
  }

  void CopyNets() {
    for (Net* net : NetsOf(_from)) {
      Net* copy = net->Copy();
      _to->Add(copy);
      _copies.Insert(net, copy);
      for (Port* port : PortsOf(net)) copy->Connect(CopyOf(port));
      CopyConnections(net, copy);
    }
    for (Instance* inst : InstancesOf(_from))
      if (inst->ControlNet()) CopyOf(inst)->SetControlNet(CopyOf(inst->ControlNet()));
  }

  void CopyNetBuses() {
    for (NetBus* bus : NetBusesOf(_from)) {
      auto* copy = new NetBus(nullptr, bus->LeftIndex(), bus->RightIndex(), bus->Linefile(), bus->NetBusLevel());
      Enter(bus, copy);
    }
    for (NetBus* bus : NetBusesOf(_from)) {
      int index = bus->LeftIndex();
      for (auto [element, owner] : ElementsOf(bus)) {
        if (element && CopyOf(element)) CopyOf(bus)->AddAtIndex(CopyOf(element), index);
        index += bus->IsUp() ? 1 : -1;
      }
    }
  }

  void CopyFsms() {
    for (Fsm* fsm : FsmsOf(_from)) {
      Fsm* copy = fsm->Copy();
      for (unsigned pos = 0; pos < fsm->NumStates(); pos++) {
        Instance* state = fsm->GetStateAt(pos);
        copy->AddState(CopyOf(state), fsm->StateName(state));
      }
      _to->Add(copy);
    }
  }

private:
  /// The copy takes name and attributes before it is added: no two names clash, and all stay in their order.
  template <class Object> void Enter(Object* object, Object* copy) {
    if (object->OrigName()) copy->SetName(object->OrigName());
    copy->SetName(object->Name());
    copy->CopyFrom(*object);
    _to->Add(copy);
    _copies.Insert(object, copy);
  }

  template <class Object> Object* CopyOf(Object* object) const { return FromWord<Object*>(_copies.GetValue(object)); }

  // Drivers are pushed at the head, so that they are made from the last to the first.
  void CopyConnections(const Net* net, Net* copy) {
    std::vector<PortRef*> drivers;
    for (PortRef* ref : DriversOf(net)) drivers.push_back(ref);
    for (auto ref = drivers.rbegin(); ref != drivers.rend(); ++ref) CopyConnection(*ref, copy);
    for (PortRef* ref : PortRefsOf(net))
      if (ref->IsInput()) CopyConnection(ref, copy);
  }

  void CopyConnection(const PortRef* ref, Net* copy) {
    if (Instance* inst = CopyOf(ref->GetInst())) inst->Connect(ref->GetPort(), copy);
  }

  const Netlist* _from;
  Netlist* _to;
  Map _copies; // original to copy, objects of all kinds
};

} // namespace

Netlist* Netlist::NewOfSameKind() const {
  if (IsPrimitive()) return static_cast<const Prim*>(this)->NewOfSameKind();
  if (IsOperator()) return static_cast<const Operator*>(this)->NewOfSameKind();
  return new Netlist(nullptr, Linefile(), _case_sensitive);
}

Netlist* Netlist::Copy() const {
  Netlist* copy = NewOfSameKind();
  copy->CopyNames(*this);
  copy->CopyFrom(*this);
  if (Type() != PRIM_NONE) return copy; // it has its ports from its kind, and nothing else
  NetlistCopier copier(this, copy);
  copier.CopyPorts();
  copier.CopyParams();
  copier.CopyInstances();
  copier.CopyNets();
  copier.CopyNetBuses();
  copier.CopyFsms();
  copy->_inst_index = _inst_index;
  copy->_anonymous_port_index = _anonymous_port_index;
  copy->_renamed_net_index = _renamed_net_index;
  copy->_fsm_index = _fsm_index;
  return copy;
}

// A pass takes away a level, and there are no more levels than views, unless a view contains itself.
unsigned Netlist::Flatten() {
  Set views(HASH_POINTER);
  Hierarchy(views, /*top_down*/ 1);
  unsigned levels = 0;
  for (const Netlist* view : KeysOf<Netlist*>(&views)) levels += view->Type() == PRIM_NONE;
  unsigned total = 0;
  for (unsigned flattened = 1; flattened && levels; total += flattened, levels--) {
    flattened = 0;
    std::vector<Instance*> level;
    for (Instance* inst : InstancesOf(this)) level.push_back(inst);
    for (Instance* inst : level) flattened += inst->Flatten();
  }
  return total;
}

unsigned Netlist::Ungroup(Set& instances) {
  unsigned flattened = 0;
  for (Instance* inst : KeysOf<Instance*>(&instances))
    if (inst->Owner() == this) flattened += inst->Flatten();
  return flattened;
}

namespace {

/// How the instances of a group use a net.
struct net_use {
  bool drives = false; // by an output
  bool both = false;   // by an inout
  bool crosses = false;
  bool driven_outside = false;
};

net_use UseOf(const Net* net, const Set& group) {
  net_use use;
  use.crosses = net->NumOfPorts() || net->IsWired();
  for (Port* port : PortsOf(net)) use.driven_outside |= !port->IsOutput();
  for (PortRef* ref : PortRefsOf(net)) {
    bool inside = group.Contains(ref->GetInst());
    use.crosses |= !inside;
    use.driven_outside |= !inside && !ref->IsInput();
    use.drives |= inside && ref->Direction() == DIR_OUTPUT;
    use.both |= inside && (ref->Direction() == DIR_INOUT || ref->Direction() == DIR_NONE);
  }
  return use;
}

port_dir DirectionOf(const net_use& use) {
  if (use.both || (use.drives && use.driven_outside)) return DIR_INOUT;
  return use.drives ? DIR_OUTPUT : DIR_INPUT;
}

/// Moves a connection to a net of the other side, in list order: drivers come from the last to the first.
void MoveGroupConnections(Net* from, Net* to, const Set& group) {
  std::vector<PortRef*> drivers;
  std::vector<PortRef*> loads;
  for (PortRef* ref : PortRefsOf(from))
    if (group.Contains(ref->GetInst())) (ref->IsInput() ? loads : drivers).push_back(ref);
  std::reverse(drivers.begin(), drivers.end());
  drivers.insert(drivers.end(), loads.begin(), loads.end());
  for (PortRef* ref : drivers) {
    from->Remove(ref);
    to->Add(ref);
  }
}

/// Moves the contents of a group into its view.
class Grouper {
public:
  /// Of the instances, those of the netlist.
  Grouper(Netlist* outer, Netlist* view, Set& instances) : _outer(outer), _view(view) {
    for (Instance* inst : KeysOf<Instance*>(&instances)) {
      if (inst->Owner() != outer) continue;
      _group.Insert(inst);
      for (PortRef* ref : ConnectionsOf(inst)) _nets.Insert(ref->GetNet());
    }
    for (Instance* inst : InstancesOf(outer)) {
      Net* control = inst->ControlNet();
      if (!control) continue;
      if (_group.Contains(inst)) {
        _nets.Insert(control);
        _controls.emplace_back(inst, control);
      } else {
        _outer_controls.Insert(control);
      }
    }
  }

  /// State machines go along as a whole. What is left of one whose registers come apart is no machine: with some of its
  /// states it would be encoded anew as if there were no others. Its registers stay what they are.
  void MoveFsms() {
    for (Fsm* fsm : FsmsOf(_outer)) {
      unsigned leaving = 0;
      for (unsigned pos = 0; pos < fsm->NumStates(); pos++) leaving += _group.Contains(fsm->GetStateAt(pos));
      if (!leaving) continue;
      if (leaving < fsm->NumStates()) {
        kestrin_debug("State machine %s is torn by a group and is none any more", fsm->ExternalName());
        delete fsm;
        continue;
      }
      _outer->Remove(fsm);
      _view->Add(fsm);
    }
  }

  void MoveInstances() {
    for (Instance* member : KeysOf<Instance*>(&_group)) {
      _outer->Remove(member);
      _view->Add(member);
    }
  }

  /// Nets that cross the border get a port and a net behind it, and all others move.
  void MoveNets(Instance* inst) {
    Map inner_nets(HASH_POINTER);
    for (Net* net : KeysOf<Net*>(&_nets)) inner_nets.Insert(net, Crosses(net) ? Split(net, inst) : Move(net));
    for (auto [member, control] : _controls) member->SetControlNet(FromWord<Net*>(inner_nets.GetValue(control)));
  }

private:
  bool Crosses(const Net* net) const { return _outer_controls.Contains(net) || UseOf(net, _group).crosses; }

  Net* Move(Net* net) {
    if (net->GetNetBus()) net->GetNetBus()->Remove(net);
    _outer->Remove(net);
    _view->Add(net);
    return net;
  }

  Net* Split(Net* net, Instance* inst) {
    auto* port = new Port(net->Name(), DirectionOf(UseOf(net, _group)), net->Linefile());
    _view->Add(port);
    auto* inner = new Net(net->Name(), net->Linefile());
    _view->Add(inner);
    inner->Connect(port);
    MoveGroupConnections(net, inner, _group);
    inst->Connect(port, net);
    return inner;
  }

  Netlist* _outer;
  Netlist* _view;
  Set _group{HASH_POINTER};
  Set _nets{HASH_POINTER};
  std::vector<std::pair<Instance*, Net*>> _controls; // conditions of the group's instances
  Set _outer_controls{HASH_POINTER};                 // conditions of all others
};

} // namespace

Instance* Netlist::Group(Set& instances, const char* instance_name, const char* cell_name, const char* netlist_name) {
  Library* library = _owner ? _owner->Owner() : nullptr;
  KESTRIN_ASSERT(library);
  auto* cell = new Cell(cell_name);
  library->Add(cell);
  auto* view = new Netlist(netlist_name, Linefile(), _case_sensitive);
  cell->Add(view);
  auto* inst = new Instance(instance_name, view);
  Grouper grouper(this, view, instances);
  grouper.MoveFsms();
  grouper.MoveInstances();
  Add(inst);
  grouper.MoveNets(inst);
  return inst;
}

namespace {

/// Views that are being walked, so that a view which contains itself ends the walk.
void UniquifyBelow(Netlist* netlist, Set& seen, Set& open) {
  open.Insert(netlist);
  for (Instance* inst : InstancesOf(netlist)) {
    Netlist* view = inst->View();
    if (!view || view->Type() != PRIM_NONE || open.Contains(view) || view->IsBlackBox()) continue;
    if (!seen.Insert(view)) {
      Netlist* copy = view->Copy();
      copy->SetName(nullptr);
      if (view->Owner()) view->Owner()->Add(copy);
      inst->ReplaceView(copy, /*by_name*/ 1);
      seen.Insert(copy);
      view = copy;
    }
    UniquifyBelow(view, seen, open);
  }
  open.Remove(netlist);
}

} // namespace

void Netlist::Uniquify(Set& seen) {
  Set open(HASH_POINTER);
  seen.Insert(this);
  UniquifyBelow(this, seen, open);
}

namespace {

/// The netlists that a netlist refers to: views of its instances, and owners of foreign nets that it is connected to.
void NetlistsBelow(const Netlist* netlist, std::vector<Netlist*>& below) {
  for (Instance* inst : InstancesOf(netlist)) {
    if (inst->View()) below.push_back(inst->View());
    for (PortRef* ref : ConnectionsOf(inst))
      if (Netlist* owner = ref->GetNet()->Owner(); owner && owner != netlist) below.push_back(owner);
  }
  for (Net* net : NetsOf(netlist))
    for (Net* wired = net->WireNext(); wired && wired != net; wired = wired->WireNext())
      if (Netlist* owner = wired->Owner(); owner && owner != netlist) below.push_back(owner);
}

struct hierarchy_step {
  Netlist* netlist;
  std::vector<Netlist*> below;
  size_t next = 0;
};

} // namespace

// Depth first, a netlist behind all that is below it; read backwards, parents stand before their children.
void Netlist::Hierarchy(Set& out, unsigned top_down) {
  std::vector<Netlist*> order;
  Set visited(out);
  std::vector<hierarchy_step> open;
  auto enter = [&](Netlist* netlist) {
    if (!visited.Insert(netlist)) return;
    open.push_back({netlist, {}, 0});
    NetlistsBelow(netlist, open.back().below);
  };
  enter(this);
  while (!open.empty()) {
    hierarchy_step& step = open.back();
    if (step.next < step.below.size()) {
      enter(step.below[step.next++]);
      continue;
    }
    order.push_back(step.netlist);
    open.pop_back();
  }
  if (top_down) std::reverse(order.begin(), order.end());
  for (Netlist* netlist : order) out.Insert(netlist);
}
