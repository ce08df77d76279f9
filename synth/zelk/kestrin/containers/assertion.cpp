#include "containers/assertion.h"

#include <cstdio>
#include <cstdlib>

namespace {

void PrintFailure(const char* text, const char* file, int line) {
  std::fprintf(stderr, "internal error: %s (%s, line %d)\n", text, file, line);
}

kestrin_assertion_handler assertion_handler = PrintFailure;
kestrin_assertion_handler report_handler = PrintFailure;

kestrin_assertion_handler Exchange(kestrin_assertion_handler& slot, kestrin_assertion_handler handler) {
  kestrin_assertion_handler former = slot;
  slot = handler ? handler : PrintFailure;
  return former;
}

} // namespace

kestrin_assertion_handler kestrin_set_assertion_handler(kestrin_assertion_handler handler) {
  return Exchange(assertion_handler, handler);
}

kestrin_assertion_handler kestrin_set_report_handler(kestrin_assertion_handler handler) {
  return Exchange(report_handler, handler);
}

void kestrin_assertion_failed(const char* text, const char* file, int line) {
  assertion_handler(text, file, line);
  std::abort();
}

void kestrin_report_internal(const char* text, const char* file, int line) { report_handler(text, file, line); }
