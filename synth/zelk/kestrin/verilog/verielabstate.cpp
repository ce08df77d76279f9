#include "verilog/verielabstate.h"

#include "database/net.h"
#include "database/netlist.h"
#include "verilog/veriid.h"
#include "verilog/verimodule.h"
#include "verilog/veriscope.h"
#include "verilog/veristatetable.h"

std::string VeriStringPath::CreateFullName(const char* name) const {
  std::string full = ToString();
  if (!full.empty()) full += '.';
  return full + name;
}

std::string VeriStringPath::ToString() const {
  std::string path;
  for (const std::string& name : _names) {
    if (!path.empty()) path += '.';
    path += name;
  }
  return path;
}

VeriElaborationState::VeriElaborationState(veri_elab_mode mode, VeriModule* module, Library* library, Netlist* netlist)
    : _mode(mode), _module(module), _library(library), _netlist(netlist) {
  _generated_root = new VeriScope(SCOPE_UNIT, nullptr, module ? module->GetId() : nullptr);
  _generated_stack.push_back(_generated_root);
}

VeriElaborationState::~VeriElaborationState() { delete _generated_root; }

Net* VeriElaborationState::ConstantNet(Net*& net, Net* (Netlist::*make)(unsigned long)) {
  if (net) return net;
  net = (_netlist->*make)(0);
  // Sweeps take a net that nothing reads at the moment, and values would go on using it. On a ring it stays, until the
  // wires of the finished netlist are resolved.
  auto* partner = new Net;
  _netlist->Add(partner);
  net->Wire(partner);
  return net;
}

Net* VeriElaborationState::Gnd() { return ConstantNet(_gnd, &Netlist::Gnd); }
Net* VeriElaborationState::Pwr() { return ConstantNet(_pwr, &Netlist::Pwr); }
Net* VeriElaborationState::X() { return ConstantNet(_x, &Netlist::X); }
Net* VeriElaborationState::Z() { return ConstantNet(_z, &Netlist::Z); }

void VeriElaborationState::AddEncodable(VeriVariable* variable) {
  if (auto table = VeriStateTable::Create(variable)) _encodables.push_back(std::move(table));
}

void VeriElaborationState::SetLoopLimits(int constant, int non_constant) {
  _constant_loop_limit = constant;
  _non_constant_loop_limit = non_constant;
}

void VeriElaborationState::RefuseRam(const VeriVariable* variable) {
  if (!_history) return;
  _history->refused_rams.Insert(variable->Template());
  _has_refused_rams = true;
}

bool VeriElaborationState::IsRefusedRam(const VeriVariable* variable) const {
  return _history && _history->refused_rams.Contains(variable->Template());
}

bool VeriElaborationState::IsNewReport() {
  _num_reports++;
  if (!_history) return true;
  if (_num_reports <= _history->num_reports) return false;
  _history->num_reports = _num_reports;
  return true;
}
