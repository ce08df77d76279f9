// Memories: the operator's ports and names, the records of behaviour, and what Polish does with them.
#include "database/ram.h"

#include <gtest/gtest.h>

#include "database/operators.h"
#include "netlist_bench.h"

namespace {

class RamTest : public testing::Test {
protected:
  std::unique_ptr<ArrayOf<Net>> Word(const std::string& name, unsigned width) {
    auto bits = std::make_unique<ArrayOf<Net>>();
    for (unsigned i = 0; i < width; i++) bits->InsertLast(bench.In(name + std::to_string(i)));
    return bits;
  }
  std::unique_ptr<ArrayOf<Net>> Outputs(const std::string& name, unsigned width) {
    auto bits = std::make_unique<ArrayOf<Net>>();
    for (unsigned i = 0; i < width; i++) bits->InsertLast(bench.Named(name + std::to_string(i)));
    return bits;
  }
  std::unique_ptr<ArrayOf<Net>> Registered(const ArrayOf<Net>& word) {
    auto bits = std::make_unique<ArrayOf<Net>>();
    for (Net* net : word) bits->InsertLast(Register(net));
    return bits;
  }
  Net* Register(Net* d) { return bench.n->Dffrs(d, clk, bench.Gnd(), bench.Gnd(), bench.At()); }

  NetlistBench bench;
  Net* clk = bench.In("clk");
};

TEST_F(RamTest, ElementsAreFoundByPortAndBitAndAbsentOnesHaveNoSize) {
  auto waddr = Word("wa", 3);
  auto wdata = Word("wd", 4);
  auto raddr = Word("ra", 2);
  auto q = Outputs("q", 8);
  Instance* ram =
      bench.n->DualPortRam(bench.In("we"), nullptr, waddr.get(), 8, wdata.get(), raddr.get(), 4, q.get(), 0);
  EXPECT_EQ(ram->Type(), OPER_DUAL_PORT_RAM);
  EXPECT_EQ(ram->GetWritePortSize(0, RAM_WRITE_ADDRESS), 3U);
  EXPECT_EQ(ram->GetWritePortSize(0, RAM_BYTE_ENABLE), 0U);
  EXPECT_EQ(ram->GetReadPortSize(0, RAM_READ_DATA), 8U);
  EXPECT_EQ(ram->GetReadPortSize(1, RAM_READ_DATA), 0U);
  EXPECT_EQ(ram->GetWriteDepth(0), 8U);
  EXPECT_EQ(ram->GetReadDepth(0), 4U);
  EXPECT_EQ(ram->GetWritePort(0, RAM_WRITE_DATA, 3), wdata->At(3));
  EXPECT_EQ(ram->GetWritePort(0, RAM_WRITE_DATA, 4), nullptr);
  EXPECT_EQ(ram->GetWritePort(0, RAM_READ_DATA, 0), q->At(0));
  EXPECT_EQ(ram->NumUniqueAddresses(), 2U);
  EXPECT_STREQ(ram->View()->Owner()->Name(), " DualPortRam_read_A_2_4_8_B_0_0_0_write_A_3_8_4_0_B_0_0_0_0");
  EXPECT_TRUE(kestrin_active_write_port(ram, 0));
  EXPECT_FALSE(kestrin_active_write_port(ram, 1) || kestrin_active_read_port(ram, 1));
}

TEST_F(RamTest, AMemoryWithoutWritePortIsNamedAsARomAndShapesShareAView) {
  auto raddr = Word("ra", 2);
  auto q1 = Outputs("q", 2);
  auto q2 = Outputs("p", 2);
  Instance* rom = bench.n->DualPortRam(nullptr, nullptr, nullptr, 0, nullptr, raddr.get(), 4, q1.get(), 0);
  Instance* other = bench.n->DualPortRam(nullptr, nullptr, nullptr, 0, nullptr, raddr.get(), 4, q2.get(), 0);
  EXPECT_EQ(std::string(rom->Name()).substr(0, 5), " Rom_");
  EXPECT_EQ(rom->View(), other->View());
}

TEST_F(RamTest, BehaviourIsAListOfTokensAndAnEmptyListIsNoAttribute) {
  auto raddr = Word("ra", 1);
  auto q = Outputs("q", 1);
  Instance* ram = bench.n->DualPortRam(nullptr, nullptr, nullptr, 0, nullptr, raddr.get(), 2, q.get(), 0);
  kestrin_set_ram_behavior(ram, ATT_READ_AFTER_WRITE, "AA");
  kestrin_set_ram_behavior(ram, ATT_READ_AFTER_WRITE, "BA");
  kestrin_set_ram_behavior(ram, ATT_READ_AFTER_WRITE, "AA");
  EXPECT_STREQ(ram->GetAttValue(ATT_READ_AFTER_WRITE), "AA BA");
  kestrin_clear_ram_behavior(ram, ATT_READ_AFTER_WRITE, "AA");
  EXPECT_FALSE(kestrin_get_ram_behavior(ram, ATT_READ_AFTER_WRITE, "AA"));
  kestrin_clear_ram_behavior(ram, ATT_READ_AFTER_WRITE, "BA");
  EXPECT_EQ(ram->GetAtt(ATT_READ_AFTER_WRITE), nullptr);
}

TEST(RamStyleTest, TheStyleIsWhatIsNotTheFlag) {
  const struct {
    const char* text;
    const char* style;
    bool no_rw_check;
  } rows[] = {{"\"no_rw_check, srb7\"", "srb7", true}, {"\"srb1\"", "srb1", false}, {nullptr, "", false}};
  for (const auto& row : rows) {
    std::string style;
    bool no_rw_check = !row.no_rw_check;
    kestrin_parse_ramstyle(row.text, style, no_rw_check);
    EXPECT_EQ(style, row.style);
    EXPECT_EQ(no_rw_check, row.no_rw_check);
  }
}

TEST_F(RamTest, OnlyAWriteEnableRegisterOfTheFrontEndLosesItsReset) {
  for (bool is_ours : {true, false}) {
    const std::string name = is_ours ? "ours" : "users";
    Net* d = bench.In("d_" + name);
    Net* reset = bench.In("r_" + name);
    Net* we = bench.n->Dffrs(d, clk, bench.Gnd(), reset, bench.At());
    if (is_ours) we->Driver()->AddAtt(" :non-user", "1");
    auto addr = Word("a_" + name, 1);
    auto data = Word("w_" + name, 1);
    auto q = Outputs("q_" + name, 1);
    bench.n->DualPortRam(we, nullptr, addr.get(), 2, data.get(), addr.get(), 2, q.get(), 0);
    Instance* reg = we->Driver();
    bench.n->PostProcessRamWriteEnables();
    EXPECT_EQ(reg->GetReset()->IsGnd() != 0, is_ours);
    EXPECT_EQ(we->RegNet()->DriverType() == PRIM_AND, is_ours);
    EXPECT_EQ(reg->GetAtt(" :non-user"), nullptr);
  }
}

TEST_F(RamTest, BypassLogicOfTheUserBecomesABehaviourOfTheMemory) {
  auto raddr = Word("ra", 1);
  auto wdata = Word("wd", 2);
  Net* enable = bench.In("we");
  auto waddr = Registered(*raddr);
  auto delayed = Registered(*wdata);
  Net* we = Register(enable);
  auto q = Outputs("q", 2);
  Instance* ram = bench.n->DualPortRam(we, nullptr, waddr.get(), 2, delayed.get(), raddr.get(), 2, q.get(), 0);
  ram->AddAtt(ATT_TRUE_DUAL_PORT, "1");
  Net* out[2];
  for (unsigned i = 0; i < 2; i++) out[i] = Register(bench.Mux(q->At(i), wdata->At(i), enable));
  EXPECT_EQ(kestrin_compare_read_and_write_address(ram, 0, 0), 3U);
  EXPECT_TRUE(kestrin_read_and_write_ports_are_compatible(ram, 0, 0));
  kestrin_remove_manual_bypass_logic(bench.n);
  EXPECT_STREQ(ram->GetAttValue(ATT_READ_AFTER_WRITE), "AA");
  for (unsigned i = 0; i < 2; i++) EXPECT_EQ(out[i]->RegNet(), q->At(i));
}

TEST_F(RamTest, AMemoryOfTwoReadPortsIsSplitForAStyleThatHasOne) {
  auto addr = Word("wa", 1);
  auto data = Word("wd", 1);
  auto ra = Word("ra", 1);
  auto rb = Word("rb", 1);
  auto qa = Outputs("qa", 1);
  auto qb = Outputs("qb", 1);
  Instance* ram = bench.n->TrueDualPortRam(bench.In("we"), nullptr, addr.get(), 2, data.get(), ra.get(), 2, qa.get(),
                                           nullptr, nullptr, nullptr, 0, nullptr, rb.get(), 2, qb.get(), 0);
  ram->AddAtt(ATT_TRUE_DUAL_PORT, "1");
  ram->AddAtt(ATT_READ_AFTER_WRITE, "AA BA");
  bench.n->SplitDualReadRams();
  EXPECT_EQ(qb->At(0)->Driver(), ram);
  ram->AddAtt(ATT_RAMSTYLE, "\"SRB7\"");
  bench.n->SplitDualReadRams();
  Instance* copy = qb->At(0)->Driver();
  ASSERT_NE(copy, ram);
  EXPECT_EQ(std::string(copy->Name()), std::string(ram->Name()) + "__dual");
  EXPECT_EQ(copy->GetReadPort(0, RAM_READ_ADDRESS, 0), rb->At(0));
  EXPECT_EQ(copy->GetWritePort(0, RAM_WRITE_DATA, 0), data->At(0));
  EXPECT_STREQ(copy->GetAttValue(ATT_READ_AFTER_WRITE), "AA");
  EXPECT_STREQ(ram->GetAttValue(ATT_READ_AFTER_WRITE), "AA");
}

} // namespace
