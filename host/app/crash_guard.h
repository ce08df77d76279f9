// The last resort: a process that would die silently says so and ends with the status of an internal error.
#ifndef HOST_CRASH_GUARD_H
#define HOST_CRASH_GUARD_H

/// Installs handlers of the signals of faults, on a stack of their own, so that an overflow of the stack is told too.
/// Builds with a sanitizer keep the sanitizer's own.
void install_crash_guard();

#endif
