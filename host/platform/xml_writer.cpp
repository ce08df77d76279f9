// Start and end tags with escaped attributes.
#include "xml_writer.h"

#include <ostream>

namespace {

void write_escaped(std::ostream& stream, const std::string& text) {
  for (char c : text) {
    switch (c) {
    case '&': stream << "&amp;"; break;
    case '<': stream << "&lt;"; break;
    case '>': stream << "&gt;"; break;
    case '"': stream << "&quot;"; break;
    case '\n': stream << "&#10;"; break;
    default: stream << c;
    }
  }
}

} // namespace

void XML_WRITER::reset(const std::string& name) {
  m_name = name;
  m_attributes.clear();
}

void XML_WRITER::add_attribute(const std::string& name, const std::string& value) {
  m_attributes.emplace_back(name, value);
}

void XML_WRITER::start(unsigned level, bool empty) {
  m_stream << std::string(level * INDENTATION, ' ') << '<' << m_name;
  for (const auto& [name, value] : m_attributes) {
    m_stream << ' ' << name << "=\"";
    write_escaped(m_stream, value);
    m_stream << '"';
  }
  m_stream << (empty ? "/>\n" : ">\n");
}

void XML_WRITER::end(const std::string& name, unsigned level) {
  m_stream << std::string(level * INDENTATION, ' ') << "</" << name << ">\n";
}
