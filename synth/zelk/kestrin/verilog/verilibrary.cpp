// The store of analysed design units, and the resolve and elaboration of global declarations.
#include "verilog/verilibrary.h"

#include <algorithm>
#include <ostream>
#include <string_view>

#include "containers/views.h"
#include "database/cell.h"
#include "database/library.h"
#include "database/libset.h"
#include "database/netlist.h"
#include "util/message.h"
#include "util/services.h"
#include "verilog/veri_file.h"
#include "verilog/verielabstate.h"
#include "verilog/verimoduleitem.h"

VeriLibrary::VeriLibrary(const char* name)
    : _name(name), _id(std::make_unique<VeriLibraryId>(name, this)),
      _globals(std::make_unique<VeriScope>(SCOPE_LIBRARY, nullptr, _id.get())), _names(HASH_STRING),
      _packages(HASH_STRING) {}

VeriLibrary::~VeriLibrary() {
  RemoveAllDesignUnits();
  for (Set* files : ValuesOf<Set*>(&_dependent_files)) delete files;
}

void VeriLibrary::VisitChildren(VeriVisitor& visitor) {
  for (VeriModuleItem* item : _items) item->Accept(visitor);
  for (VeriDesignUnit* unit : ValuesOf<VeriDesignUnit*>(&_units)) unit->Accept(visitor);
}

void VeriLibrary::PrettyPrint(std::ostream& out, unsigned level) const {
  for (const VeriTreeNode* node : KeysOf<const VeriTreeNode*>(&_contents)) {
    node->PrettyPrint(out, level);
    if (dynamic_cast<const VeriDesignUnit*>(node)) out << '\n';
  }
}

// Design units.

std::vector<VeriDesignUnit*> VeriLibrary::Units() const {
  std::vector<VeriDesignUnit*> units;
  for (VeriDesignUnit* unit : ValuesOf<VeriDesignUnit*>(&_units)) units.push_back(unit);
  return units;
}

bool VeriLibrary::AddDesignUnit(VeriDesignUnit* unit) {
  if (Message::ErrorCount() != 0) {
    unit->Error("design unit %s ignored due to previous errors", unit->Name());
    return false;
  }
  if (unit->IsModule()) return AddModule(static_cast<VeriModule*>(unit));
  return AddNamed(unit->IsPackage() ? _packages : _names, unit);
}

bool VeriLibrary::AddNamed(Map& names, VeriDesignUnit* unit) {
  if (const auto* former = FromWord<VeriDesignUnit*>(names.GetValue(unit->Name()))) {
    unit->GetId()->Error("%s is already declared", unit->Name());
    former->GetId()->Info("%s is declared here", unit->Name());
    return false;
  }
  Insert(names, unit);
  return true;
}

namespace {

/// Direction and name of each port of a list of declarations.
std::vector<std::pair<unsigned, std::string>> listed_ports(const VeriModule& module) {
  std::vector<std::pair<unsigned, std::string>> ports;
  for (const VeriExpression* port : ItemsOf<const VeriExpression*>(module.PortExpressions())) {
    const auto* ansi = dynamic_cast<const VeriAnsiPortDecl*>(port);
    if (!ansi) continue;
    for (const VeriIdDecl* id : ItemsOf<const VeriIdDecl*>(ansi->Decl()->Ids()))
      ports.emplace_back(ansi->Decl()->Direction(), id->GetId()->Name());
  }
  return ports;
}

/// IEEE 1800-2005 clause 19.4: both have the same ports. Lists of names only tell too little.
void check_extern(const VeriModule& module, const VeriModule& declaration) {
  if (module.IsExtern() || !declaration.IsExtern() || !module.HasAnsiPorts() || !declaration.HasAnsiPorts()) return;
  if (listed_ports(module) != listed_ports(declaration))
    module.GetId()->Error("ports of module %s differ from those of its extern declaration", module.Name());
}

} // namespace

/// A declaration without body gives way to the module itself, whichever comes first.
bool VeriLibrary::AddModule(VeriModule* module) {
  auto* unit = FromWord<VeriDesignUnit*>(_names.GetValue(module->Name()));
  if (!unit || !unit->IsModule()) return AddNamed(_names, module);
  auto* former = static_cast<VeriModule*>(unit);
  check_extern(*module, *former);
  check_extern(*former, *module);
  if (module->IsExtern()) {
    former->AddExternDecl(module);
    return true;
  }
  if (former->IsExtern()) {
    Extract(former);
    Insert(_names, module);
    module->AddExternDecl(former);
    return true;
  }
  module->GetId()->Error("a declaration for module %s already exists", module->Name());
  former->GetId()->Info("%s is declared here", former->Name());
  return false;
}

void VeriLibrary::Insert(Map& names, VeriDesignUnit* unit) {
  names.Insert(unit->Name(), unit);
  _contents.Insert(static_cast<VeriTreeNode*>(unit));
  _units.Insert(unit->GetId(), unit);
  unit->GetId()->SetLibrary(this);
  unit->SetParent(this);
}

void VeriLibrary::Extract(VeriDesignUnit* unit) {
  Map& names = unit->IsPackage() ? _packages : _names;
  if (names.GetValue(unit->Name()) == unit) names.Remove(unit->Name());
  _units.Remove(unit->GetId());
  _contents.Remove(static_cast<VeriTreeNode*>(unit));
  unit->ClearParent();
}

void VeriLibrary::RemoveDesignUnit(VeriDesignUnit* unit) {
  Extract(unit);
  delete unit;
}

void VeriLibrary::RemoveAllDesignUnits() {
  for (VeriDesignUnit* unit : Units()) RemoveDesignUnit(unit);
}

VeriModule* VeriLibrary::GetModule(const char* name, unsigned case_sensitive) const {
  VeriDesignUnit* unit = GetDefinition(name);
  if (unit && unit->IsModule()) return static_cast<VeriModule*>(unit);
  if (case_sensitive) return nullptr;
  for (VeriDesignUnit* candidate : ValuesOf<VeriDesignUnit*>(&_names))
    if (candidate->IsModule() && Strings::compare_nocase(candidate->Name(), name))
      return static_cast<VeriModule*>(candidate);
  return nullptr;
}

VeriPackage* VeriLibrary::GetPackage(const char* name) const {
  return static_cast<VeriPackage*>(FromWord<VeriDesignUnit*>(_packages.GetValue(name)));
}

VeriDesignUnit* VeriLibrary::GetDefinition(const char* name) const {
  if (auto* unit = FromWord<VeriDesignUnit*>(_names.GetValue(name))) return unit;
  // A path that leads into a unit: every name of it is that of a unit nested in the one before.
  const std::string_view path = name;
  const size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) return nullptr;
  const VeriDesignUnit* outer = GetDefinition(std::string(path.substr(0, dot)).c_str());
  if (!outer || !outer->GetScope()) return nullptr;
  const VeriIdDef* id = outer->GetScope()->FindHere(std::string(path.substr(dot + 1)).c_str());
  return id && id->IsDesignUnit() ? static_cast<const VeriDesignUnitId*>(id)->GetDesignUnit() : nullptr;
}

// Global declarations.

void VeriLibrary::AddItem(VeriModuleItem* item) {
  _items.Insert(item);
  _contents.Insert(static_cast<VeriTreeNode*>(item));
  _unresolved.Insert(item);
  item->SetParent(this);
  if (!_is_elaborated) return;
  if (item->GetClassId() == ID_VeriImport)
    kestrin_debug("Incremental import will force library %s to be re-elaborated", Name());
  else
    kestrin_debug("New global declaration will force library %s to be re-elaborated", Name());
  RequireElaboration();
}

namespace {

template <class T> void remove_from(ArrayOf<T>& items, const T* item) {
  for (unsigned i = items.Size(); i-- > 0;)
    if (items.At(i) == item) items.Remove(i);
}

} // namespace

void VeriLibrary::RemoveItem(VeriModuleItem* item) {
  remove_from<VeriModuleItem>(_items, item);
  _contents.Remove(static_cast<VeriTreeNode*>(item));
  remove_from<VeriModuleItem>(_unresolved, item);
  delete FromWord<Set*>(_dependent_files.GetValue(item));
  _dependent_files.Remove(item);
  delete item;
}

void VeriLibrary::ResolveGlobals(Set* done) {
  VeriDialectScope dialect(VERI_SV); // nothing else has global declarations
  VeriNodeScope node(this);
  VeriDependencyScope dependencies;
  _globals->ResolveImports();
  for (VeriModuleItem* item : _unresolved) {
    ClearImplicitDependencies();
    item->Resolve(_globals.get());
    if (done) done->Insert(item);
    for (const char* file : KeysOf<const char*>(ImplicitDependencies())) AddDependentFile(item, file);
  }
  _unresolved.Reset();
}

void VeriLibrary::Elaborate() {
  if (_is_elaborated) return;
  _is_elaborated = true;
  ResolveGlobals();
  if (_items.Size() == 0) return;
  kestrin_debug("Elaborating global declarations in library %s", Name());
  Library* library = Libset::Global()->GetLibrary(Name());
  if (!library) {
    library = new Library(Name());
    Libset::Global()->Add(library);
  }
  auto* cell = new Cell;
  library->Add(cell);
  Elaborate(cell);
}

/// Makes the values in a netlist of the nameless cell, which is kept under the library's name when all went well.
void VeriLibrary::Elaborate(Cell* cell) {
  VeriDialectScope dialect(VERI_SV);
  VeriNodeScope node(this);
  const unsigned former_errors = Message::ErrorCount();
  const std::string name = _name + " (library)";
  auto* netlist = new Netlist("", Linefile());
  cell->Add(netlist);
  netlist->AddAtt(" cell_name", name.c_str());
  netlist->AddAtt(" library_name", Name());
  {
    VeriElaborationState state(ELAB_FULL, nullptr, cell->Owner(), netlist);
    VeriElaborationScope scope(&state);
    _globals->Apply([](VeriIdDef* id) { id->Reset(); });
    for (VeriModuleItem* item : _items) item->Initialize();
    for (VeriModuleItem* item : _items) item->Elaborate();
  }
  Library* library = cell->Owner();
  if (Message::ErrorCount() != former_errors) {
    delete cell;
    return;
  }
  if (Cell* former = library->GetCell(name.c_str())) {
    Info("replacing existing cell %s", name.c_str());
    if (Netlist* former_view = former->GetFirstNetlist()) former_view->ReplaceReferences(netlist, 1);
    delete former;
  }
  cell->SetName(name.c_str());
  cell->AddAtt(" :library", "");
}

void VeriLibrary::AddDependentFile(const VeriModuleItem* item, const char* file) {
  auto* files = FromWord<Set*>(_dependent_files.GetValue(item));
  if (!files) {
    files = new Set;
    _dependent_files.Insert(item, files);
  }
  files->Insert(file);
}

const Set* VeriLibrary::GetDependentFiles(const VeriModuleItem* item) const {
  return FromWord<const Set*>(_dependent_files.GetValue(item));
}
