// A source file of a project.
#ifndef HDB_SOURCE_FILE_H
#define HDB_SOURCE_FILE_H

#include <string>

class HDB_SOURCE_FILE {
public:
  enum TYPE { TYPE_UNKNOWN = 0, TYPE_VHDL = 5, TYPE_VERILOG = 8, TYPE_SYSTEMVERILOG = 9 };
  /// Numbers of per-file arguments.
  enum ARGUMENT { ARGUMENT_HDL_VERSION = 1 };

  HDB_SOURCE_FILE(const std::string& filename, int type) : m_filename(filename), m_type(type) {}
  /// By extension, in any case: v and vh, sv and svh, vhd and vhdl.
  static int path_to_file_type(const std::string& path);

  int get_type() const { return m_type; }
  /// As the user wrote it.
  const char* get_unmodified_filename() const { return m_filename.c_str(); }
  /// Destination library, or null when the user named none.
  const char* get_library() const { return m_library.empty() ? nullptr : m_library.c_str(); }
  void set_library(const std::string& library) { m_library = library; }
  /// False, with `text` untouched, when the file carries no such argument.
  bool get_argument_value(int argument, std::string* text) const;
  void set_argument_value(int argument, const std::string& text);
  bool is_encrypted() const { return m_is_encrypted; }
  void set_encrypted(bool on) { m_is_encrypted = on; }
  int get_fio_user_type() const { return m_fio_user_type; }
  void set_fio_user_type(int type) { m_fio_user_type = type; }
  /// Bits that say how the file came to the project: 4 found by analysis, 8 not to be stored.
  unsigned get_flags() const { return m_flags; }
  void set_flags(unsigned flags) { m_flags = flags; }

private:
  std::string m_filename;
  std::string m_library;
  std::string m_hdl_version;
  int m_type;
  int m_fio_user_type = 0;
  unsigned m_flags = 0;
  bool m_is_encrypted = false;
  bool m_has_hdl_version = false;
};

#endif
