// AllocationCounter.cpp: the global operator new and delete that feed the counters.
#include "support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {
std::atomic<std::uint64_t> allocations{0};
std::atomic<bool> counting{true};
std::atomic<bool> tracking{false};
std::atomic<std::int64_t> liveBytes{0};

void Release(void* p) noexcept {
    if (p && tracking.load(std::memory_order_relaxed))
        liveBytes.fetch_sub(static_cast<std::int64_t>(malloc_usable_size(p)),
                            std::memory_order_relaxed);
    std::free(p);
}
} // namespace

// The replacements pair malloc with free, which g++ cannot see once they are inlined.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif
void* operator new(std::size_t size) {
    if (counting.load(std::memory_order_relaxed))
        allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size ? size : 1)) {
        if (tracking.load(std::memory_order_relaxed))
            liveBytes.fetch_add(static_cast<std::int64_t>(malloc_usable_size(p)),
                                std::memory_order_relaxed);
        return p;
    }
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
    Release(p);
}
void operator delete(void* p, std::size_t) noexcept {
    Release(p);
}

namespace QanBench {
std::uint64_t AllocationCount() {
    return allocations.load(std::memory_order_relaxed);
}
void CountAllocations(bool on) {
    counting.store(on, std::memory_order_relaxed);
}
void TrackLiveBytes(bool on) {
    tracking.store(on, std::memory_order_relaxed);
}
std::int64_t LiveBytes() {
    return liveBytes.load(std::memory_order_relaxed);
}
} // namespace QanBench
