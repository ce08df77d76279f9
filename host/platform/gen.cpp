// Comparison of names, search of source files, folders of the project and of the installation.
#include "gen.h"

#include <chrono>
#include <cstring>
#include <strings.h>
#include <vector>

#include "fio.h"
#include "stl_util.h"

namespace {

struct FOLDERS {
  std::string project;
  std::string library_root;
  std::vector<std::string> search;
};

FOLDERS& folders() {
  static FOLDERS all;
  return all;
}

std::string with_slash(std::string directory) {
  if (directory.empty() || directory.back() != '/') directory += '/';
  return directory;
}

bool find_in(const std::string& directory, const char* name, std::string& found) {
  std::string path = with_slash(directory) + name;
  if (!FIO_FILE_SYSTEM::is_file(path.c_str())) return false;
  found = path;
  return true;
}

} // namespace

int gen_strcmp(const char* left, const char* right) {
  if (!left || !right) return (left != nullptr) - (right != nullptr);
  return std::strcmp(left, right);
}

int gen_stricmp(const char* left, const char* right) {
  if (!left || !right) return (left != nullptr) - (right != nullptr);
  return strcasecmp(left, right);
}

bool gen_find_file(const char* name, std::string& found) {
  if (FIO_FILE_SYSTEM::is_file(name)) {
    found = name;
    return true;
  }
  if (name[0] == '/') return false;
  if (find_in(gen_get_project_dir_path(), name, found)) return true;
  for (const std::string& directory : folders().search)
    if (find_in(directory, name, found)) return true;
  return false;
}

bool gen_find_include_file(const char* name, const char* current_absolute, const char* current_relative,
                           std::string& relative, std::string& absolute) {
  std::string beside = FIO_PATH(current_relative).directory() + name;
  std::string beside_absolute = FIO_PATH(current_absolute).directory() + name;
  std::string found;
  if (name[0] != '/' && FIO_FILE_SYSTEM::is_file(beside_absolute.c_str())) {
    relative = beside;
    absolute = FIO_PATH(beside_absolute).fullpath();
    return true;
  }
  if (!gen_find_file(name, found)) return false;
  relative = gen_get_relative_path_if_starts_with_project_dir(found);
  absolute = FIO_PATH(found).fullpath();
  return true;
}

std::string gen_get_relative_path_if_starts_with_project_dir(const std::string& path) {
  std::string project = gen_get_project_dir_path();
  return path.compare(0, project.size(), project) == 0 && path.size() > project.size() ? path.substr(project.size())
                                                                                       : path;
}

std::string gen_get_project_dir_path() {
  return with_slash(folders().project.empty() ? FIO_PATH(".").fullpath() : folders().project);
}

std::string gen_get_library_path(int kind) {
  constexpr int VHDL_LIBRARIES = 2;
  std::string root = with_slash(folders().library_root);
  return kind == VHDL_LIBRARIES ? root + "vhdl/" : root;
}

double gen_get_tick_count() {
  auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double, std::milli>(now).count();
}

const char* gen_get_version() { return "zelk-host 0.1"; }
const char* gen_get_platform() { return "Linux"; }

void gen_set_project_dir(const std::string& directory) { folders().project = FIO_PATH(directory).fullpath(); }
void gen_set_library_root(const std::string& directory) { folders().library_root = directory; }
void gen_add_search_dir(const std::string& directory) { folders().search.push_back(directory); }
void gen_clear_search_dirs() { folders().search.clear(); }

void stl_vsprintf(std::string& text, const char* format, va_list args) {
  va_list again;
  va_copy(again, args);
  int length = std::vsnprintf(nullptr, 0, format, again);
  va_end(again);
  text.assign(length < 0 ? 0 : static_cast<size_t>(length), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, args);
}

std::string stl_toupper(const std::string& text) {
  std::string upper = text;
  for (char& c : upper)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return upper;
}
