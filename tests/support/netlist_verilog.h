// Writes a netlist as one Verilog module, for proofs by independent tools. Every gate and operator is written by its
// definition as an expression, a register or latch as the tool's own cell for one, which begins at 0 unless it has
// another initial value; nothing is shared with what builds, folds or hands over netlists.
#ifndef TESTS_SUPPORT_NETLIST_VERILOG_H
#define TESTS_SUPPORT_NETLIST_VERILOG_H

#include <map>
#include <ostream>
#include <string>

#include "database/views.h"

class NetlistVerilog {
public:
  /// False when an instance has no expression.
  static bool Write(const Netlist* netlist, const std::string& module, std::ostream& out) {
    return NetlistVerilog(netlist, out).Run(module);
  }
  virtual ~NetlistVerilog() = default;

protected:
  NetlistVerilog(const Netlist* netlist, std::ostream& out) : _netlist(netlist), _out(out) {
    for (const Net* net : NetsOf(netlist)) _numbers.emplace(net, _numbers.size());
  }

  bool Run(const std::string& module) {
    _out << "module " << module << "(";
    const char* separator = "";
    for (const Port* port : PortsOf(_netlist)) {
      _out << separator << (port->IsInput() ? "input " : "output ") << Name(port);
      separator = ", ";
    }
    _out << ");\nwire [" << _numbers.size() << ":0] n;\n";
    for (const Port* port : PortsOf(_netlist)) {
      if (port->IsInput() && port->GetNet()) Assign(Bit(port->GetNet()), Name(port));
      if (port->IsOutput()) Assign(Name(port), Read(port->GetNet()));
    }
    bool all = true;
    for (const Instance* inst : InstancesOf(_netlist)) all = WriteInstance(inst) && all;
    _out << "endmodule\n";
    return all;
  }

  static std::string Name(const Port* port) { return "\\" + std::string(port->Name()) + " "; }
  std::string Bit(const Net* net) const { return "n[" + std::to_string(_numbers.at(net)) + "]"; }
  std::string Read(const Net* net) const { return net ? Bit(net) : "1'bx"; }
  void Assign(const std::string& target, const std::string& value) {
    _out << "assign " << target << " = " << value << ";\n";
  }

  /// A concatenation of so many bits, the highest first.
  template <class BitOf> static std::string Word(unsigned size, BitOf bit) {
    std::string word;
    for (unsigned i = size; i-- > 0;) word += (word.empty() ? "{" : ", ") + bit(i);
    return word + "}";
  }
  std::string Input1(const Instance* inst) const {
    return Word(inst->Input1Size(), [&](unsigned i) { return Read(inst->GetInput1Bit(i)); });
  }
  std::string Input2(const Instance* inst) const {
    return Word(inst->Input2Size(), [&](unsigned i) { return Read(inst->GetInput2Bit(i)); });
  }
  /// Open outputs get a wire of their own.
  std::string Output(const Net* net) {
    if (net) return Bit(net);
    _out << "wire open" << _open << ";\n";
    return "open" + std::to_string(_open++);
  }
  std::string Outputs(const Instance* inst) {
    return Word(inst->OutputSize(), [&](unsigned i) { return Output(inst->GetOutputBit(i)); });
  }
  /// A wire with a value, to be sliced.
  std::string Temporary(unsigned width, const std::string& value) {
    const std::string name = "t" + std::to_string(_temporaries++);
    _out << "wire [" << width - 1 << ":0] " << name << " = " << value << ";\n";
    return name;
  }

  virtual bool WriteInstance(const Instance* inst) {
    if (inst->Type() == PRIM_FADD) {
      Assign("{" + Output(inst->GetCout()) + ", " + Output(inst->GetOutput()) + "}",
             Read(inst->GetInput1()) + " + " + Read(inst->GetInput2()) + " + " + Read(inst->GetCin()));
      return true;
    }
    if (inst->IsOperator()) return WriteOperator(inst);
    if (kestrin_is_storage_type(inst->Type())) return WriteStorage(inst);
    const std::string value = Gate(inst);
    if (inst->GetOutput() && !value.empty()) Assign(Bit(inst->GetOutput()), value);
    return !value.empty();
  }

  /// What forces the output without the clock, and the value that it gets then.
  virtual bool WriteStorage(const Instance* inst) {
    auto off_if_open = [this](const Net* net) { return net ? Bit(net) : "1'b0"; };
    std::string forced = off_if_open(inst->GetAsyncCond());
    std::string value = off_if_open(inst->GetAsyncVal());
    if (inst->Type() == PRIM_DFFRS || inst->Type() == PRIM_DLATCHRS) {
      const std::string set = off_if_open(inst->GetSet());
      const std::string reset = off_if_open(inst->GetReset());
      const std::string load = off_if_open(inst->GetALoad());
      forced = set + " | " + reset + " | " + load;
      value = reset + " ? 1'b0 : " + set + " ? 1'b1 : " + off_if_open(inst->GetAData());
    }
    if (inst->GetZ()) return false;
    const char* initial = inst->GetAttValue(ATT_INITIAL_VALUE);
    const std::string q = "q" + std::to_string(_temporaries++);
    _out << "(* init = 1'b" << (initial ? initial : "0") << " *) wire " << q << ";\n";
    const std::string data = Read(inst->GetInput());
    if (kestrin_is_register_type(inst->Type()))
      _out << "\\$aldff #(.WIDTH(1), .CLK_POLARITY(1), .ALOAD_POLARITY(1)) c" << q << " (.CLK("
           << Read(inst->GetClock()) << "), .ALOAD(" << forced << "), .AD(" << value << "), .D(" << data;
    else
      _out << "\\$dlatch #(.WIDTH(1), .EN_POLARITY(1)) c" << q << " (.EN(" << Read(inst->GetClock()) << " | " << forced
           << "), .D((" << forced << ") ? (" << value << ") : " << data;
    _out << "), .Q(" << q << "));\n";
    if (inst->GetOutput()) Assign(Bit(inst->GetOutput()), q);
    return true;
  }

  std::string Gate(const Instance* inst) const {
    const std::string a = Read(inst->GetInput1());
    const std::string b = Read(inst->GetInput2());
    switch (inst->Type()) {
    case PRIM_PWR: return "1'b1";
    case PRIM_GND: return "1'b0";
    case PRIM_X:
    case PRIM_Z: return "1'bx";
    case PRIM_INV: return "~" + Read(inst->GetInput());
    case PRIM_BUF: return Read(inst->GetInput());
    case PRIM_AND: return a + " & " + b;
    case PRIM_NAND: return "~(" + a + " & " + b + ")";
    case PRIM_OR: return a + " | " + b;
    case PRIM_NOR: return "~(" + a + " | " + b + ")";
    case PRIM_XOR: return a + " ^ " + b;
    case PRIM_XNOR: return "~(" + a + " ^ " + b + ")";
    case PRIM_MUX: return Read(inst->GetControl()) + " ? " + b + " : " + a;
    default: return "";
    }
  }

  /// What is shifted is followed by as many bits of filling, so that one that is shifted through is all filling.
  std::string Shift(const Instance* inst, bool right, bool rotate) {
    const unsigned size = inst->Input1Size();
    const std::string a = Input1(inst);
    const std::string amount = Input2(inst);
    const std::string fill = rotate ? a : "{" + std::to_string(size) + "{" + Read(inst->GetCin()) + "}}";
    const std::string word = right ? "{" + fill + ", " + a + "}" : "{" + a + ", " + fill + "}";
    const std::string by = rotate ? "(" + amount + " % " + std::to_string(size) + ")" : amount;
    const std::string moved = Temporary(2 * size, word + (right ? " >> " : " << ") + by);
    const std::string slice = moved + (right ? "[" + std::to_string(size - 1) + ":0]"
                                             : "[" + std::to_string(2 * size - 1) + ":" + std::to_string(size) + "]");
    return rotate ? slice : "(" + amount + " >= " + std::to_string(size) + ") ? " + fill + " : " + slice;
  }

  bool WriteOperator(const Instance* inst) {
    const std::string a = Input1(inst);
    const std::string b = inst->Input2Size() ? Input2(inst) : "";
    const std::string cin = Read(inst->GetCin());
    const bool is_signed = inst->IsSigned() || inst->IsAttOn("signed");
    const std::string left = is_signed ? "$signed(" + a + ")" : a;
    const std::string right = is_signed ? "$signed(" + b + ")" : b;
    std::string value;
    switch (inst->Type()) {
    case OPER_ADDER: {
      const std::string carry = Output(inst->GetCout());
      Assign("{" + carry + ", " + Outputs(inst) + "}", a + " + " + b + " + " + (inst->GetCin() ? cin : "1'b0"));
      return true;
    }
    case OPER_MULTIPLIER: value = left + " * " + right; break;
    case OPER_DIVIDER: value = left + " / " + right; break;
    case OPER_MODULO: value = left + " % " + right; break;
    case OPER_SHIFT_LEFT: value = Shift(inst, false, false); break;
    case OPER_SHIFT_RIGHT: value = Shift(inst, true, false); break;
    case OPER_ROTATE_LEFT: value = Shift(inst, false, true); break;
    case OPER_ROTATE_RIGHT: value = Shift(inst, true, true); break;
    case OPER_REDUCE_AND: value = "&" + a; break;
    case OPER_REDUCE_NAND: value = "~&" + a; break;
    case OPER_REDUCE_OR: value = "|" + a; break;
    case OPER_REDUCE_NOR: value = "~|" + a; break;
    case OPER_REDUCE_XOR: value = "^" + a; break;
    case OPER_REDUCE_XNOR: value = "~^" + a; break;
    case OPER_LESSTHAN: value = cin + " ? " + left + " <= " + right + " : " + left + " < " + right; break;
    case OPER_EQUAL: value = a + " == " + b; break;
    case OPER_NTO1MUX: value = b + " >> " + a; break;
    case OPER_SELECTOR: value = "|(" + a + " & " + b + ")"; break;
    case OPER_PRIO_SELECTOR:
      value = cin;
      for (unsigned i = 0; i < inst->Input1Size(); i++)
        value = Temporary(1, Read(inst->GetInput1Bit(i)) + " ? " + Read(inst->GetInput2Bit(i)) + " : " + value);
      break;
    case OPER_DECODER: value = "1 << " + a; break;
    case OPER_LUT: value = "32'd" + std::to_string(inst->LutFunction()) + " >> " + a; break;
    default: return false;
    }
    const std::string target = Outputs(inst);
    Assign(target, value);
    return true;
  }

  const Netlist* _netlist;
  std::ostream& _out;
  std::map<const Net*, size_t> _numbers;
  unsigned _open = 0;
  unsigned _temporaries = 0;
};

#endif
