// The state of one elaboration of one module: the netlist under construction with its four constant nets, the path of
// generated names, limits, and what the passes collect. It owns its sets and the scope of generated objects, not the
// netlist.
#ifndef KESTRIN_VERILOG_VERIELABSTATE_H
#define KESTRIN_VERILOG_VERIELABSTATE_H

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "containers/array.h"
#include "containers/map.h"
#include "containers/set.h"
#include "containers/views.h"
#include "verilog/verinode.h"

class Library;
class VeriIdDef;
class VeriModule;
class VeriModuleItem;
class VeriScope;
class VeriStateTable;
class VeriTreeNode;
class VeriVariable;

enum veri_elab_mode : int { ELAB_BLACK_BOX = 0, ELAB_HIERARCHY_ONLY = 2, ELAB_FULL = 3 };
enum veri_elab_stage { ELAB_INITIALIZE = 3, ELAB_GENERATE_OBJECTS = 4, ELAB_PREPARE = 5, ELAB_INTERNALS = 6 };
enum COUNTER_TYPE { COUNTER_PORT_EXPR, COUNTER_BLOCK, COUNTER_TYPES };

/// The dotted path of the blocks and instances that are entered: "b[3].inner".
class VeriStringPath {
public:
  void Push(const char* name) { _names.emplace_back(name); }
  void Pop() { _names.pop_back(); }
  unsigned Length() const { return static_cast<unsigned>(_names.size()); }
  /// The path and the name joined by dots.
  std::string CreateFullName(const char* name) const;
  std::string ToString() const;

private:
  std::vector<std::string> _names;
};

/// One body of a generate construct that exists in this run.
struct VeriGenerateRound {
  VeriScope* generated = nullptr; ///< null: the items stand in the scope around
  std::string label;              ///< "b" or "b[3]"
  ArrayOf<VeriModuleItem>* items = nullptr;
  VeriModuleItem* single = nullptr; ///< in place of the list
  VeriIdDef* genvar = nullptr;      ///< null outside of loops
  int value = 0;
};

/// What the runs over a module with one parameter set have in common, when it has to be elaborated again.
struct VeriRunHistory {
  Set refused_rams{HASH_POINTER}; ///< variables that cannot be RAMs
  unsigned num_reports = 0;       ///< messages of $display and the like that were given
};

class VeriElaborationState {
public:
  VeriElaborationState(veri_elab_mode mode, VeriModule* module, Library* library, Netlist* netlist);
  VeriElaborationState(const VeriElaborationState&) = delete;
  VeriElaborationState& operator=(const VeriElaborationState&) = delete;
  ~VeriElaborationState();

  veri_elab_mode Mode() const { return _mode; }
  veri_elab_stage Stage() const { return _stage; }
  void SetStage(veri_elab_stage stage) { _stage = stage; }
  VeriModule* Module() const { return _module; }
  Library* GetLibrary() const { return _library; }
  Netlist* GetNetlist() const { return _netlist; }
  Net* Gnd();
  Net* Pwr();
  Net* X();
  Net* Z();

  // Names of nets and instances.
  void PushNamedPath(const char* name) { _named_path.Push(name); }
  void PopNamedPath() { _named_path.Pop(); }
  std::string CreateFullName(const char* name) const { return _named_path.CreateFullName(name); }
  const VeriStringPath& NamedPath() const { return _named_path; }
  unsigned Counter(COUNTER_TYPE type) { return _counters[type]++; }

  // Limits of loops: which is 0 for loops with a constant condition.
  int ConstantLoopLimit() const { return _constant_loop_limit; }
  int NonConstantLoopLimit() const { return _non_constant_loop_limit; }
  void SetLoopLimits(int constant, int non_constant);

  // The subroutines that are being executed, innermost last.
  void PushFuncStack(const VeriIdDef* id) { _func_stack.push_back(id); }
  void PopFuncStack() { _func_stack.pop_back(); }
  unsigned FuncDepth() const { return static_cast<unsigned>(_func_stack.size()); }
  unsigned IsInFunction() const { return !_func_stack.empty(); }

  /// The scope of what generate constructs made in this run; generated scopes hang below it.
  VeriScope* GeneratedRoot() const { return _generated_root; }
  /// The generated scope whose items are being elaborated.
  VeriScope* CurrentGenerated() const { return _generated_stack.back(); }
  void PushGenerated(VeriScope* scope) { _generated_stack.push_back(scope); }
  void PopGenerated() { _generated_stack.pop_back(); }
  /// The bodies of a generate construct in the present generated scope.
  std::vector<VeriGenerateRound>& Rounds(const VeriTreeNode* construct) {
    return _rounds[{construct, CurrentGenerated()}];
  }
  /// The process that is being elaborated; null outside.
  VeriTreeNode* Process() const { return _process; }
  void SetProcess(VeriTreeNode* process) { _process = process; }
  // Memories that become RAMs, in the order of their declaration.
  void RegisterInferredRam(VeriVariable* variable) { _inferred_rams.push_back(variable); }
  const std::vector<VeriVariable*>& InferredRams() const { return _inferred_rams; }
  /// The variable cannot be a RAM after all; the module is elaborated again.
  void RefuseRam(const VeriVariable* variable);
  bool IsRefusedRam(const VeriVariable* variable) const;
  bool HasRefusedRams() const { return _has_refused_rams; }
  /// What former runs over the same module have left; borrowed.
  void SetHistory(VeriRunHistory* history) { _history = history; }
  /// Whether the next message that the source itself asks for was not given by a former run.
  bool IsNewReport();
  /// A variable that may be encoded by its states, with what is known of it; and all of these.
  void AddEncodable(VeriVariable* variable);
  std::vector<std::unique_ptr<VeriStateTable>>& Encodables() { return _encodables; }
  /// VeriDefParamAssign that exist in this run; of these, those whose instance is not known by the identifier; and
  /// those that an instance took.
  Set& Defparams() { return _defparams; }
  Set& UnboundDefparams() { return _unbound_defparams; }
  Set& TakenDefparams() { return _taken_defparams; }
  Map* Parameters() const { return _parameters; }
  void SetParameters(Map* parameters) { _parameters = parameters; }

private:
  friend class VeriElaborationScope;
  Net* ConstantNet(Net*& net, Net* (Netlist::*make)(unsigned long));

  veri_elab_mode _mode;
  veri_elab_stage _stage = ELAB_INITIALIZE;
  VeriModule* _module;
  Library* _library;
  Netlist* _netlist;
  Net* _gnd = nullptr;
  Net* _pwr = nullptr;
  Net* _x = nullptr;
  Net* _z = nullptr;
  std::vector<VeriVariable*> _inferred_rams;
  VeriRunHistory* _history = nullptr;
  bool _has_refused_rams = false; // in this run
  unsigned _num_reports = 0;      // in this run
  std::vector<std::unique_ptr<VeriStateTable>> _encodables;
  Set _defparams;
  Set _unbound_defparams;
  Set _taken_defparams;
  std::vector<const VeriIdDef*> _func_stack;
  VeriStringPath _named_path;
  Map* _parameters = nullptr;
  VeriScope* _generated_root = nullptr;
  std::vector<VeriScope*> _generated_stack;
  std::map<std::pair<const VeriTreeNode*, VeriScope*>, std::vector<VeriGenerateRound>> _rounds;
  VeriTreeNode* _process = nullptr;
  int _constant_loop_limit = 5000;
  int _non_constant_loop_limit = 250;
  unsigned _counters[COUNTER_TYPES] = {};
};

/// The state is the current one while the object lives.
class VeriElaborationScope {
public:
  explicit VeriElaborationScope(VeriElaborationState* state) : _former(VeriNode::_elab_state) {
    VeriNode::_elab_state = state;
  }
  VeriElaborationScope(const VeriElaborationScope&) = delete;
  VeriElaborationScope& operator=(const VeriElaborationScope&) = delete;
  ~VeriElaborationScope() { VeriNode::_elab_state = _former; }

private:
  VeriElaborationState* _former;
};

/// The name is the innermost of the path while the object lives; a null name changes nothing.
class VeriNamedPathScope {
public:
  explicit VeriNamedPathScope(const char* name) : _state(name ? VeriNode::ElabState() : nullptr) {
    if (_state) _state->PushNamedPath(name);
  }
  VeriNamedPathScope(const VeriNamedPathScope&) = delete;
  VeriNamedPathScope& operator=(const VeriNamedPathScope&) = delete;
  ~VeriNamedPathScope() {
    if (_state) _state->PopNamedPath();
  }

private:
  VeriElaborationState* _state;
};

#endif
