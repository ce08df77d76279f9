// Removal of what nothing reads, and default values for what nothing drives.
#include <vector>

#include "database/fsm.h"
#include "database/polish.h"
#include "util/services.h"

namespace {
/// Marks everything that is reachable backwards from what has to stay.
class ConeLabels {
public:
  ConeLabels(const Netlist* netlist, const Set* control_buffers)
      : _netlist(netlist), _control_buffers(control_buffers),
        _is_debugging_ip(kestrin_flag("zelk_enable_ip_debug") != 0), _keeps_all(netlist->IsAttOn(ATT_NOPRUNE) != 0) {
    for (Fsm* fsm : FsmsOf(netlist))
      for (unsigned pos = 0; pos < fsm->NumStates(); pos++) _state_registers.Insert(fsm->GetStateAt(pos));
  }

  void LabelCone() {
    for (Port* port : PortsOf(_netlist))
      if (!port->IsInput() && port->GetNet()) Mark(port->GetNet());
    for (Net* net : NetsOf(_netlist))
      if (!IsMarked(net) && IsSeed(net)) Mark(net);
    for (Instance* inst : InstancesOf(_netlist)) MarkSeed(inst);
    Walk();
  }
  bool IsMarked(const DesignObj* object) const { return _marked.Contains(object); }

private:
  void Mark(Net* net) {
    if (_marked.Insert(net)) _pending.push_back(net);
  }

  bool IsSeed(const Net* net) const {
    if (net->HasAtts() &&
        (net->GetAtt(" :fsm") || net->IsAttOn(ATT_NOPRUNE) || (_is_debugging_ip && net->IsAttOn(ATT_IP_DEBUG_VISIBLE))))
      return true;
    const Instance* driver = net->Driver();
    return driver && (_state_registers.Contains(driver) || (_control_buffers && _control_buffers->Contains(driver)));
  }

  bool IsForced(const Instance* inst) const {
    return _keeps_all || inst->IsAttOn(ATT_NOPRUNE) || (_is_debugging_ip && inst->IsAttOn(ATT_IP_DEBUG_VISIBLE));
  }
  bool ReachesOutside(const Instance* inst) const {
    for (const PortRef* ref : ConnectionsOf(inst))
      if (ref->GetNet()->Owner() != _netlist) return true;
    return false;
  }

  void MarkSeed(Instance* inst) {
    const bool is_user = inst->Type() == PRIM_NONE;
    const bool is_forced = IsForced(inst);
    const bool is_assertion = inst->View() && inst->View()->IsAssertion();
    if (!is_user && !is_forced && !is_assertion && !ReachesOutside(inst)) return;
    _marked.Insert(inst);
    for (const PortRef* ref : ConnectionsOf(inst))
      if (is_user || is_forced || ref->IsInput()) Mark(ref->GetNet());
  }

  void Walk() {
    while (!_pending.empty()) {
      const Net* net = _pending.back();
      _pending.pop_back();
      for (const PortRef* driver : DriversOf(net)) {
        Instance* inst = driver->GetInst();
        if (!_marked.Insert(inst)) continue;
        // What an inout port is on can be driven from the other side, too.
        for (const PortRef* ref : ConnectionsOf(inst))
          if (ref->Direction() != DIR_OUTPUT) Mark(ref->GetNet());
      }
      // Nets that are to become one live and die together.
      for (Net* wired = net->WireNext(); wired && wired != net; wired = wired->WireNext()) Mark(wired);
    }
  }

  const Netlist* _netlist;
  const Set* _control_buffers;
  bool _is_debugging_ip;
  bool _keeps_all;
  Set _state_registers;
  VisitMarks _marked; // nets and instances
  std::vector<Net*> _pending;
};

double Percent(unsigned part, unsigned whole) { return whole ? 100.0 * part / whole : 0.0; }
} // namespace

void Netlist::RemoveDanglingLogic() {
  ProfileScope scope("***Removing dangling logic***");
  ConeLabels labels(this, _cnet_buffers);
  labels.LabelCone();
  const unsigned num_insts = NumOfInsts();
  const unsigned num_nets = NumOfNets();
  const unsigned num_auto_nets = NumOfAutoNets();
  for (Instance* inst : InstancesOf(this))
    if (!labels.IsMarked(inst)) delete inst;
  for (Net* net : NetsOf(this))
    if (!labels.IsMarked(net)) delete net;
  const unsigned deleted_insts = num_insts - NumOfInsts();
  const unsigned deleted_nets = num_nets - NumOfNets();
  const unsigned deleted_auto_nets = num_auto_nets - NumOfAutoNets();
  kestrin_debug("Deleted %9d (%2.3f %%) dangling instances", deleted_insts, Percent(deleted_insts, num_insts));
  kestrin_debug("Deleted %9d (%2.3f %%) dangling nets", deleted_nets, Percent(deleted_nets, num_nets));
  kestrin_debug("Deleted %9d (%2.3f %%) dangling auto-generated nets", deleted_auto_nets,
                Percent(deleted_auto_nets, num_auto_nets));
}

char Net::ProcessDanglingNet() {
  if (!kestrin_is_undriven(this)) return '-';
  if (!_power_up && NumOfPorts() == 1 && !NumOfPortRefs()) return '-';
  return _power_up;
}

namespace {
/// The bits of a bus differ in their default values.
constexpr char mixed_defaults = '*';

char DanglingDefault(DesignObj* element) {
  if (element->NetBusLevel() < 0) return static_cast<Net*>(element)->ProcessDanglingNet();
  return static_cast<NetBus*>(element)->ProcessDanglingNetBus();
}

void ReportUndriven(const DesignObj* net, const char* name, char value) {
  switch (value) {
  case '-': break;
  case 'X': net->Warning("using initial value X (don't care) for net %s", name); break;
  case 0: net->Warning("net %s has no driver or initial value, using the default initial value %c", name, '0'); break;
  default: net->Info("using initial value %c for net %s", value, name);
  }
}

/// Reports the bits of a bus that have a value in common together: the whole bus by its name, a part of it by its
/// range.
void ReportUndrivenBits(const NetBus* bus, const std::string& name, char value) {
  if (value != mixed_defaults) {
    ReportUndriven(bus, name.c_str(), value);
    return;
  }
  std::vector<DesignObj*> elements;
  for (auto [element, holder] : ElementsOf(bus)) elements.push_back(element);
  const int step = bus->IsUp() ? 1 : -1;
  auto index_at = [&](size_t pos) { return std::to_string(bus->LeftIndex() + step * static_cast<int>(pos)); };
  auto default_at = [&](size_t pos) { return elements[pos] ? DanglingDefault(elements[pos]) : '-'; };
  for (size_t pos = 0; pos < elements.size(); pos++) {
    const size_t begin = pos;
    const char first = default_at(begin);
    if (first == mixed_defaults) {
      ReportUndrivenBits(static_cast<const NetBus*>(elements[begin]), name + "[" + index_at(begin) + "]", first);
      continue;
    }
    while (pos + 1 < elements.size() && default_at(pos + 1) == first) pos++;
    const std::string range = pos == begin ? index_at(begin) : index_at(begin) + ".." + index_at(pos);
    ReportUndriven(bus, (name + "[" + range + "]").c_str(), first);
  }
}
} // namespace

char NetBus::ProcessDanglingNetBus() {
  char common = '-';
  bool is_first = true;
  for (auto [element, bus] : ElementsOf(this)) {
    if (!element) continue;
    const char value = DanglingDefault(element);
    if (value == mixed_defaults) return value;
    if (!is_first && value != common) return mixed_defaults;
    common = value;
    is_first = false;
  }
  return common;
}

namespace {
/// Gives undriven nets their values.
class DanglingNetPass {
public:
  explicit DanglingNetPass(Netlist* netlist) : _netlist(netlist), _constants(netlist) {}

  void Run() {
    for (NetBus* bus : NetBusesOf(_netlist))
      if (!bus->GetNetBus() && bus->Linefile())
        ReportUndrivenBits(bus, bus->ExternalName(), bus->ProcessDanglingNetBus());
    // Tying a net merges it with others, so the nets are gathered before.
    std::vector<Net*> undriven;
    for (Net* net : NetsOf(_netlist)) {
      if (!net->NumOfPorts() && !net->NumOfPortRefs()) {
        delete net;
        continue;
      }
      if (net->ProcessDanglingNet() != '-') undriven.push_back(net);
    }
    for (Net* net : undriven) Settle(net);
  }

private:
  void Settle(Net* net) {
    const char value = net->ProcessDanglingNet();
    if (!net->GetNetBus() && net->Linefile()) ReportUndriven(net, net->ExternalName(), value);
    if (net->HasAtts())
      BufferConstant(net, value);
    else if (value == '1')
      _constants.TieToPwr(net);
    else if (value != 'Z')
      _constants.TieToGnd(net);
  }

  /// A net with attributes stays apart from the constant.
  void BufferConstant(Net* net, char value) {
    Net* constant = nullptr;
    switch (value) {
    case 'Z': return;
    case '1': constant = _constants.Pwr(); break;
    case '0':
    case 'X':
    case 0: constant = _constants.Gnd(); break;
    default: KESTRIN_REPORT_INTERNAL("Net has unsupported default value"); return;
    }
    net->Wire(_netlist->ConstBuf(constant, net->Linefile()));
    net->ResolveWires();
  }

  Netlist* _netlist;
  SharedConstants _constants;
};

bool IsUndriven(const Port* port) {
  const Net* net = port->GetNet();
  return !net || kestrin_is_undriven(net);
}

/// Warns about undriven output ports, a bus at a time, and takes their nets away when nothing else is on them.
class DanglingOutputPorts {
public:
  void Process(PortBus* bus) {
    std::vector<Port*> ports;
    CollectPorts(bus, ports);
    unsigned undriven = 0;
    for (const Port* port : ports) undriven += IsUndriven(port);
    if (undriven && undriven == ports.size())
      bus->Warning("output port %s has no driver", bus->ExternalName());
    else if (undriven)
      ReportRuns(bus, ports);
    for (Port* port : ports) DropNet(port);
  }
  void Process(Port* port) {
    if (!IsUndriven(port)) return;
    port->Warning("output port %s has no driver", port->ExternalName());
    DropNet(port);
  }

private:
  static void CollectPorts(const PortBus* bus, std::vector<Port*>& ports) {
    for (DesignObj* element : ElementsOf(bus)) {
      if (element->PortBusLevel() < 0)
        ports.push_back(static_cast<Port*>(element));
      else
        CollectPorts(static_cast<PortBus*>(element), ports);
    }
  }
  static void ReportRuns(const PortBus* bus, const std::vector<Port*>& ports) {
    if (bus->PortBusLevel() > 0) {
      for (const Port* port : ports)
        if (IsUndriven(port)) port->Warning("output port %s has no driver", port->ExternalName());
      return;
    }
    for (unsigned pos = 0; pos < ports.size(); pos++) {
      if (!IsUndriven(ports[pos])) continue;
      const unsigned begin = pos;
      while (pos + 1 < ports.size() && IsUndriven(ports[pos + 1])) pos++;
      std::string name = std::string(bus->ExternalName()) + "[" + std::to_string(bus->IndexOf(ports[begin]));
      if (pos != begin) name += ".." + std::to_string(bus->IndexOf(ports[pos]));
      bus->Warning("output port %s has no driver", (name + "]").c_str());
    }
  }
  static void DropNet(Port* port) {
    Net* net = port->GetNet();
    if (net && net->NumOfPorts() == 1 && !net->NumOfPortRefs()) delete net;
  }
};
} // namespace

void Netlist::ProcessDanglingNets() {
  ProfileScope scope("***Processing dangling nets***");
  DanglingNetPass(this).Run();
  DanglingOutputPorts outputs;
  for (PortBus* bus : PortBusesOf(this))
    if (!bus->GetPortBus() && bus->Direction() == DIR_OUTPUT) outputs.Process(bus);
  for (Port* port : PortsOf(this))
    if (!port->GetPortBus() && port->IsOutput()) outputs.Process(port);
}
