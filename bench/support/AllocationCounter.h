// AllocationCounter.h: counts every heap allocation of a benchmark program, so that a
// look-up can show it allocates nothing beyond the string it returns; on request it also
// follows the heap bytes held.
#pragma once

#include <cstdint>

namespace QanBench {

// Allocations made through operator new since the program started (while counting).
std::uint64_t AllocationCount();

// Counting is on at start. A benchmark that times threads turns it off: the one shared
// counter would make the threads wait on each other.
void CountAllocations(bool on);

// While tracking is on (it is off at start), every allocation adds its usable size to
// LiveBytes and every release made while tracking subtracts it.
void TrackLiveBytes(bool on);
std::int64_t LiveBytes();

} // namespace QanBench
