// Arguments as one flat list: file lists are read in place, and the plus options of simulators are rewritten.
#ifndef HOST_ARGUMENTS_H
#define HOST_ARGUMENTS_H

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

/// Wrong usage, in words for the user.
class USAGE_ERROR : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Says of an option as it is written, without its value, whether the next argument is its value.
using TAKES_VALUE = std::function<bool(const std::string& option)>;

/// Replaces each `-f FILE` by what the file holds, where comments begin with # or //, $NAME and ${NAME} stand for
/// environment variables and paths are relative to the list; `+define+A=1+B` becomes -D options and `+incdir+A+B` -I
/// options. Throws USAGE_ERROR for a list that cannot be read or that contains itself.
std::vector<std::string> flatten_arguments(const std::vector<std::string>& arguments, const TAKES_VALUE& takes_value);

#endif
