// Which memories become RAMs, with which ports. That they compute the same as the source is what the equivalence tests
// hold.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "database/ram.h"
#include "verilog/elaboration.h"

namespace {

/// A module with a memory of 16 words, two addresses, and the given items.
std::string Module(const std::string& items, const std::string& declaration = "reg [7:0] mem [0:15];") {
  return "module m(input c, c2, we, s, rst, input [3:0] a, b, e, input [7:0] d, output reg [7:0] q, p, output [7:0] y, "
         "z);\n" +
         declaration + "\n" + items + "\nendmodule\n";
}

class RamInference : public testing::Test {
protected:
  /// The RAM; null without.
  Instance* RamOf(const std::string& text) {
    _elaboration = nullptr;
    _elaboration = std::make_unique<Elaboration>();
    _elaboration->services.flag_on = flag_on;
    Netlist* netlist = _elaboration->Elaborate(text);
    EXPECT_TRUE(netlist) << text;
    messages = Elaboration::Messages();
    if (!netlist) return nullptr;
    num_registers = Elaboration::InstancesOfType(netlist, PRIM_DFFRS).size();
    std::vector<Instance*> rams = Elaboration::InstancesOfType(netlist, OPER_DUAL_PORT_RAM);
    EXPECT_LE(rams.size(), 1U);
    return rams.empty() ? nullptr : rams.front();
  }
  static bool Has(const Instance* ram, ATT_ENUM attribute, const char* token) {
    return kestrin_get_ram_behavior(ram, attribute, token) != 0;
  }

  bool HasMessage(const std::string& message) const {
    return std::find(messages.begin(), messages.end(), message) != messages.end();
  }

  std::string flag_on;
  Lines messages;
  size_t num_registers = 0;

private:
  std::unique_ptr<Elaboration> _elaboration;
};

TEST_F(RamInference, AWriteAndAReadUnderOneClockMakeOneRam) {
  Instance* ram = RamOf(Module("always @(posedge c) begin if (we) mem[a] <= d; q <= mem[b]; end"));
  ASSERT_TRUE(ram);
  EXPECT_EQ(ram->GetReadDepth(0), 16U);
  EXPECT_EQ(ram->GetReadPortSize(0, RAM_READ_ADDRESS), 4U);
  EXPECT_EQ(ram->GetWritePortSize(0, RAM_WRITE_DATA), 8U);
  EXPECT_EQ(ram->GetWritePortSize(0, RAM_BYTE_ENABLE), 0U);
  EXPECT_EQ(ram->GetReadDepth(1) + ram->GetWriteDepth(1), 0U);
  EXPECT_TRUE(Has(ram, ATT_SEQUENTIAL_READ_WRITE, "AA"));
  EXPECT_FALSE(Has(ram, ATT_ASYNCHRONOUS_READ, "A"));
  EXPECT_EQ(num_registers, 1U + 4U + 8U + 8U);
}

TEST_F(RamInference, AReadWithoutAClockIsAsynchronous) {
  Instance* ram = RamOf(Module("always @(posedge c) if (we) mem[a] <= d; assign y = mem[b];"));
  ASSERT_TRUE(ram);
  EXPECT_TRUE(Has(ram, ATT_ASYNCHRONOUS_READ, "A"));
  EXPECT_FALSE(Has(ram, ATT_SEQUENTIAL_READ_WRITE, "AA"));
}

TEST_F(RamInference, BranchesThatExcludeOneAnotherShareAPort) {
  Instance* ram = RamOf(Module("always @(posedge c) if (we) begin mem[a] <= d; q <= mem[b]; end\n"
                               "else begin mem[b] <= 8'd1; q <= mem[a]; end"));
  ASSERT_TRUE(ram);
  EXPECT_EQ(ram->GetReadDepth(1) + ram->GetWriteDepth(1), 0U);
  ram = RamOf(Module("always @(posedge c) if (we) mem[a] <= d; else q <= mem[a];"));
  ASSERT_TRUE(ram);
  EXPECT_TRUE(Has(ram, ATT_EXCLUSIVE_READ_WRITE, "AA"));
}

TEST_F(RamInference, TwoReadsMakeTwoPortsAndThreeNoRam) {
  Instance* ram = RamOf(Module("always @(posedge c) if (we) mem[a] <= d; assign y = mem[b]; assign z = mem[a];"));
  ASSERT_TRUE(ram);
  EXPECT_EQ(ram->GetReadDepth(1), 16U);
  EXPECT_TRUE(ram->GetAtt(ATT_TRUE_DUAL_PORT));
  EXPECT_FALSE(
      RamOf(Module("always @(posedge c) if (we) mem[a] <= d; assign y = mem[b] ^ mem[e]; assign z = mem[a];")));
  EXPECT_EQ(num_registers, 128U);
}

TEST_F(RamInference, TwoWritesNeedRamsWithTwoWritePorts) {
  const std::string text = Module("always @(posedge c) if (we) mem[a] <= d; always @(posedge c2) mem[b] <= ~d;\n"
                                  "assign y = mem[e];");
  flag_on = "lsx_infer_true_dual_port_rams";
  Instance* ram = RamOf(text);
  ASSERT_TRUE(ram);
  EXPECT_EQ(ram->GetWriteDepth(1), 16U);
}

TEST_F(RamInference, WritesOfPartsOfOneWordMakeEnables) {
  const std::string text = Module("always @(posedge c) begin if (we) mem[a][3:0] <= d[3:0];\n"
                                  "if (s) mem[a][7:4] <= d[7:4]; end assign y = mem[b];");
  EXPECT_FALSE(RamOf(text));
  flag_on = "lsx_infer_mixed_width_and_byte_enabled_rams";
  Instance* ram = RamOf(text);
  ASSERT_TRUE(ram);
  EXPECT_EQ(ram->GetWritePortSize(0, RAM_BYTE_ENABLE), 2U);
}

TEST_F(RamInference, TheUsersWishForLogicIsObeyed) {
  const std::string items = "always @(posedge c) if (we) mem[a] <= d; assign y = mem[b];";
  EXPECT_FALSE(RamOf(Module(items, "(* ramstyle = \"logic\" *) reg [7:0] mem [0:15];")));
  EXPECT_TRUE(HasMessage("2: warning: RAM not inferred for variable mem with attribute ramstyle = \"logic\""));
  Instance* ram = RamOf(Module(items, "(* ramstyle = \"srb1\" *) reg [7:0] mem [0:15];"));
  ASSERT_TRUE(ram);
  EXPECT_STREQ(ram->GetAttValue(ATT_RAMSTYLE), "srb1");
  flag_on = "zelk_dont_infer_verilog_rams";
  EXPECT_FALSE(RamOf(Module(items)));
}

TEST_F(RamInference, SensitivityListsAndInitialValuesMakeNoPort) {
  Instance* ram = RamOf(Module("always @(posedge c) if (we) mem[a] <= d;\n"
                               "always @(b or mem[b]) q = mem[b]; always @(e or mem[e]) p = mem[e];\n"
                               "integer i; initial for (i = 0; i < 16; i = i + 1) mem[i] = 8'bx;"));
  ASSERT_TRUE(ram);
  EXPECT_EQ(ram->GetReadDepth(1), 16U);
}

TEST_F(RamInference, ABlockingWriteIsSeenByALaterRead) {
  ASSERT_TRUE(RamOf(Module("always @(posedge c) begin if (we) mem[a] = d; q <= mem[b]; end")));
  EXPECT_TRUE(HasMessage("3: warning: Read to RAM mem might require extra bypass logic to model read-through-write "
                         "from Write Port A to Read Port A.  This may degrade performance significantly"));
}

TEST_F(RamInference, WhatARamCannotDoStaysRegisters) {
  for (const char* items : {
           "always @(posedge c) if (we) mem[3] <= d; assign y = mem[b];", // constant words
           "always @(posedge c) if (we) mem[a] <= d; assign y = mem[2];", //
           "always @* if (we) mem[a] = d; assign y = mem[b];",            // no clock
           "integer i; always @(posedge c) if (rst) for (i = 0; i < 16; i = i + 1) mem[i] <= 0; else mem[a] <= d;\n"
           "assign y = mem[b];", // all words at once
           "function [7:0] f(input [3:0] x); f = mem[x]; endfunction\n"
           "always @(posedge c) mem[a] <= d; assign y = f(b);",                                   // in a function
           "always @(posedge c) mem[a] <= d; assign y = s ? mem[a] : mem[b]; assign z = mem[e];", // three reads
           "genvar g; generate for (g = 0; g < 2; g = g + 1) begin : h\n"
           "assign y[4*g +: 4] = mem[b + g][4*g +: 4]; end endgenerate always @(posedge c) mem[a] <= d;",
       })
    EXPECT_FALSE(RamOf(Module(items))) << items;
}

TEST_F(RamInference, AResetOfOtherVariablesLeavesTheRam) {
  Instance* ram = RamOf(Module("always @(posedge c or posedge rst) if (rst) q <= 0;\n"
                               "else begin if (we) mem[a] <= d; q <= mem[b]; end"));
  ASSERT_TRUE(ram);
  EXPECT_EQ(num_registers, 1U + 4U + 8U + 8U);
}

TEST_F(RamInference, AMemoryThatTurnsOutToBeNoneGivesItsMessagesOnce) {
  EXPECT_FALSE(RamOf(Module("always @* if (we) mem[a] = d; assign y = mem[b];\n"
                            "initial begin $display(\"Warning: x\"); $info(\"y\"); $info(\"y\"); end")));
  EXPECT_EQ(std::count(messages.begin(), messages.end(), "4: warning: verilog $display call: Warning: x"), 1);
  EXPECT_EQ(std::count(messages.begin(), messages.end(), "4: info: $info: y"), 2);
}

TEST_F(RamInference, AnAddressThatIsComputedAgainIsTheSame) {
  flag_on = "lsx_infer_mixed_width_and_byte_enabled_rams";
  Instance* ram = RamOf(Module("integer i; always @(posedge c) for (i = 0; i < 4; i = i + 1)\n"
                               "if (d[i]) mem[a + 4'd1][2*i +: 2] <= d[2*i +: 2];\nassign y = mem[b];"));
  ASSERT_TRUE(ram);
  EXPECT_EQ(ram->GetWritePortSize(0, RAM_BYTE_ENABLE), 4U);
}

TEST_F(RamInference, RegistersThatAreMadeAtOnceStandInFrontOfAWritePort) {
  flag_on = "zelk_dont_use_new_dff_algorithm";
  Instance* ram = RamOf(Module("always @(posedge c or posedge rst) if (rst) q <= 0;\n"
                               "else begin if (we) mem[a] <= d; q <= mem[b]; end"));
  ASSERT_TRUE(ram);
  EXPECT_EQ(num_registers, 1U + 4U + 8U + 8U);
  // What resets other variables holds back the write, and does not clear its enable.
  const Net* enable = ram->GetWritePort(0, RAM_WRITE_ENABLE, 0);
  ASSERT_EQ(enable->DriverType(), PRIM_DFFRS);
  const Net* reset = enable->Driver()->GetReset();
  EXPECT_TRUE(!reset || reset->IsGnd());
}

} // namespace
