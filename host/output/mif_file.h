// Memory initialisation files as the front end writes them.
#ifndef HOST_MIF_FILE_H
#define HOST_MIF_FILE_H

#include <map>
#include <string>

class MIF_FILE {
public:
  /// False when the file cannot be read or does not have the form.
  bool read(const std::string& path);
  unsigned get_width() const { return m_width; }
  unsigned long get_depth() const { return m_depth; }
  /// Words by address, as binary digits with the most significant first.
  const std::map<unsigned long, std::string>& get_words() const { return m_words; }

private:
  bool read_line(const std::string& line);
  bool read_setting(const std::string& line);

  std::map<unsigned long, std::string> m_words;
  unsigned m_width = 0;
  unsigned long m_depth = 0;
};

#endif
