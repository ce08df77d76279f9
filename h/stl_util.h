// Small string services.
#ifndef STL_UTIL_H
#define STL_UTIL_H

#include <cstdarg>
#include <string>

/// printf into a string of any length. `args` is left in the state that va_arg leaves it in.
void stl_vsprintf(std::string& text, const char* format, va_list args);
/// Upper case of ASCII letters.
std::string stl_toupper(const std::string& text);

#endif
