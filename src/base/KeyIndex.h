// KeyIndex.h: a read-only hash index from the distinct keys of a table to what a look-up
// of each answers. Built once, with its table (at load, or at the registration that changes
// it); the keys are copied into one buffer and each slot keeps its key's hash, so a look-up
// reads the slot and, on a hash match, the key's characters, nothing else.
#pragma once

#include "base/HashBytes.h"

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
        return HashFingerprint(static_cast<std::uint64_t>(hash));
    }

    static std::size_t Hash(QanStringViewT<wchar_t> key) {
        return static_cast<std::size_t>(HashBytes(key.data(), key.size() * sizeof(wchar_t)));
    }

    static bool SameCharacters(const wchar_t* a, const wchar_t* b, std::size_t count) {
        return count == 0 || std::memcmp(a, b, count * sizeof(wchar_t)) == 0;
    }

    std::vector<Slot> slots;
    std::vector<wchar_t> names;
};

} // namespace Framework::Internal
