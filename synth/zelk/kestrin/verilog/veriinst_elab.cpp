// Elaboration of instances: parameters, the port-level view of what is instantiated, connections; and of gates.
#include <algorithm>
#include <set>

#include "database/cell.h"
#include "database/instance.h"
#include "database/library.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/views.h"
#include "util/services.h"
#include "verilog/veri_file.h"
#include "verilog/veri_lex.h"
#include "verilog/vericheck.h"
#include "verilog/verielabstate.h"
#include "verilog/verimodule.h"
#include "verilog/verinets.h"
#include "verilog/veriround.h"

namespace {

constexpr const char* named_ports_view = "NamedPorts";
constexpr const char* ordered_ports_view = "OrderedPorts";

/// The one-bit ports of a bus, left to right through all levels.
void CollectPorts(DesignObj* object, Array& ports) {
  if (object->ObjectType() == DB_PORT) {
    ports.Insert(object);
    return;
  }
  for (DesignObj* element : ElementsOf(static_cast<PortBus*>(object))) CollectPorts(element, ports);
}

/// The one-bit ports that a port of the source became, most significant first; empty when there is none of that name.
void FindPorts(const Netlist* view, const std::string& name, Array& ports) {
  if (PortBus* bus = view->GetPortBus(name.c_str()))
    CollectPorts(bus, ports);
  else if (Port* port = view->GetPort(name.c_str()))
    ports.Insert(port);
}

/// The same by the type of the port: unpacked structures and arrays of them are ports for each member and element.
void FindPorts(const Netlist* view, const std::string& name, const VeriConstraint* type, Array& ports) {
  unsigned found = ports.Size();
  FindPorts(view, name, ports);
  if (ports.Size() != found || !type || type->IsPacked()) return;
  if (const VeriCompositeConstraint* composite = type->AsComposite()) {
    for (const VeriCompositeConstraint::Member& member : composite->Members())
      FindPorts(view, name + "." + member.name, member.type.get(), ports);
    return;
  }
  const VeriArrayConstraint* array = type->AsArray();
  const VeriRangeConstraint* range = array ? array->IndexConstraint() : nullptr;
  for (unsigned pos = 0; range && pos < array->Length(); pos++) {
    int64_t index =
        range->IsUp() ? static_cast<int64_t>(range->LeftBound()) + pos : static_cast<int64_t>(range->LeftBound()) - pos;
    FindPorts(view, name + "[" + std::to_string(index) + "]", array->ElementConstraintAt(pos), ports);
  }
}

/// The scope of the interface that a connection names, and the modport behind it; without scope when it is none.
struct InterfaceActual {
  VeriScope* scope = nullptr;
  VeriModport* modport = nullptr;
};

InterfaceActual FindInterface(VeriExpression* actual) {
  auto* name = const_cast<VeriName*>(actual->AsName());
  if (auto* selected = dynamic_cast<VeriSelectedName*>(name)) {
    VeriScope* scope = selected->GetPrefix()->EvaluateScope();
    VeriIdDef* id = scope ? scope->FindHere(selected->GetSuffix().c_str()) : nullptr;
    if (id && id->IsModport()) return {scope, static_cast<VeriModportId*>(id)->GetModport()};
  }
  VeriScope* scope = name ? name->EvaluateScope() : nullptr;
  VeriIdDef* owner = scope ? scope->GetOwner() : nullptr;
  return owner && owner->IsDesignUnit() ? InterfaceActual{scope, nullptr} : InterfaceActual{};
}

VeriModule* InterfaceOf(const VeriScope* scope) {
  VeriIdDef* owner = scope->GetOwner();
  VeriDesignUnit* unit =
      owner && owner->IsDesignUnit() ? static_cast<VeriDesignUnitId*>(owner)->GetDesignUnit() : nullptr;
  return unit && unit->IsInterface() ? static_cast<VeriModule*>(unit) : nullptr;
}

/// What a connection of an instance connects; null for none.
VeriExpression* ConnectionOf(VeriExpression* connect) {
  if (connect && connect->GetClassId() == ID_VeriPortOpen) return nullptr;
  const auto* port = dynamic_cast<const VeriPortConnect*>(connect);
  return port ? port->Connection() : connect;
}

/// `width` bits of a value, the place-th such group from the left.
OwnedValue SliceOf(const VeriValue& value, unsigned place, unsigned width) {
  return VeriValue::EvaluateSliced(value.Copy(), static_cast<int64_t>(place) * width, width, 1);
}

/// Nets, and in SystemVerilog variables, their parts and concatenations: what an output can drive.
bool IsStructuralNet(const VeriExpression& actual) {
  if (actual.IsConcat()) {
    for (const VeriExpression* part : *static_cast<const VeriConcat&>(actual).Parts())
      if (!IsStructuralNet(*part)) return false;
    return true;
  }
  const VeriName* name = actual.AsName();
  if (!name) return false;
  while (name->GetClassId() == ID_VeriIndexedName) name = static_cast<const VeriIndexedName*>(name)->GetPrefix();
  return VeriNode::IsSystemVerilog() || !name->GetId() || !name->GetId()->IsReg();
}

/// The input of the present module that stands in the target; null for none.
const VeriIdDef* InputPortIn(const VeriExpression& actual) {
  if (actual.IsConcat()) {
    for (const VeriExpression* part : *static_cast<const VeriConcat&>(actual).Parts())
      if (const VeriIdDef* input = InputPortIn(*part)) return input;
    return nullptr;
  }
  const VeriName* name = actual.AsName();
  while (name && name->GetClassId() == ID_VeriIndexedName)
    name = static_cast<const VeriIndexedName*>(name)->GetPrefix();
  const VeriIdDef* id = name ? name->GetId() : nullptr;
  return id && id->IsVar() && id->IsPort() && id->Dir() == VERI_INPUT ? id : nullptr;
}

bool IsNamed(const VeriExpression* given) {
  const auto* connect = dynamic_cast<const VeriPortConnect*>(given);
  return connect && connect->NamedFormal();
}

/// The name by which an instance connects an entry of a list of ports; empty when it can be connected by place only.
std::string NameOfPort(const VeriExpression& entry) {
  if (const auto* named = dynamic_cast<const VeriPortConnect*>(&entry)) return named->NamedFormal();
  const auto* plain = dynamic_cast<const VeriIdRef*>(&entry);
  return plain && plain->GetId() ? plain->GetId()->Name() : "";
}

/// The bounds of a select by constants, both the same for a single bit.
bool EvaluateIndex(VeriExpression& index, int* left, int* right) {
  if (const auto* range = dynamic_cast<VeriRange*>(&index)) return range->EvaluateBounds(left, right);
  OwnedValue value = index.Evaluate(nullptr);
  int64_t number = 0;
  if (!value || !value->IsConstant() || !value->ToInt64(&number)) return false;
  *left = *right = static_cast<int>(number);
  return true;
}

/// The entry of a list of ports that an instance connects by a name.
const VeriExpression* FindPortExpression(const VeriModule& module, const std::string& name) {
  for (const VeriExpression* entry : ItemsOf<const VeriExpression*>(module.PortExpressions()))
    if (entry && NameOfPort(*entry) == name) return entry;
  return nullptr;
}

bool IsArray(const VeriInst& inst) { return inst.Ranges() && inst.Ranges()->Size(); }

} // namespace

/// One statement's instance, or array of instances, of a module.
class VeriInstantiation {
public:
  VeriInstantiation(const VeriInst* inst, const char* module_name, const VeriExpressions* parameters)
      : _inst(inst), _module_name(module_name), _given(parameters), _parameters(HASH_STRING) {}
  VeriInstantiation(const VeriInstantiation&) = delete;
  VeriInstantiation& operator=(const VeriInstantiation&) = delete;
  ~VeriInstantiation();
  void Run();
  void GenerateInterface();
  void ElaborateInterface(VeriModule* interface, const VeriGenerateRound& round);

private:
  bool BindModule();
  bool AddInterfaceParameters();
  void ConnectInterface(const VeriVariable* port, VeriExpression* actual);
  bool EvaluateRange(int* left, int64_t* count, bool* is_up) const;
  bool ExtractDefparams();
  bool ConsolidateParameters();
  void AddParameter(const std::string& name, VeriExpression* value);
  bool FindView();
  void CreateUnknownView();
  void Instantiate(const std::string& name, unsigned place, unsigned count);
  bool ConnectAll();
  bool ConnectAllUnknown();
  bool ConnectPortExpressions();
  unsigned CollectPortExpression(const VeriExpression* entry, Array& ports) const;
  VeriExpression* ActualOf(const VeriVariable* port, unsigned position, VeriIdRef** implicit) const;
  VeriExpression* ActualOf(const std::string& port, bool is_interface, unsigned position, VeriIdRef** implicit) const;
  void Connect(const char* port_name, VeriExpression* actual, unsigned direction, const VeriConstraint* type);
  bool CheckType(const char* port, VeriExpression& actual, unsigned direction, const VeriConstraint& type) const;
  void ConnectInput(const char* name, VeriExpression* actual, const VeriConstraint* type, const Array& ports);
  void ConnectOutput(const char* name, VeriExpression* actual, const Array& ports, bool is_inout, bool is_signed);
  OwnedValue Share(OwnedValue value, const char* port, unsigned width) const;
  Array AddUnknownPorts(const char* formal, unsigned position, unsigned size);
  bool CheckConnects() const;

  const VeriInst* _inst;
  const char* _module_name;
  const VeriExpressions* _given;
  Map _parameters; // name, owned -> VeriExpression, owned
  VeriModule* _module = nullptr;
  Netlist* _view = nullptr;
  Instance* _instance = nullptr;
  // Of an array: which instance this is, counted from the left, and how many there are.
  unsigned _place = 0;
  unsigned _count = 1;
};

VeriInstantiation::~VeriInstantiation() {
  for (auto [name, value] : Entries<char*, VeriExpression*>(_parameters)) {
    Strings::free_string(name);
    delete value;
  }
}

bool VeriInstantiation::BindModule() {
  VeriModule* present = VeriNode::ElabState()->Module();
  VeriLibrary* library = present ? present->GetLibrary() : nullptr;
  const auto* item = dynamic_cast<const VeriModuleInstantiation*>(_inst->Parent());
  _module = item ? item->NestedModule() : nullptr;
  if (!_module) _module = veri_file::FindModule(_module_name, library);
  if (!_module) _module = veri_file::FindUnknownModule(_module_name);
  if (_module) _module->Resolve();
  return !veri_file::CheckForInterrupt(_inst->Linefile());
}

void VeriInstantiation::AddParameter(const std::string& name, VeriExpression* value) {
  if (_parameters.GetItem(name.c_str())) return;
  VeriNodeScope node(value);
  OwnedValue result = value->Evaluate(nullptr);
  if (result) result = VeriValue::ToConst(std::move(result));
  if (!result || !result->IsConstant()) {
    if (result) value->Error("value for parameter %s is not constant", name.c_str());
    return;
  }
  if (std::unique_ptr<VeriExpression> literal = VeriExpression::ToConstantExpression(*result, value->Linefile()))
    _parameters.Insert(Strings::save(name.c_str()), literal.release());
}

/// An assignment in a generate loop is one for the instance of each round.
bool VeriInstantiation::ExtractDefparams() {
  auto* id = _inst->GetInstId() ? static_cast<VeriInstId*>(_inst->GetInstId()->Current()) : nullptr;
  if (!id) return true;
  VeriElaborationState& state = *VeriNode::ElabState();
  std::vector<VeriDefParamAssign*> candidates;
  for (VeriDefParamAssign* assign : id->Defparams())
    if (state.Defparams().Contains(assign)) candidates.push_back(assign);
  for (VeriDefParamAssign* assign : KeysOf<VeriDefParamAssign*>(&state.UnboundDefparams()))
    candidates.push_back(assign);
  for (VeriDefParamAssign* assign : candidates) {
    const char* name = assign->MatchesInstance(id);
    if (!name) continue;
    state.TakenDefparams().Insert(assign);
    if (_module && _module->IsPrimitive()) {
      assign->Error("cannot override parameters on primitive instance %s using defparams - primitives do not declare "
                    "parameters",
                    id->Name());
      return false;
    }
    AddParameter(name, assign->Value());
  }
  return true;
}

bool VeriInstantiation::ConsolidateParameters() {
  if (!ExtractDefparams()) return false;
  bool has_defparams = _parameters.Size() != 0;
  if (!_given || !_given->Size()) return true;
  std::vector<VeriParamId*> formals;
  if (_module) formals = _module->OverridableParams();
  if (_module && _module->IsPrimitive() && IsNamed(_given->GetFirst())) {
    _inst->Error("primitive %s does not have named parameters", _module_name);
    return false;
  }
  if (_module && !_module->TypeParams().empty()) {
    _inst->Error("no support for %s (SystemVerilog)", "values for parameters of a module with type parameters");
    return false;
  }
  if (_module && formals.empty()) {
    _inst->Error("module %s does not expect any parameters", _module_name);
    return false;
  }
  unsigned position = 0;
  for (VeriExpression* given : *_given) {
    const auto* connect = dynamic_cast<const VeriPortConnect*>(given);
    VeriExpression* value = connect ? connect->Connection() : given;
    const char* name = connect ? connect->NamedFormal() : nullptr;
    if (name) {
      if (_module && !_module->GetParam(name)) {
        given->Error("module %s does not have a parameter named %s", _module_name, name);
        return false;
      }
      if (value) AddParameter(name, value);
      continue;
    }
    if (has_defparams) {
      _inst->Error("no support for specifying parameters for instance %s using both defparam statements and an ordered "
                   "module instance parameter value assignment",
                   _inst->Name());
      return false;
    }
    if (_module && position >= formals.size()) {
      _inst->Error("too many parameters for instance of module %s - module declares %d parameters not %d", _module_name,
                   static_cast<int>(formals.size()), static_cast<int>(_given->Size()));
      return false;
    }
    if (value && _module) AddParameter(formals[position]->Name(), value);
    if (value && !_module) AddParameter("param" + std::to_string(position), value);
    position++;
  }
  return true;
}

bool VeriInstantiation::FindView() {
  bool is_boxed = _module && veri_file::Blackboxed(_module_name);
  if (_module && !is_boxed) {
    _view = _module->ElaborateBlackBox(VeriNode::ElabState()->GetLibrary(), &_parameters);
    return _view != nullptr;
  }
  CreateUnknownView();
  return true;
}

void VeriInstantiation::CreateUnknownView() {
  const VeriExpressions* connects = _inst->Connects();
  const auto* first =
      connects && connects->Size() ? dynamic_cast<const VeriPortConnect*>(connects->GetFirst()) : nullptr;
  const char* view_name = first && first->NamedFormal() ? named_ports_view : ordered_ports_view;
  Library* library = VeriNode::ElabState()->GetLibrary();
  std::string name = VeriModule::CreateUniqueName(_module_name, &_parameters);
  Cell* cell = library->GetCellAnywhere(name.c_str());
  if (!cell) {
    cell = new Cell(name.c_str(), _inst->Linefile());
    library->Add(cell);
  }
  _view = cell->GetNetlist(view_name);
  if (_view) return;
  _inst->Warning("%s remains a black box", _module_name);
  _view = new Netlist(view_name, _inst->Linefile());
  _view->SetSourceLang(DB_SOURCE_LANG_VERILOG);
  cell->Add(_view);
  _view->AddAtt(" cell_name", _module_name);
  _view->AddAtt(" library_name", library->Name());
  VeriModule::AddParamsToNetlist(_view, &_parameters);
}

bool VeriInstantiation::CheckConnects() const {
  const VeriExpressions* connects = _inst->Connects();
  if (!_module || !connects) return true;
  unsigned ordered = 0;
  std::set<std::string> seen;
  for (VeriExpression* connect : *connects) {
    const auto* named = dynamic_cast<const VeriPortConnect*>(connect);
    if (!named || !named->NamedFormal()) {
      ordered++;
      continue;
    }
    if (named->IsDotStar()) continue;
    if (veri_has_port_expressions(*_module) ? !FindPortExpression(*_module, named->NamedFormal())
                                            : !_module->GetPort(named->NamedFormal())) {
      connect->Error("cannot find port %s on this module", named->NamedFormal());
      return false;
    }
    if (!seen.insert(named->NamedFormal()).second) {
      connect->Error("port %s is connected more than once", named->NamedFormal());
      return false;
    }
  }
  bool is_empty_list = ordered == 1 && !ConnectionOf(connects->GetFirst());
  size_t expected = veri_has_port_expressions(*_module) ? _module->PortExpressions()->Size() : _module->Ports().size();
  if (ordered <= expected || (is_empty_list && _module->Ports().empty())) return true;
  _inst->Error("instance %s specifies %d actual port connections but module %s only expects %d", _inst->Name(),
               static_cast<int>(ordered), _module_name, static_cast<int>(expected));
  return false;
}

/// The part of an actual that goes to this instance of an array: all of it, or its share (IEEE 1364-2005 7.1.6).
OwnedValue VeriInstantiation::Share(OwnedValue value, const char* port, unsigned width) const {
  if (_count == 1 || !value || value->Size() == width) return value;
  if (value->Size() == width * _count) return SliceOf(*value, _place, width);
  _inst->Error("illegal connection to port %s in array of instances - actual bit length (%d) doesn't equal the port "
               "width (%d) or divide evenly by the number of instances (%d)",
               port, static_cast<int>(value->Size()), static_cast<int>(width), static_cast<int>(_count));
  return nullptr;
}

void VeriInstantiation::ConnectInput(const char* name, VeriExpression* actual, const VeriConstraint* type,
                                     const Array& ports) {
  if (actual->TypeInfer(nullptr).is_real) return actual->Error("can't connect port to a real value");
  OwnedValue value;
  if (_count > 1 || !type)
    value = Share(actual->Evaluate(nullptr), name, ports.Size());
  else
    value = actual->EvaluateFor(*type, nullptr);
  if (!value) return;
  if (!value->IsAggregate()) value = VeriValue::Adjust(std::move(value), ports.Size(), actual);
  if (value) value->Connect(_instance, ports);
}

void VeriInstantiation::ConnectOutput(const char* name, VeriExpression* actual, const Array& ports, bool is_inout,
                                      bool is_signed) {
  if (const VeriIdDef* input = InputPortIn(*actual))
    return actual->Error("cannot assign to input port %s", input->Name());
  if (!kestrin_flag("zelk_disable_structural_net_check") && !IsStructuralNet(*actual))
    return actual->Error("formal port %s must be connected to a structural net expression", name);
  OwnedValue nets = Share(actual->EvaluateNets(), name, ports.Size());
  if (!nets) return;
  if (nets->Size() == ports.Size()) return nets->Connect(_instance, ports);
  // Of different widths the low bits meet; what lies above on the actual's side is extended as in an assignment.
  unsigned common = std::min(nets->Size(), ports.Size());
  Array low_ports;
  for (unsigned pos = ports.Size() - common; pos < ports.Size(); pos++) low_ports.Insert(ports.At(pos));
  VeriValue::EvaluateSliced(nets->Copy(), nets->Size() - common, common, 1)->Connect(_instance, low_ports);
  if (nets->Size() <= common || is_inout) return;
  OwnedValue rest = VeriValue::EvaluateSliced(nets->Copy(), 0, nets->Size() - common, 1);
  OwnedValue extension = VeriValue::Digits(1, VERI_DIGIT_0);
  if (is_signed) {
    extension = VeriValue::EvaluateSliced(nets->Copy(), nets->Size() - common, 1, 1);
    extension->SetSigned();
  }
  extension = VeriValue::Adjust(std::move(extension), rest->Size());
  rest->NetAssignFrom(std::move(extension), VERI_RESOLVE_WIRE, true, actual);
}

/// An array or structure meets one of its own kind (IEEE 1800-2005 clause 19.12); bits fit any bits.
bool VeriInstantiation::CheckType(const char* port, VeriExpression& actual, unsigned direction,
                                  const VeriConstraint& type) const {
  const VeriName* name = actual.AsName();
  if (_count > 1 || type.IsInterfaceConstraint() || (!name && !actual.IsConcat())) return true;
  OwnedConstraint own = actual.EvaluateConstraint(nullptr);
  if (!own || (own->IsPacked() && type.IsPacked()) || type.IsTypeCompatible(*own)) return true;
  if (!name)
    actual.Error("can't connect expression with incompatible type to formal %s", port);
  else if (direction == VERI_INPUT)
    actual.Error("can't pass value from actual to formal input %s with incompatible type", port);
  else if (direction == VERI_OUTPUT)
    actual.Error("can't pass value from formal output %s to actual with incompatible type", port);
  else
    actual.Error("can't pass values between formal inout %s and actual with incompatible types", port);
  return false;
}

void VeriInstantiation::Connect(const char* port_name, VeriExpression* actual, unsigned direction,
                                const VeriConstraint* type) {
  VeriNodeScope node(actual);
  Array ports;
  if (type && !CheckType(port_name, *actual, direction, *type)) return;
  FindPorts(_view, port_name, type, ports);
  if (!ports.Size()) return;
  if (direction == VERI_INPUT)
    ConnectInput(port_name, actual, type, ports);
  else
    ConnectOutput(port_name, actual, ports, direction == VERI_INOUT, type && type->IsSigned());
}

/// The expression that the instance connects to a port; null when it leaves it open. For `.name` and `.*` a reference
/// is made, which the caller owns.
VeriExpression* VeriInstantiation::ActualOf(const VeriVariable* port, unsigned position, VeriIdRef** implicit) const {
  return ActualOf(port->Name(), port->InterfaceType() != nullptr, position, implicit);
}

VeriExpression* VeriInstantiation::ActualOf(const std::string& port, bool is_interface, unsigned position,
                                            VeriIdRef** implicit) const {
  const VeriExpressions* connects = _inst->Connects();
  bool has_star = false;
  for (unsigned pos = 0; connects && pos < connects->Size(); pos++) {
    VeriExpression* connect = connects->At(pos);
    const auto* named = dynamic_cast<const VeriPortConnect*>(connect);
    const char* formal = named ? named->NamedFormal() : nullptr;
    if (!formal) {
      if (pos == position) return ConnectionOf(connect);
      continue;
    }
    if (named->IsDotStar()) {
      has_star = true;
      continue;
    }
    if (formal != port) continue;
    if (!named->IsImplicit()) return named->Connection();
    has_star = true;
    break;
  }
  if (!has_star) return nullptr;
  // The object of the same name around the instance (IEEE 1800-2005 19.11.4).
  VeriScope* scope = _inst->GetId() ? _inst->GetId()->DeclaringScope() : nullptr;
  VeriIdDef* id = scope ? scope->Find(port.c_str()) : nullptr;
  if (!id || !(id->IsVar() || (id->IsInst() && is_interface))) return nullptr;
  *implicit = new VeriIdRef(VeriLex::Intern(port.c_str()), _inst->Linefile());
  (*implicit)->SetId(id);
  return *implicit;
}

namespace {

/// As many bits; what is connected without being written must fit as it is.
bool IsEquivalent(VeriExpression& actual, const VeriConstraint* type) {
  const OwnedConstraint own = actual.EvaluateConstraint(nullptr);
  return !own || !type || !own->IsPacked() || !type->IsPacked() || own->Size() == type->Size();
}

} // namespace

/// Adds the one-bit ports behind an entry of a list of ports, most significant first; the direction of them. A part is
/// selected by constants, since the module's own names have no values outside of it.
unsigned VeriInstantiation::CollectPortExpression(const VeriExpression* entry, Array& ports) const {
  if (const auto* named = dynamic_cast<const VeriPortConnect*>(entry))
    return CollectPortExpression(named->Connection(), ports);
  if (entry && entry->IsConcat()) {
    unsigned direction = 0;
    for (const VeriExpression* part : ItemsOf<const VeriExpression*>(static_cast<const VeriConcat*>(entry)->Parts()))
      direction = CollectPortExpression(part, ports);
    return direction;
  }
  const VeriName* name = entry ? entry->AsName() : nullptr;
  const VeriIdDef* id = name ? name->GetId() : nullptr;
  if (!id) return 0;
  OwnedConstraint type = _module->PortType(_view, id->Name());
  Array whole;
  FindPorts(_view, id->Name(), type.get(), whole);
  const auto* indexed = dynamic_cast<const VeriIndexedName*>(name);
  if (!indexed) {
    for (unsigned pos = 0; pos < whole.Size(); pos++) ports.Insert(whole.At(pos));
    return id->Dir();
  }
  const VeriRangeConstraint* range = type ? type->IndexConstraint() : nullptr;
  VeriExpression* index = indexed->Indices().Size() == 1 ? indexed->Indices().GetFirst() : nullptr;
  int left = 0;
  int right = 0;
  if (!range || !index || range->Length() != whole.Size() || !EvaluateIndex(*index, &left, &right)) {
    entry->Error("illegal port-expression");
    return 0;
  }
  int first = std::abs(left - range->LeftBound());
  int last = std::abs(right - range->LeftBound());
  for (int pos = first; pos <= last && pos < static_cast<int>(whole.Size()); pos++)
    ports.Insert(whole.At(static_cast<unsigned>(pos)));
  return id->Dir();
}

bool VeriInstantiation::ConnectPortExpressions() {
  unsigned position = 0;
  for (const VeriExpression* entry : ItemsOf<const VeriExpression*>(_module->PortExpressions())) {
    std::string name = entry ? NameOfPort(*entry) : "";
    VeriIdRef* implicit = nullptr;
    VeriExpression* actual = ActualOf(name, false /* is_interface */, position++, &implicit);
    std::unique_ptr<VeriIdRef> owner(implicit);
    if (!actual) continue;
    VeriNodeScope node(actual);
    Array ports;
    unsigned direction = CollectPortExpression(entry, ports);
    if (!ports.Size()) continue;
    if (direction == VERI_INPUT) {
      OwnedConstraint type = VeriUniformArrayConstraint::Vector(static_cast<int>(ports.Size()) - 1, 0);
      ConnectInput(name.c_str(), actual, type.get(), ports);
    } else {
      ConnectOutput(name.c_str(), actual, ports, direction == VERI_INOUT, false /* is_signed */);
    }
    if (veri_file::CheckForInterrupt(actual->Linefile())) return false;
  }
  return true;
}

bool VeriInstantiation::ConnectAll() {
  if (veri_has_port_expressions(*_module)) return ConnectPortExpressions();
  unsigned position = 0;
  for (VeriVariable* port : _module->Ports()) {
    VeriIdRef* implicit = nullptr;
    VeriExpression* actual = ActualOf(port, position++, &implicit);
    std::unique_ptr<VeriIdRef> owner(implicit);
    if (!actual) continue;
    if (port->InterfaceType()) {
      ConnectInterface(port, actual);
      continue;
    }
    OwnedConstraint type = _module->PortType(_view, port->Name());
    if (implicit && _count <= 1 && !IsEquivalent(*actual, type.get())) {
      _inst->Error("can't implicitly bind port %s on instance %s of module %s - %s", port->Name(), _inst->Name(),
                   _module_name, "matching object in present scope does not have an equivalent data type");
      continue;
    }
    Connect(port->Name(), actual, port->Dir(), type.get());
    if (veri_file::CheckForInterrupt(actual->Linefile())) return false;
  }
  return true;
}

/// Ports of a view that nobody declared, added as connections need them.
Array VeriInstantiation::AddUnknownPorts(const char* formal, unsigned position, unsigned size) {
  std::string name = formal ? formal : "p_" + std::to_string(position + 1);
  Array ports;
  FindPorts(_view, name, ports);
  if (ports.Size()) return ports;
  if (size == 1) {
    auto* port = new Port(name.c_str(), DIR_INOUT, _inst->Linefile());
    _view->Add(port);
    ports.Insert(port);
    return ports;
  }
  auto* bus = new PortBus(name.c_str(), DIR_INOUT, static_cast<int>(size) - 1, 0, _inst->Linefile());
  _view->Add(bus);
  for (unsigned bit = size; bit-- > 0;) {
    auto* port = new Port((name + "[" + std::to_string(bit) + "]").c_str(), DIR_INOUT, _inst->Linefile());
    _view->Add(port);
    bus->Add(port);
    ports.Insert(port);
  }
  return ports;
}

bool VeriInstantiation::ConnectAllUnknown() {
  unsigned position = 0;
  for (VeriExpression* connect : ItemsOf<VeriExpression*>(_inst->Connects())) {
    const auto* named = dynamic_cast<const VeriPortConnect*>(connect);
    if (named && (named->IsDotStar() || named->IsImplicit())) {
      _inst->Error("can't resolve implicit port connection(s) to instance %s without a module binding", _inst->Name());
      return false;
    }
    VeriExpression* actual = ConnectionOf(connect);
    unsigned place = position++;
    if (!actual) continue;
    VeriNodeScope node(actual);
    OwnedValue value = actual->Evaluate(nullptr);
    if (!value || value->IsReal()) return false;
    Array ports = AddUnknownPorts(named ? named->NamedFormal() : nullptr, place, value->Size());
    value = VeriValue::Adjust(std::move(value), ports.Size(), actual);
    if (value) value->Connect(_instance, ports);
  }
  return true;
}

void VeriInstantiation::Instantiate(const std::string& name, unsigned place, unsigned count) {
  _place = place;
  _count = count;
  _instance = new Instance(VeriNode::ElabState()->CreateFullName(name.c_str()).c_str(), _view, _inst->Linefile());
  VeriNode::CurrentNetlist()->Add(_instance);
  _inst->ApplyAttributes(_instance);
  if (_inst->Parent()) _inst->Parent()->ApplyAttributes(_instance);
  if (_module)
    ConnectAll();
  else
    ConnectAllUnknown();
}

void VeriInstantiation::Run() {
  if (!BindModule() || !ConsolidateParameters() || !AddInterfaceParameters() || !FindView() || !CheckConnects()) return;
  if (!IsArray(*_inst)) return Instantiate(_inst->Name(), 0, 1);
  if (!_module)
    return _inst->Error("cannot elaborate array of instances because the instantiated module's declaration hasn't been "
                        "analyzed");
  int left = 0;
  int64_t count = 0;
  bool is_up = false;
  if (!EvaluateRange(&left, &count, &is_up)) return;
  for (int64_t place = 0; place < count && !veri_file::CheckForInterrupt(_inst->Linefile()); place++) {
    int64_t index = is_up ? left + place : left - place;
    Instantiate(std::string(_inst->Name()) + "[" + std::to_string(index) + "]", static_cast<unsigned>(place),
                static_cast<unsigned>(count));
  }
}

bool VeriInstantiation::EvaluateRange(int* left, int64_t* count, bool* is_up) const {
  int right = 0;
  if (!_inst->Ranges()->GetFirst()->EvaluateBounds(left, &right)) return false;
  *is_up = *left <= right;
  *count = std::abs(static_cast<int64_t>(*left) - right) + 1;
  return veri_width_is_supported(static_cast<uint64_t>(*count), _inst);
}

// Interfaces.

void VeriInstantiation::GenerateInterface() {
  if (!BindModule() || !ConsolidateParameters()) return;
  auto& rounds = VeriNode::ElabState()->Rounds(_inst);
  if (!IsArray(*_inst)) {
    rounds.push_back(veri_make_interface(_module, _inst->Name(), &_parameters, ""));
    return;
  }
  int left = 0;
  int64_t count = 0;
  bool is_up = false;
  if (!EvaluateRange(&left, &count, &is_up)) return;
  for (int64_t place = 0; place < count; place++) {
    std::string label = std::string(_inst->Name()) + "[" + std::to_string(is_up ? left + place : left - place) + "]";
    rounds.push_back(veri_make_interface(_module, label, &_parameters, ""));
  }
}

/// The logic of the interface, and what the instance connects to its ports.
void VeriInstantiation::ElaborateInterface(VeriModule* interface, const VeriGenerateRound& round) {
  _module = interface;
  {
    VeriRoundScope scope(round);
    interface->ElaborateContents();
  }
  if (!CheckConnects()) return;
  unsigned position = 0;
  for (VeriVariable* port : interface->Ports()) {
    VeriIdRef* implicit = nullptr;
    VeriExpression* actual = ActualOf(port, position++, &implicit);
    std::unique_ptr<VeriIdRef> owner(implicit);
    VeriIdDef* object = actual ? round.generated->FindHere(port->Name()) : nullptr;
    VeriValue* nets = object ? object->GetValue() : nullptr;
    const VeriConstraint* type = object ? object->GetConstraint() : nullptr;
    if (!nets || !type) continue;
    VeriNodeScope node(actual);
    if (port->Dir() == VERI_INPUT) {
      OwnedValue value = actual->EvaluateFor(*type, nullptr);
      if (value) nets->NetAssignFrom(std::move(value), VERI_RESOLVE_WIRE, true, actual);
      continue;
    }
    OwnedConstraint target = actual->EvaluateConstraint(nullptr);
    OwnedValue value = target ? VeriValue::CheckAgainst(nets->Copy(), *target, actual, false) : nullptr;
    if (value) actual->Assign(std::move(value), nullptr, false);
  }
}

/// What the module has to know of the interfaces that are connected to its ports: a name where the port is generic, the
/// modport where the connection gives it, and the values of the interface's parameters.
bool VeriInstantiation::AddInterfaceParameters() {
  unsigned position = 0;
  if (!_module) return true;
  for (VeriVariable* port : _module->Ports()) {
    VeriIdRef* implicit = nullptr;
    VeriExpression* actual = ActualOf(port, position++, &implicit);
    std::unique_ptr<VeriIdRef> owner(implicit);
    if (!port->InterfaceType()) continue;
    if (!actual) {
      _inst->Error("interface port %s must be connected", port->Name());
      return false;
    }
    InterfaceActual found = FindInterface(actual);
    VeriModule* interface = found.scope ? InterfaceOf(found.scope) : nullptr;
    VeriModule* formal = port->GetInterface();
    if (!interface || (formal && formal != interface)) {
      actual->Error("can't connect expression with incompatible type to formal %s", port->Name());
      return false;
    }
    const VeriModport* modport = port->GetModport();
    if (modport && found.modport && modport != found.modport) {
      actual->Error("actual modport specification %s does not match formal modport specification %s",
                    found.modport->Name(), modport->Name());
      return false;
    }
    auto add_text = [&](const std::string& key, const char* text) {
      OwnedValue value = VeriValue::FromString(text);
      if (auto literal = VeriExpression::ToConstantExpression(*value, actual->Linefile()))
        _parameters.Insert(Strings::save(key.c_str()), literal.release());
    };
    if (!formal) add_text(veri_interface_name_key(port->Name()), interface->Name());
    if (!modport && found.modport) add_text(veri_modport_name_key(port->Name()), found.modport->Name());
    for (VeriParamId* param : interface->OverridableParams()) {
      VeriIdDef* id = found.scope->FindHere(param->Name());
      VeriValue* value = id ? id->GetValue() : nullptr;
      auto literal = value ? VeriExpression::ToConstantExpression(*value, actual->Linefile()) : nullptr;
      std::string key = std::string(port->Name()) + "." + param->Name();
      if (literal) _parameters.Insert(Strings::save(key.c_str()), literal.release());
    }
  }
  return true;
}

void VeriInstantiation::ConnectInterface(const VeriVariable* port, VeriExpression* actual) {
  VeriNodeScope node(actual);
  InterfaceActual found = FindInterface(actual);
  if (!found.scope) return;
  VeriModport* modport = nullptr;
  VeriModule* interface = veri_port_interface(port, &_parameters, &modport);
  if (!interface) return;
  for (const VeriInterfaceMember& member : veri_interface_members(_module, port, interface, modport)) {
    VeriIdDef* id = found.scope->FindHere(member.name.c_str());
    VeriValue* nets = id ? id->GetValue() : nullptr;
    if (!nets) continue;
    Array ports;
    FindPorts(_view, std::string(port->Name()) + "." + member.name, id->GetConstraint(), ports);
    Array bits;
    nets->GetNets(bits);
    if (ports.Size() == bits.Size() && ports.Size()) nets->Copy()->Connect(_instance, ports);
  }
}

void VeriInst::InstantiateModule(const char* module_name, const VeriExpressions* parameters) {
  VeriNodeScope node(this);
  VeriInstantiation(this, module_name, parameters).Run();
}

void VeriInst::GenerateInterface(const char* interface_name, const VeriExpressions* parameters) {
  VeriNodeScope node(this);
  VeriInstantiation(this, interface_name, parameters).GenerateInterface();
}

void VeriInst::InitializeInterface(const VeriModule* interface) {
  for (const VeriGenerateRound& round : std::vector<VeriGenerateRound>(ElabState()->Rounds(this))) {
    VeriRoundScope scope(round);
    for (VeriVariable* port : interface->Ports()) port->Current()->Initialize();
    veri_for_each_item(round, [](VeriModuleItem* item) { item->Initialize(); });
  }
}

void VeriInst::ElaborateInterface(const char* interface_name, VeriModule* interface) {
  VeriNodeScope node(this);
  for (const VeriGenerateRound& round : std::vector<VeriGenerateRound>(ElabState()->Rounds(this)))
    VeriInstantiation(this, interface_name, nullptr).ElaborateInterface(interface, round);
}

VeriModule* VeriModuleInstantiation::FindModule() const {
  if (_nested) return _nested;
  VeriModule* present = ElabState() ? ElabState()->Module() : nullptr;
  return veri_file::FindModule(ModuleName(), present ? present->GetLibrary() : nullptr);
}

void VeriModuleInstantiation::GenerateObjects() {
  VeriModule* module = FindModule();
  if (!module || !module->IsInterface()) return;
  for (VeriInst* inst : *_insts) inst->GenerateInterface(ModuleName(), _parameters);
}

void VeriModuleInstantiation::Initialize() {
  VeriModule* module = FindModule();
  if (!module || !module->IsInterface()) return;
  for (VeriInst* inst : *_insts) inst->InitializeInterface(module);
}

void VeriModuleInstantiation::Elaborate() {
  VeriModule* module = FindModule();
  for (VeriInst* inst : *_insts) {
    if (veri_file::CheckForInterrupt(Linefile())) return;
    if (module && module->IsInterface())
      inst->ElaborateInterface(ModuleName(), module);
    else
      inst->InstantiateModule(ModuleName(), _parameters);
  }
}

// Gates.

namespace {

enum class GateShape { MANY_INPUTS, MANY_OUTPUTS, ENABLED, PULL, SWITCH };

struct GateRow {
  unsigned token;
  GateShape shape;
  veri_oper oper; // of the inputs; VERI_OPER_COUNT: none
  bool inverts;
  bool enable_low;
};

constexpr GateRow gate_rows[] = {
    {VERI_AND, GateShape::MANY_INPUTS, VERI_OPER_AND, false, false},
    {VERI_NAND, GateShape::MANY_INPUTS, VERI_OPER_AND, true, false},
    {VERI_OR, GateShape::MANY_INPUTS, VERI_OPER_OR, false, false},
    {VERI_NOR, GateShape::MANY_INPUTS, VERI_OPER_OR, true, false},
    {VERI_XOR, GateShape::MANY_INPUTS, VERI_OPER_XOR, false, false},
    {VERI_XNOR, GateShape::MANY_INPUTS, VERI_OPER_XOR, true, false},
    {VERI_BUF, GateShape::MANY_OUTPUTS, VERI_OPER_COUNT, false, false},
    {VERI_NOT, GateShape::MANY_OUTPUTS, VERI_OPER_COUNT, true, false},
    {VERI_BUFIF0, GateShape::ENABLED, VERI_OPER_COUNT, false, true},
    {VERI_BUFIF1, GateShape::ENABLED, VERI_OPER_COUNT, false, false},
    {VERI_NOTIF0, GateShape::ENABLED, VERI_OPER_COUNT, true, true},
    {VERI_NOTIF1, GateShape::ENABLED, VERI_OPER_COUNT, true, false},
    {VERI_PULLUP, GateShape::PULL, VERI_OPER_COUNT, false, false},
    {VERI_PULLDOWN, GateShape::PULL, VERI_OPER_COUNT, true, false},
};

const GateRow* RowOf(unsigned token) {
  for (const GateRow& row : gate_rows)
    if (row.token == token) return &row;
  return nullptr;
}

} // namespace

/// One gate statement: a gate for each bit of an array of instances.
class VeriGateBuilder {
public:
  VeriGateBuilder(const VeriInst* inst, unsigned token) : _inst(inst), _token(token), _row(RowOf(token)) {}
  void Run();

private:
  bool CollectTerminals();
  bool CheckCount() const;
  unsigned FirstInput() const;
  bool EvaluateTerminals();
  OwnedValue BitOf(const VeriValue& value, unsigned place) const;
  OwnedValue InputBit(unsigned terminal, unsigned place) const { return BitOf(*_values[terminal], place); }
  OwnedValue OutputOf(unsigned place) const;
  void BuildPull() const;

  const VeriInst* _inst;
  unsigned _token;
  const GateRow* _row;
  std::vector<VeriExpression*> _terminals;
  std::vector<OwnedValue> _values; // nets of outputs, values of inputs
  unsigned _count = 1;
};

bool VeriGateBuilder::CollectTerminals() {
  for (VeriExpression* connect : ItemsOf<VeriExpression*>(_inst->Connects())) {
    const auto* named = dynamic_cast<const VeriPortConnect*>(connect);
    if (named && named->NamedFormal()) {
      connect->Error("name-based port connection not allowed in gate-instantiation");
      return false;
    }
    VeriExpression* terminal = ConnectionOf(connect);
    if (!terminal) {
      _inst->Error("%s gate has an unconnected terminal", VeriTreeNode::PrintToken(_token));
      return false;
    }
    _terminals.push_back(terminal);
  }
  return CheckCount();
}

bool VeriGateBuilder::CheckCount() const {
  size_t count = _terminals.size();
  switch (_row->shape) {
  case GateShape::MANY_INPUTS:
  case GateShape::MANY_OUTPUTS:
    if (count >= 2) return true;
    _inst->Error("need at least one output and one input to this gate");
    return false;
  case GateShape::ENABLED:
    if (count == 3) return true;
    _inst->Error("need %d terminals to this gate", 3);
    return false;
  case GateShape::PULL:
    if (count == 1) return true;
    _inst->Error("no support for multiple terminals on pullup/down sources");
    return false;
  case GateShape::SWITCH: break;
  }
  return false;
}

unsigned VeriGateBuilder::FirstInput() const {
  bool is_last = _row->shape == GateShape::MANY_OUTPUTS;
  if (_row->shape == GateShape::PULL) return static_cast<unsigned>(_terminals.size());
  return is_last ? static_cast<unsigned>(_terminals.size()) - 1 : 1;
}

bool VeriGateBuilder::EvaluateTerminals() {
  if (IsArray(*_inst)) {
    int left = 0;
    int right = 0;
    if (!_inst->Ranges()->GetFirst()->EvaluateBounds(&left, &right)) return false;
    auto count = static_cast<uint64_t>(std::abs(static_cast<int64_t>(left) - right)) + 1;
    if (!veri_width_is_supported(count, _inst)) return false;
    _count = static_cast<unsigned>(count);
  }
  for (unsigned pos = 0; pos < _terminals.size(); pos++) {
    VeriExpression* terminal = _terminals[pos];
    OwnedValue value = pos < FirstInput() ? terminal->EvaluateNets() : terminal->Evaluate(nullptr);
    if (!value) return false;
    if (value->IsAggregate()) {
      terminal->Error("can't connect terminal on a gate to an aggregate expression");
      return false;
    }
    // An unsized constant such as 0 stands for a bit.
    if (value->IsInt() || (value->IsConstant() && terminal->IsConst())) value = VeriValue::Adjust(std::move(value), 1);
    if (value->Size() != 1 && value->Size() != _count) {
      terminal->Warning("actual bit length %d differs from formal bit length %d", static_cast<int>(value->Size()),
                        static_cast<int>(_count));
      value = VeriValue::Adjust(std::move(value), _count, terminal);
      if (!value) return false;
    }
    _values.push_back(std::move(value));
  }
  return true;
}

OwnedValue VeriGateBuilder::BitOf(const VeriValue& value, unsigned place) const {
  return value.Size() == 1 ? value.Copy() : SliceOf(value, place, 1);
}

OwnedValue VeriGateBuilder::OutputOf(unsigned place) const {
  unsigned first = FirstInput();
  OwnedValue result = InputBit(first, place);
  if (_row->oper != VERI_OPER_COUNT)
    for (unsigned pos = first + 1; pos < _values.size(); pos++)
      result = VeriValue::Binary(_row->oper, std::move(result), InputBit(pos, place), _inst);
  if (_row->inverts) result = VeriValue::Unary(VERI_OPER_NOT, std::move(result), _inst);
  if (_row->shape != GateShape::ENABLED || !result) return result;
  Net* enable = veri_canonical_net(InputBit(first + 1, place)->GetBit(0));
  if (_row->enable_low) enable = veri_not(enable);
  if (enable == VeriNode::Pwr()) return result;
  if (enable == VeriNode::Gnd()) return VeriValue::Digits(1, VERI_DIGIT_Z);
  return VeriValue::FromNet(VeriNode::CurrentNetlist()->Tristate(result->GetBit(0), enable, _inst->Linefile()));
}

void VeriGateBuilder::BuildPull() const {
  Array nets;
  _values[0]->GetNets(nets);
  for (Net* net : ItemsOf<Net*>(&nets)) {
    Netlist* netlist = VeriNode::CurrentNetlist();
    net->Wire(_row->inverts ? netlist->Pulldown(_inst->Linefile()) : netlist->Pullup(_inst->Linefile()));
  }
}

void VeriGateBuilder::Run() {
  if (!_row) return _inst->Error("no support for instantiation of gate %s", VeriTreeNode::PrintToken(_token));
  if (!CollectTerminals() || !EvaluateTerminals()) return;
  if (_row->shape == GateShape::PULL) return BuildPull();
  for (unsigned place = 0; place < _count; place++) {
    OwnedValue result = OutputOf(place);
    for (unsigned pos = 0; result && pos < FirstInput(); pos++)
      BitOf(*_values[pos], place)->NetAssignFrom(result->Copy(), VERI_RESOLVE_WIRE, true, _inst);
  }
}

void VeriInst::InstantiateGate(unsigned token) {
  VeriNodeScope node(this);
  VeriGateBuilder(this, token).Run();
}

void VeriGateInstantiation::Elaborate() {
  if (ElabState()->Mode() == ELAB_HIERARCHY_ONLY) return;
  for (VeriInst* inst : *_insts) {
    if (veri_file::CheckForInterrupt(Linefile())) return;
    inst->InstantiateGate(_token);
  }
}
