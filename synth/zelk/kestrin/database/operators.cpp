#include "database/operators.h"

#include <string>

#include "containers/views.h"
#include "database/cell.h"
#include "database/instance.h"
#include "database/library.h"
#include "database/net.h"
#include "database/views.h"
#include "util/services.h"

namespace {
/// Names of the operators as they stand in the names of their instances, in the order of their types.
constexpr const char* operator_names[] = {
    "Add",     "Mult",   "Div",     "Mod",        "ShiftLeft",   "ShiftRight", "RotateLeft", "RotateRight",
    "WideAnd", "WideOr", "WideXor", "WideNand",   "WideNor",     "WideXnor",   "LessThan",   "Equal",
    "Mux",     "Select", "Decoder", "PrioSelect", "DualPortRam", "Lut"};
static_assert(sizeof(operator_names) / sizeof(*operator_names) == PRIM_ANY - OPER_ADDER);

Port* bit_at(const Array& ports, unsigned bit) { return bit < ports.Size() ? FromWord<Port*>(ports.At(bit)) : nullptr; }
} // namespace

const char* Operator::OperatorName() const { return operator_names[_type - OPER_ADDER]; }

Port* Operator::GetInputBit(unsigned bit) const { return _input2.Size() ? nullptr : bit_at(_input1, bit); }
Port* Operator::GetInput1Bit(unsigned bit) const { return bit_at(_input1, bit); }
Port* Operator::GetInput2Bit(unsigned bit) const { return bit_at(_input2, bit); }
Port* Operator::GetOutputBit(unsigned bit) const { return bit_at(_output, bit); }
Port* Operator::GetOutput() const { return _output.Size() == 1 ? bit_at(_output, 0) : nullptr; }

PortBus* Operator::AddArrayPort(const char* name, unsigned size, port_dir direction, Array* bits) {
  auto* bus = new PortBus(name, direction, static_cast<int>(size) - 1, 0);
  Netlist::Add(bus);
  if (bits) bits->ReSize(size, nullptr);
  for (unsigned bit = size; bit-- > 0;) {
    auto* port = new Port((std::string(name) + "[" + std::to_string(bit) + "]").c_str(), direction);
    Netlist::Add(port);
    bus->Add(port);
    if (bits) bits->Insert(bit, port);
  }
  return bus;
}

Port* Operator::AddScalarPort(const char* name, port_dir direction) {
  auto* port = new Port(name, direction);
  Netlist::Add(port);
  return port;
}

OperAdder::OperAdder(unsigned left_size, unsigned right_size) : Operator(OPER_ADDER) {
  _cin = AddScalarPort("cin", DIR_INPUT);
  AddArrayPort("a", left_size, DIR_INPUT, &_input1);
  AddArrayPort("b", right_size, DIR_INPUT, &_input2);
  AddArrayPort("o", left_size > right_size ? left_size : right_size, DIR_OUTPUT, &_output);
  _cout = AddScalarPort("cout", DIR_OUTPUT);
}

OperSized::OperSized(prim_type_enum type, unsigned left_size, unsigned right_size, unsigned output_size,
                     unsigned is_signed)
    : Operator(type, is_signed) {
  AddArrayPort("a", left_size, DIR_INPUT, &_input1);
  AddArrayPort("b", right_size, DIR_INPUT, &_input2);
  AddArrayPort("o", output_size, DIR_OUTPUT, &_output);
}

OperMult::OperMult(unsigned left_size, unsigned right_size, unsigned output_size, unsigned is_signed)
    : OperSized(OPER_MULTIPLIER, left_size, right_size, output_size, is_signed) {}
OperDiv::OperDiv(unsigned left_size, unsigned right_size, unsigned output_size, unsigned is_signed)
    : OperSized(OPER_DIVIDER, left_size, right_size, output_size, is_signed) {}
OperMod::OperMod(unsigned left_size, unsigned right_size, unsigned output_size, unsigned is_signed)
    : OperSized(OPER_MODULO, left_size, right_size, output_size, is_signed) {}

OperShift::OperShift(prim_type_enum type, unsigned input_size, unsigned amount_size) : Operator(type) {
  _cin = AddScalarPort("cin", DIR_INPUT);
  AddArrayPort("a", input_size, DIR_INPUT, &_input1);
  AddArrayPort("amount", amount_size, DIR_INPUT, &_input2);
  AddArrayPort("o", input_size, DIR_OUTPUT, &_output);
}

OperRotate::OperRotate(prim_type_enum type, unsigned input_size, unsigned amount_size) : Operator(type) {
  AddArrayPort("a", input_size, DIR_INPUT, &_input1);
  AddArrayPort("amount", amount_size, DIR_INPUT, &_input2);
  AddArrayPort("o", input_size, DIR_OUTPUT, &_output);
}

// Outputs of one bit are scalar ports, though they count as an array of one bit.
OperReduce::OperReduce(prim_type_enum type, unsigned input_size) : Operator(type) {
  AddArrayPort("a", input_size, DIR_INPUT, &_input1);
  _output.Insert(AddScalarPort("o", DIR_OUTPUT));
}

OperLessThan::OperLessThan(unsigned left_size, unsigned right_size) : Operator(OPER_LESSTHAN) {
  KESTRIN_ASSERT_TEXT(left_size == right_size, "_lsize == _rsize");
  _cin = AddScalarPort("cin", DIR_INPUT);
  AddArrayPort("a", left_size, DIR_INPUT, &_input1);
  AddArrayPort("b", right_size, DIR_INPUT, &_input2);
  _output.Insert(AddScalarPort("o", DIR_OUTPUT));
}

OperEqual::OperEqual(unsigned left_size, unsigned right_size) : Operator(OPER_EQUAL) {
  KESTRIN_ASSERT_TEXT(left_size == right_size, "_lsize == _rsize");
  AddArrayPort("a", left_size, DIR_INPUT, &_input1);
  AddArrayPort("b", right_size, DIR_INPUT, &_input2);
  _output.Insert(AddScalarPort("o", DIR_OUTPUT));
}

OperNto1Mux::OperNto1Mux(unsigned select_size, unsigned data_size) : Operator(OPER_NTO1MUX) {
  AddArrayPort("sel", select_size, DIR_INPUT, &_input1);
  AddArrayPort("data", data_size, DIR_INPUT, &_input2);
  _output.Insert(AddScalarPort("o", DIR_OUTPUT));
}

OperSelector::OperSelector(unsigned size) : Operator(OPER_SELECTOR) {
  AddArrayPort("sel", size, DIR_INPUT, &_input1);
  AddArrayPort("data", size, DIR_INPUT, &_input2);
  _output.Insert(AddScalarPort("o", DIR_OUTPUT));
}

OperDecoder::OperDecoder(unsigned select_size) : Operator(OPER_DECODER) {
  AddArrayPort("a", select_size, DIR_INPUT, &_input1);
  AddArrayPort("o", 1U << select_size, DIR_OUTPUT, &_output);
}

OperPrioSelector::OperPrioSelector(unsigned size) : Operator(OPER_PRIO_SELECTOR) {
  _cin = AddScalarPort("cin", DIR_INPUT);
  AddArrayPort("sel", size, DIR_INPUT, &_input1);
  AddArrayPort("data", size, DIR_INPUT, &_input2);
  _output.Insert(AddScalarPort("o", DIR_OUTPUT));
}

OperLut::OperLut(unsigned input_size) : Operator(OPER_LUT) {
  AddArrayPort("a", input_size, DIR_INPUT, &_input1);
  _output.Insert(AddScalarPort("o", DIR_OUTPUT));
}

Operator* Operator::New(prim_type_enum type, unsigned left, unsigned right, unsigned is_signed) {
  switch (type) {
  case OPER_ADDER: return new OperAdder(left, right);
  case OPER_MULTIPLIER: return new OperMult(left, right, left + right, is_signed);
  case OPER_DIVIDER: return new OperDiv(left, right, left, is_signed);
  case OPER_MODULO: return new OperMod(left, right, right, is_signed);
  case OPER_SHIFT_LEFT: return new OperShiftLeft(left, right);
  case OPER_SHIFT_RIGHT: return new OperShiftRight(left, right);
  case OPER_ROTATE_LEFT: return new OperRotateLeft(left, right);
  case OPER_ROTATE_RIGHT: return new OperRotateRight(left, right);
  case OPER_REDUCE_AND: return new OperReduceAnd(left);
  case OPER_REDUCE_OR: return new OperReduceOr(left);
  case OPER_REDUCE_XOR: return new OperReduceXor(left);
  case OPER_REDUCE_NAND: return new OperReduceNand(left);
  case OPER_REDUCE_NOR: return new OperReduceNor(left);
  case OPER_REDUCE_XNOR: return new OperReduceXnor(left);
  case OPER_LESSTHAN: return new OperLessThan(left, right);
  case OPER_EQUAL: return new OperEqual(left, right);
  case OPER_NTO1MUX: return new OperNto1Mux(left, right);
  case OPER_SELECTOR: return new OperSelector(left);
  case OPER_DECODER: return new OperDecoder(left);
  case OPER_PRIO_SELECTOR: return new OperPrioSelector(left);
  case OPER_DUAL_PORT_RAM: return new OperDualPortRam({}, {}, {}, {});
  case OPER_LUT: return new OperLut(left);
  default: return nullptr;
  }
}

Operator* Operator::NewOfSameKind() const {
  if (_type != OPER_DUAL_PORT_RAM) return New(_type, Input1Size(), Input2Size(), _is_signed);
  const auto* ram = static_cast<const OperDualPortRam*>(this);
  return new OperDualPortRam(ram->ReadPortInfo(0), ram->ReadPortInfo(1), ram->WritePortInfo(0), ram->WritePortInfo(1));
}

// Construction.

namespace {
using ViewName = std::string;

ViewName sized_name(const char* name, unsigned size) { return std::string(" ") + name + "_" + std::to_string(size); }
/// " Name_4u_8u", with s in place of u when signed.
ViewName sized_name(const char* name, unsigned left, unsigned right, unsigned is_signed) {
  const char* suffix = is_signed ? "s" : "u";
  return std::string(" ") + name + "_" + std::to_string(left) + suffix + "_" + std::to_string(right) + suffix;
}
ViewName sized_name(const char* name, const Array* a, const Array* b, unsigned is_signed = 0) {
  return sized_name(name, a->Size(), b->Size(), is_signed);
}
ViewName lut_name(unsigned size) { return " Lut" + std::to_string(size); }

/// The one view of this name in the library of operators; `make` is asked for it when it is new.
template <class Make> Netlist* find_view(const ViewName& name, Make make) {
  Library* library = Library::Operators();
  Cell* cell = library->GetCell(name.c_str(), 1);
  if (!cell) {
    cell = new Cell(name.c_str());
    library->Add(cell);
  }
  Netlist* view = cell->GetNetlist("INTERFACE");
  if (!view) view = cell->GetFirstNetlist();
  if (!view) {
    view = make();
    cell->Add(view);
  }
  return view;
}

/// Places an instance of the view and notes it in the operator set, from which resource sharing learns of it.
Instance* place(Netlist* netlist, Netlist* view, Instance* inst) {
  netlist->Add(inst);
  if (Map* operators = netlist->CurrentOperatorSet())
    operators->Insert(view, inst, 0 /*force_overwrite*/, 1 /*force_insert*/);
  return inst;
}

std::string instance_name(Netlist* netlist, const Netlist* view) {
  return std::string(" ") + view->OperatorName() + "_" + std::to_string(netlist->NextInstanceIndex());
}

template <class Make> Instance* place(Netlist* netlist, const ViewName& name, unsigned long linefile, Make make) {
  Netlist* view = find_view(name, make);
  return place(netlist, view, new Instance(instance_name(netlist, view).c_str(), view, linefile));
}

/// The net that an output of one bit goes to: the caller's, or a new one that the caller gets.
Net* output_net(Netlist* netlist, Net** o) {
  if (!*o) {
    *o = new Net;
    netlist->Add(*o);
  }
  return *o;
}

void connect_output(Netlist* netlist, Instance* inst, Net** o) {
  inst->Connect(inst->View()->GetOutputBit(0), output_net(netlist, o));
}

/// Multiplier, divider and modulo.
template <class Oper>
void build_sized(Netlist* netlist, const char* name, unsigned is_signed, const Array* a, const Array* b, const Array* o,
                 unsigned output_size, unsigned long linefile) {
  KESTRIN_ASSERT(a && b && a->Size() && b->Size());
  Instance* inst = place(netlist, sized_name(name, a, b, is_signed), linefile,
                         [&] { return new Oper(a->Size(), b->Size(), output_size, is_signed); });
  inst->ConnectInput1(a);
  inst->ConnectInput2(b);
  if (o) inst->ConnectOutput(o);
}

/// Shifts and rotates; only shifts have a carry in.
template <class Oper>
void build_shift(Netlist* netlist, const char* name, Net* cin, const Array* a, const Array* amount, const Array* o,
                 unsigned long linefile) {
  Instance* inst =
      place(netlist, sized_name(name, a, amount), linefile, [&] { return new Oper(a->Size(), amount->Size()); });
  if (cin) inst->ConnectCin(cin);
  inst->ConnectInput1(a);
  inst->ConnectInput2(amount);
  if (o) inst->ConnectOutput(o);
}

template <class Oper>
void build_reduction(Netlist* netlist, const char* name, const Array* a, Net** o, unsigned long linefile) {
  KESTRIN_ASSERT(a && a->Size() && o);
  Instance* inst = place(netlist, sized_name(name, a->Size()), linefile, [&] { return new Oper(a->Size()); });
  inst->ConnectInput1(a);
  connect_output(netlist, inst, o);
}

/// What selects a data bit.
template <class Make>
Instance* build_selection(Netlist* netlist, const ViewName& name, const Array* sel, const Array* data, Net** o,
                          unsigned long linefile, Make make) {
  KESTRIN_ASSERT(sel && data && o);
  Instance* inst = place(netlist, name, linefile, make);
  inst->ConnectInput1(sel);
  inst->ConnectInput2(data);
  connect_output(netlist, inst, o);
  return inst;
}
} // namespace

void Netlist::Adder(Net* cin, const Array* a, const Array* b, const Array* o, Net** cout, unsigned long linefile) {
  KESTRIN_ASSERT(a && b && a->Size() && b->Size());
  Instance* inst = place(this, sized_name("Add", a, b), linefile, [&] { return new OperAdder(a->Size(), b->Size()); });
  if (cin) inst->ConnectCin(cin);
  inst->ConnectInput1(a);
  inst->ConnectInput2(b);
  if (o) inst->ConnectOutput(o);
  if (cout) inst->ConnectCout(output_net(this, cout));
}

void Netlist::Multiplier(unsigned is_signed, const Array* a, const Array* b, const Array* o, unsigned long linefile) {
  KESTRIN_ASSERT(a && b);
  build_sized<OperMult>(this, "Mult", is_signed, a, b, o, a->Size() + b->Size(), linefile);
}

void Netlist::Divider(unsigned is_signed, const Array* a, const Array* b, const Array* o, unsigned long linefile) {
  KESTRIN_ASSERT(a && b);
  build_sized<OperDiv>(this, "Div", is_signed, a, b, o, a->Size(), linefile);
}

void Netlist::Modulo(unsigned is_signed, const Array* a, const Array* b, const Array* o, unsigned long linefile) {
  KESTRIN_ASSERT(a && b);
  build_sized<OperMod>(this, "Mod", is_signed, a, b, o, b->Size(), linefile);
}

void Netlist::ShiftLeft(Net* carry_in, const Array* left, const Array* right, const Array* o, unsigned long linefile) {
  KESTRIN_ASSERT(carry_in && left && right);
  build_shift<OperShiftLeft>(this, "ShiftLeft", carry_in, left, right, o, linefile);
}

void Netlist::ShiftRight(Net* carry_in, const Array* left, const Array* right, const Array* o, unsigned long linefile) {
  KESTRIN_ASSERT(carry_in && left && right);
  build_shift<OperShiftRight>(this, "ShiftRight", carry_in, left, right, o, linefile);
}

void Netlist::RotateLeft(const Array* left, const Array* right, const Array* o, unsigned long linefile) {
  KESTRIN_ASSERT(left && right);
  build_shift<OperRotateLeft>(this, "RotateLeft", nullptr, left, right, o, linefile);
}

void Netlist::RotateRight(const Array* left, const Array* right, const Array* o, unsigned long linefile) {
  KESTRIN_ASSERT(left && right);
  build_shift<OperRotateRight>(this, "RotateRight", nullptr, left, right, o, linefile);
}

void Netlist::ReduceAnd(const Array* a, Net** o, unsigned long linefile) {
  build_reduction<OperReduceAnd>(this, "WideAnd", a, o, linefile);
}

void Netlist::ReduceNand(const Array* a, Net** o, unsigned long linefile) {
  build_reduction<OperReduceNand>(this, "WideNand", a, o, linefile);
}

void Netlist::ReduceOr(const Array* a, Net** o, unsigned long linefile) {
  build_reduction<OperReduceOr>(this, "WideOr", a, o, linefile);
}

void Netlist::ReduceNor(const Array* a, Net** o, unsigned long linefile) {
  build_reduction<OperReduceNor>(this, "WideNor", a, o, linefile);
}

void Netlist::ReduceXor(const Array* a, Net** o, unsigned long linefile) {
  build_reduction<OperReduceXor>(this, "WideXor", a, o, linefile);
}

void Netlist::ReduceXnor(const Array* a, Net** o, unsigned long linefile) {
  build_reduction<OperReduceXnor>(this, "WideXnor", a, o, linefile);
}

void Netlist::Equal(const Array* a, const Array* b, Net** o, unsigned long linefile) {
  KESTRIN_ASSERT(a && b);
  build_selection(this, sized_name("Equal", a, b), a, b, o, linefile,
                  [&] { return new OperEqual(a->Size(), b->Size()); });
}

void Netlist::LessThan(Net* carry_in, const Array* left, const Array* right, Net** o, unsigned long linefile) {
  KESTRIN_ASSERT(left && right && carry_in);
  Instance* inst = build_selection(this, sized_name("LessThan", left, right), left, right, o, linefile,
                                   [&] { return new OperLessThan(left->Size(), right->Size()); });
  inst->ConnectCin(carry_in);
}

void Netlist::Nto1Mux(const Array* sel, const Array* data, Net** o, unsigned long linefile) {
  KESTRIN_ASSERT(sel && data);
  build_selection(this, sized_name("Mux", sel, data), sel, data, o, linefile,
                  [&] { return new OperNto1Mux(sel->Size(), data->Size()); });
}

void Netlist::Selector(const Array* sel, const Array* data, Net** o, unsigned long linefile) {
  KESTRIN_ASSERT(sel && data && sel->Size() == data->Size());
  build_selection(this, sized_name("Select", sel->Size()), sel, data, o, linefile,
                  [&] { return new OperSelector(sel->Size()); });
}

void Netlist::PrioSelector(Net* default_value, const Array* sel, const Array* data, Net** o, unsigned long linefile) {
  KESTRIN_ASSERT(sel && data && sel->Size() == data->Size());
  Instance* inst = build_selection(this, sized_name("PrioSelect", sel->Size()), sel, data, o, linefile,
                                   [&] { return new OperPrioSelector(sel->Size()); });
  if (default_value) inst->ConnectCin(default_value);
}

void Netlist::Decoder(const Array* in, const Array* out, unsigned long linefile) {
  KESTRIN_ASSERT(in && out && in->Size() < 31);
  Instance* inst =
      place(this, sized_name("Decoder", in->Size()), linefile, [&] { return new OperDecoder(in->Size()); });
  inst->ConnectInput1(in);
  inst->ConnectOutput(out);
}

void Netlist::Lut(const Array* in, Net** o, unsigned function, unsigned long linefile) {
  KESTRIN_ASSERT(in && o);
  Netlist* view = find_view(lut_name(in->Size()), [&] { return new OperLut(in->Size()); });
  Instance* inst = place(this, view, new LutInstance(instance_name(this, view).c_str(), view, function, linefile));
  inst->ConnectInput1(in);
  connect_output(this, inst, o);
}

std::string Operator::CellName() const {
  switch (Type()) {
  case OPER_LUT: return lut_name(Input1Size());
  case OPER_SELECTOR:
  case OPER_PRIO_SELECTOR: return sized_name(OperatorName(), Input1Size());
  default: break;
  }
  return Input2Size() ? sized_name(OperatorName(), Input1Size(), Input2Size(), IsSigned())
                      : sized_name(OperatorName(), Input1Size());
}

// Equality of instances.

unsigned Operator::Identical(Instance* a, Instance* b) {
  if (a->View() != b->View()) return 0;
  for (Port* port : PortsOf(a->View()))
    if (port->IsInput() && a->GetNet(port) != b->GetNet(port)) return 0;
  return a->LutFunction() == b->LutFunction();
}

unsigned Operator::Isomorphic(Instance* a, Instance* b) {
  if (a->View() != b->View() || a->GetCin() != b->GetCin()) return 0;
  unsigned size = a->Input1Size();
  if (size != a->Input2Size()) return 0;
  for (unsigned bit = 0; bit < size; bit++)
    if (a->GetInput1Bit(bit) != b->GetInput2Bit(bit) || a->GetInput2Bit(bit) != b->GetInput1Bit(bit)) return 0;
  kestrin_debug("Can exploit commutativity to merge %s with %s", a->Name(), b->Name());
  return 1;
}

void Operator::MergeOutputs(Instance* first, Instance* second) {
  for (Port* port : PortsOf(first->View())) {
    if (!port->IsOutput()) continue;
    Net* moved = second->GetNet(port);
    if (!moved) continue;
    second->Disconnect(port);
    Net* kept = first->GetNet(port);
    if (!kept) {
      first->Connect(port, moved);
      continue;
    }
    if (kept == moved) continue;
    kept->Wire(moved);
    kept->ResolveWires();
  }
  delete second;
}

unsigned Operator::MergeCommonSubexpression(Instance* first, Instance* second) {
  if (!Identical(first, second) && !(IsCommutative() && Isomorphic(first, second))) return 0;
  MergeOutputs(first, second);
  return 1;
}
