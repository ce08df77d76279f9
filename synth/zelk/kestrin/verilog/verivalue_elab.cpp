// Values on their way into the netlist: selection among many, memories of constants, registers, and the binding of a
// variable's value to its nets.
#include <algorithm>
#include <functional>
#include <map>

#include "containers/set.h"
#include "database/fsm.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/ram.h"
#include "database/views.h"
#include "util/linefile.h"
#include "util/services.h"
#include "verilog/vericonstraint.h"
#include "verilog/veriram.h"
#include "verilog/veritreenode.h"
#include "verilog/verivalue.h"
#include "verilog/verivalue_logic.h"
#include "verilog/verivalue_report.h"

namespace {
Net* zero() { return veri_digit_net(VERI_DIGIT_0); }
Net* one() { return veri_digit_net(VERI_DIGIT_1); }
Net* unknown() { return veri_digit_net(VERI_DIGIT_X); }

const char* file_of(const VeriTreeNode* from) {
  const char* file = LineFile::GetFileName(veri_linefile(from));
  return file ? file : "";
}
int line_of(const VeriTreeNode* from) { return static_cast<int>(LineFile::GetLineNo(veri_linefile(from))); }

// Selection among many.

using Inputs = std::vector<OwnedValue>;

const VeriValue* first_of(const Inputs& inputs) {
  for (const OwnedValue& input : inputs)
    if (input) return input.get();
  return nullptr;
}

bool has_real(const Inputs& inputs) {
  return std::any_of(inputs.begin(), inputs.end(), [](const OwnedValue& input) { return input && input->IsReal(); });
}

/// Brings all inputs to vectors of nets of one width; the sign is signed only if all are. Absent inputs stay so. False
/// for what has no nets.
bool unify(Inputs& inputs, const VeriTreeNode* from) {
  unsigned width = 0;
  bool all_signed = true;
  for (const OwnedValue& input : inputs) {
    if (!input) continue;
    width = std::max(width, input->Size());
    all_signed = all_signed && input->IsSigned();
  }
  for (OwnedValue& input : inputs) {
    if (!input) continue;
    if (!all_signed) input->SetUnsigned();
    input = VeriValue::ToNonConst(VeriValue::Adjust(std::move(input), width, from), from);
    if (!input) return false;
  }
  return true;
}

/// Applies a selection to each element of arrays or structs.
OwnedValue select_elements(Inputs& inputs, const std::function<OwnedValue(Inputs)>& select, const VeriTreeNode* from) {
  const VeriValue* first = first_of(inputs);
  if (first->IsDualPortValue()) return VeriDualPortValue::Merge(std::move(inputs), select);
  unsigned count = first->NumOfElements();
  for (const OwnedValue& input : inputs) {
    if (!input) continue;
    if (!input->IsAggregate()) {
      veri_at(from).Error("cannot assign or compare packed values to unpacked values or vice versa");
      return nullptr;
    }
    if (input->NumOfElements() == count) continue;
    veri_at(from).Error("expression has %d elements; expected %d", static_cast<int>(input->NumOfElements()),
                        static_cast<int>(count));
    return nullptr;
  }
  auto result = std::make_unique<VeriAggregateValue>();
  for (unsigned i = 0; i < count; i++) {
    Inputs elements;
    for (OwnedValue& input : inputs) elements.push_back(input ? input->TakeElement(i) : nullptr);
    result->Append(select(std::move(elements)));
  }
  return result;
}

bool is_aggregate_selection(const Inputs& inputs) {
  return std::any_of(inputs.begin(), inputs.end(), [](const OwnedValue& i) { return i && i->IsAggregate(); });
}

OwnedValue with_sign(std::unique_ptr<VeriNonConstVal> result, const Inputs& inputs) {
  const VeriValue* first = first_of(inputs);
  if (first && first->IsSigned()) result->SetSigned();
  return VeriValue::ToConst(std::move(result));
}

std::vector<Net*> nets_of(const VeriValue& value) {
  Array nets;
  value.GetNets(nets);
  std::vector<Net*> result;
  for (Net* net : ItemsOf<Net*>(&nets)) result.push_back(net);
  return result;
}

/// One bit of all inputs; absent ones are don't care.
std::vector<Net*> bits_of(const Inputs& inputs, unsigned bit) {
  std::vector<Net*> bits(inputs.size());
  for (size_t i = 0; i < inputs.size(); i++) bits[i] = inputs[i] ? inputs[i]->GetBit(bit) : unknown();
  return bits;
}

/// Takes the half of the inputs that a constant select bit leaves.
Inputs half_of(Inputs inputs, unsigned bit, bool upper) {
  Inputs half;
  for (size_t i = 0; i < inputs.size(); i++)
    if ((i >> bit & 1) == upper) half.push_back(std::move(inputs[i]));
  return half;
}

/// One data bit: an operator only where the inputs differ in what is known.
Net* build_bit_mux(const VeriLogic& logic, const Array& sel, const std::vector<Net*>& data) {
  Net* single = nullptr;
  bool differ = false;
  for (Net* net : data) {
    if (net == unknown() || net == single) continue;
    differ = differ || single;
    if (!single) single = net;
  }
  if (!single) return unknown();
  if (!differ) return single;
  ArrayOf<Net> inputs;
  for (Net* net : data) inputs.InsertLast(net);
  Net* result = nullptr;
  logic.netlist()->Nto1Mux(&sel, &inputs, &result, logic.linefile());
  return result;
}

OwnedValue build_mux(const Array& selectors, const Inputs& inputs, const VeriTreeNode* from) {
  VeriLogic logic(from);
  Array sel(selectors);
  sel.Reverse();
  unsigned width = first_of(inputs)->Size();
  auto result = std::make_unique<VeriNonConstVal>(width);
  for (unsigned bit = 0; bit < width; bit++) {
    result->SetBit(bit, build_bit_mux(logic, sel, bits_of(inputs, bit)));
  }
  return with_sign(std::move(result), inputs);
}

/// The condition of one choice: the OR of its lines, or where that takes fewer, as exactly one line of all is hot, the
/// NOR of the lines of the others.
Net* choice_condition(const VeriLogic& logic, const std::vector<ArrayOf<Net>>& lines, size_t place) {
  size_t others = 0;
  for (const ArrayOf<Net>& other : lines) others += other.Size();
  others -= lines[place].Size();
  if (lines[place].Size() <= others) return logic.Reduce(lines[place], PRIM_OR);
  ArrayOf<Net> rest;
  for (size_t i = 0; i < lines.size(); i++)
    if (i != place) rest.Append(&lines[i]);
  return logic.Inv(logic.Reduce(rest, PRIM_OR));
}

/// A decoder whose lines are gathered by the value that they select.
OwnedValue build_decoder_and_selector(const Array& selectors, Inputs inputs, const VeriTreeNode* from) {
  VeriLogic logic(from);
  Array sel(selectors);
  sel.Reverse();
  ArrayOf<Net> lines(static_cast<unsigned>(inputs.size()), nullptr);
  std::map<std::vector<Net*>, size_t> place_of;
  std::vector<ArrayOf<Net>> groups;
  Inputs values;
  for (unsigned i = 0; i < inputs.size(); i++) {
    if (!inputs[i]) continue;
    lines.Set(i, logic.NewNet());
    auto [place, is_new] = place_of.try_emplace(nets_of(*inputs[i]), groups.size());
    if (is_new) {
      values.push_back(std::move(inputs[i]));
      groups.emplace_back();
    }
    groups[place->second].InsertLast(lines.At(i));
  }
  logic.netlist()->Decoder(&sel, &lines, logic.linefile());
  ArrayOf<Net> onehot;
  for (size_t place = 0; place < groups.size(); place++) onehot.InsertLast(choice_condition(logic, groups, place));
  return VeriValue::Selector(onehot, std::move(values), from);
}

bool prefers_decoder(unsigned unique, size_t inputs) {
  return unique < 3 || (inputs > 15 && 100ULL * unique < 25ULL * inputs);
}
} // namespace

unsigned VeriValue::CountUniqueValues(const std::vector<OwnedValue>& inputs) {
  std::map<std::vector<Net*>, int> values;
  for (const OwnedValue& input : inputs)
    if (input) values[nets_of(*input)];
  return static_cast<unsigned>(values.size());
}

OwnedValue VeriValue::Nto1Mux(const Array& selectors, std::vector<OwnedValue> inputs, const VeriTreeNode* from) {
  if (!first_of(inputs)) return nullptr;
  if (has_real(inputs)) {
    veri_at(from).Error("not supported use of real number");
    return nullptr;
  }
  if (is_aggregate_selection(inputs))
    return select_elements(
        inputs, [&](Inputs elements) { return Nto1Mux(selectors, std::move(elements), from); }, from);
  if (!unify(inputs, from)) return nullptr;
  KESTRIN_ASSERT(selectors.Size() < 31);
  inputs.resize(1ULL << selectors.Size());

  // Constant select bits choose now.
  Array variable;
  unsigned bit = selectors.Size();
  for (Net* net : ItemsOf<Net*>(&selectors)) {
    bit--;
    if (veri_is_digit(net))
      inputs = half_of(std::move(inputs), bit, net == one());
    else
      variable.InsertLast(net);
  }
  if (!first_of(inputs)) return nullptr;
  if (variable.Size() == 0) return ToConst(std::move(inputs[0]));
  unsigned unique = CountUniqueValues(inputs);
  if (unique == 1) {
    for (OwnedValue& input : inputs)
      if (input) return ToConst(std::move(input));
  }
  if (variable.Size() == 1 && inputs[0] && inputs[1])
    return Select(FromWord<Net*>(variable.At(0)), std::move(inputs[1]), std::move(inputs[0]), from);
  if (!prefers_decoder(unique, inputs.size())) return build_mux(variable, inputs, from);
  if (kestrin_flag("zelk_debug_mode"))
    kestrin_debug("Using decoder->selector pair rather than N:1 MUX at %s(%d) because there are only %d / %d unique "
                  "data lines",
                  file_of(from), line_of(from), static_cast<int>(unique), static_cast<int>(inputs.size()));
  return build_decoder_and_selector(variable, std::move(inputs), from);
}

namespace {
/// One data bit of a one-hot selection: products that are known to be 0 or that select the same net are gathered.
Net* build_bit_selector(const VeriLogic& logic, const std::vector<Net*>& onehot, const std::vector<Net*>& data) {
  std::vector<Net*> choices;
  std::vector<ArrayOf<Net>> lines;
  std::map<Net*, size_t> place_of;
  bool is_constant = true;
  for (size_t i = 0; i < data.size(); i++) {
    if (onehot[i] == zero() || data[i] == unknown()) continue;
    if (onehot[i] == one()) return data[i];
    auto [place, is_new] = place_of.try_emplace(data[i], choices.size());
    if (is_new) {
      choices.push_back(data[i]);
      lines.emplace_back();
      is_constant = is_constant && (data[i] == zero() || data[i] == one());
    }
    lines[place->second].InsertLast(onehot[i]);
  }
  if (choices.empty()) return unknown();
  if (choices.size() == 1) return choices[0];
  if (is_constant) return choice_condition(logic, lines, choices[0] == one() ? 0 : 1);
  ArrayOf<Net> sel;
  ArrayOf<Net> inputs;
  for (size_t i = 0; i < choices.size(); i++) {
    sel.InsertLast(choice_condition(logic, lines, i));
    inputs.InsertLast(choices[i]);
  }
  Net* result = nullptr;
  logic.netlist()->Selector(&sel, &inputs, &result, logic.linefile());
  return result;
}
} // namespace

OwnedValue VeriValue::Selector(const Array& onehot, std::vector<OwnedValue> inputs, const VeriTreeNode* from) {
  if (!first_of(inputs)) return nullptr;
  if (has_real(inputs)) {
    veri_at(from).Error("not supported use of real number");
    return nullptr;
  }
  KESTRIN_ASSERT(onehot.Size() == inputs.size());
  if (is_aggregate_selection(inputs))
    return select_elements(
        inputs, [&](Inputs elements) { return Selector(onehot, std::move(elements), from); }, from);
  if (!unify(inputs, from)) return nullptr;
  VeriLogic logic(from);
  std::vector<Net*> lines;
  for (Net* net : ItemsOf<Net*>(&onehot)) lines.push_back(net);
  unsigned width = first_of(inputs)->Size();
  auto result = std::make_unique<VeriNonConstVal>(width);
  for (unsigned bit = 0; bit < width; bit++) {
    result->SetBit(bit, build_bit_selector(logic, lines, bits_of(inputs, bit)));
  }
  return with_sign(std::move(result), inputs);
}

// The host knows no priority selector: the choice is a chain of multiplexers, the first condition last and strongest.
OwnedValue VeriValue::PrioSelector(const Array& conditions, std::vector<OwnedValue> inputs, OwnedValue otherwise,
                                   const VeriTreeNode* from) {
  KESTRIN_ASSERT(conditions.Size() == inputs.size());
  OwnedValue result = std::move(otherwise);
  for (size_t i = inputs.size(); i-- > 0;) {
    Net* condition = FromWord<Net*>(conditions.At(static_cast<unsigned>(i)));
    if (!inputs[i]) continue;
    result = result ? Select(condition, std::move(inputs[i]), std::move(result), from) : std::move(inputs[i]);
  }
  return result;
}

// Memories of constants.

namespace {
/// Reports the memory and gives it its contents.
void attach_contents(Instance* rom, const std::vector<std::string>& words, const VeriTreeNode* from) {
  veri_attach_memory_contents(rom, words, /*is_rom=*/true);
  kestrin_debug("Inferred %d x %d ROM from case statement at %s (%d)", static_cast<int>(words.size()),
                static_cast<int>(words[0].size()), file_of(from), line_of(from));
}
} // namespace

OwnedValue VeriValue::Rom(const Array& address, std::vector<OwnedValue> entries, const Map* attributes,
                          const VeriTreeNode* from) {
  const VeriValue* first = first_of(entries);
  if (!first || !address.Size() || address.Size() >= 31 || entries.size() != 1ULL << address.Size()) return nullptr;
  unsigned width = 0;
  bool is_signed = true;
  for (const OwnedValue& entry : entries) {
    if (!entry) continue;
    if (!entry->IsConstant() || entry->IsReal() || entry->IsAggregate()) {
      if (entry->IsAggregate()) KESTRIN_REPORT_INTERNAL("Can't extract a ROM based on this value");
      return nullptr;
    }
    width = std::max(width, entry->Size());
    is_signed = is_signed && entry->IsSigned();
  }
  std::vector<std::string> words(entries.size(), std::string(width, 'x'));
  for (size_t i = 0; i < entries.size(); i++)
    if (entries[i]) words[i] = Adjust(std::move(entries[i]), width, from)->BinaryString();

  VeriLogic logic(from);
  Array read_address(address);
  read_address.Reverse();
  ArrayOf<Net> data;
  logic.NewNets(data, width);
  Instance* rom = logic.netlist()->DualPortRam(nullptr, nullptr, nullptr, 0, nullptr, &read_address,
                                               static_cast<unsigned>(words.size()), &data, logic.linefile());
  if (!rom) return nullptr;
  rom->AddAtt(" :rom", "true");
  kestrin_set_ram_behavior(rom, ATT_ASYNCHRONOUS_READ, "A");
  for (Att* att : ValuesOf<Att*>(attributes))
    if (rom->Supports(att)) rom->AddAtt(new Att(*att));
  attach_contents(rom, words, from);
  data.Reverse();
  return FromNets(data, is_signed);
}

// Registers.

OwnedValue VeriValue::Buffer(OwnedValue value, const VeriTreeNode* from) {
  if (!value || value->IsConstant()) return value;
  if (VeriAggregateValue* aggregate = value->AsAggregate()) {
    if (value->IsDualPortValue()) {
      KESTRIN_REPORT_INTERNAL("Can't buffer this value");
      return value;
    }
    for (OwnedValue& element : aggregate->Elements()) element = Buffer(std::move(element), from);
    return value;
  }
  VeriLogic logic(from);
  for (unsigned bit = 0; bit < value->Size(); bit++)
    if (!veri_is_digit(value->GetBit(bit)))
      value->SetBit(bit, logic.netlist()->Buf(value->GetBit(bit), logic.linefile()));
  return value;
}

namespace {
Net* register_bit(const VeriLogic& logic, Net* data, Net* clock, Net* enable, Net* hold, bool is_onehot) {
  bool keeps_feedback = enable && hold->Linefile() && kestrin_flag("zelk_allow_registers_with_tight_feedback");
  if (data == hold && !keeps_feedback) return data;
  if (enable) return data == unknown() ? hold : logic.netlist()->Mux(hold, data, enable, logic.linefile());
  Net* output = logic.netlist()->Dff(data, clock, unknown(), zero(), logic.linefile(), hold->Name());
  Instance* reg = output->Driver();
  reg->CopyAttributesFrom(hold);
  if (is_onehot && kestrin_add_state(hold, reg))
    kestrin_debug("Extracted state machine for onehot encoded register %s", reg->GetFsm()->Name());
  return output;
}
} // namespace

OwnedValue VeriValue::Register(OwnedValue value, Net* clock, Net* enable, const VeriValue& hold,
                               const VeriTreeNode* from) {
  if (!value) return value;
  if (VeriDualPortValue* memory = value->AsDualPort()) {
    memory->Register(clock, enable, from);
    return value;
  }
  if (hold.IsDualPortValue()) return value;
  if (value->IsReal() || hold.IsReal()) {
    veri_at(from).Error("not supported use of real number");
    return nullptr;
  }
  if (VeriAggregateValue* aggregate = value->AsAggregate()) {
    for (unsigned i = 0; i < aggregate->NumOfElements(); i++)
      if (const VeriValue* element = hold.GetElement(i))
        aggregate->SetElement(i, Register(aggregate->TakeElement(i), clock, enable, *element, from));
    return value;
  }
  if (hold.IsConstant()) {
    KESTRIN_REPORT_INTERNAL("Can't register this value");
    return value;
  }
  VeriLogic logic(from);
  bool is_blocking = value->IsBlocking();
  bool is_non_blocking = value->IsNonBlocking();
  std::unique_ptr<VeriNonConstVal> nets = ToNonConstVal(Adjust(std::move(value), hold.Size(), from));
  for (unsigned bit = 0; bit < nets->Size(); bit++)
    nets->SetBit(bit, register_bit(logic, nets->GetBit(bit), clock, enable, hold.GetBit(bit), hold.IsOnehot()));
  if (is_blocking) nets->SetBlocking();
  if (is_non_blocking) nets->SetNonBlocking();
  if (hold.IsOnehot()) nets->SetOnehot();
  return nets;
}

// Binding to nets.

namespace {
/// What one binding of a variable's nets shares.
class NetBinding {
public:
  NetBinding(veri_net_resolution resolution, bool isolate, const VeriTreeNode* from)
      : _logic(from), _from(from), _resolution(resolution), _isolate(isolate),
        _extracts_later(!kestrin_flag("zelk_dont_use_new_dff_algorithm")) {}

  /// False when nothing more can be driven.
  bool Bind(Net* target, Net* source) {
    if (!target || !source || veri_is_digit(target)) return true;
    source = _extracts_later ? PrepareForExtraction(target, source) : ExtractNow(target, source);
    return !source || Drive(target, source);
  }

private:
  /// Null when the source is the target itself. Feedback is marked; registers and latches are made of it later.
  Net* PrepareForExtraction(Net* target, Net* source) {
    if (source->ReduceConeToSingleNet(_reduced) == target) {
      if (!veri_is_digit(source) && source->Owner() == _logic.netlist())
        _logic.netlist()->RegisterPotentiallyFanoutFreeNet(source);
      return nullptr;
    }
    if (source->RequiresInferPoint(target)) source = _logic.netlist()->InferPoint(source, target, _logic.linefile());
    return _isolate ? source->Isolate(target, _logic.linefile()) : source;
  }

  /// Makes the latch of a feedback and the tristate buffer of a z at once.
  Net* ExtractNow(Net* target, Net* source) {
    if (source == target) return nullptr;
    Set visited;
    if (source->CheckDriverFrom(target, visited)) source = ExtractLatch(target, source);
    Set seen;
    if (source && source->CheckDriverFrom(nullptr, seen)) source = ExtractTristate(source);
    return source && _isolate ? source->Isolate(target, _logic.linefile()) : source;
  }

  Net* ExtractLatch(Net* target, Net* source) {
    Net* async_condition = nullptr;
    Net* async_value = nullptr;
    Net* rest = source->ExtractAsyncCondition(&async_condition, &async_value);
    Net* enable = nullptr;
    Map conditions;
    Map results;
    Net* data = rest->ExtractCondition(target, &enable, 0 /*tristate*/, 1 /*copy*/, conditions, results);
    if (!enable) {
      veri_at(_from).Warning("assignments to %s create a combinational loop", target->ExternalName());
      return source;
    }
    veri_at(_from).Info("inferred latch %s.", target->ExternalName());
    return _logic.netlist()->Dlatch(data, enable, async_value ? async_value : unknown(),
                                    async_condition ? async_condition : zero(), _logic.linefile(), target->Name());
  }

  Net* ExtractTristate(Net* source) {
    Net* enable = nullptr;
    Map conditions;
    Map results;
    Net* data = source->ExtractCondition(nullptr, &enable, 1 /*tristate*/, 1 /*copy*/, conditions, results);
    return enable ? _logic.netlist()->Tristate(data, enable, _logic.linefile()) : source;
  }

  bool Drive(Net* target, Net* source) {
    switch (_resolution) {
    case VERI_RESOLVE_AND: target->Assign(source, OPER_REDUCE_AND); return true;
    case VERI_RESOLVE_OR: target->Assign(source, OPER_REDUCE_OR); return true;
    case VERI_RESOLVE_TRIREG:
      if (target->Driver()) return false;
      [[fallthrough]];
    case VERI_RESOLVE_WIRE: target->Wire(source); return true;
    }
    return true;
  }

  VeriLogic _logic;
  const VeriTreeNode* _from;
  veri_net_resolution _resolution;
  bool _isolate;
  bool _extracts_later;
  Map _reduced;
};

bool bind_elements(NetBinding& binding, const VeriValue& target, OwnedValue source, const VeriTreeNode* from) {
  if (target.IsDualPortValue()) return true; // a memory is written through its ports
  if (target.IsAggregate() || source->IsAggregate()) {
    if (!target.IsAggregate() || !source->IsAggregate()) {
      veri_at(from).Error("cannot assign or compare packed values to unpacked values or vice versa");
      return false;
    }
    if (target.NumOfElements() != source->NumOfElements()) {
      veri_at(from).Error("expression has %d elements; expected %d", static_cast<int>(source->NumOfElements()),
                          static_cast<int>(target.NumOfElements()));
      return false;
    }
    for (unsigned i = 0; i < target.NumOfElements(); i++) {
      const VeriValue* element = target.GetElement(i);
      OwnedValue value = source->TakeElement(i);
      if (element && value && !bind_elements(binding, *element, std::move(value), from)) return false;
    }
    return true;
  }
  if (target.IsConstant()) {
    KESTRIN_REPORT_INTERNAL("can't wire into a constant value");
    return false;
  }
  OwnedValue fitted = VeriValue::Adjust(std::move(source), target.Size(), from);
  for (unsigned bit = 0; fitted && bit < target.Size(); bit++)
    if (!binding.Bind(target.GetBit(bit), fitted->GetBit(bit))) return false;
  return true;
}
} // namespace

void VeriValue::NetAssignFrom(OwnedValue source, veri_net_resolution resolution, bool isolate,
                              const VeriTreeNode* from) {
  if (!source) return;
  if (const VeriDualPortValue* memory = source->AsDualPort()) return memory->ConnectPorts(from);
  if (source->IsReal() || IsReal()) {
    veri_at(from).Error("not supported use of real number");
    return;
  }
  NetBinding binding(resolution, isolate, from);
  bind_elements(binding, *this, std::move(source), from);
}

bool VeriValue::CreatesLoop(const VeriValue& source, bool ignore_self) const {
  if (IsDualPortValue() || source.IsDualPortValue() || IsReal() || source.IsReal()) return false;
  if (IsAggregate()) {
    for (unsigned i = 0; i < NumOfElements(); i++) {
      const VeriValue* element = GetElement(i);
      const VeriValue* value = source.GetElement(i);
      if (element && value && element->CreatesLoop(*value, ignore_self)) return true;
    }
    return false;
  }
  for (unsigned bit = 0; bit < Size() && bit < source.Size(); bit++) {
    Net* net = GetBit(bit);
    Net* value = source.GetBit(bit);
    if (!veri_is_digit(net) && !veri_is_digit(value) && net->CreatesLatch(value, ignore_self)) return true;
  }
  return false;
}

OwnedValue VeriValue::InsertInferPoints(OwnedValue changed, const VeriValue& old, const VeriTreeNode* from) {
  if (!changed || changed->IsConstant() || changed->IsDualPortValue()) return changed;
  if (VeriAggregateValue* aggregate = changed->AsAggregate()) {
    for (unsigned i = 0; i < aggregate->NumOfElements(); i++)
      if (const VeriValue* element = old.GetElement(i))
        aggregate->SetElement(i, InsertInferPoints(aggregate->TakeElement(i), *element, from));
    return changed;
  }
  VeriLogic logic(from);
  for (unsigned bit = 0; bit < changed->Size() && bit < old.Size(); bit++) {
    Net* before = old.GetBit(bit);
    Net* after = changed->GetBit(bit);
    if (before == after || veri_is_digit(before) || veri_is_digit(after)) continue;
    if (after->RequiresInferPoint(before))
      changed->SetBit(bit, logic.netlist()->InferPoint(after, before, logic.linefile()));
  }
  return changed;
}

// Power-up values, attributes, ports.

void VeriNonConstVal::SetDefaultValue(const VeriValue& value, const VeriTreeNode* from) {
  if (!value.IsConstant() || value.IsAggregate()) {
    veri_at(from).Warning("can't set default value on a non-constant value");
    return;
  }
  for (unsigned bit = 0; bit < Size(); bit++) {
    veri_digit digit;
    Net* net = GetBit(bit);
    if (veri_is_digit(net) || !veri_is_digit(value.GetBit(bit), &digit)) continue;
    net->SetPowerUpValue("01XZ"[digit]);
  }
}

void VeriAggregateValue::SetDefaultValue(const VeriValue& value, const VeriTreeNode* from) {
  for (unsigned i = 0; i < NumOfElements(); i++) {
    const VeriValue* element = value.GetElement(i);
    if (_elements[i] && element) _elements[i]->SetDefaultValue(*element, from);
  }
}

namespace {
void apply_attributes(DesignObj* object, const Map* attributes) {
  for (Att* att : ValuesOf<Att*>(attributes))
    if (object->Supports(att)) object->AddAtt(new Att(*att));
}
} // namespace

void VeriValue::ApplyAttributes(const Map*, const VeriTreeNode*) {}

void VeriNonConstVal::ApplyAttributes(const Map* attributes, const VeriTreeNode*) {
  for (Net* net : _nets)
    if (!veri_is_digit(net)) apply_attributes(net, attributes);
}

void VeriAggregateValue::ApplyAttributes(const Map* attributes, const VeriTreeNode* from) {
  for (OwnedValue& element : _elements)
    if (element) element->ApplyAttributes(attributes, from);
}

void VeriValue::CreatePorts(const char* name, port_dir direction, const VeriConstraint& constraint,
                            const VeriTreeNode* from) const {
  if (IsConstant()) {
    KESTRIN_REPORT_INTERNAL("Can't create ports based on a constant value");
    return;
  }
  Array ports;
  constraint.CreatePorts(CurrentNetlist(), name, direction, veri_linefile(from), ports);
  Array nets;
  GetNets(nets);
  for (unsigned i = 0; i < ports.Size() && i < nets.Size(); i++)
    FromWord<Net*>(nets.At(i))->Connect(FromWord<Port*>(ports.At(i)));
}

void VeriAggregateValue::CreatePorts(const char* name, port_dir direction, const VeriConstraint& constraint,
                                     const VeriTreeNode* from) const {
  if (IsDualPortValue()) {
    KESTRIN_REPORT_INTERNAL("Can't create ports for aggregate values");
    return;
  }
  VeriValue::CreatePorts(name, direction, constraint, from);
}

Instance* VeriValue::GetOperator() const {
  Instance* result = nullptr;
  Array nets;
  if (IsReal() || IsDualPortValue()) return nullptr;
  GetNets(nets);
  for (Net* net : ItemsOf<Net*>(&nets)) {
    if (veri_is_digit(net)) continue;
    Instance* driver = net->Driver();
    if (!driver || !driver->IsOperator() || (result && driver != result)) return nullptr;
    result = driver;
  }
  return result;
}

Instance* VeriValue::GetMult() const {
  Array nets;
  if (IsReal() || IsDualPortValue()) return nullptr;
  GetNets(nets);
  for (Net* net : ItemsOf<Net*>(&nets))
    if (!veri_is_digit(net) && net->DriverType() == OPER_MULTIPLIER) return net->Driver();
  return nullptr;
}
