// Values of parameters from the command line and the project file.
#ifndef HOST_PARAMETER_NOTATION_H
#define HOST_PARAMETER_NOTATION_H

#include <string>

/// The value of a parameter as users write it, in the notation of the design database: numbers of the language, with
/// any base, width and sign, stand for themselves or become binary; real numbers and quoted strings keep their form;
/// anything else is a string. Throws USAGE_ERROR for a number whose digits do not fit its base or whose width is
/// absurd.
std::string parameter_notation(const std::string& text);

#endif
