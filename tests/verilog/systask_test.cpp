// System tasks: messages of the user, memory files, and what is ignored.
#include <gtest/gtest.h>

#include "verilog/elaboration.h"

namespace {

/// The first message about statements in an initial construct of a module with some variables.
std::string MessageOf(const std::string& statements) {
  Elaboration elaboration;
  Lines lines = elaboration.MessagesOf("module m(input [3:0] in, output [7:0] out);\n"
                                       "reg [7:0] mem [0:3]; integer i; reg [7:0] r; assign out = mem[in[1:0]] ^ r;\n"
                                       "initial begin " +
                                       statements + " end\nendmodule\n");
  for (const std::string& line : lines)
    if (line.compare(0, 3, "3: ") == 0) return line.substr(3);
  return "no message";
}

std::string Displayed(const std::string& arguments) {
  std::string message = MessageOf("r = 8'hA5; i = -5; $display(" + arguments + ");");
  const std::string prefix = "info: verilog $display call: ";
  return message.compare(0, prefix.size(), prefix) == 0 ? message.substr(prefix.size()) : message;
}

TEST(SystemTask, DisplayFormatsItsArguments) {
  const struct {
    const char* arguments;
    const char* text;
  } cases[] = {
      {"\"plain %%\"", "plain %"},
      {"\"%d|%0d|%5d|%-5d|%05d\", r, r, r, r, r", "165|165|  165|165  |00165"},
      {"\"%d|%0d\", i, i", "         -5|-5"},
      {"\"%h|%H|%x|%0h\", r, 32'd10, 9'd3, 32'd10", "a5|0000000a|003|a"},
      {"\"%b|%0b|%o|%0o\", 6'd5, 6'd5, 9'd8, 9'd8", "000101|101|010|10"},
      {"\"%b %h %h %d %d\", 4'b1x0z, 8'bxxxx1x10, 8'hzz, 4'bxxxx, 4'bx001", "1x0z xX zz  x  X"},
      {"\"%s|%0s|%c\", \"ab\", \"ab\", 8'd65", "ab|ab|A"},
      {"\"%m\"", "m"},
      {"\"%0t %f %0.2f %e\", 12, 1.5, 2.0/3, 100.0", "12 1.500000 0.67 1.000000e+02"},
      {"\"%0d %0d\", 1", "1 %0d"},
      {"\"a\", r, \"b%0d\", i", "a165b-5"},
      {"\"%d\", in", "<non-constant>"},
      {"\"%0d\", 64'd18446744073709551615", "18446744073709551615"},
      {"\"%0d\", 70'sh3ffffffffffffffffe", "-2"},
      {"\"%y %\"", "%y %"},
  };
  for (const auto& c : cases) EXPECT_EQ(Displayed(c.arguments), c.text) << c.arguments;
}

TEST(SystemTask, AFieldHasABoundedWidth) {
  std::string text = Displayed("\"%999999999999d|\", r");
  EXPECT_GT(text.size(), 1000U);
  EXPECT_LT(text.size(), 5000U);
}

TEST(SystemTask, TheTextOfADisplayTellsItsSeverity) {
  EXPECT_EQ(MessageOf("$display(\"Info: Warning: x\");"), "info: verilog $display call: Info: Warning: x");
  EXPECT_EQ(MessageOf("$display(\"a Warning: Error:\");"), "warning: verilog $display call: a Warning: Error:");
  EXPECT_EQ(MessageOf("$display(\"Error: %0d\", 7);"), "error: verilog $display call: Error: 7");
  EXPECT_EQ(MessageOf("$display;"), "info: verilog $display call: ");
}

TEST(SystemTask, SeverityTasksReport) {
  EXPECT_EQ(MessageOf("$fatal(1, \"f%0d\", 2);"), "error: $fatal: f2");
  EXPECT_EQ(MessageOf("$fatal(\"f\");"), "error: $fatal: f");
  EXPECT_EQ(MessageOf("$error;"), "error: $error: ");
  EXPECT_EQ(MessageOf("$warning(\"w\");"), "warning: $warning: w");
  EXPECT_EQ(MessageOf("(* critical *) $warning(\"w\");"), "warning: critical $warning: w");
  EXPECT_EQ(MessageOf("(* critical = 0 *) $warning(\"w\");"), "warning: $warning: w");
  EXPECT_EQ(MessageOf("$info(\"%b\", 1'b1);"), "info: $info: 1");
}

TEST(SystemTask, OtherTasksAreIgnored) {
  for (const char* task : {"$finish;", "$monitor(\"%d\", r);", "$displayb(r);", "$dumpvars(0, m);"})
    EXPECT_EQ(MessageOf(task), "warning: system task ignored") << task;
}

TEST(SystemTask, ReadmemChecksItsArguments) {
  EXPECT_EQ(MessageOf("$readmemh(\"a\");"), "error: $readmemh expects at least 2 arguments but no more than 4");
  EXPECT_EQ(MessageOf("$readmemh(12, mem);"), "error: argument 1 to $readmemh must be a string");
  EXPECT_EQ(MessageOf("$readmemb(\"a\", r);"), "error: argument 2 to $readmemb must be a memory identifier");
  EXPECT_EQ(MessageOf("$readmemb(\"a\", mem[0]);"), "error: argument 2 to $readmemb must be a memory identifier");
  EXPECT_EQ(MessageOf("$readmemh(\"a\", mem, in);"), "error: argument 3 to $readmemh must be a constant");
  EXPECT_EQ(MessageOf("$readmemh(\"a\", mem, 0, in);"), "error: argument 4 to $readmemh must be a constant");
  EXPECT_EQ(MessageOf("$readmemh(\"no such file\", mem);"), "error: cannot open file no such file");
}

TEST(SystemTask, ReadmemGivesWordsAnInitialValueAndNotesTheFile) {
  Elaboration elaboration;
  std::string path = elaboration.AddFile("words", "1 2 c3 4");
  Netlist* netlist = elaboration.Elaborate("module m(input c, input [1:0] a, input [7:0] d, output [7:0] q);\n"
                                           "(* ramstyle = \"logic\" *) reg [7:0] mem [0:3]; assign q = mem[a];\n"
                                           "always @(posedge c) mem[a] <= d;\n"
                                           "initial $readmemh(\"" +
                                           path + "\", mem);\nendmodule\n");
  ASSERT_TRUE(netlist);
  unsigned ones = 0;
  for (const Instance* reg : Elaboration::InstancesOfType(netlist, PRIM_DFFRS)) {
    const char* value = reg->GetAttValue(ATT_INITIAL_VALUE);
    ASSERT_TRUE(value) << reg->Name();
    if (*value == '1') ones++;
  }
  EXPECT_EQ(ones, 1U + 1U + 4U + 1U);
  EXPECT_EQ(Elaboration::InstancesOfType(netlist, PRIM_DFFRS).size(), 32U);
  EXPECT_TRUE(VeriTreeNode::AdditionalDependencies()->Contains(path.c_str()));
}

} // namespace
