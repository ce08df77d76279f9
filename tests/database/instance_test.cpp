// Instances: views, connections by role, replacement of views, flattening, deletion; state machines; the hierarchy.
#include "database/instance.h"

#include "database/netlist_fixture.h"

namespace {

class InstanceOfView : public NetlistTest {};

TEST_F(InstanceOfView, GetsItsViewOnce) {
  Instance* inst = Use(nullptr, "u");
  EXPECT_EQ(inst->Type(), PRIM_NONE);
  EXPECT_EQ(inst->GetOutput(), nullptr);
  inst->Instantiate(Prim::Static(PRIM_AND));
  EXPECT_EQ(Prim::Static(PRIM_AND)->NumOfRefs(), 1U);
  EXPECT_DEATH(inst->Instantiate(Prim::Static(PRIM_OR)), "!_view");
}

TEST_F(InstanceOfView, ChangesItsViewByNameOrByPosition) {
  Net* a = UserNet("a");
  Net* b = UserNet("b");
  Net* o = top->And(a, b, 0);
  Instance* inst = o->Driver();
  inst->ReplaceView(Prim::Static(PRIM_MUX), 1);
  EXPECT_EQ(inst->GetInput2(), b);
  EXPECT_EQ(inst->GetOutput(), o);
  EXPECT_EQ(inst->GetControl(), nullptr);
  inst->ReplaceView(Prim::Static(PRIM_BUF), 1);
  EXPECT_EQ(inst->GetOutput(), o) << "only what has a namesake stays";
  EXPECT_EQ(inst->NumOfPortRefs(), 1U);
  EXPECT_EQ(a->NumOfPortRefs(), 0U);

  Instance* mux = top->Mux(a, nullptr, b, 0)->Driver();
  Net* out = mux->GetOutput();
  mux->ReplaceView(Prim::Static(PRIM_OR), 0);
  EXPECT_EQ(mux->GetInput1(), a);
  EXPECT_EQ(mux->GetInput2(), b) << "only connected ports count";
  EXPECT_EQ(mux->GetOutput(), out);
  EXPECT_DEATH(mux->ReplaceView(Prim::Static(PRIM_INV), 0), "new_port");
}

TEST_F(InstanceOfView, ReferencesMoveTogether) {
  auto view = ViewWith(1, 1);
  auto other = ViewWith(1, 1);
  Instance* u = Use(view.get(), "u");
  Instance* v = Use(view.get(), "v");
  Net* n = UserNet("n");
  u->Connect(view->GetPort("i0"), n);
  view->ReplaceReferences(other.get(), 1);
  EXPECT_EQ(other->NumOfRefs(), 2U);
  EXPECT_EQ(u->GetNet(other->GetPort("i0")), n);
  EXPECT_EQ(v->View(), other.get());
  top.reset(new Netlist("top"));
}

TEST_F(InstanceOfView, DeletesPrimitivesThatNobodyReads) {
  Net* a = UserNet("a");
  Set inputs(HASH_POINTER);
  Net* read = top->Inv(a, 0);
  top->Inv(read, 0);
  EXPECT_EQ(read->Driver()->DeleteIfFanoutFree(&inputs, 0), 0U);
  EXPECT_EQ(top->Tristate(a, a, 0)->Driver()->DeleteIfFanoutFree(&inputs, 0), 1U);
  EXPECT_TRUE(inputs.Contains(a));
  Net* named = top->Inv(a, 0);
  named->SetLinefile(0x100001);
  EXPECT_EQ(named->Driver()->DeleteIfFanoutFree(nullptr, 1), 0U);
  EXPECT_EQ(named->Driver()->DeleteIfFanoutFree(nullptr, 0), 1U);
  Instance* reg = top->Dff(a, a, nullptr, nullptr, 0)->Driver();
  reg->AddAtt(ATT_IP_DEBUG_VISIBLE, "1");
  services.flags["zelk_enable_ip_debug"] = 1;
  EXPECT_EQ(reg->DeleteIfFanoutFree(nullptr, 0), 0U);
  services.flags.clear();
  reg->AddAtt(ATT_NOPRUNE, "1");
  EXPECT_EQ(reg->DeleteIfFanoutFree(nullptr, 0), 0U);
  EXPECT_EQ(top->PslAssertion(a, 0)->DeleteIfFanoutFree(nullptr, 0), 0U);
  top->Tran(a, read, nullptr, 0);
  EXPECT_EQ(a->GetFirstTrueBidirPortRef()->GetInst()->DeleteIfFanoutFree(nullptr, 0), 0U);
}

TEST_F(InstanceOfView, TablesOfTruthHaveFiveInputsAtMost) {
  Array six;
  for (int i = 0; i < 6; i++) six.InsertLast(UserNet(("n" + std::to_string(i)).c_str()));
  Array five(six, 0, 4);
  Net* o = nullptr;
  top->Lut(&five, &o, 0x80000001U, 0);
  EXPECT_EQ(o->Driver()->LutFunction(), 0x80000001U);
  std::unique_ptr<Instance> copy(o->Driver()->Copy());
  EXPECT_EQ(copy->LutFunction(), 0x80000001U);
  EXPECT_EQ(copy->NumOfPortRefs(), 0U);
  EXPECT_DEATH(top->Lut(&six, &o, 0, 0), "");
  EXPECT_DEATH(LutInstance("l", Prim::Static(PRIM_AND), 0), "");
}

class Hierarchy : public NetlistTest {
protected:
  /// A view "half": sum = a ^ b, carry = a & b through an inner net of its own, a state machine and a bus.
  Netlist* MakeHalf() {
    auto* library = new Library("work");
    Libset::Global()->Add(library);
    auto* cell = new Cell("half");
    library->Add(cell);
    auto* half = new Netlist("rtl");
    cell->Add(half);
    for (const char* name : {"a", "b"}) half->Add(new Port(name, DIR_INPUT));
    for (const char* name : {"sum", "carry"}) half->Add(new Port(name, DIR_OUTPUT));
    for (Port* port : PortsOf(half)) {
      auto* net = new Net(port->Name(), 0x100002);
      half->Add(net);
      net->Connect(port);
    }
    Net* a = half->GetNet("a");
    Net* b = half->GetNet("b");
    half->Xor(a, b, 0x100003)->PropagateInto(half->GetNet("sum"), 0);
    Net* inner = half->And(a, b, 0);
    inner->SetName("inner");
    inner->SetLinefile(0x100004);
    half->Buf(inner, 0)->PropagateInto(half->GetNet("carry"), 0);
    return half;
  }

  Instance* UseHalf(Netlist* half, const char* name, Net* a, Net* b, Net* sum, Net* carry) {
    Instance* inst = Use(half, name);
    inst->SetLinefile(0x100042);
    Net* nets[] = {a, b, sum, carry};
    for (unsigned i = 0; i < 4; i++)
      if (nets[i]) inst->Connect(half->GetPortAt(i), nets[i]);
    return inst;
  }

  void TearDown() override {
    EXPECT_EQ(NetlistChecker(top.get()).Report(), "");
    top.reset(new Netlist("top"));
    NetlistTest::TearDown();
  }
};

std::string Order(const Netlist* netlist) {
  std::string order;
  for (Net* net : NetsOf(netlist)) {
    order += std::string(net->Name() ? net->Name() : "~") + ":";
    for (PortRef* ref : PortRefsOf(net))
      order += std::string(" ") + ref->GetInst()->Name() + "." + ref->GetPort()->Name();
    order += "\n";
  }
  return order;
}

TEST_F(Hierarchy, ACopyHasTheSameContentsInTheSameOrder) {
  Netlist* half = MakeHalf();
  auto* bus = new NetBus("v", 3, 0);
  half->Add(bus);
  bus->AddAtIndex(half->GetNet("a"), 2);
  auto* port_bus = new PortBus("p", DIR_INPUT, 1, 0);
  half->Add(port_bus);
  port_bus->Add(half->GetPort("b"));
  half->AddParam("W", "8", "integer", 396);
  half->GetNet("a")->AddAtt(ATT_KEEP, "1");
  half->GetNet("b")->SetPowerUpValue('1');
  auto* fsm = new Fsm("state");
  half->Add(fsm);
  Instance* reg = half->Dffrs(half->GetNet("a"), half->GetNet("b"), nullptr, nullptr, 0, "s0")->Driver();
  fsm->AddState(reg, "s0");
  std::unique_ptr<Netlist> copy(half->Copy());
  EXPECT_EQ(NetlistChecker(copy.get()).Report(), "");
  EXPECT_EQ(Order(copy.get()), Order(half));
  EXPECT_EQ(copy->NumOfParameters(), 1U);
  EXPECT_TRUE(copy->GetNet("a")->GetAtt(ATT_KEEP));
  EXPECT_EQ(copy->GetNet("b")->PowerUpValue(), '1');
  EXPECT_EQ(copy->GetNetBus("v")->ElementAtIndex(2), copy->GetNet("a"));
  EXPECT_EQ(copy->GetNetBus("v")->ElementAtIndex(3), nullptr);
  EXPECT_EQ(copy->GetPortBus("p")->ElementAtIndex(1), copy->GetPort("b"));
  EXPECT_EQ(copy->GetFsm("state")->GetStateAt(0), copy->GetInst("s0"));
  EXPECT_EQ(copy->Owner(), nullptr);
}

TEST_F(Hierarchy, FlatteningPutsTheContentsInPlace) {
  Netlist* half = MakeHalf();
  Net* a = UserNet("x");
  Net* b = UserNet("y");
  Net* sum = UserNet("z");
  Instance* inst = UseHalf(half, "u", a, b, sum, nullptr);
  Array added;
  EXPECT_EQ(inst->Flatten(&added), 1U);
  EXPECT_EQ(added.Size(), 3U);
  EXPECT_EQ(sum->DriverType(), PRIM_XOR);
  EXPECT_EQ(sum->Driver()->GetInput1(), a);
  ASSERT_TRUE(top->GetNet("u_inner"));
  EXPECT_EQ(top->GetNet("u_inner")->Driver()->Linefile(), 0x100042UL) << "without one of its own";
  EXPECT_EQ(sum->Driver()->Linefile(), 0x100003UL);
  ASSERT_TRUE(top->GetNet("u_carry")) << "an open port's net comes along";
  EXPECT_EQ(half->NumOfInsts(), 3U);
  EXPECT_EQ(half->NumOfRefs(), 0U);
  for (Instance* made : InstancesOf(top.get())) EXPECT_EQ(made->Name()[0], ' ') << made->Name();
}

TEST_F(Hierarchy, FlatteningJoinsWhatTheViewJoins) {
  auto view = ViewWith(1, 2);
  auto* through = new Net("t");
  view->Add(through);
  for (Port* port : PortsOf(view.get())) through->Connect(port);
  Net* in = UserNet("in");
  Net* out = AutoNet();
  Instance* inst = Use(view.get(), "u");
  inst->Connect(view->GetPort("i0"), in);
  inst->Connect(view->GetPort("o1"), out);
  Instance* load = top->Inv(out, 0)->Driver();
  EXPECT_EQ(top->Flatten(), 1U);
  EXPECT_EQ(load->GetInput(), in);
  EXPECT_EQ(Use(Prim::Static(PRIM_AND))->Flatten(), 0U) << "a primitive has no inside";
  top.reset(new Netlist("top"));
}

TEST_F(Hierarchy, BlackBoxesAndLooseInstancesStay) {
  auto view = ViewWith(1, 1);
  EXPECT_EQ(Use(view.get())->Flatten(), 0U);
  Instance loose("l", MakeHalf());
  EXPECT_EQ(loose.Flatten(), 0U);
  top.reset(new Netlist("top"));
}

TEST_F(Hierarchy, FlatteningEndsAtTheLeavesOrAtAViewThatContainsItself) {
  Netlist* half = MakeHalf();
  auto* wrapper = new Netlist("wrapper");
  half->Owner()->Add(wrapper);
  for (const char* name : {"h0", "h1"}) wrapper->Add(new Instance(name, half));
  Use(wrapper, "w0");
  Use(wrapper, "w1");
  EXPECT_EQ(top->Flatten(), 6U);
  EXPECT_EQ(top->NumOfInsts(), 4 * half->NumOfInsts());
  half->Add(new Instance("again", half));
  Use(wrapper, "w2");
  EXPECT_GT(top->Flatten(), 3U);
  delete half->GetInst("again");
}

TEST_F(Hierarchy, UngroupingAGroupGivesTheNetlistBack) {
  MakeHalf()->Owner()->Owner()->Add(new Cell("top"));
  Libset::Global()->GetLibrary("work")->GetCell("top")->Add(top.get());
  Net* a = PortNet("a", DIR_INPUT);
  Net* b = PortNet("b", DIR_INPUT);
  Net* o = PortNet("o", DIR_OUTPUT);
  Net* inner = top->And(a, b, 0);
  Net* shared = top->Inv(inner, 0);
  top->Buf(shared, 0)->PropagateInto(o, 0);
  Set group(HASH_POINTER);
  group.Insert(inner->Driver());
  group.Insert(shared->Driver());
  Instance* inst = top->Group(group, "g", "grouped", nullptr);
  EXPECT_EQ(NetlistChecker(top.get()).Report(), "");
  EXPECT_EQ(NetlistChecker(inst->View()).Report(), "");
  EXPECT_STREQ(inst->View()->Owner()->Name(), "grouped");
  EXPECT_EQ(inst->View()->NumOfInsts(), 2U);
  EXPECT_EQ(inst->View()->NumOfPorts(), 3U) << "a net that only the group uses goes inside";
  EXPECT_EQ(inst->GetNet(inst->View()->GetPort("a")), a);
  EXPECT_EQ(shared->Driver(), inst);
  EXPECT_EQ(top->NumOfInsts(), 2U);
  Set ungrouped(HASH_POINTER);
  ungrouped.Insert(inst);
  EXPECT_EQ(top->Ungroup(ungrouped), 1U);
  EXPECT_EQ(shared->DriverType(), PRIM_INV);
  EXPECT_EQ(shared->InvNet()->DriverType(), PRIM_AND);
  top->Owner()->Remove(top.get());
}

TEST_F(Hierarchy, AGroupTakesConditionsAndWholeStateMachinesAlong) {
  MakeHalf()->Owner()->Owner()->Add(new Cell("top"));
  Libset::Global()->GetLibrary("work")->GetCell("top")->Add(top.get());
  Net* outside = UserNet("outside");
  Net* inside = top->Inv(outside, 0);
  auto operator_under = [&](Net* condition) {
    ArrayOf<Net> word(1, outside);
    Net* out = nullptr;
    top->ReduceOr(&word, &out, 0);
    out->Driver()->SetControlNet(condition);
    return out->Driver();
  };
  Instance* moved[] = {operator_under(outside), operator_under(inside), inside->Driver()};
  Instance* stays = operator_under(inside);
  auto machine = [&](const char* name) {
    auto* fsm = new Fsm(name);
    top->Add(fsm);
    for (const char* state : {"s0", "s1"})
      fsm->AddState(top->Dff(outside, outside, nullptr, nullptr, 0)->Driver(), state);
    return fsm;
  };
  Fsm* whole = machine("whole");
  Instance* torn[] = {machine("torn")->GetStateAt(0), top->GetFsm("torn")->GetStateAt(1)};
  Set group(HASH_POINTER);
  for (Instance* inst : moved) group.Insert(inst);
  for (Instance* inst : {whole->GetStateAt(0), whole->GetStateAt(1), torn[0]}) group.Insert(inst);
  Netlist* view = top->Group(group, "g", nullptr, nullptr)->View();
  EXPECT_EQ(NetlistChecker(view).Report(), "");
  EXPECT_EQ(moved[0]->ControlNet(), view->GetNet("outside"));
  ASSERT_TRUE(moved[1]->ControlNet());
  EXPECT_EQ(moved[1]->ControlNet()->Driver(), moved[2]);
  EXPECT_EQ(stays->ControlNet(), inside) << "a condition of both sides crosses the border";
  EXPECT_EQ(view->GetFsm("whole"), whole);
  EXPECT_EQ(view->NumOfFsms(), 1U);
  EXPECT_EQ(top->NumOfFsms(), 0U) << "what is left of a torn machine is none";
  EXPECT_FALSE(torn[0]->GetFsm() || torn[1]->GetFsm());
  top->Owner()->Remove(top.get());
}

TEST_F(Hierarchy, EachInstanceGetsAViewOfItsOwn) {
  Netlist* half = MakeHalf();
  Net* n = UserNet("n");
  Instance* u = UseHalf(half, "u", n, n, nullptr, nullptr);
  Instance* v = UseHalf(half, "v", n, n, nullptr, nullptr);
  Set seen(HASH_POINTER);
  top->Uniquify(seen);
  EXPECT_EQ(u->View(), half);
  ASSERT_NE(v->View(), half);
  EXPECT_STREQ(v->View()->Name(), "v0");
  EXPECT_EQ(v->View()->Owner(), half->Owner());
  EXPECT_EQ(v->GetNet(v->View()->GetPort("b")), n);
  EXPECT_EQ(Order(v->View()), Order(half));
}

TEST_F(Hierarchy, ParentsComeBeforeAllTheirChildren) {
  Netlist* half = MakeHalf();
  Netlist* wrapper = new Netlist("wrapper");
  half->Owner()->Add(wrapper);
  Use(half);
  Use(wrapper);
  auto* below = new Instance("w", half);
  wrapper->Add(below);
  Set down(HASH_POINTER), up(HASH_POINTER);
  top->Hierarchy(down, 1);
  top->Hierarchy(up, 0);
  EXPECT_EQ(down.Size(), 6U) << "top, wrapper, half and three primitives";
  auto before = [](const Set& set, Netlist* first, Netlist* second) {
    return set.IndexOfItem(first) < set.IndexOfItem(second);
  };
  EXPECT_TRUE(before(down, top.get(), wrapper) && before(down, wrapper, half));
  EXPECT_TRUE(before(down, half, Prim::Static(PRIM_XOR)));
  EXPECT_TRUE(before(up, half, wrapper) && before(up, wrapper, top.get()));
  EXPECT_TRUE(before(up, Prim::Static(PRIM_XOR), half));
}

class StateMachine : public NetlistTest {
protected:
  Instance* State(Net* set, Net* reset) {
    Net* clk = top->GetNet("clk") ? top->GetNet("clk") : UserNet("clk");
    return top->Dffrs(AutoNet(), clk, set, reset, 0)->Driver();
  }
  Fsm* Machine(std::initializer_list<Instance*> states) {
    auto* fsm = new Fsm("m");
    top->Add(fsm);
    for (Instance* state : states) fsm->AddState(state, ("s" + std::to_string(fsm->NumStates())).c_str());
    return fsm;
  }
};

TEST_F(StateMachine, ItsRegistersLeaveItWhenTheyGo) {
  Instance* first = State(nullptr, nullptr);
  Instance* second = State(nullptr, nullptr);
  Fsm* fsm = Machine({first, second});
  EXPECT_EQ(fsm->AddState(first, "again"), 0U);
  EXPECT_EQ(first->GetFsm(), fsm);
  EXPECT_EQ(fsm->GetState("s1"), second);
  EXPECT_STREQ(fsm->StateName(first), "s0");
  EXPECT_EQ(fsm->Clock(), top->GetNet("clk"));
  first->SetName("renamed");
  EXPECT_EQ(first->GetFsm(), fsm);
  delete first;
  EXPECT_EQ(fsm->NumStates(), 1U);
  EXPECT_EQ(fsm->GetStateAt(0), second);
  EXPECT_DEATH(fsm->AddState(top->Inv(nullptr, 0)->Driver(), "x"), "");
}

TEST_F(StateMachine, ACleanResetSetsOneRegister) {
  Net* rst = UserNet("rst");
  Net* other = UserNet("other");
  Net* gnd = top->Gnd(0);
  auto set = [&](Net* by) { return State(by, top->Gnd(0)); };
  auto cleared = [&](Net* by) { return State(gnd, by); };
  EXPECT_TRUE(Machine({set(rst)})->HasCleanReset());
  EXPECT_TRUE(Machine({set(rst), cleared(rst)})->HasCleanReset());
  EXPECT_TRUE(Machine({cleared(rst), set(rst), cleared(rst)})->HasCleanReset());
  EXPECT_FALSE(Machine({set(rst), cleared(other)})->HasCleanReset());
  EXPECT_FALSE(Machine({set(rst), set(rst), cleared(rst), cleared(rst)})->HasCleanReset());
  EXPECT_FALSE(Machine({cleared(rst)})->HasCleanReset()) << "nothing is set";
  EXPECT_FALSE(Machine({State(rst, other)})->HasCleanReset());
  EXPECT_FALSE(Machine({State(nullptr, rst)})->HasCleanReset());
  Fsm* fsm = Machine({cleared(rst), set(rst)});
  EXPECT_EQ(fsm->ResetState(0), fsm->GetStateAt(1));
  EXPECT_EQ(fsm->Reset(0), rst);
}

TEST_F(StateMachine, PlainRegistersHaveACleanResetUnderOneConditionWithOneValueApart) {
  Net* rst = UserNet("rst");
  Net* other = UserNet("other");
  Net* value = UserNet("value");
  Net* inverse = top->Inv(value, 0);
  auto state = [&](Net* to, Net* by) { return top->Dff(AutoNet(), AutoNet(), to, by, 0)->Driver(); };
  auto one = [&](Net* by) { return state(top->Pwr(0), by); };
  auto zero = [&](Net* by) { return state(top->Gnd(0), by); };
  EXPECT_TRUE(Machine({one(rst)})->HasCleanReset());
  EXPECT_TRUE(Machine({zero(rst), one(rst), zero(rst)})->HasCleanReset());
  EXPECT_TRUE(Machine({state(value, rst), state(inverse, rst)})->HasCleanReset());
  EXPECT_FALSE(Machine({one(rst), zero(other)})->HasCleanReset());
  EXPECT_FALSE(Machine({one(rst), one(rst), zero(rst), zero(rst)})->HasCleanReset());
  EXPECT_FALSE(Machine({state(value, rst), state(other, rst)})->HasCleanReset());
  EXPECT_FALSE(Machine({one(rst), zero(nullptr)})->HasCleanReset());
  EXPECT_FALSE(Machine({one(rst), State(top->Gnd(0), rst), State(rst, rst)})->HasCleanReset())
      << "set and reset at once";
  Fsm* fsm = Machine({zero(rst), one(rst)});
  EXPECT_EQ(fsm->ResetState(0), fsm->GetStateAt(1));
  EXPECT_EQ(fsm->Reset(0), rst);
  EXPECT_EQ(Machine({zero(rst), zero(rst)})->Reset(0), rst) << "the first state's, without a sign";
}

TEST_F(StateMachine, TheResetStateIsLookedForInTheLogicAndInTheEncoding) {
  Net* gnd = top->Gnd(0);
  Net* rst = UserNet("rst");
  Instance* plain = State(gnd, gnd);
  Instance* synchronous = State(gnd, gnd);
  Fsm* fsm = Machine({plain, synchronous});
  EXPECT_EQ(fsm->ResetState(0), plain) << "without any sign the first";
  plain->AddAtt(ATT_STATE_ENCODING, "01");
  synchronous->GetOutput()->AddAtt(ATT_STATE_ENCODING, "00");
  EXPECT_EQ(fsm->ResetState(1), synchronous);
  EXPECT_STREQ(fsm->UserEncoding(synchronous), "00");
  plain->Reconnect(plain->View()->GetInput(), top->Mux(rst, gnd, rst, 0));
  synchronous->Reconnect(synchronous->View()->GetInput(), top->Mux(gnd, top->Pwr(0), rst, 0));
  EXPECT_EQ(fsm->ResetState(0), synchronous);
  EXPECT_EQ(fsm->Reset(0), rst);
}

TEST_F(StateMachine, StatesAreOrderedByPositionDownwards) {
  Instance* states[] = {State(nullptr, nullptr), State(nullptr, nullptr), State(nullptr, nullptr)};
  Fsm* fsm = Machine({states[0], states[1], states[2]});
  const char* positions[] = {"3", "1", "2"};
  for (int i = 0; i < 3; i++) states[i]->GetOutput()->AddAtt(" :state_position", positions[i]);
  fsm->ReorderStates();
  EXPECT_EQ(fsm->GetStateAt(0), states[0]);
  EXPECT_EQ(fsm->GetStateAt(1), states[2]);
  EXPECT_EQ(fsm->GetStateAt(2), states[1]);
  EXPECT_STREQ(fsm->StateName(states[1]), "s1");
}

} // namespace
