// Memories after elaboration: clean-up of the write enables that the front ends made, removal of bypass logic that
// users wrote around a memory, and splitting of memories with two read ports.
#include "containers/views.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/operators.h"
#include "database/polish.h"
#include "database/ram.h"
#include "util/services.h"
#include "util/strings.h"

namespace {

constexpr unsigned port_count = 2;
constexpr const char* port_letters[port_count] = {"A", "B"};
/// Marks what the front end itself made.
constexpr const char* non_user = " :non-user";

std::string Pair(unsigned read_port, unsigned write_port) {
  return std::string(port_letters[read_port]) + port_letters[write_port];
}

Instance* RegisterOf(const Net* net) { return net && net->DriverType() == PRIM_DFFRS ? net->Driver() : nullptr; }

Port* DataPort(const Instance* reg) { return reg->View()->GetPort("d"); }

template <class Visit> void ForEachRam(Netlist* netlist, Visit visit) {
  ArrayOf<Instance> rams;
  for (Instance* inst : InstancesOf(netlist))
    if (inst->Type() == OPER_DUAL_PORT_RAM) rams.InsertLast(inst);
  for (Instance* inst : rams) visit(inst);
}

/// The front end's register has no secondary controls of its own: what it has comes from the memory's use elsewhere.
void SettleWriteEnable(Netlist* netlist, Instance* ram, Instance* reg, SharedConstants& constants) {
  if (reg->GetSet() && !reg->GetSet()->IsGnd()) {
    ram->AddAtt(" :async_clear", "1");
    kestrin_debug("Inferred RAM %s has an asynchronous write but was also used/written sequentially, too",
                  ram->ExternalName());
  }
  Net* reset = reg->GetReset();
  if (!reset || reset->IsGnd()) return;
  Net* data = reg->GetNet(DataPort(reg));
  Net* held = netlist->And(data, netlist->Inv(reset, reg->Linefile()), reg->Linefile());
  reg->Reconnect(reg->View()->GetReset(), constants.Gnd());
  reg->Reconnect(DataPort(reg), held);
  kestrin_debug("Converted asynchronous clear to synchronous hold on write-enable register (non-user) for inferred RAM "
                "%s",
                ram->ExternalName());
}

} // namespace

void Netlist::PostProcessRamWriteEnables() {
  SharedConstants constants(this);
  ForEachRam(this, [&](Instance* ram) {
    for (unsigned port = 0; port < port_count; port++) {
      Net* enable = ram->GetWritePort(port, RAM_WRITE_ENABLE, 0);
      if (!enable) continue;
      enable->RemoveAtt(non_user);
      Instance* reg = RegisterOf(enable);
      if (!reg || !reg->GetAtt(non_user)) continue;
      reg->RemoveAtt(non_user);
      SettleWriteEnable(this, ram, reg, constants);
    }
  });
}

namespace {

bool IsEquivalent(Net* a, Net* b) { return a && b && kestrin_equivalent_nets(a, b, nullptr); }

bool IsDelayed(const Net* write_bit, const Net* read_bit) {
  return write_bit && read_bit && write_bit->RegNet() == read_bit && !read_bit->RegNet();
}

} // namespace

unsigned kestrin_compare_read_and_write_address(Instance* inst, unsigned read_port, unsigned write_port) {
  enum { UNRELATED = 0, SAME = 1, DELAYED_WITH_REGISTERED_READ = 2, DELAYED = 3 };
  ArrayOf<Net> read;
  ArrayOf<Net> write;
  inst->GetReadArrayPort(read_port, RAM_READ_ADDRESS, read);
  inst->GetWriteArrayPort(write_port, RAM_WRITE_ADDRESS, write);
  if (read.Size() != write.Size() || !read.Size()) return SAME;
  unsigned num_equivalent = 0;
  unsigned num_delayed = 0;
  for (unsigned bit = 0; bit < read.Size(); bit++) {
    if (IsEquivalent(read.At(bit), write.At(bit))) num_equivalent++;
    if (IsDelayed(write.At(bit), read.At(bit))) num_delayed++;
  }
  if (num_equivalent == read.Size()) return SAME;
  if (num_delayed != read.Size()) return UNRELATED;

  ArrayOf<Net> q;
  ArrayOf<Net> data;
  inst->GetReadArrayPort(read_port, RAM_READ_DATA, q);
  inst->GetWriteArrayPort(write_port, RAM_WRITE_DATA, data);
  const unsigned num_bits = q.Size() < data.Size() ? q.Size() : data.Size();
  unsigned num_compatible = 0;
  for (unsigned bit = 0; bit < num_bits; bit++) {
    Instance* output_reg = q.At(bit) ? kestrin_get_fanout(q.At(bit), PRIM_DFFRS, GET_FANOUT_SINGLE) : nullptr;
    Instance* data_reg = RegisterOf(data.At(bit));
    Set visited;
    if (output_reg && data_reg && kestrin_compatible_secondaries(output_reg, data_reg, &visited)) num_compatible++;
  }
  if (num_compatible == num_bits) return DELAYED_WITH_REGISTERED_READ;
  return num_compatible ? UNRELATED : DELAYED;
}

namespace {

/// The register behind the multiplexer that chooses between the memory's output and the data just written.
Instance* FindBypassRegister(Net* q, const Net* data, const Net* enable, Instance* enable_reg) {
  const Instance* mux = q ? kestrin_get_fanout(q, PRIM_MUX, GET_FANOUT_SINGLE) : nullptr;
  if (!mux || mux->GetControl() != enable || mux->GetInput1() != q || !data || mux->GetInput2() != data->RegNet())
    return nullptr;
  if (!mux->GetInput2() || !mux->GetOutput()) return nullptr;
  Instance* reg = kestrin_get_fanout(mux->GetOutput(), PRIM_DFFRS, GET_FANOUT_SINGLE);
  Set visited;
  return reg && kestrin_compatible_secondaries(reg, enable_reg, &visited) ? reg : nullptr;
}

} // namespace

unsigned kestrin_find_manual_bypass_logic(Instance* inst, unsigned read_port, unsigned write_port, Array& output_regs) {
  constexpr unsigned DELAYED = 3;
  const Net* enable = inst->GetWritePort(write_port, RAM_WRITE_ENABLE, 0);
  if (!enable || !enable->RegNet()) return 0;
  if (kestrin_compare_read_and_write_address(inst, read_port, write_port) != DELAYED) return 0;
  ArrayOf<Net> q;
  ArrayOf<Net> data;
  inst->GetReadArrayPort(read_port, RAM_READ_DATA, q);
  inst->GetWriteArrayPort(write_port, RAM_WRITE_DATA, data);
  if (q.Size() != data.Size()) return 0;
  ArrayOf<Instance> regs;
  for (unsigned bit = 0; bit < q.Size(); bit++) {
    Instance* reg = FindBypassRegister(q.At(bit), data.At(bit), enable->RegNet(), enable->Driver());
    if (!reg) return 0;
    regs.InsertLast(reg);
  }
  for (Instance* reg : regs) output_regs.InsertLast(reg);
  return 1;
}

unsigned kestrin_read_and_write_ports_are_compatible(Instance* inst, unsigned read_port, unsigned write_port) {
  switch (kestrin_compare_read_and_write_address(inst, read_port, write_port)) {
  case 1:
  case 2: return kestrin_get_ram_behavior(inst, ATT_READ_AFTER_WRITE, port_letters[read_port]);
  case 3: {
    Array regs;
    return kestrin_find_manual_bypass_logic(inst, read_port, write_port, regs);
  }
  default: return 0;
  }
}

namespace {

void RemoveBypass(Instance* ram, unsigned read_port, unsigned write_port) {
  ArrayOf<Instance> output_regs;
  if (!kestrin_find_manual_bypass_logic(ram, read_port, write_port, output_regs)) return;
  kestrin_debug(
      "Converting manual bypass logic on RAM %s (read port = %s, write port = %s) to read-after-write behavior",
      ram->ExternalName(), port_letters[read_port], port_letters[write_port]);
  ArrayOf<Net> q;
  ram->GetReadArrayPort(read_port, RAM_READ_DATA, q);
  KESTRIN_ASSERT(q.Size() == output_regs.Size());
  for (unsigned bit = 0; bit < q.Size(); bit++) {
    Instance* mux = kestrin_get_fanout(q.At(bit), PRIM_MUX, GET_FANOUT_SINGLE);
    Instance* reg = output_regs.At(bit);
    Net* bypassed = reg->GetNet(DataPort(reg));
    mux->Disconnect(mux->View()->GetInput1());
    reg->Reconnect(DataPort(reg), q.At(bit));
    ram->Owner()->RegisterPotentiallyFanoutFreeNet(bypassed);
  }
  kestrin_set_ram_behavior(ram, ATT_READ_AFTER_WRITE, Pair(read_port, write_port).c_str());
}

} // namespace

void kestrin_remove_manual_bypass_logic(Netlist* netlist) {
  ForEachRam(netlist, [](Instance* ram) {
    if (!ram->GetAtt(ATT_TRUE_DUAL_PORT)) return;
    for (unsigned write_port = 0; write_port < port_count; write_port++)
      for (unsigned read_port = 0; read_port < port_count; read_port++)
        if (kestrin_active_write_port(ram, write_port) && kestrin_active_read_port(ram, read_port))
          RemoveBypass(ram, read_port, write_port);
  });
}

namespace {

/// A block of this style has one read port.
bool IsOfSingleReadStyle(const Instance* ram) {
  const char* value = ram->GetAttValue(ATT_RAMSTYLE);
  if (!value) value = ram->Owner()->GetAttValue(ATT_RAMSTYLE);
  std::string style;
  bool no_rw_check = false;
  kestrin_parse_ramstyle(value, style, no_rw_check);
  return Strings::compare_nocase(style.c_str(), "srb7") != 0;
}

bool HasInitFile(const Instance* ram) {
  const char* file = ram->GetAttValue(ATT_RAM_INIT_FILE);
  return file && *file;
}

/// Tokens of port b become those of the copy's port a.
void MoveBehavior(Instance* ram, Instance* copy, ATT_ENUM attribute) {
  const bool is_pair = attribute == ATT_READ_AFTER_WRITE || attribute == ATT_SEQUENTIAL_READ_WRITE ||
                       attribute == ATT_EXCLUSIVE_READ_WRITE;
  const char* token = is_pair ? "BA" : "B";
  copy->RemoveAtt(attribute);
  if (!kestrin_get_ram_behavior(ram, attribute, token)) return;
  kestrin_set_ram_behavior(copy, attribute, "AA");
  kestrin_clear_ram_behavior(ram, attribute, token);
}

void SplitSecondReadPort(Instance* ram) {
  ArrayOf<Net> raddr;
  ArrayOf<Net> q;
  ArrayOf<Net> waddr;
  ArrayOf<Net> wdata;
  ArrayOf<Net> be;
  ram->GetReadArrayPort(1, RAM_READ_ADDRESS, raddr);
  ram->GetReadArrayPort(1, RAM_READ_DATA, q);
  ram->GetWriteArrayPort(0, RAM_WRITE_ADDRESS, waddr);
  ram->GetWriteArrayPort(0, RAM_WRITE_DATA, wdata);
  ram->GetWriteArrayPort(0, RAM_BYTE_ENABLE, be);
  Net* enable = ram->GetWritePort(0, RAM_WRITE_ENABLE, 0);
  ram->RemoveAtt(ATT_TRUE_DUAL_PORT);
  for (unsigned bit = 0; bit < raddr.Size(); bit++) ram->DisconnectReadPort(1, RAM_READ_ADDRESS, bit);
  for (unsigned bit = 0; bit < q.Size(); bit++) ram->DisconnectReadPort(1, RAM_READ_DATA, bit);

  Instance* copy =
      ram->Owner()->DualPortRam(enable, be.Size() ? &be : nullptr, enable ? &waddr : nullptr, ram->GetWriteDepth(0),
                                enable ? &wdata : nullptr, &raddr, ram->GetReadDepth(1), &q, ram->Linefile());
  copy->SetName((std::string(ram->Name()) + "__dual").c_str());
  copy->CopyAttributesFrom(ram);
  for (ATT_ENUM attribute :
       {ATT_ASYNCHRONOUS_READ, ATT_EXCLUSIVE_READ_WRITE, ATT_READ_AFTER_WRITE, ATT_SEQUENTIAL_READ_WRITE})
    MoveBehavior(ram, copy, attribute);
}

} // namespace

void Netlist::SplitDualReadRams() {
  const bool is_forced =
      kestrin_flag("zelk_split_dual_read_rams") || kestrin_flag("zelk_dont_infer_true_dual_port_rams");
  ForEachRam(this, [&](Instance* ram) {
    const bool has_two_reads = ram->GetReadDepth(1) != 0 && ram->GetReadDepth(0) == ram->GetReadDepth(1);
    if (!has_two_reads || ram->GetWriteDepth(1) != 0) return;
    if (!is_forced && !ram->GetAtt(ATT_TRUE_DUAL_PORT)) return;
    if (!is_forced && !IsOfSingleReadStyle(ram)) return;
    if (HasInitFile(ram)) return;
    if (is_forced)
      kestrin_debug("Splitting dual-read RAM \"%s\" to honor INI or PJS setting", ram->ExternalName());
    else
      kestrin_debug("Splitting dual-read RAM \"%s\" with ramstyle = \"srb7\" because an srb7 can't support dual reads",
                    ram->ExternalName());
    SplitSecondReadPort(ram);
  });
}
