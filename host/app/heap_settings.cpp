#include "heap_settings.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

void prefer_large_pages() {
#ifdef __GLIBC__
  constexpr int step = 64 << 20;
  mallopt(M_TOP_PAD, step);
  mallopt(M_MMAP_THRESHOLD, 16 * step);
  mallopt(M_TRIM_THRESHOLD, 16 * step);
#endif
}
