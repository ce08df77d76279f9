// The shared primitives, construction, folding by constants, merging of equal instances.
#include "database/primitives.h"

#include "database/netlist_fixture.h"
#include "util/strings.h"

namespace {

class Primitive : public NetlistTest {};

TEST_F(Primitive, NamesOfTypesAndBuffersRead) {
  EXPECT_EQ(Netlist::PrimStringToType("prim_mux"), PRIM_MUX);
  EXPECT_EQ(PRIM_MUX, 13);
  EXPECT_EQ(OPER_LUT, 50);
  EXPECT_EQ(Netlist::PrimStringToType("PRIM_NAUGHT"), PRIM_ANY);
  EXPECT_EQ(Netlist::PrimStringToType(nullptr), PRIM_ANY);
  EXPECT_EQ(Netlist::PrimTypeToString(51), nullptr);
  for (unsigned type = 0; type < PRIM_ANY; type++)
    EXPECT_EQ(Netlist::PrimStringToType(Netlist::PrimTypeToString(type)), type);
  EXPECT_STREQ(Netlist::BufferTypeString(6), "NONE");
  EXPECT_STREQ(Netlist::BufferTypeString(7), "UNKNOWN");
}

TEST_F(Primitive, OneOfEachStandsInTheLibrary) {
  Library* library = Library::Primitives();
  EXPECT_EQ(Library::Primitives(), library);
  unsigned views = 0;
  for (Cell* cell : CellsOf(library)) views += cell->NumOfNetlists();
  EXPECT_EQ(library->NumOfCells(), 28U);
  EXPECT_EQ(views, 28U + 6) << "a buffer of each kind";
  Netlist::CreateAllPrimitives();
  EXPECT_EQ(library->NumOfCells(), 28U);
  for (unsigned type = PRIM_PWR; type <= PRIM_INFER_POINT; type++) {
    Prim* prim = Prim::Static(static_cast<prim_type_enum>(type));
    ASSERT_TRUE(prim);
    EXPECT_EQ(prim->Type(), type);
    EXPECT_TRUE(prim->IsPrimitive());
    EXPECT_STREQ(prim->Name(), prim->Owner()->Name());
    EXPECT_EQ(NetlistChecker(prim).Report(), "");
  }
  EXPECT_EQ(Prim::Static(PRIM_BUF)->BufferType(), LOGICAL);
  EXPECT_EQ(Prim::Static(PRIM_NONE), nullptr);
  EXPECT_EQ(Prim::Static(OPER_ADDER), nullptr);
  EXPECT_STREQ(Prim::Static(PRIM_TRI)->Name(), "KESTRIN_TRI");
  Database::FreeStaticMemory();
  EXPECT_TRUE(Prim::Static(PRIM_AND)) << "what was freed is made again";
}

TEST_F(Primitive, PortsStandInTheirOrderWithTheirRoles) {
  auto ports = [](prim_type_enum type) {
    std::string text;
    for (Port* port : PortsOf(Prim::Static(type))) {
      EXPECT_EQ(port->Index(), Prim::Static(type)->IndexOf(port));
      text += std::string(text.empty() ? "" : " ") +
              (port->IsInput()   ? ""
               : port->IsInout() ? "="
                                 : ">") +
              port->Name();
    }
    return text;
  };
  EXPECT_EQ(ports(PRIM_MUX), "a0 a1 c >o");
  EXPECT_EQ(ports(PRIM_FADD), "cin a b >o >cout");
  EXPECT_EQ(ports(PRIM_DLATCH), "d gate async_val async_cond >q");
  EXPECT_EQ(ports(PRIM_DFFRS), "d clk s r >q az aload adata");
  EXPECT_EQ(ports(PRIM_CMOS), "d nc pc >o");
  EXPECT_EQ(ports(PRIM_TRAN), "=inout1 =inout2 control");
  EXPECT_EQ(ports(PRIM_CLOCK), "i en >clk");
  EXPECT_EQ(ports(PRIM_PSL_ASSERTION), "condition");
  Prim* dffrs = Prim::Static(PRIM_DFFRS);
  EXPECT_STREQ(dffrs->GetALoad()->Name(), "aload");
  EXPECT_STREQ(dffrs->GetOutput()->Name(), "q");
  EXPECT_EQ(dffrs->GetControl(), nullptr);
  Prim* point = Prim::Static(PRIM_INFER_POINT);
  EXPECT_EQ(point->GetInput(), point->GetInput1());
  EXPECT_STREQ(point->GetInput2()->Name(), "hold_net");
  EXPECT_TRUE(Prim::Static(PRIM_FADD)->IsCombinational());
  EXPECT_FALSE(Prim::Static(PRIM_TRI)->IsCombinational());
  EXPECT_TRUE(Prim::Static(PRIM_PSL_ASSERTION)->IsAssertion());
}

TEST_F(Primitive, BuffersAreOfAKindAndChangeIt) {
  Net* net = top->UserNetBuf(UserNet("a"), 0, "b");
  Instance* buffer = net->Driver();
  EXPECT_STREQ(buffer->Name(), "b");
  EXPECT_EQ(buffer->BufferType(), USER_NET);
  buffer->ChangeBufferType(KEEP);
  EXPECT_EQ(buffer->BufferType(), KEEP);
  EXPECT_EQ(buffer->GetOutput(), net);
  EXPECT_EQ(PrimBuf::Static(USER_NET)->NumOfRefs(), 0U);
  EXPECT_DEATH(top->Inv(net, 0)->Driver()->ChangeBufferType(KEEP), "Type\\(\\) == PRIM_BUF");
  EXPECT_DEATH(top->ConstBuf(net, 0), "!i \\|\\| i->IsConstant\\(\\)");
  EXPECT_EQ(top->ConstBuf(nullptr, 0)->Driver()->BufferType(), CONSTANT);
  static std::string reported;
  auto former = kestrin_set_report_handler([](const char* text, const char*, int) { reported = text; });
  EXPECT_EQ(PrimBuf::Static(7), nullptr);
  kestrin_set_report_handler(former);
  EXPECT_EQ(reported, "Unknown buffer type!");
}

TEST_F(Primitive, ReverseFormsDriveTheNetThatTheyTake) {
  Net* o = UserNet("o");
  Net* i = top->ReverseUserNetBuf(o, 0);
  EXPECT_EQ(o->BufNet(), i);
  Net* en = UserNet("en");
  Net* t = top->ReverseTristate(UserNet("t"), en, 0);
  Instance* tri = kestrin_get_fanout(t, PRIM_TRI, GET_FANOUT_ONLY);
  ASSERT_TRUE(tri);
  EXPECT_EQ(tri->GetControl(), en);
}

TEST_F(Primitive, EachBuilderConnectsItsRoles) {
  Net* n[6];
  for (int i = 0; i < 6; i++) n[i] = UserNet(("n" + std::to_string(i)).c_str());
  Instance* dffrs = top->Dffrs(n[0], n[1], n[2], n[3], 0x100005, "q", n[4], n[5], n[0])->Driver();
  EXPECT_STREQ(dffrs->Name(), "q");
  EXPECT_EQ(dffrs->Linefile(), 0x100005UL);
  Net* roles[] = {dffrs->GetInput(), dffrs->GetClock(), dffrs->GetSet(),  dffrs->GetReset(),
                  dffrs->GetZ(),     dffrs->GetALoad(), dffrs->GetAData()};
  EXPECT_THAT(roles, testing::ElementsAre(n[0], n[1], n[2], n[3], n[4], n[5], n[0]));
  Instance* latch = top->Dlatch(n[0], n[1], n[2], n[3], 0)->Driver();
  EXPECT_EQ(latch->GetAsyncVal(), n[2]);
  EXPECT_EQ(latch->GetAsyncCond(), n[3]);
  Net* carry = n[0];
  Net* sum = top->Fadd(n[0], n[1], n[2], &carry, 0);
  EXPECT_NE(carry, n[0]) << "the carry is always a net of its own";
  EXPECT_EQ(sum->Driver(), carry->Driver());
  EXPECT_EQ(sum->Driver()->GetCin(), n[2]);
  Instance* first = top->InferPoint(n[0], n[1], 0)->Driver();
  EXPECT_LT(first->Sequence(), top->InferPoint(n[0], n[1], 0)->Driver()->Sequence());
  EXPECT_EQ(top->Clock(n[0], nullptr, 0)->Driver()->GetControl(), nullptr);
  EXPECT_EQ(top->PslAssertion(n[0], 0)->GetInput(), n[0]);
}

class Folding : public NetlistTest {
protected:
  void SetUp() override {
    NetlistTest::SetUp();
    a = UserNet("a");
    b = UserNet("b");
    c = UserNet("c");
    gnd = top->Gnd(0);
    pwr = top->Pwr(0);
    x = top->X(0);
  }
  void TearDown() override { NetlistTest::TearDown(); }

  /// What an instance becomes whose output a load reads: the net on the load.
  Net* Propagated(Net* net) {
    Instance* load = top->Inv(net, 0)->Driver();
    changed = net->Driver()->Propagate() != 0;
    EXPECT_EQ(NetlistChecker(top.get()).Report(), "");
    return load->GetInput();
  }

  Net *a, *b, *c, *gnd, *pwr, *x;
  bool changed = false;
};

TEST_F(Folding, BuildsNothingWhereAConstantDecides) {
  EXPECT_EQ(top->OptimizedAnd(gnd, a, 0), gnd);
  EXPECT_EQ(top->OptimizedAnd(x, gnd, 0), gnd);
  EXPECT_TRUE(top->OptimizedAnd(x, a, 0)->IsGnd());
  EXPECT_TRUE(top->OptimizedAnd(pwr, nullptr, 0)->IsGnd());
  EXPECT_EQ(top->OptimizedAnd(pwr, a, 0), a);
  EXPECT_EQ(top->OptimizedAnd(a, pwr, 0), a);
  EXPECT_EQ(top->OptimizedAnd(a, a, 0), a);
  EXPECT_EQ(top->OptimizedAnd(a, b, 0)->DriverType(), PRIM_AND);
  Net* other_pwr = top->Pwr(0);
  EXPECT_EQ(top->OptimizedOr(pwr, other_pwr, 0), other_pwr);
  EXPECT_EQ(top->OptimizedOr(pwr, x, 0), pwr);
  EXPECT_TRUE(top->OptimizedOr(a, x, 0)->IsPwr());
  EXPECT_EQ(top->OptimizedOr(gnd, a, 0), a);
  EXPECT_EQ(top->OptimizedOr(a, b, 0)->DriverType(), PRIM_OR);
  EXPECT_TRUE(top->OptimizedInv(gnd, 0)->IsPwr());
  EXPECT_TRUE(top->OptimizedInv(pwr, 0)->IsGnd());
  EXPECT_EQ(top->OptimizedInv(x, 0), x);
  EXPECT_TRUE(top->OptimizedInv(nullptr, 0)->IsX());
  EXPECT_EQ(top->OptimizedInv(a, 0)->InvNet(), a);
  EXPECT_EQ(top->OptimizedMux(a, b, gnd, 0), a);
  EXPECT_EQ(top->OptimizedMux(a, b, pwr, 0), b);
  EXPECT_EQ(top->OptimizedMux(a, a, c, 0), a);
  EXPECT_EQ(top->OptimizedMux(x, b, c, 0), b);
  EXPECT_EQ(top->OptimizedMux(a, nullptr, c, 0), a);
  EXPECT_EQ(top->OptimizedMux(a, b, x, 0), b);
  EXPECT_EQ(top->OptimizedMux(a, b, nullptr, 0), b);
  EXPECT_TRUE(top->OptimizedMux(nullptr, nullptr, nullptr, 0)->IsX());
  EXPECT_EQ(top->OptimizedMux(a, b, c, 0)->DriverType(), PRIM_MUX);
}

TEST_F(Folding, GatesFoldByTheirInputs) {
  struct {
    Net* (Netlist::*build)(Net*, Net*, unsigned long);
    const char* with_gnd; // what the gate of a and the constant becomes: a net's name, a constant, or "!" and a name
    const char* with_pwr;
    const char* with_itself;
  } gates[] = {
      {&Netlist::And, "0", "a", "a"},   {&Netlist::Nand, "1", "!a", "!a"}, {&Netlist::Or, "a", "1", "a"},
      {&Netlist::Nor, "!a", "0", "!a"}, {&Netlist::Xor, "a", "!a", "0"},   {&Netlist::Xnor, "!a", "a", "1"},
  };
  auto text = [](const Net* net) -> std::string {
    if (net->IsGnd()) return "0";
    if (net->IsPwr()) return "1";
    if (net->InvNet()) return std::string("!") + net->InvNet()->Name();
    return net->Name() ? net->Name() : "?";
  };
  for (const auto& gate : gates) {
    for (bool swapped : {false, true}) {
      auto folded = [&](Net* other) {
        return text(Propagated((top.get()->*gate.build)(swapped ? other : a, swapped ? a : other, 0)));
      };
      EXPECT_EQ(folded(top->Gnd(0)), gate.with_gnd);
      EXPECT_EQ(folded(top->Pwr(0)), gate.with_pwr);
      EXPECT_EQ(folded(a), gate.with_itself);
      EXPECT_EQ(folded(b), "?");
      EXPECT_FALSE(changed);
    }
  }
  EXPECT_EQ(text(Propagated(top->Inv(top->Gnd(0), 0))), "1");
  EXPECT_TRUE(Propagated(top->Inv(top->Z(0), 0))->IsX());
}

TEST_F(Folding, MultiplexersFold) {
  EXPECT_EQ(Propagated(top->Mux(a, b, pwr, 0)), b);
  EXPECT_EQ(Propagated(top->Mux(a, b, gnd, 0)), a);
  EXPECT_EQ(Propagated(top->Mux(a, a, c, 0)), a);
  EXPECT_EQ(Propagated(top->Mux(gnd, pwr, c, 0)), c);
  EXPECT_EQ(Propagated(top->Mux(pwr, gnd, c, 0))->InvNet(), c);
  EXPECT_EQ(Propagated(top->Mux(pwr, gnd, top->Inv(c, 0), 0)), c);
  Net* shared = top->Inv(c, 0);
  top->Buf(shared, 0);
  Propagated(top->Mux(a, b, shared, 0));
  EXPECT_FALSE(changed) << "an inverter with other loads stays";
  Net* mux = top->Mux(a, b, top->Inv(c, 0), 0);
  EXPECT_EQ(Propagated(mux), mux);
  EXPECT_TRUE(changed);
  EXPECT_EQ(mux->Driver()->GetControl(), c);
  EXPECT_EQ(mux->Driver()->GetInput1(), b);
  EXPECT_EQ(mux->Driver()->GetInput2(), a);
}

TEST_F(Folding, NetsThatUsersSeeStay) {
  Net* located = top->And(a, gnd, 0);
  located->SetLinefile(0x100001);
  Net* attributed = top->And(a, gnd, 0);
  attributed->AddAtt(" :mark", "");
  for (Net* net : {located, attributed}) EXPECT_EQ(Propagated(net), net);
  Net* loop = top->Or(a, gnd, 0);
  loop->Driver()->Reconnect(loop->Driver()->View()->GetInput1(), loop);
  EXPECT_EQ(Propagated(loop), loop) << "a net is not put in place of itself";
}

TEST_F(Folding, AFullAdderWithAConstantBecomesGates) {
  Net* carry = nullptr;
  Net* sum = top->Fadd(a, b, gnd, &carry, 0);
  Net* carry_reader = top->Inv(carry, 0);
  EXPECT_EQ(Propagated(sum)->DriverType(), PRIM_XOR);
  EXPECT_EQ(carry_reader->InvNet()->DriverType(), PRIM_AND);
  sum = top->Fadd(a, pwr, c, &carry, 0);
  carry_reader = top->Inv(carry, 0);
  EXPECT_EQ(Propagated(sum)->DriverType(), PRIM_XNOR);
  EXPECT_EQ(carry_reader->InvNet()->DriverType(), PRIM_OR);
  Propagated(top->Fadd(a, b, c, &carry, 0));
  EXPECT_FALSE(changed);
}

TEST_F(Folding, ARegisterThatIsNeverLoadedLosesThePorts) {
  Net* q = top->Dffrs(a, c, gnd, gnd, 0, nullptr, gnd, gnd, x);
  Propagated(q);
  EXPECT_FALSE(changed);
  EXPECT_EQ(q->Driver()->GetALoad(), nullptr);
  EXPECT_EQ(q->Driver()->GetAData(), nullptr);
  EXPECT_EQ(q->Driver()->GetZ(), gnd);
}

class Merging : public Folding {
protected:
  unsigned Merge(Net* first, Net* second) {
    return first->Driver()->View()->MergeCommonSubexpression(first->Driver(), second->Driver());
  }
};

TEST_F(Merging, GatesWithTheSameInputsAreOne) {
  Net* first = top->And(a, b, 0);
  Net* swapped = top->And(b, a, 0);
  Instance* load = top->Inv(swapped, 0)->Driver();
  EXPECT_EQ(Merge(first, top->And(a, c, 0)), 0U);
  EXPECT_EQ(Merge(first, swapped), 1U);
  EXPECT_EQ(load->GetInput()->DriverType(), PRIM_AND);
  EXPECT_EQ(Merge(top->Mux(a, b, c, 0), top->Mux(b, a, c, 0)), 0U) << "a multiplexer's inputs may not be exchanged";
  EXPECT_EQ(Merge(top->Mux(a, b, c, 0), top->Mux(a, b, c, 0)), 1U);
  EXPECT_EQ(Merge(top->Inv(a, 0), top->Inv(a, 0)), 1U);
  EXPECT_EQ(Merge(top->Gnd(0), top->Gnd(0)), 1U);
}

TEST_F(Merging, RegistersCompareTheirSecondariesAndStartingValues) {
  auto reg = [&](Net* d, Net* reset) { return top->Dffrs(d, c, top->Gnd(0), reset, 0); };
  EXPECT_EQ(Merge(reg(a, b), reg(a, top->Buf(b, 0))), 1U);
  EXPECT_EQ(Merge(reg(a, b), reg(b, b)), 0U);
  EXPECT_EQ(Merge(reg(a, b), reg(a, c)), 0U);
  Net* initialised = reg(a, b);
  initialised->Driver()->AddAtt(ATT_INITIAL_VALUE, "1");
  EXPECT_EQ(Merge(reg(a, b), initialised), 0U);
  Net* alone = reg(a, b);
  alone->Driver()->AddAtt(ATT_DONT_MERGE, "1");
  EXPECT_EQ(Merge(alone, reg(a, b)), 0U);
}

TEST_F(Merging, NetsWithOtherDriversStayApart) {
  Net* first = top->Inv(a, 0);
  Net* shared = top->Inv(a, 0);
  Instance* tri = top->Tristate(b, c, 0)->Driver();
  tri->Reconnect(tri->View()->GetOutput(), shared);
  EXPECT_EQ(kestrin_get_fanout(a, PRIM_INV, GET_FANOUT_FIRST)
                ->View()
                ->MergeCommonSubexpression(first->Driver(), kestrin_get_fanout(a, PRIM_INV, GET_FANOUT_FIRST)),
            0U);
}

} // namespace
