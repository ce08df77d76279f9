// Handlers of faults. They use only what is safe in a signal handler.
#include "crash_guard.h"

#include <unistd.h>

#include <csignal>
#include <cstring>

#if defined(__SANITIZE_ADDRESS__)
#define HOST_HAS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HOST_HAS_SANITIZER 1
#endif
#endif

namespace {

struct FAULT {
  int signal;
  const char* text;
};

constexpr FAULT faults[] = {
    {SIGSEGV, "internal error: invalid memory access or stack overflow\n"},
    {SIGBUS, "internal error: invalid memory access\n"},
    {SIGFPE, "internal error: arithmetic fault\n"},
    {SIGILL, "internal error: illegal instruction\n"},
    {SIGABRT, "internal error: aborted\n"},
};

[[maybe_unused]] void end_process(int signal) { // unused under sanitizers, which report faults themselves
  constexpr int STATUS = 3;
  for (const FAULT& fault : faults) {
    if (fault.signal != signal) continue;
    ssize_t written = ::write(STDERR_FILENO, fault.text, std::strlen(fault.text));
    static_cast<void>(written);
  }
  ::_exit(STATUS);
}

} // namespace

void install_crash_guard() {
#ifndef HOST_HAS_SANITIZER
  static char stack[1 << 16];
  stack_t alternate{};
  alternate.ss_sp = stack;
  alternate.ss_size = sizeof stack;
  ::sigaltstack(&alternate, nullptr);
  struct sigaction action {};
  action.sa_handler = end_process;
  action.sa_flags = SA_ONSTACK;
  for (const FAULT& fault : faults) ::sigaction(fault.signal, &action, nullptr);
#endif
}
