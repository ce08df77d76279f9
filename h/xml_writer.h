// Writes one XML element at a time into a stream: the name and attributes are gathered, then start() or end() write.
#ifndef XML_WRITER_H
#define XML_WRITER_H

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

class XML_WRITER {
public:
  /// Spaces of indentation per level.
  static constexpr unsigned INDENTATION = 2;

  explicit XML_WRITER(std::ostream& stream) : m_stream(stream) {}
  /// Begins a new element; nothing is written.
  void reset(const std::string& name);
  /// Values are escaped for an ISO-8859-1 document.
  void add_attribute(const std::string& name, const std::string& value);
  /// Writes the start tag at an indentation level; with `empty` the element is closed in the tag.
  void start(unsigned level, bool empty);
  /// Writes the end tag of a name.
  void end(const std::string& name, unsigned level);

private:
  std::ostream& m_stream;
  std::string m_name;
  std::vector<std::pair<std::string, std::string>> m_attributes;
};

#endif
