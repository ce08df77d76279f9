// A folder for the files of one test.
#ifndef TESTS_HOST_SCRATCH_DIR_H
#define TESTS_HOST_SCRATCH_DIR_H

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class SCRATCH_DIR {
public:
  SCRATCH_DIR() {
    std::string name = (std::filesystem::temp_directory_path() / "host_test_XXXXXX").string();
    m_path = ::mkdtemp(name.data());
  }
  ~SCRATCH_DIR() { std::filesystem::remove_all(m_path); }
  SCRATCH_DIR(const SCRATCH_DIR&) = delete;
  SCRATCH_DIR& operator=(const SCRATCH_DIR&) = delete;
  std::string path(const std::string& name) const { return m_path + "/" + name; }
  std::string write(const std::string& name, const std::string& text) const {
    std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
    std::ofstream(path(name)) << text;
    return path(name);
  }
  static std::string read(const std::string& name) {
    std::ifstream stream(name);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

private:
  std::string m_path;
};

#endif
