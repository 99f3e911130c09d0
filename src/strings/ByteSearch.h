// ByteSearch.h: the bounded byte search that the table scanners are built on. A span of
// zero or negative length finds nothing, so a scan can never look outside its buffer.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define QANRES_SCAN_SSE2 1
#endif

namespace Framework::Internal {

inline const char* FindByte(const char* from, char byte, std::ptrdiff_t length) noexcept {
    if (length <= 0)
        return nullptr;
    return static_cast<const char*>(std::memchr(from, byte, static_cast<std::size_t>(length)));
}

// Calls onByte(offset) for every byte of bytes that is a or b, in order. Sixteen bytes are
// compared at a time where the processor allows, so a scan that wants two kinds of byte
// takes one pass instead of a search call for each field (rows of a few dozen bytes make
// the calls' own cost count). Example: ForEachByteOf("a,b\n", ',', '\n', f) calls f(1), f(3).
template <class OnByte>
void ForEachByteOf(std::string_view bytes, char a, char b, OnByte&& onByte) {
    const char* const at = bytes.data();
    const std::size_t size = bytes.size();
    std::size_t i = 0;
#ifdef QANRES_SCAN_SSE2
    const __m128i wantA = _mm_set1_epi8(a);
    const __m128i wantB = _mm_set1_epi8(b);
    for (; i + 16 <= size; i += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + i));
        auto found = static_cast<unsigned>(_mm_movemask_epi8(
            _mm_or_si128(_mm_cmpeq_epi8(block, wantA), _mm_cmpeq_epi8(block, wantB))));
        for (; found != 0; found &= found - 1)
            onByte(i + static_cast<std::size_t>(std::countr_zero(found)));
    }
#endif
    for (; i < size; ++i)
        if (at[i] == a || at[i] == b)
            onByte(i);
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

// The same estimate for a file of total bytes of which only the first count have been read:
// the lines of those, scaled to the whole, with an eighth to spare.
inline std::size_t EstimateLines(const char* from, std::size_t count, std::size_t total) noexcept {
    const std::size_t lines = EstimateLines(from, count);
    if (count >= total)
        return lines;
    const double scaled =
        static_cast<double>(lines) * static_cast<double>(total) / static_cast<double>(count + 1);
    return static_cast<std::size_t>(scaled * 1.125) + 64;
}

// A table lives as long as its collection: rows reserved far beyond the estimate are given
// back (a copy, only when the estimate was well off).
template <class Rows>
void GiveBackSpareRows(Rows& rows) {
    if (rows.capacity() > rows.size() + rows.size() / 8 + 64)
        rows.shrink_to_fit();
}

} // namespace Framework::Internal
