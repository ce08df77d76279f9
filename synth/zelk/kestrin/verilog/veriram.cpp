#include "verilog/veriram.h"

#include <algorithm>
#include <cstdlib>

#include "containers/set.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/ram.h"
#include "database/views.h"
#include "util/services.h"
#include "verilog/vericonstraint.h"
#include "verilog/verielabstate.h"
#include "verilog/veriexpression.h"
#include "verilog/verimoduleitem.h"
#include "verilog/verinets.h"
#include "verilog/veristatement.h"
#include "verilog/verivalue_logic.h"

unsigned VeriRamInfo::_disabled = 0;

// The shape of references.

namespace {

bool IsConstantIndex(VeriExpression* index) {
  Set ids;
  index->AddToSensList(ids);
  return ids.Size() == 0;
}

/// Whether two references are in branches of one statement that are never both executed. Branches of an expression are:
/// all its operands are evaluated.
bool Exclude(VeriTreeNode* a, VeriTreeNode* b) {
  const VeriTreeNode* dominator = VeriTreeNode::Dominator(a, b);
  return dominator && !dominator->IsExpr() && a->Excludes(b);
}

bool ExcludesAll(VeriTreeNode* name, const VeriRamInfo::References& others) {
  return std::all_of(others.begin(), others.end(), [&](VeriIndexedName* other) { return Exclude(name, other); });
}

template <class T> const T* Enclosing(const VeriTreeNode* node) {
  for (; node; node = node->Parent())
    if (const auto* found = dynamic_cast<const T*>(node)) return found;
  return nullptr;
}

bool HasClock(const VeriEventControlStatement* statement) { return statement && statement->HasEdge(); }

std::string AddressText(const VeriIndexedName* name) { return name->Indices().GetFirst()->Image(); }

/// Whether two references in one process have the same address, so that what they write or read can be one word.
bool HaveSameAddress(const VeriIndexedName* a, const VeriIndexedName* b) {
  if (Enclosing<VeriAlwaysConstruct>(a) != Enclosing<VeriAlwaysConstruct>(b)) return false;
  if (AddressText(a) == AddressText(b)) return true;
  kestrin_debug("%s %s write address do not match", a->Image().c_str(), b->Image().c_str());
  return false;
}

bool AllConstWords(const VeriRamInfo::References& port) {
  return std::all_of(port.begin(), port.end(), [](const VeriIndexedName* name) {
    return veri_ram_ref_type_is_const_word(veri_ram_ref_type(name));
  });
}

/// The number of references per port is levelled. Of two writes of one port the later one wins, so that only what
/// excludes all others may leave it.
void Balance(std::vector<VeriRamInfo::References>& ports) {
  if (ports.size() != VeriRamInfo::max_ports) return;
  while (ports[0].size() > ports[1].size() + 1) {
    auto movable = std::find_if(ports[0].begin(), ports[0].end(), [&](VeriIndexedName* name) {
      return ExcludesAll(name, ports[1]) && std::all_of(ports[0].begin(), ports[0].end(), [&](VeriIndexedName* other) {
               return other == name || Exclude(name, other);
             });
    });
    if (movable == ports[0].end()) return;
    ports[1].push_back(*movable);
    ports[0].erase(movable);
  }
}

} // namespace

veri_ram_ref veri_ram_ref_type(const VeriIndexedName* name) {
  const VeriExpressions& indices = name->Indices();
  if (indices.Size() < 1 || indices.Size() > 2) return VERI_RAM_REF_UNSUPPORTED;
  if (indices.Size() == 2 && indices.GetFirst()->AsRange()) return VERI_RAM_REF_UNSUPPORTED;
  const bool is_const = IsConstantIndex(indices.GetFirst());
  const bool is_part = indices.GetLast()->AsRange() != nullptr;
  if (indices.Size() == 1) {
    if (is_const) return is_part ? VERI_RAM_REF_CONST_WORDS : VERI_RAM_REF_CONST_WORD;
    return is_part ? VERI_RAM_REF_WORDS : VERI_RAM_REF_WORD;
  }
  if (IsConstantIndex(indices.GetLast())) {
    if (is_const) return is_part ? VERI_RAM_REF_CONST_CONST_PART : VERI_RAM_REF_CONST_CONST;
    return is_part ? VERI_RAM_REF_WORD_CONST_PART : VERI_RAM_REF_WORD_CONST;
  }
  if (is_const) return is_part ? VERI_RAM_REF_CONST_VAR_PART : VERI_RAM_REF_CONST_VAR;
  return is_part ? VERI_RAM_REF_WORD_VAR_PART : VERI_RAM_REF_WORD_VAR;
}

bool veri_ram_ref_type_is_const_word(veri_ram_ref type) {
  switch (type) {
  case VERI_RAM_REF_CONST_WORD:
  case VERI_RAM_REF_CONST_WORDS:
  case VERI_RAM_REF_CONST_CONST:
  case VERI_RAM_REF_CONST_CONST_PART:
  case VERI_RAM_REF_CONST_VAR:
  case VERI_RAM_REF_CONST_VAR_PART: return true;
  case VERI_RAM_REF_WORD:
  case VERI_RAM_REF_WORDS:
  case VERI_RAM_REF_WORD_CONST:
  case VERI_RAM_REF_WORD_CONST_PART:
  case VERI_RAM_REF_WORD_VAR:
  case VERI_RAM_REF_WORD_VAR_PART:
  case VERI_RAM_REF_UNSUPPORTED: return false;
  }
  return false;
}

// The decision.

namespace {

/// An array with one dimension of at least two packed words, that only processes write.
bool IsMemory(const VeriVariable* variable) {
  if (!variable->IsVar() || variable->IsNet() || variable->IsPort() || variable->Dir()) return false;
  if (variable->Is(IDF_IN_SUBPROGRAM) || variable->Is(IDF_AUTOMATIC)) return false;
  const VeriConstraint* type = const_cast<VeriVariable*>(variable)->GetConstraint();
  if (!type || !type->AsUniformArray() || type->NumUnpacked() != 1 || type->IsDynamicArray()) return false;
  const VeriConstraint* word = type->ElementConstraint();
  if (!word->IsPacked() || word->IsRealRange() || word->IsString() || word->IsEnumRange()) return false;
  return type->Length() >= 2 && word->Size() >= 1 && type->TotalBits() <= veri_max_object_bits;
}

/// The user's wish for the memory; empty without.
std::string StyleOf(const VeriVariable* variable) {
  const VeriTreeNode* declaration = variable->GetModuleItem();
  if (!declaration) return {};
  for (const char* name : {"ramstyle", "syn_ramstyle"}) {
    VeriExpression* expression = declaration->GetAttribute(name);
    OwnedValue value = expression ? expression->Evaluate(nullptr) : nullptr;
    if (value && value->IsConstant()) return value->String();
  }
  return {};
}

} // namespace

std::unique_ptr<VeriRamInfo> VeriRamInfo::Create(const VeriVariable* variable) {
  if (kestrin_flag("zelk_dont_infer_verilog_rams") || !IsMemory(variable)) return nullptr;
  std::string text = StyleOf(variable);
  std::string style;
  bool no_rw_check = false;
  if (!text.empty()) kestrin_debug("ramstyle %s", text.c_str());
  kestrin_parse_ramstyle(text.c_str(), style, no_rw_check);
  const bool wants_logic = Strings::compare_nocase(style.c_str(), "logic") != 0;
  auto info = std::make_unique<VeriRamInfo>();
  if (!wants_logic && !VeriNode::ElabState()->IsRefusedRam(variable) && info->Classify(variable)) return info;
  if (!style.empty() && !Strings::compare_nocase(style.c_str(), "auto"))
    variable->Warning("RAM not inferred for variable %s with attribute %s", variable->Name(),
                      ("ramstyle = \"" + style + "\"").c_str());
  return nullptr;
}

bool VeriRamInfo::Classify(const VeriVariable* variable) {
  for (const VeriVariable::Reference& reference : variable->References()) {
    const bool is_in_process = reference.process && reference.process->GetClassId() == ID_VeriAlwaysConstruct;
    if (reference.process && reference.process->GetClassId() == ID_VeriInitialConstruct) continue;
    if (reference.use == VERI_USE_EVENT) continue;
    if (reference.use == VERI_USE_OTHER || (reference.process && !is_in_process)) return false;
    auto* name = dynamic_cast<VeriIndexedName*>(reference.name->Parent());
    if (!name || name->GetPrefix() != reference.name || reference.name->GetClassId() != ID_VeriIdRef) return false;
    const veri_ram_ref type = veri_ram_ref_type(name);
    if (type == VERI_RAM_REF_UNSUPPORTED || type == VERI_RAM_REF_CONST_WORDS || type == VERI_RAM_REF_WORDS)
      return false;
    if (reference.use == VERI_USE_WRITE || reference.use == VERI_USE_READ_WRITE) {
      // A member of a word is written by way of the whole word.
      const bool is_prefix =
          name->Parent() && name->Parent()->IsExpr() && static_cast<const VeriExpression*>(name->Parent())->AsName();
      if (!is_in_process || is_prefix || !AddWrite(name)) return false;
    }
    if ((reference.use == VERI_USE_READ || reference.use == VERI_USE_READ_WRITE) && !AddRead(name)) return false;
  }
  if (_reads.empty()) return false;
  if (_writes.empty() && kestrin_flag("zelk_dont_infer_verilog_roms")) return false;
  if (_writes.size() > 1 &&
      (kestrin_flag("zelk_dont_infer_true_dual_port_rams") || !kestrin_flag("lsx_infer_true_dual_port_rams")))
    return false;
  if (std::any_of(_writes.begin(), _writes.end(), AllConstWords)) return false;
  if (std::all_of(_reads.begin(), _reads.end(), AllConstWords)) return false;
  Balance(_writes);
  Balance(_reads);
  return true;
}

/// References come in the order of the source, and what the second port writes wins over the first: a reference does
/// not join the first one behind writes of the second.
bool VeriRamInfo::AddWrite(VeriIndexedName* name) {
  const bool has_enables = kestrin_flag("lsx_infer_mixed_width_and_byte_enabled_rams") != 0;
  auto is_before = [&](const References& port) {
    return std::any_of(port.begin(), port.end(), [&](VeriIndexedName* other) {
      return Enclosing<VeriAlwaysConstruct>(name) == Enclosing<VeriAlwaysConstruct>(other) && !Exclude(name, other);
    });
  };
  for (auto port = _writes.begin(); port != _writes.end(); ++port) {
    const bool fits = std::all_of(port->begin(), port->end(), [&](VeriIndexedName* other) {
      return Exclude(name, other) || (has_enables && HaveSameAddress(name, other));
    });
    if (!fits || std::any_of(port + 1, _writes.end(), is_before)) continue;
    port->push_back(name);
    return true;
  }
  _writes.push_back({name});
  return _writes.size() <= max_ports;
}

bool VeriRamInfo::AddRead(VeriIndexedName* name) {
  for (References& port : _reads) {
    const bool fits = std::all_of(port.begin(), port.end(), [&](VeriIndexedName* other) {
      return Exclude(name, other) || HaveSameAddress(name, other);
    });
    if (!fits) continue;
    port.push_back(name);
    return true;
  }
  _reads.push_back({name});
  return _reads.size() <= max_ports;
}

int VeriRamInfo::IndexOf(const std::vector<References>& ports, const VeriIndexedName* name) {
  for (size_t port = 0; port < ports.size(); port++)
    if (std::find(ports[port].begin(), ports[port].end(), name) != ports[port].end()) return static_cast<int>(port);
  return -1;
}

bool VeriRamInfo::IsAsynchronousRead(unsigned read) const {
  return std::any_of(_reads[read].begin(), _reads[read].end(),
                     [](const VeriIndexedName* name) { return !HasClock(Enclosing<VeriEventControlStatement>(name)); });
}

bool VeriRamInfo::SequentialReadWrite(unsigned read, unsigned write) const {
  const auto* statement = Enclosing<VeriEventControlStatement>(_writes[write].front());
  auto is_under = [&](const VeriIndexedName* name) { return Enclosing<VeriEventControlStatement>(name) == statement; };
  return statement && std::all_of(_reads[read].begin(), _reads[read].end(), is_under) &&
         std::all_of(_writes[write].begin(), _writes[write].end(), is_under);
}

bool VeriRamInfo::ExclusiveReadWrite(unsigned read, unsigned write) const {
  return std::all_of(_reads[read].begin(), _reads[read].end(),
                     [&](VeriIndexedName* name) { return ExcludesAll(name, _writes[write]); });
}

// One run.

namespace {

/// A net without name that no sweep takes while nothing is connected to it: it stands on a ring until wires are
/// resolved.
Net* NewKeptNet(unsigned long linefile = 0) {
  Netlist* netlist = VeriNode::CurrentNetlist();
  auto* net = new Net(nullptr, linefile);
  auto* partner = new Net;
  netlist->Add(net);
  netlist->Add(partner);
  net->Wire(partner);
  return net;
}

VeriRam::Nets NewKeptNets(unsigned count, unsigned long linefile = 0) {
  VeriRam::Nets nets(count);
  for (Net*& net : nets) net = NewKeptNet(linefile);
  return nets;
}

/// Drives a net of this file.
void Drive(Net* target, Net* source, const VeriTreeNode* from) {
  VeriValue::FromNet(target)->NetAssignFrom(VeriValue::FromNet(source), VERI_RESOLVE_WIRE, false, from);
}

unsigned CeilLog2(unsigned number) {
  unsigned bits = 0;
  while (bits < 31 && 1U << bits < number) bits++;
  return bits;
}

} // namespace

VeriRam::VeriRam(VeriVariable* variable, std::unique_ptr<VeriRamInfo> info)
    : _variable(variable), _info(std::move(info)), _depth(variable->GetConstraint()->Length()),
      _width(variable->GetConstraint()->ElementSize()), _address_size(CeilLog2(_depth)) {}

OwnedValue VeriRam::CreateDualPortValue(VeriVariable* variable) {
  std::unique_ptr<VeriRamInfo> info = VeriRamInfo::Create(variable);
  if (!info) return nullptr;
  VeriNode::ElabState()->RegisterInferredRam(variable);
  return std::make_unique<VeriDualPortValue>(std::make_shared<VeriRam>(variable, std::move(info)));
}

void VeriRam::Refuse(const char* reason) {
  if (!_is_refused) kestrin_debug("No RAM for variable %s: %s", _variable->Name(), reason);
  _is_refused = true;
  VeriNode::ElabState()->RefuseRam(_variable);
}

VeriRam::Address VeriRam::AddressOf(const VeriValue& index, const VeriTreeNode* from) const {
  const VeriConstraint& type = Type();
  Address address;
  address.nets.assign(_address_size, veri_digit_net(VERI_DIGIT_X));
  address.is_valid = veri_digit_net(VERI_DIGIT_0);
  if (index.IsReal() || index.IsAggregate()) return address;
  if (index.IsConstant()) {
    int64_t number = 0;
    if (!index.ToInt64(&number) || !type.Contains(number)) return address;
    const auto word = static_cast<uint64_t>(number - type.Low());
    for (unsigned bit = 0; bit < _address_size; bit++)
      address.nets[bit] = veri_digit_net(word >> bit & 1 ? VERI_DIGIT_1 : VERI_DIGIT_0);
    address.is_valid = veri_digit_net(VERI_DIGIT_1);
    return address;
  }
  OwnedValue word = index.Copy();
  if (type.Low() != 0) {
    constexpr unsigned bound_size = 34; // holds any bound with its sign and a borrow
    const unsigned size = std::max(word->Size() + 2, bound_size);
    word = VeriValue::Adjust(std::move(word), size, from);
    word->SetSigned();
    word = VeriValue::Binary(VERI_OPER_MINUS, std::move(word), VeriValue::FromNumber(type.Low(), size, true), from);
  }
  if (!word) return address;
  // GetBit extends a narrow index by its sign.
  ArrayOf<Net> upper;
  for (unsigned bit = 0; bit < std::max(_address_size, word->Size()); bit++) {
    if (bit < _address_size)
      address.nets[bit] = word->GetBit(bit);
    else
      upper.InsertLast(word->GetBit(bit));
  }
  if (word->IsSigned() && word->Size() < _address_size) upper.InsertLast(word->SignBit());
  VeriLogic logic(from);
  address.is_valid = upper.Size() ? logic.Inv(logic.Reduce(upper, PRIM_OR)) : veri_digit_net(VERI_DIGIT_1);
  return address;
}

const VeriRam::Nets& VeriRam::ReadData(unsigned port) {
  if (_reads[port].data.empty()) _reads[port].data = NewKeptNets(_width);
  return _reads[port].data;
}

void VeriRam::ConnectRead(unsigned port, const Nets& address, const VeriTreeNode* from) {
  ReadPort& read = _reads[port];
  if (!read.address.empty()) {
    if (read.source != address) Refuse("a read port would need two addresses");
    return;
  }
  read.source = address;
  read.address = address;
  for (Net*& net : read.address) {
    if (veri_is_digit(net)) continue;
    Net* source = net;
    net = NewKeptNet();
    Drive(net, source, from);
  }
}

const VeriRam::WriteNets& VeriRam::Registers(unsigned port) {
  WriteNets& registers = _writes[port].registers;
  if (!registers.mask.empty()) return registers;
  // With a location like variables: extraction takes them for what holds a value.
  const unsigned long linefile = _variable->Linefile();
  registers = {NewKeptNets(_width, linefile), NewKeptNets(_address_size, linefile), NewKeptNets(_width, linefile)};
  for (Net* net : registers.mask) {
    net->AddAtt(" :non-user", "1");
    net->SetPowerUpValue('0'); // nothing is written before the first clock
  }
  return registers;
}

void VeriRam::ConnectWrite(unsigned port, WriteNets nets) {
  if (_writes[port].is_connected) return Refuse("a write port would have two sources");
  _writes[port].is_connected = true;
  _writes[port].nets = std::move(nets);
}

void VeriRam::SetContents(const VeriValue& value) {
  if (!value.IsAggregate() || value.NumOfElements() != _depth) return Refuse("its initial value is no array of words");
  const VeriConstraint& type = Type();
  _contents.clear();
  for (unsigned word = 0; word < _depth; word++) {
    const auto position = static_cast<unsigned>(type.PosOf(static_cast<int64_t>(type.Low()) + word));
    const VeriValue* element = value.GetElement(position);
    std::string digits = element && element->IsConstant() ? element->BinaryString() : std::string();
    _contents.push_back(digits.size() == _width ? digits : std::string(_width, 'x'));
  }
}

bool VeriRam::HasContents() const {
  return std::any_of(_contents.begin(), _contents.end(),
                     [](const std::string& word) { return word.find_first_not_of("xX") != std::string::npos; });
}

/// How a mask is given to the operator: one enable, with enables of equal parts of the word where they differ.
struct VeriRam::Enables {
  Net* write = nullptr; // null: nothing is ever written
  Nets parts;
};

VeriRam::Enables VeriRam::EnablesOf(const WritePort& port) const {
  Enables enables;
  Nets distinct;
  for (Net* net : port.nets.mask)
    if (net != veri_digit_net(VERI_DIGIT_0) && std::find(distinct.begin(), distinct.end(), net) == distinct.end())
      distinct.push_back(net);
  if (distinct.empty()) return enables;
  enables.write = distinct[0];
  const Nets& mask = port.nets.mask;
  auto is_uniform = [&](unsigned size) {
    for (unsigned bit = 0; bit < _width; bit++)
      if (mask[bit] != mask[bit - bit % size]) return false;
    return true;
  };
  unsigned size = _width;
  while (_width % size || !is_uniform(size)) size--;
  if (size == _width) return enables;
  // The operator's first part is the most significant one.
  for (unsigned bit = _width; bit > 0; bit -= size) enables.parts.push_back(mask[bit - size]);
  for (size_t i = 1; i < distinct.size(); i++) enables.write = veri_or(enables.write, distinct[i]);
  return enables;
}

void VeriRam::SetBehavior(Instance* ram, const std::vector<unsigned>& reads,
                          const std::vector<unsigned>& writes) const {
  auto letter = [](size_t port) { return std::string(1, static_cast<char>('A' + port)); };
  for (size_t read = 0; read < reads.size(); read++) {
    if (_info->IsAsynchronousRead(reads[read]))
      kestrin_set_ram_behavior(ram, ATT_ASYNCHRONOUS_READ, letter(read).c_str());
    for (size_t write = 0; write < writes.size(); write++) {
      const std::string pair = letter(read) + letter(write);
      if (_info->SequentialReadWrite(reads[read], writes[write]))
        kestrin_set_ram_behavior(ram, ATT_SEQUENTIAL_READ_WRITE, pair.c_str());
      if (_info->ExclusiveReadWrite(reads[read], writes[write]))
        kestrin_set_ram_behavior(ram, ATT_EXCLUSIVE_READ_WRITE, pair.c_str());
    }
  }
  if (reads.size() > 1 || writes.size() > 1) ram->AddAtt(ATT_TRUE_DUAL_PORT, "true");
}

void VeriRam::Finish() {
  if (_is_refused) return;
  std::vector<unsigned> reads;
  std::vector<unsigned> writes;
  Enables enables[VeriRamInfo::max_ports];
  const VeriTreeNode* from = _variable->GetModuleItem();
  VeriNodeScope node(from);
  for (unsigned port = 0; port < VeriRamInfo::max_ports; port++) {
    if (!_reads[port].address.empty()) reads.push_back(port);
    if (_writes[port].is_connected) enables[port] = EnablesOf(_writes[port]);
    if (enables[port].write) writes.push_back(port);
  }
  if (reads.empty()) return; // nothing sees the memory
  if (writes.empty() && !HasContents()) return Refuse("nothing writes it");

  struct Port {
    Net* enable = nullptr;
    ArrayOf<Net> parts;
    ArrayOf<Net> write_address;
    ArrayOf<Net> write_data;
    ArrayOf<Net> read_address;
    ArrayOf<Net> read_data;
    const Array* Or(const Array& nets) const { return nets.Size() ? &nets : nullptr; }
  } ports[VeriRamInfo::max_ports];
  auto fill = [](ArrayOf<Net>& array, const Nets& nets) {
    for (Net* net : nets) array.InsertLast(net);
  };
  for (size_t i = 0; i < writes.size(); i++) {
    const WritePort& write = _writes[writes[i]];
    ports[i].enable = enables[writes[i]].write;
    fill(ports[i].parts, enables[writes[i]].parts);
    fill(ports[i].write_address, write.nets.address);
    fill(ports[i].write_data, write.nets.data);
  }
  for (size_t i = 0; i < reads.size(); i++) {
    fill(ports[i].read_address, _reads[reads[i]].address);
    fill(ports[i].read_data, ReadData(reads[i]));
  }
  Netlist* netlist = VeriNode::CurrentNetlist();
  AutoInstancePrefix prefix(netlist, VeriNode::ElabState()->CreateFullName(_variable->Name()).c_str());
  auto depth = [&](size_t used, size_t port) { return port < used ? _depth : 0U; };
  const Port& a = ports[0];
  const Port& b = ports[1];
  Instance* ram = netlist->TrueDualPortRam(a.enable, a.Or(a.parts), a.Or(a.write_address), depth(writes.size(), 0),
                                           a.Or(a.write_data), a.Or(a.read_address), depth(reads.size(), 0),
                                           a.Or(a.read_data), b.enable, b.Or(b.parts), b.Or(b.write_address),
                                           depth(writes.size(), 1), b.Or(b.write_data), b.Or(b.read_address),
                                           depth(reads.size(), 1), b.Or(b.read_data), _variable->Linefile());
  if (!ram) return;
  SetBehavior(ram, reads, writes);
  if (writes.empty()) ram->AddAtt(" :rom", "true");
  if (from) from->ApplyAttributes(ram);
  if (_contents.empty() || ram->GetAttValue(ATT_RAM_INIT_FILE)) return;
  if (!HasContents())
    kestrin_debug("skipping MIF for RAM because it would be all X");
  else if (!veri_attach_memory_contents(ram, _contents, writes.empty()))
    Refuse("its initial content could not be written to a file");
}

namespace {

const char* AttributeOf(const Netlist* netlist, const char* key) {
  const char* value = netlist->GetAttValue(key);
  return value ? value : "";
}

} // namespace

bool veri_attach_memory_contents(Instance* memory, const std::vector<std::string>& words, bool is_rom) {
  const Netlist* netlist = memory->Owner();
  Array texts;
  for (const std::string& word : words) texts.InsertLast(ToWord(word.c_str()));
  const std::string unique_name = std::string(AttributeOf(netlist, " unique_name")) + memory->Name();
  MemoryContents contents;
  contents.words = &texts;
  contents.width = static_cast<unsigned>(words[0].size());
  contents.depth = static_cast<unsigned>(words.size());
  contents.is_unsigned_address = true;
  contents.is_rom = is_rom;
  contents.path = AttributeOf(netlist, " cell_name");
  for (const Instance* inst : ReferencesOf(memory->View()))
    if (inst->Owner() == netlist && inst != memory) contents.number++;
  contents.entity_name = AttributeOf(netlist, " cell_name");
  contents.unique_name = unique_name.c_str();
  OwnedString file = KernelServices::Get().WriteMemoryFile(contents);
  if (!file) return false;
  memory->AddAtt(ATT_RAM_INIT_FILE, file.get());
  return true;
}
