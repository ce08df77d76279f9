// Classes of the characters of Verilog.
#ifndef KESTRIN_VERILOG_VERI_CHARS_H
#define KESTRIN_VERILOG_VERI_CHARS_H

#include <array>
#include <cstdint>

enum veri_char_class : uint8_t {
  VERI_CHAR_LETTER = 1,       // and underscore: begins a word
  VERI_CHAR_WORD = 2,         // letters, digits, underscore, dollar
  VERI_CHAR_SPACE = 4,        // white space but newline
  VERI_CHAR_DIGIT = 8,        // decimal
  VERI_CHAR_DECIMAL = 16,     // decimal and underscore
  VERI_CHAR_BASED_DIGIT = 32, // of any base, with x, z, ? and underscore
};

inline constexpr std::array<uint8_t, 256> veri_char_classes = [] {
  std::array<uint8_t, 256> classes{};
  const auto add = [&classes](const char* chars, unsigned mask) {
    for (; *chars; chars++) classes[static_cast<unsigned char>(*chars)] |= static_cast<uint8_t>(mask);
  };
  add("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_", VERI_CHAR_LETTER | VERI_CHAR_WORD);
  add("0123456789", VERI_CHAR_WORD | VERI_CHAR_DIGIT | VERI_CHAR_DECIMAL | VERI_CHAR_BASED_DIGIT);
  add("$", VERI_CHAR_WORD);
  add("_", VERI_CHAR_DECIMAL);
  add(" \t\r\f\v", VERI_CHAR_SPACE);
  add("xXzZ?_abcdefABCDEF", VERI_CHAR_BASED_DIGIT);
  return classes;
}();

inline bool veri_is(char c, unsigned classes) {
  return (veri_char_classes[static_cast<unsigned char>(c)] & classes) != 0;
}

/// Behind the characters of a class; the end of an input is of none.
template <class Char> Char* veri_skip(Char* at, unsigned classes) {
  while (veri_is(*at, classes)) at++;
  return at;
}

#endif
