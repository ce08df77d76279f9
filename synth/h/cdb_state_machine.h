// A state machine of the gate netlist: what its state nodes have in common. The machine is one-hot: each state node is
// a flip-flop with the machine's clock; while the reset acts, the reset state is 1 and all others are 0.
#ifndef CDB_STATE_MACHINE_H
#define CDB_STATE_MACHINE_H

#include <string>
#include <vector>

class CDB_SGATE_OTERM;
class CDB_SGATE_STATE;

/// A control of the machine: a term, or a constant when there is no term; either may be inverted. A null term reads as
/// power, and inverted as ground.
struct CDB_MACHINE_CONTROL {
  CDB_SGATE_OTERM* oterm = nullptr;
  bool is_inverted = false;
  bool is_set = false; // something was told
};

class CDB_STATE_MACHINE {
public:
  const char* get_string_name() const { return m_name.c_str(); }
  void set_string_name(const char* name) { m_name = name ? name : ""; }
  unsigned get_num_user_bits() const { return m_num_user_bits; }
  void set_num_user_bits(unsigned bits) { m_num_user_bits = bits; }
  unsigned get_num_states() const { return m_num_states; }
  void set_num_states(unsigned states) { m_num_states = states; }

  CDB_SGATE_OTERM* get_clk() const { return m_clk.oterm; }
  bool clk_is_inverted() const { return m_clk.is_inverted; }
  bool has_clk() const { return m_clk.is_set; }
  void set_clk(CDB_SGATE_OTERM* oterm, bool inverted) { m_clk = {oterm, inverted, true}; }
  CDB_SGATE_OTERM* get_clk_en() const { return m_clk_en.oterm; }
  bool clk_en_is_inverted() const { return m_clk_en.is_inverted; }
  void set_clk_en(CDB_SGATE_OTERM* oterm, bool inverted) { m_clk_en = {oterm, inverted, true}; }
  CDB_SGATE_OTERM* get_reset() const { return m_reset.oterm; }
  bool reset_is_inverted() const { return m_reset.is_inverted; }
  bool has_reset() const { return m_reset.is_set; }
  void set_reset(CDB_SGATE_OTERM* oterm, bool inverted) { m_reset = {oterm, inverted, true}; }

  const std::vector<CDB_SGATE_STATE*>& get_states() const { return m_states; }
  void set_states(std::vector<CDB_SGATE_STATE*> states) { m_states = std::move(states); }
  CDB_SGATE_STATE* get_reset_state() const { return m_reset_state; }
  void set_reset_state(CDB_SGATE_STATE* state) { m_reset_state = state; }
  unsigned get_orig_reset_position_in_seq_encoding() const { return m_orig_reset_position; }
  void set_orig_reset_position_in_seq_encoding(unsigned position) { m_orig_reset_position = position; }

private:
  std::string m_name;
  CDB_MACHINE_CONTROL m_clk;
  CDB_MACHINE_CONTROL m_clk_en;
  CDB_MACHINE_CONTROL m_reset;
  std::vector<CDB_SGATE_STATE*> m_states;
  CDB_SGATE_STATE* m_reset_state = nullptr;
  unsigned m_num_user_bits = 0;
  unsigned m_num_states = 0;
  unsigned m_orig_reset_position = 0;
};

#endif
