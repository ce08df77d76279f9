// Reads the clock and the system's account of memory.
#include "stage.h"

#include <fstream>
#include <sys/resource.h>

#include "gen.h"

namespace {

/// Lets the system count the peak anew. Where it does not, the peak is that of the run so far.
void reset_peak() {
  std::ofstream file("/proc/self/clear_refs");
  file << "5\n";
}

double peak_megabytes() {
  constexpr double KILOBYTES = 1024;
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word != "VmHWM:") continue;
    double kilobytes = 0;
    status >> kilobytes;
    return kilobytes / KILOBYTES;
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / KILOBYTES;
}

} // namespace

STAGE::STAGE(std::vector<STAGE_TIME>& times, std::string name)
    : m_times(times), m_name(std::move(name)), m_start(gen_get_tick_count()) {
  reset_peak();
}

STAGE::~STAGE() {
  constexpr double MILLISECONDS = 1000;
  m_times.push_back({m_name, (gen_get_tick_count() - m_start) / MILLISECONDS, peak_megabytes()});
}
