// Buffers: those that keep a net with its name, those that stood between user nets during elaboration, and those that
// let a value pass one way only, next to bidirectional nets; and tristate buffers that are always enabled.
#include <vector>

#include "database/polish.h"
#include "database/primitives.h"
#include "util/services.h"

namespace {
bool IsBuffer(const Instance* inst, buffer_type_enum type) {
  return inst && inst->Type() == PRIM_BUF && inst->BufferType() == type;
}

bool TouchesBidir(const Net* net) { return net->GetFirstPort(DIR_INOUT) || net->GetFirstTrueBidirPortRef(); }

/// Finds for each net that has to stay the instance that carries its name in the host's netlist.
class KeeperPass {
public:
  explicit KeeperPass(Netlist* netlist)
      : _netlist(netlist), _is_debugging(kestrin_flag("zelk_debug_keep") != 0),
        _is_debugging_ip(kestrin_flag("zelk_enable_ip_debug") != 0) {}

  void Run() {
    for (Net* net : NetsOf(_netlist)) ProcessKeep(net);
    if (_is_debugging)
      kestrin_debug("Added keep buffers to %d/%d nets with keep attributes", _num_keepers, _num_kept_nets);
  }

private:
  enum class Keeper { FOUND, MADE, NOT_WANTED, NONE };

  bool HasToStay(const Net* net) const {
    if (!net->HasAtts()) return false;
    if (net->IsAttOn(ATT_KEEP) || net->GetAtt(ATT_MAXFAN) || net->IsAttOn(ATT_DIRECT_ENABLE)) return true;
    return _is_debugging_ip && (net->IsAttOn(ATT_IP_DEBUG_VISIBLE) || net->GetAtt(ATT_IP_DEBUG_ALIAS));
  }

  void ProcessKeep(Net* net) {
    const bool is_forced = net->HasAtts() && net->GetAtt("requires_keep_buffer");
    if (!HasToStay(net) && !is_forced) return;
    _num_kept_nets++;
    switch (HuntForKeeper(net)) {
    case Keeper::MADE: _num_keepers++; break;
    case Keeper::NOT_WANTED: net->RemoveAtt(ATT_KEEP); break;
    case Keeper::NONE:
      if (net->GetFirstPort(DIR_INPUT)) break; // the port keeps it
      Debug("Couldn't find appropriate keeper");
      if (!net->GetFirstPort(DIR_INOUT)) break;
      Debug("Removing keep attribute from net w/o keeper and w/ direct connection to bidir port");
      net->RemoveAtt(ATT_KEEP);
      break;
    case Keeper::FOUND: break;
    }
  }

  Keeper HuntForKeeper(Net* net) {
    Debug("Hunting for keeper...");
    Instance* buffer = nullptr;
    for (const PortRef* ref : DriversOf(net)) {
      Instance* driver = ref->GetInst();
      if (driver->Type() == PRIM_TRI) return Keeper::NOT_WANTED;
      if (IsNamedRegister(driver, net)) {
        Debug("Using DFF driver as keeper");
        return Keeper::FOUND;
      }
      if (driver->Type() == PRIM_BUF && !buffer) buffer = driver;
    }
    if (!buffer) return Keeper::NONE;
    const Net* input = buffer->GetInput();
    if (input && input->Driver() && IsNamedRegister(input->Driver(), net)) {
      Debug("Using indirect DFF driver as keeper");
      return Keeper::FOUND;
    }
    Debug("Using buffer driver as keeper");
    buffer->ChangeBufferType(KEEP);
    GiveName(buffer, net);
    return Keeper::MADE;
  }

  static bool IsNamedRegister(const Instance* driver, const Net* net) {
    return kestrin_is_register_type(driver->Type()) && net->Name() && std::string(net->Name()) == driver->Name();
  }

  void GiveName(Instance* keeper, const Net* net) const {
    if (!net->Name()) return;
    const Instance* holder = _netlist->GetInst(net->Name());
    if (holder == keeper) return;
    if (holder)
      Debug("Can't rename keeper because another instance in the current netlist stole the name!");
    else
      keeper->SetName(net->Name());
  }

  void Debug(const char* text) const {
    if (_is_debugging) kestrin_debug("%s", text);
  }

  Netlist* _netlist;
  bool _is_debugging;
  bool _is_debugging_ip;
  int _num_keepers = 0;
  int _num_kept_nets = 0;
};
} // namespace

void Netlist::ProcessKeepAttributes() { KeeperPass(this).Run(); }

namespace {
bool HasTristateDriver(const Net* net) {
  for (const PortRef* ref : DriversOf(net))
    if (ref->GetInst()->Type() == PRIM_TRI) return true;
  return false;
}

/// Whether a driver holds its net all the time, as seen through the buffers between user nets. What comes from a port
/// or from a user instance does not count.
bool IsAlwaysEnabled(const PortRef* ref) {
  Set visited;
  while (IsBuffer(ref->GetInst(), USER_NET) && visited.Insert(ref->GetInst())) {
    const Net* input = ref->GetInst()->GetInput();
    if (!input || input->GetFirstPort(DIR_INPUT) || input->GetFirstPort(DIR_INOUT)) return false;
    if (HasTristateDriver(input) || !input->DrivingPortRef()) return false;
    ref = input->DrivingPortRef();
  }
  switch (ref->GetInst()->Type()) {
  case PRIM_NONE:
  case PRIM_Z:
  case PRIM_TRI:
  case PRIM_PULLUP:
  case PRIM_PULLDOWN:
  case PRIM_NMOS:
  case PRIM_PMOS:
  case PRIM_CMOS:
  case PRIM_TRAN: return false;
  default: return true;
  }
}
} // namespace

PortRef* Net::AlwaysEnabledDrivingPortRef() {
  for (PortRef* ref : DriversOf(this))
    if (IsAlwaysEnabled(ref)) return ref;
  return nullptr;
}

void Netlist::AddAlwaysEnabledTristateBuffers() {
  std::vector<Net*> shared;
  for (Net* net : NetsOf(this))
    if (HasTristateDriver(net) && !net->GetFirstPort(DIR_INPUT) && !net->GetFirstPort(DIR_INOUT)) shared.push_back(net);
  SharedConstants constants(this);
  for (Net* net : shared) {
    while (PortRef* driver = net->AlwaysEnabledDrivingPortRef()) {
      Instance* inst = driver->GetInst();
      Port* port = driver->GetPort();
      Net* input = ReverseTristate(net, constants.Pwr(), inst->Linefile());
      kestrin_get_fanout(input, PRIM_TRI, GET_FANOUT_FIRST)->AddAtt(" :tri", "");
      inst->Reconnect(port, input);
    }
  }
}

namespace {
/// Takes away the buffers that kept user nets apart during elaboration.
class UserNetBufferPass {
public:
  explicit UserNetBufferPass(Netlist* netlist)
      : _netlist(netlist), _adds_directional(!kestrin_flag("zelk_dont_add_directional_buffers")) {}

  void Run() {
    ForEachInstanceOf(PrimBuf::Static(USER_NET), _netlist, [this](Instance* buf) {
      _num_buffers++;
      Process(buf);
    });
    Report("Swept %d buffers with feedback", _num_feedback);
    Report("Kept %d buffer(s) protecting undriven nets", _num_undriven);
    Report("Kept %d constant buffer(s) feeding bidirs", _num_constant);
    Report("Converted %d to directional buffers", _num_directional);
    Report("Kept %d buffer(s) between incompatible nets", _num_incompatible);
    Report("Kept %d buffer(s) w/ attributes", _num_attributed);
    kestrin_debug("Swept %d/%d user net buffers", _num_swept, _num_buffers);
  }

private:
  void Process(Instance* buf) {
    Net* input = buf->GetInput();
    Net* output = buf->GetOutput();
    if (!output || input == output) {
      delete buf;
      _num_feedback++;
      _num_swept++;
    } else if (!input || kestrin_is_undriven(input)) {
      _num_undriven++;
      if (!buf->HasAtts()) output->AddAtt(" :undriven", "");
    } else if (input->IsConstant() && FeedsBidir(output)) {
      ProcessConstant(buf, input, output);
    } else if (_adds_directional && (TouchesBidir(input) || TouchesBidir(output))) {
      buf->ChangeBufferType(DIRECTIONAL);
      _num_directional++;
    } else {
      Sweep(buf, input, output);
    }
  }

  static unsigned NumOfInoutRefs(const Net* net) {
    unsigned count = 0;
    for (const PortRef* ref : DriversOf(net)) count += ref->Direction() == DIR_INOUT;
    return count;
  }
  static bool FeedsBidir(const Net* output) { return output->GetFirstPort(DIR_INOUT) || NumOfInoutRefs(output); }

  /// A constant on a bidirectional pin: alone on the net it becomes a mark on it.
  void ProcessConstant(Instance* buf, const Net* input, Net* output) {
    const bool is_alone = !output->NumOfPorts() && output->NumOfPortRefs() == 2 && NumOfInoutRefs(output) == 1;
    if (!is_alone || input->IsZ()) {
      buf->ChangeBufferType(CONSTANT);
      _num_constant++;
      return;
    }
    output->AddAtt(input->IsPwr() ? ATT_VCC : ATT_GND, "");
    delete buf;
    _num_swept++;
  }

  void Sweep(Instance* buf, Net* input, Net* output) {
    if (buf->HasAtts()) {
      _num_attributed++;
      return;
    }
    // Through an output that others drive as well, the input would get their values.
    if (output->HasMultipleDrivers() || !input->IsCompatible(output, /*allow_bidir*/ 1)) {
      _num_incompatible++;
      return;
    }
    delete buf;
    input->Wire(output);
    input->ResolveWires();
    _num_swept++;
  }

  static void Report(const char* format, int count) {
    if (count) kestrin_debug(format, count);
  }

  Netlist* _netlist;
  bool _adds_directional;
  int _num_buffers = 0;
  int _num_swept = 0;
  int _num_feedback = 0;
  int _num_undriven = 0;
  int _num_constant = 0;
  int _num_directional = 0;
  int _num_incompatible = 0;
  int _num_attributed = 0;
};
} // namespace

void Netlist::RemoveUserNetBuffers() {
  ProfileScope scope("***Removing temporary user net buffers***");
  UserNetBufferPass(this).Run();
}

namespace {
/// Moves the loads of a bidirectional net behind a buffer, so that none of them can drive it.
void MoveLoadsBehindBuffer(Netlist* netlist, Net* net) {
  std::vector<PortRef*> loads;
  for (PortRef* ref : LoadsOf(net))
    if (!IsBuffer(ref->GetInst(), DIRECTIONAL)) loads.push_back(ref);
  if (loads.empty()) return;
  Net* behind = netlist->DirectionalBuf(net, net->Linefile());
  if (net->Name()) {
    std::string name;
    const std::string base = std::string(net->Name()) + "~direct";
    netlist->UniquifyBaseNetName(name, base.c_str(), nullptr, "direct", "~");
    behind->SetName(name.c_str());
  }
  for (auto load = loads.rbegin(); load != loads.rend(); ++load) {
    Instance* inst = (*load)->GetInst();
    inst->Reconnect((*load)->GetPort(), behind);
  }
}
} // namespace

void Netlist::AddExtraDirectionalBuffers() {
  ProfileScope scope("***Adding extra directional buffers***");
  if (kestrin_flag("zelk_dont_add_directional_buffers")) return;
  std::vector<Net*> bidirectional;
  for (Net* net : NetsOf(this))
    if (TouchesBidir(net)) bidirectional.push_back(net);
  for (Net* net : bidirectional) MoveLoadsBehindBuffer(this, net);
}
