// Sharing of operators that exclude one another: the graph, the costs, loops, the logic that steers the inputs.
#include "database/resourcesharing.h"

#include "database/netlist_fixture.h"
#include "database/operators.h"

namespace {

class Sharing : public NetlistTest {
protected:
  void SetUp() override {
    NetlistTest::SetUp();
    for (const char* name : {"a", "b", "c", "d"}) words[name] = Word(name);
    gnd = top->Gnd(0);
  }

  Array* Word(const std::string& name) {
    owned.push_back(std::make_unique<Array>());
    for (int bit = 0; bit < 4; bit++) owned.back()->InsertLast(UserNet((name + std::to_string(bit)).c_str()));
    return owned.back().get();
  }

  Array* AutoWord() {
    owned.push_back(std::make_unique<Array>());
    for (int bit = 0; bit < 4; bit++) owned.back()->InsertLast(AutoNet());
    return owned.back().get();
  }

  Instance* Add(const Array* left, const Array* right, const Array* out, const char* condition, Net* cin = nullptr) {
    top->Adder(cin ? cin : gnd, left, right, out, nullptr, 0);
    Instance* inst = FromWord<Net*>(out->At(0))->Driver();
    Net* control = top->GetNet(condition);
    inst->SetControlNet(control ? control : UserNet(condition));
    return inst;
  }

  unsigned Adders() const {
    unsigned count = 0;
    for (Instance* inst : InstancesOf(top.get())) count += inst->Type() == OPER_ADDER;
    return count;
  }

  void Share() {
    top->AddControlNetBuffers();
    top->ShareResources();
  }

  std::map<std::string, Array*> words;
  std::vector<std::unique_ptr<Array>> owned;
  Net* gnd = nullptr;
};

TEST_F(Sharing, EdgesLeaveWithTheirInstances) {
  Instance* a = Add(words["a"], words["b"], AutoWord(), "s");
  Instance* b = Add(words["a"], words["b"], AutoWord(), "t");
  Instance* c = Add(words["a"], words["b"], AutoWord(), "t");
  top->AddCompatibilityEdge(a, b);
  top->AddCompatibilityEdge(a, c);
  EXPECT_EQ(top->Sharing()->FindEdge(b, a), top->Sharing()->FindEdge(a, b));
  EXPECT_DEATH(top->AddCompatibilityEdge(b, a), "neighbors->Insert");
  EXPECT_DEATH(top->AddCompatibilityEdge(a, gnd->Driver()), "IsOperator");
  delete b;
  EXPECT_EQ(top->Sharing()->NumOfEdges(), 1U);
  EXPECT_EQ(top->Sharing()->Neighbors(a)->Size(), 1U);
  delete a;
  EXPECT_EQ(top->Sharing()->NumOfEdges(), 0U);
}

TEST_F(Sharing, TheCostIsTheSteeringLessWhatGoes) {
  Array* sum = AutoWord();
  Instance* a = Add(words["a"], words["b"], sum, "s");
  Instance* b = Add(words["a"], words["c"], AutoWord(), "t");
  auto* view = dynamic_cast<Operator*>(a->View());
  Array pair;
  pair.InsertLast(a);
  pair.InsertLast(b);
  EXPECT_EQ(view->Area(), 4U);
  EXPECT_EQ(view->MuxCost(&pair, 0UL), 4U) << "the second operand differs";
  EXPECT_EQ(view->MuxCost(&pair, 2UL), 8U);
  EXPECT_EQ(view->MergeCost(&pair), 0);
  top->Mux(b->GetOutputBit(0), a->GetOutputBit(0), top->GetNet("s"), 0);
  EXPECT_EQ(view->SelectorBenefit(&pair), 1U);
  EXPECT_EQ(view->MergeCost(&pair), -1);
}

TEST_F(Sharing, ExclusiveAddersBecomeOne) {
  Array *first = AutoWord(), *second = AutoWord();
  Instance* a = Add(words["a"], words["b"], first, "s");
  Instance* b = Add(words["a"], words["c"], second, "t");
  Net* out = PortNet("o", DIR_OUTPUT);
  Net* choice = top->Mux(b->GetOutputBit(0), a->GetOutputBit(0), top->GetNet("s"), 0);
  top->Inv(choice, 0)->PropagateInto(out, 0);
  top->AddCompatibilityEdge(a, b);
  Share();
  ASSERT_EQ(Adders(), 1U);
  EXPECT_EQ(a->GetInput1Bit(2), words["a"]->At(2));
  const Instance* steering = a->GetInput2Bit(2)->Driver();
  ASSERT_EQ(steering->Type(), PRIM_MUX);
  Net* select = steering->GetControl();
  bool by_s = select == top->GetNet("s");
  EXPECT_TRUE(by_s || select == top->GetNet("t"));
  EXPECT_EQ(steering->GetInput2(), words[by_s ? "b" : "c"]->At(2));
  EXPECT_EQ(steering->GetInput1(), words[by_s ? "c" : "b"]->At(2));
  EXPECT_EQ(out->InvNet()->Driver(), a) << "the choice between equals is gone";
}

TEST_F(Sharing, ThreeAddersAreSteeredByASelector) {
  std::vector<Instance*> adders;
  const char* conditions[] = {"s", "t", "u"};
  const char* operands[] = {"b", "c", "d"};
  for (int i = 0; i < 3; i++) {
    Array operand(*words["b"]);
    operand.Insert(0U, words[operands[i]]->At(0));
    adders.push_back(Add(words["a"], &operand, AutoWord(), conditions[i]));
    PortNet(("o" + std::to_string(i)).c_str(), DIR_OUTPUT);
    adders[i]->GetOutputBit(0)->PropagateInto(top->GetNet(("o" + std::to_string(i)).c_str()), 0);
  }
  for (int i = 0; i < 3; i++)
    for (int j = 0; j < i; j++) top->AddCompatibilityEdge(adders[i], adders[j]);
  services.flags["zelk_dont_prune_merges"] = 1;
  Share();
  EXPECT_EQ(Adders(), 1U);
  for (Instance* inst : InstancesOf(top.get())) {
    if (inst->Type() != OPER_ADDER) continue;
    const Instance* steering = inst->GetInput2Bit(0)->Driver();
    ASSERT_EQ(steering->Type(), OPER_SELECTOR);
    for (unsigned bit = 0; bit < 3; bit++)
      for (int i = 0; i < 3; i++)
        if (steering->GetInput2Bit(bit) == words[operands[i]]->At(0)) {
          EXPECT_EQ(steering->GetInput1Bit(bit), top->GetNet(conditions[i]));
        }
  }
}

TEST_F(Sharing, APairInARowIsNotMerged) {
  Array* sum = AutoWord();
  Instance* a = Add(words["a"], words["b"], sum, "s");
  Instance* b = Add(sum, words["b"], AutoWord(), "t");
  b->GetOutputBit(0)->PropagateInto(PortNet("o", DIR_OUTPUT), 0);
  top->AddCompatibilityEdge(a, b);
  Share();
  EXPECT_EQ(Adders(), 2U);
}

TEST_F(Sharing, AnAdderAndItsSubtractorStayAPair) {
  Array inverse;
  for (Net* bit : ItemsOf<Net*>(words["b"])) inverse.InsertLast(top->Inv(bit, 0));
  Instance* a = Add(words["a"], words["b"], AutoWord(), "s");
  Instance* b = Add(words["a"], &inverse, AutoWord(), "t", top->Pwr(0));
  auto* view = dynamic_cast<Operator*>(a->View());
  EXPECT_TRUE(view->AreAddSubPair(a, b));
  EXPECT_FALSE(view->AreAddSubPair(a, a));
  a->GetOutputBit(0)->PropagateInto(PortNet("o", DIR_OUTPUT), 0);
  b->GetOutputBit(0)->PropagateInto(PortNet("p", DIR_OUTPUT), 0);
  top->AddCompatibilityEdge(a, b);
  Share();
  EXPECT_EQ(Adders(), 2U);
}

TEST_F(Sharing, ControlBuffersComeAndGo) {
  Instance* a = Add(words["a"], words["b"], AutoWord(), "s");
  Instance* b = Add(words["a"], words["c"], AutoWord(), "s");
  unsigned before = top->NumOfInsts();
  top->AddControlNetBuffers();
  EXPECT_EQ(top->NumOfInsts(), before + 1) << "one buffer for one condition";
  EXPECT_EQ(a->ControlNet(), b->ControlNet());
  EXPECT_EQ(a->ControlNet()->BufNet(), top->GetNet("s"));
  top->RemoveControlNetBuffers();
  EXPECT_EQ(top->NumOfInsts(), before);
  EXPECT_EQ(a->ControlNet(), top->GetNet("s"));
}

} // namespace
