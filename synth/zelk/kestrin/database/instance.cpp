// Instance: connections by port, the roles of the view's ports, changes of the view and flattening.
#include "database/instance.h"

#include <string>
#include <vector>

#include "containers/views.h"
#include "database/fsm.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/primitives.h"
#include "database/views.h"
#include "util/services.h"

Instance::Instance(const char* name, Netlist* view, unsigned long linefile) : DesignObj(name, linefile), _view(view) {
  if (_view) _view->AddRef(this);
}

Instance::Instance(const Instance& other, int) : DesignObj(nullptr, other.Linefile()), _view(other._view) {
  CopyNames(other);
  CopyFrom(other);
  _sequence = other._sequence;
  if (_view) _view->AddRef(this);
}

Instance::~Instance() {
  if (Fsm* fsm = _owner && _view ? Instance::GetFsm() : nullptr) fsm->RemoveState(this);
  DisconnectAll();
  delete _connections;
  if (_view) _view->RemoveRef(this);
  if (_owner) _owner->Remove(this);
}

unsigned Instance::Supports(const Att* att) const {
  if (!_view) return 0;
  if (Type() != PRIM_NONE) return _view->SupportsAttribute(att);
  return !att || kestrin_att_supported(ATT_ON_USER_INSTANCE, att->Type());
}

void Instance::SetName(const char* name) {
  Netlist* owner = _owner;
  if (owner) owner->Unlink(this);
  Rename(name);
  if (owner) owner->Link(this);
}

Instance* Instance::Copy() const { return new Instance(*this, 0); }

const Map* Instance::Params() const { return _view ? &_view->Params() : nullptr; }

void Instance::AddParam(const char* name, const char* value, const char* type, int variable_type) {
  if (_view) _view->AddParam(name, value, type, variable_type);
}

Param* Instance::GetParam(const char* name) const { return _view ? _view->GetParam(name) : nullptr; }

Param* Instance::GetParamNoCase(const char* name) const { return _view ? _view->GetParamNoCase(name) : nullptr; }

Fsm* Instance::GetFsm() const {
  if (!_owner || !_owner->NumOfFsms() || !kestrin_is_register_type(Type())) return nullptr;
  for (Fsm* fsm : FsmsOf(_owner))
    if (fsm->ContainsState(this)) return fsm;
  return nullptr;
}

void Instance::Instantiate(Netlist* view) {
  KESTRIN_ASSERT(!_view);
  _view = view;
  if (_view) _view->AddRef(this);
}

void Instance::SetControlNet(Net* net) {
  if (_owner) _owner->SetControlNet(this, net);
}

Net* Instance::ControlNet() const { return _owner ? _owner->ControlNet(this) : nullptr; }

unsigned Instance::Connect(Port* port, Net* net) {
  KESTRIN_ASSERT(port && net);
  KESTRIN_ASSERT(port->Owner() == _view);
  if (_owner && net->Owner() && net->Owner() != _owner) {
    Error("connection from %s to external net %s is not allowed", ExternalName(), net->ExternalName());
    return 0;
  }
  if (GetPortRef(port)) {
    Error("port %s is already connected to instance %s", port->ExternalName(), ExternalName());
    return 0;
  }
  auto* ref = new PortRef(this, port, net);
  Add(ref);
  net->Add(ref);
  return 1;
}

void Instance::Disconnect(Port* port) {
  PortRef* ref = GetPortRef(port);
  if (!ref) return;
  ref->GetNet()->Remove(ref);
  Remove(ref);
  delete ref;
}

void Instance::Reconnect(Port* port, Net* net) {
  Disconnect(port);
  if (net) Connect(port, net);
}

void Instance::DisconnectAll() {
  for (PortRef* ref : ConnectionsOf(this)) Disconnect(ref->GetPort());
}

PortRef* Instance::GetPortRef(const Port* port) const {
  if (!_connections || !port || port->Owner() != _view || port->Index() >= _connections->Size()) return nullptr;
  return FromWord<PortRef*>(_connections->At(port->Index()));
}

Net* Instance::GetNet(const Port* port) const {
  PortRef* ref = GetPortRef(port);
  return ref ? ref->GetNet() : nullptr;
}

unsigned Instance::NumOfPortRefs() const {
  unsigned count = 0;
  for (PortRef* ref : ConnectionsOf(this)) count += ref != nullptr;
  return count;
}

// The view may have got ports since the array was made.
void Instance::Add(PortRef* ref) {
  unsigned index = ref->GetPort()->Index();
  if (!_connections)
    _connections = new Array(_view->NumOfPorts(), nullptr);
  else if (index >= _connections->Size())
    _connections->ReSize(_view->NumOfPorts());
  _connections->Insert(index, ref);
}

void Instance::Remove(PortRef* ref) { _connections->Insert(ref->GetPort()->Index(), nullptr); }

void Instance::DropPortAt(unsigned index) {
  if (!_connections || index >= _connections->Size()) return;
  if (auto* ref = FromWord<PortRef*>(_connections->At(index))) {
    ref->GetNet()->Remove(ref);
    delete ref;
  }
  _connections->Remove(index);
}

void Instance::InsertPortAt(unsigned index) {
  if (_connections && index < _connections->Size()) _connections->InsertBefore(index, nullptr);
}

void Instance::ForgetView() {
  for (PortRef* ref : ConnectionsOf(this)) {
    ref->GetNet()->Remove(ref);
    delete ref;
  }
  delete _connections;
  _connections = nullptr;
  _view = nullptr;
}

prim_type_enum Instance::Type() const { return _view ? _view->Type() : PRIM_NONE; }
unsigned Instance::IsPrimitive() const { return _view ? _view->IsPrimitive() : 0; }
unsigned Instance::IsOperator() const { return _view ? _view->IsOperator() : 0; }
unsigned Instance::IsCombinational() const { return _view ? _view->IsCombinational() : 0; }
buffer_type_enum Instance::BufferType() const { return _view ? _view->BufferType() : NONE; }

void Instance::ChangeBufferType(buffer_type_enum type) {
  KESTRIN_ASSERT(Type() == PRIM_BUF);
  PrimBuf* view = PrimBuf::Static(type);
  if (view && view != _view) ReplaceView(view, 1);
}

#define KESTRIN_ROLE(getter)                                                                                           \
  Net* Instance::getter() const { return _view ? RoleNet(_view->getter()) : nullptr; }
KESTRIN_ROLE(GetInput)
KESTRIN_ROLE(GetInput1)
KESTRIN_ROLE(GetInput2)
KESTRIN_ROLE(GetOutput)
KESTRIN_ROLE(GetControl)
KESTRIN_ROLE(GetAsyncCond)
KESTRIN_ROLE(GetAsyncVal)
KESTRIN_ROLE(GetSet)
KESTRIN_ROLE(GetReset)
KESTRIN_ROLE(GetClock)
KESTRIN_ROLE(GetZ)
KESTRIN_ROLE(GetALoad)
KESTRIN_ROLE(GetAData)
KESTRIN_ROLE(GetCin)
KESTRIN_ROLE(GetCout)
#undef KESTRIN_ROLE

#define KESTRIN_BIT_ROLE(getter)                                                                                       \
  Net* Instance::getter(unsigned bit) const { return _view ? RoleNet(_view->getter(bit)) : nullptr; }
KESTRIN_BIT_ROLE(GetInputBit)
KESTRIN_BIT_ROLE(GetInput1Bit)
KESTRIN_BIT_ROLE(GetInput2Bit)
KESTRIN_BIT_ROLE(GetOutputBit)
#undef KESTRIN_BIT_ROLE

#define KESTRIN_VIEW_SIZE(getter)                                                                                      \
  unsigned Instance::getter() const { return _view ? _view->getter() : 0; }
KESTRIN_VIEW_SIZE(OutputSize)
KESTRIN_VIEW_SIZE(InputSize)
KESTRIN_VIEW_SIZE(Input1Size)
KESTRIN_VIEW_SIZE(Input2Size)
KESTRIN_VIEW_SIZE(IsSigned)
#undef KESTRIN_VIEW_SIZE

void Instance::ConnectRole(const Port* port, Net* net) {
  if (port && net) Connect(const_cast<Port*>(port), net);
}

void Instance::ConnectBits(const Array* nets, Port* (Netlist::*bit)(unsigned) const) {
  if (!_view) return;
  unsigned number = 0;
  for (Net* net : ItemsOf<Net*>(nets)) ConnectRole((_view->*bit)(number++), net);
}

void Instance::ConnectInput(const Array* nets) { ConnectBits(nets, &Netlist::GetInputBit); }
void Instance::ConnectInput1(const Array* nets) { ConnectBits(nets, &Netlist::GetInput1Bit); }
void Instance::ConnectInput2(const Array* nets) { ConnectBits(nets, &Netlist::GetInput2Bit); }
void Instance::ConnectOutput(const Array* nets) { ConnectBits(nets, &Netlist::GetOutputBit); }
void Instance::ConnectControl(Net* net) { ConnectRole(_view ? _view->GetControl() : nullptr, net); }
void Instance::ConnectCin(Net* net) { ConnectRole(_view ? _view->GetCin() : nullptr, net); }
void Instance::ConnectCout(Net* net) { ConnectRole(_view ? _view->GetCout() : nullptr, net); }

void Instance::ReplaceView(Netlist* view, unsigned by_name) {
  std::vector<std::pair<std::string, Net*>> connected;
  for (PortRef* ref : ConnectionsOf(this)) connected.emplace_back(ref->GetPort()->Name(), ref->GetNet());
  DisconnectAll();
  delete _connections;
  _connections = nullptr;
  if (_view) _view->RemoveRef(this);
  _view = view;
  if (!_view) return;
  _view->AddRef(this);
  unsigned position = 0;
  for (auto& [name, net] : connected) {
    Port* new_port = by_name ? view->GetPort(name.c_str()) : view->GetPortAt(position++);
    KESTRIN_ASSERT_TEXT(new_port || by_name, "new_port");
    if (new_port) Connect(new_port, net);
  }
}

namespace {

/// The name in the outer netlist of what an instance's view holds. A system name stays one.
std::string FlattenedName(const char* outer, const char* inner) {
  std::string prefix = outer && *outer ? outer : " flat";
  if (*inner != ' ') return prefix + "_" + inner;
  return (prefix.front() == ' ' ? "" : " ") + prefix + "_" + (inner + 1);
}

/// Copies the inside of an instance's view into the netlist of the instance.
class Flattener {
public:
  explicit Flattener(Instance* inst) : _inst(inst), _owner(inst->Owner()), _view(inst->View()) {}

  /// A net inside that joins ports joins the nets outside too.
  void JoinOuterNets() {
    for (PortRef* ref : ConnectionsOf(_inst)) {
      const Net* inner = ref->GetPort()->GetNet();
      if (!inner || inner->NumOfPorts() < 2) continue;
      for (Port* port : PortsOf(inner)) ref->GetNet()->Wire(_inst->GetNet(port));
      ref->GetNet()->ResolveWires();
    }
  }

  void CopyInstances(Array* new_instances) {
    for (Instance* inner : InstancesOf(_view)) {
      Instance* copy = inner->Copy();
      copy->SetName(FlattenedName(_inst->Name(), inner->Name()).c_str());
      if (!copy->Linefile()) copy->SetLinefile(_inst->Linefile());
      _owner->Add(copy);
      _instances.Insert(inner, copy);
      if (new_instances) new_instances->InsertLast(copy);
    }
  }

  void CopyNets() {
    for (Net* inner : NetsOf(_view)) {
      Net* outer = OuterNet(inner);
      if (!outer) {
        outer = inner->Copy();
        if (inner->Name()) outer->SetName(FlattenedName(_inst->Name(), inner->Name()).c_str());
        _owner->Add(outer);
      }
      _nets.Insert(inner, outer);
      Recreate(inner, outer);
    }
    for (Instance* inner : InstancesOf(_view))
      if (inner->ControlNet())
        FromWord<Instance*>(_instances.GetValue(inner))
            ->SetControlNet(FromWord<Net*>(_nets.GetValue(inner->ControlNet())));
  }

  /// The registers stay what they are.
  void CopyFsms() {
    for (Fsm* inner : FsmsOf(_view)) {
      Fsm* copy = inner->Copy();
      copy->SetName(FlattenedName(_inst->Name(), inner->Name()).c_str());
      for (unsigned pos = 0; pos < inner->NumStates(); pos++) {
        Instance* state = inner->GetStateAt(pos);
        copy->AddState(FromWord<Instance*>(_instances.GetValue(state)), inner->StateName(state));
      }
      _owner->Add(copy);
    }
  }

private:
  Net* OuterNet(const Net* inner) const {
    for (Port* port : PortsOf(inner))
      if (Net* outer = _inst->GetNet(port)) return outer;
    return nullptr;
  }

  void Recreate(const Net* inner, Net* outer) {
    std::vector<PortRef*> drivers;
    for (PortRef* ref : DriversOf(inner)) drivers.push_back(ref);
    for (auto ref = drivers.rbegin(); ref != drivers.rend(); ++ref) Recreate(*ref, outer);
    for (PortRef* ref : PortRefsOf(inner))
      if (ref->IsInput()) Recreate(ref, outer);
  }

  void Recreate(const PortRef* ref, Net* outer) {
    auto* new_inst = FromWord<Instance*>(_instances.GetValue(ref->GetInst()));
    KESTRIN_ASSERT(new_inst);
    new_inst->Connect(ref->GetPort(), outer);
  }

  Instance* _inst;
  Netlist* _owner;
  Netlist* _view;
  Map _instances{HASH_POINTER};
  Map _nets{HASH_POINTER};
};

} // namespace

unsigned Instance::Flatten(Array* new_instances) {
  if (!_owner || !_view || _view == _owner || _view->Type() != PRIM_NONE || _view->IsBlackBox()) return 0;
  Flattener flattener(this);
  flattener.JoinOuterNets();
  flattener.CopyInstances(new_instances);
  flattener.CopyNets();
  flattener.CopyFsms();
  delete this;
  return 1;
}

unsigned Instance::DeleteIfFanoutFree(Set* inputs, unsigned keep_user_nets) {
  if (Type() == PRIM_NONE || _view->IsAssertion() || IsAttOn(ATT_NOPRUNE)) return 0;
  if (IsAttOn(ATT_IP_DEBUG_VISIBLE) && kestrin_flag("zelk_enable_ip_debug")) return 0;
  for (PortRef* ref : ConnectionsOf(this)) {
    if (ref->IsInput()) continue;
    if (ref->Direction() == DIR_INOUT) return 0;
    const Net* net = ref->GetNet();
    if (!net->IsFanoutFree() || (keep_user_nets && net->Linefile())) return 0;
  }
  if (inputs)
    for (PortRef* ref : ConnectionsOf(this))
      if (ref->IsInput()) inputs->Insert(ref->GetNet());
  delete this;
  return 1;
}

unsigned Instance::Propagate() { return _view ? _view->Propagate(this) : 0; }

LutInstance::LutInstance(const char* name, Netlist* view, unsigned function, unsigned long linefile)
    : Instance(name, view, linefile), _function(function) {
  KESTRIN_ASSERT(view && view->Type() == OPER_LUT && view->InputSize() <= max_inputs);
}

LutInstance::LutInstance(const LutInstance& other, int copy_tag)
    : Instance(other, copy_tag), _function(other._function) {}

Instance* LutInstance::Copy() const { return new LutInstance(*this, 0); }

unsigned kestrin_compatible_secondaries(Instance* a, Instance* b, Set* visited) {
  if (a == b) return 1;
  if (!a || !b || !a->View() || a->View() != b->View()) return 0;
  const Port* data = a->View()->GetInput();
  for (Port* port : PortsOf(a->View())) {
    if (port->IsOutput() || port == data) continue;
    Net* net = a->GetNet(port);
    Net* other = b->GetNet(port);
    if (net != other && !kestrin_equivalent_nets(net, other, visited)) return 0;
  }
  return 1;
}
