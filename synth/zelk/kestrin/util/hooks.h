// The services under the name by which the database asks for flags, debug output and the profiler.
#ifndef KESTRIN_UTIL_HOOKS_H
#define KESTRIN_UTIL_HOOKS_H

#include "util/services.h"

#endif
