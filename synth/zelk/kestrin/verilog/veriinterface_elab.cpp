// Elaboration of interfaces: their objects live in the netlist of the module that instantiates them, in a generated
// scope under the name of the instance; a port that is an interface has a scope of the same kind under its own name,
// whose objects become ports "port.name" of the netlist.
#include <set>

#include "verilog/veri_file.h"
#include "verilog/verimodule.h"
#include "verilog/veriround.h"
#include "verilog/veristatement.h"
#include "verilog/verivisitor.h"

std::string veri_interface_name_key(const char* port) { return std::string(" interface_name(") + port + ")"; }
std::string veri_modport_name_key(const char* port) { return std::string(" modport_name(") + port + ")"; }

std::vector<std::string> veri_interface_parameter_names(const VeriModule* module) {
  std::vector<std::string> names;
  for (const VeriVariable* port : module->Ports()) {
    if (!port->InterfaceType()) continue;
    const VeriModule* interface = port->GetInterface();
    if (!interface) names.push_back(veri_interface_name_key(port->Name()));
    if (!port->GetModport()) names.push_back(veri_modport_name_key(port->Name()));
    if (!interface) continue;
    for (const VeriParamId* param : interface->OverridableParams())
      names.push_back(std::string(port->Name()) + "." + param->Name());
  }
  return names;
}

VeriGenerateRound veri_make_interface(VeriModule* interface, const std::string& label, const Map* parameters,
                                      const std::string& prefix) {
  interface->Resolve();
  VeriGenerateRound round;
  round.label = label;
  round.items = interface->Items();
  round.generated = interface->GetScope()->Generate(VeriNode::ElabState()->CurrentGenerated(), label);
  VeriRoundScope scope(round);
  for (VeriParamId* param : interface->Params()) {
    auto* object = static_cast<VeriParamId*>(param->Current());
    auto* value =
        parameters ? FromWord<VeriExpression*>(parameters->GetValue((prefix + param->Name()).c_str())) : nullptr;
    object->SetActual(param->IsOverridable() ? value : nullptr);
  }
  for (VeriParamId* param : interface->Params()) param->Current()->Initialize();
  for (VeriParamId* param : interface->Params()) static_cast<VeriParamId*>(param->Current())->SetActual(nullptr);
  // The types are found while the scope is entered: names that lead into it are evaluated outside.
  for (VeriIdDef* id : ValuesOf<VeriIdDef*>(&round.generated->Ids()))
    if (id->IsVar()) id->GetConstraint();
  veri_for_each_item(round, [](VeriModuleItem* item) { item->GenerateObjects(); });
  return round;
}

namespace {

/// The text that an instance has given under a key; empty without.
std::string TextUnder(const Map* parameters, const std::string& key) {
  auto* literal = parameters ? FromWord<VeriExpression*>(parameters->GetValue(key.c_str())) : nullptr;
  OwnedValue value = literal ? literal->Evaluate(nullptr) : nullptr;
  const VeriVectorValue* text = value ? value->AsVector() : nullptr;
  return text ? text->Characters() : "";
}

/// Collects the members of an interface port that a module assigns, or connects to outputs of instances.
class WrittenMembers : public VeriVisitor {
public:
  WrittenMembers(const VeriVariable* port, std::set<std::string>* names, std::set<const VeriVariable*>* seen)
      : _port(port), _names(names), _seen(seen) {}

  void Visit(VeriNetRegAssign& node) override {
    Note(node.Target());
    VeriVisitor::Visit(node);
  }
  void Visit(VeriAssignmentOperator& node) override {
    Note(node.Target());
    VeriVisitor::Visit(node);
  }
  void Visit(VeriModuleInstantiation& node) override {
    VeriModule* module = node.FindModule();
    for (VeriInst* inst : *node.Insts())
      if (module) NoteConnections(*inst, *module);
  }
  void Visit(VeriSelectedName& node) override {
    const VeriName* prefix = node.GetPrefix();
    if (_is_target && prefix->GetClassId() == ID_VeriIdRef && prefix->GetId() == _port)
      _names->insert(node.GetSuffix());
    VeriVisitor::Visit(node);
  }
  void Visit(VeriIndexedName& node) override {
    if (!_is_target) return VeriVisitor::Visit(node);
    TraverseNode(node.GetPrefix());
  }

private:
  void Note(VeriExpression* target) {
    _is_target = true;
    TraverseNode(target);
    _is_target = false;
  }
  void NoteConnections(const VeriInst& inst, VeriModule& module);

  const VeriVariable* _port;
  std::set<std::string>* _names;
  std::set<const VeriVariable*>* _seen;
  bool _is_target = false;
};

std::set<std::string> WrittenNames(const VeriModule* module, const VeriVariable* port,
                                   std::set<const VeriVariable*>* seen) {
  std::set<std::string> names;
  if (!seen->insert(port).second) return names;
  WrittenMembers visitor(port, &names, seen);
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(module->Items()))
    if (item) visitor.TraverseNode(item);
  return names;
}

void WrittenMembers::NoteConnections(const VeriInst& inst, VeriModule& module) {
  unsigned position = 0;
  for (VeriExpression* connect : ItemsOf<VeriExpression*>(inst.Connects())) {
    const auto* named = dynamic_cast<const VeriPortConnect*>(connect);
    const char* formal = named ? named->NamedFormal() : nullptr;
    VeriExpression* actual = named ? named->Connection() : connect;
    const VeriVariable* port = nullptr;
    if (formal)
      port = module.GetPort(formal);
    else if (position < module.Ports().size())
      port = module.Ports()[position];
    position++;
    if (!port || !actual) continue;
    if (!port->InterfaceType()) {
      if (port->Dir() != VERI_INPUT) Note(actual);
      continue;
    }
    const VeriName* name = actual->AsName();
    if (!name || name->GetId() != _port) continue;
    if (VeriModport* modport = port->GetModport()) {
      for (VeriModportPorts* member : *modport->Ports())
        if (member->Direction() != VERI_INPUT) _names->insert(member->GetId()->Name());
      continue;
    }
    std::set<std::string> below = WrittenNames(&module, port, _seen);
    _names->insert(below.begin(), below.end());
  }
}

} // namespace

VeriModule* veri_port_interface(const VeriVariable* port, const Map* parameters, VeriModport** modport) {
  VeriModule* interface = port->GetInterface();
  if (!interface) {
    std::string name = TextUnder(parameters, veri_interface_name_key(port->Name()));
    VeriModule* present = VeriNode::ElabState() ? VeriNode::ElabState()->Module() : nullptr;
    if (!name.empty()) interface = veri_file::FindModule(name.c_str(), present ? present->GetLibrary() : nullptr);
    if (interface && !interface->IsInterface()) interface = nullptr;
    if (interface) interface->Resolve();
  }
  *modport = port->GetModport();
  std::string name = TextUnder(parameters, veri_modport_name_key(port->Name()));
  if (interface && !*modport && !name.empty()) *modport = interface->GetModport(name.c_str());
  return interface;
}

std::vector<VeriInterfaceMember> veri_interface_members(const VeriModule* module, const VeriVariable* port,
                                                        const VeriModule* interface, const VeriModport* modport) {
  std::vector<VeriInterfaceMember> members;
  if (modport) {
    for (VeriModportPorts* member : *modport->Ports())
      if (!member->IsSubprogram())
        members.push_back({member->GetId()->Name(), member->Direction(), member->Expression()});
    return members;
  }
  std::set<const VeriVariable*> seen;
  std::set<std::string> written = WrittenNames(module, port, &seen);
  auto add = [&](const VeriIdDef* id) {
    if (!id || !id->IsVar()) return;
    bool is_written = written.count(id->Name()) != 0;
    members.push_back({id->Name(), static_cast<unsigned>(is_written ? VERI_OUTPUT : VERI_INPUT), nullptr});
  };
  for (const VeriVariable* own : interface->Ports())
    if (!own->InterfaceType()) add(own);
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(interface->Items())) {
    auto* decl = dynamic_cast<VeriDataDecl*>(item);
    if (!decl) continue;
    for (VeriIdDecl* id : *decl->Ids())
      if (id->GetId() && !id->GetId()->IsPort()) add(id->GetId());
  }
  return members;
}
