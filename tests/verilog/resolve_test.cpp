// Scopes and the binding of names.
#include <gtest/gtest.h>

#include "verilog/analysis.h"
#include "verilog/veri_tokens.h"
#include "verilog/veriscope.h"

namespace {

TEST(Resolve, ANameMayStandBeforeItsDeclaration) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve("module m(output y);\n"
                             "assign y = w;\n"
                             "wire w = 1'b0;\n"
                             "endmodule\n"),
            Lines{});
  EXPECT_TRUE(Analysis::Variable("m", "w")->Is(IDF_READ));
}

TEST(Resolve, OneRunTellsAllUndeclaredNames) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve("module m(input a, output reg y);\n"
                             "always @(a or b)\n"
                             "  y = c & f(a);\n"
                             "initial t(d);\n"
                             "initial $display(\"%b\", undeclared);\n"
                             "endmodule\n"),
            (Lines{"2: error: b is not declared", "3: error: c is not declared", "3: error: function f is not declared",
                   "4: error: task t is not declared", "4: error: d is not declared"}));
}

TEST(Resolve, ADesignUnitIsNoValue) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve("module n; endmodule\n"
                             "module m(output y);\n"
                             "assign y = n;\n"
                             "endmodule\n"),
            Lines{"3: error: n is not declared"});
}

// Implicit nets.

TEST(ImplicitNets, TargetsAndConnectionsDeclareThem) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve("module sub(input i, output o); assign o = i; endmodule\n"
                             "module m;\n"
                             "assign a = b;\n"
                             "sub u(.i(c), .o(d));\n"
                             "and g(e, c, d);\n"
                             "endmodule\n"),
            (Lines{"3: warning: created implicit net for a", "4: warning: created implicit net for c",
                   "4: warning: created implicit net for d", "5: warning: created implicit net for e",
                   "3: error: b is not declared"}));
  EXPECT_EQ(Analysis::Variable("m", "a")->NetType(), unsigned{VERI_WIRE});
}

TEST(ImplicitNets, Verilog95DeclaresNoTargets) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve("module m;\nassign a = 1'b0;\nendmodule\n", VERI_95),
            Lines{"2: error: a is not declared"});
}

TEST(ImplicitNets, TheNettypeIsThatOfTheHeadOfTheModule) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve("`default_nettype none\n"
                             "module m;\n"
                             "`default_nettype wand\n"
                             "assign a = 1'b0;\n"
                             "endmodule\n"
                             "module n;\n"
                             "assign a = 1'b0;\n"
                             "endmodule\n"),
            (Lines{"4: error: cannot declare implicit net a because the current value of `default_nettype is none",
                   "7: warning: created implicit net for a"}));
  EXPECT_EQ(Analysis::Variable("n", "a")->NetType(), unsigned{VERI_WAND});
}

TEST(ImplicitNets, EachRoundOfAGenerateLoopHasItsOwn) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve("module m;\n"
                             "genvar i;\n"
                             "generate for (i = 0; i < 2; i = i + 1) begin : b\n"
                             "  buf g(w, 1'b0);\n"
                             "end endgenerate\n"
                             "endmodule\n"),
            Lines{"4: warning: created implicit net for w"});
  const VeriIdDef* block = Analysis::Module("m")->GetScope()->FindHere("b");
  ASSERT_NE(block, nullptr);
  EXPECT_NE(block->LocalScope()->FindHere("w"), nullptr);
  EXPECT_EQ(Analysis::Module("m")->GetScope()->FindHere("w"), nullptr);
}

// Search.

TEST(Scope, NamesThatDifferInCaseGiveOneInfo) {
  Analysis analysis;
  EXPECT_TRUE(analysis.Read("module m;\nwire Foo;\nwire foo;\nendmodule\n"));
  EXPECT_EQ(Analysis::Messages(), Lines{"3: info: foo and Foo differ only in case."});
}

TEST(Scope, UnnamedBlocksOfStatementsHideTheirNames) {
  Analysis analysis;
  EXPECT_EQ(analysis.Errors("module m(output logic y);\n"
                            "initial begin\n"
                            "  int t;\n"
                            "  t = 1;\n"
                            "end\n"
                            "assign y = t;\n"
                            "endmodule\n",
                            VERI_SV),
            Lines{"6: error: t is not declared"});
}

TEST(Scope, UnnamedBlocksOfAGenerateShowTheirNames) {
  Analysis analysis;
  EXPECT_EQ(analysis.Errors("module m(output y, z);\n"
                            "generate if (1) begin\n"
                            "  wire t = 1'b1;\n"
                            "end else begin : b\n"
                            "  wire u = 1'b1;\n"
                            "end endgenerate\n"
                            "assign y = t;\n"
                            "assign z = u;\n"
                            "endmodule\n"),
            Lines{"8: error: u is not declared"});
}

TEST(Scope, NamesBehindAPrefix) {
  struct {
    const char* item;
    Lines errors;
  } const cases[] = {
      {"assign y = blk.v;", {}},
      {"assign y = blk.w;", {"8: error: w is not declared under this prefix"}},
      {"assign y = a.b;", {"8: error: b is not declared under this prefix"}},
      {"assign y = nothing.b;", {"8: error: nothing is not declared"}},
      {"assign y = u.anything.at_all;", {}},
      {"assign y = g[0].w;", {}},
      {"wire [blk.v:0] z;", {"8: error: constant expression cannot contain a hierarchical identifier"}},
  };
  for (const auto& c : cases) {
    Analysis analysis;
    EXPECT_EQ(analysis.Errors("module sub; endmodule\n"
                              "module m(input a, output y);\n"
                              "initial begin : blk\n"
                              "  reg v; v = 0;\n"
                              "end\n"
                              "sub u();\n"
                              "genvar i; generate for (i = 0; i < 2; i = i + 1) begin : g wire w; end endgenerate\n" +
                              std::string(c.item) + "\nendmodule\n"),
              c.errors)
        << c.item;
  }
}

TEST(Scope, MembersOfStructs) {
  Analysis analysis;
  EXPECT_EQ(analysis.Errors("module m(input logic a, output logic y, z);\n"
                            "typedef struct packed { logic x; struct packed { logic p; } in; } pair;\n"
                            "pair s;\n"
                            "assign s.x = a;\n"
                            "assign s.in.p = a;\n"
                            "assign y = s.q;\n"
                            "assign z = s.in.q;\n"
                            "endmodule\n",
                            VERI_SV),
            (Lines{"6: error: q is not declared under this prefix", "7: error: q is not declared under this prefix"}));
  EXPECT_TRUE(Analysis::Variable("m", "s")->Is(IDF_ASSIGNED));
}

TEST(Scope, IndicesHaveToFitTheArray) {
  struct {
    const char* value;
    veri_dialect dialect;
    const char* error; // null: fine
  } const cases[] = {
      {"v[1]", VERI_2K, nullptr},
      {"v[2:1]", VERI_2K, nullptr},
      {"mem[1]", VERI_2K, nullptr},
      {"mem[1][2]", VERI_2K, nullptr},
      {"i[3]", VERI_2K, nullptr},
      {"s[0]", VERI_2K, "cannot index into non-array s"},
      {"v[1][0]", VERI_2K, "indexed name specifies too many indices for array v"},
      {"mem[1][2][3]", VERI_2K, "indexed name specifies too many indices for array mem"},
      {"mem[2:1]", VERI_2K, "part-select of memory mem is not allowed"},
      {"cube[1]", VERI_2K, "indexed name does not fully index array cube"},
      {"cube[1]", VERI_SV, nullptr},
      {"v[cube[1]]", VERI_SV, "indexing cube returns an aggregate value"},
  };
  for (const auto& c : cases) {
    Analysis analysis;
    Lines expected;
    if (c.error) expected.push_back(std::string("5: error: ") + c.error);
    EXPECT_EQ(analysis.Errors("module m;\n"
                              "reg s; reg [3:0] v; integer i;\n"
                              "reg [3:0] mem [0:7];\n"
                              "reg [3:0] cube [0:7][0:7]; wire [31:0] y;\n"
                              "assign y = " +
                                  std::string(c.value) + ";\nendmodule\n",
                              c.dialect),
              expected)
        << c.value;
  }
}

TEST(Resolve, OnlyVariablesAreAssigned) {
  struct {
    const char* item;
    const char* error; // null: fine
  } const cases[] = {
      {"function f2; input x; f2 = x; endfunction", nullptr},
      {"assign f = a;", "cannot assign to non-variable f"},
      {"assign u = a;", "cannot assign to non-variable u"},
      {"initial blk = 1;", "cannot assign to non-variable blk"},
      {"initial P = 1;", "cannot assign to non-variable P"},
      {"initial {v, P} = 1;", "cannot assign to non-variable P"},
      {"initial blk.v = 1;", nullptr},
      {"wire z = u[0];", "cannot index into non-array u"},
  };
  for (const auto& c : cases) {
    Analysis analysis;
    Lines expected;
    if (c.error) expected.push_back(std::string("6: error: ") + c.error);
    EXPECT_EQ(analysis.Errors("module m(input a);\n"
                              "parameter P = 1; reg v;\n"
                              "sub u();\n"
                              "initial begin : blk reg v; v = 0; end\n"
                              "function f; input x; f = x; endfunction\n" +
                              std::string(c.item) + "\nendmodule\n"),
              expected)
        << c.item;
  }
}

TEST(Elaboration, TellsWhereAPathBreaks) {
  struct {
    const char* path;
    const char* error; // null: fine
  } const cases[] = {
      {"lp[1].w", nullptr},
      {"lp[1].in.w", nullptr},
      {"lp[7].w", "cannot resolve hierarchy path element lp[7] - no matching declaration"},
      {"lp[1].v", "cannot resolve hierarchy path element v - no matching declaration"},
      {"lp[1][0].w", "hierarchical prefix lp[1][0] has too many indicies"},
      {"never.w", "cannot resolve hierarchy path element never - no matching declaration"},
      {"u.w", "external reference u.w not supported for synthesis"},
      {"f.x", "can't synthesize hierarchical reference to object x declared in function or task"},
  };
  for (const auto& c : cases) {
    Analysis analysis;
    ASSERT_TRUE(analysis.Read("module sub; endmodule\n"
                              "module m(input a, output y);\n"
                              "sub u();\n"
                              "genvar i;\n"
                              "generate for (i = 0; i < 2; i = i + 1) begin : lp\n"
                              "  wire w = a; if (i == 1) begin : in wire w = ~a; end\n"
                              "end if (0) begin : never wire w = a; end endgenerate\n"
                              "function f; input x; f = x; endfunction\n"
                              "assign y = " +
                              std::string(c.path) + ";\nendmodule\n"));
    Analysis::Messages();
    veri_file::ElaborateAll("work");
    Lines errors;
    for (const std::string& line : Analysis::Messages())
      if (line.find(": error: ") != std::string::npos) errors.push_back(line);
    EXPECT_EQ(errors, c.error ? Lines{std::string("9: error: ") + c.error} : Lines{}) << c.path;
  }
}

// Packages.

constexpr const char* two_packages = "package p; parameter A = 1; parameter B = 2; endpackage\n"
                                     "package q; parameter A = 3; parameter C = 4; endpackage\n";

TEST(Import, ANameOfTwoWildcardsIsAmbiguous) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve(std::string(two_packages) + "module m;\nimport p::*, q::*;\nwire [A:0] w;\nendmodule\n",
                             VERI_SV),
            (Lines{"3: error: A was imported from multiple packages with ::* - none of the imported declarations are "
                   "visible",
                   "1: info: see declaration of A", "2: info: see declaration of A", "5: error: A is not declared"}));
}

TEST(Import, AnAmbiguousNameThatNobodyUsesIsFine) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve(std::string(two_packages) + "module m;\nimport p::*, q::*;\nwire [B+C:0] w;\nendmodule\n",
                             VERI_SV),
            Lines{});
}

TEST(Import, ANameIsImportedOnce) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve(std::string(two_packages) + "module m;\n"
                                                         "import p::A, q::A;\n"
                                                         "import p::A;\n"
                                                         "import p::Z, r::*;\n"
                                                         "endmodule\n",
                             VERI_SV),
            (Lines{"4: error: A is already declared", "1: info: see declaration of A",
                   "6: error: Z is not declared in package p", "6: error: package r is not declared"}));
}

TEST(Import, AUnitDependsOnThePackagesThatItUsesAndOnTheirFiles) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("package p; parameter A = 1; endpackage\n", VERI_SV, "p.sv"));
  EXPECT_EQ(analysis.Errors("module m;\nwire [p::A:0] w;\nwire [p::B:0] v;\nendmodule\n", VERI_SV),
            Lines{"3: error: B is not declared in package p"});
  const VeriModule* module = Analysis::Module("m");
  EXPECT_EQ(module->GetId()->Dependents().Size(), 1U);
  ASSERT_EQ(module->Dependencies()->Size(), 1U);
  EXPECT_NE(std::string(FromWord<const char*>(module->Dependencies()->GetAt(0))).find("p.sv"), std::string::npos);
}

TEST(Dependencies, AGenericPortMakesEachInterfaceOne) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("interface i; logic a; endinterface\n", VERI_SV, "i.sv"));
  EXPECT_EQ(analysis.Errors("interface j; logic a; endinterface\n"
                            "module generic(interface p); endmodule\nmodule named(j p); endmodule\n",
                            VERI_SV),
            Lines());
  ASSERT_EQ(Analysis::Module("generic")->Dependencies()->Size(), 1U);
  EXPECT_NE(std::string(FromWord<const char*>(Analysis::Module("generic")->Dependencies()->GetAt(0))).find("i.sv"),
            std::string::npos);
  const Set* none = Analysis::Module("named")->Dependencies();
  EXPECT_TRUE(!none || none->Size() == 0);
}

// Heads.

TEST(Module, BodyParametersBecomeLocalBesideAListInTheHead) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve("module m #(parameter W = 1)(input [W:0] a);\n"
                             "parameter V = 2;\n"
                             "input b;\n"
                             "endmodule\n"),
            (Lines{"2: warning: parameter declaration becomes local in m with formal parameter declaration list",
                   "3: error: port declaration not allowed in m with formal port declaration list"}));
  ASSERT_EQ(Analysis::Module("m")->OverridableParams().size(), 1U);
  EXPECT_STREQ(Analysis::Module("m")->OverridableParams()[0]->Name(), "W");
}

TEST(Module, PortsComeInTheOrderOfTheHead) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve("module m(c, {a, b}, .x(d), e, f);\n"
                             "output c; input a, b; inout [1:0] d; wire e; parameter P = 1;\n"
                             "endmodule\n"),
            (Lines{"1: error: e is not a port", "1: error: f is not declared"}));
  std::string names;
  for (const VeriVariable* port : Analysis::Module("m")->Ports()) names += port->Name();
  EXPECT_EQ(names, "cabd");
}

TEST(Module, AnExternDeclarationWithoutPortDeclarationsIsIgnored) {
  Analysis analysis;
  EXPECT_EQ(analysis.Resolve("extern module m(a, b);\n", VERI_SV),
            Lines{"1: warning: ignored extern module declaration with list of ports"});
}

// Interfaces.

constexpr auto bus_text = "interface bus(input logic clk);\n"
                          "logic d, v; function automatic int f(int x); return x; endfunction\n"
                          "modport mst(output d, import f, input .low(v)), slv(input d);\n"
                          "endinterface\n";

TEST(Interface, PortsOfferWhatTheInterfaceOrItsModportLists) {
  Analysis analysis;
  EXPECT_EQ(
      analysis.Errors(std::string(bus_text) +
                          "module m(bus b, bus.mst p, bus.slv s [2], interface g, bus.foo q, unknown u, n k);\n"
                          "assign b.d = b.v & b.clk & b.x;\n"
                          "assign p.d = p.low;\n"
                          "assign p.v = s[0].d & g.anything & u.anything;\n"
                          "initial b.d = p.f(1) + s[1].clk;\n"
                          "endmodule\n"
                          "module n; endmodule\n",
                      VERI_SV),
      (Lines{"5: error: interface bus has no modport foo", "5: error: unknown is not declared",
             "5: error: n is not declared", "6: error: x is not declared under this prefix",
             "8: error: v is not declared under this prefix", "9: error: clk is not declared under this prefix"}));
  const VeriVariable* port = Analysis::Variable("m", "p");
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(port->GetInterface(), Analysis::Module("bus"));
  ASSERT_NE(port->GetModport(), nullptr);
  EXPECT_EQ(port->GetModport()->FindPort("d")->Object(), Analysis::Variable("bus", "d"));
  EXPECT_TRUE(Analysis::Variable("m", "g")->IsGenericInterfacePort());
}

TEST(Interface, AModportListsObjectsOfTheInterface) {
  Analysis analysis;
  EXPECT_EQ(analysis.Errors("interface bus;\nlogic d;\nmodport m(input d, e, import d);\nmodport m(input d, d);\n"
                            "endinterface\n",
                            VERI_SV),
            (Lines{"3: error: d is already declared", "4: error: m is already declared",
                   "4: error: d is already declared", "1: error: design unit bus ignored due to previous errors"}));
  EXPECT_EQ(analysis.Errors("interface bus2;\nlogic d;\nmodport m(input d, e,\nimport g);\nendinterface\n", VERI_SV),
            (Lines{"3: error: modport port e does not correspond to an object in the enclosing interface",
                   "4: error: modport port g does not correspond to an object in the enclosing interface"}));
}

TEST(Interface, APortOfOneHasNeitherDirectionNorValue) {
  Analysis analysis;
  EXPECT_EQ(analysis.Errors("module m(\ninput bus b,\nbus c = 1);\nendmodule\n", VERI_SV),
            (Lines{"2: error: can't declare interface port with a direction",
                   "3: error: interface ports can't have initial values",
                   "1: error: design unit m ignored due to previous errors"}));
}

TEST(Module, ANestedOneIsKnownInsideOnly) {
  Analysis analysis;
  EXPECT_EQ(analysis.Errors("module top(input logic a, output logic y);\n"
                            "  parameter W = 2;\n"
                            "  module inner(input logic [W-1:0] x, output logic z); assign z = x[0] & q; endmodule\n"
                            "  inner i(.x({a, a}), .z(y));\n"
                            "endmodule\n",
                            VERI_SV),
            Lines{"3: error: q is not declared"});
  EXPECT_EQ(Analysis::Module("inner"), nullptr);
  const VeriModule* inner = Analysis::Module("top")->GetScope()->FindNestedModule("inner");
  ASSERT_NE(inner, nullptr);
  EXPECT_EQ(inner->EnclosingModule(), Analysis::Module("top"));
  EXPECT_TRUE(Analysis::Variable("top", "y")->Is(IDF_ASSIGNED)) << "by the direction of the nested module's port";
}

TEST(Module, TypeParametersStandAmongTheOthersInOrder) {
  Analysis analysis;
  EXPECT_EQ(
      analysis.Errors("module m #(int W = 1, parameter type T = logic, U = bit, localparam type L = T, int V = 2);"
                      "\nT t; L l;\nendmodule\n",
                      VERI_SV),
      Lines());
  std::string names;
  for (const VeriValuedId* formal : Analysis::Module("m")->OverridableFormals()) names += formal->Name();
  EXPECT_EQ(names, "WTUV");
  EXPECT_EQ(Analysis::Module("m")->TypeParams().size(), 3U);
}

TEST(Generate, OnlyTheLoopAssignsToItsGenvar) {
  Analysis analysis;
  EXPECT_EQ(analysis.Errors("module m;\n"
                            "genvar i; integer k;\n"
                            "generate for (i = 0; i < 2; i = i + 1) begin : b\n"
                            "  initial i = 1;\n"
                            "end endgenerate\n"
                            "generate for (k = 0; k < 2; k = k + 1) begin : c end endgenerate\n"
                            "endmodule\n"),
            (Lines{"4: error: cannot assign to generate variable i here", "6: error: k is not a genvar"}));
}

TEST(Generate, ALoopMayHaveAGenvarOfItsOwn) {
  Analysis analysis;
  EXPECT_EQ(analysis.Errors("module m(output [1:0] y, z, output w);\n"
                            "for (genvar i = 0; i < 2; i++) begin : a wire t; assign t = 1; assign y[i] = t; end\n"
                            "for (genvar i = 0; i < 2; i++) begin : b assign z[i] = a[1-i].t; end\n"
                            "assign w = i;\n"
                            "endmodule\n",
                            VERI_SV),
            Lines{"4: error: i is not declared"});
}

TEST(Defparam, WaitsAtItsInstance) {
  Analysis analysis;
  EXPECT_EQ(analysis.Errors("module sub; parameter W = 1; endmodule\n"
                            "module m;\n"
                            "wire w;\n"
                            "sub u();\n"
                            "defparam u.W = 8;\n"
                            "defparam w = 1;\n"
                            "defparam v.W = 1;\n"
                            "endmodule\n"),
            (Lines{"6: error: w is not a parameter", "7: error: v is not declared"}));
  auto* instance = dynamic_cast<VeriInstId*>(Analysis::Module("m")->GetScope()->FindHere("u"));
  ASSERT_NE(instance, nullptr);
  EXPECT_EQ(instance->Defparams().size(), 1U);
}

// Use.

TEST(Use, IsNotedOnTheIdentifier) {
  Analysis analysis;
  EXPECT_EQ(analysis.Errors("module sub(input i, output o); assign o = i; endmodule\n"
                            "module m(input clk);\n"
                            "wire in_known, out_known, unknown; reg twice, once, initialised, indexed; integer count;\n"
                            "sub sub(.i(in_known), .o(out_known));\n"
                            "other v(.i(unknown));\n"
                            "always @(posedge clk) begin twice = 0; twice = 1; once = 0; count = count + 1; end\n"
                            "initial begin initialised = 0; initialised = 1; $display(\"%b\", once[indexed]); end\n"
                            "endmodule\n"),
            Lines{});
  struct {
    const char* name;
    bool is_read, is_assigned, is_multi_assigned;
  } const cases[] = {{"in_known", true, false, false}, {"out_known", false, true, false},
                     {"unknown", true, true, false},   {"twice", false, true, true},
                     {"once", false, true, false},     {"initialised", false, true, false},
                     {"count", true, true, false},     {"clk", true, false, false}};
  for (const auto& c : cases) {
    const VeriVariable* id = Analysis::Variable("m", c.name);
    EXPECT_EQ(id->Is(IDF_READ) != 0, c.is_read) << c.name;
    EXPECT_EQ(id->Is(IDF_ASSIGNED) != 0, c.is_assigned) << c.name;
    EXPECT_EQ(id->Is(IDF_MULTI_ASSIGNED) != 0, c.is_multi_assigned) << c.name;
  }
}

TEST(Use, ObjectsThatServeNoPurposeAreTold) {
  Analysis analysis;
  ASSERT_EQ(analysis.Resolve("module m(input a, output y);\n"
                             "wire unused;\n"
                             "wire unread = a;\n"
                             "wire unassigned;\n"
                             "supply0 ground;\n"
                             "assign y = unassigned & ground;\n"
                             "endmodule\n"),
            Lines{});
  Analysis::Module("m")->GetScope()->CheckUse();
  EXPECT_EQ(Analysis::Messages(), (Lines{"2: info: object unused declared but not used",
                                         "3: warning: object unread assigned a value but never read",
                                         "4: warning: object unassigned used but never assigned"}));
}

TEST(Use, AVariableThatOnlyCountsIsKnown) {
  Analysis analysis;
  ASSERT_EQ(analysis.Errors("module m(input clk, input [3:0] a, output reg [3:0] y, output [3:0] z);\n"
                            "integer i, j, k;\n"
                            "always @* for (i = 0; i < 4; i = i + 1) y[i] = a[i];\n"
                            "always @(posedge clk) begin for (j = 0; j < 4; j = j + 1) ; k = 0; end\n"
                            "assign z = j;\n"
                            "endmodule\n"),
            Lines{});
  EXPECT_TRUE(Analysis::Variable("m", "i")->IsCounterOnly());
  EXPECT_FALSE(Analysis::Variable("m", "j")->IsCounterOnly());
  EXPECT_FALSE(Analysis::Variable("m", "k")->IsCounterOnly());
}

// Generated scopes, made by hand as elaboration makes them.

struct Templates {
  VeriScope unit{SCOPE_UNIT, nullptr, nullptr};
  VeriBlockId body_id{"b", 1};
  VeriScope body{SCOPE_GENERATE, &unit, &body_id};
  VeriVariable net{"n", VERI_WIRE, 1};
  VeriBlockId block_id{"s", 1};
  VeriVariable local{"l", 0, 1};
  VeriScope block{SCOPE_BLOCK, &body, &block_id};
  VeriScope root{SCOPE_UNIT, nullptr, nullptr}; // of what is generated, which refers to all of the above

  Templates() {
    body.Declare(&net);
    body.Declare(&block_id);
    block.Declare(&local);
  }
};

TEST(GeneratedScope, EachRoundHasClonesOfItsOwn) {
  Templates t;
  VeriScope* first = t.body.Generate(&t.root, "b[0]");
  VeriScope* second = t.body.Generate(&t.root, "b[1]");
  EXPECT_EQ(t.root.FindGenerated("b[1]"), second);
  EXPECT_EQ(t.root.FindGenerated("b"), nullptr);
  EXPECT_EQ(t.net.Current(), &t.net);
  {
    VeriGeneratedScope outer(first);
    EXPECT_EQ(t.net.Current(), first->FindHere("n"));
    EXPECT_EQ(t.net.Current()->Template(), &t.net);
    {
      VeriGeneratedScope inner(second);
      EXPECT_EQ(t.net.Current(), second->FindHere("n"));
    }
    EXPECT_EQ(t.net.Current(), first->FindHere("n"));
    EXPECT_TRUE(t.net.Current()->Is(IDF_IN_GENERATE));
  }
  EXPECT_EQ(t.net.Current(), &t.net);
}

TEST(GeneratedScope, BlocksOfStatementsAreClonedWithTheirNames) {
  Templates t;
  VeriScope* round = t.body.Generate(&t.root, "b[0]");
  VeriGeneratedScope entered(round);
  const VeriScope* block = round->FindHere("s")->LocalScope();
  ASSERT_NE(block, nullptr);
  EXPECT_NE(block, &t.block);
  EXPECT_EQ(t.local.Current(), block->FindHere("l"));
  EXPECT_EQ(block->GetOwner(), round->FindHere("s"));
  EXPECT_EQ(t.block_id.LocalScope(), &t.block);
}

TEST(GeneratedScope, BodiesBelowAreMadeWhenTheyArePicked) {
  Templates t;
  VeriBlockId inner_id("i", 1);
  VeriScope inner(SCOPE_GENERATE, &t.body, &inner_id);
  VeriVariable deep("d", VERI_WIRE, 1);
  inner.Declare(&deep);
  VeriScope root(SCOPE_UNIT, nullptr, nullptr);
  VeriScope* round = t.body.Generate(&root, "b[0]");
  EXPECT_EQ(round->FindGenerated("i"), nullptr);
  VeriScope* picked = inner.Generate(round, "i");
  EXPECT_EQ(round->FindGenerated("i"), picked);
  EXPECT_EQ(picked->Find("n"), round->FindHere("n"));
  EXPECT_EQ(deep.Current(), &deep);
}

TEST(GeneratedScope, AnUnnamedBranchStandsForItsNameFromOutside) {
  VeriScope unit(SCOPE_UNIT, nullptr, nullptr);
  VeriBlockId then_id("", 1);
  VeriBlockId else_id("", 2);
  VeriScope then_body(SCOPE_GENERATE, &unit, &then_id);
  VeriScope else_body(SCOPE_GENERATE, &unit, &else_id);
  VeriVariable then_net("n", VERI_WIRE, 1);
  VeriVariable else_net("n", VERI_WIRE, 2);
  then_body.Declare(&then_net);
  else_body.Declare(&else_net);
  EXPECT_EQ(unit.Find("n"), &then_net);

  VeriScope root(SCOPE_UNIT, nullptr, nullptr);
  unit.PushStack();
  const VeriScope* picked = else_body.Generate(&root, "genblk1");
  EXPECT_EQ(then_net.Current(), picked->FindHere("n")) << "the name was bound before the branch was picked";
  EXPECT_EQ(else_net.Current(), picked->FindHere("n"));
  unit.PopStack();
  EXPECT_EQ(then_net.Current(), &then_net);
}

TEST(GeneratedScope, ALabelIsGivenOnce) {
  MessageLog log;
  Templates t;
  VeriScope* first = t.body.Generate(&t.root, "b");
  t.body.Generate(&t.root, "b");
  EXPECT_EQ(t.root.FindGenerated("b"), first);
  EXPECT_EQ(MessageLog::Take(), (Lines{"1: error: b is already declared", "1: info: see declaration of b"}));
}

TEST(Scope, IdentifiersAndScopesMayDieInEitherOrder) {
  auto scope = std::make_unique<VeriScope>(SCOPE_UNIT, nullptr, nullptr);
  VeriVariable first("a", VERI_WIRE, 1);
  {
    VeriVariable second("b", VERI_WIRE, 1);
    EXPECT_TRUE(scope->Declare(&first));
    EXPECT_TRUE(scope->Declare(&second));
    EXPECT_FALSE(scope->Declare(&second));
  }
  EXPECT_EQ(scope->Find("b"), nullptr);
  scope.reset();
  EXPECT_EQ(first.DeclaringScope(), nullptr);
}

TEST(MutableState, ComesBackAsItWas) {
  VeriParamId id("p", VERI_PARAMETER, 1);
  id.SetValue(VeriValue::FromInteger(1));
  id.Set(IDF_READ);
  std::unique_ptr<VeriIdDef> saved = id.SaveMutable();
  EXPECT_EQ(id.VeriValuedId::GetValue(), nullptr);
  id.SetValue(VeriValue::FromInteger(2));
  id.Set(IDF_RAM);
  id.RestoreMutable(std::move(saved));
  ASSERT_NE(id.VeriValuedId::GetValue(), nullptr);
  EXPECT_EQ(id.VeriValuedId::GetValue()->Integer(), 1);
  EXPECT_TRUE(id.Is(IDF_READ));
  EXPECT_FALSE(id.Is(IDF_RAM));
}

} // namespace
