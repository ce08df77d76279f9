// What the fuzz targets share: the input as a file, and a kernel that reads no other file and takes no report of an
// internal error lightly.
#ifndef FUZZ_INPUT_H
#define FUZZ_INPUT_H

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "containers/assertion.h"
#include "util/message.h"
#include "util/services.h"

/// A file of one name for the whole run, in memory where there is such a folder.
class FUZZ_FILE {
public:
  explicit FUZZ_FILE(const char* extension) {
    const char* folder = std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : ".";
    m_path = std::string(folder) + "/fuzz_" + std::to_string(::getpid()) + extension;
  }
  ~FUZZ_FILE() { ::unlink(m_path.c_str()); }
  FUZZ_FILE(const FUZZ_FILE&) = delete;
  FUZZ_FILE& operator=(const FUZZ_FILE&) = delete;

  const char* path() const { return m_path.c_str(); }
  void write(const uint8_t* data, size_t size) const {
    int file = ::open(path(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0 || ::write(file, data, size) != static_cast<ssize_t>(size)) std::abort();
    ::close(file);
  }

private:
  std::string m_path;
};

/// Finds the input itself, by its name or as "me", and nothing else.
class FUZZ_SERVICES : public KernelServices {
public:
  explicit FUZZ_SERVICES(const FUZZ_FILE& file) : m_file(file) {
    Set(this);
    Message::SetConsoleOutput(0);
    kestrin_set_report_handler([](const char* text, const char* file_name, int line) {
      std::fprintf(stderr, "internal error: %s (%s, line %d)\n", text, file_name, line);
      std::abort();
    });
  }
  ~FUZZ_SERVICES() override { Set(nullptr); }
  FoundFile FindFile(const char* name, const char* /*absolute*/, const char* /*relative*/) override {
    FoundFile found;
    found.reported.reset(Strings::save(name));
    if (std::strcmp(name, "me") == 0 || std::strcmp(name, m_file.path()) == 0)
      found.full.reset(Strings::save(m_file.path()));
    return found;
  }

private:
  const FUZZ_FILE& m_file;
};

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

#endif
