// A netlist to be built in single lines, and a simulator of it. The simulator knows what elaboration leaves, infer
// points and clock events, as well as registers and latches, so that a netlist can be compared before and after a pass.
#ifndef TESTS_DATABASE_NETLIST_BENCH_H
#define TESTS_DATABASE_NETLIST_BENCH_H

#include <cstdarg>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "database/netlist.h"
#include "database/views.h"
#include "util/linefile.h"
#include "util/message.h"

/// Collects what is reported while it lives.
class MessageLog {
public:
  MessageLog() {
    lines().clear();
    Message::ClearErrorCount();
    Message::SetConsoleOutput(0);
    Message::RegisterCallBackMsg([](msg_type_t type, const char*, linefile_type, const char* format, va_list args) {
      char text[512];
      vsnprintf(text, sizeof(text), format, args);
      if (type != MSG_COMMENT) lines().push_back(text);
    });
  }
  ~MessageLog() {
    Message::RegisterCallBackMsg(nullptr);
    Message::SetConsoleOutput(1);
    Message::ClearErrorCount();
  }
  static std::vector<std::string>& lines() {
    static std::vector<std::string> all;
    return all;
  }
};

class NetlistBench {
public:
  NetlistBench() : owned(new Netlist("bench")), n(owned.get()) {}
  explicit NetlistBench(Netlist* copy) : owned(copy), n(copy) {}

  /// A net of the source, with the location that tells it from made-up ones.
  Net* Named(const std::string& name) {
    Net* net = new Net(name.c_str(), At());
    n->Add(net);
    return net;
  }
  Net* PortNet(const std::string& name, port_dir direction) {
    Net* net = Named(name);
    Port* port = new Port(name.c_str(), direction, At());
    n->Add(port);
    net->Connect(port);
    return net;
  }
  Net* In(const std::string& name) { return PortNet(name, DIR_INPUT); }
  Net* Out(const std::string& name) { return PortNet(name, DIR_OUTPUT); }
  Net* Inout(const std::string& name) { return PortNet(name, DIR_INOUT); }
  /// Drives a net of the source the way elaboration does.
  void Drive(Net* target, Net* value) { target->Wire(value->Isolate(target, At())); }
  /// What elaboration leaves for a signal that gets this value in a process.
  void Infer(Net* hold, Net* value) { hold->Wire(n->InferPoint(value, hold, At())); }

  Net* Mux(Net* in0, Net* in1, Net* control) { return n->Mux(in0, in1, control, At()); }
  Net* And(Net* a, Net* b) { return n->And(a, b, At()); }
  Net* Or(Net* a, Net* b) { return n->Or(a, b, At()); }
  Net* Xor(Net* a, Net* b) { return n->Xor(a, b, At()); }
  Net* Inv(Net* a) { return n->Inv(a, At()); }
  Net* Rise(Net* clock, Net* enable = nullptr) { return n->Clock(clock, enable ? enable : n->Pwr(0), At()); }
  Net* Fall(Net* clock) { return n->Clock(Inv(clock), n->Pwr(0), At()); }
  Net* Pwr() { return n->Pwr(0); }
  Net* Gnd() { return n->Gnd(0); }
  Net* Z() { return n->Z(0); }

  Net* Get(const std::string& name) const { return n->GetNet(name.c_str()); }
  /// The instance behind the net of this name.
  Instance* DriverOf(const std::string& name) const {
    Net* net = Get(name);
    return net ? net->Driver() : nullptr;
  }
  unsigned Count(prim_type_enum type) const {
    unsigned count = 0;
    for (const Instance* inst : InstancesOf(n)) count += inst->Type() == type;
    return count;
  }
  unsigned long At() { return LineFile::EncodeLineFile("bench.v", ++line); }

  std::unique_ptr<Netlist> owned;
  Netlist* n;
  unsigned line = 0;
};

/// Simulation by events with the values '0', '1' and 'z': inputs change, everything settles, clocks have edges. What is
/// stored begins with its initial value, or 0.
class Simulator {
public:
  explicit Simulator(const Netlist* netlist) : _netlist(netlist) {
    for (const Instance* inst : InstancesOf(netlist))
      if (IsState(inst)) _state[inst] = InitialValue(inst);
  }

  void Set(const std::string& port, bool value) { _inputs[port] = value; }
  char Get(const std::string& port) {
    _values.clear();
    return Value(_netlist->GetPort(port.c_str())->GetNet());
  }

  /// Levels: asynchronous terms, transparent latches, cones without clock edges.
  void Settle() {
    _edge = nullptr;
    for (int round = 0; round < 100; round++) {
      _values.clear();
      std::map<const Instance*, char> next;
      for (auto& [inst, value] : _state) next[inst] = NextLevel(inst, value);
      if (next == _state) return;
      _state = next;
    }
  }

  /// An edge of a port: what is clocked by it takes its data from before the edge.
  void Edge(const std::string& port, bool rising) {
    Settle();
    _values.clear();
    _edge = _netlist->GetPort(port.c_str());
    _rising = rising;
    std::map<const Instance*, char> next;
    for (auto& [inst, value] : _state) next[inst] = NextAtEdge(inst, value);
    _edge = nullptr;
    _state = next;
    Set(port, rising);
    Settle();
  }

private:
  static bool IsState(const Instance* inst) {
    return inst->Type() == PRIM_INFER_POINT || kestrin_is_storage_type(inst->Type());
  }
  static char InitialValue(const Instance* inst) {
    if (inst->Type() == PRIM_INFER_POINT) return inst->GetInput2()->PowerUpValue() == 'Z' ? 'z' : '0';
    const char* value = inst->GetAttValue(ATT_INITIAL_VALUE);
    return value && *value == '1' ? '1' : '0';
  }

  char NextLevel(const Instance* inst, char now) {
    switch (inst->Type()) {
    case PRIM_INFER_POINT: return Value(inst->GetInput());
    case PRIM_DFFRS: return Asynchronous(inst, now);
    case PRIM_DLATCH:
      if (IsOne(inst->GetAsyncCond())) return Value(inst->GetAsyncVal());
      return IsOne(inst->GetClock()) ? Value(inst->GetInput()) : now;
    case PRIM_DLATCHRS:
      if (IsOne(inst->GetReset())) return '0';
      if (IsOne(inst->GetSet())) return '1';
      return IsOne(inst->GetClock()) ? Value(inst->GetInput()) : now;
    default: return now;
    }
  }
  char Asynchronous(const Instance* reg, char otherwise) {
    if (IsOne(reg->GetReset())) return '0';
    if (IsOne(reg->GetSet())) return '1';
    if (IsOne(reg->GetALoad())) return Value(reg->GetAData());
    return otherwise;
  }
  char NextAtEdge(const Instance* inst, char now) {
    if (inst->Type() == PRIM_INFER_POINT) return Value(inst->GetInput());
    if (inst->Type() != PRIM_DFFRS) return now;
    return Asynchronous(inst, IsEdgeOf(inst->GetClock()) ? Value(inst->GetInput()) : now);
  }
  /// Whether the edge in progress is a rising one of this net.
  bool IsEdgeOf(const Net* clock) const {
    bool rising = _rising;
    while (clock->InvNet() || clock->BufNet()) {
      rising ^= clock->InvNet() != nullptr;
      clock = clock->InvNet() ? clock->InvNet() : clock->BufNet();
    }
    return _edge && _edge->GetNet() == clock && rising;
  }

  bool IsOne(const Net* net) { return Value(net) == '1'; }
  /// What is open or undriven reads as 0.
  char Value(const Net* net) {
    if (!net) return '0';
    auto known = _values.find(net);
    if (known != _values.end()) return known->second;
    _values[net] = '0';
    return _values[net] = Compute(net);
  }
  char Compute(const Net* net) {
    auto bit = [](bool value) { return value ? '1' : '0'; };
    if (const Port* port = net->GetFirstPort(DIR_INPUT)) return bit(_inputs[port->Name()]);
    const Instance* driver = net->Driver();
    if (!driver) return '0';
    if (IsState(driver)) return _state[driver];
    auto in1 = [&] { return IsOne(driver->GetInput1()); };
    auto in2 = [&] { return IsOne(driver->GetInput2()); };
    switch (driver->Type()) {
    case PRIM_PWR: return '1';
    case PRIM_Z: return 'z';
    case PRIM_INV: return bit(!IsOne(driver->GetInput()));
    case PRIM_BUF: return Value(driver->GetInput());
    case PRIM_TRI: return IsOne(driver->GetControl()) ? Value(driver->GetInput()) : 'z';
    case PRIM_AND: return bit(in1() && in2());
    case PRIM_NAND: return bit(!(in1() && in2()));
    case PRIM_OR: return bit(in1() || in2());
    case PRIM_NOR: return bit(!(in1() || in2()));
    case PRIM_XOR: return bit(in1() != in2());
    case PRIM_XNOR: return bit(in1() == in2());
    case PRIM_MUX: return Value(IsOne(driver->GetControl()) ? driver->GetInput2() : driver->GetInput1());
    case PRIM_CLOCK: return bit(IsEdgeOf(driver->GetInput()) && IsOne(driver->GetControl()));
    case OPER_REDUCE_OR:
      for (unsigned i = 0; i < driver->InputSize(); i++)
        if (IsOne(driver->GetInputBit(i))) return '1';
      return '0';
    case OPER_NTO1MUX: {
      unsigned index = 0;
      for (unsigned i = 0; i < driver->Input1Size(); i++) index |= unsigned{IsOne(driver->GetInput1Bit(i))} << i;
      return Value(driver->GetInput2Bit(index));
    }
    default: return '0';
    }
  }

  const Netlist* _netlist;
  std::map<std::string, bool> _inputs;
  std::map<const Instance*, char> _state;
  std::map<const Net*, char> _values;
  const Port* _edge = nullptr;
  bool _rising = false;
};

#endif
