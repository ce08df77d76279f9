// Handlers of faults. They use only what is safe in a signal handler.
#include "crash_guard.h"

#include <unistd.h>

#include <csignal>
#include <cstring>
#include <initializer_list>

#if defined(__SANITIZE_ADDRESS__)
#define HOST_HAS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HOST_HAS_SANITIZER 1
#endif
#endif

namespace {

void (*last_words)(const char*) = nullptr;

#ifndef HOST_HAS_SANITIZER

struct FAULT {
  int signal;
  const char* text;
};

constexpr FAULT faults[] = {
    {SIGSEGV, "invalid memory access or stack overflow"},
    {SIGBUS, "invalid memory access"},
    {SIGFPE, "arithmetic fault"},
    {SIGILL, "illegal instruction"},
    {SIGABRT, "aborted"},
};

constexpr int STATUS = 3;

void write_all(const char* text) {
  ssize_t written = ::write(STDERR_FILENO, text, std::strlen(text));
  static_cast<void>(written);
}

void end_at_once(int) { ::_exit(STATUS); }

/// The first fault is told in full as far as the broken process still can; the second one in a line.
void end_process(int signal) {
  constexpr unsigned SECONDS = 10;
  static volatile std::sig_atomic_t is_ending = 0;
  const char* text = "fault";
  for (const FAULT& fault : faults)
    if (fault.signal == signal) text = fault.text;
  if (last_words && !is_ending) {
    is_ending = 1;
    ::signal(SIGALRM, end_at_once);
    ::alarm(SECONDS);
    last_words(text);
    ::_exit(STATUS);
  }
  for (const char* part : {"internal error: ", text, "\n"}) write_all(part);
  ::_exit(STATUS);
}

#endif

} // namespace

void set_last_words(void (*speak)(const char* what)) { last_words = speak; }

void install_crash_guard() {
#ifndef HOST_HAS_SANITIZER
  static char stack[1 << 18];
  stack_t alternate{};
  alternate.ss_sp = stack;
  alternate.ss_size = sizeof stack;
  ::sigaltstack(&alternate, nullptr);
  struct sigaction action {};
  action.sa_handler = end_process;
  action.sa_flags = SA_ONSTACK | SA_NODEFER;
  for (const FAULT& fault : faults) ::sigaction(fault.signal, &action, nullptr);
#endif
}
