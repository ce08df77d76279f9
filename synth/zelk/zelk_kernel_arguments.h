// The arguments of a kernel message on their way into a host message: read one by one, as the parameters of the
// message's function say, with the location text as the last argument.
#ifndef ZELK_KERNEL_ARGUMENTS_H
#define ZELK_KERNEL_ARGUMENTS_H

#include <cstdarg>
#include <tuple>
#include <type_traits>
#include <utility>

class MSG_BASE;

/// Holds a copy of an argument list, which it reads once.
class ZELK_KERNEL_ARGUMENTS {
public:
  explicit ZELK_KERNEL_ARGUMENTS(va_list args) { va_copy(m_args, args); }
  ZELK_KERNEL_ARGUMENTS(const ZELK_KERNEL_ARGUMENTS&) = delete;
  ZELK_KERNEL_ARGUMENTS& operator=(const ZELK_KERNEL_ARGUMENTS&) = delete;
  ~ZELK_KERNEL_ARGUMENTS() { va_end(m_args); }

  /// The new message, owned by the caller.
  template <class MESSAGE, class... PARAMETERS>
  MSG_BASE* make(MESSAGE* (*function)(PARAMETERS...), const char* location) {
    return make<std::tuple<PARAMETERS...>>(function, location, std::make_index_sequence<sizeof...(PARAMETERS) - 1>());
  }

private:
  template <class PARAMETERS, class FUNCTION, size_t... INDICES>
  MSG_BASE* make(FUNCTION function, const char* location, std::index_sequence<INDICES...>) {
    // Braces read the arguments from left to right.
    std::tuple<std::tuple_element_t<INDICES, PARAMETERS>...> values{
        take<std::tuple_element_t<INDICES, PARAMETERS>>()...};
    return function(std::get<INDICES>(values)..., location);
  }

  template <class PARAMETER> PARAMETER take() {
    if constexpr (std::is_pointer_v<PARAMETER>)
      return va_arg(m_args, PARAMETER);
    else
      return static_cast<PARAMETER>(va_arg(m_args, int));
  }

  va_list m_args;
};

#endif
