// The tree of containers: names that clash, owners, look-ups, removal, black boxes, copies.
#include "containers/map.h"
#include "database/netlist_fixture.h"

namespace {

class Container : public NetlistTest {};

std::vector<std::string> PortNames(const Netlist* netlist) {
  std::vector<std::string> names;
  for (Port* port : PortsOf(netlist)) names.emplace_back(port->Name());
  return names;
}

TEST_F(Container, TheRootIsOneUntilItIsFreed) {
  Libset* root = Libset::Global();
  EXPECT_STREQ(root->Name(), "root");
  EXPECT_EQ(Libset::Global(), root);
  root->Add(new Library("work"));
  Database::FreeStaticMemory();
  EXPECT_EQ(Libset::Global()->NumOfLibraries(), 0U);
}

TEST_F(Container, OfTwoUpperChildrenOfOneNameTheNewerKeepsIt) {
  Libset set("s");
  auto* older = new Library("work");
  auto* newer = new Library("work");
  auto* nameless = new Library;
  for (Library* library : {older, newer, nameless}) set.Add(library);
  EXPECT_EQ(set.GetLibrary("work"), newer);
  EXPECT_STREQ(older->Name(), "l0");
  EXPECT_STREQ(older->ExternalName(), "work");
  EXPECT_STREQ(nameless->Name(), "l1");
  EXPECT_EQ(set.NumOfLibraries(), 3U);
  EXPECT_DEATH(set.Add(older), "!library->Owner\\(\\)");
  older->SetName("work");
  EXPECT_EQ(set.GetLibrary("work"), older) << "a rename counts as newer";
  EXPECT_STREQ(newer->Name(), "l2");
  delete newer;
  EXPECT_EQ(set.NumOfLibraries(), 2U);
}

TEST_F(Container, CellsAreFoundHereThenElsewhereThenWithoutCase) {
  Libset set("s");
  auto* here = new Library("a");
  auto* there = new Library("b");
  set.Add(here);
  set.Add(there);
  auto* upper = new Cell("FIFO");
  auto* lower = new Cell("fifo");
  auto* ram = new Cell("Ram");
  here->Add(upper);
  there->Add(lower);
  here->Add(ram);
  EXPECT_EQ(here->GetCell("fifo"), nullptr);
  EXPECT_EQ(here->GetCell("fifo", 0), upper);
  EXPECT_EQ(here->GetCellAnywhere("fifo", 0), lower) << "an exact name elsewhere comes first";
  EXPECT_EQ(here->GetCellAnywhere("ram"), nullptr);
  EXPECT_EQ(here->GetCellAnywhere("RAM", 0), ram);
  EXPECT_EQ(there->GetCellAnywhere("RAM", 0), nullptr) << "without case only here";
  auto* view = new Netlist("rtl");
  ram->Add(view);
  EXPECT_EQ(ram->GetFirstNetlist(), view);
  EXPECT_EQ(upper->GetFirstNetlist(), nullptr);
}

TEST_F(Container, ANewPortGivesWay) {
  top->Add(new Port("p"));
  auto* second = new Port("p");
  auto* third = new Port("p");
  auto* nameless = new Port;
  for (Port* port : {second, third, nameless}) top->Add(port);
  EXPECT_STREQ(second->Name(), "p__duplicate");
  EXPECT_STREQ(third->Name(), "p__duplicate1");
  EXPECT_STREQ(nameless->Name(), "lsx_anonymous_port0");
  auto* bus = new PortBus;
  top->Add(bus);
  top->Add(new PortBus("p"));
  auto* again = new PortBus("p");
  top->Add(again);
  EXPECT_STREQ(bus->Name(), "lsx_anonymous_portbus1");
  EXPECT_STREQ(again->Name(), "p__duplicate");
}

TEST_F(Container, ANewNetGivesWayAndANamelessOneStaysNameless) {
  Net* first = UserNet("n");
  Net* second = UserNet("n");
  Net* nameless = AutoNet();
  EXPECT_EQ(top->GetNet("n"), first);
  EXPECT_STREQ(second->Name(), " renamed_net_0");
  EXPECT_EQ(nameless->Name(), nullptr);
  EXPECT_EQ(top->GetNet(nullptr), nullptr);
  EXPECT_EQ(top->NumOfNets(), 3U);
  EXPECT_EQ(top->NumOfAutoNets(), 1U);
  nameless->SetName("m");
  EXPECT_EQ(top->GetNet("m"), nameless);
  EXPECT_EQ(top->NumOfAutoNets(), 0U);
  first->SetName(nullptr);
  EXPECT_EQ(top->GetNet("n"), nullptr);
  EXPECT_EQ(top->NumOfAutoNets(), 1U);
  EXPECT_DEATH(top->Add(first), "!net->Owner\\(\\)");
}

TEST_F(Container, ABusYieldsToANetAndAnOlderBusToANewerOne) {
  UserNet("n");
  auto* clashing = new NetBus("n", 1, 0);
  auto* older = new NetBus("b", 1, 0);
  auto* newer = new NetBus("b", 1, 0);
  for (NetBus* bus : {clashing, older, newer}) top->Add(bus);
  EXPECT_STREQ(clashing->Name(), " renamed_bus_0");
  EXPECT_EQ(top->GetNetBus("b"), newer);
  EXPECT_STREQ(older->Name(), " renamed_bus_1");
}

TEST_F(Container, OfTwoUserInstancesTheNewerGivesWay) {
  Netlist view("m");
  Instance* first = Use(&view, "u");
  Instance* second = Use(&view, "u");
  Instance* third = Use(&view, "u");
  EXPECT_EQ(top->GetInst("u"), first);
  EXPECT_STREQ(second->Name(), "u__duplicate");
  EXPECT_STREQ(third->Name(), "u__duplicate1");
  top.reset(new Netlist("top")); // before the view goes
}

TEST_F(Container, OfTwoPrimitivesTheOlderGivesWay) {
  Instance* older = Use(Prim::Static(PRIM_AND), "g");
  Instance* newer = Use(Prim::Static(PRIM_AND), "g");
  EXPECT_EQ(top->GetInst("g"), newer);
  EXPECT_STREQ(older->Name(), " g_0");
  Instance* taken = Use(Prim::Static(PRIM_AND), "g_1");
  Use(Prim::Static(PRIM_AND), "g");
  EXPECT_STREQ(newer->Name(), " g_2") << "a name is not made up that is in use without its blank";
  EXPECT_STREQ(taken->Name(), "g_1");
  Instance* reg = Use(Prim::Static(PRIM_DFF), "q");
  Use(Prim::Static(PRIM_DFFRS), "q");
  EXPECT_STREQ(reg->Name(), "q__duplicate") << "an older register keeps its name in front";
}

TEST_F(Container, NamelessInstancesAreNamedByThePrefix) {
  Instance* first = Use(Prim::Static(PRIM_AND));
  EXPECT_STREQ(first->Name(), " comb_0");
  {
    AutoInstancePrefix prefix(top.get(), "state");
    EXPECT_STREQ(top->CurrentAutoInstanceName(), "state");
    EXPECT_STREQ(Use(Prim::Static(PRIM_AND))->Name(), " state_1");
  }
  Use(Prim::Static(PRIM_AND), " comb_2");
  EXPECT_STREQ(Use(Prim::Static(PRIM_AND))->Name(), " comb_3") << "a name in use is passed over";
  EXPECT_DEATH(top->PopAutoInstanceName(), "");
}

TEST_F(Container, OfTwoStateMachinesTheOlderGivesWay) {
  auto* older = new Fsm("s");
  auto* newer = new Fsm("s");
  top->Add(older);
  top->Add(newer);
  EXPECT_EQ(top->GetFsm("s"), newer);
  EXPECT_STREQ(older->Name(), "fsm0");
}

TEST_F(Container, NamesCompareAsTheNetlistSays) {
  Netlist nocase("m", 0, 0);
  auto* net = new Net("Data");
  nocase.Add(net);
  EXPECT_EQ(nocase.GetNet("DATA"), net);
  UserNet("Data");
  EXPECT_EQ(top->GetNet("DATA"), nullptr);
  top->Add(new Port("Clk"));
  EXPECT_EQ(top->GetPort("clk"), nullptr);
  EXPECT_NE(top->GetPort("clk", 1), nullptr);
}

TEST_F(Container, ANameForANetIsFreeOfNetsAndBuses) {
  std::string name;
  top->UniquifyBaseNetName(name, "n", "p", "a", ".");
  EXPECT_EQ(name, "n");
  UserNet("n");
  top->UniquifyBaseNetName(name, "n", "p", "a", ".");
  EXPECT_EQ(name, "p.a.n");
  top->Add(new NetBus("p.a.n", 1, 0));
  top->UniquifyBaseNetName(name, "n", "p", "a", ".");
  EXPECT_EQ(name, "p.a_1.n");
  top->UniquifyBaseNetName(name, "n", "", "a", ".");
  EXPECT_EQ(name, "a.n");
}

TEST_F(Container, PortsKeepTheirPositionsAndConnectionsFollow) {
  auto view = ViewWith(2, 1);
  Instance* inst = Use(view.get(), "u");
  Net* a = UserNet("a");
  Net* b = UserNet("b");
  inst->Connect(view->GetPort("i0"), a);
  inst->Connect(view->GetPort("i1"), b);
  auto* extra = new Port("x", DIR_INPUT);
  view->AddPortAt(1, extra);
  EXPECT_THAT(PortNames(view.get()), testing::ElementsAre("i0", "x", "i1", "o0"));
  EXPECT_EQ(extra->Index(), 1U);
  EXPECT_EQ(inst->GetNet(view->GetPort("i1")), b);
  EXPECT_EQ(inst->GetNet(extra), nullptr);
  inst->Connect(extra, a);
  view->GetPort("i0")->SetName("first");
  EXPECT_EQ(view->GetPort("first")->Index(), 0U) << "a rename leaves a port where it is";
  delete view->GetPort("first");
  EXPECT_EQ(inst->GetNet(extra), a);
  EXPECT_EQ(a->NumOfPortRefs(), 1U);
  auto* recycled = new Port("r", DIR_INPUT);
  view->Add(recycled);
  EXPECT_EQ(inst->GetNet(view->GetPort("i1")), b);
  EXPECT_EQ(view->GetPortAt(recycled->Index()), recycled);
  EXPECT_EQ(NetlistChecker(view.get()).Report(), "");
  view->AddPortAt(99, new Port("last", DIR_OUTPUT));
  EXPECT_EQ(view->GetPort("last")->Index(), view->NumOfPorts() - 1);
  EXPECT_EQ(NetlistChecker(top.get()).Report(), "");
  view.reset();
  EXPECT_EQ(inst->View(), nullptr) << "an instance outlives its view";
  EXPECT_EQ(b->NumOfPortRefs(), 0U);
}

TEST_F(Container, ADirectionThatChangesMovesTheConnections) {
  auto view = ViewWith(1, 0);
  Instance* first = Use(view.get());
  Net* net = UserNet("n");
  first->Connect(view->GetPort("i0"), net);
  Net* load = top->Inv(net, 0);
  view->GetPort("i0")->SetDirection(DIR_OUTPUT);
  EXPECT_EQ(net->Driver(), first);
  EXPECT_EQ(net->GetFirstPortRef()->GetInst(), first);
  EXPECT_EQ(NetlistChecker(top.get()).Report(), "");
  delete first;
  delete load;
}

TEST_F(Container, AParameterReplacesThatOfItsName) {
  top->AddParam("W", "8", "integer", 396);
  top->AddParam("W", "9", "integer", 396);
  EXPECT_EQ(top->NumOfParameters(), 1U);
  EXPECT_STREQ(top->GetParam("W")->Value(), "9");
  EXPECT_EQ(top->GetParam("w"), nullptr);
  EXPECT_NE(top->GetParamNoCase("w"), nullptr);
  Instance inst("u", top.get());
  EXPECT_STREQ(inst.GetParam("W")->Value(), "9");
}

TEST_F(Container, ABlackBoxHasOnlyAnInterface) {
  Net* a = PortNet("a", DIR_INPUT);
  EXPECT_TRUE(top->IsBlackBox());
  auto* b = new Port("b", DIR_INPUT);
  top->Add(b);
  a->Connect(b);
  EXPECT_TRUE(top->IsBlackBox()) << "inputs on one net pass nothing on";
  auto* o = new Port("o", DIR_OUTPUT);
  top->Add(o);
  a->Connect(o);
  EXPECT_FALSE(top->IsBlackBox());
  top->Inv(a, 0);
  top->Add(new Fsm("s"));
  top->MakeBlackBox();
  EXPECT_TRUE(top->IsBlackBox());
  EXPECT_EQ(top->NumOfPorts(), 3U);
  EXPECT_EQ(top->NumOfNets() + top->NumOfInsts() + top->NumOfFsms(), 0U);
  EXPECT_EQ(o->GetNet(), nullptr);
  UserNet("again");
  EXPECT_EQ(top->NumOfNets(), 1U);
}

TEST_F(Container, TooManyFanoutsAreCountedWithoutTheDriver) {
  services.flags["hdl_initial_fanout_limit"] = 2;
  Net* busy = top->Inv(UserNet("i"), 0);
  busy->SetName("busy");
  Net* few = UserNet("few");
  for (int i = 0; i < 3; i++) top->Inv(busy, 0);
  for (int i = 0; i < 2; i++) top->Inv(few, 0);
  top->CheckTooManyFanouts();
  EXPECT_TRUE(messages.empty()) << "nets without location are the system's";
  busy->SetLinefile(0x100005);
  top->CheckTooManyFanouts();
  EXPECT_THAT(messages, testing::ElementsAre("VDB-2004 net busy has fanout 3, which exceeds the limit of 2"));
}

TEST_F(Container, SweepsTheConesThatNobodyReads) {
  Net* a = UserNet("a");
  Net* cone = top->And(top->Inv(a, 0), a, 0);
  Net* kept = top->Inv(a, 0x100002);
  kept->SetLinefile(0x100002);
  top->RegisterPotentiallyFanoutFreeNet(cone);
  top->RegisterPotentiallyFanoutFreeNet(kept);
  top->SweepPotentiallyFanoutFreeNets();
  EXPECT_EQ(top->NumOfInsts(), 1U) << "the driver of a user's net stays";
  EXPECT_EQ(kept->Driver()->Type(), PRIM_INV);
  EXPECT_EQ(top->NumOfNets(), 2U);
}

} // namespace
