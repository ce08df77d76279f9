// Reads netlists that are written as text, changes each as the name of its cell tells, and writes both forms as Verilog
// for an independent tool. Netlists of few inputs are evaluated for all of their values before and after the change.
//
// Before that all of them are saved, and what comes back is what is changed; damaged files of them do no harm.
//
// usage: netlist_prover NETLISTS GOLD.v GATE.v [fault]
//
// With `fault` the first output of every changed netlist is inverted, so that nobody may call it equal.
#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "database/netlistchecker.h"
#include "database/operators.h"
#include "database/views.h"
#include "msg.h"
#include "support/damaged_file.h"
#include "support/netlist_evaluator.h"
#include "support/netlist_verilog.h"
#include "zelk_netlist_creator.h"

namespace {

std::vector<Instance*> All(const Netlist* netlist) {
  std::vector<Instance*> insts;
  for (Instance* inst : InstancesOf(netlist)) insts.push_back(inst);
  return insts;
}

/// Puts nets in place of an instance with its outputs.
class Replacement {
public:
  explicit Replacement(Instance* inst) : _inst(inst) {}
  void Output(Net* output, Net* value) { _outputs.emplace_back(output, value); }
  void Execute() {
    delete _inst;
    for (auto [output, value] : _outputs) {
      if (!output || !value) continue;
      value->Wire(output);
      Net* merged = value->ResolveWires();
      for (auto& other : _outputs) { // several outputs may have one value
        if (other.first == output || other.first == value) other.first = merged;
        if (other.second == output || other.second == value) other.second = merged;
      }
    }
  }

private:
  Instance* _inst;
  std::vector<std::pair<Net*, Net*>> _outputs;
};

std::vector<Net*> Input1(const Instance* inst) {
  std::vector<Net*> nets(inst->Input1Size());
  for (unsigned i = 0; i < nets.size(); i++) nets[i] = inst->GetInput1Bit(i);
  return nets;
}

std::vector<Net*> Input2(const Instance* inst) {
  std::vector<Net*> nets(inst->Input2Size());
  for (unsigned i = 0; i < nets.size(); i++) nets[i] = inst->GetInput2Bit(i);
  return nets;
}

unsigned Size(const std::vector<Net*>& nets) { return static_cast<unsigned>(nets.size()); }

std::vector<Net*> ShiftedOrRotated(const Instance* inst, Netlist* n) {
  std::vector<Net*> bits = Input1(inst);
  std::vector<Net*> amount = Input2(inst);
  const bool left = inst->Type() == OPER_SHIFT_LEFT || inst->Type() == OPER_ROTATE_LEFT;
  if (left) Operator::SwapBits(bits.data(), Size(bits));
  if (inst->GetCin())
    Operator::BuildShiftRight(n, bits.data(), Size(bits), amount.data(), Size(amount), inst->GetCin());
  else
    Operator::BuildRotateRight(n, bits.data(), Size(bits), amount.data(), Size(amount));
  if (left) Operator::SwapBits(bits.data(), Size(bits));
  return bits;
}

/// The outputs of an operator as gates, bit 0 first, an adder's carry last; none for what has no expansion.
std::vector<Net*> Expansion(const Instance* inst, Netlist* n) {
  std::vector<Net*> a = Input1(inst);
  std::vector<Net*> b = Input2(inst);
  const unsigned size = Size(a);
  auto tree = [&](prim_type_enum type, bool inverted) {
    Net* root = Operator::BuildBinaryTree(n, a.data(), size, type);
    return std::vector<Net*>{inverted ? n->Inv(root, 0) : root};
  };
  switch (inst->Type()) {
  case OPER_ADDER: {
    Net* zero = n->Gnd(0);
    const unsigned width = inst->OutputSize();
    a.resize(width);
    b.resize(width);
    Operator::Extend(a.data(), zero, size, width);
    Operator::Extend(b.data(), zero, inst->Input2Size(), width);
    std::vector<Net*> sum(width);
    sum.push_back(
        Operator::BuildRippleAdder(n, a.data(), b.data(), sum.data(), width, inst->GetCin() ? inst->GetCin() : zero));
    return sum;
  }
  case OPER_MULTIPLIER: {
    std::vector<Net*> product(inst->OutputSize());
    Operator::BuildMultiplier(n, a.data(), size, b.data(), Size(b), product.data(), Size(product), inst->IsSigned(),
                              n->Gnd(0));
    return product;
  }
  case OPER_SHIFT_LEFT:
  case OPER_SHIFT_RIGHT:
  case OPER_ROTATE_LEFT:
  case OPER_ROTATE_RIGHT: return ShiftedOrRotated(inst, n);
  case OPER_REDUCE_AND: return tree(PRIM_AND, false);
  case OPER_REDUCE_NAND: return tree(PRIM_AND, true);
  case OPER_REDUCE_OR: return tree(PRIM_OR, false);
  case OPER_REDUCE_NOR: return tree(PRIM_OR, true);
  case OPER_REDUCE_XOR: return tree(PRIM_XOR, false);
  case OPER_REDUCE_XNOR: return tree(PRIM_XOR, true);
  case OPER_LESSTHAN:
    return {Operator::BuildSmallerThan(n, a.data(), b.data(), size, inst->IsAttOn("signed"), inst->GetCin())};
  case OPER_EQUAL: return {Operator::BuildEqual(n, a.data(), b.data(), size)};
  case OPER_NTO1MUX: return {Operator::BuildMuxTree(n, a.data(), size, b.data())};
  case OPER_SELECTOR: return {Operator::BuildSelector(n, a.data(), b.data(), size)};
  case OPER_PRIO_SELECTOR: return {Operator::BuildPrioSelector(n, inst->GetCin(), a.data(), b.data(), size)};
  case OPER_DECODER: {
    std::vector<Net*> lines(1U << size);
    Operator::BuildDecoder(n, a.data(), size, lines.data());
    return lines;
  }
  default: return {};
  }
}

unsigned Expand(Netlist* n) {
  unsigned changes = 0;
  for (Instance* inst : All(n)) {
    if (!inst->IsOperator()) continue;
    const std::vector<Net*> nets = Expansion(inst, n);
    if (nets.empty()) continue;
    Replacement replacement(inst);
    for (unsigned i = 0; i < inst->OutputSize(); i++) replacement.Output(inst->GetOutputBit(i), nets[i]);
    if (inst->GetCout()) replacement.Output(inst->GetCout(), nets.back());
    replacement.Execute();
    changes++;
  }
  return changes;
}

/// Gates as the folding helpers make them of their inputs.
unsigned Fold(Netlist* n) {
  unsigned changes = 0;
  for (Instance* inst : All(n)) {
    if (!inst->GetAtt("fold")) continue;
    Net* a = inst->GetInput1();
    Net* b = inst->GetInput2();
    Net* result = nullptr;
    switch (inst->Type()) {
    case PRIM_INV: result = n->OptimizedInv(inst->GetInput(), 0); break;
    case PRIM_AND: result = n->OptimizedAnd(a, b, 0); break;
    case PRIM_OR: result = n->OptimizedOr(a, b, 0); break;
    case PRIM_MUX: result = n->OptimizedMux(a, b, inst->GetControl(), 0); break;
    default: continue;
    }
    Replacement replacement(inst);
    replacement.Output(inst->GetOutput(), result);
    replacement.Execute();
    changes++;
  }
  return changes;
}

/// Disjunctions of products as BuildSOP makes them; with the value "common" without what all products share, which is
/// added behind them.
unsigned SumOfProducts(Netlist* n) {
  unsigned changes = 0;
  for (Instance* inst : All(n)) {
    const char* form = inst->GetAttValue("sop");
    if (!form) continue;
    ArrayOf<Net> terms;
    for (Net* term : Input1(inst)) terms.InsertLast(term);
    const std::unique_ptr<Set> common(Operator::FindCommonPtermInputs(&terms));
    const bool factored = std::string(form) == "common";
    Net* sum = Operator::BuildSOP(n, &terms, factored ? common.get() : nullptr, 0);
    if (factored)
      for (Net* shared : KeysOf<Net*>(common.get())) sum = n->And(sum, shared, 0);
    Replacement replacement(inst);
    replacement.Output(inst->GetOutput(), sum == terms.At(0) ? n->Buf(sum, 0) : sum);
    replacement.Execute();
    changes++;
  }
  return changes;
}

/// Loads of registers that never happen lose their nets.
unsigned Unload(Netlist* n) {
  unsigned changes = 0;
  for (Instance* inst : All(n)) {
    const unsigned connections = inst->NumOfPortRefs();
    inst->Propagate();
    changes += connections - inst->NumOfPortRefs();
  }
  return changes;
}

/// Repeats a change of single instances until none changes any more.
template <class Change> unsigned UntilStable(Netlist* n, Change change) {
  unsigned changes = 0;
  for (bool again = true; again;) {
    again = false;
    for (Instance* inst : InstancesOf(n)) {
      if (!change(inst)) continue;
      changes++;
      again = true;
    }
  }
  return changes;
}

unsigned Propagate(Netlist* n) {
  return UntilStable(n, [](Instance* inst) { return inst->Propagate(); });
}

unsigned Push(Netlist* n) {
  return UntilStable(
      n, [](Instance* inst) { return inst->IsOperator() ? static_cast<Operator*>(inst->View())->Optimize(inst) : 0; });
}

unsigned Merge(Netlist* n) {
  return UntilStable(n, [n](Instance* first) {
    for (Instance* second : InstancesOf(n))
      if (second != first && second->View() == first->View() && first->View()->MergeCommonSubexpression(first, second))
        return 1U;
    return 0U;
  });
}

struct Change {
  const char* cell;
  unsigned (*apply)(Netlist*);
};
constexpr Change changes[] = {{"expand", Expand}, {"fold", Fold},         {"propagate", Propagate}, {"push", Push},
                              {"merge", Merge},   {"sop", SumOfProducts}, {"unload", Unload}};

constexpr unsigned max_evaluated_bits = 11;

/// All outputs for all values of the inputs; nothing for netlists with unknown values, storage or too many inputs.
std::optional<std::vector<uint64_t>> Table(const Netlist* netlist) {
  std::vector<const Net*> inputs;
  std::vector<const Net*> outputs;
  for (const Port* port : PortsOf(netlist)) (port->IsInput() ? inputs : outputs).push_back(port->GetNet());
  bool unknown = inputs.size() > max_evaluated_bits;
  for (const Instance* inst : InstancesOf(netlist)) {
    unknown |= inst->Type() == PRIM_X || inst->Type() == PRIM_Z || kestrin_is_storage_type(inst->Type());
    for (const Port* port : PortsOf(inst->View())) unknown |= port->IsInput() && !inst->GetNet(port);
  }
  if (unknown) return {};
  std::vector<uint64_t> table;
  for (uint64_t values = 0; values < 1ULL << inputs.size(); values++) {
    NetlistEvaluator evaluator;
    for (size_t i = 0; i < inputs.size(); i++) evaluator.Set(inputs[i], values >> i & 1);
    for (const Net* output : outputs) table.push_back(evaluator.Value(output));
  }
  return table;
}

void InvertFirstOutput(Netlist* n) {
  for (Port* port : PortsOf(n)) {
    if (!port->IsOutput()) continue;
    Net* net = port->GetNet();
    net->Disconnect(port);
    n->Inv(net, 0)->Connect(port);
    return;
  }
}

class Prover {
public:
  Prover(const char* gold, const char* gate, bool fault) : _gold(gold), _gate(gate), _fault(fault) {}

  void Prove(const Change& change, Netlist* netlist) {
    const std::string name = netlist->Name();
    if (!NetlistVerilog::Write(netlist, "gold_" + name, _gold)) Complain(name, "cannot be written before the change");
    const auto before = Table(netlist);
    const unsigned count = change.apply(netlist);
    if (!count) Complain(name, "was not changed");
    if (_fault) InvertFirstOutput(netlist);
    const std::string faults = NetlistChecker(netlist).Report();
    if (!faults.empty()) Complain(name, faults);
    if (!NetlistVerilog::Write(netlist, "gate_" + name, _gate)) Complain(name, "cannot be written after the change");
    const bool differs = before && before != Table(netlist);
    _different += differs;
    if (differs && !_fault) Complain(name, "computes something else");
    _evaluated += before.has_value();
    std::cout << name << " " << count << "\n";
  }

  /// With a fault every evaluated netlist has to differ.
  int Result() {
    if (_fault && _different != _evaluated) Complain("faults", "were not noticed");
    std::cerr << _evaluated << " netlists evaluated for all inputs\n";
    return _result;
  }

private:
  void Complain(const std::string& name, const std::string& what) {
    std::cerr << name << ": " << what << "\n";
    _result = 1;
  }

  std::ofstream _gold;
  std::ofstream _gate;
  bool _fault;
  unsigned _evaluated = 0;
  unsigned _different = 0;
  int _result = 0;
};

/// Tries damaged files of all netlists, which are gone then.
void TryDamage() {
  std::vector<DamagedFile> damaged;
  for (Cell* cell : CellsOf(Libset::Global()->GetLibrary("text")))
    for (Netlist* netlist : NetlistsOf(cell)) damaged.emplace_back(netlist);
  ForgetDesigns();
  std::mt19937 random(1);
  kestrin_set_report_handler([](const char*, const char*, int) {});
  for (DamagedFile& file : damaged) file.Try(random);
  kestrin_set_report_handler(nullptr);
  DamagedFile::PrintTries();
}

/// Saves all netlists and goes on with what comes back, from a file of this machine's byte order and of the other one.
bool ComeBackAsTheyWere(const std::string& path) {
  for (const bool swapped : {false, true}) {
    Library* text = Libset::Global()->GetLibrary("text");
    const std::string before = DumpOf(text);
    std::string bytes = BytesOfSaved(text, path);
    if (swapped) {
      const ByteSwapper swap(bytes);
      WriteBytes(path, bytes);
    }
    if (swapped)
      ForgetDesigns();
    else
      TryDamage();
    SaveRestore stream(path.c_str(), 1);
    auto* restored = new Library(stream);
    restored = restored->InstallRestored(stream, Libset::Global());
    if (!restored || DumpOf(restored) != before) return false;
  }
  return !testing::UnitTest::GetInstance()->Failed();
}

/// Mistakes in the text of the netlists.
struct ERRORS : MSG_SINK {
  void on_message(const MSG_BASE&) override {}
  void on_internal_error(const std::string& text, const std::string&, const std::string&, int) override {
    std::cerr << text << "\n";
  }
  void on_debug(const std::string&, const std::string&) override {}
};

} // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (argc < 4) return 2;
  ERRORS errors;
  msg_get_default_report()->set_sink(&errors);
  if (!ZELK_NETLIST_CREATOR(argv[1]).create("last")) return 3;
  Message::SetConsoleOutput(0); // damaged files tell what they are
  if (!ComeBackAsTheyWere(std::string(argv[1]) + ".db")) {
    std::cerr << "what was saved came back as something else, or a damaged file did harm\n";
    return 4;
  }
  Prover prover(argv[2], argv[3], argc > 4);
  for (const Change& change : changes) {
    const Cell* cell = Libset::Global()->GetLibrary("text")->GetCell(change.cell);
    if (!cell) continue;
    for (Netlist* netlist : NetlistsOf(cell)) prover.Prove(change, netlist);
  }
  const int result = prover.Result();
  msg_get_default_report()->set_sink(nullptr);
  Database::FreeStaticMemory();
  return result;
}
