// Evaluates combinational netlists for tests: given values of some nets, the value of any net that they decide. It
// knows each primitive and operator by its definition, bit by bit, and shares no code with what builds them.
#ifndef TESTS_SUPPORT_NETLIST_EVALUATOR_H
#define TESTS_SUPPORT_NETLIST_EVALUATOR_H

#include <cstdint>
#include <map>
#include <vector>

#include <gtest/gtest.h>

#include "containers/views.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/port.h"

class NetlistEvaluator {
public:
  using Word = uint64_t; // wide enough for every product in the tests

  void Set(const Net* net, bool value) { _values[net] = value; }
  /// Bit 0 first.
  void Set(const Array& nets, uint64_t value) {
    for (unsigned i = 0; i < nets.Size(); i++) Set(FromWord<Net*>(nets.At(i)), value >> i & 1);
  }
  void Clear() { _values.clear(); }

  /// An unconnected or undriven net reads 0.
  bool Value(const Net* net) {
    if (!net) return false;
    auto known = _values.find(net);
    if (known != _values.end()) return known->second;
    const Instance* driver = net->Driver();
    bool value = driver && Output(driver, net);
    _values[net] = value;
    return value;
  }
  uint64_t Value(const Array& nets) {
    uint64_t value = 0;
    for (unsigned i = 0; i < nets.Size(); i++) value |= static_cast<uint64_t>(Value(FromWord<Net*>(nets.At(i)))) << i;
    return value;
  }

private:
  using Bits = std::vector<bool>;

  Bits Input1(const Instance* inst) {
    Bits bits(inst->Input1Size());
    for (unsigned i = 0; i < bits.size(); i++) bits[i] = Value(inst->GetInput1Bit(i));
    return bits;
  }
  Bits Input2(const Instance* inst) {
    Bits bits(inst->Input2Size());
    for (unsigned i = 0; i < bits.size(); i++) bits[i] = Value(inst->GetInput2Bit(i));
    return bits;
  }
  static Word Number(const Bits& bits, bool is_signed = false) {
    Word number = is_signed && !bits.empty() && bits.back() ? ~Word{0} : 0;
    for (size_t i = 0; i < bits.size(); i++) number = (number & ~(Word{1} << i)) | (static_cast<Word>(bits[i]) << i);
    return number;
  }
  static unsigned Index(const Instance* inst, const Net* net) {
    for (unsigned i = 0; i < inst->OutputSize(); i++)
      if (inst->GetOutputBit(i) == net) return i;
    ADD_FAILURE() << "the net is no output of " << inst->View()->Owner()->Name();
    return 0;
  }

  bool Gate(const Instance* inst) {
    auto a = [&] { return Value(inst->GetInput1()); };
    auto b = [&] { return Value(inst->GetInput2()); };
    switch (inst->Type()) {
    case PRIM_INV: return !Value(inst->GetInput());
    case PRIM_BUF: return Value(inst->GetInput());
    case PRIM_AND: return a() && b();
    case PRIM_NAND: return !(a() && b());
    case PRIM_OR: return a() || b();
    case PRIM_NOR: return !(a() || b());
    case PRIM_XOR: return a() != b();
    case PRIM_XNOR: return a() == b();
    case PRIM_MUX: return Value(inst->GetControl()) ? b() : a();
    default: ADD_FAILURE() << "no value for " << Netlist::PrimTypeToString(inst->Type()); return false;
    }
  }

  Word Arithmetic(const Instance* inst) {
    bool is_signed = inst->IsSigned();
    Word a = Number(Input1(inst), is_signed);
    Word b = Number(Input2(inst), is_signed);
    using Signed = int64_t;
    switch (inst->Type()) {
    case OPER_ADDER: return Number(Input1(inst)) + Number(Input2(inst)) + Value(inst->GetCin());
    case OPER_MULTIPLIER: return a * b;
    case OPER_DIVIDER:
      if (!b) return 0;
      return is_signed ? static_cast<Word>(static_cast<Signed>(a) / static_cast<Signed>(b)) : a / b;
    default:
      if (!b) return 0;
      return is_signed ? static_cast<Word>(static_cast<Signed>(a) % static_cast<Signed>(b)) : a % b;
    }
  }

  /// With a carry in: or equal.
  bool IsLess(const Instance* inst, bool is_signed) {
    const Word sign = is_signed ? Word{1} << 63 : 0; // shifts negative numbers below the others
    const Word a = Number(Input1(inst), is_signed) ^ sign;
    const Word b = Number(Input2(inst), is_signed) ^ sign;
    return a < b || (a == b && Value(inst->GetCin()));
  }

  bool Shifted(const Instance* inst, unsigned bit, bool right, bool rotate) {
    Bits a = Input1(inst);
    Word amount = Number(Input2(inst));
    auto size = static_cast<Word>(a.size());
    if (rotate) {
      amount %= size;
      return a[static_cast<size_t>((right ? bit + amount : bit + size - amount) % size)];
    }
    if (right) return bit + amount < size ? a[static_cast<size_t>(bit + amount)] : Value(inst->GetCin());
    return amount <= bit ? a[static_cast<size_t>(bit - amount)] : Value(inst->GetCin());
  }

  bool Output(const Instance* inst, const Net* net) {
    switch (inst->Type()) {
    case PRIM_PWR: return true;
    case PRIM_GND:
    case PRIM_X:
    case PRIM_Z: return false;
    case PRIM_FADD: {
      int sum = Value(inst->GetInput1()) + Value(inst->GetInput2()) + Value(inst->GetCin());
      return net == inst->GetCout() ? sum > 1 : sum % 2;
    }
    case OPER_ADDER:
      if (net == inst->GetCout()) return Arithmetic(inst) >> inst->OutputSize() & 1;
      [[fallthrough]];
    case OPER_MULTIPLIER:
    case OPER_DIVIDER:
    case OPER_MODULO: return Arithmetic(inst) >> Index(inst, net) & 1;
    case OPER_SHIFT_LEFT: return Shifted(inst, Index(inst, net), false, false);
    case OPER_SHIFT_RIGHT: return Shifted(inst, Index(inst, net), true, false);
    case OPER_ROTATE_LEFT: return Shifted(inst, Index(inst, net), false, true);
    case OPER_ROTATE_RIGHT: return Shifted(inst, Index(inst, net), true, true);
    case OPER_REDUCE_AND: return Count(inst) == inst->Input1Size();
    case OPER_REDUCE_NAND: return Count(inst) != inst->Input1Size();
    case OPER_REDUCE_OR: return Count(inst) != 0;
    case OPER_REDUCE_NOR: return Count(inst) == 0;
    case OPER_REDUCE_XOR: return Count(inst) % 2;
    case OPER_REDUCE_XNOR: return Count(inst) % 2 == 0;
    case OPER_LESSTHAN: return IsLess(inst, inst->IsAttOn("signed"));
    case OPER_EQUAL: return Input1(inst) == Input2(inst);
    case OPER_NTO1MUX: {
      Word select = Number(Input1(inst));
      return select < inst->Input2Size() && Value(inst->GetInput2Bit(static_cast<unsigned>(select)));
    }
    case OPER_SELECTOR: {
      bool any = false;
      for (unsigned i = 0; i < inst->Input1Size(); i++)
        any = any || (Value(inst->GetInput1Bit(i)) && Value(inst->GetInput2Bit(i)));
      return any;
    }
    case OPER_PRIO_SELECTOR: {
      for (unsigned i = inst->Input1Size(); i-- > 0;)
        if (Value(inst->GetInput1Bit(i))) return Value(inst->GetInput2Bit(i));
      return Value(inst->GetCin());
    }
    case OPER_DECODER: return Number(Input1(inst)) == Index(inst, net);
    case OPER_LUT: return inst->LutFunction() >> static_cast<unsigned>(Number(Input1(inst))) & 1;
    default: return Gate(inst);
    }
  }
  unsigned Count(const Instance* inst) {
    unsigned ones = 0;
    for (bool bit : Input1(inst)) ones += bit;
    return ones;
  }

  std::map<const Net*, bool> _values;
};

/// Nameless nets, bit 0 first.
inline void make_nets(Netlist& netlist, ArrayOf<Net>& nets, unsigned count) {
  for (unsigned i = 0; i < count; i++) {
    auto* net = new Net;
    netlist.Add(net);
    nets.InsertLast(net);
  }
}

#endif
