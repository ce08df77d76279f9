// Nets that elaboration wired together become one; nets of other netlists that a hierarchical name reached become
// ports. Loops of logic can be cut by latches.
#include <string>
#include <vector>

#include "database/polish.h"

void Netlist::ResolveWires() {
  // A ring is one net afterwards; the walk meets only what is left of it.
  for (Net* net : NetsOf(this))
    if (net->IsWired()) net->ResolveWires();
}

namespace {
/// Characters with a meaning in hierarchical names become underscores.
std::string FlatName(std::string name) {
  for (char& c : name)
    if (std::string("|:[]").find(c) != std::string::npos) c = '_';
  return name;
}

std::string Text(const char* value) { return value ? value : ""; }
} // namespace

void Netlist::ProcessGlobals() {
  Set foreign;
  auto collect = [&](Net* net) {
    if (!net) return;
    if (net->Owner() != this) foreign.Insert(net);
    for (Net* wired = net->WireNext(); wired && wired != net; wired = wired->WireNext())
      if (wired->Owner() != this) foreign.Insert(wired);
  };
  for (const Instance* inst : InstancesOf(this))
    for (const PortRef* ref : ConnectionsOf(inst)) collect(ref->GetNet());
  for (const Port* port : PortsOf(this)) collect(port->GetNet());
  for (Net* net : NetsOf(this)) collect(net);

  for (Net* outer : KeysOf<Net*>(&foreign)) {
    const Netlist* owner = outer->Owner();
    const std::string name =
        FlatName("global.bp." + Text(owner ? owner->GetAttValue(" library_name") : nullptr) + "." +
                 Text(owner ? owner->GetAttValue(" cell_name") : nullptr) + "." + Text(outer->Name()));
    Net* inner = new Net(outer->Name() ? FlatName(outer->Name()).c_str() : nullptr);
    inner->CopyFrom(*outer);
    Add(inner);
    for (PortRef* ref : PortRefsOf(outer)) {
      Instance* inst = ref->GetInst();
      Port* port = ref->GetPort();
      if (inst->Owner() != this) continue;
      KESTRIN_ASSERT_TEXT(port->Owner() == inst->View(), "port->Owner() == inst->_view");
      outer->Disconnect(inst, port);
      inner->Connect(inst, port);
    }
    // The new net takes the place of the other one on its ring.
    for (Net* wired = outer->WireNext(); wired && wired != outer; wired = wired->WireNext()) {
      if (wired->Owner() != this) continue;
      outer->Unwire();
      inner->Wire(wired);
      break;
    }
    Port* port = new Port(name.c_str(), DIR_NONE, outer->Linefile());
    Add(port);
    inner->Connect(port);
  }
}

namespace {
/// Finds loops of logic by a walk backwards and cuts each where it closes.
class LoopBreaker {
public:
  LoopBreaker(Netlist* netlist, Set& visited, Set& in_progress, unsigned cut)
      : _netlist(netlist), _visited(visited), _in_progress(in_progress), _cut(cut) {}

  void Walk(Net* start, PortRef* load) {
    Enter(start, load);
    while (!_path.empty()) {
      Frame& frame = _path.back();
      if (frame.next == frame.loads.size()) {
        _in_progress.Remove(frame.net);
        _path.pop_back();
        continue;
      }
      PortRef* next = frame.loads[frame.next++];
      Enter(next->GetNet(), next);
    }
  }

private:
  /// A net in progress, with the inputs of what drives it.
  struct Frame {
    Net* net;
    std::vector<PortRef*> loads;
    size_t next = 0;
  };

  void Enter(Net* net, PortRef* load) {
    if (_in_progress.Contains(net)) {
      Break(net, load);
      return;
    }
    if (!_visited.Insert(net)) return;
    Frame frame{net, {}};
    for (const PortRef* driver : DriversOf(net)) {
      const Instance* inst = driver->GetInst();
      if (inst->Type() == PRIM_NONE || kestrin_is_storage_type(inst->Type())) continue;
      for (PortRef* ref : ConnectionsOf(inst))
        if (ref->IsInput()) frame.loads.push_back(ref);
    }
    _in_progress.Insert(net);
    _path.push_back(std::move(frame));
  }

  void Break(Net* net, PortRef* load) {
    if (_cut) {
      if (load) load->GetInst()->Reconnect(load->GetPort(), _netlist->X(0));
      return;
    }
    if (kestrin_is_storage_type(net->DriverType())) return; // cut before
    Net* inner = new Net(nullptr, 0);
    _netlist->Add(inner);
    for (PortRef* driver : DriversOf(net)) driver->GetInst()->Reconnect(driver->GetPort(), inner);
    const unsigned long linefile = net->Linefile();
    Net* latched =
        _netlist->Dlatch(inner, _netlist->Pwr(linefile), _netlist->X(linefile), _netlist->Gnd(linefile), linefile);
    Instance* latch = latched->Driver();
    latch->Reconnect(latch->View()->GetOutput(), net);
    delete latched;
  }

  Netlist* _netlist;
  Set& _visited;
  Set& _in_progress;
  unsigned _cut;
  std::vector<Frame> _path;
};
} // namespace

void Netlist::LatchInto(Net* net, PortRef* load, Set& visited, Set& in_progress, unsigned cut) {
  LoopBreaker(this, visited, in_progress, cut).Walk(net, load);
}

void Netlist::BreakLoops() {
  Set visited(HASH_POINTER, NumOfNets() + 1);
  Set in_progress;
  std::vector<Net*> starts;
  for (const Port* port : PortsOf(this))
    if (port->IsOutput() && port->GetNet()) starts.push_back(port->GetNet());
  for (const Instance* inst : InstancesOf(this)) {
    if (!kestrin_is_storage_type(inst->Type())) continue;
    for (const PortRef* ref : ConnectionsOf(inst))
      if (ref->IsInput()) starts.push_back(ref->GetNet());
  }
  for (Net* net : NetsOf(this)) starts.push_back(net);
  for (Net* net : starts) LatchInto(net, nullptr, visited, in_progress, /*cut*/ 0);
}
