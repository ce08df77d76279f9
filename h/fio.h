// Files and paths of the host: path arithmetic on text, searches of a directory, and the file system.
#ifndef FIO_H
#define FIO_H

#include <cstdio>
#include <string>
#include <vector>

/// A path as text. Nothing touches the file system except exists() and fullpath() of a relative path, which asks for
/// the current directory.
class FIO_PATH {
public:
  FIO_PATH() = default;
  explicit FIO_PATH(const char* path) : m_path(path ? path : "") {}
  explicit FIO_PATH(const std::string& path) : m_path(path) {}

  bool empty() const { return m_path.empty(); }
  const std::string& get_path() const { return m_path; }
  bool is_absolute() const { return !m_path.empty() && m_path[0] == '/'; }
  /// Absolute, without "." and ".." elements; symbolic links are left alone.
  std::string fullpath() const;
  /// What stands behind the last "/".
  std::string filename() const;
  /// Replaces what stands behind the last "/".
  void filename(const std::string& name);
  /// Up to and with the last "/"; empty without one.
  std::string directory() const;
  /// Replaces the directory; a missing "/" at the end is added.
  void directory(const std::string& directory);
  /// The last element, also of a path that ends in "/".
  std::string tail() const;
  /// Behind the last "." of the file name, without it; empty without one.
  std::string extension() const;
  void extension(const std::string& extension);
  /// This path as seen from a directory, with ".." elements at need.
  FIO_PATH get_relative_to(const FIO_PATH& directory) const;
  /// Number of elements, not counting ".".
  unsigned levels() const;
  /// A file, or a directory.
  bool exists() const;

private:
  std::string m_path;
};

/// The entries of a directory in the order of their names, without "." and ".."; none for an absent directory.
class FIO_FIND {
public:
  explicit FIO_FIND(const FIO_PATH& directory);
  const std::vector<std::string>& get_names() const { return m_names; }

private:
  std::vector<std::string> m_names;
};

/// The file system. Outputs that are to appear whole or not at all are written through FIO_OUTPUT_FILE.
class FIO_FILE_SYSTEM {
public:
  /// As fopen, but directories do not open. Null on failure.
  static FILE* open(const char* name, const char* mode);
  static int close(FILE* file);
  static int error(FILE* file);
  static int getc(FILE* file);
  static size_t read(void* buffer, size_t size, FILE* file);
  static bool is_file(const char* name);
  static bool is_directory(const char* name);
  /// Creates the file when it is missing; false when that is impossible.
  static bool touch(const std::string& name);
  static bool remove(const std::string& name);
  static bool rename(const std::string& from, const std::string& to);
};

/// A file written under a temporary name beside the target and moved onto it by commit(). Without commit nothing
/// remains, also when the process ends in an orderly way in between.
class FIO_OUTPUT_FILE {
public:
  explicit FIO_OUTPUT_FILE(const std::string& target);
  ~FIO_OUTPUT_FILE();
  FIO_OUTPUT_FILE(const FIO_OUTPUT_FILE&) = delete;
  FIO_OUTPUT_FILE& operator=(const FIO_OUTPUT_FILE&) = delete;

  bool is_open() const { return m_file != nullptr; }
  void write(const std::string& text);
  /// Closes and moves into place; false when any write or the move failed, and then nothing remains.
  bool commit();
  /// Removes every temporary output of the process; for ends of the process that run no destructors.
  static void remove_all();

private:
  void discard();

  std::string m_target;
  std::string m_temporary;
  FILE* m_file = nullptr;
  bool m_failed = false;
};

#endif
