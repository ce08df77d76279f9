// Dumps: what is asked for by flags is written, and a dump of the same netlist is the same text.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "database/debussydump.h"
#include "netlist_bench.h"
#include "netlist_fixture.h"

namespace {
using ::testing::HasSubstr;

class Dumps : public ::testing::Test, public NetlistBench {
protected:
  void SetUp() override {
    Net* a = In("a");
    Drive(Out("y"), And(a, Pwr()));
    Out("q")->Wire(n->Dffrs(Inv(a), a, Gnd(), Gnd(), At(), "q"));
    ArrayOf<Net> word(2);
    word.Insert(a);
    word.Insert(a);
    Net* any = Out("any");
    n->ReduceOr(&word, &any, At());
    n->ResolveWires();
  }
};

TEST_F(Dumps, TextHasASectionForEachKindSortedByKindAndName) {
  std::ostringstream text;
  n->Dump(text);
  const std::string dump = text.str();
  size_t at = 0;
  for (const char* line : {"ZELK netlist dump of bench\n", "Instances 7\n", "Type:PRIM_PWR Conn:1/1", "Type:PRIM_GND",
                           "Type:PRIM_AND Conn:3/3", "Instance:q Type:PRIM_DFFRS Conn:5/8", "Type:OPER_REDUCE_OR",
                           "IO 4\n", "IO:a          IN       Net:a\n", "Nets ", "Net: auto~0", "\nFSMs: 0\n"}) {
    at = dump.find(line, at);
    ASSERT_NE(at, std::string::npos) << line << " in\n" << dump;
  }
  std::ostringstream again;
  n->Dump(again);
  EXPECT_EQ(again.str(), dump);
}

TEST_F(Dumps, ASingleObjectIsDumpedAsWithinItsNetlist) {
  std::ostringstream all;
  auto expect_part = [&](const auto* object) {
    std::ostringstream alone;
    object->Dump(alone);
    EXPECT_THAT(all.str(), HasSubstr(alone.str()));
  };
  auto* bus = new PortBus("p", DIR_INPUT, 0, 0);
  bus->Add(n->GetPort("a"));
  n->Add(bus);
  n->Dump(all);
  expect_part(n->GetNet("a"));
  expect_part(n->GetPort("a"));
  expect_part(bus);
  std::ostringstream indented;
  n->GetInst("q")->Dump(indented, 1);
  EXPECT_THAT(indented.str(), HasSubstr("  Instance:q Type:PRIM_DFFRS Conn:5/8"));
  EXPECT_THAT(indented.str(), HasSubstr("\n    Port:clk        IN       Net:a\n"));
}

TEST_F(Dumps, ViewerGetsAModuleForTheNetlistAndForEachComponent) {
  std::ostringstream text;
  DebussyDump(n, text);
  for (const char* part : {"module \\bench  (\n", "\tinput \\I:a ;\n", "\toutput \\O:y ;\n",
                           "\tassign \\N:a  = \\I:a ;\n", "\tsupply1 \\N:auto~", "\tand \\I:", "\\O:WideOr_2 ",
                           ".\\AI:a  ({\\N:a , \\N:a  })", "\\KESTRIN_DFFRS \\I:q (", "module \\KESTRIN_DFFRS  ("})
    EXPECT_THAT(text.str(), HasSubstr(part));
  EXPECT_LT(text.str().find("module \\KESTRIN_DFFRS "), text.str().find("module \\bench ")); // the netlist comes last
}

TEST_F(Dumps, ViewerGetsEachIdentifierOnce) {
  // Made-up names lose their blank; a net may have two constant drivers; cells of a unit differ by parameters.
  Named("x");
  n->Add(new Net(" x"));
  Net* twice = n->Pwr(0);
  Instance* other = n->Gnd(0)->Driver();
  other->Reconnect(other->View()->GetOutput(), twice);
  Library library("work");
  for (const char* name : {"m(8)", "m(9)"}) {
    auto* cell = new Cell(name);
    library.Add(cell);
    auto* view = new Netlist("INTERFACE");
    cell->Add(view);
    view->AddAtt(" cell_name", "m");
    n->Add(new Instance(nullptr, view));
  }
  std::ostringstream text;
  DebussyDump(n, text);
  for (const char* part : {"\twire \\N:x ;\n", "\twire \\N:x~ ;\n", "module \\m(8)  (", "module \\m(9)  ("})
    EXPECT_THAT(text.str(), HasSubstr(part));
  const bool pwr_counts = twice->Driver() != other;
  EXPECT_THAT(text.str(), HasSubstr(pwr_counts ? " = 1'b0 ;" : " = 1'b1 ;"));
}

TEST_F(Dumps, ClassSizesAreTold) {
  class Services : public KernelServices {
  public:
    void Debug(const char* text) override { lines.push_back(text); }
    std::vector<std::string> lines;
  } services;
  KernelServices::Set(&services);
  Database::PrintClassSizes();
  KernelServices::Set(nullptr);
  ASSERT_EQ(services.lines.size(), 14U);
  EXPECT_EQ(services.lines[0], "sizeof(Att)       = " + std::to_string(sizeof(Att)));
}

TEST_F(Dumps, FlagsByLabelAskForThem) {
  class Services : public TestServices {
  public:
    void Debug(const char* text) override { lines.push_back(text); }
    std::vector<std::string> lines;
  } services;
  n->AddAtt(" cell_name", "m(W,8)");
  n->AddAtt(" library_name", "work");
  KernelServices::Set(&services);
  n->NetlistDump("before_keep");
  EXPECT_TRUE(services.lines.empty());
  services.flags["zelk_dump_netlist_before_keep"] = 1;
  services.flags["zelk_debussy_dump_netlist_before_keep"] = 1;
  n->NetlistDump("before_keep");
  KernelServices::Set(nullptr);
  ASSERT_FALSE(services.lines.empty());
  EXPECT_EQ(services.lines[0], "Dumping ZELK netlist for entity bench");
}
} // namespace
