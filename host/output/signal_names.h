// Names of signals as texts: indices in brackets, uniqueness, and the forms that Verilog accepts.
#ifndef HOST_SIGNAL_NAMES_H
#define HOST_SIGNAL_NAMES_H

#include <string>
#include <unordered_map>
#include <unordered_set>

/// A name of the form PREFIX[index]SUFFIX is bit `index` of the vector PREFIXSUFFIX; the last index counts. A suffix is
/// what the front end puts behind a name and begins with "~" or "$".
struct INDEXED_NAME {
  std::string base;
  int index = 0;
  bool has_index = false;
};

INDEXED_NAME split_index(const std::string& text);

/// Hands out each name once.
class SIGNAL_NAMES {
public:
  void reserve(const std::string& name) { m_taken.insert(name); }
  /// The name, or the name with the first free number behind it; something is made of an empty one.
  std::string make_unique(const std::string& wanted);

private:
  std::unordered_set<std::string> m_taken;
  std::unordered_map<std::string, unsigned> m_next;
};

/// As Verilog 2001 reads it: plain where that is legal, else escaped with its closing blank (IEEE 1364, 3.7.1).
std::string verilog_identifier(const std::string& name);

#endif
