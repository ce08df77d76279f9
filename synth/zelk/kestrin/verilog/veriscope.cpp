// Scopes: declaration and search of names, imports, implicit nets, and the scopes that generate constructs make.
#include "verilog/veriscope.h"

#include "util/message.h"
#include "util/services.h"
#include "verilog/veri_lex.h"
#include "verilog/veri_message.h"
#include "verilog/verilibrary.h"
#include "verilog/verimodule.h"
#include "verilog/verimoduleitem.h"

// The environment of a name.

bool VeriEnv::IsRead() const {
  switch (_kind) {
  case ENV_READ:
  case ENV_INDEX:
  case ENV_RANGE_BOUND:
  case ENV_CONDITION:
  case ENV_EVENT:
  case ENV_LOOP_CONDITION:
  case ENV_INITIAL_VALUE:
  case ENV_READ_WRITE: return true;
  case ENV_SUBROUTINE_ARG:
  case ENV_SYSTEM_TASK_ARG:
  case ENV_PORT_CONNECTION: return _direction == VERI_INPUT || _direction == VERI_INOUT || _direction == 0;
  case ENV_STATEMENT:
  case ENV_DECLARATION:
  case ENV_TARGET:
  case ENV_PORT_EXPRESSION:
  case ENV_FORCED_TARGET:
  case ENV_MAYBE_UNDECLARED:
  case ENV_NO_DYNAMIC: return false;
  }
  return false;
}

bool VeriEnv::IsWrite() const {
  switch (_kind) {
  case ENV_TARGET:
  case ENV_FORCED_TARGET:
  case ENV_READ_WRITE: return true;
  case ENV_SUBROUTINE_ARG:
  case ENV_SYSTEM_TASK_ARG:
  case ENV_PORT_CONNECTION: return _direction == VERI_OUTPUT || _direction == VERI_INOUT || _direction == 0;
  case ENV_STATEMENT:
  case ENV_DECLARATION:
  case ENV_READ:
  case ENV_INDEX:
  case ENV_RANGE_BOUND:
  case ENV_CONDITION:
  case ENV_EVENT:
  case ENV_PORT_EXPRESSION:
  case ENV_LOOP_CONDITION:
  case ENV_INITIAL_VALUE:
  case ENV_MAYBE_UNDECLARED:
  case ENV_NO_DYNAMIC: return false;
  }
  return false;
}

// Life.

VeriScope::VeriScope(veri_scope_kind kind, VeriScope* upper, VeriIdDef* owner)
    : _kind(kind), _upper(upper), _owner(owner), _ids(HASH_STRING), _potential_names(HASH_STRING),
      _imported_by_name(HASH_STRING), _imported_with_all(HASH_STRING), _ambiguous_imports(HASH_STRING),
      _generated_by_label(HASH_STRING) {
  if (_upper) _upper->_children.Insert(this);
  if (_owner && !_owner->LocalScope()) _owner->SetLocalScope(this);
}

// Identifiers and scopes of one declaration die in either order, so each forgets the other.
VeriScope::~VeriScope() {
  for (VeriIdDef* id : ValuesOf<VeriIdDef*>(&_ids)) id->SetDeclaringScope(nullptr);
  for (VeriScope* child : KeysOf<VeriScope*>(&_children)) child->_upper = nullptr;
  if (_upper) _upper->_children.Remove(this);
  if (_owner && _owner->LocalScope() == this) _owner->SetLocalScope(nullptr);
}

// The place of a scope.

unsigned VeriScope::IsDynamic() const {
  for (const VeriScope* scope = this; scope && scope->_kind != SCOPE_UNIT; scope = scope->_upper)
    if (scope->_kind == SCOPE_GENERATE || scope->_kind == SCOPE_SUBPROGRAM) return 1;
  return 0;
}

VeriScope* VeriScope::ModuleScope() {
  VeriScope* scope = this;
  while (scope && scope->_kind != SCOPE_UNIT) scope = scope->_upper;
  return scope;
}

VeriIdDef* VeriScope::GetSubprogram() const {
  for (const VeriScope* scope = this; scope && scope->_kind != SCOPE_UNIT; scope = scope->_upper)
    if (scope->_kind == SCOPE_SUBPROGRAM) return scope->_owner;
  return nullptr;
}

VeriDesignUnit* VeriScope::GetContainingDesignUnit() const {
  const VeriScope* unit = const_cast<VeriScope*>(this)->ModuleScope();
  return unit && unit->_owner ? static_cast<VeriDesignUnitId*>(unit->_owner)->GetDesignUnit() : nullptr;
}

VeriModule* VeriScope::GetContainingModule() const {
  VeriDesignUnit* unit = GetContainingDesignUnit();
  return unit && unit->IsModule() ? static_cast<VeriModule*>(unit) : nullptr;
}

VeriLibrary* VeriScope::GetLibrary() const {
  const VeriScope* top = this;
  while (top->_upper) top = top->_upper;
  if (!top->_owner) return nullptr;
  if (top->_kind == SCOPE_LIBRARY) return static_cast<VeriLibraryId*>(top->_owner)->GetLibrary();
  return top->_kind == SCOPE_UNIT ? static_cast<VeriDesignUnitId*>(top->_owner)->GetLibrary() : nullptr;
}

bool VeriScope::IsAnonymous() const { return !_owner || _owner->Is(IDF_ANONYMOUS); }

// Declaration.

bool VeriScope::Declare(VeriIdDef* id) {
  if (_imported_by_name.GetItem(id->Name()) || !_ids.Insert(id->Name(), id)) return false;
  id->SetDeclaringScope(this);
  for (const VeriScope* scope = this; scope && scope->_kind != SCOPE_UNIT; scope = scope->_upper) {
    if (scope->_kind == SCOPE_GENERATE) id->Set(IDF_IN_GENERATE);
    if (scope->_kind == SCOPE_SUBPROGRAM) id->Set(IDF_IN_SUBPROGRAM);
  }
  const bool is_package =
      _kind == SCOPE_UNIT && _owner && static_cast<VeriDesignUnitId*>(_owner)->GetDesignUnitToken() == VERI_PACKAGE;
  if (_kind == SCOPE_LIBRARY || is_package) id->Set(IDF_GLOBAL);
  return true;
}

void VeriScope::Undeclare(VeriIdDef* id) {
  if (id->DeclaringScope() != this) return;
  _ids.Remove(id->Name());
  id->SetDeclaringScope(nullptr);
}

// Search.

VeriIdDef* VeriScope::FindHere(const char* name) const { return FromWord<VeriIdDef*>(_ids.GetValue(name)); }

VeriIdDef* VeriScope::FindLocal(const char* name) const {
  if (VeriIdDef* id = FindHere(name)) return id;
  VeriIdDef* hit = nullptr;
  return FindInAnonymousBlocks(name, &hit) ? hit : nullptr;
}

/// The scopes of generate constructs that have no name, and those in them, do not hide what they declare, unlike
/// unnamed blocks of statements. False when a hit must not be seen from here.
bool VeriScope::FindInAnonymousBlocks(const char* name, VeriIdDef** hit) const {
  for (const VeriScope* child : KeysOf<const VeriScope*>(&_children)) {
    if (child->_kind != SCOPE_GENERATE || !child->IsAnonymous()) continue;
    VeriIdDef* id = child->FindHere(name);
    if (id && id->IsGenVar()) continue; // of a loop, and known in it only
    if (id) {
      if (!id->InDynamicScope()) return false;
      if (*hit)
        child->NoteAlternative(*hit, id);
      else
        *hit = id;
    } else if (!child->FindInAnonymousBlocks(name, hit)) {
      return false;
    }
  }
  return true;
}

/// Of blocks that exclude each other the name stands for what the one that exists declares.
void VeriScope::NoteAlternative(VeriIdDef* bound, VeriIdDef* id) const { _alternatives.Insert(bound, id); }

void VeriScope::ReportAmbiguous(const char* name) const {
  constexpr auto format =
      "%s was imported from multiple packages with ::* - none of the imported declarations are visible";
  const VeriTreeNode* top = VeriTreeNode::TopNode();
  veri_error(top ? top->Linefile() : 0, format, name);
  std::vector<const VeriIdDef*> candidates; // the last import comes first
  for (const MapItem* item = _imported_with_all.GetItem(name); item; item = _imported_with_all.GetNextSameKeyItem(item))
    candidates.insert(candidates.begin(), FromWord<const VeriIdDef*>(item->Value()));
  for (const VeriIdDef* id : candidates) id->Info("see declaration of %s", name);
}

VeriIdDef* VeriScope::FindImported(const char* name) const {
  if (VeriIdDef* id = FromWord<VeriIdDef*>(_imported_by_name.GetValue(name))) return id;
  if (!_ambiguous_imports.Contains(name)) return FromWord<VeriIdDef*>(_imported_with_all.GetValue(name));
  ReportAmbiguous(name);
  return nullptr;
}

VeriIdDef* VeriScope::Find(const char* name) const {
  for (const VeriScope* scope = this;; scope = scope->_upper) {
    if (VeriIdDef* id = scope->FindLocal(name)) return id;
    if (VeriIdDef* id = scope->FindImported(name)) return id;
    if (scope->_upper) continue;
    if (scope->_kind != SCOPE_LIBRARY) return nullptr;
    VeriDesignUnit* unit = scope->GetLibrary() ? scope->GetLibrary()->GetDefinition(name) : nullptr;
    return unit ? unit->GetId() : nullptr;
  }
}

VeriModule* VeriScope::FindNestedModule(const char* name) const {
  for (const VeriScope* scope = this; scope && scope->_kind != SCOPE_LIBRARY; scope = scope->_upper) {
    const VeriIdDef* id = scope->_kind == SCOPE_UNIT ? scope->FindHere(name) : nullptr;
    if (!id || !id->IsDesignUnit()) continue;
    VeriDesignUnit* unit = static_cast<const VeriDesignUnitId*>(id)->GetDesignUnit();
    if (unit && unit->IsModule()) return static_cast<VeriModule*>(unit);
  }
  return nullptr;
}

// Imports.

namespace {

/// What stands directly in a scope; null for the scopes of statements.
const VeriModuleItems* items_of(const VeriScope* scope) {
  const VeriIdDef* owner = scope->GetOwner();
  switch (owner ? scope->Kind() : SCOPE_BLOCK) {
  case SCOPE_LIBRARY: return &scope->GetLibrary()->GlobalItems();
  case SCOPE_UNIT: {
    const VeriDesignUnit* unit = static_cast<const VeriDesignUnitId*>(owner)->GetDesignUnit();
    return unit ? unit->Items() : nullptr;
  }
  case SCOPE_GENERATE: {
    const auto* block = dynamic_cast<const VeriGenerateBlock*>(owner->GetModuleItem());
    return block ? block->Items() : nullptr;
  }
  case SCOPE_SUBPROGRAM:
  case SCOPE_BLOCK: return nullptr;
  }
  return nullptr;
}

} // namespace

// Imports come first, since a name that one of them provides is no implicit net.
void VeriScope::ResolveImports() {
  if (_imports_resolved && _kind != SCOPE_LIBRARY) return;
  _imports_resolved = true;
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(items_of(this)))
    if (item && item->GetClassId() == ID_VeriImport) item->Resolve(this);
  DeclareImplicitNets();
  for (VeriScope* child : KeysOf<VeriScope*>(&_children))
    if (_kind != SCOPE_LIBRARY || child->_kind != SCOPE_UNIT) child->ResolveImports();
}

void VeriScope::Import(VeriIdDef* id, const VeriTreeNode* from) {
  VeriIdDef* former = FindHere(id->Name());
  if (!former) former = FromWord<VeriIdDef*>(_imported_by_name.GetValue(id->Name()));
  if (!former) {
    _imported_by_name.Insert(id->Name(), id);
  } else if (former != id) {
    from->Error("%s is already declared", id->Name());
    former->Info("see declaration of %s", former->Name());
  }
}

void VeriScope::ImportAll(const VeriScope* package) {
  for (VeriIdDef* id : ValuesOf<VeriIdDef*>(&package->_ids)) {
    const MapItem* item = _imported_with_all.GetItem(id->Name());
    const bool is_new_name = !item;
    while (item && item->Value() != id) item = _imported_with_all.GetNextSameKeyItem(item);
    if (item) continue;
    _imported_with_all.Insert(id->Name(), id, 0, /*force_insert=*/1);
    if (!is_new_name) _ambiguous_imports.Insert(id->Name());
  }
}

// Implicit nets, IEEE 1364-2005 clause 4.5.

void VeriScope::RegisterPotentialImplicitNet(VeriFullName* name) {
  const char* text = name->IsHier() ? nullptr : name->GetName();
  if (!text || !ModuleScope() || _potential_names.Contains(text)) return;
  const VeriIdDef* id = Find(text);
  if (id && !id->IsDesignUnit()) return;
  _potential_nets.push_back({text, name->Linefile()});
  _potential_names.Insert(_potential_nets.back().name.c_str());
}

void VeriScope::DeclareImplicitNets() {
  if (_potential_nets.empty()) return;
  VeriModule* module = GetContainingModule();
  if (!module) KESTRIN_REPORT_INTERNAL("can't create implicit net outside module scope");
  if (module && !module->IsInterface())
    for (const PotentialNet& net : _potential_nets) {
      const VeriIdDef* id = Find(net.name.c_str());
      if (!id || id->IsDesignUnit()) DeclareImplicitNet(net, module);
    }
  _potential_names.Reset();
  _potential_nets.clear();
}

/// The declaration stands among the items of the generate block that needs the net, so that each round has its own.
void VeriScope::DeclareImplicitNet(const PotentialNet& net, VeriModule* module) {
  unsigned type = module->DefaultNettype();
  const bool is_forbidden = type == VeriLex::VERI_NONE_NETTYPE;
  if (is_forbidden) {
    veri_error(net.linefile, "cannot declare implicit net %s because the current value of `default_nettype is none",
               net.name.c_str());
    type = VERI_WIRE; // so that what uses it is not reported as well
  }
  auto id = std::make_unique<VeriVariable>(net.name.c_str(), type, net.linefile);
  id->Set(IDF_IMPLICIT);
  if (!Declare(id.get())) return;
  if (!is_forbidden) id->Warning("created implicit net for %s", id->Name());
  auto* ids = new VeriIdDecls(1);
  ids->Insert(new VeriIdDecl(std::move(id), nullptr, nullptr, net.linefile));
  auto* decl = new VeriDataDecl(0, type, nullptr, ids, net.linefile);
  auto* block = _kind == SCOPE_GENERATE && _owner ? dynamic_cast<VeriGenerateBlock*>(_owner->GetModuleItem()) : nullptr;
  if (block && block->Items()) {
    decl->SetParent(block);
    block->Items()->Insert(decl);
  } else {
    module->AddImplicitNet(decl);
  }
}

void VeriScope::Check() const {
  Map names(HASH_STRING_NOCASE, _ids.Size());
  const MessageDirectives* directives = VeriLex::MsgDirectives();
  for (const VeriIdDef* id : ValuesOf<const VeriIdDef*>(&_ids)) {
    for (const MapItem* item = names.GetItem(id->Name()); item; item = names.GetNextSameKeyItem(item)) {
      const auto* former = FromWord<const VeriIdDef*>(item->Value());
      id->Info("%s and %s differ only in case.", id->Name(), former->Name());
      if (directives && directives->MessageLevel() == 2) former->Info("%s is declared here", former->Name());
    }
    names.Insert(id->Name(), id, 0, /*force_insert=*/1);
  }
}

// Elaboration.

void VeriScope::CollectIds(std::vector<VeriIdDef*>& out) const {
  for (VeriIdDef* id : ValuesOf<VeriIdDef*>(&_ids)) out.push_back(id);
  for (const VeriScope* child : KeysOf<const VeriScope*>(&_children))
    if (child->_kind != SCOPE_UNIT) child->CollectIds(out);
}

void VeriScope::Apply(const std::function<void(VeriIdDef*)>& op) const {
  for (VeriIdDef* id : ValuesOf<VeriIdDef*>(&_ids)) op(id);
  for (const VeriScope* child : KeysOf<const VeriScope*>(&_children))
    if (child->_kind != SCOPE_GENERATE && child->_kind != SCOPE_UNIT) child->Apply(op);
}

void VeriScope::CheckUse() const {
  Apply([](const VeriIdDef* id) { id->Check(); });
  for (const auto& child : _generated_children)
    if (child->_kind == SCOPE_GENERATE) child->CheckUse();
}

void VeriScope::PushStack() const {
  std::vector<VeriIdDef*> ids;
  CollectIds(ids);
  _saved.emplace_back();
  for (VeriIdDef* id : ids) _saved.back().emplace_back(id, id->SaveMutable());
}

void VeriScope::PopStack() const {
  KESTRIN_ASSERT(!_saved.empty());
  for (auto& [id, saved] : _saved.back()) id->RestoreMutable(std::move(saved));
  _saved.pop_back();
}

// Generated scopes.

VeriScope* VeriScope::Generate(VeriScope* upper, const std::string& label) {
  auto generated = Clone(upper, _owner);
  VeriScope* scope = generated.get();
  upper->_generated_children.push_back(std::move(generated));
  upper->_labels.push_back(std::make_unique<std::string>(label));
  const char* name = upper->_labels.back()->c_str();
  if (const VeriScope* former = upper->FindGenerated(label)) {
    if (_owner) _owner->Error("%s is already declared", name);
    if (former->_owner) former->_owner->Info("see declaration of %s", name);
  } else {
    upper->_generated_by_label.Insert(name, scope);
  }
  scope->_is_round = !label.empty() && label.back() == ']';
  scope->_is_apart = _kind == SCOPE_UNIT;
  if (scope->FollowsUpper()) scope->Enter();
  return scope;
}

/// Named blocks of statements, and unnamed blocks of generate constructs, whose objects are visible in the scope above:
/// they are entered and left with that.
bool VeriScope::FollowsUpper() const {
  return !_is_apart && (_kind != SCOPE_GENERATE || (IsAnonymous() && !_is_round));
}

/// Blocks and subprograms in the scope are cloned with it; bodies of generate constructs get scopes of their own when
/// they are picked.
std::unique_ptr<VeriScope> VeriScope::Clone(VeriScope* upper, VeriIdDef* owner) {
  auto scope = std::make_unique<VeriScope>(_kind, upper, owner);
  Map owners; // of the scopes below: identifier to its clone
  for (VeriIdDef* id : ValuesOf<VeriIdDef*>(&_ids)) {
    std::unique_ptr<VeriIdDef> clone = id->Generate();
    clone->SetDeclaringScope(scope.get());
    scope->_ids.Insert(clone->Name(), clone.get());
    scope->_templates.emplace_back(id, clone.get());
    owners.Insert(id, clone.get());
    scope->_clones.push_back(std::move(clone));
  }
  for (auto [bound, id] : Entries<VeriIdDef*, VeriIdDef*>(_alternatives))
    scope->_replacements.emplace_back(bound, FromWord<VeriIdDef*>(owners.GetValue(id)));
  for (VeriScope* child : KeysOf<VeriScope*>(&_children)) {
    if (child->_kind == SCOPE_GENERATE || child->_kind == SCOPE_UNIT) continue;
    auto* child_owner = child->_owner ? FromWord<VeriIdDef*>(owners.GetValue(child->_owner)) : nullptr;
    if (child_owner) child_owner->SetLocalScope(nullptr);
    scope->_generated_children.push_back(child->Clone(scope.get(), child_owner));
  }
  return scope;
}

void VeriScope::Enter() {
  auto enter = [this](VeriIdDef* id, VeriIdDef* clone) {
    _former.push_back(id->Current());
    id->SetCurrent(clone);
  };
  for (auto [id, clone] : _templates) enter(id, clone);
  for (auto [id, clone] : _replacements) enter(id, id->Current() == id ? clone : id->Current());
  for (const auto& child : _generated_children)
    if (child->FollowsUpper()) child->Enter();
}

void VeriScope::Exit() {
  for (size_t i = _generated_children.size(); i-- > 0;)
    if (_generated_children[i]->FollowsUpper()) _generated_children[i]->Exit();
  KESTRIN_ASSERT(_former.size() >= _templates.size() + _replacements.size());
  auto exit = [this](VeriIdDef* id) {
    id->SetCurrent(_former.back());
    _former.pop_back();
  };
  for (size_t i = _replacements.size(); i-- > 0;) exit(_replacements[i].first);
  for (size_t i = _templates.size(); i-- > 0;) exit(_templates[i].first);
}

VeriScope* VeriScope::FindGenerated(const std::string& label) const {
  return FromWord<VeriScope*>(_generated_by_label.GetValue(label.c_str()));
}
