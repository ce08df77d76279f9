// Operators that become one: what that costs, and the steering of the inputs of the one that stays.
#include <algorithm>
#include <climits>
#include <memory>
#include <vector>

#include "containers/views.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/operators.h"
#include "database/views.h"
#include "util/services.h"

unsigned Operator::SupportsAttribute(const Att* att) const {
  return att ? kestrin_att_supported(ATT_ON_OPERATOR, att->Type()) : 0;
}

unsigned OperMult::SupportsAttribute(const Att* att) const {
  return !att || kestrin_att_supported(ATT_ON_MULTIPLIER, att->Type());
}

unsigned OperDualPortRam::SupportsAttribute(const Att* att) const {
  return !att || kestrin_att_supported(ATT_ON_RAM, att->Type());
}

namespace {

bool AreInverse(const Net* a, const Net* b) {
  if (!a || !b) return false;
  if (a->IsConstant() && b->IsConstant()) return (a->IsGnd() && b->IsPwr()) || (a->IsPwr() && b->IsGnd());
  return a->InvNet() == b || b->InvNet() == a;
}

bool HasCarryIn(const Instance* inst) {
  const Net* cin = inst->GetCin();
  return cin && !cin->IsGnd();
}

} // namespace

unsigned Operator::AreAddSubPair(Instance*, Instance*) const { return 0; }

unsigned OperAdder::AreAddSubPair(Instance* a, Instance* b) const {
  if (a->View() != this || b->View() != this || HasCarryIn(a) == HasCarryIn(b)) return 0;
  for (unsigned bit = 0; bit < Input1Size(); bit++)
    if (a->GetInput1Bit(bit) != b->GetInput1Bit(bit)) return 0;
  for (unsigned bit = 0; bit < Input2Size(); bit++)
    if (!AreInverse(a->GetInput2Bit(bit), b->GetInput2Bit(bit))) return 0;
  return 1;
}

int Operator::MergeCost(const Array*) { return INT_MAX; }

namespace {

int CostOfMerging(const Operator* view, const Array* instances) {
  unsigned long swap_mask = 0;
  long cost = view->MuxCost(instances, &swap_mask);
  return static_cast<int>(cost - view->Area() - view->SelectorBenefit(instances));
}

/// The operand bit of an instance at a position of both operands together, the first one's bits first.
Net* OperandBit(const Instance* inst, unsigned position, bool swapped) {
  unsigned first_size = swapped ? inst->Input2Size() : inst->Input1Size();
  bool first = position < first_size;
  unsigned bit = first ? position : position - first_size;
  return first != swapped ? inst->GetInput1Bit(bit) : inst->GetInput2Bit(bit);
}

bool IsSwapped(unsigned long swap_mask, unsigned number) {
  return number < sizeof(swap_mask) * CHAR_BIT && (swap_mask >> number) & 1;
}

/// The multiplexers that choose among these nets.
unsigned ChoicesAmong(const Set& nets) { return nets.Size() ? nets.Size() - 1 : 0; }

} // namespace

int OperAdder::MergeCost(const Array* instances) { return CostOfMerging(this, instances); }
int OperMult::MergeCost(const Array* instances) { return CostOfMerging(this, instances); }

unsigned Operator::MuxCost(const Array* instances, unsigned long swap_mask) const {
  unsigned cost = 0;
  for (unsigned position = 0; position < Input1Size() + Input2Size(); position++) {
    Set nets(HASH_POINTER);
    unsigned number = 0;
    for (Instance* inst : ItemsOf<Instance*>(instances))
      nets.Insert(OperandBit(inst, position, IsSwapped(swap_mask, number++)));
    cost += ChoicesAmong(nets);
  }
  Set carries(HASH_POINTER);
  for (Instance* inst : ItemsOf<Instance*>(instances)) carries.Insert(inst->GetCin());
  return cost + ChoicesAmong(carries);
}

unsigned Operator::MuxCost(const Array* instances, unsigned long* swap_mask) const {
  *swap_mask = 0;
  return MuxCost(instances, *swap_mask);
}

namespace {

/// Counts the multiplexers and selectors at which the outputs of several instances meet.
class MeetingPoints {
public:
  void Add(const Instance* member, const Net* output) {
    for (PortRef* load : LoadsOf(output))
      if (load->GetInst()->Type() == PRIM_MUX && WasMet(load->GetInst(), member)) Follow(load->GetInst(), member);
  }
  unsigned Count() const { return _count; }

private:
  bool WasMet(const Instance* choice, const Instance* member) {
    if (_met_by.Insert(choice, member)) return false;
    return _met_by.GetValue(choice) != member && _counted.Insert(Key(choice, member));
  }

  static const void* Key(const Instance* choice, const Instance* member) {
    return ToWord(FromWord<unsigned long>(choice) ^ (FromWord<unsigned long>(member) >> 1));
  }

  void Follow(const Instance* from, const Instance* member) {
    std::vector<const Instance*> open{from};
    while (!open.empty()) {
      const Instance* choice = open.back();
      open.pop_back();
      _count++;
      for (PortRef* load : LoadsOf(choice->GetOutput())) {
        prim_type_enum type = load->GetInst()->Type();
        if (type != PRIM_MUX && type != OPER_NTO1MUX && type != OPER_SELECTOR) continue;
        if (WasMet(load->GetInst(), member)) open.push_back(load->GetInst());
      }
    }
  }

  Map _met_by{HASH_POINTER}; // choice to the first member that reached it
  Set _counted{HASH_POINTER};
  unsigned _count = 0;
};

} // namespace

unsigned Operator::SelectorBenefit(const Array* instances) const {
  MeetingPoints points;
  for (Instance* inst : ItemsOf<Instance*>(instances)) {
    for (unsigned bit = 0; bit < OutputSize(); bit++)
      if (const Net* output = inst->GetOutputBit(bit)) points.Add(inst, output);
    if (const Net* carry = inst->GetCout()) points.Add(inst, carry);
  }
  return points.Count();
}

namespace {

/// The nets that instances bring to one input, each with the conditions under which it is used.
class InputChoice {
public:
  InputChoice() = default;
  InputChoice(const InputChoice&) = delete;
  InputChoice& operator=(const InputChoice&) = delete;
  ~InputChoice() {
    for (Array* conditions : ValuesOf<Array*>(&_values)) delete conditions;
  }

  void Add(Net* value, Net* condition) {
    if (!value) return;
    auto* conditions = FromWord<Array*>(_values.GetValue(value));
    if (!conditions) _values.Insert(value, conditions = new Array);
    if (condition) conditions->InsertLast(condition);
  }
  const Map* Values() const { return &_values; }

private:
  Map _values{HASH_POINTER};
};

} // namespace

void Operator::Merge(const Array* instances) {
  KESTRIN_ASSERT(instances);
  if (instances->Size() < 2) return;
  unsigned long swap_mask = 0;
  MuxCost(instances, &swap_mask);
  auto* kept = FromWord<Instance*>(instances->At(0));
  Netlist* netlist = kept->Owner();
  unsigned long linefile = kept->Linefile();

  std::vector<std::pair<Port*, Net*>> shared;
  auto share = [&](Port* port, auto net_of) {
    InputChoice choice;
    unsigned number = 0;
    for (Instance* inst : ItemsOf<Instance*>(instances)) choice.Add(net_of(inst, number++), inst->ControlNet());
    shared.emplace_back(port, netlist->InputShare(choice.Values(), linefile));
  };
  for (unsigned position = 0; position < Input1Size() + Input2Size(); position++) {
    Port* port = position < Input1Size() ? GetInput1Bit(position) : GetInput2Bit(position - Input1Size());
    share(port,
          [&](Instance* inst, unsigned number) { return OperandBit(inst, position, IsSwapped(swap_mask, number)); });
  }
  if (GetCin()) share(GetCin(), [](Instance* inst, unsigned) { return inst->GetCin(); });
  for (auto [port, net] : shared) kept->Reconnect(port, net);
  for (unsigned number = 1; number < instances->Size(); number++)
    MergeOutputs(kept, FromWord<Instance*>(instances->At(number)));
}

namespace {

/// What one value is used under, once the nets are left out that all values share.
struct shared_value {
  Net* value;
  const Array* conditions;
};

/// The nets that stand in every product of all values: while they are off no value is used at all.
std::unique_ptr<Set> CommonInputs(const std::vector<shared_value>& values) {
  Array all;
  for (const shared_value& shared : values) all.Append(shared.conditions);
  return std::unique_ptr<Set>(Operator::FindCommonPtermInputs(&all));
}

} // namespace

Net* Netlist::InputShare(const Map* values, unsigned long linefile) {
  std::vector<shared_value> choices;
  Net* unconditional = nullptr; // used whenever no other value is
  for (auto [value, conditions] : Entries<Net*, const Array*>(values)) {
    if (conditions && conditions->Size())
      choices.push_back({value, conditions});
    else
      unconditional = value;
  }
  if (choices.empty()) return unconditional;
  if (choices.size() == 1 && !unconditional) return choices.front().value;
  std::unique_ptr<Set> common = CommonInputs(choices);
  if (unconditional) {
    for (const shared_value& choice : choices)
      unconditional =
          Mux(unconditional, choice.value, Operator::BuildSOP(this, choice.conditions, nullptr, linefile), linefile);
    return unconditional;
  }
  if (choices.size() == 2) {
    kestrin_debug("(RS) - Using 2:1 MUX for input steering");
    // The side with fewer conditions makes the smaller select.
    bool first = choices[0].conditions->Size() <= choices[1].conditions->Size();
    const shared_value& selected = choices[first ? 0 : 1];
    Net* select = Operator::BuildSOP(this, selected.conditions, common.get(), linefile);
    return Mux(choices[first ? 1 : 0].value, selected.value, select, linefile);
  }
  kestrin_debug("(RS) - Using selector for input steering.");
  Array select;
  Array value;
  for (const shared_value& choice : choices) {
    select.InsertLast(Operator::BuildSOP(this, choice.conditions, common.get(), linefile));
    value.InsertLast(choice.value);
  }
  Net* output = nullptr;
  Selector(&select, &value, &output, linefile);
  return output;
}
