// Writes a netlist at any stage of polishing as a Verilog module in steps of time, for independent tools: inputs change
// at a step, and a clock has its edge where it was low at the step before. That gives infer points and clock events, as
// elaboration leaves them, and registers and latches one meaning.
//
// Instances of other netlists and memories are cut out: what they read is an output, what they drive an input.
#ifndef TESTS_SUPPORT_STEP_VERILOG_H
#define TESTS_SUPPORT_STEP_VERILOG_H

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/netlist_verilog.h"

/// What a netlist is written as.
struct StepModule {
  std::string text;
  std::vector<std::string> inputs;
  std::vector<std::string> bidirectional; ///< the inputs of these, which may also leave them to others
  std::vector<std::string> outputs;
  bool has_two_states = true; ///< nothing is unknown or floats, and every net has one driver
  std::string fault;          ///< the view that cannot be written
};

class StepVerilog : public NetlistVerilog {
public:
  /// By instance that is cut out: two stages give it one name.
  using CutNumbers = std::map<const Instance*, size_t>;

  static StepModule Write(const Netlist* netlist, const std::string& module, CutNumbers& cuts) {
    std::ostringstream text;
    StepVerilog writer(netlist, text, cuts);
    writer.WriteBody();
    StepModule& result = writer._module;
    std::string head = "module " + module + "(input step";
    for (const std::string& name : result.inputs) head += ", input \\" + name + " ";
    for (const std::string& name : result.outputs) head += ", output \\" + name + " ";
    result.text =
        head + ");\nwire [" + std::to_string(writer._numbers.size()) + ":0] n;\n" + text.str() + "endmodule\n";
    return result;
  }

private:
  StepVerilog(const Netlist* netlist, std::ostream& out, CutNumbers& cuts) : NetlistVerilog(netlist, out), _cuts(cuts) {
    for (const Net* net : NetsOf(netlist)) // wired nets are one
      for (const Net* other = net->WireNext(); other && other != net; other = other->WireNext())
        _numbers[other] = _numbers[net];
  }

  void WriteBody() {
    for (const Port* port : PortsOf(_netlist))
      WriteTerminal(port->Name(), port->GetNet(), !port->IsOutput(), !port->IsInput());
    for (const Instance* inst : InstancesOf(_netlist)) {
      if (!(inst->IsPrimitive() || inst->IsOperator()) || inst->Type() == OPER_DUAL_PORT_RAM)
        CutOut(inst);
      else if (!WriteInstance(inst))
        _module.fault = inst->View()->Name();
    }
    for (const Net* net : NetsOf(_netlist)) WriteUndriven(net);
  }

  /// Of the module or of an instance that is cut out, as seen from within.
  void WriteTerminal(const std::string& name, const Net* net, bool drives, bool is_seen) {
    if (!net) return;
    if (drives) {
      _module.inputs.push_back(name + "<");
      Assign(Bit(net), "\\" + name + "< ");
    }
    if (drives && is_seen) {
      _module.bidirectional.push_back(name + "<");
      _module.has_two_states = false;
    }
    if (!is_seen) return;
    _module.outputs.push_back(name + ">");
    Assign("\\" + name + "> ", Bit(net));
  }

  void CutOut(const Instance* inst) {
    const std::string name = "cut" + std::to_string(_cuts.try_emplace(inst, _cuts.size()).first->second) + ".";
    for (const PortRef* ref : ConnectionsOf(inst))
      WriteTerminal(name + ref->GetPort()->Name(), ref->GetNet(), !ref->IsInput(), ref->Direction() != DIR_OUTPUT);
  }

  /// A net without drivers has its initial value, or 0, for good.
  void WriteUndriven(const Net* net) {
    if (net->HasMultipleDrivers()) _module.has_two_states = false;
    bool is_driven = false;
    char value = 0;
    const Net* first = net;
    do {
      is_driven |=
          net->Driver() || net->HasMultipleDrivers() || net->GetFirstPort(DIR_INPUT) || net->GetFirstPort(DIR_INOUT);
      if (net->PowerUpValue()) value = net->PowerUpValue();
      net = net->WireNext();
    } while (net && net != first);
    if (is_driven) return;
    if (value == 'Z')
      _module.has_two_states = false;
    else if (_undriven.insert(_numbers[first]).second)
      Assign(Bit(first), value == '1' ? "1'b1" : "1'b0");
  }

  /// A wire with the value of an expression at the step before.
  std::string Past(const std::string& value, const char* first) {
    auto [known, is_new] = _pasts.try_emplace(value, "p" + std::to_string(_pasts.size()));
    if (is_new)
      _out << "reg " << known->second << " = " << first << ";\nalways @(posedge step) " << known->second
           << " <= " << value << ";\n";
    return known->second;
  }
  std::string Off(const Net* net) const { return net ? Bit(net) : "1'b0"; }
  /// No edge before the first step.
  std::string Edge(const Net* clock) { return "(" + Read(clock) + " & ~" + Past(Read(clock), "1'b1") + ")"; }
  std::string State(const Net* net, char initial) { return Past(Bit(net), initial == '1' ? "1'b1" : "1'b0"); }

  bool WriteInstance(const Instance* inst) override {
    const Net* output = inst->IsOperator() ? nullptr : inst->GetOutput();
    switch (inst->Type()) {
    case PRIM_X: _module.has_two_states = false; return NetlistVerilog::WriteInstance(inst);
    case PRIM_Z: return Floating(output, "1'bz");
    case PRIM_TRI: return Floating(output, Read(inst->GetControl()) + " ? " + Read(inst->GetInput()) + " : 1'bz");
    case PRIM_PULLUP: return Pull(output, "(pull1, highz0)", "1'b1");
    case PRIM_PULLDOWN: return Pull(output, "(highz1, pull0)", "1'b0");
    // Within a branch that the event selects it has happened.
    case PRIM_CLOCK: return WriteValue(output, Off(inst->GetControl()));
    case PRIM_INFER_POINT: return WriteInferPoint(inst);
    default: return NetlistVerilog::WriteInstance(inst);
    }
  }
  bool WriteValue(const Net* output, const std::string& value) {
    if (output) Assign(Bit(output), value);
    return true;
  }
  bool Floating(const Net* output, const std::string& value) {
    _module.has_two_states = false;
    return WriteValue(output, value);
  }
  bool Pull(const Net* output, const std::string& strength, const std::string& value) {
    _module.has_two_states = false;
    if (output) _out << "assign " << strength << " " << Bit(output) << " = " << value << ";\n";
    return true;
  }

  bool WriteStorage(const Instance* inst) override {
    const Net* output = inst->GetOutput();
    if (!output) return true;
    if (inst->GetZ() && !inst->GetZ()->IsGnd()) return false;
    const bool has_set = inst->Type() == PRIM_DFFRS || inst->Type() == PRIM_DLATCHRS;
    const char* initial = inst->GetAttValue(ATT_INITIAL_VALUE);
    const std::string q = "q" + std::to_string(_temporaries++);
    _out << "wire " << q << ";\n";
    const std::string old = Past(q, initial && *initial == '1' ? "1'b1" : "1'b0");
    std::string value = kestrin_is_register_type(inst->Type())
                            ? Edge(inst->GetClock()) + " ? " + Past(Read(inst->GetInput()), "1'b0") + " : " + old
                            : Read(inst->GetClock()) + " ? " + Read(inst->GetInput()) + " : " + old;
    if (has_set && inst->GetALoad()) value = Bit(inst->GetALoad()) + " ? " + Read(inst->GetAData()) + " : " + value;
    value = has_set ? Off(inst->GetReset()) + " ? 1'b0 : " + Off(inst->GetSet()) + " ? 1'b1 : " + value
                    : Off(inst->GetAsyncCond()) + " ? " + Off(inst->GetAsyncVal()) + " : " + value;
    Assign(q, value);
    return WriteValue(output, q);
  }

  bool WriteInferPoint(const Instance* ipoint) {
    if (!ipoint->GetOutput() || !ipoint->GetInput()) return true;
    _hold = ipoint->GetInput2();
    _cone.clear();
    const std::string value = InCone(ipoint->GetInput());
    return WriteValue(ipoint->GetOutput(), value);
  }

  /// The value of a net within the cone of an infer point, where the hold net has its old value.
  std::string InCone(const Net* net) {
    if (!net) return "1'bx";
    auto known = _cone.find(_numbers[net]);
    if (known != _cone.end()) return known->second;
    return _cone[_numbers[net]] = OfCone(net);
  }
  std::string OfCone(const Net* net) {
    if (net == _hold || (_hold && _numbers[net] == _numbers[_hold])) return State(_hold, _hold->PowerUpValue());
    const Instance* driver = net->HasMultipleDrivers() ? nullptr : net->Driver();
    if (!driver || net->Linefile()) return Bit(net);
    switch (driver->Type()) {
    case PRIM_BUF: return InCone(driver->GetInput());
    case PRIM_INFER_POINT: return driver->GetInput2() == _hold ? InCone(driver->GetInput()) : Bit(net);
    case PRIM_MUX: return Mux(driver);
    case OPER_NTO1MUX: {
      const std::string data =
          Temporary(driver->Input2Size(),
                    Word(driver->Input2Size(), [&](unsigned i) { return InCone(driver->GetInput2Bit(i)); }));
      return Temporary(1, data + " >> " + Input1(driver));
    }
    default: return Bit(net);
    }
  }
  std::string Mux(const Instance* mux) {
    const Net* control = mux->GetControl();
    const Instance* event = control ? control->Driver() : nullptr;
    if (!event || event->Type() != PRIM_CLOCK)
      return Temporary(1, InCone(control) + " ? " + InCone(mux->GetInput2()) + " : " + InCone(mux->GetInput1()));
    // What the edge takes is from before it.
    const std::string enable = Past(event->GetControl() ? Bit(event->GetControl()) : "1'b1", "1'b0");
    return Temporary(1, "(" + Edge(event->GetInput()) + " & " + enable + ") ? " + Past(Read(mux->GetInput2()), "1'b0") +
                            " : " + InCone(mux->GetInput1()));
  }

  CutNumbers& _cuts;
  StepModule _module;
  const Net* _hold = nullptr;
  std::map<size_t, std::string> _cone;       // by number of the net
  std::map<std::string, std::string> _pasts; // by expression
  std::set<size_t> _undriven;
};

#endif
