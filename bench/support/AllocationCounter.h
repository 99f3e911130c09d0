// AllocationCounter.h: counts every heap allocation of a benchmark program, so that a
// look-up can show it allocates nothing beyond the string it returns.
#pragma once

#include <cstdint>

namespace QanBench {

// Allocations made through operator new since the program started.
std::uint64_t AllocationCount();

} // namespace QanBench
