#include "util/strings.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "containers/assertion.h"
#include "containers/hash.h"

namespace {

bool IsBlank(char c) { return c == ' ' || (c >= 9 && c <= 13); }

char* CopyRange(const char* begin, const char* end) {
  auto size = static_cast<unsigned>(end - begin);
  char* copy = Strings::Allocate(size + 1);
  std::memcpy(copy, begin, size);
  copy[size] = 0;
  return copy;
}

// The standard's conversion reads no blanks and no plus sign.
const char* SkipToNumber(const char* string) {
  while (IsBlank(*string)) string++;
  if (*string == '+' && string[1] != '-') string++;
  return string;
}

template <class T> T ReadInteger(const char* string, bool& fits) {
  T value = 0;
  fits = true;
  if (!string) return 0;
  string = SkipToNumber(string);
  if (std::from_chars(string, string + std::strlen(string), value).ec == std::errc::result_out_of_range) {
    fits = false;
    value = *string == '-' ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
  }
  return value;
}

} // namespace

char* Strings::save(const char* a) { return a ? CopyRange(a, a + std::strlen(a)) : nullptr; }

char* Strings::save(const char* a, const char* b, const char* c, const char* d, const char* e, const char* f) {
  const char* pieces[] = {a, b, c, d, e, f};
  size_t size = 1;
  for (const char* piece : pieces) size += len(piece);
  char* result = Allocate(static_cast<unsigned>(size));
  char* end = result;
  for (const char* piece : pieces) {
    unsigned piece_size = len(piece);
    if (piece_size) std::memcpy(end, piece, piece_size);
    end += piece_size;
  }
  *end = 0;
  return result;
}

char* Strings::Allocate(unsigned size) {
  auto* string = static_cast<char*>(std::malloc(size ? size : 1));
  KESTRIN_ASSERT(string);
  *string = 0;
  return string;
}

void Strings::free_string(char* string) { std::free(string); }

char* Strings::resize(char* string, unsigned size) {
  if (!string) return Allocate(size);
  auto* resized = static_cast<char*>(std::realloc(string, size ? size : 1));
  KESTRIN_ASSERT(resized);
  if (!std::memchr(resized, 0, size)) resized[size ? size - 1 : 0] = 0;
  return resized;
}

unsigned Strings::len(const char* string) { return string ? static_cast<unsigned>(std::strlen(string)) : 0; }

unsigned Strings::compare(const char* a, const char* b) { return a == b || (a && b && std::strcmp(a, b) == 0); }

unsigned Strings::compare_nocase(const char* a, const char* b) {
  return a == b || (a && b && Hash::StringCaseInsensitiveCompare(a, b));
}

unsigned Strings::substring(const char* a, const char* b) { return a && b && std::strstr(a, b); }

char* Strings::itoa(int value) {
  char digits[16];
  return CopyRange(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

char* Strings::dtoa(double value) {
  char digits[32];
  return CopyRange(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

int Strings::atoi(const char* string, unsigned* overflow) {
  bool fits = true;
  int value = ReadInteger<int>(string, fits);
  if (overflow) *overflow = !fits;
  return value;
}

long long Strings::atoi64(const char* string) {
  bool fits = true;
  return ReadInteger<long long>(string, fits);
}

double Strings::atof(const char* string) {
  if (!string) return 0.0;
  string = SkipToNumber(string);
  double value = 0.0;
  const char* end = string + std::strlen(string);
  // A number out of range is left to the C library, which tells a huge one from a tiny one.
  if (std::from_chars(string, end, value).ec == std::errc::result_out_of_range) return std::strtod(string, nullptr);
  return value;
}

char* Strings::strip_and_save(char* string, unsigned remove_quotes) {
  if (!string || !*string) return string;
  OwnedString owned(string);
  const char* begin = string;
  const char* end = string + std::strlen(string);
  auto skip_blanks = [&] {
    while (begin < end && IsBlank(*begin)) begin++;
    while (begin < end && IsBlank(end[-1])) end--;
  };
  skip_blanks();
  if (remove_quotes) {
    if (begin < end && *begin == '"') begin++;
    if (begin < end && end[-1] == '"') end--;
    skip_blanks();
  }
  return CopyRange(begin, end);
}

char* Strings::replace(const char* string, char c, const char* with) {
  if (!string || !c) return nullptr;
  size_t with_size = len(with);
  if (!with_size) return save(string);
  size_t size = 1;
  for (const char* at = string; *at; at++) size += *at == c ? with_size : 1;
  char* result = Allocate(static_cast<unsigned>(size));
  char* end = result;
  for (const char* at = string; *at; at++) {
    if (*at == c) {
      std::memcpy(end, with, with_size);
      end += with_size;
    } else {
      *end++ = *at;
    }
  }
  *end = 0;
  return result;
}
