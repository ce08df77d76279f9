// Lines of source files for the display under a message. Files are read once and kept.
#ifndef HOST_SOURCE_LINES_H
#define HOST_SOURCE_LINES_H

#include <map>
#include <string>
#include <vector>

class SOURCE_LINES {
public:
  /// The line without its end, tabs as blanks; false when the file or the line is not there.
  bool get(const std::string& file, int line, std::string& text);

private:
  struct FILE_TEXT {
    std::string text;
    std::vector<size_t> starts; // of each line
  };
  const FILE_TEXT& load(const std::string& file);

  std::map<std::string, FILE_TEXT> m_files;
};

#endif
