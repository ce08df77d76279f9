// Checks of synthesis attributes and directives where they stand in a source; the parsers call them through the
// kernel's services.
#ifndef ZELK_ATTRIBUTE_CHECK_H
#define ZELK_ATTRIBUTE_CHECK_H

/// Whether an attribute has a meaning here; a warning when not, unless messages are hidden.
bool zelk_check_attribute_name(const char* name, const char* file, unsigned line);
/// Warns about a value that a known attribute does not take. A null value is no value.
void zelk_check_attribute_value(const char* name, const char* value, const char* file, unsigned line);
/// Reports attributes and directives that a formal verification tool of the project would read otherwise. The trigger
/// is the word that opened a pragma comment; null for attribute syntax.
void zelk_check_attribute_or_directive(const char* name, const char* file, unsigned line, bool is_attribute,
                                       const char* trigger);

#endif
