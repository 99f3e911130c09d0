// ByteSearch.h: the bounded byte search that the table scanners are built on. A span of
// zero or negative length finds nothing, so a scan can never look outside its buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Framework::Internal {

inline const char* FindByte(const char* from, char byte, std::ptrdiff_t length) noexcept {
    if (length <= 0)
        return nullptr;
    return static_cast<const char*>(std::memchr(from, byte, static_cast<std::size_t>(length)));
}

// About how many line feeds the bytes hold, from counts over eight samples spread over
// them (line lengths change along a sorted file): a scan reserves its rows once instead of
// growing (and copying) them as it goes, and without holding much more than it fills.
inline std::size_t EstimateLines(const char* from, std::size_t length) noexcept {
    constexpr std::size_t kSamples = 8;
    constexpr std::size_t kSample = 32 * 1024;
    auto count = [](const char* p, const char* end) {
        std::size_t lines = 0;
        for (; (p = FindByte(p, '\n', end - p)); ++p)
            ++lines;
        return lines;
    };
    if (length <= kSamples * kSample)
        return count(from, from + length) + 1;
    const std::size_t stride = (length - kSample) / (kSamples - 1);
    std::size_t lines = 0;
    for (std::size_t i = 0; i < kSamples; ++i)
        lines += count(from + i * stride, from + i * stride + kSample);
    // At most 2^18 lines in the samples times at most 2^32 bytes: no overflow in 64 bits.
    const std::uint64_t scaled = static_cast<std::uint64_t>(lines) * length / (kSamples * kSample);
    return static_cast<std::size_t>(scaled + scaled / 16 + 64);
}

} // namespace Framework::Internal
