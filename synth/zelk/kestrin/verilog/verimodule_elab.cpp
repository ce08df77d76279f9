// Elaboration of a module with one parameter set: the frame of a run, its steps in order, and what comes out of it.
#include <climits>
#include <cstdlib>
#include <cstring>

#include "database/cell.h"
#include "database/library.h"
#include "database/libset.h"
#include "database/netlist.h"
#include "database/param.h"
#include "util/message.h"
#include "util/services.h"
#include "verilog/veri_file.h"
#include "verilog/verielabstate.h"
#include "verilog/verimodule.h"
#include "verilog/veriram.h"
#include "verilog/veriround.h"
#include "verilog/veristatetable.h"

namespace {

constexpr const char* black_box_view = "BlackBox";
/// The host's number for the value of a parameter.
constexpr int parameter_variable = 396;

Cell* FindOrAddCell(Library* library, const std::string& name, unsigned long linefile) {
  if (Cell* cell = library->GetCell(name.c_str())) return cell;
  auto* cell = new Cell(name.c_str(), linefile);
  library->Add(cell);
  return cell;
}

port_dir DirectionOf(unsigned token) {
  switch (token) {
  case VERI_INPUT: return DIR_INPUT;
  case VERI_OUTPUT: return DIR_OUTPUT;
  default: return DIR_INOUT;
  }
}

/// Only messages that a user has to see reach the host while the object lives.
class CriticalMessages {
public:
  CriticalMessages() : _were_hidden(Message::HidingMessages()) { Message::CriticalMessagesOnly(); }
  CriticalMessages(const CriticalMessages&) = delete;
  CriticalMessages& operator=(const CriticalMessages&) = delete;
  ~CriticalMessages() {
    if (!_were_hidden) Message::ShowAllMessages();
  }

private:
  unsigned _were_hidden;
};

/// The state of all identifiers of a scope is set aside while the object lives.
class ScopeStateGuard {
public:
  explicit ScopeStateGuard(const VeriScope* scope) : _scope(scope) { _scope->PushStack(); }
  ScopeStateGuard(const ScopeStateGuard&) = delete;
  ScopeStateGuard& operator=(const ScopeStateGuard&) = delete;
  ~ScopeStateGuard() { _scope->PopStack(); }

private:
  const VeriScope* _scope;
};

} // namespace

/// One run over the tree of a module, from the identifiers' reset to the ports.
class VeriModuleRun {
public:
  VeriModuleRun(VeriModule* module, Library* library, const Map* parameters, veri_elab_mode mode);
  VeriModuleRun(const VeriModuleRun&) = delete;
  VeriModuleRun& operator=(const VeriModuleRun&) = delete;

  /// The netlist with everything in it; the caller owns it. Errors are counted.
  std::unique_ptr<Netlist> Run();
  void SetHistory(VeriRunHistory* history) { _state.SetHistory(history); }
  /// The netlist is of no use: a variable was taken for a memory in vain.
  bool IsToBeRepeated() const { return _state.HasRefusedRams() && !HasErrors(); }

private:
  void OverrideParameters();
  void SetLoopLimits();
  void AddNetlistAttributes();
  void InitializePackages();
  void InitializeParameters();
  void MakeInterfacePorts();
  void GenerateObjects();
  void Prepare();
  void InitializeItems();
  void CheckUse() const;
  void ElaborateItems();
  void FinishRams();
  void CreatePorts();
  void CreatePort(const std::string& name, unsigned direction, VeriIdDef* id, const VeriTreeNode* from);
  void ApplyPortAttributes(const VeriVariable* port) const;
  void KeepResults();
  bool HasErrors() const { return Message::ErrorCount() != 0; }

  struct InterfacePort {
    VeriVariable* port;
    VeriGenerateRound round;
    std::vector<VeriInterfaceMember> members;
  };

  VeriModule* _module;
  Library* _library;
  const Map* _parameters;
  std::vector<InterfacePort> _interface_ports;
  std::unique_ptr<Netlist> _netlist;
  ScopeStateGuard _ids;
  VeriElaborationState _state;
  VeriElaborationScope _scope;
  VeriNodeScope _node;
};

VeriModuleRun::VeriModuleRun(VeriModule* module, Library* library, const Map* parameters, veri_elab_mode mode)
    : _module(module), _library(library), _parameters(parameters),
      _netlist(std::make_unique<Netlist>(mode == ELAB_BLACK_BOX ? black_box_view : "", module->Linefile())),
      _ids(module->GetScope()), _state(mode, module, library, _netlist.get()), _scope(&_state), _node(module) {
  _netlist->SetSourceLang(module->GetDialect() == VERI_SV ? DB_SOURCE_LANG_SYSTEM_VERILOG : DB_SOURCE_LANG_VERILOG);
  _state.SetParameters(const_cast<Map*>(parameters));
}

std::unique_ptr<Netlist> VeriModuleRun::Run() {
  _module->GetScope()->Apply([](VeriIdDef* id) { id->Reset(); });
  OverrideParameters();
  SetLoopLimits();
  AddNetlistAttributes();
  _module->ApplyAttributes(_netlist.get());
  InitializePackages();
  InitializeParameters();
  MakeInterfacePorts();
  if (_state.Mode() != ELAB_BLACK_BOX && !HasErrors()) {
    GenerateObjects();
    Prepare();
    InitializeItems();
    CheckUse();
    if (!HasErrors()) ElaborateItems();
  }
  if (!HasErrors() || _state.Mode() != ELAB_BLACK_BOX) CreatePorts();
  VeriModule::AddParamsToNetlist(_netlist.get(), _parameters);
  KeepResults();
  return std::move(_netlist);
}

void VeriModuleRun::OverrideParameters() {
  for (auto [name, value] : Entries<const char*, VeriExpression*>(_parameters)) {
    VeriParamId* id = _module->GetParam(name);
    if (!id) {
      if (*name != ' ' && !std::strchr(name, '.')) _module->Error("parameter %s is not defined in this module", name);
      continue;
    }
    if (!id->IsOverridable())
      id->Error("%s %s cannot be overwritten", VeriTreeNode::PrintToken(id->ParamToken()), name);
    else
      id->SetActual(value);
  }
}

void VeriModuleRun::SetLoopLimits() {
  int constant = kestrin_flag("zelk_verilog_constant_loop_limit");
  int non_constant = kestrin_flag("zelk_verilog_non_constant_loop_limit");
  // A flag that nobody set reads as 0; no design can do without loops.
  _state.SetLoopLimits(constant > 0 ? constant : _state.ConstantLoopLimit(),
                       non_constant > 0 ? non_constant : _state.NonConstantLoopLimit());
}

void VeriModuleRun::AddNetlistAttributes() {
  std::string unique_name = VeriModule::CreateUniqueName(_module->FullName().c_str(), _parameters);
  if (_module->IsCelldefine()) _netlist->AddAtt(" celldefine", "1");
  _netlist->AddAtt(" cell_name", _module->FullName().c_str());
  _netlist->AddAtt(" prototyped", "1");
  _netlist->AddAtt(" unique_name", unique_name.c_str());
  _netlist->AddAtt(" library_name", _library->Name() ? _library->Name() : "");
  if (_module->IsInterface()) _netlist->AddAtt(" interface", "1");
}

void VeriModuleRun::InitializePackages() {
  if (VeriLibrary* library = _module->GetLibrary()) library->Elaborate();
}

void VeriModuleRun::InitializeParameters() {
  _state.SetStage(ELAB_INITIALIZE);
  for (VeriParamId* id : _module->Params()) id->Initialize();
}

void VeriModuleRun::MakeInterfacePorts() {
  for (VeriVariable* port : _module->Ports()) {
    if (!port->InterfaceType()) continue;
    VeriModport* modport = nullptr;
    VeriModule* interface = veri_port_interface(port, _parameters, &modport);
    if (!interface) {
      // A generic port takes its interface from the instance: without one there is nothing to build.
      port->Error("can't declare object %s with interface type", port->Name());
      continue;
    }
    if (port->NumUnpacked()) {
      port->Error("can't declared unpacked array of interfaces");
      continue;
    }
    VeriGenerateRound round =
        veri_make_interface(interface, port->Name(), _parameters, std::string(port->Name()) + ".");
    _interface_ports.push_back({port, round, veri_interface_members(_module, port, interface, modport)});
  }
}

void VeriModuleRun::GenerateObjects() {
  _state.SetStage(ELAB_GENERATE_OBJECTS);
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_module->Items()))
    if (item) item->GenerateObjects();
}

/// Decides which variables are encoded by their states, before there are nets.
void VeriModuleRun::Prepare() {
  _state.SetStage(ELAB_PREPARE);
  if (_state.Mode() != ELAB_FULL || kestrin_flag("zelk_dont_infer_verilog_fsms") || HasErrors()) return;
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_module->Items()))
    if (item) item->Prepare();
  VeriStateTable::ProcessEncodableNetwork(_state.Encodables());
}

void VeriModuleRun::InitializeItems() {
  _state.SetStage(ELAB_INTERNALS);
  for (VeriVariable* port : _module->Ports())
    if (!port->InterfaceType()) port->Initialize();
  // Of a connected interface only the objects are seen here; its logic is where its instance is.
  for (const InterfacePort& port : _interface_ports) {
    VeriRoundScope scope(port.round);
    for (VeriIdDef* id : ValuesOf<VeriIdDef*>(&port.round.generated->Ids()))
      if (id->IsVar() && !static_cast<VeriVariable*>(id)->InterfaceType()) id->Initialize();
  }
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_module->Items()))
    if (item && !HasErrors()) item->Initialize();
}

// The objects of an interface are used where it is connected.
void VeriModuleRun::CheckUse() const {
  if (_module->IsInterface()) return;
  _module->GetScope()->CheckUse();
  _state.GeneratedRoot()->CheckUse();
}

void VeriModuleRun::FinishRams() {
  for (VeriVariable* variable : _state.InferredRams())
    if (VeriDualPortValue* memory = variable->GetValue() ? variable->GetValue()->AsDualPort() : nullptr)
      memory->Ram().Finish();
}

void VeriModuleRun::ElaborateItems() {
  if (_module->IsPrimitive() && _state.Mode() == ELAB_HIERARCHY_ONLY) return;
  _module->ElaborateContents();
  FinishRams();
  for (VeriDefParamAssign* assign : KeysOf<VeriDefParamAssign*>(&_state.Defparams()))
    if (!_state.TakenDefparams().Contains(assign)) assign->ReportUnresolved();
}

void VeriModule::ElaborateContents() {
  for (VeriExpression* port : ItemsOf<VeriExpression*>(_port_expressions))
    if (auto* ansi = dynamic_cast<VeriAnsiPortDecl*>(port)) ansi->Decl()->Elaborate();
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_items)) {
    if (veri_file::CheckForInterrupt(Linefile())) return;
    if (item) item->Elaborate();
  }
}

void VeriModuleRun::CreatePort(const std::string& name, unsigned direction, VeriIdDef* id, const VeriTreeNode* from) {
  const VeriConstraint* type = id->GetConstraint();
  if (!type) return;
  if (type->IsRealRange()) return id->Error("synthesis of 'real' values is not supported");
  if (const VeriValue* nets = id->GetValue()) {
    nets->CreatePorts(name.c_str(), DirectionOf(direction), *type, from);
    return;
  }
  Array ports;
  type->CreatePorts(_netlist.get(), name.c_str(), DirectionOf(direction), id->Linefile(), ports);
}

void VeriModuleRun::CreatePorts() {
  size_t next_interface = 0;
  for (VeriVariable* port : _module->Ports()) {
    const VeriTreeNode* from = port->GetModuleItem() ? port->GetModuleItem() : _module;
    if (!port->InterfaceType()) {
      CreatePort(port->Name(), port->Dir(), port, from);
      ApplyPortAttributes(port);
      continue;
    }
    if (next_interface >= _interface_ports.size() || _interface_ports[next_interface].port != port) continue;
    const InterfacePort& object = _interface_ports[next_interface++];
    for (const VeriInterfaceMember& member : object.members)
      if (VeriIdDef* id = object.round.generated->FindHere(member.name.c_str()); id && id->IsVar())
        CreatePort(std::string(port->Name()) + "." + member.name, member.direction, id, from);
  }
}

/// What the declaration asks of a port stands on its vector, or on the port of a single bit.
void VeriModuleRun::ApplyPortAttributes(const VeriVariable* port) const {
  const VeriTreeNode* declaration = port->GetModuleItem();
  if (!declaration) return;
  DesignObj* object = _netlist->GetPortBus(port->Name());
  if (!object) object = _netlist->GetPort(port->Name());
  if (object) declaration->ApplyAttributes(object);
}

/// What is asked for after the run, when the identifiers have their former state back.
void VeriModuleRun::KeepResults() {
  _module->_elaborated_parameters.clear();
  for (VeriParamId* id : _module->Params())
    if (const VeriValue* value = id->GetValue())
      _module->_elaborated_parameters.emplace_back(id->Name(), value->ParamString());
  auto& types = _module->_port_types[VeriModule::CreateUniqueName(_module->FullName().c_str(), _parameters)];
  types.clear();
  for (VeriVariable* port : _module->Ports())
    if (const VeriConstraint* type = port->InterfaceType() ? nullptr : port->GetConstraint())
      types[port->Name()] = type->Copy();
  for (const InterfacePort& port : _interface_ports)
    for (const VeriInterfaceMember& member : port.members)
      if (VeriIdDef* id = port.round.generated->FindHere(member.name.c_str()); id && id->GetConstraint())
        types[std::string(port.port->Name()) + "." + member.name] = id->GetConstraint()->Copy();
}

OwnedConstraint VeriModule::PortType(const Netlist* view, const char* port) const {
  const Cell* cell = view->Owner();
  auto types = cell ? _port_types.find(cell->Name()) : _port_types.end();
  if (types == _port_types.end()) return nullptr;
  auto type = types->second.find(port);
  return type == types->second.end() ? nullptr : type->second->Copy();
}

/// Until all variables that were taken for memories have become such.
std::unique_ptr<Netlist> VeriModule::Run(Library* library, const Map* parameters, veri_elab_mode mode) {
  VeriRunHistory history;
  for (;;) {
    VeriModuleRun run(this, library, parameters, mode);
    run.SetHistory(&history);
    std::unique_ptr<Netlist> netlist = run.Run();
    if (!run.IsToBeRepeated()) return netlist;
  }
}

Netlist* VeriModule::Elaborate(Library* library, const Map* parameters, bool hierarchy_only) {
  ProfileScope profile("VeriModule::Elaborate");
  VeriDialectScope dialect(GetDialect());
  VeriLibrary* former = veri_file::WorkLibrary();
  if (GetLibrary()) veri_file::SetWorkLibrary(GetLibrary());
  Resolve();
  _is_elaborated = true;
  veri_elab_mode mode = ELAB_FULL;
  if (HasAttribute("norvel_reserved_lsx_blackbox") && AttributeValue("norvel_reserved_lsx_blackbox", 0))
    mode = ELAB_BLACK_BOX;
  else if (hierarchy_only || kestrin_flag("verilog_elaborate_hierarchy_only"))
    mode = ELAB_HIERARCHY_ONLY;
  Info("compiling module %s", Name());
  std::string name = CreateUniqueName(FullName().c_str(), parameters);
  std::unique_ptr<Netlist> owned;
  if (!Message::ErrorCount()) owned = Run(library, parameters, mode);
  veri_file::SetWorkLibrary(former);
  if (!owned) return nullptr;
  owned->SetName("");
  if (Message::ErrorCount())
    owned->MakeBlackBox();
  else if (mode == ELAB_FULL)
    owned->Polish();
  else
    owned->ResolveWires();
  Netlist* netlist = owned.release();
  Cell* cell = FindOrAddCell(library, name, Linefile());
  if (Netlist* old = cell->GetNetlist("")) {
    Info("replacing existing cell %s", name.c_str());
    old->ReplaceReferences(netlist, 1);
    delete old;
  }
  cell->Add(netlist);
  netlist->SetPresentDesign();
  return netlist;
}

Netlist* VeriModule::ElaborateBlackBox(Library* library, const Map* parameters) {
  std::string name = CreateUniqueName(FullName().c_str(), parameters);
  Cell* cell = FindOrAddCell(library, name, Linefile());
  if (Netlist* view = cell->GetNetlist(black_box_view)) return view;
  VeriDialectScope dialect(GetDialect());
  CriticalMessages quiet;
  std::unique_ptr<Netlist> view = VeriModuleRun(this, library, parameters, ELAB_BLACK_BOX).Run();
  if (!view || Message::ErrorCount()) return nullptr;
  // Nothing but ports: the constants that were asked for on the way go.
  view->MakeBlackBox();
  cell->Add(view.get());
  return view.release();
}

// Parameter sets.

std::string VeriModule::CreateUniqueName(const char* name, const Map* parameters) {
  std::string unique = name;
  const char* separator = "(";
  for (auto [key, value] : Entries<const char*, VeriExpression*>(parameters)) {
    unique += separator;
    unique += key;
    unique += ",";
    unique += value->Image();
    separator = ",";
  }
  if (*separator == ',') unique += ")";
  return unique;
}

void VeriModule::DeleteParams(Map* parameters) {
  for (auto [name, value] : Entries<char*, VeriExpression*>(parameters)) {
    Strings::free_string(name);
    delete value;
  }
  delete parameters;
}

namespace {

/// A constant as the host writes it.
std::string HostNotation(const VeriValue& value, const char** type) {
  if (value.IsReal()) {
    *type = "PARAMETER_SIGNED_FLOAT";
    return "F\"" + value.ParamString() + "\"";
  }
  const VeriVectorValue* vector = value.AsVector();
  if (vector && value.IsString()) {
    *type = "PARAMETER_STRING";
    return "S\"" + vector->Characters() + "\"";
  }
  if (value.IsInt()) {
    *type = "PARAMETER_SIGNED_DEC";
    return "D\"" + std::to_string(value.Integer()) + "\"";
  }
  *type = value.IsSigned() ? "PARAMETER_SIGNED_BIN" : "PARAMETER_UNSIGNED_BIN";
  return (value.IsSigned() ? "SB\"" : "B\"") + value.BinaryString() + "\"";
}

} // namespace

void VeriModule::AddParamsToNetlist(Netlist* view, const Map* parameters) {
  for (auto [name, value] : Entries<const char*, VeriExpression*>(parameters)) {
    OwnedValue constant = value->Evaluate(nullptr);
    if (!constant || !constant->IsConstant()) continue;
    const char* type = nullptr;
    std::string text = HostNotation(*constant, &type);
    view->AddParam(name, text.c_str(), type, parameter_variable);
  }
}

namespace {

struct HostForm {
  const char* prefix;
  char kind; // s string, b binary, r bit, d decimal, f float, o octal, h hexadecimal, a array
  bool is_signed;
};

// Longer prefixes first; letters stand for both cases where the host writes both.
constexpr HostForm host_forms[] = {
    {"SB", 'b', true},  {"SO", 'o', true},  {"SQ", 'o', true},  {"UD", 'd', false}, {"ud", 'd', false},
    {"Ud", 'd', false}, {"uD", 'd', false}, {"UF", 'f', false}, {"uf", 'f', false}, {"Uf", 'f', false},
    {"uF", 'f', false}, {"S", 's', false},  {"s", 's', false},  {"B", 'b', false},  {"R", 'r', false},
    {"r", 'r', false},  {"D", 'd', true},   {"d", 'd', true},   {"F", 'f', true},   {"f", 'f', true},
    {"O", 'o', false},  {"Q", 'o', false},  {"X", 'h', false},  {"H", 'h', false},
};

bool IsInteger(const std::string& text) {
  size_t start = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  return start < text.size() && text.find_first_not_of("0123456789", start) == std::string::npos;
}

OwnedValue FromDecimal(const std::string& text, bool is_signed) {
  if (!IsInteger(text)) return nullptr;
  bool is_negative = text[0] == '-';
  std::string digits = text.substr(text[0] == '-' || text[0] == '+');
  errno = 0;
  long long number = std::strtoll(text.c_str(), nullptr, 10);
  if (!errno && number >= INT_MIN && number <= INT_MAX) {
    OwnedValue value = VeriValue::FromInteger(static_cast<int>(number));
    if (!is_signed) value->SetUnsigned();
    return value;
  }
  // As many bits as the digits can need, and a sign.
  auto width = static_cast<unsigned>(digits.size() * 10 / 3 + 2);
  OwnedValue value = VeriValue::FromLiteral(std::to_string(width) + "'sd" + digits);
  if (value && is_negative) value = VeriValue::Unary(VERI_OPER_UNARY_MINUS, std::move(value));
  return value;
}

OwnedValue FromTypedText(const HostForm& form, const std::string& text) {
  std::string sign = form.is_signed ? "s" : "";
  auto based = [&](const char* base, size_t bits) {
    return VeriValue::FromLiteral(std::to_string(text.size() * bits) + "'" + sign + base + text);
  };
  switch (form.kind) {
  case 's': {
    OwnedValue value = VeriValue::FromString(text);
    if (value) value->SetIsString();
    return value;
  }
  case 'b': return based("b", 1);
  case 'r': return VeriValue::FromLiteral("1'b" + text);
  case 'o': return based("o", 3);
  case 'h': return based("h", 4);
  case 'd': {
    size_t start = text.find_first_not_of(' ');
    return start == std::string::npos ? nullptr : FromDecimal(text.substr(start), form.is_signed);
  }
  case 'f': {
    char* end = nullptr;
    double number = std::strtod(text.c_str(), &end);
    return end && *end == 0 && !text.empty() ? VeriValue::FromReal(number) : nullptr;
  }
  default: return nullptr;
  }
}

/// A parameter's value in the host's notation; null when it has no known form.
OwnedValue FromHostNotation(const std::string& text) {
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
    return FromTypedText({"", 's', false}, text.substr(1, text.size() - 2));
  size_t quote = text.find('"');
  if (quote != std::string::npos && quote > 0 && text.back() == '"' && text.size() > quote + 1)
    for (const HostForm& form : host_forms)
      if (text.compare(0, quote, form.prefix) == 0)
        return FromTypedText(form, text.substr(quote + 1, text.size() - quote - 2));
  if (OwnedValue number = FromDecimal(text, true)) return number;
  if (OwnedValue literal = VeriValue::FromLiteral(text)) return literal;
  if (text.size() > 1 && text[0] == '-')
    if (OwnedValue literal = VeriValue::FromLiteral(text.substr(1)))
      return VeriValue::Unary(VERI_OPER_UNARY_MINUS, std::move(literal));
  return nullptr;
}

} // namespace

Map* VeriModule::CreateActualParameters(const Map* host_parameters) {
  auto* parameters = new Map(HASH_STRING);
  for (const Param* param : ValuesOf<Param*>(host_parameters)) {
    const char* name = param->Name();
    if (!name || !param->Value()) continue;
    // What is no number is the text of a string parameter.
    OwnedValue value = FromHostNotation(param->Value());
    if (!value) value = FromTypedText({"", 's', false}, param->Value());
    if (!value) continue;
    char* key = Strings::save(name);
    std::unique_ptr<VeriExpression> literal = VeriExpression::ToConstantExpression(*value, Linefile());
    if (parameters->Insert(key, literal.get()))
      literal.release();
    else
      Strings::free_string(key);
  }
  return parameters;
}
