// VeriDualPortValue: reads and writes of a RAM on their way through the flow of values.
#include <algorithm>
#include <map>

#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/views.h"
#include "verilog/vericonstraint.h"
#include "verilog/veridataflow.h"
#include "verilog/veriexpression.h"
#include "verilog/verinets.h"
#include "verilog/veriram.h"
#include "verilog/verivalue_logic.h"
#include "verilog/verivalue_report.h"

namespace {

Net* zero() { return veri_digit_net(VERI_DIGIT_0); }
Net* unknown() { return veri_digit_net(VERI_DIGIT_X); }

using Bits = std::vector<Net*>; // bit 0 first

OwnedValue ToValue(const Bits& bits) {
  Array nets;
  for (size_t bit = bits.size(); bit-- > 0;) nets.InsertLast(ToWord(bits[bit]));
  return VeriValue::FromNets(nets);
}

Bits ToBits(const VeriValue& value, unsigned size) {
  Bits bits(size);
  for (unsigned bit = 0; bit < size; bit++) bits[bit] = value.GetBit(bit);
  return bits;
}

/// Whether two nets always have the same value: the same logic of the same nets, as the evaluation of an expression
/// once more builds it.
bool IsSame(const Net* a, const Net* b, unsigned depth) {
  if (a == b) return true;
  const PortRef* left = a && depth ? a->DrivingPortRef() : nullptr;
  const PortRef* right = b && depth ? b->DrivingPortRef() : nullptr;
  if (!left || !right || left->GetPort() != right->GetPort()) return false;
  const Instance* inst = left->GetInst();
  const Instance* other = right->GetInst();
  if (inst->Type() == PRIM_NONE || inst->Type() == OPER_DUAL_PORT_RAM) return false;
  for (const Port* port : PortsOf(inst->View()))
    if (port->Direction() != DIR_OUTPUT && !IsSame(inst->GetNet(port), other->GetNet(port), depth - 1)) return false;
  return true;
}

bool IsSame(const Bits& a, const Bits& b) {
  constexpr unsigned levels_of_logic = 3;
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const Net* left, const Net* right) { return IsSame(left, right, levels_of_logic); });
}

/// The word of a reference in a type; the other indices select within the word.
VeriIndices TakeWordIndices(VeriIndices& indices) {
  VeriIndices rest;
  for (size_t i = 1; i < indices.size(); i++) rest.push_back(std::move(indices[i]));
  return rest;
}

} // namespace

VeriDualPortValue::VeriDualPortValue(std::shared_ptr<VeriRam> ram) : _ram(std::move(ram)) {
  for (WriteSide& write : _writes) {
    write.mask.assign(_ram->WordSize(), zero());
    write.address.assign(_ram->AddressSize(), unknown());
    write.data.assign(_ram->WordSize(), unknown());
  }
  for (ReadSide& read : _reads) read.address.assign(_ram->AddressSize(), unknown());
}

OwnedValue VeriDualPortValue::Copy() const { return std::make_unique<VeriDualPortValue>(*this); }
unsigned VeriDualPortValue::Size() const { return _ram->Depth() * _ram->WordSize(); }
unsigned VeriDualPortValue::NumOfElements() const { return _ram->Depth(); }

void VeriDualPortValue::SetDefaultValue(const VeriValue& value, const VeriTreeNode*) { _ram->SetContents(value); }

// Reads.

bool VeriDualPortValue::NoteRead(unsigned port, const Bits& address) {
  ReadSide& read = _reads[port];
  if (read.is_used && !IsSame(read.address, address)) {
    _ram->Refuse("a read port would need two addresses at a time");
    return false;
  }
  if (!read.is_used) read.address = address;
  read.is_used = true;
  return true;
}

/// What blocking assignments have written before, in place of what the memory still holds.
OwnedValue VeriDualPortValue::WithPendingWrites(OwnedValue word, const Bits& address, const char* read_port,
                                                const VeriTreeNode* from) const {
  VeriLogic logic(from);
  for (unsigned port = 0; port < VeriRamInfo::max_ports; port++) {
    const WriteSide& write = _writes[port];
    if (!write.is_used || !write.is_blocking) continue;
    from->Warning("Read to RAM %s might require extra bypass logic to model read-through-write from Write Port %s to "
                  "Read Port %s.  This may degrade performance significantly",
                  _ram->Variable()->Name(), port ? "B" : "A", read_port);
    Net* is_same =
        VeriValue::Condition(VeriValue::Binary(VERI_OPER_EQ, ToValue(address), ToValue(write.address), from), from);
    Bits bits = ToBits(*word, _ram->WordSize());
    std::map<Net*, Net*> conditions;
    for (size_t bit = 0; bit < bits.size(); bit++) {
      if (write.mask[bit] == zero()) continue;
      Net*& condition = conditions[write.mask[bit]];
      if (!condition) condition = logic.And(is_same, write.mask[bit]);
      bits[bit] = logic.Mux(bits[bit], write.data[bit], condition);
    }
    word = ToValue(bits);
  }
  return word;
}

OwnedValue VeriDualPortValue::Read(VeriIdDef* id, VeriDataFlow* flow, const VeriIndexedName* name,
                                   const VeriIndices& indices) {
  VeriValue* own = id->GetValue();
  VeriRam& ram = own->AsDualPort()->Ram();
  const VeriConstraint& word_type = *ram.Type().ElementConstraint();
  OwnedValue word = VeriValue::Digits(ram.WordSize(), VERI_DIGIT_X);
  const int port = ram.Info().GetReadPortIndex(name);
  if (port < 0 && !VeriRamInfo::IsDisabled()) {
    KESTRIN_REPORT_INTERNAL("read to RAM wasn't mapped to a specific read port");
    ram.Refuse("a read has no port");
  }
  VeriRam::Address address = ram.AddressOf(*indices[0].left, name);
  if (port >= 0 && !VeriRamInfo::IsDisabled() && address.is_valid != zero()) {
    word = ToValue(ram.ReadData(static_cast<unsigned>(port)));
    if (flow) {
      const VeriValue* current = flow->IdValue(id);
      OwnedValue next = current->Copy();
      VeriDualPortValue* value = next->AsDualPort();
      if (!value) return VeriValue::Digits(ram.WordSize(), VERI_DIGIT_X);
      value->NoteRead(static_cast<unsigned>(port), address.nets);
      word = value->WithPendingWrites(std::move(word), address.nets, port ? "B" : "A", name);
      flow->SetAssignValue(id, std::move(next));
    } else {
      ram.ConnectRead(static_cast<unsigned>(port), address.nets, name);
    }
  }
  if (word_type.IsSigned()) word->SetSigned();
  if (indices.size() == 1) return word;
  VeriIndices rest;
  for (size_t i = 1; i < indices.size(); i++) {
    VeriIndex index;
    index.kind = indices[i].kind;
    index.left = indices[i].left->Copy();
    if (indices[i].right) index.right = indices[i].right->Copy();
    rest.push_back(std::move(index));
  }
  return VeriValue::ReadPartial(*word, word_type, rest, id->Name(), name);
}

// Writes.

OwnedValue VeriDualPortValue::Write(OwnedValue value, const VeriIndexedName* name, VeriIndices indices, OwnedValue part,
                                    bool non_blocking) {
  VeriDualPortValue* dual = value->AsDualPort();
  VeriRam& ram = dual->Ram();
  const VeriConstraint& word_type = *ram.Type().ElementConstraint();
  const int port = ram.Info().GetWritePortIndex(name);
  if (port < 0) {
    KESTRIN_REPORT_INTERNAL("write to RAM wasn't mapped to a specific write port");
    ram.Refuse("a write has no port");
    return value;
  }
  VeriRam::Address address = ram.AddressOf(*indices[0].left, name);
  if (address.is_valid == zero()) {
    if (indices[0].left->IsConstant())
      name->Warning("constant index %d falls outside the range [%d:%d] for dimension %d of the array %s",
                    indices[0].left->Integer(), ram.Type().Left(), ram.Type().Right(), 1, ram.Variable()->Name());
    return value;
  }
  // The word as the assignment leaves it, and which of its bits it touches.
  const unsigned width = ram.WordSize();
  OwnedValue data;
  OwnedValue mask;
  VeriIndices rest = TakeWordIndices(indices);
  if (rest.empty()) {
    data = VeriValue::Adjust(std::move(part), width, name);
    mask = VeriValue::Digits(width, VERI_DIGIT_1);
  } else {
    OwnedValue ones = VeriValue::Digits(part->Size(), VERI_DIGIT_1);
    mask = VeriValue::AssignPartial(VeriValue::Digits(width, VERI_DIGIT_0), word_type, rest, std::move(ones),
                                    ram.Variable()->Name(), name);
    data = VeriValue::AssignPartial(VeriValue::Digits(width, VERI_DIGIT_X), word_type, rest, std::move(part),
                                    ram.Variable()->Name(), name);
  }
  if (!data || !mask) return value;
  WriteSide& write = dual->_writes[port];
  if (write.is_used && (write.is_registered || !IsSame(write.address, address.nets))) {
    ram.Refuse("a write port would need two addresses at a time");
    return value;
  }
  VeriLogic logic(name);
  std::map<std::pair<Net*, Net*>, Net*> enables;
  for (unsigned bit = 0; bit < width; bit++) {
    Net* enable = logic.And(mask->GetBit(bit), address.is_valid);
    if (enable == zero()) continue;
    Net*& merged = enables[{write.mask[bit], mask->GetBit(bit)}];
    if (!merged) merged = logic.Or(write.mask[bit], enable);
    write.data[bit] =
        write.mask[bit] == zero() ? data->GetBit(bit) : logic.Mux(write.data[bit], data->GetBit(bit), enable);
    write.mask[bit] = merged;
  }
  if (!write.is_used) write.address = address.nets;
  write.is_used = true;
  write.is_blocking = write.is_blocking || !non_blocking;
  return value;
}

// Merges.

/// Bits that are the same in all inputs stay the same net.
VeriDualPortValue::Bits VeriDualPortValue::MergeBits(const std::vector<const Bits*>& inputs, const Choice& select) {
  std::map<std::vector<Net*>, unsigned> places;
  std::vector<unsigned> place_of_bit;
  const Bits* present = *std::find_if(inputs.begin(), inputs.end(), [](const Bits* bits) { return bits != nullptr; });
  for (size_t bit = 0; bit < present->size(); bit++) {
    std::vector<Net*> column;
    for (const Bits* input : inputs) column.push_back(input ? (*input)[bit] : nullptr);
    place_of_bit.push_back(places.try_emplace(std::move(column), places.size()).first->second);
  }
  std::vector<OwnedValue> values;
  for (size_t i = 0; i < inputs.size(); i++) {
    Bits distinct(places.size());
    for (const auto& [column, place] : places) distinct[place] = column[i];
    values.push_back(inputs[i] ? ToValue(distinct) : nullptr);
  }
  OwnedValue merged = select(std::move(values));
  if (!merged) return *present;
  Bits bits;
  for (unsigned place : place_of_bit) bits.push_back(merged->GetBit(place));
  return bits;
}

void VeriDualPortValue::MergeWrite(unsigned port, const std::vector<const VeriDualPortValue*>& inputs,
                                   const Choice& select) {
  WriteSide merged;
  std::vector<const Bits*> masks;
  std::vector<const Bits*> addresses;
  std::vector<const Bits*> data;
  const WriteSide* registered = nullptr;
  bool has_direct = false;
  for (const VeriDualPortValue* input : inputs) {
    const WriteSide* write = input ? &input->_writes[port] : nullptr;
    masks.push_back(write ? &write->mask : nullptr);
    addresses.push_back(write ? &write->address : nullptr);
    data.push_back(write ? &write->data : nullptr);
    if (!write || !write->is_used) continue;
    merged.is_used = true;
    merged.is_blocking = merged.is_blocking || write->is_blocking;
    has_direct = has_direct || !write->is_registered;
    if (registered && write->is_registered && registered->registers != write->registers)
      _ram->Refuse("branches write different parts of the word");
    if (write->is_registered) registered = write;
  }
  if (!merged.is_used) return;
  if (registered && has_direct) _ram->Refuse("it is written under a clock and without");
  merged.is_registered = registered != nullptr;
  if (registered) merged.registers = registered->registers;
  merged.mask = MergeBits(masks, select);
  merged.address = MergeBits(addresses, select);
  merged.data = MergeBits(data, select);
  _writes[port] = std::move(merged);
}

OwnedValue VeriDualPortValue::Merge(std::vector<OwnedValue> inputs, const Choice& select) {
  std::vector<const VeriDualPortValue*> values;
  const VeriDualPortValue* first = nullptr;
  for (const OwnedValue& input : inputs) {
    values.push_back(input ? input->AsDualPort() : nullptr);
    if (input && (!values.back() || (first && values.back()->_ram != first->_ram))) {
      KESTRIN_REPORT_INTERNAL("Can't assign to this value");
      return nullptr;
    }
    if (!first) first = values.back();
  }
  if (!first) return nullptr;
  auto merged = std::make_unique<VeriDualPortValue>(*first);
  for (unsigned port = 0; port < VeriRamInfo::max_ports; port++) {
    merged->MergeWrite(port, values, select);
    std::vector<const Bits*> addresses;
    bool is_used = false;
    for (const VeriDualPortValue* value : values) {
      addresses.push_back(value ? &value->_reads[port].address : nullptr);
      is_used = is_used || (value && value->_reads[port].is_used);
    }
    if (!is_used) continue;
    merged->_reads[port].is_used = true;
    merged->_reads[port].address = MergeBits(addresses, select);
  }
  return merged;
}

// The end of a process.

void VeriDualPortValue::Register(Net* clock, Net* enable, const VeriTreeNode* from) {
  // Constants need no register, but for an enable: nothing may be written before the first clock.
  auto register_bits = [&](Bits& bits, const std::vector<size_t>& places, const Bits& holds) {
    if (places.empty()) return;
    Bits data;
    Bits hold;
    for (size_t place : places) {
      data.push_back(bits[place]);
      hold.push_back(holds[place]);
    }
    OwnedValue registered = VeriValue::Register(ToValue(data), clock, enable, *ToValue(hold), from);
    for (size_t i = 0; i < places.size(); i++) bits[places[i]] = registered->GetBit(static_cast<unsigned>(i));
  };
  auto variable_places = [](const Bits& bits) {
    std::vector<size_t> places;
    for (size_t bit = 0; bit < bits.size(); bit++)
      if (!veri_is_digit(bits[bit])) places.push_back(bit);
    return places;
  };
  for (unsigned port = 0; port < VeriRamInfo::max_ports; port++) {
    WriteSide& write = _writes[port];
    if (!write.is_used || write.is_registered) continue;
    const VeriRam::WriteNets& holds = _ram->Registers(port);
    std::map<Net*, unsigned> first;
    std::vector<size_t> places;
    write.registers.assign(write.mask.size(), 0);
    for (unsigned bit = 0; bit < write.mask.size(); bit++) {
      auto [found, is_new] = first.try_emplace(write.mask[bit], bit);
      write.registers[bit] = found->second;
      if (is_new && write.mask[bit] != zero()) places.push_back(bit);
    }
    register_bits(write.mask, places, holds.mask);
    for (size_t bit = 0; bit < write.mask.size(); bit++) write.mask[bit] = write.mask[write.registers[bit]];
    register_bits(write.address, variable_places(write.address), holds.address);
    register_bits(write.data, variable_places(write.data), holds.data);
    write.is_registered = true;
  }
}

void VeriDualPortValue::ConnectPorts(const VeriTreeNode* from) const {
  auto drive = [&](Bits& bits, const Bits& targets) {
    for (size_t bit = 0; bit < bits.size(); bit++) {
      if (veri_is_digit(bits[bit])) continue;
      VeriValue::FromNet(targets[bit])->NetAssignFrom(VeriValue::FromNet(bits[bit]), VERI_RESOLVE_WIRE, false, from);
      bits[bit] = targets[bit];
    }
  };
  for (unsigned port = 0; port < VeriRamInfo::max_ports; port++) {
    if (_reads[port].is_used) _ram->ConnectRead(port, _reads[port].address, from);
    WriteSide write = _writes[port];
    if (!write.is_used) continue;
    if (!write.is_registered) return _ram->Refuse("it is written without a clock");
    const VeriRam::WriteNets& registers = _ram->Registers(port);
    for (size_t bit = 0; bit < write.mask.size(); bit++) {
      const unsigned place = write.registers[bit];
      if (write.mask[bit] != _writes[port].mask[place])
        return _ram->Refuse("parts of the word are written differently");
      if (write.mask[bit] == zero()) continue;
      if (place == bit)
        VeriValue::FromNet(registers.mask[bit])
            ->NetAssignFrom(VeriValue::FromNet(write.mask[bit]), VERI_RESOLVE_WIRE, false, from);
    }
    for (size_t bit = 0; bit < write.mask.size(); bit++)
      if (write.mask[bit] != zero()) write.mask[bit] = registers.mask[write.registers[bit]];
    drive(write.address, registers.address);
    drive(write.data, registers.data);
    _ram->ConnectWrite(port, {write.mask, write.address, write.data});
  }
}
