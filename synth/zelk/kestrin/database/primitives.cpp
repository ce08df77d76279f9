// The shared primitive netlists, the construction of their instances, and what folds and merges them.
#include "database/primitives.h"

#include <initializer_list>
#include <string>

#include "containers/views.h"
#include "database/cell.h"
#include "database/instance.h"
#include "database/library.h"
#include "database/libset.h"
#include "database/net.h"
#include "database/views.h"
#include "util/strings.h"

namespace {

struct prim_line {
  enum line_kind { PRIMITIVE, PORT, ALSO } kind;
  prim_type_enum type;
  att_supporter supporter;
  const char* name;
  port_dir direction;
  prim_role role;
};

constexpr prim_line prim_lines[] = {
#define KESTRIN_PRIM(type, class_name, name, supporter)                                                                \
  {prim_line::PRIMITIVE, type, supporter, name, DIR_NONE, ROLE_COUNT},
#define KESTRIN_PRIM_PORT(name, direction, role)                                                                       \
  {prim_line::PORT, PRIM_NONE, ATT_SUPPORTER_COUNT, name, direction, role},
#define KESTRIN_PRIM_ALSO(role) {prim_line::ALSO, PRIM_NONE, ATT_SUPPORTER_COUNT, nullptr, DIR_NONE, role},
#include "database/primitives.def"
};

const prim_line* FindLine(prim_type_enum type) {
  const prim_line* line = prim_lines;
  while (line->kind != prim_line::PRIMITIVE || line->type != type) line++;
  return line;
}

constexpr const char* prim_type_names[] = {
#define KESTRIN_PRIM_NAME(name) #name,
    KESTRIN_PRIM_TYPES(KESTRIN_PRIM_NAME)
#undef KESTRIN_PRIM_NAME
};

constexpr const char* buffer_type_names[] = {
#define KESTRIN_BUFFER_NAME(name) #name,
    KESTRIN_BUFFER_TYPES(KESTRIN_BUFFER_NAME)
#undef KESTRIN_BUFFER_NAME
};

constexpr unsigned num_buffer_types = std::size(buffer_type_names);

Prim* prims[PRIM_INFER_POINT + 1]; // the buffers stand in their own table
PrimBuf* buffers[num_buffer_types];

void Enter(Prim* prim, const char* cell_name) {
  Library* library = Libset::Global()->GetLibrary("Primitives");
  if (!library) Libset::Global()->Add(library = new Library("Primitives"));
  Cell* cell = library->GetCell(cell_name);
  if (!cell) library->Add(cell = new Cell(cell_name));
  cell->Add(prim);
}

} // namespace

Prim::Prim(prim_type_enum type, const char* name) : Netlist(name), _type(type) {
  const prim_line* const end = std::end(prim_lines);
  Port* port = nullptr;
  for (const prim_line* line = FindLine(type) + 1; line != end && line->kind != prim_line::PRIMITIVE; line++) {
    if (line->kind == prim_line::PORT) Add(port = new Port(line->name, line->direction));
    _roles[line->role] = port;
  }
}

Prim::~Prim() {
  if (prims[_type] == this) prims[_type] = nullptr;
}

PrimBuf::~PrimBuf() {
  if (buffers[_buffer_type] == this) buffers[_buffer_type] = nullptr;
}

unsigned Prim::SupportsAttribute(const Att* att) const {
  att_supporter supporter = FindLine(_type)->supporter;
  if (supporter == ATT_SUPPORTER_COUNT) return 0;
  return !att || kestrin_att_supported(supporter, att->Type());
}

Prim* Prim::New(prim_type_enum type, buffer_type_enum buffer_type) {
  if (type == PRIM_BUF) return new PrimBuf(FindLine(PRIM_BUF)->name, buffer_type);
  switch (type) {
#define KESTRIN_PRIM(type, class_name, name, supporter)                                                                \
  case type:                                                                                                           \
    return new class_name(name); // NOLINT(bugprone-macro-parentheses)
#include "database/primitives.def"
  default: return nullptr;
  }
}

Prim* Prim::Static(prim_type_enum type) {
  if (type == PRIM_BUF) return PrimBuf::Static(LOGICAL);
  if (type <= PRIM_NONE || type > PRIM_INFER_POINT) return nullptr;
  if (!prims[type]) Netlist::CreateAllPrimitives();
  return prims[type];
}

PrimBuf* PrimBuf::Static(unsigned type) {
  if (type >= num_buffer_types) {
    KESTRIN_REPORT_INTERNAL("Unknown buffer type!");
    return nullptr;
  }
  if (!buffers[type]) Netlist::CreateAllPrimitives();
  return buffers[type];
}

void Netlist::CreateAllPrimitives() {
// NOLINTNEXTLINE(bugprone-macro-parentheses): the name of a class takes none
#define KESTRIN_PRIM(type, class_name, name, supporter)                                                                \
  if ((type) != PRIM_BUF && !prims[type]) Enter(prims[type] = new class_name(name), name);
#include "database/primitives.def"
  const char* name = FindLine(PRIM_BUF)->name;
  for (unsigned type = 0; type < num_buffer_types; type++) {
    if (buffers[type]) continue;
    std::string view_name = type == LOGICAL ? name : std::string(name) + "_" + buffer_type_names[type];
    buffers[type] = new PrimBuf(view_name.c_str(), static_cast<buffer_type_enum>(type));
    Enter(buffers[type], name);
  }
}

const char* Netlist::PrimTypeToString(unsigned type) { return type < PRIM_ANY ? prim_type_names[type] : nullptr; }

prim_type_enum Netlist::PrimStringToType(const char* name) {
  unsigned type = 0;
  while (type < PRIM_ANY && !Strings::compare_nocase(prim_type_names[type], name)) type++;
  return static_cast<prim_type_enum>(type);
}

const char* Netlist::BufferTypeString(unsigned type) {
  return type < num_buffer_types ? buffer_type_names[type] : "UNKNOWN";
}

// Construction.

namespace {

/// A net on a port of a view that is being built.
struct connection {
  Port* port;
  Net* net;
};

Instance* MakeInstance(Netlist* netlist, Prim* view, unsigned long linefile, const char* name,
                       std::initializer_list<connection> connections) {
  auto* inst = new Instance(name, view, linefile);
  netlist->Add(inst);
  for (const connection& made : connections)
    if (made.net) inst->Connect(made.port, made.net);
  return inst;
}

Net* NewNetOn(Instance* inst, Port* port) {
  auto* net = new Net;
  inst->Owner()->Add(net);
  inst->Connect(port, net);
  return net;
}

/// An instance with a new net on its output.
Net* Build(Netlist* netlist, Prim* view, unsigned long linefile, const char* name,
           std::initializer_list<connection> connections) {
  return NewNetOn(MakeInstance(netlist, view, linefile, name, connections), view->GetOutput());
}

Net* BuildConstant(Netlist* netlist, prim_type_enum type, unsigned long linefile) {
  return Build(netlist, Prim::Static(type), linefile, nullptr, {});
}

Net* BuildBinary(Netlist* netlist, prim_type_enum type, Net* a, Net* b, unsigned long linefile) {
  Prim* view = Prim::Static(type);
  return Build(netlist, view, linefile, nullptr, {{view->GetInput1(), a}, {view->GetInput2(), b}});
}

Net* BuildTransistor(Netlist* netlist, prim_type_enum type, Net* d, Net* control, unsigned long linefile) {
  Prim* view = Prim::Static(type);
  return Build(netlist, view, linefile, nullptr, {{view->GetInput(), d}, {view->GetControl(), control}});
}

} // namespace

Net* Netlist::Pwr(unsigned long linefile) { return BuildConstant(this, PRIM_PWR, linefile); }
Net* Netlist::Gnd(unsigned long linefile) { return BuildConstant(this, PRIM_GND, linefile); }
Net* Netlist::X(unsigned long linefile) { return BuildConstant(this, PRIM_X, linefile); }
Net* Netlist::Z(unsigned long linefile) { return BuildConstant(this, PRIM_Z, linefile); }
Net* Netlist::Pullup(unsigned long linefile) { return BuildConstant(this, PRIM_PULLUP, linefile); }
Net* Netlist::Pulldown(unsigned long linefile) { return BuildConstant(this, PRIM_PULLDOWN, linefile); }

Net* Netlist::Inv(Net* i, unsigned long linefile) {
  Prim* view = Prim::Static(PRIM_INV);
  return Build(this, view, linefile, nullptr, {{view->GetInput(), i}});
}

Net* Netlist::Buf(Net* i, unsigned long linefile, buffer_type_enum type, const char* name) {
  PrimBuf* view = PrimBuf::Static(type);
  return view ? Build(this, view, linefile, name, {{view->GetInput(), i}}) : nullptr;
}

Net* Netlist::UserNetBuf(Net* i, unsigned long linefile, const char* name) { return Buf(i, linefile, USER_NET, name); }

Net* Netlist::DirectionalBuf(Net* i, unsigned long linefile, const char* name) {
  return Buf(i, linefile, DIRECTIONAL, name);
}

Net* Netlist::ConstBuf(Net* i, unsigned long linefile, const char* name) {
  KESTRIN_ASSERT(!i || i->IsConstant());
  return Buf(i, linefile, CONSTANT, name);
}

Net* Netlist::ReverseBuf(Net* o, unsigned long linefile, buffer_type_enum type, const char* name) {
  PrimBuf* view = PrimBuf::Static(type);
  if (!view) return nullptr;
  return NewNetOn(MakeInstance(this, view, linefile, name, {{view->GetOutput(), o}}), view->GetInput());
}

Net* Netlist::ReverseUserNetBuf(Net* o, unsigned long linefile, const char* name) {
  return ReverseBuf(o, linefile, USER_NET, name);
}

Net* Netlist::ReverseTristate(Net* o, Net* enable, unsigned long linefile) {
  Prim* view = Prim::Static(PRIM_TRI);
  Instance* inst = MakeInstance(this, view, linefile, nullptr, {{view->GetControl(), enable}, {view->GetOutput(), o}});
  return NewNetOn(inst, view->GetInput());
}

Net* Netlist::And(Net* a, Net* b, unsigned long linefile) { return BuildBinary(this, PRIM_AND, a, b, linefile); }
Net* Netlist::Nand(Net* a, Net* b, unsigned long linefile) { return BuildBinary(this, PRIM_NAND, a, b, linefile); }
Net* Netlist::Or(Net* a, Net* b, unsigned long linefile) { return BuildBinary(this, PRIM_OR, a, b, linefile); }
Net* Netlist::Nor(Net* a, Net* b, unsigned long linefile) { return BuildBinary(this, PRIM_NOR, a, b, linefile); }
Net* Netlist::Xor(Net* a, Net* b, unsigned long linefile) { return BuildBinary(this, PRIM_XOR, a, b, linefile); }
Net* Netlist::Xnor(Net* a, Net* b, unsigned long linefile) { return BuildBinary(this, PRIM_XNOR, a, b, linefile); }

Net* Netlist::Mux(Net* in0, Net* in1, Net* control, unsigned long linefile) {
  Prim* view = Prim::Static(PRIM_MUX);
  return Build(this, view, linefile, nullptr,
               {{view->GetInput1(), in0}, {view->GetInput2(), in1}, {view->GetControl(), control}});
}

Net* Netlist::Tristate(Net* in, Net* enable, unsigned long linefile) {
  return BuildTransistor(this, PRIM_TRI, in, enable, linefile);
}

void Netlist::Tran(Net* a, Net* b, Net* control, unsigned long linefile) {
  Prim* view = Prim::Static(PRIM_TRAN);
  MakeInstance(this, view, linefile, nullptr,
               {{view->GetInput1(), a}, {view->GetInput2(), b}, {view->GetControl(), control}});
}

Net* Netlist::Cmos(Net* d, Net* ncontrol, Net* pcontrol, unsigned long linefile) {
  Prim* view = Prim::Static(PRIM_CMOS);
  return Build(this, view, linefile, nullptr,
               {{view->GetInput(), d}, {view->GetInput1(), ncontrol}, {view->GetInput2(), pcontrol}});
}

Net* Netlist::Pmos(Net* d, Net* control, unsigned long linefile) {
  return BuildTransistor(this, PRIM_PMOS, d, control, linefile);
}

Net* Netlist::Nmos(Net* d, Net* control, unsigned long linefile) {
  return BuildTransistor(this, PRIM_NMOS, d, control, linefile);
}

Net* Netlist::Fadd(Net* a, Net* b, Net* cin, Net** cout, unsigned long linefile) {
  Prim* view = Prim::Static(PRIM_FADD);
  Instance* inst = MakeInstance(this, view, linefile, nullptr,
                                {{view->GetCin(), cin}, {view->GetInput1(), a}, {view->GetInput2(), b}});
  if (cout) *cout = NewNetOn(inst, view->GetCout());
  return NewNetOn(inst, view->GetOutput());
}

Net* Netlist::Clock(Net* i, Net* enable, unsigned long linefile) {
  return BuildTransistor(this, PRIM_CLOCK, i, enable, linefile);
}

Instance* Netlist::PslAssertion(Net* condition, unsigned long linefile) {
  Prim* view = Prim::Static(PRIM_PSL_ASSERTION);
  return MakeInstance(this, view, linefile, nullptr, {{view->GetInput(), condition}});
}

Net* Netlist::InferPoint(Net* in, Net* hold, unsigned long linefile) {
  Prim* view = Prim::Static(PRIM_INFER_POINT);
  unsigned sequence = NumOfInsts();
  Instance* inst = MakeInstance(this, view, linefile, nullptr, {{view->GetInput1(), in}, {view->GetInput2(), hold}});
  inst->SetSequence(sequence);
  return NewNetOn(inst, view->GetOutput());
}

namespace {

/// A register or latch whose asynchronous part is a condition and a value.
Net* BuildStorage(Netlist* netlist, prim_type_enum type, Net* d, Net* clock, Net* async_val, Net* async_cond,
                  unsigned long linefile, const char* name) {
  Prim* view = Prim::Static(type);
  return Build(netlist, view, linefile, name,
               {{view->GetInput(), d},
                {view->GetClock(), clock},
                {view->GetAsyncVal(), async_val},
                {view->GetAsyncCond(), async_cond}});
}

} // namespace

Net* Netlist::Dff(Net* d, Net* clk, Net* async_val, Net* async_cond, unsigned long linefile, const char* name) {
  return BuildStorage(this, PRIM_DFF, d, clk, async_val, async_cond, linefile, name);
}

Net* Netlist::Dlatch(Net* d, Net* gate, Net* async_val, Net* async_cond, unsigned long linefile, const char* name) {
  return BuildStorage(this, PRIM_DLATCH, d, gate, async_val, async_cond, linefile, name);
}

Net* Netlist::Dffrs(Net* d, Net* clk, Net* set, Net* reset, unsigned long linefile, const char* name, Net* z,
                    Net* aload, Net* adata) {
  Prim* view = Prim::Static(PRIM_DFFRS);
  return Build(this, view, linefile, name,
               {{view->GetInput(), d},
                {view->GetClock(), clk},
                {view->GetSet(), set},
                {view->GetReset(), reset},
                {view->GetZ(), z},
                {view->GetALoad(), aload},
                {view->GetAData(), adata}});
}

Net* Netlist::Dlatchrs(Net* d, Net* gate, Net* set, Net* reset, unsigned long linefile, const char* name) {
  Prim* view = Prim::Static(PRIM_DLATCHRS);
  return Build(this, view, linefile, name,
               {{view->GetInput(), d}, {view->GetClock(), gate}, {view->GetSet(), set}, {view->GetReset(), reset}});
}

// Folding forms.

namespace {

bool IsDontCare(const Net* net) { return !net || net->IsX(); }

} // namespace

Net* Netlist::OptimizedInv(Net* a, unsigned long linefile) {
  if (!a) return X(linefile);
  if (a->IsGnd()) return Pwr(linefile);
  if (a->IsPwr()) return Gnd(linefile);
  return a->IsX() ? a : Inv(a, linefile);
}

Net* Netlist::OptimizedAnd(Net* a, Net* b, unsigned long linefile) {
  if (a && a->IsGnd()) return a;
  if (b && b->IsGnd()) return b;
  if (IsDontCare(a) || IsDontCare(b)) return Gnd(linefile);
  if (a->IsPwr()) return b;
  if (b->IsPwr() || a == b) return a;
  return And(a, b, linefile);
}

Net* Netlist::OptimizedOr(Net* a, Net* b, unsigned long linefile) {
  if (b && b->IsPwr()) return b;
  if (a && a->IsPwr()) return a;
  if (IsDontCare(a) || IsDontCare(b)) return Pwr(linefile);
  if (a->IsGnd()) return b;
  if (b->IsGnd() || a == b) return a;
  return Or(a, b, linefile);
}

// A null argument counts as an X, which is only built when it is the result.
Net* Netlist::OptimizedMux(Net* in0, Net* in1, Net* control, unsigned long linefile) {
  Net* result = nullptr;
  if (in0 == in1 || (control && control->IsGnd()))
    result = in0;
  else if (control && control->IsPwr())
    result = in1;
  else if (IsDontCare(in0))
    result = in1;
  else if (IsDontCare(in1))
    result = in0;
  else if (IsDontCare(control))
    result = in1;
  else
    return Mux(in0, in1, control, linefile);
  return result ? result : X(linefile);
}

// Folding of instances by their inputs.

namespace {

/// Whether an output may be merged with another net: nobody sees it.
bool IsHidden(const Net* output) { return !output->Linefile() && !output->HasAtts() && !output->IsWired(); }

bool MayFold(const Instance* inst) {
  const Net* output = inst->GetOutput();
  return inst->Owner() && output && IsHidden(output);
}

/// Puts a net in place of an instance with its output. Null, or a loop back to the output, changes nothing.
unsigned FoldInto(Instance* inst, Net* result) {
  Net* output = inst->GetOutput();
  if (!result || result == output || result->IsWired()) return 0;
  unsigned long linefile = result->Linefile();
  delete inst;
  result->PropagateInto(output, linefile);
  return 1;
}

/// The inverse of a net that stands for the inverse of an instance's result.
Net* Inverse(const Instance* inst, Net* net) {
  if (!net || net == inst->GetOutput()) return nullptr;
  return inst->Owner()->OptimizedInv(net, inst->Linefile());
}

/// What a gate gives when one input is a constant: that constant or the other input.
struct gate_rule {
  prim_type_enum controlling; // the constant that decides alone
  bool inverts;
};

unsigned PropagateGate(Instance* inst, gate_rule rule) {
  if (!MayFold(inst)) return 0;
  Net* a = inst->GetInput1();
  Net* b = inst->GetInput2();
  prim_type_enum type_a = a ? a->DriverType() : PRIM_NONE;
  prim_type_enum type_b = b ? b->DriverType() : PRIM_NONE;
  prim_type_enum neutral = rule.controlling == PRIM_PWR ? PRIM_GND : PRIM_PWR;
  Net* result = nullptr;
  if (a == b || type_a == rule.controlling || type_b == neutral)
    result = a;
  else if (type_b == rule.controlling || type_a == neutral)
    result = b;
  return FoldInto(inst, rule.inverts ? Inverse(inst, result) : result);
}

/// Exclusive or, or with `inverts` its inverse.
unsigned PropagateParity(Instance* inst, bool inverts) {
  if (!MayFold(inst)) return 0;
  Net* a = inst->GetInput1();
  Net* b = inst->GetInput2();
  if (!a || !b) return 0;
  if (a == b)
    return FoldInto(inst, inverts ? inst->Owner()->Pwr(inst->Linefile()) : inst->Owner()->Gnd(inst->Linefile()));
  for (auto [constant, other] : {std::pair(a, b), std::pair(b, a)}) {
    if (constant->IsGnd()) return FoldInto(inst, inverts ? Inverse(inst, other) : other);
    if (constant->IsPwr()) return FoldInto(inst, inverts ? other : Inverse(inst, other));
  }
  return 0;
}

} // namespace

unsigned PrimOr::Propagate(Instance* inst) { return PropagateGate(inst, {PRIM_PWR, false}); }
unsigned PrimNor::Propagate(Instance* inst) { return PropagateGate(inst, {PRIM_PWR, true}); }
unsigned PrimAnd::Propagate(Instance* inst) { return PropagateGate(inst, {PRIM_GND, false}); }
unsigned PrimNand::Propagate(Instance* inst) { return PropagateGate(inst, {PRIM_GND, true}); }
unsigned PrimXor::Propagate(Instance* inst) { return PropagateParity(inst, false); }
unsigned PrimXnor::Propagate(Instance* inst) { return PropagateParity(inst, true); }

unsigned PrimInv::Propagate(Instance* inst) {
  KESTRIN_ASSERT(inst->View() == this);
  Net* input = inst->GetInput();
  if (!MayFold(inst) || !input || !input->IsConstant()) return 0;
  // The inverse of a floating value is unknown.
  return FoldInto(inst, input->IsZ() ? inst->Owner()->X(inst->Linefile()) : Inverse(inst, input));
}

unsigned PrimMux::Propagate(Instance* inst) {
  if (!MayFold(inst)) return 0;
  Net* in0 = inst->GetInput1();
  Net* in1 = inst->GetInput2();
  Net* control = inst->GetControl();
  if (control && control->IsPwr()) return FoldInto(inst, in1);
  if ((control && control->IsGnd()) || in0 == in1) return FoldInto(inst, in0);
  if (!control || !in0 || !in1) return 0;
  Net* inverted = control->InvNet();
  if (in0->IsGnd() && in1->IsPwr()) return FoldInto(inst, control);
  if (in0->IsPwr() && in1->IsGnd()) return FoldInto(inst, inverted ? inverted : Inverse(inst, control));
  if (!inverted || inverted == control || control->NumOfFanouts() != 1) return 0;
  inst->Reconnect(GetControl(), inverted);
  inst->Reconnect(GetInput1(), in1);
  inst->Reconnect(GetInput2(), in0);
  return 1;
}

// With one constant input the sum is the parity of the other two, and the carry their and or their or.
unsigned PrimFadd::Propagate(Instance* inst) {
  Net* sum = inst->GetOutput();
  Net* carry = inst->GetCout();
  if (!inst->Owner() || sum == carry || (sum && !IsHidden(sum)) || (carry && !IsHidden(carry))) return 0;
  Net* inputs[] = {inst->GetCin(), inst->GetInput1(), inst->GetInput2()};
  for (Net* input : inputs)
    if (!input || input == sum || input == carry || input->IsWired()) return 0;
  for (unsigned i = 0; i < 3; i++) {
    bool gnd = inputs[i]->IsGnd();
    if (!gnd && !inputs[i]->IsPwr()) continue;
    Net* a = inputs[(i + 1) % 3];
    Net* b = inputs[(i + 2) % 3];
    Netlist* netlist = inst->Owner();
    unsigned long linefile = inst->Linefile();
    delete inst;
    if (sum) (gnd ? netlist->Xor(a, b, linefile) : netlist->Xnor(a, b, linefile))->PropagateInto(sum, linefile);
    if (carry) (gnd ? netlist->And(a, b, linefile) : netlist->Or(a, b, linefile))->PropagateInto(carry, linefile);
    return 1;
  }
  return 0;
}

// An asynchronous load that never happens needs no port; that is no reason for another sweep.
unsigned PrimDffrs::Propagate(Instance* inst) {
  Net* aload = inst->GetALoad();
  if (aload && aload->IsGnd()) {
    inst->Disconnect(GetALoad());
    inst->Disconnect(GetAData());
  }
  return 0;
}

// Common subexpressions.

namespace {

/// Whether the outputs of two instances of one view may become one: each is the only driver, and no name is lost that
/// has to stay.
bool MayMergeOutputs(const Instance* first, const Instance* second) {
  bool has_output = false;
  for (Port* port : PortsOf(first->View())) {
    if (port->IsInput()) continue;
    if (port->IsInout()) return false;
    Net* kept = first->GetNet(port);
    Net* merged = second->GetNet(port);
    has_output |= merged != nullptr;
    if (!kept || !merged) continue;
    if (kept->HasMultipleDrivers() || merged->HasMultipleDrivers() || !kept->IsCompatible(merged, 0)) return false;
  }
  return has_output;
}

unsigned MergeInto(Instance* first, Instance* second) {
  if (!MayMergeOutputs(first, second)) return 0;
  for (Port* port : PortsOf(first->View())) {
    Net* merged = port->IsInput() ? nullptr : second->GetNet(port);
    if (!merged) continue;
    second->Disconnect(port);
    if (Net* kept = first->GetNet(port)) {
      kept->Wire(merged);
      kept->ResolveWires();
    } else {
      first->Connect(port, merged);
    }
  }
  delete second;
  return 1;
}

bool HaveSameInputs(const Instance* first, const Instance* second) {
  for (Port* port : PortsOf(first->View()))
    if (port->IsInput() && first->GetNet(port) != second->GetNet(port)) return false;
  return true;
}

/// A register that the user wants to stay by itself.
bool StandsAlone(const Instance* reg) {
  return reg->IsAttOn(ATT_DONT_MERGE) || reg->IsAttOn(ATT_PRESERVE) || reg->IsAttOn(ATT_NOPRUNE) || reg->GetFsm();
}

bool AreEqualRegisters(Instance* first, Instance* second) {
  if (first->GetInput() != second->GetInput() || StandsAlone(first) || StandsAlone(second)) return false;
  if (!Strings::compare(first->GetAttValue(ATT_INITIAL_VALUE), second->GetAttValue(ATT_INITIAL_VALUE))) return false;
  Set visited(HASH_POINTER);
  return kestrin_compatible_secondaries(first, second, &visited);
}

} // namespace

unsigned Prim::MergeCommonSubexpression(Instance* first, Instance* second) {
  if (first == second || first->View() != this || second->View() != this) return 0;
  bool equal = kestrin_is_register_type(_type) ? AreEqualRegisters(first, second) : HaveSameInputs(first, second);
  return equal ? MergeInto(first, second) : 0;
}

unsigned PrimBinary::MergeCommonSubexpression(Instance* first, Instance* second) {
  if (first == second || first->View() != this || second->View() != this) return 0;
  bool swapped = first->GetInput1() == second->GetInput2() && first->GetInput2() == second->GetInput1();
  return swapped || HaveSameInputs(first, second) ? MergeInto(first, second) : 0;
}

unsigned PrimInv::MergeCommonSubexpression(Instance* first, Instance* second) {
  if (first == second || first->View() != this || second->View() != this) return 0;
  return first->GetInput() == second->GetInput() ? MergeInto(first, second) : 0;
}
