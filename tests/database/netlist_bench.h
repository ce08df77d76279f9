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

/// Two-valued simulation by events: inputs change, everything settles, clocks have edges.
class Simulator {
public:
  explicit Simulator(const Netlist* netlist) : _netlist(netlist) {
    for (const Instance* inst : InstancesOf(netlist))
      if (IsState(inst)) _state[inst] = false;
  }

  void Set(const std::string& port, bool value) { _inputs[port] = value; }
  bool Get(const std::string& port) {
    _values.clear();
    return Value(_netlist->GetPort(port.c_str())->GetNet());
  }

  /// Levels: asynchronous terms, transparent latches, cones without clock edges.
  void Settle() {
    _edge = nullptr;
    for (int round = 0; round < 100; round++) {
      _values.clear();
      std::map<const Instance*, bool> next;
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
    std::map<const Instance*, bool> next;
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

  bool NextLevel(const Instance* inst, bool now) {
    switch (inst->Type()) {
    case PRIM_INFER_POINT: return Value(inst->GetInput());
    case PRIM_DFFRS: return Asynchronous(inst, now);
    case PRIM_DLATCHRS:
      if (Value(inst->GetReset())) return false;
      if (Value(inst->GetSet())) return true;
      return Value(inst->GetClock()) ? Value(inst->GetInput()) : now;
    default: return now;
    }
  }
  bool Asynchronous(const Instance* reg, bool otherwise) {
    if (reg->GetReset() && Value(reg->GetReset())) return false;
    if (reg->GetSet() && Value(reg->GetSet())) return true;
    if (reg->GetALoad() && Value(reg->GetALoad())) return Value(reg->GetAData());
    return otherwise;
  }
  bool NextAtEdge(const Instance* inst, bool now) {
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
  /// What is open or undriven reads as 0.
  bool Value(const Net* net) {
    if (!net) return false;
    auto known = _values.find(net);
    if (known != _values.end()) return known->second;
    _values[net] = false;
    return _values[net] = Compute(net);
  }
  bool Compute(const Net* net) {
    if (const Port* port = net->GetFirstPort(DIR_INPUT)) return _inputs[port->Name()];
    const Instance* driver = net->Driver();
    if (!driver) return false;
    if (IsState(driver)) return _state[driver];
    auto in1 = [&] { return Value(driver->GetInput1()); };
    auto in2 = [&] { return Value(driver->GetInput2()); };
    switch (driver->Type()) {
    case PRIM_PWR: return true;
    case PRIM_INV: return !Value(driver->GetInput());
    case PRIM_BUF: return Value(driver->GetInput());
    case PRIM_AND: return in1() && in2();
    case PRIM_NAND: return !(in1() && in2());
    case PRIM_OR: return in1() || in2();
    case PRIM_NOR: return !(in1() || in2());
    case PRIM_XOR: return in1() != in2();
    case PRIM_XNOR: return in1() == in2();
    case PRIM_MUX: return Value(driver->GetControl()) ? in2() : in1();
    case PRIM_CLOCK: return IsEdgeOf(driver->GetInput()) && Value(driver->GetControl());
    case OPER_NTO1MUX: {
      unsigned index = 0;
      for (unsigned bit = 0; bit < driver->Input1Size(); bit++) index |= Value(driver->GetInput1Bit(bit)) << bit;
      return Value(driver->GetInput2Bit(index));
    }
    default: return false;
    }
  }

  const Netlist* _netlist;
  std::map<std::string, bool> _inputs;
  std::map<const Instance*, bool> _state;
  std::map<const Net*, bool> _values;
  const Port* _edge = nullptr;
  bool _rising = false;
};

#endif
