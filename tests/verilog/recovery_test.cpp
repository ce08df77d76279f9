// Modules that are broken as it happens at the keyboard, in the files of the folder `broken`: each mistake is told
// once, where it is, and nothing else, in a file of its own and with other broken modules around it.
#include <filesystem>
#include <fstream>
#include <regex>

#include <gtest/gtest.h>

#include "verilog/analysis.h"

namespace {

struct Expected {
  unsigned line; // of the section
  std::string text;
};

struct Broken {
  std::string title;
  std::string source;
  unsigned lines = 0;
  std::vector<Expected> errors;
  bool ends_the_file = false; // what is wrong shows at the end of the input only
};

std::vector<Broken> ReadSections(const std::string& file) {
  static const std::regex expectation("// error(?:@([-+]\\d+))?: (.*)$");
  const std::string head = "// ---- ";
  std::vector<Broken> sections;
  std::ifstream in(std::string(ZELK_SOURCE_DIR "/tests/verilog/broken/") + file);
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with(head)) {
      sections.push_back({line.substr(head.size()), "", 0, {}});
    } else if (!sections.empty()) {
      Broken& section = sections.back();
      section.source += line + "\n";
      section.lines++;
      std::smatch match;
      if (!std::regex_search(line, match, expectation)) continue;
      const int offset = match[1].matched ? std::stoi(match[1]) : 0;
      section.errors.push_back({section.lines + static_cast<unsigned>(offset), match[2]});
      section.ends_the_file |= match[2].str() == "near EOF";
    }
  }
  return sections;
}

/// Whether the errors of a text are those that these sections in a row expect.
void ExpectErrors(const std::vector<const Broken*>& sections, veri_dialect dialect) {
  std::string text;
  std::vector<Expected> expected;
  unsigned lines = 0;
  for (const Broken* section : sections) {
    for (const Expected& error : section->errors) expected.push_back({lines + error.line, error.text});
    text += section->source;
    lines += section->lines;
  }
  Analysis analysis;
  Lines errors = analysis.Errors(text, dialect);
  std::erase_if(errors, [](const std::string& line) { return line.ends_with("ignored due to previous errors"); });
  SCOPED_TRACE(sections.front()->title);
  ASSERT_EQ(errors.size(), expected.size()) << testing::PrintToString(errors);
  for (size_t i = 0; i < errors.size(); i++) {
    EXPECT_TRUE(errors[i].starts_with(std::to_string(expected[i].line) + ": error: ")) << errors[i];
    EXPECT_NE(errors[i].find(expected[i].text), std::string::npos) << errors[i] << " for " << expected[i].text;
  }
}

struct File {
  const char* name;
  veri_dialect dialect;
  size_t sections;
};

constexpr File files[] = {{"v2001.txt", VERI_2K, 70}, {"sv2005.txt", VERI_SV, 30}};

TEST(BrokenModules, TellTheirMistakeOnce) {
  for (const File& file : files) {
    const std::vector<Broken> sections = ReadSections(file.name);
    EXPECT_GE(sections.size(), file.sections);
    for (const Broken& section : sections) ExpectErrors({&section}, file.dialect);
  }
}

TEST(BrokenModules, DoNotSpoilTheModulesBehindThem) {
  constexpr size_t together = 5; // which stays below the number of errors that end an analysis
  for (const File& file : files) {
    const std::vector<Broken> sections = ReadSections(file.name);
    std::vector<const Broken*> group;
    for (const Broken& section : sections) {
      if (!section.ends_the_file) group.push_back(&section);
      if (group.size() < together) continue;
      ExpectErrors(group, file.dialect);
      group.clear();
    }
  }
}

} // namespace
