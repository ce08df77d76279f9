// What Polish does with memories: write enables that elaboration registered, bypass logic that a user wrote by hand,
// and memories with two read ports that have to be two memories. And what can be asked about their behaviour.
#include <cstring>
#include <string>
#include <vector>

#include "containers/views.h"
#include "database/polish.h"
#include "database/ram.h"
#include "util/services.h"
#include "util/strings.h"

namespace {
constexpr unsigned num_ram_ports = 2;
constexpr const char* port_letters[] = {"A", "B"};

std::vector<Instance*> RamsOf(const Netlist* netlist) {
  std::vector<Instance*> rams;
  for (Instance* inst : InstancesOf(netlist))
    if (inst->Type() == OPER_DUAL_PORT_RAM) rams.push_back(inst);
  return rams;
}

Instance* RegisterOf(const Net* net) { return net && net->DriverType() == PRIM_DFFRS ? net->Driver() : nullptr; }

bool AreCompatible(Instance* a, Instance* b) {
  if (!a || !b) return false;
  Set visited;
  return kestrin_compatible_secondaries(a, b, &visited);
}
} // namespace

// Behaviour.

unsigned kestrin_get_ram_behavior(const Instance* inst, ATT_ENUM attribute, const char* token) {
  return Strings::substring(inst->GetAttValue(attribute), token);
}

void kestrin_set_ram_behavior(Instance* inst, ATT_ENUM attribute, const char* token) {
  if (kestrin_get_ram_behavior(inst, attribute, token)) return;
  const char* old = inst->GetAttValue(attribute);
  const std::string value = old && *old ? std::string(old) + " " + token : std::string(token);
  inst->AddAtt(attribute, value.c_str());
}

void kestrin_clear_ram_behavior(Instance* inst, ATT_ENUM attribute, const char* token) {
  if (!kestrin_get_ram_behavior(inst, attribute, token)) return;
  std::string value = inst->GetAttValue(attribute);
  value.erase(value.find(token), std::strlen(token) + 1); // with the blank behind it
  while (!value.empty() && value.back() == ' ') value.pop_back();
  if (value.empty())
    inst->RemoveAtt(attribute);
  else
    inst->AddAtt(attribute, value.c_str());
}

unsigned kestrin_active_read_port(const Instance* inst, unsigned port) { return inst->GetReadDepth(port) != 0; }

unsigned kestrin_active_write_port(const Instance* inst, unsigned port) {
  if (!inst->GetWriteDepth(port)) return 0;
  const Net* enable = inst->GetWritePort(port, RAM_WRITE_ENABLE, 0);
  return enable && !enable->IsGnd();
}

void kestrin_parse_ramstyle(const char* value, std::string& style, bool& no_rw_check) {
  style.clear();
  no_rw_check = false;
  std::string word;
  auto finish = [&] {
    if (Strings::compare_nocase(word.c_str(), "no_rw_check"))
      no_rw_check = true;
    else if (!word.empty())
      style = word;
    word.clear();
  };
  for (const char* at = value ? value : ""; *at; at++) {
    if (std::strchr(" \t,", *at))
      finish();
    else if (*at != '"')
      word += *at;
  }
  finish();
}

// Addresses.

unsigned kestrin_compare_read_and_write_address(Instance* inst, unsigned read_port, unsigned write_port) {
  const unsigned size = inst->GetReadPortSize(read_port, RAM_READ_ADDRESS);
  if (!size || size != inst->GetWritePortSize(write_port, RAM_WRITE_ADDRESS)) return 1;
  unsigned equal = 0;
  unsigned delayed = 0;
  for (unsigned bit = 0; bit < size; bit++) {
    Net* read = inst->GetReadPort(read_port, RAM_READ_ADDRESS, bit);
    Net* write = inst->GetWritePort(write_port, RAM_WRITE_ADDRESS, bit);
    if (!read || !write) continue;
    equal += kestrin_equivalent_nets(read, write, nullptr) != 0;
    Net* before = write->RegNet();
    delayed += before && !read->RegNet() && kestrin_equivalent_nets(before, read, nullptr);
  }
  if (equal == size) return 1;
  if (delayed != size) return 0;

  const unsigned data_size = inst->GetReadPortSize(read_port, RAM_READ_DATA);
  unsigned alike = 0;
  for (unsigned bit = 0; bit < data_size; bit++) {
    const Net* q = inst->GetReadPort(read_port, RAM_READ_DATA, bit);
    Instance* output = q ? kestrin_get_fanout(q, PRIM_DFFRS, GET_FANOUT_SINGLE) : nullptr;
    alike += AreCompatible(output, RegisterOf(inst->GetWritePort(write_port, RAM_WRITE_DATA, bit)));
  }
  if (alike == data_size) return 2;
  return alike ? 0 : 3;
}

// Bypass logic by hand: q <= we_next && same address ? data_next : memory.

unsigned kestrin_find_manual_bypass_logic(Instance* inst, unsigned read_port, unsigned write_port, Array& output_regs) {
  const Net* enable = inst->GetWritePort(write_port, RAM_WRITE_ENABLE, 0);
  const Net* next_enable = enable ? enable->RegNet() : nullptr;
  if (!next_enable || kestrin_compare_read_and_write_address(inst, read_port, write_port) != 3) return 0;
  std::vector<Instance*> found;
  for (unsigned bit = 0; bit < inst->GetReadPortSize(read_port, RAM_READ_DATA); bit++) {
    const Net* q = inst->GetReadPort(read_port, RAM_READ_DATA, bit);
    const Net* data = inst->GetWritePort(write_port, RAM_WRITE_DATA, bit);
    const Instance* mux = q ? kestrin_get_fanout(q, PRIM_MUX, GET_FANOUT_SINGLE) : nullptr;
    if (!mux || !data || mux->GetControl() != next_enable || mux->GetInput1() != q) return 0;
    if (!data->RegNet() || mux->GetInput2() != data->RegNet() || !mux->GetOutput()) return 0;
    Instance* reg = kestrin_get_fanout(mux->GetOutput(), PRIM_DFFRS, GET_FANOUT_SINGLE);
    if (!reg || reg->GetInput() != mux->GetOutput() || !AreCompatible(reg, enable->Driver())) return 0;
    found.push_back(reg);
  }
  for (Instance* reg : found) output_regs.Insert(reg);
  return 1;
}

unsigned kestrin_read_and_write_ports_are_compatible(Instance* inst, unsigned read_port, unsigned write_port) {
  switch (kestrin_compare_read_and_write_address(inst, read_port, write_port)) {
  case 1:
  case 2: return kestrin_get_ram_behavior(inst, ATT_READ_AFTER_WRITE, port_letters[read_port]);
  case 3: {
    Array output_regs;
    return kestrin_find_manual_bypass_logic(inst, read_port, write_port, output_regs);
  }
  default: return 0;
  }
}

namespace {
void RemoveManualBypass(Instance* inst, unsigned read_port, unsigned write_port) {
  ArrayOf<Instance> output_regs;
  if (!kestrin_find_manual_bypass_logic(inst, read_port, write_port, output_regs)) return;
  const char* read_letter = port_letters[read_port];
  const char* write_letter = port_letters[write_port];
  kestrin_debug(
      "Converting manual bypass logic on RAM %s (read port = %s, write port = %s) to read-after-write behavior",
      inst->Name(), read_letter, write_letter);
  ArrayOf<Net> q;
  inst->GetReadArrayPort(read_port, RAM_READ_DATA, q);
  KESTRIN_ASSERT(q.Size() == output_regs.Size());
  for (unsigned bit = 0; bit < q.Size(); bit++) {
    Instance* mux = kestrin_get_fanout(q.At(bit), PRIM_MUX, GET_FANOUT_SINGLE);
    mux->Disconnect(mux->View()->GetInput1());
    Instance* reg = output_regs.At(bit);
    reg->Reconnect(reg->View()->GetInput(), q.At(bit));
  }
  kestrin_set_ram_behavior(inst, ATT_READ_AFTER_WRITE, (std::string(read_letter) + write_letter).c_str());
}
} // namespace

void kestrin_remove_manual_bypass_logic(Netlist* netlist) {
  for (Instance* inst : RamsOf(netlist)) {
    if (!inst->GetAtt(ATT_TRUE_DUAL_PORT)) continue;
    for (unsigned write_port = 0; write_port < num_ram_ports; write_port++)
      for (unsigned read_port = 0; read_port < num_ram_ports; read_port++)
        if (kestrin_active_write_port(inst, write_port) && kestrin_active_read_port(inst, read_port))
          RemoveManualBypass(inst, read_port, write_port);
  }
}

// Write enables.

namespace {
constexpr const char* non_user_mark = " :non-user";

/// A register that elaboration made for a write enable: asynchronous terms on it are no part of a memory.
void ProcessWriteEnableRegister(Instance* inst, Instance* reg, SharedConstants& constants) {
  if (reg->GetSet() && !reg->GetSet()->IsGnd()) {
    inst->AddAtt(" :async_clear", "");
    kestrin_debug("Inferred RAM %s has an asynchronous write but was also used/written sequentially, too",
                  inst->Name());
  }
  Net* reset = reg->GetReset();
  if (!reset || reset->IsGnd()) return;
  Netlist* netlist = reg->Owner();
  const unsigned long linefile = reg->Linefile();
  Net* d = netlist->And(reg->GetInput(), netlist->Inv(reset, linefile), linefile);
  reg->Reconnect(reg->View()->GetInput(), d);
  reg->Reconnect(reg->View()->GetReset(), constants.Gnd());
  kestrin_debug(
      "Converted asynchronous clear to synchronous hold on write-enable register (non-user) for inferred RAM %s",
      inst->Name());
}
} // namespace

void Netlist::PostProcessRamWriteEnables() {
  SharedConstants constants(this);
  for (Instance* inst : RamsOf(this)) {
    for (unsigned port = 0; port < num_ram_ports; port++) {
      Net* enable = inst->GetWritePort(port, RAM_WRITE_ENABLE, 0);
      if (!enable) continue;
      enable->RemoveAtt(non_user_mark);
      Instance* reg = RegisterOf(enable);
      if (reg && reg->GetAtt(non_user_mark)) ProcessWriteEnableRegister(inst, reg, constants);
    }
  }
}

// Two read ports.

namespace {
class RamSplitter {
public:
  explicit RamSplitter(Netlist* netlist)
      : _netlist(netlist),
        _is_forced(kestrin_flag("zelk_split_dual_read_rams") || kestrin_flag("zelk_dont_infer_true_dual_port_rams")) {}

  void Process(Instance* inst) {
    if (!inst->GetReadDepth(0) || inst->GetReadDepth(0) != inst->GetReadDepth(1) || inst->GetWriteDepth(1)) return;
    if (!IsWanted(inst)) return;
    const char* init_file = inst->GetAttValue(ATT_RAM_INIT_FILE);
    if (init_file && *init_file) return;
    Split(inst);
  }

private:
  bool IsWanted(const Instance* inst) const {
    if (_is_forced) {
      kestrin_debug("Splitting dual-read RAM \"%s\" to honor INI or PJS setting", inst->Name());
      return true;
    }
    if (!inst->GetAtt(ATT_TRUE_DUAL_PORT)) return false;
    const char* value = inst->GetAttValue(ATT_RAMSTYLE);
    if (!value) value = _netlist->GetAttValue(ATT_RAMSTYLE);
    std::string style;
    bool no_rw_check = false;
    kestrin_parse_ramstyle(value, style, no_rw_check);
    if (!Strings::compare_nocase(style.c_str(), "srb7")) return false;
    kestrin_debug("Splitting dual-read RAM \"%s\" with ramstyle = \"srb7\" because an srb7 can't support dual reads",
                  inst->Name());
    return true;
  }

  /// The second read port becomes the first one of a memory that is written in the same way.
  void Split(Instance* inst) {
    ArrayOf<Net> raddr;
    ArrayOf<Net> q;
    ArrayOf<Net> waddr;
    ArrayOf<Net> wdata;
    ArrayOf<Net> be;
    inst->GetReadArrayPort(1, RAM_READ_ADDRESS, raddr);
    inst->GetReadArrayPort(1, RAM_READ_DATA, q);
    inst->GetWriteArrayPort(0, RAM_WRITE_ADDRESS, waddr);
    inst->GetWriteArrayPort(0, RAM_WRITE_DATA, wdata);
    inst->GetWriteArrayPort(0, RAM_BYTE_ENABLE, be);
    inst->RemoveAtt(ATT_TRUE_DUAL_PORT);
    for (KESTRIN_RAM_PORT_ELEMENT element : {RAM_READ_ADDRESS, RAM_READ_DATA})
      for (unsigned bit = 0; bit < inst->GetReadPortSize(1, element); bit++) inst->DisconnectReadPort(1, element, bit);
    Instance* copy =
        _netlist->DualPortRam(inst->GetWritePort(0, RAM_WRITE_ENABLE, 0), be.Size() ? &be : nullptr, &waddr,
                              inst->GetWriteDepth(0), &wdata, &raddr, inst->GetReadDepth(1), &q, inst->Linefile());
    copy->SetName((std::string(inst->Name()) + "__dual").c_str());
    CopyBehavior(inst, copy);
  }

  /// What is said of the second read port holds for the copy from now on.
  static void CopyBehavior(Instance* inst, Instance* copy) {
    constexpr ATT_ENUM translated[] = {ATT_ASYNCHRONOUS_READ, ATT_EXCLUSIVE_READ_WRITE, ATT_READ_AFTER_WRITE,
                                       ATT_SEQUENTIAL_READ_WRITE};
    auto is_translated = [&](ATT_ENUM type) {
      for (ATT_ENUM one : translated)
        if (one == type) return true;
      return false;
    };
    for (const Att* att : AttributesOf(inst))
      if (!is_translated(att->Type())) copy->AddAtt(new Att(*att));
    for (ATT_ENUM type : translated) {
      for (const char* token : {"BA", "BB", "B"}) {
        if (!kestrin_get_ram_behavior(inst, type, token)) continue;
        kestrin_set_ram_behavior(copy, type, "AA");
        kestrin_clear_ram_behavior(inst, type, token);
      }
    }
  }

  Netlist* _netlist;
  bool _is_forced;
};
} // namespace

void Netlist::SplitDualReadRams() {
  RamSplitter splitter(this);
  for (Instance* inst : RamsOf(this)) splitter.Process(inst);
}
