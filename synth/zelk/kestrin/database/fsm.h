// Fsm: a state machine: the one-hot registers that together hold a state signal, each with the name of its state. The
// netlist owns it; it owns the state names and no register.
#ifndef KESTRIN_DATABASE_FSM_H
#define KESTRIN_DATABASE_FSM_H

#include "database/designobj.h"

class Instance;
class Net;
class Netlist;

class Fsm : public DesignObj {
public:
  explicit Fsm(const char* name = nullptr, unsigned long linefile = 0);
  /// Of a netlist that is being restored and has its instances.
  Fsm(SaveRestore& stream, const Netlist* netlist);
  ~Fsm() override;

  db_object_type ObjectType() const override { return DB_FSM; }
  void SetName(const char* name) override;
  void Save(SaveRestore& stream) const override;
  void Dump(std::ostream& out, unsigned indent = 0) const;
  Netlist* Owner() const { return _owner; }
  /// Name, location and attributes; no states, no owner.
  Fsm* Copy() const;

  /// The register is a PRIM_DFF or PRIM_DFFRS and in no state machine yet. 1 when added.
  unsigned AddState(Instance* state_dff, const char* name);
  unsigned RemoveState(Instance* state_dff);
  unsigned ContainsState(const Instance* state_dff) const;
  unsigned NumStates() const;
  Instance* GetStateAt(unsigned pos) const;
  Instance* GetState(const char* name) const;
  const char* StateName(const Instance* state_dff) const;
  /// The net on the register's data input.
  Net* NextState(const Instance* state_dff) const;
  /// The net on the register's output.
  Net* ThisState(const Instance* state_dff) const;
  /// The clock of the first state.
  Net* Clock() const;
  /// The net that puts the machine into its reset state; null without one.
  Net* Reset(unsigned prefer_encoding) const;
  /// The state that a reset enters. With `prefer_encoding` one whose encoding is all zeros counts before the first one.
  Instance* ResetState(unsigned prefer_encoding) const;
  /// Whether one reset puts exactly one register to 1 and all others to 0.
  unsigned HasCleanReset() const;
  /// The encoding that the user gave to a state: from the register, else from its output net.
  const char* UserEncoding(const Instance* state_dff) const;
  /// Sorts the states by " :state_position", the largest first.
  void ReorderStates();

private:
  friend class Netlist;
  Map* _states = nullptr; // Instance* to owned name
  Netlist* _owner = nullptr;
};

/// Makes the register of a net that is marked with " :fsm" a state: "state.idle" is the state idle of the machine
/// state, which is made where there is none. What the user said of the encodings moves from the net to the machine and
/// the register. Returns whether the machine is new.
bool kestrin_add_state(Net* net, Instance* state_dff);

#endif
