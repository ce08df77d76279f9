// The memory operator: its ports, its construction, and the access of an instance to the nets on its ports.
#include <string>

#include "containers/views.h"
#include "database/cell.h"
#include "database/instance.h"
#include "database/library.h"
#include "database/net.h"
#include "database/operators.h"
#include "database/ram.h"

namespace {
constexpr unsigned num_ram_ports = 2;

/// The elements of both kinds of ports, in port order.
struct RamElement {
  KESTRIN_RAM_PORT_ELEMENT element;
  const char* name;
  port_dir direction;
};
constexpr RamElement write_elements[] = {{RAM_WRITE_ADDRESS, "waddr_", DIR_INPUT},
                                         {RAM_WRITE_DATA, "wdata_", DIR_INPUT},
                                         {RAM_WRITE_ENABLE, "we_", DIR_INPUT},
                                         {RAM_BYTE_ENABLE, "be_", DIR_INPUT}};
constexpr RamElement read_elements[] = {{RAM_READ_ADDRESS, "raddr_", DIR_INPUT}, {RAM_READ_DATA, "q_", DIR_OUTPUT}};

bool IsReadElement(KESTRIN_RAM_PORT_ELEMENT element) { return element == RAM_READ_ADDRESS || element == RAM_READ_DATA; }

std::string Sizes(const KESTRIN_RAM_PORT_INFO& info, std::initializer_list<KESTRIN_RAM_PORT_ELEMENT> elements) {
  std::string text;
  for (KESTRIN_RAM_PORT_ELEMENT element : elements) {
    text += "_" + std::to_string(info.size[element]);
    if (element == RAM_READ_ADDRESS || element == RAM_WRITE_ADDRESS) text += "_" + std::to_string(info.depth);
  }
  return text;
}
std::string ReadSizes(const KESTRIN_RAM_PORT_INFO& info) { return Sizes(info, {RAM_READ_ADDRESS, RAM_READ_DATA}); }
std::string WriteSizes(const KESTRIN_RAM_PORT_INFO& info) {
  return Sizes(info, {RAM_WRITE_ADDRESS, RAM_WRITE_DATA, RAM_BYTE_ENABLE});
}

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
  auto create = [this](unsigned port, const RamElement& part, unsigned size) {
    if (!size) return;
    const std::string name = part.name + std::string(1, static_cast<char>('a' + port));
    if (part.element == RAM_WRITE_ENABLE)
      _ports[port][part.element].Insert(AddScalarPort(name.c_str(), part.direction));
    else
      AddArrayPort(name.c_str(), size, part.direction, &_ports[port][part.element]);
  };
  for (unsigned port = 0; port < num_ram_ports; port++)
    for (const RamElement& part : write_elements) create(port, part, _write[port].size[part.element]);
  for (unsigned port = 0; port < num_ram_ports; port++)
    for (const RamElement& part : read_elements) create(port, part, _read[port].size[part.element]);
}

Port* OperDualPortRam::ReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const {
  if (!IsReadElement(element)) {
    KESTRIN_REPORT_INTERNAL("Unexpected read port element");
    return nullptr;
  }
  const Array& bits = _ports[port][element];
  return bit < bits.Size() ? FromWord<Port*>(bits.At(bit)) : nullptr;
}

Port* OperDualPortRam::WritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const {
  if (IsReadElement(element) || element >= RAM_ELEMENT_COUNT) {
    KESTRIN_REPORT_INTERNAL("Unexpected write port element");
    return nullptr;
  }
  const Array& bits = _ports[port][element];
  return bit < bits.Size() ? FromWord<Port*>(bits.At(bit)) : nullptr;
}

// Construction.

Instance* Netlist::TrueDualPortRam(Net* we_a, const Array* be_a, const Array* waddr_a, unsigned write_depth_a,
                                   const Array* wdata_a, const Array* raddr_a, unsigned read_depth_a, const Array* q_a,
                                   Net* we_b, const Array* be_b, const Array* waddr_b, unsigned write_depth_b,
                                   const Array* wdata_b, const Array* raddr_b, unsigned read_depth_b, const Array* q_b,
                                   unsigned long linefile) {
  KESTRIN_ASSERT_TEXT(raddr_a && q_a && (!we_a || (waddr_a && wdata_a)),
                      "we_a && waddr_a && raddr_a && wdata_a && q_a");
  KESTRIN_ASSERT_TEXT(!raddr_b || q_b, "raddr_b && q_b");
  KESTRIN_ASSERT_TEXT(!we_b || (waddr_b && wdata_b), "we_b && waddr_b && wdata_b");
  using Info = KESTRIN_RAM_PORT_INFO;
  auto read_info = [](const Array* address, unsigned depth, const Array* q) {
    return address ? Info::CreateReadPortInfo(SizeOf(address), depth, SizeOf(q)) : Info();
  };
  auto write_info = [](const Net* we, const Array* address, unsigned depth, const Array* data, const Array* be) {
    return we ? Info::CreateWritePortInfo(SizeOf(address), depth, SizeOf(data), SizeOf(be)) : Info();
  };
  const Info read_a = read_info(raddr_a, read_depth_a, q_a);
  const Info read_b = read_info(raddr_b, read_depth_b, q_b);
  const Info write_a = write_info(we_a, waddr_a, write_depth_a, wdata_a, be_a);
  const Info write_b = write_info(we_b, waddr_b, write_depth_b, wdata_b, be_b);

  const std::string view_name = " DualPortRam_read_A" + ReadSizes(read_a) + "_B" + ReadSizes(read_b) + "_write_A" +
                                WriteSizes(write_a) + "_B" + WriteSizes(write_b);
  Cell* cell = Library::Operators()->GetCell(view_name.c_str(), 1);
  if (!cell) Library::Operators()->Add(cell = new Cell(view_name.c_str()));
  Netlist* view = cell->GetNetlist("INTERFACE");
  if (!view) cell->Add(view = new OperDualPortRam(read_a, read_b, write_a, write_b));

  const bool is_rom = !we_a && !we_b;
  const std::string name = " Rom_" + std::to_string(is_rom ? NextInstanceIndex() : 0);
  auto* inst = new Instance(is_rom ? name.c_str() : nullptr, view, linefile);
  Add(inst);
  auto connect = [inst](unsigned port, Net* we, const Array* be, const Array* waddr, const Array* wdata,
                        const Array* raddr, const Array* q) {
    if (we) {
      inst->ConnectWriteArrayPort(port, RAM_WRITE_ADDRESS, waddr);
      inst->ConnectWriteArrayPort(port, RAM_WRITE_DATA, wdata);
      inst->ConnectWritePort(port, RAM_WRITE_ENABLE, 0, we);
      inst->ConnectWriteArrayPort(port, RAM_BYTE_ENABLE, be);
    }
    inst->ConnectReadArrayPort(port, RAM_READ_ADDRESS, raddr);
    inst->ConnectReadArrayPort(port, RAM_READ_DATA, q);
  };
  connect(0, we_a, be_a, waddr_a, wdata_a, raddr_a, q_a);
  connect(1, we_b, be_b, waddr_b, wdata_b, raddr_b, q_b);
  return inst;
}

Instance* Netlist::DualPortRam(Net* we, const Array* be, const Array* waddr, unsigned write_depth, const Array* wdata,
                               const Array* raddr, unsigned read_depth, const Array* q, unsigned long linefile) {
  return TrueDualPortRam(we, be, waddr, write_depth, wdata, raddr, read_depth, q, nullptr, nullptr, nullptr, 0, nullptr,
                         nullptr, 0, nullptr, linefile);
}

// Access through an instance.

namespace {
const OperDualPortRam* RamView(const Instance* inst) {
  return inst->Type() == OPER_DUAL_PORT_RAM ? static_cast<const OperDualPortRam*>(inst->View()) : nullptr;
}
Port* ReadPortOf(const Instance* inst, unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) {
  const OperDualPortRam* ram = RamView(inst);
  return ram && port < num_ram_ports ? ram->ReadPort(port, element, bit) : nullptr;
}
Port* WritePortOf(const Instance* inst, unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) {
  const OperDualPortRam* ram = RamView(inst);
  return ram && port < num_ram_ports ? ram->WritePort(port, element, bit) : nullptr;
}
void ReconnectPort(Instance* inst, Port* port, Net* net) {
  if (port) inst->Reconnect(port, net);
}
} // namespace

Net* Instance::GetReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const {
  const Port* found = ReadPortOf(this, port, element, bit);
  return found ? GetNet(found) : nullptr;
}

Net* Instance::GetWritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const {
  const Port* found = WritePortOf(this, port, element, bit);
  return found ? GetNet(found) : nullptr;
}

void Instance::GetReadArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, Array& nets) const {
  nets.Reset();
  for (unsigned bit = 0; bit < GetReadPortSize(port, element); bit++) nets.Insert(GetReadPort(port, element, bit));
}

void Instance::GetWriteArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, Array& nets) const {
  nets.Reset();
  for (unsigned bit = 0; bit < GetWritePortSize(port, element); bit++) nets.Insert(GetWritePort(port, element, bit));
}

void Instance::ConnectReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit, Net* net) {
  ReconnectPort(this, ReadPortOf(this, port, element, bit), net);
}

void Instance::ConnectWritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit, Net* net) {
  ReconnectPort(this, WritePortOf(this, port, element, bit), net);
}

void Instance::ConnectReadArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, const Array* nets) {
  unsigned bit = 0;
  for (Net* net : ItemsOf<Net*>(nets)) ConnectReadPort(port, element, bit++, net);
}

void Instance::ConnectWriteArrayPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, const Array* nets) {
  unsigned bit = 0;
  for (Net* net : ItemsOf<Net*>(nets)) ConnectWritePort(port, element, bit++, net);
}

void Instance::DisconnectReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) {
  ConnectReadPort(port, element, bit, nullptr);
}

void Instance::DisconnectWritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) {
  ConnectWritePort(port, element, bit, nullptr);
}

unsigned Instance::GetReadPortSize(unsigned port, KESTRIN_RAM_PORT_ELEMENT element) const {
  const OperDualPortRam* ram = RamView(this);
  return ram && port < num_ram_ports ? ram->ReadPortInfo(port).size[element] : 0;
}

unsigned Instance::GetWritePortSize(unsigned port, KESTRIN_RAM_PORT_ELEMENT element) const {
  const OperDualPortRam* ram = RamView(this);
  return ram && port < num_ram_ports ? ram->WritePortInfo(port).size[element] : 0;
}

unsigned Instance::GetReadDepth(unsigned port) const {
  const OperDualPortRam* ram = RamView(this);
  return ram && port < num_ram_ports ? ram->ReadPortInfo(port).depth : 0;
}

unsigned Instance::GetWriteDepth(unsigned port) const {
  const OperDualPortRam* ram = RamView(this);
  return ram && port < num_ram_ports ? ram->WritePortInfo(port).depth : 0;
}

unsigned Instance::NumUniqueAddresses() const {
  ArrayOf<Net> addresses[2 * num_ram_ports];
  unsigned unique = 0;
  for (unsigned pos = 0; pos < 2 * num_ram_ports; pos++) {
    if (pos < num_ram_ports)
      GetReadArrayPort(pos, RAM_READ_ADDRESS, addresses[pos]);
    else
      GetWriteArrayPort(pos - num_ram_ports, RAM_WRITE_ADDRESS, addresses[pos]);
    bool is_known = addresses[pos].Size() == 0;
    for (unsigned other = 0; other < pos && !is_known; other++) {
      is_known = addresses[other].Size() == addresses[pos].Size();
      for (unsigned bit = 0; bit < addresses[pos].Size() && is_known; bit++)
        is_known = addresses[other].At(bit) == addresses[pos].At(bit);
    }
    unique += !is_known;
  }
  return unique;
}
