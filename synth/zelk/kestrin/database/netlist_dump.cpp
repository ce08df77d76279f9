// Dumps of a netlist for debugging: a text report of everything in it, sorted so that two dumps can be compared, and
// figures of its memory and connectivity. A dump never fails a run: a file that can't be opened is skipped.
#include <algorithm>
#include <cstdarg>
#include <fstream>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "containers/views.h"
#include "database/cell.h"
#include "database/debussydump.h"
#include "database/fsm.h"
#include "database/polish.h"
#include "util/linefile.h"
#include "util/services.h"

namespace {
[[gnu::format(printf, 1, 2)]] std::string Format(const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list again;
  va_copy(again, args);
  std::string text(static_cast<size_t>(vsnprintf(nullptr, 0, format, args)), '\0');
  va_end(args);
  vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

const char* Text(const char* name) { return name ? name : ""; }

const char* DirectionText(port_dir direction) {
  switch (direction) {
  case DIR_INPUT: return "IN ";
  case DIR_OUTPUT: return "OUT";
  case DIR_INOUT: return "BI ";
  case DIR_NONE: break;
  }
  return "   ";
}

bool SortsBefore(const DesignObj* a, const DesignObj* b) { return DesignObj::CompareNames(a, b); }

/// By the kind of their view, then by name.
bool sort_netlist_views(const Instance* a, const Instance* b) {
  return a->Type() != b->Type() ? a->Type() < b->Type() : SortsBefore(a, b);
}

bool sort_portref_insts(const PortRef* a, const PortRef* b) {
  return a->GetInst() != b->GetInst() ? SortsBefore(a->GetInst(), b->GetInst())
                                      : SortsBefore(a->GetPort(), b->GetPort());
}

bool sort_portref_ports(const Port* a, const Port* b) { return SortsBefore(a, b); }

/// By the instance that drives them; then those that none drives. Nets of one driver stand by its ports and their
/// names.
bool sort_net_drivers(const Net* a, const Net* b) {
  const PortRef* of_a = a->DrivingPortRef();
  const PortRef* of_b = b->DrivingPortRef();
  if (!of_a || !of_b) return of_a || of_b ? of_a != nullptr : SortsBefore(a, b);
  if (sort_portref_insts(of_a, of_b)) return true;
  return !sort_portref_insts(of_b, of_a) && SortsBefore(a, b);
}

template <class T, class Range, class Less> std::vector<T*> Sorted(const Range& range, Less less) {
  std::vector<T*> all;
  for (T* object : range) all.push_back(object);
  std::stable_sort(all.begin(), all.end(), less);
  return all;
}

/// The lines of single objects. Within a dump of a whole netlist each nameless net has a number.
class LineDump {
public:
  using Numbers = std::map<const Net*, size_t>;
  LineDump(std::ostream& out, unsigned indent, const Numbers* numbers = nullptr)
      : _out(out), _indent(indent), _numbers(numbers) {}

  void Dump(const Instance* inst) const {
    const Netlist* view = inst->View();
    Line() << Format("Instance:%s Type:%s Conn:%d/%d LineNo:%d\n", Text(inst->Name()),
                     Netlist::PrimTypeToString(inst->Type()), inst->NumOfPortRefs(), view ? view->NumOfPorts() : 0,
                     LineFile::GetLineNo(inst->Linefile()));
    if (view && inst->Type() == PRIM_NONE) {
      const Cell* cell = view->Owner();
      KESTRIN_ASSERT_TEXT(!cell || cell->Name(), "cell && cell->Name()");
      Line(1) << "Cell:" << (cell ? Text(cell->Name()) : "") << "\n";
    }
    if (inst->Type() == PRIM_BUF)
      Line(1) << "Buffer Type = (" << Netlist::BufferTypeString(inst->BufferType()) << ")\n";
    if (inst->ControlNet()) Line(1) << "Condition Net:" << NameOf(inst->ControlNet()) << "\n";
    inst->DumpAttributes(_out, _indent + 1);
    if (!view) return;
    for (const Port* port : Sorted<Port>(PortsOf(view), sort_portref_ports))
      Line(1) << Format("Port:%-10s %3s %3s  Net:%s\n", Text(port->Name()), DirectionText(port->Direction()),
                        port->GetPortBus() ? "Bus" : "   ", NameOf(inst->GetNet(port)).c_str());
  }

  void Dump(const Port* port) const {
    Line() << Format("IO:%-10s %3s %3s  Net:%s\n", Text(port->Name()), DirectionText(port->Direction()),
                     port->GetPortBus() ? "Bus" : "   ", NameOf(port->GetNet()).c_str());
    port->DumpAttributes(_out, _indent + 1);
  }

  void Dump(const PortBus* bus) const {
    Line() << "PortBus:" << Text(bus->Name()) << " " << DirectionText(bus->Direction()) << " [" << bus->LeftIndex()
           << ":" << bus->RightIndex() << "]\n";
    bus->DumpAttributes(_out, _indent + 1);
    for (const DesignObj* element : ElementsOf(bus)) Line(1) << Text(element->Name()) << "\n";
  }

  void Dump(const NetBus* bus) const {
    Line() << "NetBus:" << Text(bus->Name()) << " [" << bus->LeftIndex() << ":" << bus->RightIndex() << "]\n";
    bus->DumpAttributes(_out, _indent + 1);
    for (auto [element, owner] : ElementsOf(bus)) {
      const bool is_net = element && element->ObjectType() == DB_NET;
      Line(1) << (is_net    ? NameOf(static_cast<const Net*>(element))
                  : element ? Text(element->Name())
                            : "(none)")
              << "\n";
    }
  }

  void Dump(const Net* net) const {
    const PortRef* driver = net->DrivingPortRef();
    const Port* port = net->GetFirstPort(DIR_INPUT);
    if (!port) port = net->GetFirstPort(DIR_INOUT);
    const char power_up = net->PowerUpValue() ? net->PowerUpValue() : ' ';
    if (driver || port)
      Line() << Format("Net:%-10s %s Conn:%d/%d   Driver %s:%s  Port:%s  PowerUp: '%c'\n", NameOf(net).c_str(),
                       DriverClass(driver, port), net->NumOfPorts(), net->NumOfPortRefs(),
                       driver ? Text(driver->GetInst()->Name()) : "", driver ? Text(driver->GetPort()->Name()) : "",
                       port ? Text(port->Name()) : "", power_up);
    else
      Line() << Format("Net:%-10s Conn:%d/%d   PowerUp: '%c' *** Driverless ***\n", NameOf(net).c_str(),
                       net->NumOfPorts(), net->NumOfPortRefs(), power_up);
    net->DumpAttributes(_out, _indent + 1);
    for (const PortRef* load : Sorted<PortRef>(LoadsOf(net), sort_portref_insts))
      Line(1) << Format("Instance:%-10s Port:%-10s %3s\n", Text(load->GetInst()->Name()), Text(load->GetPort()->Name()),
                        DirectionText(load->Direction()));
  }

private:
  std::ostream& Line(unsigned deeper = 0) const {
    DesignObj::PrintLevel(_out, _indent + deeper);
    return _out;
  }

  std::string NameOf(const Net* net) const {
    if (!net) return "DANGLING";
    if (net->Name()) return net->Name();
    if (!_numbers) return " auto~";
    auto v_net = _numbers->find(net);
    KESTRIN_ASSERT_TEXT(v_net != _numbers->end(), "v_net");
    return " auto~" + std::to_string(v_net->second);
  }

  static const char* DriverClass(const PortRef* driver, const Port* port) {
    if (!driver) return port->IsInput() ? "IN " : "BI ";
    switch (driver->GetInst()->Type()) {
    case PRIM_PWR: return "PWR";
    case PRIM_GND: return "Gnd";
    case PRIM_X: return "X   ";
    default: return "Instance";
    }
  }

  std::ostream& _out;
  unsigned _indent;
  const Numbers* _numbers;
};

/// The part of a file's name that tells the design unit: without parameters and quotes.
std::string UnitName(const Netlist* netlist) {
  const char* cell_name = netlist->GetAttValue(" cell_name");
  const char* lib_name = netlist->GetAttValue(" library_name");
  KESTRIN_ASSERT_TEXT(cell_name, "GetAttValue(\" cell_name\")");
  KESTRIN_ASSERT(lib_name);
  std::string name = cell_name;
  const size_t begin_pos = name.find('(');
  if (begin_pos != std::string::npos) {
    const size_t end_pos = name.rfind(')');
    // A name of the user's may hold a parenthesis of its own.
    if (end_pos == std::string::npos || end_pos < begin_pos)
      KESTRIN_REPORT_INTERNAL("end_pos != STL_STRING_NPOS");
    else
      name.erase(begin_pos, end_pos - begin_pos + 1);
  }
  name = std::string(lib_name) + "_" + name;
  name.erase(std::remove(name.begin(), name.end(), '"'), name.end());
  return name;
}
} // namespace

void Instance::Dump(std::ostream& out, unsigned indent) const { LineDump(out, indent).Dump(this); }
void Port::Dump(std::ostream& out, unsigned indent) const { LineDump(out, indent).Dump(this); }
void PortBus::Dump(std::ostream& out, unsigned indent) const { LineDump(out, indent).Dump(this); }
void Net::Dump(std::ostream& out, unsigned indent) const { LineDump(out, indent).Dump(this); }
void NetBus::Dump(std::ostream& out, unsigned indent) const { LineDump(out, indent).Dump(this); }

void Netlist::Dump(std::ostream& out) const {
  const std::vector<Net*> nets = Sorted<Net>(NetsOf(this), sort_net_drivers);
  LineDump::Numbers numbers; // of nameless nets
  for (const Net* net : nets)
    if (!net->Name()) numbers.emplace(net, numbers.size());
  const LineDump lines(out, 0, &numbers);
  auto dump_all = [&lines](const auto& objects) {
    for (const auto* object : objects) lines.Dump(object);
  };
  out << "ZELK netlist dump of " << Text(Name()) << "\n";
  DumpAttributes(out);
  for (const Param* param : ParamsOf(this)) param->Dump(out);
  out << "Instances " << NumOfInsts() << "\n";
  dump_all(Sorted<Instance>(InstancesOf(this), sort_netlist_views));
  out << "IO " << NumOfPorts() << "\n";
  dump_all(Sorted<Port>(PortsOf(this), SortsBefore));
  out << "PortBus " << NumOfPortBuses() << "\n";
  dump_all(Sorted<PortBus>(PortBusesOf(this), SortsBefore));
  out << "NetBus " << NumOfNetBuses() << "\n";
  dump_all(Sorted<NetBus>(NetBusesOf(this), SortsBefore));
  out << "Nets " << NumOfNets() << "\n";
  dump_all(nets);
  out << "\nFSMs: " << NumOfFsms() << "\n";
  for (const Fsm* fsm : Sorted<Fsm>(FsmsOf(this), SortsBefore)) fsm->Dump(out);
}

void Netlist::Dump(const char* file, const char* label) const {
  kestrin_debug("Dumping ZELK netlist for entity %s", ExternalName());
  std::string path = std::string("db/zelk_") + file + "_" + label;
  std::ofstream out(path);
  if (!out) {
    kestrin_debug("Couldn't open netlist dump file %s", path.c_str());
    static unsigned number = 0;
    path = Format("db/zelk_%s_%d", label, number++);
    kestrin_debug("Using %s instead", path.c_str());
    out.open(path);
    if (!out) {
      kestrin_debug("Couldn't open %s either, skipping dump entriely", path.c_str());
      return;
    }
  }
  Dump(out);
}

void Netlist::NetlistDump(const char* label) {
  if (kestrin_flag((std::string("zelk_dump_netlist_") + label).c_str())) Dump(UnitName(this).c_str(), label);
  if (kestrin_flag((std::string("zelk_debussy_dump_netlist_") + label).c_str()))
    NetlistDebussyDump(UnitName(this).c_str(), label);
}

void Netlist::NetlistDebussyDump(const char* file, const char* label) const { DebussyDump dump(this, file, label); }

// Figures.

void Netlist::PrintDetailedMemoryReport() const {
  auto report = [](const char* what, unsigned count, unsigned long bytes) {
    kestrin_debug("%-12s %9u objects %12lu bytes", what, count, bytes);
  };
  unsigned long refs = 0;
  unsigned long names = 0;
  for (const Net* net : NetsOf(this)) {
    refs += net->NumOfPortRefs();
    if (net->Name()) names += std::string(net->Name()).size() + 1;
  }
  for (const Instance* inst : InstancesOf(this))
    if (inst->Name()) names += std::string(inst->Name()).size() + 1;
  report("ports", NumOfPorts(), NumOfPorts() * sizeof(Port));
  report("nets", NumOfNets(), NumOfNets() * sizeof(Net));
  report("instances", NumOfInsts(), NumOfInsts() * sizeof(Instance));
  report("connections", static_cast<unsigned>(refs), refs * sizeof(PortRef));
  kestrin_debug("%-12s %30lu bytes", "names", names);
  kestrin_debug("%-12s %30lu bytes", "all", MemUsage());
}

void Netlist::PrintConnectivityStats() const {
  std::map<unsigned, unsigned> nets_by_fanout;
  for (const Net* net : NetsOf(this)) nets_by_fanout[net->NumOfFanouts()]++;
  for (auto [fanout, nets] : nets_by_fanout) kestrin_debug("%9u nets with fanout %u", nets, fanout);
  unsigned counts[PRIM_ANY] = {};
  for (const Instance* inst : InstancesOf(this)) counts[inst->Type()]++;
  for (unsigned type = 0; type < PRIM_ANY; type++)
    if (counts[type]) kestrin_debug("%9u instances of %s", counts[type], PrimTypeToString(type));
}

void Database::PrintClassSizes() {
#define KESTRIN_CLASS_SIZE(name) kestrin_debug("%-18s= %d", "sizeof(" #name ")", static_cast<int>(sizeof(name)))
  KESTRIN_CLASS_SIZE(Att);
  KESTRIN_CLASS_SIZE(Cell);
  KESTRIN_CLASS_SIZE(DesignObj);
  KESTRIN_CLASS_SIZE(Fsm);
  KESTRIN_CLASS_SIZE(Instance);
  KESTRIN_CLASS_SIZE(Library);
  KESTRIN_CLASS_SIZE(Libset);
  KESTRIN_CLASS_SIZE(Net);
  KESTRIN_CLASS_SIZE(NetBus);
  KESTRIN_CLASS_SIZE(Netlist);
  KESTRIN_CLASS_SIZE(Param);
  KESTRIN_CLASS_SIZE(Port);
  KESTRIN_CLASS_SIZE(PortBus);
  KESTRIN_CLASS_SIZE(PortRef);
#undef KESTRIN_CLASS_SIZE
}
