// Scopes: the tables of names that mirror the nesting of design units, blocks, subprograms and loops, and the order in
// which names are searched. A scope lists identifiers, it does not own them; the scope of a generated round owns the
// clones in it and the scopes below it.
#ifndef KESTRIN_VERILOG_VERISCOPE_H
#define KESTRIN_VERILOG_VERISCOPE_H

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "containers/map.h"
#include "containers/set.h"
#include "verilog/veriid.h"

class VeriFullName;
class VeriModule;

/// What a name is used for.
enum VERI_ENV_E {
  ENV_STATEMENT = 0,
  ENV_DECLARATION = 1,
  ENV_READ = 2,
  ENV_SUBROUTINE_ARG = 3,
  ENV_INDEX = 4,
  ENV_RANGE_BOUND = 5,
  ENV_CONDITION = 6,
  ENV_EVENT = 7,
  ENV_TARGET = 8,
  ENV_SYSTEM_TASK_ARG = 9,
  ENV_PORT_CONNECTION = 10,
  ENV_PORT_EXPRESSION = 11,
  ENV_LOOP_CONDITION = 12,
  ENV_INITIAL_VALUE = 13,
  ENV_FORCED_TARGET = 15,
  ENV_READ_WRITE = 16,
  ENV_MAYBE_UNDECLARED = 17,
  ENV_NO_DYNAMIC = 18
};

class VeriEnv {
public:
  /// `direction`: the token of the formal's direction, for arguments and connections; 0 when it is not known, which
  /// counts as both. The arguments of system tasks are neither read nor written, with VERI_SYSTEM_ID for a direction.
  explicit VeriEnv(VERI_ENV_E kind, unsigned direction = 0, bool constant = false)
      : _kind(kind), _direction(direction), _constant(constant) {}
  VERI_ENV_E Kind() const { return _kind; }
  bool IsRead() const;
  bool IsWrite() const;
  /// The text must be constant.
  bool IsConstant() const { return _constant; }
  /// The environment of the parts of a name or expression that are read for its sake.
  VeriEnv Index() const { return VeriEnv(ENV_INDEX, 0, _constant); }
  VeriEnv With(VERI_ENV_E kind) const { return VeriEnv(kind, _direction, _constant); }

private:
  VERI_ENV_E _kind;
  unsigned _direction;
  bool _constant;
};

enum veri_scope_kind {
  SCOPE_LIBRARY,
  SCOPE_UNIT,
  SCOPE_SUBPROGRAM,
  SCOPE_BLOCK,
  SCOPE_GENERATE ///< the body of a generate construct, or one round of it
};

class VeriScope {
public:
  /// The owner is the identifier that opens the scope; null for the scope of an unnamed loop and the like. The scope
  /// becomes the owner's local scope when that has none yet.
  VeriScope(veri_scope_kind kind, VeriScope* upper, VeriIdDef* owner);
  VeriScope(const VeriScope&) = delete;
  VeriScope& operator=(const VeriScope&) = delete;
  ~VeriScope();

  veri_scope_kind Kind() const { return _kind; }
  VeriScope* Upper() const { return _upper; }
  VeriIdDef* GetOwner() const { return _owner; }
  void SetOwner(VeriIdDef* owner) { _owner = owner; }
  const Map& Ids() const { return _ids; }
  const Set& Children() const { return _children; }
  /// Whether the ids of the scope exist once for each round of a generate construct or call of a subprogram.
  unsigned IsDynamic() const;

  /// False when the name is taken here. Otherwise the id stands in the scope and gets the flags of the place.
  bool Declare(VeriIdDef* id);
  void Undeclare(VeriIdDef* id);
  VeriIdDef* FindHere(const char* name) const;
  /// Here, then in the unnamed blocks of generate constructs below.
  VeriIdDef* FindLocal(const char* name) const;
  /// Here and in all scopes above, then among the design units.
  VeriIdDef* Find(const char* name) const;

  /// A module, interface or primitive that is nested in one of the units around; null when there is none of this name.
  VeriModule* FindNestedModule(const char* name) const;

  VeriScope* ModuleScope();
  /// The nearest subprogram around or at this scope; null outside.
  VeriIdDef* GetSubprogram() const;
  VeriDesignUnit* GetContainingDesignUnit() const;
  VeriModule* GetContainingModule() const;
  /// The library of the unit around, or whose scope this is.
  VeriLibrary* GetLibrary() const;

  // Imports.
  /// Makes the imports of this scope and of those below visible and declares implicit nets, once.
  void ResolveImports();
  /// package::name. A different object of the name, declared here or imported by name, is an error at `from`.
  void Import(VeriIdDef* id, const VeriTreeNode* from);
  /// package::*
  void ImportAll(const VeriScope* package);

  /// Remembers a name that may stand for a net without a declaration; the node is not kept.
  void RegisterPotentialImplicitNet(VeriFullName* name);
  /// Reports names that differ only in case.
  void Check() const;

  // Elaboration.
  /// Reports what is not used among the ids of Apply, and in the generated scopes below.
  void CheckUse() const;
  /// Calls `op` for the ids of this scope, and for those below that are neither generate bodies nor nested modules.
  void Apply(const std::function<void(VeriIdDef*)>& op) const;
  /// Sets the state of all ids aside, and gives it back.
  void PushStack() const;
  void PopStack() const;

  // Generated scopes.
  /// A scope with clones of this one's ids and of the scopes below, except generate bodies; owned by `upper`.
  VeriScope* Generate(VeriScope* upper, const std::string& label);
  /// For a generated scope: makes its clones the current ones of their templates, and gives the former ones back.
  void Enter();
  void Exit();
  /// The generated scope of a generate construct's body below this one, by label; null when there is none.
  VeriScope* FindGenerated(const std::string& label) const;

private:
  struct PotentialNet {
    std::string name;
    unsigned long linefile;
  };
  bool IsAnonymous() const;
  VeriIdDef* FindImported(const char* name) const;
  bool FindInAnonymousBlocks(const char* name, VeriIdDef** hit) const;
  void NoteAlternative(VeriIdDef* bound, VeriIdDef* id) const;
  void ReportAmbiguous(const char* name) const;
  void DeclareImplicitNets();
  void DeclareImplicitNet(const PotentialNet& net, VeriModule* module);
  void CollectIds(std::vector<VeriIdDef*>& out) const;
  bool FollowsUpper() const;
  std::unique_ptr<VeriScope> Clone(VeriScope* upper, VeriIdDef* owner);

  veri_scope_kind _kind;
  VeriScope* _upper;
  VeriIdDef* _owner;
  Map _ids;      // name to VeriIdDef
  Set _children; // scopes of the source below
  std::deque<PotentialNet> _potential_nets;
  Set _potential_names;
  Map _imported_by_name;  // name to VeriIdDef
  Map _imported_with_all; // name to VeriIdDef, an entry for each package that has the name
  Set _ambiguous_imports; // names that several packages have
  bool _imports_resolved = false;
  // Identifiers of other unnamed blocks, that names are bound to, to those of the same name here.
  mutable Map _alternatives;
  // What PushStack set aside.
  mutable std::vector<std::vector<std::pair<VeriIdDef*, std::unique_ptr<VeriIdDef>>>> _saved;
  // Of a generated scope.
  std::vector<std::unique_ptr<VeriIdDef>> _clones;
  std::vector<std::pair<VeriIdDef*, VeriIdDef*>> _templates;    // template, clone
  std::vector<std::pair<VeriIdDef*, VeriIdDef*>> _replacements; // identifier of a block that does not exist, clone
  std::vector<VeriIdDef*> _former;
  bool _is_round = false; // of a loop
  bool _is_apart = false; // of an interface: entered by itself, whatever is around
  std::vector<std::unique_ptr<VeriScope>> _generated_children;
  Map _generated_by_label; // label to VeriScope
  std::vector<std::unique_ptr<std::string>> _labels;
};

/// A generated scope is entered while the object lives; null changes nothing.
class VeriGeneratedScope {
public:
  explicit VeriGeneratedScope(VeriScope* scope) : _scope(scope) {
    if (_scope) _scope->Enter();
  }
  VeriGeneratedScope(const VeriGeneratedScope&) = delete;
  VeriGeneratedScope& operator=(const VeriGeneratedScope&) = delete;
  ~VeriGeneratedScope() {
    if (_scope) _scope->Exit();
  }

private:
  VeriScope* _scope;
};

#endif
