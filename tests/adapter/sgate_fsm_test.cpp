// State machines of the kernel as machines of the host.
#include <gmock/gmock.h>

#include "acf.h"
#include "cfg.h"
#include "sgate_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class SgateFsmTest : public SgateTest {
protected:
  ~SgateFsmTest() override { cfg_clear(); }
  const CDB_SGATE_HIERARCHY::MACHINES& machines() const { return *result->hierarchy->get_machines(); }
  /// Three one-hot states in a ring.
  void add_machine(Net* set_of_idle, Net* reset_of_others) {
    Net* clk = in("clk");
    Net* zero = netlist->Gnd(0);
    auto* fsm = new Fsm("state", place(5));
    netlist->Add(fsm);
    const char* names[] = {"IDLE", "RUN", "DONE"};
    std::vector<Net*> outputs;
    Net* d = net("d_idle");
    Net* next = d;
    for (const char* name : names) {
      bool is_idle = outputs.empty();
      Net* q = netlist->Dffrs(next, clk, is_idle ? set_of_idle : zero, is_idle ? zero : reset_of_others, place(5),
                              (std::string("state.") + name).c_str());
      q->Driver()->AddAtt(ATT_STATE_ENCODING, is_idle ? "00" : "01");
      ASSERT_TRUE(fsm->AddState(q->Driver(), name));
      outputs.push_back(q);
      next = q;
    }
    out("done", outputs.back());
    Instance* idle = outputs.front()->Driver();
    idle->Reconnect(idle->View()->GetPort("d"), outputs.back());
    delete d;
  }
};

TEST_F(SgateFsmTest, ACleanResetMakesAMachineWhoseStatesHaveDataOnly) {
  Net* rst = in("rst");
  add_machine(rst, rst);
  ASSERT_TRUE(netlist->GetFsmAt(0)->HasCleanReset());
  netlist->GetFsmAt(0)->AddAtt(ATT_FSM_ENCODING, "\"safe, gray\"");
  ASSERT_TRUE(convert());
  ASSERT_THAT(machines(), SizeIs(1));
  const CDB_STATE_MACHINE& machine = *machines()[0];
  EXPECT_STREQ(machine.get_string_name(), "state");
  EXPECT_STREQ(machine.get_clk()->get_node()->get_string_name(), "clk");
  EXPECT_STREQ(machine.get_reset()->get_node()->get_string_name(), "rst");
  EXPECT_FALSE(machine.reset_is_inverted() || machine.clk_en_is_inverted());
  ASSERT_THAT(machine.get_states(), SizeIs(3));
  EXPECT_EQ(machine.get_reset_state(), machine.get_states()[0]);
  EXPECT_EQ(machine.get_states()[1]->get_state_name(), "RUN");
  EXPECT_THAT(machine.get_states()[1]->get_user_encoding(), ElementsAre(false, true));
  for (const CDB_SGATE_STATE* state : machine.get_states()) EXPECT_THAT(state->get_iterms(), SizeIs(1));
  EXPECT_EQ(source(named("state.RUN"), CDB_TERM_DATA), "state.IDLE");
  EXPECT_THAT(assignments(ACF_VARIABLE_SAFE_STATE_MACHINE), ElementsAre("state=on"));
  EXPECT_THAT(assignments(ACF_VARIABLE_STATE_MACHINE_ENCODING), ElementsAre("state=GRAY"));
}

TEST_F(SgateFsmTest, AResetThatReachesNotAllStatesKeepsTheRegisters) {
  add_machine(in("rst"), in("other"));
  ASSERT_FALSE(netlist->GetFsmAt(0)->HasCleanReset());
  ASSERT_TRUE(convert());
  EXPECT_THAT(machines(), IsEmpty());
  EXPECT_THAT(nodes(CDB_SGATE_DFF_ENUM), SizeIs(3));
  ASSERT_THAT(messages, SizeIs(1));
  EXPECT_EQ(messages[0]->get_name(), "IZELK_ZELK_FSM_HAS_UNCLEAN_RESET");
}

TEST_F(SgateFsmTest, WithConversionOffAMachineIsRegisters) {
  cfg_set_value("zelk_dont_convert_fsm", "on");
  Net* rst = in("rst");
  add_machine(rst, rst);
  ASSERT_TRUE(convert());
  EXPECT_THAT(machines(), IsEmpty());
  EXPECT_EQ(source(named("state.RUN"), CDB_TERM_RESET), "rst");
}

} // namespace
