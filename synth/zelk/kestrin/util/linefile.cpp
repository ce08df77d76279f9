#include "util/linefile.h"

#include "containers/views.h"
#include "util/strings.h"

Map* LineFile::filename_to_id = nullptr;
Map* LineFile::id_to_filename = nullptr;
unsigned LineFile::file_id = 0;

linefile_type LineFile::EncodeLineFile(const char* file, unsigned line) {
  if (!file) return line;
  if (!filename_to_id) {
    filename_to_id = new Map(HASH_STRING);
    id_to_filename = new Map(HASH_NUM);
  }
  auto id = FromWord<unsigned>(filename_to_id->GetValue(file));
  if (!id) {
    id = file_id = file_id < max_file_id ? file_id + 1 : wrapped_file_id;
    char* name = Strings::save(file);
    filename_to_id->Insert(name, ToWord(id));
    id_to_filename->Insert(ToWord(id), name, /*force_overwrite=*/0, /*force_insert=*/1);
  }
  return (id << line_bits) | line;
}

const char* LineFile::GetFileName(linefile_type linefile) {
  if (!id_to_filename || !GetFileId(linefile)) return nullptr;
  return FromWord<const char*>(id_to_filename->GetValue(ToWord(GetFileId(linefile))));
}

unsigned LineFile::GetFileId(linefile_type linefile) { return (linefile >> line_bits) & max_file_id; }

unsigned LineFile::GetLineNo(linefile_type linefile) { return linefile & max_line; }

linefile_type LineFile::IncrLineNo(linefile_type linefile) {
  return GetLineNo(linefile) == max_line ? linefile : linefile + 1;
}

void LineFile::FreeLineFileMaps() {
  for (auto [name, id] : Entries<char*, unsigned>(filename_to_id)) Strings::free_string(name);
  delete filename_to_id;
  delete id_to_filename;
  filename_to_id = id_to_filename = nullptr;
}
