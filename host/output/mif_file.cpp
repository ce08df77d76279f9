// Reads addresses in decimal and words in binary: "ADDRESS : WORD;" and "[FIRST..LAST] : WORD;".
#include "mif_file.h"

#include <cstdlib>
#include <fstream>

#include "htl.h"

namespace {

/// Longer ranges would only be made by hand, and by mistake.
constexpr unsigned long MAX_RANGE = 1UL << 26;

} // namespace

bool MIF_FILE::read(const std::string& path) {
  std::ifstream stream(path);
  if (!stream) return false;
  std::string line;
  while (std::getline(stream, line))
    if (!read_line(line.substr(0, line.find("--")))) return false;
  return m_width != 0;
}

bool MIF_FILE::read_setting(const std::string& line) {
  static const HTL_REGEXP setting("\\s*(\\w+)\\s*=\\s*(\\w+)\\s*;\\s*");
  std::vector<std::string> groups;
  if (!setting.match(line.c_str(), &groups)) return false;
  if (groups[0] == "WIDTH") m_width = static_cast<unsigned>(std::strtoul(groups[1].c_str(), nullptr, 10));
  if (groups[0] == "DEPTH") m_depth = std::strtoul(groups[1].c_str(), nullptr, 10);
  return true;
}

bool MIF_FILE::read_line(const std::string& line) {
  static const HTL_REGEXP frame("\\s*(CONTENT\\s+BEGIN|END\\s*;)?\\s*");
  static const HTL_REGEXP word("\\s*\\[?(\\d+)(?:\\.\\.(\\d+)\\])?\\s*:\\s*([01xXzZ]+)\\s*;\\s*");
  if (frame.match(line.c_str()) || read_setting(line)) return true;
  std::vector<std::string> groups;
  if (!word.match(line.c_str(), &groups) || groups[2].size() != m_width) return false;
  unsigned long first = std::strtoul(groups[0].c_str(), nullptr, 10);
  unsigned long last = groups[1].empty() ? first : std::strtoul(groups[1].c_str(), nullptr, 10);
  if (last < first || last - first > MAX_RANGE) return false;
  for (unsigned long address = first; address <= last; address++) m_words[address] = groups[2];
  return true;
}
