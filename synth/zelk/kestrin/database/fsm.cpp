#include "database/fsm.h"

#include <cstring>
#include <memory>
#include <ostream>
#include <vector>

#include "containers/heap.h"
#include "containers/views.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "util/strings.h"

namespace {

using States = Entries<Instance*, char*>;

bool IsConnectedAndNot(const Net* net, unsigned (Net::*constant)() const) { return net && !(net->*constant)(); }

/// Two nets that always put a register into the same state: one net, or two drivers of the same constant.
bool SameControl(const Net* a, const Net* b) {
  return a == b || (a && b && a->IsConstant() && a->DriverType() == b->DriverType());
}

bool AreInverse(const Net* a, const Net* b) { return a->InvNet() == b || b->InvNet() == a; }

const Instance* DataMux(const Instance* state) {
  const Net* data = state->GetInput();
  const Instance* driver = data ? data->Driver() : nullptr;
  return driver && driver->Type() == PRIM_MUX ? driver : nullptr;
}

bool IsPwr(const Net* net) { return net && net->IsPwr(); }

bool HasAsynchronousOne(const Instance* state) {
  if (state->Type() == PRIM_DFF)
    return IsPwr(state->GetAsyncVal()) && IsConnectedAndNot(state->GetAsyncCond(), &Net::IsGnd);
  const Net* reset = state->GetReset();
  return reset && reset->IsGnd() && IsConnectedAndNot(state->GetSet(), &Net::IsGnd);
}

/// Whether one reset puts one state to 1 and the others to 0: a sweep over the states.
class ResetCheck {
public:
  bool Accepts(const Instance* state) {
    switch (state->Type()) {
    case PRIM_DFF: return AcceptsDff(state);
    case PRIM_DFFRS: return AcceptsDffrs(state);
    default: return false;
    }
  }

  bool IsClean() const {
    if (_other >= 2 && _same > 1) return false;
    return !_saw_dffrs || _num_set || !_num_reset;
  }

private:
  bool AcceptsDff(const Instance* state) {
    const Net* condition = state->GetAsyncCond();
    const Net* value = state->GetAsyncVal();
    if (!condition || !value) return false;
    if (!_condition) {
      _condition = condition;
      _value = value;
    }
    if (condition != _condition) return false;
    if (SameControl(value, _value))
      _same++;
    else if (AreInverse(value, _value) || (value->IsPwr() && _value->IsGnd()) || (value->IsGnd() && _value->IsPwr()))
      _other++;
    else
      return false;
    return true;
  }

  bool AcceptsDffrs(const Instance* state) {
    const Net* set = state->GetSet();
    const Net* reset = state->GetReset();
    if (!set || !reset || IsConnectedAndNot(state->GetALoad(), &Net::IsGnd)) return false;
    _saw_dffrs = true;
    if (!_set) {
      if (!set->IsGnd() && !reset->IsGnd()) return false;
      _set = set;
      _reset = reset;
    }
    _num_set += !set->IsGnd();
    _num_reset += !reset->IsGnd();
    if (SameControl(set, _set) && SameControl(reset, _reset))
      _same++;
    else if (SameControl(set, _reset) && SameControl(reset, _set))
      _other++;
    else
      return false;
    return true;
  }

  const Net* _condition = nullptr;
  const Net* _value = nullptr;
  const Net* _set = nullptr;
  const Net* _reset = nullptr;
  unsigned _same = 0;
  unsigned _other = 0;
  unsigned _num_set = 0;
  unsigned _num_reset = 0;
  bool _saw_dffrs = false;
};

} // namespace

Fsm::Fsm(const char* name, unsigned long linefile) : DesignObj(name, linefile) {}

Fsm::~Fsm() {
  for (auto [state, name] : States(_states)) Strings::free_string(name);
  delete _states;
  if (_owner) _owner->Remove(this);
}

void Fsm::SetName(const char* name) {
  Netlist* owner = _owner;
  if (owner) owner->Remove(this);
  Rename(name);
  if (owner) owner->Add(this);
}

Fsm* Fsm::Copy() const {
  auto* copy = new Fsm(nullptr, Linefile());
  copy->CopyNames(*this);
  copy->CopyFrom(*this);
  return copy;
}

unsigned Fsm::AddState(Instance* state_dff, const char* name) {
  KESTRIN_ASSERT(state_dff->Type() == PRIM_DFF || state_dff->Type() == PRIM_DFFRS);
  if (!_states) _states = new Map(HASH_POINTER);
  if (_states->GetItem(state_dff)) return 0;
  return _states->Insert(state_dff, Strings::save(name));
}

unsigned Fsm::RemoveState(Instance* state_dff) {
  if (!ContainsState(state_dff)) return 0;
  Strings::free_string(FromWord<char*>(_states->GetValue(state_dff)));
  return _states->Remove(static_cast<const void*>(state_dff));
}

unsigned Fsm::ContainsState(const Instance* state_dff) const { return _states && _states->GetItem(state_dff); }

unsigned Fsm::NumStates() const { return _states ? _states->Size() : 0; }

Instance* Fsm::GetStateAt(unsigned pos) const {
  if (pos >= NumStates()) return nullptr;
  return FromWord<Instance*>(_states->GetItemAt(pos)->Key());
}

Instance* Fsm::GetState(const char* name) const {
  for (auto [state, state_name] : States(_states))
    if (Strings::compare(state_name, name)) return state;
  return nullptr;
}

const char* Fsm::StateName(const Instance* state_dff) const {
  return _states ? FromWord<const char*>(_states->GetValue(state_dff)) : nullptr;
}

Net* Fsm::NextState(const Instance* state_dff) const { return state_dff ? state_dff->GetInput() : nullptr; }

Net* Fsm::ThisState(const Instance* state_dff) const { return state_dff ? state_dff->GetOutput() : nullptr; }

Net* Fsm::Clock() const {
  const Instance* state = GetStateAt(0);
  return state ? state->GetClock() : nullptr;
}

unsigned Fsm::HasCleanReset() const {
  ResetCheck check;
  for (auto [state, name] : States(_states))
    if (!check.Accepts(state)) return 0;
  return check.IsClean();
}

Instance* Fsm::ResetState(unsigned prefer_encoding) const {
  for (auto [state, name] : States(_states))
    if (HasAsynchronousOne(state)) return state;
  for (auto [state, name] : States(_states)) {
    const Instance* mux = DataMux(state);
    if (!mux) break;
    if (IsPwr(mux->GetInput2()) || IsPwr(mux->GetInput1())) return state;
  }
  if (prefer_encoding)
    for (auto [state, name] : States(_states)) {
      std::string_view encoding = UserEncoding(state) ? UserEncoding(state) : "";
      if (encoding.empty()) break;
      if (encoding.find_first_not_of('0') == std::string_view::npos) return state;
    }
  return GetStateAt(0);
}

Net* Fsm::Reset(unsigned prefer_encoding) const {
  const Instance* state = ResetState(prefer_encoding);
  if (!state) return nullptr;
  Net* reset = state->Type() == PRIM_DFFRS ? state->GetSet() : state->GetAsyncCond();
  if (IsConnectedAndNot(reset, &Net::IsGnd)) return reset;
  const Instance* mux = DataMux(state);
  if (!mux || !mux->GetControl()) return nullptr;
  if (IsPwr(mux->GetInput2())) return mux->GetControl();
  return IsPwr(mux->GetInput1()) ? mux->GetControl()->InvNet() : nullptr;
}

const char* Fsm::UserEncoding(const Instance* state_dff) const {
  if (!state_dff) return nullptr;
  if (const char* encoding = state_dff->GetAttValue(ATT_STATE_ENCODING)) return encoding;
  const Net* output = state_dff->GetOutput();
  return output ? output->GetAttValue(ATT_STATE_ENCODING) : nullptr;
}

void Fsm::ReorderStates() {
  if (!_states) return;
  Heap heap(static_cast<int>(NumStates()));
  std::vector<std::unique_ptr<UnsignedHeapNode>> nodes;
  for (auto [state, name] : States(_states)) {
    const Net* output = state->GetOutput();
    const char* position = state->GetAttValue(" :state_position");
    if (!position && output) position = output->GetAttValue(" :state_position");
    int i_pos = Strings::atoi(position);
    KESTRIN_ASSERT(i_pos >= 0);
    nodes.push_back(std::make_unique<UnsignedHeapNode>(static_cast<unsigned>(i_pos), state));
    heap.Insert(nodes.back().get());
  }
  auto* ordered = new Map(HASH_POINTER, NumStates());
  while (auto* node = static_cast<UnsignedHeapNode*>(heap.ExtractRoot()))
    ordered->Insert(node->Item(), _states->GetValue(node->Item()));
  delete _states;
  _states = ordered;
}

void Fsm::Dump(std::ostream& out, unsigned indent) const {
  auto line = [&]() -> std::ostream& {
    PrintLevel(out, indent);
    return out;
  };
  auto net_name = [](const Net* net) { return net->Name() ? net->Name() : " auto~"; };
  line() << "FSM Name: " << ExternalName() << "\n";
  if (!NumStates()) KESTRIN_REPORT_INTERNAL("this->NumStates() > 0");
  line() << "Number of states: " << NumStates() << "\n";
  if (Clock())
    line() << "Clock: " << net_name(Clock()) << "\n";
  else
    line() << "No Clock!!!\n";
  if (const Net* reset = Reset(0))
    line() << "Reset: " << net_name(reset) << "\n";
  else
    line() << "No Reset!!!\n";
  line() << (HasCleanReset() ? "Reset (if any) is clean!!!\n" : "Mission abort - Reset is NOT clean!!!\n");
  if (const Instance* state = ResetState(0)) line() << "Reset State: " << StateName(state) << "\n";
  line() << "Individual States: \n";
  for (auto [state, name] : States(_states)) line() << "  " << name << " (" << state->ExternalName() << ")\n";
}

bool kestrin_add_state(Net* net, Instance* state_dff) {
  const char* name = net->Name();
  const char* tmp = name ? std::strrchr(name, '.') : nullptr;
  KESTRIN_ASSERT_TEXT(tmp, "tmp");
  const char* state_name = tmp + 1;
  KESTRIN_ASSERT_TEXT(*state_name, "state_name");
  const std::string machine(name, tmp);
  Netlist* netlist = state_dff->Owner();
  Fsm* fsm = netlist->GetFsm(machine.c_str());
  const bool is_new = !fsm;
  if (is_new) {
    fsm = new Fsm(machine.c_str(), net->Linefile());
    netlist->Add(fsm);
    if (const char* encoding = net->GetAttValue(ATT_FSM_ENCODING)) fsm->AddAtt(ATT_FSM_ENCODING, encoding);
  }
  fsm->AddState(state_dff, state_name);
  if (const char* encoding = net->GetAttValue(ATT_STATE_ENCODING)) state_dff->AddAtt(ATT_STATE_ENCODING, encoding);
  for (ATT_ENUM moved : {ATT_STATE_ENCODING, ATT_FSM_ENCODING}) net->RemoveAtt(moved);
  return is_new;
}
