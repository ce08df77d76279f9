// The last resort: a process that would die silently says so and ends with the status of an internal error.
#ifndef HOST_CRASH_GUARD_H
#define HOST_CRASH_GUARD_H

/// Installs handlers of the signals of faults, on a stack of their own, so that an overflow of the stack is told too.
/// Builds with a sanitizer keep the sanitizer's own.
void install_crash_guard();

/// What a fault is told to before the process ends; null for nobody, and then a line on the standard error stream tells
/// it. The process is broken when this is called: a further fault in it, or too long a wait, ends it at once.
void set_last_words(void (*speak)(const char* what));

#endif
