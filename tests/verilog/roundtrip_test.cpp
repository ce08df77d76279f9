// What is printed reads back as the same tree: over all sources of this tree, in each dialect that takes them.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "verilog/analysis.h"
#include "verilog/verivisitor.h"

namespace {

constexpr veri_dialect dialects[] = {VERI_95, VERI_2K, VERI_SV};

std::string PrintedLibrary() {
  std::ostringstream out;
  veri_file::GetLibrary("work")->PrettyPrint(out, 0);
  return out.str();
}

/// The packages and interfaces that a file of a design in SystemVerilog may name: what its list has before it.
std::vector<std::string> SourcesBefore(const std::filesystem::path& source) {
  std::vector<std::string> before;
  const std::filesystem::path folder = source.parent_path().parent_path();
  std::ifstream list(source.extension() == ".sv" ? folder / "files.f" : "");
  for (std::string line; std::getline(list, line) && folder / line != source;)
    if (!line.empty() && line[0] != '#' && line[0] != '-') before.push_back((folder / line).string());
  return before;
}

/// The library after the file was read; empty when it is refused, and its messages then.
std::string ReadAndPrint(const std::string& path, veri_dialect dialect, std::string* messages) {
  Analysis analysis;
  bool is_legal = true;
  for (const std::string& before : SourcesBefore(path))
    is_legal = is_legal && analysis.file.Analyze(before.c_str(), dialect) != 0;
  is_legal = is_legal && analysis.file.Analyze(path.c_str(), dialect) != 0;
  for (const std::string& line : Analysis::Messages()) *messages += line + "\n";
  return is_legal ? PrintedLibrary() : std::string();
}

std::vector<std::filesystem::path> SourcesBelow(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> sources;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    if (entry.path().extension() == ".v" || entry.path().extension() == ".sv") sources.push_back(entry.path());
  return sources;
}

/// The dialects that take the file, as bits; what the last of the others said. Reports what is not printed as it was
/// read.
unsigned ReadBack(const std::filesystem::path& source, std::string* refusal) {
  SCRATCH_DIR folder;
  unsigned legal = 0;
  for (const veri_dialect dialect : dialects) {
    SCOPED_TRACE(source.string() + " in dialect " + std::to_string(dialect));
    std::string messages;
    const std::string once = ReadAndPrint(source.string(), dialect, &messages);
    if (once.empty()) {
      *refusal = messages;
      continue;
    }
    legal |= 1U << dialect;
    messages.clear();
    EXPECT_EQ(ReadAndPrint(folder.write("printed.v", once), dialect, &messages), once) << messages;
  }
  return legal;
}

TEST(RoundTrip, EverySourceOfThisTreeReadsBackInEachDialectThatTakesIt) {
  unsigned count = 0;
  for (const char* folder : {"/examples", "/tests"})
    for (const std::filesystem::path& source : SourcesBelow(std::string(ZELK_SOURCE_DIR) + folder)) {
      std::string refusal;
      const unsigned legal = ReadBack(source, &refusal);
      // Some tests are about what is refused, and the stimulus of simulations is part of a module.
      const std::string path = source.string();
      const bool is_no_file = path.find("/tests/source/") != path.npos || path.find("/stimulus/") != path.npos;
      EXPECT_TRUE(legal || is_no_file) << source << " is legal in no dialect\n" << refusal;
      if (legal) count++;
    }
  EXPECT_GT(count, 30U);
}

/// Writes designs of the generator, of each of its dialects, into a folder.
int Generate(const SCRATCH_DIR& folder, unsigned seeds) {
  const std::string program =
      folder.write("generate.py", "import collections, gendesign, sys\n"
                                  "for dialect, suffix in ('v', 'v'), ('s', 'sv'):\n"
                                  "    for seed in range(int(sys.argv[2])):\n"
                                  "        design = gendesign.make_design(seed, dialect, collections.Counter())\n"
                                  "        with open(f'{sys.argv[1]}/designs/{dialect}{seed}.{suffix}', 'w') as out:\n"
                                  "            out.write(str(design.root))\n");
  std::filesystem::create_directory(folder.path("designs"));
  const std::string command = "PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=" ZELK_SOURCE_DIR "/tests/equivalence python3 " +
                              program + " " + folder.path("") + " " + std::to_string(seeds);
  return std::system(command.c_str());
}

TEST(RoundTrip, GeneratedDesignsReadBack) {
  constexpr unsigned seeds = 40;
  SCRATCH_DIR folder;
  ASSERT_EQ(Generate(folder, seeds), 0);
  const std::vector<std::filesystem::path> sources = SourcesBelow(folder.path("designs"));
  EXPECT_EQ(sources.size(), 2 * seeds);
  for (const std::filesystem::path& source : sources) {
    std::string refusal;
    EXPECT_TRUE(ReadBack(source, &refusal)) << source << "\n" << refusal;
  }
}

TEST(RoundTrip, TheConstructsOfADialectAreTakenByItAndThoseAfterIt) {
  const std::string folder = ZELK_SOURCE_DIR "/tests/verilog/constructs/";
  constexpr unsigned sv = 1U << VERI_SV;
  std::string refusal;
  EXPECT_EQ(ReadBack(folder + "v95.v", &refusal), (1U << VERI_95) | (1U << VERI_2K) | sv) << refusal;
  EXPECT_EQ(ReadBack(folder + "v2001.v", &refusal), (1U << VERI_2K) | sv) << refusal;
  EXPECT_EQ(ReadBack(folder + "sv2005.sv", &refusal), sv) << refusal;
}

/// Counts the nodes of each class.
class Census : public VeriVisitor {
public:
#define VERI_CLASS(name, base)                                                                                         \
  void Visit(name& node) override {                                                                                    \
    counts[ID_##name]++;                                                                                               \
    VeriVisitor::Visit(node);                                                                                          \
  }
#include "verilog/veri_classes.def"
  unsigned counts[ID_VERI_END] = {};
};

TEST(RoundTrip, TheConstructsHaveANodeOfEveryClass) {
  Census census;
  for (const char* name : {"v95.v", "v2001.v", "sv2005.sv"}) {
    Analysis analysis;
    const std::string path = std::string(ZELK_SOURCE_DIR "/tests/verilog/constructs/") + name;
    ASSERT_TRUE(analysis.file.Analyze(path.c_str(), *name == 's' ? VERI_SV : VERI_2K)) << name;
    census.TraverseNode(veri_file::GetLibrary("work"));
  }
  std::string missing;
#define VERI_CLASS(name, base)                                                                                         \
  if (!census.counts[ID_##name]) missing += #name " ";
#include "verilog/veri_classes.def"
  EXPECT_EQ(missing, "");
}

} // namespace
