// The names of the gate netlist, what is kept for the user, and what attributes become.
#include <gmock/gmock.h>

#include "acf.h"
#include "sgate_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SgateNameTest : public SgateTest {
protected:
  /// A register of a name, and the user's net on its output.
  Net* reg(const char* name) {
    Net* made = netlist->Dffrs(in(std::string("d_") + name), clk(), netlist->Gnd(0), netlist->Gnd(0), place(4), name);
    made->SetName(name);
    made->SetLinefile(place(4));
    return made;
  }
  Net* clk() {
    Net* found = netlist->GetNet("clk");
    return found ? found : in("clk");
  }
  const char* output_name(const char* node) const { return named(node)->get_first_oterm()->get_string_name(); }
};

TEST_F(SgateNameTest, ARegisterAndItsNetBearTheUsersName) {
  Net* q = reg("q");
  out("y", q);
  ASSERT_TRUE(convert());
  ASSERT_TRUE(named("q"));
  EXPECT_STREQ(output_name("q"), "q");
  EXPECT_EQ(output_source("y"), "q");
  ASSERT_EQ(named("q")->get_source_line(), 4U);
}

TEST_F(SgateNameTest, APortTakesPrecedenceOverANodeAndANetOfItsName) {
  Net* y = out("y");
  Net* made = netlist->Dffrs(in("d"), clk(), netlist->Gnd(0), netlist->Gnd(0), place(4), "y");
  Instance* dff = made->Driver();
  dff->Reconnect(dff->View()->GetPort("q"), y);
  ASSERT_TRUE(convert());
  EXPECT_EQ(output_source("y"), "y~reg0");
  EXPECT_STREQ(output_name("y~reg0"), "y~");
  EXPECT_EQ(result->places.count("y~reg0"), 1U);
}

TEST_F(SgateNameTest, SystemNamesLoseTheirNumberAndTakeACounterOnlyWhenTheyMustBeUnique) {
  Net* a = in("a");
  Net* plain = netlist->Inv(a, place(3));
  ASSERT_EQ(plain->Driver()->Name()[0], ' ');
  Net* unique = netlist->Buf(a, place(3));
  unique->Driver()->SetName(" a");
  unique->Driver()->AddAtt(ATT_KEEP, "1");
  out("y1", plain);
  out("y2", unique);
  ASSERT_TRUE(convert());
  EXPECT_EQ(output_source("y1"), "comb~");
  EXPECT_EQ(output_source("y2"), "a_0");
}

TEST_F(SgateNameTest, ANetWithoutLoadsKeepsItsNameOnTheTermThatDrivesIt) {
  Net* lonely = netlist->Inv(in("a"), place(3));
  lonely->SetName("lonely");
  lonely->SetLinefile(place(3));
  name_driver(lonely, "g");
  ASSERT_TRUE(convert());
  EXPECT_STREQ(output_name("g"), "lonely");
  EXPECT_EQ(named("g")->get_first_oterm()->get_first_fanout(), nullptr);
}

TEST_F(SgateNameTest, AKeptNetWithoutANodeOfItsNameGetsABuffer) {
  Net* kept = netlist->And(in("a"), in("b"), place(3));
  kept->SetName("kept");
  kept->SetLinefile(place(3));
  kept->AddAtt(ATT_MAXFAN, "16");
  kept->AddAtt(ATT_DIRECT_ENABLE, "1");
  out("y", kept);
  ASSERT_TRUE(convert());
  EXPECT_EQ(output_source("y"), "kept");
  EXPECT_EQ(named("kept")->get_sgate_type(), CDB_SGATE_BUFFER_ENUM);
  EXPECT_THAT(assignments(ACF_VARIABLE_MAXIMUM_FANOUT), ElementsAre("kept=16"));
  EXPECT_THAT(assignments(ACF_VARIABLE_IMPLEMENT_AS_CLOCK_ENABLE), ElementsAre("kept=on"));
  EXPECT_EQ(kept->GetAtt(ATT_MAXFAN), nullptr);
}

TEST_F(SgateNameTest, AKeptNetOfARegisterOfItsNameKeepsTheRegister) {
  Net* q = reg("q");
  q->AddAtt(ATT_KEEP, "1");
  out("y", q);
  ASSERT_TRUE(convert());
  EXPECT_THAT(nodes(CDB_SGATE_BUFFER_ENUM), IsEmpty());
  EXPECT_THAT(assignments(ACF_VARIABLE_PRESERVE_REGISTER), ElementsAre("q=on"));
}

TEST_F(SgateNameTest, NetsAndInstancesAreRegisteredAndBitsAreToldByTheirBus) {
  auto* bus = new NetBus("v", 1, 0, place(6));
  netlist->Add(bus);
  for (int i = 1; i >= 0; i--) {
    Net* bit = reg(("v[" + std::to_string(i) + "]").c_str());
    bus->Add(bit);
    out(("y" + std::to_string(i)).c_str(), bit);
  }
  Net* q = reg("q");
  out("z", q);
  ASSERT_TRUE(convert());
  ASSERT_EQ(result->net_buses.size(), 1U);
  EXPECT_EQ(result->net_buses[0].name, "v");
  EXPECT_EQ(result->net_buses[0].left, 1);
  EXPECT_EQ(result->net_buses[0].place.line, 6);
  std::vector<std::string> names;
  for (const NAMED_OBJECT& object : result->nets) names.push_back(object.name);
  EXPECT_THAT(names, testing::Contains("q"));
  EXPECT_THAT(names, testing::Not(testing::Contains("v[0]")));
}

TEST_F(SgateNameTest, AttributesOfInstancesBecomeAssignmentsByName) {
  Net* q = reg("q");
  Instance* dff = q->Driver();
  dff->AddAtt(ATT_SYN_REPLICATE, "0");
  dff->AddAtt(ATT_DONT_MERGE, "1");
  dff->AddAtt(ATT_NOPRUNE, "1");
  dff->AddAtt(ATT_INITIAL_VALUE, "1");
  Net* p = reg("p");
  p->Driver()->AddAtt(ATT_SYN_REPLICATE, "1");
  p->Driver()->AddAtt(ATT_DONT_RETIME, "1");
  out("y", q);
  out("z", p);
  ASSERT_TRUE(convert());
  EXPECT_THAT(assignments(ACF_VARIABLE_NETLIST_OPTIMIZATION), ElementsAre("q=Never Allow", "p=Never Allow"));
  EXPECT_THAT(assignments(ACF_VARIABLE_NO_MERGE), ElementsAre("q=on"));
  EXPECT_THAT(assignments(ACF_VARIABLE_KEEP_FANOUT_FREE_NODE), ElementsAre("q=on"));
  EXPECT_THAT(assignments(ACF_VARIABLE_PRESERVE_REGISTER), ElementsAre("q=on"));
  EXPECT_EQ(static_cast<const CDB_SGATE_DFF*>(named("q"))->get_power_up(), CDB_POWER_UP_HIGH);
}

TEST_F(SgateNameTest, PinsAreAssignedBitByBitOrNotAtAll) {
  auto* good = new PortBus("g", DIR_INPUT, 1, 0);
  auto* bad = new PortBus("b", DIR_INPUT, 1, 0);
  for (int i = 1; i >= 0; i--) {
    for (PortBus* bus : {good, bad}) {
      Net* bit = in(std::string(bus->Name()) + "[" + std::to_string(i) + "]");
      bus->Add(bit->GetFirstPort());
    }
  }
  netlist->Add(good);
  netlist->Add(bad);
  good->AddAtt(ATT_CHIP_PIN, "\"A1, 7\"");
  bad->AddAtt(ATT_CHIP_PIN, "\"A2\"");
  ASSERT_TRUE(convert());
  EXPECT_THAT(assignments(ACF_VARIABLE_LOCATION), ElementsAre("g[1]=A1", "g[0]=Pin_7"));
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0]->get_name(), "WZELK_TOO_FEW_OR_TOO_MANY_PIN_ASSIGNMENTS");
}

} // namespace
