// Reads file lists and rewrites plus options.
#include "arguments.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "fio.h"

namespace {

using WORDS = std::vector<std::string>;

/// Options whose value is a path.
bool has_path(const std::string& option) {
  for (const char* known : {"-I", "-y", "-f", "-o", "--project"})
    if (option == known) return true;
  return false;
}

std::string replace_variables(const std::string& line) {
  std::string result;
  for (size_t at = 0; at < line.size();) {
    if (line[at] != '$') {
      result += line[at++];
      continue;
    }
    bool has_braces = at + 1 < line.size() && line[at + 1] == '{';
    size_t first = at + (has_braces ? 2 : 1);
    size_t end = first;
    while (end < line.size() && (std::isalnum(static_cast<unsigned char>(line[end])) || line[end] == '_')) end++;
    std::string name = line.substr(first, end - first);
    const char* value = std::getenv(name.c_str());
    if (name.empty() || (has_braces && (end >= line.size() || line[end] != '}'))) {
      result += line[at++]; // a lone dollar sign
      continue;
    }
    if (!value) throw USAGE_ERROR("the environment has no variable \"" + name + "\"");
    result += value;
    at = end + (has_braces ? 1 : 0);
  }
  return result;
}

/// The words of a line. Quotes keep blanks in a word; "#" and "//" begin a comment at the start of one, since a path
/// may hold them.
WORDS words_of(const std::string& line) {
  WORDS words;
  bool is_quoted = false;
  bool is_in_word = false;
  for (size_t at = 0; at < line.size(); at++) {
    char c = line[at];
    bool is_blank = !is_quoted && std::isspace(static_cast<unsigned char>(c));
    if (!is_in_word && !is_blank && (c == '#' || line.compare(at, 2, "//") == 0)) break;
    if (is_blank) {
      is_in_word = false;
      continue;
    }
    if (!is_in_word) words.emplace_back();
    is_in_word = true;
    if (c == '"')
      is_quoted = !is_quoted;
    else
      words.back() += c;
  }
  if (is_quoted) throw USAGE_ERROR("a quote in a file list is not closed: " + line);
  return words;
}

WORDS split(const std::string& text, char separator) {
  WORDS parts;
  std::stringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);)
    if (!part.empty()) parts.push_back(part);
  return parts;
}

class FLATTENER {
public:
  explicit FLATTENER(const TAKES_VALUE& takes_value) : m_takes_value(takes_value) {}
  void add(const WORDS& words, const std::string& directory);
  WORDS take() { return std::move(m_result); }

private:
  void add_list(const std::string& path);
  bool add_plus_option(const std::string& word, const std::string& directory);
  void add_pair(const std::string& option, const std::string& value) {
    m_result.push_back(option);
    m_result.push_back(value);
  }
  static std::string resolve(const std::string& path, const std::string& directory) {
    return path.empty() || path[0] == '/' ? path : directory + path;
  }

  const TAKES_VALUE& m_takes_value;
  WORDS m_result;
  WORDS m_open; // lists being read
};

bool FLATTENER::add_plus_option(const std::string& word, const std::string& directory) {
  for (const auto& [prefix, option] : {std::pair{"+define+", "-D"}, std::pair{"+incdir+", "-I"}}) {
    if (word.rfind(prefix, 0) != 0) continue;
    for (const std::string& part : split(word.substr(std::string(prefix).size()), '+'))
      add_pair(option, has_path(option) ? resolve(part, directory) : part);
    return true;
  }
  if (word.size() < 2 || word[0] != '+') return false;
  throw USAGE_ERROR("unknown option " + word + "; of the options with a plus there are +define+ and +incdir+");
}

void FLATTENER::add(const WORDS& words, const std::string& directory) {
  for (size_t i = 0; i < words.size(); i++) {
    const std::string& word = words[i];
    if (add_plus_option(word, directory)) continue;
    if (word.size() < 2 || word[0] != '-') {
      m_result.push_back(resolve(word, directory));
      continue;
    }
    bool is_joined = word[1] != '-' && word.size() > 2;             // -Idir
    size_t equals = is_joined ? std::string::npos : word.find('='); // --option=value
    bool has_equals = equals != std::string::npos;
    std::string option = is_joined ? word.substr(0, 2) : word.substr(0, equals);
    bool takes_next = !is_joined && !has_equals && m_takes_value(option);
    if (takes_next && i + 1 == words.size()) throw USAGE_ERROR("option " + option + " needs a value");
    if (!has_path(option)) {
      m_result.push_back(word);
      if (takes_next) m_result.push_back(words[++i]);
      continue;
    }
    std::string path = resolve(is_joined    ? word.substr(2)
                               : has_equals ? word.substr(equals + 1)
                                            : words[++i],
                               directory);
    if (option == "-f")
      add_list(path);
    else
      add_pair(option, path);
  }
}

void FLATTENER::add_list(const std::string& path) {
  std::string full = FIO_PATH(path).fullpath();
  if (std::find(m_open.begin(), m_open.end(), full) != m_open.end())
    throw USAGE_ERROR("file list \"" + path + "\" includes itself");
  std::ifstream stream(path);
  if (!stream || FIO_FILE_SYSTEM::is_directory(path.c_str()))
    throw USAGE_ERROR("can't read file list \"" + path + "\"");
  WORDS words;
  for (std::string line; std::getline(stream, line);) {
    for (const std::string& word : words_of(line)) words.push_back(replace_variables(word));
  }
  m_open.push_back(full);
  add(words, FIO_PATH(path).directory());
  m_open.pop_back();
}

} // namespace

std::vector<std::string> flatten_arguments(const std::vector<std::string>& arguments, const TAKES_VALUE& takes_value) {
  FLATTENER flattener(takes_value);
  flattener.add(arguments, "");
  return flattener.take();
}
