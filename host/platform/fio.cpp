// Paths as text, directory searches and the file system.
#include "fio.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

std::string FIO_PATH::fullpath() const {
  if (m_path.empty()) return "";
  std::error_code error;
  fs::path full = is_absolute() ? fs::path(m_path) : fs::current_path(error) / m_path;
  return full.lexically_normal().string();
}

std::string FIO_PATH::filename() const { return m_path.substr(m_path.rfind('/') + 1); }

void FIO_PATH::filename(const std::string& name) { m_path = directory() + name; }

std::string FIO_PATH::directory() const { return m_path.substr(0, m_path.rfind('/') + 1); }

void FIO_PATH::directory(const std::string& directory) {
  std::string name = filename();
  m_path = directory;
  if (!m_path.empty() && m_path.back() != '/') m_path += '/';
  m_path += name;
}

std::string FIO_PATH::tail() const {
  size_t end = m_path.find_last_not_of('/');
  if (end == std::string::npos) return "";
  return FIO_PATH(m_path.substr(0, end + 1)).filename();
}

std::string FIO_PATH::extension() const {
  std::string name = filename();
  size_t dot = name.rfind('.');
  return dot == std::string::npos ? "" : name.substr(dot + 1);
}

void FIO_PATH::extension(const std::string& extension) {
  std::string name = filename();
  filename(name.substr(0, name.rfind('.')) + "." + extension);
}

FIO_PATH FIO_PATH::get_relative_to(const FIO_PATH& directory) const {
  return FIO_PATH(fs::path(fullpath()).lexically_relative(directory.fullpath()).string());
}

unsigned FIO_PATH::levels() const {
  unsigned count = 0;
  for (const fs::path& element : fs::path(m_path)) {
    std::string text = element.string();
    if (!text.empty() && text != "." && text != "/") count++;
  }
  return count;
}

bool FIO_PATH::exists() const { return ::access(m_path.c_str(), F_OK) == 0; }

FIO_FIND::FIO_FIND(const FIO_PATH& directory) {
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory.get_path(), error))
    m_names.push_back(entry.path().filename().string());
  std::sort(m_names.begin(), m_names.end());
}

FILE* FIO_FILE_SYSTEM::open(const char* name, const char* mode) {
  if (!name || is_directory(name)) return nullptr;
  return std::fopen(name, mode);
}

int FIO_FILE_SYSTEM::close(FILE* file) { return std::fclose(file); }
int FIO_FILE_SYSTEM::error(FILE* file) { return std::ferror(file); }
int FIO_FILE_SYSTEM::getc(FILE* file) { return std::fgetc(file); }
size_t FIO_FILE_SYSTEM::read(void* buffer, size_t size, FILE* file) { return std::fread(buffer, 1, size, file); }

bool FIO_FILE_SYSTEM::is_file(const char* name) {
  struct stat status;
  return ::stat(name, &status) == 0 && !S_ISDIR(status.st_mode);
}

bool FIO_FILE_SYSTEM::is_directory(const char* name) {
  struct stat status;
  return ::stat(name, &status) == 0 && S_ISDIR(status.st_mode);
}

bool FIO_FILE_SYSTEM::touch(const std::string& name) {
  FILE* file = open(name.c_str(), "a");
  return file && close(file) == 0;
}

bool FIO_FILE_SYSTEM::remove(const std::string& name) { return std::remove(name.c_str()) == 0; }

bool FIO_FILE_SYSTEM::rename(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

namespace {

std::set<std::string>& temporaries() {
  static std::set<std::string> names;
  return names;
}

/// Only plain files are replaced; a device or a pipe is written to as it is.
bool is_replaceable(const std::string& target) {
  struct stat status;
  return ::stat(target.c_str(), &status) != 0 || S_ISREG(status.st_mode);
}

} // namespace

FIO_OUTPUT_FILE::FIO_OUTPUT_FILE(const std::string& target) : m_target(target) {
  if (is_replaceable(target)) {
    m_temporary = target + ".tmp" + std::to_string(::getpid());
    m_file = FIO_FILE_SYSTEM::open(m_temporary.c_str(), "wb");
    if (m_file) temporaries().insert(m_temporary);
  } else {
    m_file = FIO_FILE_SYSTEM::open(target.c_str(), "wb");
  }
}

FIO_OUTPUT_FILE::~FIO_OUTPUT_FILE() { discard(); }

void FIO_OUTPUT_FILE::write(const std::string& text) {
  if (m_file && std::fwrite(text.data(), 1, text.size(), m_file) != text.size()) m_failed = true;
}

bool FIO_OUTPUT_FILE::commit() {
  if (!m_file) return false;
  bool closed = std::fclose(m_file) == 0;
  m_file = nullptr;
  bool done = closed && !m_failed && (m_temporary.empty() || FIO_FILE_SYSTEM::rename(m_temporary, m_target));
  if (done) temporaries().erase(m_temporary);
  if (done) m_temporary.clear();
  discard();
  return done;
}

void FIO_OUTPUT_FILE::discard() {
  if (m_file) std::fclose(m_file);
  m_file = nullptr;
  if (m_temporary.empty()) return;
  std::remove(m_temporary.c_str());
  temporaries().erase(m_temporary);
  m_temporary.clear();
}

void FIO_OUTPUT_FILE::remove_all() {
  for (const std::string& name : temporaries()) std::remove(name.c_str());
  temporaries().clear();
}
