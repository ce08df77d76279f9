#include "database/netlistchecker.h"

#include "containers/assertion.h"
#include "containers/views.h"
#include "database/views.h"

NetlistChecker::NetlistChecker(const Netlist* netlist) : _netlist(netlist), _ringed(HASH_POINTER) {
  CheckPorts();
  CheckPortBuses();
  CheckInstances();
  CheckNets();
  CheckNetBuses();
  CheckFsms();
  CheckReferences();
  CheckOwner();
}

std::string NetlistChecker::Report() const {
  std::string report;
  for (const std::string& fault : _faults) report += fault + "\n";
  return report;
}

void NetlistChecker::Expect(bool condition, const char* kind, const DesignObj* object, const char* rule) {
  if (!condition) _faults.push_back(std::string(kind) + " " + object->ExternalName() + ": " + rule);
}

void NetlistChecker::CheckPorts() {
  unsigned position = 0;
  for (auto [key, port] : Entries<const char*, Port*>(&_netlist->Ports())) {
    Expect(key == port->Name() && _netlist->GetPort(key) == port, "port", port, "is filed under its name");
    Expect(port->Owner() == _netlist, "port", port, "belongs to the netlist");
    Expect(port->Index() == position++, "port", port, "has its position as index");
    const Net* net = port->GetNet();
    Expect(!net || net->Owner() == _netlist, "port", port, "is on a net of the netlist");
    Expect(!net || (net->Ports() && net->Ports()->Contains(port)), "port", port, "is known to its net");
    if (const PortBus* bus = port->GetPortBus())
      Expect(bus->Elements().Contains(static_cast<DesignObj*>(port)), "port", port, "is an element of its bus");
  }
}

void NetlistChecker::CheckPortBuses() {
  for (auto [key, bus] : Entries<const char*, PortBus*>(&_netlist->PortBuses())) {
    Expect(key == bus->Name() && _netlist->GetPortBus(key) == bus, "port bus", bus, "is filed under its name");
    Expect(bus->Owner() == _netlist, "port bus", bus, "belongs to the netlist");
    if (const PortBus* outer = bus->GetPortBus())
      Expect(outer->Owner() == _netlist && outer->Elements().Contains(static_cast<DesignObj*>(bus)), "port bus", bus,
             "is an element of its bus");
    for (DesignObj* element : ElementsOf(bus)) {
      Expect(element->GetPortBus() == bus, "port bus", bus, "is the bus of its elements");
      Expect(element->PortBusLevel() + 1 == bus->PortBusLevel(), "port bus", bus, "is a level above its elements");
    }
  }
}

void NetlistChecker::CheckInstances() {
  for (auto [key, inst] : Entries<const char*, Instance*>(&_netlist->Insts())) {
    Expect(key == inst->Name() && _netlist->GetInst(key) == inst, "instance", inst, "is filed under its name");
    Expect(inst->Owner() == _netlist, "instance", inst, "belongs to the netlist");
    Expect(!inst->ControlNet() || inst->ControlNet()->Owner() == _netlist, "instance", inst,
           "has a condition in the netlist");
    CheckInstance(inst);
  }
}

void NetlistChecker::CheckInstance(const Instance* inst) {
  const Netlist* view = inst->View();
  if (!view) {
    Expect(!inst->NumOfPortRefs(), "instance", inst, "without view has no connections");
    return;
  }
  Expect(view->References().Contains(inst), "instance", inst, "is known to its view");
  const Array* connections = inst->Connections();
  if (!connections) return;
  Expect(connections->Size() <= view->NumOfPorts(), "instance", inst, "has no more connections than ports");
  for (unsigned index = 0; index < connections->Size(); index++) {
    const auto* ref = FromWord<const PortRef*>(connections->At(index));
    if (!ref) continue;
    Expect(ref->GetInst() == inst, "instance", inst, "is the one of its connections");
    Expect(ref->GetPort()->Owner() == view && ref->GetPort()->Index() == index, "instance", inst,
           "has its connections at the positions of their ports");
    Expect(ref->GetNet() && ref->GetNet()->Owner() == _netlist, "instance", inst, "is on nets of the netlist");
  }
}

void NetlistChecker::CheckNets() {
  for (auto [key, net] : Entries<const char*, Net*>(&_netlist->NamedNets()))
    Expect(key == net->Name() && _netlist->GetNet(key) == net, "net", net, "is filed under its name");
  for (auto [key, net] : Entries<const Net*, Net*>(&_netlist->AutoNets()))
    Expect(key == net && !net->Name(), "net", net, "without name is filed under itself");
  for (Net* net : NetsOf(_netlist)) {
    Expect(net->Owner() == _netlist, "net", net, "belongs to the netlist");
    for (Port* port : PortsOf(net))
      Expect(port->GetNet() == net && port->Owner() == _netlist, "net", net, "is the net of its ports");
    if (NetBus* bus = net->GetNetBus())
      Expect(bus->Owner() == _netlist && bus->Elements().GetItem(static_cast<DesignObj*>(net)), "net", net,
             "is an element of its bus");
    CheckConnections(net);
    CheckRing(net);
  }
  for (Net* net : KeysOf<Net*>(_netlist->_potentially_fanout_free))
    Expect(net->Owner() == _netlist, "net", net, "to be swept belongs to the netlist");
}

// The list is circular backwards only.
void NetlistChecker::CheckConnections(const Net* net) {
  unsigned count = 0;
  bool loads_began = false;
  bool driver_found = !net->_driver_valid || !net->_driver;
  const bool drives_constant = net->_driver && net->_driver->GetInst()->IsConstantPrimitive();
  const PortRef* before = net->GetLastPortRef();
  for (PortRef* ref : PortRefsOf(net)) {
    Expect(ref->GetNet() == net, "net", net, "is the net of its connections");
    Expect(ref->Previous() == before, "net", net, "has its connections linked both ways");
    Expect(!loads_began || ref->IsInput(), "net", net, "has its drivers before its loads");
    Expect(ref->GetInst()->GetPortRef(ref->GetPort()) == ref, "net", net, "is known to the instances on it");
    loads_began |= ref->IsInput();
    driver_found |= ref == net->_driver && !ref->IsInput();
    Expect(ref->IsInput() || !net->_driver_valid || drives_constant || !ref->GetInst()->IsConstantPrimitive(), "net",
           net, "has the value of its constant driver");
    before = ref;
    if (++count > net->NumOfPortRefs()) break;
  }
  Expect(count == net->NumOfPortRefs(), "net", net, "counts its connections");
  Expect(driver_found, "net", net, "remembers a driver that it has");
}

void NetlistChecker::CheckRing(const Net* net) {
  if (!net->WireNext() || !_ringed.Insert(net)) return;
  const Net* at = net->WireNext();
  while (at && at != net && _ringed.Insert(at)) at = at->WireNext();
  Expect(at == net, "net", net, "is wired in a ring");
}

void NetlistChecker::CheckNetBuses() {
  for (auto [key, bus] : Entries<const char*, NetBus*>(&_netlist->NetBuses())) {
    Expect(key == bus->Name() && _netlist->GetNetBus(key) == bus, "net bus", bus, "is filed under its name");
    Expect(bus->Owner() == _netlist, "net bus", bus, "belongs to the netlist");
    if (NetBus* outer = bus->GetNetBus())
      Expect(outer->Owner() == _netlist && outer->Elements().GetItem(static_cast<DesignObj*>(bus)), "net bus", bus,
             "is an element of its bus");
    Expect(bus->Elements().Size() <= bus->Size(), "net bus", bus, "has no more elements than indices");
    for (auto [element, value] : ElementsOf(bus)) {
      Expect(value == bus, "net bus", bus, "is what its elements are filed with");
      Expect(!element || element->GetNetBus() == bus, "net bus", bus, "is the bus of its elements");
      Expect(!element || element->NetBusLevel() + 1 == bus->NetBusLevel(), "net bus", bus,
             "is a level above its elements");
    }
  }
}

void NetlistChecker::CheckFsms() {
  for (auto [key, fsm] : Entries<const char*, Fsm*>(&_netlist->Fsms())) {
    Expect(key == fsm->Name() && _netlist->GetFsm(key) == fsm, "state machine", fsm, "is filed under its name");
    Expect(fsm->Owner() == _netlist, "state machine", fsm, "belongs to the netlist");
    for (unsigned pos = 0; pos < fsm->NumStates(); pos++) {
      const Instance* state = fsm->GetStateAt(pos);
      Expect(state->Owner() == _netlist && kestrin_is_register_type(state->Type()), "state machine", fsm,
             "has registers of the netlist as states");
    }
  }
}

void NetlistChecker::CheckReferences() {
  for (Instance* inst : ReferencesOf(_netlist))
    Expect(inst->View() == _netlist, "instance", inst, "refers to the netlist that knows it");
}

void NetlistChecker::CheckOwner() {
  const Cell* cell = _netlist->Owner();
  Expect(!cell || cell->GetNetlist(_netlist->Name()) == _netlist, "netlist", _netlist, "is a view of its cell");
  for (auto [key, param] : Entries<const char*, Param*>(&_netlist->Params()))
    Expect(key == param->Name(), "netlist", _netlist, "has its parameters filed under their names");
}

#ifndef NDEBUG
void kestrin_check_netlist(const Netlist* netlist, const char* after) {
  const NetlistChecker checker(netlist);
  if (checker.IsConsistent()) return;
  const std::string text = std::string("inconsistent netlist after ") + after + ": " + checker.Faults().front();
  kestrin_assertion_failed(text.c_str(), __FILE__, __LINE__);
}
#endif
