// Everything that the sources of the examples and of the tests are elaborated to is saved and comes back as it was,
// from a file of either byte order; a damaged file of any of these netlists does no harm.
#include <filesystem>
#include <fstream>

#include "containers/assertion.h"
#include "support/damaged_file.h"
#include "verilog/elaboration.h"

namespace {

class Persistence : public testing::TestWithParam<std::filesystem::path> {
protected:
  static void TearDownTestSuite() { DamagedFile::PrintTries(); }

  /// The file, or those of a design in the order of its list: packages come first.
  static std::vector<std::filesystem::path> SourcesOf(const std::filesystem::path& source) {
    if (!std::filesystem::is_directory(source)) return {source};
    std::vector<std::filesystem::path> files;
    std::ifstream list(source / "files.f");
    for (std::string line; std::getline(list, line);)
      if (!line.empty() && line[0] != '#' && line[0] != '-') files.push_back(source / line);
    return files;
  }

  /// Elaborates each module of the files as if it were the top.
  static unsigned ElaborateAll(Elaboration& elaboration, const std::filesystem::path& source) {
    for (const std::filesystem::path& file : SourcesOf(source))
      elaboration.file.Analyze(file.c_str(), file.extension() == ".sv" ? VERI_SV : VERI_2K);
    std::vector<std::string> names;
    for (VeriDesignUnit* unit : veri_file::GetLibrary("work")->Units())
      if (unit->IsModule() && !unit->IsInterface()) names.emplace_back(unit->Name());
    unsigned elaborated = 0;
    for (const std::string& name : names) elaborated += veri_file::Elaborate(name.c_str(), "work", nullptr) != 0;
    return elaborated;
  }

  static Library* Restore(const std::string& path) {
    SaveRestore stream(path.c_str(), 1);
    auto* library = new Library(stream);
    return library->InstallRestored(stream, Libset::Global());
  }
};

TEST_P(Persistence, ElaboratedDesignsComeBackAsTheyWere) {
  static std::vector<std::string> reports;
  reports.clear();
  kestrin_set_report_handler([](const char* text, const char*, int) { reports.emplace_back(text); });
  Elaboration elaboration;
  ASSERT_GT(ElaborateAll(elaboration, GetParam()), 0U);
  Library* work = Libset::Global()->GetLibrary("work");
  ASSERT_NE(work, nullptr);
  const std::string before = DumpOf(work);
  const std::string path = TemporaryFile("persistence_" + GetParam().stem().string());
  std::string bytes = BytesOfSaved(work, path);
  for (bool swapped : {false, true}) {
    if (swapped) {
      const ByteSwapper swap(bytes);
      WriteBytes(path, bytes);
    }
    ForgetDesigns();
    Library* restored = Restore(path);
    ASSERT_NE(restored, nullptr) << swapped;
    const std::string after = DumpOf(restored);
    const size_t at = static_cast<size_t>(
        std::mismatch(before.begin(), before.end(), after.begin(), after.end()).first - before.begin());
    EXPECT_TRUE(after == before) << (swapped ? "swapped: " : "") << before.substr(at < 100 ? 0 : at - 100, 300)
                                 << "\n--- came back as\n"
                                 << after.substr(at < 100 ? 0 : at - 100, 300);
  }
  std::filesystem::remove(path);
  for (const std::string& report : reports) EXPECT_EQ(report, "netlists with parameters are not meant to be saved");

  std::vector<DamagedFile> damaged;
  for (Cell* cell : CellsOf(Libset::Global()->GetLibrary("work")))
    for (Netlist* netlist : NetlistsOf(cell)) damaged.emplace_back(netlist);
  ForgetDesigns();
  std::mt19937 random(damaged.size());
  for (DamagedFile& file : damaged) file.Try(random);
  kestrin_set_report_handler(nullptr);
}

std::vector<std::filesystem::path> Sources() {
  std::vector<std::filesystem::path> sources;
  for (const auto& entry : std::filesystem::directory_iterator(ZELK_EXAMPLES))
    if (entry.is_directory()) sources.push_back(entry.path());
  for (const char* folder : {ZELK_RTL, ZELK_CORPUS})
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      if (entry.path().extension() == ".v" || entry.path().extension() == ".sv") sources.push_back(entry.path());
  std::sort(sources.begin(), sources.end());
  return sources;
}

INSTANTIATE_TEST_SUITE_P(Sources, Persistence, testing::ValuesIn(Sources()), [](const auto& source) {
  return source.param.parent_path().stem().string() + "_" + source.param.stem().string();
});

} // namespace
