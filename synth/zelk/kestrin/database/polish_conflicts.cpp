// Checks of who drives what: nets with several drivers, outputs of user instances that meet other drivers, ports
// without fan-in or fan-out, and paths between bidirectional ports.
#include <vector>

#include "database/polish.h"

namespace {
constexpr unsigned max_conflicts = 20;

/// The driver behind buffers that have one input each; a driver of a loop of buffers is where the walk began.
PortRef* RealDriver(PortRef* driver) {
  Set visited;
  PortRef* real = driver;
  while (real->GetInst()->Type() == PRIM_BUF && visited.Insert(real->GetInst())) {
    const Net* input = real->GetInst()->GetInput();
    if (!input || input->HasMultipleDrivers() || !input->DrivingPortRef()) return real;
    real = input->DrivingPortRef();
  }
  return real->GetInst()->Type() == PRIM_BUF ? driver : real;
}

/// Drivers that are made to share a net.
bool SharesNet(const Instance* driver) {
  switch (driver->Type()) {
  case PRIM_PULLUP:
  case PRIM_PULLDOWN:
  case PRIM_NMOS:
  case PRIM_PMOS:
  case PRIM_CMOS:
  case PRIM_TRAN: return true;
  case PRIM_TRI: return driver->GetControl() && driver->GetControl()->IsGnd();
  default: return false;
  }
}

/// Drivers that may let go of the net: tristate buffers, and user instances, of which that is not known.
bool MayLetGo(const Instance* driver) { return driver->Type() == PRIM_TRI || driver->Type() == PRIM_NONE; }

/// Where a conflict on a net is reported: the driver, or the net behind it when the system made the driver, or for
/// constants, which lie nowhere in the source, the net itself.
const DesignObj* PlaceOf(const PortRef* driver, const Net* net) {
  if (driver->GetInst()->Linefile()) return driver->GetInst();
  if (driver->GetNet()->Linefile()) return driver->GetNet();
  return net;
}

bool AcceptsInputPort(const Instance* driver) {
  if (driver->Type() == PRIM_NONE) return driver->View() && driver->View()->IsBlackBox();
  return driver->Type() == PRIM_PULLUP || driver->Type() == PRIM_PULLDOWN || driver->Type() == PRIM_TRI;
}

/// A gate that the source gives no name.
bool IsUnnamed(const DesignObj& object) { return *object.Name() == ' '; }

} // namespace

unsigned Net::ElectricalConflict() {
  if (!_first || _first->IsInput()) return 0;
  const Port* input_port = GetFirstPort(DIR_INPUT);
  if (!input_port && (!_first->Next() || _first->Next()->IsInput())) return 0;

  Set seen;
  PortRef* kept = nullptr;
  for (PortRef* ref : DriversOf(this)) {
    PortRef* real = RealDriver(ref);
    if (!seen.Insert(real->GetInst()) || SharesNet(real->GetInst())) continue;
    if (input_port && !AcceptsInputPort(real->GetInst())) {
      PlaceOf(ref, this)->Error("net %s is already driven by input port %s", ExternalName(),
                                input_port->ExternalName());
      input_port->Error("%s declared here", input_port->ExternalName());
      return 1;
    }
    if (!kept || MayLetGo(kept->GetInst())) {
      kept = real;
      continue;
    }
    if (MayLetGo(real->GetInst())) continue;
    PlaceOf(real, this)->Error("net %s is constantly driven from multiple places", ExternalName());
    PlaceOf(kept, this)->Error("another driver from here");
    return 1;
  }
  return 0;
}

namespace {
/// Gives a net without any driver its value.
void SettleUndriven(Netlist* netlist, Net* net) {
  if (!net->NumOfPortRefs() && !net->NumOfPorts()) {
    delete net;
    return;
  }
  Net* source = nullptr;
  switch (net->PowerUpValue()) {
  case 0:
    if (!net->NumOfPortRefs() && net->NumOfPorts() == 1) {
      delete net;
      return;
    }
    source = netlist->Gnd(0);
    break;
  case '1': source = netlist->Pwr(0); break;
  case 'Z': source = netlist->Tristate(netlist->Gnd(0), netlist->Gnd(0), net->Linefile()); break;
  default: source = netlist->Gnd(0);
  }
  net->Wire(source);
  net->ResolveWires();
}
} // namespace

/// Returns whether a conflict was reported.
unsigned Netlist::ElectricalConflict(unsigned ignore) {
  unsigned conflicts = 0;
  std::vector<Net*> undriven;
  for (Net* net : NetsOf(this)) {
    if (kestrin_is_undriven(net)) {
      undriven.push_back(net);
      continue;
    }
    if (!ignore && net->ElectricalConflict() && ++conflicts == max_conflicts) return 1;
  }
  for (Net* net : undriven) SettleUndriven(this, net);
  if (conflicts) return 1;
  return CheckUserInstanceOutputPortConnections();
}

/// A port of a user instance drives its net alone, or with others that may let go of it.
unsigned Netlist::CheckUserInstanceOutputPortConnections() {
  unsigned conflicts = 0;
  for (const Instance* inst : InstancesOf(this)) {
    if (inst->Type() != PRIM_NONE) continue;
    for (const PortRef* ref : ConnectionsOf(inst)) {
      if (ref->Direction() != DIR_OUTPUT) continue;
      const Net* net = ref->GetNet();
      for (PortRef* other : DriversOf(net)) {
        if (other == ref || other->Direction() != DIR_OUTPUT) continue;
        const Instance* driver = RealDriver(other)->GetInst();
        if (driver == inst || SharesNet(driver) || MayLetGo(driver)) continue;
        inst->Error("output port %s on instance %s also driven by %s", ref->GetPort()->ExternalName(),
                    inst->ExternalName(), IsUnnamed(*driver) ? net->ExternalName() : driver->ExternalName());
        conflicts++;
        break;
      }
      if (conflicts == max_conflicts) return 1;
    }
  }
  return conflicts != 0;
}

namespace {
enum DB_PORT_STATUS_ENUM { DB_PORT_CONNECTED, DB_PORT_NO_FANOUT, DB_PORT_NO_FANIN };

bool HasFanin(const Port* port) {
  const Net* net = port->GetNet();
  if (!net) return false;
  if (net->DrivingPortRef() || net->IsWired()) return true;
  for (const Port* other : PortsOf(net))
    if (other != port && !other->IsOutput()) return true;
  return false;
}

bool HasFanout(const Port* port) {
  const Net* net = port->GetNet();
  if (!net) return false;
  for (const PortRef* ref : PortRefsOf(net))
    if (ref->Direction() != DIR_OUTPUT) return true;
  for (const Port* other : PortsOf(net))
    if (other != port && !other->IsInput()) return true;
  return false;
}

DB_PORT_STATUS_ENUM kestrin_check_port_connections(const Port* port) {
  switch (port->Direction()) {
  case DIR_INPUT: return HasFanout(port) ? DB_PORT_CONNECTED : DB_PORT_NO_FANOUT;
  case DIR_OUTPUT: // without a net it has been reported as undriven
    return !port->GetNet() || HasFanin(port) ? DB_PORT_CONNECTED : DB_PORT_NO_FANIN;
  case DIR_INOUT:
    if (!HasFanout(port) && !HasFanin(port)) return DB_PORT_NO_FANIN;
    return DB_PORT_CONNECTED;
  case DIR_NONE: break;
  }
  return DB_PORT_CONNECTED;
}

const char* DirectionName(port_dir direction) {
  if (direction == DIR_INPUT) return "input";
  return direction == DIR_OUTPUT ? "output" : "bidir";
}

void kestrin_report_port_status(const DesignObj* place, const std::string& name, port_dir direction,
                                DB_PORT_STATUS_ENUM status) {
  switch (status) {
  case DB_PORT_NO_FANOUT: place->Warning("%s port %s has no fan-out", DirectionName(direction), name.c_str()); break;
  case DB_PORT_NO_FANIN: place->Warning("%s port %s has no fan-in", DirectionName(direction), name.c_str()); break;
  case DB_PORT_CONNECTED: break;
  }
}

/// Bits of one status in a row are reported with their range.
void CheckBus(const PortBus* bus) {
  std::vector<DB_PORT_STATUS_ENUM> status;
  for (DesignObj* element : ElementsOf(bus)) {
    if (element->PortBusLevel() >= 0)
      CheckBus(static_cast<const PortBus*>(element));
    else
      status.push_back(kestrin_check_port_connections(static_cast<const Port*>(element)));
  }
  const int step = bus->IsUp() ? 1 : -1;
  auto index_at = [&](size_t pos) { return std::to_string(bus->LeftIndex() + step * static_cast<int>(pos)); };
  for (size_t pos = 0; pos < status.size(); pos++) {
    const size_t begin = pos;
    while (pos + 1 < status.size() && status[pos + 1] == status[begin]) pos++;
    const std::string range = pos == begin ? index_at(begin) : index_at(begin) + ".." + index_at(pos);
    kestrin_report_port_status(bus, std::string(bus->ExternalName()) + "[" + range + "]", bus->Direction(),
                               status[begin]);
  }
}
} // namespace

void Netlist::CheckPortConnectivity() {
  CheckBidirConnectivity();
  if (GetAtt(" interface")) return;
  for (const PortBus* bus : PortBusesOf(this))
    if (!bus->GetPortBus()) CheckBus(bus);
  for (const Port* port : PortsOf(this))
    if (!port->GetPortBus())
      kestrin_report_port_status(port, port->ExternalName(), port->Direction(), kestrin_check_port_connections(port));
}

namespace {
/// The bidirectional ports from which one-way connections lead to this port.
void CollectFeedingPorts(const Port* port, Set& feeding) {
  Set visited;
  std::vector<const Net*> pending{port->GetNet()};
  while (!pending.empty()) {
    const Net* net = pending.back();
    pending.pop_back();
    for (const PortRef* ref : DriversOf(net)) {
      if (ref->GetInst()->Type() != PRIM_BUF) continue;
      const Net* input = ref->GetInst()->GetInput();
      if (!input || !visited.Insert(input)) continue;
      for (Port* source : PortsOf(input))
        if (source->IsInout()) feeding.Insert(source);
      pending.push_back(input);
    }
  }
}
} // namespace

void Netlist::CheckBidirConnectivity() {
  std::vector<Port*> ports;
  for (Port* port : PortsOf(this))
    if (port->IsInout() && port->GetNet()) ports.push_back(port);
  std::vector<Set> feeding(ports.size());
  Map positions(HASH_POINTER, static_cast<unsigned>(ports.size()) + 1);
  for (unsigned pos = 0; pos < ports.size(); pos++) {
    CollectFeedingPorts(ports[pos], feeding[pos]);
    positions.Insert(ports[pos], ToWord(pos));
  }
  for (unsigned pos = 0; pos < ports.size(); pos++) {
    const Port* port = ports[pos];
    if (feeding[pos].Contains(port)) port->Error("bidir port %s indirectly feeds itself", port->ExternalName());
    for (const Port* source : KeysOf<Port*>(&feeding[pos])) {
      if (source == port) continue;
      const unsigned source_pos = FromWord<unsigned>(positions.GetValue(source));
      if (!feeding[source_pos].Contains(port))
        port->Warning("bidir port %s is fed by a unidirectional connection from bidir port %s", port->ExternalName(),
                      source->ExternalName());
      else if (pos < source_pos) // once for each pair
        port->Error("bidir ports %s and %s indirectly drive each other", port->ExternalName(), source->ExternalName());
    }
  }
}
