// Reading files whole, pushing texts back, and returning to the text around.
#include "verilog/veri_input.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

namespace {

/// Room in front of a file for what is pushed back at its start.
constexpr size_t headroom = 16384;
/// What some editors write in front of a text.
constexpr const char* byte_order_mark = "\xEF\xBB\xBF";
/// Readable bytes behind the end.
constexpr size_t padding = 16;
/// A file that includes itself ends here; what is nested more than a little may not be large either.
constexpr size_t max_depth = 1000;
constexpr size_t free_depth = 16;
constexpr size_t max_nested_bytes = size_t{1} << 28;

struct FileCloser {
  void operator()(FILE* file) const { std::fclose(file); }
};
using OpenedFile = std::unique_ptr<FILE, FileCloser>;

} // namespace

bool VeriInputs::OpenFile(const char* absolute, const char* relative) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(absolute, error)) return false;
  const auto size = static_cast<size_t>(std::filesystem::file_size(absolute, error));
  if (error) return false;
  // Once the limit was met nothing more is opened: two includes of itself would double the work at each depth.
  if (Depth() >= max_depth || (Depth() >= free_depth && _nested_bytes + size > max_nested_bytes)) _refuses_files = true;
  if (_refuses_files) return false;
  const OpenedFile file(std::fopen(absolute, "rb"));
  if (!file) return false;

  Input input;
  input.storage = std::make_unique_for_overwrite<char[]>(headroom + size + padding);
  input.begin = input.storage.get();
  input.pos = input.begin + headroom;
  input.end = input.pos + std::fread(input.pos, 1, size, file.get());
  if (std::ferror(file.get())) return false;
  std::memset(input.end, 0, padding);
  _bytes_read += static_cast<size_t>(input.end - input.pos);
  if (std::memcmp(input.pos, byte_order_mark, std::strlen(byte_order_mark)) == 0)
    input.pos += std::strlen(byte_order_mark);
  input.absolute = absolute;
  input.relative = relative;
  input.is_file = true;
  Push(std::move(input));
  linefile = LineFile::EncodeLineFile(relative, 1);
  return true;
}

void VeriInputs::PushBack(const char* text, size_t length) {
  if (!length) return;
  const bool keeps_lines = !std::memchr(text, '\n', length);
  if (!_inputs.empty() && _inputs.back().is_file && keeps_lines &&
      length <= static_cast<size_t>(pos - _inputs.back().begin)) {
    pos -= length;
    std::memcpy(pos, text, length);
    return;
  }
  Input input;
  input.storage = std::make_unique_for_overwrite<char[]>(length + padding);
  input.begin = input.pos = input.storage.get();
  input.end = input.pos + length;
  std::memcpy(input.pos, text, length);
  std::memset(input.end, 0, padding);
  Push(std::move(input));
}

void VeriInputs::Push(Input input) {
  if (!_inputs.empty()) {
    _inputs.back().pos = pos;
    _inputs.back().linefile = linefile;
  }
  pos = input.pos;
  end = input.end;
  _nested_bytes += static_cast<size_t>(input.end - input.begin);
  _inputs.push_back(std::move(input));
}

bool VeriInputs::Pop() {
  if (_inputs.empty()) return false;
  _nested_bytes -= static_cast<size_t>(_inputs.back().end - _inputs.back().begin);
  _inputs.pop_back();
  if (_inputs.empty()) {
    pos = end = nullptr;
    return false;
  }
  pos = _inputs.back().pos;
  end = _inputs.back().end;
  linefile = _inputs.back().linefile;
  return true;
}

void VeriInputs::Clear() {
  _inputs.clear();
  pos = end = nullptr;
  linefile = 0;
  _nested_bytes = 0;
  _bytes_read = 0;
  _refuses_files = false;
}

const VeriInputs::Input* VeriInputs::InnermostFile() const {
  for (auto input = _inputs.rbegin(); input != _inputs.rend(); ++input)
    if (input->is_file) return &*input;
  return nullptr;
}

const char* VeriInputs::AbsoluteName() const {
  const Input* file = InnermostFile();
  return file ? file->absolute.c_str() : nullptr;
}

const char* VeriInputs::RelativeName() const {
  const Input* file = InnermostFile();
  return file ? file->relative.c_str() : nullptr;
}
