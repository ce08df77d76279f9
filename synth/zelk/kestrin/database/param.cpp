#include "database/param.h"

#include <iterator>
#include <ostream>

#include "database/designobj.h"
#include "util/strings.h"

Param::Param(const char* name, const char* value, const char* type, int variable_type)
    : _name(Strings::save(name)), _value(Strings::save(value)), _type(Strings::save(type)),
      _variable_type(variable_type) {}

Param::Param(const Param& other) : Param(other._name, other._value, other._type, other._variable_type) {}

Param::~Param() {
  Strings::free_string(_name);
  Strings::free_string(_value);
  Strings::free_string(_type);
}

namespace {

// The host numbers the types of parameters in one run, in this order.
constexpr int first_variable_type = 385;

const char* VariableTypeText(int type) {
  static constexpr const char* texts[] = {
      "PARAMETER_SIGNED_DEC",   "PARAMETER_UNSIGNED_DEC",   "PARAMETER_SIGNED_HEX", "PARAMETER_UNSIGNED_HEX",
      "PARAMETER_SIGNED_OCT",   "PARAMETER_UNSIGNED_OCT",   "PARAMETER_SIGNED_BIN", "PARAMETER_UNSIGNED_BIN",
      "PARAMETER_SIGNED_FLOAT", "PARAMETER_UNSIGNED_FLOAT", "PARAMETER_BOOL",       "PARAMETER_STRING",
      "PARAMETER_CHAR",         "PARAMETER_ENUM",           "PARAMETER_ARRAY",      "PARAMETER_PHYSICAL",
      "PARAMETER_UNKNOWN"};
  int index = type - first_variable_type;
  return index >= 0 && index < static_cast<int>(std::size(texts)) ? texts[index] : "Bad flow of control";
}

} // namespace

void Param::Dump(std::ostream& out, unsigned indent) const {
  DesignObj::PrintLevel(out, indent);
  out << "Parameter " << (_name && *_name ? _name : "[unnamed parameter]") << " = " << (_value ? _value : "") << " "
      << VariableTypeText(_variable_type) << " (" << (_type ? _type : "") << ")\n";
}
