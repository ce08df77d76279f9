// Operator and its classes: views of word-level logic, one per kind and size, in the library "Operators". Instances of
// all designs refer to them; they are built by the construction functions of Netlist and never by hand.
//
// Bit order: a port array "a" of n bits is a PortBus with the left index n-1 and bits "a[n-1]" (first port) down to
// "a[0]". Everything that takes or gives bits by number (GetInput1Bit, the arrays of Netlist's functions and of
// Instance::ConnectInput1) counts from bit 0, the least significant one.
//
// Roles of the arrays:
//   adder                     cin, input1 = a, input2 = b, output, cout
//   multiplier ... modulo     input1 = a, input2 = b, output
//   shifts                    cin = what is shifted in, input1 = a, input2 = amount, output
//   rotates                   input1 = a, input2 = amount, output
//   reductions, decoder, LUT  input = input1 = a, output
//   less-than, equal          (cin,) input1 = a, input2 = b, output of one bit
//   multiplexer, selectors    (cin = default,) input1 = sel, input2 = data, output of one bit
#ifndef KESTRIN_DATABASE_OPERATORS_H
#define KESTRIN_DATABASE_OPERATORS_H

#include "containers/array.h"
#include "database/netlist.h"
#include "database/ram.h"

class Operator : public Netlist {
public:
  void Save(SaveRestore& stream) const override;
  /// A view of its own, which the caller deletes. Sizes that the type does not have are 0; a memory gets no ports.
  static Operator* New(prim_type_enum type, unsigned left, unsigned right, unsigned is_signed);
  Operator* NewOfSameKind() const;
  /// An operator of this type by its sizes; null, with a bad stream, for sizes that none has.
  static Operator* Restore(SaveRestore& stream, prim_type_enum type);
  /// The name of the cell that holds the operators of this type and these sizes.
  virtual std::string CellName() const;
  unsigned SupportsAttribute(const Att* att) const override;
  prim_type_enum Type() const override { return _type; }
  const char* OperatorName() const override;
  unsigned IsOperator() const override { return 1; }
  unsigned IsCombinational() const override { return 1; }
  unsigned IsSigned() const override { return _is_signed; }
  /// The one input array of an operator that has one; null for others.
  Port* GetInputBit(unsigned bit) const override;
  /// Null past the size, as all of these.
  Port* GetInput1Bit(unsigned bit) const override;
  Port* GetInput2Bit(unsigned bit) const override;
  Port* GetOutputBit(unsigned bit) const override;
  unsigned InputSize() const override { return _input2.Size() ? 0 : _input1.Size(); }
  unsigned Input1Size() const override { return _input1.Size(); }
  unsigned Input2Size() const override { return _input2.Size(); }
  unsigned OutputSize() const override { return _output.Size(); }
  /// The output of an operator that has one bit of it; null for others.
  Port* GetOutput() const override;
  Port* GetCin() const override { return _cin; }
  Port* GetCout() const override { return _cout; }
  /// Merges instances with the same inputs (Identical), with IsCommutative also with exchanged ones (Isomorphic).
  unsigned MergeCommonSubexpression(Instance* first, Instance* second) override;

  // In slot order.
  /// Two adders that are an adder and a subtractor of the same operands.
  virtual unsigned AreAddSubPair(Instance* a, Instance* b) const;
  virtual unsigned IsCommutative() const { return 0; }
  /// What one instance costs, in bits of an adder or 2:1 multiplexers of one bit.
  virtual unsigned Area() const { return 0; }
  /// What merging the instances would cost: negative and 0 pay. Operators that are never merged cost too much.
  virtual int MergeCost(const Array* instances);
  /// Makes one operator of these instances, whose inputs are steered by their control nets. The first is kept.
  virtual void Merge(const Array* instances);
  /// Improves the logic around an instance of this view; 1 when something changed (the instance may be deleted then).
  virtual unsigned Optimize(Instance*) { return 0; }

  // Costs of merging.
  /// The multiplexers that steer the inputs. A 1 in the mask's bit of an instance exchanges its operands.
  unsigned MuxCost(const Array* instances, unsigned long swap_mask) const;
  /// Stores the mask with which it counted.
  unsigned MuxCost(const Array* instances, unsigned long* swap_mask) const;
  /// The multiplexers and selectors behind the instances that would go.
  unsigned SelectorBenefit(const Array* instances) const;

  // Equality of instances of one view.
  static unsigned Identical(Instance* a, Instance* b);
  static unsigned Isomorphic(Instance* a, Instance* b);
  /// Wires the outputs of the second to those of the first, and deletes the second.
  static void MergeOutputs(Instance* first, Instance* second);

  // Trees and sums of products.
  /// Reverses the array.
  static void SwapBits(Net** nets, unsigned n);
  /// Follows a net through gates of the type that feed nothing else, and appends the leaves in order.
  static void CollectTreeInputs(Net* net, prim_type_enum type, Array& out);
  /// The nets that stand in every product of these terms. The caller deletes the set.
  static Set* FindCommonPtermInputs(const Array* terms);
  /// The sum of the products, each without the nets to leave out. Logic goes to the netlist.
  static Net* BuildSOP(Netlist* netlist, const Array* terms, const Set* leave_out, unsigned long linefile);

  // Gate expansions in a netlist: nets of bit 0 first, no locations.
  static Net* BuildBinaryTree(Netlist* netlist, Net** nets, unsigned n, prim_type_enum type);
  static Net* BuildMuxTree(Netlist* netlist, Net** sel, unsigned n, Net** data);
  /// The last carry.
  static Net* BuildRippleAdder(Netlist* netlist, Net** a, Net** b, Net** o, unsigned n, Net* carry);
  /// Overwrites `a`.
  static Net* BuildEqual(Netlist* netlist, Net** a, Net** b, unsigned n);
  /// a < b, or a <= b with a carry of 1. Overwrites the top bit of `b` when signed.
  static Net* BuildSmallerThan(Netlist* netlist, Net** a, Net** b, unsigned n, unsigned is_signed, Net* carry);
  static Net* BuildSelector(Netlist* netlist, Net** sel, Net** data, unsigned n);
  static Net* BuildPrioSelector(Netlist* netlist, Net* default_value, Net** sel, Net** data, unsigned n);
  /// In place.
  static void BuildShiftRight(Netlist* netlist, Net** bits, unsigned n, Net** amount, unsigned m, Net* fill);
  static void BuildRotateRight(Netlist* netlist, Net** bits, unsigned n, Net** amount, unsigned m);
  /// 2 to the power n outputs.
  static void BuildDecoder(Netlist* netlist, Net** in, unsigned n, Net** out);
  static void Extend(Net** nets, Net* fill, unsigned from, unsigned to);
  static void BuildMultiplier(Netlist* netlist, Net** a, unsigned n, Net** b, unsigned m, Net** o, unsigned size,
                              unsigned is_signed, Net* zero);

protected:
  Operator(prim_type_enum type, unsigned is_signed = 0) : Netlist("INTERFACE"), _type(type), _is_signed(is_signed) {}

  /// Creates the bits from the highest index down and their bus; the ports come back in `bits`, when given, bit 0
  /// first.
  PortBus* AddArrayPort(const char* name, unsigned size, port_dir direction, Array* bits);
  Port* AddScalarPort(const char* name, port_dir direction);

  Array _input1; // Port*, bit 0 first
  Array _input2;
  Array _output;
  Port* _cin = nullptr;
  Port* _cout = nullptr;

private:
  prim_type_enum _type;
  unsigned _is_signed;
};

/// The output has the size of the larger operand.
class OperAdder : public Operator {
public:
  OperAdder(unsigned left_size, unsigned right_size);
  unsigned AreAddSubPair(Instance* a, Instance* b) const override;
  unsigned IsCommutative() const override { return Input1Size() == Input2Size(); }
  unsigned Area() const override { return OutputSize(); }
  int MergeCost(const Array* instances) override;
};

/// Multiplier, divider and modulo: operands and output of any sizes.
class OperSized : public Operator {
protected:
  OperSized(prim_type_enum type, unsigned left_size, unsigned right_size, unsigned output_size, unsigned is_signed);
};

class OperMult : public OperSized {
public:
  OperMult(unsigned left_size, unsigned right_size, unsigned output_size, unsigned is_signed);
  unsigned SupportsAttribute(const Att* att) const override;
  unsigned IsCommutative() const override { return Input1Size() == Input2Size(); }
  unsigned Area() const override { return OutputSize(); }
  int MergeCost(const Array* instances) override;
};

class OperDiv : public OperSized {
public:
  OperDiv(unsigned left_size, unsigned right_size, unsigned output_size, unsigned is_signed);
};

class OperMod : public OperSized {
public:
  OperMod(unsigned left_size, unsigned right_size, unsigned output_size, unsigned is_signed);
};

class OperShift : public Operator {
protected:
  OperShift(prim_type_enum type, unsigned input_size, unsigned amount_size);
};

class OperShiftLeft : public OperShift {
public:
  OperShiftLeft(unsigned input_size, unsigned amount_size) : OperShift(OPER_SHIFT_LEFT, input_size, amount_size) {}
};

class OperShiftRight : public OperShift {
public:
  OperShiftRight(unsigned input_size, unsigned amount_size) : OperShift(OPER_SHIFT_RIGHT, input_size, amount_size) {}
};

class OperRotate : public Operator {
protected:
  OperRotate(prim_type_enum type, unsigned input_size, unsigned amount_size);
};

class OperRotateLeft : public OperRotate {
public:
  OperRotateLeft(unsigned input_size, unsigned amount_size) : OperRotate(OPER_ROTATE_LEFT, input_size, amount_size) {}
};

class OperRotateRight : public OperRotate {
public:
  OperRotateRight(unsigned input_size, unsigned amount_size) : OperRotate(OPER_ROTATE_RIGHT, input_size, amount_size) {}
};

/// A gate over all bits of a word.
class OperReduce : public Operator {
protected:
  OperReduce(prim_type_enum type, unsigned input_size);
};

// NOLINTBEGIN(bugprone-macro-parentheses): names of classes take none
#define KESTRIN_REDUCTION(class_name, type)                                                                            \
  class class_name : public OperReduce {                                                                               \
  public:                                                                                                              \
    explicit class_name(unsigned input_size) : OperReduce(type, input_size) {}                                         \
  }
// NOLINTEND(bugprone-macro-parentheses)
KESTRIN_REDUCTION(OperReduceAnd, OPER_REDUCE_AND);
KESTRIN_REDUCTION(OperReduceOr, OPER_REDUCE_OR);
KESTRIN_REDUCTION(OperReduceXor, OPER_REDUCE_XOR);
KESTRIN_REDUCTION(OperReduceNand, OPER_REDUCE_NAND);
KESTRIN_REDUCTION(OperReduceNor, OPER_REDUCE_NOR);
KESTRIN_REDUCTION(OperReduceXnor, OPER_REDUCE_XNOR);
#undef KESTRIN_REDUCTION

/// a < b; with a carry in of 1: a <= b. Operands of one size.
class OperLessThan : public Operator {
public:
  OperLessThan(unsigned left_size, unsigned right_size);
};

/// Operands of one size.
class OperEqual : public Operator {
public:
  OperEqual(unsigned left_size, unsigned right_size);
  unsigned IsCommutative() const override { return 1; }
};

/// data[sel].
class OperNto1Mux : public Operator {
public:
  OperNto1Mux(unsigned select_size, unsigned data_size);
  unsigned Optimize(Instance* inst) override;
};

/// The data bit whose select bit is 1; exactly one is.
class OperSelector : public Operator {
public:
  explicit OperSelector(unsigned size);
  unsigned Optimize(Instance* inst) override;
};

/// Output i is 1 when the input reads i: 2 to the power of the input size outputs.
class OperDecoder : public Operator {
public:
  explicit OperDecoder(unsigned select_size);
};

/// The data bit of the highest select bit that is 1; the carry in when none is.
class OperPrioSelector : public Operator {
public:
  explicit OperPrioSelector(unsigned size);
};

/// A truth table, which the LutInstance holds.
class OperLut : public Operator {
public:
  explicit OperLut(unsigned input_size);
};

/// A memory of up to two read and two write ports; port 0 is "a", port 1 is "b".
class OperDualPortRam : public Operator {
public:
  OperDualPortRam(const KESTRIN_RAM_PORT_INFO& read_a, const KESTRIN_RAM_PORT_INFO& read_b,
                  const KESTRIN_RAM_PORT_INFO& write_a, const KESTRIN_RAM_PORT_INFO& write_b);

  unsigned SupportsAttribute(const Att* att) const override;
  unsigned IsCombinational() const override { return 0; }
  std::string CellName() const override;
  /// Gives a restored memory its ports: the shape stands in the name of its cell. 0, with a bad stream, for a name that
  /// tells none.
  unsigned RestoreShape(SaveRestore& stream, const char* cell_name);
  const KESTRIN_RAM_PORT_INFO& ReadPortInfo(unsigned port) const { return _read[port]; }
  const KESTRIN_RAM_PORT_INFO& WritePortInfo(unsigned port) const { return _write[port]; }
  /// One bit of an element; null when the element does not exist or is smaller.
  Port* ReadPort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const;
  Port* WritePort(unsigned port, KESTRIN_RAM_PORT_ELEMENT element, unsigned bit) const;

private:
  void Save(SaveRestore& stream) const override;
  void CreatePorts();

  KESTRIN_RAM_PORT_INFO _read[2];
  KESTRIN_RAM_PORT_INFO _write[2];
  Array _ports[2][RAM_ELEMENT_COUNT]; // Port*, bit 0 first
};

#endif
