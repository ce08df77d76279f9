// A fuzz target without a fuzzer: runs the files and the files of the folders that it is given, once each.
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz_input.h"

namespace {

void run(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  const std::vector<uint8_t> data(bytes.begin(), bytes.end()); // at its exact size, so that overruns are seen
  std::fprintf(stderr, "%s\n", path.c_str());
  LLVMFuzzerTestOneInput(data.data(), data.size());
}

} // namespace

int main(int argc, char** argv) {
  unsigned count = 0;
  for (int i = 1; i < argc; i++) {
    if (!std::filesystem::exists(argv[i])) continue;
    if (!std::filesystem::is_directory(argv[i])) {
      run(argv[i]);
      count++;
      continue;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
      if (!entry.is_regular_file()) continue;
      run(entry.path());
      count++;
    }
  }
  std::printf("%u inputs replayed\n", count);
  return count ? 0 : 1;
}
