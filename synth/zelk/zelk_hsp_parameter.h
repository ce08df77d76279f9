// Parameter values as the host's user interface holds them: a text and the name of its form.
#ifndef ZELK_HSP_PARAMETER_H
#define ZELK_HSP_PARAMETER_H

#include <string>

/// Rewrites a value as a Verilog literal and empties the type; both stay as they are when the type is unknown or the
/// value is none of it. A value without a type is Verilog already.
void zelk_convert_parameter_to_verilog(std::string& value, std::string& type);

#endif
