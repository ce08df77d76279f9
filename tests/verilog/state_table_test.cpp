// State machines of sources: which variables get a register per state, and which stay numbers.
#include <gtest/gtest.h>

#include <map>

#include "database/fsm.h"
#include "database/net.h"
#include "util/strings.h"
#include "verilog/elaboration.h"

namespace {

/// The states of a machine with their codes in the source, in the machine's order.
std::string StatesOf(const Netlist* netlist, const char* machine) {
  const Fsm* fsm = netlist ? netlist->GetFsm(machine) : nullptr;
  if (!fsm) return "none";
  std::string text;
  for (unsigned pos = 0; pos < fsm->NumStates(); pos++) {
    const Instance* state = fsm->GetStateAt(pos);
    text += std::string(text.empty() ? "" : " ") + fsm->StateName(state) + "=" + fsm->UserEncoding(state);
    if (state == fsm->ResetState(1)) text += "*";
  }
  return text;
}

/// A module around a machine: `declaration` of the state, what a reset does, what a clock does, and what reads it.
std::string Machine(const std::string& declaration, const std::string& reset, const std::string& steps,
                    const std::string& readers, const std::string& edges = "posedge clk or posedge rst") {
  return "module m (input clk, rst, go, input [1:0] in, output y, output [2:0] z);\n"
         "localparam A = 3'd0, B = 3'd3, C = 3'd5;\n" +
         declaration + "\nalways @(" + edges + ")\nif (rst) begin " + reset + " end else begin " + steps + " end\n" +
         readers + "\nendmodule";
}

constexpr const char* walk = "case (s) A: if (go) s <= B; B: s <= C; default: s <= A; endcase";
constexpr const char* test = "assign y = s == C;";

TEST(StateTable, EnumerationsAndParametersNameTheStates) {
  Elaboration e;
  const Netlist* netlist = e.Elaborate("module m (input logic clk, rst, go, output logic y);\n"
                                       "typedef enum logic [2:0] {IDLE, ASK, HOLD = 3'd6} state_t; state_t s, next;\n"
                                       "always_ff @(posedge clk or posedge rst) if (rst) s <= ASK; else s <= next;\n"
                                       "always_comb begin next = s; case (s) IDLE: if (go) next = ASK;\n"
                                       "ASK: next = HOLD; HOLD: next = go ? IDLE : ASK; endcase end\n"
                                       "assign y = s == HOLD; endmodule",
                                       VERI_SV);
  EXPECT_EQ(StatesOf(netlist, "s"), "HOLD=110 ASK=001* IDLE=000");
  const Fsm* fsm = netlist->GetFsm("s");
  ASSERT_TRUE(fsm);
  EXPECT_TRUE(fsm->HasCleanReset());
  EXPECT_STREQ(fsm->Clock()->Name(), "clk");
  EXPECT_STREQ(fsm->Reset(1)->Name(), "rst");
}

TEST(StateTable, WhichVariablesAreMachines) {
  const std::pair<std::string, const char*> cases[] = {
      {Machine("reg [2:0] s;", "s <= A;", walk, test), "C=101 B=011 A=000*"},
      // A reset at the clock's edge; plain numbers are called by their digits; names that are no parameters count, too.
      {Machine("reg [2:0] s;", "s <= A;", walk, test, "posedge clk"), "C=101 B=011 A=000*"},
      {Machine("reg [2:0] s;", "s <= 1;", "case (s) 1: s <= 2; 2: if (go) s <= 4; 4: s <= 1; endcase",
               "assign y = s == 4;"),
       "100=100 010=010 001=001*"},
      // What the declaration says has to be the reset's state.
      {Machine("reg [2:0] s = A;", "s <= A;", walk, test), "C=101 B=011 A=000*"},
      {Machine("reg [2:0] s = B;", "s <= A;", walk, test), "none"},
      // The number leaves the module, and nothing computes with it.
      {Machine("reg [2:0] s; assign z = s;", "s <= A;", walk, test), "C=101 B=011 A=000*"},
      {Machine("reg [2:0] s; assign z = s + in;", "s <= A;", walk, test), "none"},
      {Machine("reg [2:0] s; assign z = s[1];", "s <= A;", walk, test), "none"},
      {Machine("reg [2:0] s; assign z = {s};", "s <= A;", walk, test), "none"},
      {Machine("reg [2:0] s; assign z = s < C;", "s <= A;", walk, test), "none"},
      {Machine("reg [2:0] s; assign z = s == in;", "s <= A;", walk, test), "none"},
      // What is assigned is no known constant.
      {Machine("reg [2:0] s;", "s <= A;", "case (s) A: s <= B; B: s <= C; default: s <= in; endcase", test), "none"},
      {Machine("reg [2:0] s;", "s <= A;", "case (s) A: s <= B; B: s <= C; default: s <= 3'bx; endcase", test), "none"},
      {Machine("reg [2:0] s;", "s <= A;", "s[0] <= go; if (s == A) s <= B; else if (s == B) s <= C;", test), "none"},
      // Patterns with wild digits, two states, no reset, a wish of the user.
      {Machine("reg [2:0] s;", "s <= A;", "casez (s) 3'b0?0: s <= B; B: s <= C; default: s <= A; endcase", test),
       "none"},
      {Machine("reg [2:0] s;", "s <= A;", "case (s) A: s <= C; C: s <= A; endcase", test), "none"},
      {Machine("reg [2:0] s;", ";", walk, test), "none"},
      {Machine("(* preserve *) reg [2:0] s;", "s <= A;", walk, test), "none"},
      // A source that is no machine, and a number that a wider constant never equals.
      {Machine("reg [2:0] s; reg [2:0] t; always @(posedge clk) t <= in;", "s <= A;",
               "case (s) A: s <= B; B: s <= C; default: s <= t; endcase", test),
       "none"},
      {Machine("reg [2:0] s;", "s <= A;", walk, "assign y = s == 11;"), "none"},
  };
  for (const auto& [source, states] : cases) {
    Elaboration e;
    const Netlist* netlist = e.Elaborate(source);
    ASSERT_TRUE(netlist) << source;
    EXPECT_EQ(StatesOf(netlist, "s"), states) << source;
  }
}

TEST(StateTable, FlagLeavesNumbersAndAttributesGoToTheMachine) {
  const std::string source = Machine("(* fsm_encoding = \"gray\" *) reg [2:0] s;", "s <= A;", walk, test);
  {
    Elaboration e;
    const Netlist* netlist = e.Elaborate(source);
    ASSERT_TRUE(netlist && netlist->GetFsm("s"));
    EXPECT_STREQ(netlist->GetFsm("s")->GetAttValue(ATT_FSM_ENCODING), "gray");
  }
  Elaboration e;
  e.services.flag_on = "zelk_dont_infer_verilog_fsms";
  EXPECT_EQ(StatesOf(e.Elaborate(source), "s"), "none");
}

TEST(StateTable, VariablesThatAreAssignedToEachOtherShareATable) {
  Elaboration e;
  const Netlist* netlist =
      e.Elaborate(Machine("reg [2:0] s, next, old;", "s <= A; old <= A;", "s <= next; old <= s;",
                          "always @* begin next = s; case (s) A: if (go) next = B; B: next = C; default: next = A; "
                          "endcase end assign y = old == C && s != C; assign z = old == A;"));
  ASSERT_TRUE(netlist);
  EXPECT_EQ(StatesOf(netlist, "s"), "C=101 B=011 A=000*");
  EXPECT_EQ(StatesOf(netlist, "old"), "C=101 B=011 A=000*");
  EXPECT_EQ(StatesOf(netlist, "next"), "none"); // no registers
}

} // namespace
