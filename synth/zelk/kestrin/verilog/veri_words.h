// VeriWords: every text that the scanner hands out, kept once. A word knows whether it is a keyword or the name of a
// directive, so that one look-up tells all that the scanner wants to know of an identifier.
#ifndef KESTRIN_VERILOG_VERI_WORDS_H
#define KESTRIN_VERILOG_VERI_WORDS_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// Directives, VERI_DIRECTIVE_<name>.
enum veri_directive : uint8_t {
  VERI_NO_DIRECTIVE = 0,
#define VERI_DIRECTIVE(name, usage) VERI_DIRECTIVE_##name,
#define VERI_DIRECTIVE_ONLY(name) VERI_DIRECTIVE_##name,
#include "verilog/veri_directives.def"
};

struct VeriWord {
  uint32_t hash;
  uint32_t length;
  uint16_t keyword;         // token code, 0 for a plain word
  uint8_t dialect;          // that introduced the keyword
  veri_directive directive; // the directive of this name
  /// Ends with a 0 behind its length.
  const char* Text() const { return reinterpret_cast<const char*>(this + 1); }
};

class VeriWords {
public:
  /// Holds the keywords and the names of the directives.
  VeriWords();

  /// The word with these characters; equal words are one object, which lives as long as the table.
  const VeriWord* Intern(const char* text, size_t length) {
    const uint32_t hash = Hash(text, length);
    for (size_t slot = hash & _mask;; slot = (slot + 1) & _mask) {
      const Slot& candidate = _slots[slot];
      if (!candidate.word) return Add(text, length, hash);
      if (candidate.hash == hash && candidate.word->length == length && Equal(candidate.word->Text(), text, length))
        return candidate.word;
    }
  }

private:
  struct Slot {
    uint32_t hash;
    VeriWord* word;
  };

  template <class T> static T Load(const char* text) {
    T value;
    __builtin_memcpy(&value, text, sizeof value);
    return value;
  }
  static uint64_t Mix(uint64_t a, uint64_t b) {
    const uint64_t product = (a ^ 0x9E3779B97F4A7C15U) * (b ^ 0xD6E8FEB86659FD93U);
    return product ^ (product >> 32);
  }
  // Short texts, which nearly all are, are read as two overlapping loads.
  static uint32_t Hash(const char* text, size_t length) {
    if (length >= 8) {
      uint64_t hash = length;
      for (size_t at = 0; at + 8 < length; at += 8) hash = Mix(hash, Load<uint64_t>(text + at));
      return static_cast<uint32_t>(Mix(hash, Load<uint64_t>(text + length - 8)));
    }
    if (length >= 4)
      return static_cast<uint32_t>(
          Mix(length, (uint64_t{Load<uint32_t>(text)} << 32) | Load<uint32_t>(text + length - 4)));
    uint64_t bytes = 0;
    for (size_t at = 0; at < length; at++) bytes = (bytes << 8) | static_cast<unsigned char>(text[at]);
    return static_cast<uint32_t>(Mix(length, bytes));
  }
  static bool Equal(const char* a, const char* b, size_t length) {
    if (length > 16) return __builtin_memcmp(a, b, length) == 0;
    if (length >= 8)
      return Load<uint64_t>(a) == Load<uint64_t>(b) && Load<uint64_t>(a + length - 8) == Load<uint64_t>(b + length - 8);
    if (length >= 4)
      return Load<uint32_t>(a) == Load<uint32_t>(b) && Load<uint32_t>(a + length - 4) == Load<uint32_t>(b + length - 4);
    for (size_t at = 0; at < length; at++)
      if (a[at] != b[at]) return false;
    return true;
  }

  VeriWord* Add(const char* text, size_t length, uint32_t hash);
  void Place(VeriWord* word);
  char* Allocate(size_t size);

  std::vector<Slot> _slots;
  size_t _mask;
  size_t _size = 0;
  std::vector<std::unique_ptr<char[]>> _blocks;
  char* _free = nullptr;
  char* _free_end = nullptr;
};

#endif
