// VeriInputs: the stack of texts that the scanner reads: the file, the files that it includes, and expansions that
// found no room in the text being read. Each is in memory as a whole and ends with a 0 and some padding, so that the
// scanner may look a few characters ahead without asking.
#ifndef KESTRIN_VERILOG_VERI_INPUT_H
#define KESTRIN_VERILOG_VERI_INPUT_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "util/linefile.h"

class VeriInputs {
public:
  // The text being read: the next character, and the 0 behind the last one. Both null when nothing is open.
  char* pos = nullptr;
  char* end = nullptr;
  /// The place of `pos`.
  linefile_type linefile = 0;

  /// Reads a regular file and goes on at its first line. False when it cannot be read, and when so much is nested
  /// already that the file must be including itself.
  bool OpenFile(const char* absolute, const char* relative);
  /// Makes the text the next to be read. It is written in front of what follows when there is room, so that tokens can
  /// continue from it into what stands behind; else it becomes an input of its own. The line does not change.
  void PushBack(const char* text, size_t length);
  /// Leaves the current text for the one around it, at the line where that was left. False when it was the last; the
  /// line stays then.
  bool Pop();
  void Clear();

  bool IsEmpty() const { return _inputs.empty(); }
  size_t Depth() const { return _inputs.size(); }
  /// Of all files so far.
  size_t BytesRead() const { return _bytes_read; }
  // Of the innermost file, null without one.
  const char* AbsoluteName() const;
  const char* RelativeName() const;

private:
  struct Input {
    std::unique_ptr<char[]> storage;
    char* begin = nullptr; // what is between here and the position may be overwritten
    char* end = nullptr;
    char* pos = nullptr;        // where it was left
    linefile_type linefile = 0; // likewise
    std::string absolute;
    std::string relative;
    bool is_file = false;
  };

  void Push(Input input);
  const Input* InnermostFile() const;

  std::vector<Input> _inputs;
  size_t _nested_bytes = 0;
  size_t _bytes_read = 0;
  bool _refuses_files = false;
};

#endif
