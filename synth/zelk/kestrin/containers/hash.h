// Hash functions of the kernel's tables. One function does both jobs: with one key it hashes, with two it compares.
#ifndef KESTRIN_CONTAINERS_HASH_H
#define KESTRIN_CONTAINERS_HASH_H

#include <cstdint>

/// Selects the function of a table.
enum hash_type { HASH_STRING = 0, HASH_STRING_NOCASE = 1, HASH_POINTER = 2, HASH_NUM = 3 };

/// With a null second key the hash of the first; else non-zero when both are equal. Tables never compare null keys by
/// it.
using hash_function = unsigned long (*)(const void*, const void*);

class Hash {
public:
  static unsigned long StringCompare(const void* a, const void* b);
  /// Folds A to Z and nothing else.
  static unsigned long StringCaseInsensitiveCompare(const void* a, const void* b);
  static unsigned long PointerCompare(const void* a, const void* b);
  static unsigned long NumCompare(const void* a, const void* b);

  /// The function of a kind of table; an unknown kind is an assertion.
  static hash_function Function(hash_type type);

  /// What the function gives for one key. The tables of pointers are the most frequent, so they do without a call.
  static unsigned long Of(hash_function function, const void* key) {
    if (function == &PointerCompare) return reinterpret_cast<std::uintptr_t>(key) >> 2;
    return function(key, nullptr);
  }
  /// Whether two keys are equal: the same word, or not null and equal by the function.
  static bool AreEqual(hash_function function, const void* a, const void* b) {
    if (a == b) return true;
    return function != &PointerCompare && function != &NumCompare && a && b && function(a, b);
  }
};

#endif
