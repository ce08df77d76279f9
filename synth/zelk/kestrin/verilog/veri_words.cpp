// The table of words: open addressing over words that stand in blocks of memory.
#include "verilog/veri_words.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "verilog/veri_tokens.h"

namespace {

constexpr size_t first_slots = 4096;
constexpr size_t block_size = size_t{1} << 16;

struct Keyword {
  const char* text;
  uint16_t token;
  veri_token_type type;
  uint8_t dialect;
};

constexpr Keyword tokens[] = {
#define VERI_TOKEN(symbol, text, type, dialect) {text, VERI_##symbol, type, dialect},
#include "verilog/veri_tokens.def"
};

constexpr const char* directive_names[] = {
    nullptr,
#define VERI_DIRECTIVE(name, usage) #name,
#define VERI_DIRECTIVE_ONLY(name) #name,
#include "verilog/veri_directives.def"
};

} // namespace

VeriWords::VeriWords() : _slots(first_slots), _mask(first_slots - 1) {
  const auto word = [this](const char* text) {
    return const_cast<VeriWord*>(Intern(text, std::strlen(text))); // this table may write what it made
  };
  for (const Keyword& token : tokens) {
    if (token.type != VERI_TOKEN_KEYWORD) continue;
    VeriWord* keyword = word(token.text);
    keyword->keyword = token.token;
    keyword->dialect = token.dialect;
  }
  for (size_t directive = 1; directive < std::size(directive_names); directive++)
    word(directive_names[directive])->directive = static_cast<veri_directive>(directive);
}

VeriWord* VeriWords::Add(const char* text, size_t length, uint32_t hash) {
  if (2 * (_size + 1) > _slots.size()) {
    std::vector<Slot> former(2 * _slots.size());
    former.swap(_slots);
    _mask = _slots.size() - 1;
    for (const Slot& slot : former)
      if (slot.word) Place(slot.word);
  }
  char* memory = Allocate(sizeof(VeriWord) + length + 1);
  auto* word = new (memory) VeriWord{hash, static_cast<uint32_t>(length), 0, 0, VERI_NO_DIRECTIVE};
  char* copy = memory + sizeof(VeriWord);
  std::memcpy(copy, text, length);
  copy[length] = '\0';
  Place(word);
  _size++;
  return word;
}

void VeriWords::Place(VeriWord* word) {
  size_t slot = word->hash & _mask;
  while (_slots[slot].word) slot = (slot + 1) & _mask;
  _slots[slot] = {word->hash, word};
}

char* VeriWords::Allocate(size_t size) {
  size = (size + alignof(VeriWord) - 1) & ~(alignof(VeriWord) - 1);
  if (static_cast<size_t>(_free_end - _free) < size) {
    const size_t block = std::max(size, block_size);
    _blocks.push_back(std::make_unique_for_overwrite<char[]>(block));
    _free = _blocks.back().get();
    _free_end = _free + block;
  }
  char* memory = _free;
  _free += size;
  return memory;
}
