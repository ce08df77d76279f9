// Assertions of the kernel: a broken invariant of our own code, never a mistake of a user. The kernel knows no host, so
// the one who embeds it says where a failure goes; without that it is printed and the process aborts.
#ifndef KESTRIN_CONTAINERS_ASSERTION_H
#define KESTRIN_CONTAINERS_ASSERTION_H

/// Called with the text of the failed condition (or the report) and its place.
using kestrin_assertion_handler = void (*)(const char* text, const char* file, int line);

/// Installs the handler of failed assertions; it is not expected to return, and the process aborts if it does.
/// A null pointer restores the default. Returns the former handler.
kestrin_assertion_handler kestrin_set_assertion_handler(kestrin_assertion_handler handler);

/// Installs the handler of internal errors that are reported while processing goes on.
/// A null pointer restores the default, which prints. Returns the former handler.
kestrin_assertion_handler kestrin_set_report_handler(kestrin_assertion_handler handler);

[[noreturn]] void kestrin_assertion_failed(const char* text, const char* file, int line);
void kestrin_report_internal(const char* text, const char* file, int line);

#define KESTRIN_ASSERT(condition)                                                                                      \
  ((condition) ? static_cast<void>(0) : kestrin_assertion_failed(#condition, __FILE__, __LINE__))

/// For conditions whose text is quoted to users of the log and is not the C++ expression.
#define KESTRIN_ASSERT_TEXT(condition, text)                                                                           \
  ((condition) ? static_cast<void>(0) : kestrin_assertion_failed(text, __FILE__, __LINE__))

/// An internal error after which the caller has a safe way to go on.
#define KESTRIN_REPORT_INTERNAL(text) kestrin_report_internal(text, __FILE__, __LINE__)

#endif
