// Files, libraries and the driver of the Verilog front end.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "verilog/analysis.h"

namespace {

const VeriLibrary& work() { return *veri_file::GetLibrary("work"); }

std::string unit_names() {
  std::string names;
  for (const VeriDesignUnit* unit : work().Units()) names += std::string(names.empty() ? "" : " ") + unit->Name();
  return names;
}

TEST(Library, TheFirstOfTwoModulesStays) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("module m(input a); endmodule\n"));
  VeriModule* first = Analysis::Module("m");
  EXPECT_FALSE(analysis.Read("\nmodule m; endmodule\n", VERI_2K, "second.v"));
  EXPECT_EQ(Analysis::Messages(),
            (Lines{"2: error: a declaration for module m already exists", "1: info: m is declared here"}));
  EXPECT_EQ(Analysis::Module("m"), first);
  EXPECT_TRUE(veri_file::NewlyFound().Size() == 0);
}

TEST(Library, UnitsBeforeASyntaxErrorStay) {
  Analysis analysis;
  EXPECT_FALSE(analysis.Read("module a; endmodule\n"
                             "module b; endmodule\n"
                             "module c; wire = ; endmodule\n"
                             "module d; endmodule\n"));
  EXPECT_EQ(unit_names(), "a b");
}

TEST(Library, AnExternDeclarationGivesWayToTheModule) {
  for (const char* text : {"extern module m(input a);\nmodule m(input a); endmodule\n",
                           "module m(input a); endmodule\nextern module m(input a);\n",
                           "extern module m(input a);\nextern module m(input a);\nmodule m(input a); endmodule\n"}) {
    Analysis analysis;
    EXPECT_TRUE(analysis.Read(text, VERI_SV)) << text;
    ASSERT_EQ(unit_names(), "m") << text;
    EXPECT_FALSE(Analysis::Module("m")->IsExtern()) << text;
    EXPECT_EQ(veri_file::NewlyFound().Size(), 1U) << text;
  }
}

TEST(Library, PackagesHaveNamesOfTheirOwn) {
  Analysis analysis;
  EXPECT_TRUE(analysis.Read("package m; endpackage\nmodule m; endmodule\n", VERI_SV));
  EXPECT_NE(work().GetPackage("m"), nullptr);
  EXPECT_NE(work().GetModule("m"), nullptr);
  EXPECT_FALSE(analysis.Read("package m; endpackage\n", VERI_SV, "second.sv"));
  EXPECT_EQ(Analysis::Messages(), (Lines{"1: error: m is already declared", "1: info: m is declared here"}));
}

TEST(Library, CaseCountsUnlessSaidOtherwise) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("module Top; endmodule\n"));
  EXPECT_EQ(veri_file::GetLibrary("WORK"), nullptr);
  EXPECT_EQ(veri_file::GetLibrary("WORK", 0, 0), veri_file::GetLibrary("work"));
  EXPECT_EQ(work().GetModule("top"), nullptr);
  EXPECT_EQ(work().GetModule("top", 0), work().GetModule("Top"));
  VeriLibrary* other = veri_file::GetLibrary("WORK", 1);
  EXPECT_NE(other, &work());
  EXPECT_EQ(veri_file::GetLibrary("WORK"), other);
}

TEST(Library, ARemovedUnitMayComeAgain) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("package p; parameter A = 1; endpackage\nmodule m; wire [p::A:0] w; endmodule\n", VERI_SV));
  veri_file::UnresolvedDesignUnits().Insert(Analysis::Module("m")->GetId());
  Analysis::Module("m")->Resolve();
  VeriLibrary* library = veri_file::GetLibrary("work");
  library->RemoveDesignUnit(library->GetPackage("p"));
  EXPECT_EQ(Analysis::Module("m")->GetId()->Dependents().Size(), 0U);
  library->RemoveDesignUnit(Analysis::Module("m"));
  EXPECT_EQ(veri_file::UnresolvedDesignUnits().Size(), 0U);
  EXPECT_EQ(unit_names(), "");
  EXPECT_TRUE(analysis.Read("module m; endmodule\n"));
}

TEST(Library, GlobalDeclarationsAreResolvedOnce) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("parameter A = B;\nparameter B = 1;\nmodule m; wire [A:0] w; endmodule\n", VERI_SV));
  Set done;
  VeriLibrary* library = veri_file::GetLibrary("work");
  library->ResolveGlobals(&done);
  EXPECT_EQ(done.Size(), 2U);
  done.Reset();
  library->ResolveGlobals(&done);
  EXPECT_EQ(done.Size(), 0U);
  Analysis::Module("m")->Resolve();
  EXPECT_EQ(Analysis::Messages(), Lines{});
}

TEST(Library, ADeclarationIsGlobalOnlyInSystemVerilog) {
  Analysis analysis;
  EXPECT_FALSE(analysis.Read("parameter A = 1;\nmodule m; endmodule\n"));
  EXPECT_EQ(Analysis::Messages(), (Lines{"1: error: declaring global objects is a SystemVerilog feature",
                                         "2: error: design unit m ignored due to previous errors"}));
  EXPECT_EQ(work().GlobalItems().Size(), 1U);
}

TEST(Library, MacrosOfAUnitAreKept) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("`define W 8\n`define F(x) x\nmodule m; wire [`W:0] w; assign w = `F(1); endmodule\n"));
  const std::vector<VeriMacroNode>& macros = *Analysis::Module("m")->GetId()->GetMacros();
  ASSERT_EQ(macros.size(), 2U);
  EXPECT_EQ(macros[0].key, "W");
  EXPECT_EQ(macros[0].value, "8");
  EXPECT_NE(macros[0].location.find("main.v:1"), std::string::npos) << macros[0].location;
  EXPECT_EQ(macros[1].key, "Fx");
}

TEST(Files, AFileThatIsNotThereIsNoSuccess) {
  Analysis analysis;
  EXPECT_EQ(analysis.file.Analyze("/nowhere/nothing.v", VERI_2K), 0U);
  EXPECT_EQ(Analysis::Messages(), Lines{});
}

TEST(Files, EachUnitKeepsItsDialect) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("module old; reg logic; endmodule\n", VERI_2K, "old.v"));
  ASSERT_TRUE(analysis.Read("module young; logic l; endmodule\n", VERI_SV, "young.sv"));
  EXPECT_EQ(Analysis::Module("old")->GetDialect(), VERI_2K);
  EXPECT_EQ(Analysis::Module("young")->GetDialect(), VERI_SV);
}

TEST(Files, AnalysisTellsWhatItFoundAndWhatItRead) {
  Analysis analysis;
  analysis.AddFile("inc.vh", "module included; endmodule\n");
  ASSERT_TRUE(analysis.Read("`include \"inc.vh\"\nmodule m; endmodule\n"));
  EXPECT_EQ(veri_file::NewlyFound().Size(), 2U);
  ASSERT_EQ(veri_file::DependentFiles().Size(), 1U);
  ASSERT_TRUE(analysis.Read("module n; endmodule\n", VERI_2K, "n.v"));
  EXPECT_EQ(veri_file::NewlyFound().Size(), 1U);
  EXPECT_EQ(veri_file::DependentFiles().Size(), 0U);
}

TEST(Files, LibraryDirectoriesNeedTheVeryName) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("module top; endmodule\n", VERI_2K, "top.v", "user"));
  const std::string folder = std::filesystem::path(analysis.AddFile("sub.v", "module sub; endmodule\n")).parent_path();
  analysis.AddFile("Other.v", "module other; endmodule\n");
  analysis.AddFile("third.sv", "module third; endmodule\n");
  EXPECT_EQ(veri_file::FindUnknownModule("sub"), nullptr);
  veri_file::AddYDir(folder.c_str());
  EXPECT_EQ(veri_file::FindUnknownModule("other"), nullptr);
  EXPECT_EQ(veri_file::FindUnknownModule("third"), nullptr);
  const VeriModule* module = veri_file::FindUnknownModule("sub");
  ASSERT_NE(module, nullptr);
  EXPECT_STREQ(module->GetLibrary()->Name(), "work");
  veri_file::RemoveYDir(folder.c_str());
  EXPECT_EQ(veri_file::FindUnknownModule("sub"), nullptr);
}

TEST(Files, IncludesAreSoughtInTheOrderOfTheDirectories) {
  Analysis analysis;
  const std::string path = analysis.AddFile("file.vh", "");
  const std::string folder = std::filesystem::path(path).parent_path();
  EXPECT_EQ(veri_file::IncludeFileName("file.vh"), nullptr);
  EXPECT_STREQ(veri_file::IncludeFileName(path.c_str()).get(), path.c_str());
  veri_file::AddIncludeDir("/nowhere");
  veri_file::AddIncludeDir(folder.c_str());
  EXPECT_STREQ(veri_file::IncludeFileName("file.vh").get(), (folder + "/file.vh").c_str());
  EXPECT_EQ(veri_file::IncludeFileName("").get(), nullptr);
  veri_file::RemoveAllIncludeDirs();
  EXPECT_EQ(veri_file::IncludeFileName("file.vh"), nullptr);
}

TEST(Files, TheUserMayStopAndBlackBox) {
  Analysis analysis;
  EXPECT_FALSE(veri_file::CheckForInterrupt(0));
  veri_file::RegisterInterrupt([](unsigned long) { return 1U; });
  EXPECT_TRUE(veri_file::CheckForInterrupt(LineFile::EncodeLineFile("f", 7)));
  EXPECT_EQ(Analysis::Messages(), Lines{"7: error: Verilog reader: User Interrupt. Cleaning up...."});
  veri_file::RegisterInterrupt(nullptr);
  EXPECT_FALSE(veri_file::Blackboxed("m"));
  veri_file::RegisterBlackboxed([](const char* name) { return Strings::compare(name, "m"); });
  EXPECT_TRUE(veri_file::Blackboxed("m"));
  EXPECT_FALSE(veri_file::Blackboxed("n"));
  veri_file::RegisterBlackboxed(nullptr);
}

TEST(Files, AnUnknownUnitIsNotElaborated) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("module m; endmodule\n"));
  EXPECT_EQ(veri_file::Elaborate("n", "work", nullptr), 0U);
  EXPECT_EQ(Analysis::Messages(), Lines{"0: info: module n is not yet analyzed (no id)"});
}

TEST(Files, PrintedSourceReadsBackAsTheSameSource) {
  Analysis analysis;
  ASSERT_TRUE(analysis.Read("module m #(parameter W = 4)(input [W-1:0] a, output reg [W-1:0] y);\n"
                            "localparam L = W;\n"
                            "always @(a) begin : b\n  integer i;\n  for (i = 0; i < L; i = i + 1) y[i] = a[i];\nend\n"
                            "endmodule\n"
                            "module n(a, \\b.c );\n input a; output \\b.c ; assign \\b.c = a;\nendmodule\n"));
  auto print = [&analysis](const char* name) {
    const std::string path = analysis.AddFile(name, "");
    EXPECT_TRUE(veri_file::PrettyPrint(path.c_str(), nullptr, "work"));
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
  };
  const std::string first = print("first.v");
  veri_file::RemoveAllLibraries();
  ASSERT_TRUE(analysis.Read(first)) << first << Analysis::Messages()[0];
  EXPECT_EQ(unit_names(), "m n");
  EXPECT_EQ(print("second.v"), first);
  EXPECT_FALSE(veri_file::PrettyPrint("/nowhere/x.v", nullptr, "work"));
  EXPECT_FALSE(veri_file::PrettyPrint("x.v", "nothing", "work"));
}

} // namespace
