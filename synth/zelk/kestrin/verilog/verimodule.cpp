// Design units: what they declare, the frame of their resolve, and their text.
#include "verilog/verimodule.h"

#include <algorithm>
#include <functional>
#include <ostream>

#include "verilog/veri_file.h"
#include "verilog/veri_lex.h"
#include "verilog/vericheck.h"
#include "verilog/verilibrary.h"
#include "verilog/veriprint_util.h"
#include "verilog/veriresolve.h"

// All units.

VeriDesignUnit::VeriDesignUnit(std::unique_ptr<VeriDesignUnitId> id, VeriModuleItems* items,
                               std::unique_ptr<VeriScope> scope, unsigned long linefile)
    : VeriTreeNode(linefile), _id(std::move(id)), _items(Adopt(items)), _scope(std::move(scope)), _dialect(Dialect()) {
  _id->SetDesignUnit(this);
  _id->SetModuleItem(this);
}

VeriDesignUnit::~VeriDesignUnit() {
  delete _items;
  veri_file::ForgetDesignUnit(_id.get());
}

void VeriDesignUnit::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _items); }

std::string VeriDesignUnit::FullName() const {
  const VeriScope* upper = _scope ? _scope->Upper() : nullptr;
  const VeriDesignUnit* outer = upper ? upper->GetContainingDesignUnit() : nullptr;
  return outer ? outer->FullName() + "." + Name() : Name();
}

namespace {

/// The work library is this one while the object lives.
class WorkLibraryScope {
public:
  explicit WorkLibraryScope(VeriLibrary* library) : _former(veri_file::WorkLibrary()) {
    if (library) veri_file::SetWorkLibrary(library);
  }
  WorkLibraryScope(const WorkLibraryScope&) = delete;
  WorkLibraryScope& operator=(const WorkLibraryScope&) = delete;
  ~WorkLibraryScope() { veri_file::SetWorkLibrary(_former); }

private:
  VeriLibrary* _former;
};

} // namespace

// A package is resolved while a unit that uses it is, so everything that belongs to the present unit is set aside.
void VeriDesignUnit::Resolve() {
  if (_is_resolved) return;
  _is_resolved = true;
  VeriNodeScope node(this);
  VeriDialectScope dialect(_dialect);
  WorkLibraryScope library(GetLibrary());
  VeriDependencyScope dependencies;
  VeriProcessScope process(nullptr);
  // A nested unit sees what the one around it imports.
  if (GetScope() && GetScope()->Upper() && GetScope()->Upper()->Kind() != SCOPE_LIBRARY)
    GetScope()->Upper()->ResolveImports();
  ResolveContents();
  veri_check_unit(*this);
  _dependencies = VeriDependencyScope::Take();
}

namespace {

/// Collects the names of modules that are instantiated below a node.
class InstantiationVisitor : public VeriVisitor {
public:
  using VeriVisitor::Visit;
  void Visit(VeriModuleInstantiation& instantiation) override {
    const char* name = instantiation.ModuleName();
    if (name && _seen.Insert(name)) names.emplace_back(name);
  }
  std::vector<std::string> names;

private:
  Set _seen{HASH_STRING};
};

} // namespace

std::vector<std::string> VeriDesignUnit::InstantiatedModuleNames() const {
  InstantiationVisitor visitor;
  veri_visit(visitor, _items);
  return visitor.names;
}

void VeriDesignUnit::PrintStart(std::ostream& out, unsigned level, const char* prefix) const {
  PrintFront(out, level);
  out << prefix << PrintToken(_id->GetDesignUnitToken()) << ' ';
  PrintName(out, Name());
}

void VeriDesignUnit::PrintBody(std::ostream& out, unsigned level, unsigned first_item) const {
  out << ";\n";
  PrintTimes(out, level + 1);
  for (unsigned i = first_item; i < _items->Size(); i++) _items->At(i)->PrettyPrint(out, level + 1);
  PrintLevel(out, level);
  const unsigned token = _id->GetDesignUnitToken();
  out << "end" << PrintToken(token == VERI_MACROMODULE ? unsigned{VERI_MODULE} : token) << '\n';
}

void VeriPackage::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintStart(out, level);
  PrintBody(out, level);
}

// Modules.

VeriModule::VeriModule(std::unique_ptr<VeriDesignUnitId> id, VeriModuleItems* parameter_ports, VeriExpressions* ports,
                       VeriModuleItems* items, std::unique_ptr<VeriScope> scope, unsigned long linefile)
    : VeriDesignUnit(std::move(id), items, std::move(scope), linefile), _parameter_ports(Adopt(parameter_ports)),
      _port_expressions(Adopt(ports)), _default_nettype(VeriLex::GetDefaultNettype()),
      _is_celldefine(VeriLex::GetCelldefine()) {
  CollectParams();
}

VeriModule::~VeriModule() {
  delete _parameter_ports;
  delete _port_expressions;
}

void VeriModule::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _parameter_ports);
  veri_visit(visitor, _port_expressions);
  VeriDesignUnit::VisitChildren(visitor);
}

namespace {

VeriParamDecl* to_param_decl(VeriModuleItem* item) {
  return item && item->GetClassId() == ID_VeriParamDecl ? static_cast<VeriParamDecl*>(item) : nullptr;
}

void collect_params(const VeriModuleItems* items, std::vector<VeriParamId*>& out) {
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(items)) {
    VeriParamDecl* decl = to_param_decl(item);
    if (!decl) continue;
    for (VeriIdDecl* id_decl : *decl->Ids())
      if (auto* id = id_decl->IdAs<VeriParamId>()) out.push_back(id);
  }
}

VeriTypeDecl* to_type_param(VeriModuleItem* item) {
  auto* decl = item && item->GetClassId() == ID_VeriTypeDecl ? static_cast<VeriTypeDecl*>(item) : nullptr;
  return decl && decl->GetId()->ParamToken() ? decl : nullptr;
}

void collect_type_params(const VeriModuleItems* items, std::vector<VeriDataType*>& out) {
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(items))
    if (const VeriTypeDecl* decl = to_type_param(item)) out.push_back(decl->GetId());
}

} // namespace

void VeriModule::CollectParams() {
  for (const VeriModuleItems* items : {_parameter_ports, _items}) {
    collect_params(items, _params);
    collect_type_params(items, _type_params);
  }
}

std::vector<VeriParamId*> VeriModule::OverridableParams() const {
  std::vector<VeriParamId*> params;
  for (VeriParamId* param : _params)
    if (param->IsOverridable()) params.push_back(param);
  return params;
}

VeriParamId* VeriModule::GetParam(const char* name) const {
  for (VeriParamId* param : _params)
    if (Strings::compare(param->Name(), name)) return param;
  return nullptr;
}

VeriDataType* VeriModule::GetTypeParam(const char* name) const {
  for (VeriDataType* param : _type_params)
    if (Strings::compare(param->Name(), name)) return param;
  return nullptr;
}

std::vector<VeriValuedId*> VeriModule::OverridableFormals() const {
  std::vector<VeriValuedId*> formals;
  auto add = [&formals](VeriIdDef* id) {
    if (id && id->IsOverridable()) formals.push_back(static_cast<VeriValuedId*>(id));
  };
  for (const VeriModuleItems* items : {_parameter_ports, _items})
    for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(items)) {
      if (const VeriTypeDecl* type = to_type_param(item)) add(type->GetId());
      if (const VeriParamDecl* param = to_param_decl(item))
        for (const VeriIdDecl* decl : *param->Ids()) add(decl->IdAs<VeriParamId>());
    }
  return formals;
}

VeriModport* VeriModule::GetModport(const char* name) const {
  VeriIdDef* id = GetScope()->FindHere(name);
  return id && id->IsModport() ? static_cast<VeriModportId*>(id)->GetModport() : nullptr;
}

VeriModule* VeriModule::EnclosingModule() const {
  const VeriScope* upper = GetScope() ? GetScope()->Upper() : nullptr;
  return upper ? upper->GetContainingModule() : nullptr;
}

VeriVariable* VeriModule::GetPort(const char* name) const {
  for (VeriVariable* port : _ports)
    if (Strings::compare(port->Name(), name)) return port;
  return nullptr;
}

void VeriModule::SetDirectives(unsigned celldefine, unsigned default_nettype) {
  _is_celldefine = celldefine != 0;
  _default_nettype = default_nettype;
}

// The module stands for the declaration, which is no unit of its own any more.
void VeriModule::AddExternDecl(VeriModule* module) {
  veri_file::ForgetDesignUnit(module->GetId());
  _extern_decls.emplace_back(module);
}

unsigned VeriModule::HasAnsiPorts() const {
  for (const VeriExpression* port : ItemsOf<const VeriExpression*>(_port_expressions))
    if (port && port->GetClassId() == ID_VeriAnsiPortDecl) return 1;
  return 0;
}

void VeriModule::AddImplicitNet(VeriDataDecl* decl) {
  if (!_items) _items = new VeriModuleItems;
  decl->SetParent(this);
  _items->Insert(decl);
}

void VeriModule::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintStart(out, level, _is_extern ? "extern " : "");
  // Imports stand in the head, so that the ports can name what they import.
  unsigned first_item = 0;
  for (; first_item < _items->Size() && _items->At(first_item)->GetClassId() == ID_VeriImport; first_item++) {
    out << ' ';
    static_cast<const VeriImport*>(_items->At(first_item))->PrintHead(out);
  }
  PrintPorts(out, level);
  if (_is_extern)
    out << ";\n";
  else
    PrintBody(out, level, first_item);
}

void VeriModule::PrintPorts(std::ostream& out, unsigned level) const {
  const char* before = " #(";
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_parameter_ports)) {
    out << before;
    before = ", ";
    if (const VeriParamDecl* param = to_param_decl(item))
      param->PrintHead(out, level);
    else if (item->GetClassId() == ID_VeriTypeDecl)
      static_cast<const VeriTypeDecl*>(item)->PrintHead(out, level);
  }
  if (*before == ',') out << ')';
  if (_port_expressions) {
    out << " (";
    veri_print_list(out, _port_expressions);
    out << ')';
  }
}

void VeriModule::PrintTimes(std::ostream& out, unsigned level) const {
  auto print = [&](const char* word, const VeriTimeLiteral* time) {
    if (!time) return;
    PrintLevel(out, level);
    out << word << ' ';
    time->PrettyPrint(out, 0);
    out << ";\n";
  };
  print("timeunit", TimeUnit());
  print("timeprecision", TimePrecision());
}

// Resolve.

void VeriModule::ResolveContents() {
  if (IsExtern() && !HasAnsiPorts()) {
    Warning("ignored extern module declaration with list of ports");
    return;
  }
  GetScope()->ResolveImports();
  ResolveAttributes(GetScope());
  ResolveParameterPorts();
  ResolvePorts();
  ResolveItems();
  DependOnInterfaces();
}

// Which interface a generic port stands for is known with its instance only, so any of them may change the module.
void VeriModule::DependOnInterfaces() {
  const bool is_generic = std::any_of(_ports.begin(), _ports.end(), [](const VeriVariable* port) {
    return port->InterfaceType() && !port->InterfaceType()->Name();
  });
  if (!is_generic) return;
  const char* own_file = LineFile::GetFileName(Linefile());
  for (const VeriLibrary* library : ValuesOf<const VeriLibrary*>(&veri_file::AllLibraries()))
    for (const VeriDesignUnit* unit : library->Units()) {
      const char* file = LineFile::GetFileName(unit->Linefile());
      if (unit->IsModule() && static_cast<const VeriModule*>(unit)->IsInterface() && file != own_file)
        AddImplicitDependency(file);
    }
}

void VeriModule::ResolveParameterPorts() {
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_parameter_ports)) item->Resolve(GetScope());
  if (_parameter_ports && _parameter_ports->Size() == 0) {
    delete _parameter_ports;
    _parameter_ports = nullptr;
  }
}

namespace {

/// Calls `add` for each port that an expression of the list of ports names. What names anything else is reported.
void accumulate_ports(VeriExpression* expression, bool is_whole_port, const std::function<void(VeriVariable*)>& add) {
  if (!expression) return;
  if (expression->IsConcat()) {
    unsigned direction = 0;
    bool is_mixed = false;
    for (VeriExpression* part : *static_cast<VeriConcat*>(expression)->Parts())
      accumulate_ports(part, /*is_whole_port=*/false, [&](VeriVariable* port) {
        is_mixed = is_mixed || (direction && direction != port->Dir());
        direction = port->Dir();
        add(port);
      });
    if (is_mixed) expression->Error("all ports in concatenation should have the same direction");
    return;
  }
  if (expression->GetClassId() == ID_VeriPortConnect) {
    accumulate_ports(static_cast<VeriPortConnect*>(expression)->Connection(), /*is_whole_port=*/false, add);
    return;
  }
  const VeriName* name = expression->AsName();
  if (!name && expression->GetClassId() != ID_VeriPortOpen) {
    expression->Error("illegal port-expression");
    return;
  }
  VeriIdDef* id = name ? name->GetId() : nullptr;
  if (!id) return; // not declared, which is reported, or a place left open
  auto* port = id->IsVar() ? static_cast<VeriVariable*>(id) : nullptr;
  if (port && port->Dir() != 0)
    add(port);
  else if (is_whole_port && name->GetClassId() == ID_VeriIdRef)
    expression->Error("%s is not a port", id->Name());
  else
    expression->Error("%s in port-expression is not a port", id->Name());
}

} // namespace

void VeriModule::AddPort(VeriVariable* port) {
  port->Set(IDF_PORT);
  for (const VeriVariable* former : _ports)
    if (former == port) return;
  _ports.push_back(port);
}

void VeriModule::ResolvePorts() {
  for (VeriExpression* expression : ItemsOf<VeriExpression*>(_port_expressions)) {
    if (!expression) continue;
    expression->Resolve(GetScope(), VeriEnv(ENV_PORT_EXPRESSION));
    if (expression->GetClassId() == ID_VeriAnsiPortDecl) {
      for (VeriIdDecl* decl : *static_cast<VeriAnsiPortDecl*>(expression)->Decl()->Ids())
        if (auto* port = decl->IdAs<VeriVariable>()) {
          port->Set(IDF_ANSI_PORT);
          AddPort(port);
        }
    } else {
      accumulate_ports(expression, /*is_whole_port=*/true, [this](VeriVariable* port) { AddPort(port); });
    }
  }
  if (_port_expressions && _port_expressions->Size() == 0) {
    delete _port_expressions;
    _port_expressions = nullptr;
  }
}

void VeriModule::ResolveItems() {
  const bool has_ansi_ports = HasAnsiPorts();
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_items)) {
    VeriParamDecl* param = to_param_decl(item);
    if (_parameter_ports && param && param->Token() == VERI_PARAMETER) {
      item->Warning("parameter declaration becomes local in %s with formal parameter declaration list", Name());
      param->MakeLocal();
    }
    const VeriTypeDecl* type_param = to_type_param(item);
    if (_parameter_ports && type_param && type_param->GetId()->IsOverridable()) {
      item->Warning("parameter declaration becomes local in %s with formal parameter declaration list", Name());
      type_param->GetId()->SetParamToken(VERI_LOCALPARAM);
    }
    if (has_ansi_ports && item->IsPortDeclaration())
      item->Error("port declaration not allowed in %s with formal port declaration list", Name());
    item->Resolve(GetScope());
  }
}

// Nested modules.

VeriNestedModule::VeriNestedModule(VeriModule* module, unsigned long linefile)
    : VeriModuleItem(linefile), _module(Adopt(module)) {}

VeriNestedModule::~VeriNestedModule() { delete _module; }

void VeriNestedModule::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _module); }

void VeriNestedModule::PrettyPrint(std::ostream& out, unsigned level) const { _module->PrettyPrint(out, level); }

void VeriNestedModule::Resolve(VeriScope*) {
  _module->Resolve();
  for (const char* file : KeysOf<const char*>(_module->Dependencies())) AddImplicitDependency(file);
}

void VeriPackage::ResolveContents() {
  GetScope()->ResolveImports();
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_items)) item->Resolve(GetScope());
}

void VeriPackage::Initialize() {
  Resolve();
  Info("elaborating package %s", Name());
  VeriDialectScope dialect(GetDialect());
  VeriNodeScope node(this);
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_items))
    if (to_param_decl(item)) item->Initialize();
}
