// HashBytes.h: the one hash of the library's hashed look-ups (the icon and cursor answers,
// the string collection's remembered hits). Keys are short texts: eight bytes at a time
// with a multiply and a fold. Only which slot a key lands in depends on it, never an answer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Framework::Internal {

// A 64-bit hash of size bytes at data; the upper half serves as a slot's fingerprint.
// Example: HashBytes(key.data(), key.size() * sizeof(key[0])).
inline std::uint64_t HashBytes(const void* data, std::size_t size) noexcept {
    const auto* bytes = static_cast<const unsigned char*>(data);
    std::uint64_t hash = 0x9E3779B97F4A7C15u ^ size;
    auto mix = [&hash](std::uint64_t word) {
        hash = (hash ^ word) * 0xFF51AFD7ED558CCDu;
        hash ^= hash >> 32;
    };
    for (; size >= 8; size -= 8, bytes += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes, 8);
        mix(word);
    }
    if (size > 0) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, size);
        mix(word);
    }
    hash *= 0xC4CEB9FE1A85EC53u;
    return hash ^ (hash >> 29);
}

// The upper half of a hash, kept beside a slot's entry so that a probe compares key bytes
// only when the fingerprints agree.
inline std::uint32_t HashFingerprint(std::uint64_t hash) noexcept {
    return static_cast<std::uint32_t>(hash >> 32);
}

} // namespace Framework::Internal
