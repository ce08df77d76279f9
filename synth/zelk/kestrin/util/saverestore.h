// SaveRestore: the binary stream beneath all persistence. One object is one open file, either written or read. Every
// operation does nothing, and reads as 0 or null, once the stream is bad; short reads and writes make it so.
#ifndef KESTRIN_UTIL_SAVERESTORE_H
#define KESTRIN_UTIL_SAVERESTORE_H

#include <cstdio>
#include <functional>
#include <utility>
#include <vector>

#include "util/linefile.h"
#include "util/strings.h"

class Map;

class SaveRestore {
public:
  static constexpr unsigned magic_number = 52390930;
  static constexpr unsigned version_number = 21;

  /// Opens a file to be read (`restore`) or written. Failures are messages and leave a bad stream.
  SaveRestore(const char* path, unsigned restore);
  SaveRestore(const SaveRestore&) = delete;
  SaveRestore& operator=(const SaveRestore&) = delete;
  /// Ends a good stream with the magic number, or checks that this is what comes next.
  ~SaveRestore();

  const char* FileName() const { return _file_name.get(); }
  unsigned IsRestoring() const { return _restoring; }
  unsigned IsOK() const { return _good; }
  void SetFail() { _good = 0; }
  /// The version word of the file that is read, or of this code.
  unsigned short Version() const { return static_cast<unsigned short>(_version); }

  /// Four bytes in the writer's order.
  void SaveInteger(long value);
  /// Sign-extended.
  long RestoreInteger();
  void SaveString(const char* string);
  /// A kernel string of the caller, or null.
  char* RestoreString();
  void SaveDouble(double value);
  double RestoreDouble();

  // Objects by the ids under which they were registered, in the same order by writer and reader. Id 0 is null.
  void SavePointer(const void* object);
  void* RestorePointer();
  /// Gives the next id to an object, which must not have one.
  void RegisterPointer(const void* object);
  void UnRegister(const void* object);
  /// Hands the id of one object to another, which must not have one.
  void ReRegister(const void* former, const void* object);
  unsigned IsRegistered(const void* object) const { return Pointer2Id(object) != 0; }
  /// Whether an object was written to this stream.
  unsigned IsSaved(const void* object) const { return !_restoring && IsRegistered(object); }
  /// Null for an unknown id.
  void* Id2Pointer(unsigned id) const;
  /// 0 for an unknown object.
  unsigned Pointer2Id(const void* object) const;

  // What a damaged file must not do.
  /// Whether the file may ask for so many objects that it does not spell out, such as the ports of an operator of a
  /// given size. The first half million is free, more must be backed by the size of the file; otherwise the stream goes
  /// bad.
  unsigned Afford(unsigned long objects);
  /// Notes how to take back a change made outside of what the caller holds.
  void OnFailure(std::function<void()> undo) { _undo.push_back(std::move(undo)); }
  /// Takes all noted changes of a bad stream back, the latest first. Closing a bad stream does it too.
  void Undo();

  /// File ids mean nothing in another run, so the name of each file is written once.
  void SaveLinefile(linefile_type linefile);
  linefile_type RestoreLinefile();

  /// Reverses the four bytes of a value.
  static void EndianShuffle(long* value);

private:
  void ReadHeader();
  unsigned ReadWord();
  void Write(const void* bytes, size_t size);
  void Read(void* bytes, size_t size);
  void Bind(const void* object, unsigned id);

  FILE* _file = nullptr;
  OwnedString _file_name;
  Map* _pointer_to_id;
  Map* _id_to_pointer;  // while restoring
  Map* _saved_files;    // names, owned
  Map* _restored_files; // file id of the writer -> name, owned by the map of locations
  unsigned _version = version_number;
  unsigned _restoring : 1;
  unsigned _swap : 1;
  unsigned _good : 1;
  unsigned _last_id = 0;
  unsigned long _affordable = 0;
  std::vector<std::function<void()>> _undo;
};

#endif
