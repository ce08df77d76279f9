// Extraction of registers, latches and tristate buffers: each template, each refusal.
#include <gtest/gtest.h>

#include "database/fsm.h"
#include "netlist_bench.h"

namespace {
using Lines = std::vector<std::string>;

class Extraction : public ::testing::Test, public NetlistBench {
protected:
  void Extract() {
    n->ResolveWires();
    n->ExtractDffsLatchesAndTriStates();
  }
  void PolishAll() { n->Polish(); }
  /// The register that drives an output.
  Instance* Register(const std::string& name) {
    Instance* reg = DriverOf(name);
    EXPECT_TRUE(reg && reg->Type() == PRIM_DFFRS);
    return reg;
  }
  MessageLog log;
  Net* c = In("c");
  Net* d = In("d");
  Net* e = In("e");
  Net* r = In("r");
  Net* q = Out("q");
};

TEST_F(Extraction, MuxOnAClockEventIsARegisterWithoutSecondaries) {
  Infer(q, Mux(q, d, Rise(c)));
  Extract();
  Instance* reg = Register("q");
  EXPECT_STREQ(reg->Name(), "q");
  EXPECT_EQ(reg->GetInput(), Get("d"));
  EXPECT_EQ(reg->GetClock(), Get("c"));
  for (Net* pin : {reg->GetSet(), reg->GetReset(), reg->GetZ(), reg->GetALoad()}) EXPECT_TRUE(pin->IsGnd());
  EXPECT_TRUE(reg->GetAData()->IsX());
  EXPECT_EQ(Count(PRIM_INFER_POINT) + Count(PRIM_CLOCK), 0U);
  EXPECT_EQ(log.lines(), Lines());
}

TEST_F(Extraction, EnableOfTheClockHoldsTheData) {
  Infer(q, Mux(q, d, Rise(c, e)));
  Extract();
  Instance* mux = Register("q")->GetInput()->Driver();
  ASSERT_EQ(mux->Type(), PRIM_MUX);
  EXPECT_EQ(mux->GetInput1(), Get("q"));
  EXPECT_EQ(mux->GetInput2(), Get("d"));
  EXPECT_EQ(mux->GetControl(), Get("e"));
}

TEST_F(Extraction, ConstantsOverTheClockAreSetAndResetByPriority) {
  Infer(q, Mux(Mux(Mux(q, d, Rise(c)), Gnd(), r), Pwr(), e));
  Extract();
  Instance* reg = Register("q");
  EXPECT_EQ(reg->GetSet(), Get("e"));
  Instance* reset = reg->GetReset()->Driver();
  ASSERT_EQ(reset->Type(), PRIM_AND);
  EXPECT_EQ(reset->GetInput1(), Get("r"));
  EXPECT_EQ(reset->GetInput2()->InvNet(), Get("e"));
}

TEST_F(Extraction, ActiveLowResetStandsOnTheOtherBranch) {
  Infer(q, Mux(Gnd(), Mux(q, d, Rise(c)), r));
  Extract();
  EXPECT_EQ(Register("q")->GetReset()->InvNet(), Get("r"));
}

TEST_F(Extraction, SignalOverTheClockIsAnAsynchronousLoad) {
  Infer(q, Mux(Mux(q, d, Rise(c)), e, r));
  Extract();
  Instance* reg = Register("q");
  EXPECT_EQ(reg->GetALoad(), Get("r"));
  EXPECT_EQ(reg->GetAData(), Get("e"));
  EXPECT_TRUE(reg->GetSet()->IsGnd() && reg->GetReset()->IsGnd());
}

TEST_F(Extraction, HoldOverTheClockMasksDataAndSecondaries) {
  Infer(q, Mux(Mux(Mux(q, d, Rise(c)), Gnd(), r), q, e));
  Extract();
  Instance* reg = Register("q");
  Instance* hold = reg->GetInput()->Driver();
  ASSERT_EQ(hold->Type(), PRIM_MUX);
  EXPECT_EQ(hold->GetInput2(), Get("q"));
  EXPECT_EQ(hold->GetControl(), Get("e"));
  EXPECT_EQ(reg->GetReset()->DriverType(), PRIM_AND);
}

TEST_F(Extraction, PowerUpValueAndAttributesGoToTheRegister) {
  q->SetPowerUpValue('1');
  q->AddAtt("preserve", "1");
  Infer(q, Mux(q, d, Rise(c)));
  Extract();
  EXPECT_STREQ(Register("q")->GetAttValue(ATT_INITIAL_VALUE), "1");
  EXPECT_TRUE(Register("q")->IsAttOn(ATT_PRESERVE));
  for (const char* mark : {" :registered", " :latched", " :tri-state"}) {
    EXPECT_FALSE(q->GetAtt(mark));
    EXPECT_FALSE(Register("q")->GetAtt(mark));
  }
}

TEST_F(Extraction, RefusalsNameTheSignalAndTheClockEdgeIsReportedToo) {
  for (Net* used : {c, d, e, r}) n->PslAssertion(used, 0); // an input that nothing reads would go after the first round
  using Build = std::function<Net*()>;
  const std::pair<Build, const char*> refusals[] = {
      {[&] { return Mux(d, e, Rise(c)); }, "it does not hold its value outside the clock edge"},
      {[&] { return Mux(Mux(q, d, Rise(c)), e, Fall(c)); },
       "it changes value on both rising and falling edges of the clock"},
      {[&] { return Mux(Mux(q, d, Rise(c)), e, Rise(r)); },
       "its behavior depends on the edges of multiple distinct clocks"},
      {[&] { return Mux(Mux(q, d, Rise(c)), Mux(q, e, Rise(c)), r); }, "its behavior does not match a known template"},
  };
  for (const auto& [build, reason] : refusals) {
    Message::ClearErrorCount();
    log.lines().clear();
    Net* s = Out("s" + std::to_string(line));
    q = s;
    Infer(s, build());
    Extract();
    const Lines lines = log.lines();
    ASSERT_GE(lines.size(), 2U) << reason;
    EXPECT_EQ(lines[0], "can't infer register for " + std::string(s->Name()) + " because " + reason);
    EXPECT_EQ(lines.back(), "couldn't implement registers for assignments on this clock edge");
    EXPECT_EQ(Count(PRIM_CLOCK), 0U);
  }
}

TEST_F(Extraction, OppositeEdgeThatHoldsIsNoObstacle) {
  Infer(q, Mux(Mux(q, d, Rise(c)), q, Fall(c)));
  Extract();
  EXPECT_EQ(Register("q")->GetInput(), Get("d"));
  EXPECT_EQ(log.lines(), Lines());
}

TEST_F(Extraction, FeedbackUnderAConditionIsALatch) {
  Infer(q, Mux(q, d, e));
  Extract();
  Instance* latch = DriverOf("q");
  ASSERT_EQ(latch->Type(), PRIM_DLATCH);
  EXPECT_EQ(latch->GetInput(), Get("d"));
  EXPECT_EQ(latch->GetClock(), Get("e"));
  EXPECT_TRUE(latch->GetAsyncCond()->IsGnd());
  EXPECT_EQ(log.lines(), Lines{"inferred latch q"});
}

TEST_F(Extraction, ConstantsOverALatchAreItsSetAndReset) {
  Infer(q, Mux(Mux(q, d, e), Gnd(), r));
  Extract();
  n->ToSetResetRegisters();
  Instance* latch = DriverOf("q");
  ASSERT_EQ(latch->Type(), PRIM_DLATCHRS);
  EXPECT_EQ(latch->GetReset(), Get("r"));
  EXPECT_TRUE(latch->GetSet()->IsGnd());
}

TEST_F(Extraction, FeedbackThroughASelectionKeepsTheValueOfItsBranch) {
  ArrayOf<Net> select(2);
  select.Insert(e);
  select.Insert(r);
  ArrayOf<Net> data(4);
  for (Net* bit : {d, q, Get("c"), q}) data.Insert(bit);
  Net* selected = nullptr;
  n->Nto1Mux(&select, &data, &selected, At());
  Infer(q, selected);
  Extract();
  Instance* latch = DriverOf("q");
  ASSERT_EQ(latch->Type(), PRIM_DLATCH);
  Instance* enable = latch->GetClock()->Driver();
  ASSERT_EQ(enable->Type(), OPER_NTO1MUX);
  for (unsigned bit = 0; bit < 4; bit++)
    EXPECT_TRUE(bit & 1 ? enable->GetInput2Bit(bit)->IsGnd() : enable->GetInput2Bit(bit)->IsPwr());
}

TEST_F(Extraction, FloatingBranchIsATristateBuffer) {
  Infer(q, Mux(Z(), d, e));
  Extract();
  Instance* tri = DriverOf("q");
  ASSERT_EQ(tri->Type(), PRIM_TRI);
  EXPECT_EQ(tri->GetInput(), Get("d"));
  EXPECT_EQ(tri->GetControl(), Get("e"));
}

TEST_F(Extraction, RegisterThatCanFloatHasARegisterForItsEnable) {
  q->SetPowerUpValue('Z');
  Infer(q, Mux(Mux(q, Mux(Z(), d, e), Rise(c)), Pwr(), r));
  Extract();
  Instance* tri = DriverOf("q");
  ASSERT_EQ(tri->Type(), PRIM_TRI);
  Instance* data = tri->GetInput()->Driver();
  Instance* enable = tri->GetControl()->Driver();
  ASSERT_TRUE(data->Type() == PRIM_DFFRS && enable->Type() == PRIM_DFFRS);
  EXPECT_STREQ(enable->Name(), "q~en");
  EXPECT_EQ(data->GetInput(), Get("d"));
  EXPECT_EQ(enable->GetInput(), Get("e"));
  EXPECT_EQ(enable->GetSet(), Get("r")); // what is set is driven
  EXPECT_STREQ(enable->GetAttValue(ATT_INITIAL_VALUE), "0");
  EXPECT_FALSE(data->GetAtt(ATT_INITIAL_VALUE));
}

TEST_F(Extraction, AsynchronousFloatResetsTheEnable) {
  Infer(q, Mux(Mux(q, d, Rise(c)), Z(), r));
  Extract();
  Instance* tri = DriverOf("q");
  ASSERT_EQ(tri->Type(), PRIM_TRI);
  EXPECT_EQ(tri->GetControl()->Driver()->GetReset(), Get("r"));
  EXPECT_TRUE(tri->GetInput()->Driver()->GetZ()->IsGnd());
}

TEST_F(Extraction, FloatingRegisterKeepsItsOwnValueWhereTheSignalHolds) {
  Infer(q, Mux(q, Mux(q, Mux(Z(), d, e), r), Rise(c)));
  Extract();
  Instance* tri = DriverOf("q");
  ASSERT_EQ(tri->Type(), PRIM_TRI);
  for (Net* state : {tri->GetInput(), tri->GetControl()}) {
    Instance* hold = state->Driver()->GetInput()->Driver();
    ASSERT_EQ(hold->Type(), PRIM_MUX);
    EXPECT_EQ(hold->GetInput1(), state);
    EXPECT_EQ(hold->GetControl(), Get("r"));
  }
}

TEST_F(Extraction, SecondInferPointOfARegisterIsBypassed) {
  Net* w = Out("w");
  Infer(w, And(n->InferPoint(Mux(q, d, e), q, At()), e));
  Infer(q, Mux(q, d, Rise(c)));
  Extract();
  EXPECT_EQ(Register("q")->GetInput(), Get("d"));
  EXPECT_EQ(Count(PRIM_DFFRS), 1U);
  EXPECT_EQ(Count(PRIM_DLATCH), 0U);
}

TEST_F(Extraction, BitsOfAnEnumerationMakeAStateMachine) {
  for (const char* state : {"0", "2", "1"}) {
    Net* bit = Named("m.s" + std::string(state));
    bit->AddAtt(" :fsm", "");
    bit->AddAtt(" :state_position", state);
    bit->AddAtt("fsm_encoding", "\"safe\"");
    Infer(bit, Mux(bit, d, Rise(c)));
  }
  Drive(q, And(Get("m.s0"), Get("m.s1")));
  Extract();
  Fsm* fsm = n->GetFsm("m");
  ASSERT_TRUE(fsm);
  ASSERT_EQ(fsm->NumStates(), 3U);
  for (unsigned pos = 0; pos < 3; pos++) EXPECT_EQ(fsm->StateName(fsm->GetStateAt(pos)), "s" + std::to_string(2 - pos));
  EXPECT_TRUE(fsm->GetAtt(ATT_FSM_ENCODING));
}

TEST_F(Extraction, DeepConesNeedNoStack) {
  Net* cone = q;
  Net* data = d;
  for (int depth = 0; depth < 100000; depth++) data = Mux(data, e, r);
  cone = Mux(q, data, Rise(c));
  Infer(q, cone);
  Net* y = Out("y");
  Net* chain = y;
  for (int depth = 0; depth < 100000; depth++) chain = Mux(chain, d, e);
  Infer(y, chain);
  Extract();
  EXPECT_TRUE(Register("q"));
  EXPECT_EQ(DriverOf("y")->Type(), PRIM_DLATCH);
}

TEST_F(Extraction, LoopsOfSelectionsEnd) {
  Net* loop = Mux(d, e, r);
  Net* closed = Mux(loop, d, e);
  loop->Driver()->Reconnect(loop->Driver()->View()->GetInput1(), closed);
  Infer(q, Mux(q, closed, Rise(c)));
  PolishAll();
  EXPECT_TRUE(Register("q"));
}
} // namespace
