#include "database/debussydump.h"

#include <fstream>
#include <vector>

#include "database/polish.h"
#include "util/services.h"

namespace {
constexpr const char* unconnected = "\\N:UNCONNECTED ";

/// An escaped identifier ends at a blank, so the blank that begins a made-up name is left out.
std::string Escaped(const char* prefix, const char* name) {
  std::string text = std::string("\\") + prefix;
  for (const char* at = name ? name : ""; *at; at++)
    if (*at > ' ') text += *at;
  return text + " ";
}

/// A port, or the bus of ports that stands for all of its bits.
const DesignObj* Outermost(const Port* port) {
  const DesignObj* object = port;
  while (object->GetPortBus()) object = object->GetPortBus();
  return object;
}

bool IsInput(const DesignObj* object) {
  if (object->ObjectType() == DB_PORT) return static_cast<const Port*>(object)->IsInput();
  return static_cast<const PortBus*>(object)->Direction() == DIR_INPUT;
}

std::string PortName(const DesignObj* object) {
  if (!IsInput(object)) return Escaped("O:", object->Name());
  return Escaped(object->ObjectType() == DB_PORT ? "I:" : "AI:", object->Name());
}

/// The ports of a view with each bus once, where its first bit stands.
std::vector<const DesignObj*> Interface(const Netlist* view) {
  std::vector<const DesignObj*> objects;
  Set seen;
  for (const Port* port : PortsOf(view)) {
    const DesignObj* object = Outermost(port);
    if (seen.Insert(object)) objects.push_back(object);
  }
  return objects;
}

void CollectBits(const DesignObj* object, std::vector<const Port*>& bits) {
  if (object->ObjectType() == DB_PORT) {
    bits.push_back(static_cast<const Port*>(object));
    return;
  }
  for (const DesignObj* element : ElementsOf(static_cast<const PortBus*>(object))) CollectBits(element, bits);
}

/// What is written as an instance of a module.
bool IsComponent(const Instance* inst) {
  switch (inst->Type()) {
  case PRIM_DLATCH:
  case PRIM_DLATCHRS:
  case PRIM_DFF:
  case PRIM_DFFRS:
  case PRIM_FADD:
  case PRIM_CLOCK:
  case PRIM_INFER_POINT: return true;
  default: return !inst->IsPrimitive();
  }
}

std::ofstream OpenFile(const std::string& name) {
  std::string path = "db/" + name + ".v";
  std::ofstream out(path);
  if (out) return out;
  kestrin_debug("Couldn't open netlist dump file %s", path.c_str());
  static unsigned number = 0;
  path = "db/" + name.substr(0, 32) + "_" + std::to_string(number++) + ".v";
  kestrin_debug("Using %s instead", path.c_str());
  out.open(path);
  if (!out) kestrin_debug("Couldn't open %s either, skipping dump entriely", path.c_str());
  return out;
}
} // namespace

DebussyDump::DebussyDump(const Netlist* netlist, const char* file, const char* label)
    : _netlist(netlist), _out(nullptr) {
  KESTRIN_ASSERT_TEXT(netlist->GetAttValue(" cell_name"), "netlist->GetAttValue(\" cell_name\")");
  kestrin_debug("Dumping ZELK netlist for entity %s", netlist->ExternalName());
  std::ofstream out = OpenFile(std::string(file) + "_" + label);
  if (!out) return;
  _out = &out;
  Run();
}

DebussyDump::DebussyDump(const Netlist* netlist, std::ostream& out) : _netlist(netlist), _out(&out) { Run(); }

void DebussyDump::Run() {
  _taken.insert(unconnected);
  ModuleName(_netlist); // no view takes it
  // Gates are written as Verilog's own; all other views get a module.
  for (const Instance* inst : InstancesOf(_netlist))
    if (inst->View() && IsComponent(inst) && _symbols.Insert(inst->View())) SymbolDump(inst->View());
  NetlistDump();
}

/// What was left out of two names may have been their difference.
const std::string& DebussyDump::Unique(const void* object, std::string name) {
  auto known = _names.find(object);
  if (known != _names.end()) return known->second;
  while (!_taken.insert(name).second) name.insert(name.size() - 1, "~");
  return _names[object] = name;
}

/// A view is named by its cell, which tells views of other parameters apart.
std::string DebussyDump::ModuleName(const Netlist* view) {
  if (view == _netlist) {
    const char* cell_name = view->GetAttValue(" cell_name");
    return Unique(view, Escaped("", cell_name ? cell_name : view->Name()));
  }
  const char* cell_name = view->Owner() ? view->Owner()->Name() : view->Name();
  return Unique(view, Escaped(view->IsOperator() ? "O:" : "", cell_name));
}

void DebussyDump::HeaderDump(const Netlist* view) {
  *_out << "module " << ModuleName(view) << " (\n";
  const char* separator = "";
  for (const DesignObj* object : Interface(view)) {
    *_out << separator << "\t" << PortName(object);
    separator = ",\n";
  }
  *_out << ");\n";
}

void DebussyDump::PortDump(const Netlist* view) {
  for (const DesignObj* object : Interface(view)) {
    std::vector<const Port*> bits;
    CollectBits(object, bits);
    const port_dir direction = bits.empty() ? DIR_NONE : bits.front()->Direction();
    *_out << (direction == DIR_INPUT ? "\tinput " : direction == DIR_OUTPUT ? "\toutput " : "\tinout ");
    if (object->ObjectType() != DB_PORT) *_out << "[" << (bits.empty() ? 0 : bits.size() - 1) << ":0] ";
    *_out << PortName(object) << ";\n";
  }
}

/// A view's interface only.
void DebussyDump::SymbolDump(const Netlist* view) {
  HeaderDump(view);
  PortDump(view);
  *_out << "endmodule\n";
}

void DebussyDump::NetlistDump() {
  HeaderDump(_netlist);
  PortDump(_netlist);
  WireDump();
  ConnectPorts();
  for (const Instance* inst : InstancesOf(_netlist)) {
    if (!inst->View()) continue;
    if (inst->IsConstantPrimitive())
      SupplyDump(inst);
    else if (IsComponent(inst))
      ComponentDump(inst);
    else
      PrimitiveDump(inst);
  }
  *_out << "\nendmodule\n";
}

std::string DebussyDump::GetNetName(const Net* net) {
  if (!net) return unconnected;
  auto known = _names.find(net);
  if (known != _names.end()) return known->second;
  if (net->Name()) return Unique(net, Escaped("N:", net->Name()));
  return Unique(net, Escaped("N:", ("auto~" + std::to_string(_num_nameless++)).c_str()));
}

std::string DebussyDump::GetInstanceName(const Instance* inst) { return Unique(inst, Escaped("I:", inst->Name())); }

void DebussyDump::WireDump() {
  *_out << "\twire " << unconnected << ";\n";
  for (const Net* net : NetsOf(_netlist)) {
    // The constant that counts declares the net as a supply.
    if (net->IsPwr() || net->IsGnd()) continue;
    *_out << "\twire " << GetNetName(net) << ";\n";
  }
}

void DebussyDump::ConnectPorts() {
  for (const DesignObj* object : Interface(_netlist)) {
    std::vector<const Port*> bits;
    CollectBits(object, bits);
    std::string nets;
    for (const Port* port : bits) nets += (nets.empty() ? "" : ", ") + GetNetName(port->GetNet());
    if (object->ObjectType() != DB_PORT) nets = "{" + nets + "}";
    if (IsInput(object))
      *_out << "\tassign " << nets << " = " << PortName(object) << ";\n";
    else
      *_out << "\tassign " << PortName(object) << " = " << nets << ";\n";
  }
}

void DebussyDump::SupplyDump(const Instance* inst) {
  if (!inst->GetOutput()) return;
  const std::string net = GetNetName(inst->GetOutput());
  const bool declares = inst->GetOutput()->Driver() == inst;
  switch (inst->Type()) {
  case PRIM_PWR: *_out << (declares ? "\tsupply1 " + net : "\tassign " + net + " = 1'b1 ") << ";\n"; break;
  case PRIM_GND: *_out << (declares ? "\tsupply0 " + net : "\tassign " + net + " = 1'b0 ") << ";\n"; break;
  case PRIM_X: *_out << "\tassign " << net << " = 1'bX ;\n"; break;
  default: kestrin_debug("Primitive not a supply for ZELK Debussy Dumps.");
  }
}

std::string DebussyDump::Input(const Instance* inst, const Port* port) {
  return port ? GetNetName(inst->GetNet(port)) : unconnected;
}

void DebussyDump::PrimitiveDump(const Instance* inst) {
  const Netlist* view = inst->View();
  const std::string out = GetNetName(inst->GetOutput());
  auto gate = [&](const char* word, std::initializer_list<const Port*> ports) {
    *_out << "\t" << word << " " << GetInstanceName(inst) << "(";
    const char* separator = "";
    for (const Port* port : ports) {
      *_out << separator << Input(inst, port);
      separator = ", ";
    }
    *_out << ");\n";
  };
  auto binary = [&](const char* word) { gate(word, {view->GetOutput(), view->GetInput1(), view->GetInput2()}); };
  auto assign = [&](const std::string& value) { *_out << "\tassign " << out << " = " << value << ";\n"; };
  switch (inst->Type()) {
  case PRIM_INV: assign("~" + Input(inst, view->GetInput())); return;
  case PRIM_BUF: assign(Input(inst, view->GetInput())); return;
  case PRIM_AND: return binary("and");
  case PRIM_NAND: return binary("nand");
  case PRIM_OR: return binary("or");
  case PRIM_NOR: return binary("nor");
  case PRIM_XOR: return binary("xor");
  case PRIM_XNOR: return binary("xnor");
  case PRIM_MUX:
    assign(Input(inst, view->GetControl()) + "? " + Input(inst, view->GetInput2()) + ": " +
           Input(inst, view->GetInput1()));
    return;
  case PRIM_TRI: assign(Input(inst, view->GetControl()) + "? " + Input(inst, view->GetInput()) + ": 1'bZ"); return;
  case PRIM_PULLUP: return gate("pullup", {view->GetOutput()});
  case PRIM_PULLDOWN: return gate("pulldown", {view->GetOutput()});
  case PRIM_NMOS: return gate("nmos", {view->GetOutput(), view->GetInput(), view->GetControl()});
  case PRIM_PMOS: return gate("pmos", {view->GetOutput(), view->GetInput(), view->GetControl()});
  case PRIM_CMOS: return gate("cmos", {view->GetOutput(), view->GetInput(), view->GetInput1(), view->GetInput2()});
  case PRIM_TRAN: return gate("tranif1", {view->GetInput1(), view->GetInput2(), view->GetControl()});
  default: kestrin_debug("Primitive not defined for ZELK Debussy Dumps.");
  }
}

void DebussyDump::ComponentDump(const Instance* inst) {
  *_out << "\t" << ModuleName(inst->View()) << GetInstanceName(inst) << "(";
  const char* separator = "";
  for (const DesignObj* object : Interface(inst->View())) {
    std::vector<const Port*> bits;
    CollectBits(object, bits);
    const bool is_array = object->ObjectType() != DB_PORT;
    *_out << separator << "\n\t\t." << PortName(object) << (is_array ? " ({" : " (");
    for (size_t bit = 0; bit < bits.size(); bit++) *_out << (bit ? ", " : "") << GetNetName(inst->GetNet(bits[bit]));
    *_out << (is_array ? " })" : ")");
    separator = ",";
  }
  *_out << ");\n";
}
