// Reads source files once and finds their lines.
#include "source_lines.h"

#include <algorithm>

#include "fio.h"

namespace {

/// A line this long is generated text, of which the beginning is enough.
constexpr size_t MAX_SHOWN = 240;

std::string read_whole(const std::string& name) {
  std::string text;
  FILE* file = FIO_FILE_SYSTEM::open(name.c_str(), "rb");
  if (!file) return text;
  char block[1 << 16];
  while (size_t count = FIO_FILE_SYSTEM::read(block, sizeof block, file)) text.append(block, count);
  FIO_FILE_SYSTEM::close(file);
  return text;
}

/// Blanks for tabs, and for what a terminal would obey.
std::string printable(std::string text) {
  for (char& c : text)
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = ' ';
  return text;
}

} // namespace

const SOURCE_LINES::FILE_TEXT& SOURCE_LINES::load(const std::string& file) {
  auto [at, is_new] = m_files.try_emplace(file);
  FILE_TEXT& loaded = at->second;
  if (!is_new) return loaded;
  loaded.text = read_whole(file);
  for (size_t start = 0; start < loaded.text.size();) {
    loaded.starts.push_back(start);
    size_t end = loaded.text.find('\n', start);
    start = end == std::string::npos ? loaded.text.size() : end + 1;
  }
  return loaded;
}

bool SOURCE_LINES::get(const std::string& file, int line, std::string& text) {
  const FILE_TEXT& loaded = load(file);
  if (line < 1 || static_cast<size_t>(line) > loaded.starts.size()) return false;
  size_t start = loaded.starts[static_cast<size_t>(line) - 1];
  size_t end = std::min(loaded.text.find('\n', start), loaded.text.size());
  text = printable(loaded.text.substr(start, std::min(end - start, MAX_SHOWN)));
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return true;
}
