// KeyIndex.h: a read-only hash index from the distinct keys of a loaded table to what a
// look-up of each answers. Built once at load; the keys are copied into one buffer and
// each slot keeps its key's hash, so a look-up reads the slot and, on a hash match, the
// key's characters, nothing else.
#pragma once

#include <framework/QanString.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace Framework::Internal {

template <class Value>
class KeyIndex {
public:
    // keys must be distinct; they are copied.
    explicit KeyIndex(const std::vector<std::pair<QanStringViewT<wchar_t>, Value>>& keys = {}) {
        std::size_t characters = 0;
        for (const auto& key : keys)
            characters += key.first.size();
        names.reserve(characters);
        std::size_t count = 2;
        while (count < 2 * keys.size())
            count *= 2;
        slots.resize(count);
        const std::size_t mask = count - 1;
        for (const auto& [key, value] : keys) {
            const std::size_t hash = Hash(key);
            std::size_t at = hash & mask;
            while (slots[at].offset != kUnused)
                at = (at + 1) & mask;
            slots[at] = {Fingerprint(hash), static_cast<std::uint32_t>(key.size()), names.size(),
                         value};
            names.insert(names.end(), key.begin(), key.end());
        }
    }

    // The value of key, or null when key is not one of the keys.
    const Value* Find(QanStringViewT<wchar_t> key) const {
        const std::size_t hash = Hash(key);
        const std::size_t mask = slots.size() - 1;
        for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
            const Slot& slot = slots[at];
            if (slot.offset == kUnused)
                return nullptr;
            if (slot.fingerprint == Fingerprint(hash) && slot.length == key.size() &&
                SameCharacters(names.data() + slot.offset, key.data(), key.size()))
                return &slot.value;
        }
    }

private:
    static constexpr std::size_t kUnused = SIZE_MAX;

    // Keys come from files and resources of at most 4 GiB, so their lengths fit 32 bits.
    struct Slot {
        std::uint32_t fingerprint = 0; // the upper half of the key's hash
        std::uint32_t length = 0;
        std::size_t offset = kUnused; // of the key in names
        Value value{};
    };

    static std::uint32_t Fingerprint(std::size_t hash) {
        return static_cast<std::uint32_t>(static_cast<std::uint64_t>(hash) >> 32);
    }

    // Eight bytes at a time with a multiply and a fold: the keys are short texts, and
    // only their order among the slots depends on it.
    static std::size_t Hash(QanStringViewT<wchar_t> key) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(key.data());
        std::size_t left = key.size() * sizeof(wchar_t);
        std::uint64_t hash = 0x9E3779B97F4A7C15u ^ left;
        auto mix = [&hash](std::uint64_t word) {
            hash = (hash ^ word) * 0xFF51AFD7ED558CCDu;
            hash ^= hash >> 32;
        };
        for (; left >= 8; left -= 8, bytes += 8) {
            std::uint64_t word;
            std::memcpy(&word, bytes, 8);
            mix(word);
        }
        if (left > 0) {
            std::uint64_t word = 0;
            std::memcpy(&word, bytes, left);
            mix(word);
        }
        hash *= 0xC4CEB9FE1A85EC53u;
        return static_cast<std::size_t>(hash ^ (hash >> 29));
    }

    static bool SameCharacters(const wchar_t* a, const wchar_t* b, std::size_t count) {
        return count == 0 || std::memcmp(a, b, count * sizeof(wchar_t)) == 0;
    }

    std::vector<Slot> slots;
    std::vector<wchar_t> names;
};

} // namespace Framework::Internal
