// State machines of the gate netlist: machines of the kernel with a clean reset become machines of the host, whose
// state registers have data inputs only; clock and reset are the machine's.
#include <cstring>
#include <string_view>

#include "basex.h"
#include "database/views.h"
#include "util/linefile.h"
#include "zelk_msgs.h"
#include "zelk_sgate.h"
#include "zelk_utility.h"

void ZELK_SGATE::create_state_machines() {
  for (Fsm* fsm : FsmsOf(m_netlist)) {
    ZELK_ASSERT(fsm != 0);
    ZELK_ASSERT(fsm->NumStates() > 0);
    // A reset at the clock's edge may have gone into the data logic for good.
    if (fsm->HasCleanReset() && fsm->Reset(1))
      create_state_machine(fsm);
    else
      m_elaborate_info->queue_message(MSG_ZELK::I::ZELK_FSM_HAS_UNCLEAN_RESET(fsm->ExternalName()));
  }
  zelk_msg_debug("Created %zu SGATE FSMs", m_machines->size());
}

void ZELK_SGATE::create_state_machine(Fsm* fsm) {
  ZELK_ASSERT(fsm->Reset(1) != 0);
  ZELK_ASSERT(fsm->Clock() != 0);
  ZELK_ASSERT(fsm->ResetState(1) != 0);
  auto machine = std::make_unique<CDB_STATE_MACHINE>();
  const char* name = create_node_instance_name(fsm->Name(), nullptr);
  machine->set_string_name(name);
  machine->set_num_user_bits(0);
  machine->set_num_states(fsm->NumStates());
  // Closed until a reset claims the machine.
  machine->set_clk_en(nullptr, true);
  if (fsm->Linefile()) {
    MSG_TEXT_LOCATION_SCHEMA place(LineFile::GetFileName(fsm->Linefile()),
                                   static_cast<int>(LineFile::GetLineNo(fsm->Linefile())), -1);
    m_elaborate_info->register_identifier_with_location(name, place);
  }
  m_machine_map[fsm] = machine.get();
  for (unsigned pos = 0; pos < fsm->NumStates(); pos++) m_state_map[fsm->GetStateAt(pos)] = machine.get();
  m_machines->push_back(std::move(machine));
}

CDB_STATE_MACHINE* ZELK_SGATE::get_machine(const Fsm* fsm) const {
  auto at = m_machine_map.find(fsm);
  return at == m_machine_map.end() ? nullptr : at->second;
}

CDB_STATE_MACHINE* ZELK_SGATE::get_machine_of(const Instance* inst) const {
  auto at = m_state_map.find(inst);
  return at == m_state_map.end() ? nullptr : at->second;
}

const char* ZELK_SGATE::create_state_name(Instance* inst) {
  const Fsm* fsm = inst->GetFsm();
  ZELK_ASSERT(fsm != 0);
  if (!fsm) return nullptr;
  const char* state = fsm->StateName(inst);
  return m_elaborate_info->join(get_machine(fsm)->get_string_name(), nullptr, ".", state ? state : inst->Name());
}

void ZELK_SGATE::configure_state(Instance* inst, CDB_SGATE_STATE* node) {
  const Fsm* fsm = inst->GetFsm();
  node->set_machine(get_machine(fsm));
  node->set_state_name(fsm->StateName(inst));
  node->set_is_reset_state(fsm->ResetState(1) == inst);
  std::vector<bool> bits;
  const char* code = fsm->UserEncoding(inst);
  for (char bit : std::string_view(code ? code : "")) {
    if (bit != '0' && bit != '1') zelk_msg_debug("Bad encoding bit value");
    bits.push_back(bit == '1');
  }
  node->set_user_encoding(std::move(bits));
}

void ZELK_SGATE::set_states() {
  for (const Fsm* fsm : FsmsOf(m_netlist)) {
    CDB_STATE_MACHINE* cdb_fsm = get_machine(fsm);
    if (!cdb_fsm) continue; // without a clean reset
    std::vector<CDB_SGATE_STATE*> states;
    bool found_reset_state = false;
    for (unsigned pos = 0; pos < fsm->NumStates(); pos++) {
      const Instance* state_dff = fsm->GetStateAt(pos);
      ZELK_ASSERT(state_dff != 0);
      CDB_SGATE_NODE* sgate_state = get_node(state_dff);
      ZELK_ASSERT(sgate_state != 0);
      if (!sgate_state || sgate_state->get_sgate_type() != CDB_SGATE_STATE_ENUM) {
        ZELK_INTERNAL_ERROR("sgate_state->get_sgate_type() == CDB_SGATE_STATE_ENUM");
        continue;
      }
      auto* state = static_cast<CDB_SGATE_STATE*>(sgate_state);
      states.push_back(state);
      if (!state->is_reset_state()) continue;
      ZELK_ASSERT(!found_reset_state);
      found_reset_state = true;
      cdb_fsm->set_reset_state(state);
      cdb_fsm->set_orig_reset_position_in_seq_encoding(pos);
    }
    cdb_fsm->set_states(std::move(states));
  }
}

/// Everything that goes into a state register but its data.
bool ZELK_SGATE::is_state_signal(const PortRef* ref) const {
  if (m_state_map.empty() || ref->Direction() == DIR_OUTPUT || !get_machine_of(ref->GetInst())) return false;
  return !ref->GetPort()->Name() || std::strcmp(ref->GetPort()->Name(), "d") != 0;
}

void ZELK_SGATE::process_fsm_signal(const PortRef* ref, CDB_SGATE_OTERM* oterm, LEVEL level) {
  CDB_STATE_MACHINE* machine = get_machine_of(ref->GetInst());
  const CDB_SGATE_NODE* node = get_node(ref->GetInst());
  bool is_reset_state = node && static_cast<const CDB_SGATE_STATE*>(node)->is_reset_state();
  bool is_gnd = !oterm && level == LEVEL_GND;
  std::string_view port(ref->GetPort()->Name() ? ref->GetPort()->Name() : "");
  if (port == "clk") {
    CDB_SGATE_OTERM* clk = machine->get_clk();
    if (machine->has_clk())
      ZELK_ASSERT(oterm == clk);
    else
      machine->set_clk(oterm, is_gnd);
  } else if (port == "s") {
    if (is_reset_state)
      set_fsm_reset(machine, oterm, level);
    else
      ZELK_ASSERT_TEXT(is_gnd, "Bad FSM - expecting a trivial set signal");
  } else if (port == "r") {
    if (!is_reset_state)
      set_fsm_reset(machine, oterm, level);
    else
      ZELK_ASSERT_TEXT(is_gnd, "Bad FSM - expecting a trivial reset signal");
  } else if (port == "aload" || port == "async_cond") {
    ZELK_ASSERT_TEXT(is_gnd, "portref->GetNet()->IsGnd()");
  } else if (port != "adata" && port != "async_val" && port != "az") {
    ZELK_INTERNAL_ERROR("Can't process unknown port on state register");
  }
}

/// The first state to tell of a reset opens the machine; all others must agree with it.
void ZELK_SGATE::set_fsm_reset(CDB_STATE_MACHINE* my_cdb_fsm, CDB_SGATE_OTERM* oterm, LEVEL level) {
  bool is_inverted = !oterm && level == LEVEL_GND;
  if (my_cdb_fsm->clk_en_is_inverted()) {
    my_cdb_fsm->set_reset(oterm, is_inverted);
    my_cdb_fsm->set_clk_en(nullptr, false);
    return;
  }
  ZELK_ASSERT(my_cdb_fsm->get_reset() == oterm);
  ZELK_ASSERT_TEXT(my_cdb_fsm->reset_is_inverted() == is_inverted, "! my_cdb_fsm->reset_is_inverted()");
}

void ZELK_SGATE::sanity_check_state_machines() {
  for (const auto& machine : *m_machines) sanity_check_state_machine(*machine);
}

void ZELK_SGATE::sanity_check_state_machine(const CDB_STATE_MACHINE& machine) {
  zelk_msg_debug("Sanity checking state machine '%s'", machine.get_string_name());
  ZELK_ASSERT_TEXT(!machine.get_clk_en(), "machine->get_clk_en() == 0");
  ZELK_ASSERT_TEXT(!machine.clk_en_is_inverted(), "!machine->clk_en_is_inverted()");
  ZELK_ASSERT_TEXT(machine.get_num_states() == machine.get_states().size(),
                   "machine->get_num_states() == machine->get_states().size()");
  ZELK_ASSERT_TEXT(machine.get_reset_state() && machine.get_reset_state()->is_reset_state(),
                   "machine->get_reset_state() && machine->get_reset_state()->is_reset_state()");
  for (const CDB_SGATE_STATE* state : machine.get_states()) {
    zelk_msg_debug("State: %s", state->get_state_name().c_str());
    if (state->is_reset_state()) zelk_msg_debug("......is the Reset state");
    ZELK_ASSERT_TEXT(!state->is_reset_state() || state == machine.get_reset_state(),
                     "!state->is_reset_state() || state == machine->get_reset_state()");
  }
}
