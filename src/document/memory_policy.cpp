#include "document/memory_policy.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

void keepLargeBlocksForReuse() {
#ifdef __GLIBC__
    // 32 MiB is the largest threshold glibc accepts.
    (void)mallopt(M_MMAP_THRESHOLD, 32 << 20);
    (void)mallopt(M_TRIM_THRESHOLD, 128 << 20);
#endif
}
