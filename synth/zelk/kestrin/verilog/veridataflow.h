// VeriDataFlow: the values that variables have at one point of the symbolic execution of a process. Branches run in
// child tables, which are merged; jumps leave their values in goto areas until their target is reached.
#ifndef KESTRIN_VERILOG_VERIDATAFLOW_H
#define KESTRIN_VERILOG_VERIDATAFLOW_H

#include <functional>
#include <memory>
#include <vector>

#include "containers/map.h"
#include "containers/set.h"
#include "containers/views.h"
#include "verilog/veriid.h"
#include "verilog/verivalue.h"

class VeriScope;

/// Variables and their values, which are owned.
class VeriValueTable {
public:
  VeriValueTable() = default;
  VeriValueTable(const VeriValueTable&) = delete;
  VeriValueTable& operator=(const VeriValueTable&) = delete;
  ~VeriValueTable();
  /// Borrowed; null when there is none.
  VeriValue* Find(const VeriIdDef* id) const { return FromWord<VeriValue*>(_values.GetValue(id)); }
  void Set(VeriIdDef* id, OwnedValue value);
  OwnedValue Take(VeriIdDef* id);
  void Remove(VeriIdDef* id);
  Entries<VeriIdDef*, VeriValue*> All() const { return Entries<VeriIdDef*, VeriValue*>(_values); }
  unsigned Size() const { return _values.Size(); }

private:
  Map _values;
};

/// The values at a jump. Without a condition the jump is always taken.
struct VeriGotoArea {
  const void* label = nullptr;
  Net* condition = nullptr;
  VeriValueTable values;
};

class VeriDataFlow {
public:
  VeriDataFlow(VeriDataFlow* parent, bool is_initial = false);
  VeriDataFlow(const VeriDataFlow&) = delete;
  VeriDataFlow& operator=(const VeriDataFlow&) = delete;
  ~VeriDataFlow();

  VeriDataFlow* Parent() const { return _parent; }
  bool IsClocked() const { return _clock != nullptr; }
  bool IsProcess() const { return _is_process; }
  void SetProcess() { _is_process = true; }
  bool IsInitial() const { return _is_initial; }
  /// Control cannot reach this point.
  bool IsDead() const { return _is_dead; }
  void SetDead(bool dead) { _is_dead = dead; }
  /// The process and its kind, for messages; null outside of always constructs.
  const VeriTreeNode* Process() const { return _process; }
  void SetProcessNode(const VeriTreeNode* process) { _process = process; }
  /// What a jump out of the running subprogram may not pass: labels below belong to it.
  bool IsSubprogramRoot() const { return _is_subprogram_root; }
  void SetSubprogramRoot() { _is_subprogram_root = true; }

  // Clocks.
  Net* Clock() const { return _clock; }
  void SetClock(Net* clock);
  /// The edges that no condition has matched yet; empty without event control.
  const std::vector<Net*>& EventControl() const { return _event_control; }
  void SetEventControl(std::vector<Net*> edges) { _event_control = std::move(edges); }
  /// The event of the clock in the netlist, made at the first question; null without clock.
  Net* ClockEvent();
  /// Turns a value that changes at the clock of this flow into its selection by the clock's event.
  OwnedValue Register(OwnedValue value, VeriIdDef* id, const VeriTreeNode* from);

  // Sensitivity.
  void SetSensList(std::unique_ptr<class Set> ids) { _sens_list = std::move(ids); }
  void SetEdgeIds(std::unique_ptr<class Set> ids) { _edge_ids = std::move(ids); }
  /// Warns of a variable that is read and not in the list.
  void SensListCheck(VeriIdDef* id, const VeriTreeNode* from) const;

  // Values.
  /// Here, in the parents, else the variable's own; borrowed.
  VeriValue* IdValue(VeriIdDef* id) const;
  /// What an expression reads: assignments that are not blocking are passed over.
  VeriValue* BlockingValue(VeriIdDef* id, const VeriTreeNode* from) const;
  /// Whether a value was assigned on the way, not only asserted.
  bool IsAssigned(const VeriIdDef* id) const;
  void SetAssignValue(VeriIdDef* id, OwnedValue value);
  const VeriValueTable& Values() const { return _values; }
  VeriValueTable& Values() { return _values; }
  /// The variable is known to have this value within this flow.
  void AssertValue(VeriIdDef* id, OwnedValue value);

  // Merges.
  /// What two branches have assigned becomes a selection by the condition. Where the second has a clock of its own, its
  /// values are registered first.
  void PopOutOfIf(Net* condition, VeriDataFlow& then_flow, VeriDataFlow& else_flow, const VeriTreeNode* from);
  /// Branch i where the select word is i.
  void PopOutOfCaseWithMuxes(const Array& selectors, const std::vector<VeriDataFlow*>& branches, const VeriTreeNode* from);
  /// Branch i where net i is 1; exactly one of them is.
  void PopOutOfCaseWithSelectors(const Array& onehot, const std::vector<VeriDataFlow*>& branches, const VeriTreeNode* from);

  // Jumps.
  /// Leaves for the label where the condition holds; a null condition always holds.
  void DoGoto(const void* label, Net* condition, const VeriTreeNode* from);
  /// At the label's place: what jumped here joins in.
  void ResolveGotos(const void* label, const VeriTreeNode* from);
  bool HasGotos() const { return !_goto_areas.empty(); }

private:
  using Areas = std::vector<std::unique_ptr<VeriGotoArea>>;
  using Merge = std::function<OwnedValue(std::vector<OwnedValue>)>;
  void AddGotoArea(std::unique_ptr<VeriGotoArea> area, const VeriTreeNode* from);
  VeriGotoArea* FindArea(const void* label) const;
  /// The value of a variable at the end of a branch; null where control does not come out of it.
  OwnedValue TakeBranchValue(VeriDataFlow& branch, VeriIdDef* id, bool registered, const VeriTreeNode* from);
  void MergeBranches(const std::vector<VeriDataFlow*>& branches, const Merge& merge, const VeriTreeNode* from);
  void MergeGotos(const std::vector<VeriDataFlow*>& branches, const Merge& merge, const VeriTreeNode* from);

  VeriDataFlow* _parent;
  VeriValueTable _values;
  VeriValueTable _asserts;
  Areas _goto_areas;
  std::vector<Net*> _event_control;
  std::unique_ptr<class Set> _sens_list; // of a level-sensitive process; null for @*
  std::unique_ptr<class Set> _edge_ids;  // variables of the event control
  Net* _clock = nullptr;
  Net* _clock_event = nullptr;
  const VeriTreeNode* _process = nullptr;
  bool _is_process = false;
  bool _is_initial;
  bool _is_dead = false;
  bool _is_subprogram_root = false;
};

#endif
