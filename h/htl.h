// The host's containers and helpers: hash tables, tokens, regular expressions, hashes of strings, profiling scopes.
#ifndef HTL_H
#define HTL_H

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

/// A hash table that remembers the order of insertion, so that walks over it are the same on every run.
template <class KEY, class VALUE> class HTL_HASH {
public:
  using ENTRY = std::pair<KEY, VALUE>;
  VALUE* find(const KEY& key) {
    auto at = m_index.find(key);
    return at == m_index.end() ? nullptr : &m_entries[at->second].second;
  }
  const VALUE* find(const KEY& key) const { return const_cast<HTL_HASH*>(this)->find(key); }
  /// Inserts or overwrites.
  void insert(const KEY& key, VALUE value) {
    if (VALUE* old = find(key))
      *old = std::move(value);
    else
      append(key, std::move(value));
  }
  /// The value, created when absent.
  VALUE& operator[](const KEY& key) {
    if (!find(key)) append(key, VALUE());
    return *find(key);
  }
  size_t size() const { return m_entries.size(); }
  bool empty() const { return m_entries.empty(); }
  void clear() {
    m_entries.clear();
    m_index.clear();
  }
  auto begin() const { return m_entries.begin(); }
  auto end() const { return m_entries.end(); }
  auto begin() { return m_entries.begin(); }
  auto end() { return m_entries.end(); }

private:
  void append(const KEY& key, VALUE value) {
    m_index.emplace(key, m_entries.size());
    m_entries.emplace_back(key, std::move(value));
  }

  std::vector<ENTRY> m_entries;
  std::unordered_map<KEY, size_t> m_index;
};

/// A set that remembers the order of insertion.
template <class KEY> class HTL_HASH_SET {
public:
  /// False when it was there.
  bool insert(const KEY& key) {
    if (!m_index.insert(key).second) return false;
    m_keys.push_back(key);
    return true;
  }
  bool contains(const KEY& key) const { return m_index.count(key) != 0; }
  size_t size() const { return m_keys.size(); }
  bool empty() const { return m_keys.empty(); }
  void clear() {
    m_keys.clear();
    m_index.clear();
  }
  auto begin() const { return m_keys.begin(); }
  auto end() const { return m_keys.end(); }

private:
  std::vector<KEY> m_keys;
  std::unordered_set<KEY> m_index;
};

class HTL_CSTR_OPS {
public:
  /// A hash of the text that is the same on every run and machine.
  static unsigned hash(const char* text);
};

/// Splits a text at any of the separator characters; empty tokens are dropped.
class HTL_TOKENIZER {
public:
  HTL_TOKENIZER(const std::string& text, const char* separators);
  const std::vector<std::string>& get_tokens() const { return m_tokens; }

private:
  std::vector<std::string> m_tokens;
};

/// A compiled regular expression in Perl syntax. A malformed expression is an internal error and matches nothing.
class HTL_REGEXP {
public:
  enum CASE_ENUM { CASE_SENSITIVE, CASE_IGNORED };
  explicit HTL_REGEXP(const char* expression, CASE_ENUM letters = CASE_SENSITIVE);
  ~HTL_REGEXP();
  HTL_REGEXP(const HTL_REGEXP&) = delete;
  HTL_REGEXP& operator=(const HTL_REGEXP&) = delete;

  /// The whole text matches. Groups, when asked for, get the texts of the parenthesised groups from the first on; a
  /// group that took no part is empty.
  bool match(const char* text, std::vector<std::string>* groups = nullptr) const;
  /// Some part of the text matches. `first` and `length`, when asked for, tell which.
  bool search(const char* text, std::vector<std::string>* groups = nullptr, size_t* first = nullptr,
              size_t* length = nullptr) const;

private:
  struct IMPL;
  std::unique_ptr<IMPL> m_impl;
};

/// A named scope of work; the host's report shows the time spent under each name.
class HTL_PROFILER {
public:
  HTL_PROFILER(const char* tag, const std::string& name);
  ~HTL_PROFILER();
  HTL_PROFILER(const HTL_PROFILER&) = delete;
  HTL_PROFILER& operator=(const HTL_PROFILER&) = delete;

private:
  std::string m_name;
  double m_start;
};

#endif
