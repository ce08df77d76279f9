// Gathers what the profiling scopes measured.
#include "profile.h"

PROFILE& PROFILE::instance() {
  static PROFILE profile;
  return profile;
}

void PROFILE::add(const std::string& name, double milliseconds) {
  ENTRY& entry = m_entries[name];
  entry.calls++;
  entry.milliseconds += milliseconds;
}
