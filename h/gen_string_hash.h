// A hash table from strings to integers. Keys are copied.
#ifndef GEN_STRING_HASH_H
#define GEN_STRING_HASH_H

#include <string>
#include <string_view>
#include <unordered_map>

class GEN_STRING_HASH {
public:
  /// Inserts or overwrites.
  void insert(const char* key, int value) { m_table.insert_or_assign(key, value); }
  /// False, with `value` untouched, when the key is absent.
  bool find(const char* key, int& value) const {
    auto entry = m_table.find(std::string_view(key));
    if (entry == m_table.end()) return false;
    value = entry->second;
    return true;
  }
  bool contains(const char* key) const { return m_table.find(std::string_view(key)) != m_table.end(); }
  bool remove(const char* key) { return m_table.erase(key) != 0; }
  unsigned size() const { return static_cast<unsigned>(m_table.size()); }
  void clear() { m_table.clear(); }

private:
  struct HASH {
    using is_transparent = void;
    size_t operator()(std::string_view key) const { return std::hash<std::string_view>()(key); }
  };
  std::unordered_map<std::string, int, HASH, std::equal_to<>> m_table;
};

#endif
