// Modules that are broken as it happens at the keyboard, in the files of the folder `broken`: each mistake is told
// once, where it is, and nothing else, in a file of its own and with other broken modules around it.
#include <filesystem>
#include <fstream>

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
  const std::string mark = "// error"; // then a number of lines from here behind "@", then ": " and the text
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
      const size_t at = line.find(mark);
      const size_t colon = at == std::string::npos ? at : line.find(": ", at);
      if (colon == std::string::npos) continue;
      const std::string place = line.substr(at + mark.size(), colon - at - mark.size());
      if (!place.empty() && place[0] != '@') continue;
      const int offset = place.empty() ? 0 : std::stoi(place.substr(1));
      section.errors.push_back({section.lines + static_cast<unsigned>(offset), line.substr(colon + 2)});
      section.ends_the_file |= section.errors.back().text == "near EOF";
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
