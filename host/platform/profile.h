// Time spent per named scope of work, for the report.
#ifndef HOST_PROFILE_H
#define HOST_PROFILE_H

#include <string>

#include "htl.h"

class PROFILE {
public:
  struct ENTRY {
    unsigned calls = 0;
    double milliseconds = 0;
  };
  static PROFILE& instance();
  void add(const std::string& name, double milliseconds);
  /// In the order in which the scopes first ended.
  const HTL_HASH<std::string, ENTRY>& get_entries() const { return m_entries; }
  void clear() { m_entries.clear(); }

private:
  HTL_HASH<std::string, ENTRY> m_entries;
};

#endif
