// LineFile: a place in a source file in one 32-bit word, 12 bits of file id above 20 bits of line. A location of 0 is
// no location, a file id of 0 is no file. Ids are given out per run, so a location is valid only while the maps live.
#ifndef KESTRIN_UTIL_LINEFILE_H
#define KESTRIN_UTIL_LINEFILE_H

class Map;

/// The packed location, as objects and tree nodes hold it.
using linefile_type = unsigned long;

class LineFile {
public:
  static constexpr unsigned line_bits = 20;
  static constexpr unsigned max_line = (1U << line_bits) - 1;
  static constexpr unsigned max_file_id = (1U << 12) - 1;
  /// Where ids start again when they run out; the files below keep theirs.
  static constexpr unsigned wrapped_file_id = 20;

  /// The location of a line. The name is compared by its bytes; a null name gives the line alone. A line beyond the
  /// maximum spills into the file id.
  static linefile_type EncodeLineFile(const char* file, unsigned line);
  /// The name under which the file was encoded, owned by the map; null when the location has no file.
  static const char* GetFileName(linefile_type linefile);
  static unsigned GetFileId(linefile_type linefile);
  static unsigned GetLineNo(linefile_type linefile);
  /// The next line of the file; the last line stays where it is.
  static linefile_type IncrLineNo(linefile_type linefile);
  /// Forgets all files. The ids go on from where they are.
  static void FreeLineFileMaps();

private:
  static Map* filename_to_id;
  static Map* id_to_filename; // with forced insertion: after a wrap the newest file of an id is found first
  static unsigned file_id;    // last id given out
};

#endif
