// Hooks: what the kernel asks of whoever embeds it: configuration flags, debug output, the profiler and the search for
// files. The kernel knows no host; without hooks flags are 0, debug output goes nowhere and files are taken as named.
#ifndef KESTRIN_UTIL_HOOKS_H
#define KESTRIN_UTIL_HOOKS_H

#include <cstdarg>
#include <utility>

struct KernelHooks {
  int (*get_flag)(const char* key) = nullptr;
  void (*set_flag)(const char* key, int value) = nullptr;
  void (*debug)(const char* format, va_list args) = nullptr;
  /// A named stretch of work begins; what comes back is handed to `profile_end`.
  void* (*profile_begin)(const char* name) = nullptr;
  void (*profile_end)(void* scope) = nullptr;
  /// The name to be reported and the full name, both owned by the receiver; the full name is null when there is no
  /// such file. The current names are of the file that asks; either may be null.
  std::pair<char*, char*> (*find_file)(const char* filename, const char* current_absolute_filename,
                                       const char* current_relative_filename) = nullptr;
};

/// Installs hooks, of which each may be null. Returns the former ones.
KernelHooks kestrin_set_hooks(const KernelHooks& hooks);

/// The value of a configuration flag; most are 0 or 1, some are limits.
int kestrin_flag(const char* key);
void kestrin_set_flag(const char* key, int value);
[[gnu::format(printf, 1, 2)]] void kestrin_debug(const char* format, ...);
std::pair<char*, char*> kestrin_find_file(const char* filename, const char* current_absolute_filename,
                                          const char* current_relative_filename);

/// Names the work that is done while the object lives to the profiler.
class ProfileScope {
public:
  explicit ProfileScope(const char* name);
  ProfileScope(const ProfileScope&) = delete;
  ProfileScope& operator=(const ProfileScope&) = delete;
  ~ProfileScope();

private:
  void* _scope;
};

#endif
