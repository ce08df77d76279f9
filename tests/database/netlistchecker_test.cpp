// The checker finds what is broken.
#include "database/netlistchecker.h"

#include "database/netlist_fixture.h"

namespace {

TEST(NetlistChecker, FindsAForeignStateAndAForeignConnection) {
  Netlist netlist("m"), other("n");
  EXPECT_TRUE(NetlistChecker(&netlist).IsConsistent());
  Instance* reg = netlist.Dff(nullptr, nullptr, nullptr, nullptr, 0)->Driver();
  auto* fsm = new Fsm("s");
  other.Add(fsm);
  fsm->AddState(reg, "s0");
  EXPECT_THAT(NetlistChecker(&other).Faults(),
              testing::ElementsAre("state machine s: has registers of the netlist as states"));
  Net* net = reg->GetOutput();
  netlist.Remove(net);
  other.Add(net);
  EXPECT_THAT(NetlistChecker(&netlist).Report(), testing::HasSubstr("is on nets of the netlist"));
}

} // namespace
