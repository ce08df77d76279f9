// User-defined primitives: checks of ports and tables, and what becomes of the rows. What the logic computes is
// compared with the tables by the equivalence tests.
#include <gtest/gtest.h>

#include "verilog/elaboration.h"

namespace {

/// A primitive of these ports and declarations, its table in line 3.
std::string Primitive(const std::string& ports, const std::string& declarations, const std::string& rows) {
  return "primitive m(" + ports + ");\n" + declarations + "\ntable\n" + rows + "\nendtable\nendprimitive\n";
}

std::string FirstError(const std::string& text) {
  Elaboration elaboration;
  Lines messages = elaboration.MessagesOf(text);
  return messages.empty() ? "" : messages.front();
}

std::string ErrorOfRows(const std::string& rows) {
  std::string message = FirstError(Primitive("q, a, b", "output q; reg q; input a, b;", rows));
  size_t text = message.find(": ");
  return text == std::string::npos ? message : message.substr(text + 2);
}

TEST(Udp, PortsAreAnOutputAndInputsOfOneBit) {
  EXPECT_EQ(FirstError(Primitive("a, b", "input a, b;", "0 : 1;")), "1: error: UDP has no output");
  EXPECT_EQ(FirstError(Primitive("a, y", "input a; output y;", "0 : 1;")),
            "1: error: UDP output must be the first port");
  EXPECT_EQ(FirstError(Primitive("y, a", "output y; input [1:0] a;", "0 : 1;")),
            "1: error: every UDP port must be a scalar");
  EXPECT_EQ(FirstError(Primitive("y, a", "output y; inout a;", "0 : 1;")),
            "1: error: inout ports not allowed on a UDP");
}

TEST(Udp, RowsHaveTheRightShape) {
  EXPECT_EQ(ErrorOfRows("0 1;"), "error: table entry without ':' IO separator : 01");
  EXPECT_EQ(ErrorOfRows("0 1 : 1 1 1;"), "error: present state ':' output field separator misplaced : 01:111");
  EXPECT_EQ(ErrorOfRows("0 1 : 1 1 1 1;"), "error: incorrect output field length found in table : 01:1111");
  EXPECT_EQ(ErrorOfRows("0 1 : ?;"), "error: illegal character ? in UDP table");
  EXPECT_EQ(ErrorOfRows("0 1 : -;"), "error: illegal character - in UDP table");
  EXPECT_EQ(ErrorOfRows("0 : 1;"), "error: incorrect number of inputs for table entry : 0:1");
  EXPECT_EQ(ErrorOfRows("0 0 0 : 1;"), "error: incorrect number of inputs for table entry : 000:1");
  EXPECT_EQ(ErrorOfRows("0 0 : 1; 0 1 : ? : 1;"),
            "error: sequential table entry found in combinational table : 01:?:1");
  EXPECT_EQ(ErrorOfRows("0 0 : ? : 1; 0 1 : 1;"), "error: missing 'present state' field in sequential table : 01:1");
  EXPECT_EQ(ErrorOfRows("r 0 : 1;"), "error: edge illegal in combinational table : r0:1");
  EXPECT_EQ(ErrorOfRows("* 0 : 1;"), "error: edge illegal in combinational table : *0:1");
  EXPECT_EQ(ErrorOfRows("r f : ? : 1;"), "error: table entry has more than one edge : rf:?:1");
}

TEST(Udp, OnlyOneEdgeChangesTheState) {
  EXPECT_EQ(ErrorOfRows("r ? : ? : 1; ? r : ? : 0;"),
            "error: table changes its state at the edges of more than one clock");
  EXPECT_EQ(ErrorOfRows("* 1 : ? : 1; * 0 : ? : 0;"),
            "error: table changes its state at the edges of more than one clock");
  EXPECT_EQ(ErrorOfRows("1 1 : 0 : 1; 1 1 : 1 : 0;"), "error: table changes its state back and forth");
}

TEST(Udp, AnEmptyTableMakesAnEmptyBox) {
  Elaboration elaboration;
  Netlist* netlist = elaboration.Elaborate(Primitive("y, a", "output y; input a;", ""));
  ASSERT_TRUE(netlist);
  EXPECT_TRUE(netlist->IsBlackBox());
  EXPECT_EQ(Elaboration::Messages().front(), "1: warning: empty table will create an empty box UDP");
}

struct Counts {
  size_t registers;
  size_t latches;
  size_t gates;
  bool operator==(const Counts&) const = default;
};

Counts CountsOf(const std::string& inputs, const std::string& rows) {
  Elaboration elaboration;
  Netlist* netlist = elaboration.Elaborate(Primitive("q, " + inputs, "output q; reg q; input " + inputs + ";", rows));
  EXPECT_TRUE(netlist) << rows;
  Counts counts = {Elaboration::InstancesOfType(netlist, PRIM_DFFRS).size(),
                   Elaboration::InstancesOfType(netlist, PRIM_DLATCHRS).size(), 0};
  for (prim_type_enum gate : {PRIM_AND, PRIM_OR, PRIM_MUX})
    counts.gates += Elaboration::InstancesOfType(netlist, gate).size();
  return counts;
}

TEST(Udp, RowsAreMergedBeforeGatesAreMade) {
  EXPECT_EQ(CountsOf("a, b, c", "0 0 0 : 0; 0 0 1 : 1; 0 1 0 : 0; 0 1 1 : 1; 1 ? 0 : 0; 1 ? 1 : 1;"),
            (Counts{0, 0, 0}));
  EXPECT_EQ(CountsOf("a, b", "0 ? : 0; ? 0 : 0; 1 1 : 1;"), (Counts{0, 0, 1}));
}

TEST(Udp, RowsWithAnUnknownSayNothing) {
  EXPECT_EQ(CountsOf("a, b", "0 0 : 0; x 1 : 0; 1 0 : x; 0 1 : 1; 1 1 : 1;"), (Counts{0, 0, 0}));
}

TEST(Udp, LevelsMakeALatchAndEdgesARegister) {
  EXPECT_EQ(CountsOf("e, d", "1 0 : ? : 0; 1 1 : ? : 1; 0 ? : ? : -;"), (Counts{0, 1, 0}));
  EXPECT_EQ(CountsOf("c, d", "r 0 : ? : 0; r 1 : ? : 1; f ? : ? : -; ? * : ? : -;"), (Counts{1, 0, 0}));
  // An edge whose level decides as well is no clock.
  EXPECT_EQ(CountsOf("c, d, r", "r 0 0 : ? : 0; r 1 0 : ? : 1; ? ? 1 : ? : 0; ? ? r : ? : 0; ? ? f : ? : -;"),
            (Counts{1, 0, 0}));
}

TEST(Udp, LargeTablesEnd) {
  std::string rows;
  for (unsigned i = 0; i < 4096; i++) {
    for (unsigned bit = 0; bit < 12; bit++) rows += i >> bit & 1 ? "1 " : "0 ";
    rows += (i * 2654435761U) >> 30 & 1 ? ": 1;\n" : ": 0;\n";
  }
  Elaboration elaboration;
  const std::string inputs = "a, b, c, d, e, f, g, h, i, j, k, l";
  EXPECT_TRUE(elaboration.Elaborate(Primitive("y, " + inputs, "output y; input " + inputs + ";", rows)));
}

} // namespace
