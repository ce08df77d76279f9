#include "database/operators.h"

#include <memory>

#include <gtest/gtest.h>

#include "database/cell.h"
#include "database/library.h"
#include "database/views.h"
#include "support/netlist_evaluator.h"

namespace {
struct Operators : testing::Test {
  Netlist netlist{"top"};
  NetlistEvaluator evaluator;
  ArrayOf<Net> a;
  ArrayOf<Net> b;
  ArrayOf<Net> o;

  void Make(unsigned a_size, unsigned b_size, unsigned o_size) {
    make_nets(netlist, a, a_size);
    make_nets(netlist, b, b_size);
    make_nets(netlist, o, o_size);
  }
  static std::vector<Net*> Copy(const ArrayOf<Net>& nets) {
    std::vector<Net*> copy;
    for (Net* net : nets) copy.push_back(net);
    return copy;
  }
  static uint64_t Extended(uint64_t value, unsigned width) {
    return width < 64 && value >> (width - 1) & 1 ? value | ~0ULL << width : value;
  }
  Instance* OnlyInstance(prim_type_enum type) {
    Instance* found = nullptr;
    for (Instance* inst : InstancesOf(&netlist)) {
      if (inst->Type() != type) continue;
      EXPECT_EQ(found, nullptr);
      found = inst;
    }
    return found;
  }
  unsigned Count(prim_type_enum type) {
    unsigned count = 0;
    for (Instance* inst : InstancesOf(&netlist)) count += inst->Type() == type;
    return count;
  }
  uint64_t Evaluate(uint64_t left, uint64_t right, const Array& outputs) {
    evaluator.Clear();
    evaluator.Set(a, left);
    evaluator.Set(b, right);
    return evaluator.Value(outputs);
  }
};

std::string port_names(const Netlist* view) {
  std::string names;
  for (Port* port : PortsOf(view)) names += std::string(port->Name()) + " ";
  return names;
}
} // namespace

TEST_F(Operators, OneViewServesAllInstancesOfAKindAndSize) {
  Make(3, 4, 4);
  netlist.Adder(nullptr, &a, &b, &o, nullptr, 0);
  netlist.Adder(nullptr, &a, &b, nullptr, nullptr, 0);
  Instance* first = InstancesOf(&netlist).begin().operator*();
  Netlist* view = first->View();
  EXPECT_EQ(Count(OPER_ADDER), 2U);
  for (Instance* inst : InstancesOf(&netlist)) EXPECT_EQ(inst->View(), view);
  EXPECT_STREQ(view->Owner()->Name(), " Add_3u_4u");
  EXPECT_STREQ(view->Name(), "INTERFACE");
  EXPECT_EQ(view->Owner()->Owner(), Library::Operators());
  EXPECT_EQ(std::string(first->Name()).substr(0, 5), " Add_");
  EXPECT_EQ(port_names(view), "cin a[2] a[1] a[0] b[3] b[2] b[1] b[0] o[3] o[2] o[1] o[0] cout ");
  EXPECT_EQ(first->GetInput1Bit(0), a.At(0));
  EXPECT_EQ(first->GetOutputBit(3), o.At(3));
}

TEST_F(Operators, NamesTellSizesAndSigns) {
  Make(2, 2, 2);
  Net* bit = nullptr;
  Net* cin = a.At(0);
  netlist.Multiplier(1, &a, &b, nullptr, 0);
  netlist.Divider(0, &a, &b, nullptr, 0);
  netlist.Modulo(1, &a, &b, nullptr, 0);
  netlist.ShiftLeft(cin, &a, &b, nullptr, 0);
  netlist.RotateRight(&a, &b, nullptr, 0);
  netlist.ReduceXnor(&a, &bit, 0);
  netlist.Selector(&a, &b, &bit, 0);
  netlist.Decoder(&a, &o, 0);
  netlist.Lut(&a, &bit, 6, 0);
  for (const char* name : {" Mult_2s_2s", " Div_2u_2u", " Mod_2s_2s", " ShiftLeft_2u_2u", " RotateRight_2u_2u",
                           " WideXnor_2", " Select_2", " Decoder_2", " Lut2"})
    EXPECT_NE(Library::Operators()->GetCell(name, 1), nullptr) << name;
  EXPECT_EQ(OnlyInstance(OPER_LUT)->LutFunction(), 6U);
  EXPECT_TRUE(OnlyInstance(OPER_MULTIPLIER)->IsSigned());
  EXPECT_EQ(port_names(OnlyInstance(OPER_SHIFT_LEFT)->View()), "cin a[1] a[0] amount[1] amount[0] o[1] o[0] ");
  EXPECT_EQ(port_names(OnlyInstance(OPER_SELECTOR)->View()), "sel[1] sel[0] data[1] data[0] o ");
}

TEST_F(Operators, InstancesEnterTheOperatorSet) {
  Make(2, 2, 2);
  Map noted;
  OperatorSetScope scope(&netlist, &noted);
  netlist.Adder(nullptr, &a, &b, &o, nullptr, 0);
  netlist.Adder(nullptr, &b, &a, nullptr, nullptr, 0);
  EXPECT_EQ(noted.Size(), 2U);
}

TEST_F(Operators, MisfitsFailTheirAssertions) {
  Make(2, 3, 2);
  Net* bit = nullptr;
  EXPECT_DEATH(netlist.Equal(&a, &b, &bit, 0), "_lsize == _rsize");
  EXPECT_DEATH(netlist.ShiftLeft(nullptr, &a, &b, &o, 0), "carry_in && left && right");
  EXPECT_DEATH(netlist.LessThan(nullptr, &a, &a, &bit, 0), "left && right && carry_in");
  EXPECT_DEATH(netlist.PrioSelector(bit, &a, &b, &bit, 0), "Size");
}

// Expansion into gates, against arithmetic.

TEST_F(Operators, TreesSplitInTheMiddleRoundingDown) {
  Make(3, 0, 0);
  std::vector<Net*> nets = Copy(a);
  Net* root = Operator::BuildBinaryTree(&netlist, nets.data(), 3, PRIM_OR);
  EXPECT_EQ(root->Driver()->GetInput1(), a.At(0));
  EXPECT_EQ(root->Driver()->GetInput2()->Driver()->GetInput1(), a.At(1));
  EXPECT_EQ(Operator::BuildBinaryTree(&netlist, nets.data(), 1, PRIM_OR), a.At(0));
  EXPECT_EQ(Operator::BuildBinaryTree(&netlist, nets.data(), 0, PRIM_OR), nullptr);
}

TEST_F(Operators, MultipliersExpandToProductsOfAllSizes) {
  for (unsigned is_signed : {0U, 1U})
    for (unsigned n = 1; n <= 4; n++)
      for (unsigned m = 1; m <= 4; m++) {
        Netlist local("local");
        ArrayOf<Net> left;
        ArrayOf<Net> right;
        make_nets(local, left, n);
        make_nets(local, right, m);
        std::vector<Net*> x = Copy(left);
        std::vector<Net*> y = Copy(right);
        std::vector<Net*> product(n + m);
        Operator::BuildMultiplier(&local, x.data(), n, y.data(), m, product.data(), n + m, is_signed, local.Gnd(0));
        ArrayOf<Net> outputs;
        for (Net* net : product) outputs.InsertLast(net);
        for (uint64_t i = 0; i < 1ULL << n; i++)
          for (uint64_t j = 0; j < 1ULL << m; j++) {
            NetlistEvaluator values;
            values.Set(left, i);
            values.Set(right, j);
            uint64_t expected = is_signed ? Extended(i, n) * Extended(j, m) : i * j;
            ASSERT_EQ(values.Value(outputs), expected & ((1ULL << (n + m)) - 1))
                << n << "x" << m << (is_signed ? " signed " : " unsigned ") << i << "*" << j;
          }
      }
}

TEST_F(Operators, ComparisonsAndAddersExpandToTheirMeaning) {
  Make(3, 3, 3);
  Net* zero = netlist.Gnd(0);
  Net* one = netlist.Pwr(0);
  ArrayOf<Net> results;
  for (unsigned is_signed : {0U, 1U})
    for (Net* carry : {zero, one}) {
      std::vector<Net*> x = Copy(a);
      std::vector<Net*> y = Copy(b);
      results.InsertLast(Operator::BuildSmallerThan(&netlist, x.data(), y.data(), 3, is_signed, carry));
    }
  std::vector<Net*> x = Copy(a);
  std::vector<Net*> y = Copy(b);
  std::vector<Net*> sum(3);
  results.InsertLast(Operator::BuildRippleAdder(&netlist, x.data(), y.data(), sum.data(), 3, one));
  for (Net* net : sum) results.InsertLast(net);
  results.InsertLast(Operator::BuildEqual(&netlist, x.data(), y.data(), 3));
  for (uint64_t i = 0; i < 8; i++)
    for (uint64_t j = 0; j < 8; j++) {
      auto si = static_cast<int64_t>(Extended(i, 3));
      auto sj = static_cast<int64_t>(Extended(j, 3));
      uint64_t total = i + j + 1;
      uint64_t expected = (i < j) | (i <= j) << 1 | (si < sj) << 2 | (si <= sj) << 3 | (total >> 3) << 4 |
                          (total & 7) << 5 | (i == j ? 1ULL : 0ULL) << 8;
      ASSERT_EQ(Evaluate(i, j, results), expected) << i << "," << j;
    }
}

TEST_F(Operators, ShiftsAndRotatesExpandWithAmountsBeyondTheWidth) {
  Make(5, 4, 0);
  std::vector<Net*> amount = Copy(b);
  std::vector<Net*> shifted = Copy(a);
  std::vector<Net*> rotated = Copy(a);
  Operator::BuildShiftRight(&netlist, shifted.data(), 5, amount.data(), 4, netlist.Pwr(0));
  Operator::BuildRotateRight(&netlist, rotated.data(), 5, amount.data(), 4);
  ArrayOf<Net> outputs;
  for (Net* net : shifted) outputs.InsertLast(net);
  for (Net* net : rotated) outputs.InsertLast(net);
  for (uint64_t i = 0; i < 32; i++)
    for (uint64_t j = 0; j < 16; j++) {
      uint64_t shift = (i | ~0ULL << 5) >> j & 31;
      uint64_t rotate = (i >> j % 5 | i << (5 - j % 5)) & 31;
      ASSERT_EQ(Evaluate(i, j, outputs), shift | rotate << 5) << i << ">>" << j;
    }
}

TEST_F(Operators, SelectionsExpandToTheChosenBit) {
  Make(4, 2, 0);
  std::vector<Net*> data = Copy(a);
  std::vector<Net*> sel = Copy(b);
  std::vector<Net*> lines(4);
  Operator::BuildDecoder(&netlist, sel.data(), 2, lines.data());
  ArrayOf<Net> outputs;
  outputs.InsertLast(Operator::BuildMuxTree(&netlist, sel.data(), 2, data.data()));
  outputs.InsertLast(Operator::BuildSelector(&netlist, lines.data(), data.data(), 4));
  outputs.InsertLast(Operator::BuildPrioSelector(&netlist, netlist.Pwr(0), sel.data(), data.data(), 2));
  for (uint64_t i = 0; i < 16; i++)
    for (uint64_t j = 0; j < 4; j++) {
      uint64_t chosen = i >> j & 1;
      uint64_t first = j & 2 ? i >> 1 & 1 : j & 1 ? i & 1 : 1; // a higher index has priority
      ASSERT_EQ(Evaluate(i, j, outputs), chosen | chosen << 1 | first << 2);
    }
}

// Sums of products.

TEST_F(Operators, CommonInputsOfTermsAreLeftOutOfTheSum) {
  Make(4, 0, 0);
  ArrayOf<Net> terms;
  terms.InsertLast(netlist.And(netlist.And(a.At(0), a.At(1), 0), a.At(2), 0));
  terms.InsertLast(netlist.Buf(netlist.And(a.At(3), a.At(0), 0), 0));
  std::unique_ptr<Set> common(Operator::FindCommonPtermInputs(&terms));
  EXPECT_EQ(common->Size(), 1U);
  EXPECT_TRUE(common->Contains(a.At(0)));
  ArrayOf<Net> sum;
  sum.InsertLast(Operator::BuildSOP(&netlist, &terms, common.get(), 0));
  for (uint64_t i = 0; i < 16; i++) EXPECT_EQ(Evaluate(i, 0, sum), ((i & 6) == 6 || i & 8) ? 1U : 0U);
}

TEST_F(Operators, TreesEndAtNetsThatOthersReadOrUsersKnow) {
  Make(3, 0, 0);
  Net* inner = netlist.And(a.At(0), a.At(1), 0);
  Net* root = netlist.And(inner, a.At(2), 0);
  Array leaves;
  Operator::CollectTreeInputs(root, PRIM_AND, leaves);
  ASSERT_EQ(leaves.Size(), 3U);
  EXPECT_EQ(leaves.At(0), a.At(0));
  EXPECT_EQ(leaves.At(2), a.At(2));
  netlist.Inv(inner, 0);
  leaves.Reset();
  Operator::CollectTreeInputs(root, PRIM_AND, leaves);
  ASSERT_EQ(leaves.Size(), 2U);
  EXPECT_EQ(leaves.At(0), inner);
}

// Optimisation of selections.

TEST_F(Operators, ASelectionOfOneNetDisappears) {
  Make(2, 0, 0);
  ArrayOf<Net> data(2, a.At(0));
  auto* output = new Port("y", DIR_OUTPUT);
  netlist.Add(output);
  Net* y = nullptr;
  netlist.Selector(&a, &data, &y, 0);
  y->Connect(output);
  Instance* selector = y->Driver();
  Net* source = a.At(0);
  evaluator.Set(source, true);
  EXPECT_EQ(static_cast<Operator*>(selector->View())->Optimize(selector), 1U);
  EXPECT_EQ(Count(OPER_SELECTOR), 0U);
  EXPECT_TRUE(output->GetNet() == source || output->GetNet()->BufNet() == source);
}

TEST_F(Operators, GatesWithACommonInputMoveBehindTheSelection) {
  Make(3, 1, 0);
  ArrayOf<Net> data;
  data.InsertLast(netlist.And(a.At(0), a.At(2), 0));
  data.InsertLast(netlist.And(a.At(2), a.At(1), 0));
  ArrayOf<Net> y(1, nullptr);
  Net* output = nullptr;
  netlist.Nto1Mux(&b, &data, &output, 0);
  auto* port = new Port("y", DIR_OUTPUT);
  netlist.Add(port);
  output->Connect(port);
  Instance* mux = output->Driver();
  EXPECT_EQ(static_cast<Operator*>(mux->View())->Optimize(mux), 1U);
  EXPECT_EQ(Count(PRIM_AND), 1U);
  y.Set(0, port->GetNet());
  for (uint64_t i = 0; i < 8; i++)
    for (uint64_t j = 0; j < 2; j++) EXPECT_EQ(Evaluate(i, j, y), (i >> j & 1) & (i >> 2));
  evaluator.Clear();
  Instance* again = mux;
  EXPECT_EQ(static_cast<Operator*>(again->View())->Optimize(again), 0U) << "nets without driver stop it";
}

namespace {
/// Two adders of two bits behind a selection of both bits.
struct SelectedAdders : Operators {
  ArrayOf<Net> first;
  ArrayOf<Net> second;
  ArrayOf<Net> outputs;
  Instance* selector = nullptr;

  void Build(bool with_carry_out) {
    Make(4, 2, 0);
    ArrayOf<Net> low(2);
    ArrayOf<Net> high(2);
    for (unsigned i = 0; i < 2; i++) {
      low.InsertLast(a.At(i));
      high.InsertLast(a.At(2 + i));
    }
    make_nets(netlist, first, 2);
    make_nets(netlist, second, 2);
    Net* carry = nullptr;
    netlist.Adder(nullptr, &low, &b, &first, with_carry_out ? &carry : nullptr, 0);
    netlist.Adder(nullptr, &high, &b, &second, nullptr, 0);
    ArrayOf<Net> sel;
    sel.InsertLast(netlist.Inv(b.At(0), 0));
    sel.InsertLast(b.At(0));
    for (unsigned bit = 0; bit < 2; bit++) {
      ArrayOf<Net> data;
      data.InsertLast(first.At(bit));
      data.InsertLast(second.At(bit));
      Net* output = nullptr;
      netlist.Selector(&sel, &data, &output, 0);
      auto* port = new Port(bit ? "y1" : "y0", DIR_OUTPUT);
      netlist.Add(port);
      output->Connect(port);
      outputs.InsertLast(output);
    }
    selector = outputs.At(0)->Driver();
  }
  unsigned Optimize() { return static_cast<Operator*>(selector->View())->Optimize(selector); }
};
} // namespace

TEST_F(SelectedAdders, AddersThatExcludeOneAnotherBecomeOne) {
  Build(false);
  EXPECT_EQ(Optimize(), 1U);
  EXPECT_EQ(Count(OPER_ADDER), 1U);
  outputs.Reset();
  for (const char* name : {"y0", "y1"}) outputs.InsertLast(netlist.GetPort(name)->GetNet());
  for (uint64_t i = 0; i < 16; i++)
    for (uint64_t j = 0; j < 4; j++) {
      uint64_t chosen = j & 1 ? i >> 2 : i & 3;
      ASSERT_EQ(Evaluate(i, j, outputs), (chosen + j) & 3) << i << "," << j;
    }
}

TEST_F(SelectedAdders, ACarryOutOnOneOfThemKeepsThemApart) {
  Build(true);
  EXPECT_EQ(Optimize(), 0U);
  EXPECT_EQ(Count(OPER_ADDER), 2U);
}

TEST_F(Operators, OperatorsWithEqualInputsMergeAlsoExchanged) {
  Make(2, 2, 2);
  ArrayOf<Net> p;
  make_nets(netlist, p, 2);
  netlist.Adder(nullptr, &a, &b, &o, nullptr, 0);
  netlist.Adder(nullptr, &b, &a, &p, nullptr, 0);
  Instance* first = o.At(0)->Driver();
  Instance* second = p.At(0)->Driver();
  EXPECT_EQ(Operator::Identical(first, second), 0U);
  EXPECT_EQ(first->View()->MergeCommonSubexpression(first, second), 1U);
  EXPECT_EQ(Count(OPER_ADDER), 1U);
}
