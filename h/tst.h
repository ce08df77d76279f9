// Test hooks: named values in sections that tests set and read while the test mode is on.
#ifndef TST_H
#define TST_H

#include <string>

bool tst_is_regtest_mode();
/// Empty when nobody set it.
std::string tst_get_value(const char* section, const char* name);
void tst_set_value(const char* section, const char* name, const char* value);
void tst_set_regtest_mode(bool on);

#endif
