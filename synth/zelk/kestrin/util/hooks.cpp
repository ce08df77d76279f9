#include "util/hooks.h"

#include "util/strings.h"

namespace {
KernelHooks hooks_in_force;
} // namespace

KernelHooks kestrin_set_hooks(const KernelHooks& hooks) { return std::exchange(hooks_in_force, hooks); }

int kestrin_flag(const char* key) { return hooks_in_force.get_flag ? hooks_in_force.get_flag(key) : 0; }

void kestrin_set_flag(const char* key, int value) {
  if (hooks_in_force.set_flag) hooks_in_force.set_flag(key, value);
}

void kestrin_debug(const char* format, ...) {
  if (!hooks_in_force.debug) return;
  va_list args;
  va_start(args, format);
  hooks_in_force.debug(format, args);
  va_end(args);
}

std::pair<char*, char*> kestrin_find_file(const char* filename, const char* current_absolute_filename,
                                          const char* current_relative_filename) {
  if (hooks_in_force.find_file)
    return hooks_in_force.find_file(filename, current_absolute_filename, current_relative_filename);
  return {Strings::save(filename), Strings::save(filename)};
}

ProfileScope::ProfileScope(const char* name)
    : _scope(hooks_in_force.profile_begin ? hooks_in_force.profile_begin(name) : nullptr) {}

ProfileScope::~ProfileScope() {
  if (_scope && hooks_in_force.profile_end) hooks_in_force.profile_end(_scope);
}
