// The memory operator: its ports, its construction, the access of instances to its elements, and the records of its
// behaviour.
#include "database/ram.h"

#include <cstdio>
#include <cstring>

#include "containers/views.h"
#include "database/cell.h"
#include "database/instance.h"
#include "database/library.h"
#include "database/net.h"
#include "database/operators.h"
#include "util/saverestore.h"
#include "util/strings.h"

namespace {

constexpr unsigned port_count = 2;

/// Names without the letter of the port, in the order of the elements.
constexpr const char* element_names[RAM_ELEMENT_COUNT] = {"raddr", "q", "waddr", "wdata", "we", "be"};

std::string PortName(KESTRIN_RAM_PORT_ELEMENT element, unsigned port) {
  return std::string(element_names[element]) + "_" + static_cast<char>('a' + port);
}

bool IsReadElement(KESTRIN_RAM_PORT_ELEMENT element) { return element == RAM_READ_ADDRESS || element == RAM_READ_DATA; }

unsigned SizeOf(const Array* nets) { return nets ? nets->Size() : 0; }

} // namespace

KESTRIN_RAM_PORT_INFO KESTRIN_RAM_PORT_INFO::CreateReadPortInfo(unsigned address_size, unsigned depth,
                                                                unsigned data_size) {
  KESTRIN_RAM_PORT_INFO info;
  info.size[RAM_READ_ADDRESS] = address_size;
  info.size[RAM_READ_DATA] = data_size;
  info.depth = depth;
  return info;
}

KESTRIN_RAM_PORT_INFO KESTRIN_RAM_PORT_INFO::CreateWritePortInfo(unsigned address_size, unsigned depth,
                                                                 unsigned data_size, unsigned byte_enable_size) {
  KESTRIN_RAM_PORT_INFO info;
  info.size[RAM_WRITE_ADDRESS] = address_size;
  info.size[RAM_WRITE_DATA] = data_size;
  info.size[RAM_WRITE_ENABLE] = 1;
  info.size[RAM_BYTE_ENABLE] = byte_enable_size;
  info.depth = depth;
  return info;
}

OperDualPortRam::OperDualPortRam(const KESTRIN_RAM_PORT_INFO& read_a, const KESTRIN_RAM_PORT_INFO& read_b,
                                 const KESTRIN_RAM_PORT_INFO& write_a, const KESTRIN_RAM_PORT_INFO& write_b)
    : Operator(OPER_DUAL_PORT_RAM), _read{read_a, read_b}, _write{write_a, write_b} {
  CreatePorts();
}

void OperDualPortRam::CreatePorts() {
  for (bool is_write : {true, false}) {
    for (unsigned port = 0; port < port_count; port++) {
      for (unsigned i = 0; i < RAM_ELEMENT_COUNT; i++) {
        auto element = static_cast<KESTRIN_RAM_PORT_ELEMENT>(i);
        const unsigned size = (is_write ? _write : _read)[port].size[element];
        if (!size) continue;
        if (IsReadElement(element) == is_write) {
          KESTRIN_REPORT_INTERNAL(is_write ? "Unexpected write port element" : "Unexpected read port element");
          continue;
        }
        const std::string name = PortName(element, port);
        const port_dir direction = element == RAM_READ_DATA ? DIR_OUTPUT : DIR_INPUT;
        if (element == RAM_WRITE_ENABLE)
          _ports[port][element].Insert(AddScalarPort(name.c_str(), direction));
        else
          AddArrayPort(name.c_str(), size, direction, &_ports[port][element]);
      }
    }
  }
}

Port* OperDualPortRam::ReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const {
  if (port >= port_count || !IsReadElement(element) || bit >= _ports[port][element].Size()) return nullptr;
  return FromWord<Port*>(_ports[port][element].At(bit));
}

Port* OperDualPortRam::WritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const {
  if (port >= port_count || IsReadElement(element) || bit >= _ports[port][element].Size()) return nullptr;
  return FromWord<Port*>(_ports[port][element].At(bit));
}

namespace {

void AppendSizes(std::string& name, std::initializer_list<unsigned> sizes) {
  for (unsigned size : sizes) name += "_" + std::to_string(size);
}

std::string ViewName(const KESTRIN_RAM_PORT_INFO* read, const KESTRIN_RAM_PORT_INFO* write) {
  std::string name = " DualPortRam_read";
  for (unsigned port = 0; port < port_count; port++) {
    name += port ? "_B" : "_A";
    AppendSizes(name, {read[port].size[RAM_READ_ADDRESS], read[port].depth, read[port].size[RAM_READ_DATA]});
  }
  name += "_write";
  for (unsigned port = 0; port < port_count; port++) {
    name += port ? "_B" : "_A";
    AppendSizes(name, {write[port].size[RAM_WRITE_ADDRESS], write[port].depth, write[port].size[RAM_WRITE_DATA],
                       write[port].size[RAM_BYTE_ENABLE]});
  }
  return name;
}

/// Reads what ViewName wrote.
bool ReadShape(const char* name, KESTRIN_RAM_PORT_INFO* read, KESTRIN_RAM_PORT_INFO* write) {
  unsigned r[port_count][3] = {};
  unsigned w[port_count][4] = {};
  if (!name || std::sscanf(name, " DualPortRam_read_A_%u_%u_%u_B_%u_%u_%u_write_A_%u_%u_%u_%u_B_%u_%u_%u_%u", &r[0][0],
                           &r[0][1], &r[0][2], &r[1][0], &r[1][1], &r[1][2], &w[0][0], &w[0][1], &w[0][2], &w[0][3],
                           &w[1][0], &w[1][1], &w[1][2], &w[1][3]) != 14)
    return false;
  for (unsigned port = 0; port < port_count; port++) {
    read[port] = KESTRIN_RAM_PORT_INFO::CreateReadPortInfo(r[port][0], r[port][1], r[port][2]);
    if (w[port][0] || w[port][2])
      write[port] = KESTRIN_RAM_PORT_INFO::CreateWritePortInfo(w[port][0], w[port][1], w[port][2], w[port][3]);
  }
  return ViewName(read, write) == name;
}

} // namespace

std::string OperDualPortRam::CellName() const { return ViewName(_read, _write); }

unsigned OperDualPortRam::RestoreShape(SaveRestore& stream, const char* cell_name) {
  unsigned long ports = 0;
  if (!ReadShape(cell_name, _read, _write)) stream.SetFail();
  for (const KESTRIN_RAM_PORT_INFO* info : {&_read[0], &_read[1], &_write[0], &_write[1]})
    for (unsigned size : info->size) ports += size;
  if (!stream.Afford(ports)) return 0;
  CreatePorts();
  return 1;
}

// Construction.

namespace {

/// One view per shape, in the library of operators.
Netlist* FindView(const KESTRIN_RAM_PORT_INFO* read, const KESTRIN_RAM_PORT_INFO* write) {
  const std::string name = ViewName(read, write);
  Library* library = Library::Operators();
  Cell* cell = library->GetCell(name.c_str(), 1);
  if (!cell) {
    cell = new Cell(name.c_str());
    library->Add(cell);
  }
  Netlist* view = cell->GetNetlist("INTERFACE");
  if (view) return view;
  view = new OperDualPortRam(read[0], read[1], write[0], write[1]);
  cell->Add(view);
  return view;
}

} // namespace

Instance* Netlist::TrueDualPortRam(Net* we_a, const Array* be_a, const Array* waddr_a, unsigned write_depth_a,
                                   const Array* wdata_a, const Array* raddr_a, unsigned read_depth_a, const Array* q_a,
                                   Net* we_b, const Array* be_b, const Array* waddr_b, unsigned write_depth_b,
                                   const Array* wdata_b, const Array* raddr_b, unsigned read_depth_b, const Array* q_b,
                                   unsigned long linefile) {
  const bool writes_a = we_a || waddr_a || wdata_a;
  const bool writes_b = we_b || waddr_b || wdata_b;
  const bool reads_b = raddr_b || q_b;
  KESTRIN_ASSERT(raddr_a && q_a);
  KESTRIN_ASSERT_TEXT(!writes_a || (we_a && waddr_a && wdata_a), "we_a && waddr_a && raddr_a && wdata_a && q_a");
  KESTRIN_ASSERT_TEXT(!reads_b || (raddr_b && q_b), "raddr_b && q_b");
  KESTRIN_ASSERT_TEXT(!writes_b || (we_b && waddr_b && wdata_b), "we_b && waddr_b && wdata_b");

  KESTRIN_RAM_PORT_INFO read[port_count];
  KESTRIN_RAM_PORT_INFO write[port_count];
  read[0] = KESTRIN_RAM_PORT_INFO::CreateReadPortInfo(SizeOf(raddr_a), read_depth_a, SizeOf(q_a));
  if (reads_b) read[1] = KESTRIN_RAM_PORT_INFO::CreateReadPortInfo(SizeOf(raddr_b), read_depth_b, SizeOf(q_b));
  if (writes_a)
    write[0] =
        KESTRIN_RAM_PORT_INFO::CreateWritePortInfo(SizeOf(waddr_a), write_depth_a, SizeOf(wdata_a), SizeOf(be_a));
  if (writes_b)
    write[1] =
        KESTRIN_RAM_PORT_INFO::CreateWritePortInfo(SizeOf(waddr_b), write_depth_b, SizeOf(wdata_b), SizeOf(be_b));

  const std::string prefix = writes_a || writes_b ? CurrentAutoInstanceName() : "Rom";
  const std::string name = " " + prefix + "_" + std::to_string(NextInstanceIndex());
  auto* inst = new Instance(name.c_str(), FindView(read, write), linefile);
  Add(inst);
  if (writes_a) {
    inst->ConnectWritePort(0, RAM_WRITE_ENABLE, 0, we_a);
    inst->ConnectWriteArrayPort(0, RAM_BYTE_ENABLE, be_a);
    inst->ConnectWriteArrayPort(0, RAM_WRITE_ADDRESS, waddr_a);
    inst->ConnectWriteArrayPort(0, RAM_WRITE_DATA, wdata_a);
  }
  inst->ConnectReadArrayPort(0, RAM_READ_ADDRESS, raddr_a);
  inst->ConnectReadArrayPort(0, RAM_READ_DATA, q_a);
  if (writes_b) {
    inst->ConnectWritePort(1, RAM_WRITE_ENABLE, 0, we_b);
    inst->ConnectWriteArrayPort(1, RAM_BYTE_ENABLE, be_b);
    inst->ConnectWriteArrayPort(1, RAM_WRITE_ADDRESS, waddr_b);
    inst->ConnectWriteArrayPort(1, RAM_WRITE_DATA, wdata_b);
  }
  if (reads_b) {
    inst->ConnectReadArrayPort(1, RAM_READ_ADDRESS, raddr_b);
    inst->ConnectReadArrayPort(1, RAM_READ_DATA, q_b);
  }
  return inst;
}

Instance* Netlist::DualPortRam(Net* we, const Array* be, const Array* waddr, unsigned write_depth, const Array* wdata,
                               const Array* raddr, unsigned read_depth, const Array* q, unsigned long linefile) {
  return TrueDualPortRam(we, be, waddr, write_depth, wdata, raddr, read_depth, q, nullptr, nullptr, nullptr, 0, nullptr,
                         nullptr, 0, nullptr, linefile);
}

// Elements of instances.

namespace {

/// Null for an instance of anything else.
const OperDualPortRam* RamOf(const Instance* inst) {
  return inst->Type() == OPER_DUAL_PORT_RAM ? static_cast<const OperDualPortRam*>(inst->View()) : nullptr;
}

Port* FindPort(const Instance* inst, unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) {
  const OperDualPortRam* ram = RamOf(inst);
  if (!ram) return nullptr;
  return IsReadElement(element) ? ram->ReadPort(port, element, bit) : ram->WritePort(port, element, bit);
}

Net* NetAt(const Instance* inst, unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) {
  const Port* found = FindPort(inst, port, element, bit);
  return found ? inst->GetNet(found) : nullptr;
}

void CollectNets(const Instance* inst, unsigned port, KESTRIN_RAM_PORT_ELEMENT element, Array& nets) {
  for (unsigned bit = 0; FindPort(inst, port, element, bit); bit++) nets.InsertLast(NetAt(inst, port, element, bit));
}

void ConnectBit(Instance* inst, unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit, Net* net) {
  Port* found = FindPort(inst, port, element, bit);
  if (found && net) inst->Connect(found, net);
}

void ConnectAll(Instance* inst, unsigned port, KESTRIN_RAM_PORT_ELEMENT element, const Array* nets) {
  unsigned bit = 0;
  for (Net* net : ItemsOf<Net*>(nets)) ConnectBit(inst, port, element, bit++, net);
}

} // namespace

Net* Instance::GetReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const {
  return NetAt(this, port, element, bit);
}

Net* Instance::GetWritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const {
  return NetAt(this, port, element, bit);
}

void Instance::GetReadArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, Array& nets) const {
  CollectNets(this, port, element, nets);
}

void Instance::GetWriteArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, Array& nets) const {
  CollectNets(this, port, element, nets);
}

void Instance::ConnectReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit, Net* net) {
  ConnectBit(this, port, element, bit, net);
}

void Instance::ConnectWritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit, Net* net) {
  ConnectBit(this, port, element, bit, net);
}

void Instance::ConnectReadArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, const Array* nets) {
  ConnectAll(this, port, element, nets);
}

void Instance::ConnectWriteArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, const Array* nets) {
  ConnectAll(this, port, element, nets);
}

void Instance::DisconnectReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) {
  if (Port* found = FindPort(this, port, element, bit)) Disconnect(found);
}

void Instance::DisconnectWritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) {
  if (Port* found = FindPort(this, port, element, bit)) Disconnect(found);
}

unsigned Instance::GetReadPortSize(unsigned port, KESTRIN_RAM_PORT_ELEMENT element) const {
  const OperDualPortRam* ram = RamOf(this);
  return ram && port < port_count ? ram->ReadPortInfo(port).size[element] : 0;
}

unsigned Instance::GetWritePortSize(unsigned port, KESTRIN_RAM_PORT_ELEMENT element) const {
  const OperDualPortRam* ram = RamOf(this);
  return ram && port < port_count ? ram->WritePortInfo(port).size[element] : 0;
}

unsigned Instance::GetReadDepth(unsigned port) const {
  const OperDualPortRam* ram = RamOf(this);
  return ram && port < port_count ? ram->ReadPortInfo(port).depth : 0;
}

unsigned Instance::GetWriteDepth(unsigned port) const {
  const OperDualPortRam* ram = RamOf(this);
  return ram && port < port_count ? ram->WritePortInfo(port).depth : 0;
}

namespace {

bool IsSameAddress(const Array& a, const Array& b) {
  if (a.Size() != b.Size()) return false;
  for (unsigned bit = 0; bit < a.Size(); bit++) {
    Net* left = FromWord<Net*>(a.At(bit));
    Net* right = FromWord<Net*>(b.At(bit));
    if (left != right && !(left && right && kestrin_equivalent_nets(left, right, nullptr))) return false;
  }
  return true;
}

} // namespace

unsigned Instance::NumUniqueAddresses() const {
  Array addresses[2 * port_count];
  unsigned count = 0;
  for (unsigned port = 0; port < port_count; port++) {
    for (KESTRIN_RAM_PORT_ELEMENT element : {RAM_WRITE_ADDRESS, RAM_READ_ADDRESS}) {
      Array& address = addresses[count];
      CollectNets(this, port, element, address);
      bool is_new = address.Size() != 0;
      for (unsigned other = 0; is_new && other < count; other++) is_new = !IsSameAddress(address, addresses[other]);
      if (is_new)
        count++;
      else
        address.Reset();
    }
  }
  return count;
}

// Behaviour.

unsigned kestrin_get_ram_behavior(const Instance* inst, ATT_ENUM attribute, const char* token) {
  const char* value = inst->GetAttValue(attribute);
  return value && std::strstr(value, token);
}

void kestrin_set_ram_behavior(Instance* inst, ATT_ENUM attribute, const char* token) {
  if (kestrin_get_ram_behavior(inst, attribute, token)) return;
  const char* value = inst->GetAttValue(attribute);
  inst->AddAtt(attribute, value && *value ? (std::string(value) + " " + token).c_str() : token);
}

void kestrin_clear_ram_behavior(Instance* inst, ATT_ENUM attribute, const char* token) {
  const char* value = inst->GetAttValue(attribute);
  std::string text(value ? value : "");
  const size_t at = text.find(token);
  if (at == std::string::npos) return;
  text.erase(at, std::strlen(token) + 1);
  if (!text.empty() && text.back() == ' ') text.pop_back();
  if (text.empty())
    inst->RemoveAtt(attribute);
  else
    inst->AddAtt(attribute, text.c_str());
}

unsigned kestrin_active_read_port(const Instance* inst, unsigned port) { return inst->GetReadDepth(port) != 0; }

unsigned kestrin_active_write_port(const Instance* inst, unsigned port) {
  const Net* enable = inst->GetWritePort(port, RAM_WRITE_ENABLE, 0);
  return inst->GetWriteDepth(port) != 0 && enable && !enable->IsGnd();
}

void kestrin_parse_ramstyle(const char* value, std::string& style, bool& no_rw_check) {
  std::string word;
  auto finish = [&] {
    if (Strings::compare_nocase(word.c_str(), "no_rw_check"))
      no_rw_check = true;
    else if (!word.empty())
      style = word;
    word.clear();
  };
  style.clear();
  no_rw_check = false;
  for (const char* c = value ? value : ""; *c; c++) {
    if (*c == ' ' || *c == '\t' || *c == ',')
      finish();
    else if (*c != '"')
      word += *c;
  }
  finish();
}
