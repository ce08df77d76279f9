// VeriMemoryFile: the words of a file for $readmemb and $readmemh (IEEE 1364-2005 17.2.9): numbers between white space
// and comments, with `@hex` where the address jumps. Reading and storing are apart, so that a file is checked as a
// whole before a memory changes.
#ifndef KESTRIN_VERILOG_VERIMEMORYFILE_H
#define KESTRIN_VERILOG_VERIMEMORYFILE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "util/linefile.h"
#include "verilog/verivalue.h"

class VeriDataFlow;
class VeriIdDef;
class VeriTreeNode;

class VeriMemoryFile {
public:
  /// Reads the file at the path `full`, which messages call `name`. Null after an error, which is reported at its line;
  /// `from` is told when the file cannot be opened.
  static std::unique_ptr<VeriMemoryFile> ReadMemoryFile(const char* full, const char* name, bool is_binary,
                                                        const VeriTreeNode* from);

  /// Makes the words the value that the memory, an array of vectors with one unpacked dimension, has in the flow. The
  /// first word goes to `start`, the next ones towards `stop`; without these from the lowest to the highest index.
  /// Elements without a word keep their value. False, with nothing stored, after an error.
  bool LoadMemory(VeriIdDef* memory, VeriDataFlow* flow, std::optional<int64_t> start, std::optional<int64_t> stop,
                  const VeriTreeNode* from) const;

  unsigned NumOfAddresses() const { return _num_addresses; }
  unsigned NumOfWords() const { return static_cast<unsigned>(_words.size()); }

private:
  friend class VeriMemoryFileReader;
  struct Word {
    int64_t address; // of an @ right before the word, else no_address
    size_t first;    // place of the most significant digit
    unsigned size;   // digits
    unsigned line;
  };
  static constexpr int64_t no_address = -1;

  VeriMemoryFile(const char* name, bool is_binary) : _name(name), _is_binary(is_binary) {}
  linefile_type LineOf(unsigned line) const;
  OwnedValue ValueOf(const Word& word, unsigned width) const;

  std::string _name;
  bool _is_binary;
  std::string _digits; // of all words, in lower case
  std::vector<Word> _words;
  unsigned _num_addresses = 0;
};

#endif
