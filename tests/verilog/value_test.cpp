#include "verilog/verivalue.h"

#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/views.h"
#include "support/netlist_evaluator.h"
#include "verilog/scan.h"
#include "verilog/value_model.h"
#include "verilog/vericonstraint.h"
#include "verilog/verielabstate.h"

namespace {
using testing::ElementsAre;
using testing::IsEmpty;

struct Values : testing::Test {
  Netlist netlist{"top"};
  VeriElaborationState state{ELAB_FULL, nullptr, nullptr, &netlist};
  VeriElaborationScope scope{&state};
  MessageLog log;
  NetlistEvaluator evaluator;
  std::mt19937 random{20260101};

  static OwnedValue Literal(const char* text) { return VeriValue::FromLiteral(text); }
  static std::string Bits(const OwnedValue& value) { return value ? value->BinaryString() : "null"; }
  static std::string Text(const OwnedValue& value) { return value ? value->String() : "null"; }
  static OwnedValue Binary(const char* left, veri_oper oper, const char* right) {
    return VeriValue::Binary(oper, Literal(left), Literal(right));
  }

  OwnedValue Nets(unsigned width, bool is_signed = false) {
    ArrayOf<Net> nets;
    make_nets(netlist, nets, width);
    return VeriValue::FromNets(nets, is_signed);
  }
  unsigned Count(prim_type_enum type) {
    unsigned count = 0;
    for (Instance* inst : InstancesOf(&netlist)) count += inst->Type() == type;
    return count;
  }
  void Drive(const VeriValue& value, uint64_t number) {
    for (unsigned bit = 0; bit < value.Size(); bit++) evaluator.Set(value.GetBit(bit), number >> bit & 1);
  }
  uint64_t Read(const VeriValue& value) {
    uint64_t number = 0;
    for (unsigned bit = 0; bit < value.Size() && bit < 64; bit++)
      number |= static_cast<uint64_t>(evaluator.Value(value.GetBit(bit))) << bit;
    return number;
  }

  ModelValue RandomModel(size_t max_width, int unknown_percent) {
    ModelValue value;
    size_t width = 1 + random() % max_width;
    for (size_t i = 0; i < width; i++)
      value.digits.push_back(static_cast<int>(random() % 100) < unknown_percent ? "xz"[random() % 2]
                                                                                : "01"[random() % 2]);
    value.is_signed = random() % 2;
    return value;
  }
  static OwnedValue FromModel(const ModelValue& model) {
    return Literal((std::to_string(model.width()) + (model.is_signed ? "'sb" : "'b") + model.text()).c_str());
  }
};

constexpr veri_oper all_binary[] = {VERI_OPER_PLUS,
                                    VERI_OPER_MINUS,
                                    VERI_OPER_MULTIPLY,
                                    VERI_OPER_DIVIDE,
                                    VERI_OPER_MODULO,
                                    VERI_OPER_LT,
                                    VERI_OPER_GT,
                                    VERI_OPER_LE,
                                    VERI_OPER_GE,
                                    VERI_OPER_EQ,
                                    VERI_OPER_NE,
                                    VERI_OPER_CASE_EQ,
                                    VERI_OPER_CASE_NE,
                                    VERI_OPER_WILD_EQ,
                                    VERI_OPER_WILD_NE,
                                    VERI_OPER_LOG_AND,
                                    VERI_OPER_LOG_OR,
                                    VERI_OPER_AND,
                                    VERI_OPER_OR,
                                    VERI_OPER_XOR,
                                    VERI_OPER_XNOR,
                                    VERI_OPER_SHIFT_LEFT,
                                    VERI_OPER_SHIFT_RIGHT,
                                    VERI_OPER_ARITH_SHIFT_LEFT,
                                    VERI_OPER_ARITH_SHIFT_RIGHT};
constexpr veri_oper all_unary[] = {VERI_OPER_LOG_NOT,    VERI_OPER_NOT,         VERI_OPER_UNARY_MINUS,
                                   VERI_OPER_REDUCE_AND, VERI_OPER_REDUCE_NAND, VERI_OPER_REDUCE_OR,
                                   VERI_OPER_REDUCE_NOR, VERI_OPER_REDUCE_XOR,  VERI_OPER_REDUCE_XNOR};
} // namespace

// Literals.

TEST_F(Values, LiteralsReadAsTheStandardSays) {
  struct Case {
    const char* text;
    const char* value;
  };
  for (const Case& c : {Case{"12", "12"},
                        {"2147483647", "2147483647"},
                        {"4294967295", "33'sb011111111111111111111111111111111"},
                        {"8'hxZ", "8'bxxxxzzzz"},
                        {"12'hx", "12'bxxxxxxxxxxxx"},
                        {"6'o7z", "6'b111zzz"},
                        {"4'b1?0", "4'b01z0"},
                        {"4'sd 9", "4'sb1001"},
                        {"3'd13", "3'b101"},
                        {"5'dX", "5'bxxxxx"},
                        {"8'b1010_0101", "8'b10100101"},
                        {"'1", "1'b1"},
                        {"'b1", "32'b00000000000000000000000000000001"},
                        {"'hz", "32'bzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzz"},
                        {"36'd68719476735", "36'b111111111111111111111111111111111111"},
                        {"1.5e3", "1500"},
                        {"\"ab\"", "ab"},
                        {"\"\\101\\\"\"", "A\""},
                        {"8'q1", "null"},
                        {"0'b1", "null"},
                        {"4'b12", "null"},
                        {"abc", "null"},
                        {"", "null"}})
    EXPECT_EQ(Text(Literal(c.text)), c.value) << c.text;
  EXPECT_EQ(Bits(Literal("\"a\"")), "01100001");
  EXPECT_EQ(Literal("\"abc\"")->Size(), 24U);
  EXPECT_EQ(Literal("\"\"")->Size(), 8U);
  EXPECT_TRUE(Literal("1.0")->IsReal());
  EXPECT_TRUE(Literal("7")->IsSigned());
  EXPECT_FALSE(Literal("8'd7")->IsSigned());
}

TEST_F(Values, VectorsOfAbsurdWidthsAreRefusedWithAMessage) {
  EXPECT_EQ(Literal("2147483648'h0"), nullptr);
  EXPECT_EQ(Literal("99999999999999999999'b1"), nullptr);
  EXPECT_EQ(VeriValue::Repeat(Literal("2000000000"), Literal("32'd1")), nullptr);
  EXPECT_EQ(VeriValue::Repeat(Literal("99999999999999999999999999"), Literal("1'b1")), nullptr);
  EXPECT_EQ(VeriValue::Adjust(Literal("1"), 0x7FFFFFFF), nullptr);
  std::vector<OwnedValue> halves;
  for (int i = 0; i < 2; i++) halves.push_back(VeriValue::Digits(veri_max_width / 2 + 1, VERI_DIGIT_1));
  EXPECT_EQ(VeriValue::Concat(std::move(halves)), nullptr);
  EXPECT_EQ(VeriUniformArrayConstraint::Vector(0x7FFFFFFF, 0)->CreateValue("v", 1, nullptr), nullptr);
  VeriUniformArrayConstraint memory(VeriRangeConstraint(0, 0x7FFFFFFE), VeriUniformArrayConstraint::Vector(63, 0),
                                    false, false);
  EXPECT_EQ(memory.CreateValue("m", 1, nullptr), nullptr);
  EXPECT_EQ(memory.CreateInitialValue(nullptr), nullptr);
  for (const std::string& message : log.Take()) EXPECT_THAT(message, testing::HasSubstr("bits are not supported"));
  EXPECT_LE(netlist.NumOfNets(), 8U) << "the constant nets only";
}

// Four-state arithmetic against the model.

TEST_F(Values, ConstantsComputeLikeTheModelOnAllPairsOfTwoDigits) {
  const char digits[] = "01xz";
  for (int signs = 0; signs < 4; signs++)
    for (int i = 0; i < 256; i++) {
      ModelValue a{{digits[i & 3], digits[i >> 2 & 3]}, (signs & 1) != 0};
      ModelValue b{{digits[i >> 4 & 3], digits[i >> 6]}, (signs & 2) != 0};
      for (veri_oper oper : all_binary)
        ASSERT_EQ(Bits(VeriValue::Binary(oper, FromModel(a), FromModel(b))), Model::binary(oper, a, b).text())
            << a.text() << veri_oper_text(oper) << b.text() << " signs " << signs;
      for (veri_oper oper : all_unary)
        ASSERT_EQ(Bits(VeriValue::Unary(oper, FromModel(a))), Model::unary(oper, a).text())
            << veri_oper_text(oper) << a.text();
    }
}

TEST_F(Values, ConstantsComputeLikeTheModelOnRandomWidths) {
  for (veri_digit digit : {VERI_DIGIT_0, VERI_DIGIT_1, VERI_DIGIT_X, VERI_DIGIT_Z}) veri_digit_net(digit);
  unsigned constants = netlist.NumOfNets();
  for (int i = 0; i < 4000; i++) {
    int unknown = i % 4 ? 0 : 5;
    ModelValue a = RandomModel(i % 5 ? 20 : 140, unknown);
    ModelValue b = RandomModel(i % 7 ? 12 : 140, unknown);
    veri_oper oper = all_binary[random() % std::size(all_binary)];
    OwnedValue result = VeriValue::Binary(oper, FromModel(a), FromModel(b));
    ModelValue expected = Model::binary(oper, a, b);
    ASSERT_EQ(Bits(result), expected.text()) << a.text() << veri_oper_text(oper) << b.text();
    ASSERT_EQ(result->IsSigned(), expected.is_signed) << veri_oper_text(oper);
    veri_oper unary = all_unary[random() % std::size(all_unary)];
    ASSERT_EQ(Bits(VeriValue::Unary(unary, FromModel(a))), Model::unary(unary, a).text()) << a.text();
    log.Take();
  }
  EXPECT_EQ(netlist.NumOfNets(), constants) << "constants make no nets";
}

TEST_F(Values, LogicComputesLikeTheModel) {
  for (int i = 0; i < 1500; i++) {
    ModelValue a = RandomModel(9, 0);
    ModelValue b = RandomModel(6, 0);
    // A bit is a net that happens to have the digit, or the constant itself.
    auto build = [&](const ModelValue& model) {
      ArrayOf<Net> nets;
      for (size_t bit = model.width(); bit-- > 0;) {
        Net* constant = veri_digit_net(model.digits[bit] == '1' ? VERI_DIGIT_1 : VERI_DIGIT_0);
        if (random() % 3 == 0) {
          nets.InsertLast(constant);
          continue;
        }
        make_nets(netlist, nets, 1);
        evaluator.Set(nets.GetLast(), model.digits[bit] == '1');
      }
      return VeriValue::FromNets(nets, model.is_signed);
    };
    auto check = [&](const OwnedValue& result, const ModelValue& expected, const std::string& what) {
      ASSERT_NE(result, nullptr) << what;
      ASSERT_EQ(result->Size(), expected.width()) << what;
      for (unsigned bit = 0; bit < result->Size(); bit++)
        ASSERT_EQ(evaluator.Value(result->GetBit(bit)), expected.digits[bit] == '1') << what << " bit " << bit;
    };
    veri_oper oper = all_binary[random() % std::size(all_binary)];
    ModelValue expected = Model::binary(oper, a, b);
    if (expected.has_unknown()) continue; // a division by 0
    check(VeriValue::Binary(oper, build(a), build(b)), expected, a.text() + veri_oper_text(oper) + b.text());
    veri_oper unary = all_unary[random() % std::size(all_unary)];
    check(VeriValue::Unary(unary, build(a)), Model::unary(unary, a), veri_oper_text(unary) + a.text());
  }
}

TEST_F(Values, PowersFollowTheTablesOfTheStandard) {
  EXPECT_EQ(Text(Binary("3", VERI_OPER_POWER, "4")), "81");
  EXPECT_EQ(Bits(Binary("8'd3", VERI_OPER_POWER, "3'd6")), "11011001"); // 729 modulo 256
  EXPECT_EQ(Text(Binary("-1", VERI_OPER_POWER, "-3")), "-1");
  EXPECT_EQ(Text(Binary("2", VERI_OPER_POWER, "-1")), "0");
  EXPECT_EQ(Bits(Binary("0", VERI_OPER_POWER, "-1")), "x");
  EXPECT_EQ(Text(Binary("2.0", VERI_OPER_POWER, "0.5")), "1.4142135623730951");
  EXPECT_EQ(Bits(Binary("4'd2", VERI_OPER_POWER, "40'hffffffffff")), "0000");
  EXPECT_EQ(Bits(Binary("4'b1x", VERI_OPER_POWER, "2'd2")), "xxxx");
}

// Integers, reals, and what is said about them.

TEST_F(Values, IntegersAreOfThirtyTwoBits) {
  EXPECT_EQ(Text(Binary("-7", VERI_OPER_MODULO, "2")), "-1");
  EXPECT_EQ(Text(Binary("-7", VERI_OPER_DIVIDE, "2")), "-3");
  EXPECT_EQ(Text(Binary("1", VERI_OPER_SHIFT_LEFT, "2000000000")), "0");
  EXPECT_EQ(Text(Binary("-8", VERI_OPER_ARITH_SHIFT_RIGHT, "-1")), "-1");
  EXPECT_THAT(log.Take(), IsEmpty());
  EXPECT_EQ(Text(Binary("2147483647", VERI_OPER_PLUS, "1")), "-2147483648");
  EXPECT_THAT(log.Take(), ElementsAre("0: warning: constant value overflow"));
  EXPECT_EQ(Text(Binary("-2147483647", VERI_OPER_MINUS, "2")), "2147483647");
  EXPECT_THAT(log.Take(), IsEmpty());
  OwnedValue quotient = Binary("5", VERI_OPER_DIVIDE, "0");
  EXPECT_EQ(Bits(quotient), "x");
  EXPECT_THAT(log.Take(), ElementsAre("0: warning: attempt to divide by 0; returning x"));
}

TEST_F(Values, RealsComputeInDouble) {
  EXPECT_EQ(Text(Binary("1.5", VERI_OPER_PLUS, "8'd2")), "3.5");
  EXPECT_EQ(Bits(Binary("1.5", VERI_OPER_LT, "2")), "1");
  EXPECT_EQ(Literal("2.5")->Integer(), 3);
  EXPECT_EQ(VeriValue::FromReal(-2.5)->Integer(), -3);
  EXPECT_EQ(Binary("1.5", VERI_OPER_AND, "1"), nullptr);
  EXPECT_EQ(VeriValue::Unary(VERI_OPER_NOT, Literal("1.5")), nullptr);
  EXPECT_EQ(VeriValue::Binary(VERI_OPER_PLUS, Literal("1.5"), Nets(4)), nullptr);
  EXPECT_EQ(VeriValue::QuestionColon(Nets(1), Literal("1.5"), Literal("1")), nullptr);
  EXPECT_THAT(log.Take(),
              ElementsAre("0: error: illegal operator on real number", "0: error: illegal operator for real numbers",
                          "0: error: not supported use of real number",
                          "0: error: no support for real number in ?: operator"));
}

TEST_F(Values, VectorsWarnOfOverflowAndOfSignedAmounts) {
  EXPECT_EQ(Bits(Binary("4'b1x00", VERI_OPER_PLUS, "4'd1")), "xxxx");
  EXPECT_THAT(log.Take(), IsEmpty());
  EXPECT_EQ(Bits(Binary("4'd15", VERI_OPER_PLUS, "4'd1")), "0000");
  EXPECT_THAT(log.Take(), ElementsAre("0: warning: constant value overflow"));
  EXPECT_EQ(Bits(Binary("4'sd7", VERI_OPER_PLUS, "4'sd1")), "1000");
  EXPECT_THAT(log.Take(), ElementsAre("0: warning: constant value overflow"));
  EXPECT_EQ(Bits(Binary("4'sd8", VERI_OPER_PLUS, "4'sd1")), "1001");
  EXPECT_EQ(Bits(Binary("4'd8", VERI_OPER_SHIFT_RIGHT, "1")), "0100");
  EXPECT_THAT(log.Take(), IsEmpty());
  EXPECT_EQ(Bits(Binary("4'd8", VERI_OPER_SHIFT_RIGHT, "3'sd1")), "0100");
  EXPECT_THAT(log.Take(), ElementsAre("0: warning: converting signed shift amount to unsigned"));
}

// Fits.

TEST_F(Values, WideningExtendsBySignAndByUnknownDigits) {
  EXPECT_EQ(Bits(VeriValue::Adjust(Literal("8'sb1000_0000"), 16)), "1111111110000000");
  EXPECT_EQ(Bits(VeriValue::Adjust(Literal("8'b1000_0000"), 10)), "0010000000");
  EXPECT_EQ(Bits(VeriValue::Adjust(Literal("'x"), 3)), "xxx");
  EXPECT_EQ(Bits(VeriValue::Adjust(Literal("'1"), 70)), std::string(70, '1'));
  EXPECT_EQ(Bits(VeriValue::Adjust(Literal("-1"), 40)), std::string(40, '1'));
  EXPECT_EQ(Bits(VeriValue::Adjust(Literal("8'hf5"), 3)), "101");
  EXPECT_EQ(Bits(VeriValue::Adjust(Literal("8'hf5"), 0)), "11110101");
  EXPECT_THAT(log.Take(), IsEmpty());
  EXPECT_EQ(Bits(VeriValue::Adjust(Literal("2'bz1"), 4)), "zzz1");
  EXPECT_THAT(log.Take(), ElementsAre("0: warning: x/z extended in the significant bits of constant."));
  auto nets = std::make_unique<VeriNonConstVal>(1, veri_digit_net(VERI_DIGIT_Z));
  EXPECT_EQ(Bits(VeriValue::Adjust(std::move(nets), 3)), "zzz");
  EXPECT_THAT(log.Take(), ElementsAre("0: warning: x/z extended in the significant bits of constant."));
}

TEST_F(Values, AssignmentsFitValuesToTheirTargets) {
  auto fit = [&](const char* text, const VeriConstraint& target, unsigned width = 0, bool is_unsized = false) {
    return Bits(VeriValue::CheckAgainst(Literal(text), target, nullptr, false, width, is_unsized));
  };
  std::unique_ptr<VeriConstraint> byte = VeriUniformArrayConstraint::Vector(7, 0);
  EXPECT_EQ(fit("4'sb1000", *byte), "11111000"); // the sign of the value decides
  EXPECT_EQ(fit("12'hfff", *byte, 12), "11111111");
  EXPECT_THAT(log.Take(), ElementsAre("0: warning: expression size 12 truncated to fit in target size 8"));
  EXPECT_EQ(fit("5", *byte, 32, true), "00000101");
  EXPECT_THAT(log.Take(),
              ElementsAre("0: info: truncated unsized constant literal with size 32 to size 8 with no loss"));
  std::unique_ptr<VeriConstraint> two_state = VeriRangeConstraint::Integer(4, false, 2);
  EXPECT_EQ(fit("4'b1xz1", *two_state), "1001");
  EXPECT_THAT(log.Take(), ElementsAre("0: warning: automatically converting 4-state value to 2-state by replacing X "
                                      "and Z with 0"));
  OwnedValue zero = Literal("4'd0");
  OwnedValue two = Literal("4'd2");
  std::unique_ptr<VeriConstraint> names = VeriRangeConstraint::Enumeration(*two_state, {zero.get(), two.get()});
  EXPECT_EQ(fit("4'd2", *names), "0010");
  EXPECT_THAT(log.Take(), IsEmpty());
  fit("4'd1", *names);
  EXPECT_THAT(log.Take(), ElementsAre("0: error: enum 4'b0001 is not a member of the target constraint"));
  EXPECT_EQ(VeriValue::CheckAgainst(Nets(3), *VeriRangeConstraint::RealType(), nullptr, false), nullptr);
  VeriUniformArrayConstraint array(VeriRangeConstraint(0, 1), byte->Copy(), false, false);
  EXPECT_EQ(VeriValue::CheckAgainst(Literal("8'd1"), array, nullptr, false), nullptr);
  EXPECT_THAT(log.Take(),
              ElementsAre("0: error: synthesis of 'real' values is not supported",
                          "0: error: cannot assign or compare packed values to unpacked values or vice versa"));
}

TEST_F(Values, IntegersOfWideVectorsLoseHighBitsSilentlyUnlessAsked) {
  EXPECT_EQ(Literal("40'hff_0000_0001")->Integer(), 1);
  EXPECT_THAT(log.Take(), IsEmpty());
  RecordingServices services;
  services.flag_on = "zelk_check_constant_overflow";
  EXPECT_EQ(Literal("40'hff_0000_0001")->Integer(), 1);
  EXPECT_EQ(Literal("8'hff")->Integer(), 255);
  EXPECT_EQ(Literal("8'shff")->Integer(), -1);
  EXPECT_THAT(log.Take(), ElementsAre("0: warning: could not convert a value to 32 bit integer"));
  int64_t number = 0;
  EXPECT_FALSE(Literal("65'h1_0000_0000_0000_0000")->ToInt64(&number));
  EXPECT_FALSE(Literal("64'hffff_ffff_ffff_ffff")->ToInt64(&number));
  EXPECT_TRUE(Literal("70'sh3f_ffff_ffff_ffff_ffff")->ToInt64(&number));
  EXPECT_EQ(number, -1);
}

TEST_F(Values, ConstantNetsOutliveASweep) {
  Net* ground = veri_digit_net(VERI_DIGIT_0);
  netlist.RegisterPotentiallyFanoutFreeNet(netlist.Inv(ground, 0));
  netlist.SweepPotentiallyFanoutFreeNets();
  EXPECT_EQ(Count(PRIM_INV), 0U);
  ASSERT_EQ(veri_digit_net(VERI_DIGIT_0), ground);
  EXPECT_EQ(ground->DriverType(), PRIM_GND);
}

// Logic that constants save.

TEST_F(Values, AddingNothingMakesNoAdder) {
  OwnedValue a = Nets(8);
  OwnedValue sum = VeriValue::Binary(VERI_OPER_PLUS, a->Copy(), Literal("8'd0"));
  EXPECT_EQ(sum->GetBit(5), a->GetBit(5));
  EXPECT_EQ(Count(OPER_ADDER), 0U);
  VeriValue::Binary(VERI_OPER_PLUS, a->Copy(), Literal("8'h10"));
  ASSERT_EQ(Count(OPER_ADDER), 1U);
  for (Instance* inst : InstancesOf(&netlist))
    EXPECT_TRUE(inst->Type() != OPER_ADDER || inst->Input1Size() == 3) << "what a constant decides passes";
  RecordingServices services;
  services.flag_on = "zelk_disable_adder_width_optimizations";
  VeriValue::Binary(VERI_OPER_PLUS, a->Copy(), Literal("8'd0"));
  EXPECT_EQ(Count(OPER_ADDER), 2U);
}

TEST_F(Values, ComparisonsWithAMismatchAreConstant) {
  OwnedValue a = Nets(2);
  std::vector<OwnedValue> parts;
  parts.push_back(Literal("1'b1"));
  parts.push_back(a->Copy());
  OwnedValue word = VeriValue::Concat(std::move(parts));
  EXPECT_EQ(Bits(VeriValue::Binary(VERI_OPER_EQ, word->Copy(), Literal("3'b011"))), "0");
  EXPECT_EQ(Bits(VeriValue::Binary(VERI_OPER_CASE_NE, word->Copy(), Literal("3'b1x1"))), "1");
  // Unknown or false, whatever the logic is: false is right for both.
  EXPECT_EQ(Bits(VeriValue::Binary(VERI_OPER_EQ, word->Copy(), Literal("3'b1x1"))), "0");
  EXPECT_EQ(Bits(VeriValue::Binary(VERI_OPER_NE, word->Copy(), Literal("3'b1x1"))), "1");
  EXPECT_EQ(Bits(VeriValue::Binary(VERI_OPER_EQ, word->Copy(), Literal("3'bxxx"))), "x");
  EXPECT_EQ(Count(OPER_EQUAL), 0U);
  VeriValue::Binary(VERI_OPER_WILD_EQ, word->Copy(), Literal("3'b100"));
  EXPECT_EQ(Count(OPER_EQUAL), 1U);
  EXPECT_EQ(VeriValue::CaseMatch(*word, *Literal("3'b1zz"), false, true), veri_digit_net(VERI_DIGIT_1));
  EXPECT_EQ(VeriValue::CaseMatch(*word, *Literal("3'b1xx"), false, true), veri_digit_net(VERI_DIGIT_0));
}

TEST_F(Values, NonConstantPowersNeedAConstantSide) {
  EXPECT_EQ(VeriValue::Binary(VERI_OPER_POWER, Nets(4), Nets(4)), nullptr);
  EXPECT_EQ(VeriValue::Binary(VERI_OPER_POWER, Literal("4'd3"), Nets(4)), nullptr);
  EXPECT_EQ(VeriValue::Binary(VERI_OPER_POWER, Literal("4'd2"), Nets(4, true)), nullptr);
  EXPECT_THAT(log.Take(),
              ElementsAre("0: error: exponentiation not supported for these operands, either exponent or base must be "
                          "a constant.",
                          "0: error: exponentiation not supported for these operands, exponent base must be a positive "
                          "power of 2 with non-constant exponent.",
                          "0: error: exponentiation not supported for these operands, exponent must be unsigned or "
                          "constant positive."));
  EXPECT_EQ(VeriValue::Binary(VERI_OPER_POWER, Nets(4), Literal("-1")), nullptr);
  EXPECT_THAT(log.Take(), ElementsAre("0: error: exponentiation not supported for these operands, exponent must be "
                                      "unsigned or constant positive."));
  OwnedValue base = Nets(5);
  OwnedValue exponent = Nets(3);
  OwnedValue cube = VeriValue::Binary(VERI_OPER_POWER, base->Copy(), Literal("3"));
  OwnedValue power = VeriValue::Binary(VERI_OPER_POWER, Literal("16'd4"), exponent->Copy());
  for (uint64_t i = 0; i < 8; i++) {
    evaluator.Clear();
    Drive(*base, i);
    Drive(*exponent, i);
    EXPECT_EQ(Read(*cube), i * i * i % 32);
    EXPECT_EQ(Read(*power), 1U << 2 * i & 0xFFFF);
  }
}

// Merging.

TEST_F(Values, DontCareBranchesCostNoMultiplexer) {
  OwnedValue c = Nets(1);
  OwnedValue d = Nets(4);
  OwnedValue q = VeriValue::Select(c->GetBit(0), Literal("4'bx"), d->Copy());
  for (unsigned bit = 0; bit < 4; bit++) EXPECT_EQ(q->GetBit(bit), d->GetBit(bit));
  q = VeriValue::Select(c->GetBit(0), d->Copy(), d->Copy());
  EXPECT_EQ(Count(PRIM_MUX), 0U);
  q = VeriValue::Select(c->GetBit(0), Literal("4'bz"), d->Copy());
  EXPECT_EQ(Count(PRIM_MUX), 4U) << "z is a value";
  EXPECT_EQ(Bits(VeriValue::Select(veri_digit_net(VERI_DIGIT_1), Literal("2'd2"), Literal("2'd1"))), "10");
}

TEST_F(Values, AnUnknownConditionKeepsWhatTheBranchesAgreeOn) {
  EXPECT_EQ(Bits(VeriValue::QuestionColon(Literal("1'bx"), Literal("4'b1100"), Literal("4'b1z10"))), "1xx0");
  EXPECT_EQ(Bits(VeriValue::QuestionColon(Literal("2'b1x"), Literal("4'b1100"), Literal("8'd1"))), "00001100");
}

TEST_F(Values, WideSelectionsReadTheChosenInput) {
  for (unsigned unique : {2U, 3U, 16U}) { // two different lines are decoded, many are multiplexed
    OwnedValue sel = Nets(4);
    std::vector<OwnedValue> lines;
    for (unsigned i = 0; i < unique; i++) lines.push_back(Nets(3));
    std::vector<OwnedValue> inputs;
    for (unsigned i = 0; i < 16; i++) inputs.push_back(i == 5 ? nullptr : lines[i % unique]->Copy());
    Array selectors;
    sel->GetNets(selectors);
    unsigned muxes = Count(OPER_NTO1MUX);
    OwnedValue result = VeriValue::Nto1Mux(selectors, std::move(inputs), nullptr);
    EXPECT_EQ(Count(OPER_NTO1MUX) - muxes, unique == 16 ? 3U : 0U);
    for (unsigned i = 0; i < 16; i++) {
      if (i == 5) continue;
      evaluator.Clear();
      Drive(*sel, i);
      for (unsigned j = 0; j < unique; j++) Drive(*lines[j], j + 3);
      ASSERT_EQ(Read(*result), (i % unique + 3) & 7) << unique << " lines, " << i;
    }
  }
}

// Elements and parts.

namespace {
/// Reads and writes through one index against plain arithmetic on bits.
struct Parts : Values {
  std::unique_ptr<VeriConstraint> type;
  OwnedValue word;

  void Vector(int left, int right) {
    type = VeriUniformArrayConstraint::Vector(left, right);
    word = Nets(type->Size());
  }
  static VeriIndices Index(veri_index_kind kind, OwnedValue left, OwnedValue right = nullptr) {
    VeriIndices indices(1);
    indices[0].kind = kind;
    indices[0].left = std::move(left);
    indices[0].right = std::move(right);
    return indices;
  }
  OwnedValue Get(const VeriIndices& indices) { return VeriValue::ReadPartial(*word, *type, indices, "v", nullptr); }
  OwnedValue Put(const VeriIndices& indices, OwnedValue part) {
    return VeriValue::AssignPartial(word->Copy(), *type, indices, std::move(part), "v", nullptr);
  }
  /// The bit of the word that an index means; -1 outside.
  int BitOf(int index) const {
    int low = std::min(type->Left(), type->Right());
    int high = std::max(type->Left(), type->Right());
    if (index < low || index > high) return -1;
    return type->Left() < type->Right() ? high - index : index - low;
  }
};
} // namespace

TEST_F(Parts, ConstantIndicesCountFromEitherEnd) {
  Vector(7, 0);
  EXPECT_EQ(Get(Index(VERI_INDEX_SINGLE, Literal("2")))->GetBit(0), word->GetBit(2));
  EXPECT_EQ(Get(Index(VERI_INDEX_RANGE, Literal("5"), Literal("3")))->GetBit(2), word->GetBit(5));
  EXPECT_EQ(Get(Index(VERI_INDEX_UP, Literal("3"), Literal("2")))->GetBit(1), word->GetBit(4));
  EXPECT_EQ(Get(Index(VERI_INDEX_DOWN, Literal("3"), Literal("2")))->GetBit(1), word->GetBit(3));
  Vector(0, 7);
  EXPECT_EQ(Get(Index(VERI_INDEX_SINGLE, Literal("2")))->GetBit(0), word->GetBit(5));
  EXPECT_EQ(Get(Index(VERI_INDEX_UP, Literal("3"), Literal("2")))->GetBit(1), word->GetBit(4));
  EXPECT_THAT(log.Take(), IsEmpty());
  EXPECT_EQ(Bits(Get(Index(VERI_INDEX_SINGLE, Literal("9")))), "x");
  EXPECT_EQ(Bits(Get(Index(VERI_INDEX_SINGLE, Literal("3'bx")))), "x");
  EXPECT_EQ(Get(Index(VERI_INDEX_RANGE, Literal("5"), Literal("3"))), nullptr);
  OwnedValue same = Put(Index(VERI_INDEX_SINGLE, Literal("-1")), Literal("1'b1"));
  for (unsigned bit = 0; bit < 8; bit++) EXPECT_EQ(same->GetBit(bit), word->GetBit(bit));
  EXPECT_THAT(
      log.Take(),
      ElementsAre("0: warning: constant index 9 falls outside the range [0:7] for dimension 1 of the array v",
                  "0: error: part-select direction is opposite from prefix index direction",
                  "0: warning: constant index -1 falls outside the range [0:7] for dimension 1 of the array v"));
  EXPECT_EQ(Bits(VeriValue::AssignPartial(Literal("4'b0000"), *VeriUniformArrayConstraint::Vector(3, 0),
                                          Index(VERI_INDEX_RANGE, Literal("2"), Literal("1")), Literal("2'b1x"), "v",
                                          nullptr)),
            "01x0");
}

TEST_F(Parts, VariableIndicesReachExactlyTheirBits) {
  struct Case {
    int left, right;
    unsigned index_width;
    bool is_signed;
  };
  for (const Case& c : {Case{7, 0, 3, false},
                        {0, 5, 3, false},
                        {9, 4, 4, false},
                        {-2, 3, 4, true},
                        {1003, 1000, 11, false},
                        {7, 0, 3, true},
                        {3, 0, 6, false}})
    for (bool by_shift : {false, true}) {
      Vector(c.left, c.right);
      RecordingServices services;
      if (by_shift) services.flag_on = "zelk_dont_use_muxes_for_variable_part_select";
      OwnedValue index = Nets(c.index_width, c.is_signed);
      unsigned size = type->Size();
      OwnedValue part = Nets(2);
      OwnedValue bit = Get(Index(VERI_INDEX_SINGLE, index->Copy()));
      OwnedValue up = Get(Index(VERI_INDEX_UP, index->Copy(), Literal("2")));
      OwnedValue down = Get(Index(VERI_INDEX_DOWN, index->Copy(), Literal("2")));
      OwnedValue written = Put(Index(VERI_INDEX_SINGLE, index->Copy()), part->Copy());
      OwnedValue written_up = Put(Index(VERI_INDEX_UP, index->Copy(), Literal("2")), part->Copy());
      ASSERT_TRUE(bit && up && down && written && written_up);
      for (int code = 0; code < 1 << c.index_width; code++) {
        int number = c.is_signed && code >> (c.index_width - 1) ? code - (1 << c.index_width) : code;
        uint64_t data = random() & ((1U << size) - 1);
        uint64_t two = random() & 3;
        evaluator.Clear();
        Drive(*word, data);
        Drive(*index, static_cast<uint64_t>(code));
        Drive(*part, two);
        std::string what = std::to_string(c.left) + ":" + std::to_string(c.right) + "[" + std::to_string(number) + "]";
        int at = BitOf(number);
        bool ascending = c.left < c.right;
        auto bits_from = [&](int low) { return data >> low & 3; };
        ASSERT_TRUE(at < 0 || Read(*bit) == (bits_from(at) & 1)) << what;
        // Of a part that lies half outside, the other half counts.
        for (int half = 0; half < 2; half++) {
          int up_bit = BitOf(number + (ascending ? 1 - half : half));
          int down_bit = BitOf(number - (ascending ? half : 1 - half));
          ASSERT_TRUE(up_bit < 0 || (Read(*up) >> half & 1) == (bits_from(up_bit) & 1)) << what;
          ASSERT_TRUE(down_bit < 0 || (Read(*down) >> half & 1) == (bits_from(down_bit) & 1)) << what;
        }
        uint64_t expected = at < 0 ? data : (data & ~(1ULL << at)) | (two & 1) << at;
        ASSERT_EQ(Read(*written), expected) << what;
        uint64_t expected_up = data;
        for (int half = 0; half < 2; half++) {
          int target = BitOf(number + (ascending ? 1 - half : half));
          if (target >= 0) expected_up = (expected_up & ~(1ULL << target)) | (two >> half & 1) << target;
        }
        ASSERT_EQ(Read(*written_up), expected_up) << what;
      }
    }
}

TEST_F(Parts, AnIndexThatCannotReachWarns) {
  Vector(100, 90);
  OwnedValue index = Nets(4);
  OwnedValue same = Put(Index(VERI_INDEX_SINGLE, index->Copy()), Literal("1'b1"));
  EXPECT_EQ(same->GetBit(0), word->GetBit(0));
  Vector(31, 0);
  Put(Index(VERI_INDEX_SINGLE, index->Copy()), Literal("1'b1"));
  EXPECT_THAT(log.Take(), ElementsAre("0: warning: non-constant index always falls outside the range [100:90] for "
                                      "dimension 1 of the array v",
                                      "0: warning: index does not have enough bits to address entire range."));
  EXPECT_EQ(
      VeriValue::ReadPartial(*Nets(1), VeriLogicConstraint(), Index(VERI_INDEX_SINGLE, Literal("0")), "v", nullptr),
      nullptr);
  EXPECT_THAT(log.Take(), ElementsAre("0: error: cannot index into non-array v"));
}

TEST_F(Values, MemoriesAreWrittenAndReadByWordAndBit) {
  VeriUniformArrayConstraint memory(VeriRangeConstraint(0, 3), VeriUniformArrayConstraint::Vector(3, 0), false, false);
  OwnedValue value = memory.CreateValue("m", 1, nullptr);
  ASSERT_EQ(value->NumOfElements(), 4U);
  EXPECT_NE(netlist.GetNet("m[2][1]"), nullptr);
  EXPECT_EQ(netlist.GetNetBus("m")->NetCount(), 16U);
  OwnedValue address = Nets(2);
  OwnedValue bit = Nets(2);
  OwnedValue data = Nets(1);
  VeriIndices indices(2);
  indices[0].left = address->Copy();
  indices[1].left = bit->Copy();
  OwnedValue read = VeriValue::ReadPartial(*value, memory, indices, "m", nullptr);
  OwnedValue written = VeriValue::AssignPartial(value->Copy(), memory, indices, data->Copy(), "m", nullptr);
  for (uint64_t i = 0; i < 16; i++) {
    evaluator.Clear();
    uint64_t content = random() & 0xFFFF;
    Drive(*value, content);
    Drive(*address, i >> 2);
    Drive(*bit, i & 3);
    Drive(*data, 1);
    uint64_t place = (3 - (i >> 2)) * 4 + (i & 3); // word 0 stands leftmost
    EXPECT_EQ(Read(*read), content >> place & 1);
    EXPECT_EQ(Read(*written), content | 1ULL << place);
  }
}

// Nets of objects.

TEST_F(Values, ObjectsGetNamedNetsAndPorts) {
  std::unique_ptr<VeriConstraint> type = VeriUniformArrayConstraint::Vector(2, 1, true);
  OwnedValue value = type->CreateValue("v", 7, nullptr);
  EXPECT_STREQ(value->GetBit(1)->Name(), "v[2]");
  EXPECT_EQ(value->GetBit(0)->Linefile(), 7U);
  EXPECT_TRUE(value->IsSigned());
  EXPECT_EQ(netlist.GetNetBus("v")->ElementAtIndex(2), value->GetBit(1));
  value->CreatePorts("v", DIR_OUTPUT, *type, nullptr);
  EXPECT_EQ(netlist.GetPort("v[1]")->GetNet(), value->GetBit(0));
  EXPECT_EQ(netlist.GetPortBus("v")->ElementAtIndex(2), netlist.GetPort("v[2]"));
  value->SetDefaultValue(*Literal("2'b1x"), nullptr);
  EXPECT_EQ(value->GetBit(1)->PowerUpValue(), '1');
  EXPECT_EQ(value->GetBit(0)->PowerUpValue(), 'X');

  VeriCompositeConstraint::Member low{"low", nullptr, VeriUniformArrayConstraint::Vector(1, 0)};
  VeriCompositeConstraint::Member flag{"flag", nullptr, std::make_unique<VeriLogicConstraint>()};
  std::vector<VeriCompositeConstraint::Member> members;
  members.push_back(std::move(low));
  members.push_back(std::move(flag));
  VeriCompositeConstraint pair(VeriCompositeConstraint::STRUCT, std::move(members), false, false);
  EXPECT_EQ(pair.CreateValue("s", 7, nullptr)->NumOfElements(), 2U);
  EXPECT_NE(netlist.GetNet("s.low[1]"), nullptr);
  EXPECT_NE(netlist.GetNet("s.flag"), nullptr);
  EXPECT_EQ(Bits(pair.ReadMember(pair.Unpack(Literal("3'b101"), nullptr), 0)), "10");
  std::vector<OwnedValue> values(2);
  values[0] = Literal("3");
  EXPECT_EQ(Bits(VeriValue::Pack(pair.CreatePatternValue(std::move(values), Literal("'1"), nullptr))), "111");
  EXPECT_EQ(pair.CreatePatternValue({}, nullptr, nullptr), nullptr);
  EXPECT_EQ(VeriRangeConstraint::RealType()->CreateValue("r", 7, nullptr), nullptr);
  EXPECT_THAT(log.Take(), ElementsAre("0: error: the assignment pattern needs a default to cover unmatched elements",
                                      "0: error: can't create net value for unsupported range type"));
}

TEST_F(Values, AClockedAssignmentBecomesAMultiplexerAndAnInferPoint) {
  std::unique_ptr<VeriConstraint> type = VeriUniformArrayConstraint::Vector(1, 0);
  OwnedValue q = type->CreateValue("q", 7, nullptr);
  OwnedValue d = Nets(1);
  std::vector<OwnedValue> parts;
  parts.push_back(Nets(1));
  parts.push_back(VeriValue::FromNet(q->GetBit(0))); // bit 0 keeps its value
  OwnedValue next = VeriValue::Concat(std::move(parts));
  Net* clock = d->GetBit(0);
  Net* event = netlist.Clock(clock, nullptr, 0);
  OwnedValue clocked = VeriValue::Register(std::move(next), clock, event, *q, nullptr);
  EXPECT_EQ(clocked->GetBit(0), q->GetBit(0));
  EXPECT_EQ(clocked->GetBit(1)->Driver()->GetControl(), event);
  EXPECT_EQ(clocked->GetBit(1)->Driver()->GetInput1(), q->GetBit(1));
  q->NetAssignFrom(std::move(clocked), VERI_RESOLVE_WIRE, true, nullptr);
  EXPECT_EQ(Count(PRIM_INFER_POINT), 1U);
}

TEST_F(Values, ARegisterOfABranchTakesTheOthersConstantAsynchronously) {
  OwnedValue reset = Nets(1);
  OwnedValue data = Nets(1);
  Net* clock = Nets(1)->GetBit(0);
  std::unique_ptr<VeriConstraint> type = std::make_unique<VeriLogicConstraint>();
  OwnedValue hold = type->CreateValue("q", 7, nullptr);
  OwnedValue clocked = VeriValue::Register(data->Copy(), clock, nullptr, *hold, nullptr);
  Instance* reg = clocked->GetBit(0)->Driver();
  ASSERT_EQ(reg->Type(), PRIM_DFF);
  EXPECT_STREQ(reg->Name(), "q");
  OwnedValue merged = VeriValue::Select(reset->GetBit(0), Literal("1'b0"), std::move(clocked), nullptr);
  EXPECT_EQ(merged->GetBit(0), reg->GetOutput());
  EXPECT_EQ(reg->GetInput(), data->GetBit(0));
  EXPECT_EQ(reg->GetAsyncCond(), reset->GetBit(0));
}

TEST_F(Values, RomsHoldTheirWords) {
  struct Files : KernelServices {
    Files() { Set(this); }
    ~Files() override { Set(nullptr); }
    OwnedString WriteMemoryFile(const MemoryContents& contents) override {
      for (const char* word : ItemsOf<const char*>(contents.words)) words += std::string(word) + " ";
      return OwnedString(Strings::save("top.rom0.mif"));
    }
    std::string words;
  } files;
  OwnedValue address = Nets(2);
  Array nets;
  address->GetNets(nets);
  std::vector<OwnedValue> entries(4);
  entries[0] = Literal("3'd5");
  entries[3] = Literal("2'd2");
  OwnedValue q = VeriValue::Rom(nets, std::move(entries), nullptr, nullptr);
  ASSERT_EQ(q->Size(), 3U);
  EXPECT_EQ(files.words, "101 xxx xxx 010 ");
  ASSERT_NE(q->GetOperator(), nullptr);
  EXPECT_STREQ(q->GetOperator()->GetAttValue(ATT_RAM_INIT_FILE), "top.rom0.mif");
  EXPECT_TRUE(q->GetOperator()->IsAttOn(" :rom"));
  EXPECT_EQ(VeriValue::Rom(nets, std::vector<OwnedValue>(3), nullptr, nullptr), nullptr);
}
