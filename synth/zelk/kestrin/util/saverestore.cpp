#include "util/saverestore.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "containers/views.h"
#include "util/message.h"

namespace {

// Ahead of a location: a file name follows. No location is this word.
constexpr unsigned new_file_mark = 0xFFFFFFFFU;
constexpr long null_string_size = -1;
constexpr unsigned long free_objects = 1UL << 19;
constexpr unsigned long objects_per_byte = 16;

} // namespace

SaveRestore::SaveRestore(const char* path, unsigned restore)
    : _file_name(Strings::save(path)), _pointer_to_id(new Map(HASH_NUM)), _id_to_pointer(new Map(HASH_NUM)),
      _saved_files(new Map(HASH_STRING)), _restored_files(new Map(HASH_NUM)), _restoring(restore != 0), _swap(0),
      _good(0) {
  _file = path ? std::fopen(path, restore ? "rb" : "wb") : nullptr;
  if (!_file) {
    Message::Error(0, "cannot open file ", path);
    return;
  }
  _good = 1;
  if (restore) {
    ReadHeader();
    return;
  }
  SaveInteger(magic_number);
  SaveInteger(version_number);
}

SaveRestore::~SaveRestore() {
  Undo();
  if (_good && !_restoring) SaveInteger(magic_number);
  if (_good && _restoring && ReadWord() != magic_number) KESTRIN_REPORT_INTERNAL("magic == magic_number");
  if (_file && std::fclose(_file) != 0 && !_restoring) Message::Error(0, "cannot write file ", FileName());
  for (auto [name, seen] : Entries<char*, void*>(_saved_files)) Strings::free_string(name);
  delete _pointer_to_id;
  delete _id_to_pointer;
  delete _saved_files;
  delete _restored_files;
}

unsigned SaveRestore::Afford(unsigned long objects) {
  if (_good && objects <= _affordable)
    _affordable -= objects;
  else
    SetFail();
  return _good;
}

void SaveRestore::Undo() {
  if (_good) return;
  for (; !_undo.empty(); _undo.pop_back()) _undo.back()();
}

void SaveRestore::ReadHeader() {
  if (std::fseek(_file, 0, SEEK_END) == 0)
    _affordable = free_objects + objects_per_byte * static_cast<unsigned long>(std::max(std::ftell(_file), 0L));
  std::rewind(_file);
  unsigned magic = ReadWord();
  if (magic != magic_number) {
    long swapped = magic;
    EndianShuffle(&swapped);
    if (swapped != static_cast<long>(magic_number)) {
      Message::Error(0, "file ", FileName(), " is probably not a Kestrin binary database file");
      SetFail();
      return;
    }
    _swap = 1;
  }
  _version = ReadWord();
  if (Version() == version_number) return;
  Message::Error(0, "file ", FileName(), " was created with a different version ; cannot restore");
  SetFail();
}

void SaveRestore::Write(const void* bytes, size_t size) {
  if (_good && std::fwrite(bytes, 1, size, _file) != size) SetFail();
}

void SaveRestore::Read(void* bytes, size_t size) {
  if (_good && std::fread(bytes, 1, size, _file) != size) SetFail();
}

void SaveRestore::SaveInteger(long value) {
  auto word = static_cast<int32_t>(value);
  Write(&word, sizeof word);
}

unsigned SaveRestore::ReadWord() {
  uint32_t word = 0;
  Read(&word, sizeof word);
  if (!_good) return 0;
  long value = word;
  if (_swap) EndianShuffle(&value);
  return static_cast<unsigned>(value);
}

long SaveRestore::RestoreInteger() { return static_cast<int32_t>(ReadWord()); }

void SaveRestore::EndianShuffle(long* value) {
  auto word = static_cast<uint32_t>(*value);
  *value = static_cast<long>(word >> 24 | (word >> 8 & 0xFF00U) | (word << 8 & 0xFF0000U) | word << 24);
}

void SaveRestore::SaveString(const char* string) {
  SaveInteger(string ? static_cast<long>(std::strlen(string)) : null_string_size);
  if (string) Write(string, std::strlen(string));
}

// The length may be wrong in a damaged file, so storage grows with what is really there.
char* SaveRestore::RestoreString() {
  long size = RestoreInteger();
  if (!_good || size == null_string_size) return nullptr;
  if (size < 0) {
    SetFail();
    return nullptr;
  }
  constexpr long chunk_size = 1L << 16;
  OwnedString string(Strings::Allocate(static_cast<unsigned>(std::min(size, chunk_size) + 1)));
  for (long done = 0; done < size;) {
    long chunk = std::min(size - done, std::max(done, chunk_size));
    string.get()[done] = 0;
    string.reset(Strings::resize(string.release(), static_cast<unsigned>(done + chunk + 1)));
    Read(string.get() + done, static_cast<size_t>(chunk));
    if (!_good) return nullptr;
    done += chunk;
  }
  string.get()[size] = 0;
  return string.release();
}

void SaveRestore::SaveDouble(double value) {
  char digits[64];
  std::snprintf(digits, sizeof digits, "%#.15G", value);
  std::replace(digits, digits + std::strlen(digits), ',', '.'); // whatever the locale of the process
  SaveString(digits);
}

double SaveRestore::RestoreDouble() {
  OwnedString digits(RestoreString());
  return Strings::atof(digits.get());
}

void SaveRestore::SavePointer(const void* object) {
  if (!_good) return;
  unsigned id = Pointer2Id(object);
  if (object && !id) {
    SetFail();
    return;
  }
  SaveInteger(id);
}

void* SaveRestore::RestorePointer() {
  unsigned id = ReadWord();
  if (!id) return nullptr;
  void* object = Id2Pointer(id);
  if (!object) SetFail();
  return object;
}

void SaveRestore::Bind(const void* object, unsigned id) {
  if (!object || !_pointer_to_id->Insert(object, ToWord(id))) SetFail();
  if (_good && _restoring && !_id_to_pointer->Insert(ToWord(id), object, /*force_overwrite=*/1)) SetFail();
}

void SaveRestore::RegisterPointer(const void* object) {
  if (_good) Bind(object, ++_last_id);
}

void SaveRestore::UnRegister(const void* object) {
  unsigned id = Pointer2Id(object);
  if (!_good || !id) return;
  _pointer_to_id->Remove(object);
  _id_to_pointer->Remove(ToWord(id));
}

void SaveRestore::ReRegister(const void* former, const void* object) {
  if (!_good || former == object) return;
  unsigned id = Pointer2Id(former);
  if (!id) {
    SetFail();
    return;
  }
  UnRegister(former);
  Bind(object, id);
}

void* SaveRestore::Id2Pointer(unsigned id) const { return _id_to_pointer->GetValue(ToWord(id)); }

unsigned SaveRestore::Pointer2Id(const void* object) const {
  return object ? FromWord<unsigned>(_pointer_to_id->GetValue(object)) : 0;
}

void SaveRestore::SaveLinefile(linefile_type linefile) {
  if (!_good) return;
  const char* file = LineFile::GetFileName(linefile);
  if (file && !_saved_files->GetItem(file)) {
    _saved_files->Insert(Strings::save(file), nullptr);
    SaveInteger(static_cast<int32_t>(new_file_mark));
    SaveString(file);
    Message::Info(linefile, "object saved from new file");
  }
  auto word = static_cast<uint32_t>(linefile);
  SaveInteger(static_cast<int32_t>(word == new_file_mark ? word - 1 : word));
}

linefile_type SaveRestore::RestoreLinefile() {
  unsigned word = ReadWord();
  if (word == new_file_mark) {
    OwnedString name(RestoreString());
    word = ReadWord();
    if (!_good || !name) {
      SetFail();
      return 0;
    }
    const char* file = LineFile::GetFileName(LineFile::EncodeLineFile(name.get(), 0));
    _restored_files->Insert(ToWord(LineFile::GetFileId(word)), file, /*force_overwrite=*/1);
  }
  const auto* file = FromWord<const char*>(_restored_files->GetValue(ToWord(LineFile::GetFileId(word))));
  return LineFile::EncodeLineFile(file, LineFile::GetLineNo(word));
}
