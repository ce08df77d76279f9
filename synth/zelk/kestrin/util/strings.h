// Strings: the kernel's C-string toolbox. Every char* result is a heap string that its receiver frees with
// Strings::free_string, or holds in an OwnedString. It depends on no locale.
#ifndef KESTRIN_UTIL_STRINGS_H
#define KESTRIN_UTIL_STRINGS_H

#include <memory>

class Strings {
public:
  /// The concatenation of the pieces; null pieces count as empty. One null piece alone gives null.
  static char* save(const char* a);
  static char* save(const char* a, const char* b, const char* c = nullptr, const char* d = nullptr,
                    const char* e = nullptr, const char* f = nullptr);
  /// `size` bytes, of which the first is the terminator.
  static char* Allocate(unsigned size);
  /// Accepts null.
  static void free_string(char* string);
  /// Moves a string into `size` bytes and consumes it. Cut strings stay terminated; a null string gives an empty one.
  static char* resize(char* string, unsigned size);
  /// 0 for null.
  static unsigned len(const char* string);

  /// Whether both are equal (1 or 0); null equals null only.
  static unsigned compare(const char* a, const char* b);
  /// The same, folding A to Z only.
  static unsigned compare_nocase(const char* a, const char* b);
  /// Whether `b` lies in `a`; never for null.
  static unsigned substring(const char* a, const char* b);

  static char* itoa(int value);
  /// The shortest decimal that reads back as the same value.
  static char* dtoa(double value);
  // Decimal numbers behind optional blanks and a sign; null and what is no number read as 0. Integers saturate.
  /// `overflow`, when given, tells whether the number did not fit.
  static int atoi(const char* string, unsigned* overflow = nullptr);
  static long long atoi64(const char* string);
  static double atof(const char* string);

  /// A copy without blanks and control characters 9 to 13 at both ends; with `remove_quotes` also without one quote at
  /// each end and the blanks inside of it. Frees `string`, except that an empty string is returned as it is.
  static char* strip_and_save(char* string, unsigned remove_quotes = 0);
  /// A copy with `with` in place of each `c`; an empty or null `with` replaces nothing. Null without string or
  /// character.
  static char* replace(const char* string, char c, const char* with);
};

struct StringDeleter {
  void operator()(char* string) const { Strings::free_string(string); }
};

/// Holds a kernel string on its way.
using OwnedString = std::unique_ptr<char, StringDeleter>;

#endif
