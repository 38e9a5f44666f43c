// How the programs' allocator treats the large blocks of profiles, decoded tables and exchange
// files.
#pragma once

// A profile, its lookup tables and an exchange folder run to tens of megabytes. By default glibc
// hands blocks of that size back to the system when they are freed, and the next open
// page-faults fresh ones in, which can cost as much as the work done on them; whether it does so
// also depends on the largest block freed so far, so the same open is fast or slow depending on
// what came before. The programs call this once at start-up (and so do the benchmarks, which
// measure them): blocks of up to 32 MiB then come from the heap, and up to 128 MiB of freed
// memory is kept there for the next ones. Nothing changes with another C library.
void keepLargeBlocksForReuse();
