// Prefetch.h: asks for the cache line at an address ahead of its use, so that misses that
// do not depend on each other overlap. A hint only: it never faults, whatever the address,
// and changes no answer.
#pragma once

namespace Framework::Internal {

// Example: Prefetch(&rows[next]); ... compare rows[next] later.
inline void Prefetch(const void* address) noexcept {
#if defined(__GNUC__) || defined(__clang__)
    __builtin_prefetch(address);
#else
    (void)address;
#endif
}

} // namespace Framework::Internal
