#include "containers/hash.h"

#include <cstdint>
#include <cstring>

#include "containers/assertion.h"

namespace {

// The byte is read as a signed char, so that bytes above 0x7F subtract.
uint32_t HashStep(uint32_t hash, signed char byte) { return hash * 33U + static_cast<uint32_t>(byte); }

signed char Fold(signed char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<signed char>(byte - 'A' + 'a') : byte;
}

constexpr uint32_t hash_start = 5381;

unsigned long Word(const void* key) { return static_cast<unsigned long>(reinterpret_cast<uintptr_t>(key)); }

} // namespace

unsigned long Hash::StringCompare(const void* a, const void* b) {
  if (b) return std::strcmp(static_cast<const char*>(a), static_cast<const char*>(b)) == 0;
  if (!a) return 0;
  uint32_t hash = hash_start;
  for (const auto* at = static_cast<const signed char*>(a); *at; at++) hash = HashStep(hash, *at);
  return hash;
}

unsigned long Hash::StringCaseInsensitiveCompare(const void* a, const void* b) {
  const auto* left = static_cast<const signed char*>(a);
  if (b) {
    const auto* right = static_cast<const signed char*>(b);
    while (*left && Fold(*left) == Fold(*right)) left++, right++;
    return Fold(*left) == Fold(*right);
  }
  if (!a) return 0;
  uint32_t hash = hash_start;
  for (; *left; left++) hash = HashStep(hash, Fold(*left));
  return hash;
}

unsigned long Hash::PointerCompare(const void* a, const void* b) { return b ? a == b : Word(a) >> 2; }

unsigned long Hash::NumCompare(const void* a, const void* b) { return b ? a == b : Word(a); }

hash_function Hash::Function(hash_type type) {
  switch (type) {
  case HASH_STRING: return StringCompare;
  case HASH_STRING_NOCASE: return StringCaseInsensitiveCompare;
  case HASH_POINTER: return PointerCompare;
  case HASH_NUM: return NumCompare;
  }
  KESTRIN_ASSERT_TEXT(false, "unknown hash_type");
  return nullptr;
}
