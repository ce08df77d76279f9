// Finds and opens the front end's shared library.
#include "analyzer_library.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>

#include "fio.h"

namespace {

constexpr const char* LIBRARY_NAME = "libzelk.so";
constexpr const char* ENTRY_POINT = "zelk_dyn_create_analyzer";

std::string program_directory() {
  char path[PATH_MAX];
  ssize_t length = ::readlink("/proc/self/exe", path, sizeof path);
  return length <= 0 ? "" : FIO_PATH(std::string(path, static_cast<size_t>(length))).directory();
}

std::string find_library() {
  for (const char* place : {"", "../lib/"}) {
    std::string path = program_directory() + place + LIBRARY_NAME;
    if (FIO_FILE_SYSTEM::is_file(path.c_str())) return path;
  }
  return LIBRARY_NAME;
}

} // namespace

ANALYZER_LIBRARY::~ANALYZER_LIBRARY() {
  if (m_analyzer) m_analyzer->get_services().delete_static_data(m_analyzer.get());
}

bool ANALYZER_LIBRARY::load(std::string& problem) { return load_file(find_library(), problem); }

bool ANALYZER_LIBRARY::load_file(const std::string& path, std::string& problem) {
  // The library stays loaded to the end of the process: its code runs while statics are taken down.
  void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  using create_function = void* (*)();
  auto create = library ? reinterpret_cast<create_function>(::dlsym(library, ENTRY_POINT)) : nullptr;
  if (!create) {
    const char* words = ::dlerror();
    problem = words ? words : path + " has no entry point";
    return false;
  }
  m_analyzer.reset(static_cast<BASEX_ANALYZER*>(create()));
  return m_analyzer != nullptr;
}
