// Param: a parameter of a view, with the texts of its name, value and type. It owns them.
#ifndef KESTRIN_DATABASE_PARAM_H
#define KESTRIN_DATABASE_PARAM_H

#include <iosfwd>

class Param {
public:
  /// Copies the strings. `variable_type` is the host's number for the type, which the kernel only carries.
  Param(const char* name, const char* value, const char* type, int variable_type);
  Param(const Param& other);
  Param& operator=(const Param&) = delete;
  virtual ~Param();

  const char* Name() const { return _name; }
  const char* Value() const { return _value; }
  const char* TypeText() const { return _type; }
  int VariableType() const { return _variable_type; }

  /// The host's number for a type that is not known.
  static constexpr int unknown_variable_type = 401;

  /// "Parameter %s = %s %s (%s)".
  void Dump(std::ostream& out, unsigned indent = 0) const;

private:
  char* _name;
  char* _value;
  char* _type;
  int _variable_type;
};

#endif
