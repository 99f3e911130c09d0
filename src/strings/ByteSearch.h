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

// About how many line feeds the bytes hold, from a count over their first part: a scan
// reserves its rows once instead of growing (and copying) them as it goes, and without
// holding much more than it fills.
inline std::size_t EstimateLines(const char* from, std::size_t length) noexcept {
    constexpr std::size_t kSample = 256 * 1024;
    const std::size_t sample = length < kSample ? length : kSample;
    std::size_t lines = 0;
    for (const char* p = from; (p = FindByte(p, '\n', (from + sample) - p)); ++p)
        ++lines;
    if (sample == length)
        return lines + 1;
    // At most 2^18 lines in the sample times at most 2^32 bytes: no overflow in 64 bits.
    const std::uint64_t scaled = static_cast<std::uint64_t>(lines) * length / sample;
    return static_cast<std::size_t>(scaled + scaled / 32 + 64);
}

} // namespace Framework::Internal
