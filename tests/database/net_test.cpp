// Nets: the order of connections, drivers, rings, merging, isolation, cones; buses of nets and ports.
#include "database/net.h"

#include "database/netlist_fixture.h"

namespace {

class Connectivity : public NetlistTest {
protected:
  void SetUp() override {
    NetlistTest::SetUp();
    view = ViewWith(4, 4);
    view->Add(new Port("io", DIR_INOUT));
  }
  void TearDown() override {
    EXPECT_EQ(NetlistChecker(top.get()).Report(), "");
    top.reset(new Netlist("top"));
    view.reset();
    NetlistTest::TearDown();
  }
  Port* PortOf(const char* name) { return view->GetPort(name); }
  std::unique_ptr<Netlist> view;
};

TEST_F(Connectivity, DriversStandBeforeLoads) {
  Net* net = UserNet("n");
  Instance* load = Use(view.get());
  Instance* driver = Use(view.get());
  Instance* second_load = Use(view.get());
  Instance* second_driver = Use(view.get());
  EXPECT_EQ(net->GetFirstPortRef(DIR_INPUT), nullptr);
  net->Connect(load, PortOf("i0"));
  EXPECT_EQ(net->GetFirstPortRef()->GetInst(), load);
  net->Connect(driver, PortOf("o0"));
  net->Connect(second_load, PortOf("i0"));
  net->Connect(second_driver, PortOf("o1"));
  std::vector<Instance*> order;
  for (PortRef* ref : PortRefsOf(net)) order.push_back(ref->GetInst());
  EXPECT_THAT(order, testing::ElementsAre(second_driver, driver, load, second_load));
  EXPECT_EQ(net->GetFirstPortRef(DIR_INPUT)->GetInst(), second_load) << "of the loads the tail is looked at";
  EXPECT_EQ(net->GetFirstPortRef(DIR_OUTPUT)->GetInst(), second_driver);
  EXPECT_EQ(net->GetLastPortRef()->GetInst(), second_load);
  EXPECT_EQ(net->NumOfFanouts(), 2U);
  net->Disconnect(load, PortOf("i0"));
  net->Disconnect(second_load, PortOf("i0"));
  EXPECT_EQ(net->GetFirstPortRef(DIR_INPUT), nullptr);
  EXPECT_TRUE(net->HasMultipleDrivers());
}

TEST_F(Connectivity, TheLatestDriverCountsUntilTheCacheIsLost) {
  Net* net = UserNet("n");
  Instance* oldest = Use(view.get());
  Instance* middle = Use(view.get());
  Instance* latest = Use(view.get());
  for (Instance* inst : {oldest, middle, latest}) net->Connect(inst, PortOf("o0"));
  EXPECT_EQ(net->Driver(), latest);
  net->Disconnect(latest, PortOf("o0"));
  EXPECT_EQ(net->Driver(), oldest) << "a rebuilt cache holds the last driver of the list";
  net->Disconnect(middle, PortOf("o0"));
  EXPECT_EQ(net->Driver(), oldest);
  net->Disconnect(oldest, PortOf("o0"));
  EXPECT_EQ(net->Driver(), nullptr);
  EXPECT_EQ(net->DriverType(), PRIM_NONE);
}

TEST_F(Connectivity, AConstantDriverAlwaysWins) {
  Net* net = top->Gnd(0);
  Instance* gate = top->And(net, net, 0)->Driver();
  gate->Reconnect(gate->View()->GetOutput(), net);
  EXPECT_TRUE(net->IsGnd());
  Net* other = top->And(net, net, 0);
  Instance* constant = top->Pwr(0)->Driver();
  constant->Reconnect(constant->View()->GetOutput(), other);
  EXPECT_TRUE(other->IsPwr());
  EXPECT_TRUE(other->IsConstant());
}

TEST_F(Connectivity, RefusesASecondConnectionAndForeignNets) {
  Net* net = UserNet("n");
  Instance* inst = Use(view.get(), "u");
  EXPECT_EQ(inst->Connect(PortOf("i0"), net), 1U);
  EXPECT_EQ(inst->Connect(PortOf("i0"), UserNet("m")), 0U);
  EXPECT_EQ(inst->GetNet(PortOf("i0")), net);
  auto* foreign = new Net("f");
  view->Add(foreign);
  EXPECT_EQ(inst->Connect(PortOf("i1"), foreign), 0U);
  auto* port = new Port("p");
  top->Add(port);
  foreign->Connect(port);
  EXPECT_EQ(port->GetNet(), nullptr);
  EXPECT_THAT(messages, testing::ElementsAre("VDB-1008 port i0 is already connected to instance u",
                                             "VDB-1010 connection from u to external net f is not allowed",
                                             "VDB-1011 connection to external net f is not allowed"));
  EXPECT_DEATH(inst->Connect(Prim::Static(PRIM_AND)->GetOutput(), net), "port->Owner\\(\\) == _view");
}

TEST_F(Connectivity, FanoutsAreLoadsAndOutwardPorts) {
  Net* net = PortNet("o", DIR_OUTPUT);
  EXPECT_EQ(net->NumOfFanouts(), 1U);
  Instance* driver = Use(view.get());
  net->Connect(driver, PortOf("o0"));
  EXPECT_EQ(net->NumOfFanouts(), 1U);
  net->Connect(driver, PortOf("io"));
  EXPECT_EQ(net->NumOfFanouts(), 2U) << "an inout connection reads too";
}

TEST_F(Connectivity, UserInstancesKeepANetAlive) {
  Net* net = top->Inv(UserNet("a"), 0);
  EXPECT_TRUE(net->IsFanoutFree());
  net->Connect(Use(view.get()), PortOf("o0"));
  EXPECT_FALSE(net->IsFanoutFree());
  Net* wired = top->Inv(UserNet("b"), 0);
  wired->Wire(UserNet("c"));
  EXPECT_FALSE(wired->IsFanoutFree());
  EXPECT_FALSE(PortNet("o", DIR_OUTPUT)->IsFanoutFree());
  EXPECT_TRUE(PortNet("i", DIR_INPUT)->IsFanoutFree());
}

TEST_F(Connectivity, TrueBidirsAreThoseWithKnownContents) {
  Net* net = UserNet("n");
  net->Connect(Use(view.get()), PortOf("io"));
  EXPECT_EQ(net->GetFirstTrueBidirPortRef(), nullptr);
  view->AddAtt(" prototyped", "");
  EXPECT_NE(net->GetFirstTrueBidirPortRef(), nullptr);
  Net* tran = UserNet("t");
  top->Tran(tran, UserNet("s"), nullptr, 0);
  EXPECT_NE(tran->GetFirstTrueBidirPortRef(), nullptr);
}

TEST_F(Connectivity, LooksThroughItsDriver) {
  Net* a = UserNet("a");
  Net* hold = UserNet("h");
  EXPECT_EQ(top->Inv(a, 0)->InvNet(), a);
  EXPECT_EQ(top->Buf(a, 0)->BufNet(), a);
  EXPECT_EQ(top->Dffrs(a, hold, nullptr, nullptr, 0)->RegNet(), a);
  EXPECT_EQ(top->Dff(a, hold, nullptr, nullptr, 0)->RegNet(), nullptr);
  Net* point = top->InferPoint(a, hold, 0);
  EXPECT_EQ(point->LookThroughInferPoint(hold), a);
  EXPECT_EQ(point->LookThroughInferPoint(a), point);
}

TEST_F(Connectivity, WiringMakesOneRingAndNeverSplitsOne) {
  Net* nets[] = {UserNet("a"), UserNet("b"), UserNet("c"), UserNet("d")};
  nets[0]->Wire(nullptr);
  nets[0]->Wire(nets[0]);
  EXPECT_FALSE(nets[0]->IsWired());
  nets[0]->Wire(nets[1]);
  nets[2]->Wire(nets[3]);
  nets[1]->Wire(nets[2]);
  for (Net* net : nets)
    for (Net* other : nets) net->Wire(other);
  unsigned length = 1;
  for (Net* net = nets[0]->WireNext(); net != nets[0]; net = net->WireNext()) length++;
  EXPECT_EQ(length, 4U);
  EXPECT_DEATH(nets[0]->Copy(), "!_wire");
  delete nets[1];
  delete nets[2];
  EXPECT_EQ(nets[0]->WireNext(), nets[3]);
  delete nets[3];
  EXPECT_FALSE(nets[0]->IsWired());
}

TEST_F(Connectivity, ARingBecomesTheNetThatSaysMost) {
  Net* hidden = top->Inv(UserNet("a"), 0);
  Net* user = UserNet("u");
  Net* kept = UserNet("k");
  kept->AddAtt(ATT_KEEP, "1");
  Instance* load = Use(view.get());
  load->Connect(PortOf("i0"), user);
  hidden->Wire(user);
  user->Wire(kept);
  Net* survivor = hidden->ResolveWires();
  EXPECT_EQ(survivor, kept) << "attributes win among nets from source";
  EXPECT_EQ(load->GetNet(PortOf("i0")), kept);
  EXPECT_EQ(kept->DriverType(), PRIM_INV);
  EXPECT_FALSE(kept->IsWired());
  EXPECT_EQ(top->NumOfNets(), 2U);
}

TEST_F(Connectivity, APreferredNameSurvives) {
  Net* busy = UserNet("busy");
  Instance* load = Use(view.get());
  load->Connect(PortOf("i0"), busy);
  Net* preferred = Added(new Net("name", 0x100009));
  preferred->SetPreferredName(1);
  busy->Wire(preferred);
  Net* survivor = busy->ResolveWires();
  EXPECT_EQ(survivor, busy);
  EXPECT_STREQ(survivor->Name(), "name");
  EXPECT_EQ(survivor->Linefile(), 0x100009UL);
  EXPECT_EQ(top->GetNet("name"), survivor);
}

TEST_F(Connectivity, CompatibilityProtectsUsersNetsAndBidirs) {
  Net* anonymous = AutoNet();
  Net* a = UserNet("a");
  Net* b = UserNet("b");
  Net* pwr = top->Pwr(0);
  EXPECT_FALSE(a->IsCompatible(nullptr, 0));
  EXPECT_TRUE(a->IsCompatible(b, 0));
  EXPECT_TRUE(pwr->IsCompatible(a, 0));
  a->AddAtt(ATT_KEEP, "1");
  EXPECT_FALSE(a->IsCompatible(b, 0));
  EXPECT_FALSE(b->IsCompatible(a, 0));
  EXPECT_TRUE(a->IsCompatible(anonymous, 0));
  EXPECT_FALSE(pwr->IsCompatible(a, 0));
  EXPECT_FALSE(a->IsCompatible(pwr, 0)) << "the constant is asked whichever way round";
  Net* bidir = PortNet("io", DIR_INOUT);
  EXPECT_FALSE(bidir->IsCompatible(b, 0));
  EXPECT_TRUE(bidir->IsCompatible(b, 1));
  EXPECT_FALSE(pwr->IsCompatible(bidir, 1));
}

TEST_F(Connectivity, PropagatesByMergingOrThroughABuffer) {
  Net* source = top->Inv(UserNet("i"), 0);
  Net* target = UserNet("t");
  EXPECT_EQ(source->PropagateInto(nullptr, 0), 0U);
  EXPECT_EQ(source->PropagateInto(source, 0), 1U);
  EXPECT_EQ(source->PropagateInto(target, 0), 1U);
  EXPECT_EQ(target->DriverType(), PRIM_INV);

  Net* bidir = PortNet("io", DIR_INOUT);
  Net* into_bidir = UserNet("d");
  EXPECT_EQ(into_bidir->PropagateInto(bidir, 0), 0U);
  EXPECT_EQ(bidir->Driver()->BufferType(), DIRECTIONAL);
  Net* other = PortNet("io2", DIR_INOUT);
  EXPECT_EQ(top->Gnd(0)->PropagateInto(other, 0), 0U);
  EXPECT_EQ(other->Driver()->BufferType(), CONSTANT);
  Net* attributed = UserNet("k");
  attributed->AddAtt(ATT_KEEP, "1");
  EXPECT_EQ(into_bidir->PropagateInto(attributed, 0), 0U);
  EXPECT_EQ(attributed->Driver()->BufferType(), LOGICAL);
  services.flags["zelk_dont_add_directional_buffers"] = 1;
  EXPECT_EQ(AutoNet()->PropagateInto(PortNet("io3", DIR_INOUT), 0), 1U);
}

TEST_F(Connectivity, AssignmentsBetweenUsersNetsAreIsolated) {
  Net* a = UserNet("a");
  Net* b = UserNet("b");
  Net* isolated = a->Isolate(b, 0x100003);
  EXPECT_EQ(isolated->BufNet(), a);
  EXPECT_EQ(isolated->Driver()->BufferType(), USER_NET);
  EXPECT_STREQ(isolated->Driver()->Name(), " b_0") << "named by the net that is assigned";
  EXPECT_EQ(a->Isolate(a, 0), a);
  EXPECT_EQ(a->Isolate(nullptr, 0), a);
  Net* hidden = top->And(a, b, 0);
  EXPECT_EQ(hidden->Isolate(b, 0), hidden);
  Net* latched = top->Dlatch(a, b, nullptr, nullptr, 0);
  latched->AddAtt(ATT_KEEP, "1");
  EXPECT_EQ(latched->Isolate(AutoNet(), 0), latched) << "storage without location gets the name itself";
  EXPECT_NE(top->Pwr(0)->Isolate(b, 0), nullptr);
  EXPECT_EQ(top->Pwr(0)->Isolate(b, 0)->DriverType(), PRIM_BUF);
  Net* point = top->InferPoint(a, b, 0);
  EXPECT_EQ(point->Isolate(b, 0), point);
  EXPECT_EQ(point->Isolate(UserNet("c"), 0)->BufNet(), point);
  a->AddAtt(" resolved_wired_three_state", "");
  EXPECT_EQ(a->Isolate(b, 0), a);
  EXPECT_FALSE(a->HasAtts());
}

TEST_F(Connectivity, FewerNamesKeepNoBufferWithoutAttributes) {
  Net* a = UserNet("a");
  Net* b = UserNet("b");
  top->AddAtt(ATT_LSX_PRESERVE_FEWER_NAMES, "1");
  EXPECT_EQ(a->Isolate(b, 0), a);
  EXPECT_NE(top->Z(0x100001)->Isolate(b, 0)->BufNet(), nullptr) << "a floating value always has its buffer";
  b->AddAtt(ATT_KEEP, "1");
  EXPECT_EQ(a->Isolate(b, 0)->BufNet(), a);
  top->RemoveAtt(ATT_LSX_PRESERVE_FEWER_NAMES);
  services.flags["zelk_preserve_fewer_names"] = 1;
  EXPECT_EQ(a->Isolate(UserNet("c"), 0), a);
}

TEST_F(Connectivity, WiredLogicCollectsItsInputs) {
  Net* bus = UserNet("bus");
  Net* a = UserNet("a");
  Net* b = UserNet("b");
  bus->Assign(a, PRIM_NONE);
  EXPECT_EQ(bus->WireNext(), a);
  Net* both = UserNet("both");
  both->Assign(a, OPER_REDUCE_OR);
  both->Assign(both, OPER_REDUCE_OR);
  both->Assign(b, OPER_REDUCE_OR);
  ASSERT_EQ(both->DriverType(), OPER_REDUCE_OR);
  EXPECT_EQ(both->NumOfPortRefs(), 1U);
  EXPECT_EQ(both->Driver()->InputSize(), 2U);
  EXPECT_EQ(both->Driver()->GetInputBit(0), a);
  EXPECT_EQ(both->Driver()->GetInputBit(1), b);
  EXPECT_DEATH(both->Assign(a, PRIM_XOR), "");
}

TEST_F(Connectivity, ReductionsLookThroughChoicesBetweenEquals) {
  Net* a = UserNet("a");
  Net* s = UserNet("s");
  Net* deep = a;
  for (int i = 0; i < 100000; i++) deep = top->Mux(deep, top->Buf(deep, 0), s, 0);
  Map cache(HASH_POINTER);
  EXPECT_EQ(deep->ReduceConeToSingleNet(cache), a);
  Net* mixed = top->Mux(a, s, s, 0);
  EXPECT_EQ(mixed->ReduceConeToSingleNet(cache), mixed);
  Net* point = top->InferPoint(mixed, a, 0);
  EXPECT_EQ(point->ReduceConeToSingleNet(cache), mixed);
  Net* named = top->Buf(a, 0);
  named->SetLinefile(0x100001);
  EXPECT_EQ(named->ReduceConeToSingleNet(cache), named);
  Array sel, data;
  sel.InsertLast(s);
  for (int i = 0; i < 2; i++) data.InsertLast(top->Buf(a, 0));
  Net* chosen = nullptr;
  top->Nto1Mux(&sel, &data, &chosen, 0);
  EXPECT_EQ(chosen->ReduceConeToSingleNet(cache), a);
}

TEST_F(Connectivity, FollowsACopyOfANetBackToIt) {
  Net* q = UserNet("q");
  Net* d = UserNet("d");
  Net* cone = top->Mux(top->Buf(q, 0), d, UserNet("en"), 0);
  auto reaches = [](Net* from, Net* target) {
    Set visited(HASH_POINTER);
    return from->CheckDriverFrom(target, visited) != 0;
  };
  EXPECT_TRUE(reaches(cone, q));
  EXPECT_TRUE(reaches(top->InferPoint(cone, q, 0), q));
  EXPECT_FALSE(reaches(top->InferPoint(cone, d, 0), q)) << "an infer point of another signal ends the walk";
  EXPECT_FALSE(reaches(top->Inv(q, 0), q));
  EXPECT_FALSE(reaches(cone, nullptr));
  EXPECT_TRUE(reaches(top->Mux(d, top->Z(0), q, 0), nullptr));
  cone->SetLinefile(0x100001);
  EXPECT_FALSE(reaches(cone, q)) << "a net from source ends it too";
}

TEST_F(Connectivity, FindsCombinationalLoopsAndRegisteredFanout) {
  Net* a = UserNet("a");
  Net* loop = top->And(top->Inv(a, 0), a, 0);
  EXPECT_EQ(loop->CheckCombLoop(a), 1U);
  EXPECT_THAT(messages, testing::ElementsAre("VDB-1005 combinational loop at net a"));
  EXPECT_EQ(loop->CheckCombLoop(loop), 0U);
  Net* q = top->Dffrs(loop, UserNet("clk"), nullptr, nullptr, 0);
  EXPECT_EQ(top->Inv(q, 0)->CheckCombLoop(a), 0U) << "a register ends the loop";
  Set registers(HASH_POINTER);
  a->RegisteredFanout(registers);
  EXPECT_EQ(registers.Size(), 1U);
  EXPECT_TRUE(registers.Contains(q->Driver()));
}

TEST_F(Connectivity, FanoutIsFoundFromTheTail) {
  Net* net = UserNet("n");
  Instance* first = top->Inv(net, 0)->Driver();
  EXPECT_EQ(kestrin_get_fanout(net, PRIM_INV, GET_FANOUT_SINGLE), first);
  top->Buf(net, 0);
  Instance* last = top->Inv(net, 0)->Driver();
  EXPECT_EQ(kestrin_get_fanout(net, PRIM_INV, GET_FANOUT_FIRST), last);
  EXPECT_EQ(kestrin_get_fanout(net, PRIM_ANY, GET_FANOUT_FIRST), last);
  EXPECT_EQ(kestrin_get_fanout(net, PRIM_INV, GET_FANOUT_ONLY), nullptr);
  EXPECT_NE(kestrin_get_fanout(net, PRIM_BUF, GET_FANOUT_ONLY), nullptr);
  EXPECT_EQ(kestrin_get_fanout(net, PRIM_BUF, GET_FANOUT_SINGLE), nullptr);
  EXPECT_EQ(kestrin_get_fanout(net, PRIM_AND, GET_FANOUT_FIRST), nullptr);
}

TEST_F(Connectivity, EquivalentNetsCarryTheSameValue) {
  Net* a = UserNet("a");
  Net* clk = UserNet("clk");
  EXPECT_TRUE(kestrin_equivalent_nets(a, a, nullptr));
  EXPECT_TRUE(kestrin_equivalent_nets(top->Gnd(0), top->Gnd(0), nullptr));
  EXPECT_FALSE(kestrin_equivalent_nets(top->Gnd(0), top->Pwr(0), nullptr));
  EXPECT_TRUE(kestrin_equivalent_nets(a, top->Buf(a, 0), nullptr));
  Net* q = top->Dffrs(a, clk, top->Gnd(0), top->Gnd(0), 0);
  Net* same = top->Dffrs(a, clk, top->Gnd(0), top->Gnd(0), 0);
  Net* set = top->Dffrs(a, clk, top->Pwr(0), top->Gnd(0), 0);
  EXPECT_TRUE(kestrin_equivalent_nets(q, same, nullptr));
  EXPECT_FALSE(kestrin_equivalent_nets(q, set, nullptr));
  // Two registers that reset each other are not decided by themselves.
  Instance* x = top->Dffrs(a, clk, nullptr, nullptr, 0)->Driver();
  Instance* y = top->Dffrs(a, clk, nullptr, x->GetOutput(), 0)->Driver();
  x->Connect(x->View()->GetReset(), y->GetOutput());
  EXPECT_FALSE(kestrin_equivalent_nets(x->GetOutput(), y->GetOutput(), nullptr));
}

TEST_F(Connectivity, DeepConesAreDeletedWithoutTheStack) {
  Net* a = UserNet("a");
  Net* net = a;
  for (int i = 0; i < 100000; i++) net = top->Inv(net, 0);
  net->DeleteFanoutFreeCone(nullptr, 1);
  EXPECT_EQ(top->NumOfInsts(), 0U);
  EXPECT_EQ(top->NumOfNets(), 1U);
}

TEST_F(Connectivity, BusesCountFromTheLeft) {
  NetBus down("d", 7, 0), up("u", 0, 7), single("s", 3, 3);
  std::vector<std::unique_ptr<Net>> bits;
  for (NetBus* bus : {&down, &up})
    for (int i = 0; i < 8; i++) bus->Add(bits.emplace_back(std::make_unique<Net>()).get());
  EXPECT_EQ(down.ElementAtIndex(7), bits[0].get());
  EXPECT_EQ(down.ElementAtIndex(0), bits[7].get());
  EXPECT_EQ(up.ElementAtIndex(0), bits[8].get());
  EXPECT_EQ(up.IndexOf(bits[10].get()), 2);
  EXPECT_EQ(down.IndexOf(bits[2].get()), 5);
  for (int outside : {-1, 8}) EXPECT_EQ(down.ElementAtIndex(outside), nullptr);
  EXPECT_EQ(single.Size(), 1U);
  EXPECT_EQ(NetBus("w", 2147483647, -2147483647).Size(), 4294967295U);
  Net extra;
  EXPECT_DEATH(down.Add(&extra), "_elements.Size\\(\\) != Size\\(\\)");
}

TEST_F(Connectivity, ABusHasHolesThatCanBeFilled) {
  NetBus bus("b", 9, 0);
  Net four, two, again;
  bus.AddAtIndex(&four, 4);
  EXPECT_EQ(bus.ElementAtIndex(4), &four);
  EXPECT_EQ(bus.ElementAtIndex(9), nullptr);
  EXPECT_EQ(bus.Elements().Size(), 6U);
  bus.AddAtIndex(&two, 8);
  EXPECT_EQ(bus.ElementAtIndex(8), &two);
  EXPECT_EQ(bus.ElementAtIndex(4), &four);
  EXPECT_EQ(bus.NetCount(), 2U);
  bus.Remove(&four);
  EXPECT_EQ(bus.Elements().Size(), 6U) << "a hole is left behind";
  EXPECT_EQ(bus.ElementAtIndex(4), nullptr);
  EXPECT_EQ(bus.ElementAtIndex(8), &two);
  EXPECT_EQ(four.GetNetBus(), nullptr);
  bus.AddAtIndex(&again, 4);
  EXPECT_EQ(bus.ElementAtIndex(4), &again);
  EXPECT_DEATH(bus.AddAtIndex(&four, 4), "!item->Key\\(\\)");
  EXPECT_DEATH(bus.AddAtIndex(&four, 10), "idx");
  NetBus outer("o", 0, 0, 0, 1);
  EXPECT_DEATH(outer.Add(&four), "NetBusLevel");
  outer.Add(&bus);
  EXPECT_EQ(outer.NetCount(), 2U);
}

TEST_F(Connectivity, PortBusesTakeElementsOfOneLevel) {
  PortBus bus("b", DIR_INPUT, 1, 0), up("u", DIR_INPUT, 2, 1), outer("o", DIR_INPUT, 0, 1, 0, 1);
  Port one("b[1]", DIR_INPUT), zero("b[0]", DIR_INPUT);
  EXPECT_EQ(bus.RightIndex(), 1);
  bus.Add(&one);
  bus.Add(&zero);
  EXPECT_EQ(bus.ElementAtIndex(1), &one);
  EXPECT_EQ(bus.ElementAtIndex(0), &zero);
  EXPECT_EQ(bus.ElementAtIndex(2), nullptr);
  EXPECT_EQ(bus.ElementAtPos(2), nullptr);
  EXPECT_EQ(bus.IndexOf(&zero), 0);
  EXPECT_DEATH(up.Add(&one), "");
  EXPECT_DEATH(outer.Add(&one), "");
  outer.Add(&bus);
  EXPECT_EQ(outer.PortCount(), 2U);
  bus.Remove(&one);
  EXPECT_EQ(one.GetPortBus(), nullptr);
  up.Add(&one);
  EXPECT_EQ(up.ElementAtIndex(2), &one);
}

TEST_F(Connectivity, SignalsMatchThroughBuffersRingsAndPairsOfInverters) {
  Net* clock = UserNet("clock");
  Net* renamed = UserNet("renamed");
  renamed->Wire(top->UserNetBuf(clock, 0));
  Net* inverted = top->Inv(renamed, 0);
  EXPECT_EQ(Netlist::NetMatch(clock, renamed), 1U);
  EXPECT_EQ(Netlist::NetMatch(clock, inverted), 0U);
  EXPECT_EQ(Netlist::NetMatch(inverted, top->Inv(clock, 0)), 1U);
  EXPECT_EQ(Netlist::NetMatch(top->Inv(inverted, 0), clock), 1U);
  EXPECT_EQ(Netlist::NetMatch(clock, UserNet("other")), 0U);
  EXPECT_EQ(Netlist::NetMatch(clock, nullptr), 0U);
}

} // namespace
