// Configuration variables: process-wide switches by name, set by the program before anything runs.
#ifndef CFG_H
#define CFG_H

#include <string>

/// A variable is on when its value is "on", "true", "yes" or a number other than 0, in any case; a variable that nobody
/// set has the default.
bool cfg_is_on(const char* name, bool default_value);
/// The value as text; empty when nobody set it.
std::string cfg_get_value(const char* name);

void cfg_set_value(const std::string& name, const std::string& value);
void cfg_clear();

#endif
