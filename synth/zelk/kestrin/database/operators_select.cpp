// Optimisation of selection logic: what stands in front of a selector or an N:1 multiplexer in the same form on all of
// its data bits moves behind it, so that it exists once.
#include <vector>

#include "containers/views.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/operators.h"
#include "database/views.h"
#include "util/services.h"

namespace {
std::vector<Net*> data_bits(const Instance* selector) {
  std::vector<Net*> nets(selector->Input2Size());
  for (unsigned i = 0; i < nets.size(); i++) nets[i] = selector->GetInput2Bit(i);
  return nets;
}

std::vector<Net*> select_bits(const Instance* selector) {
  std::vector<Net*> nets(selector->Input1Size());
  for (unsigned i = 0; i < nets.size(); i++) nets[i] = selector->GetInput1Bit(i);
  return nets;
}

/// All data bits on one net: the selection selects nothing.
unsigned optimize_silly_selection(Instance* selector) {
  Net* output = selector->GetOutput();
  std::vector<Net*> data = data_bits(selector);
  if (!output || data.empty() || !data[0] || data[0] == output) return 0;
  for (Net* net : data)
    if (net != data[0]) return 0;
  kestrin_debug("Selection logic %s fed by same input...optimzing.", selector->Name());
  unsigned long linefile = selector->Linefile();
  delete selector;
  data[0]->PropagateInto(output, linefile);
  return 1;
}

/// The view that drives all data bits; null when there is more than one, or a bit without driver.
Netlist* common_driving_view(const Instance* selector) {
  Netlist* view = nullptr;
  for (Net* net : data_bits(selector)) {
    Instance* driver = net ? net->Driver() : nullptr;
    if (!driver || (view && driver->View() != view)) return nullptr;
    view = driver->View();
  }
  return view;
}

Net* other_input(const Instance* gate, const Net* input) {
  return gate->GetInput1() == input ? gate->GetInput2() : gate->GetInput1();
}

bool has_input(const Instance* gate, const Net* input) {
  return gate->GetInput1() == input || gate->GetInput2() == input;
}

/// The net on an input of every gate; null when there is none.
Net* find_common_input(const std::vector<Instance*>& gates) {
  for (Net* candidate : {gates[0]->GetInput1(), gates[0]->GetInput2()}) {
    bool is_common = candidate != nullptr;
    for (Instance* gate : gates) is_common = is_common && has_input(gate, candidate) && other_input(gate, candidate);
    if (is_common) return candidate;
  }
  return nullptr;
}

/// Gates that lost the load through which they were found go, unless something else reads them.
void delete_unread(const std::vector<Net*>& nets) {
  Set gone;
  for (Net* net : nets)
    if (!gone.Contains(net)) net->DeleteFanoutFreeCone(&gone, 1 /*keep_user_nets*/);
}

/// sel ? a & x : b & x becomes (sel ? a : b) & x.
unsigned push_primitives_through_selection(Instance* selector) {
  Net* output = selector->GetOutput();
  if (!output) return 0;
  std::vector<Net*> data = data_bits(selector);
  std::vector<Instance*> gates(data.size());
  for (size_t i = 0; i < data.size(); i++) gates[i] = data[i]->Driver();
  Net* common_input = find_common_input(gates);
  if (!common_input) return 0;
  kestrin_debug("Pushing primitive gate through %s.", selector->Name());

  Netlist* netlist = selector->Owner();
  Netlist* view = gates[0]->View();
  for (unsigned i = 0; i < data.size(); i++) {
    Instance* gate = gates[i];
    KESTRIN_ASSERT(gate && common_input);
    selector->Reconnect(selector->View()->GetInput2Bit(i), other_input(gate, common_input));
  }
  auto* selected = new Net;
  netlist->Add(selected);
  selector->Reconnect(selector->View()->GetOutputBit(0), selected);
  auto* gate = new Instance(nullptr, view, gates[0]->Linefile());
  netlist->Add(gate);
  gate->Connect(view->GetInput1(), selected);
  gate->Connect(view->GetInput2(), common_input);
  gate->Connect(view->GetOutput(), output);
  delete_unread(data);
  return 1;
}

/// The word of selectors behind a set of operators: for each output (the carry out last, when used) the selector that
/// chooses among the operators' bits.
class OperatorPush {
public:
  explicit OperatorPush(Instance* selector) : _selector(selector) {
    for (Net* net : data_bits(selector)) {
      Net* input = net;
      KESTRIN_ASSERT(input && input->Driver());
      _operators.InsertLast(input->Driver());
    }
  }

  unsigned Run() {
    kestrin_debug("Attempting to push operators through selector.");
    Instance* first = _operators.At(0);
    for (unsigned bit = 0; bit < first->OutputSize(); bit++)
      if (!AddWordBit(first->View()->GetOutputBit(bit), bit)) return 0;
    if (!CarriesAgree()) return 0;
    if (first->GetCout() && !AddWordBit(first->View()->GetCout(), first->OutputSize())) return 0;
    Operator* view = OperatorOf(first);
    if (!view || view->MergeCost(&_operators) > 0) return 0;
    kestrin_debug("Yay, we're sharing the operations.");
    Share(view);
    return 1;
  }

private:
  static Operator* OperatorOf(Instance* inst) {
    return inst->IsOperator() ? static_cast<Operator*>(inst->View()) : nullptr;
  }

  /// Checks that this output of every operator feeds its own position of one selector and nothing else.
  bool AddWordBit(Port* port, unsigned bit) {
    Instance* word_selector = nullptr;
    for (unsigned position = 0; position < _operators.Size(); position++) {
      Instance* oper = _operators.At(position);
      Net* net = oper->GetNet(port);
      if (!net || net->NumOfPorts() || net->NumOfPortRefs() != 2) {
        kestrin_debug("Bit %d of operator %s drives nothing, a port, or more than one destination",
                      static_cast<int>(bit), oper->Name());
        return false;
      }
      PortRef* load = net->GetLastPortRef();
      Instance* inst = load->IsInput() ? load->GetInst() : nullptr;
      if (!inst || inst->View() != _selector->View() || (word_selector && inst != word_selector)) {
        kestrin_debug("Bit %d of operator %s drives a non-selector or a different selector than the same bit",
                      static_cast<int>(bit), oper->Name());
        return false;
      }
      word_selector = inst;
      if (inst->GetInput2Bit(position) != net || select_bits(inst) != select_bits(_selector)) {
        kestrin_debug("Bit %d of operator %s doesn't drive the correct selector input", static_cast<int>(bit),
                      oper->Name());
        return false;
      }
    }
    if (!_selector_set.Insert(word_selector)) {
      kestrin_debug("%s is already in the selector set", word_selector->Name());
      return false;
    }
    _word.push_back({port, word_selector});
    return true;
  }

  bool CarriesAgree() const {
    Instance* first = _operators.At(0);
    for (Instance* oper : _operators) {
      if (oper->GetCout() && !first->GetCout()) {
        kestrin_debug("%s has a connected Cout but prior operators don't.", oper->Name());
        return false;
      }
      if (!oper->GetCout() && first->GetCout()) {
        kestrin_debug("%s doesn't have connected Cout but prior operators do.", oper->Name());
        return false;
      }
      if (oper->GetCin() != first->GetCin()) {
        kestrin_debug("%s doesn't have the correct cin.", oper->Name());
        return false;
      }
    }
    return true;
  }

  void Share(Operator* view) {
    std::vector<Net*> outputs;
    for (const WordBit& bit : _word) {
      outputs.push_back(bit.selector->GetOutput());
      for (unsigned i = 0; i < bit.selector->Input2Size(); i++)
        bit.selector->Disconnect(bit.selector->View()->GetInput2Bit(i));
    }
    Instance* first = _operators.At(0);
    if (_selector->Type() == OPER_SELECTOR) {
      for (unsigned i = 0; i < _operators.Size(); i++) _operators.At(i)->SetControlNet(_selector->GetInput1Bit(i));
      view->Merge(&_operators);
    } else {
      SteerInputs(first);
      for (unsigned i = 1; i < _operators.Size(); i++) delete _operators.At(i);
    }
    for (unsigned i = 0; i < _word.size(); i++) {
      delete _word[i].selector;
      Net* former = first->GetNet(_word[i].port);
      first->Reconnect(_word[i].port, outputs[i]);
      if (former && former != outputs[i] && !former->Linefile() && !former->NumOfPortRefs() && !former->NumOfPorts())
        delete former;
    }
  }

  /// Puts an N:1 multiplexer in front of each input bit on which the operators differ.
  void SteerInputs(Instance* first) const {
    Netlist* netlist = first->Owner();
    ArrayOf<Net> sel;
    for (Net* net : select_bits(_selector)) sel.InsertLast(net);
    for (Port* port : PortsOf(first->View())) {
      if (!port->IsInput()) continue;
      ArrayOf<Net> choices;
      bool differ = false;
      for (Instance* oper : _operators) {
        choices.InsertLast(oper->GetNet(port));
        differ = differ || oper->GetNet(port) != first->GetNet(port);
      }
      if (!differ) continue;
      Net* steered = nullptr;
      netlist->Nto1Mux(&sel, &choices, &steered, first->Linefile());
      first->Reconnect(port, steered);
    }
  }

  struct WordBit {
    Port* port;
    Instance* selector;
  };
  Instance* _selector;
  ArrayOf<Instance> _operators; // by position
  Set _selector_set;
  std::vector<WordBit> _word;
};

unsigned optimize_selection_logic(Instance* selector) {
  if (optimize_silly_selection(selector)) return 1;
  Netlist* view = common_driving_view(selector);
  if (!view) return 0;
  if (view->Type() >= PRIM_AND && view->Type() <= PRIM_XNOR) return push_primitives_through_selection(selector);
  if (view->Type() == OPER_ADDER) return OperatorPush(selector).Run();
  return 0;
}
} // namespace

unsigned OperSelector::Optimize(Instance* inst) { return optimize_selection_logic(inst); }
unsigned OperNto1Mux::Optimize(Instance* inst) { return optimize_selection_logic(inst); }
