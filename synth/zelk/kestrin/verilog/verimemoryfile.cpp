#include "verilog/verimemoryfile.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>

#include "util/services.h"
#include "verilog/veri_message.h"
#include "verilog/vericonstraint.h"
#include "verilog/veridataflow.h"
#include "verilog/veritreenode.h"

namespace {

bool IsSpace(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsWordCharacter(int c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
int ToLower(int c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; }

/// The value of a hexadecimal digit in lower case; -1 for what is none.
int HexDigit(int c) {
  if (c >= '0' && c <= '9') return c - '0';
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

/// A character as a message can show it.
char Printable(int c) { return c > ' ' && c < 127 ? static_cast<char>(c) : '?'; }

struct FileCloser {
  void operator()(FILE* file) const { fclose(file); }
};

} // namespace

/// Takes the characters of a file one by one.
class VeriMemoryFileReader {
public:
  explicit VeriMemoryFileReader(VeriMemoryFile& file) : _file(file) {}
  bool Read(FILE* stream);

private:
  enum class State { Between, Word, Address, Slash, LineComment, LongComment, Star, SlashInComment };

  bool Take(int c);
  bool TakeBetween(int c);
  bool TakeWord(int c);
  bool TakeAddress(int c);
  bool TakeSlash(int c);
  bool TakeLongComment(int c);
  bool TakeAgain(int c) {
    _state = State::Between;
    return Take(c);
  }
  bool IllegalDigit(int c) const;
  bool SyntaxError(int c) const;
  linefile_type Here() const { return _file.LineOf(_line); }
  static bool EndsNumber(int c) { return c == EOF || c == '/' || c == '@' || IsSpace(c); }

  // What no memory can hold is not read to its end.
  static constexpr size_t max_words = veri_max_object_bits;
  static constexpr size_t max_digits = size_t{8} * veri_max_object_bits;

  VeriMemoryFile& _file;
  State _state = State::Between;
  unsigned _line = 1;
  int64_t _address = VeriMemoryFile::no_address;
  bool _has_digits = false;
};

bool VeriMemoryFileReader::Read(FILE* stream) {
  char buffer[1 << 16];
  while (size_t count = fread(buffer, 1, sizeof buffer, stream)) {
    for (size_t i = 0; i < count; i++) {
      if (!Take(static_cast<unsigned char>(buffer[i]))) return false;
      if (buffer[i] == '\n') _line++;
    }
    if (_file._words.size() > max_words || _file._digits.size() > max_digits) break;
  }
  if (!feof(stream)) {
    veri_error(Here(), "illegal state while reading memory file");
    return false;
  }
  return Take(EOF);
}

bool VeriMemoryFileReader::Take(int c) {
  switch (_state) {
  case State::Between: return TakeBetween(c);
  case State::Word: return TakeWord(c);
  case State::Address: return TakeAddress(c);
  case State::Slash: return TakeSlash(c);
  case State::LineComment:
    if (c == '\n') _state = State::Between;
    return true;
  case State::LongComment:
  case State::Star:
  case State::SlashInComment: return TakeLongComment(c);
  }
  return false;
}

bool VeriMemoryFileReader::TakeBetween(int c) {
  if (c == EOF || IsSpace(c)) return true;
  if (c == '/') {
    _state = State::Slash;
    return true;
  }
  if (c == '@') {
    _state = State::Address;
    _address = 0;
    _has_digits = false;
    return true;
  }
  if (!IsWordCharacter(c)) return SyntaxError(c);
  _file._words.push_back({_address, _file._digits.size(), 0, _line});
  _address = VeriMemoryFile::no_address;
  _state = State::Word;
  return TakeWord(c);
}

bool VeriMemoryFileReader::TakeWord(int c) {
  std::string& digits = _file._digits;
  VeriMemoryFile::Word& word = _file._words.back();
  if (EndsNumber(c)) {
    word.size = static_cast<unsigned>(digits.size() - word.first);
    if (!word.size) return SyntaxError('_');
    return TakeAgain(c);
  }
  if (c == '_') return true;
  int digit = ToLower(c);
  bool is_known = _file._is_binary ? digit == '0' || digit == '1' : HexDigit(digit) >= 0;
  if (!is_known && digit != 'x' && digit != 'z') return IllegalDigit(c);
  // No element is wider than this, so digits further left are lost in any case.
  if (digits.size() - word.first >= 2UL * veri_max_width) digits.erase(word.first, veri_max_width);
  digits.push_back(static_cast<char>(digit));
  return true;
}

bool VeriMemoryFileReader::TakeAddress(int c) {
  if (EndsNumber(c)) {
    if (!_has_digits) return SyntaxError('@');
    _file._num_addresses++;
    return TakeAgain(c);
  }
  if (c == '_') return true;
  int digit = HexDigit(ToLower(c));
  if (digit < 0) {
    veri_error(Here(), "illegal character %c in hexidecimal number", Printable(c));
    return false;
  }
  _address = std::min<int64_t>(_address * 16 + digit, INT_MAX); // which no memory has
  _has_digits = true;
  return true;
}

bool VeriMemoryFileReader::TakeSlash(int c) {
  if (c != '/' && c != '*') return SyntaxError('/');
  _state = c == '/' ? State::LineComment : State::LongComment;
  return true;
}

bool VeriMemoryFileReader::TakeLongComment(int c) {
  if (c == EOF) {
    veri_error(Here(), "long comment was not closed");
    return false;
  }
  if (_state == State::Star && c == '/') {
    _state = State::Between;
    return true;
  }
  if (_state == State::SlashInComment && c == '*') veri_warning(Here(), "/* in comment");
  _state = c == '*' ? State::Star : c == '/' ? State::SlashInComment : State::LongComment;
  return true;
}

bool VeriMemoryFileReader::IllegalDigit(int c) const {
  if (!IsWordCharacter(c)) return SyntaxError(c);
  if (_file._is_binary)
    veri_error(Here(), "illegal character in binary number");
  else
    veri_error(Here(), "illegal character %c in hexidecimal number", Printable(c));
  return false;
}

bool VeriMemoryFileReader::SyntaxError(int c) const {
  const char text[] = {Printable(c), '\0'};
  veri_error(Here(), "syntax error near %s", text);
  return false;
}

std::unique_ptr<VeriMemoryFile> VeriMemoryFile::ReadMemoryFile(const char* full, const char* name, bool is_binary,
                                                               const VeriTreeNode* from) {
  kestrin_debug("Attempting to load memory contents from %s", full);
  std::unique_ptr<FILE, FileCloser> stream(fopen(full, "rb"));
  // A directory can be opened, but has nothing to be read.
  int first = stream ? getc(stream.get()) : EOF;
  if (!stream || (first == EOF && ferror(stream.get()))) {
    from->Error("cannot open file %s", name);
    return nullptr;
  }
  ungetc(first, stream.get());
  std::unique_ptr<VeriMemoryFile> file(new VeriMemoryFile(name, is_binary));
  if (!VeriMemoryFileReader(*file).Read(stream.get())) return nullptr;
  kestrin_debug("Processed %d addresses and %d words in memory file", static_cast<int>(file->NumOfAddresses()),
                static_cast<int>(file->NumOfWords()));
  return file;
}

linefile_type VeriMemoryFile::LineOf(unsigned line) const {
  return LineFile::EncodeLineFile(_name.c_str(), std::min(line, LineFile::max_line));
}

/// The word as a vector: cut at the left, or extended with 0.
OwnedValue VeriMemoryFile::ValueOf(const Word& word, unsigned width) const {
  auto value = std::make_unique<VeriVectorValue>(width, _is_binary ? 'b' : 'h');
  const unsigned bits_per_digit = _is_binary ? 1 : 4;
  for (unsigned i = 0; i < word.size && i * bits_per_digit < width; i++) {
    char digit = _digits[word.first + word.size - 1 - i];
    for (unsigned bit = 0; bit < bits_per_digit && i * bits_per_digit + bit < width; bit++) {
      unsigned place = i * bits_per_digit + bit;
      if (digit == 'x' || digit == 'z')
        value->SetDigit(place, digit == 'x' ? VERI_DIGIT_X : VERI_DIGIT_Z);
      else if (HexDigit(digit) >> bit & 1)
        value->SetDigit(place, VERI_DIGIT_1);
    }
  }
  return value;
}

bool VeriMemoryFile::LoadMemory(VeriIdDef* memory, VeriDataFlow* flow, std::optional<int64_t> start,
                                std::optional<int64_t> stop, const VeriTreeNode* from) const {
  const VeriConstraint* type = memory->GetConstraint();
  if (!type || !type->IsArrayConstraint()) return false;
  for (const std::optional<int64_t>& address : {start, stop})
    if (address && !type->Contains(*address)) {
      from->Error("start or stop address isn't within the declared range [%d:%d] of memory %s", type->Left(),
                  type->Right(), memory->Name());
      return false;
    }
  const int64_t first = start ? *start : type->Low();
  const int64_t last = stop ? *stop : type->High();
  const auto [low, high] = std::minmax(first, last);
  const int step = first <= last ? 1 : -1;
  if (!_num_addresses && static_cast<int64_t>(_words.size()) != high - low + 1)
    from->Warning("number of words (%d) in memory file does not match the number of elements in the address range "
                  "[%d:%d]",
                  static_cast<int>(_words.size()), static_cast<int>(first), static_cast<int>(last));

  // What nothing was assigned to before is unknown, and not the memory's own nets: initial values have to be constant.
  OwnedValue value = flow->IsAssigned(memory) ? flow->IdValue(memory)->Copy() : type->CreateXValue(from);
  if (!value) return false;
  const unsigned width = type->ElementConstraint()->Size();
  const bool is_signed = type->ElementConstraint()->IsSigned();
  int64_t address = first;
  for (const Word& word : _words) {
    if (word.address != no_address) address = word.address;
    if (address < low || address > high) {
      if (!_num_addresses) break; // more words than elements, which has been told
      veri_error(LineOf(word.line), "address %d in memory file must be within range [%d:%d]", static_cast<int>(address),
                 static_cast<int>(low), static_cast<int>(high));
      return false;
    }
    OwnedValue element = ValueOf(word, width);
    if (is_signed) element->SetSigned();
    value->SetElement(static_cast<unsigned>(type->PosOf(address)), std::move(element));
    address += step;
  }
  value->ResetBlockingInfo();
  value->SetBlocking();
  flow->SetAssignValue(memory, std::move(value));
  return true;
}
