// Configuration variables and test values: two tables from names to texts.
#include "cfg.h"

#include <map>

#include "gen.h"
#include "tst.h"

namespace {

std::map<std::string, std::string>& variables() {
  static std::map<std::string, std::string> table;
  return table;
}

struct TEST_VALUES {
  bool is_on = false;
  std::map<std::pair<std::string, std::string>, std::string> values;
};

TEST_VALUES& test_values() {
  static TEST_VALUES values;
  return values;
}

} // namespace

bool cfg_is_on(const char* name, bool default_value) {
  auto at = variables().find(name);
  if (at == variables().end()) return default_value;
  const std::string& value = at->second;
  for (const char* word : {"on", "true", "yes"})
    if (gen_stricmp(value.c_str(), word) == 0) return true;
  return !value.empty() && value.find_first_not_of("0123456789") == std::string::npos &&
         value.find_first_not_of('0') != std::string::npos;
}

std::string cfg_get_value(const char* name) {
  auto at = variables().find(name);
  return at == variables().end() ? "" : at->second;
}

void cfg_set_value(const std::string& name, const std::string& value) { variables()[name] = value; }
void cfg_clear() { variables().clear(); }

bool tst_is_regtest_mode() { return test_values().is_on; }

std::string tst_get_value(const char* section, const char* name) {
  auto at = test_values().values.find({section, name});
  return at == test_values().values.end() ? "" : at->second;
}

void tst_set_value(const char* section, const char* name, const char* value) {
  test_values().values[{section, name}] = value ? value : "";
}

void tst_set_regtest_mode(bool on) {
  test_values().is_on = on;
  if (!on) test_values().values.clear();
}
