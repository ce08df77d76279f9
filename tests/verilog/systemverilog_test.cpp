// Constructs of SystemVerilog become the logic that they describe.
#include <functional>

#include <gtest/gtest.h>

#include "database/cell.h"
#include "database/port.h"
#include "support/netlist_evaluator.h"
#include "verilog/elaboration.h"

namespace {

/// The nets of a port, bit 0 first.
Array NetsOfPort(const Netlist* netlist, const char* name) {
  std::vector<Net*> nets;
  if (PortBus* bus = netlist->GetPortBus(name)) {
    for (DesignObj* element : ElementsOf(bus)) nets.insert(nets.begin(), static_cast<Port*>(element)->GetNet());
  } else if (Port* port = netlist->GetPort(name)) {
    nets.push_back(port->GetNet());
  }
  Array array;
  for (Net* net : nets) array.Insert(net);
  return array;
}

/// The module m of this text computes y from a, which has four bits.
void ExpectFunction(const std::string& text, const std::function<unsigned(unsigned)>& expected) {
  Elaboration elaboration;
  const Netlist* netlist = elaboration.Elaborate(text, VERI_SV);
  ASSERT_NE(netlist, nullptr) << testing::PrintToString(Analysis::Messages());
  const Array a = NetsOfPort(netlist, "a");
  const Array y = NetsOfPort(netlist, "y");
  for (unsigned value = 0; value < 16; value++) {
    NetlistEvaluator evaluator;
    evaluator.Set(a, value);
    EXPECT_EQ(evaluator.Value(y), expected(value)) << "a = " << value;
  }
}

TEST(SystemVerilog, InsideComparesWithValuesAndRanges) {
  ExpectFunction("module m(input [3:0] a, output y);\nassign y = a inside {1, [4:6], 4'b11?0};\nendmodule\n",
                 [](unsigned a) { return a == 1 || (a >= 4 && a <= 6) || a == 12 || a == 14; });
  ExpectFunction("module m(input [3:0] a, output y);\nassign y = a inside {[$:2], [13:$]};\nendmodule\n",
                 [](unsigned a) { return a <= 2 || a >= 13; });
}

TEST(SystemVerilog, AnEnumerationKnowsItsMembers) {
  const std::string head = "module m(input [3:0] a, output logic [3:0] y);\n"
                           "typedef enum logic [3:0] {A = 2, B = 3, C = 7, D = 9} e_t;\ne_t e;\nassign e = e_t'(a);\n";
  auto neighbour = [](unsigned a, int steps) {
    constexpr unsigned members[] = {2, 3, 7, 9};
    for (int i = 0; i < 4; i++)
      if (members[i] == a) return members[(i + steps + 4) % 4];
    return ~0U;
  };
  // What is no member leads to nothing in particular.
  auto masked = [](const char* method) {
    return std::string("assign y = e inside {A, B, C, D} ? ") + method + " : 0;\nendmodule\n";
  };
  ExpectFunction(head + masked("e.next()"), [&](unsigned a) { return neighbour(a, 1) == ~0U ? 0 : neighbour(a, 1); });
  ExpectFunction(head + masked("e.prev"), [&](unsigned a) { return neighbour(a, -1) == ~0U ? 0 : neighbour(a, -1); });
  ExpectFunction(head + masked("e.next(2)"), [&](unsigned a) { return neighbour(a, 2) == ~0U ? 0 : neighbour(a, 2); });
  ExpectFunction(head + "assign y = e.first() + e.last + e.num();\nendmodule\n", [](unsigned) { return 2 + 9 + 4; });
}

TEST(SystemVerilog, ForeachRunsOverTheDimensionsThatHaveNames) {
  ExpectFunction("module m(input [3:0] a, output logic [3:0] y);\nlogic [1:0] t [0:1][2:0];\n"
                 "always_comb begin\nforeach (t[i, j]) t[i][j] = a[1:0] + i + j;\n"
                 "y = 0; foreach (t[, j]) y += t[1][j];\nend\nendmodule\n",
                 [](unsigned a) {
                   unsigned sum = 0;
                   for (unsigned j = 0; j < 3; j++) sum += (a + 1 + j) & 3;
                   return sum & 15;
                 });
}

TEST(SystemVerilog, AnAssignmentCanBeAnOperand) {
  ExpectFunction("module m(input [3:0] a, output logic [3:0] y);\nlogic [3:0] t;\n"
                 "always_comb begin t = a; y = (t += 2) + t; y = y + ++t; end\nendmodule\n",
                 [](unsigned a) { return ((a + 2) * 3 + 1) & 15; });
}

TEST(SystemVerilog, PackedArraysOfStructsAreIndexed) {
  ExpectFunction("module m(input [3:0] a, output [1:0] y);\n"
                 "struct packed { logic [0:0] hi; logic lo; } [1:0] s;\nassign s = a;\nassign y = s[1];\nendmodule\n",
                 [](unsigned a) { return a >> 2; });
}

TEST(SystemVerilog, AConditionalEventIsAClockWithAnEnable) {
  Elaboration elaboration;
  const Netlist* netlist = elaboration.Elaborate("module m(input clk, en, d, output logic q);\n"
                                                 "always_ff @(posedge clk iff en) q <= d;\nendmodule\n",
                                                 VERI_SV);
  const std::vector<Instance*> registers = Elaboration::InstancesOfType(netlist, PRIM_DFFRS);
  ASSERT_EQ(registers.size(), 1U) << testing::PrintToString(Analysis::Messages());
  EXPECT_EQ(registers.front()->GetClock(), netlist->GetPort("clk")->GetNet());
  // With the condition the register takes d, without it it holds.
  NetlistEvaluator evaluator;
  for (unsigned value = 0; value < 8; value++) {
    evaluator.Clear();
    evaluator.Set(netlist->GetPort("en")->GetNet(), value & 1);
    evaluator.Set(netlist->GetPort("d")->GetNet(), value & 2);
    evaluator.Set(registers.front()->GetOutput(), value & 4);
    EXPECT_EQ(evaluator.Value(registers.front()->GetInput()), (value & 1 ? value & 2 : value & 4) != 0);
  }
}

TEST(SystemVerilog, ANestedModuleIsInstantiatedByItsFullName) {
  Elaboration elaboration;
  const Netlist* netlist = elaboration.Elaborate("module inner(input a, output y); assign y = a; endmodule\n"
                                                 "module m(input a, output y);\nlocalparam W = 1;\n"
                                                 "module inner(input [W-1:0] a, output y); assign y = !a; endmodule\n"
                                                 "inner i(.a(a), .y(y));\nendmodule\n",
                                                 VERI_SV);
  ASSERT_NE(netlist, nullptr) << testing::PrintToString(Analysis::Messages());
  std::string name;
  for (Instance* inst : InstancesOf(netlist))
    if (const char* cell = inst->View()->GetAttValue(" cell_name")) name += cell;
  EXPECT_EQ(name, "m.inner");
  EXPECT_NE(Analysis::Module("m.inner"), nullptr);
  EXPECT_EQ(Analysis::Module("m.other"), nullptr);
}

TEST(SystemVerilog, WhatMakesNoLogicIsRefusedWhereItIsElaborated) {
  constexpr std::pair<const char*, const char*> refused[] = {
      {"covergroup cg; coverpoint a; endgroup", "coverage groups"},
      {"default clocking cb @(posedge a); input b; endclocking", "clocking blocks"},
      {"union tagged { void N; int V; } u;\ninitial u = 0;", "tagged unions"},
      {"logic q;\nalways @(posedge a iff b or negedge b) q <= a;", "a conditional event beside others"},
      {"logic q;\nalways_comb if (a matches 1) q = b; else q = 0;", "pattern matching"},
  };
  for (const auto& [item, feature] : refused) {
    SCOPED_TRACE(item);
    Elaboration elaboration;
    const std::string messages = testing::PrintToString(
        elaboration.MessagesOf(std::string("module m(input a, b);\n") + item + "\nendmodule\n", VERI_SV));
    EXPECT_NE(messages.find(std::string("error: no support for ") + feature + " (SystemVerilog)"), std::string::npos)
        << messages;
  }
}

TEST(SystemVerilog, AssertionsMakeNoLogic) {
  Elaboration elaboration;
  const Netlist* netlist =
      elaboration.Elaborate("module m(input clk, a, output y);\nassign y = a;\n"
                            "property p(x); @(posedge clk) x |=> ##[1:2] a; endproperty\n"
                            "sequence s; a ##1 y; endsequence\n"
                            "assert property (p(y)) else $error(\"no\");\ncover property (@(posedge clk) s);\n"
                            "always_comb assert (a || !a);\nendmodule\n",
                            VERI_SV);
  ASSERT_NE(netlist, nullptr) << testing::PrintToString(Analysis::Messages());
  EXPECT_EQ(Analysis::Messages(), Lines{"1: warning: input port clk has no fan-out"});
}

} // namespace
