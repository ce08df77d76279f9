// Types of ports: ownership and text form.
#include "hdb_type.h"

namespace {

std::ostream& operator<<(std::ostream& stream, const HDB_RANGE& range) {
  return stream << '[' << range.left << (range.direction ? " downto " : " to ") << range.right << ']';
}

} // namespace

void HDB_LOGIC_TYPE::dump(std::ostream& stream) const {
  stream << "logic " << get_name() << (m_is_signed ? " signed" : "");
}

void HDB_SCALAR_TYPE::dump(std::ostream& stream) const {
  stream << "scalar " << get_name() << (m_is_signed ? " signed " : " ") << m_range;
}

void HDB_ARRAY_TYPE::dump(std::ostream& stream) const {
  stream << (m_is_packed ? "packed array " : "array ") << get_name();
  for (const HDB_RANGE& range : m_ranges) stream << ' ' << range;
  if (!m_element) return;
  stream << " of ";
  m_element->dump(stream);
}

HDB_HDL_TYPE* HDB_TYPE_DB::add_type(HDB_HDL_TYPE* type) {
  m_types.emplace_back(type);
  return type;
}

void HDB_TYPE_DB::dump(std::ostream& stream) const {
  for (const auto& type : m_types) {
    type->dump(stream);
    stream << '\n';
  }
}
