// VeriStateTable: variables that only ever hold one of a few constants, as the state of a machine does, are built with
// one bit per constant. Which variables these are is decided from the tree, before any logic exists; from then on the
// variable's value is one-hot, and what reads it as a number gets that number back.
#ifndef KESTRIN_VERILOG_VERISTATETABLE_H
#define KESTRIN_VERILOG_VERISTATETABLE_H

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "containers/set.h"
#include "verilog/veriid.h"
#include "verilog/verivalue.h"

class VeriConstraint;

/// The encoding that a group of variables shares. The elaboration state owns it.
class VeriStateTable {
public:
  using Tables = std::vector<std::unique_ptr<VeriStateTable>>;

  VeriStateTable() = default;
  VeriStateTable(const VeriStateTable&) = delete;
  VeriStateTable& operator=(const VeriStateTable&) = delete;

  /// Reads the references to a variable. Null where one of them rules a state out at once; the table has the variable
  /// as its only member otherwise, and its sources, sinks and constants.
  static std::unique_ptr<VeriStateTable> Create(VeriVariable* variable);
  /// Decides which tables are used, merges those whose members are assigned to each other, and makes the states. What
  /// is left in the list is in use by its members.
  static void ProcessEncodableNetwork(Tables& tables);

  unsigned NumStates() const { return static_cast<unsigned>(_states.size()); }
  /// The nets of a member: one per state, in ascending order of the constants.
  OwnedValue CreateValue(const VeriVariable* member) const;

  /// Numbers and their one-hot codes. A number that is no state has the code x; a value that is a code already stays.
  OwnedValue GetStateEncoding(OwnedValue value, const VeriTreeNode* from) const;
  OwnedValue RestoreOriginalEncoding(const VeriValue& code, const VeriConstraint& type, const VeriTreeNode* from) const;
  /// The code of another table's state in this one.
  OwnedValue TranslateEncoding(const VeriValue& code, const VeriStateTable& other) const;
  /// Whether the state is this constant, as a single bit.
  Net* Equal(const VeriValue& code, const VeriValue& constant) const;
  /// Whether the test is true for each state.
  template <class Test> bool AllStates(Test test) const {
    for (const auto& state : _states)
      if (!test(state.first)) return false;
    return true;
  }

  /// The variable of a plain name; null where the name does not stand for an encoded one.
  static VeriVariable* EncodedVariable(VeriExpression* name);
  /// Operators whose result a single bit of the code tells.
  static bool IsEqualityTest(unsigned token);
  /// A literal, or the name of a parameter or of an enumeration's member.
  static bool IsStateConstant(const VeriExpression* expression);

private:
  friend class VeriStateReader;
  friend class VeriStateNetwork;
  void AddStateConstant(int64_t number, const std::string& name);
  void Merge(VeriStateTable& other);
  bool IsProfitable() const;
  void CreateStates();
  void DebugDumpTable() const;
  int64_t NumberOf(const VeriValue& constant) const;
  unsigned PositionOf(int64_t number) const;

  Set _members{HASH_POINTER};             // VeriVariable*
  Set _sources{HASH_POINTER};             // variables whose values are assigned to a member
  Set _sinks{HASH_POINTER};               // variables that a member is assigned to
  std::map<int64_t, std::string> _states; // with the name that the source has for it; empty for a plain number
  std::vector<int64_t> _resets;           // what a reset or the declaration puts into a member
  unsigned _width = 0;
  unsigned _num_tests = 0;
  bool _has_reset = false;
  bool _needs_number = false; // an operator reads it
};

#endif
